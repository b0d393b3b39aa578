#include "host/openconfig/Tree.h"

namespace host {

Tree::Tree(std::string_view root, Layout layout, const TextSink& sink) : out_(layout, sink) {
  out_.beginObject();
  levels_.push_back({.name = root});
  write();
}

std::string Tree::end() {
  leaveTo(0);
  out_.endObject();
  return out_.take();
}

void Tree::moveTo(std::size_t depth, std::string_view containers) {
  while (!containers.empty()) {
    const std::string_view name = takeName(containers);
    const bool isOpen = depth < levels_.size() && levels_[depth].name == name;
    if (!isOpen) {
      leaveTo(depth);
      levels_.push_back({.name = name});
    }
    ++depth;
  }
  leaveTo(depth);
}

void Tree::enterList(std::string_view name) { levels_.push_back({.name = name, .isList = true}); }

void Tree::enterEntry(std::string_view key, std::string_view value) {
  levels_.push_back({.key = key, .value = value});
}

void Tree::leaveTo(std::size_t depth) {
  for (; levels_.size() > depth; levels_.pop_back()) {
    if (written_ < levels_.size()) continue;
    levels_.back().isList ? out_.endArray() : out_.endObject();
    --written_;
  }
}

void Tree::leaf(std::string_view name, LeafType type, const LeafValue& value) {
  write();
  out_.key(name);
  if (const auto* boolean = std::get_if<bool>(&value)) {
    out_.boolean(*boolean);
  } else if (const auto* number = std::get_if<std::uint64_t>(&value)) {
    // RFC 7951 writes numbers of 64 bits as texts.
    type == LeafType::uint64 ? out_.text(std::to_string(*number)) : out_.number(*number);
  } else if (const auto* text = std::get_if<std::string_view>(&value)) {
    out_.text(*text);
  } else if (const auto* made = std::get_if<std::string>(&value)) {
    out_.text(*made);
  } else {
    out_.beginArray();
    for (const unsigned element : std::get<std::vector<unsigned>>(value)) out_.number(element);
    out_.endArray();
  }
}

std::string Tree::path(std::size_t depth) const {
  std::string path;
  for (std::size_t i = 0; i < depth; ++i) {
    const Level& level = levels_[i];
    path += level.name.empty() ? predicate(level.key, level.value) : '/' + std::string(level.name);
  }
  return path;
}

std::string Tree::predicate(std::string_view key, std::string_view value) {
  const char* quote = value.find('\'') == std::string_view::npos ? "'" : "\"";
  return '[' + std::string(key) + '=' + quote + shown(value) + quote + ']';
}

void Tree::write() {
  for (; written_ < levels_.size(); ++written_) {
    const Level& level = levels_[written_];
    if (!level.name.empty()) out_.key(level.name);
    level.isList ? out_.beginArray() : out_.beginObject();
  }
}

std::string_view takeName(std::string_view& path) {
  const std::string_view name = path.substr(0, path.find('/'));
  path.remove_prefix(std::min(path.size(), name.size() + 1));
  return name;
}

PathEnd pathEnd(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string_view::npos) return {{}, path};
  return {path.substr(0, slash), path.substr(slash + 1)};
}

}  // namespace host
