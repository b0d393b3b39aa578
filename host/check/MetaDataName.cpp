#include "host/check/MetaDataName.h"

#include <algorithm>
#include <string>
#include <vector>

#include "host/Nearest.h"
#include "host/Text.h"

namespace host {
namespace {

using Json = rapidjson::Value;

// Also with its two words exchanged.
bool isNearName(std::string_view name) {
  static const NearNames names({metaDataKey, "OpenConfig-MetaData"});
  return !names.nearest(name).empty();
}

// A word of the key alone, which other comments may have, too.
bool isHalfName(std::string_view name) {
  static const NearNames names({"MetaData", "OpenConfig"});
  return !names.nearest(name).empty();
}

bool isNearPart(std::string_view name) {
  static const NearNames names({std::begin(attachmentParts), std::end(attachmentParts)});
  return !names.nearest(name).empty();
}

bool isScheduler(const Json& value) {
  return value.IsObject() && (value.HasMember("one-rate-two-color") || value.HasMember("inputs"));
}

// Whether the metadata of a tx queue or of a profile could look like that.
bool holdsMetaData(const Json& value) {
  if (!value.IsObject()) return false;
  const auto members = value.GetObject();
  return std::any_of(members.begin(), members.end(), [](const auto& member) {
    const std::string_view name{member.name.GetString(), member.name.GetStringLength()};
    const bool isNumber = decimal(name, 0xffffffff).has_value();
    return isNumber ? isScheduler(member.value) : member.value.IsObject() && isNearPart(name);
  });
}

// The text behind white space and the quotes of a word, of which there are few.
std::string_view behindWord(std::string_view text) {
  constexpr std::size_t most = 64;
  const std::size_t begin = text.substr(0, most).find_first_not_of(" \t\r\n\"'");
  return begin == text.npos ? std::string_view() : text.substr(begin);
}

std::string_view trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(' ');
  if (begin == text.npos) return {};
  return text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

}  // namespace

bool isAttachmentPart(std::string_view name) {
  return std::find(std::begin(attachmentParts), std::end(attachmentParts), name) !=
         std::end(attachmentParts);
}

bool isNearlyMetaData(std::string_view name, const Json& value) {
  return name != metaDataKey && (isNearName(name) || (isHalfName(name) && holdsMetaData(value)));
}

std::string_view metaDataWord(std::string_view text) {
  const auto found = std::search(text.begin(), text.end(), metaDataKey.begin(), metaDataKey.end(),
                                 [](char a, char b) { return lower(a) == lower(b); });
  const bool isObject = behindWord(text).starts_with('{');
  const bool isList = behindWord(text).starts_with('[');
  if (found != text.end()) {
    const std::string_view from = text.substr(static_cast<std::size_t>(found - text.begin()));
    const std::string_view next = behindWord(from.substr(metaDataKey.size())).substr(0, 1);
    // A sentence may have the word, too.
    return isObject || isList || next == ":" || next == "{" ? from.substr(0, metaDataKey.size())
                                                            : "";
  }
  if (!isObject) return {};
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("{}[]:,\"'\t\r\n"), text.size());
    const std::string_view word = trimmed(text.substr(0, end));
    const bool isMember = behindWord(text.substr(end)).starts_with(':');
    if (isMember && (isNearName(word) || isAttachmentPart(word))) return word;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return {};
}

}  // namespace host
