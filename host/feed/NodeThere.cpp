#include "host/feed/NodeThere.h"

#include "host/openconfig/LeafPath.h"

namespace host {
namespace {

std::span<const RecordKind* const> kindsBelow(const View& view, const TreeEntry& at) {
  return at.kind == nullptr ? view.outermost() : view.children(*at.kind);
}

// A leaf of a record, whose rows stand below `prefix`.
bool hasLeaf(const View& view, const RecordKind& kind, const void* record, const Keys& keys,
             std::string_view prefix, std::string_view below) {
  if (record == nullptr) return false;
  for (const View::Row& row : view.rows(kind)) {
    const std::string path = std::string(prefix) + row.path;
    if (isAtOrBelow(path, below) && !isAbsent(kind.read(record, row.leaf, keys, {}))) return true;
  }
  return false;
}

bool hasBelow(const View& view, const RecordKind& kind, const TreeEntry& at,
              std::string_view below) {
  if (kind.isList()) return isAtOrBelow(kind.path, below) && !kind.store.isEmpty(at.entry);
  const void* entry = kind.find(at.entry, {});
  const void* record = entry != nullptr ? kind.record(entry) : nullptr;
  return hasLeaf(view, kind, record, at.keys, std::string(kind.path) + '/', below);
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

}  // namespace host
