// Hash maps of values that throw, and of values that use the map.
#include <memory>
#include <stdexcept>
#include <vector>

#include "Rok/HashMap2018.h"
#include "tests/support/RokMaps.h"

namespace hashMapValuesTest {
namespace {

using namespace RokTest;
using Rok::HashMap2018;

// ===== Values that throw, and values that use the map

struct Fragile {
  explicit Fragile(int v) : number(v) {
    if (v < 0) throw std::runtime_error("broken value");
  }
  int number;
};

TEST(HashMapValues, AConstructorThatThrowsLeavesTheMapAsItWas) {
  HashMap2018<Rok::Hm2018NEI<0x61, std::uint32_t, Fragile>> map;
  for (std::uint32_t n = 0; n < 40; ++n) {
    const std::uint64_t version = map.version();
    EXPECT_THROW(map.newMember(n, -1), std::runtime_error);
    EXPECT_EQ(map.members(), n);
    EXPECT_EQ(map.version(), version);
    EXPECT_EQ(map.find(n), nullptr);
    std::set<std::uint32_t> keys;
    for (auto i = map.iterator(); i; ++i) keys.insert(i.key());
    EXPECT_EQ(keys.size(), n);
    EXPECT_TRUE(map.newMember(n, static_cast<int>(n)).second);
    for (std::uint32_t i = 0; i <= n; ++i) {
      ASSERT_NE(map.find(i), nullptr);
      EXPECT_EQ(map.find(i)->number, static_cast<int>(i));
    }
  }
}

// Its copies run out.
struct Scarce {
  Scarce() = default;
  Scarce(const Scarce& /*other*/) {
    if (copiesLeft-- == 0) throw std::runtime_error("no more copies");
  }
  Scarce& operator=(const Scarce&) = default;
  ~Scarce() = default;
  static int copiesLeft;
  char room[40] = {};
};
int Scarce::copiesLeft = 0;

TEST(HashMapValues, ACopyThatThrowsHalfwayLeaksNothing) {
  using Map = HashMap2018<Rok::Hm2018NEI<0x62, Rok::String, Scarce>>;
  Map map;
  Scarce::copiesLeft = 20;
  for (int i = 0; i < 20; ++i) map.newMember(Rok::_fmt("%d", i), Scarce());
  const Dorpel::SlabUse before = Dorpel::slabUse();
  for (const int copies : {0, 1, 7, 8, 19}) {
    Scarce::copiesLeft = copies;
    EXPECT_THROW(Map copy(map), std::runtime_error);
    EXPECT_EQ(Dorpel::slabUse().bytes, before.bytes) << copies << " copies";
  }
}

TEST(HashMapValues, SmallNodesHaveRoomToBeFreed) {
  HashMap2018<Rok::Hm2018NEI<0x63, Color, unsigned char>> map;
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 256; ++i) map.newMember(Color(i), static_cast<unsigned char>(255 - i));
    EXPECT_EQ(map.members(), 256u);
    for (int i = 0; i < 256; i += 2) EXPECT_TRUE(map.deleteMember(Color(i)));
    for (int i = 1; i < 256; i += 2) EXPECT_EQ(*map.find(Color(i)), 255 - i);
    for (int i = 0; i < 256; i += 2) map.newMember(Color(i), static_cast<unsigned char>(255 - i));
    for (int i = 0; i < 256; ++i) EXPECT_EQ(*map.find(Color(i)), 255 - i);
    map._memberDelAll();
  }
}

TEST(HashMapValues, AValueThatCannotBeCopiedIsMovedInAndOut) {
  HashMap2018<Rok::Hm2018NEI<0x64, std::uint32_t, std::unique_ptr<int>>> map;
  for (std::uint32_t i = 0; i < 50; ++i) map.newMember(i, std::make_unique<int>(i));
  std::unique_ptr<int> removed;
  EXPECT_TRUE(map.deleteMember(7, &removed));
  ASSERT_NE(removed, nullptr);
  EXPECT_EQ(*removed, 7);
  // Under an iterator the value stays with the node, and nothing can be given back.
  auto i = map.iterator();
  const std::uint32_t key = i.key();
  EXPECT_TRUE(map.deleteMember(key, &removed));
  EXPECT_EQ(*removed, 7);
  EXPECT_EQ(**const_cast<std::unique_ptr<int>*>(&i.currNodeMaybeStale()->value()),
            static_cast<int>(key));
}

TEST(HashMapValues, ADyingValueFindsTheMapInOrderAndMayChangeIt) {
  for (const std::uint32_t size : {3u, 8u, 9u, 40u}) {
    HookMap map;
    bool ran = false;
    map.newMember(0, Rok::make<Hook>([&] {
                    ran = true;
                    EXPECT_EQ(map.find(0), nullptr);
                    EXPECT_EQ(map.members(), size - 1);
                    EXPECT_TRUE(map.deleteMember(1));
                    EXPECT_TRUE(map.newMember(100, Rok::make<Hook>([] {})).second);
                    for (std::uint32_t i = 2; i < size; ++i) EXPECT_NE(map.find(i), nullptr);
                  }));
    for (std::uint32_t i = 1; i < size; ++i) map.newMember(i, Rok::make<Hook>([] {}));
    EXPECT_TRUE(map.deleteMember(0));
    EXPECT_TRUE(ran);
    EXPECT_EQ(map.members(), size - 1);
    EXPECT_NE(map.find(100), nullptr);
    EXPECT_EQ(map.find(1), nullptr);
  }
}

TEST(HashMapValues, WhileAllAreRemovedEachDyingValueFindsTheMapInOrder) {
  for (const std::uint32_t size : {1u, 8u, 9u, 100u}) {
    HookMap map;
    std::uint32_t gone = 0;
    for (std::uint32_t i = 0; i < size; ++i) {
      map.newMember(i, Rok::make<Hook>([&, i] {
                      ++gone;
                      EXPECT_EQ(map.members(), size - gone);
                      EXPECT_EQ(map.find(i), nullptr);
                      std::uint32_t left = 0;
                      for (auto walk = map.iterator(); walk; ++walk) ++left;
                      EXPECT_EQ(left, size - gone);
                    }));
    }
    map._memberDelAll();
    EXPECT_EQ(gone, size);
  }
}

TEST(HashMapValues, DyingValuesMayRemoveEachOther) {
  for (const std::uint32_t size : {2u, 9u, 100u}) {
    HookMap map;
    std::vector<int> ends(size);
    for (std::uint32_t i = 0; i < size; ++i) {
      map.newMember(i, Rok::make<Hook>([&, i] {
                      ++ends[i];
                      map.deleteMember((i + size / 2) % size);
                      if (i % 3 == 0) map._memberDelAll();
                    }));
    }
    map._memberDelAll();
    EXPECT_EQ(map.members(), 0u);
    EXPECT_EQ(ends, std::vector<int>(size, 1)) << "each value ends once";
  }
}

TEST(HashMapValues, AChainOfThreeHundredClearsInsideEachOtherEnds) {
  auto map = std::make_unique<HookMap>();
  int ends = 0;
  for (std::uint32_t i = 0; i < 300; ++i) {
    map->newMember(i, Rok::make<Hook>([&] {
                     ++ends;
                     if (map) map->_memberDelAll();
                   }));
  }
  map->_memberDelAll();
  EXPECT_EQ(ends, 300);
}

TEST(HashMapValues, ADyingValueMayTakeTheMapWithIt) {
  for (const std::uint32_t size : {1u, 9u, 100u}) {
    auto map = std::make_unique<HookMap>();
    std::uint32_t ends = 0;
    for (std::uint32_t i = 0; i < size; ++i) {
      map->newMember(i, Rok::make<Hook>([&] {
                       ++ends;
                       map.reset();
                     }));
    }
    map->deleteMember(size / 2);
    EXPECT_EQ(map, nullptr);
    EXPECT_EQ(ends, size);
  }
}

TEST(HashMapValues, ADyingValueMayTakeTheMapWithItWhileAllAreRemoved) {
  auto map = std::make_unique<HookMap>();
  int ends = 0;
  for (std::uint32_t i = 0; i < 50; ++i) {
    map->newMember(i, Rok::make<Hook>([&] {
                     ++ends;
                     map.reset();
                   }));
  }
  map->_memberDelAll();
  EXPECT_EQ(map, nullptr);
  EXPECT_EQ(ends, 50);
}

}  // namespace
}  // namespace hashMapValuesTest
