// A place in a text.
#pragma once

#include <compare>
#include <cstddef>
#include <string>

#include "Dorpel/Export.h"

namespace QOS_EXPORT host {

// Both count from 1; columns are bytes. Line 0: not known.
struct TextPosition {
  std::size_t line = 0;
  std::size_t column = 0;

  friend auto operator<=>(const TextPosition&, const TextPosition&) = default;
};

// "line:column", or nothing for one that is not known.
inline std::string shownPosition(TextPosition position) {
  if (position.line == 0) return "";
  return std::to_string(position.line) + ':' + std::to_string(position.column);
}

}  // namespace host
