#include "host/feed/NodeThere.h"

namespace host {
namespace {

// Whether `path` is `top` or below it.
bool isWithin(std::string_view path, std::string_view top) {
  return path.starts_with(top) && (path.size() == top.size() || path[top.size()] == '/');
}

std::span<const RecordKind* const> kindsBelow(const View& view, const TreeEntry& at) {
  return at.kind == nullptr ? view.outermost() : view.children(*at.kind);
}

// A leaf of a record, whose rows stand below `prefix`.
bool hasLeaf(const View& view, const RecordKind& kind, const void* record, const Keys& keys,
             std::string_view prefix, std::string_view below) {
  if (record == nullptr) return false;
  for (const View::Row& row : view.rows(kind)) {
    const std::string path = std::string(prefix) + row.path;
    if (isWithin(path, below) && !isAbsent(kind.read(record, row.leaf, keys, {}))) return true;
  }
  return false;
}

bool hasBelow(const View& view, const RecordKind& kind, const TreeEntry& at,
              std::string_view below) {
  if (kind.isList()) return isWithin(kind.path, below) && !kind.store.isEmpty(at.entry);
  const void* entry = kind.find(at.entry, {});
  const void* record = entry != nullptr ? kind.record(entry) : nullptr;
  return hasLeaf(view, kind, record, at.keys, std::string(kind.path) + '/', below);
}

// Takes "name[key=value]" where `path` begins with it, and gives the value; nothing otherwise.
std::optional<std::string> takeEntry(std::string_view& path, const RecordKind& kind) {
  const std::string begin = std::string(kind.path) + '[' + std::string(kind.key) + '=';
  if (!path.starts_with(begin)) return std::nullopt;
  path.remove_prefix(begin.size());
  std::string value;
  while (path.front() != ']') {
    if (path.front() == '\\') path.remove_prefix(1);
    value += path.front();
    path.remove_prefix(1);
  }
  path.remove_prefix(std::min<std::size_t>(path.size(), 2));  // with the slash
  return value;
}

bool isThereBelow(const View& view, TreeEntry at, std::string_view path) {
  for (const RecordKind* kind : kindsBelow(view, at)) {
    const std::optional<std::string> key = kind->isList() ? takeEntry(path, *kind) : std::nullopt;
    if (!key) continue;
    const void* entry = kind->find(at.entry, *key);
    if (entry == nullptr) return false;
    if (path.empty()) return true;
    at.keys.push_back(*key);
    return isThereBelow(view, {kind, entry, std::move(at.keys)}, path);
  }
  return isThere(view, at, path);
}

}  // namespace

bool isThere(const View& view, const TreeEntry& at, std::string_view below) {
  if (at.kind != nullptr) {
    const void* record = at.kind->record(at.entry);
    if (hasLeaf(view, *at.kind, record, at.keys, {}, below)) return true;
  }
  for (const RecordKind* kind : kindsBelow(view, at)) {
    if (hasBelow(view, *kind, at, below)) return true;
  }
  return false;
}

bool isThere(const View& view, const Model& model, std::string_view path) {
  path.remove_prefix(1);
  const std::string_view root = takeName(path);
  for (const RecordKind* kind : view.outermost()) {
    if (kind->root->name != root) continue;
    if (path.empty() && hasBelow(view, *kind, {nullptr, &model, {}}, kind->path)) return true;
  }
  return !path.empty() && isThereBelow(view, {nullptr, &model, {}}, path);
}

}  // namespace host
