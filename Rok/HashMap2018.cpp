#include "Rok/HashMap2018.h"

#include <algorithm>

namespace Rok::Impl {
namespace {

HashSlot* newSlots(std::uint32_t size) {
  auto* slots = static_cast<HashSlot*>(Dorpel::slabAllocOrStdMalloc(size * sizeof(HashSlot)));
  std::fill_n(slots, size, HashSlot{0, noNode});
  return slots;
}

// Fuller, and how many slots an insert moves would depend on where between two sizes the map is.
constexpr std::uint64_t capacityOf(std::uint64_t size) { return size / 8 * 5; }

}  // namespace

void shiftSlot(HashSlot* slots, std::uint32_t mask, std::uint32_t slot,
               std::uint32_t slotsToShift) {
  if (slotsToShift != 1) SassertHelper("slotsToShift == 1") << "slotsToShift is " << slotsToShift;
  slots[(slot + 1) & mask] = slots[slot & mask];
}

void HashIndex::clear() noexcept {
  if (slots_ == nullptr) return;
  Dorpel::slabFreeOrStdFree(slots_, bytes());
  slots_ = nullptr;
  mask_ = 0;
  capacity_ = 0;
}

void HashIndex::grow(std::uint32_t entries) {
  std::uint64_t size = std::max<std::uint64_t>(std::uint64_t{mask_} + 1, 16);
  while (capacityOf(size) < entries) size *= 2;
  HashIndex grown;
  grown.slots_ = newSlots(static_cast<std::uint32_t>(size));
  grown.mask_ = static_cast<std::uint32_t>(size - 1);
  for (std::uint32_t i = 0; slots_ != nullptr && i <= mask_; ++i) {
    if (slots_[i].node != noNode) grown.insert(slots_[i].hash, slots_[i].node);
  }
  std::swap(slots_, grown.slots_);
  std::swap(mask_, grown.mask_);
  capacity_ = static_cast<std::uint32_t>(capacityOf(size));
}

void HashIndex::insert(std::uint32_t hash, std::uint32_t node) noexcept {
  const auto distanceAt = [&](std::uint32_t at) { return (at - slots_[at].hash) & mask_; };
  std::uint32_t at = hash & mask_;
  for (std::uint32_t distance = 0; slots_[at].node != noNode && distanceAt(at) >= distance;
       ++distance) {
    at = (at + 1) & mask_;
  }
  // Whoever stands here and behind, up to the next hole, is nearer its home: they all move on.
  std::uint32_t hole = at;
  while (slots_[hole].node != noNode) hole = (hole + 1) & mask_;
  for (; hole != at; hole = (hole - 1) & mask_) shiftSlot(slots_, mask_, hole - 1, 1);
  slots_[at] = {hash, node};
}

void HashIndex::erase(std::uint32_t hash, std::uint32_t node) noexcept {
  std::uint32_t at = hash & mask_;
  while (slots_[at].node != node) at = (at + 1) & mask_;
  // Those behind move one back, until a hole or one that is at home.
  for (;;) {
    const std::uint32_t next = (at + 1) & mask_;
    if (slots_[next].node == noNode || (slots_[next].hash & mask_) == next) break;
    slots_[at] = slots_[next];
    at = next;
  }
  slots_[at] = {0, noNode};
}

}  // namespace Rok::Impl
