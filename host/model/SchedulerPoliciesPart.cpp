// "scheduler-policies": {"<name>": {"config": {"name": ""}, "schedulers": {"<sequence>": {...}} or
//                                   null}}
#include "host/model/Parts.h"

namespace host {
namespace {

using namespace QosOc::Config;

// ===== Schedulers

Codec<SchedulerInputConfig> inputConfigCodec() {
  using Config = SchedulerInputConfig;
  return record<Config>({member("id", &Config::id, text()),
                         member("input-type", &Config::inputType, number<SchedulerInputType>()),
                         member("queue", &Config::queue, text()),
                         member("weight", &Config::weight, orNull(number<std::uint64_t>()))});
}

Codec<SchedulerInputs> inputsCodec() {
  const auto map = [](const SchedulerInputs& inputs) -> const auto& { return inputs.input(); };
  const auto input =
      record<SchedulerInput>({member("config", &SchedulerInput::config, inputConfigCodec())});
  return records<Rok::String>(map, &SchedulerInputs::inputIs, input);
}

Codec<SchedulerConfig> schedulerConfigCodec() {
  using Config = SchedulerConfig;
  return record<Config>({member("priority", &Config::priority, orNull(number<SchedulerPriority>())),
                         member("scheduler-type", &Config::schedulerType, number<SchedulerType>()),
                         member("sequence", &Config::sequence, number<std::uint32_t>())});
}

Codec<OneRateTwoColor> rateCodec() {
  return record<OneRateTwoColor>(
      {member("cir", &OneRateTwoColor::cir, orNull(number<std::uint64_t>())),
       member("cir-pct", &OneRateTwoColor::cirPct, orNull(rangeChecked<QosOc::PercentRange>()))});
}

Codec<Scheduler> schedulerCodec() {
  return record<Scheduler>(
      {attribute("config", &Scheduler::config, &Scheduler::configIs, schedulerConfigCodec()),
       child("inputs", &Scheduler::inputs, &Scheduler::inputsIs, inputsCodec()),
       attribute("one-rate-two-color", &Scheduler::oneRateTwoColor, &Scheduler::oneRateTwoColorIs,
                 orNull(rateCodec()))});
}

// ===== Policies

Codec<Schedulers> schedulersCodec() {
  const auto map = [](const Schedulers& schedulers) -> const auto& {
    return schedulers.scheduler();
  };
  return objects(map, &Schedulers::schedulerIs, schedulerCodec());
}

Codec<SchedulerPolicy> policyCodec() {
  const auto config =
      record<SchedulerPolicyConfig>({member("name", &SchedulerPolicyConfig::name, text())});
  return record<SchedulerPolicy>(
      {attribute("config", &SchedulerPolicy::config, &SchedulerPolicy::configIs, config),
       child("schedulers", &SchedulerPolicy::schedulers, &SchedulerPolicy::schedulersIs,
             schedulersCodec())});
}

}  // namespace

ModelPart schedulerPoliciesPart() {
  const auto map = [](const SchedulerPoliciesDir& dir) -> const auto& {
    return dir.schedulerPolicy();
  };
  return modelPart("scheduler-policies", &Model::schedulerPolicies,
                   objects(map, &SchedulerPoliciesDir::schedulerPolicyIs, policyCodec()));
}

}  // namespace host
