// OVERVIEW: a record as a commit left it, or that it went. An image is never changed and needs no
// model: any thread may read it, hold it and let go of it. It is one block of memory.
//
// RULES
// - A leaf has the number that its kind's table gives it.
// - Each leaf knows the commit that changed it last, also by taking it away. So the leaves that
//   changed since a commit follow from the image alone, without one of those before.
#pragma once

#include <cstdint>
#include <string_view>

#include "host/openconfig/RecordWalk.h"
#include "host/publish/Counted.h"

namespace host {

// Commits that changed something, counted from 1. 0 is before all of them.
using Commit = std::uint64_t;

class Image final : public Counted<Image> {
 public:
  // What a commit made of a record.
  struct Source {
    std::string_view name;  // of the entry
    const RecordKind& kind;
    const Keys& keys;
    const void* record;
    const Image* before;  // null: there was none and is no trace of one
    Commit commit;
  };

  // Null when the record is as the image before has it.
  static Ref<Image> make(const Source& source);
  // That a record went.
  static Ref<Image> gone(const Image& before, Commit commit);

  const RecordKind& kind() const { return *kind_; }
  std::string_view name() const { return {tail() + nameAt_, nameSize_}; }
  void keys(Keys& keys) const;
  bool isGone() const { return leaves_ == 0; }

  // The commit that it is of.
  Commit changed() const { return changed_; }
  // When the record came, all its leaves and what it holds anew.
  Commit came() const { return came_; }
  // When the record of that name went that was there before; 0 if there was none. What it held went
  // with it.
  Commit went() const { return went_; }

  LeafValue leaf(std::size_t number) const;
  Commit leafChanged(std::size_t number) const { return leafTable()[number].changed; }
  // For what reads records. The keys must outlive it.
  RecordAt at(const Keys& keys) const;
  // Those of some rows of a view that changed behind a commit; rows that are not there, too.
  RowSet changedSince(Commit commit, std::span<const View::Row> rows) const;

  // Whether something that a reader may know of went behind a commit: the record, or a leaf of it.
  bool hasLostSince(Commit commit) const;

  std::size_t bytes() const { return sizeof(Image) + tailSize_; }
  void destroy() const;

 private:
  friend class ImageLog;
  struct Leaf {
    Commit changed;
    std::uint32_t at;  // of the value, behind the table
    std::uint32_t size;
  };

  Image(const RecordKind& kind, std::size_t leaves, std::size_t tailSize)
      : kind_(&kind),
        tailSize_(static_cast<std::uint32_t>(tailSize)),
        leaves_(static_cast<std::uint32_t>(leaves)) {}
  ~Image() = default;
  static Ref<Image> withRoom(const RecordKind& kind, std::size_t leaves, std::string_view name,
                             std::string_view values);

  const char* tail() const { return reinterpret_cast<const char*>(this + 1); }
  const Leaf* leafTable() const { return reinterpret_cast<const Leaf*>(tail()); }
  Leaf* leafTable() { return reinterpret_cast<Leaf*>(this + 1); }
  std::string_view value(std::size_t number) const;

  const RecordKind* kind_;
  Commit changed_ = 0;
  Commit came_ = 0;
  Commit went_ = 0;
  // The neighbours in the log of the store, which it alone reads and writes.
  Image* older_ = nullptr;
  Image* newer_ = nullptr;
  std::uint32_t tailSize_;
  std::uint32_t nameAt_ = 0;
  std::uint32_t nameSize_ = 0;
  std::uint32_t leaves_ = 0;
};

}  // namespace host
