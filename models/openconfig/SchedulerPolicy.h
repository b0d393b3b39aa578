// OpenConfig scheduler policies: their schedulers with rates and inputs. What attaches a policy to
// an interface is in Interface.h.
#pragma once

#include <cstdint>
#include <iosfwd>

#include "Rok/Rok.h"
#include "models/openconfig/Numbers.h"
#include "models/openconfig/Records.h"

namespace QosOc::Config {

// ===== Inputs of a scheduler

// What a scheduler's input comes from.
enum class SchedulerInputType : unsigned char { QUEUE = 0 };
QOS_EXPORT const Rok::EnumType<unsigned char>& rokEnumType(SchedulerInputType);
inline std::ostream& operator<<(std::ostream& out, SchedulerInputType v) {
  return Rok::enumPrint(out, v);
}

// What an input is called, the queue that it takes from, and its weight.
struct SchedulerInputConfig {
  Rok::String id;
  SchedulerInputType inputType = SchedulerInputType::QUEUE;
  Rok::String queue;  // the queue's name; empty when not set
  Rok::Optional<std::uint64_t> weight;

  static constexpr auto fields() {
    return std::tuple{Field{"id", &SchedulerInputConfig::id},
                      Field{"inputType", &SchedulerInputConfig::inputType},
                      Field{"queue", &SchedulerInputConfig::queue},
                      Field{"weight", &SchedulerInputConfig::weight}};
  }

  bool operator==(const SchedulerInputConfig&) const = default;
  explicit operator bool() const { return *this != SchedulerInputConfig(); }
};

// One input of a scheduler.
struct SchedulerInput {
  static constexpr RecordId record = RecordId::schedulerInput;
  Rok::String id;  // the key
  SchedulerInputConfig config;

  SchedulerInput() = default;
  explicit SchedulerInput(const Rok::String& key) : id(key) {}
  static constexpr auto fields() {
    return std::tuple{KeyField{"id", &SchedulerInput::id},
                      Field{"config", &SchedulerInput::config}};
  }

  bool operator==(const SchedulerInput&) const = default;
  // False for the default input, which stands for a missing one.
  explicit operator bool() const { return *this != SchedulerInput(); }
};

// The inputs of a scheduler by id.
class SchedulerInputs final : public Rok::PtrInterface {
 public:
  using Inputs = RecordMap<SchedulerInput, 0x2de92c6fu, &SchedulerInput::id>;

  static constexpr auto entries() {
    return Records{&SchedulerInputs::input, &SchedulerInputs::inputIs, &SchedulerInputs::inputDel};
  }

  const Inputs::Map& input() const { return inputs_.map(); }
  // The default record when there is none.
  SchedulerInput input(const Rok::String& id) const { return inputs_.get(id); }
  void inputIs(const SchedulerInput& input) { inputs_.is(input); }

  void markerIs(const Marker& marker) { inputs_.markerIs(marker); }

 private:
  void inputDel(const Rok::String& id) { inputs_.del(id); }

  Inputs inputs_;
};

// ===== Schedulers

// The committed rate of a scheduler, as a number, as a percentage, or as both: neither is computed
// from the other. The flag and the byte that would be the same in every scheduler are left out:
// nothing reads them.
struct OneRateTwoColor {
  static constexpr RecordId record = RecordId::schedulerRate;
  Rok::Optional<std::uint64_t> cir;  // in bits per second
  Rok::Optional<PercentType> cirPct;

  static constexpr auto fields() {
    return std::tuple{Field{"cir", &OneRateTwoColor::cir},
                      Field{"cirPct", &OneRateTwoColor::cirPct}};
  }

  bool operator==(const OneRateTwoColor&) const = default;
  explicit operator bool() const { return *this != OneRateTwoColor(); }
};

// How a scheduler meters.
enum class SchedulerType : unsigned char { ONE_RATE_TWO_COLOR = 0 };
QOS_EXPORT const Rok::EnumType<unsigned char>& rokEnumType(SchedulerType);
inline std::ostream& operator<<(std::ostream& out, SchedulerType v) {
  return Rok::enumPrint(out, v);
}

// Strict is 0 here, where an absent priority is an empty optional. A comment's
// enumeration has an enumerator for none.
enum class SchedulerPriority : unsigned char { STRICT = 0 };
QOS_EXPORT const Rok::EnumType<unsigned char>& rokEnumType(SchedulerPriority);
inline std::ostream& operator<<(std::ostream& out, SchedulerPriority v) {
  return Rok::enumPrint(out, v);
}

// The place of a scheduler in its policy, and its kind.
struct SchedulerConfig {
  static constexpr RecordId record = RecordId::scheduler;
  std::uint32_t sequence = 0;
  SchedulerType schedulerType = SchedulerType::ONE_RATE_TWO_COLOR;
  Rok::Optional<SchedulerPriority> priority;  // present for a strict-priority scheduler alone

  static constexpr auto fields() {
    return std::tuple{Field{"sequence", &SchedulerConfig::sequence},
                      Field{"schedulerType", &SchedulerConfig::schedulerType},
                      Field{"priority", &SchedulerConfig::priority}};
  }

  bool operator==(const SchedulerConfig&) const = default;
  explicit operator bool() const { return *this != SchedulerConfig(); }
};

// One scheduler of a policy.
class Scheduler final : public Rok::PtrInterface {
 public:
  static constexpr RecordId record = SchedulerConfig::record;

  using Rate = Rok::Optional<OneRateTwoColor>;

  explicit Scheduler(std::uint32_t sequence) : sequence_(sequence) {}

  static constexpr auto attributes() {
    return std::tuple{
        attribute("config", &Scheduler::config, &Scheduler::configIs),
        child("inputs", &Scheduler::inputs, &Scheduler::inputsIs),
        attribute("oneRateTwoColor", &Scheduler::oneRateTwoColor, &Scheduler::oneRateTwoColorIs)};
  }

  const std::uint32_t& sequence() const { return sequence_; }
  const SchedulerConfig& config() const { return config_.get(); }
  void configIs(const SchedulerConfig& config) { config_.is(marker_, config); }

  // Null until made.
  const Rok::Ptr<SchedulerInputs>& inputs() const { return inputs_; }
  const Rok::Ptr<SchedulerInputs>& inputsIs() {
    if (!inputs_) made(inputs_, marker_);
    return inputs_;
  }
  // Absent until set.
  const Rate& oneRateTwoColor() const { return oneRateTwoColor_.get(); }
  void oneRateTwoColorIs(const Rate& rate) { oneRateTwoColor_.is(marker_, rate); }

  void markerIs(const Marker& marker) {
    marker_ = marker;
    if (inputs_) inputs_->markerIs(marker);
  }

 private:
  std::uint32_t sequence_;
  Recorded<SchedulerConfig> config_;
  Rok::Ptr<SchedulerInputs> inputs_;
  Recorded<Rate> oneRateTwoColor_;
  Marker marker_;
};

// The schedulers of one policy by sequence.
class Schedulers final : public Rok::PtrInterface {
 public:
  using Members = ObjectMap<Scheduler, 0x4a7484aau, &Scheduler::sequence>;

  static constexpr auto entries() {
    return Objects{&Schedulers::scheduler, &Schedulers::schedulerIs, &Schedulers::schedulerDel};
  }

  const Members::Map& scheduler() const { return schedulers_.map(); }
  Rok::Ptr<Scheduler> scheduler(std::uint32_t sequence) const { return schedulers_.get(sequence); }
  Rok::Ptr<Scheduler> schedulerIs(std::uint32_t sequence) { return schedulers_.is(sequence); }

  void markerIs(const Marker& marker) { schedulers_.markerIs(marker); }

 private:
  void schedulerDel(std::uint32_t sequence) { schedulers_.del(sequence); }

  Members schedulers_;
};

// ===== Policies

// What a policy is called.
struct SchedulerPolicyConfig {
  static constexpr RecordId record = RecordId::schedulerPolicy;
  Rok::String name;

  static constexpr auto fields() { return std::tuple{Field{"name", &SchedulerPolicyConfig::name}}; }

  bool operator==(const SchedulerPolicyConfig&) const = default;
  explicit operator bool() const { return *this != SchedulerPolicyConfig(); }
};

class SchedulerPolicy final : public Rok::PtrInterface {
 public:
  static constexpr RecordId record = SchedulerPolicyConfig::record;

  explicit SchedulerPolicy(const Rok::String& name) : name_(name) {}

  static constexpr auto attributes() {
    return std::tuple{
        attribute("config", &SchedulerPolicy::config, &SchedulerPolicy::configIs),
        child("schedulers", &SchedulerPolicy::schedulers, &SchedulerPolicy::schedulersIs)};
  }

  const Rok::String& name() const { return name_; }
  const SchedulerPolicyConfig& config() const { return config_.get(); }
  void configIs(const SchedulerPolicyConfig& config) { config_.is(marker_, config); }

  // Null until made.
  const Rok::Ptr<Schedulers>& schedulers() const { return schedulers_; }
  const Rok::Ptr<Schedulers>& schedulersIs() {
    if (!schedulers_) made(schedulers_, marker_);
    return schedulers_;
  }

  void markerIs(const Marker& marker) {
    marker_ = marker;
    if (schedulers_) schedulers_->markerIs(marker);
  }

 private:
  Rok::String name_;
  Recorded<SchedulerPolicyConfig> config_;
  Rok::Ptr<Schedulers> schedulers_;
  Marker marker_;
};

// All scheduler policies by name.
class SchedulerPoliciesDir final : public Rok::PtrInterface {
 public:
  using Policies = ObjectMap<SchedulerPolicy, 0x5cb0a9dcu, &SchedulerPolicy::name>;

  static constexpr auto entries() {
    return Objects{&SchedulerPoliciesDir::schedulerPolicy, &SchedulerPoliciesDir::schedulerPolicyIs,
                   &SchedulerPoliciesDir::schedulerPolicyDel};
  }

  const Policies::Map& schedulerPolicy() const { return policies_.map(); }
  Rok::Ptr<SchedulerPolicy> schedulerPolicy(const Rok::String& name) const {
    return policies_.get(name);
  }
  Rok::Ptr<SchedulerPolicy> schedulerPolicyIs(const Rok::String& name) {
    return policies_.is(name);
  }
  // Removes the policy with all that hangs under it.
  void schedulerPolicyDel(const Rok::String& name) { policies_.del(name); }

  void journalIs(Journal* journal) { policies_.markerIs(Marker(journal)); }

 private:
  Policies policies_;
};

}  // namespace QosOc::Config
