// OVERVIEW
//   Values by key, as a state machine remembers them.
//
// RULES
//   - A missing key reads as the default value; to tell the two apart, ask `map()`.
//
// EXAMPLE
//   Rok::ValueMap<0x58, Velmo::String, int> speeds;
//   speeds.is("Ethernet1", 100);
//   assert(speeds.get("Ethernet1") == 100 && speeds.get("Ethernet2") == 0);
#pragma once

#include <cstdint>

#include "Rok/HashMap2018.h"

namespace Rok {

template <std::uint32_t seed, class Key, class Value>
class ValueMap {
 public:
  using Map = HashMap2018<Hm2018NEI<seed, Key, Value>>;

  const Map& map() const { return map_; }
  // A missing key reads as the default value.
  Value get(const Key& key) const { return map_.get(key); }
  // Replaces the value, or inserts it.
  void is(const Key& key, const Value& value) {
    const auto [node, isNew] = map_.newMember(key, value);
    if (!isNew) node->value() = value;
  }
  // Removes what is there.
  void del(const Key& key) { map_.deleteMember(key); }
  // The same for all keys.
  void delAll() { map_._memberDelAll(); }

 private:
  Map map_;
};

}  // namespace Rok
