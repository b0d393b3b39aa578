// What the comment of a tx queue names.
#pragma once

#include <string>

#include "Rok/Rok.h"
#include "host/Native.h"
#include "models/native/Values.h"

namespace host {

struct QueueComment {
  // That of a tx queue, be there a comment or not.
  static QueueComment of(const Native& native, const Nerit::IntfId& interface,
                         const Qos::TxQueue& queue);

  // Whether the queue's settings are not read from the device: its ECN block, and the others. Nothing
  // is read of a queue whose comment ends the process.
  bool speaksForEcn() const { return !isRead || !profile.empty(); }
  bool speaksForOthers() const { return !isRead || !policy.empty(); }

  Rok::String key;
  bool isRead = true;   // false: it ends the process that reads it, and names nothing
  std::string policy;   // empty: none
  std::string profile;  // likewise, of queue management
};

}  // namespace host
