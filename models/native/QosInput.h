// The root of the native QoS configuration, its interfaces and its maps of names.
#pragma once

#include <array>
#include <cstdint>

#include "Rok/Rok.h"
#include "models/native/Pfc.h"
#include "models/native/ServicePolicy.h"
#include "models/native/TxQueue.h"
#include "models/native/Values.h"

namespace Qos {

// The settings of one interface.
class IntfConfig final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> intfId{130};
    static constexpr Rok::Attribute<TxQueue> txQueueConfig{131};
    static constexpr Rok::Attribute<> pfcPortConfig{132};
  };

  explicit IntfConfig(const Nerit::IntfId& intfId) : intfId_(intfId) {}

  const Nerit::IntfId& intfId() const { return intfId_; }

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

  // Null while the interface has no PFC settings. Notifies: pfcPortConfig.
  const Rok::Ptr<Pfc::PortConfig>& pfcPortConfig() const { return pfcPortConfig_; }
  void pfcPortConfigIs(const Rok::Ptr<Pfc::PortConfig>& config) {
    attributeIs(pfcPortConfig_, config, Attr::pfcPortConfig);
  }

 private:
  Nerit::IntfId intfId_;
  TxQueueConfigs txQueueConfig_;
  Rok::Ptr<Pfc::PortConfig> pfcPortConfig_;
};

// The names of queues. Several names may hold one id.
class QueueNameToTxQueueIdMap final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<QueueName> queueNameToTxQueueId{130};
  };
  using Map = Rok::OrderedMap<QueueName, TxQueueId>;

  // In name order. Notifies: queueNameToTxQueueId, with the name.
  const Map& queueNameToTxQueueId() const { return map_; }
  TxQueueId queueNameToTxQueueId(const QueueName& name) const { return map_.get(name); }
  void queueNameToTxQueueIdIs(const QueueName& name, TxQueueId id) {
    memberIs(map_, name, id, Attr::queueNameToTxQueueId);
  }
  void queueNameToTxQueueIdDel(const QueueName& name) {
    memberDel(map_, name, Attr::queueNameToTxQueueId);
  }

 private:
  Map map_;
};

// The names of forwarding groups. Several names may hold one traffic class.
class ForwardingGroupNameToTcMap final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<ForwardingGroupName> forwardingGroupNameToTc{130};
  };
  using Map = Rok::OrderedMap<ForwardingGroupName, TrafficClass>;

  // In name order. Notifies: forwardingGroupNameToTc, with the name.
  const Map& forwardingGroupNameToTc() const { return map_; }
  TrafficClass forwardingGroupNameToTc(const ForwardingGroupName& name) const {
    return map_.get(name);
  }
  void forwardingGroupNameToTcIs(const ForwardingGroupName& name, TrafficClass tc) {
    // `name` may be what firstName gave.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): so it is kept
    const ForwardingGroupName kept(name);
    const TrafficClass* old = map_.find(kept);
    if (old != nullptr && *old == tc) return;
    NewName entry(names_, {tc, kept});
    if (old != nullptr) names_.deleteMember({*old, kept});
    map_.memberIs(kept, tc);
    entry.stay();
    notify(Attr::forwardingGroupNameToTc, kept);
  }
  void forwardingGroupNameToTcDel(const ForwardingGroupName& name) {
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): as above
    const ForwardingGroupName kept(name);
    if (const TrafficClass* old = map_.find(kept)) names_.deleteMember({*old, kept});
    memberDel(map_, kept, Attr::forwardingGroupNameToTc);
  }

  // The first name, in name order, that holds a traffic class; null when none does.
  const ForwardingGroupName* firstName(TrafficClass tc) const {
    const auto* key = names_.firstKeyFrom({tc, ForwardingGroupName()});
    return key != nullptr && key->tc == tc ? &key->name : nullptr;
  }

 private:
  // The names by traffic class, so that firstName needs no walk.
  struct TcAndName {
    TrafficClass tc;
    ForwardingGroupName name;
    friend auto operator<=>(const TcAndName&, const TcAndName&) = default;
  };
  using Names = Rok::OrderedMap<TcAndName, bool>;
  // Enters a name, and removes it again without stay(): also after an exception `names_` has the
  // entries that `map_` has.
  class NewName {
   public:
    NewName(Names& names, const TcAndName& key) : names_(&names), key_(key) {
      names.memberIs(key, true);
    }
    NewName(const NewName&) = delete;
    NewName& operator=(const NewName&) = delete;
    ~NewName() {
      if (names_ != nullptr) names_->deleteMember(key_);
    }
    void stay() { names_ = nullptr; }

   private:
    Names* names_;
    TcAndName key_;
  };

  Map map_;
  Names names_;
};

namespace Input {

// All QoS settings of the device but class maps, policy maps, ACLs, profiles and comments.
class Config final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<Nerit::IntfId> intfConfig{130};
    static constexpr Rok::Attribute<ServicePolicyKey> servicePolicyConfig{131};
    static constexpr Rok::Attribute<TrafficClass> tcToTxQueueMap{132};
    static constexpr Rok::Attribute<> forwardingGroupNameToTcMap{133};
    static constexpr Rok::Attribute<> queueNameToTxQueueIdMap{134};
    static constexpr Rok::Attribute<> pfcWatchdogTimeA{135};
    static constexpr Rok::Attribute<> pfcWatchdogTimeB{136};
    static constexpr Rok::Attribute<> pfcWatchdogAction{137};
    static constexpr Rok::Attribute<> pfcWatchdogTimeC{138};
    static constexpr Rok::Attribute<> pfcWatchdogPriorities{139};
  };
  using Interfaces =
      Rok::HashMap2018<Rok::Hm2018NEI<0x243185beu, Nerit::IntfId, Rok::Ptr<IntfConfig>>>;
  using ServicePolicies = Rok::HashMap2018<
      Rok::Hm2018NEI<0x550c7dc3u, ServicePolicyKey, Rok::Ptr<ServicePolicyConfig>>>;
  static constexpr std::size_t trafficClasses = 17;

  // Notifies: intfConfig, with the interface.
  const Interfaces& intfConfig() const { return intfConfig_; }
  Rok::Ptr<IntfConfig> intfConfig(const Nerit::IntfId& intfId) const {
    return intfConfig_.get(intfId);
  }
  void intfConfigIs(const Nerit::IntfId& intfId, const Rok::Ptr<IntfConfig>& config) {
    memberIs(intfConfig_, intfId, config, Attr::intfConfig);
  }
  void intfConfigDel(const Nerit::IntfId& intfId) {
    memberDel(intfConfig_, intfId, Attr::intfConfig);
  }

  // Notifies: servicePolicyConfig, with the key.
  const ServicePolicies& servicePolicyConfig() const { return servicePolicyConfig_; }
  Rok::Ptr<ServicePolicyConfig> servicePolicyConfig(const ServicePolicyKey& key) const {
    return servicePolicyConfig_.get(key);
  }
  void servicePolicyConfigIs(const ServicePolicyKey& key,
                             const Rok::Ptr<ServicePolicyConfig>& config) {
    memberIs(servicePolicyConfig_, key, config, Attr::servicePolicyConfig);
  }
  void servicePolicyConfigDel(const ServicePolicyKey& key) {
    memberDel(servicePolicyConfig_, key, Attr::servicePolicyConfig);
  }

  // Traffic class to tx queue; 16 means none. Notifies: tcToTxQueueMap, with the traffic class.
  // Throws: RangeException for a traffic class above 16.
  TxQueueId tcToTxQueueMap(TrafficClass tc) const {
    Rok::checkIndex(tc.value, trafficClasses);
    return tcToTxQueueMap_[tc.value];
  }
  void tcToTxQueueMapIs(TrafficClass tc, TxQueueId id) {
    Rok::checkIndex(tc.value, trafficClasses);
    if (tcToTxQueueMap_[tc.value] == id) return;
    tcToTxQueueMap_[tc.value] = id;
    notify(Attr::tcToTxQueueMap, tc);
  }

  // The maps of names, which the host mounts before any translator. Notifies: the attribute, when
  // the object is replaced.
  const Rok::Ptr<ForwardingGroupNameToTcMap>& forwardingGroupNameToTcMap() const {
    return forwardingGroupNameToTcMap_;
  }
  void forwardingGroupNameToTcMapIs(const Rok::Ptr<ForwardingGroupNameToTcMap>& map) {
    attributeIs(forwardingGroupNameToTcMap_, map, Attr::forwardingGroupNameToTcMap);
  }
  const Rok::Ptr<QueueNameToTxQueueIdMap>& queueNameToTxQueueIdMap() const {
    return queueNameToTxQueueIdMap_;
  }
  void queueNameToTxQueueIdMapIs(const Rok::Ptr<QueueNameToTxQueueIdMap>& map) {
    attributeIs(queueNameToTxQueueIdMap_, map, Attr::queueNameToTxQueueIdMap);
  }

  // The device-wide watchdog of priority flow control. The times are handed on in the device's own
  // unit; the priorities are a bit each. Notifies: the attribute.
  double pfcWatchdogTimeA() const { return pfcWatchdogTimeA_; }
  void pfcWatchdogTimeAIs(double v) { attributeIs(pfcWatchdogTimeA_, v, Attr::pfcWatchdogTimeA); }
  double pfcWatchdogTimeB() const { return pfcWatchdogTimeB_; }
  void pfcWatchdogTimeBIs(double v) { attributeIs(pfcWatchdogTimeB_, v, Attr::pfcWatchdogTimeB); }
  std::uint8_t pfcWatchdogAction() const { return pfcWatchdogAction_; }
  void pfcWatchdogActionIs(std::uint8_t v) {
    attributeIs(pfcWatchdogAction_, v, Attr::pfcWatchdogAction);
  }
  double pfcWatchdogTimeC() const { return pfcWatchdogTimeC_; }
  void pfcWatchdogTimeCIs(double v) { attributeIs(pfcWatchdogTimeC_, v, Attr::pfcWatchdogTimeC); }
  std::uint8_t pfcWatchdogPriorities() const { return pfcWatchdogPriorities_; }
  void pfcWatchdogPrioritiesIs(std::uint8_t v) {
    attributeIs(pfcWatchdogPriorities_, v, Attr::pfcWatchdogPriorities);
  }

 private:
  Interfaces intfConfig_;
  ServicePolicies servicePolicyConfig_;
  std::array<TxQueueId, trafficClasses> tcToTxQueueMap_{};
  Rok::Ptr<ForwardingGroupNameToTcMap> forwardingGroupNameToTcMap_;
  Rok::Ptr<QueueNameToTxQueueIdMap> queueNameToTxQueueIdMap_;
  double pfcWatchdogTimeA_ = 0;
  double pfcWatchdogTimeB_ = 0;
  std::uint8_t pfcWatchdogAction_ = 1;
  double pfcWatchdogTimeC_ = 0;
  std::uint8_t pfcWatchdogPriorities_ = 0;
};

}  // namespace Input
}  // namespace Qos
