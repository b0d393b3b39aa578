// A device with names of forwarding groups and queues, and the output that a root keeps for them.
#pragma once

#include <map>
#include <set>
#include <string>

#include "QosOpenConfig/QosOpenConfigForwardingGroupKivToOcSm.h"

namespace support {

struct ForwardingDevice {
  Rok::Ptr<Qos::Input::Config> config = Rok::make<Qos::Input::Config>();
  Rok::Ptr<Qos::ForwardingGroupNameToTcMap> groupNames =
      Rok::make<Qos::ForwardingGroupNameToTcMap>();
  Rok::Ptr<Qos::QueueNameToTxQueueIdMap> queueNames = Rok::make<Qos::QueueNameToTxQueueIdMap>();
  Rok::Ptr<QosOc::Config::ForwardingGroupsDir> groups =
      Rok::make<QosOc::Config::ForwardingGroupsDir>();
  Rok::Ptr<QosOc::Config::QueuesDir> queues = Rok::make<QosOc::Config::QueuesDir>();
  Rok::Ptr<QosOc::ForwardingGroupKivToOcSm> root;

  ForwardingDevice() {
    config->forwardingGroupNameToTcMapIs(groupNames);
    config->queueNameToTxQueueIdMapIs(queueNames);
  }

  // Native writes.
  void group(const char* name, unsigned char tc) {
    groupNames->forwardingGroupNameToTcIs(name, tc);
  }
  void queue(const char* name, unsigned char id) { queueNames->queueNameToTxQueueIdIs(name, id); }
  // Leads a traffic class to a tx queue; 16 to none.
  void lead(unsigned char tc, unsigned char id) { config->tcToTxQueueMapIs(tc, id); }

  // Starts and stops the root.
  void start() { root = QosOc::forwardingGroupKivToOcSmFactory(config, groups, queues); }
  void stop() { root = nullptr; }
  void restart() {
    stop();
    start();
  }

  // The output: each group's key to its output queue.
  std::map<std::string, std::string> model() const {
    std::map<std::string, std::string> result;
    for (auto i = groups->forwardingGroup().iterator(); i; ++i) {
      const auto& group = *i.currNodeNonStale()->value();
      result[std::string(std::string_view(i.key()))] =
          std::string(std::string_view(group.config().outputQueue));
    }
    return result;
  }
  std::set<std::string> namedQueues() const {
    std::set<std::string> result;
    for (auto i = queues->q().iterator(); i; ++i) result.emplace(std::string_view(i.key()));
    return result;
  }
};

}  // namespace support
