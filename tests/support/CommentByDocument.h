// Comments read the plain way, by RapidJSON's document of all of the text: what the reader of the
// library, which makes no document, must come to. For texts in which host/CommentFaults.h finds no
// fault.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "QosOpenConfig/QosOpenConfigTypes.h"
#include "host/Json.h"

namespace support {

// What a comment says, and the beginning of the trace line about it; empty when there is none.
template <class Info>
struct Reading {
  Info info;
  std::string remark;
};

namespace ByDocument {

using Json = host::rapidjson::Value;

struct Comment {
  host::rapidjson::Document document;
  const Json* metaData = nullptr;
  std::string remark;

  explicit Comment(std::string_view text) {
    // Parse() of a text with a size takes any byte of a byte-order mark off its front, also one that
    // stands there alone; a comment has none.
    host::rapidjson::MemoryStream stream(text.data(), text.size());
    document.ParseStream<host::rapidjson::kParseIterativeFlag, host::rapidjson::UTF8<>>(stream);
    const bool isWhole = !document.HasParseError() && text.find('\0') == text.npos;
    if (!isWhole || !document.IsObject()) {
      remark = "Comment not json: ";
    } else if (const auto found = document.FindMember("MetaData-OpenConfig");
               found == document.MemberEnd()) {
      remark = "Comment has no MetaData-OpenConfig: ";
    } else {
      metaData = &found->value;
    }
  }
};

// The name in a part; empty without the part, and nothing for a part without a name.
inline std::optional<Rok::String> nameIn(const Json& metaData, const char* part) {
  const auto found = metaData.FindMember(part);
  if (found == metaData.MemberEnd()) return Rok::String();
  const auto name = found->value.FindMember("name");
  if (name == found->value.MemberEnd()) return std::nullopt;
  return Rok::String(name->value.GetString());
}

inline std::string_view keyOf(const Json::Member& member) {
  return {member.name.GetString(), member.name.GetStringLength()};
}

inline QosOc::OneRateTwoColorCommentInfo rate(const Json& object) {
  QosOc::OneRateTwoColorCommentInfo result;
  for (const auto& member : object.GetObject()) {
    if (keyOf(member) == "cir") result.cirIs(member.value.GetUint64());
    if (keyOf(member) == "cir-pct") {
      result.cirPctIs(static_cast<std::uint8_t>(member.value.GetUint()));
    }
  }
  return result;
}

inline QosOc::SchedulerInputCommentInfo input(const char* inputId, const Json& object) {
  QosOc::SchedulerInputCommentInfo result{Rok::String(inputId)};
  for (const auto& member : object.GetObject()) {
    if (keyOf(member) == "queue") result.qIs(member.value.GetString());
    if (keyOf(member) == "weight") result.weightIs(member.value.GetUint64());
  }
  return result;
}

inline QosOc::SchedulerCommentInfo scheduler(const char* sequence, const Json& object) {
  QosOc::SchedulerCommentInfo result(
      static_cast<std::uint32_t>(std::strtol(sequence, nullptr, 10)));
  for (const auto& member : object.GetObject()) {
    if (keyOf(member) == "priority") result.priorityIs(QosOc::STRICT);
    if (keyOf(member) == "one-rate-two-color") result.oneRateTwoColorIs(rate(member.value));
    if (keyOf(member) != "inputs") continue;
    for (const auto& one : member.value.GetObject()) {
      result.inputsIs(input(one.name.GetString(), one.value));
    }
  }
  return result;
}

}  // namespace ByDocument

inline Reading<QosOc::CommentInfo> attachmentByDocument(std::string_view text) {
  const ByDocument::Comment comment(text);
  if (comment.metaData == nullptr) return {{}, comment.remark};
  const auto policy = ByDocument::nameIn(*comment.metaData, "scheduler-policy");
  if (!policy) return {{}, "deserializeJsonComment SP name not found"};
  const auto profile = ByDocument::nameIn(*comment.metaData, "queue-management-profile");
  if (!profile) return {{}, "deserializeJsonComment QMP name not found"};
  return {{QosOc::SchedulerPolicyCommentInfo(*policy),
           QosOc::QueueManagementProfileCommentInfo(*profile)},
          ""};
}

inline Reading<QosOc::SchedulerPolicyProfileCommentInfo> profileByDocument(std::string_view text) {
  const ByDocument::Comment comment(text);
  QosOc::SchedulerPolicyProfileCommentInfo info("");
  if (comment.metaData == nullptr) return {info, comment.remark};
  for (const auto& member : comment.metaData->GetObject()) {
    info.schedulersIs(ByDocument::scheduler(member.name.GetString(), member.value));
  }
  return {info, ""};
}

}  // namespace support
