#include "host/KeySet.h"

#include <gtest/gtest.h>

namespace host::keySetTest {
namespace {

std::string key(std::size_t number) { return "key " + std::to_string(number); }

// Whether a set takes so many keys, and one of them once more behind them.
bool takesTwice(std::size_t keys, std::size_t again) {
  KeySet set;
  for (std::size_t i = 0; i < keys; ++i) {
    if (!set.add(key(i))) ADD_FAILURE() << "of " << keys << " different ones: " << i;
  }
  return set.add(key(again)) && set.end();
}

TEST(KeySet, NoticesAKeyThatComesTwiceAmongFewAndMany) {
  for (std::size_t keys = 1; keys < 70; ++keys) {
    for (std::size_t again = 0; again < keys; ++again) {
      EXPECT_FALSE(takesTwice(keys, again)) << keys << ' ' << again;
    }
    EXPECT_TRUE(takesTwice(keys, keys));
  }
  for (const std::size_t again : {0u, 1u, 4'999u, 9'999u}) EXPECT_FALSE(takesTwice(10'000, again));
}

TEST(KeySet, TakesManyDifferentKeys) {
  KeySet set;
  for (std::size_t i = 0; i < 300'000; ++i) ASSERT_TRUE(set.add(key(i))) << i;
  EXPECT_TRUE(set.end());
}

TEST(KeySet, DistinguishesTextsOfAnyLengthByEachByte) {
  KeySet set;
  for (std::size_t size = 0; size < 40; ++size) {
    EXPECT_TRUE(set.add(std::string(size, '\0'))) << size;
    for (std::size_t at = 0; at < size; ++at) {
      std::string text(size, '\0');
      text[at] = 'x';
      EXPECT_TRUE(set.add(text)) << size << ' ' << at;
    }
  }
  EXPECT_TRUE(set.end());
}

TEST(KeySet, TakesNumbers) {
  KeySet set;
  for (std::uint64_t number = 0; number < 256; ++number) ASSERT_TRUE(set.add(number)) << number;
  EXPECT_TRUE(set.end());
  EXPECT_FALSE(set.add(std::uint64_t{200}) && set.end());
}

TEST(KeySet, IsEmptyOnceItIsCleared) {
  KeySet set;
  for (const std::size_t keys : {5u, 9u, 20u, 10'000u, 20u, 9u, 5u}) {
    set.clear();
    for (std::size_t i = 0; i < keys; ++i) ASSERT_TRUE(set.add(key(i))) << keys << ' ' << i;
    ASSERT_TRUE(keys == 9 || set.end()) << keys;  // what waits is cleared, too
  }
}

}  // namespace
}  // namespace host::keySetTest
