// /qos/queues
#include "host/openconfig/MakeKind.h"

namespace host {

using namespace QosOc::Config;

namespace {

// Two schemes of names share the directory: the configured names, and those that end in the type
// and the number of an interface's tx queue.
bool isTxQueue(std::string_view name) {
  const std::size_t dash = name.rfind('-');
  if (dash == std::string_view::npos || !decimal(name.substr(dash + 1), 255)) return false;
  const std::string_view rest = name.substr(0, dash);
  return rest.ends_with("-unicast") || rest.ends_with("-multicast");
}

// A queue without strict priority doesn't say so.
LeafValue strictPriority(const Queue& queue, const Keys& /*keys*/, const Faults& /*faults*/) {
  return queue.config.strictPriority ? LeafValue(true) : LeafValue();
}

template <auto field>
constexpr auto ecn = at<&Queue::ecnConfig, field>;

}  // namespace

template <>
struct Table<Queue> {
  static std::string native(const Keys& keys) {
    return (isTxQueue(keys.back()) ? "the tx queue " : "the queue name ") + quoted(keys.back());
  }
  static constexpr Leaf<Queue> leaves[] = {
      {"config/name", entryKey},
      {"config/qosoc-augments:bandwidth", at<&Queue::config, &QueueConfig::bandwidth>},
      {"config/qosoc-augments:strict-priority", {LeafType::boolean, strictPriority}},
      {"name", entryKey},
      {"qosoc-augments:ecn/config/max-drop-probability-percent",
       ecn<&QueueEcnConfig::maxDropProbabilityPercent>},
      {"qosoc-augments:ecn/config/max-threshold", ecn<&QueueEcnConfig::maxThreshold>},
      {"qosoc-augments:ecn/config/min-threshold", ecn<&QueueEcnConfig::minThreshold>},
      {"qosoc-augments:ecn/config/threshold-unit", ecn<&QueueEcnConfig::thresholdUnit>},
      {"qosoc-augments:ecn/config/weight", ecn<&QueueEcnConfig::weight>},
  };
};

constinit const RecordKind kinds::queue = listKind<Queue, &Model::queues>("queues/queue", "name");

}  // namespace host
