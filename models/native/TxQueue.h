// Native tx queues: their settings on interfaces and in QoS profiles.
#pragma once

#include <cstdint>

#include "Rok/Rok.h"
#include "models/native/Values.h"

namespace Qos {

// The thresholds of ECN or of WRED. Never changes: another setting is another object.
class EcnWredConfig final : public Rok::PtrInterface {
 public:
  // The values that one object holds.
  struct Settings {
    std::uint32_t minThreshold = 0;  // in the unit of thresholdUnit
    std::uint32_t maxThreshold = 0;  // the same
    std::uint8_t thresholdUnit = 0;  // copied, never interpreted
    Percent maxDropPercent;          // the probability at the upper threshold
    std::uint32_t weight = 0;        // the averaging weight

    bool operator==(const Settings&) const = default;
  };

  explicit EcnWredConfig(const Settings& settings) : settings_(settings) {}

  const Settings& settings() const { return settings_; }
  std::uint32_t minThreshold() const { return settings_.minThreshold; }
  std::uint32_t maxThreshold() const { return settings_.maxThreshold; }
  std::uint8_t thresholdUnit() const { return settings_.thresholdUnit; }
  Percent maxDropPercent() const { return settings_.maxDropPercent; }
  std::uint32_t weight() const { return settings_.weight; }

 private:
  Settings settings_;
};

// The settings of one tx queue.
class TxQueueConfig final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> txQueue{130};
    static constexpr Rok::Attribute<> priority{131};
    static constexpr Rok::Attribute<> bandwidth{132};
    static constexpr Rok::Attribute<> shape{133};
    static constexpr Rok::Attribute<> ecnConfig{134};
    static constexpr Rok::Attribute<> wredConfig{135};
  };
  using EcnWred = Rok::Ptr<EcnWredConfig const>;

  explicit TxQueueConfig(const TxQueue& txQueue) : txQueue_(txQueue) {}

  const TxQueue& txQueue() const { return txQueue_; }

  TxQueuePriority priority() const { return priority_; }
  void priorityIs(TxQueuePriority v) { attributeIs(priority_, v, Attr::priority); }

  // The guaranteed share in percent.
  Percent bandwidth() const { return bandwidth_; }
  void bandwidthIs(Percent v) { attributeIs(bandwidth_, v, Attr::bandwidth); }

  // The shaping rate. No translator reads it; a change has the scheduler-policy translator read the
  // comment again.
  std::uint32_t shape() const { return shape_; }
  void shapeIs(std::uint32_t v) { attributeIs(shape_, v, Attr::shape); }

  // Null when not configured. Notifies, like all above: the attribute.
  const EcnWred& ecnConfig() const { return ecnConfig_; }
  void ecnConfigIs(const EcnWred& v) { attributeIs(ecnConfig_, v, Attr::ecnConfig); }
  const EcnWred& wredConfig() const { return wredConfig_; }
  void wredConfigIs(const EcnWred& v) { attributeIs(wredConfig_, v, Attr::wredConfig); }

 private:
  TxQueue txQueue_;
  TxQueuePriority priority_ = priorityNotConfigured;
  Percent bandwidth_;
  std::uint32_t shape_ = 0;
  EcnWred ecnConfig_;
  EcnWred wredConfig_;
};

using TxQueueConfigs =
    Rok::HashMap2018<Rok::Hm2018NEI<0xab1c5ed5u, TxQueue, Rok::Ptr<TxQueueConfig>>>;

// The body of a QoS profile.
class QosProfile final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<TxQueue> txQueueConfig{130};
  };

  // Notifies: txQueueConfig, with the tx queue.
  const TxQueueConfigs& txQueueConfig() const { return txQueueConfig_; }
  Rok::Ptr<TxQueueConfig> txQueueConfig(const TxQueue& txQueue) const {
    return txQueueConfig_.get(txQueue);
  }
  void txQueueConfigIs(const TxQueue& txQueue, const Rok::Ptr<TxQueueConfig>& config) {
    memberIs(txQueueConfig_, txQueue, config, Attr::txQueueConfig);
  }
  void txQueueConfigDel(const TxQueue& txQueue) {
    memberDel(txQueueConfig_, txQueue, Attr::txQueueConfig);
  }

 private:
  TxQueueConfigs txQueueConfig_;
};

// One QoS profile, by its native name.
class QosProfileConfig final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> name{130};
    static constexpr Rok::Attribute<> qosProfile{131};
  };

  explicit QosProfileConfig(const Rok::String& name) : name_(name) {}

  const Rok::String& name() const { return name_; }

  // Null until the profile's body exists. Notifies: qosProfile.
  const Rok::Ptr<QosProfile>& qosProfile() const { return qosProfile_; }
  void qosProfileIs(const Rok::Ptr<QosProfile>& profile) {
    attributeIs(qosProfile_, profile, Attr::qosProfile);
  }

 private:
  Rok::String name_;
  Rok::Ptr<QosProfile> qosProfile_;
};

// All QoS profiles by name.
class QosProfileConfigDir final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<Rok::String> config{130};
  };
  using Profiles =
      Rok::HashMap2018<Rok::Hm2018NEI<0xd807aa98u, Rok::String, Rok::Ptr<QosProfileConfig>>>;

  // Notifies: config, with the profile's name.
  const Profiles& config() const { return config_; }
  Rok::Ptr<QosProfileConfig> config(const Rok::String& name) const { return config_.get(name); }
  void configIs(const Rok::String& name, const Rok::Ptr<QosProfileConfig>& config) {
    memberIs(config_, name, config, Attr::config);
  }
  void configDel(const Rok::String& name) { memberDel(config_, name, Attr::config); }

 private:
  Profiles config_;
};

}  // namespace Qos
