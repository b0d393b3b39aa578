// The scenarios among the folders of examples/: those that begin with a device.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace support {

// Their names, sorted.
inline std::vector<std::string> scenarios(const std::string& examples) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(examples)) {
    if (std::filesystem::exists(entry.path() / "01-native.json")) {
      names.push_back(entry.path().filename());
    }
  }
  std::ranges::sort(names);
  return names;
}

}  // namespace support
