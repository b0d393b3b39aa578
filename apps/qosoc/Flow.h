// The texts of the table of commands, laid out.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace qosoc {

// A paragraph, or lines that stay as they are.
struct Block {
  bool isVerbatim = false;
  std::vector<std::string> lines;  // of a paragraph: one, without line ends
};

// The blocks of a text, which empty lines and a change of the kind divide.
std::vector<Block> blocks(std::string_view text);

// A paragraph in lines of at most `width` characters, but for words that are longer.
std::vector<std::string> wrapped(std::string_view paragraph, std::size_t width);

}  // namespace qosoc
