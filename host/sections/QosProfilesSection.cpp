// "qos-profiles": {"<name>": {"tx-queues": {...}}}
#include "host/sections/TxQueues.h"

namespace host {
namespace {

using Qos::QosProfileConfig;
using Qos::QosProfileConfigDir;

// The tx queues are the profile's body. Without them it has none.
constexpr Setting<QosProfileConfig> profileSettings[] = {
    object<&QosProfileConfig::qosProfile, &QosProfileConfig::qosProfileIs,
           TxQueues<Qos::QosProfile>>("tx-queues"),
};

using QosProfiles = Objects<all(&QosProfileConfigDir::config), &QosProfileConfigDir::configIs,
                            &QosProfileConfigDir::configDel, Record<profileSettings>>;

}  // namespace

Section qosProfilesSection() {
  return section(&Native::qosProfiles, part<QosProfiles>("qos-profiles"));
}

}  // namespace host
