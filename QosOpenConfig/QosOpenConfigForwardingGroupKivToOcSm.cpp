#include "QosOpenConfig/QosOpenConfigForwardingGroupKivToOcSm.h"

#include "QosOpenConfig/QosOpenConfigHelperNames.h"

namespace QosOc {
namespace {

constinit Rok::TraceHandle traceHandle("OpenConfigQos", false);

constexpr Rok::TraceLevel handler{traceHandle, 2};
constexpr Rok::TraceLevel detail{traceHandle, 9};

}  // namespace

ForwardingGroupKivToOcSm::ForwardingGroupKivToOcSm(
    Rok::In<Qos::Input::Config> cliConfig,
    Rok::Out<Config::ForwardingGroupsDir> forwardingGroupConfigDir,
    Rok::Out<Config::QueuesDir> queuesDir)
    : cliConfig_(*this, cliConfig),
      forwardingGroupConfigDir_(forwardingGroupConfigDir),
      queuesDir_(queuesDir) {
  rokInitialize<&Self::handleInitialized>();
}

void ForwardingGroupKivToOcSm::handleTcToTxQueueMap(Qos::TrafficClass tc) {
  Rok::traceLine(handler, "ForwardingGroupKivToOcSm handleTcToTxQueueMap tc ", tc);
  const Rok::String groupName = trafficClassToForwardingGroupNameMap(tc).name;
  // A traffic class that had no group at start deletes the group of the empty name. That is
  // nothing, unless the native side names a group so: an empty name means none here.
  if (groupName.empty()) return forwardingGroupConfigDir_->forwardingGroupDel(groupName);
  const Qos::TxQueueId id = cliConfig_->tcToTxQueueMap(tc);
  // Unlike at start, a traffic class that loses its queue loses its group. It comes back by the
  // same name with the next queue.
  if (id == Qos::noTxQueue) return forwardingGroupConfigDir_->forwardingGroupDel(groupName);
  writeForwardingGroup(groupName, id);
}

void ForwardingGroupKivToOcSm::handleInitialized() {
  Rok::traceLine(handler, "ForwardingGroupKivToOcSm handleInitialized");
  Helper::requireQueueNames(*cliConfig_);
  Helper::requireGroupNames(*cliConfig_);
  makeQueues();
  makeForwardingGroups();
}

// One named queue for each queue name, whatever its id: a name that holds 16 gets its queue too.
// Where several names hold one id, the last in name order is the one that groups are led to.
void ForwardingGroupKivToOcSm::makeQueues() {
  const auto& names = cliConfig_->queueNameToTxQueueIdMap()->queueNameToTxQueueId();
  for (const auto& [name, id] : names) {
    txQueueIdToQueueNameMapIs(id, name);
    queuesDir_->qIs(Config::Queue(name.name));
  }
}

// One group for each forwarding-group name, with the queue of its traffic class or with none. Where
// several names hold one traffic class, later changes reach the last in name order alone, while a
// term's action takes the first. Devices with such names rely on both.
void ForwardingGroupKivToOcSm::makeForwardingGroups() {
  const auto& names = cliConfig_->forwardingGroupNameToTcMap()->forwardingGroupNameToTc();
  for (const auto& [groupName, tc] : names) {
    Rok::traceOf(detail, *this, " forwardingGroup: ", groupName, " tc ", tc);
    trafficClassToForwardingGroupNameMapIs(tc, groupName);
    writeForwardingGroup(groupName.name, cliConfig_->tcToTxQueueMap(tc));
  }
}

void ForwardingGroupKivToOcSm::writeForwardingGroup(const Rok::String& name, Qos::TxQueueId id) {
  Config::ForwardingGroupConfig config{name, {}};
  if (id != Qos::noTxQueue) {
    config.outputQueue = txQueueIdToQueueNameMap(id).name;
    Rok::traceOf(detail, *this, " queueName ", config.outputQueue, " qId ", id);
  }
  forwardingGroupConfigDir_->forwardingGroupIs(name)->configIs(config);
}

Rok::Ptr<ForwardingGroupKivToOcSm> forwardingGroupKivToOcSmFactory(
    Rok::In<Qos::Input::Config> cliConfig,
    Rok::Out<Config::ForwardingGroupsDir> forwardingGroupConfigDir,
    Rok::Out<Config::QueuesDir> queuesDir) {
  return ForwardingGroupKivToOcSm::ForwardingGroupKivToOcSmIs(cliConfig, forwardingGroupConfigDir,
                                                              queuesDir);
}

}  // namespace QosOc
