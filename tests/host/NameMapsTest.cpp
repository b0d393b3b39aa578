// The sections "forwarding-groups" and "queue-names", each one native object, and "tc-to-tx-queue":
// how they are mounted, and what each change writes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostDevice.h"

namespace host::nameMapsTest {
namespace {

using support::HostDevice;
using support::hostFault;
using support::hostOperation;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* device = R"({
    "forwarding-groups": {"voice": 5, "video": 4},
    "queue-names": {"high": 7, "low": 1},
    "tc-to-tx-queue": {"0": 3, "16": 255}})";

std::string faultOf(const std::string& document) {
  return hostFault([&] { HostDevice d(document); });
}

const auto& groups(const HostDevice& d) {
  return d.native.qosConfig->forwardingGroupNameToTcMap()->forwardingGroupNameToTc();
}
const auto& queues(const HostDevice& d) {
  return d.native.qosConfig->queueNameToTxQueueIdMap()->queueNameToTxQueueId();
}
int queueOf(const HostDevice& d, unsigned char tc) {
  return d.native.qosConfig->tcToTxQueueMap(tc).value;
}

// ===== The document

TEST(NameMaps, AreAlwaysMounted) {
  for (const char* document : {"{}", R"({"forwarding-groups": {}, "queue-names": {}})"}) {
    const HostDevice d(document);
    ASSERT_TRUE(d.native.qosConfig->forwardingGroupNameToTcMap());
    ASSERT_TRUE(d.native.qosConfig->queueNameToTxQueueIdMap());
    EXPECT_EQ(groups(d).members(), 0u);
    EXPECT_EQ(queues(d).members(), 0u);
  }
}

TEST(NameMaps, HoldANumberForEachName) {
  const HostDevice d(device);
  EXPECT_EQ(groups(d).members(), 2u);
  EXPECT_EQ(groups(d).find("voice")->value, 5);
  EXPECT_EQ(queues(d).members(), 2u);
  EXPECT_EQ(queues(d).find("high")->value, 7);
}

TEST(NameMaps, TakeAnyByte) {
  const HostDevice d(R"({"forwarding-groups": {"": 17, "a/b": 255, "z": 0},
                         "queue-names": {"": 16, "a/b": 255, "z": 0}})");
  EXPECT_EQ(groups(d).find("")->value, 17);
  EXPECT_EQ(groups(d).find("a/b")->value, 255);
  EXPECT_EQ(queues(d).find("")->value, 16);
  EXPECT_EQ(queues(d).find("a/b")->value, 255);
}

TEST(NameMaps, RefuseWhatTheyCannotHold) {
  for (const std::string section : {"forwarding-groups", "queue-names"}) {
    const auto fault = [&](const std::string& value) {
      return faultOf("{\"" + section + "\": " + value + "}");
    };
    const std::string place = "/" + section;
    EXPECT_EQ(fault("[]"), place + ": expected an object, not an array");
    EXPECT_EQ(fault("null"), place + ": null is never a value here: expected an object");
    EXPECT_EQ(fault(R"({"a": 1, "a": 1})"), place + "/a: the same key twice");
    EXPECT_EQ(fault(R"({"a": 256})"), place + "/a: expected a whole number from 0 to 255, not 256");
    EXPECT_EQ(fault(R"({"a": "1"})"),
              place + "/a: expected a whole number from 0 to 255, not \"1\"");
    EXPECT_EQ(fault(R"({"a": null})"),
              place + "/a: null is never a value here: expected a whole number from 0 to 255");
  }
}

// ===== One name

TEST(NameMaps, ANameIsAssignedInTheMapThatIsThere) {
  HostDevice d(device);
  const auto map = d.native.qosConfig->forwardingGroupNameToTcMap();
  for (const char* op : {"add", "replace"}) {
    EXPECT_THAT(d.heardFrom(op, "/forwarding-groups/voice", "5"), IsEmpty());
  }
  EXPECT_THAT(d.heardFrom("add", "/forwarding-groups/data", "5"),
              ElementsAre("forwardingGroupNameToTc data"));
  EXPECT_THAT(d.heardFrom("replace", "/forwarding-groups/voice", "255"),
              ElementsAre("forwardingGroupNameToTc voice"));
  EXPECT_THAT(d.heardFrom("remove", "/forwarding-groups/video"),
              ElementsAre("forwardingGroupNameToTc video"));
  EXPECT_EQ(d.native.qosConfig->forwardingGroupNameToTcMap(), map);
  EXPECT_EQ(groups(d).find("voice")->value, 255);
  EXPECT_EQ(groups(d).find("video"), nullptr);
  EXPECT_EQ(d.native.qosConfig->forwardingGroupNameToTcMap()->firstName(5)->name, "data");
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(NameMaps, AQueueNameIsAssignedInTheMapThatIsThere) {
  HostDevice d(device);
  const auto map = d.native.qosConfig->queueNameToTxQueueIdMap();
  EXPECT_THAT(d.heardFrom("add", "/queue-names/high", "7"), IsEmpty());
  EXPECT_THAT(d.heardFrom("add", "/queue-names/best", "7"),
              ElementsAre("queueNameToTxQueueId best"));
  EXPECT_THAT(d.heardFrom("replace", "/queue-names/high", "6"),
              ElementsAre("queueNameToTxQueueId high"));
  EXPECT_THAT(d.heardFrom("remove", "/queue-names/low"), ElementsAre("queueNameToTxQueueId low"));
  EXPECT_EQ(d.native.qosConfig->queueNameToTxQueueIdMap(), map);
  EXPECT_EQ(queues(d).find("high")->value, 6);
  EXPECT_THAT(d.reports, IsEmpty());
}

// ===== A map as a whole

TEST(NameMaps, AsAWholeAreInstalledAsAnotherObject) {
  for (const char* op : {"add", "replace"}) {
    HostDevice d(device);
    const auto before = d.native.qosConfig->forwardingGroupNameToTcMap();
    EXPECT_THAT(d.heardFrom(op, "/forwarding-groups", R"({"voice": 5, "video": 4})"),
                ElementsAre("forwardingGroupNameToTcMap"));
    EXPECT_NE(d.native.qosConfig->forwardingGroupNameToTcMap(), before);
    EXPECT_EQ(groups(d).members(), 2u);
    EXPECT_THAT(d.heardFrom(op, "/queue-names", R"({"q": 2})"),
                ElementsAre("queueNameToTxQueueIdMap"));
    EXPECT_EQ(queues(d).members(), 1u);
    EXPECT_EQ(queues(d).find("q")->value, 2);
  }
}

TEST(NameMaps, RemovedAreAnotherEmptyObject) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("remove", "/forwarding-groups"),
              ElementsAre("forwardingGroupNameToTcMap"));
  EXPECT_THAT(d.heardFrom("remove", "/queue-names"), ElementsAre("queueNameToTxQueueIdMap"));
  ASSERT_TRUE(d.native.qosConfig->forwardingGroupNameToTcMap());
  ASSERT_TRUE(d.native.qosConfig->queueNameToTxQueueIdMap());
  EXPECT_EQ(groups(d).members(), 0u);
  EXPECT_EQ(queues(d).members(), 0u);
  EXPECT_THAT(d.heardFrom("remove", "/forwarding-groups"),
              ElementsAre("forwardingGroupNameToTcMap"));
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(NameMaps, LaterOperationsOfALineWriteIntoTheNewObject) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("[" + hostOperation("replace", "/forwarding-groups", R"({"a": 1})") +
                          "," + hostOperation("add", "/forwarding-groups/b", "2") + "," +
                          hostOperation("test", "/forwarding-groups", R"({"a": 1, "b": 2})") + "," +
                          hostOperation("remove", "/forwarding-groups/a") + "]"),
              ElementsAre("forwardingGroupNameToTcMap", "forwardingGroupNameToTc b",
                          "forwardingGroupNameToTc a"));
  EXPECT_EQ(groups(d).members(), 1u);
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(NameMaps, RefuseChangesThatDoNotFit) {
  HostDevice d(device);
  EXPECT_EQ(d.reportOf("replace", "/forwarding-groups/none", "1"),
            "refused: /forwarding-groups/none: nothing is there");
  EXPECT_EQ(d.reportOf("remove", "/queue-names/none"),
            "refused: /queue-names/none: nothing is there");
  EXPECT_EQ(d.reportOf("add", "/queue-names/x", "256"),
            "refused: /queue-names/x: expected a whole number from 0 to 255, not 256");
  EXPECT_EQ(d.reportOf("add", "/queue-names", R"({"x": 256})"),
            "refused: /queue-names: at /x: expected a whole number from 0 to 255, not 256");
  EXPECT_EQ(d.reportOf("test", "/queue-names", R"({"low": 1})"),
            "refused: /queue-names: test failed: at /high: expected nothing, and 7 is there");
  EXPECT_EQ(d.reportOf("test", "/queue-names/low", "1"), "");
}

// ===== tc-to-tx-queue

TEST(TcToTxQueue, HoldsAQueueForEachTrafficClass) {
  const HostDevice d(device);
  EXPECT_EQ(queueOf(d, 0), 3);
  EXPECT_EQ(queueOf(d, 16), 255);
  for (unsigned char tc = 1; tc < 16; ++tc) EXPECT_EQ(queueOf(d, tc), 16);
}

TEST(TcToTxQueue, RefusesWhatItCannotHold) {
  for (const char* tc : {"17", "255", "00", "-1", "x", ""}) {
    EXPECT_EQ(faultOf("{\"tc-to-tx-queue\": {\"" + std::string(tc) + "\": 1}}"),
              "/tc-to-tx-queue/" + std::string(tc) +
                  ": this key is not a traffic class: a number from 0 to 16");
  }
  EXPECT_EQ(faultOf(R"({"tc-to-tx-queue": {"0": 256}})"),
            "/tc-to-tx-queue/0: expected a whole number from 0 to 255, not 256");
  EXPECT_EQ(faultOf(R"({"tc-to-tx-queue": {"0": 1, "0": 1}})"),
            "/tc-to-tx-queue/0: the same key twice");
  EXPECT_EQ(faultOf(R"({"tc-to-tx-queue": [1]})"),
            "/tc-to-tx-queue: expected an object, not an array");
}

TEST(TcToTxQueue, ATrafficClassIsAlwaysThere) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("replace", "/tc-to-tx-queue/5", "2"), ElementsAre("tcToTxQueueMap 5"));
  EXPECT_THAT(d.heardFrom("add", "/tc-to-tx-queue/5", "2"), IsEmpty());
  EXPECT_THAT(d.heardFrom("remove", "/tc-to-tx-queue/5"), ElementsAre("tcToTxQueueMap 5"));
  EXPECT_EQ(queueOf(d, 5), 16);
  EXPECT_THAT(d.heardFrom("remove", "/tc-to-tx-queue/5"), IsEmpty());
  EXPECT_EQ(d.reportOf("test", "/tc-to-tx-queue/5", "16"), "");
  EXPECT_EQ(d.reportOf("test", "/tc-to-tx-queue", R"({"16": 255, "0": 3, "4": 16})"), "");
  EXPECT_EQ(d.reportOf("add", "/tc-to-tx-queue/17", "1"),
            "refused: /tc-to-tx-queue/17: \"17\" is not a traffic class: a number from 0 to 16");
}

TEST(TcToTxQueue, AsAWholeLosesWhatIsLeftOutFirst) {
  for (const char* op : {"add", "replace"}) {
    HostDevice d(device);
    EXPECT_THAT(d.heardFrom(op, "/tc-to-tx-queue", R"({"5": 1, "0": 4, "2": 16})"),
                ElementsAre("tcToTxQueueMap 16", "tcToTxQueueMap 5", "tcToTxQueueMap 0"));
    EXPECT_EQ(queueOf(d, 16), 16);
    EXPECT_EQ(queueOf(d, 5), 1);
    EXPECT_EQ(queueOf(d, 0), 4);
  }
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("remove", "/tc-to-tx-queue"),
              ElementsAre("tcToTxQueueMap 0", "tcToTxQueueMap 16"));
}

}  // namespace
}  // namespace host::nameMapsTest
