// Near misses of a name.
#pragma once

#include <random>
#include <string>

namespace support {

// The name with one byte replaced, added or missing. Requires: it is not empty.
inline std::string oneByteChanged(std::string name, std::mt19937& random) {
  const std::size_t at = random() % name.size();
  switch (random() % 3) {
    case 0:
      name[at] = static_cast<char>(random());
      break;
    case 1:
      name.insert(at, 1, static_cast<char>(random()));
      break;
    default:
      name.erase(at, 1);
  }
  return name;
}

}  // namespace support
