// OVERVIEW
//   The hash map behind every keyed collection. Entries live in nodes whose addresses never change;
//   an index of eight bytes a bucket (32 bits of hash, 32 bits of node number) finds them. Growing
//   rebuilds the index alone, so the worst insert stays short, and a walk goes over the nodes and
//   not over the index, so it survives anything.
//
//   A map is one pointer. Up to eight entries are found by looking at each; the index comes after.
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
//   - version() moves with every structural change: insert, delete, clear, assignment.
//   - Values are destroyed after the map is whole again, so a value's destructor may use the map.
//
// EXAMPLE
//   Rok::HashMap2018<Rok::Hm2018NEI<0x51, Velmo::String, int>> ports;
//   ports.newMember("Ethernet1", 7);
//   assert(*ports.find("Ethernet1") == 7);
//   for (auto i = ports.iterator(); i; i.advance()) {
//     ports.deleteMember(i.currNodeMaybeStale()->key());
//   }
//   assert(ports.members() == 0);
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <optional>
#include <type_traits>
#include <utility>

#include "Dorpel/Slab.h"
#include "Rok/Hash.h"
#include "Rok/Sassert.h"

namespace Rok {

template <class Form>
class HashMap2018;
template <class Map>
class HashMap2018IteratorGeneric;
template <class Map>
class HashMap2018UnsafeIteratorConstGeneric;

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

namespace Impl {

// One bucket of the index.
struct HashSlot {
  std::uint32_t hash;
  std::uint32_t node;
};
inline constexpr std::uint32_t noNode = 0xffffffffu;

// Moves the slot at `slot` to its right neighbour, round the end. Inserting shifts a run of slots
// by this, one at a time. Asserts slotsToShift == 1.
QOS_EXPORT void shiftSlot(HashSlot* slots, std::uint32_t mask, std::uint32_t slot,
                          std::uint32_t slotsToShift);

// The index: open addressing, each entry as close to its home as the older ones allow.
class QOS_EXPORT HashIndex {
 public:
  HashIndex() = default;
  HashIndex(const HashIndex&) = delete;
  HashIndex& operator=(const HashIndex&) = delete;
  ~HashIndex() { clear(); }

  bool empty() const { return slots_ == nullptr; }
  std::size_t bytes() const { return empty() ? 0 : (std::size_t{mask_} + 1) * sizeof(HashSlot); }
  void clear() noexcept;
  // Makes room for `entries` in all. Throws: std::bad_alloc, and then nothing has changed.
  void reserve(std::uint32_t entries) {
    if (entries > capacity_) grow(entries);
  }
  // Requires: room.
  void insert(std::uint32_t hash, std::uint32_t node) noexcept;
  void erase(std::uint32_t hash, std::uint32_t node) noexcept;

  // The first node of that hash for which `matches(node)`; noNode when there is none.
  template <class Matches>
  std::uint32_t find(std::uint32_t hash, const Matches& matches) const {
    std::uint32_t distance = 0;
    for (std::uint32_t at = hash & mask_;; at = (at + 1) & mask_, ++distance) {
      const HashSlot& slot = slots_[at];
      if (slot.node == noNode || ((at - slot.hash) & mask_) < distance) return noNode;
      if (slot.hash == hash && matches(slot.node)) return slot.node;
    }
  }

 private:
  void grow(std::uint32_t entries);

  HashSlot* slots_ = nullptr;
  std::uint32_t mask_ = 0;
  std::uint32_t capacity_ = 0;  // entries that the slots have room for
};

// What an iterator and the table that it walks know of each other.
struct HashWalker {
  HashWalker* next = nullptr;
  std::uint32_t node = noNode;
  bool stale = false;
};

}  // namespace Impl

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
      if (table_ != nullptr && table_->version == old.version()) ++table_->version;
    }
    return *this;
  }
  ~HashMap2018() { emptyAllBuckets(true); }

  std::uint32_t members() const { return table_ != nullptr ? table_->count : 0; }
  std::uint32_t version() const { return table_ != nullptr ? table_->version : 0; }

  // The node under a key, or null.
  const Node* member(const Key& key) const {
    return const_cast<HashMap2018*>(this)->memberRef(key);
  }
  Node* memberRef(const Key& key) {
    if (table_ == nullptr) return nullptr;
    const std::uint32_t found = table_->find(key);
    return found != Impl::noNode ? &table_->node(found) : nullptr;
  }
  // The value under a key, or null.
  const Value* find(const Key& key) const {
    const Node* node = member(key);
    return node != nullptr ? &node->value() : nullptr;
  }
  Value* find(const Key& key) {
    Node* node = memberRef(key);
    return node != nullptr ? &node->value() : nullptr;
  }

  // Inserts. Returns the node under the key and whether it is new; a node that is there already
  // stays as it is.
  template <class V>
  std::pair<Node*, bool> newMember(const Key& key, V&& value) {
    if (table_ == nullptr) table_ = Table::create();
    if (const std::uint32_t found = table_->find(key); found != Impl::noNode) {
      return {&table_->node(found), false};
    }
    return {&table_->insert(key, std::forward<V>(value)), true};
  }

  // Removes. Returns whether something was removed and gives it back through `removed`, if given:
  // when an iterator stands on the entry, a copy. Throws: what leaves that copy; then nothing has
  // changed.
  bool deleteMember(const Key& key, Value* removed = nullptr) {
    if (table_ == nullptr) return false;
    const std::uint32_t found = table_->find(key);
    if (found == Impl::noNode) return false;
    if (removed != nullptr) table_->copyIfStoodOn(found, *removed);
    // The value outlives the removal, so that whatever its destructor does finds the map in order.
    std::optional<Value> dead = table_->remove(found);
    if (dead && removed != nullptr) *removed = std::move(*dead);
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

  // A walk that survives every change.
  Iterator iterator() const { return Iterator(*this); }
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
  struct Table;

  void copyFrom(const HashMap2018& other) {
    for (UnsafeIterator i = other.unsafeIterator(); i; ++i) newMember(i->key(), i->value());
  }

  Table* table_ = nullptr;
};

// The nodes of a map, its index, and the iterators that stand on it. Nodes lie in chunks of 1, 1,
// 2, 4, 8 ... nodes, so that they never move and a map of one entry is small.
template <class Form>
struct HashMap2018<Form>::Table {
  // Up to so many chunks, a search looks at each entry; beyond, there is an index for good.
  static constexpr std::uint32_t chunksWithoutIndex = 4;  // eight nodes

  static Table* create() { return new (Dorpel::slabAllocOrStdMalloc(sizeof(Table))) Table(); }
  void destroy() noexcept {
    for (std::uint32_t c = 0; c < chunkCount; ++c) {
      Dorpel::slabFreeOrStdFree(chunks[c], chunkBytes(chunkSize(c)));
    }
    if (chunkCount > 1) Dorpel::slabFreeOrStdFree(chunks, chunkCount * sizeof(std::byte*));
    this->~Table();
    Dorpel::slabFreeOrStdFree(this, sizeof(Table));
  }

  // ---- nodes

  static constexpr std::uint32_t chunkOf(std::uint32_t node) {
    return static_cast<std::uint32_t>(std::bit_width(node));
  }
  static constexpr std::uint32_t chunkSize(std::uint32_t chunk) {
    return chunk == 0 ? 1 : 1u << (chunk - 1);
  }
  static constexpr std::uint32_t chunkFirst(std::uint32_t chunk) {
    return chunk == 0 ? 0 : 1u << (chunk - 1);
  }
  // The room of a node: a free one holds the number of the next.
  static constexpr std::size_t nodeBytes =
      sizeof(Node) < sizeof(std::uint32_t) ? sizeof(std::uint32_t) : sizeof(Node);
  static_assert(alignof(Node) <= Dorpel::slabGranule);
  // A chunk is a bit for each node that says whether it is live, then the nodes.
  static constexpr std::size_t liveBytes(std::uint32_t size) {
    return (std::size_t{size} + 63) / 64 * sizeof(std::uint64_t);
  }
  static constexpr std::size_t chunkBytes(std::uint32_t size) {
    return liveBytes(size) + std::size_t{size} * nodeBytes;
  }
  std::uint64_t* live(std::uint32_t chunk) const {
    return reinterpret_cast<std::uint64_t*>(chunks[chunk]);
  }
  std::byte* place(std::uint32_t n) const {
    const std::uint32_t chunk = chunkOf(n);
    return chunks[chunk] + liveBytes(chunkSize(chunk)) +
           std::size_t{n - chunkFirst(chunk)} * nodeBytes;
  }
  Node& node(std::uint32_t n) const { return *std::launder(reinterpret_cast<Node*>(place(n))); }
  void liveIs(std::uint32_t n, bool v) {
    const std::uint32_t chunk = chunkOf(n);
    const std::uint32_t offset = n - chunkFirst(chunk);
    const std::uint64_t bit = std::uint64_t{1} << (offset % 64);
    std::uint64_t& word = live(chunk)[offset / 64];
    word = v ? word | bit : word & ~bit;
  }

  // ---- lookup

  static std::uint32_t hashOf(const Key& key) { return hashSingleAttr(Form::seed, key); }

  std::uint32_t find(const Key& key) const {
    const auto matches = [&](std::uint32_t n) { return node(n).key() == key; };
    if (!index.empty()) return index.find(hashOf(key), matches);
    for (std::uint32_t chunk = 0; chunk < chunkCount; ++chunk) {
      for (std::uint64_t bits = *live(chunk); bits != 0; bits &= bits - 1) {
        const std::uint32_t n =
            chunkFirst(chunk) + static_cast<std::uint32_t>(std::countr_zero(bits));
        if (matches(n)) return n;
      }
    }
    return Impl::noNode;
  }

  // ---- insert and remove

  template <class V>
  Node& insert(const Key& key, V&& value) {
    const std::uint32_t n = takeNode();
    try {
      if (chunkCount > chunksWithoutIndex) indexFor(count + 1);
      new (place(n)) Node(key, std::forward<V>(value));
    } catch (...) {
      giveNode(n);
      throw;
    }
    liveIs(n, true);
    ++count;
    ++version;
    if (!index.empty()) index.insert(hashOf(key), n);
    return node(n);
  }

  // Makes an index of all entries, or makes room in the one that is there.
  void indexFor(std::uint32_t entries) {
    const bool fresh = index.empty();
    index.reserve(entries);
    if (!fresh) return;
    for (std::uint32_t n = nextLive(firstPosition()); n != Impl::noNode;
         n = nextLive(positionBehind(n))) {
      index.insert(hashOf(node(n).key()), n);
    }
  }

  // Takes an entry out. Returns its value, for the caller to destroy or to keep. When an iterator
  // stands on the entry, the value stays with the node, which is stale from here on.
  std::optional<Value> remove(std::uint32_t n) noexcept {
    if (!index.empty()) index.erase(hashOf(node(n).key()), n);
    liveIs(n, false);
    --count;
    ++version;
    if (markStale(n)) return std::nullopt;
    std::optional<Value> value(std::move(node(n).value()));
    node(n).~Node();
    giveNode(n);
    return value;
  }

  void copyIfStoodOn(std::uint32_t n, Value& copy) const {
    if constexpr (std::is_copy_constructible_v<Value>) {
      for (const Impl::HashWalker* w = walkers; w != nullptr; w = w->next) {
        if (w->node == n) copy = Value(node(n).value());
      }
    }
  }

  // Removes one entry at a time, so that a value's destructor always finds a whole map.
  void clear() {
    ++walking;
    for (std::uint32_t n = nextLive(firstPosition()); n != Impl::noNode;
         n = nextLive(positionBehind(n))) {
      [[maybe_unused]] const std::optional<Value> dead = remove(n);
    }
    --walking;
    destroyIfAbandoned();
  }

  // ---- free nodes: those handed back, then those never used

  std::uint32_t takeNode() {
    if (freed != Impl::noNode) {
      const std::uint32_t n = freed;
      std::memcpy(&freed, place(n), sizeof(freed));
      return n;
    }
    if (used == nodesInChunks()) newChunk();
    const std::uint32_t n = shuffled(used);
    ++used;
    return n;
  }
  void giveNode(std::uint32_t n) noexcept {
    std::memcpy(place(n), &freed, sizeof(freed));
    freed = n;
  }
  std::uint32_t nodesInChunks() const {
    return chunkCount == 0 ? 0 : chunkFirst(chunkCount - 1) + chunkSize(chunkCount - 1);
  }
  void newChunk() {
    const std::uint32_t size = chunkSize(chunkCount);
    auto* chunk = static_cast<std::byte*>(Dorpel::slabAllocOrStdMalloc(chunkBytes(size)));
    std::memset(chunk, 0, liveBytes(size));
    if (chunkCount == 0) {
      firstChunk = chunk;
    } else {
      growChunkList(chunk, chunkBytes(size));
      chunks[chunkCount] = chunk;
    }
    ++chunkCount;
  }
  void growChunkList(std::byte* chunk, std::size_t bytes) {
    std::byte** grown = nullptr;
    try {
      grown = static_cast<std::byte**>(
          Dorpel::slabAllocOrStdMalloc((chunkCount + 1) * sizeof(std::byte*)));
    } catch (...) {
      Dorpel::slabFreeOrStdFree(chunk, bytes);
      throw;
    }
    std::memcpy(grown, chunks, chunkCount * sizeof(std::byte*));
    if (chunkCount > 1) Dorpel::slabFreeOrStdFree(chunks, chunkCount * sizeof(std::byte*));
    chunks = grown;
  }
  // Which node of its chunk a fresh one is: in turn, or in an order that the seed chooses.
  std::uint32_t shuffled(std::uint32_t n) const {
    if (orderSeed == 0) return n;
    const std::uint32_t chunk = chunkOf(n);
    const std::uint32_t mix = Velmo::hashWord(orderSeed ^ Form::seed, chunk);
    const std::uint32_t offset = (n - chunkFirst(chunk)) * (mix | 1) + (mix >> 8);
    return chunkFirst(chunk) + (offset & (chunkSize(chunk) - 1));
  }

  // ---- walks: chunk by chunk, up or down as the seed chooses, and up inside each chunk

  struct Position {
    std::uint32_t chunk;
    std::uint32_t offset;
  };
  bool downward() const {
    return (Velmo::hashWord(orderSeed, Form::seed) & 1) != 0 && orderSeed != 0;
  }
  Position firstPosition() const { return {downward() && chunkCount > 0 ? chunkCount - 1 : 0, 0}; }
  static Position positionBehind(std::uint32_t n) {
    const std::uint32_t chunk = chunkOf(n);
    return {chunk, n - chunkFirst(chunk) + 1};
  }
  // The first live node at or behind a position; noNode at the end.
  std::uint32_t nextLive(Position at) const {
    while (at.chunk < chunkCount) {
      const std::uint32_t size = chunkSize(at.chunk);
      for (std::uint32_t word = at.offset / 64; word * 64 < size; ++word) {
        std::uint64_t bits = live(at.chunk)[word];
        if (word == at.offset / 64) bits &= ~std::uint64_t{0} << (at.offset % 64);
        if (bits != 0) {
          return chunkFirst(at.chunk) + word * 64 +
                 static_cast<std::uint32_t>(std::countr_zero(bits));
        }
      }
      // Downward, the step below chunk 0 wraps round and ends the loop.
      at = {downward() ? at.chunk - 1 : at.chunk + 1, 0};
    }
    return Impl::noNode;
  }

  // ---- iterators

  void walkerNew(Impl::HashWalker& walker) {
    walker.next = walkers;
    walkers = &walker;
  }
  void walkerDel(Impl::HashWalker& walker) noexcept {
    Impl::HashWalker** link = &walkers;
    while (*link != &walker) link = &(*link)->next;
    *link = walker.next;
    ++walking;  // what dies in leave() may take the map with it
    leave(walker);
    --walking;
    destroyIfAbandoned();
  }
  // Whether an iterator stands on the node; all that do are told that it is stale.
  bool markStale(std::uint32_t n) {
    bool any = false;
    for (Impl::HashWalker* w = walkers; w != nullptr; w = w->next) {
      if (w->node == n && !w->stale) any = w->stale = true;
    }
    return any;
  }
  // Lets go of a stale node when the iterator was the last one to stand on it.
  void leave(Impl::HashWalker& walker) noexcept {
    if (!walker.stale) return;
    const std::uint32_t n = walker.node;
    walker.stale = false;
    walker.node = Impl::noNode;
    for (Impl::HashWalker* w = walkers; w != nullptr; w = w->next) {
      if (w->node == n && w->stale) return;
    }
    const std::optional<Node> dead(std::move(node(n)));
    node(n).~Node();
    giveNode(n);
  }
  void mapGone() {
    abandoned = true;
    destroyIfAbandoned();
  }
  void destroyIfAbandoned() noexcept {
    if (abandoned && walkers == nullptr && walking == 0) destroy();
  }

  std::size_t bytes() const {
    std::size_t sum = sizeof(Table) + index.bytes();
    for (std::uint32_t c = 0; c < chunkCount; ++c) sum += chunkBytes(chunkSize(c));
    return sum + (chunkCount > 1 ? chunkCount * sizeof(std::byte*) : 0);
  }

  std::uint32_t count = 0;
  std::uint32_t version = 0;
  std::uint32_t used = 0;              // nodes that were ever handed out
  std::uint32_t freed = Impl::noNode;  // the first of those handed back; each names the next
  std::byte* firstChunk = nullptr;
  std::byte** chunks = &firstChunk;  // a list of its own from the second chunk on
  Impl::HashIndex index;
  Impl::HashWalker* walkers = nullptr;
  std::uint32_t orderSeed = HashHelper::orderSeed();
  std::uint32_t chunkCount = 0;
  std::uint32_t walking = 0;  // clear() or walkerDel() is at work
  bool abandoned = false;     // the map has gone and iterators still stand
};

}  // namespace Rok

#include "Rok/StdIterator.h"
