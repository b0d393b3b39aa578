// Native forwarding-group names, queue names and the traffic-class array into OpenConfig forwarding
// groups and named queues.
//
// The names are read once, at start. Afterwards only the array is followed.
//
// What wakes what:
//   tcToTxQueueMap of Qos::Input::Config    ForwardingGroupKivToOcSm::handleTcToTxQueueMap(tc)
#pragma once

#include "Rok/Rok.h"
#include "models/native/QosInput.h"
#include "models/openconfig/ForwardingGroup.h"
#include "models/openconfig/Queue.h"

namespace QosOc {

// The root, and the only machine of its kind.
class QOS_EXPORT ForwardingGroupKivToOcSm final
    : public Rok::StateMachine<ForwardingGroupKivToOcSm> {
 public:
  static constexpr std::string_view rokTypeName = "ForwardingGroupKivToOcSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"cliConfig", &Self::cliConfig},
                      Rok::Argument{"forwardingGroupConfigDir", &Self::forwardingGroupConfigDir},
                      Rok::Argument{"queuesDir", &Self::queuesDir}};
  }
  using GroupNames = Rok::ValueMap<0x8eb44a87u, Qos::TrafficClass, Qos::ForwardingGroupName>;
  using QueueNames = Rok::ValueMap<0xdb0c2e0du, Qos::TxQueueId, Qos::QueueName>;

  static auto ForwardingGroupKivToOcSmIs(const auto&... arguments) { return create(arguments...); }

  Rok::Ptr<Qos::Input::Config const> cliConfig() const { return cliConfig_.ptr(); }
  Rok::Out<Config::ForwardingGroupsDir> forwardingGroupConfigDir() const {
    return forwardingGroupConfigDir_;
  }
  Rok::Out<Config::QueuesDir> queuesDir() const { return queuesDir_; }

  // The maps of names as handleInitialized read them, inverted. A missing key reads as the empty
  // name.
  Qos::ForwardingGroupName trafficClassToForwardingGroupNameMap(Qos::TrafficClass tc) const {
    return groupNames_.get(tc);
  }
  void trafficClassToForwardingGroupNameMapIs(Qos::TrafficClass tc,
                                              const Qos::ForwardingGroupName& name) {
    groupNames_.is(tc, name);
  }
  void trafficClassToForwardingGroupNameMapDel(Qos::TrafficClass tc) { groupNames_.del(tc); }
  void trafficClassToForwardingGroupNameMapDelAll() { groupNames_.delAll(); }
  Qos::QueueName txQueueIdToQueueNameMap(Qos::TxQueueId id) const { return queueNames_.get(id); }
  void txQueueIdToQueueNameMapIs(Qos::TxQueueId id, const Qos::QueueName& name) {
    queueNames_.is(id, name);
  }
  void txQueueIdToQueueNameMapDel(Qos::TxQueueId id) { queueNames_.del(id); }
  void txQueueIdToQueueNameMapDelAll() { queueNames_.delAll(); }

  // A traffic class leads to another queue, or to none.
  // Throws: RangeException for a traffic class above 16; the group stays as it was.
  void handleTcToTxQueueMap(Qos::TrafficClass tc);
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using RokCliConfig =
      Rok::Watch<Self, Qos::Input::Config,
                 Rok::On<Qos::Input::Config::Attr::tcToTxQueueMap, &Self::handleTcToTxQueueMap>>;

  ForwardingGroupKivToOcSm(Rok::In<Qos::Input::Config> cliConfig,
                           Rok::Out<Config::ForwardingGroupsDir> forwardingGroupConfigDir,
                           Rok::Out<Config::QueuesDir> queuesDir);
  auto parts() { return std::tie(cliConfig_); }
  void makeQueues();
  void makeForwardingGroups();
  void writeForwardingGroup(const Rok::String& name, Qos::TxQueueId id);

  RokCliConfig cliConfig_;
  Rok::Ptr<Config::ForwardingGroupsDir> forwardingGroupConfigDir_;
  Rok::Ptr<Config::QueuesDir> queuesDir_;
  GroupNames groupNames_;
  QueueNames queueNames_;
};

// ===== The factory

// Deaf without cliConfig. Requires: forwardingGroupConfigDir, queuesDir.
// Throws: MutatorArgNullPointerException "queueNameToTxQueueIdMap" or "forwardingGroupNameToTcMap"
// when that map is not mounted; nothing is written then. RangeException when a group's traffic
// class is above 16; what was written before stays.
QOS_EXPORT Rok::Factory<ForwardingGroupKivToOcSm> forwardingGroupKivToOcSmFactory;

}  // namespace QosOc
