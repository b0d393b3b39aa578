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

void queueJson(Tree& tree, std::string_view name, const Queue& /*queue*/) {
  tree.container("config", [&] { tree.word("name", name); });
  tree.word("name", name);
}

}  // namespace

void queuesJson(Tree& tree, const QueuesDir& dir) {
  tree.list("queues", "queue", "name", dir.q(), native,
            [&](std::string_view name, const Queue& queue) { queueJson(tree, name, queue); });
}

}  // namespace host
