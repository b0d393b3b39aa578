// OVERVIEW: what it takes to keep a copy of a model in step with it, for the entries of one kind:
// to find them by the keys that a journal marks, to compare their records, to put them into another
// model and to take them out of it.
//
// RULES
// - An entry is what the document has one of: one without a key, or with a key that the document
//   can't hold, isn't found.
// - A container is there while its record isn't the default one.
// - `put` makes what is missing on the way from the holder to the entry.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>

#include "host/Model.h"
#include "host/openconfig/KeyText.h"
#include "host/openconfig/Leaf.h"

namespace host {

struct RecordStore {
  using Keys = QosOc::Config::RecordKeys;
  using EachKey = std::function<void(const Keys& keys)>;

  QosOc::Config::RecordId id;
  // Null when there is none.
  const void* (*at)(const void* holder, const Keys& keys);
  // Why the document can't hold an entry that is there; empty if it can.
  std::string (*misfit)(const void* holder, const Keys& keys, std::string_view keyLeaf);
  // The entry's own key as the document has it; empty for a container.
  std::string (*keyText)(const Keys& keys);
  // The keys of all entries, in no order; `above` are those of the holder.
  void (*each)(const void* holder, const Keys& above, const EachKey& visit);
  bool (*isEmpty)(const void* holder);

  bool (*areEqual)(const void* record, const void* other);
  std::shared_ptr<const void> (*copy)(const void* record);
  void (*put)(void* holder, const Keys& keys, const void* record);
  void (*drop)(void* holder, const Keys& keys);
};

namespace Impl {

template <class T, class Owner>
Owner ownerOf(T Owner::*);

// What the steps lead to from a holder: a directory, or a record.
template <auto step, auto... steps>
const auto* from(const void* holder) {
  using Holder = decltype(ownerOf(step));
  return follow<step, steps...>(*static_cast<const Holder*>(holder));
}

template <class Dir>
const auto& mapOf(const Dir& dir) {
  return (dir.*Dir::entries().map)();
}

using QosOc::Config::Attribute;
using QosOc::Config::Child;

// What the steps lead to from a holder, made where it is missing.
template <class Object, class T, class... Arguments>
void makeChild(Object& object, const Child<Object, T, Arguments...>& row) {
  (object.*row.is)(std::remove_cvref_t<Arguments>()...);
}
// Calls `act` with the row, among those of an object's attributes, that reads by `step`.
template <auto step, class Object, class Act>
void withRow(const Act& act) {
  const auto tryRow = [&](const auto& row) {
    if constexpr (std::is_same_v<decltype(row.read), decltype(step)>) {
      if (row.read == step) act(row);
    }
  };
  std::apply([&](const auto&... row) { (tryRow(row), ...); }, Object::attributes());
}
template <auto step, auto... steps, class Holder>
auto& made(Holder& holder) {
  if constexpr (std::is_member_function_pointer_v<decltype(step)>) {
    if (std::invoke(step, holder) == nullptr) {
      withRow<step, Holder>([&](const auto& row) { makeChild(holder, row); });
    }
  }
  auto& next = *std::invoke(step, holder);
  if constexpr (sizeof...(steps) == 0) {
    return next;
  } else {
    return made<steps...>(next);
  }
}

// Sets the attribute at the end of the steps: to a value, or to the default of its type.
template <class Object, class T>
void setAttribute(Object& object, const Attribute<Object, T>& row, const T& value) {
  (object.*row.set)(value);
}
template <class Object, class T>
void resetAttribute(Object& object, const Attribute<Object, T>& row) {
  (object.*row.set)(T());
}
template <auto step, auto... steps, class Holder, class Act>
void withAttribute(Holder& holder, const Act& act) {
  if constexpr (sizeof...(steps) == 0) {
    withRow<step, Holder>([&](const auto& row) { act(holder, row); });
  } else {
    withAttribute<steps...>(made<step>(holder), act);
  }
}

// A directory's own key among those that lead to an entry.
template <class Holder, class MapKey>
MapKey keyOf(const RecordStore::Keys& keys) {
  if constexpr (!std::is_same_v<MapKey, Rok::String>) {
    return static_cast<MapKey>(keys.number);
  } else {
    return std::is_same_v<Holder, Model> ? keys.outer : keys.below;
  }
}
template <class Holder, class MapKey>
RecordStore::Keys keysWith(RecordStore::Keys above, const MapKey& key) {
  if constexpr (!std::is_same_v<MapKey, Rok::String>) {
    above.number = static_cast<std::uint32_t>(key);
  } else {
    (std::is_same_v<Holder, Model> ? above.outer : above.below) = key;
  }
  return above;
}

template <class Record>
constexpr void compareAndCopy(RecordStore& store) {
  store.areEqual = [](const void* record, const void* other) {
    return *static_cast<const Record*>(record) == *static_cast<const Record*>(other);
  };
  store.copy = [](const void* record) -> std::shared_ptr<const void> {
    return std::make_shared<Record>(*static_cast<const Record*>(record));
  };
}

}  // namespace Impl

// The store of the entries of a directory.
template <class Record, auto... steps>
constexpr RecordStore listStore() {
  using Holder = decltype(Impl::ownerOf(std::get<0>(std::tuple(steps...))));
  using Dir = std::remove_cvref_t<decltype(*Impl::from<steps...>(nullptr))>;
  using Map = std::remove_cvref_t<decltype(Impl::mapOf(std::declval<const Dir&>()))>;
  using MapKey = typename Map::Key;
  using QosOc::Config::reached;
  using Entry = std::remove_cvref_t<decltype(*reached(std::declval<const typename Map::Value&>()))>;
  RecordStore store{};
  store.id = Entry::record;
  store.at = [](const void* holder, const RecordStore::Keys& keys) -> const void* {
    const Dir* dir = Impl::from<steps...>(holder);
    const MapKey& key = Impl::keyOf<Holder, MapKey>(keys);
    const auto* found = dir != nullptr ? Impl::mapOf(*dir).find(key) : nullptr;
    return found != nullptr && KeyText::isHeld(key) ? reached(*found) : nullptr;
  };
  store.misfit = [](const void* holder, const RecordStore::Keys& keys, std::string_view keyLeaf) {
    const Dir* dir = Impl::from<steps...>(holder);
    const MapKey& key = Impl::keyOf<Holder, MapKey>(keys);
    const bool isThere = dir != nullptr && Impl::mapOf(*dir).find(key) != nullptr;
    return isThere && !KeyText::text(key).empty() ? KeyText::misfit(key, keyLeaf) : std::string();
  };
  store.keyText = [](const RecordStore::Keys& keys) {
    return std::string(KeyText::text(Impl::keyOf<Holder, MapKey>(keys)));
  };
  store.each = [](const void* holder, const RecordStore::Keys& above,
                  const RecordStore::EachKey& visit) {
    const Dir* dir = Impl::from<steps...>(holder);
    if (dir == nullptr) return;
    for (auto i = Impl::mapOf(*dir).unsafeIterator(); i; ++i) {
      visit(Impl::keysWith<Holder, MapKey>(above, i->key()));
    }
  };
  store.isEmpty = [](const void* holder) {
    const Dir* dir = Impl::from<steps...>(holder);
    return dir == nullptr || Impl::mapOf(*dir).members() == 0;
  };
  // A kind whose record is the whole object is kept by the kind that the object's config has.
  if constexpr (std::is_copy_constructible_v<Record>) {
    Impl::compareAndCopy<Record>(store);
    store.put = [](void* holder, const RecordStore::Keys& keys, const void* record) {
      Dir& dir = Impl::made<steps...>(*static_cast<Holder*>(holder));
      const Record& content = *static_cast<const Record*>(record);
      if constexpr (std::is_same_v<Record, Entry>) {
        (dir.*Dir::entries().is)(content);
      } else {
        (dir.*Dir::entries().is)(Impl::keyOf<Holder, MapKey>(keys))->configIs(content);
      }
    };
    store.drop = [](void* holder, const RecordStore::Keys& keys) {
      Dir& dir = Impl::made<steps...>(*static_cast<Holder*>(holder));
      (dir.*Dir::entries().del)(Impl::keyOf<Holder, MapKey>(keys));
    };
  }
  return store;
}

// The store of a record that the steps lead to.
template <class Record, auto... steps>
constexpr RecordStore containerStore() {
  using Holder = decltype(Impl::ownerOf(std::get<0>(std::tuple(steps...))));
  RecordStore store{};
  store.id = Record::record;
  store.at = [](const void* holder, const RecordStore::Keys& /*keys*/) -> const void* {
    const Record* record = Impl::from<steps...>(holder);
    return record != nullptr && *record ? record : nullptr;
  };
  store.misfit = [](const void* /*holder*/, const RecordStore::Keys& /*keys*/,
                    std::string_view /*keyLeaf*/) { return std::string(); };
  store.keyText = [](const RecordStore::Keys& /*keys*/) { return std::string(); };
  store.each = [](const void* holder, const RecordStore::Keys& above,
                  const RecordStore::EachKey& visit) {
    if (Impl::from<steps...>(holder) != nullptr) visit(above);
  };
  store.isEmpty = [](const void* holder) { return Impl::from<steps...>(holder) == nullptr; };
  Impl::compareAndCopy<Record>(store);
  store.put = [](void* holder, const RecordStore::Keys& /*keys*/, const void* record) {
    const Record& value = *static_cast<const Record*>(record);
    Impl::withAttribute<steps...>(
        *static_cast<Holder*>(holder),
        [&](auto& object, const auto& row) { Impl::setAttribute(object, row, {value}); });
  };
  store.drop = [](void* holder, const RecordStore::Keys& /*keys*/) {
    Impl::withAttribute<steps...>(*static_cast<Holder*>(holder), [](auto& object, const auto& row) {
      Impl::resetAttribute(object, row);
    });
  };
  return store;
}

}  // namespace host
