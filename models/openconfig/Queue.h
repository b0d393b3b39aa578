// OpenConfig queues and queue-management profiles.
#pragma once

#include <cstdint>
#include <iosfwd>

#include "Rok/Rok.h"
#include "models/openconfig/Numbers.h"
#include "models/openconfig/Records.h"

namespace QosOc::Config {

// ===== Queues

// What a queue is called; of a tx queue, the settings that no scheduler policy has.
struct QueueConfig {
  Rok::String name;
  bool strictPriority = false;
  Rok::Optional<PercentType> bandwidth;  // the guaranteed share in percent

  QueueConfig() = default;
  explicit QueueConfig(const Rok::String& n) : name(n) {}
  static constexpr auto fields() {
    return std::tuple{Field{"name", &QueueConfig::name},
                      Field{"strictPriority", &QueueConfig::strictPriority},
                      Field{"bandwidth", &QueueConfig::bandwidth}};
  }

  bool operator==(const QueueConfig&) const = default;
  explicit operator bool() const { return *this != QueueConfig(); }
};

// The native ECN settings of a queue, in native units.
struct QueueEcnConfig {
  PercentType maxDropProbabilityPercent;
  ThresholdType maxThreshold;
  ThresholdType minThreshold;
  std::uint8_t thresholdUnit = 0;
  std::uint32_t weight = 0;

  static constexpr auto fields() {
    return std::tuple{
        Field{"maxDropProbabilityPercent", &QueueEcnConfig::maxDropProbabilityPercent},
        Field{"maxThreshold", &QueueEcnConfig::maxThreshold},
        Field{"minThreshold", &QueueEcnConfig::minThreshold},
        Field{"thresholdUnit", &QueueEcnConfig::thresholdUnit},
        Field{"weight", &QueueEcnConfig::weight}};
  }

  bool operator==(const QueueEcnConfig&) const = default;
  explicit operator bool() const { return *this != QueueEcnConfig(); }
};

// What a queue holds beside its key.
struct QueueContent {
  QueueConfig config;
  Rok::Optional<QueueEcnConfig> ecnConfig;

  bool operator==(const QueueContent&) const = default;
};

struct Queue : QueueContent {
  static constexpr RecordId record = RecordId::queue;
  using Content = QueueContent;
  Rok::String name;  // the key

  Queue() = default;
  explicit Queue(const Rok::String& key) : name(key) {}
  static constexpr auto fields() {
    return std::tuple{KeyField{"name", &Queue::name}, Field{"config", &Queue::config},
                      Field{"ecnConfig", &Queue::ecnConfig}};
  }

  bool operator==(const Queue&) const = default;
  explicit operator bool() const { return *this != Queue(); }
};

// All queues by name: the named ones and those of the interfaces' tx queues.
class QueuesDir final : public Rok::PtrInterface {
 public:
  using Queues = RecordMap<Queue, 0x80deb1feu, &Queue::name>;

  static constexpr auto entries() {
    return Records{&QueuesDir::q, &QueuesDir::qIs, &QueuesDir::qDel};
  }

  const Queues::Map& q() const { return queues_.map(); }
  // The default record when there is none.
  Queue q(const Rok::String& name) const { return queues_.get(name); }
  void qIs(const Queue& queue) { queues_.is(queue); }
  // What the queue of that name holds, to be written in place: as it stands, or a new queue of that
  // name alone.
  QueueContent& qContentIs(const Rok::String& name) { return queues_.contentIs(name); }
  // The same for a queue that was found here. Requires: it is still there.
  QueueContent& qContent(const Queue& found) { return queues_.content(found); }
  void qDel(const Rok::String& name) { queues_.del(name); }

  void journalIs(Journal* journal) { queues_.markerIs(Marker(journal)); }

 private:
  Queues queues_;
};

// ===== Queue-management profiles

// The drop settings of a profile. The thresholds are the native ones, in native units.
struct WredUniform {
  std::uint64_t minThreshold = 0;
  std::uint64_t maxThreshold = 0;
  bool enableEcn = false;
  bool drop = false;
  std::uint32_t weight = 0;
  PercentType100 maxDropProbabilityPercent;

  static constexpr auto fields() {
    return std::tuple{Field{"minThreshold", &WredUniform::minThreshold},
                      Field{"maxThreshold", &WredUniform::maxThreshold},
                      Field{"enableEcn", &WredUniform::enableEcn},
                      Field{"drop", &WredUniform::drop},
                      Field{"weight", &WredUniform::weight},
                      Field{"maxDropProbabilityPercent", &WredUniform::maxDropProbabilityPercent}};
  }

  bool operator==(const WredUniform&) const = default;
  explicit operator bool() const { return *this != WredUniform(); }
};

// What a profile is called.
struct QueueManagementProfileConfig {
  Rok::String name;
  static constexpr auto fields() {
    return std::tuple{Field{"name", &QueueManagementProfileConfig::name}};
  }

  bool operator==(const QueueManagementProfileConfig&) const = default;
  explicit operator bool() const { return *this != QueueManagementProfileConfig(); }
};

// What a profile holds beside its key.
struct QueueManagementProfileContent {
  QueueManagementProfileConfig config;
  WredUniform wredUniform;

  bool operator==(const QueueManagementProfileContent&) const = default;
};

// One queue-management profile.
struct QueueManagementProfile : QueueManagementProfileContent {
  static constexpr RecordId record = RecordId::queueManagementProfile;
  using Content = QueueManagementProfileContent;
  Rok::String name;  // the key

  QueueManagementProfile() = default;
  explicit QueueManagementProfile(const Rok::String& key) : name(key) {}
  static constexpr auto fields() {
    return std::tuple{KeyField{"name", &QueueManagementProfile::name},
                      Field{"config", &QueueManagementProfile::config},
                      Field{"wredUniform", &QueueManagementProfile::wredUniform}};
  }

  bool operator==(const QueueManagementProfile&) const = default;
  explicit operator bool() const { return *this != QueueManagementProfile(); }
};

// All profiles by name.
class QueueManagementProfilesDir final : public Rok::PtrInterface {
 public:
  using Profiles = RecordMap<QueueManagementProfile, 0x9bdc06a7u, &QueueManagementProfile::name>;

  static constexpr auto entries() {
    return Records{&QueueManagementProfilesDir::queueManagementProfile,
                   &QueueManagementProfilesDir::queueManagementProfileIs,
                   &QueueManagementProfilesDir::queueManagementProfileDel};
  }

  const Profiles::Map& queueManagementProfile() const { return profiles_.map(); }
  // The default record when there is none.
  QueueManagementProfile queueManagementProfile(const Rok::String& name) const {
    return profiles_.get(name);
  }
  void queueManagementProfileIs(const QueueManagementProfile& profile) { profiles_.is(profile); }
  // What the profile of that name holds, to be written in place: as it stands, or a new profile of
  // that name alone.
  QueueManagementProfileContent& queueManagementProfileContentIs(const Rok::String& name) {
    return profiles_.contentIs(name);
  }
  void queueManagementProfileDel(const Rok::String& name) { profiles_.del(name); }

  void journalIs(Journal* journal) { profiles_.markerIs(Marker(journal)); }

 private:
  Profiles profiles_;
};

}  // namespace QosOc::Config
