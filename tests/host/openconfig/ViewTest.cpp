// What each option of a view shows and hides.
#include "host/openconfig/View.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostModel.h"

namespace host::viewTest {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

std::vector<std::string> paths(const View& view, const RecordKind& kind) {
  std::vector<std::string> paths;
  for (const View::Row& row : view.rows(kind)) paths.push_back(row.path);
  return paths;
}

std::vector<std::string> tablePaths(const RecordKind& kind) {
  std::vector<std::string> paths;
  for (const RecordKind::Row& row : kind.leaves) paths.emplace_back(row.path);
  return paths;
}

template <class Check>
void eachKind(const View& view, std::span<const RecordKind* const> kinds, const Check& check) {
  for (const RecordKind* kind : kinds) {
    check(*kind);
    eachKind(view, view.children(*kind), check);
  }
}

TEST(Views, ShowTheTablesUnlessAskedForMore) {
  const View view;
  EXPECT_EQ(std::vector(view.outermost().begin(), view.outermost().end()),
            std::vector(outermostKinds().begin(), outermostKinds().end()));
  std::size_t kinds = 0;
  eachKind(view, view.outermost(), [&](const RecordKind& kind) {
    ++kinds;
    if (&kind == &host::kinds::interface) return;
    EXPECT_EQ(paths(view, kind), tablePaths(kind));
  });
  EXPECT_EQ(kinds, 15u);
  EXPECT_THAT(paths(view, host::kinds::interface),
              ElementsAre("config/interface-id", "interface-id"));
}

TEST(Views, StandInTheOrderOfTheirPathsWhateverTheyShow) {
  for (const ViewOptions& options : support::hostAllViews()) {
    const View view(options);
    eachKind(view, view.outermost(), [&](const RecordKind& kind) {
      const auto rows = view.rows(kind);
      EXPECT_TRUE(std::is_sorted(rows.begin(), rows.end(), [](const auto& a, const auto& b) {
        return pathLess(a.path, b.path);
      })) << kind.path;
      for (const View::Row& row : rows) EXPECT_EQ(row.type, kind.leaves[row.leaf].type) << row.path;
    });
  }
}

TEST(Views, ShowNoPathTwice) {
  for (const ViewOptions& options : support::hostAllViews()) {
    const View view(options);
    eachKind(view, view.outermost(), [&](const RecordKind& kind) {
      auto all = paths(view, kind);
      EXPECT_EQ(std::unique(all.begin(), all.end()), all.end()) << kind.path;
    });
  }
}

TEST(Views, ShowNoMemberOfTheAugmentingModuleWithoutAugments) {
  const View view({.augments = false});
  EXPECT_THAT(paths(view, kinds::queue), ElementsAre("config/name", "name"));
  EXPECT_THAT(view.outermost(), Not(Contains(&kinds::pfcWatchdog)));
  EXPECT_THAT(view.children(kinds::interface), Not(Contains(&kinds::outputPfc)));
  EXPECT_THAT(view.rows(kinds::outputPfc), testing::IsEmpty());
}

TEST(Views, MirrorEachLeafOfAConfigWithState) {
  const View view({.state = true});
  EXPECT_THAT(paths(view, kinds::classifier),
              ElementsAre("config/name", "config/type", "name", "state/name", "state/type"));
  EXPECT_THAT(paths(view, kinds::term),
              ElementsAre("actions/config/target-group", "actions/state/target-group",
                          "conditions/ipv4/config/dscp", "conditions/ipv4/config/dscp-set",
                          "conditions/ipv4/state/dscp", "conditions/ipv4/state/dscp-set",
                          "conditions/ipv6/config/dscp", "conditions/ipv6/config/dscp-set",
                          "conditions/ipv6/state/dscp", "conditions/ipv6/state/dscp-set",
                          "config/id", "id", "state/id"));
  EXPECT_THAT(paths(view, kinds::outputPfc), ElementsAre("config/priorities", "state/priorities"));
  EXPECT_THAT(paths(view, kinds::queue), Contains("state/qosoc-augments:bandwidth"));
  EXPECT_THAT(paths(view, kinds::queue), Contains("qosoc-augments:ecn/state/weight"));
}

TEST(Views, AMirrorIsReadAsTheLeafThatItMirrors) {
  const View view({.state = true});
  for (const View::Row& row : view.rows(kinds::term)) {
    EXPECT_EQ(row.isMirror, row.path.find("state/") != std::string::npos) << row.path;
    std::string path = row.path;
    if (row.isMirror) path.replace(path.find("state/"), 5, "config");
    EXPECT_EQ(kinds::term.leaves[row.leaf].path, path);
  }
}

TEST(Views, ShowWhereAnInterfaceIsWithInterfaceRef) {
  const View view({.interfaceRef = true});
  EXPECT_EQ(view.outermost().front(), &kinds::referencedInterface);
  EXPECT_EQ(view.outermost().size(), outermostKinds().size() + 1);
  EXPECT_THAT(paths(view, kinds::interface),
              ElementsAre("config/interface-id", "interface-id", "interface-ref/config/interface",
                          "interface-ref/config/subinterface"));
  EXPECT_THAT(paths(view, kinds::referencedInterface), Contains("config/type"));
}

TEST(Views, LeaveALeafOfTheTableInThePlaceOfAMirror) {
  const View view({.state = true, .interfaceRef = true});
  EXPECT_THAT(paths(view, kinds::referencedInterface),
              ElementsAre("config/name", "config/type", "name", "state/admin-status", "state/name",
                          "state/oper-status", "state/type"));
}

}  // namespace
}  // namespace host::viewTest
