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

std::vector<std::string> pathsOf(const Model& model, const RecordKind& kind,
                                 std::initializer_list<std::optional<std::string>> wanted) {
  std::vector<std::string> paths;
  eachRecordOf(model, kind, std::span(wanted.begin(), wanted.size()),
               [&](const RecordAt& at) { paths.push_back(pathOf(at)); });
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
  using Of = Paths;
  EXPECT_EQ(pathsOf(built.model, kinds::scheduler, {"s", "10"}),
            Of{policy + "/schedulers/scheduler[sequence=10]"});
  EXPECT_EQ(pathsOf(built.model, kinds::scheduler, {std::nullopt, "1"}), Of{one});
  EXPECT_EQ(pathsOf(built.model, kinds::scheduler, {"s", std::nullopt}).size(), 2u);
  EXPECT_EQ(pathsOf(built.model, kinds::schedulerRate, {"s", "1"}),
            Of{one + "/one-rate-two-color"});
  EXPECT_EQ(pathsOf(built.model, kinds::schedulerInput, {"s", "1", "i"}),
            Of{one + "/inputs/input[id=i]"});
  EXPECT_EQ(pathsOf(built.model, kinds::scheduler, {"t", "1"}), Of());
  EXPECT_EQ(pathsOf(built.model, kinds::scheduler, {"s", "x"}), Of());
  EXPECT_EQ(pathsOf(built.model, kinds::pfcWatchdog, {}).size(), 1u);
}

TEST(RecordWalks, LeaveOutWhatTheDocumentCannotHold) {
  const support::HostModel built = support::hostFullModel();
  EXPECT_EQ(pathsOf(built.model, kinds::forwardingGroup, {std::nullopt}),
            Paths{"/qos/forwarding-groups/forwarding-group[name=f]"});
  EXPECT_EQ(pathsOf(built.model, kinds::forwardingGroup, {"\x01"}), Paths());
}

}  // namespace
}  // namespace host::recordWalkTest
