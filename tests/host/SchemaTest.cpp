#include "host/Schema.h"

#include <gtest/gtest.h>

namespace host::schemaTest {
namespace {

constexpr Name colours[] = {{"red", 1}, {"blue", 20}};

TEST(Schema, KnowsTheNameOfANumberThatHasOne) {
  for (const Schema& schema :
       {Schema::named("a colour", colours), Schema::nameOrNumber("a colour", colours),
        Schema::exactly(Schema::named("a colour", colours), Value(std::uint64_t{1}), "red")}) {
    ASSERT_NE(schema.nameOf(20), nullptr);
    EXPECT_EQ(schema.nameOf(20)->text, "blue");
    EXPECT_EQ(schema.nameOf(2), nullptr);
  }
  EXPECT_EQ(Schema::number(255).nameOf(1), nullptr);
}

TEST(Key, SpellsANumberByItsName) {
  const Key key = Key::named("a colour", colours);
  EXPECT_EQ(key.spelled("20"), "blue");
  EXPECT_EQ(key.spelled("2"), "2");
  EXPECT_EQ(*key.canonical(key.spelled("1")), "1");
}

TEST(Key, SpellsAllOthersAsTheyAre) {
  EXPECT_EQ(Key::number("a number", 30).spelled("20"), "20");
  EXPECT_EQ(Key::name().spelled("20"), "20");
}

TEST(Key, PutsNumbersInTheirOwnOrderAndNamesInThatOfTheirBytes) {
  const Key name = Key::name();
  for (const Key& key : {Key::number("a number", 300), Key::named("a colour", colours)}) {
    EXPECT_TRUE(key.isBefore("9", "10"));
    EXPECT_TRUE(key.isBefore("10", "20"));
    EXPECT_FALSE(key.isBefore("10", "9"));
    EXPECT_FALSE(key.isBefore("10", "10"));
  }
  EXPECT_TRUE(name.isBefore("10", "9"));
  EXPECT_FALSE(name.isBefore("b", "aa"));
}

}  // namespace
}  // namespace host::schemaTest
