// The entries of a hash map in bytewise order of their keys: the order of everything that is
// printed.
#pragma once

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

template <class Map>
auto sorted(const Map& map) {
  using Entry = std::pair<std::string_view, const typename Map::Value*>;
  std::vector<Entry> entries;
  entries.reserve(map.members());
  for (auto i = map.unsafeIterator(); i; ++i) entries.emplace_back(i->key(), &i->value());
  std::sort(entries.begin(), entries.end(),
            [](const Entry& a, const Entry& b) { return a.first < b.first; });
  return entries;
}

}  // namespace host
