// What differs between two lists of leaves, and what must be deleted.
#include "host/LeafDiff.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Rok/Rok.h"

namespace host::leafDiffTest {
namespace {

using testing::ElementsAre;

std::vector<LeafText> leaves(std::initializer_list<const char*> paths) {
  std::vector<LeafText> leaves;
  for (const char* path : paths) leaves.push_back({path, "1"});
  sortLeaves(leaves);
  return leaves;
}

std::vector<std::string> lines(const std::vector<LeafText>& before,
                               const std::vector<LeafText>& after) {
  std::vector<std::string> lines;
  for (const LeafChange& change : leafChanges(before, after)) lines.push_back(changeLine(change));
  return lines;
}

std::vector<std::string> deleted(const std::vector<LeafText>& before,
                                 const std::vector<LeafText>& after) {
  return deletedNodes(leafChanges(before, after), after);
}

// ===== Changes

TEST(LeafDifferences, OfTheSameLeavesAreNone) {
  EXPECT_THAT(lines({{"/a", "1"}}, {{"/a", "1"}}), ElementsAre());
  EXPECT_THAT(lines({}, {}), ElementsAre());
}

TEST(LeafDifferences, SayWhatWentCameAndChangedInTheOrderOfThePaths) {
  EXPECT_THAT(lines({{"/a", "1"}, {"/b", "\"x\""}, {"/d", "[1]"}},
                    {{"/b", "\"y\""}, {"/c", "2"}, {"/d", "[1]"}, {"/e", "true"}}),
              ElementsAre("- /a 1", "~ /b \"x\" -> \"y\"", "+ /c 2", "+ /e true"));
}

TEST(LeafDifferences, AreALineEachWhateverIsInAKey) {
  EXPECT_THAT(lines({{"/a[b=\n]", "\"\\n\""}}, {}), ElementsAre("- /a[b=\\u000a] \"\\n\""));
}

TEST(LeafDifferences, AsJsonAreOneLine) {
  const std::vector<LeafText> before{{"/a/b/c", "1"}, {"/a/d/e", "1"}};
  const std::vector<LeafText> after{{"/a/d/e", "[1,2]"}, {"/a/f/\"", "\"x\""}};
  EXPECT_EQ(changesJson(leafChanges(before, after), after),
            R"({"delete":["/a/b"],"update":{"/a/d/e":[1,2],"/a/f/\"":"x"}})");
  EXPECT_EQ(changesJson({}, {}), R"({"delete":[],"update":{}})");
}

// ===== Deletions

TEST(LeafDifferences, DeleteTheHighestNodeThatIsNotThereAnyMore) {
  const auto all = leaves({"/q/l/e[k=1]/c/x", "/q/l/e[k=1]/d/i/x", "/q/l/e[k=1]/d/i/y",
                           "/q/l/e[k=1]/d/j/x", "/q/l/e[k=1]/k"});
  EXPECT_THAT(deleted(all, leaves({"/q/l/e[k=1]/c/x", "/q/l/e[k=1]/k"})),
              ElementsAre("/q/l/e[k=1]/d"));
  EXPECT_THAT(deleted(all, leaves({"/q/l/e[k=1]/c/x", "/q/l/e[k=1]/d/j/x", "/q/l/e[k=1]/k"})),
              ElementsAre("/q/l/e[k=1]/d/i"));
  EXPECT_THAT(deleted(all, leaves({"/q/l/e[k=1]/c/x", "/q/l/e[k=1]/d/i/x", "/q/l/e[k=1]/d/j/x",
                                   "/q/l/e[k=1]/k"})),
              ElementsAre("/q/l/e[k=1]/d/i/y"));
}

TEST(LeafDifferences, DeleteNoNodeAboveAnOutermostEntry) {
  EXPECT_THAT(deleted(leaves({"/q/l/e[k=1]/k", "/q/l/e[k=2]/k", "/q/l/e[k=2]/m/n[j=1]/j"}), {}),
              ElementsAre("/q/l/e[k=1]", "/q/l/e[k=2]"));
}

TEST(LeafDifferences, DeleteOutsideListsNoNodeAboveTheChildrenOfTheRoot) {
  EXPECT_THAT(deleted(leaves({"/q/p/w/c/x", "/q/p/w/c/y"}), {}), ElementsAre("/q/p"));
  EXPECT_THAT(deleted(leaves({"/q/p/w/c/x", "/q/p/w/c/y"}), leaves({"/q/p/w/c/y"})),
              ElementsAre("/q/p/w/c/x"));
}

TEST(LeafDifferences, DeleteEntriesWithinAnEntryThatStays) {
  EXPECT_THAT(deleted(leaves({"/q/e[k=1]/k", "/q/e[k=1]/m/n[j=1]/j", "/q/e[k=1]/m/n[j=2]/j"}),
                      leaves({"/q/e[k=1]/k", "/q/e[k=1]/m/n[j=2]/j"})),
              ElementsAre("/q/e[k=1]/m/n[j=1]"));
}

TEST(LeafDifferences, TakeNoNodeForAnotherThatItBeginsWith) {
  EXPECT_THAT(deleted(leaves({"/q/e[k=1]/ab/x", "/q/e[k=1]/a/x", "/q/e[k=1]/k"}),
                      leaves({"/q/e[k=1]/ab/x", "/q/e[k=1]/k"})),
              ElementsAre("/q/e[k=1]/a"));
  EXPECT_THAT(deleted(leaves({"/q/a-b/x", "/q/a/x"}), {}), ElementsAre("/q/a", "/q/a-b"))
      << "sorted as nodes";
}

TEST(LeafDifferences, ReadSlashesAndBracketsInKeysAsKeys) {
  const std::string entry = R"(/q/e[k=a/b[c\]/\\])";
  EXPECT_THAT(deleted(leaves({(entry + "/k").c_str(), "/q/e[k=a]/k"}), leaves({"/q/e[k=a]/k"})),
              ElementsAre(entry));
}

TEST(LeafDifferences, KeepAnEntryOfWhichOnlyLeavesChange) {
  EXPECT_THAT(deleted({{"/q/e[k=1]/x", "1"}}, {{"/q/e[k=1]/x", "2"}}), ElementsAre());
}

// ===== Applied

// As a consumer does it: what is at or below a deleted node goes, then come the updates.
std::vector<LeafText> applied(std::vector<LeafText> leaves, const std::vector<LeafText>& after) {
  const auto changes = leafChanges(leaves, after);
  const auto old = leaves;
  for (const std::string& node : deletedNodes(leafChanges(old, after), after)) {
    std::erase_if(leaves, [&](const LeafText& leaf) {
      return leaf.path == node || leaf.path.starts_with(node + '/');
    });
  }
  for (const LeafChange& change : leafChanges(old, after)) {
    if (change.after == nullptr) continue;
    std::erase_if(leaves, [&](const LeafText& leaf) { return leaf.path == change.after->path; });
    leaves.push_back(*change.after);
  }
  sortLeaves(leaves);
  return leaves;
}

TEST(LeafDifferences, MakeTheSecondOfTheFirst) {
  const std::vector<std::string> paths{"/q/a/x",
                                       "/q/a-/x",
                                       "/q/a/b/c",
                                       "/q/l/e[k=1]/k",
                                       "/q/l/e[k=1]/c/x",
                                       "/q/l/e[k=1]/c-/x",
                                       "/q/l/e[k=1/]/k",
                                       "/q/l/e[k=1]/c/m/n[j=1]/j",
                                       "/q/l/e[k=1]/c/m/n[j=2]/j",
                                       "/r/e[k=1]/k"};
  std::uint32_t seed = 1;
  const auto chance = [&] { return (seed = seed * 1664525u + 1013904223u) >> 30; };
  for (int round = 0; round < 2000; ++round) {
    std::vector<LeafText> lists[2];
    for (auto& list : lists) {
      for (const std::string& path : paths) {
        if (const auto value = chance(); value > 0) list.push_back({path, std::to_string(value)});
      }
      sortLeaves(list);
    }
    ASSERT_EQ(applied(lists[0], lists[1]), lists[1]) << round;
  }
}

TEST(LeafDifferences, DeleteEachEntryWithinAListWhoseSurroundingsWent) {
  const std::string list = "/qos/classifiers/classifier[name=c]/terms/term";
  const std::vector<LeafText> before{
      {list + "[id=a]/config/id", "1"}, {list + "[id=a]/id", "1"}, {list + "[id=b]/id", "1"}};
  EXPECT_THAT(deletedNodes(leafChanges(before, {}), {}, Subtree(list)),
              ElementsAre(list + "[id=a]", list + "[id=b]"));
}

}  // namespace
}  // namespace host::leafDiffTest
