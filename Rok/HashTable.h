// The table behind a HashMap2018: its nodes and their memory, the walks over them, and the
// iterators that stand on it. What a user may rely on stands in HashMap2018.h.
//
// Nodes lie in chunks of 1, 1, 2, 2, 4, 4, 8, 8 ... nodes, so that they never move and few stay
// empty. The first one is a part of the table; what more nodes need comes with the second.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

#include "Dorpel/Slab.h"
#include "Rok/Hash.h"
#include "Rok/HashIndex.h"

namespace Rok::Impl {

// The link between an iterator and the table that it walks.
struct HashWalker {
  HashWalker* next = nullptr;
  std::uint32_t node = noNode;
  bool stale = false;
};

template <class Form>
struct HashTable {
  using Key = typename Form::Key;
  using Value = typename Form::Value;
  using Node = typename Form::Node;

  // The index, a bit for each node that says whether it is live, and behind it the chunks from the
  // second on. With four of these, that is for ten nodes, it is one cache line.
  struct Rest {
    static constexpr std::size_t bytes(std::uint32_t chunkRoom) {
      return sizeof(Rest) + chunkRoom * sizeof(std::byte*);
    }
    std::byte** chunks() { return reinterpret_cast<std::byte**>(this + 1); }
    std::uint64_t* words() { return moreWords != nullptr ? moreWords : &word; }

    HashIndex index;
    std::uint64_t word = 0;  // the bits of up to 64 nodes
    std::uint64_t* moreWords = nullptr;
  };

  static HashTable* create() {
    return new (Dorpel::slabAllocOrStdMalloc(sizeof(HashTable))) HashTable();
  }
  void destroy() noexcept {
    for (std::uint32_t c = 1; c < chunkCount; ++c) {
      Dorpel::slabFreeOrStdFree(rest->chunks()[c - 1], chunkBytes(c));
    }
    if (rest != nullptr) restDel();
    this->~HashTable();
    Dorpel::slabFreeOrStdFree(this, sizeof(HashTable));
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
    std::uint32_t n = noNode;
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

  // Takes an entry out, then destroys its value: a destructor that uses the map finds it whole.
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
      for (const HashWalker* w = walkers; w != nullptr; w = w->next) {
        if (w->node == entry.n) copy = Value(entry.node->value());
      }
    }
  }

  // Removes one entry at a time, so that a value's destructor always finds a whole map.
  void clear() {
    const Stay stay(*this);
    for (std::uint32_t n = firstLive(); n != noNode; n = liveBehind(n)) remove(at(n));
  }

  // Keeps the table in place, also when its map is destroyed meanwhile.
  struct Stay {
    explicit Stay(HashTable& of) : table(of) { table.walkerNew(walker); }
    Stay(const Stay&) = delete;
    Stay& operator=(const Stay&) = delete;
    ~Stay() {
      table.walkerUnlink(walker);
      table.destroyIfAbandoned();
    }
    HashTable& table;
    HashWalker walker;
  };

  // Destroys a node that is no entry any more, and frees its place.
  struct Ending {
    Ending(HashTable& table, const Found& of) : stay(table), entry(of) {}
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
    if (freed != noNode) {
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
    // Nothing below can fail.
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
    std::size_t sum = sizeof(HashTable);
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
    return found != noNode ? found : liveBelow(chunk);
  }
  std::uint32_t allNodes() const { return chunkFirst(chunkCount); }

  // Grows along a walk.
  std::uint64_t walkPlace(std::uint32_t n) const {
    const std::uint64_t chunk = chunkOf(n);
    return (downward() ? 0xff - chunk : chunk) << 32 | n;
  }

  // The first live node of [from, end); noNode when there is none.
  std::uint32_t liveIn(std::uint32_t from, std::uint32_t end) {
    if (rest == nullptr) return from == 0 && count != 0 ? 0 : noNode;
    const std::uint64_t* words = rest->words();
    while (from < end) {
      if (const std::uint64_t bits = words[from / 64] >> (from % 64); bits != 0) {
        const std::uint32_t n = from + static_cast<std::uint32_t>(std::countr_zero(bits));
        return n < end ? n : noNode;
      }
      from = (from / 64 + 1) * 64;
    }
    return noNode;
  }
  // The first live node of the nearest chunk below that has one.
  std::uint32_t liveBelow(std::uint32_t chunk) {
    while (chunk-- > 0) {
      const std::uint32_t found = liveIn(chunkFirst(chunk), chunkFirst(chunk + 1));
      if (found != noNode) return found;
    }
    return noNode;
  }

  // ---- iterators

  void walkerNew(HashWalker& walker) {
    walker.next = walkers;
    walkers = &walker;
  }
  void walkerUnlink(HashWalker& walker) noexcept {
    HashWalker** link = &walkers;
    while (*link != &walker) [[unlikely]] link = &(*link)->next;
    *link = walker.next;
  }
  void walkerDel(HashWalker& walker) noexcept {
    leave(walker);  // destroys a stale value, which may hold the map; the table stays
    walkerUnlink(walker);
    destroyIfAbandoned();
  }
  // Whether an iterator stands on the node; all that do are marked as stale.
  bool markStale(std::uint32_t n) {
    bool any = false;
    for (HashWalker* w = walkers; w != nullptr; w = w->next) {
      if (w->node == n && !w->stale) any = w->stale = true;
    }
    return any;
  }
  // Frees a stale node when the iterator was the last one to stand on it.
  void leave(HashWalker& walker) noexcept {
    if (!walker.stale) return;
    const std::uint32_t n = walker.node;
    walker.stale = false;
    walker.node = noNode;
    for (HashWalker* w = walkers; w != nullptr; w = w->next) {
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
  HashWalker* walkers = nullptr;
  std::uint32_t count = 0;
  std::uint32_t used = 0;        // nodes that were ever handed out
  std::uint32_t freed = noNode;  // the first of those handed back; each names the next
  std::uint16_t order = orderNow();
  std::uint8_t chunkCount = 1;
  bool abandoned = false;  // the map is destroyed, and iterators still stand
  alignas(Dorpel::slabGranule) std::byte first[nodeBytes];
};

}  // namespace Rok::Impl
