#include "host/openconfig/Tree.h"

#include <optional>

#include "host/Text.h"

namespace host {
namespace {

// Characters that Unicode keeps for a program's inner use: the last two of each plane, and 32 more.
std::string predicate(std::string_view key, std::string_view value) {
  const char* quote = value.find('\'') == std::string_view::npos ? "'" : "\"";
  return '[' + std::string(key) + '=' + quote + shown(value) + quote + ']';
}

}  // namespace

void Tree::entryLeftOut(std::string_view key, std::string_view value, std::string_view reason,
                        std::string_view native) {
  warn(path() + predicate(key, value), reason, native);
}

void Tree::word(std::string_view leaf, std::string_view text) {
  if (text.empty()) return;
  key(leaf);
  out_.text(text);
}

void Tree::number(std::string_view leaf, std::uint64_t number) {
  key(leaf);
  out_.number(number);
}

void Tree::boolean(std::string_view leaf, bool v) {
  key(leaf);
  out_.boolean(v);
}

void Tree::numbers(std::string_view leaf, const std::vector<unsigned>& numbers) {
  if (numbers.empty()) return;
  key(leaf);
  out_.beginArray();
  for (const unsigned number : numbers) out_.number(number);
  out_.endArray();
}

void Tree::leftOut(std::string_view leaf, std::string_view reason, std::string_view native) {
  warn(path() + '/' + std::string(leaf), reason, native);
}

void Tree::beginLevels() {
  for (; begun_ < levels_.size(); ++begun_) {
    const Level& level = levels_[begun_];
    if (!level.name.empty()) out_.key(level.name);
    level.isList ? out_.beginArray() : out_.beginObject();
  }
}

void Tree::endLevel() {
  if (begun_ == levels_.size()) {
    levels_.back().isList ? out_.endArray() : out_.endObject();
    --begun_;
  }
  levels_.pop_back();
}

void Tree::key(std::string_view leaf) {
  beginLevels();
  out_.key(leaf);
}

void Tree::warn(const std::string& path, std::string_view reason, std::string_view native) const {
  warn_(path + ": " + std::string(reason) + ": left out (from " + std::string(native) + ')');
}

std::string Tree::path() const {
  std::string path;
  for (const Level& level : levels_) {
    path += level.name.empty() ? predicate(level.key, level.value) : '/' + std::string(level.name);
  }
  return path;
}

// Neither noncharacters nor most control characters.
bool Tree::isYangString(std::string_view text) {
  while (!text.empty()) {
    const std::optional<char32_t> c = takeCharacter(text);
    if (!c || isNoncharacter(*c)) return false;
    if (*c < 0x20 && *c != '\t' && *c != '\n' && *c != '\r') return false;
  }
  return true;
}

std::string Tree::article(std::string_view key) {
  return (key.front() == 'i' ? "an " : "a ") + std::string(key);
}

std::string Tree::notAName(std::string_view text) {
  return quoted(text) + " is a name that YANG strings can't hold";
}

}  // namespace host
