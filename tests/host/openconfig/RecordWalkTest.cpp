// Records one after the other, and by their keys.
#include "host/openconfig/RecordWalk.h"

#include <gtest/gtest.h>

#include "host/openconfig/LeafPath.h"
#include "host/openconfig/Leaves.h"
#include "tests/support/HostModel.h"

namespace host::recordWalkTest {
namespace {

std::string pathOf(const RecordAt& at) {
  std::string path;
  appendEntryPath(path, at.kind, at.keys);
  return path;
}

using Which = EntriesWanted::Which;

// Of the records under some keys, each of which stands for all when it is "*".
std::vector<std::string> pathsOf(const Model& model, std::initializer_list<std::string_view> keys) {
  const std::vector<std::string_view> wanted(keys);
  std::vector<std::string> paths;
  const auto choose = [&](const RecordKind& kind, std::span<const std::string_view> above) {
    if (!kind.isList()) return EntriesWanted{Which::all};
    if (above.size() == wanted.size()) return EntriesWanted{};
    const std::string_view key = wanted[above.size()];
    return key == "*" ? EntriesWanted{Which::all} : EntriesWanted{Which::one, key};
  };
  eachRecord(model, View(), choose, [&](const RecordAt& at) { paths.push_back(pathOf(at)); });
  return paths;
}

using Paths = std::vector<std::string>;

TEST(RecordWalks, HaveTheLeavesOfTheModelInAllViews) {
  const support::HostModel built = support::hostFullModel();
  for (const ViewOptions& options : support::hostAllViews()) {
    const View view(options);
    std::vector<LeafText> leaves;
    eachRecord(built.model, view, [&](const RecordAt& at) {
      for (const View::Row& row : view.rows(at.kind)) {
        const LeafValue value = at.kind.read(at.record, row.leaf, at.keys, {});
        if (!isAbsent(value))
          leaves.push_back({pathOf(at) + '/' + row.path, leafText(row.type, value)});
      }
    });
    sortLeaves(leaves);
    EXPECT_EQ(leaves, leavesOf(built.model, view));
  }
}

TEST(RecordWalks, HaveAnEntryBeforeWhatItHolds) {
  const support::HostModel built = support::hostFullModel();
  std::vector<std::string> paths;
  eachRecord(built.model, View(), [&](const RecordAt& at) { paths.push_back(pathOf(at)); });
  ASSERT_GE(paths.size(), 4u);
  EXPECT_EQ(Paths(paths.begin(), paths.begin() + 4),
            (Paths{"/qos/classifiers/classifier[name=c[1\\]]",
                   "/qos/classifiers/classifier[name=c[1\\]]/terms/term[id=plain]",
                   "/qos/classifiers/classifier[name=c[1\\]]/terms/term[id=t\\\\]",
                   "/qos/forwarding-groups/forwarding-group[name=f]"}));
}

TEST(RecordWalks, GoToTheEntriesThatAreWanted) {
  const support::HostModel built = support::hostFullModel();
  const std::string policy = "/qos/scheduler-policies/scheduler-policy[name=s]";
  const std::string one = policy + "/schedulers/scheduler[sequence=1]";
  const std::string watchdog = "/qos/qosoc-augments:pfc/watchdog";
  EXPECT_EQ(
      pathsOf(built.model, {"s", "1", "i"}),
      (Paths{watchdog, policy, one, one + "/inputs/input[id=i]", one + "/one-rate-two-color"}));
  EXPECT_EQ(pathsOf(built.model, {"s", "10"}),
            (Paths{watchdog, policy, policy + "/schedulers/scheduler[sequence=10]"}));
  EXPECT_EQ(pathsOf(built.model, {"s", "*"}).size(), 5u);
  EXPECT_EQ(pathsOf(built.model, {"s", "x"}), (Paths{watchdog, policy}));
  EXPECT_EQ(pathsOf(built.model, {"t", "1"}), Paths{watchdog});
  EXPECT_EQ(pathsOf(built.model, {}), Paths{watchdog});
}

TEST(RecordWalks, LeaveOutWhatTheDocumentCannotHold) {
  support::HostModel built;
  built.forwardingGroupIs("f", "q");
  built.forwardingGroupIs("\x01", "q");
  EXPECT_EQ(pathsOf(built.model, {"*"}), Paths{"/qos/forwarding-groups/forwarding-group[name=f]"});
  EXPECT_EQ(pathsOf(built.model, {"\x01"}), Paths());
}

}  // namespace
}  // namespace host::recordWalkTest
