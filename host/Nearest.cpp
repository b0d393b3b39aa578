#include "host/Nearest.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <utility>

#include "host/Text.h"

namespace host {
namespace {

constexpr std::size_t longest = 64;  // of the names that are compared
constexpr std::size_t mostCompared = 64;

// The slips between two texts, by the rows of the table of those between their prefixes.
// Requires: neither is longer than the longest.
std::size_t slips(std::string_view a, std::string_view b) {
  std::array<std::array<std::size_t, longest + 1>, 3> rows;
  auto *beforeLast = &rows[0], *last = &rows[1], *row = &rows[2];
  for (std::size_t j = 0; j <= b.size(); ++j) (*row)[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    beforeLast = std::exchange(last, std::exchange(row, beforeLast));
    (*row)[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const bool same = lower(a[i - 1]) == lower(b[j - 1]);
      const std::size_t least = std::min((*last)[j], (*row)[j - 1]) + 1;
      (*row)[j] = std::min(least, (*last)[j - 1] + (same ? 0 : 1));
      const bool swapped = i > 1 && j > 1 && lower(a[i - 1]) == lower(b[j - 2]) &&
                           lower(a[i - 2]) == lower(b[j - 1]);
      if (swapped) (*row)[j] = std::min((*row)[j], (*beforeLast)[j - 2] + 1);
    }
  }
  return (*row)[b.size()];
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

NearNames::Letters::Letters(std::string_view from) {
  for (const char c : from) {
    if (isDigit(c)) {
      digits += c;
      continue;
    }
    text += lower(c);
    bits |= std::uint64_t{1} << (static_cast<unsigned char>(lower(c)) % 64);
  }
}

NearNames::NearNames(const std::vector<std::string_view>& names, std::size_t same) : same_(same) {
  constexpr std::size_t many = 4096;
  if (names.size() > many) return;
  names_.reserve(names.size());
  for (const std::string_view name : names) {
    if (name.size() < same || name.size() > longest) continue;
    names_.push_back({name.substr(same), Letters(name.substr(same))});
  }
}

std::string_view NearNames::nearest(std::string_view word) const {
  if (word.size() <= same_ || word.size() > longest) return {};
  word.remove_prefix(same_);
  const Letters letters(word);
  std::string_view found;
  std::size_t fewest = longest;
  std::size_t compared = 0;
  for (const auto& [name, others] : names_) {
    const bool areNumbered = !letters.digits.empty() && !others.digits.empty();
    const bool isOtherNumber =
        letters.digits != others.digits && (areNumbered || letters.text == others.text);
    const auto [shorter, longer] = std::minmax({name.size(), word.size()});
    const std::size_t most = std::min(longer / 3, fewest - 1);
    if (isOtherNumber || longer - shorter > most) continue;
    // A slip takes at most one letter away, and brings at most one.
    const auto missing = static_cast<std::size_t>(std::popcount(letters.bits & ~others.bits));
    const auto added = static_cast<std::size_t>(std::popcount(others.bits & ~letters.bits));
    if (std::max(missing, added) > most) continue;
    if (++compared > mostCompared) break;
    const std::size_t count = slips(word, name);
    if (count > most) continue;
    fewest = count;
    found = name;
    if (fewest == 0) break;
  }
  if (found.empty()) return {};
  return {found.data() - same_, found.size() + same_};
}

std::string NearNames::didYouMean(std::string_view word) const {
  const std::string_view name = nearest(word);
  return name.empty() ? "" : ": did you mean " + shown(name) + '?';
}

std::string_view nearest(std::string_view word, const std::vector<std::string_view>& names) {
  return NearNames(names).nearest(word);
}

std::string didYouMean(std::string_view word, const std::vector<std::string_view>& names) {
  return NearNames(names).didYouMean(word);
}

std::string didYouMeanOf(std::string_view word, const std::vector<std::string_view>& names) {
  std::string legal;
  for (const std::string_view name : names) {
    legal += (legal.empty() ? "" : ", ") + std::string(name);
  }
  return didYouMean(word, names) + " (legal: " + legal + ')';
}

}  // namespace host
