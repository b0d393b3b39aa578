// The feed as JSON lines, as `qosoc translate --feed` prints it:
//
//   {"line":3,"delete":["/qos/queues/queue[name=EF]"],"update":{"/qos/...":47}}
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "Dorpel/Export.h"
#include "host/JsonWriter.h"
#include "host/feed/LeafChanges.h"

namespace QOS_EXPORT host {

// Writes the members "delete" and "update" of an object that is open; `updates` writes the members
// of the latter.
void writeChanges(JsonWriter& out, const std::vector<std::string>& deleted,
                  const std::function<void()>& updates);

// What stands before the changes.
struct FeedHead {
  std::uint64_t line;
  std::string_view epoch = {};  // left out when it is empty
  bool isRefused = false;
};

// Writes one line, without its end. With a sink, that gets the text, and the result is empty.
std::string feedLine(const FeedHead& head, const LeafChanges& changes,
                     const TextSink& sink = nullptr);

// A text that no two starts share: the time of the call, in UTC, and a random number.
std::string newEpoch();

}  // namespace host
