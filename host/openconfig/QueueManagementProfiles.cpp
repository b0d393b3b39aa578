// /qos/queue-management-profiles
#include "host/Text.h"
#include "host/openconfig/MakeKind.h"

namespace host {

using namespace QosOc::Config;

namespace {

template <auto field>
constexpr auto uniform = at<&QueueManagementProfile::wredUniform, field>;

}  // namespace

template <>
struct Table<QueueManagementProfile> {
  static std::string native(const Keys& keys) {
    return "the QoS profile " + quoted("__YANG_QMP_[" + std::string(keys.back()) + ']');
  }
  static constexpr Leaf<QueueManagementProfile> leaves[] = {
      {"config/name", entryKey},
      {"name", entryKey},
      {"wred/uniform/config/drop", uniform<&WredUniform::drop>},
      {"wred/uniform/config/enable-ecn", uniform<&WredUniform::enableEcn>},
      {"wred/uniform/config/max-drop-probability-percent",
       uniform<&WredUniform::maxDropProbabilityPercent>},
      {"wred/uniform/config/max-threshold", uniform<&WredUniform::maxThreshold>},
      {"wred/uniform/config/min-threshold", uniform<&WredUniform::minThreshold>},
      {"wred/uniform/config/weight", uniform<&WredUniform::weight>},
  };
};

constinit const RecordKind kinds::queueManagementProfile =
    listKind<QueueManagementProfile, &Model::queueManagementProfiles>(
        "queue-management-profiles/queue-management-profile", "name");

}  // namespace host
