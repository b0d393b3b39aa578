// OVERVIEW: what a window says to a reader that knows what there was before it: nodes that went, and
// leaves that came or changed.
//
// RULES
// - For what went, the highest node is named that is not there any more, but none above the outermost
//   entry of a list, and outside lists none above a child of the root. Each once.
// - Records come in the order of a record walk. What was removed and came back is a deletion of the
//   entry right before its leaves.
// - A deletion that comes behind an update takes nothing of it along.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "host/publish/Store.h"

namespace host {

// A node at `below` (containers and a leaf, or empty) of an entry; without a kind, of the root.
struct GoneNode {
  const RecordKind* kind;
  const Keys& keys;  // of the lists on the way to the entry, its own included
  std::string_view below;
};

class WindowWalk {
 public:
  // What a reader wants.
  struct Wanted {
    // Of the rows of a record.
    std::function<RowSet(const RecordKind& kind, const Keys& keys)> rows;
    // Whether it wants anything at an entry or below.
    std::function<bool(const RecordKind& kind, const Keys& keys)> leadsTo;
  };
  struct Visit {
    std::function<void(const GoneNode& node)> gone;
    std::function<void(const RecordAt& at, RowSet rows)> changed;
  };

  // The window is of what changed behind `since`. All must outlive the walk.
  WindowWalk(const View& view, const Store::Window& window, Commit since);

  // The calls for an image of the window. Requires: they are taken in their order.
  void image(const Image& image, const Wanted& wanted, const Visit& visit);

 private:
  void entryGone(const Image& image, const Visit& visit);
  void leavesGone(const Image& image, RowSet rows, const Visit& visit);
  void pathGone(const RecordKind* kind, std::string_view entry, std::string_view below,
                const Visit& visit);
  bool isThere(const RecordKind* kind, std::string_view entry, std::string_view below) const;
  bool hasLeaf(const RecordKind& kind, std::string_view entry, std::string_view prefix,
               std::string_view below) const;
  bool hasBelow(const RecordKind& kind, std::string_view entry, std::string_view below) const;
  bool hasAny(std::string_view prefix) const;
  void gone(const RecordKind* kind, std::string_view entry, std::string_view below,
            const Visit& visit);

  const View& view_;
  const Store::Window& window_;
  const Commit since_;
  Keys keys_;
  std::set<std::string, std::less<>> named_;  // nodes that went
};

}  // namespace host
