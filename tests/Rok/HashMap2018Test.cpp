#include "Rok/HashMap2018.h"

#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <vector>

#include "tests/support/RokMaps.h"

namespace hashMap2018Test {
namespace {

using namespace RokTest;

template <class Keys>
class HashMap : public testing::Test {
 public:
  using Map = typename Keys::Map;
};

TYPED_TEST_SUITE(HashMap, AllKeys);

// ===== Lookup, insert, remove

TYPED_TEST(HashMap, IsEmptyAtFirst) {
  typename TestFixture::Map map;
  EXPECT_EQ(map.members(), 0u);
  EXPECT_EQ(map.version(), 0u);
  EXPECT_EQ(map.bytes(), 0u);
  EXPECT_EQ(map.find(TypeParam::key(0)), nullptr);
  EXPECT_EQ(map.member(TypeParam::key(0)), nullptr);
  EXPECT_FALSE(map.deleteMember(TypeParam::key(0)));
  EXPECT_FALSE(map.iterator());
  EXPECT_FALSE(map.unsafeIterator());
  EXPECT_EQ(sizeof(map), sizeof(void*));
}

TYPED_TEST(HashMap, FindsEveryEntryAtEverySize) {
  typename TestFixture::Map map;
  for (int n = 0; n < 600; ++n) {
    const auto [node, isNew] = map.newMember(TypeParam::key(n), TypeParam::value(n, n));
    EXPECT_TRUE(isNew);
    EXPECT_EQ(node->key(), TypeParam::key(n));
    EXPECT_EQ(map.members(), static_cast<std::uint32_t>(n + 1));
    for (int i = n % 7; i <= n; i += 7) {
      const auto* found = map.member(TypeParam::key(i));
      ASSERT_NE(found, nullptr) << i << " of " << n;
      ASSERT_EQ(found->key(), TypeParam::key(i));
      ASSERT_EQ(TypeParam::number(found->value()), i);
    }
    EXPECT_EQ(map.find(TypeParam::key(n + 1)), nullptr);
  }
}

TYPED_TEST(HashMap, InsertingUnderAKeyThatIsThereLeavesTheNodeAsItIs) {
  forEachMap<TypeParam>([](auto& map, int size) {
    const std::uint64_t version = map.version();
    const auto* before = map.member(TypeParam::key(size - 1));
    const auto [node, isNew] =
        map.newMember(TypeParam::key(size - 1), TypeParam::value(size - 1, 999));
    EXPECT_FALSE(isNew);
    EXPECT_EQ(node, before);
    EXPECT_EQ(TypeParam::number(node->value()), size - 1);
    EXPECT_EQ(map.members(), static_cast<std::uint32_t>(size));
    EXPECT_EQ(map.version(), version);
  });
}

TYPED_TEST(HashMap, AValueIsWrittenThroughItsNodeOrThroughFind) {
  forEachMap<TypeParam>([](auto& map, int size) {
    const std::uint64_t version = map.version();
    map.memberRef(TypeParam::key(0))->value() = TypeParam::value(0, 500);
    EXPECT_EQ(TypeParam::number(*std::as_const(map).find(TypeParam::key(0))), 500);
    *map.find(TypeParam::key(size - 1)) = TypeParam::value(size - 1, 600);
    EXPECT_EQ(TypeParam::number(map.member(TypeParam::key(size - 1))->value()), 600);
    EXPECT_EQ(map.version(), version) << "a value is no part of the structure";
  });
}

TYPED_TEST(HashMap, RemovingReportsAndGivesTheValueBack) {
  forEachMap<TypeParam>([](auto& map, int size) {
    typename TypeParam::Map::Value removed{};
    EXPECT_TRUE(map.deleteMember(TypeParam::key(size / 2), &removed));
    EXPECT_EQ(TypeParam::number(removed), size / 2);
    EXPECT_EQ(map.find(TypeParam::key(size / 2)), nullptr);
    EXPECT_EQ(map.members(), static_cast<std::uint32_t>(size - 1));
    EXPECT_EQ(entries<TypeParam>(map), numbersTo(size, {size / 2}));
  });
}

TYPED_TEST(HashMap, RemovingWhatIsNotThereReportsNothingAndTouchesNothing) {
  forEachMap<TypeParam>([](auto& map, int size) {
    const std::uint64_t version = map.version();
    typename TypeParam::Map::Value removed = TypeParam::value(0, 4711);
    EXPECT_FALSE(map.deleteMember(TypeParam::key(size), &removed));
    EXPECT_EQ(TypeParam::number(removed), 4711);
    EXPECT_EQ(map.version(), version);
    EXPECT_EQ(entries<TypeParam>(map), numbersTo(size));
  });
}

TYPED_TEST(HashMap, RemovingByTheKeyInsideTheNodeIsSafe) {
  forEachMap<TypeParam>([](auto& map, int size) {
    map.deleteMember(map.member(TypeParam::key(0))->key());
    EXPECT_EQ(entries<TypeParam>(map), numbersTo(size, {0}));
  });
}

TYPED_TEST(HashMap, RemovingAllLeavesAMapThatWorks) {
  forEachMap<TypeParam>([](auto& map, int size) {
    map._memberDelAll();
    EXPECT_EQ(map.members(), 0u);
    EXPECT_EQ(map.find(TypeParam::key(0)), nullptr);
    EXPECT_FALSE(map.iterator());
    fill<TypeParam>(map, size + 5);
    EXPECT_EQ(entries<TypeParam>(map), numbersTo(size + 5));
  });
}

TYPED_TEST(HashMap, EmptyingWithReleaseGivesTheMemoryBackAndWithoutItKeepsIt) {
  forEachMap<TypeParam>([](auto& map, int size) {
    const std::size_t bytes = map.bytes();
    EXPECT_GT(bytes, 0u);
    map.emptyAllBuckets(false);
    EXPECT_EQ(map.members(), 0u);
    EXPECT_EQ(map.bytes(), bytes);
    fill<TypeParam>(map, size);
    EXPECT_EQ(map.bytes(), bytes) << "freed nodes are used again";
    map.emptyAllBuckets(true);
    EXPECT_EQ(map.members(), 0u);
    EXPECT_EQ(map.bytes(), 0u);
    fill<TypeParam>(map, size);
    EXPECT_EQ(entries<TypeParam>(map), numbersTo(size));
  });
}

TYPED_TEST(HashMap, EverythingGoesBackToTheSlabs) {
  const Dorpel::SlabUse before = Dorpel::slabUse();
  forEachMap<TypeParam>([](auto& map, int size) {
    typename TypeParam::Map copy(map);
    copy.deleteMember(TypeParam::key(size / 3));
    typename TypeParam::Map moved(std::move(copy));
    map = moved;
  });
  EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks);
  EXPECT_EQ(Dorpel::slabUse().bytes, before.bytes);
}

TYPED_TEST(HashMap, NodesKeepTheirAddressesWhileTheMapGrowsAndShrinks) {
  typename TestFixture::Map map;
  fill<TypeParam>(map, 20);
  std::vector<const typename TypeParam::Map::Node*> nodes;
  for (int i = 0; i < 20; ++i) nodes.push_back(map.member(TypeParam::key(i)));
  for (int i = 20; i < 1000; ++i) map.newMember(TypeParam::key(i), TypeParam::value(i, i));
  for (int i = 25; i < 1000; ++i) map.deleteMember(TypeParam::key(i));
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(map.member(TypeParam::key(i)), nodes[static_cast<std::size_t>(i)]);
  }
}

// ===== Version

TYPED_TEST(HashMap, TheVersionMovesWithEveryStructuralChangeAndOnlyThen) {
  forEachMap<TypeParam>([](auto& map, int size) {
    std::uint64_t version = map.version();
    const auto moved = [&] { return std::exchange(version, map.version()) != map.version(); };
    EXPECT_FALSE(moved());
    map.newMember(TypeParam::key(size), TypeParam::value(size, size));
    EXPECT_TRUE(moved()) << "insert";
    map.newMember(TypeParam::key(size), TypeParam::value(size, 1));
    map.find(TypeParam::key(0));
    map.member(TypeParam::key(size + 1));
    walked<TypeParam>(map);
    EXPECT_TRUE(map == map);
    const typename TypeParam::Map copy(map);
    map.deleteMember(TypeParam::key(size + 1));
    EXPECT_FALSE(moved());
    map.deleteMember(TypeParam::key(size));
    EXPECT_TRUE(moved()) << "delete";
    map = copy;
    EXPECT_TRUE(moved()) << "assignment";
    map._memberDelAll();
    EXPECT_TRUE(moved()) << "clear";
    map._memberDelAll();
    map.emptyAllBuckets(false);
    EXPECT_FALSE(moved()) << "nothing was there to clear";
    fill<TypeParam>(map, size);
    EXPECT_TRUE(moved());
    map.emptyAllBuckets(true);
    EXPECT_TRUE(moved()) << "release";
  });
}

TYPED_TEST(HashMap, NoTwoStatesOfAnyTwoMapsHaveTheSameVersion) {
  std::set<std::uint64_t> versions;
  for (int round = 0; round < 3; ++round) {
    typename TypeParam::Map map;
    for (int i = 0; i < 5; ++i) {
      map.newMember(TypeParam::key(i), TypeParam::value(i, i));
      EXPECT_TRUE(versions.insert(map.version()).second);
    }
    const typename TypeParam::Map copy(map);
    EXPECT_TRUE(versions.insert(copy.version()).second);
    map.deleteMember(TypeParam::key(round));
    EXPECT_TRUE(versions.insert(map.version()).second);
    map._memberDelAll();
    EXPECT_TRUE(versions.insert(map.version()).second);
    fill<TypeParam>(map, 1);
    EXPECT_TRUE(versions.insert(map.version()).second);
    map.emptyAllBuckets(true);
    EXPECT_EQ(map.version(), 0u);
  }
}

TYPED_TEST(HashMap, TheVersionMovesWhenAnotherMapIsMovedIn) {
  forEachMap<TypeParam>([](auto& map, int size) {
    typename TypeParam::Map twin;
    fill<TypeParam>(twin, size);
    const std::uint64_t version = map.version();
    map = std::move(twin);
    EXPECT_NE(map.version(), version);
  });
}

// ===== Copies and comparison

TYPED_TEST(HashMap, ACopyIsDeep) {
  forEachMap<TypeParam>([](auto& map, int size) {
    typename TypeParam::Map copy(map);
    EXPECT_TRUE(copy == map);
    EXPECT_NE(copy.member(TypeParam::key(0)), map.member(TypeParam::key(0)));
    *copy.find(TypeParam::key(0)) = TypeParam::value(0, 888);
    copy.deleteMember(TypeParam::key(size - 1));
    copy.newMember(TypeParam::key(size), TypeParam::value(size, size));
    EXPECT_EQ(entries<TypeParam>(map), numbersTo(size));
    EXPECT_FALSE(copy == map);
  });
}

TYPED_TEST(HashMap, AnAssignmentReplacesWhatWasThere) {
  forEachMap<TypeParam>([](auto& map, int size) {
    typename TypeParam::Map other;
    fill<TypeParam>(other, 5);
    other.newMember(TypeParam::key(1000), TypeParam::value(1000, 1000));
    other = map;
    EXPECT_TRUE(other == map);
    EXPECT_EQ(entries<TypeParam>(other), numbersTo(size));
    const typename TypeParam::Map& same = other;
    other = same;
    EXPECT_EQ(entries<TypeParam>(other), numbersTo(size));
    other = typename TypeParam::Map();
    EXPECT_EQ(other.members(), 0u);
  });
}

TYPED_TEST(HashMap, AMoveHandsTheEntriesOverAndLeavesAnEmptyMap) {
  forEachMap<TypeParam>([](auto& map, int size) {
    const auto* node = map.member(TypeParam::key(0));
    typename TypeParam::Map moved(std::move(map));
    EXPECT_EQ(moved.member(TypeParam::key(0)), node);
    EXPECT_EQ(map.members(), 0u);
    EXPECT_EQ(map.find(TypeParam::key(0)), nullptr);
    typename TypeParam::Map& same = moved;
    moved = std::move(same);
    EXPECT_EQ(entries<TypeParam>(moved), numbersTo(size));
    map.newMember(TypeParam::key(7), TypeParam::value(7, 7));
    map = std::move(moved);
    EXPECT_EQ(entries<TypeParam>(map), numbersTo(size));
  });
}

TYPED_TEST(HashMap, MapsOfEqualEntriesAreEqualWhateverTheOrderOfTheirInsertion) {
  forEachMap<TypeParam>([](auto& map, int size) {
    typename TypeParam::Map other;
    const OrderSeed seed(99);
    for (int i = size; i >= 0; --i) other.newMember(TypeParam::key(i), TypeParam::value(i, i));
    EXPECT_FALSE(other == map) << "one entry more";
    EXPECT_FALSE(map == other) << "one entry less";
    other.deleteMember(TypeParam::key(size));
    EXPECT_TRUE(other == map);
    EXPECT_TRUE(map == other);
    *other.find(TypeParam::key(size / 2)) = TypeParam::value(size / 2, -1);
    EXPECT_FALSE(other == map) << "another value";
    other.deleteMember(TypeParam::key(size / 2));
    other.newMember(TypeParam::key(size), TypeParam::value(size, size / 2));
    EXPECT_FALSE(other == map) << "another key";
  });
  EXPECT_TRUE(typename TypeParam::Map() == typename TypeParam::Map());
}

// ===== Walk order

// The positions of the entries in a walk over n of them, in the order of a seed.
template <class Keys>
std::vector<int> positions(int n, std::uint32_t seed) {
  const OrderSeed order(seed);
  typename Keys::Map map;
  fill<Keys>(map, n);
  EXPECT_EQ(entries<Keys>(map), numbersTo(n)) << "seed " << seed;
  const std::vector<int> numbers = walked<Keys>(map);
  std::vector<int> result(numbers.size());
  for (std::size_t at = 0; at < numbers.size(); ++at) {
    result[static_cast<std::size_t>(numbers[at])] = static_cast<int>(at);
  }
  return result;
}

TYPED_TEST(HashMap, EveryTwoEntriesAreReversedBySomeOrderSeed) {
  constexpr std::uint32_t seeds = 64;
  // Where all hashes collide, filling a map takes the square of its size.
  constexpr int large = std::is_same_v<TypeParam, CollidingKeys> ? 200 : 1000;
  for (const int n : {2, 3, 10, large}) {
    std::vector<std::vector<int>> walks;
    for (std::uint32_t seed = 0; seed < seeds; ++seed)
      walks.push_back(positions<TypeParam>(n, seed));
    // Of the large map, some pairs stand for all.
    for (std::size_t a = 0; a < walks[0].size(); a += n < large ? 1 : 37) {
      for (std::size_t b = a + 1; b < walks[0].size(); b += n < large ? 1 : 41) {
        const auto before =
            std::ranges::count_if(walks, [&](const auto& w) { return w[a] < w[b]; });
        EXPECT_GT(before, 0) << n << " entries: " << a << " is never before " << b;
        EXPECT_LT(before, seeds) << n << " entries: " << a << " is never behind " << b;
      }
    }
  }
}

TYPED_TEST(HashMap, OneOrderSeedGivesOneOrder) {
  for (const std::uint32_t seed : {0u, 5u}) {
    EXPECT_EQ(positions<TypeParam>(100, seed), positions<TypeParam>(100, seed));
  }
}

// ===== Random operations, with iterators standing anywhere

// A map, what it must hold, and walks that stand on it. Each insertion has a serial number of its
// own, so that an entry and its successor under the same key are told apart.
template <class Keys>
class Workbench {
 public:
  Workbench(std::uint32_t seed, int keys) : random_(seed), keys_(keys) {}

  void step() {
    const unsigned what = pick(1000);
    if (what < 330) {
      insert(pick(keys_));
    } else if (what < 600) {
      remove(pick(keys_));
    } else if (what < 650) {
      if (!walks_.empty()) removeUnder(*walks_[pick(walks_.size())]);
    } else if (what < 700) {
      if (walks_.size() < 6) begin();
    } else if (what < 930) {
      if (!walks_.empty()) advance(pick(walks_.size()));
    } else if (what < 960) {
      if (!walks_.empty()) walks_.erase(walks_.begin() + pick(walks_.size()));
    } else if (what < 962) {
      map_._memberDelAll();
      model_.clear();
    } else if (what < 963) {
      map_.emptyAllBuckets(true);
      model_.clear();
    } else if (what < 970) {
      moveAway();
    } else if (what < 972) {
      assign();
    } else {
      compare();
    }
    for (const auto& walk : walks_) checkPlace(*walk);
  }
  void finish() {
    while (!walks_.empty()) advance(0);
    compare();
  }

 private:
  using Map = typename Keys::Map;
  struct Walk {
    explicit Walk(const Map& map) : at(map.iterator()) {}
    typename Map::Iterator at;
    std::set<int> owed;     // the entries of the beginning that are still to be visited
    std::set<int> visited;  // by serial
    int here = -1;
  };

  unsigned pick(std::size_t n) { return static_cast<unsigned>(random_() % n); }
  bool live(int serial) const {
    return std::ranges::any_of(model_, [&](const auto& entry) { return entry.second == serial; });
  }

  void insert(unsigned k) {
    const int key = static_cast<int>(k);
    const bool isNew = map_.newMember(Keys::key(key), Keys::value(key, next_)).second;
    ASSERT_EQ(isNew, model_.try_emplace(key, next_).second);
    ++next_;
  }
  void remove(unsigned k) {
    const int key = static_cast<int>(k);
    typename Map::Value removed{};
    const auto found = model_.find(key);
    ASSERT_EQ(map_.deleteMember(Keys::key(key), &removed), found != model_.end());
    if (found == model_.end()) return;
    ASSERT_EQ(Keys::number(removed), found->second);
    model_.erase(found);
  }
  void removeUnder(Walk& walk) {
    const auto* node = walk.at.currNodeMaybeStale();
    for (const auto& [key, serial] : model_) {
      if (serial == walk.here) {
        ASSERT_TRUE(map_.deleteMember(node->key()));
        model_.erase(key);
        return;
      }
    }
  }
  void begin() {
    auto walk = std::make_unique<Walk>(map_);
    ASSERT_EQ(static_cast<bool>(walk->at), !model_.empty());
    if (model_.empty()) return;
    for (const auto& [key, serial] : model_) walk->owed.insert(serial);
    arrive(*walk);
    walks_.push_back(std::move(walk));
  }
  void advance(std::size_t index) {
    Walk& walk = *walks_[index];
    walk.at.advance();
    if (walk.at) return arrive(walk);
    for (const int serial : walk.owed)
      ASSERT_FALSE(live(serial)) << "entry " << serial << " missed";
    walks_.erase(walks_.begin() + static_cast<std::ptrdiff_t>(index));
  }
  void arrive(Walk& walk) {
    ASSERT_NE(walk.at.currNodeNonStale(), nullptr);
    walk.here = Keys::number(walk.at.currNodeNonStale()->value());
    ASSERT_TRUE(live(walk.here)) << "visited the dead entry " << walk.here;
    ASSERT_TRUE(walk.visited.insert(walk.here).second) << "entry " << walk.here << " visited twice";
    walk.owed.erase(walk.here);
  }
  void checkPlace(const Walk& walk) {
    const auto* node = walk.at.currNodeMaybeStale();
    ASSERT_EQ(Keys::number(node->value()), walk.here);
    ASSERT_EQ(walk.at.key(), node->key());
    ASSERT_EQ(walk.at.currNodeNonStale(), live(walk.here) ? node : nullptr);
  }
  // Another object takes the entries over and gives them back: the walks stay on them.
  void moveAway() {
    Map other(std::move(map_));
    ASSERT_EQ(map_.members(), 0u);
    map_ = std::move(other);
  }
  void assign() {
    Map other;
    std::map<int, int> model;
    for (int key = 0; key < keys_; key += 3) {
      other.newMember(Keys::key(key), Keys::value(key, next_));
      model[key] = next_++;
    }
    map_ = other;
    model_ = model;
  }
  void compare() {
    ASSERT_EQ(map_.members(), model_.size());
    const unsigned key = pick(keys_);
    const auto* found = map_.find(Keys::key(static_cast<int>(key)));
    const auto expected = model_.find(static_cast<int>(key));
    ASSERT_EQ(found != nullptr, expected != model_.end());
    if (found != nullptr) {
      ASSERT_EQ(Keys::number(*found), expected->second);
    }
    if (pick(20) != 0) return;
    std::set<int> serials;
    for (const auto& [k, serial] : model_) serials.insert(serial);
    ASSERT_EQ(entries<Keys>(map_), serials);
    const Map copy(map_);
    ASSERT_TRUE(copy == map_);
  }

  std::mt19937 random_;
  int keys_;
  int next_ = 1;
  Map map_;
  std::map<int, int> model_;  // the serial of each key's entry
  std::vector<std::unique_ptr<Walk>> walks_;
};

TYPED_TEST(HashMap, RandomOperationsUnderWalksAgreeWithAStandardMap) {
  for (const std::uint32_t order : {0u, 1u, 2u, 1000u}) {
    const OrderSeed seed(order);
    for (const int keys : {4, 12, 60}) {
      SCOPED_TRACE(testing::Message() << "order seed " << order << ", " << keys << " keys");
      const Dorpel::SlabUse before = Dorpel::slabUse();
      {
        Workbench<TypeParam> bench(order * 31 + static_cast<std::uint32_t>(keys), keys);
        for (int i = 0; i < 12'000; ++i) {
          bench.step();
          if (this->HasFatalFailure()) return;
        }
        bench.finish();
        if (this->HasFatalFailure()) return;
      }
      EXPECT_EQ(Dorpel::slabUse().bytes, before.bytes);
    }
  }
}

TYPED_TEST(HashMap, RandomOperationsOnALargeMapAgreeWithAStandardMap) {
  constexpr int keys = std::is_same_v<TypeParam, CollidingKeys> ? 300 : 5000;
  std::mt19937 random(11);
  typename TestFixture::Map map;
  std::map<int, int> model;
  for (int step = 0; step < 60'000; ++step) {
    const int key = static_cast<int>(random() % keys);
    // Grows for a while, shrinks for a while.
    if (random() % 10 < (step / 15'000 % 2 == 0 ? 7u : 3u)) {
      ASSERT_EQ(map.newMember(TypeParam::key(key), TypeParam::value(key, step)).second,
                model.try_emplace(key, step).second);
    } else {
      ASSERT_EQ(map.deleteMember(TypeParam::key(key)), model.erase(key) == 1);
    }
    ASSERT_EQ(map.members(), model.size());
    const int other = static_cast<int>(random() % keys);
    const auto* found = map.find(TypeParam::key(other));
    const auto expected = model.find(other);
    ASSERT_EQ(found != nullptr, expected != model.end());
    if (found != nullptr) {
      ASSERT_EQ(TypeParam::number(*found), expected->second);
    }
  }
}

}  // namespace
}  // namespace hashMap2018Test
