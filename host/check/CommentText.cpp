#include "host/check/CommentText.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>
#include <vector>

#include "host/Json.h"
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

// A comment as its reader takes it.
struct Parsed {
  explicit Parsed(std::string_view text) {
    if (const std::size_t nul = text.find('\0'); nul != text.npos) {
      fault = "a NUL byte" + at(nul, text);
      return;
    }
    document.Parse<rapidjson::kParseIterativeFlag>(text.data(), text.size());
    if (document.HasParseError()) {
      fault = reason(text) + at(document.GetErrorOffset(), text);
    } else if (!document.IsObject()) {
      fault = "it is no object";
    }
  }

  rapidjson::Document document;
  std::string fault;  // why nothing of it is read; empty for an object

 private:
  static std::string at(std::size_t offset, std::string_view text) {
    return offset < text.size() ? " at byte " + std::to_string(offset + 1) : " at its end";
  }
  // The parser's words, as part of a sentence.
  std::string reason(std::string_view text) const {
    const std::size_t offset = document.GetErrorOffset();
    const bool isControl = offset < text.size() && static_cast<unsigned char>(text[offset]) < ' ';
    const auto code = document.GetParseError();
    if (isControl && code == rapidjson::kParseErrorStringEscapeInvalid)
      return "a control character in a string";
    std::string words = rapidjson::GetParseError_En(code);
    words[0] = lower(words[0]);
    if (words.ends_with('.')) words.pop_back();
    return words;
  }
};

class TextRules {
 public:
  explicit TextRules(const CommentFindings& findings) : findings_(findings) {}

  // Goes on with the object under the metadata's key, if the text gets there.
  template <class Rest>
  void judge(std::string_view text, const Rest& rest) {
    const Parsed parsed(text);
    if (!parsed.fault.empty()) return judgeBroken(metaDataWord(text), parsed.fault);
    judgeRoot(parsed.document);
    const auto found = parsed.document.FindMember(metaDataKey.data());
    if (found == parsed.document.MemberEnd() || !found->value.IsObject()) return;
    path_ = {std::string(metaDataKey)};
    rest(found->value);
  }

  void attachment(const Json& metaData) {
    const Names parts{std::begin(attachmentParts), std::end(attachmentParts)};
    eachMember(metaData, parts, Read::first, [&](std::string_view part, const Json& value) {
      if (!value.IsObject()) return;
      eachMember(value, {"name"}, Read::first, [&](std::string_view, const Json& name) {
        if (name.IsString() && name.GetStringLength() == 0) {
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
  void judgeBroken(std::string_view word, const std::string& fault) {
    if (word.empty()) return;
    const bool isKey = isSameInAnyCase(word, metaDataKey);
    findings_("comment-json",
              "names " + (isKey ? std::string(metaDataKey) : quoted(word)) +
                  " and is not one JSON object, so nothing of it is read: " + fault + "; mend it" +
                  (isKey ? "" : ", and write " + quotedKey()));
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
    const auto members = object.GetObject();
    for (auto member = members.begin(); member != members.end(); ++member) {
      const std::string_view name = textOf(member->name);
      const auto isSame = [&](const auto& other) { return textOf(other.name) == name; };
      const bool hasEarlier = std::any_of(members.begin(), member, isSame);
      const bool hasLater = std::any_of(member + 1, members.end(), isSame);
      path_.emplace_back(name);
      if (std::find(known.begin(), known.end(), name) == known.end()) {
        const char* remedy = nearest(name, known).empty() ? "; leave it out" : "; rename it";
        find("comment-member", "this member is not read" + didYouMeanOf(name, known) + remedy);
      } else if (name == "inputs") {
        act(name, member->value);  // of several all are read
      } else {
        if (hasEarlier) findTwice("member", read);
        if (!(read == Read::first ? hasEarlier : hasLater)) act(name, member->value);
      }
      path_.pop_back();
    }
  }
  void findTwice(const std::string& what, Read read) {
    const char* counts = read == Read::first ? "first" : "last";
    find("comment-member", "the same " + what + " twice, and the " + counts + " counts; keep one");
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
      if (id.empty()) {
        find("left-out", "an empty name is no key, and the scheduler input is left out; name it");
      }
      if (value.IsObject()) {
        eachMember(value, {"queue", "weight"}, Read::last,
                   [&](std::string_view name, const Json& member) {
                     if (name == "weight") judgeZero(member);
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
  const Parsed parsed(text);
  if (!parsed.fault.empty()) return !metaDataWord(text).empty();
  const auto members = parsed.document.GetObject();
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
