// Texts from outside: whether they are legal, and how messages show them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace host {

// Whether Unicode sets the character aside for internal use.
bool isNoncharacter(char32_t c);

// Takes the first character off `text`. Nothing when the bytes there are not valid UTF-8: then one
// byte is taken. Requires: text is not empty.
std::optional<char32_t> takeCharacter(std::string_view& text);

// Whether all of it is valid UTF-8.
bool isUtf8(std::string_view text);

// An ASCII letter in lower case; any other byte stays.
constexpr char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
bool isSameInAnyCase(std::string_view a, std::string_view b);

// How many bytes stand at the front of `text` that a JSON string holds as they are: those before
// the first quote, backslash or control character.
std::size_t plainPrefix(std::string_view text);

// The number that a canonical decimal stands for: no sign, no leading zero, at most `max`.
std::optional<std::uint64_t> decimal(std::string_view text, std::uint64_t max);

// A regular expression for the same texts.
std::string decimalPattern(std::uint64_t max);

// A text for a message. It stays one short line whatever it holds: control characters and others
// that would move the cursor or reverse the line, and bytes that are not UTF-8, are escaped, and
// a long text is cut and says how long it is.
std::string shown(std::string_view text);
// The same of a text that is never cut.
std::string shownWhole(std::string_view text);
// The same as `shown` in double quotes.
std::string quoted(std::string_view text);

}  // namespace host
