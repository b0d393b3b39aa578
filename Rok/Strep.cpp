#include "Rok/Strep.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace Rok {
namespace {

constexpr std::string_view hexDigits = "0123456789abcdef";

bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; }

void appendEscaped(std::string& out, char c) {
  if (isControl(c)) {
    const auto byte = static_cast<unsigned char>(c);
    out.append("\\x").append(1, hexDigits[byte >> 4]).append(1, hexDigits[byte & 15]);
    return;
  }
  if (c == '\'' || c == '\\') out += '\\';
  out += c;
}

// What an escape stands for; takes it off the front of `rest`, which begins behind the backslash.
char takeEscape(CharRange& range, std::string_view& rest) {
  const char kind = rest.empty() ? '\0' : rest.front();
  if (kind == '\'' || kind == '\\') {
    rest.remove_prefix(1);
    return kind;
  }
  const std::size_t high = rest.size() < 3 ? std::string_view::npos : hexDigits.find(rest[1]);
  const std::size_t low = rest.size() < 3 ? std::string_view::npos : hexDigits.find(rest[2]);
  if (kind == 'x' && high != std::string_view::npos && low != std::string_view::npos) {
    const auto c = static_cast<char>(high * 16 + low);
    rest.remove_prefix(3);
    // Only what is never written as itself, or the text would not be the one of its value.
    if (isControl(c)) return c;
  }
  range.throwExpected("a quoted string");
}

bool isWordByte(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

std::string_view wordAtFront(std::string_view text) {
  const auto end = std::find_if_not(text.begin(), text.end(), isWordByte);
  return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

}  // namespace

void CharRange::needString(std::string_view literal) {
  if (!rest().starts_with(literal)) throwExpected("\"" + std::string(literal) + "\"");
  consume(literal.size());
}

void CharRange::checkAllDataConsumed() const {
  if (!rest().empty()) throwExpected("nothing more");
}

void CharRange::throwExpected(std::string_view what) const {
  throwRangeException(
      Velmo::String("at byte " + std::to_string(consumed_) + ": expected " + std::string(what)));
}

Velmo::String valueToStrep(const Velmo::String& text) {
  std::string out = "'";
  for (const char c : std::string_view(text)) appendEscaped(out, c);
  return {out += '\''};
}

void rethrowFromDeserializeAttr(const RangeException& exception, const char* attribute) {
  throw RangeException(std::string(attribute) + ": " + exception.what());
}

namespace Impl {

Velmo::String stringFromStrep(CharRange& range) {
  std::string_view rest = range.rest();
  std::string value;
  if (!rest.starts_with('\'')) range.throwExpected("a quoted string");
  rest.remove_prefix(1);
  while (!rest.starts_with('\'')) {
    if (rest.empty() || isControl(rest.front())) range.throwExpected("a quoted string");
    const char c = rest.front();
    rest.remove_prefix(1);
    value += c == '\\' ? takeEscape(range, rest) : c;
  }
  range.consume(range.rest().size() - rest.size() + 1);
  return {value};
}

std::uint64_t numberFromStrep(CharRange& range, std::uint64_t max) {
  const std::string_view rest = range.rest();
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), value);
  const auto digits = static_cast<std::size_t>(end - rest.data());
  if (error != std::errc() || value > max || (digits > 1 && rest.front() == '0')) {
    range.throwExpected("a number up to " + std::to_string(max));
  }
  range.consume(digits);
  return value;
}

unsigned char enumeratorFromStrep(CharRange& range, const EnumType<unsigned char>& type) {
  const std::string_view word = wordAtFront(range.rest());
  const auto value = type.strepToValue(word);
  if (!value) range.throwExpected("a " + std::string(type.name()));
  range.consume(word.size());
  return *value;
}

}  // namespace Impl
}  // namespace Rok
