#include "models/openconfig/Journal.h"

#include <cstddef>
#include <utility>

namespace QosOc::Config {
namespace {

constexpr std::size_t fewestSlots = 64;

// Whether the record's entry stands in a directory of the whole model.
bool isOutermost(RecordId record) {
  switch (record) {
    case RecordId::classifier:
    case RecordId::forwardingGroup:
    case RecordId::interface:
    case RecordId::queueManagementProfile:
    case RecordId::queue:
    case RecordId::schedulerPolicy:
      return true;
    default:
      return false;
  }
}

std::size_t hashOf(RecordId record, const RecordKeys& keys) {
  std::uint64_t hash = keys.outer.hash() ^ (std::uint64_t{keys.below.hash()} << 32);
  hash ^= (std::uint64_t{keys.number} << 5) | static_cast<unsigned>(record);
  hash *= 0x9e3779b97f4a7c15u;
  return hash >> 32;
}

}  // namespace

void Journal::mark(RecordId record, const RecordKeys& keys, bool withAllBelow) {
  if (2 * marks_.size() >= slots_.size()) grow();
  std::uint32_t& slot = slotOf(record, keys);
  if (slot != 0) {
    marks_[slot - 1].withAllBelow |= withAllBelow;
    return;
  }
  marks_.push_back({record, withAllBelow, keys});
  slot = static_cast<std::uint32_t>(marks_.size());
}

std::vector<Journal::Mark> Journal::taken() {
  std::vector<Mark> taken = std::exchange(marks_, {});
  if (slots_.size() > fewestSlots) {
    slots_ = {};  // a commit with many marks is mostly followed by small ones
  } else {
    slots_.assign(slots_.size(), 0);
  }
  return taken;
}

// The slot of a mark, or the free one where it belongs. Requires: a slot is free.
std::uint32_t& Journal::slotOf(RecordId record, const RecordKeys& keys) {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t i = hashOf(record, keys) & mask;; i = (i + 1) & mask) {
    if (slots_[i] == 0) return slots_[i];
    const Mark& mark = marks_[slots_[i] - 1];
    if (mark.record == record && mark.keys == keys) return slots_[i];
  }
}

void Journal::grow() {
  const std::size_t size = slots_.empty() ? fewestSlots : 2 * slots_.size();
  std::vector<std::uint32_t> slots(size);
  slots_.swap(slots);
  for (std::size_t i = 0; i < marks_.size(); ++i) {
    slotOf(marks_[i].record, marks_[i].keys) = static_cast<std::uint32_t>(i + 1);
  }
}

void Marker::markIn(RecordId record, const Rok::String& key, std::uint32_t number,
                    bool withAllBelow) const {
  // A directory marks its entries, and an entry marks itself: either has the key.
  const bool isKeyOfOutermost = isOutermost(record) && outer_.empty();
  journal_->mark(record,
                 isKeyOfOutermost ? RecordKeys{key, 0, {}} : RecordKeys{outer_, number, key},
                 withAllBelow);
}

}  // namespace QosOc::Config
