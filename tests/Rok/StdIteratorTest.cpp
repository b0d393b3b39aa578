#include "Rok/StdIterator.h"

#include <memory>

#include "tests/support/RokMaps.h"

namespace stdIteratorTest {
namespace {

using namespace RokTest;

template <class Keys>
class SafeIterator : public testing::Test {};
TYPED_TEST_SUITE(SafeIterator, AllKeys);
template <class Keys>
class RangeFor : public testing::Test {};
TYPED_TEST_SUITE(RangeFor, AllKeys);
template <class Keys>
class UnsafeIterator : public testing::Test {};
TYPED_TEST_SUITE(UnsafeIterator, AllKeys);
template <class Keys>
class SafeIteratorDeathTest : public testing::Test {};
TYPED_TEST_SUITE(SafeIteratorDeathTest, testing::Types<TextKeys>);
template <class Keys>
class UnsafeIteratorDeathTest : public testing::Test {};
TYPED_TEST_SUITE(UnsafeIteratorDeathTest, testing::Types<TextKeys>);

// The number of the entry at which an iterator stands, stale or not.
template <class Keys, class Iterator>
int at(const Iterator& i) {
  return Keys::number(i.currNodeMaybeStale()->value());
}

TYPED_TEST(SafeIterator, VisitsEveryEntryOnce) {
  forEachMap<TypeParam>([](auto& map, int size) {
    std::multiset<int> visited;
    for (auto i = map.iterator(); i; i.advance()) {
      visited.insert(at<TypeParam>(i));
      EXPECT_EQ(i.key(), i.currNodeMaybeStale()->key());
      EXPECT_EQ(i.currNodeNonStale(), i.currNodeMaybeStale());
    }
    EXPECT_EQ(visited.size(), static_cast<std::size_t>(size));
    EXPECT_EQ(std::set<int>(visited.begin(), visited.end()), numbersTo(size));
  });
}

TYPED_TEST(SafeIterator, SkipsTheHolesOfEarlierDeletions) {
  forEachMap<TypeParam>([](auto& map, int size) {
    for (int n = 0; n < size; n += 2) map.deleteMember(TypeParam::key(n));
    std::set<int> odd;
    for (int n = 1; n < size; n += 2) odd.insert(n);
    EXPECT_EQ(entries<TypeParam>(map), odd);
  });
}

TYPED_TEST(SafeIterator, DeletingTheCurrentEntryNeitherEndsNorDisturbsTheWalk) {
  forEachMap<TypeParam>([](auto& map, int size) {
    std::set<int> visited;
    for (auto i = map.iterator(); i; ++i) {
      EXPECT_TRUE(visited.insert(at<TypeParam>(i)).second);
      EXPECT_TRUE(map.deleteMember(i.currNodeMaybeStale()->key()));
    }
    EXPECT_EQ(visited, numbersTo(size));
    EXPECT_EQ(map.members(), 0u);
  });
}

TYPED_TEST(SafeIterator, AStaleNodeIsReadableUntilTheIteratorMovesOn) {
  forEachMap<TypeParam>([](auto& map, int size) {
    auto i = map.iterator();
    const int number = at<TypeParam>(i);
    const auto key = i.key();
    EXPECT_NE(i.currNodeNonStale(), nullptr);
    map.deleteMember(key);
    // Others come and go meanwhile: the node is not used again.
    for (int n = 0; n < 30; ++n)
      map.newMember(TypeParam::key(1000 + n), TypeParam::value(1000 + n, -1));
    EXPECT_EQ(i.currNodeNonStale(), nullptr);
    EXPECT_EQ(at<TypeParam>(i), number);
    EXPECT_EQ(i.key(), key);
    EXPECT_EQ(i.currNodeMaybeStale()->key(), key);
    ++i;
    EXPECT_EQ(map.members(), static_cast<std::uint32_t>(size - 1 + 30));
  });
}

TYPED_TEST(SafeIterator, DeletingEveryOtherEntryFromTheFirstLeavesOnlyTheFirstToVisit) {
  forEachMap<TypeParam>([](auto& map, int size) {
    int visits = 0;
    for (auto i = map.iterator(); i; ++i) {
      ++visits;
      const int here = at<TypeParam>(i);
      for (int n = 0; n < size; ++n) {
        if (n != here) map.deleteMember(TypeParam::key(n));
      }
    }
    EXPECT_EQ(visits, 1);
    EXPECT_EQ(map.members(), 1u);
  });
}

// The entry next to, or before, the one at which the walk stands.
TYPED_TEST(SafeIterator, DeletingTheNextEntrySkipsIt) {
  forEachMap<TypeParam>([](auto& map, int size) {
    const std::vector<int> order = walked<TypeParam>(map);
    std::vector<int> visited;
    for (auto i = map.iterator(); i; ++i) {
      visited.push_back(at<TypeParam>(i));
      const std::size_t next = 2 * visited.size() - 1;
      if (next < order.size()) map.deleteMember(TypeParam::key(order[next]));
    }
    std::vector<int> expected;
    for (std::size_t n = 0; n < order.size(); n += 2) expected.push_back(order[n]);
    EXPECT_EQ(visited, expected);
    EXPECT_EQ(map.members(), static_cast<std::uint32_t>(size + 1) / 2);
  });
}

TYPED_TEST(SafeIterator, DeletingAnEntryBehindTheWalkChangesNothingForIt) {
  forEachMap<TypeParam>([](auto& map, int size) {
    std::vector<int> visited;
    for (auto i = map.iterator(); i; ++i) {
      if (!visited.empty()) {
        EXPECT_TRUE(map.deleteMember(TypeParam::key(visited.back())));
      }
      visited.push_back(at<TypeParam>(i));
    }
    EXPECT_EQ(std::set<int>(visited.begin(), visited.end()), numbersTo(size));
    EXPECT_EQ(visited.size(), static_cast<std::size_t>(size));
    EXPECT_EQ(map.members(), 1u);
  });
}

TYPED_TEST(SafeIterator, DeletingAllEndsTheWalkAtItsNextStep) {
  forEachMap<TypeParam>([](auto& map, int /*size*/) {
    auto i = map.iterator();
    const int number = at<TypeParam>(i);
    map._memberDelAll();
    EXPECT_TRUE(i);
    EXPECT_EQ(i.currNodeNonStale(), nullptr);
    EXPECT_EQ(at<TypeParam>(i), number);
    ++i;
    EXPECT_FALSE(i);
  });
}

TYPED_TEST(SafeIterator, AnEntryAddedDuringTheWalkIsVisitedAtMostOnceAndTheOthersExactlyOnce) {
  forEachMap<TypeParam>([](auto& map, int size) {
    std::multiset<int> visited;
    int added = 0;
    for (auto i = map.iterator(); i; ++i) {
      visited.insert(at<TypeParam>(i));
      // A thousand in all: the index is rebuilt several times under the walk.
      for (int n = 0; n < 40 && added < 1000; ++n, ++added) {
        map.newMember(TypeParam::key(size + added), TypeParam::value(size + added, size + added));
      }
    }
    for (int n = 0; n < size; ++n) EXPECT_EQ(visited.count(n), 1u) << n;
    for (const int n : visited) EXPECT_EQ(visited.count(n), 1u) << n;
    EXPECT_EQ(map.members(), static_cast<std::uint32_t>(size + added));
  });
}

TYPED_TEST(SafeIterator, AWalkBegunOnAnEmptyMapIsOver) {
  typename TypeParam::Map map;
  fill<TypeParam>(map, 1);
  map._memberDelAll();
  auto i = map.iterator();
  EXPECT_FALSE(i);
  fill<TypeParam>(map, 3);
  EXPECT_FALSE(i);
}

TYPED_TEST(SafeIterator, TheMapMayBeDestroyedDuringTheWalk) {
  forEachMap<TypeParam>([](auto& map, int /*size*/) {
    const Dorpel::SlabUse before = Dorpel::slabUse();
    {
      auto doomed = std::make_unique<typename TypeParam::Map>(map);
      auto i = doomed->iterator();
      auto other = doomed->iterator();
      const int number = at<TypeParam>(i);
      doomed.reset();
      EXPECT_EQ(at<TypeParam>(i), number);
      EXPECT_EQ(i.currNodeNonStale(), nullptr);
      ++i;
      EXPECT_FALSE(i);
      EXPECT_EQ(at<TypeParam>(other), number);
    }
    EXPECT_EQ(Dorpel::slabUse().bytes, before.bytes) << "the last iterator frees what is left";
  });
}

TYPED_TEST(SafeIterator, TheMapMayGiveItsMemoryBackDuringTheWalk) {
  forEachMap<TypeParam>([](auto& map, int size) {
    auto i = map.iterator();
    const int number = at<TypeParam>(i);
    map.emptyAllBuckets(true);
    fill<TypeParam>(map, size);
    EXPECT_EQ(at<TypeParam>(i), number);
    EXPECT_EQ(i.currNodeNonStale(), nullptr);
    ++i;
    EXPECT_FALSE(i) << "what was added after the end of the old entries is not of this walk";
    EXPECT_EQ(entries<TypeParam>(map), numbersTo(size));
  });
}

TYPED_TEST(SafeIterator, AWalkGoesOnOverTheEntriesThatMovedToAnotherMap) {
  forEachMap<TypeParam>([](auto& map, int size) {
    std::set<int> visited;
    typename TypeParam::Map other;
    for (auto i = map.iterator(); i; ++i) {
      EXPECT_TRUE(visited.insert(at<TypeParam>(i)).second);
      if (visited.size() == 1) other = std::move(map);
      other.deleteMember(i.key());
    }
    EXPECT_EQ(visited, numbersTo(size));
    EXPECT_EQ(map.members(), 0u);
    EXPECT_EQ(other.members(), 0u);
  });
}

TYPED_TEST(SafeIterator, AnAssignmentDuringTheWalkMakesTheOldEntriesStale) {
  forEachMap<TypeParam>([](auto& map, int size) {
    typename TypeParam::Map other;
    for (int n = 0; n < 20; ++n) other.newMember(TypeParam::key(n), TypeParam::value(n, 100 + n));
    std::multiset<int> visited;
    for (auto i = map.iterator(); i; ++i) {
      visited.insert(at<TypeParam>(i));
      if (visited.size() > 1) continue;
      map = other;
      EXPECT_EQ(i.currNodeNonStale(), nullptr);
      EXPECT_LT(at<TypeParam>(i), size);
    }
    EXPECT_EQ(std::ranges::count_if(visited, [](int n) { return n < 100; }), 1);
    for (const int n : visited) EXPECT_EQ(visited.count(n), 1u) << n;
    EXPECT_TRUE(map == other);
  });
}

TYPED_TEST(SafeIterator, AMapMovedInEndsTheWalkOverTheOldEntries) {
  forEachMap<TypeParam>([](auto& map, int /*size*/) {
    typename TypeParam::Map other;
    fill<TypeParam>(other, 5);
    auto i = map.iterator();
    map = std::move(other);
    EXPECT_EQ(i.currNodeNonStale(), nullptr);
    ++i;
    EXPECT_FALSE(i);
    EXPECT_EQ(entries<TypeParam>(map), numbersTo(5));
  });
}

TYPED_TEST(SafeIterator, TwoIteratorsOnAnEntryThatIsDeletedBothReadItAndBothGoOn) {
  forEachMap<TypeParam>([](auto& map, int size) {
    auto first = map.iterator();
    auto second = map.iterator();
    const int number = at<TypeParam>(first);
    map.deleteMember(TypeParam::key(number));
    EXPECT_EQ(first.currNodeNonStale(), nullptr);
    EXPECT_EQ(second.currNodeNonStale(), nullptr);
    int visits = 0;
    for (++first; first; ++first) ++visits;
    EXPECT_EQ(visits, size - 1);
    fill<TypeParam>(map, size);  // the node is still not free
    EXPECT_EQ(at<TypeParam>(second), number);
    EXPECT_EQ(second.currNodeNonStale(), nullptr);
    std::set<int> rest;
    for (++second; second; ++second) EXPECT_TRUE(rest.insert(at<TypeParam>(second)).second);
    rest.insert(number);
    EXPECT_EQ(rest, numbersTo(size));
  });
}

TYPED_TEST(SafeIterator, NestedWalksMayDeleteUnderEachOther) {
  forEachMap<TypeParam>([](auto& map, int size) {
    std::set<int> outerVisited;
    for (auto outer = map.iterator(); outer; ++outer) {
      EXPECT_TRUE(outerVisited.insert(at<TypeParam>(outer)).second);
      std::set<int> innerVisited;
      for (auto inner = map.iterator(); inner; ++inner) {
        const int number = at<TypeParam>(inner);
        EXPECT_TRUE(innerVisited.insert(number).second);
        if (number % 3 != 0 || number == at<TypeParam>(outer)) map.deleteMember(inner.key());
      }
      EXPECT_EQ(outer.currNodeNonStale(), nullptr);
    }
    EXPECT_EQ(map.members(), 0u);
    for (int n = 0; n < size; n += 3) EXPECT_TRUE(outerVisited.contains(n)) << n;
  });
}

TYPED_TEST(SafeIterator, AnEntryDeletedAndAddedAgainUnderTheIteratorIsAnotherEntry) {
  forEachMap<TypeParam>([](auto& map, int size) {
    std::multiset<int> visited;
    for (auto i = map.iterator(); i; ++i) {
      const int number = at<TypeParam>(i);
      visited.insert(number);
      if (number >= size) continue;
      map.deleteMember(i.key());
      const auto [node, isNew] =
          map.newMember(TypeParam::key(number), TypeParam::value(number, size + number));
      EXPECT_TRUE(isNew);
      EXPECT_NE(node, i.currNodeMaybeStale());
      EXPECT_EQ(i.currNodeNonStale(), nullptr);
      EXPECT_EQ(at<TypeParam>(i), number) << "the stale node keeps the old value";
    }
    for (int n = 0; n < size; ++n) EXPECT_EQ(visited.count(n), 1u) << n;
    for (int n = size; n < 2 * size; ++n) EXPECT_LE(visited.count(n), 1u) << n;
    EXPECT_EQ(map.members(), static_cast<std::uint32_t>(size));
  });
}

TYPED_TEST(SafeIterator, AWalkThatIsLeftEarlyFreesItsStaleNode) {
  forEachMap<TypeParam>([](auto& map, int size) {
    const std::size_t bytes = map.bytes();
    for (int round = 0; round < 200; ++round) {
      int number = 0;
      {
        auto i = map.iterator();
        number = at<TypeParam>(i);
        map.deleteMember(i.key());
      }
      map.newMember(TypeParam::key(number), TypeParam::value(number, number));
    }
    EXPECT_EQ(map.bytes(), bytes);
    EXPECT_EQ(entries<TypeParam>(map), numbersTo(size));
  });
}

// ===== The same rules, row by row, for a range-based for

TYPED_TEST(RangeFor, VisitsEveryEntryOnceWithItsKeyAndItsValue) {
  forEachMap<TypeParam>([](auto& map, int size) {
    std::multiset<int> visited;
    for (const auto& [key, value] : map) {
      const int number = TypeParam::number(value);
      EXPECT_EQ(key, TypeParam::key(number));
      EXPECT_EQ(&value, map.find(key)) << "no copy";
      visited.insert(number);
    }
    EXPECT_EQ(visited.size(), static_cast<std::size_t>(size));
    EXPECT_EQ(std::set<int>(visited.begin(), visited.end()), numbersTo(size));
  });
}

TYPED_TEST(RangeFor, OverAnEmptyMapDoesNothing) {
  typename TypeParam::Map map;
  for (const auto& [key, value] : map) ADD_FAILURE() << TypeParam::number(value);
  fill<TypeParam>(map, 3);
  map._memberDelAll();
  for (const auto& [key, value] : map) ADD_FAILURE() << TypeParam::number(value);
}

TYPED_TEST(RangeFor, DeletingTheCurrentEntryLeavesItReadableToTheEndOfTheBody) {
  forEachMap<TypeParam>([](auto& map, int size) {
    std::set<int> visited;
    for (const auto& [key, value] : map) {
      const int number = TypeParam::number(value);
      EXPECT_TRUE(map.deleteMember(key));
      // Others come and go meanwhile: the node is not used again.
      for (int n = 0; n < 30; ++n) {
        map.newMember(TypeParam::key(1000 + n), TypeParam::value(1000 + n, -1));
      }
      for (int n = 0; n < 30; ++n) map.deleteMember(TypeParam::key(1000 + n));
      EXPECT_EQ(key, TypeParam::key(number));
      EXPECT_EQ(TypeParam::number(value), number);
      EXPECT_TRUE(visited.insert(number).second);
    }
    EXPECT_EQ(visited, numbersTo(size));
    EXPECT_EQ(map.members(), 0u);
  });
}

TYPED_TEST(RangeFor, AnotherEntryThatIsDeletedIsNotVisited) {
  forEachMap<TypeParam>([](auto& map, int size) {
    const std::vector<int> order = walked<TypeParam>(map);
    std::vector<int> visited;
    for (const auto& [key, value] : map) {
      visited.push_back(TypeParam::number(value));
      const std::size_t next = 2 * visited.size() - 1;
      if (next < order.size()) map.deleteMember(TypeParam::key(order[next]));
    }
    std::vector<int> expected;
    for (std::size_t n = 0; n < order.size(); n += 2) expected.push_back(order[n]);
    EXPECT_EQ(visited, expected);
    EXPECT_EQ(map.members(), static_cast<std::uint32_t>(size + 1) / 2);
  });
}

TYPED_TEST(RangeFor, AnEntryBehindTheWalkMayBeDeleted) {
  forEachMap<TypeParam>([](auto& map, int size) {
    std::vector<int> visited;
    for (const auto& [key, value] : map) {
      if (!visited.empty()) {
        EXPECT_TRUE(map.deleteMember(TypeParam::key(visited.back())));
      }
      visited.push_back(TypeParam::number(value));
    }
    EXPECT_EQ(visited.size(), static_cast<std::size_t>(size));
    EXPECT_EQ(map.members(), 1u);
  });
}

TYPED_TEST(RangeFor, WhatIsAddedWhileTheMapGrowsIsVisitedAtMostOnceAndTheRestExactlyOnce) {
  forEachMap<TypeParam>([](auto& map, int size) {
    std::multiset<int> visited;
    int added = 0;
    for (const auto& [key, value] : map) {
      const int number = TypeParam::number(value);
      visited.insert(number);
      for (int n = 0; n < 40 && added < 1000; ++n, ++added) {
        map.newMember(TypeParam::key(size + added), TypeParam::value(size + added, size + added));
      }
      EXPECT_EQ(key, TypeParam::key(number)) << "nodes stay where they are";
      EXPECT_EQ(TypeParam::number(value), number);
    }
    for (int n = 0; n < size; ++n) EXPECT_EQ(visited.count(n), 1u) << n;
    for (int n = size; n < size + added; ++n) EXPECT_LE(visited.count(n), 1u) << n;
  });
}

TYPED_TEST(RangeFor, AnEntryDeletedAndAddedAgainIsAnotherEntryAndTheBodyReadsTheOldOne) {
  forEachMap<TypeParam>([](auto& map, int size) {
    std::multiset<int> visited;
    for (const auto& [key, value] : map) {
      const int number = TypeParam::number(value);
      visited.insert(number);
      if (number >= size) continue;
      map.deleteMember(key);
      map.newMember(TypeParam::key(number), TypeParam::value(number, size + number));
      EXPECT_EQ(TypeParam::number(value), number);
    }
    for (int n = 0; n < size; ++n) EXPECT_EQ(visited.count(n), 1u) << n;
    for (int n = size; n < 2 * size; ++n) EXPECT_LE(visited.count(n), 1u) << n;
  });
}

TYPED_TEST(RangeFor, DeletingAllEndsTheWalkAtItsNextStep) {
  forEachMap<TypeParam>([](auto& map, int /*size*/) {
    int visits = 0;
    for (const auto& [key, value] : map) {
      const int number = TypeParam::number(value);
      map._memberDelAll();
      EXPECT_EQ(key, TypeParam::key(number));
      EXPECT_EQ(TypeParam::number(value), number);
      ++visits;
    }
    EXPECT_EQ(visits, 1);
    EXPECT_EQ(map.members(), 0u);
  });
}

TYPED_TEST(RangeFor, TheEndOfTheMapEndsTheWalkAtItsNextStep) {
  forEachMap<TypeParam>([](auto& /*map*/, int size) {
    auto map = std::make_unique<typename TypeParam::Map>();
    fill<TypeParam>(*map, size);
    int visits = 0;
    for (const auto& [key, value] : *map) {
      const int number = TypeParam::number(value);
      map = nullptr;
      EXPECT_EQ(key, TypeParam::key(number));
      EXPECT_EQ(TypeParam::number(value), number);
      ++visits;
    }
    EXPECT_EQ(visits, 1);
  });
}

TYPED_TEST(RangeFor, AValueThatIsReplacedReadsAsTheNewOne) {
  forEachMap<TypeParam>([](auto& map, int size) {
    for (const auto& [key, value] : map) {
      const int number = TypeParam::number(value);
      *map.find(key) = TypeParam::value(number, size + number);
      EXPECT_EQ(key, TypeParam::key(number));
      EXPECT_EQ(TypeParam::number(value), size + number);
    }
  });
}

TYPED_TEST(RangeFor, NestedWalksMayDeleteUnderEachOther) {
  forEachMap<TypeParam>([](auto& map, int size) {
    std::set<int> outerVisited;
    for (const auto& [outerKey, outer] : map) {
      const int here = TypeParam::number(outer);
      EXPECT_TRUE(outerVisited.insert(here).second);
      for (const auto& [innerKey, inner] : map) {
        const int number = TypeParam::number(inner);
        if (number % 3 != 0 || number == here) map.deleteMember(innerKey);
        EXPECT_EQ(TypeParam::number(inner), number);
      }
      EXPECT_EQ(TypeParam::number(outer), here) << "deleted by the inner walk, and still readable";
      EXPECT_EQ(outerKey, TypeParam::key(here));
    }
    EXPECT_EQ(map.members(), 0u);
    for (int n = 0; n < size; n += 3) EXPECT_TRUE(outerVisited.contains(n)) << n;
  });
}

TYPED_TEST(RangeFor, ThatIsLeftEarlyFreesItsStaleNode) {
  forEachMap<TypeParam>([](auto& map, int size) {
    const std::size_t bytes = map.bytes();
    for (int round = 0; round < 200; ++round) {
      int number = 0;
      for (const auto& [key, value] : map) {
        number = TypeParam::number(value);
        map.deleteMember(key);
        break;
      }
      map.newMember(TypeParam::key(number), TypeParam::value(number, number));
    }
    EXPECT_EQ(map.bytes(), bytes);
    EXPECT_EQ(entries<TypeParam>(map), numbersTo(size));
  });
}

TEST(RangeForKeys, ThatAFunctorGivesByValueAreBoundAsSuch) {
  struct NumberFunktor {
    std::uint32_t operator()(const Record& record) const {
      return static_cast<std::uint32_t>(record.number);
    }
  };
  Rok::HashMap2018<Rok::Hm2018NII<0x57, std::uint32_t, Record, NumberFunktor>> map;
  map.newMember(7u, Record{"Ethernet7", 7});
  for (const auto& [key, value] : map) {
    map.deleteMember(key);
    EXPECT_EQ(key, 7u);
    EXPECT_EQ(value.name, "Ethernet7");
  }
  EXPECT_EQ(map.members(), 0u);
}

TEST(RangeForValues, OfADeletedEntryEndAfterTheBody) {
  HookMap map;
  bool ended = false;
  map.newMember(1u, Rok::make<Hook>([&] { ended = true; }));
  for (const auto& [key, hook] : map) {
    map.deleteMember(key);
    EXPECT_FALSE(ended);
    EXPECT_TRUE(hook);
  }
  EXPECT_TRUE(ended);
}

// ===== Values whose end does something

TEST(SafeIteratorValues, TheValueOfAStaleNodeEndsWhenTheLastIteratorLeavesIt) {
  HookMap map;
  bool ended = false;
  map.newMember(1, Rok::make<Hook>([&] { ended = true; }));
  auto first = map.iterator();
  {
    auto second = map.iterator();
    map.deleteMember(1);
    EXPECT_FALSE(ended);
    ++first;
    EXPECT_FALSE(ended);
  }
  EXPECT_TRUE(ended);
}

TEST(SafeIteratorValues, AValueThatEndsWhenTheIteratorMovesOnMayDeleteTheNextEntry) {
  HookMap map;
  std::vector<std::uint32_t> visited;
  for (std::uint32_t i = 0; i < 20; ++i) {
    map.newMember(i, Rok::make<Hook>([&map, i] { map.deleteMember(i + 1); }));
  }
  for (auto i = map.iterator(); i; ++i) {
    visited.push_back(i.key());
    if (visited.size() == 1) map.deleteMember(i.key());
  }
  // Each end deletes the next entry, whose end deletes the one behind it: nothing is left.
  EXPECT_EQ(visited, std::vector<std::uint32_t>{0});
  EXPECT_EQ(map.members(), 0u);
}

TEST(SafeIteratorValues, AValueThatEndsWhenTheIteratorMovesOnMayTakeTheMapWithIt) {
  for (const std::uint32_t size : {1u, 5u, 20u}) {
    auto map = std::make_unique<HookMap>();
    for (std::uint32_t i = 0; i < size; ++i) {
      map->newMember(i, Rok::make<Hook>([&] { map.reset(); }));
    }
    int visits = 0;
    for (auto i = map->iterator(); i; ++i) {
      ++visits;
      map->deleteMember(i.key());
    }
    EXPECT_EQ(visits, 1);
    EXPECT_EQ(map, nullptr);
  }
}

TEST(SafeIteratorValues, AValueThatEndsWithTheIteratorMayTakeTheMapWithIt) {
  for (const std::uint32_t size : {1u, 5u, 20u}) {
    const Dorpel::SlabUse before = Dorpel::slabUse();
    {
      auto map = std::make_unique<HookMap>();
      for (std::uint32_t i = 0; i < size; ++i) {
        map->newMember(i, Rok::make<Hook>([&] { map.reset(); }));
      }
      {
        auto i = map->iterator();
        map->deleteMember(i.key());
      }
      EXPECT_EQ(map, nullptr);
    }
    EXPECT_EQ(Dorpel::slabUse().bytes, before.bytes);
  }
}

// ===== Misuse

TYPED_TEST(SafeIteratorDeathTest, AnExhaustedIteratorAssertsIterOnEveryUse) {
  constexpr const char* text = "^assertion failed: iter_: use of an exhausted iterator\n";
  typename TypeParam::Map map;
  auto never = map.iterator();
  EXPECT_DEATH(never.advance(), text);
  fill<TypeParam>(map, 2);
  auto i = map.iterator();
  ++i;
  ++i;
  ASSERT_FALSE(i);
  EXPECT_DEATH(++i, text);
  EXPECT_DEATH(i.advance(), text);
  EXPECT_DEATH((void)i.currNodeMaybeStale(), text);
  EXPECT_DEATH((void)i.currNodeNonStale(), text);
  EXPECT_DEATH((void)i.key(), text);
  EXPECT_DEATH((void)*i, text);
}

TYPED_TEST(UnsafeIteratorDeathTest, EveryStepAssertsThatTheMapIsAsItWas) {
  constexpr const char* text =
      "^assertion failed: version_ == hashMap_->version\\(\\): the map changed during the walk\n";
  for (const int change : {0, 1, 2, 3, 4, 5}) {
    typename TypeParam::Map map;
    typename TypeParam::Map twin;
    fill<TypeParam>(map, 3);
    fill<TypeParam>(twin, 3);
    auto i = map.unsafeIterator();
    switch (change) {
      case 0:
        map.newMember(TypeParam::key(3), TypeParam::value(3, 3));
        break;
      case 1:
        map.deleteMember(TypeParam::key(2));
        break;
      case 2:
        map._memberDelAll();
        break;
      case 3:
        map.emptyAllBuckets(true);
        break;
      case 4:
        map = twin;
        break;
      default:
        map = std::move(twin);
        break;
    }
    EXPECT_DEATH((void)*i, text) << "change " << change;
    EXPECT_DEATH((void)i->key(), text) << "change " << change;
    EXPECT_DEATH(++i, text) << "change " << change;
  }
}

TYPED_TEST(UnsafeIteratorDeathTest, AnExhaustedIteratorAssertsIter) {
  constexpr const char* text = "^assertion failed: iter_: use of an exhausted iterator\n";
  typename TypeParam::Map map;
  fill<TypeParam>(map, 1);
  auto i = map.unsafeIterator();
  ++i;
  EXPECT_FALSE(i);
  EXPECT_DEATH(++i, text);
  EXPECT_DEATH((void)*i, text);
}

TYPED_TEST(UnsafeIterator, VisitsEveryEntryOnceInTheOrderOfTheSafeOne) {
  forEachMap<TypeParam>([](auto& map, int /*size*/) {
    std::vector<int> numbers;
    for (auto i = map.unsafeIterator(); i; ++i) {
      numbers.push_back(TypeParam::number(i->value()));
      EXPECT_EQ((*i).key(), i->key());
    }
    EXPECT_EQ(numbers, walked<TypeParam>(map));
  });
}

TYPED_TEST(UnsafeIterator, AWrittenValueIsNoChangeOfTheMap) {
  forEachMap<TypeParam>([](auto& map, int /*size*/) {
    auto i = map.unsafeIterator();
    *map.find(TypeParam::key(0)) = TypeParam::value(0, 0);
    ++i;
  });
}

}  // namespace
}  // namespace stdIteratorTest
