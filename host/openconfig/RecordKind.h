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
#include <array>
#include <optional>
#include <span>
#include <utility>

#include "Dorpel/Export.h"
#include "host/Sorted.h"
#include "host/openconfig/KeyText.h"
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

// ===== Making kinds

namespace Impl {

template <class Record>
inline constexpr auto rows = [] {
  std::array<RecordKind::Row, std::size(Table<Record>::leaves)> rows;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Leaf<Record>& leaf = Table<Record>::leaves[i];
    rows[i] = {leaf.path, leaf.source.type, leaf.shown, leaf.source.limits};
  }
  return rows;
}();

// The parts of a kind that follow from its record.
template <class Record, class Entry>
constexpr RecordKind kindOf(std::string_view path, const RecordKind* parent) {
  using Rows = Table<Record>;
  static_assert(
      std::is_sorted(rows<Record>.begin(), rows<Record>.end(),
                     [](const auto& a, const auto& b) { return pathLess(a.path, b.path); }),
      "rows stand in the order of their paths");
  RecordKind kind{};
  kind.path = path;
  kind.parent = parent;
  kind.root = &qosRoot;
  kind.leaves = rows<Record>;
  kind.record = [](const void* entry) -> const void* {
    const Record* record = nullptr;
    if constexpr (std::is_same_v<Record, Entry>) {
      record = static_cast<const Entry*>(entry);
    } else {
      record = &static_cast<const Entry*>(entry)->config();
    }
    if constexpr (requires { Rows::isThere(*record); }) {
      if (!Rows::isThere(*record)) return nullptr;
    }
    return record;
  };
  kind.read = [](const void* record, std::size_t leaf, const Keys& keys, const Faults& faults) {
    return leafValue(Rows::leaves[leaf], *static_cast<const Record*>(record), keys, faults);
  };
  kind.native = Rows::native;
  kind.nativeOfLeaf = [](const void* record, std::size_t leaf, const Keys& keys) {
    const auto native = Rows::leaves[leaf].native;
    return native == nullptr ? Rows::native(keys)
                             : native(*static_cast<const Record*>(record), keys);
  };
  return kind;
}

}  // namespace Impl

// The entries of a directory, which the steps lead to from the holder, as a list.
template <class Record, auto... steps>
constexpr RecordKind listKind(std::string_view path, std::string_view key,
                              const RecordKind* parent = nullptr,
                              std::span<const RecordKind* const> children = {}) {
  using Dir = std::remove_cvref_t<decltype(*Impl::from<steps...>(nullptr))>;
  using Map = std::remove_cvref_t<decltype(Impl::mapOf(std::declval<const Dir&>()))>;
  using MapKey = typename Map::Key;
  using QosOc::Config::reached;
  using Entry = std::remove_cvref_t<decltype(*reached(std::declval<const typename Map::Value&>()))>;
  RecordKind kind = Impl::kindOf<Record, Entry>(path, parent);
  kind.store = listStore<Record, steps...>();
  kind.key = key;
  kind.children = children;
  kind.walk = [](const RecordKind& self, const void* holder, const RecordKind::Visit& visit) {
    const Dir* dir = Impl::from<steps...>(holder);
    if (dir == nullptr) return;
    for (const auto& [k, entry] : inOrder(Impl::mapOf(*dir))) {
      const auto& text = KeyText::text(*k);
      // An entry without a key is bookkeeping.
      if (!text.empty()) visit(text, KeyText::misfit(*k, self.key), reached(*entry));
    }
  };
  kind.find = [](const void* holder, std::string_view text) -> const void* {
    const Dir* dir = Impl::from<steps...>(holder);
    const auto k = KeyText::key(text, static_cast<const MapKey*>(nullptr));
    if (dir == nullptr || !k || text.empty() || !KeyText::misfit(*k, text).empty()) return nullptr;
    const auto* found = Impl::mapOf(*dir).find(*k);
    return found != nullptr ? reached(*found) : nullptr;
  };
  return kind;
}

// A record that the steps lead to, as a container.
template <class Record, auto... steps>
constexpr RecordKind containerKind(std::string_view path, const RecordKind* parent = nullptr) {
  RecordKind kind = Impl::kindOf<Record, Record>(path, parent);
  kind.store = containerStore<Record, steps...>();
  kind.walk = [](const RecordKind& /*self*/, const void* holder, const RecordKind::Visit& visit) {
    if (const Record* record = Impl::from<steps...>(holder)) visit({}, {}, record);
  };
  kind.find = [](const void* holder, std::string_view /*key*/) -> const void* {
    return Impl::from<steps...>(holder);
  };
  return kind;
}

// The same kind below another root.
constexpr RecordKind below(const TreeRoot& root, RecordKind kind) {
  kind.root = &root;
  return kind;
}

}  // namespace host
