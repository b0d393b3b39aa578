#include "Velmo/Hash.h"

#include <bit>
#include <set>
#include <string>

namespace hashTest {
namespace {

TEST(Hash, EqualBytesHaveEqualHashesWhereverTheyLie) {
  const std::string shifted = "xinterface-name-of-some-length";
  EXPECT_EQ(Velmo::hashBytes(std::string_view(shifted).substr(1)),
            Velmo::hashBytes("interface-name-of-some-length"));
}

TEST(Hash, EveryLengthOfZeroBytesHasItsOwnHash) {
  std::set<std::uint32_t> hashes;
  for (std::size_t size = 0; size < 64; ++size) {
    hashes.insert(Velmo::hashBytes(std::string(size, '\0')));
  }
  EXPECT_EQ(hashes.size(), 64u);
}

TEST(Hash, EveryByteCounts) {
  for (std::size_t size = 1; size < 40; ++size) {
    const std::string text(size, 'a');
    for (std::size_t i = 0; i < size; ++i) {
      std::string other = text;
      other[i] = 'b';
      EXPECT_NE(Velmo::hashBytes(other), Velmo::hashBytes(text)) << size << " bytes, at " << i;
    }
  }
}

TEST(Hash, NumberedNamesHardlyCollide) {
  std::set<std::uint32_t> hashes;
  for (int i = 0; i < 100'000; ++i) hashes.insert(Velmo::hashBytes("port" + std::to_string(i)));
  // Chance alone loses one or two of a hundred thousand.
  EXPECT_GT(hashes.size(), 99'980u);
  EXPECT_FALSE(hashes.contains(0));
}

TEST(Hash, ANeighbouringWordOrSeedChangesAboutHalfOfTheBits) {
  int changed = 0;
  for (std::uint64_t word = 0; word < 1000; ++word) {
    changed += std::popcount(Velmo::hashWord(1, word) ^ Velmo::hashWord(1, word + 1));
    changed += std::popcount(Velmo::hashWord(static_cast<std::uint32_t>(word), 7) ^
                             Velmo::hashWord(static_cast<std::uint32_t>(word) + 1, 7));
  }
  EXPECT_NEAR(changed / 2000.0, 16.0, 1.0);
}

TEST(Hash, AWordsHashIsKnownAtCompileTime) {
  static_assert(Velmo::hashWord(1, 2) == Velmo::hashWord(1, 2));
  static_assert(Velmo::hashWord(1, 2) != Velmo::hashWord(2, 1));
  static_assert(Velmo::hashMix(1, 2) != 0);
}

}  // namespace
}  // namespace hashTest
