// "queues": {"<name>": {"config": {...}, "ecn-config": {...} or null}}
#include "host/model/Parts.h"

namespace host {
namespace {

using namespace QosOc::Config;

Codec<QueueConfig> configCodec() {
  return record<QueueConfig>(
      {member("bandwidth", &QueueConfig::bandwidth, orNull(rangeChecked<QosOc::PercentRange>())),
       member("name", &QueueConfig::name, text()),
       member("strict-priority", &QueueConfig::strictPriority, boolean())});
}

Codec<QueueEcnConfig> ecnCodec() {
  using Ecn = QueueEcnConfig;
  return record<Ecn>(
      {member("max-drop-probability-percent", &Ecn::maxDropProbabilityPercent,
              rangeChecked<QosOc::PercentRange>()),
       member("max-threshold", &Ecn::maxThreshold, rangeChecked<QosOc::ThresholdRange>()),
       member("min-threshold", &Ecn::minThreshold, rangeChecked<QosOc::ThresholdRange>()),
       member("threshold-unit", &Ecn::thresholdUnit, number<std::uint8_t>()),
       member("weight", &Ecn::weight, number<std::uint32_t>())});
}

Codec<Queue> queueCodec() {
  return record<Queue>({member("config", &Queue::config, configCodec()),
                        member("ecn-config", &Queue::ecnConfig, orNull(ecnCodec()))});
}

}  // namespace

ModelPart queuesPart() {
  const auto map = [](const QueuesDir& dir) -> const auto& { return dir.q(); };
  return modelPart("queues", &Model::queues,
                   records<Rok::String>(map, &QueuesDir::qIs, queueCodec()));
}

}  // namespace host
