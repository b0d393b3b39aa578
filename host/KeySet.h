// Notices a key that comes twice, by hashes of 64 bits alone. Two keys that are the same are always
// noticed; two others may be taken for the same, once in a very long time or in a text made for it. So
// what it notices has to be judged by the keys themselves.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace host {

class KeySet {
 public:
  // Empties it. Little memory is kept for the next keys.
  void clear();
  // Each returns false when that key, or one of the last before it, may have come twice. A set has either
  // texts or numbers.
  bool add(std::string_view text);
  bool add(std::uint64_t number);
  // Whether all keys differ.
  bool end();

 private:
  bool addHash(std::uint64_t hash);
  bool addToFew(std::uint64_t hash);
  bool addToTable(std::uint64_t hash);
  bool enterWaiting();
  bool enter(std::uint64_t hash);
  void growTo(std::size_t slots);

  // A few hashes in a row; of many, a hash table with linear probing, in which 0 is a free slot. It is a
  // power of two, and at most three quarters of it are taken.
  std::vector<std::uint64_t> slots_;
  std::size_t taken_ = 0;
  // Those that are not in the table yet. A long table is in no cache: their slots are fetched meanwhile.
  std::array<std::uint64_t, 16> waiting_{};
  std::size_t waitingCount_ = 0;
  std::vector<std::uint64_t> old_;  // before the last growth, kept for its memory
};

}  // namespace host
