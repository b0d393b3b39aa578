#include "Rok/HashIndex.h"

#include <algorithm>
#include <cstdlib>

#include "Dorpel/Slab.h"
#include "Rok/Sassert.h"

namespace Rok::Impl {
namespace {

constexpr std::uint32_t firstSize = 8;

// In a fuller index the number of slots that an insert moves would depend on how full it is.
constexpr std::uint32_t capacityOf(std::uint32_t size) { return size / 8 * 5; }

HashSlot* newSlots(std::size_t size) {
  return static_cast<HashSlot*>(Dorpel::slabAllocOrStdCalloc(size * sizeof(HashSlot)));
}

}  // namespace

void shiftSlotFailed(std::uint32_t slotsToShift) {
  SassertHelper("slotsToShift == 1") << "slotsToShift is " << slotsToShift;
  std::abort();  // not reached: the assertion ends the process
}

void HashIndex::clear() noexcept {
  if (slots_ == nullptr) return;
  Dorpel::slabFreeOrStdFree(slots_, bytes());
  slots_ = nullptr;
  mask_ = 0;
  capacity_ = 0;
}

void HashIndex::grow() {
  const std::uint32_t size = empty() ? firstSize : 2 * (mask_ + 1);
  HashIndex grown;
  grown.slots_ = newSlots(size);
  grown.mask_ = size - 1;
  grown.capacity_ = capacityOf(size);
  if (!empty()) grown.fillFrom(*this);
  std::swap(slots_, grown.slots_);
  std::swap(mask_, grown.mask_);
  std::swap(capacity_, grown.capacity_);
}

// Copies the entries of an index of half the size. From the slot behind a hole on, they stand in
// the order of their homes. The home of an entry here is the same, or the same plus `size`, and in
// each of these halves the order stays: so there are two places to write at, and nothing is
// searched or moved. Which of the two can't be predicted, so it is no branch.
void HashIndex::fillFrom(const HashIndex& half) noexcept {
  const std::uint32_t size = half.mask_ + 1;
  std::uint32_t hole = 0;
  while (half.slots_[hole].place != 0) ++hole;
  const std::uint32_t begin = hole + 1;
  std::uint32_t next[2] = {begin, begin + size};
  for (std::uint32_t i = 0; i < half.mask_; ++i) {
    const HashSlot& slot = half.slots_[(begin + i) & half.mask_];
    if (slot.place == 0) continue;
    const std::uint32_t home = (slot.hash - begin) & mask_;  // as seen from `begin`
    std::uint32_t& at = next[home >= size ? 1 : 0];
    at = std::max(at, begin + home);
    slots_[at++ & mask_] = slot;
  }
}

void HashIndex::insert(std::uint32_t hash, std::uint32_t node) noexcept {
  const auto distanceAt = [&](std::uint32_t at) { return (at - slots_[at].hash) & mask_; };
  std::uint32_t at = hash & mask_;
  for (std::uint32_t distance = 0; slots_[at].place != 0 && distanceAt(at) >= distance;
       ++distance) {
    at = (at + 1) & mask_;
  }
  // The entries from here to the next hole are nearer to their homes: they all move on by one.
  std::uint32_t hole = at;
  while (slots_[hole].place != 0) hole = (hole + 1) & mask_;
  for (; hole != at; hole = (hole - 1) & mask_) shiftSlot(slots_, mask_, hole - 1, 1);
  slots_[at] = {hash, node + 1};
}

void HashIndex::erase(std::uint32_t hash, std::uint32_t node) noexcept {
  std::uint32_t at = hash & mask_;
  while (slots_[at].place != node + 1) at = (at + 1) & mask_;
  // Those behind move one back, until a hole or one that is at home.
  for (;;) {
    const std::uint32_t next = (at + 1) & mask_;
    if (slots_[next].place == 0 || (slots_[next].hash & mask_) == next) break;
    slots_[at] = slots_[next];
    at = next;
  }
  slots_[at] = {0, 0};
}

}  // namespace Rok::Impl
