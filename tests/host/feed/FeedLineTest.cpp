#include "host/feed/FeedLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace host::feedLineTest {
namespace {

LeafChanges someChanges() {
  LeafChanges changes;
  changes.deleted = {"/a", "/b[name=\"]"};
  changes.updated = {{"/c", LeafType::uint8, std::uint64_t{47}},
                     {"/d", LeafType::uint64, std::uint64_t{1000}},
                     {"/e", LeafType::boolean, true},
                     {"/f", LeafType::string, std::string("x")},
                     {"/g", LeafType::uint8List, std::vector<unsigned>{1, 2}}};
  return changes;
}

TEST(FeedLine, HasDeletionsAndThenUpdatesAsTheDocumentWritesTheirValues) {
  EXPECT_EQ(feedLine({3}, someChanges()),
            R"({"line":3,"delete":["/a","/b[name=\"]"],)"
            R"("update":{"/c":47,"/d":"1000","/e":true,"/f":"x","/g":[1,2]}})");
}

TEST(FeedLine, HasEmptyMembersForNoChange) {
  EXPECT_EQ(feedLine({12345678901}, {}), R"({"line":12345678901,"delete":[],"update":{}})");
}

TEST(FeedLine, SaysThatALineWasRefused) {
  EXPECT_EQ(feedLine({4, {}, true}, {}), R"({"line":4,"refused":true,"delete":[],"update":{}})");
}

TEST(FeedLine, HasTheEpochWhereOneIsGiven) {
  EXPECT_EQ(feedLine({0, "2"}, {}), R"({"line":0,"epoch":"2","delete":[],"update":{}})");
}

TEST(FeedLine, GoesToASinkPieceByPiece) {
  std::string text;
  EXPECT_EQ(feedLine({3}, someChanges(), [&](std::string_view piece) { text += piece; }), "");
  EXPECT_EQ(text, feedLine({3}, someChanges()));
}

TEST(FeedEpoch, IsAnotherOneAtEachCall) {
  EXPECT_THAT(newEpoch(), testing::MatchesRegex("[0-9-]{10}T[0-9:]{8}Z-[0-9a-f]{16}"));
  EXPECT_NE(newEpoch(), newEpoch());
}

}  // namespace
}  // namespace host::feedLineTest
