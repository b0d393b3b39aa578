// The hash map beside two others: find, insert, erase, walk, the worst single insert, bytes.
//
// Keys come in a random order, another one for each operation. Strings are copies of those in the
// map and share their text, as names in this system mostly do; all three maps hash them by the
// same cached hash. Integers are hashed by each map in its own way. Each repetition has a process
// of its own, so that no map finds the memory that another one left.
#include <algorithm>
#include <boost/unordered/unordered_flat_map.hpp>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "Rok/HashMap2018.h"
#include "Rok/StdIterator.h"
#include "support/BytesInUse.h"
#include "support/Check.h"
#include "support/Child.h"
#include "support/Comparisons.h"
#include "support/Heap.h"
#include "support/Order.h"
#include "support/Seconds.h"
#include "support/Series.h"
#include "support/Sizes.h"

namespace Bench {
namespace {

using Value = std::uint64_t;

// ===== The maps, under one interface

struct StringHash {
  std::size_t operator()(const Velmo::String& key) const { return key.hash(); }
};

template <class Key>
struct OwnMap {
  Rok::HashMap2018<Rok::Hm2018NEI<0x71u, Key, Value>> map;

  const Value* find(const Key& key) const { return map.find(key); }
  void insert(const Key& key, Value value) { map.newMember(key, value); }
  bool erase(const Key& key) { return map.deleteMember(key); }
  std::size_t members() const { return map.members(); }
  Value sum() const {
    Value result = 0;
    for (auto i = map.iterator(); i; ++i) result += i.currNodeMaybeStale()->value();
    return result;
  }
};

template <class Key, class Map>
struct OtherMap {
  Map map;

  const Value* find(const Key& key) const {
    const auto found = map.find(key);
    return found != map.end() ? &found->second : nullptr;
  }
  void insert(const Key& key, Value value) { map.emplace(key, value); }
  bool erase(const Key& key) { return map.erase(key) != 0; }
  std::size_t members() const { return map.size(); }
  Value sum() const {
    Value result = 0;
    for (const auto& [key, value] : map) result += value;
    return result;
  }
};

template <class Key>
using StdHashOf =
    std::conditional_t<std::is_same_v<Key, Velmo::String>, StringHash, std::hash<Key>>;
template <class Key>
using BoostHashOf =
    std::conditional_t<std::is_same_v<Key, Velmo::String>, StringHash, boost::hash<Key>>;
template <class Key>
using StdMap = OtherMap<Key, std::unordered_map<Key, Value, StdHashOf<Key>>>;
template <class Key>
using FlatMap = OtherMap<Key, boost::unordered_flat_map<Key, Value, BoostHashOf<Key>>>;

// ===== Keys

// A bijection without any order, so that no map gains from neighbours.
std::uint32_t scattered(std::uint32_t n) {
  n = (n ^ (n >> 16)) * 0x7feb352du;
  n = (n ^ (n >> 15)) * 0x846ca68bu;
  return n ^ (n >> 16);
}

void makeKey(std::size_t n, std::uint32_t& key) { key = scattered(static_cast<std::uint32_t>(n)); }
void makeKey(std::size_t n, Velmo::String& key) {
  key = Velmo::String("edge-in-" + std::to_string(n));
}

template <class Key>
std::vector<Key> keys(std::size_t count) {
  std::vector<Key> result(count);
  for (std::size_t n = 0; n < count; ++n) makeKey(n, result[n]);
  Random random(5);
  shuffle(result, random);
  return result;
}

// ===== The operations. The value of a key is its number in `keys`.

template <class Map, class Key>
void fill(Map& map, const std::vector<Key>& keys) {
  for (std::size_t n = 0; n < keys.size(); ++n) map.insert(keys[n], n);
}

constexpr std::size_t operationsWanted = 200'000;

Value sumOfValues(std::size_t count) { return Value{count} * (count - 1) / 2; }

// Seconds of a repetition of `work`, divided by the number of keys.
template <class Work>
double each(std::size_t keys, const Work& work) {
  const double start = threadSeconds();
  work();
  return (threadSeconds() - start) / static_cast<double>(keys);
}

struct Operations {
  double insert = 0;
  double walk = 0;
  double find = 0;
  double erase = 0;
  double bytes = 0;  // an entry
};

// One map from its first insert to its last erase. Each operation takes the keys in another random
// order.
template <class Map, class Key>
Operations life(std::vector<Key>& all, Random& random) {
  Operations taken;
  const std::uint64_t before = bytesInUse();
  Map map;
  taken.insert = each(all.size(), [&] { fill(map, all); });
  require(map.members() == all.size(), "number of entries inserted");
  taken.bytes = static_cast<double>(bytesInUse() - before) / static_cast<double>(all.size());
  // A single pass over a small map would mostly time the clock.
  const std::size_t rounds = all.size() < 10'000 ? 20 : 1;
  Value sum = 0;
  taken.walk = each(all.size() * rounds, [&] {
    for (std::size_t i = 0; i < rounds; ++i) sum += map.sum();
  });
  require(sum == rounds * sumOfValues(all.size()), "sum of the values walked");
  shuffle(all, random);
  sum = 0;
  taken.find = each(all.size() * rounds, [&] {
    for (std::size_t i = 0; i < rounds; ++i) {
      for (const Key& key : all) sum += *map.find(key);
    }
  });
  require(sum == rounds * sumOfValues(all.size()), "sum of the values found");
  shuffle(all, random);
  std::size_t erased = 0;
  taken.erase = each(all.size(), [&] {
    for (const Key& key : all) erased += map.erase(key) ? 1 : 0;
  });
  require(erased == all.size() && map.members() == 0, "number of entries erased");
  return taken;
}

// The means over as many maps as make about `operationsWanted` operations.
template <class Map, class Key>
Operations lives(std::size_t size) {
  Random random(6);
  std::vector<Key> all = keys<Key>(size);
  const std::size_t count = size < operationsWanted ? operationsWanted / size : 1;
  Operations sum;
  for (std::size_t i = 0; i < count; ++i) {
    const Operations one = life<Map>(all, random);
    sum.insert += one.insert / static_cast<double>(count);
    sum.walk += one.walk / static_cast<double>(count);
    sum.find += one.find / static_cast<double>(count);
    sum.erase += one.erase / static_cast<double>(count);
    sum.bytes += one.bytes / static_cast<double>(count);
  }
  return sum;
}

// Seconds of the longest of all inserts on the way to a full map, and of the one that one in ten
// thousand exceeds.
struct Worst {
  double worst;
  double almost;
};
template <class Map, class Key>
Worst worstInsert(std::size_t size) {
  const std::vector<Key> all = keys<Key>(size);
  std::vector<double> seconds;
  seconds.reserve(size);
  Map map;
  for (std::size_t n = 0; n < size; ++n) {
    const double start = threadSeconds();
    map.insert(all[n], n);
    seconds.push_back(threadSeconds() - start);
  }
  require(map.members() == size, "number of entries inserted");
  const auto almost = seconds.end() - static_cast<std::ptrdiff_t>(size / 10'000) - 1;
  std::nth_element(seconds.begin(), almost, seconds.end());
  return {*std::max_element(almost, seconds.end()), *almost};
}

// ===== Registration

// One of the maps, by the name that its figures end in.
struct Rival {
  std::string suffix;
  Operations (*lives)(std::size_t size);
  Worst (*worstInsert)(std::size_t size);
};
template <class Map, class Key>
Rival rival(const std::string& suffix) {
  return {suffix, &inChild<lives<Map, Key>>, &inChild<worstInsert<Map, Key>>};
}

void addLife(Measured& measured, const Rival& one, std::size_t size) {
  const Operations taken = one.lives(size);
  Series& insert = measured[at("map insert" + one.suffix, size)];
  insert.seconds.push_back(taken.insert);
  insert.counters["bytes"] = taken.bytes;
  measured[at("map walk" + one.suffix, size)].seconds.push_back(taken.walk);
  measured[at("map find" + one.suffix, size)].seconds.push_back(taken.find);
  measured[at("map erase" + one.suffix, size)].seconds.push_back(taken.erase);
}

void addWorst(Measured& measured, const Rival& one, std::size_t size) {
  const Worst worst = one.worstInsert(size);
  measured[at("map worst insert" + one.suffix, size)].seconds.push_back(worst.worst);
  measured[at("map insert 99.99 %" + one.suffix, size)].seconds.push_back(worst.almost);
}

// The maps take turns, so that a machine that slows down slows down all.
void addTogether(const std::vector<std::string>& titles, const std::vector<Rival>& rivals,
                 std::size_t size, void (*add)(Measured&, const Rival&, std::size_t)) {
  std::vector<std::string> names;
  for (const std::string& title : titles) {
    for (const Rival& one : rivals) names.push_back(title + one.suffix);
  }
  registerTogether(names, size, [=] {
    Measured measured;
    for (std::size_t i = 0; i < repetitions; ++i) {
      for (const Rival& one : rivals) add(measured, one, size);
    }
    return measured;
  });
}

// Lines for the own map beside each other one. `counter` names a counter, with a space in front.
void compare(Comparisons& comparisons, const std::string& figure, std::size_t size,
             const std::string& counter = "") {
  for (const char* other : {", std", ", flat"}) {
    comparisons.add(at(figure + ", own", size).append(counter),
                    at(figure + other, size).append(counter));
  }
}

template <class Key>
void addKey(Comparisons& comparisons, const std::string& key) {
  const std::string with = std::string(", ").append(key);
  const std::vector<Rival> rivals = {rival<OwnMap<Key>, Key>(with + ", own"),
                                     rival<StdMap<Key>, Key>(with + ", std"),
                                     rival<FlatMap<Key>, Key>(with + ", flat")};
  for (const std::size_t size : sizes()) {
    addTogether({"map find", "map insert", "map erase", "map walk"}, rivals, size, &addLife);
  }
  addTogether({"map worst insert", "map insert 99.99 %"}, rivals, sizes().back(), &addWorst);
  for (const char* operation : {"map find, ", "map insert, ", "map erase, ", "map walk, "}) {
    for (const std::size_t size : sizes()) compare(comparisons, operation + key, size);
  }
  for (const char* worst : {"map worst insert, ", "map insert 99.99 %, "}) {
    compare(comparisons, worst + key, sizes().back());
  }
  for (const std::size_t size : sizes()) compare(comparisons, "map insert, " + key, size, " bytes");
}

}  // namespace

void hashMap(Comparisons& comparisons) {
  comparisons.subject("Hash map");
  addKey<Velmo::String>(comparisons, "String");
  addKey<std::uint32_t>(comparisons, "uint32");
}

}  // namespace Bench
