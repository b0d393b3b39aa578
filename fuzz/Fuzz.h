// What all fuzz targets use.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace Fuzz {

// Ends the run with a finding unless `right`.
inline void require(bool right, const char* what) {
  if (right) return;
  std::fprintf(stderr, "fuzz: %s\n", what);
  std::abort();
}

inline std::string_view text(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace Fuzz
