// Makes the store of a kind from the types of its records.
#pragma once

#include <memory>
#include <string>
#include <tuple>
#include <type_traits>

#include "host/Model.h"
#include "host/openconfig/KeyText.h"
#include "host/openconfig/LeafTable.h"
#include "host/openconfig/RecordStore.h"

namespace host {

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

// What any kind's store does by the type of its record.
template <class Record>
struct Copied {
  static bool areEqual(const void* record, const void* other) {
    return *static_cast<const Record*>(record) == *static_cast<const Record*>(other);
  }
  static std::shared_ptr<const void> copy(const void* record) {
    return std::make_shared<Record>(*static_cast<const Record*>(record));
  }
};

// The entries of a directory.
template <class Record, auto... steps>
struct Listed {
  using Keys = RecordStore::Keys;
  using Holder = decltype(ownerOf(std::get<0>(std::tuple(steps...))));
  using Dir = std::remove_cvref_t<decltype(*from<steps...>(nullptr))>;
  using Map = std::remove_cvref_t<decltype(mapOf(std::declval<const Dir&>()))>;
  using MapKey = typename Map::Key;
  using Entry = std::remove_cvref_t<decltype(*QosOc::Config::reached(
      std::declval<const typename Map::Value&>()))>;

  static const typename Map::Value* find(const void* holder, const MapKey& key) {
    const Dir* dir = from<steps...>(holder);
    return dir != nullptr ? mapOf(*dir).find(key) : nullptr;
  }
  static Dir& dir(void* holder) { return made<steps...>(*static_cast<Holder*>(holder)); }

  static const void* at(const void* holder, const Keys& keys) {
    const MapKey& key = keyOf<Holder, MapKey>(keys);
    const auto* found = find(holder, key);
    return found != nullptr && KeyText::isHeld(key) ? QosOc::Config::reached(*found) : nullptr;
  }
  static std::string misfit(const void* holder, const Keys& keys, std::string_view keyLeaf) {
    const MapKey& key = keyOf<Holder, MapKey>(keys);
    const bool isNamed = !KeyText::text(key).empty() && find(holder, key) != nullptr;
    return isNamed ? KeyText::misfit(key, keyLeaf) : std::string();
  }
  static std::string keyText(const Keys& keys) {
    return std::string(KeyText::text(keyOf<Holder, MapKey>(keys)));
  }
  static void each(const void* holder, const Keys& above, const RecordStore::EachKey& visit) {
    const Dir* dir = from<steps...>(holder);
    if (dir == nullptr) return;
    for (auto i = mapOf(*dir).unsafeIterator(); i; ++i) {
      visit(keysWith<Holder, MapKey>(above, i->key()));
    }
  }
  static bool isEmpty(const void* holder) {
    const Dir* dir = from<steps...>(holder);
    return dir == nullptr || mapOf(*dir).members() == 0;
  }
  static void put(void* holder, const Keys& keys, const void* record) {
    const Record& content = *static_cast<const Record*>(record);
    if constexpr (std::is_same_v<Record, Entry>) {
      (dir(holder).*Dir::entries().is)(content);
    } else {
      (dir(holder).*Dir::entries().is)(keyOf<Holder, MapKey>(keys))->configIs(content);
    }
  }
  static void drop(void* holder, const Keys& keys) {
    (dir(holder).*Dir::entries().del)(keyOf<Holder, MapKey>(keys));
  }
};

// A record that the steps lead to.
template <class Record, auto... steps>
struct Contained {
  using Keys = RecordStore::Keys;
  using Holder = decltype(ownerOf(std::get<0>(std::tuple(steps...))));

  static const void* at(const void* holder, const Keys& /*keys*/) {
    const Record* record = from<steps...>(holder);
    return record != nullptr && *record ? record : nullptr;
  }
  static std::string misfit(const void* /*holder*/, const Keys& /*keys*/,
                            std::string_view /*keyLeaf*/) {
    return {};
  }
  static std::string keyText(const Keys& /*keys*/) { return {}; }
  static void each(const void* holder, const Keys& above, const RecordStore::EachKey& visit) {
    if (from<steps...>(holder) != nullptr) visit(above);
  }
  static bool isEmpty(const void* holder) { return at(holder, {}) == nullptr; }
  static void put(void* holder, const Keys& /*keys*/, const void* record) {
    const Record& value = *static_cast<const Record*>(record);
    withAttribute<steps...>(*static_cast<Holder*>(holder), [&](auto& object, const auto& row) {
      setAttribute(object, row, {value});
    });
  }
  static void drop(void* holder, const Keys& /*keys*/) {
    withAttribute<steps...>(*static_cast<Holder*>(holder),
                            [](auto& object, const auto& row) { resetAttribute(object, row); });
  }
};

}  // namespace Impl

// The store of the entries of a directory. A kind whose record is the whole object can't be copied:
// the kind of that object's config keeps it.
template <class Record, auto... steps>
constexpr RecordStore listStore() {
  using Of = Impl::Listed<Record, steps...>;
  RecordStore store{Of::Entry::record, Of::at, Of::misfit, Of::keyText, Of::each, Of::isEmpty};
  if constexpr (std::is_copy_constructible_v<Record>) {
    store.areEqual = Impl::Copied<Record>::areEqual;
    store.copy = Impl::Copied<Record>::copy;
    store.put = Of::put;
    store.drop = Of::drop;
  }
  return store;
}

// The store of a record that the steps lead to.
template <class Record, auto... steps>
constexpr RecordStore containerStore() {
  using Of = Impl::Contained<Record, steps...>;
  return {Record::record,
          Of::at,
          Of::misfit,
          Of::keyText,
          Of::each,
          Of::isEmpty,
          Impl::Copied<Record>::areEqual,
          Impl::Copied<Record>::copy,
          Of::put,
          Of::drop};
}

}  // namespace host
