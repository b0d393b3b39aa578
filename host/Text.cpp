#include "host/Text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdio>
#include <cstring>

#include "host/ByteBlock.h"

namespace host {
namespace {

constexpr std::size_t longText = 160;  // bytes; a longer text is cut
constexpr std::size_t shortened = 60;  // to so many

// The bytes that follow a lead byte, and the smallest character that needs them.
struct Lead {
  int more;
  char32_t bits;
  char32_t least;
};

std::optional<Lead> leadOf(unsigned char byte) {
  if (byte < 0x80) return Lead{0, byte, 0};
  if ((byte & 0xe0) == 0xc0) return Lead{1, byte & 0x1fu, 0x80};
  if ((byte & 0xf0) == 0xe0) return Lead{2, byte & 0x0fu, 0x800};
  if ((byte & 0xf8) == 0xf0) return Lead{3, byte & 0x07u, 0x10000};
  return std::nullopt;
}

bool isAsciiWord(const char* bytes) {
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, sizeof(word));
  return (word & 0x8080808080808080u) == 0;
}

std::size_t asciiPrefix(std::string_view text) {
  constexpr std::size_t word = sizeof(std::uint64_t);
  std::size_t n = 0;
  while (n + word <= text.size() && isAsciiWord(text.data() + n)) n += word;
  // The rest of a text that has a word is looked at with some of what stands before it.
  const bool isRest = text.size() >= word && n + word > text.size();
  if (isRest && isAsciiWord(text.data() + text.size() - word)) return text.size();
  while (n < text.size() && static_cast<unsigned char>(text[n]) < 0x80) ++n;
  return n;
}

bool isPlain(char32_t c) {
  if (c < 0x20 || (c >= 0x7f && c < 0xa0)) return false;  // controls
  if (c >= 0x2028 && c <= 0x202e) return false;           // line ends, changes of direction
  if (isNoncharacter(c)) return false;
  return !(c >= 0x2066 && c <= 0x2069) && c != 0xfeff && c != 0x200e && c != 0x200f;
}

template <class... Args>
std::string printed(const char* format, Args... args) {
  std::array<char, 32> buffer{};
  std::snprintf(buffer.data(), buffer.size(), format, args...);
  return buffer.data();
}

// Up to the first character that begins behind `size` bytes.
std::string escaped(std::string_view text, std::size_t size) {
  std::string_view rest = text;
  std::string line;
  while (text.size() - rest.size() < size) {
    const std::string_view before = rest;
    const std::optional<char32_t> c = takeCharacter(rest);
    if (!c) {
      line += printed("\\x%02x", static_cast<unsigned char>(before.front()));
    } else if (!isPlain(*c)) {
      line += printed("\\u%04x", static_cast<unsigned>(*c));
    } else {
      line += before.substr(0, before.size() - rest.size());
    }
  }
  return line;
}

}  // namespace

bool isNoncharacter(char32_t c) { return (c & 0xfffe) == 0xfffe || (c >= 0xfdd0 && c <= 0xfdef); }

std::optional<char32_t> takeCharacter(std::string_view& text) {
  const std::optional<Lead> lead = leadOf(static_cast<unsigned char>(text.front()));
  const std::string_view rest = text.substr(1);
  text = rest;
  if (!lead || rest.size() < static_cast<std::size_t>(lead->more)) return std::nullopt;
  char32_t c = lead->bits;
  for (int i = 0; i < lead->more; ++i) {
    const auto byte = static_cast<unsigned char>(rest[i]);
    if ((byte & 0xc0) != 0x80) return std::nullopt;
    c = (c << 6) | (byte & 0x3fu);
  }
  if (c < lead->least || c > 0x10ffff || (c >= 0xd800 && c <= 0xdfff)) return std::nullopt;
  text = rest.substr(lead->more);
  return c;
}

bool isSameInAnyCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lower(x) == lower(y); });
}

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    text.remove_prefix(asciiPrefix(text));
    if (!text.empty() && !takeCharacter(text)) return false;
  }
  return true;
}

std::size_t plainPrefix(std::string_view text) {
  std::size_t n = 0;
  for (; n + ByteBlock::size <= text.size(); n += ByteBlock::size) {
    const std::size_t plain = ByteBlock(text.data() + n).plainPrefix();
    if (plain < ByteBlock::size) return n + plain;
  }
  while (n < text.size() && !isSpecial(text[n])) ++n;
  return n;
}

std::optional<std::uint64_t> decimal(std::string_view text, std::uint64_t max) {
  if (text.empty() || (text.front() == '0' && text.size() > 1)) return std::nullopt;
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number > max) return std::nullopt;
  return number;
}

std::string decimalPattern(std::uint64_t max) {
  const std::string digits = std::to_string(max);
  const std::size_t count = digits.size();
  const auto times = [](std::size_t n) { return n > 1 ? '{' + std::to_string(n) + '}' : ""; };
  const auto any = [&](std::size_t n) { return n > 0 ? "[0-9]" + times(n) : ""; };
  std::string pattern = digits;
  // Of as many digits: the same up to one of them, which is smaller, and any behind it.
  for (std::size_t i = 0; i < count; ++i) {
    const char least = i == 0 && count > 1 ? '1' : '0';
    const char most = static_cast<char>(digits[i] - 1);
    if (most < least) continue;
    pattern += '|' + digits.substr(0, i) + '[' + least + '-' + most + ']' + any(count - 1 - i);
  }
  // Of fewer.
  if (count > 1) pattern += "|0";
  for (std::size_t i = 1; i < count; ++i) pattern += "|[1-9]" + any(i - 1);
  return pattern;
}

std::string shown(std::string_view text) {
  if (text.size() <= longText) return escaped(text, text.size());
  return escaped(text, shortened) + printed("...(%zu bytes)", text.size());
}

std::string shownWhole(std::string_view text) { return escaped(text, text.size()); }

std::string quoted(std::string_view text) { return '"' + shown(text) + '"'; }

}  // namespace host
