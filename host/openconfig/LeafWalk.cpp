#include "host/openconfig/LeafWalk.h"

#include "host/openconfig/LeafPath.h"

namespace host {

LeafWalk::LeafWalk(const View& view, const Warn& warn, const Subtree& only)
    : view_(view),
      only_(only),
      warn_(warn),
      relation_(only.isAll() ? Relation::within : Relation::above) {
  if (warn_) {
    faults_.hear = [this](const std::string& reason) { warn_(leafLeftOut(at_, keys_, reason)); };
  }
}

void LeafWalk::walk(const Model& model) {
  for (const RecordKind* kind : view_.outermost()) entries(*kind, &model);
}

void LeafWalk::entries(const RecordKind& kind, const void* holder) {
  bool hasBegun = false;
  const Relation around = relation_;
  const std::size_t size = path_.size();
  kind.each(holder, [&](std::string_view key, std::string_view misfit, const void* found) {
    const void* record = kind.record(found);
    if (record == nullptr) return;
    if (around != Relation::within) {
      appendEntry(path_, kind, key);
      relation_ = only_.relation(path_);
    }
    if (relation_ != Relation::apart) {
      kind.isList() ? listEntry({&kind, key, &hasBegun}, found, record, misfit)
                    : leaves(kind, record);
    }
    relation_ = around;
    path_.resize(size);
  });
  if (hasBegun) listEnds();
}

void LeafWalk::listEntry(const Open& open, const void* found, const void* record,
                         std::string_view misfit) {
  keys_.push_back(open.key);
  if (misfit.empty()) {
    open_.push_back(open);
    entry(*open.kind, found, record);
    if (open_.back().hasBegun) entryEnds();
    open_.pop_back();
  } else if (warn_) {
    warn_(entryLeftOut(*open.kind, keys_, misfit));
  }
  keys_.pop_back();
}

// Leaves and what is below the entry, in the order of their paths.
void LeafWalk::entry(const RecordKind& kind, const void* entry, const void* record) {
  const auto children = view_.children(kind);
  auto child = children.begin();
  for (const View::Row& row : view_.rows(kind)) {
    while (child != children.end() && pathLess((*child)->path, row.path)) {
      entries(**child++, entry);
    }
    read(kind, record, row);
  }
  while (child != children.end()) entries(**child++, entry);
}

void LeafWalk::leaves(const RecordKind& kind, const void* record) {
  for (const View::Row& row : view_.rows(kind)) read(kind, record, row);
}

// What a leaf can't hold is warned of once, and not again for its mirror.
void LeafWalk::read(const RecordKind& kind, const void* record, const View::Row& row) {
  if (!isWithin(row)) return passKey(kind, record, row);
  at_ = {&kind, record, row.leaf};
  static const Faults silent;
  const LeafValue value = kind.read(record, row.leaf, keys_, row.isMirror ? silent : faults_);
  if (isAbsent(value)) return;
  beginEntries();
  leaf(kind, row, value);
}

// The key of an entry above the subtree keeps its place among the members: it is written here if
// what is within came before, and otherwise once that comes.
void LeafWalk::passKey(const RecordKind& kind, const void* record, const View::Row& row) {
  if (!kind.isList() || row.path != kind.key) return;
  Open& open = open_.back();
  open.keyRow = &row;
  open.keyValue = kind.read(record, row.leaf, keys_, {});
  if (open.hasBegun) leaf(kind, row, open.keyValue);
}

void LeafWalk::beginEntries() {
  if (open_.empty() || open_.back().hasBegun) return;
  for (Open& open : open_) {
    if (open.hasBegun) continue;
    open.hasBegun = true;
    if (!*open.listHasBegun) listBegins(*open.kind);
    *open.listHasBegun = true;
    entryBegins(*open.kind, open.key);
    if (open.keyRow != nullptr) leaf(*open.kind, *open.keyRow, open.keyValue);
  }
}

bool LeafWalk::isWithin(const View::Row& row) {
  if (relation_ == Relation::within) return true;
  const std::size_t size = path_.size();
  appendBelow(path_, row.path);
  const bool isWithin = only_.within(path_);
  path_.resize(size);
  return isWithin;
}

}  // namespace host
