#include "Rok/AllocTrack.h"

namespace allocTrackTest {
namespace {

TEST(AllocTrack, CountsBlocksAndBytesOfEachTypeApart) {
  struct Apple {};
  struct Pear {};
  auto& apples = Rok::AllocTrackTypeInfo::of<Apple>();
  apples.blockNew(40);
  apples.blockNew(24);
  EXPECT_EQ(apples.blocks(), 2u);
  EXPECT_EQ(apples.bytes(), 64u);
  EXPECT_EQ(Rok::AllocTrackTypeInfo::of<Pear>().blocks(), 0u);
  apples.blockDel(40);
  EXPECT_EQ(apples.blocks(), 1u);
  EXPECT_EQ(apples.bytes(), 24u);
  apples.blockDel(24);
  EXPECT_EQ(apples.blocks(), 0u);
  EXPECT_EQ(apples.bytes(), 0u);
}

}  // namespace
}  // namespace allocTrackTest
