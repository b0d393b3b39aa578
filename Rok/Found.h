// OVERVIEW
//   Remembers the entry that a map has under a key, for code that uses one entry again and again:
//   it is looked up once for as long as the map has the same keys.
//
// RULES
//   - It holds while the map's version() stays the same: entries may be written in place, and an
//     insertion or removal of any key costs one look-up.
//   - One key and one type of map for each object. The map itself may be another one each time:
//     versions of two maps differ.
//   - It holds no reference. The pointer is valid until the map changes.
//
// EXAMPLE
//   Rok::HashMap2018<Rok::Hm2018NEI<0x52, Velmo::String, int>> ports;
//   ports.newMember("Ethernet1", 7);
//   Rok::Found mine;
//   assert(*mine.in(ports, "Ethernet1") == 7);
//   ports.deleteMember("Ethernet1");
//   assert(mine.in(ports, "Ethernet1") == nullptr);
#pragma once

#include <cstdint>

namespace Rok {

class Found {
 public:
  // The value that the map holds under the key, or null.
  template <class Map>
  const typename Map::Value* in(const Map& map, const typename Map::Key& key) {
    if (version_ != map.version()) is(map, map.find(key));
    return static_cast<const typename Map::Value*>(value_);
  }
  // Remembers an entry that was found or made by another way.
  template <class Map>
  void is(const Map& map, const typename Map::Value* value) {
    version_ = map.version();
    value_ = value;
  }

 private:
  std::uint64_t version_ = 0;  // that of a map which never had an entry
  const void* value_ = nullptr;
};

}  // namespace Rok
