// /qos/forwarding-groups
#include "host/openconfig/MakeKind.h"

namespace host {

using namespace QosOc::Config;

namespace {

std::string queueName(const ForwardingGroupConfig& config, const Keys& /*keys*/) {
  return "the queue name " + quoted(config.outputQueue);
}

}  // namespace

template <>
struct Table<ForwardingGroupConfig> {
  static std::string native(const Keys& keys) {
    return "the forwarding group " + quoted(keys.back());
  }
  static constexpr Leaf<ForwardingGroupConfig> leaves[] = {
      {"config/name", entryKey},
      {"config/output-queue", at<&ForwardingGroupConfig::outputQueue>, queueName},
      {"name", entryKey},
  };
};

constinit const RecordKind kinds::forwardingGroup =
    listKind<ForwardingGroupConfig, &Model::forwardingGroups>("forwarding-groups/forwarding-group",
                                                              "name");

}  // namespace host
