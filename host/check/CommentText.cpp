#include "host/check/CommentText.h"

#include <cstdlib>
#include <map>
#include <optional>
#include <vector>

#include "host/JsonStream.h"
#include "host/Nearest.h"
#include "host/Pointer.h"
#include "host/Text.h"

namespace host {
namespace {

using Json = rapidjson::Value;
using Names = std::vector<std::string_view>;

constexpr std::string_view metaDataKey = "MetaData-OpenConfig";
// Of the metadata of a tx queue.
constexpr std::string_view parts[] = {"scheduler-policy", "queue-management-profile"};

std::string_view textOf(const Json& string) {
  return {string.GetString(), string.GetStringLength()};
}

class Judge {
 public:
  explicit Judge(const CommentFindings& findings) : findings_(findings) {}

  // The object under the metadata's key, if the text gets there; null where nothing is read.
  const Json* metaData(std::string_view text) {
    if (!parse(text)) return nullptr;
    const auto found = document_.FindMember(rapidjson::StringRef(metaDataKey.data()));
    if (found == document_.MemberEnd()) {
      nearlyMetaData();
      return nullptr;
    }
    path_ = {std::string(metaDataKey)};
    return found->value.IsObject() ? &found->value : nullptr;
  }

  void attachment(const Json& metaData) {
    eachMember(metaData, {std::begin(parts), std::end(parts)},
               [&](std::string_view part, const Json& value) {
                 if (!value.IsObject()) return;
                 eachMember(value, {"name"}, [&](std::string_view, const Json& name) {
                   if (name.IsString() && name.GetStringLength() == 0) {
                     find("comment-name", "the name is empty, and says nothing; name the " +
                                              std::string(part) + " or leave it out");
                   }
                 });
                 if (!value.HasMember("name")) {
                   find("comment-name",
                        "\"name\" is missing, and with it all of the comment is passed over; "
                        "give the " +
                            std::string(part) + " a name or leave it out");
                 }
               });
  }

  void profile(const Json& metaData) {
    std::map<std::uint32_t, std::string_view> sequences;
    for (const auto& [key, value] : metaData.GetObject()) {
      const std::string_view name = textOf(key);
      path_.emplace_back(name);
      const std::uint32_t sequence = judgeSequence(name);
      const auto [other, isNew] = sequences.emplace(sequence, name);
      if (!isNew) {
        find("comment-scheduler", quotedName(other->second) + " is scheduler " +
                                      std::to_string(sequence) +
                                      ", too: the last of them counts; " + "keep one");
      }
      if (value.IsObject()) scheduler(value);
      path_.pop_back();
    }
  }

 private:
  static std::string quotedName(std::string_view name) { return quoted(name); }

  void find(std::string_view kind, const std::string& what) {
    findings_(kind, "at " + shownPointer(path_) + " of this comment: " + what);
  }

  // False when nothing of the text is read.
  bool parse(std::string_view text) {
    // For the reader a comment with a NUL in it is no document.
    const bool isCut = text.find('\0') != text.npos;
    constexpr unsigned flags = rapidjson::kParseIterativeFlag;
    if (!isCut) document_.Parse<flags>(text.data(), text.size());
    if (!isCut && !document_.HasParseError() && document_.IsObject()) return true;
    if (!namesMetaData(text)) return false;
    std::string reason = "a NUL byte";
    if (!isCut) {
      reason = document_.HasParseError()
                   ? std::string(rapidjson::GetParseError_En(document_.GetParseError()))
                   : "it is no object.";
    }
    findings_("comment-json",
              "names " + std::string(metaDataKey) +
                  " and is not one JSON object, so nothing of it is read: " + reason +
                  " (at byte " + std::to_string(document_.GetErrorOffset() + 1) + "); mend it");
    return false;
  }

  // A member that was probably meant to be the metadata.
  void nearlyMetaData() {
    for (const auto& member : document_.GetObject()) {
      const std::string_view name = textOf(member.name);
      if (std::find(std::begin(parts), std::end(parts), name) != std::end(parts)) {
        findings_("comment-member", "the member " + quotedName(name) +
                                        " of this comment stands outside of its metadata and is "
                                        "not read; write it below \"" +
                                        std::string(metaDataKey) + '"');
      }
      if (nearest(name, {metaDataKey}).empty()) continue;
      const bool isCase = isSameInAnyCase(name, metaDataKey);
      findings_(isCase ? "comment-case" : "comment-member",
                "the member " + quotedName(name) + " of this comment is not read; write \"" +
                    std::string(metaDataKey) + '"');
    }
  }

  // Goes through the members that an object may have. Others are findings, and so are repeated ones.
  template <class Act>
  void eachMember(const Json& object, const Names& known, const Act& act) {
    std::vector<std::string_view> seen;
    for (const auto& [key, value] : object.GetObject()) {
      const std::string_view name = textOf(key);
      path_.emplace_back(name);
      const bool isKnown = std::find(known.begin(), known.end(), name) != known.end();
      const bool isTwice = std::find(seen.begin(), seen.end(), name) != seen.end();
      if (!isKnown) {
        const char* remedy = nearest(name, known).empty() ? "; leave it out" : "; rename it";
        find("comment-member", "this member is not read" + didYouMeanOf(name, known) + remedy);
      } else if (isTwice) {
        find("comment-member", "the same member twice; keep one");
      } else {
        act(name, value);
      }
      seen.push_back(name);
      path_.pop_back();
    }
  }

  // The sequence number that the reader makes of a scheduler's key.
  std::uint32_t judgeSequence(std::string_view key) {
    const auto sequence =
        static_cast<std::uint32_t>(std::strtol(std::string(key).c_str(), nullptr, 10));
    if (std::to_string(sequence) != key) {
      find("comment-scheduler", "a scheduler's key is a sequence number, and this one is read as " +
                                    std::to_string(sequence) + "; write a number");
    }
    return sequence;
  }

  void scheduler(const Json& scheduler) {
    const Names known{"priority", "one-rate-two-color", "inputs"};
    eachMember(scheduler, known, [&](std::string_view name, const Json& value) {
      if (name == "priority") judgePriority(value);
      if (!value.IsObject()) return;
      if (name == "one-rate-two-color") rates(value);
      if (name == "inputs") inputs(value);
    });
  }

  void judgePriority(const Json& priority) {
    if (priority.IsString() && textOf(priority) == "STRICT") return;
    find("comment-priority",
         "any priority is read as STRICT, whatever its value; write \"STRICT\" or leave it out");
  }

  void rates(const Json& rates) {
    eachMember(rates, {"cir", "cir-pct"}, [&](std::string_view name, const Json& value) {
      if (name != "cir-pct" || !value.IsUint() || value.GetUint() <= 255) return;
      find("comment-percent",
           "of a percentage the low 8 bits count: " + std::to_string(value.GetUint()) +
               " is read as " + std::to_string(value.GetUint() & 0xff) + "; write 1 to 100");
    });
  }

  void inputs(const Json& inputs) {
    std::vector<std::string_view> seen;
    for (const auto& [key, value] : inputs.GetObject()) {
      path_.emplace_back(textOf(key));
      if (value.IsObject()) {
        eachMember(value, {"queue", "weight"}, [](std::string_view, const Json&) {});
      }
      path_.pop_back();
    }
  }

  const CommentFindings& findings_;
  rapidjson::Document document_;
  Tokens path_;  // in the comment
};

}  // namespace

bool namesMetaData(std::string_view text) {
  const auto found = std::search(text.begin(), text.end(), metaDataKey.begin(), metaDataKey.end(),
                                 [](char a, char b) { return lower(a) == lower(b); });
  return found != text.end();
}

void judgeAttachmentText(std::string_view text, const CommentFindings& findings) {
  Judge judge(findings);
  if (const Json* metaData = judge.metaData(text)) judge.attachment(*metaData);
}

void judgeProfileText(std::string_view text, const CommentFindings& findings) {
  Judge judge(findings);
  if (const Json* metaData = judge.metaData(text)) judge.profile(*metaData);
}

}  // namespace host
