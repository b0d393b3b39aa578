#include "host/openconfig/LeafPath.h"

#include <gtest/gtest.h>

namespace host::leafPathTest {
namespace {

std::string pathOf(const RecordKind& kind, const Keys& keys) {
  std::string path;
  appendEntryPath(path, kind, keys);
  return path;
}

std::string keyed(std::string_view value) {
  std::string path = "queue";
  appendKey(path, "name", value);
  return path;
}

TEST(LeafPaths, NameEachEntryByItsKey) {
  EXPECT_EQ(pathOf(kinds::queue, {"q"}), "/qos/queues/queue[name=q]");
  EXPECT_EQ(pathOf(kinds::term, {"edge-in", "voice"}),
            "/qos/classifiers/classifier[name=edge-in]/terms/term[id=voice]");
  EXPECT_EQ(pathOf(kinds::schedulerInput, {"wan", "7", "i"}),
            "/qos/scheduler-policies/scheduler-policy[name=wan]/schedulers/scheduler[sequence=7]"
            "/inputs/input[id=i]");
}

TEST(LeafPaths, GiveAContainerNoKey) {
  EXPECT_EQ(pathOf(kinds::pfcWatchdog, {}), "/qos/qosoc-augments:pfc/watchdog");
  EXPECT_EQ(pathOf(kinds::schedulerRate, {"wan", "7"}),
            "/qos/scheduler-policies/scheduler-policy[name=wan]/schedulers/scheduler[sequence=7]"
            "/one-rate-two-color");
  EXPECT_EQ(pathOf(kinds::outputPfc, {"Ethernet1"}),
            "/qos/interfaces/interface[interface-id=Ethernet1]/output/qosoc-augments:pfc");
}

TEST(LeafPaths, EscapeTheBracketThatClosesAndTheBackslashInAKey) {
  EXPECT_EQ(keyed(""), "queue[name=]");
  EXPECT_EQ(keyed("Ethernet1/1"), "queue[name=Ethernet1/1]");
  EXPECT_EQ(keyed("[a]"), "queue[name=[a\\]]");
  EXPECT_EQ(keyed("]]\\"), "queue[name=\\]\\]\\\\]");
  EXPECT_EQ(keyed("a=b \"c\"\n"), "queue[name=a=b \"c\"\n]");
}

TEST(LeafPaths, AreAppendedStepByStep) {
  std::string path;
  appendEntry(path, kinds::classifier, "c");
  appendEntry(path, kinds::term, "t");
  appendBelow(path, kinds::term.leaves[0].path);
  EXPECT_EQ(path,
            "/qos/classifiers/classifier[name=c]/terms/term[id=t]/actions/config/target-group");
}

}  // namespace
}  // namespace host::leafPathTest
