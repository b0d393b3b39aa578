// OVERVIEW
//   Serves a few entries of a hash map in the order of a walk over the map, without the walk. Where
//   a trace is to show that walk, it is made for its lines alone.
//
// RULES
//   - `keys` are those to be served. A key that the map doesn't have is left out, and one that
//     comes twice is served once.
//   - act(key) removes no entry of the map.
//   - With `traced`, line(key) is called for each entry of the map in turn, and act(key) follows
//     the line of its key. Otherwise act(key) alone is called, in the same order.
//
// EXAMPLE
//   Rok::HashMap2018<Rok::Hm2018NEI<0x53, Velmo::String, int>> ports;
//   ports.newMember("Ethernet1", 7);
//   int served = 0;
//   Rok::inWalkOrder(ports, {"Ethernet1", "Ethernet2"}, false, [](const Velmo::String&) {},
//                    [&](const Velmo::String& name) { served += ports.get(name); });
//   assert(served == 7);
#pragma once

#include <algorithm>
#include <vector>

#include "Rok/HashMap2018.h"

namespace Rok {

// Calls act(key), and line(key) where the walk is shown, as the rules say.
template <class Map, class Line, class Act>
void inWalkOrder(const Map& map, std::vector<typename Map::Key> keys, bool traced, const Line& line,
                 const Act& act) {
  if (keys.size() == 1 && !traced) {
    if (map.find(keys.front()) != nullptr) act(keys.front());
    return;
  }
  const auto isMissing = [&](const auto& key) { return map.find(key) == nullptr; };
  keys.erase(std::remove_if(keys.begin(), keys.end(), isMissing), keys.end());
  const auto place = [&](const auto& key) { return map.walkPlace(key); };
  std::ranges::sort(keys, {}, place);
  keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  auto next = keys.begin();
  if (traced) {
    for (const auto& [key, value] : map) {
      line(key);
      if (next != keys.end() && key == *next) act(*next++);
    }
  }
  while (next != keys.end()) act(*next++);
}

}  // namespace Rok
