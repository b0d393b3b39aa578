// What the rows of the table of machines share: the keys of the House, and what children have in
// common.
#pragma once

#include <gtest/gtest.h>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "QosOpenConfig/QosOpenConfigForwardingGroupKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigPfcKivToOCSm.h"
#include "QosOpenConfig/QosOpenConfigQueueKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "tests/support/Machines.h"

namespace support {

// The keys of the House.
inline const Velmo::String termName("__yang_[c4]_[t]");
inline const Velmo::String otherTermName("__yang_[c4]_[other]");
inline const Velmo::String policyMapName("__yang_[IPV4__c4][IPV6__c6]");
inline const Velmo::String otherPolicyMapName("__yang_[IPV4__other]");
inline const Velmo::String profileName("__YANG_QMP_[drop]");
inline const Nerit::IntfId ethernet1("Ethernet1");
inline const Nerit::IntfId ethernet3("Ethernet3");
inline const Nerit::IntfId otherInterface("Ethernet9");
inline constexpr Qos::TxQueue txQueue0{Qos::TxQueueId{0}, Qos::unicast};
inline constexpr Qos::TxQueue txQueue1{Qos::TxQueueId{1}, Qos::unicast};
inline constexpr Qos::TxQueue otherTxQueue{Qos::TxQueueId{9}, Qos::unicast};

inline Qos::IntfConfig& interfaceIn(const House& house, const Nerit::IntfId& intfId) {
  return **house.native.qosConfig->intfConfig().find(intfId);
}
inline Qos::PolicyMapConfig& policyMapIn(const House& house) {
  return **policyMaps(house.native).pmap().find(policyMapName);
}

// What the children of a collection have in common.
template <class Sm, class ParentSm>
struct ChildFacts {
  using Parent = ParentSm;
  // The child under the key of the table.
  static Rok::Ptr<Sm> in(const Parent& parent) {
    return collectionOf(parent).child(Facts<Sm>::key());
  }
  static const auto& collectionOf(const Parent& parent) {
    return std::invoke(Facts<Sm>::collection.children, parent);
  }
};

// What children of interfaces, and of tx queues, have in common.
template <class Sm, class ParentSm>
struct InterfaceFacts : ChildFacts<Sm, ParentSm> {
  static Nerit::IntfId otherKey() { return otherInterface; }
  static auto made(const Nerit::IntfId& key) { return Rok::make<Qos::IntfConfig>(key); }
  static void mount(const House& house, const Rok::Ptr<Qos::IntfConfig>& input) {
    house.native.qosConfig->intfConfigIs(Facts<Sm>::key(), input);
  }
  static auto computed() {
    return std::tuple{Computed{&Sm::intfId, Nerit::IntfId(Facts<Sm>::key())}};
  }
};
template <class Sm, class ParentSm>
struct TxQueueFacts : ChildFacts<Sm, ParentSm> {
  static Qos::TxQueue key() { return txQueue1; }
  static Qos::TxQueue otherKey() { return otherTxQueue; }
  static auto made(const Qos::TxQueue& key) { return Rok::make<Qos::TxQueueConfig>(key); }
  static void mount(const House& house, const Rok::Ptr<Qos::TxQueueConfig>& input) {
    interfaceIn(house, ethernet3).txQueueConfigIs(txQueue1, input);
  }
  static auto computed() { return std::tuple{Computed{&Sm::txQueue, Facts<Sm>::key()}}; }
};

}  // namespace support
