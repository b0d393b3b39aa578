// The hash map beside two others: find, insert, erase, walk, the worst single insert, bytes.
//
// Keys come in a random order, another one for each operation. Strings are copies of those in the
// map and share their text, as names in this system mostly do; all three maps hash them by the same
// cached hash. Integers are hashed by each map in its own way.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <boost/unordered/unordered_flat_map.hpp>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <new>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "Rok/HashMap2018.h"
#include "Rok/StdIterator.h"
#include "support/Check.h"
#include "support/Comparisons.h"
#include "support/Order.h"
#include "support/Timed.h"

namespace Bench {
namespace {

using Value = std::uint64_t;

// ===== Bytes: what malloc gave, with its own word, for the maps that can't tell by themselves

std::size_t bytesAllocated = 0;

template <class T>
struct CountingAllocator {
  using value_type = T;

  CountingAllocator() = default;
  template <class U>
  explicit CountingAllocator(const CountingAllocator<U>& /*other*/) {}

  T* allocate(std::size_t count) {
    // NOLINTNEXTLINE(bugprone-sizeof-expression): a map allocates arrays of pointers too
    void* block = std::malloc(count * sizeof(T));
    if (block == nullptr) throw std::bad_alloc();
    bytesAllocated += malloc_usable_size(block) + sizeof(std::size_t);
    return static_cast<T*>(block);
  }
  void deallocate(T* block, std::size_t /*count*/) noexcept {
    bytesAllocated -= malloc_usable_size(block) + sizeof(std::size_t);
    std::free(block);
  }
  friend bool operator==(const CountingAllocator&, const CountingAllocator&) { return true; }
};

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
  std::size_t bytes() const { return map.bytes(); }
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
  std::size_t bytes() const { return bytesAllocated; }
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
using Allocator = CountingAllocator<std::pair<const Key, Value>>;
template <class Key>
using StdMap =
    OtherMap<Key,
             std::unordered_map<Key, Value, StdHashOf<Key>, std::equal_to<Key>, Allocator<Key>>>;
template <class Key>
using FlatMap = OtherMap<Key, boost::unordered_flat_map<Key, Value, BoostHashOf<Key>,
                                                        std::equal_to<Key>, Allocator<Key>>>;

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

// A million texts take longer to make than to measure, so they are made once.
template <class Key>
const std::vector<Key>& keys(std::size_t count) {
  static std::map<std::size_t, std::vector<Key>> made;
  std::vector<Key>& result = made[count];
  if (!result.empty()) return result;
  result.resize(count);
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

Value sumOfValues(std::size_t count) { return Value{count} * (count - 1) / 2; }

template <class Map, class Key>
void find(benchmark::State& state) {
  auto all = keys<Key>(static_cast<std::size_t>(state.range(0)));
  Map map;
  fill(map, all);
  Random random(6);
  for (auto _ : state) {
    shuffle(all, random);
    Value sum = 0;
    timed(state, all.size(), [&] {
      for (const Key& key : all) sum += *map.find(key);
    });
    require(sum == sumOfValues(all.size()), "sum of the values found");
  }
}

template <class Map, class Key>
void insert(benchmark::State& state) {
  const auto& all = keys<Key>(static_cast<std::size_t>(state.range(0)));
  double bytes = 0;
  for (auto _ : state) {
    std::optional<Map> map(std::in_place);
    timed(state, all.size(), [&] { fill(*map, all); });
    require(map->members() == all.size(), "number of entries inserted");
    bytes = static_cast<double>(map->bytes()) / static_cast<double>(all.size());
  }
  state.counters["bytes"] = bytes;
}

template <class Map, class Key>
void erase(benchmark::State& state) {
  auto all = keys<Key>(static_cast<std::size_t>(state.range(0)));
  Random random(7);
  for (auto _ : state) {
    Map map;
    fill(map, all);
    shuffle(all, random);
    std::size_t erased = 0;
    timed(state, all.size(), [&] {
      for (const Key& key : all) erased += map.erase(key) ? 1 : 0;
    });
    require(erased == all.size() && map.members() == 0, "number of entries erased");
  }
}

template <class Map, class Key>
void walk(benchmark::State& state) {
  const auto& all = keys<Key>(static_cast<std::size_t>(state.range(0)));
  Map map;
  fill(map, all);
  for (auto _ : state) {
    Value sum = 0;
    timed(state, all.size(), [&] { sum = map.sum(); });
    require(sum == sumOfValues(all.size()), "sum of the values walked");
  }
}

// The longest of all inserts on the way to a full map.
template <class Map, class Key>
void worstInsert(benchmark::State& state) {
  const auto& all = keys<Key>(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    Map map;
    double worst = 0;
    for (std::size_t n = 0; n < all.size(); ++n) {
      const double start = threadSeconds();
      map.insert(all[n], n);
      worst = std::max(worst, threadSeconds() - start);
    }
    require(map.members() == all.size(), "number of entries inserted");
    state.SetIterationTime(worst);
  }
}

// ===== Registration

constexpr std::size_t sizes[] = {1000, 100'000, 1'000'000};
constexpr std::size_t operationsWanted = 500'000;

void addSizes(const std::string& name, void (*function)(benchmark::State&)) {
  for (const std::size_t size : sizes) {
    auto* added = benchmark::RegisterBenchmark(name.c_str(), function)
                      ->Arg(static_cast<std::int64_t>(size))
                      ->Iterations(batches(size, operationsWanted))
                      ->UseManualTime();
    if (size == sizes[2]) added->Repetitions(3);  // or these alone take longer than all the others
  }
}

template <template <class> class Map, class Key>
void addMap(const std::string& suffix) {
  addSizes("map find" + suffix, find<Map<Key>, Key>);
  addSizes("map insert" + suffix, insert<Map<Key>, Key>);
  addSizes("map erase" + suffix, erase<Map<Key>, Key>);
  addSizes("map walk" + suffix, walk<Map<Key>, Key>);
  benchmark::RegisterBenchmark(("map worst insert" + suffix).c_str(), worstInsert<Map<Key>, Key>)
      ->Arg(1'000'000)
      ->Iterations(1)
      ->UseManualTime();
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
  addMap<OwnMap, Key>(with + ", own");
  addMap<StdMap, Key>(with + ", std");
  addMap<FlatMap, Key>(with + ", flat");
  for (const char* operation : {"map find, ", "map insert, ", "map erase, ", "map walk, "}) {
    for (const std::size_t size : sizes) compare(comparisons, operation + key, size);
  }
  compare(comparisons, "map worst insert, " + key, 1'000'000);
  for (const std::size_t size : sizes) compare(comparisons, "map insert, " + key, size, " bytes");
}

}  // namespace

void hashMap(Comparisons& comparisons) {
  addKey<Velmo::String>(comparisons, "String");
  addKey<std::uint32_t>(comparisons, "uint32");
}

}  // namespace Bench
