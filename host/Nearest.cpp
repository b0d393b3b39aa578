#include "host/Nearest.h"

#include <algorithm>
#include <cctype>
#include <cstddef>

#include "host/Text.h"

namespace host {
namespace {

constexpr std::size_t longest = 64;  // of the names that are compared

char lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

// The slips between two texts, by the rows of the table of those between their prefixes.
std::size_t slips(std::string_view a, std::string_view b) {
  std::vector<std::size_t> beforeLast, last, row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    beforeLast = std::move(last);
    last = row;
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const bool same = lower(a[i - 1]) == lower(b[j - 1]);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same ? 0 : 1)});
      const bool swapped = i > 1 && j > 1 && lower(a[i - 1]) == lower(b[j - 2]) &&
                           lower(a[i - 2]) == lower(b[j - 1]);
      if (swapped) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
    }
  }
  return row.back();
}

// Ethernet1 and Ethernet2 are two names, and neither is a slip of the other.
std::string withoutDigits(std::string_view text) {
  std::string letters;
  for (const char c : text) {
    if (std::isdigit(static_cast<unsigned char>(c)) == 0) letters += lower(c);
  }
  return letters;
}

bool differInNumbersAlone(std::string_view a, std::string_view b) {
  const std::string letters = withoutDigits(a);
  const bool isNumbered = letters.size() < a.size();
  return isNumbered && letters == withoutDigits(b) && slips(a, b) > 0;
}

}  // namespace

std::string_view nearest(std::string_view word, const std::vector<std::string_view>& names) {
  if (word.empty() || word.size() > longest) return {};
  std::string_view found;
  std::size_t fewest = longest;
  for (const std::string_view name : names) {
    const auto [shorter, longer] = std::minmax({name.size(), word.size()});
    const std::size_t most = longer / 3;
    if (longer - shorter > most || differInNumbersAlone(word, name)) continue;
    const std::size_t count = slips(word, name);
    if (count > most || count >= fewest) continue;
    fewest = count;
    found = name;
  }
  return found;
}

std::string didYouMean(std::string_view word, const std::vector<std::string_view>& names) {
  const std::string_view name = nearest(word, names);
  return name.empty() ? "" : ": did you mean " + shown(name) + '?';
}

std::string didYouMeanOf(std::string_view word, const std::vector<std::string_view>& names) {
  std::string legal;
  for (const std::string_view name : names) {
    legal += (legal.empty() ? "" : ", ") + std::string(name);
  }
  return didYouMean(word, names) + " (legal: " + legal + ')';
}

}  // namespace host
