#include "host/CommentFaults.h"

#include <map>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "host/CommentDocument.h"
#include "host/Json.h"
#include "host/Pointer.h"

namespace host {
namespace {

namespace json = host::rapidjson;

// Where the reader is.
using Path = Tokens;

std::string textOf(const json::Value& string) {
  return {string.GetString(), string.GetStringLength()};
}

CommentFault fault(const Path& path, const char* expected) {
  return {shownPointer(path), expected};
}

std::optional<CommentFault> needObject(const json::Value& value, const Path& path) {
  if (value.IsObject()) return std::nullopt;
  return fault(path, "an object");
}

// The fault that `check(key, value, path)` finds first in the members of what must be an object.
template <class Check>
std::optional<CommentFault> eachMember(const json::Value& object, const Path& path,
                                       const Check& check) {
  if (const auto found = needObject(object, path)) return found;
  for (const auto& member : object.GetObject()) {
    const std::string key = textOf(member.name);
    if (const auto found = check(key, member.value, below(path, key))) return found;
  }
  return std::nullopt;
}

// ===== Attachments

struct NameCheck {
  std::optional<CommentFault> fault;
  bool isMissing = false;  // the part is there and has no name: nothing further is read
};

NameCheck nameOf(const json::Value& metaData, const char* part) {
  const auto found = metaData.FindMember(part);
  if (found == metaData.MemberEnd()) return {};
  const Path path{std::string(metaDataKey), part};
  if (const auto wrong = needObject(found->value, path)) return {wrong};
  const auto name = found->value.FindMember("name");
  if (name == found->value.MemberEnd()) return {std::nullopt, true};
  if (!name->value.IsString()) return {fault(below(path, "name"), "a string")};
  return {};
}

// ===== Profiles

std::optional<CommentFault> rateFault(const std::string& key, const json::Value& value,
                                      const Path& path) {
  if (key == "cir" && !value.IsUint64()) return fault(path, "a whole number of at most 64 bits");
  if (key == "cir-pct" && !value.IsUint()) return fault(path, "a whole number of at most 32 bits");
  return std::nullopt;
}

std::optional<CommentFault> inputFault(const std::string& key, const json::Value& value,
                                       const Path& path) {
  if (key == "queue" && !value.IsString()) return fault(path, "a string");
  if (key == "weight" && !value.IsUint64()) return fault(path, "a whole number of at most 64 bits");
  return std::nullopt;
}

std::optional<CommentFault> schedulerFault(const std::string& key, const json::Value& value,
                                           const Path& path) {
  if (key == "one-rate-two-color") return eachMember(value, path, rateFault);
  if (key != "inputs") return std::nullopt;
  return eachMember(value, path,
                    [](const std::string&, const json::Value& input, const Path& inputPath) {
                      return eachMember(input, inputPath, inputFault);
                    });
}

}  // namespace

std::optional<CommentFault> attachmentFault(std::string_view comment) {
  const CommentDocument document(comment);
  const json::Value* metaData = document.metaData();
  if (metaData == nullptr) return std::nullopt;
  if (const auto found = needObject(*metaData, {std::string(metaDataKey)})) return found;
  for (const char* part : {"scheduler-policy", "queue-management-profile"}) {
    const NameCheck check = nameOf(*metaData, part);
    if (check.fault || check.isMissing) return check.fault;
  }
  return std::nullopt;
}

std::optional<CommentFault> profileFault(std::string_view comment) {
  const CommentDocument document(comment);
  const json::Value* metaData = document.metaData();
  if (metaData == nullptr) return std::nullopt;
  return eachMember(*metaData, {std::string(metaDataKey)},
                    [](const std::string&, const json::Value& scheduler, const Path& path) {
                      return eachMember(scheduler, path, schedulerFault);
                    });
}

std::string BadComment::reason() const {
  return "at " + fault.place + " of this comment: expected " + fault.expected;
}

std::string BadComment::text() const { return shownPointer(place()) + ": " + reason(); }

std::vector<BadComment> badComments(const Native& native, ReadComments read) {
  std::map<std::string, CommentFault> faults;  // by comment key
  const auto judge = [&](const Velmo::String& key, const auto& faultOf) {
    const Velmo::String text = native.cliConfig->comment(key);
    if (text.empty()) return;
    if (const auto found = faultOf(text)) faults.emplace(std::string_view(key), *found);
  };
  const auto& interfaces = native.qosConfig->intfConfig();
  for (auto i = interfaces.unsafeIterator(); i && read.ofQueues; ++i) {
    for (auto q = i->value()->txQueueConfig().unsafeIterator(); q; ++q) {
      judge(QosOc::CommentHelper::commentKey(i->key(), q->key()), attachmentFault);
    }
  }
  for (auto i = native.qosProfiles->config().unsafeIterator(); i && read.ofProfiles; ++i) {
    if (decodeSPProfileName(i->key()).empty()) continue;
    judge(QosOc::CommentHelper::profileCommentKey(i->key()), profileFault);
  }
  std::vector<BadComment> bad;
  for (auto& [key, fault] : faults) bad.push_back({key, std::move(fault)});
  return bad;
}

std::vector<std::string> commentFaults(const Native& native) {
  std::vector<std::string> lines;
  for (const BadComment& comment : badComments(native))
    lines.push_back(comment.text() + endsTheProgram);
  return lines;
}

}  // namespace host
