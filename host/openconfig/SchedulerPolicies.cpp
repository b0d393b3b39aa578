// /qos/scheduler-policies
#include "host/Text.h"
#include "host/openconfig/MakeKind.h"

namespace host {

using namespace QosOc::Config;

namespace {

std::string profile(const Keys& keys) {
  return "the QoS profile " + quoted("__YANG_SP_[" + std::string(keys[0]) + ']');
}
// All that hangs under a policy's name comes from one comment.
std::string comment(const Keys& keys) { return "the comment on " + profile(keys); }

// ===== Readers

// The word of an enumeration of which one member is known.
template <class Enum>
LeafValue known(Enum v, Enum member, std::string_view word, const char* what,
                const Faults& faults) {
  if (v == member) return word;
  faults.leftOut([&] { return keyText(v) + " is no " + what; });
  return {};
}

LeafValue priority(const SchedulerConfig& config, const Keys& /*keys*/, const Faults& faults) {
  if (!config.priority) return {};
  return known(*config.priority, SchedulerPriority::STRICT, "STRICT", "priority of a scheduler",
               faults);
}

LeafValue type(const SchedulerConfig& config, const Keys& /*keys*/, const Faults& faults) {
  return known(config.schedulerType, SchedulerType::ONE_RATE_TWO_COLOR,
               "openconfig-qos-types:ONE_RATE_TWO_COLOR", "type of a scheduler", faults);
}

LeafValue sequence(const SchedulerConfig& /*config*/, const Keys& keys, const Faults& /*faults*/) {
  return *decimal(keys.back(), 0xffffffffu);
}

LeafValue inputType(const SchedulerInput& input, const Keys& /*keys*/, const Faults& faults) {
  return known(input.config.inputType, SchedulerInputType::QUEUE, "QUEUE",
               "type of a scheduler's input", faults);
}

constexpr std::string_view priorityNames[] = {"STRICT"};
constexpr std::string_view typeNames[] = {"openconfig-qos-types:ONE_RATE_TWO_COLOR",
                                          "openconfig-qos-types:TWO_RATE_THREE_COLOR"};
constexpr std::string_view inputTypeNames[] = {"QUEUE", "IN_PROFILE", "OUT_PROFILE"};

bool isQueue(const SchedulerInput& input) {
  return input.config.inputType == SchedulerInputType::QUEUE;
}

}  // namespace

// ===== Tables

template <>
struct Table<SchedulerPolicyConfig> {
  static std::string native(const Keys& keys) { return profile(keys); }
  static constexpr Leaf<SchedulerPolicyConfig> leaves[] = {
      {"config/name", entryKey},
      {"name", entryKey},
  };
};

template <>
struct Table<SchedulerConfig> {
  static std::string native(const Keys& keys) { return comment(keys); }
  static constexpr Leaf<SchedulerConfig> leaves[] = {
      {"config/priority", {LeafType::enumeration, priority, {.names = priorityNames}}},
      {"config/sequence", {LeafType::uint32, sequence}},
      {"config/type", {LeafType::identityref, type, {.names = typeNames}}},
      {"sequence", {LeafType::uint32, sequence}},
  };
};

template <>
struct Table<SchedulerInput> {
  static std::string native(const Keys& keys) { return comment(keys); }
  static constexpr Leaf<SchedulerInput> leaves[] = {
      {"config/id", entryKey},
      {"config/input-type", {LeafType::enumeration, inputType, {.names = inputTypeNames}}},
      {"config/queue",
       at<&SchedulerInput::config, &SchedulerInputConfig::queue>,
       nullptr,
       {isQueue, " is no queue, by its input-type"}},
      {"config/weight", at<&SchedulerInput::config, &SchedulerInputConfig::weight>},
      {"id", entryKey},
  };
};

template <>
struct Table<OneRateTwoColor> {
  static std::string native(const Keys& keys) { return comment(keys); }
  static constexpr Leaf<OneRateTwoColor> leaves[] = {
      {"config/cir", at<&OneRateTwoColor::cir>},
      {"config/cir-pct", at<&OneRateTwoColor::cirPct>},
  };
};

namespace kinds {

constexpr const RecordKind* belowPolicy[] = {&scheduler};
constexpr const RecordKind* belowScheduler[] = {&schedulerInput, &schedulerRate};
constinit const RecordKind schedulerPolicy =
    listKind<SchedulerPolicyConfig, &Model::schedulerPolicies>(
        "scheduler-policies/scheduler-policy", "name", nullptr, belowPolicy);
constinit const RecordKind scheduler = listKind<SchedulerConfig, &SchedulerPolicy::schedulers>(
    "schedulers/scheduler", "sequence", &schedulerPolicy, belowScheduler);
constinit const RecordKind schedulerInput =
    listKind<SchedulerInput, &Scheduler::inputs>("inputs/input", "id", &scheduler);
constinit const RecordKind schedulerRate =
    containerKind<OneRateTwoColor, &Scheduler::oneRateTwoColor>("one-rate-two-color", &scheduler);

}  // namespace kinds
}  // namespace host
