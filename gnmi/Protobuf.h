// Protobuf's bytes, for what is written without its objects: varints, and fields that say how long
// they are.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace server::protobuf {

inline constexpr unsigned varintType = 0;
inline constexpr unsigned fixed64Type = 1;
inline constexpr unsigned bytesType = 2;

// What stands before a field. Requires: its number is at most 15, so that this is one byte.
constexpr char tag(unsigned number, unsigned type) { return static_cast<char>(number << 3 | type); }

constexpr std::size_t varintSize(std::uint64_t v) {
  return static_cast<std::size_t>(std::bit_width(v | 1) + 6) / 7;
}
inline void appendVarint(std::string& out, std::uint64_t v) {
  for (; v >= 0x80; v >>= 7) out += static_cast<char>(v | 0x80);
  out += static_cast<char>(v);
}

// The size of a field of so many bytes, with its tag and length.
constexpr std::size_t fieldSize(std::size_t size) { return 1 + varintSize(size) + size; }
// The tag and the length. The bytes come next.
inline void appendHead(std::string& out, unsigned number, std::size_t size) {
  out += tag(number, bytesType);
  appendVarint(out, size);
}
inline void appendBytes(std::string& out, unsigned number, std::string_view bytes) {
  appendHead(out, number, bytes.size());
  out += bytes;
}
inline void appendNumber(std::string& out, unsigned number, std::uint64_t v) {
  out += tag(number, varintType);
  appendVarint(out, v);
}
inline void appendDouble(std::string& out, unsigned number, double v) {
  const auto bits = std::bit_cast<std::uint64_t>(v);
  out += tag(number, fixed64Type);
  for (unsigned shift = 0; shift < 64; shift += 8) out += static_cast<char>(bits >> shift);
}

}  // namespace server::protobuf
