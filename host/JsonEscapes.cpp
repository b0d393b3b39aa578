#include "host/JsonEscapes.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace host {
namespace {

constexpr std::string_view escapes = "\"\\/bfnrt";
constexpr std::string_view characters = "\"\\/\b\f\n\r\t";

void append(char32_t c, std::string& text) {
  const auto byte = [&](char32_t bits) { text += static_cast<char>(bits); };
  const auto further = [&](int shift) { byte(0x80 | ((c >> shift) & 0x3f)); };
  if (c < 0x80) return byte(c);
  if (c < 0x800) {
    byte(0xc0 | (c >> 6));
    return further(0);
  }
  if (c < 0x10000) {
    byte(0xe0 | (c >> 12));
  } else {
    byte(0xf0 | (c >> 18));
    further(12);
  }
  further(6);
  further(0);
}

// Takes the four digits that follow "\u".
std::optional<char32_t> takeUnit(std::string_view& written) {
  const std::string_view digits = written.substr(0, 4);
  std::uint32_t unit = 0;
  const char* last = digits.data() + digits.size();
  const auto [end, error] = std::from_chars(digits.data(), last, unit, 16);
  if (digits.size() < 4 || error != std::errc() || end != last) return std::nullopt;
  written.remove_prefix(4);
  return unit;
}

bool isBetween(char32_t unit, char32_t first, char32_t last) {
  return unit >= first && unit <= last;
}

// Takes what follows "\u": one character, or the first half of one and the second.
std::optional<char32_t> takeCodePoint(std::string_view& written) {
  const std::optional<char32_t> first = takeUnit(written);
  if (!first || !isBetween(*first, 0xd800, 0xdfff)) return first;
  if (*first >= 0xdc00 || !written.starts_with("\\u")) return std::nullopt;
  written.remove_prefix(2);
  const std::optional<char32_t> second = takeUnit(written);
  if (!second || !isBetween(*second, 0xdc00, 0xdfff)) return std::nullopt;
  return 0x10000 + ((*first - 0xd800) << 10) + (*second - 0xdc00);
}

// Takes what follows a backslash.
bool takeEscape(std::string_view& written, std::string& text) {
  const char kind = written.front();
  written.remove_prefix(1);
  if (kind == 'u') {
    const std::optional<char32_t> c = takeCodePoint(written);
    if (c) append(*c, text);
    return c.has_value();
  }
  const std::size_t at = escapes.find(kind);
  if (at == escapes.npos) return false;
  text += characters[at];
  return true;
}

}  // namespace

bool isShortEscape(char c) {
  switch (c) {
    case '"':
    case '\\':
    case '/':
    case 'b':
    case 'f':
    case 'n':
    case 'r':
    case 't':
      return true;
    default:
      return false;
  }
}

bool unescape(std::string_view written, std::string& text) {
  text.clear();
  for (;;) {
    const std::size_t plain = std::min(written.find('\\'), written.size());
    text += written.substr(0, plain);
    written.remove_prefix(plain);
    if (written.empty()) return true;
    written.remove_prefix(1);
    if (!takeEscape(written, text)) return false;
  }
}

}  // namespace host
