#include "Velmo/Vector.h"

#include <stdexcept>

namespace vectorTest {
namespace {

using Velmo::ByteVector;

template <class Act>
std::string textOf(const Act& act) {
  try {
    act();
  } catch (const Velmo::VectorException& e) {
    return e.what();
  }
  return "nothing thrown";
}

TEST(Vector, AnElementIsReplacedInPlace) {
  ByteVector bytes{10, 20, 30};
  Velmo::vectorIs<unsigned char>(bytes, 0, 1);
  Velmo::vectorIs<unsigned char>(bytes, 2, 3);
  EXPECT_EQ(bytes, (ByteVector{1, 20, 3}));
}

TEST(Vector, AnIndexPastTheEndThrowsAndChangesNothing) {
  ByteVector bytes{10, 20, 30};
  EXPECT_EQ(textOf([&] { Velmo::vectorIs<unsigned char>(bytes, 3, 1); }),
            "vector index 3 is outside a vector of size 3");
  EXPECT_EQ(bytes, (ByteVector{10, 20, 30}));
  ByteVector empty;
  EXPECT_EQ(textOf([&] { Velmo::vectorIs<unsigned char>(empty, 0, 1); }),
            "vector index 0 is outside a vector of size 0");
}

TEST(Vector, FrontAndBackReadTheEnds) {
  const ByteVector bytes{10, 20, 30};
  EXPECT_EQ(Velmo::vectorFront(bytes), 10);
  EXPECT_EQ(Velmo::vectorBack(bytes), 30);
}

TEST(Vector, PopTakesTheLastElement) {
  ByteVector bytes{10, 20, 30};
  Velmo::vectorPop(bytes);
  EXPECT_EQ(bytes, (ByteVector{10, 20}));
}

TEST(Vector, ReadingOrTakingFromAnEmptyVectorThrows) {
  ByteVector empty;
  EXPECT_EQ(textOf([&] { Velmo::vectorBack(empty); }), "back of an empty vector");
  EXPECT_EQ(textOf([&] { Velmo::vectorPop(empty); }), "back of an empty vector");
  EXPECT_EQ(textOf([&] { Velmo::vectorFront(empty); }), "front of an empty vector");
}

TEST(Vector, ItsExceptionIsAnOutOfRangeError) {
  EXPECT_THROW(Velmo::Impl::throwVectorEmptyBackException(), std::out_of_range);
  EXPECT_THROW(Velmo::Impl::throwVectorEmptyFrontException(), std::out_of_range);
  EXPECT_THROW(Velmo::Impl::throwVectorOutOfRangeException(1, 1), std::out_of_range);
}

TEST(Vector, SmallBuffersComeFromTheSlabsAndGoBack) {
  const Dorpel::SlabUse before = Dorpel::slabUse();
  {
    ByteVector bytes(64, 7);
    EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks + 1);
    ByteVector large(Dorpel::slabMaxSize + 1, 7);
    EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks + 1);
    for (int i = 0; i < 1000; ++i) bytes.push_back(static_cast<unsigned char>(i));
    EXPECT_EQ(bytes.size(), 1064u);
    EXPECT_EQ(bytes.back(), 999 % 256);
  }
  EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks);
}

TEST(Vector, AllocatorsOfAllTypesAreEqual) {
  EXPECT_TRUE(Velmo::Allocator<int>() == Velmo::Allocator<int>(Velmo::Allocator<char>()));
  ByteVector a{1, 2};
  ByteVector b;
  const unsigned char* buffer = a.data();
  b = std::move(a);
  EXPECT_EQ(b.data(), buffer) << "equal allocators hand the buffer over";
}

}  // namespace
}  // namespace vectorTest
