// OVERVIEW
//   The model as the last commit left it, for other threads than the one that writes it. A commit
//   becomes images of the records that it changed. Readers take what they want under a short lock, as
//   images, and read these without one.
//
// RULES
// - One thread publishes. It never waits for a reader to be done: the lock is held to take images,
//   not to read them.
// - A commit is published whole. A snapshot and a window hold whole commits.
// - A record has one place in the order of the changes, that of its last one. So a reader that lags
//   costs nothing, and what it finds is what there is: a record that changed twice comes once.
// - What went leaves an image that says so, one for the highest entry. There are at most a quarter as
//   many of these as records, and some; then the oldest go. A reader that is behind one of them has
//   missed what went: its window is lost, and it begins anew.
// - The first set of a reader: it notes the head, takes the pieces one after the other by their names,
//   and then the window since that head. What changes between the pieces comes twice, or late, and
//   nothing is missed.
//
// EXAMPLE
//   host::Store store;
//   const auto subscription = feed.onRecords([&](const host::RecordChanges& changes) {
//     store.publish(changes, feed.committed(), clock.next());
//   });
//   ...
//   host::Store::Window window = store.since(known);  // in another thread
//   for (const auto& image : window.images) read(*image);
//   known = window.head.commit;
#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "host/feed/RecordChange.h"
#include "host/publish/ImageIndex.h"
#include "host/publish/ImageLog.h"

namespace host {

class Store {
 public:
  // The last commit that changed something, and when that was.
  struct Head {
    Commit commit = 0;
    std::int64_t timestamp = 0;  // nanoseconds since 1970
  };
  // All that there is. Images of what went are among them.
  struct Snapshot {
    Head head;
    ImageIndex images;
  };
  // What changed behind a commit.
  struct Window {
    Head head;
    bool isLost = false;                  // it isn't known any more what went
    std::vector<Ref<Image>> images = {};  // in the order of their names
    // Where something went: what there is beside it.
    std::optional<ImageIndex> all = std::nullopt;
  };
  // Some records that stand side by side.
  struct Piece {
    Head head;
    Ref<ImageIndex::Block> block = {};  // null at the end
  };

  Store() = default;
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  // ===== For the thread that publishes

  // What a commit of a feed changed; `committed` is the feed's model. Returns whether that was
  // anything.
  // Requires: the timestamp is greater than the one before.
  bool publish(const RecordChanges& changes, const Model& committed, std::int64_t timestamp);

  // ===== For any thread

  Head head() const;
  Snapshot snapshot() const;
  Window since(Commit commit) const;
  // The block that has the first record of this name or one behind it.
  Piece piece(std::string_view name) const;

  // What images and index take.
  std::size_t bytes() const;

 private:
  // What a commit becomes: made without the lock, put in under it.
  struct Commitment {
    Commit commit;
    std::vector<Ref<Image>> images = {};
    std::unordered_set<std::string> named = {};  // of changes that are whole: all that there is
    bool isWhole = false;
  };

  Commitment commitmentOf(const RecordChanges& changes, const Model& committed) const;
  void add(Commitment& made, const RecordKind& kind, const RecordChange& change,
           const void* record) const;
  void addMissing(Commitment& made) const;
  void put(Ref<Image> image);
  void remove(ImageIndex::Place& place);
  void takeFromLog(const Image& image);
  void dropOldest();
  ImageLog& logOf(const Image& image) { return image.isGone() ? gone_ : there_; }

  mutable std::mutex mutex_;  // of all below; the thread that publishes reads without it
  Head head_;
  ImageIndex index_;
  ImageLog there_;
  ImageLog gone_;
  Commit forgotten_ = 0;  // what went up to that commit may have left no image
};

}  // namespace host
