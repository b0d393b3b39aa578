// OVERVIEW
//   The hash map behind every keyed collection. Entries live in nodes whose addresses never change;
//   an index of eight bytes a bucket (32 bits of hash, 32 bits of node number) finds them. Growing
//   rebuilds the index alone, so the worst insert stays short, and a walk goes over the nodes and
//   not over the index, so it survives every change.
//
//   A map is one pointer, and that of one entry is one block. The index comes with the second.
//
// RULES
//   - Two storage forms. Hm2018NEI keeps key and value side by side. Hm2018NII keeps the value
//     alone and reads the key out of it by a functor; the key must not change while the entry
//     stands.
//   - Walk order is unspecified. HashHelper::orderSeedIs varies it.
//   - The safe iterator (StdIterator.h) survives every change made while it stands:
//       delete the entry under it      the node stays readable until the iterator moves on
//       delete another entry           not visited if it was still to come
//       add an entry                   visited or not, never twice
//       _memberDelAll, map destroyed   the walk ends at its next step
//   - A range-based for walks by the safe iterator. It binds references to the key and the value in
//     the node, so both stay readable to the end of the loop body, whatever that does, and a value
//     that is replaced reads as the new one. A key inside a value that is a pointer (Hm2018NII)
//     stands in the object pointed to: it dangles once the body puts another object into the node.
//     The map must exist when the walk begins, not longer.
//   - version() moves with every structural change: insert, delete, clear, assignment. No two
//     states of any two maps have the same version, but that of a map which never had an entry is
//     0. So a caller that keeps a node and the version at which it was found needs no second lookup
//     while the version stays the same.
//   - Values are destroyed after the map is whole again, so a value's destructor may use the map.
//
// EXAMPLE
//   Rok::HashMap2018<Rok::Hm2018NEI<0x51, Velmo::String, int>> ports;
//   ports.newMember("Ethernet1", 7);
//   assert(*ports.find("Ethernet1") == 7);
//   int sum = 0;
//   for (const auto& [name, number] : ports) {
//     ports.deleteMember(name);
//     sum += number;
//   }
//   assert(ports.members() == 0 && sum == 7);
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>

#include "Rok/HashTable.h"
#include "Rok/StdIterator.h"

namespace Rok {

// Storage form with the key beside the value.
template <std::uint32_t mapSeed, class KeyType, class ValueType>
struct Hm2018NEI {
  using Key = KeyType;
  using Value = ValueType;
  static constexpr std::uint32_t seed = mapSeed;

  class Node {
   public:
    template <class V>
    Node(const Key& key, V&& value) : key_(key), value_(std::forward<V>(value)) {}
    const Key& key() const { return key_; }
    const Value& value() const { return value_; }
    Value& value() { return value_; }

   private:
    Key key_;
    Value value_;
  };
};

// Storage form with the key inside the value.
template <std::uint32_t mapSeed, class KeyType, class ValueType, class Functor>
struct Hm2018NII {
  using Key = KeyType;
  using Value = ValueType;
  static constexpr std::uint32_t seed = mapSeed;

  class Node {
   public:
    template <class V>
    Node(const Key& /*key*/, V&& value) : value_(std::forward<V>(value)) {}
    decltype(auto) key() const { return Functor{}(value_); }
    const Value& value() const { return value_; }
    Value& value() { return value_; }

   private:
    Value value_;
  };
};

template <class Form>
class HashMap2018 {
 public:
  using Key = typename Form::Key;
  using Value = typename Form::Value;
  using Node = typename Form::Node;
  using Iterator = HashMap2018IteratorGeneric<HashMap2018>;
  using UnsafeIterator = HashMap2018UnsafeIteratorConstGeneric<HashMap2018>;

  HashMap2018() = default;
  HashMap2018(const HashMap2018& other) : HashMap2018() { copyFrom(other); }
  HashMap2018(HashMap2018&& other) noexcept : table_(std::exchange(other.table_, nullptr)) {}
  HashMap2018& operator=(const HashMap2018& other) {
    if (this != &other) {
      _memberDelAll();
      copyFrom(other);
    }
    return *this;
  }
  HashMap2018& operator=(HashMap2018&& other) noexcept {
    if (this != &other) {
      HashMap2018 old(std::move(*this));
      table_ = std::exchange(other.table_, nullptr);
    }
    return *this;
  }
  ~HashMap2018() { emptyAllBuckets(true); }

  std::uint32_t members() const { return table_ != nullptr ? table_->count : 0; }
  std::uint64_t version() const { return table_ != nullptr ? table_->version : 0; }

  // The node under a key, or null.
  const Node* member(const Key& key) const {
    return const_cast<HashMap2018*>(this)->memberRef(key);
  }
  Node* memberRef(const Key& key) { return table_ != nullptr ? table_->find(key).node : nullptr; }
  // The value under a key, or null.
  const Value* find(const Key& key) const {
    const Node* node = member(key);
    return node != nullptr ? &node->value() : nullptr;
  }
  Value* find(const Key& key) {
    Node* node = memberRef(key);
    return node != nullptr ? &node->value() : nullptr;
  }

  // The value under a key, or the default value (null, for a pointer) where there is none.
  Value get(const Key& key) const {
    const Value* found = find(key);
    return found != nullptr ? *found : Value();
  }

  // Inserts. Returns the node under the key and whether it is new; a node that is there already
  // stays as it is.
  template <class V>
  std::pair<Node*, bool> newMember(const Key& key, V&& value) {
    if (table_ == nullptr) table_ = Table::create();
    const std::uint32_t hash = table_->hashFor(key);
    if (Node* found = table_->find(hash, key).node) return {found, false};
    return {table_->insert(hash, key, std::forward<V>(value)), true};
  }

  // Removes. Returns whether something was removed and gives it back through `removed`, if given:
  // when an iterator stands on the entry, a copy. Throws: what leaves that copy; then nothing has
  // changed.
  bool deleteMember(const Key& key, Value* removed = nullptr) {
    if (table_ == nullptr) return false;
    const auto found = table_->find(key);
    if (found.node == nullptr) return false;
    if (removed != nullptr) table_->copyIfStoodOn(found, *removed);
    table_->remove(found, removed);
    return true;
  }

  // Removes all entries.
  void _memberDelAll() {
    if (table_ == nullptr) return;
    table_->clear();
  }

  // Removes all entries and, with `release`, gives the memory back too.
  void emptyAllBuckets(bool release) {
    if (table_ == nullptr) return;
    if (!release) return table_->clear();
    Table* table = std::exchange(table_, nullptr);
    table->clear();
    table->mapGone();
  }

  // Where a walk meets the entry of a key: of two entries, the one of the lesser place comes first.
  // Requires: the entry.
  std::uint64_t walkPlace(const Key& key) const { return table_->walkPlace(table_->find(key).n); }

  // A walk that survives every change.
  Iterator iterator() const { return Iterator(*this); }
  // The same for a range-based for: `for (const auto& [key, value] : map)`.
  Iterator begin() const { return Iterator(*this); }
  std::default_sentinel_t end() const { return std::default_sentinel; }
  // A walk that asserts that nothing changes.
  UnsafeIterator unsafeIterator() const { return UnsafeIterator(*this); }

  // Bytes of nodes and index, without what keys and values hold elsewhere.
  std::size_t bytes() const { return table_ != nullptr ? table_->bytes() : 0; }

  friend bool operator==(const HashMap2018& a, const HashMap2018& b) {
    if (a.members() != b.members()) return false;
    for (UnsafeIterator i = a.unsafeIterator(); i; ++i) {
      const Node* twin = b.member(i->key());
      if (twin == nullptr || !(twin->value() == i->value())) return false;
    }
    return true;
  }

 private:
  friend Iterator;
  friend UnsafeIterator;
  using Table = Impl::HashTable<Form>;

  void copyFrom(const HashMap2018& other) {
    for (UnsafeIterator i = other.unsafeIterator(); i; ++i) newMember(i->key(), i->value());
  }

  Table* table_ = nullptr;
};

}  // namespace Rok
