// The index of a hash table: it leads from the hash of a key to the number of the node that holds
// the key. It is open addressing over buckets of eight bytes, each entry as close to its home as
// the older ones allow. The index holds no keys: find() has its caller compare the key of each
// node of that hash.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "Dorpel/Export.h"

namespace Rok::Impl {

// One bucket of the index. All bytes zero is a hole.
struct HashSlot {
  std::uint32_t hash;
  std::uint32_t place;  // the number of the node, plus one
};
inline constexpr std::uint32_t noNode = 0xffffffffu;

[[noreturn]] QOS_EXPORT void shiftSlotFailed(std::uint32_t slotsToShift);

// Moves the slot at `slot` to its right neighbour; that of the last slot is the first. Inserting
// shifts a run of slots by this, one at a time. Asserts slotsToShift == 1.
inline void shiftSlot(HashSlot* slots, std::uint32_t mask, std::uint32_t slot,
                      std::uint32_t slotsToShift) {
  if (slotsToShift != 1) shiftSlotFailed(slotsToShift);
  slots[(slot + 1) & mask] = slots[slot & mask];
}

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

}  // namespace Rok::Impl
