#include "host/Value.h"

#include <gtest/gtest.h>

namespace host::valueTest {
namespace {

Value number(std::uint64_t n) { return Value(n); }

TEST(Value, ComparesObjectsWithoutTheirOrder) {
  const Value a(Value::Object{{"x", number(1)}, {"y", Value("t")}});
  const Value b(Value::Object{{"y", Value("t")}, {"x", number(1)}});
  EXPECT_EQ(a, b);
}

TEST(Value, DiffersByAMemberAValueOrAKind) {
  const Value object(Value::Object{{"x", number(1)}});
  EXPECT_FALSE(object == Value(Value::Object{{"x", number(2)}}));
  EXPECT_FALSE(object == Value(Value::Object{{"y", number(1)}}));
  EXPECT_FALSE(object == Value(Value::Object{}));
  EXPECT_FALSE(object == Value(Value::List{number(1)}));
  EXPECT_FALSE(number(1) == Value("1"));
  EXPECT_FALSE(number(0) == Value());
}

TEST(Value, PutsAMemberInOrAnotherValueIntoOne) {
  Value object(Value::Object{{"x", number(1)}});
  object.put("y", number(2));
  object.put("x", number(3));
  EXPECT_EQ(object, Value(Value::Object{{"x", number(3)}, {"y", number(2)}}));
  EXPECT_EQ(object.object().size(), 2u);
}

TEST(Value, ComparesListsInOrder) {
  EXPECT_EQ(Value(Value::List{number(1), number(2)}), Value(Value::List{number(1), number(2)}));
  EXPECT_FALSE(Value(Value::List{number(1), number(2)}) ==
               Value(Value::List{number(2), number(1)}));
}

TEST(Value, FindsAMemberByItsKey) {
  const Value object(Value::Object{{"x", number(1)}, {"y", Value("t")}});
  EXPECT_EQ(object.at("y").text(), "t");
  EXPECT_EQ(object.find("z"), nullptr);
}

}  // namespace
}  // namespace host::valueTest
