// A model that is published, and readers of the store.
#pragma once

#include <map>
#include <string>

#include "host/openconfig/LeafPath.h"
#include "host/openconfig/LeafText.h"
#include "host/publish/EntryName.h"
#include "host/publish/WindowWalk.h"
#include "tests/support/HostFeed.h"

namespace support {

// A model whose commits go into a store, with timestamps 1, 2, 3.
struct HostPublished : HostModel {
  explicit HostPublished(const char* text = "{}") {
    host::readModelText(text, model);
    commit();
  }
  void commit() { feed.commit(); }

  host::Store store;
  std::int64_t timestamp = 0;
  bool hasChanged = false;  // by the last commit
  host::Feed feed{model};
  host::Feed::Subscription subscription =
      feed.onRecords([this](const host::RecordChanges& changes) {
        hasChanged = store.publish(changes, feed.committed(), ++timestamp);
      });
};

// Reads windows of a store into leaves by their paths.
class StoreReader {
 public:
  explicit StoreReader(const host::View& view = allOf()) : view_(view) {}

  static const host::View& allOf() {
    static const host::View view;
    return view;
  }

  // "- PATH" for each deletion, "+ PATH VALUE" for each update, of what changed since the last read.
  HostLines read(const host::Store& store) {
    const host::Store::Window window = store.since(known_);
    isLost_ = isLost_ || window.isLost;
    lines_.clear();
    host::WindowWalk walk(view_, window, known_);
    for (const auto& image : window.images) walk.image(*image, wanted(), visit());
    known_ = window.head.commit;
    return lines_;
  }
  // The first set, piece by piece by the names; `between` is called behind each piece.
  template <class Between>
  void readPieces(const host::Store& store, const Between& between) {
    known_ = store.head().commit;
    std::string name;
    for (;;) {
      const host::Store::Piece piece = store.piece(name);
      if (!piece.block) break;
      for (const auto& image : piece.block->images) {
        if (image->name() >= name && !image->isGone()) add(*image);
      }
      name = std::string(piece.block->images.back()->name()) + '\0';
      between();
    }
    read(store);
  }

  const std::map<std::string, std::string>& leaves() const { return leaves_; }
  bool isLost() const { return isLost_; }
  host::Commit known() const { return known_; }
  void knownIs(host::Commit commit) { known_ = commit; }

 private:
  host::WindowWalk::Wanted wanted() const {
    return {[](const auto&, const auto&) { return host::allRows; },
            [](const auto&, const auto&) { return true; }};
  }
  host::WindowWalk::Visit visit() {
    return {[this](const host::GoneNode& node) { gone(node); },
            [this](const host::RecordAt& at, host::RowSet rows) { changed(at, rows); }};
  }
  void add(const host::Image& image) {
    host::Keys keys;
    image.keys(keys);
    changed(image.at(keys), host::allRows);
  }
  void gone(const host::GoneNode& node) {
    std::string path;
    if (node.kind != nullptr) host::appendEntryPath(path, *node.kind, node.keys);
    if (!node.below.empty()) host::appendBelow(path, node.below);
    lines_.push_back("- " + path);
    std::erase_if(leaves_, [&](const auto& leaf) {
      return leaf.first == path || leaf.first.starts_with(path + '/');
    });
  }
  void changed(const host::RecordAt& at, host::RowSet rows) {
    std::string record;
    host::appendEntryPath(record, at.kind, at.keys);
    const auto all = view_.rows(at.kind);
    for (std::size_t i = 0; i < all.size(); ++i) {
      const host::LeafValue value = at.leaf(all[i].leaf);
      if ((rows >> i & 1) == 0 || host::isAbsent(value)) continue;
      const std::string path = record + '/' + all[i].path;
      leaves_[path] = host::leafText(all[i].type, value);
      lines_.push_back("+ " + path + ' ' + leaves_[path]);
    }
  }

  const host::View& view_;
  host::Commit known_ = 0;
  bool isLost_ = false;
  HostLines lines_;
  std::map<std::string, std::string> leaves_;
};

}  // namespace support
