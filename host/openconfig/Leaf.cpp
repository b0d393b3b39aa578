#include "host/openconfig/Leaf.h"

#include "host/JsonWriter.h"
#include "host/Text.h"
#include "host/openconfig/LeafTable.h"

namespace host {

bool isYangString(std::string_view text) {
  while (!text.empty()) {
    const char front = text.front();
    if (front >= ' ' && front <= '~') {
      text.remove_prefix(1);
      continue;
    }
    const std::optional<char32_t> c = takeCharacter(text);
    if (!c || isNoncharacter(*c)) return false;
    if (*c < 0x20 && *c != '\t' && *c != '\n' && *c != '\r') return false;
  }
  return true;
}

std::optional<std::string_view> textOf(const LeafValue& value) {
  if (const auto* text = std::get_if<std::string_view>(&value)) return *text;
  if (const auto* made = std::get_if<std::string>(&value)) return *made;
  return std::nullopt;
}

std::string shownValue(const LeafValue& value) {
  if (const auto text = textOf(value)) return quoted(*text);
  return leafText(LeafType::uint32, value);
}

void writeLeaf(JsonWriter& out, LeafType type, const LeafValue& value) {
  if (const auto* boolean = std::get_if<bool>(&value)) {
    out.boolean(*boolean);
  } else if (const auto* number = std::get_if<std::uint64_t>(&value)) {
    // RFC 7951 writes numbers of 64 bits as texts.
    type == LeafType::uint64 ? out.text(std::to_string(*number)) : out.number(*number);
  } else if (const auto text = textOf(value)) {
    out.text(*text);
  } else {
    out.beginArray();
    for (const unsigned element : std::get<std::vector<unsigned>>(value)) out.number(element);
    out.endArray();
  }
}

std::string leafText(LeafType type, const LeafValue& value) {
  JsonWriter out(Layout::compact);
  writeLeaf(out, type, value);
  return out.take();
}

}  // namespace host
