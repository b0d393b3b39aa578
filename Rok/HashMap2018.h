// OVERVIEW
//   The hash map behind every keyed collection. Entries live in nodes whose addresses never change;
//   an index of eight bytes a bucket (32 bits of hash, 32 bits of node number) finds them. Growing
//   rebuilds the index alone, so the worst insert stays short, and a walk goes over the nodes and
//   not over the index, so it survives anything.
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
//     The map must be there when the walk begins, not longer.
//   - version() moves with every structural change: insert, delete, clear, assignment. No two
//     states of any two maps have the same version, but that of a map which never had an entry is
//     0. So who remembers a node and the version at which it was found needs no second lookup while
//     the version stands.
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

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <new>
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

// One bucket of the index. All bytes zero is a hole.
struct HashSlot {
  std::uint32_t hash;
  std::uint32_t place;  // the number of the node, plus one
};
inline constexpr std::uint32_t noNode = 0xffffffffu;

[[noreturn]] QOS_EXPORT void shiftSlotFailed(std::uint32_t slotsToShift);

// Moves the slot at `slot` to its right neighbour, round the end. Inserting shifts a run of slots
// by this, one at a time. Asserts slotsToShift == 1.
inline void shiftSlot(HashSlot* slots, std::uint32_t mask, std::uint32_t slot,
                      std::uint32_t slotsToShift) {
  if (slotsToShift != 1) shiftSlotFailed(slotsToShift);
  slots[(slot + 1) & mask] = slots[slot & mask];
}

// The index: open addressing, each entry as close to its home as the older ones allow.
class QOS_EXPORT HashIndex {
 public:
  HashIndex() = default;
  HashIndex(HashIndex&& other) noexcept
      : slots_(std::exchange(other.slots_, nullptr)),
        mask_(other.mask_),
        capacity_(other.capacity_) {}
  HashIndex& operator=(HashIndex&&) = delete;
  ~HashIndex() { clear(); }

  bool empty() const { return slots_ == nullptr; }
  std::size_t bytes() const { return empty() ? 0 : (std::size_t{mask_} + 1) * sizeof(HashSlot); }
  void clear() noexcept;
  // Makes room for `entries` in all. Throws: std::bad_alloc, and then nothing has changed.
  void reserve(std::uint32_t entries) {
    while (entries > capacity_) grow();
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
      if (slot.place == 0 || ((at - slot.hash) & mask_) < distance) return noNode;
      if (slot.hash == hash && matches(slot.place - 1)) return slot.place - 1;
    }
  }

 private:
  void grow();
  void fillFrom(const HashIndex& half) noexcept;

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
  struct Table;

  void copyFrom(const HashMap2018& other) {
    for (UnsafeIterator i = other.unsafeIterator(); i; ++i) newMember(i->key(), i->value());
  }

  Table* table_ = nullptr;
};

// The nodes of a map and the iterators that stand on it. Nodes lie in chunks of 1, 1, 2, 2, 4, 4,
// 8, 8 ... nodes, so that they never move and few stay empty. The first one is a part of the table;
// what more nodes need comes with the second.
template <class Form>
struct HashMap2018<Form>::Table {
  // The index, a bit for each node that says whether it is live, and behind it the chunks from the
  // second on. With four of these, that is for ten nodes, it is one cache line.
  struct Rest {
    static constexpr std::size_t bytes(std::uint32_t chunkRoom) {
      return sizeof(Rest) + chunkRoom * sizeof(std::byte*);
    }
    std::byte** chunks() { return reinterpret_cast<std::byte**>(this + 1); }
    std::uint64_t* words() { return moreWords != nullptr ? moreWords : &word; }

    Impl::HashIndex index;
    std::uint64_t word = 0;  // the bits of up to 64 nodes
    std::uint64_t* moreWords = nullptr;
  };

  static Table* create() { return new (Dorpel::slabAllocOrStdMalloc(sizeof(Table))) Table(); }
  void destroy() noexcept {
    for (std::uint32_t c = 1; c < chunkCount; ++c) {
      Dorpel::slabFreeOrStdFree(rest->chunks()[c - 1], chunkBytes(c));
    }
    if (rest != nullptr) restDel();
    this->~Table();
    Dorpel::slabFreeOrStdFree(this, sizeof(Table));
  }

  // ---- nodes

  static constexpr std::uint32_t chunkOf(std::uint32_t node) {
    const std::uint32_t shift = shiftOf(node);
    return 2 * shift + ((node + 2) >> shift) - 2;
  }
  static constexpr std::uint32_t chunkFirst(std::uint32_t chunk) {
    return ((2 + chunk % 2) << (chunk / 2)) - 2;
  }
  static constexpr std::uint32_t chunkSize(std::uint32_t chunk) { return 1u << (chunk / 2); }
  // The logarithm of the size of the node's chunk.
  static constexpr std::uint32_t shiftOf(std::uint32_t node) {
    return static_cast<std::uint32_t>(std::bit_width(node + 2)) - 2;
  }

  // The room of a node: a free one holds the number of the next.
  static constexpr std::size_t nodeBytes =
      sizeof(Node) < sizeof(std::uint32_t) ? sizeof(std::uint32_t) : sizeof(Node);
  static_assert(alignof(Node) <= Dorpel::slabGranule);
  static constexpr std::size_t chunkBytes(std::uint32_t chunk) {
    return std::size_t{chunkSize(chunk)} * nodeBytes;
  }
  std::byte* place(std::uint32_t n) {
    if (n == 0) return first;
    const std::uint32_t offset = (n + 2) & ((1u << shiftOf(n)) - 1);
    return rest->chunks()[chunkOf(n) - 1] + std::size_t{offset} * nodeBytes;
  }
  Node& node(std::uint32_t n) { return *std::launder(reinterpret_cast<Node*>(place(n))); }

  // ---- lookup

  struct Found {
    std::uint32_t n = Impl::noNode;
    Node* node = nullptr;
  };

  static std::uint32_t hashOf(const Key& key) { return hashSingleAttr(Form::seed, key); }
  // The hash of a key, if a lookup needs it.
  std::uint32_t hashFor(const Key& key) const { return rest != nullptr ? hashOf(key) : 0; }

  Found at(std::uint32_t n) { return {n, &node(n)}; }
  Found find(const Key& key) { return find(hashFor(key), key); }
  Found find(std::uint32_t hash, const Key& key) {
    if (rest == nullptr) return count != 0 && node(0).key() == key ? at(0) : Found();
    Found found;
    found.n = rest->index.find(hash, [&](std::uint32_t n) {
      Node& candidate = node(n);
      const bool isIt = candidate.key() == key;
      if (isIt) found.node = &candidate;
      return isIt;
    });
    return found;
  }

  // ---- insert and remove

  // Requires: there is no entry under the key, of which `hash` is what hashFor says.
  template <class V>
  Node* insert(std::uint32_t hash, const Key& key, V&& value) {
    const bool isHashed = rest != nullptr;
    const std::uint32_t n = takeNode();
    std::byte* where = place(n);
    Node* node = nullptr;
    try {
      if (rest != nullptr) rest->index.reserve(count + 1);
      node = new (where) Node(key, std::forward<V>(value));
    } catch (...) {
      giveNode(n, where);
      throw;
    }
    if (rest != nullptr) {
      rest->index.insert(isHashed ? hash : hashOf(node->key()), n);
      rest->words()[n / 64] |= bitOf(n);
    }
    ++count;
    version = HashHelper::nextVersion();
    return node;
  }

  // Takes an entry out, then lets its value end: whatever a destructor does finds the map in order.
  // When an iterator stands on the entry, the value stays with the node, which is stale from here
  // on; otherwise it goes to `removed`, if given.
  void remove(const Found& entry, Value* removed = nullptr) {
    if (rest != nullptr) {
      rest->index.erase(hashOf(entry.node->key()), entry.n);
      rest->words()[entry.n / 64] &= ~bitOf(entry.n);
    }
    --count;
    version = HashHelper::nextVersion();
    if (markStale(entry.n)) return;
    const Ending ending(*this, entry);
    if (removed != nullptr) *removed = std::move(entry.node->value());
  }

  void copyIfStoodOn(const Found& entry, Value& copy) {
    if constexpr (std::is_copy_constructible_v<Value>) {
      for (const Impl::HashWalker* w = walkers; w != nullptr; w = w->next) {
        if (w->node == entry.n) copy = Value(entry.node->value());
      }
    }
  }

  // Removes one entry at a time, so that a value's destructor always finds a whole map.
  void clear() {
    const Stay stay(*this);
    for (std::uint32_t n = firstLive(); n != Impl::noNode; n = liveBehind(n)) remove(at(n));
  }

  // Keeps the table in place, also when its map goes meanwhile.
  struct Stay {
    explicit Stay(Table& of) : table(of) { table.walkerNew(walker); }
    Stay(const Stay&) = delete;
    Stay& operator=(const Stay&) = delete;
    ~Stay() {
      table.walkerUnlink(walker);
      table.destroyIfAbandoned();
    }
    Table& table;
    Impl::HashWalker walker;
  };

  // Destroys a node that is no entry any more, and frees its place.
  struct Ending {
    Ending(Table& table, const Found& of) : stay(table), entry(of) {}
    Ending(const Ending&) = delete;
    Ending& operator=(const Ending&) = delete;
    ~Ending() {
      entry.node->~Node();
      stay.table.giveNode(entry.n, reinterpret_cast<std::byte*>(entry.node));
    }
    Stay stay;
    Found entry;
  };

  // ---- free nodes: those handed back, then those never used

  std::uint32_t takeNode() {
    if (freed != Impl::noNode) {
      const std::uint32_t n = freed;
      std::memcpy(&freed, place(n), sizeof(freed));
      return n;
    }
    if (used == chunkFirst(chunkCount)) newChunk();
    const std::uint32_t n = shuffled(used);
    ++used;
    return n;
  }
  void giveNode(std::uint32_t n, std::byte* where) noexcept {
    std::memcpy(where, &freed, sizeof(freed));
    freed = n;
  }
  // Which node of its chunk a fresh one is: in turn, or in an order that the seed chooses.
  std::uint32_t shuffled(std::uint32_t n) const {
    if (order == 0) return n;
    const std::uint32_t chunk = chunkOf(n);
    const std::uint32_t mix = Velmo::hashWord(order, chunk);
    const std::uint32_t offset = (n - chunkFirst(chunk)) * (mix | 1) + (mix >> 8);
    return chunkFirst(chunk) + (offset & (chunkSize(chunk) - 1));
  }

  // ---- memory. How much of it there is follows from the number of chunks.

  // A block that goes back unless it is kept.
  class Block {
   public:
    explicit Block(std::size_t bytes)
        : bytes_(bytes), block_(bytes != 0 ? Dorpel::slabAllocOrStdMalloc(bytes) : nullptr) {}
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;
    ~Block() { Dorpel::slabFreeOrStdFree(block_, bytes_); }
    void* get() const { return block_; }
    template <class T>
    T* kept() {
      return static_cast<T*>(std::exchange(block_, nullptr));
    }

   private:
    std::size_t bytes_;
    void* block_;
  };

  // The room for chunks in the rest of a table.
  static constexpr std::uint32_t chunkRoom(std::uint32_t chunks) {
    return std::max(4u, std::bit_ceil(chunks - 1));
  }
  // What the bits take that are not in `word`.
  static constexpr std::size_t wordBytes(std::uint32_t chunks) {
    const std::uint32_t nodes = chunkFirst(chunks);
    return nodes <= 64 ? 0 : std::bit_ceil((nodes + 63) / 64) * sizeof(std::uint64_t);
  }

  void newChunk() {
    if (rest == nullptr) restNew();
    const std::uint32_t more = chunkCount + 1;
    Block chunk(chunkBytes(chunkCount));
    Block words(wordBytes(more) != wordBytes(chunkCount) ? wordBytes(more) : 0);
    if (chunkRoom(more) != chunkRoom(chunkCount)) restGrow(chunkRoom(more));
    // Nothing is refused from here on.
    if (words.get() != nullptr) wordsGrow(words.template kept<std::uint64_t>(), wordBytes(more));
    rest->chunks()[chunkCount - 1] = chunk.template kept<std::byte>();
    chunkCount = static_cast<std::uint8_t>(more);
  }
  void restNew() {
    Block block(Rest::bytes(chunkRoom(chunkCount)));
    Rest& made = *new (block.get()) Rest();
    made.index.reserve(2);
    if (count != 0) {
      made.index.insert(hashOf(node(0).key()), 0);
      made.word = 1;
    }
    rest = block.template kept<Rest>();
  }
  void restGrow(std::uint32_t room) {
    Block block(Rest::bytes(room));
    Rest* made = new (block.get()) Rest(std::move(*rest));
    std::memcpy(made->chunks(), rest->chunks(), (chunkCount - 1) * sizeof(std::byte*));
    restFree();
    rest = block.template kept<Rest>();
  }
  void wordsGrow(std::uint64_t* words, std::size_t bytes) noexcept {
    const std::size_t old = std::max(sizeof(rest->word), wordBytes(chunkCount));
    std::memcpy(words, rest->words(), old);
    std::memset(words + old / sizeof(std::uint64_t), 0, bytes - old);
    Dorpel::slabFreeOrStdFree(rest->moreWords, wordBytes(chunkCount));
    rest->moreWords = words;
  }
  void restDel() noexcept {
    Dorpel::slabFreeOrStdFree(rest->moreWords, wordBytes(chunkCount));
    restFree();
  }
  void restFree() noexcept {
    rest->~Rest();
    Dorpel::slabFreeOrStdFree(rest, Rest::bytes(chunkRoom(chunkCount)));
  }

  std::size_t bytes() const {
    std::size_t sum = sizeof(Table);
    for (std::uint32_t c = 1; c < chunkCount; ++c) sum += chunkBytes(c);
    if (rest == nullptr) return sum;
    return sum + Rest::bytes(chunkRoom(chunkCount)) + wordBytes(chunkCount) + rest->index.bytes();
  }

  // ---- walks: chunk by chunk, up or down as the seed chooses, and up inside each chunk

  bool downward() const { return order % 2 != 0; }
  static constexpr std::uint64_t bitOf(std::uint32_t n) { return std::uint64_t{1} << (n % 64); }

  std::uint32_t firstLive() { return downward() ? liveBelow(chunkCount) : liveIn(0, allNodes()); }
  std::uint32_t liveBehind(std::uint32_t n) {
    if (!downward()) return liveIn(n + 1, allNodes());
    const std::uint32_t chunk = chunkOf(n);
    const std::uint32_t found = liveIn(n + 1, chunkFirst(chunk + 1));
    return found != Impl::noNode ? found : liveBelow(chunk);
  }
  std::uint32_t allNodes() const { return chunkFirst(chunkCount); }

  // The first live node of [from, end); noNode when there is none.
  std::uint32_t liveIn(std::uint32_t from, std::uint32_t end) {
    if (rest == nullptr) return from == 0 && count != 0 ? 0 : Impl::noNode;
    const std::uint64_t* words = rest->words();
    while (from < end) {
      if (const std::uint64_t bits = words[from / 64] >> (from % 64); bits != 0) {
        const std::uint32_t n = from + static_cast<std::uint32_t>(std::countr_zero(bits));
        return n < end ? n : Impl::noNode;
      }
      from = (from / 64 + 1) * 64;
    }
    return Impl::noNode;
  }
  // The first live node of the nearest chunk below that has one.
  std::uint32_t liveBelow(std::uint32_t chunk) {
    while (chunk-- > 0) {
      const std::uint32_t found = liveIn(chunkFirst(chunk), chunkFirst(chunk + 1));
      if (found != Impl::noNode) return found;
    }
    return Impl::noNode;
  }

  // ---- iterators

  void walkerNew(Impl::HashWalker& walker) {
    walker.next = walkers;
    walkers = &walker;
  }
  void walkerUnlink(Impl::HashWalker& walker) noexcept {
    Impl::HashWalker** link = &walkers;
    while (*link != &walker) [[unlikely]] link = &(*link)->next;
    *link = walker.next;
  }
  void walkerDel(Impl::HashWalker& walker) noexcept {
    leave(walker);  // what ends there may take the map with it, but not the table
    walkerUnlink(walker);
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
    const Ending ending(*this, at(n));
  }
  void mapGone() {
    abandoned = true;
    destroyIfAbandoned();
  }
  void destroyIfAbandoned() noexcept {
    if (abandoned && walkers == nullptr) destroy();
  }

  // The walk-order seed that was in force when the table was made, folded; 0 stays 0.
  static std::uint16_t orderNow() {
    const std::uint32_t seed = HashHelper::orderSeed();
    return seed == 0 ? 0 : static_cast<std::uint16_t>(Velmo::hashWord(seed, Form::seed) | 2);
  }

  std::uint64_t version = 0;
  Rest* rest = nullptr;
  Impl::HashWalker* walkers = nullptr;
  std::uint32_t count = 0;
  std::uint32_t used = 0;              // nodes that were ever handed out
  std::uint32_t freed = Impl::noNode;  // the first of those handed back; each names the next
  std::uint16_t order = orderNow();
  std::uint8_t chunkCount = 1;
  bool abandoned = false;  // the map has gone and iterators still stand
  alignas(Dorpel::slabGranule) std::byte first[nodeBytes];
};

}  // namespace Rok

#include "Rok/StdIterator.h"
