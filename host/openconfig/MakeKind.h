// Makes kinds of records from their tables of leaves, and from the steps that lead to the entries.
#pragma once

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

#include "host/Sorted.h"
#include "host/openconfig/KeyText.h"
#include "host/openconfig/MakeStore.h"
#include "host/openconfig/RecordKind.h"

namespace host {

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
