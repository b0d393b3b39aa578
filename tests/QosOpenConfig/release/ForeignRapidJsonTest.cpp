// That this program is as hostile as it is meant to be: without it, the death tests beside it would
// prove nothing about a release.
#include "ForeignRapidJson.h"

#include <gtest/gtest.h>

#ifndef NDEBUG
#error "this program is built as a release is"
#endif

namespace {

TEST(ForeignRapidJson, HasNoAssertions) {
  foreign::numberOf("1.5");
  foreign::numberOf("null");
  EXPECT_FALSE(foreign::hasMember("null", "name"));
}

TEST(ForeignRapidJson, WorksAsItsOwnersExpect) {
  EXPECT_EQ(foreign::numberOf("7"), 7u);
  EXPECT_TRUE(foreign::hasMember(R"({"name":1})", "name"));
}

}  // namespace
