// That this program is as hostile as it is meant to be: without it, the death tests beside it would
// prove nothing about a release.
#include "ForeignRapidJson.h"

#include <gtest/gtest.h>

#include "QosOpenConfig/QosOpenConfigHelper.h"

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

// RapidJSON's search by vectors would let it pass.
TEST(ForeignRapidJson, LeavesTheCodecStrictAboutControlCharacters) {
  const std::string name = "a name of more than sixteen bytes, \x1a and then some more of them";
  EXPECT_EQ(deserializeJsonComment(R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":")" +
                                   name + R"("}}})"),
            QosOc::CommentInfo());
}

}  // namespace
