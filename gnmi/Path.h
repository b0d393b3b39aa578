// OVERVIEW: what a path of a request takes in, in the terms of the leaf tables. Which kinds of
// records it can touch, under which keys and with which of their leaves, is known from the path
// alone: a consumer goes to these records by their keys, and asks of a changed record which of its
// leaves are wanted.
//
// RULES
// - The path is the elements of the prefix, then those of the path. `*` is one element, `...` any
//   number of them, none included; a key that is left out, or is `*`, is any key.
// - Element names may carry the module that they are of, and members of the augmenting module may do
//   without it. `openconfig:` before the first one is the origin. The deprecated `element` is read
//   where there is no `elem`.
// - What no view shows is refused as UNIMPLEMENTED: an element that the tables don't have, an origin
//   of others. INVALID_ARGUMENT is what no tree could have: a name or a key's value that is no such
//   thing, a key of another name, a target outside the prefix, an origin in prefix and path.
// - Whether the model has what the path names is another question, and not asked here.
//
// EXAMPLE
//   const Path path({request.prefix(), request.path(0), "path[0]"}, view);
//   eachRecord(
//       model, view, [&](auto& kind, auto above) { return path.wanted(kind, above); },
//       [&](const host::RecordAt& at) { send(at, path.rows(at.kind, at.keys)); });
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/openconfig/NodeTree.h"
#include "host/openconfig/RecordWalk.h"

namespace gnmi {
class Path;
}

namespace server {

using host::RowSet;

// Whether a path asks for an entry of that key. Without a key: for all.
using KeyAsked = std::optional<std::string>;

class Path {
 public:
  // As a request has it. The field is the path's name in messages.
  struct Asked {
    const gnmi::Path& prefix;
    const gnmi::Path& path;
    std::string_view field;
    // How many elements below it leaves may stand; 0 for any number.
    std::size_t depth = 0;
  };
  enum class Names { leaf, container, list, entry };

  // A node that the path names: the way to it from the root of the tree, without the node above the
  // roots, and the keys of the lists on the way, its own included.
  struct Top {
    std::vector<const host::Node*> way;
    std::vector<KeyAsked> keys;

    Names names() const;
    // Whether it is one node of a model, and not any of several.
    bool isOne() const;
    friend bool operator==(const Top&, const Top&) = default;
  };

  // What the path takes in of the records of a kind.
  struct Part {
    const host::RecordKind* kind;
    std::vector<KeyAsked> keys;  // of the lists on the way to a record, its own included
    RowSet rows;

    // Requires: the keys are those of a record of the kind.
    bool takesIn(std::span<const std::string_view> keys) const;
  };

  // Throws: Refused.
  Path(const Asked& asked, const host::View& view);
  // What one of the nodes of a path takes in.
  Path(const Top& top, std::size_t depth, const host::View& view);

  // None lies below another one.
  std::span<const Top> tops() const { return tops_; }
  std::span<const Part> parts() const { return parts_; }
  // Whether it names one node of a model: there, the answer of Get is one value, or NOT_FOUND.
  bool isOne() const { return tops_.size() == 1 && tops_.front().isOne(); }
  // What it takes in of a record.
  RowSet rows(const host::RecordKind& kind, std::span<const std::string_view> keys) const;
  // Which entries of a kind it takes in or leads through, under the keys of the lists on the way.
  host::EntriesWanted wanted(const host::RecordKind& kind,
                             std::span<const std::string_view> above) const;

 private:
  std::vector<Top> tops_;
  std::vector<Part> parts_;
};

}  // namespace server
