// The one hash of this library: bytes and integers to 32 well-mixed bits. Not for secrets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Dorpel/Export.h"

namespace Velmo {

// Spreads every input bit over the whole word: one full multiplication, folded.
constexpr std::uint64_t hashMix(std::uint64_t a, std::uint64_t b) {
  __extension__ using Wide = unsigned __int128;
  const Wide product = static_cast<Wide>(a ^ 0x9e3779b97f4a7c15u) * (b ^ 0xd1b54a32d192ed03u);
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

// The hash of a word, on top of what `seed` already holds.
constexpr std::uint32_t hashWord(std::uint32_t seed, std::uint64_t word) {
  const std::uint64_t mixed = hashMix(word, seed + 0xa0761d6478bd642fu);
  return static_cast<std::uint32_t>(mixed ^ (mixed >> 32));
}

// Never 0, so that 0 can mean "not computed yet".
QOS_EXPORT std::uint32_t hashBytes(std::string_view bytes) noexcept;

}  // namespace Velmo
