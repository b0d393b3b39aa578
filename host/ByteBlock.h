// Some bytes of a text at once, as the insides of JSON strings are looked through: as many as the
// processor takes in one step.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace host {

// Whether a JSON string can't hold the byte as it is: a quote, a backslash or a control character.
inline bool isSpecial(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\';
}

#ifdef __SSE2__

class ByteBlock {
 public:
  static constexpr std::size_t size = 16;

  explicit ByteBlock(const char* bytes)
      : bytes_(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes))) {}

  bool isAscii() const { return _mm_movemask_epi8(bytes_) == 0; }
  // How many bytes stand in front of the first special one; all, where there is none.
  std::size_t plainPrefix() const {
    const __m128i isControl = _mm_cmpeq_epi8(_mm_min_epu8(bytes_, _mm_set1_epi8(0x1f)), bytes_);
    const __m128i isOther = _mm_or_si128(equal('"'), equal('\\'));
    const auto bits = static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(isControl, isOther)));
    return static_cast<std::size_t>(std::countr_zero(bits | 1u << size));
  }

 private:
  __m128i equal(char c) const { return _mm_cmpeq_epi8(bytes_, _mm_set1_epi8(c)); }

  __m128i bytes_;
};

#else

class ByteBlock {
 public:
  static constexpr std::size_t size = sizeof(std::uint64_t);

  explicit ByteBlock(const char* bytes) : bytes_(bytes) { std::memcpy(&word_, bytes, size); }

  bool isAscii() const { return (word_ & (ones * 0x80)) == 0; }
  // How many bytes stand in front of the first special one; all, where there is none.
  std::size_t plainPrefix() const {
    // A byte equals another one where their difference is less than one.
    const std::uint64_t special = lessThan(word_, 0x20) | lessThan(word_ ^ (ones * '"'), 1) |
                                  lessThan(word_ ^ (ones * '\\'), 1);
    if (special == 0) return size;
    if constexpr (std::endian::native == std::endian::little) {
      return static_cast<std::size_t>(std::countr_zero(special)) / 8;
    }
    std::size_t n = 0;
    while (!isSpecial(bytes_[n])) ++n;
    return n;
  }

 private:
  static constexpr std::uint64_t ones = 0x0101010101010101u;
  // The highest bit of each byte of `word` that is less than `limit`, which is at most 0x80. Above
  // the first such byte, others may be marked too.
  static std::uint64_t lessThan(std::uint64_t word, std::uint64_t limit) {
    return (word - ones * limit) & ~word & (ones * 0x80);
  }

  const char* bytes_;
  std::uint64_t word_ = 0;
};

#endif

}  // namespace host
