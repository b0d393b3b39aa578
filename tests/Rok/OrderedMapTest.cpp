#include "Rok/OrderedMap.h"

#include <map>
#include <memory>
#include <random>

#include "tests/support/RokMaps.h"

namespace orderedMapTest {
namespace {

using Map = Rok::OrderedMap<std::uint32_t, Rok::String>;
using Keys = std::vector<std::uint32_t>;

Map mapOf(std::initializer_list<std::uint32_t> keys) {
  Map map;
  for (const std::uint32_t key : keys) map.memberIs(key, Rok::_fmt("rule %u", key));
  return map;
}

// Walks, and runs a body at each entry.
template <class Body>
Keys walked(const Map& map, const Body& body) {
  Keys keys;
  for (auto i = map.iterator(); i; ++i) {
    keys.push_back(i.key());
    body(i.key());
  }
  return keys;
}
Keys walked(const Map& map) {
  return walked(map, [](std::uint32_t) {});
}

TEST(OrderedMap, IsWalkedInAscendingKeyOrder) {
  EXPECT_EQ(walked(mapOf({30, 10, 20, 5})), (Keys{5, 10, 20, 30}));
  EXPECT_EQ(walked(Map()), Keys{});
}

TEST(OrderedMap, FindsInsertsReplacesAndRemoves) {
  Map map;
  EXPECT_EQ(map.members(), 0u);
  EXPECT_TRUE(map.memberIs(10, "permit"));
  EXPECT_FALSE(map.memberIs(10, "deny"));
  EXPECT_EQ(*std::as_const(map).find(10), "deny");
  *map.find(10) = "log";
  EXPECT_EQ(*map.find(10), "log");
  EXPECT_EQ(map.find(11), nullptr);
  EXPECT_EQ(std::as_const(map).find(11), nullptr);
  EXPECT_EQ(map.members(), 1u);
  EXPECT_TRUE(map.deleteMember(10));
  EXPECT_FALSE(map.deleteMember(10));
  EXPECT_EQ(map.members(), 0u);
}

TEST(OrderedMap, ANewMemberLeavesTheOneThatIsThere) {
  Map map = mapOf({10, 30});
  const auto [added, isNew] = map.newMember(20, "permit");
  EXPECT_TRUE(isNew);
  EXPECT_EQ(*added, "permit");
  const auto [there, isNewAgain] = map.newMember(20, "deny");
  EXPECT_FALSE(isNewAgain);
  EXPECT_EQ(there, map.find(20));
  EXPECT_EQ(*there, "permit");
  EXPECT_EQ(walked(map), (Keys{10, 20, 30}));
}

TEST(OrderedMap, TheVersionMovesWithEveryStructuralChangeAndOnlyThen) {
  Map map;
  std::uint32_t version = map.version();
  const auto moved = [&] { return std::exchange(version, map.version()) != map.version(); };
  map.newMember(9, "permit");
  EXPECT_TRUE(moved());
  map.newMember(9, "deny");
  EXPECT_FALSE(moved());
  map.memberIs(10, "permit");
  EXPECT_TRUE(moved()) << "insert";
  map.memberIs(10, "deny");
  *map.find(10) = "log";
  map.deleteMember(11);
  walked(map);
  const Map copy = map;
  EXPECT_FALSE(moved());
  map.deleteMember(10);
  EXPECT_TRUE(moved()) << "delete";
  map.memberIs(10, "permit");
  map.memberIs(20, "permit");
  EXPECT_TRUE(moved());
  map._memberDelAll();
  EXPECT_TRUE(moved()) << "clear";
  map._memberDelAll();
  EXPECT_FALSE(moved()) << "nothing was there to clear";
  map = copy;
  EXPECT_TRUE(moved()) << "assignment";
}

TEST(OrderedMap, AnEntryAddedBehindTheCurrentKeyIsVisited) {
  Map map = mapOf({10, 20});
  const Keys keys = walked(map, [&](std::uint32_t key) {
    if (key == 10) map.memberIs(15, "late");
    if (key == 20) map.memberIs(30, "last");
  });
  EXPECT_EQ(keys, (Keys{10, 15, 20, 30}));
}

TEST(OrderedMap, AnEntryAddedBeforeTheCurrentKeyIsNotVisited) {
  Map map = mapOf({10, 20});
  const Keys keys = walked(map, [&](std::uint32_t key) { map.memberIs(key - 5, "early"); });
  EXPECT_EQ(keys, (Keys{10, 20}));
  EXPECT_EQ(walked(map), (Keys{5, 10, 15, 20}));
}

TEST(OrderedMap, DeletingTheCurrentEntryNeitherEndsNorDisturbsTheWalk) {
  Map map = mapOf({10, 20, 30, 40});
  EXPECT_EQ(walked(map, [&](std::uint32_t key) { map.deleteMember(key); }), (Keys{10, 20, 30, 40}));
  EXPECT_EQ(map.members(), 0u);
}

TEST(OrderedMap, DeletingTheNextEntrySkipsItAndDeletingAnEarlierOneChangesNothing) {
  Map map = mapOf({10, 20, 30, 40});
  EXPECT_EQ(walked(map, [&](std::uint32_t key) { map.deleteMember(key + 10); }), (Keys{10, 30}));
  map = mapOf({10, 20, 30, 40});
  EXPECT_EQ(walked(map, [&](std::uint32_t key) { map.deleteMember(key - 10); }),
            (Keys{10, 20, 30, 40}));
}

TEST(OrderedMap, DeletingAllEndsTheWalkAndAKeyAddedBehindGoesOnWithIt) {
  Map map = mapOf({10, 20, 30});
  EXPECT_EQ(walked(map, [&](std::uint32_t) { map._memberDelAll(); }), Keys{10});
  map = mapOf({10, 20, 30});
  const Keys keys = walked(map, [&](std::uint32_t key) {
    if (key != 10) return;
    map._memberDelAll();
    map.memberIs(25, "new");
  });
  EXPECT_EQ(keys, (Keys{10, 25}));
}

TEST(OrderedMap, AnEntryDeletedAndAddedAgainUnderTheIteratorIsNotVisitedAgain) {
  Map map = mapOf({10, 20, 30});
  const Keys keys = walked(map, [&](std::uint32_t key) {
    map.deleteMember(key);
    map.memberIs(key, "again");
  });
  EXPECT_EQ(keys, (Keys{10, 20, 30}));
}

TEST(OrderedMap, TheKeyOfADeletedEntryStaysReadableAndItsValueIsNull) {
  Map map = mapOf({10, 20});
  auto i = map.iterator();
  ASSERT_NE(i.value(), nullptr);
  EXPECT_EQ(*i.value(), "rule 10");
  map.deleteMember(10);
  EXPECT_EQ(i.key(), 10u);
  EXPECT_EQ(i.value(), nullptr);
  map.memberIs(10, "again");
  ASSERT_NE(i.value(), nullptr);
  EXPECT_EQ(*i.value(), "again");
  map.memberIs(10, "replaced");
  EXPECT_EQ(*i.value(), "replaced");
}

TEST(OrderedMap, AnAssignmentDuringTheWalkGoesOnInTheNewEntries) {
  Map map = mapOf({10, 20});
  const Map other = mapOf({15, 25});
  const Keys keys = walked(map, [&](std::uint32_t key) {
    if (key == 10) map = other;
  });
  EXPECT_EQ(keys, (Keys{10, 15, 25}));
  map = mapOf({10, 20});
  const Keys movedKeys = walked(map, [&](std::uint32_t key) {
    if (key == 10) map = mapOf({15, 25});
  });
  EXPECT_EQ(movedKeys, (Keys{10, 15, 25}));
}

TEST(OrderedMap, AMoveDuringTheWalkEndsIt) {
  Map map = mapOf({10, 20});
  std::unique_ptr<Map> other;
  const Keys keys =
      walked(map, [&](std::uint32_t) { other = std::make_unique<Map>(std::move(map)); });
  EXPECT_EQ(keys, Keys{10});
  EXPECT_EQ(walked(*other), (Keys{10, 20}));
}

TEST(OrderedMap, ACopyIsDeepAndEqual) {
  Map map = mapOf({10, 20});
  Map copy = map;
  EXPECT_TRUE(copy == map);
  copy.memberIs(10, "other");
  EXPECT_FALSE(copy == map);
  EXPECT_EQ(*map.find(10), "rule 10");
  Map& same = copy;
  copy = same;
  EXPECT_EQ(copy.members(), 2u);
  copy.deleteMember(20);
  EXPECT_FALSE(copy == map);
}

TEST(OrderedMap, ADyingValueFindsTheMapInOrder) {
  using RokTest::Hook;
  Rok::OrderedMap<std::uint32_t, Rok::Ptr<Hook>> map;
  int ends = 0;
  for (std::uint32_t i = 0; i < 5; ++i) {
    map.memberIs(i, Rok::make<Hook>([&, i] {
                   ++ends;
                   EXPECT_EQ(map.find(i), nullptr);
                   map.deleteMember(i + 1);
                 }));
  }
  map.deleteMember(3);
  EXPECT_EQ(ends, 2);
  EXPECT_EQ(map.members(), 3u);
  map._memberDelAll();
  EXPECT_EQ(ends, 5);
}

// ===== The same rules, row by row, for a range-based for

// Walks, and runs a body at each entry, which must still read the same afterwards.
template <class Body>
Keys ranged(const Map& map, const Body& body) {
  Keys keys;
  for (const auto& [key, value] : map) {
    const std::uint32_t keyBefore = key;
    const Rok::String valueBefore = value;
    body(key);
    EXPECT_EQ(key, keyBefore);
    EXPECT_EQ(value, valueBefore);
    keys.push_back(key);
  }
  return keys;
}

TEST(OrderedRangeFor, VisitsKeysAndValuesInAscendingOrder) {
  std::string order;
  const Map map = mapOf({30, 10, 20});
  for (const auto& [key, value] : map) order += std::to_string(key) + ": " + value.data() + ", ";
  EXPECT_EQ(order, "10: rule 10, 20: rule 20, 30: rule 30, ");
  EXPECT_EQ(ranged(Map(), [](std::uint32_t) {}), Keys{});
}

TEST(OrderedRangeFor, DeletingTheCurrentEntryLeavesItReadableToTheEndOfTheBody) {
  Map map = mapOf({10, 20, 30});
  EXPECT_EQ(ranged(map, [&](std::uint32_t key) { map.deleteMember(key); }), (Keys{10, 20, 30}));
  EXPECT_EQ(map.members(), 0u);
}

TEST(OrderedRangeFor, DeletingByTheKeyThatTheLoopBindsIsSafe) {
  Map map = mapOf({10, 20});
  for (const auto& [key, value] : map) {
    map.deleteMember(key);
    EXPECT_EQ(value, Rok::_fmt("rule %u", key));
  }
  EXPECT_EQ(map.members(), 0u);
}

TEST(OrderedRangeFor, AnotherEntryThatIsDeletedIsNotVisited) {
  Map map = mapOf({10, 20, 30, 40});
  EXPECT_EQ(ranged(map, [&](std::uint32_t key) { map.deleteMember(key + 10); }), (Keys{10, 30}));
  map = mapOf({10, 20, 30});
  EXPECT_EQ(ranged(map, [&](std::uint32_t key) { map.deleteMember(key - 10); }),
            (Keys{10, 20, 30}));
}

TEST(OrderedRangeFor, AnEntryIsVisitedIfItIsAddedBehindTheCurrentKey) {
  Map map = mapOf({10, 20});
  const Keys keys = ranged(map, [&](std::uint32_t key) {
    map.memberIs(key - 5, "before");
    if (key == 10) map.memberIs(15, "behind");
  });
  EXPECT_EQ(keys, (Keys{10, 15, 20}));
}

TEST(OrderedRangeFor, AnEntryDeletedAndAddedAgainIsNotVisitedAgain) {
  Map map = mapOf({10, 20});
  const Keys keys = ranged(map, [&](std::uint32_t key) {
    map.deleteMember(key);
    map.memberIs(key, "again");
  });
  EXPECT_EQ(keys, (Keys{10, 20}));
}

TEST(OrderedRangeFor, DeletingAllEndsTheWalkAndAKeyAddedBehindGoesOnWithIt) {
  Map map = mapOf({10, 20});
  EXPECT_EQ(ranged(map, [&](std::uint32_t) { map._memberDelAll(); }), Keys{10});
  map = mapOf({10, 20});
  const Keys keys = ranged(map, [&](std::uint32_t key) {
    map._memberDelAll();
    if (key == 10) map.memberIs(25, "new");
  });
  EXPECT_EQ(keys, (Keys{10, 25}));
}

TEST(OrderedRangeFor, AnAssignmentGoesOnInTheNewEntriesAndAMoveEndsTheWalk) {
  Map map = mapOf({10, 20});
  const Keys assigned = ranged(map, [&](std::uint32_t key) {
    if (key == 10) map = mapOf({15, 25});
  });
  EXPECT_EQ(assigned, (Keys{10, 15, 25}));
  Map other;
  EXPECT_EQ(ranged(map, [&](std::uint32_t) { other = std::move(map); }), Keys{15});
}

TEST(OrderedRangeFor, AValueThatIsReplacedReadsAsTheOneAtWhichTheWalkCameBy) {
  Map map = mapOf({10, 20});
  EXPECT_EQ(ranged(map, [&](std::uint32_t key) { map.memberIs(key, "replaced"); }), (Keys{10, 20}));
  EXPECT_EQ(*map.find(10), "replaced");
}

TEST(OrderedRangeFor, NestedWalksMayDeleteUnderEachOther) {
  Map map = mapOf({10, 20, 30});
  const Keys keys = ranged(map, [&](std::uint32_t outer) {
    const Keys inner = ranged(map, [&](std::uint32_t key) {
      if (key == outer || key == 20) map.deleteMember(key);
    });
    EXPECT_EQ(inner, outer == 10 ? (Keys{10, 20, 30}) : Keys{30});
  });
  EXPECT_EQ(keys, (Keys{10, 30}));
}

TEST(OrderedRangeFor, AValueOfADeletedEntryEndsAfterTheBody) {
  using RokTest::Hook;
  Rok::OrderedMap<std::uint32_t, Rok::Ptr<Hook>> map;
  bool ended = false;
  map.memberIs(1, Rok::make<Hook>([&] { ended = true; }));
  for (const auto& [key, hook] : map) {
    map.deleteMember(key);
    EXPECT_FALSE(ended);
    EXPECT_TRUE(hook);
  }
  EXPECT_TRUE(ended);
}

TEST(OrderedMapDeathTest, AnExhaustedIteratorAssertsIterOnEveryUse) {
  constexpr const char* text = "^assertion failed: iter_: use of an exhausted iterator\n";
  const Map map = mapOf({10});
  auto i = map.iterator();
  ++i;
  ASSERT_FALSE(i);
  EXPECT_DEATH(++i, text);
  EXPECT_DEATH(i.advance(), text);
  EXPECT_DEATH((void)i.key(), text);
  EXPECT_DEATH((void)i.value(), text);
  EXPECT_DEATH((void)*i, text);
}

TEST(OrderedMap, RandomOperationsUnderWalksAgreeWithAStandardMap) {
  std::mt19937 random(5);
  const auto pick = [&](std::uint32_t n) { return static_cast<std::uint32_t>(random() % n); };
  Rok::OrderedMap<std::uint32_t, int> map;
  std::map<std::uint32_t, int> model;
  std::vector<std::unique_ptr<Rok::OrderedMap<std::uint32_t, int>::Iterator>> walks;
  for (int step = 0; step < 100'000; ++step) {
    const std::uint32_t key = pick(50);
    switch (pick(8)) {
      case 0:
      case 1:
        ASSERT_EQ(map.memberIs(key, step), model.insert_or_assign(key, step).second);
        break;
      case 2:
      case 3:
        ASSERT_EQ(map.deleteMember(key), model.erase(key) == 1);
        break;
      case 4:
        if (!model.empty() && walks.size() < 5) {
          walks.push_back(
              std::make_unique<Rok::OrderedMap<std::uint32_t, int>::Iterator>(map.iterator()));
          ASSERT_EQ(walks.back()->key(), model.begin()->first);
        }
        break;
      case 5:
      case 6:
        if (!walks.empty()) {
          const std::size_t at = pick(static_cast<std::uint32_t>(walks.size()));
          auto& walk = *walks[at];
          const auto expected = model.upper_bound(walk.key());
          ++walk;
          ASSERT_EQ(static_cast<bool>(walk), expected != model.end());
          if (walk) {
            ASSERT_EQ(walk.key(), expected->first);
          } else {
            walks.erase(walks.begin() + static_cast<std::ptrdiff_t>(at));
          }
        }
        break;
      default:
        if (pick(500) == 0) {
          map._memberDelAll();
          model.clear();
        }
        break;
    }
    ASSERT_EQ(map.members(), model.size());
    for (const auto& walk : walks) {
      const auto expected = model.find(walk->key());
      ASSERT_EQ(walk->value() != nullptr, expected != model.end());
      if (walk->value() != nullptr) {
        ASSERT_EQ(*walk->value(), expected->second);
      }
    }
  }
}

}  // namespace
}  // namespace orderedMapTest
