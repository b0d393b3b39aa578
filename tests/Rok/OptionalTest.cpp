#include "Rok/Optional.h"

#include <sstream>
#include <utility>

#include "Velmo/String.h"

namespace optionalTest {
namespace {

using Rok::DynOptional;
using Rok::Optional;

template <class T>
std::string printed(const T& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

TEST(Optional, IsAbsentByDefault) {
  const Optional<int> value;
  EXPECT_FALSE(value.has_value());
  EXPECT_FALSE(value);
  EXPECT_EQ(printed(value), "(absent)");
}

TEST(Optional, AValueThatEqualsTheDefaultIsStillPresent) {
  const Optional<int> zero = 0;
  EXPECT_TRUE(zero.has_value());
  EXPECT_FALSE(zero == Optional<int>());
  EXPECT_EQ(zero, 0);
  EXPECT_EQ(printed(zero), "0");
}

TEST(Optional, ComparesPresenceFirstAndThenTheValue) {
  EXPECT_EQ(Optional<int>(), Optional<int>());
  EXPECT_EQ(Optional<int>(3), Optional<int>(3));
  EXPECT_NE(Optional<int>(3), Optional<int>(4));
  EXPECT_NE(Optional<int>(3), Optional<int>());
  EXPECT_FALSE(Optional<int>() == 0);
  EXPECT_TRUE(Optional<int>(3) == 3);
}

TEST(Optional, TakesAndLosesItsValue) {
  Optional<Velmo::String> value;
  value = Velmo::String("edge");
  EXPECT_EQ(*value, "edge");
  value = std::nullopt;
  EXPECT_FALSE(value.has_value());
  value.emplace("core");
  value.reset();
  EXPECT_FALSE(value.has_value());
}

TEST(Optional, KeepsItsValueInPlace) { EXPECT_EQ(sizeof(Optional<unsigned char>), 2u); }

TEST(DynOptional, IsOnePointerAndAbsentByDefault) {
  EXPECT_EQ(sizeof(DynOptional<Velmo::String>), sizeof(void*));
  const DynOptional<int> value;
  EXPECT_FALSE(value.has_value());
  EXPECT_FALSE(value);
  EXPECT_EQ(printed(value), "(absent)");
}

TEST(DynOptional, ACopyIsDeep) {
  DynOptional<int> value(3);
  DynOptional<int> copy = value;
  EXPECT_NE(&*copy, &*value);
  *copy = 4;
  EXPECT_EQ(*value, 3);
  copy = value;
  EXPECT_EQ(*copy, 3);
  EXPECT_NE(&*copy, &*value);
}

TEST(DynOptional, ACopyOfNothingIsNothing) {
  const DynOptional<int> nothing;
  const DynOptional<int> copy = nothing;
  EXPECT_FALSE(copy);
  DynOptional<int> value(3);
  value = nothing;
  EXPECT_FALSE(value);
}

TEST(DynOptional, AMoveTakesTheBlock) {
  DynOptional<int> value(3);
  const int* block = &*value;
  DynOptional<int> moved = std::move(value);
  EXPECT_EQ(&*moved, block);
  EXPECT_FALSE(value);  // NOLINT(bugprone-use-after-move): absent is what a move leaves
  DynOptional<int> assigned(4);
  assigned = std::move(moved);
  EXPECT_EQ(&*assigned, block);
}

TEST(DynOptional, AssigningItselfChangesNothing) {
  DynOptional<int> value(3);
  const DynOptional<int>& same = value;
  value = same;
  EXPECT_EQ(*value, 3);
}

TEST(DynOptional, ComparesPresenceFirstAndThenTheValue) {
  EXPECT_EQ(DynOptional<int>(), DynOptional<int>());
  EXPECT_EQ(DynOptional<int>(3), DynOptional<int>(3));
  EXPECT_FALSE(DynOptional<int>(3) == DynOptional<int>(4));
  EXPECT_FALSE(DynOptional<int>(0) == DynOptional<int>());
  EXPECT_FALSE(DynOptional<int>() == DynOptional<int>(0));
}

TEST(DynOptional, ResetsAndReadsThroughItsArrow) {
  DynOptional<std::string> value(std::string("edge"));
  EXPECT_EQ(value->size(), 4u);
  EXPECT_EQ(std::as_const(value)->size(), 4u);
  EXPECT_EQ(printed(value), "edge");
  value.reset();
  EXPECT_FALSE(value);
}

}  // namespace
}  // namespace optionalTest
