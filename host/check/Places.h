// Places of the native document, by the native objects that stand there.
#pragma once

#include <string>

#include "host/Pointer.h"
#include "models/native/ServicePolicy.h"
#include "models/native/Values.h"

namespace host {

// The key of a tx queue as documents spell it: "uc-3".
inline std::string queueText(const Qos::TxQueue& queue) {
  return (queue.type == Qos::unicast ? "uc-" : "mc-") + std::to_string(queue.id.value);
}

// A tx queue of an interface.
inline Tokens queuePlace(const Nerit::IntfId& interface, const Qos::TxQueue& queue) {
  return {"interfaces", std::string(interface.stringValue()), "tx-queues", queueText(queue)};
}

inline Tokens servicePolicyPlace(const Qos::ServicePolicyKey& key) {
  return {"service-policies", std::to_string(key.keyTag) + ':' + std::string(key.pmapName)};
}

}  // namespace host
