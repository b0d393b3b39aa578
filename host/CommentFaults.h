// What a comment must not hold. A comment with a value of the wrong type ends the process that
// translates it; this finds such a value beforehand, and says where it is.
//
// It goes by the same rules as the library's reader: what the library doesn't read is no fault.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Dorpel/Export.h"
#include "host/Native.h"

namespace QOS_EXPORT host {

// One value of the wrong type.
struct CommentFault {
  std::string place;     // a JSON Pointer into the comment, as messages show it
  std::string expected;  // "an object"
};

// In a comment that is read as that of a transmit queue. Nothing for a comment that can be read,
// also for one that is no document of ours.
std::optional<CommentFault> attachmentFault(std::string_view comment);
// In a comment that is read as that of a QoS profile.
std::optional<CommentFault> profileFault(std::string_view comment);

// A comment of the device that ends the process that translates it.
struct BadComment {
  std::string key;
  CommentFault fault;

  // In the native document.
  std::vector<std::string> place() const { return {"comments", key}; }
  // "at PLACE of this comment: expected EXPECTED"
  std::string reason() const;
  // The same behind the comment's place: "/comments/KEY: at ..."
  std::string text() const;
};

// What a message adds about a comment that nothing keeps from being read.
inline constexpr const char* endsTheProgram = "; it ends the program that translates it";

// Which comments the roots that are there read.
struct ReadComments {
  bool ofQueues = true;    // those of tx queues
  bool ofProfiles = true;  // those of the QoS profiles that stand for scheduler policies
};
// The bad ones among them, by key.
std::vector<BadComment> badComments(const Native& native, ReadComments read = {});

// A line for each comment of the device that ends the process that translates it: those of its
// tx queues and of the QoS profiles that stand for scheduler policies, by key. The line begins
// with the comment's place in the native document.
std::vector<std::string> commentFaults(const Native& native);

}  // namespace host
