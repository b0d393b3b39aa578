#include "host/KeySet.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "Velmo/Hash.h"

namespace host {
namespace {

constexpr std::size_t few = 8;           // which are compared faster than they are looked up
constexpr std::size_t keptSlots = 4096;  // a longer table goes once it is not needed

std::uint64_t wordAt(const char* bytes) {
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, sizeof(word));
  return word;
}

std::uint64_t shortWord(std::string_view text) {
  std::uint64_t word = 0;
  text.copy(reinterpret_cast<char*>(&word), sizeof(word));
  return word;
}

// The last word may overlap the one before it; the size tells such texts apart.
std::uint64_t hashOf(std::string_view text) {
  constexpr std::size_t size = sizeof(std::uint64_t);
  if (text.size() < size) return Velmo::hashMix(shortWord(text), text.size());
  std::uint64_t hash = text.size();
  for (std::size_t at = 0; at + size < text.size(); at += size) {
    hash = Velmo::hashMix(wordAt(text.data() + at), hash);
  }
  return Velmo::hashMix(wordAt(text.data() + text.size() - size), hash);
}

}  // namespace

void KeySet::clear() {
  slots_.clear();
  if (slots_.capacity() > keptSlots) slots_.shrink_to_fit();
  taken_ = 0;
  waitingCount_ = 0;
}

bool KeySet::add(std::string_view text) { return addHash(hashOf(text)); }

bool KeySet::add(std::uint64_t number) { return addHash(Velmo::hashMix(number, 0)); }

bool KeySet::addHash(std::uint64_t hash) {
  const std::uint64_t taken = std::max<std::uint64_t>(hash, 1);
  return taken_ < few ? addToFew(taken) : addToTable(taken);
}

bool KeySet::addToFew(std::uint64_t hash) {
  if (std::ranges::find(slots_, hash) != slots_.end()) return false;
  slots_.push_back(hash);
  ++taken_;
  return true;
}

bool KeySet::addToTable(std::uint64_t hash) {
  if (slots_.size() > few) __builtin_prefetch(&slots_[hash & (slots_.size() - 1)]);
  waiting_[waitingCount_++] = hash;
  return waitingCount_ < waiting_.size() || enterWaiting();
}

bool KeySet::end() { return enterWaiting(); }

bool KeySet::enterWaiting() {
  const std::size_t count = std::exchange(waitingCount_, 0);
  if (4 * (taken_ + count) > 3 * slots_.size() && count > 0)
    growTo(std::max(8 * few, 2 * slots_.size()));
  return std::all_of(waiting_.begin(), waiting_.begin() + count,
                     [&](std::uint64_t hash) { return enter(hash); });
}

bool KeySet::enter(std::uint64_t hash) {
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = hash & mask;
  for (; slots_[at] != 0; at = (at + 1) & mask) {
    if (slots_[at] == hash) return false;
  }
  slots_[at] = hash;
  ++taken_;
  return true;
}

void KeySet::growTo(std::size_t slots) {
  std::swap(slots_, old_);
  slots_.assign(slots, 0);
  taken_ = 0;
  for (const std::uint64_t hash : old_) {
    if (hash != 0) enter(hash);
  }
  if (slots > keptSlots) old_ = {};
}

}  // namespace host
