#include "host/check/CommentText.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>
#include <vector>

#include "host/CommentDocument.h"
#include "host/Nearest.h"
#include "host/Pointer.h"
#include "host/Text.h"
#include "host/check/MetaDataName.h"

namespace host {
namespace {

using Json = rapidjson::Value;
using Names = std::vector<std::string_view>;

// Of a member that stands in an object twice, the one that its reader takes.
enum class Read : std::uint8_t { first, last };

std::string_view textOf(const Json& string) {
  return {string.GetString(), string.GetStringLength()};
}

std::string quotedKey() { return quoted(metaDataKey); }

class TextRules {
 public:
  explicit TextRules(const CommentFindings& findings) : findings_(findings) {}

  // Goes on with the object under the metadata's key, if the text gets there.
  template <class Rest>
  void judge(std::string_view text, const Rest& rest) {
    const CommentDocument comment(text);
    if (comment.object() == nullptr) return judgeBroken(metaDataWord(text), comment);
    judgeRoot(*comment.object());
    const Json* metaData = comment.metaData();
    if (metaData == nullptr || !metaData->IsObject()) return;
    path_ = {std::string(metaDataKey)};
    rest(*metaData);
  }

  void attachment(const Json& metaData) {
    const Names parts{std::begin(attachmentParts), std::end(attachmentParts)};
    eachMember(metaData, parts, Read::first, [&](std::string_view part, const Json& value) {
      if (!value.IsObject()) return;
      eachMember(value, {"name"}, Read::first, [&](std::string_view, const Json& name) {
        if (!name.IsString()) return;
        judgeNul(textOf(name));
        if (name.GetStringLength() == 0) {
          find("comment-name", "the name is empty, and says nothing; name the " +
                                   std::string(part) + " or leave it out");
        }
      });
      if (!value.HasMember("name")) {
        find("comment-name",
             "\"name\" is missing, and with it all of the comment is passed over; give the " +
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
        find("comment-scheduler", quoted(other->second) + " is scheduler " +
                                      std::to_string(sequence) +
                                      ", too: the last of them counts; keep one");
      }
      if (value.IsObject()) scheduler(value);
      path_.pop_back();
    }
  }

 private:
  void find(std::string_view kind, const std::string& what) {
    findings_(kind, "at " + shownPointer(path_) + " of this comment: " + what);
  }

  // A text that is no JSON object, and what it has of the metadata.
  void judgeBroken(std::string_view word, const CommentDocument& comment) {
    if (word.empty()) return;
    const bool isKey = isSameInAnyCase(word, metaDataKey);
    findings_("comment-json",
              "names " + (isKey ? std::string(metaDataKey) : quoted(word)) +
                  " and is not one JSON object, so nothing of it is read: " + comment.fault() +
                  "; mend it" + (isKey ? "" : ", and write " + quotedKey()));
  }

  // What stands beside the metadata that is read, or in its place.
  void judgeRoot(const Json& root) {
    std::size_t count = 0;
    for (const auto& [key, value] : root.GetObject()) {
      const std::string_view name = textOf(key);
      if (name == metaDataKey && ++count == 2) {
        findings_("comment-member", "the member " + quotedKey() +
                                        " stands in this comment twice, and the first counts; "
                                        "keep one");
      }
      if (isAttachmentPart(name)) {
        findings_("comment-member", "the member " + quoted(name) +
                                        " of this comment stands outside of its metadata and is "
                                        "not read; write it below " +
                                        quotedKey());
      } else if (isNearlyMetaData(name, value)) {
        findings_(
            isSameInAnyCase(name, metaDataKey) ? "comment-case" : "comment-member",
            "the member " + quoted(name) + " of this comment is not read; write " + quotedKey());
      }
    }
  }

  // Goes through the members that an object may have. Others are findings, and so are repeated ones,
  // of which act(name, value) is called for the one that counts.
  template <class Act>
  void eachMember(const Json& object, const Names& known, Read read, const Act& act) {
    const std::map<std::string_view, const Json*> counting = membersOf(object, read);
    std::set<std::string_view> seen;
    for (const auto& [key, value] : object.GetObject()) {
      const std::string_view name = textOf(key);
      path_.emplace_back(name);
      if (std::find(known.begin(), known.end(), name) == known.end()) {
        judgeUnknown(name, known);
      } else if (name == "inputs") {
        act(name, value);  // of several all are read
      } else {
        if (!seen.insert(name).second) findTwice("member", read);
        if (counting.find(name)->second == &value) act(name, value);
      }
      path_.pop_back();
    }
  }
  // By name, that which counts.
  static std::map<std::string_view, const Json*> membersOf(const Json& object, Read read) {
    std::map<std::string_view, const Json*> members;
    for (const auto& [key, value] : object.GetObject()) {
      const Json*& member = members[textOf(key)];
      if (member == nullptr || read == Read::last) member = &value;
    }
    return members;
  }
  void judgeUnknown(std::string_view name, const Names& known) {
    const std::string meant = didYouMeanOf(name, known);
    const bool isNear = meant.starts_with(": did");
    find("comment-member",
         "this member is not read" + meant + (isNear ? "; rename it" : "; leave it out"));
  }
  void findTwice(const std::string& what, Read read) {
    const char* counts = read == Read::first ? "first" : "last";
    find("comment-member", "the same " + what + " twice, and the " + counts + " counts; keep one");
  }

  void judgeNul(std::string_view name) {
    const std::size_t end = name.find('\0');
    if (end == name.npos) return;
    find("comment-name", "the name is read up to its NUL character, as " +
                             quoted(name.substr(0, end)) + "; leave the NUL out");
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
    std::set<std::string_view> ids;
    eachMember(scheduler, known, Read::last, [&](std::string_view name, const Json& value) {
      if (name == "priority") judgePriority(value);
      if (!value.IsObject()) return;
      if (name == "one-rate-two-color") rates(value);
      if (name == "inputs") inputs(value, ids);
    });
  }

  void judgePriority(const Json& priority) {
    if (priority.IsString() && textOf(priority) == "STRICT") return;
    find("comment-priority",
         "any priority is read as STRICT, whatever its value; write \"STRICT\" or leave it out");
  }

  void rates(const Json& rates) {
    eachMember(
        rates, {"cir", "cir-pct"}, Read::last, [&](std::string_view name, const Json& value) {
          judgeZero(value);
          if (name != "cir-pct" || !value.IsUint() || value.GetUint() <= 255) return;
          find("comment-percent",
               "of a percentage the low 8 bits count: " + std::to_string(value.GetUint()) +
                   " is read as " + std::to_string(value.GetUint() & 0xff) + "; write 1 to 100");
        });
  }
  void judgeZero(const Json& number) {
    if (!number.IsUint64() || number.GetUint64() != 0) return;
    find("comment-zero",
         "0 is read as no value, and the model gets none; "
         "write another number or leave it out");
  }

  // `ids` are those of the scheduler's inputs so far.
  void inputs(const Json& inputs, std::set<std::string_view>& ids) {
    for (const auto& [key, value] : inputs.GetObject()) {
      const std::string_view id = textOf(key);
      path_.emplace_back(id);
      if (!ids.insert(id).second) findTwice("input", Read::last);
      judgeNul(id);
      if (id.empty()) {
        find("left-out", "an empty name is no key, and the scheduler input is left out; name it");
      }
      if (value.IsObject()) {
        eachMember(value, {"queue", "weight"}, Read::last,
                   [&](std::string_view name, const Json& member) {
                     if (name == "weight") judgeZero(member);
                     if (name == "queue" && member.IsString()) judgeNul(textOf(member));
                   });
      }
      path_.pop_back();
    }
  }

  const CommentFindings& findings_;
  Tokens path_;  // in the comment
};

}  // namespace

bool isMeantAsMetaData(std::string_view text) {
  const CommentDocument comment(text);
  if (comment.object() == nullptr) return !metaDataWord(text).empty();
  const auto members = comment.object()->GetObject();
  return std::any_of(members.begin(), members.end(), [](const auto& member) {
    const std::string_view name = textOf(member.name);
    return name == metaDataKey || isNearlyMetaData(name, member.value) ||
           (isAttachmentPart(name) && member.value.IsObject());
  });
}

void judgeAttachmentText(std::string_view text, const CommentFindings& findings) {
  TextRules rules(findings);
  rules.judge(text, [&](const Json& metaData) { rules.attachment(metaData); });
}

void judgeProfileText(std::string_view text, const CommentFindings& findings) {
  TextRules rules(findings);
  rules.judge(text, [&](const Json& metaData) { rules.profile(metaData); });
}

}  // namespace host
