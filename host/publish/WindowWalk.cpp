#include "host/publish/WindowWalk.h"

#include <algorithm>

#include "host/openconfig/LeafPath.h"
#include "host/publish/EntryName.h"

namespace host {
namespace {

// The name of the entry that holds a record of a kind; empty for an outermost one.
std::string_view entryAround(const RecordKind& kind, std::string_view name, const Keys& keys) {
  const std::size_t key = kind.isList() ? keys.back().size() + 1 : 0;
  return name.substr(0, name.size() - key - 1);
}

}  // namespace

WindowWalk::WindowWalk(const View& view, const Store::Window& window, Commit since)
    : view_(view), window_(window), since_(since) {}

void WindowWalk::image(const Image& image, const Wanted& wanted, const Visit& visit) {
  const RecordKind& kind = image.kind();
  if (view_.rows(kind).empty()) return;
  Keys keys;
  image.keys(keys);
  const RowSet rows = wanted.rows(kind, keys);
  const bool isEntryBack = !image.isGone() && kind.isList() && image.went() > since_;
  if (kind.isList() && (image.isGone() || isEntryBack) && wanted.leadsTo(kind, keys)) {
    image.isGone() ? entryGone(image, visit) : visit.gone({&kind, keys, {}});
  }
  if (rows == 0) return;
  // A container has no deletion of its own: what it lost by going, and didn't get back, are leaves.
  const bool isKnown = image.came() <= since_ && !image.isGone();
  if (isKnown || (!kind.isList() && image.went() > since_)) leavesGone(image, rows, visit);
  if (image.isGone()) return;
  const RowSet changed = image.changedSince(since_, view_.rows(kind)) & rows;
  if (changed != 0) visit.changed(image.at(keys), changed);
}

void WindowWalk::entryGone(const Image& image, const Visit& visit) {
  const RecordKind& kind = image.kind();
  if (kind.parent != nullptr) {
    // A list without a key is no node: what goes is a container around it, or the entry.
    Keys keys;
    image.keys(keys);
    const std::string_view around = entryAround(kind, image.name(), keys);
    const std::string_view containers = kind.path.substr(0, kind.path.rfind('/'));
    if (!isThere(kind.parent, around, containers)) {
      return pathGone(kind.parent, around, containers, visit);
    }
  }
  gone(&kind, image.name(), {}, visit);
}

void WindowWalk::leavesGone(const Image& image, RowSet rows, const Visit& visit) {
  const RecordKind& kind = image.kind();
  const auto all = view_.rows(kind);
  for (std::size_t i = 0; i < all.size(); ++i) {
    if ((rows >> i & 1) == 0) continue;
    if (!image.isGone()) {
      const std::size_t leaf = all[i].leaf;
      if (image.leafChanged(leaf) <= since_ || !isAbsent(image.leaf(leaf))) continue;
    }
    if (kind.isList()) {
      pathGone(&kind, image.name(), all[i].path, visit);
    } else {
      const std::string below = std::string(kind.path) + '/' + all[i].path;
      pathGone(kind.parent, entryAround(kind, image.name(), {}), below, visit);
    }
  }
}

// The highest of the nodes on a path below an entry, and at its end, that is not there.
void WindowWalk::pathGone(const RecordKind* kind, std::string_view entry, std::string_view below,
                          const Visit& visit) {
  for (std::size_t end = 0; end < below.size();) {
    end = std::min(below.find('/', end + 1), below.size());
    const std::string_view node = below.substr(0, end);
    if (!isThere(kind, entry, node)) return gone(kind, entry, node, visit);
  }
}

void WindowWalk::gone(const RecordKind* kind, std::string_view entry, std::string_view below,
                      const Visit& visit) {
  std::string node(entry);
  node += '\0';
  node += below;
  if (!named_.insert(std::move(node)).second) return;
  keysOfName(entry, keys_);
  if (kind != nullptr) return visit.gone({kind, keys_, below});
  visit.gone({nullptr, keys_, std::string(qosRoot.name) + '/' + std::string(below)});
}

// ===== What there is

bool WindowWalk::isThere(const RecordKind* kind, std::string_view entry,
                         std::string_view below) const {
  if (kind != nullptr && hasLeaf(*kind, entry, {}, below)) return true;
  const auto children = kind != nullptr ? view_.children(*kind) : view_.outermost();
  return std::any_of(children.begin(), children.end(),
                     [&](const RecordKind* child) { return hasBelow(*child, entry, below); });
}

// A leaf of a record, whose rows stand below `prefix`.
bool WindowWalk::hasLeaf(const RecordKind& kind, std::string_view name, std::string_view prefix,
                         std::string_view below) const {
  const Image* image = window_.all->find(name);
  if (image == nullptr || image->isGone()) return false;
  const auto rows = view_.rows(kind);
  return std::any_of(rows.begin(), rows.end(), [&](const View::Row& row) {
    return isAtOrBelow(std::string(prefix) + row.path, below) && !isAbsent(image->leaf(row.leaf));
  });
}

bool WindowWalk::hasBelow(const RecordKind& kind, std::string_view entry,
                          std::string_view below) const {
  const std::string name = childPrefix(entry, kind);
  if (kind.isList()) return isAtOrBelow(kind.path, below) && hasAny(name);
  return hasLeaf(kind, name, std::string(kind.path) + '/', below);
}

bool WindowWalk::hasAny(std::string_view prefix) const {
  const ImageIndex& all = *window_.all;
  for (auto at = all.atOrBehind(prefix); !all.isEnd(at); at = all.next(at)) {
    if (!all.at(at).name().starts_with(prefix)) return false;
    if (!all.at(at).isGone()) return true;
  }
  return false;
}

}  // namespace host
