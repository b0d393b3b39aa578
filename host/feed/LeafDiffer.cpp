#include "host/feed/LeafDiffer.h"

#include <algorithm>

#include "host/feed/NodeThere.h"
#include "host/openconfig/LeafPath.h"
#include "host/openconfig/Leaves.h"
#include "host/openconfig/LeftOut.h"

namespace host {
namespace {

using QosOc::Config::RecordKeys;

// A copy with a text of its own. It isn't made by the variant: with libstdc++ 12 that of a text or a
// list ends the process when memory runs out in it.
LeafValue owned(const LeafValue& value) {
  return std::visit(
      []<class Held>(const Held& held) -> LeafValue {
        if constexpr (std::is_same_v<Held, std::string_view>) {
          return std::string(held);
        } else {
          return held;
        }
      },
      value);
}

void sortUpdates(std::vector<LeafUpdate>& updates) {
  std::sort(updates.begin(), updates.end(),
            [](const LeafUpdate& a, const LeafUpdate& b) { return a.path < b.path; });
}

// The path of an entry and the keys on its way.
class EntryPath {
 public:
  EntryPath(const RecordKind& kind, const RecordKeys& keys)
      : texts_(keyTexts(kind, keys)), keys_(texts_.begin(), texts_.end()) {
    appendEntryPath(path_, kind, keys_);
  }
  EntryPath(const EntryPath&) = delete;
  EntryPath& operator=(const EntryPath&) = delete;

  const Keys& keys() const { return keys_; }
  const std::string& path() const { return path_; }
  std::string pathOf(std::string_view below) const {
    std::string path = path_;
    appendBelow(path, below);
    return path;
  }

 private:
  std::vector<std::string> texts_;
  Keys keys_;
  std::string path_;
};

// The changes of one commit.
class Making {
 public:
  Making(const View& view, const Subtree& only, const Model& images, const Warn& warn)
      : view_(view), only_(only), images_(images), warn_(warn) {}

  LeafChanges of(const RecordChanges& records) {
    for (const LeftOutEntry& entry : records.leftOut) {
      leftOut(*entry.kind, entry);
      if (entry.kind == &kinds::interface) leftOut(kinds::referencedInterface, entry);
    }
    for (const RecordChange& change : records.changes) {
      record(change);
      if (change.kind == &kinds::interface) referenced(change);
    }
    std::sort(changes_.deleted.begin(), changes_.deleted.end());
    const auto end = std::unique(changes_.deleted.begin(), changes_.deleted.end());
    changes_.deleted.erase(end, changes_.deleted.end());
    sortUpdates(changes_.updated);
    return std::move(changes_);
  }

 private:
  void leftOut(const RecordKind& kind, const LeftOutEntry& entry) {
    if (!warn_ || view_.rows(kind).empty()) return;
    const EntryPath place(kind, entry.keys);
    if (isApart(place.path())) return;
    warn_(entryLeftOut(kind, place.keys(), entry.misfit));
  }
  bool isApart(const std::string& path) const {
    return only_.relation(path) == Subtree::Relation::apart;
  }

  void record(const RecordChange& change) {
    if (view_.rows(*change.kind).empty()) return;  // the view doesn't show it
    const EntryPath place(*change.kind, change.keys);
    if (isApart(place.path())) return;
    if (change.after == nullptr && change.kind->isList()) return entryGone(change, place);
    for (const View::Row& row : view_.rows(*change.kind)) leaf(change, place, row);
  }

  // An interface that came or went did so in /interfaces, too. What stands there follows from its
  // name, so no other change changes it.
  void referenced(const RecordChange& change) {
    const RecordKind& kind = kinds::referencedInterface;
    if (change.before != nullptr && change.after != nullptr) return;
    if (change.before != nullptr) return record({&kind, change.keys, change.before, nullptr});
    record({&kind, change.keys, nullptr, entryIn(images_, &kind, change.keys)});
  }

  void leaf(const RecordChange& change, const EntryPath& place, const View::Row& row) {
    const LeafValue before = read(change, change.before.get(), place, row, false);
    const LeafValue after = read(change, change.after, place, row, true);
    if (before == after) return;
    if (isAbsent(after)) return leafGone(change, row);
    changes_.updated.push_back({place.pathOf(row.path), row.type, owned(after)});
  }

  // What a leaf can't hold is warned of once, and not again for its mirror.
  LeafValue read(const RecordChange& change, const void* record, const EntryPath& place,
                 const View::Row& row, bool mayWarn) const {
    if (record == nullptr) return {};
    Faults faults;
    if (mayWarn && warn_ && !row.isMirror && !isApart(place.pathOf(row.path))) {
      faults.hear = [&](const std::string& reason) {
        warn_(leafLeftOut({change.kind, record, row.leaf}, place.keys(), reason));
      };
    }
    return change.kind->read(record, row.leaf, place.keys(), faults);
  }

  // ===== What went

  void entryGone(const RecordChange& change, const EntryPath& place) {
    const RecordKind& kind = *change.kind;
    if (kind.parent == nullptr) return deleted(place.path());
    // A list without a key is no node: what goes is a container around it, or the entry.
    const std::string_view list = kind.path;
    const std::size_t slash = std::min(list.rfind('/'), list.size());
    const std::string around = highestGone(*kind.parent, change.keys, list.substr(0, slash));
    deleted(around.empty() ? place.path() : around);
  }

  void leafGone(const RecordChange& change, const View::Row& row) {
    const RecordKind& kind = *change.kind;
    if (kind.isList()) return deleted(highestGone(kind, change.keys, row.path));
    const std::string below = std::string(kind.path) + '/' + row.path;
    if (kind.parent != nullptr) return deleted(highestGone(*kind.parent, change.keys, below));
    deleted(highestGone({nullptr, &images_, {}}, '/' + std::string(kind.root->name), below));
  }

  // The highest of the nodes on a path below an entry, and at its end, that is not there; empty if
  // all are.
  std::string highestGone(const RecordKind& kind, const RecordKeys& keys, std::string_view below) {
    const EntryPath place(kind, keys);
    return highestGone({&kind, entryIn(images_, &kind, keys), place.keys()}, place.path(), below);
  }
  std::string highestGone(const TreeEntry& entry, const std::string& path, std::string_view below) {
    for (std::size_t end = 0; end < below.size();) {
      end = std::min(below.find('/', end + 1), below.size());
      const std::string_view node = below.substr(0, end);
      if (!isThere(view_, entry, node)) return path + '/' + std::string(node);
    }
    return {};
  }

  void deleted(std::string node) { changes_.deleted.push_back(std::move(node)); }

  const View& view_;
  const Subtree& only_;
  const Model& images_;
  const Warn& warn_;
  LeafChanges changes_;
};

}  // namespace

LeafDiffer::LeafDiffer(LeafRequest request) : request_(std::move(request)), view_(request_.view) {
  if (!request_.warn) return;
  warnOnce_ = [this](const std::string& line) {
    if (warned_.insert(line).second) request_.warn(line);
  };
}

LeafChanges LeafDiffer::all(const Model& images, const std::vector<LeftOutEntry>& leftOut) {
  LeafChanges all =
      Making(view_, request_.only, images, warnOnce_).of({.isWhole = true, .leftOut = leftOut});
  all.isWhole = true;
  eachLeaf(
      images, view_,
      [&](const std::string& path, LeafType type, const LeafValue& value) {
        all.updated.push_back({path, type, owned(value)});
      },
      warnOnce_, request_.only);
  sortUpdates(all.updated);
  tops_.clear();
  if (!request_.only.isAll()) keepTops(all);
  return all;
}

LeafChanges LeafDiffer::of(const RecordChanges& records, const Model& images) {
  LeafChanges changes = Making(view_, request_.only, images, warnOnce_).of(records);
  if (!request_.only.isAll()) keepWithin(changes);
  return changes;
}

// A node that went from around the subtree took the subtree along, as far as it was there.
void LeafDiffer::keepWithin(LeafChanges& changes) {
  using Relation = Subtree::Relation;
  std::vector<std::string> deleted;
  for (std::string& node : changes.deleted) {
    const Relation relation = request_.only.relation(node);
    if (relation == Relation::above) {
      deleted.insert(deleted.end(), tops_.begin(), tops_.end());
      tops_.clear();
    } else if (relation == Relation::within) {
      tops_.erase(node);
      deleted.push_back(std::move(node));
    }
  }
  changes.deleted = std::move(deleted);
  std::erase_if(changes.updated,
                [&](const LeafUpdate& leaf) { return !request_.only.within(leaf.path); });
  keepTops(changes);
}

void LeafDiffer::keepTops(const LeafChanges& changes) {
  for (const LeafUpdate& leaf : changes.updated) {
    const std::string_view top = request_.only.topAbove(leaf.path);
    if (tops_.empty() || top != *tops_.rbegin()) tops_.emplace(top);
  }
}

}  // namespace host
