#include "models/openconfig/Journal.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <utility>

namespace QosOc::Config {
namespace {

constexpr std::size_t fewMarks = 1024;
constexpr std::size_t roomOfMark = 4;  // when it grows

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

// Its buffer keeps the hash of a text, and the empty text has no buffer.
std::uint64_t hashOf(const Rok::String& key) { return key.empty() ? 0 : key.hash(); }

std::size_t hashOf(const Journal::Mark& mark) {
  const RecordKeys& keys = mark.keys;
  std::uint64_t hash = hashOf(keys.outer) ^ (hashOf(keys.below) << 32);
  hash ^= (std::uint64_t{keys.number} << 5) | static_cast<unsigned>(mark.record);
  hash *= 0x9e3779b97f4a7c15u;
  return hash >> 32;
}

bool areOfOne(const Journal::Mark& a, const Journal::Mark& b) {
  return a.record == b.record && a.keys == b.keys;
}

// Equal texts mostly share their bytes, and to see that takes no call.
bool areSurelyOfOne(const Journal::Mark& mark, RecordId record, const Rok::String& outer,
                    std::uint32_t number, const Rok::String& below) {
  return mark.record == record && mark.keys.below.shares(below) && mark.keys.outer.shares(outer) &&
         mark.keys.number == number;
}

// Leaves the first mark of each record.
void keepFirst(std::vector<Journal::Mark>& marks) {
  if (marks.size() < 2) return;
  // A hash table with linear probing: the number of a mark that is kept, counted from 1, or 0.
  std::vector<std::uint32_t> slots(std::bit_ceil(2 * marks.size()));
  const std::size_t mask = slots.size() - 1;
  Journal::Mark* const first = marks.data();
  std::uint32_t kept = 0;
  for (Journal::Mark& mark : marks) {
    std::size_t i = hashOf(mark) & mask;
    while (slots[i] != 0 && !areOfOne(first[slots[i] - 1], mark)) i = (i + 1) & mask;
    if (slots[i] != 0) {
      first[slots[i] - 1].withAllBelow |= mark.withAllBelow;
      continue;
    }
    if (first + kept != &mark) first[kept] = std::move(mark);
    slots[i] = ++kept;
  }
  marks.erase(marks.begin() + kept, marks.end());
}

}  // namespace

void Journal::mark(RecordId record, const Rok::String& outer, std::uint32_t number,
                   const Rok::String& below, bool withAllBelow) {
  // A writer often takes several steps at one record.
  if (!marks_.empty() && areSurelyOfOne(marks_.back(), record, outer, number, below)) {
    marks_.back().withAllBelow |= withAllBelow;
  } else if (marks_.size() == marks_.capacity()) {
    markWithRoom(record, outer, number, below, withAllBelow);
  } else {
    marks_.emplace_back(record, withAllBelow, RecordKeys{outer, number, below});
  }
}

// Not inlined, so that a mark that finds room stays short.
[[gnu::noinline]] void Journal::markWithRoom(RecordId record, const Rok::String& outer,
                                             std::uint32_t number, const Rok::String& below,
                                             bool withAllBelow) {
  keepFirst(marks_);
  marks_.reserve(std::max(fewMarks, roomOfMark * marks_.size()));
  marks_.emplace_back(record, withAllBelow, RecordKeys{outer, number, below});
}

// A commit with many marks is mostly followed by small ones, which find their room there.
std::vector<Journal::Mark> Journal::taken() {
  keepFirst(marks_);
  if (marks_.capacity() > fewMarks) return std::exchange(marks_, {});
  std::vector<Mark> taken(marks_.size());
  std::move(marks_.begin(), marks_.end(), taken.begin());
  marks_.clear();
  return taken;
}

void Marker::markIn(RecordId record, const Rok::String& key, std::uint32_t number,
                    bool withAllBelow) const {
  // A directory marks its entries, and an entry marks itself: either has the key.
  if (outer_.empty() && isOutermost(record)) {
    journal_->mark(record, key, 0, outer_, withAllBelow);
  } else {
    journal_->mark(record, outer_, number, key, withAllBelow);
  }
}

}  // namespace QosOc::Config
