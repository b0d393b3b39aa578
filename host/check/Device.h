// The native objects as the rules of `check` look at them: tx queues with what their comments name,
// and the names that refer to each other. Read once, at the start.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "QosOpenConfig/QosOpenConfigTypes.h"
#include "host/Native.h"
#include "host/check/Classification.h"
#include "host/check/Finding.h"
#include "host/check/Places.h"

namespace host {

// A tx queue of an interface.
struct DeviceQueue {
  Nerit::IntfId interface;
  Qos::TxQueue queue;
  Rok::Ptr<Qos::TxQueueConfig> config;
  Rok::String commentKey;
  bool isRead = true;   // false: its comment ends the process that reads it
  std::string policy;   // that its comment names; empty: none
  std::string profile;  // likewise, of queue management

  Tokens place() const { return queuePlace(interface, queue); }
  Tokens comment() const { return {"comments", std::string(commentKey)}; }
  // Whether the model has it. A comment that names a profile keeps a queue from being made of its ECN
  // settings, also of none, and one that names a policy from being made of the others.
  bool isMade() const;
};

// A QoS profile that stands for a scheduler policy.
struct DevicePolicy {
  Rok::String profile;
  Rok::String commentKey;
  QosOc::SchedulerPolicyProfileCommentInfo info;  // what its comment says
  bool isRead = true;  // false: the comment ends the process that reads it

  Tokens comment() const { return {"comments", std::string(commentKey)}; }
};

struct Device {
  explicit Device(const Native& native);

  // Whether the model has a queue of this name: one of queue-names or of an interface.
  bool isQueue(std::string_view name) const;

  const Native& native;
  std::map<Nerit::IntfId, std::vector<DeviceQueue>> interfaces;  // queues in order of type and id
  std::map<std::string, Nerit::IntfId, std::less<>> shortNames;  // of interfaces
  // The name of each tx queue id: of several, the last.
  std::map<unsigned, std::string> queueNames;
  std::map<std::string, DevicePolicy, std::less<>> policies;  // by the name of the policy
  std::set<std::string> profiles;  // of queue management, of those that have tx queue 0
  Classification classification;
};

}  // namespace host
