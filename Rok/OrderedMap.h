// OVERVIEW
//   The ordered collection: entries by ascending key, walked from the least one.
//
// RULES
//   - An iterator remembers the collection's version. When the loop body changed the collection,
//     the iterator finds its place again by its key and goes on at the next greater one. So
//     deleting any entry is safe, and an entry added behind the current key is visited.
//   - A range-based for walks by the same iterator. It binds the iterator's copy of the key and a
//     copy of the value, so both stay readable to the end of the loop body, whatever that does, and
//     a value that is replaced reads as the one that the walk found.
//   - The collection must outlive its walks.
//   - version() moves with every structural change; replacing a value is none.
//
// EXAMPLE
//   Rok::OrderedMap<std::uint32_t, Velmo::String> rules;
//   rules.memberIs(20, "deny");
//   rules.memberIs(10, "permit");
//   std::string order;
//   for (const auto& [number, text] : rules) {
//     rules.deleteMember(number);
//     order += std::to_string(number) + " " + text.data() + ", ";
//   }
//   assert(rules.members() == 0 && order == "10 permit, 20 deny, ");
#pragma once

#include <cstdint>
#include <iterator>
#include <map>
#include <optional>
#include <utility>

#include "Rok/Ptr.h"
#include "Rok/Sassert.h"
#include "Velmo/Vector.h"

namespace Rok {

template <class KeyType, class ValueType>
class OrderedMap {
 public:
  using Key = KeyType;
  using Value = ValueType;
  class Iterator;

  OrderedMap() = default;
  OrderedMap(const OrderedMap& other) : tree_(other.tree_) {}
  OrderedMap(OrderedMap&& other) noexcept { swap(other); }
  OrderedMap& operator=(OrderedMap other) noexcept {
    swap(other);
    return *this;
  }
  ~OrderedMap() = default;
  // Exchanges the entries; both versions move.
  void swap(OrderedMap& other) noexcept {
    tree_.swap(other.tree_);
    ++version_;
    ++other.version_;
  }

  std::uint32_t members() const { return static_cast<std::uint32_t>(tree_.size()); }
  std::uint64_t version() const { return version_; }

  // The value under a key, or null. Finding it is a binary search.
  const Value* find(const Key& key) const {
    const auto at = lowerBound(tree_, key);
    return at != tree_.end() && !(key < at->first) ? &at->second : nullptr;
  }
  Value* find(const Key& key) {
    const auto found = tree_.find(key);
    return found != tree_.end() ? &found->second : nullptr;
  }

  // The value under a key, or the default value (null, for a pointer) where there is none.
  Value get(const Key& key) const {
    const Value* found = find(key);
    return found != nullptr ? *found : Value();
  }

  // The least key that is not less than `key`, or null.
  const Key* firstKeyFrom(const Key& key) const {
    const auto found = tree_.lower_bound(key);
    return found != tree_.end() ? &found->first : nullptr;
  }

  // Inserts or replaces. Returns whether the entry is new.
  template <class V>
  bool memberIs(const Key& key, V&& value) {
    const bool isNew = tree_.insert_or_assign(key, std::forward<V>(value)).second;
    if (isNew) ++version_;
    return isNew;
  }
  // Inserts unless the key is there. Returns the value that is there then, and whether it is new.
  std::pair<Value*, bool> newMember(const Key& key, const Value& value) {
    const auto at = lowerBound(tree_, key);
    if (at != tree_.end() && !(key < at->first)) return {&at->second, false};
    const auto added = tree_.emplace_hint(at, key, value);
    ++version_;
    return {&added->second, true};
  }
  // Removes. Returns whether there was an entry.
  bool deleteMember(const Key& key) {
    const auto dead = tree_.extract(key);  // destroyed when the collection is whole again
    if (dead.empty()) return false;
    ++version_;
    return true;
  }
  void _memberDelAll() {
    const auto dead = std::exchange(tree_, {});
    if (!dead.empty()) ++version_;
  }

  // A walk in ascending order that survives every change, but not the end of the collection.
  Iterator iterator() const { return Iterator(*this); }
  // The same for a range-based for: `for (const auto& [key, value] : map)`.
  Iterator begin() const { return Iterator(*this); }
  std::default_sentinel_t end() const { return std::default_sentinel; }

  friend bool operator==(const OrderedMap& a, const OrderedMap& b) { return a.tree_ == b.tree_; }

 private:
  using Tree = std::map<Key, Value, std::less<>, Velmo::Allocator<std::pair<const Key, Value>>>;

  // Flat, since a search is only comparisons of keys: a call would cost more than each of them.
  template <class AnyTree>
  [[gnu::flatten]] static auto lowerBound(AnyTree& tree, const Key& key) {
    return tree.lower_bound(key);
  }

  Tree tree_;
  std::uint64_t version_ = 0;
};

template <class KeyType, class ValueType>
class OrderedMap<KeyType, ValueType>::Iterator {
 public:
  // What a range-based for binds.
  struct Entry {
    const Key& key;
    Value value;
  };

  explicit Iterator(const OrderedMap& map)
      : map_(&map), version_(map.version_), at_(map.tree_.begin()) {
    if (at_ != map.tree_.end()) key_ = at_->first;
  }

  explicit operator bool() const { return key_.has_value(); }
  // The key under the iterator, also when the entry has gone meanwhile.
  const Key& key() const {
    check();
    return *key_;
  }
  // The value under the iterator, or null when the entry has gone meanwhile.
  const Value* value() const {
    check();
    return version_ == map_->version_ ? &at_->second : map_->find(*key_);
  }
  // Key and value; a value that has gone meanwhile reads as the default one.
  Entry operator*() const {
    const Value* found = value();
    return {*key_, found != nullptr ? *found : Value()};
  }
  // Moves to the next key that is there, also when this one has gone.
  void advance() {
    check();
    at_ = version_ == map_->version_ ? std::next(at_) : map_->tree_.upper_bound(*key_);
    version_ = map_->version_;
    if (at_ == map_->tree_.end()) {
      key_.reset();
    } else {
      *key_ = at_->first;
    }
  }
  Iterator& operator++() {
    advance();
    return *this;
  }
  bool operator==(std::default_sentinel_t /*end*/) const { return !key_; }

 private:
  void check() const {
    if (!key_) SassertHelper("iter_") << "use of an exhausted iterator";
  }

  const OrderedMap* map_;
  std::uint64_t version_;
  typename Tree::const_iterator at_;
  std::optional<Key> key_;
};

}  // namespace Rok
