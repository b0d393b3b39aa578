#include "Dorpel/Slab.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <set>
#include <vector>

namespace slabTest {
namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool everyBlockFromMalloc = true;
#else
constexpr bool everyBlockFromMalloc = false;
#endif

TEST(Slab, AFreedBlockIsTheNextOneOfItsSize) {
  if (everyBlockFromMalloc) GTEST_SKIP() << "under a sanitizer every block comes from malloc";
  void* first = Dorpel::slabAlloc(48);
  void* second = Dorpel::slabAlloc(48);
  Dorpel::slabFree(first, 48);
  Dorpel::slabFree(second, 48);
  void* newest = Dorpel::slabAlloc(48);
  void* oldest = Dorpel::slabAlloc(48);
  EXPECT_EQ(newest, second);
  EXPECT_EQ(oldest, first);
  Dorpel::slabFree(newest, 48);
  Dorpel::slabFree(oldest, 48);
}

TEST(Slab, SizesOfOneGranuleShareTheirBlocks) {
  if (everyBlockFromMalloc) GTEST_SKIP() << "under a sanitizer every block comes from malloc";
  void* block = Dorpel::slabAlloc(41);
  Dorpel::slabFree(block, 41);
  void* again = Dorpel::slabAlloc(48);
  EXPECT_EQ(again, block);
  Dorpel::slabFree(again, 48);
  void* other = Dorpel::slabAlloc(49);
  EXPECT_NE(other, block);
  Dorpel::slabFree(other, 49);
}

TEST(Slab, EveryBlockIsAlignedToEightBytes) {
  for (std::size_t size = 1; size <= Dorpel::slabMaxSize; ++size) {
    void* block = Dorpel::slabAlloc(size);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 8, 0u) << "size " << size;
    Dorpel::slabFree(block, size);
  }
}

TEST(Slab, BlocksOfNoBytesHaveAddressesOfTheirOwn) {
  const Dorpel::SlabUse before = Dorpel::slabUse();
  std::set<void*> blocks;
  for (int i = 0; i < 1000; ++i) {
    blocks.insert(Dorpel::slabAlloc(0));
    blocks.insert(Dorpel::slabAllocOrStdMalloc(0));
    blocks.insert(Dorpel::slabAllocOrStdCalloc(0));
  }
  EXPECT_EQ(blocks.size(), 3000u);
  EXPECT_EQ(blocks.count(nullptr), 0u);
  EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks + 3000);
  EXPECT_EQ(Dorpel::slabUse().bytes, before.bytes + 3000 * Dorpel::slabGranule);
  for (void* block : blocks) Dorpel::slabFreeOrStdFree(block, 0);
  EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks);
}

TEST(Slab, BlocksOfAllSizesNeverOverlap) {
  struct Block {
    unsigned char* at;
    std::size_t size;
  };
  std::vector<Block> blocks;
  for (std::size_t size = 1; size <= Dorpel::slabMaxSize; size += 7) {
    for (int i = 0; i < 40; ++i) {
      auto* at = static_cast<unsigned char*>(Dorpel::slabAlloc(size));
      std::memset(at, static_cast<int>(blocks.size() % 251), size);
      blocks.push_back({at, size});
    }
  }
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    for (std::size_t k = 0; k < blocks[i].size; ++k) {
      ASSERT_EQ(blocks[i].at[k], i % 251) << "block " << i << " byte " << k;
    }
  }
  for (const Block& block : blocks) Dorpel::slabFree(block.at, block.size);
}

TEST(Slab, AHundredThousandBlocksOfOneSizeAreAllDifferent) {
  std::set<void*> blocks;
  for (int i = 0; i < 100'000; ++i) blocks.insert(Dorpel::slabAlloc(24));
  EXPECT_EQ(blocks.size(), 100'000u);
  for (void* block : blocks) Dorpel::slabFree(block, 24);
}

TEST(Slab, UseCountsBlocksAndTheirRoundedSizes) {
  const Dorpel::SlabUse before = Dorpel::slabUse();
  void* a = Dorpel::slabAlloc(1);
  void* b = Dorpel::slabAlloc(17);
  EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks + 2);
  EXPECT_EQ(Dorpel::slabUse().bytes, before.bytes + 8 + 24);
  Dorpel::slabFree(a, 1);
  EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks + 1);
  EXPECT_EQ(Dorpel::slabUse().bytes, before.bytes + 24);
  Dorpel::slabFree(b, 17);
  EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks);
  EXPECT_EQ(Dorpel::slabUse().bytes, before.bytes);
}

TEST(Slab, ChunksGrowWithUseAndAreKept) {
  if (everyBlockFromMalloc) GTEST_SKIP() << "under a sanitizer every block comes from malloc";
  constexpr std::size_t size = 504;
  constexpr int many = 2000;
  std::vector<void*> blocks;
  const auto take = [&] {
    for (int i = 0; i < many; ++i) blocks.push_back(Dorpel::slabAlloc(size));
  };
  take();  // what other tests gave back is used up now
  const std::uint64_t before = Dorpel::slabUse().chunks;
  take();
  const std::uint64_t grown = Dorpel::slabUse().chunks;
  EXPECT_GE(grown, before + many / 2 * size);
  EXPECT_LE(grown, before + 2 * many * size);
  for (void* block : blocks) Dorpel::slabFree(block, size);
  blocks.clear();
  EXPECT_EQ(Dorpel::slabUse().chunks, grown);
  take();
  take();
  EXPECT_EQ(Dorpel::slabUse().chunks, grown) << "freed blocks were not used again";
  for (void* block : blocks) Dorpel::slabFree(block, size);
}

TEST(Slab, TheLargestSlabBlockIsCountedAndALargerOneComesFromMalloc) {
  const Dorpel::SlabUse before = Dorpel::slabUse();
  void* largest = Dorpel::slabAllocOrStdMalloc(Dorpel::slabMaxSize);
  EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks + 1);
  void* larger = Dorpel::slabAllocOrStdMalloc(Dorpel::slabMaxSize + 1);
  EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks + 1);
  std::memset(larger, 0xff, Dorpel::slabMaxSize + 1);
  Dorpel::slabFreeOrStdFree(larger, Dorpel::slabMaxSize + 1);
  EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks + 1);
  Dorpel::slabFreeOrStdFree(largest, Dorpel::slabMaxSize);
  EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks);
}

TEST(Slab, ALargeBlockIsMappedInWholeHugePagesAndGoesBack) {
  if (everyBlockFromMalloc) GTEST_SKIP() << "under a sanitizer every block comes from malloc";
  constexpr std::size_t hugePage = std::size_t{2} << 20;
  const std::uint64_t before = Dorpel::slabUse().mapped;
  auto* block = static_cast<unsigned char*>(Dorpel::slabAllocOrStdMalloc(hugePage + 1));
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % hugePage, 0u);
  EXPECT_EQ(Dorpel::slabUse().mapped, before + 2 * hugePage);
  std::memset(block, 0xff, hugePage + 1);
  Dorpel::slabFreeOrStdFree(block, hugePage + 1);
  EXPECT_EQ(Dorpel::slabUse().mapped, before);
}

TEST(Slab, ABlockOfZerosIsZeroAlsoWhenItWasUsedBefore) {
  for (const std::size_t size :
       {std::size_t{8}, Dorpel::slabMaxSize, Dorpel::slabMaxSize + 1, std::size_t{3} << 20}) {
    void* used = Dorpel::slabAllocOrStdMalloc(size);
    std::memset(used, 0xff, size);
    Dorpel::slabFreeOrStdFree(used, size);
    auto* block = static_cast<unsigned char*>(Dorpel::slabAllocOrStdCalloc(size));
    EXPECT_TRUE(std::all_of(block, block + size, [](unsigned char byte) { return byte == 0; }));
    Dorpel::slabFreeOrStdFree(block, size);
  }
}

TEST(Slab, FreeingNullDoesNothing) {
  const Dorpel::SlabUse before = Dorpel::slabUse();
  Dorpel::slabFree(nullptr, 16);
  Dorpel::slabFreeOrStdFree(nullptr, 16);
  Dorpel::slabFreeOrStdFree(nullptr, 1'000'000);
  EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks);
  EXPECT_EQ(Dorpel::slabUse().bytes, before.bytes);
  void* block = Dorpel::slabAlloc(16);
  EXPECT_NE(block, nullptr);
  Dorpel::slabFree(block, 16);
}

TEST(Slab, ASizeThatNobodyHasThrowsBadAlloc) {
  if (everyBlockFromMalloc) GTEST_SKIP() << "a sanitizer ends the process here";
  const volatile std::size_t tooMuch = SIZE_MAX / 2;
  EXPECT_THROW((void)Dorpel::slabAllocOrStdMalloc(tooMuch), std::bad_alloc);
}

}  // namespace
}  // namespace slabTest
