// The entries of a hash map in the order in which they are printed.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace host {

// A key as a text: a name as it stands; below, a number or an enumeration as a decimal.
inline std::string_view keyText(std::string_view key) { return key; }
// The same of a number or an enumeration.
template <class Number>
requires std::is_integral_v<Number> || std::is_enum_v<Number> std::string keyText(Number key) {
  return std::to_string(static_cast<unsigned>(key));
}

// In bytewise order of their keys, numbers as decimals.
template <class Map>
auto sorted(const Map& map) {
  using Text = decltype(keyText(std::declval<const typename Map::Key&>()));
  using Entry = std::pair<Text, const typename Map::Value*>;
  std::vector<Entry> entries;
  entries.reserve(map.members());
  for (auto i = map.unsafeIterator(); i; ++i) entries.emplace_back(keyText(i->key()), &i->value());
  std::sort(entries.begin(), entries.end(),
            [](const Entry& a, const Entry& b) { return a.first < b.first; });
  return entries;
}

// The same by the keys themselves: numbers in the order of numbers.
template <class Map>
auto inOrder(const Map& map) {
  using Entry = std::pair<const typename Map::Key*, const typename Map::Value*>;
  std::vector<Entry> entries;
  entries.reserve(map.members());
  for (auto i = map.unsafeIterator(); i; ++i) entries.emplace_back(&i->key(), &i->value());
  std::sort(entries.begin(), entries.end(),
            [](const Entry& a, const Entry& b) { return *a.first < *b.first; });
  return entries;
}

}  // namespace host
