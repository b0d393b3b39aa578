// "queue-management-profiles": {"<name>": {"config": {"name": ""}, "wred-uniform": {...}}}
#include "host/model/Parts.h"

namespace host {
namespace {

using namespace QosOc::Config;
using Dir = QueueManagementProfilesDir;

Codec<QueueManagementProfileConfig> configCodec() {
  return record<QueueManagementProfileConfig>(
      {member("name", &QueueManagementProfileConfig::name, text())});
}

Codec<WredUniform> wredCodec() {
  return record<WredUniform>(
      {member("drop", &WredUniform::drop, boolean()),
       member("enable-ecn", &WredUniform::enableEcn, boolean()),
       member("max-drop-probability-percent", &WredUniform::maxDropProbabilityPercent,
              rangeChecked<QosOc::PercentRange100>()),
       member("max-threshold", &WredUniform::maxThreshold, number<std::uint64_t>()),
       member("min-threshold", &WredUniform::minThreshold, number<std::uint64_t>()),
       member("weight", &WredUniform::weight, number<std::uint32_t>())});
}

Codec<QueueManagementProfile> profileCodec() {
  return record<QueueManagementProfile>(
      {member("config", &QueueManagementProfile::config, configCodec()),
       member("wred-uniform", &QueueManagementProfile::wredUniform, wredCodec())});
}

}  // namespace

ModelPart queueManagementProfilesPart() {
  const auto map = [](const Dir& dir) -> const auto& { return dir.queueManagementProfile(); };
  return modelPart("queue-management-profiles", &Model::queueManagementProfiles,
                   records<Rok::String>(map, &Dir::queueManagementProfileIs, profileCodec()));
}

}  // namespace host
