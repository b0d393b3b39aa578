// The native objects as the rules of `check` look at them: tx queues with what their comments name,
// and the names that refer to each other. Read once, at the start.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "host/Native.h"
#include "host/check/Finding.h"

namespace host {

// A tx queue of an interface.
struct DeviceQueue {
  Nerit::IntfId interface;
  Qos::TxQueue queue;
  Rok::Ptr<Qos::TxQueueConfig> config;
  Rok::String commentKey;
  std::string policy;   // that its comment names; empty: none
  std::string profile;  // likewise, of queue management

  Tokens place() const;  // in the native document
  Tokens comment() const { return {"comments", std::string(commentKey)}; }
};

struct Device {
  explicit Device(const Native& native);

  const Native& native;
  std::map<Nerit::IntfId, std::vector<DeviceQueue>> interfaces;  // queues in order of type and id
  // The name of each tx queue id: of several, the last.
  std::map<unsigned, std::string> queueNames;
};

// The key of a tx queue as documents spell it: "uc-3".
std::string queueText(const Qos::TxQueue& queue);

}  // namespace host
