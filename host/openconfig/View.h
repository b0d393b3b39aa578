// OVERVIEW: which leaves of the tables a consumer gets, and at which paths. Consumers differ: some
// know no module but OpenConfig's, some read `state` alone, some look for the interface in
// /interfaces. Code that goes along the kinds takes kinds and rows from a view.
//
// RULES
// - A row is a place of a leaf. With `state`, each leaf below a `config` has a second one, below
//   `state`, unless the table has a leaf of its own there. Both are read by the same number.
// - The rows of a kind, and the kinds below an entry, stand in the order of their paths.
// - All is computed once. Spans stay valid as long as the view.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "Dorpel/Export.h"
#include "host/openconfig/RecordKind.h"

namespace QOS_EXPORT host {

// What a consumer gets beside the leaves that all get.
struct ViewOptions {
  bool augments = true;       // members of the augmenting module
  bool state = false;         // each leaf below a `config` below `state`, too
  bool interfaceRef = false;  // `interface-ref` of an interface, and /interfaces, which that names
};

class View {
 public:
  // A place of a leaf.
  struct Row {
    std::string path;  // below the record
    LeafType type;
    std::size_t leaf;       // its number in the kind's table
    bool isMirror = false;  // below `state`, and the leaf stands below `config`
  };

  explicit View(const ViewOptions& options = {});

  const ViewOptions& options() const { return options_; }
  // The kinds whose holder is the Model.
  std::span<const RecordKind* const> outermost() const { return outermost_; }
  // Empty for a kind that the view doesn't show.
  std::span<const RecordKind* const> children(const RecordKind& kind) const;
  // The leaves of the kind; empty for one that the view doesn't show.
  std::span<const Row> rows(const RecordKind& kind) const;

 private:
  struct Part {
    const RecordKind* kind;
    std::vector<Row> rows;
    std::vector<const RecordKind*> children;
  };

  bool shows(const RecordKind& kind) const;
  bool shows(const RecordKind::Row& row) const;
  void add(const RecordKind& kind);
  std::vector<Row> rowsOf(const RecordKind& kind) const;
  const Part* find(const RecordKind& kind) const;

  ViewOptions options_;
  std::vector<const RecordKind*> outermost_;
  std::vector<Part> parts_;
};

}  // namespace host
