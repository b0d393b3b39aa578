#include "host/openconfig/LeafWalk.h"

namespace host {

LeafWalk::LeafWalk(const View& view, const Warn& warn) : view_(view), warn_(warn) {
  if (warn_) faults_.hear = [this](const std::string& reason) { leafLeftOut(reason); };
}

void LeafWalk::walk(const Model& model) {
  for (const RecordKind* kind : view_.outermost()) entries(*kind, &model);
}

void LeafWalk::entries(const RecordKind& kind, const void* holder) {
  bool isFirst = true;
  kind.each(holder, [&](std::string_view key, std::string_view misfit, const void* found) {
    const void* record = kind.record(found);
    if (record == nullptr) return;
    if (!kind.isList()) return leaves(kind, record);
    keys_.push_back(key);
    if (misfit.empty()) {
      if (isFirst) listBegins(kind);
      isFirst = false;
      entryBegins(kind, key);
      entry(kind, found, record);
      entryEnds();
    } else if (warn_) {
      leftOut(pathOf(kind, keys_.size()), misfit, kind.native(keys_));
    }
    keys_.pop_back();
  });
  if (!isFirst) listEnds();
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
  at_ = {&kind, record, row.leaf};
  static const Faults silent;
  const LeafValue value = kind.read(record, row.leaf, keys_, row.isMirror ? silent : faults_);
  if (!isAbsent(value)) leaf(kind, row, value);
}

// ===== What is left out

// The path of a container, or of the entry under the first `depth` keys.
std::string LeafWalk::pathOf(const RecordKind& kind, std::size_t depth) const {
  const std::size_t above = kind.isList() ? depth - 1 : depth;
  std::string path =
      kind.parent != nullptr ? pathOf(*kind.parent, above) : '/' + std::string(kind.root->member);
  path += '/' + std::string(kind.path);
  if (!kind.isList()) return path;
  const std::string_view key = keys_[above];
  const char* quote = key.find('\'') == std::string_view::npos ? "'" : "\"";
  return path + '[' + std::string(kind.key) + '=' + quote + shown(key) + quote + ']';
}

void LeafWalk::leafLeftOut(const std::string& reason) {
  const auto& [kind, record, leaf] = at_;
  const std::string path = pathOf(*kind, keys_.size()) + '/' + std::string(kind->leaves[leaf].path);
  leftOut(path, reason, kind->nativeOfLeaf(record, leaf, keys_));
}

void LeafWalk::leftOut(const std::string& path, std::string_view reason,
                       const std::string& native) {
  warn_(path + ": " + std::string(reason) + ": left out (from " + native + ')');
}

}  // namespace host
