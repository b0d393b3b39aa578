#include "Flow.h"

#include <algorithm>

namespace qosoc {
namespace {

// Takes the first part off `text`, up to `end` or to the end of the text.
std::string_view take(std::string_view& text, char end) {
  const std::size_t size = std::min(text.find(end), text.size());
  const std::string_view part = text.substr(0, size);
  text.remove_prefix(std::min(size + 1, text.size()));
  return part;
}

}  // namespace

std::vector<Block> blocks(std::string_view text) {
  std::vector<Block> blocks;
  bool isOpen = false;
  while (!text.empty()) {
    const std::string line(take(text, '\n'));
    const bool isVerbatim = line.starts_with("  ");
    if (isOpen) isOpen = !line.empty() && blocks.back().isVerbatim == isVerbatim;
    if (line.empty()) continue;
    if (!isOpen) {
      blocks.push_back({isVerbatim, {line}});
    } else if (isVerbatim) {
      blocks.back().lines.push_back(line);
    } else {
      blocks.back().lines.front() += ' ' + line;
    }
    isOpen = true;
  }
  return blocks;
}

std::vector<std::string> wrapped(std::string_view paragraph, std::size_t width) {
  std::vector<std::string> lines;
  while (!paragraph.empty()) {
    const std::string word(take(paragraph, ' '));
    if (lines.empty() || lines.back().size() + 1 + word.size() > width) {
      lines.push_back(word);
    } else {
      lines.back() += ' ' + word;
    }
  }
  return lines;
}

}  // namespace qosoc
