// The fenced blocks of a page of the documentation, to be held against what happens.
#pragma once

#include <sstream>
#include <string>
#include <vector>

namespace support {

struct Block {
  std::string language;  // what stands behind the fence that opens it
  std::string text;      // its lines, each with its end
};

inline std::vector<Block> blocks(const std::string& page) {
  constexpr std::string_view fence = "```";
  std::vector<Block> found;
  std::istringstream lines(page);
  bool inside = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(fence)) {
      inside = !inside;
      if (inside) found.push_back({line.substr(fence.size()), ""});
    } else if (inside) {
      found.back().text += line + '\n';
    }
  }
  return found;
}

// Those in one language.
inline std::vector<std::string> blocks(const std::string& page, const std::string& language) {
  std::vector<std::string> texts;
  for (const Block& block : blocks(page)) {
    if (block.language == language) texts.push_back(block.text);
  }
  return texts;
}

}  // namespace support
