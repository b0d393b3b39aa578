// /qos/queues
#include "host/Text.h"
#include "host/openconfig/Lists.h"

namespace host {
namespace {

using namespace QosOc::Config;

// Two schemes of names share the directory: the configured names, and those that end in the type
// and the number of an interface's tx queue.
bool isTxQueue(std::string_view name) {
  const std::size_t dash = name.rfind('-');
  if (dash == std::string_view::npos || !decimal(name.substr(dash + 1), 255)) return false;
  const std::string_view rest = name.substr(0, dash);
  return rest.ends_with("-unicast") || rest.ends_with("-multicast");
}

std::string native(std::string_view name) {
  return (isTxQueue(name) ? "the tx queue " : "the queue name ") + quoted(name);
}

void ecnJson(Tree& tree, const QueueEcnConfig& ecn) {
  tree.container("qosoc-augments:ecn", [&] {
    tree.container("config", [&] {
      tree.number("max-drop-probability-percent", ecn.maxDropProbabilityPercent.value());
      tree.number("max-threshold", ecn.maxThreshold.value());
      tree.number("min-threshold", ecn.minThreshold.value());
      tree.number("threshold-unit", ecn.thresholdUnit);
      tree.number("weight", ecn.weight);
    });
  });
}

void queueJson(Tree& tree, std::string_view name, const Queue& queue) {
  const QueueConfig& config = queue.config;
  tree.container("config", [&] {
    tree.word("name", name);
    if (config.bandwidth) tree.number("qosoc-augments:bandwidth", config.bandwidth->value());
    if (config.strictPriority) tree.boolean("qosoc-augments:strict-priority", true);
  });
  tree.word("name", name);
  if (queue.ecnConfig) ecnJson(tree, *queue.ecnConfig);
}

}  // namespace

void queuesJson(Tree& tree, const QueuesDir& dir) {
  tree.list("queues", "queue", "name", dir.q(), native,
            [&](std::string_view name, const Queue& queue) { queueJson(tree, name, queue); });
}

}  // namespace host
