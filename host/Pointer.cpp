#include "host/Pointer.h"

#include <algorithm>

#include "host/Text.h"

namespace host {
namespace {

constexpr std::size_t shownTokens = 16;  // tokens that a message shows

// False when a "~" is followed by anything but 0 and 1.
bool unescapeToken(std::string_view escaped, std::string& token) {
  for (std::size_t i = 0; i < escaped.size(); ++i) {
    if (escaped[i] != '~') {
      token += escaped[i];
      continue;
    }
    const char next = ++i < escaped.size() ? escaped[i] : '\0';
    if (next != '0' && next != '1') return false;
    token += next == '0' ? '~' : '/';
  }
  return true;
}

std::string escape(std::string_view token) {
  std::string escaped;
  for (const char c : token) {
    if (c == '~') {
      escaped += "~0";
    } else if (c == '/') {
      escaped += "~1";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

}  // namespace

std::optional<Tokens> pointerTokens(std::string_view pointer) {
  Tokens tokens;
  while (!pointer.empty()) {
    if (pointer.front() != '/') return std::nullopt;
    pointer.remove_prefix(1);
    const std::string_view token = pointer.substr(0, pointer.find('/'));
    if (!unescapeToken(token, tokens.emplace_back())) return std::nullopt;
    pointer.remove_prefix(token.size());
  }
  return tokens;
}

std::string pointerText(std::span<const std::string> tokens) {
  std::string pointer;
  for (const std::string& token : tokens) pointer += '/' + escape(token);
  return pointer;
}

std::string shownPointer(std::span<const std::string> tokens) {
  if (tokens.empty()) return "(document)";
  std::string pointer;
  for (const std::string& token : tokens.first(std::min(tokens.size(), shownTokens))) {
    pointer += '/' + shown(escape(token));
  }
  if (tokens.size() > shownTokens) pointer += "/...";
  return pointer;
}

}  // namespace host
