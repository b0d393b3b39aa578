// Hash maps of every form and kind of key, under one interface: a map's rules hold for
// each of these.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <compare>
#include <cstdint>
#include <functional>
#include <ostream>
#include <set>
#include <utility>
#include <vector>

#include "Rok/Rok.h"

namespace RokTest {

// Keys whose hashes all collide.
struct Blunt {
  int number = 0;

  std::uint32_t hash(std::uint32_t /*seed*/) const { return 5; }
  auto operator<=>(const Blunt&) const = default;
};
inline std::ostream& operator<<(std::ostream& out, const Blunt& key) { return out << key.number; }

// A key of two parts.
struct PortId {
  Rok::String device;
  std::uint32_t port = 0;

  std::uint32_t hash(std::uint32_t seed) const {
    return Rok::hashSingleAttr(Rok::hashSingleAttr(seed, device), port);
  }
  auto operator<=>(const PortId&) const = default;
};

enum class Color : unsigned char {};

// A value that holds its key.
struct Record {
  Rok::String name;
  int number = 0;

  bool operator==(const Record&) const = default;
};
struct RecordKeyFunktor {
  const Rok::String& operator()(const Record& record) const { return record.name; }
};

// Each of these makes the key and the value of a number, and reads the number of a value.
struct TextKeys {
  using Map = Rok::HashMap2018<Rok::Hm2018NEI<0x51, Rok::String, int>>;
  static Rok::String key(int i) { return Rok::_fmt("Ethernet%d", i); }
  static int value(int /*key*/, int number) { return number; }
  static int number(int value) { return value; }
};
struct NumberKeys {
  using Map = Rok::HashMap2018<Rok::Hm2018NEI<0x52, std::uint32_t, int>>;
  static std::uint32_t key(int i) { return static_cast<std::uint32_t>(i); }
  static int value(int /*key*/, int number) { return number; }
  static int number(int value) { return value; }
};
struct CollidingKeys {
  using Map = Rok::HashMap2018<Rok::Hm2018NEI<0x53, Blunt, int>>;
  static Blunt key(int i) { return {i}; }
  static int value(int /*key*/, int number) { return number; }
  static int number(int value) { return value; }
};
struct PairKeys {
  using Map = Rok::HashMap2018<Rok::Hm2018NEI<0x54, PortId, int>>;
  static PortId key(int i) { return {i % 2 == 0 ? "even" : "odd", static_cast<std::uint32_t>(i)}; }
  static int value(int /*key*/, int number) { return number; }
  static int number(int value) { return value; }
};
struct KeysInside {
  using Map = Rok::HashMap2018<Rok::Hm2018NII<0x55, Rok::String, Record, RecordKeyFunktor>>;
  static Rok::String key(int i) { return Rok::_fmt("Ethernet%d", i); }
  static Record value(int key, int number) { return {KeysInside::key(key), number}; }
  static int number(const Record& value) { return value.number; }
};

using AllKeys = testing::Types<TextKeys, NumberKeys, CollidingKeys, PairKeys, KeysInside>;

// Adds the entries 0 to n - 1; the value of each is its number.
template <class Keys>
void fill(typename Keys::Map& map, int n) {
  for (int i = 0; i < n; ++i) map.newMember(Keys::key(i), Keys::value(i, i));
}

// The numbers of a map's values in the order of a walk.
template <class Keys>
std::vector<int> walked(const typename Keys::Map& map) {
  std::vector<int> numbers;
  for (auto i = map.iterator(); i; ++i) {
    numbers.push_back(Keys::number(i.currNodeNonStale()->value()));
  }
  return numbers;
}
template <class Keys>
std::set<int> entries(const typename Keys::Map& map) {
  const std::vector<int> numbers = walked<Keys>(map);
  std::set<int> result(numbers.begin(), numbers.end());
  EXPECT_EQ(result.size(), numbers.size()) << "an entry was visited twice";
  EXPECT_EQ(result.size(), map.members());
  return result;
}

// 0 to n - 1, without the given ones.
inline std::set<int> numbersTo(int n, std::initializer_list<int> without = {}) {
  std::set<int> result;
  for (int i = 0; i < n; ++i) result.insert(i);
  for (const int i : without) result.erase(i);
  return result;
}

// Puts a walk-order seed in force for a scope.
class OrderSeed {
 public:
  explicit OrderSeed(std::uint32_t seed) { Rok::HashHelper::orderSeedIs(seed); }
  OrderSeed(const OrderSeed&) = delete;
  OrderSeed& operator=(const OrderSeed&) = delete;
  ~OrderSeed() { Rok::HashHelper::orderSeedIs(0); }
};

// Runs a body over maps from one entry to several index growths, each in several walk orders.
template <class Keys>
void forEachMap(const std::function<void(typename Keys::Map&, int size)>& body) {
  for (const std::uint32_t seed : {0u, 1u, 2u, 3u, 77u}) {
    const OrderSeed order(seed);
    for (const int size : {1, 2, 3, 8, 9, 12, 13, 100}) {
      SCOPED_TRACE(testing::Message() << size << " entries, order seed " << seed);
      typename Keys::Map map;
      fill<Keys>(map, size);
      body(map, size);
    }
  }
}

// An object whose destructor runs a test's code.
class Hook final : public Rok::PtrInterface {
 public:
  explicit Hook(std::function<void()> onEnd) : onEnd_(std::move(onEnd)) {}
  ~Hook() override { onEnd_(); }

 private:
  std::function<void()> onEnd_;
};
using HookMap = Rok::HashMap2018<Rok::Hm2018NEI<0x56, std::uint32_t, Rok::Ptr<Hook>>>;

}  // namespace RokTest
