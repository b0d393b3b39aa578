// OpenConfig queues and queue-management profiles.
#pragma once

#include <cstdint>
#include <iosfwd>

#include "Rok/Rok.h"
#include "models/openconfig/Numbers.h"
#include "models/openconfig/Records.h"

namespace QosOc::Config {

// ===== Queues

struct QueueConfig {
  Rok::String name;
  bool strictPriority = false;
  Rok::Optional<PercentType> bandwidth;

  QueueConfig() = default;
  explicit QueueConfig(const Rok::String& name) : name(name) {}
  bool operator==(const QueueConfig&) const = default;
  explicit operator bool() const { return *this != QueueConfig(); }
};
QOS_EXPORT std::ostream& operator<<(std::ostream& out, const QueueConfig& config);

// The native ECN settings of a queue, in native units.
struct QueueEcnConfig {
  PercentType maxDropProbabilityPercent;
  ThresholdType maxThreshold;
  ThresholdType minThreshold;
  std::uint8_t thresholdUnit = 0;
  std::uint32_t weight = 0;

  bool operator==(const QueueEcnConfig&) const = default;
  explicit operator bool() const { return *this != QueueEcnConfig(); }
};
QOS_EXPORT std::ostream& operator<<(std::ostream& out, const QueueEcnConfig& config);

struct Queue {
  Rok::String name;  // the key
  QueueConfig config;
  Rok::Optional<QueueEcnConfig> ecnConfig;

  Queue() = default;
  explicit Queue(const Rok::String& name) : name(name) {}
  bool operator==(const Queue&) const = default;
  explicit operator bool() const { return *this != Queue(); }
};
QOS_EXPORT std::ostream& operator<<(std::ostream& out, const Queue& queue);

// All queues by name: the named ones and those of the interfaces' tx queues.
class QueuesDir final : public Rok::PtrInterface {
 public:
  using Queues = RecordMap<Queue, 0x80deb1feu, &Queue::name>;

  const Queues::Map& q() const { return queues_.map(); }
  // The default record when there is none.
  Queue q(const Rok::String& name) const { return queues_.get(name); }
  void qIs(const Queue& queue) { queues_.is(queue); }
  // The queue of that name to be written in place: as it stands, or a new one of that name alone.
  Queue& qIs(const Rok::String& name) { return queues_.is(name); }
  // The same for a queue that is there; null when there is none.
  Queue* qRef(const Rok::String& name) { return queues_.ref(name); }
  void qDel(const Rok::String& name) { queues_.del(name); }

 private:
  Queues queues_;
};

// ===== Queue-management profiles

struct WredUniform {
  std::uint64_t minThreshold = 0;
  std::uint64_t maxThreshold = 0;
  bool enableEcn = false;
  bool drop = false;
  std::uint32_t weight = 0;
  PercentType100 maxDropProbabilityPercent;

  bool operator==(const WredUniform&) const = default;
  explicit operator bool() const { return *this != WredUniform(); }
};

struct QueueManagementProfileConfig {
  Rok::String name;
  bool operator==(const QueueManagementProfileConfig&) const = default;
  explicit operator bool() const { return *this != QueueManagementProfileConfig(); }
};

struct QueueManagementProfile {
  Rok::String name;  // the key
  QueueManagementProfileConfig config;
  WredUniform wredUniform;

  QueueManagementProfile() = default;
  explicit QueueManagementProfile(const Rok::String& name) : name(name) {}
  bool operator==(const QueueManagementProfile&) const = default;
  explicit operator bool() const { return *this != QueueManagementProfile(); }
};
QOS_EXPORT std::ostream& operator<<(std::ostream& out, const QueueManagementProfile& profile);

class QueueManagementProfilesDir final : public Rok::PtrInterface {
 public:
  using Profiles = RecordMap<QueueManagementProfile, 0x9bdc06a7u, &QueueManagementProfile::name>;

  const Profiles::Map& queueManagementProfile() const { return profiles_.map(); }
  // The default record when there is none.
  QueueManagementProfile queueManagementProfile(const Rok::String& name) const {
    return profiles_.get(name);
  }
  void queueManagementProfileIs(const QueueManagementProfile& profile) { profiles_.is(profile); }
  // The profile of that name to be written in place: as it stands, or a new one of that name alone.
  QueueManagementProfile& queueManagementProfileIs(const Rok::String& name) {
    return profiles_.is(name);
  }
  void queueManagementProfileDel(const Rok::String& name) { profiles_.del(name); }

 private:
  Profiles profiles_;
};

}  // namespace QosOc::Config
