// OVERVIEW
//   The iterators of the hash map: the safe one, with which all translators walk, and the unsafe
//   one, which compares maps.
//
// RULES
//   - What the safe iterator survives stands in HashMap2018.h.
//   - An entry that is deleted under the safe iterator is stale: its node stays readable until the
//     iterator moves on. currNodeMaybeStale() gives the node either way, currNodeNonStale() null.
//   - A use of an exhausted iterator is an assertion that fails; so is a change of the map during
//     an unsafe walk.
//
// EXAMPLE
//   for (auto port = ports.iterator(); port; ++port) {
//     ports.deleteMember(port.key());
//     assert(port.currNodeNonStale() == nullptr);
//     sum += port.currNodeMaybeStale()->value();
//   }
#pragma once

#include <cstdint>
#include <iterator>
#include <utility>

#include "Rok/HashTable.h"
#include "Rok/Sassert.h"

namespace Rok {

// Walks a map that may change under it in any way. Not copyable: it is a loop variable.
template <class Map>
class HashMap2018IteratorGeneric {
 public:
  using Node = typename Map::Node;
  using Value = typename Map::Value;
  // What a range-based for binds: the key, which a functor may give by value, and the value.
  struct Entry {
    decltype(std::declval<const Node&>().key()) key;
    const Value& value;
  };

  explicit HashMap2018IteratorGeneric(const Map& map) : table_(map.table_) {
    if (table_ == nullptr) return;
    walker_.node = table_->firstLive();
    if (walker_.node == Impl::noNode) {
      table_ = nullptr;
      return;
    }
    table_->walkerNew(walker_);
  }
  HashMap2018IteratorGeneric(const HashMap2018IteratorGeneric&) = delete;
  HashMap2018IteratorGeneric& operator=(const HashMap2018IteratorGeneric&) = delete;
  ~HashMap2018IteratorGeneric() {
    if (table_ != nullptr) table_->walkerDel(walker_);
  }

  // False once the walk is over.
  explicit operator bool() const { return table_ != nullptr; }

  // The node at which the iterator stands, also when it has been deleted meanwhile.
  // Asserts "iter_" on an exhausted iterator, like everything below.
  const Node* currNodeMaybeStale() const { return &iter()->node(walker_.node); }
  // The node, or null when it has been deleted meanwhile.
  const Node* currNodeNonStale() const {
    const Node* node = currNodeMaybeStale();
    return walker_.stale ? nullptr : node;
  }
  // The key under the iterator, stale or not; by value, since the loop body may delete the entry.
  typename Map::Key key() const { return currNodeMaybeStale()->key(); }

  // Both parts of the node, stale or not, until the iterator moves on.
  Entry operator*() const {
    const Node* node = currNodeMaybeStale();
    return {node->key(), node->value()};
  }

  // Moves to the next live entry.
  void advance() {
    typename Map::Table* table = iter();
    const std::uint32_t left = walker_.node;
    table->leave(walker_);
    walker_.node = table->liveBehind(left);
    if (walker_.node != Impl::noNode) return;
    table_ = nullptr;
    table->walkerDel(walker_);
  }
  HashMap2018IteratorGeneric& operator++() {
    advance();
    return *this;
  }
  bool operator==(std::default_sentinel_t /*end*/) const { return table_ == nullptr; }

 private:
  typename Map::Table* iter() const {
    if (table_ == nullptr) SassertHelper("iter_") << "use of an exhausted iterator";
    return table_;
  }

  typename Map::Table* table_;
  Impl::HashWalker walker_;
};

// Walks a map that must not change meanwhile: each step asserts "version_ == hashMap_->version()".
template <class Map>
class HashMap2018UnsafeIteratorConstGeneric {
 public:
  using Node = typename Map::Node;

  explicit HashMap2018UnsafeIteratorConstGeneric(const Map& map)
      : hashMap_(&map), version_(map.version()) {
    if (map.table_ != nullptr) node_ = map.table_->firstLive();
  }

  explicit operator bool() const { return node_ != Impl::noNode; }
  const Node& operator*() const {
    check();
    return hashMap_->table_->node(node_);
  }
  const Node* operator->() const { return &**this; }
  HashMap2018UnsafeIteratorConstGeneric& operator++() {
    check();
    node_ = hashMap_->table_->liveBehind(node_);
    return *this;
  }

 private:
  void check() const {
    if (version_ != hashMap_->version()) {
      SassertHelper("version_ == hashMap_->version()") << "the map changed during the walk";
    }
    if (node_ == Impl::noNode) SassertHelper("iter_") << "use of an exhausted iterator";
  }

  const Map* hashMap_;
  std::uint64_t version_;
  std::uint32_t node_ = Impl::noNode;
};

}  // namespace Rok
