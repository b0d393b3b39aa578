// One buffer for each text, however often it comes: the same names stand in many places of a
// document, and strings that share a buffer take its room once and compare by its address.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "Rok/String.h"

namespace host {

class SharedTexts {
 public:
  // The text in a buffer that it shares with all strings that were made of it here before.
  Rok::String of(std::string_view text);

 private:
  Rok::String& slotOf(std::size_t hash, std::string_view text);
  void grow();

  // A hash table with linear probing; a free slot is empty. A power of two, at most half of them
  // taken: each comparison with another text reads a buffer elsewhere in memory.
  std::vector<Rok::String> slots_;
  std::size_t taken_ = 0;
};

}  // namespace host
