// Tables of a page.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace Bench {

// "100,000".
inline std::string grouped(std::size_t number) {
  std::string text = std::to_string(number);
  for (std::size_t at = text.size(); at > 3; at -= 3) text.insert(at - 3, 1, ',');
  return text;
}

inline void line(std::ostream& out, const std::vector<std::string>& cells) {
  for (const std::string& cell : cells) out << "| " << cell << ' ';
  out << "|\n";
}

// The names of the columns, and what stands below them.
inline void head(std::ostream& out, const std::vector<std::string>& columns) {
  line(out, columns);
  for (std::size_t i = 0; i < columns.size(); ++i) out << "|---";
  out << "|\n";
}

}  // namespace Bench
