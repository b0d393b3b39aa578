// OVERVIEW: the way to the records of an output model, for code that doesn't know their types. One
// `RecordKind` for each record that has a table of leaves: where it stands in the OpenConfig tree,
// how its entries are walked and found, and its leaves.
//
// RULES
// - A kind is the entries of a list, or a container without a key, below an entry of its parent. An
//   outermost kind stands below a root of the tree, and its holder is the Model.
// - A `const void*` is a holder, an entry or a record: an entry comes from `each` or `find`, is the
//   holder for the kind's children, and gives its record by `record`.
// - Children stand in the order of their paths. A container has none.
//
// EXAMPLE: every term of the model
//   kinds::classifier.each(&model, [&](std::string_view, auto, const void* classifier) {
//     kinds::term.each(classifier, [&](std::string_view id, auto, const void* term) { ... });
//   });
#pragma once

#include <algorithm>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "Dorpel/Export.h"
#include "host/openconfig/Leaf.h"
#include "host/openconfig/RecordStore.h"

namespace QOS_EXPORT host {

// A root of the tree: its member in the document, and its element in a path.
struct TreeRoot {
  std::string_view member;
  std::string_view name;
};
inline constexpr TreeRoot qosRoot{"openconfig-qos:qos", "qos"};
inline constexpr TreeRoot interfacesRoot{"openconfig-interfaces:interfaces", "interfaces"};

struct RecordKind {
  // Gets the entries in the order of their keys. `misfit` says why the document can't hold the key,
  // and is mostly empty. The key is empty for a container.
  using Visit =
      std::function<void(std::string_view key, std::string_view misfit, const void* entry)>;
  // A leaf of the kind, by its path below the entry.
  struct Row {
    std::string_view path;
    LeafType type;
    Shown shown;
    LeafLimits limits;
  };

  std::string_view path;  // below the entry that holds it: containers, and the list
  std::string_view key;   // the leaf that is the key of an entry; empty for a container
  const RecordKind* parent;
  const TreeRoot* root;  // that it stands below, at whatever depth
  std::span<const RecordKind* const> children;
  std::span<const Row> leaves;

  void (*walk)(const RecordKind& kind, const void* holder, const Visit& visit);
  // Null when there is none, or none that the document holds.
  const void* (*find)(const void* holder, std::string_view key);
  // Null when the entry is bookkeeping alone.
  const void* (*record)(const void* entry);
  LeafValue (*read)(const void* record, std::size_t leaf, const Keys& keys, const Faults& faults);
  // The native object that an entry or a leaf's value comes from, for messages.
  std::string (*native)(const Keys& keys);
  std::string (*nativeOfLeaf)(const void* record, std::size_t leaf, const Keys& keys);
  RecordStore store;

  bool isList() const { return !key.empty(); }
  // Calls visit for each entry, in the order of the keys.
  void each(const void* holder, const Visit& visit) const { walk(*this, holder, visit); }
};

namespace kinds {
extern const RecordKind classifier, term;
extern const RecordKind forwardingGroup;
extern const RecordKind interface, inputClassifier, outputPfc, outputQueue, outputSchedulerPolicy;
extern const RecordKind pfcWatchdog;
extern const RecordKind queueManagementProfile;
extern const RecordKind queue;
extern const RecordKind referencedInterface;
extern const RecordKind schedulerPolicy, scheduler, schedulerInput, schedulerRate;
}  // namespace kinds

// Those below /qos. An entry of `kinds::interface` is one of `kinds::referencedInterface`, too.
std::span<const RecordKind* const> outermostKinds();

// Container by container, so that what is below a container comes right after it.
constexpr bool pathLess(std::string_view a, std::string_view b) {
  const auto rank = [](char c) { return c == '/' ? '\0' : c; };
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                      [&](char x, char y) { return rank(x) < rank(y); });
}

// Takes the first of the names that a path joins by slashes.
inline std::string_view takeName(std::string_view& path) {
  const std::string_view name = path.substr(0, path.find('/'));
  path.remove_prefix(std::min(path.size(), name.size() + 1));
  return name;
}

}  // namespace host
