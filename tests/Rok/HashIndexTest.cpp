#include "Rok/HashIndex.h"

#include <iterator>
#include <map>
#include <random>

namespace hashIndexTest {
namespace {

using namespace Rok::Impl;

TEST(HashSlots, ShiftingMovesASlotToItsRightNeighbourRoundTheEnd) {
  HashSlot slots[4] = {{10, 1}, {11, 2}, {12, 3}, {13, 4}};
  shiftSlot(slots, 3, 1, 1);
  EXPECT_EQ(slots[2].hash, 11u);
  EXPECT_EQ(slots[2].place, 2u);
  EXPECT_EQ(slots[3].hash, 13u);
  shiftSlot(slots, 3, 3, 1);
  EXPECT_EQ(slots[0].hash, 13u);
  EXPECT_EQ(slots[0].place, 4u);
}

TEST(HashSlotsDeathTest, ShiftingMovesOneSlotAtATime) {
  HashSlot slots[4] = {};
  EXPECT_DEATH(shiftSlot(slots, 3, 0, 2),
               "^assertion failed: slotsToShift == 1: slotsToShift is 2\n");
  EXPECT_DEATH(shiftSlot(slots, 3, 0, 0),
               "^assertion failed: slotsToShift == 1: slotsToShift is 0\n");
}

// With hashes of the test's choice: homes at the end wrap round.
TEST(HashIndex, FindsEveryNodeWhateverTheHomes) {
  std::mt19937 random(7);
  for (const std::uint32_t homes : {1u, 2u, 5u, 64u, 100'000u}) {
    HashIndex index;
    std::map<std::uint32_t, std::uint32_t> hashes;  // by node
    std::uint32_t next = 0;
    for (int step = 0; step < 4000; ++step) {
      if (hashes.empty() || random() % 5 < 3) {
        const std::uint32_t hash = 0xfffffff0u + random() % homes;
        index.reserve(static_cast<std::uint32_t>(hashes.size() + 1));
        index.insert(hash, next);
        hashes[next++] = hash;
      } else {
        const auto victim = std::next(hashes.begin(), static_cast<int>(random() % hashes.size()));
        index.erase(victim->second, victim->first);
        const std::uint32_t node = victim->first;
        const std::uint32_t hash = victim->second;
        hashes.erase(victim);
        EXPECT_EQ(index.find(hash, [&](std::uint32_t n) { return n == node; }), noNode);
      }
      if (step % 97 != 0) continue;
      for (const auto& [node, hash] : hashes) {
        ASSERT_EQ(index.find(hash, [&](std::uint32_t n) { return n == node; }), node);
      }
    }
    EXPECT_GE(index.bytes(), hashes.size() * sizeof(HashSlot));
    index.clear();
    EXPECT_TRUE(index.empty());
  }
}

}  // namespace
}  // namespace hashIndexTest
