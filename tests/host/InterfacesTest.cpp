// The section "interfaces" with its tx queues and PFC: how it is mounted, and what each change
// writes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostDevice.h"

namespace host::interfacesTest {
namespace {

using support::HostDevice;
using support::hostFault;
using support::hostOperation;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* device = R"({"interfaces": {
    "Ethernet1": {
      "tx-queues": {
        "uc-3": {"priority": "strict", "bandwidth": 40, "shape": 1000,
                 "ecn": {"min-threshold": 10, "max-threshold": 20, "threshold-unit": 1,
                         "max-drop-percent": 30, "weight": 5}},
        "mc-3": {}},
      "pfc": {"priorities": 8}},
    "Ethernet2": {}}})";
const std::string queues = "/interfaces/Ethernet1/tx-queues";

std::string faultOf(const std::string& section) {
  return hostFault([&] { HostDevice d(R"({"interfaces": )" + section + "}"); });
}
// The same for a member of the tx queue uc-3.
std::string faultOfQueue(const std::string& queue) {
  return faultOf(R"({"E": {"tx-queues": {"uc-3": )" + queue + "}}}");
}

Rok::Ptr<Qos::IntfConfig> intf(const HostDevice& d, const Rok::String& name) {
  const auto* found = d.native.qosConfig->intfConfig().find(Nerit::IntfId(name));
  return found != nullptr ? *found : nullptr;
}
Rok::Ptr<Qos::TxQueueConfig> queue(const HostDevice& d, unsigned char id = 3,
                                   Qos::QueueType type = Qos::unicast,
                                   const Rok::String& name = "Ethernet1") {
  const auto* found = intf(d, name)->txQueueConfig().find({id, type});
  return found != nullptr ? *found : nullptr;
}

// ===== The document

TEST(Interfaces, HoldTheirTxQueuesAndPfc) {
  const HostDevice d(device);
  EXPECT_EQ(d.native.qosConfig->intfConfig().members(), 2u);
  EXPECT_EQ(intf(d, "Ethernet1")->intfId(), Nerit::IntfId("Ethernet1"));
  EXPECT_EQ(intf(d, "Ethernet1")->txQueueConfig().members(), 2u);
  EXPECT_EQ(intf(d, "Ethernet1")->pfcPortConfig()->priorities(), 8);
  EXPECT_EQ(intf(d, "Ethernet2")->txQueueConfig().members(), 0u);
  EXPECT_FALSE(intf(d, "Ethernet2")->pfcPortConfig());
}

TEST(Interfaces, TxQueuesHoldTheirSettings) {
  const HostDevice d(device);
  const auto q = queue(d);
  EXPECT_EQ(q->txQueue(), (Qos::TxQueue{3, Qos::unicast}));
  EXPECT_EQ(q->priority(), Qos::strictPriority);
  EXPECT_EQ(q->bandwidth().value, 40);
  EXPECT_EQ(q->shape(), 1000u);
  EXPECT_EQ(q->ecnConfig()->settings(), (Qos::EcnWredConfig::Settings{10, 20, 1, 30, 5}));
  EXPECT_FALSE(q->wredConfig());
}

TEST(Interfaces, LeftOutSettingsOfATxQueueAreNotConfigured) {
  const HostDevice d(device);
  const auto q = queue(d, 3, Qos::multicast);
  EXPECT_EQ(q->txQueue(), (Qos::TxQueue{3, Qos::multicast}));
  EXPECT_EQ(q->priority(), Qos::priorityNotConfigured);
  EXPECT_EQ(q->bandwidth().value, 101);
  EXPECT_EQ(q->shape(), 0u);
  EXPECT_FALSE(q->ecnConfig());
  EXPECT_FALSE(q->wredConfig());
}

TEST(Interfaces, LeftOutSettingsOfEcnWredAndPfcHaveDefaults) {
  const HostDevice d(R"({"interfaces": {"Ethernet1": {
      "tx-queues": {"uc-3": {"ecn": {}, "wred": {"weight": 4294967295}}}, "pfc": {}}}})");
  EXPECT_EQ(queue(d)->ecnConfig()->settings(), (Qos::EcnWredConfig::Settings{0, 0, 0, 101, 0}));
  EXPECT_EQ(queue(d)->wredConfig()->settings(),
            (Qos::EcnWredConfig::Settings{0, 0, 0, 101, 4294967295}));
  EXPECT_EQ(intf(d, "Ethernet1")->pfcPortConfig()->priorities(), 0);
}

TEST(Interfaces, TakeAllThatTheNativeFieldsHold) {
  const HostDevice d(R"({"interfaces": {"Ethernet1": {
      "tx-queues": {"uc-255": {"priority": 255, "bandwidth": 255, "shape": 4294967295,
        "wred": {"min-threshold": 4294967295, "max-threshold": 4294967295, "threshold-unit": 255,
                 "max-drop-percent": 255, "weight": 0}},
        "uc-16": {"priority": "unset"}, "mc-0": {"priority": 0}},
      "pfc": {"priorities": 255}}}})");
  EXPECT_EQ(queue(d, 255)->priority(), Qos::TxQueuePriority{255});
  EXPECT_EQ(queue(d, 255)->bandwidth().value, 255);
  EXPECT_EQ(queue(d, 255)->shape(), 4294967295u);
  EXPECT_EQ(queue(d, 255)->wredConfig()->settings(),
            (Qos::EcnWredConfig::Settings{4294967295, 4294967295, 255, 255, 0}));
  EXPECT_EQ(queue(d, 16)->priority(), Qos::priorityNotConfigured);
  EXPECT_EQ(queue(d, 0, Qos::multicast)->priority(), Qos::strictPriority);
  EXPECT_EQ(intf(d, "Ethernet1")->pfcPortConfig()->priorities(), 255);
}

TEST(Interfaces, ShortenTheirNames) {
  const HostDevice d(R"({"interfaces": {"Ethernet7/1": {}, "p7": {}}})");
  EXPECT_EQ(intf(d, "Ethernet7/1")->intfId().shortName(), "Et7/1");
  EXPECT_EQ(intf(d, "p7")->intfId().shortName(), "p7");
}

TEST(Interfaces, RefuseKeysThatAreNoTxQueues) {
  for (const char* key :
       {"3", "uc-", "uc-03", "uc-256", "uc--1", "UC-3", "uc3", "bc-3", "", "uc-3 "}) {
    EXPECT_EQ(faultOf(R"({"E": {"tx-queues": {")" + std::string(key) + R"(": {}}}})"),
              "/interfaces/E/tx-queues/" + std::string(key) +
                  ": this key is not a tx queue: uc-N or mc-N, N from 0 to 255");
  }
}

TEST(Interfaces, RefuseSettingsThatDoNotFit) {
  const std::string place = "/interfaces/E/tx-queues/uc-3/";
  const std::string priority =
      place + "priority: expected a priority: strict, unset or a number from 0 to 255, not ";
  for (const char* value : {"256", "-1", "\"high\"", "\"0\"", "\"7\"", "true"}) {
    EXPECT_EQ(faultOfQueue(R"({"priority": )" + std::string(value) + "}"), priority + value);
  }
  EXPECT_EQ(faultOfQueue(R"({"bandwidth": 256})"),
            place + "bandwidth: expected a whole number from 0 to 255, not 256");
  EXPECT_EQ(faultOfQueue(R"({"shape": 4294967296})"),
            place + "shape: expected a whole number from 0 to 4294967295, not 4294967296");
  for (const std::string record : {"ecn", "wred"}) {
    const auto fault = [&](const std::string& settings) {
      return faultOfQueue("{\"" + record + "\": " + settings + "}");
    };
    for (const std::string word : {"min-threshold", "max-threshold", "weight"}) {
      EXPECT_EQ(fault("{\"" + word + "\": 4294967296}"),
                place + record + "/" + word +
                    ": expected a whole number from 0 to 4294967295, not 4294967296");
    }
    for (const std::string byte : {"threshold-unit", "max-drop-percent"}) {
      EXPECT_EQ(fault("{\"" + byte + "\": 256}"),
                place + record + "/" + byte + ": expected a whole number from 0 to 255, not 256");
    }
    EXPECT_EQ(fault("null"), place + record + ": null is never a value here: expected an object");
    EXPECT_EQ(fault(R"({"drop": 1})"),
              place + record +
                  "/drop: unknown member (legal: min-threshold, max-threshold, "
                  "threshold-unit, max-drop-percent, weight)");
  }
  EXPECT_EQ(faultOf(R"({"E": {"pfc": {"priorities": 256}}})"),
            "/interfaces/E/pfc/priorities: expected a whole number from 0 to 255, not 256");
}

TEST(Interfaces, RefuseUnknownMembersAndNull) {
  EXPECT_EQ(
      faultOf(R"({"E": {"queues": {}}})"),
      "/interfaces/E/queues: unknown member: did you mean tx-queues? (legal: tx-queues, pfc)");
  EXPECT_EQ(faultOfQueue(R"({"id": 3})"),
            "/interfaces/E/tx-queues/uc-3/id: unknown member (legal: priority, bandwidth, shape, "
            "ecn, wred)");
  EXPECT_EQ(faultOf(R"({"E": {"pfc": {"action": 1}}})"),
            "/interfaces/E/pfc/action: unknown member (legal: priorities)");
  EXPECT_EQ(faultOf(R"({"E": {"pfc": null}})"),
            "/interfaces/E/pfc: null is never a value here: expected an object");
  EXPECT_EQ(faultOf(R"({"E": {"tx-queues": null}})"),
            "/interfaces/E/tx-queues: null is never a value here: expected an object");
  EXPECT_EQ(faultOf(R"({"E": {}, "E": {}})"), "/interfaces/E: the same key twice");
  EXPECT_EQ(faultOf(R"({"E": {"tx-queues": {"uc-3": {}, "uc-3": {}}}})"),
            "/interfaces/E/tx-queues/uc-3: the same key twice");
}

// ===== Entries

TEST(Interfaces, AnInterfaceIsAnEntry) {
  HostDevice d(device);
  EXPECT_THAT(
      d.heardFrom("add", "/interfaces/Ethernet7~11", R"({"tx-queues": {"uc-1": {}}, "pfc": {}})"),
      ElementsAre("intfConfig Ethernet7/1"));
  EXPECT_TRUE(queue(d, 1, Qos::unicast, "Ethernet7/1"));
  for (const char* op : {"add", "replace"}) {
    EXPECT_THAT(d.heardFrom(op, "/interfaces/Ethernet7~11", "{}"),
                ElementsAre("intfConfig Ethernet7/1", "intfConfig Ethernet7/1"));
  }
  EXPECT_FALSE(intf(d, "Ethernet7/1")->pfcPortConfig());
  EXPECT_THAT(d.heardFrom("remove", "/interfaces/Ethernet7~11"),
              ElementsAre("intfConfig Ethernet7/1"));
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(Interfaces, ATxQueueIsAnEntry) {
  HostDevice d(device);
  EXPECT_THAT(
      d.heardFrom("add", "/interfaces/Ethernet2/tx-queues/mc-0", R"({"bandwidth": 5, "ecn": {}})"),
      ElementsAre("txQueueConfig Ethernet2 multicast-0"));
  EXPECT_EQ(queue(d, 0, Qos::multicast, "Ethernet2")->bandwidth().value, 5);
  const auto before = queue(d);
  for (const char* op : {"add", "replace"}) {
    EXPECT_THAT(
        d.heardFrom(op, queues + "/uc-3", "{}"),
        ElementsAre("txQueueConfig Ethernet1 unicast-3", "txQueueConfig Ethernet1 unicast-3"));
  }
  EXPECT_NE(queue(d), before);
  EXPECT_THAT(d.heardFrom("remove", queues + "/uc-3"),
              ElementsAre("txQueueConfig Ethernet1 unicast-3"));
  EXPECT_TRUE(queue(d, 3, Qos::multicast));
  EXPECT_EQ(d.reportOf("remove", queues + "/uc-3"),
            "refused: /interfaces/Ethernet1/tx-queues/uc-3: nothing is there: did you mean mc-3?");
}

TEST(Interfaces, TxQueuesAsAWholeAreDoneOneByOne) {
  HostDevice d(device);
  EXPECT_THAT(
      d.heardFrom("replace", queues, R"({"uc-1": {}, "mc-3": {}})"),
      ElementsAre("txQueueConfig Ethernet1 unicast-3", "txQueueConfig Ethernet1 unicast-1",
                  "txQueueConfig Ethernet1 multicast-3", "txQueueConfig Ethernet1 multicast-3"));
  EXPECT_THAT(d.heardFrom("remove", queues), ElementsAre("txQueueConfig Ethernet1 multicast-3",
                                                         "txQueueConfig Ethernet1 unicast-1"));
  EXPECT_THAT(d.heardFrom("remove", queues), IsEmpty());
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(Interfaces, TheSectionAsAWholeIsDoneInterfaceByInterface) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("add", "/interfaces", R"({"Ethernet3": {}, "Ethernet2": {}})"),
              ElementsAre("intfConfig Ethernet1", "intfConfig Ethernet3", "intfConfig Ethernet2",
                          "intfConfig Ethernet2"));
  EXPECT_THAT(d.heardFrom("remove", "/interfaces"),
              ElementsAre("intfConfig Ethernet2", "intfConfig Ethernet3"));
}

// ===== Settings of a tx queue

TEST(Interfaces, ASettingOfATxQueueIsAssigned) {
  for (const char* op : {"add", "replace"}) {
    HostDevice d(device);
    const auto before = queue(d);
    EXPECT_THAT(d.heardFrom(op, queues + "/uc-3/priority", "\"unset\""),
                ElementsAre("priority Ethernet1 unicast-3"));
    EXPECT_THAT(d.heardFrom(op, queues + "/uc-3/priority", "2"), IsEmpty());
    EXPECT_THAT(d.heardFrom(op, queues + "/uc-3/bandwidth", "41"),
                ElementsAre("bandwidth Ethernet1 unicast-3"));
    EXPECT_THAT(d.heardFrom(op, queues + "/uc-3/bandwidth", "41"), IsEmpty());
    EXPECT_THAT(d.heardFrom(op, queues + "/uc-3/shape", "7"),
                ElementsAre("shape Ethernet1 unicast-3"));
    EXPECT_EQ(queue(d), before);
    EXPECT_EQ(before->priority(), Qos::priorityNotConfigured);
    EXPECT_EQ(before->bandwidth().value, 41);
    EXPECT_EQ(before->shape(), 7u);
    EXPECT_THAT(d.reports, IsEmpty());
  }
}

TEST(Interfaces, ARemovedSettingOfATxQueueHasItsDefault) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("remove", queues + "/uc-3/priority"),
              ElementsAre("priority Ethernet1 unicast-3"));
  EXPECT_THAT(d.heardFrom("remove", queues + "/uc-3/bandwidth"),
              ElementsAre("bandwidth Ethernet1 unicast-3"));
  EXPECT_THAT(d.heardFrom("remove", queues + "/uc-3/shape"),
              ElementsAre("shape Ethernet1 unicast-3"));
  EXPECT_THAT(d.heardFrom("remove", queues + "/uc-3/shape"), IsEmpty());
  EXPECT_EQ(queue(d)->priority(), Qos::priorityNotConfigured);
  EXPECT_EQ(queue(d)->bandwidth().value, 101);
  EXPECT_EQ(queue(d)->shape(), 0u);
  EXPECT_THAT(d.reports, IsEmpty());
}

// ===== ecn and wred

TEST(Interfaces, EcnAndWredAreInstalledAsOtherRecords) {
  HostDevice d(device);
  const auto before = queue(d)->ecnConfig();
  EXPECT_THAT(d.heardFrom("replace", queues + "/uc-3/ecn",
                          R"({"min-threshold": 10, "max-threshold": 20, "threshold-unit": 1,
                              "max-drop-percent": 30, "weight": 5})"),
              ElementsAre("ecnConfig Ethernet1 unicast-3"));
  EXPECT_NE(queue(d)->ecnConfig(), before);
  EXPECT_THAT(d.heardFrom("add", queues + "/uc-3/wred", R"({"weight": 9})"),
              ElementsAre("wredConfig Ethernet1 unicast-3"));
  EXPECT_EQ(queue(d)->wredConfig()->settings(), (Qos::EcnWredConfig::Settings{0, 0, 0, 101, 9}));
  EXPECT_EQ(queue(d)->ecnConfig()->weight(), 5u);
}

TEST(Interfaces, RemovedEcnAndWredAreNull) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("remove", queues + "/uc-3/ecn"),
              ElementsAre("ecnConfig Ethernet1 unicast-3"));
  EXPECT_FALSE(queue(d)->ecnConfig());
  EXPECT_EQ(d.reportOf("remove", queues + "/uc-3/ecn"),
            "refused: " + queues + "/uc-3/ecn: nothing is there");
  EXPECT_EQ(d.reportOf("replace", queues + "/uc-3/wred", "{}"),
            "refused: " + queues + "/uc-3/wred: nothing is there");
}

TEST(Interfaces, AMemberOfEcnOrWredInstallsAnotherRecord) {
  HostDevice d(device);
  const auto before = queue(d)->ecnConfig();
  EXPECT_THAT(d.heardFrom("add", queues + "/uc-3/ecn/weight", "5"),
              ElementsAre("ecnConfig Ethernet1 unicast-3"));
  EXPECT_NE(queue(d)->ecnConfig(), before);
  EXPECT_EQ(queue(d)->ecnConfig()->settings(), before->settings());
  EXPECT_THAT(d.heardFrom("[" + hostOperation("replace", queues + "/uc-3/ecn/min-threshold", "11") +
                          "," + hostOperation("replace", queues + "/uc-3/ecn/max-threshold", "21") +
                          "," + hostOperation("replace", queues + "/uc-3/ecn/threshold-unit", "2") +
                          "," + hostOperation("remove", queues + "/uc-3/ecn/weight") + "," +
                          hostOperation("remove", queues + "/uc-3/ecn/max-drop-percent") + "]"),
              ElementsAre("ecnConfig Ethernet1 unicast-3", "ecnConfig Ethernet1 unicast-3",
                          "ecnConfig Ethernet1 unicast-3", "ecnConfig Ethernet1 unicast-3",
                          "ecnConfig Ethernet1 unicast-3"));
  EXPECT_EQ(queue(d)->ecnConfig()->settings(), (Qos::EcnWredConfig::Settings{11, 21, 2, 101, 0}));
}

TEST(Interfaces, NothingIsBelowWhatIsNull) {
  HostDevice d(device);
  for (const std::string record : {"ecn", "wred"}) {
    EXPECT_EQ(d.reportOf("add", queues + "/mc-3/" + record + "/weight", "1"),
              "refused: " + queues + "/mc-3/" + record + "/weight: nothing is at " + queues +
                  "/mc-3/" + record);
  }
  EXPECT_EQ(d.reportOf("add", "/interfaces/Ethernet2/pfc/priorities", "1"),
            "refused: /interfaces/Ethernet2/pfc/priorities: nothing is at "
            "/interfaces/Ethernet2/pfc");
  EXPECT_THAT(d.heardFrom("[" + hostOperation("add", queues + "/mc-3/wred", "{}") + "," +
                          hostOperation("add", queues + "/mc-3/wred/weight", "1") + "]"),
              ElementsAre("wredConfig Ethernet1 multicast-3", "wredConfig Ethernet1 multicast-3"));
}

// ===== pfc

TEST(Interfaces, PfcIsInstalledAsAnotherObject) {
  for (const char* op : {"add", "replace"}) {
    HostDevice d(device);
    const auto before = intf(d, "Ethernet1")->pfcPortConfig();
    EXPECT_THAT(d.heardFrom(op, "/interfaces/Ethernet1/pfc", R"({"priorities": 8})"),
                ElementsAre("pfcPortConfig Ethernet1"));
    EXPECT_NE(intf(d, "Ethernet1")->pfcPortConfig(), before);
    EXPECT_EQ(intf(d, "Ethernet1")->pfcPortConfig()->priorities(), 8);
  }
}

TEST(Interfaces, RemovedPfcIsNull) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("remove", "/interfaces/Ethernet1/pfc"),
              ElementsAre("pfcPortConfig Ethernet1"));
  EXPECT_FALSE(intf(d, "Ethernet1")->pfcPortConfig());
  EXPECT_EQ(d.reportOf("replace", "/interfaces/Ethernet1/pfc", "{}"),
            "refused: /interfaces/Ethernet1/pfc: nothing is there");
}

TEST(Interfaces, PfcPrioritiesAreAssigned) {
  HostDevice d(device);
  const auto before = intf(d, "Ethernet1")->pfcPortConfig();
  EXPECT_THAT(d.heardFrom("add", "/interfaces/Ethernet1/pfc/priorities", "8"), IsEmpty());
  EXPECT_THAT(d.heardFrom("replace", "/interfaces/Ethernet1/pfc/priorities", "9"),
              ElementsAre("priorities Ethernet1"));
  EXPECT_THAT(d.heardFrom("remove", "/interfaces/Ethernet1/pfc/priorities"),
              ElementsAre("priorities Ethernet1"));
  EXPECT_EQ(before->priorities(), 0);
  EXPECT_EQ(intf(d, "Ethernet1")->pfcPortConfig(), before);
}

// ===== test and whole lines

TEST(Interfaces, TestSeesWhatTheNativeSideHolds) {
  HostDevice d(device);
  EXPECT_EQ(d.reportOf("test", "/interfaces", R"({"Ethernet2": {"tx-queues": {}}, "Ethernet1": {
      "pfc": {"priorities": 8}, "tx-queues": {
        "mc-3": {"priority": "unset", "bandwidth": 101, "shape": 0},
        "uc-3": {"priority": 0, "bandwidth": 40, "shape": 1000,
                 "ecn": {"max-drop-percent": 30, "min-threshold": 10, "max-threshold": 20,
                         "threshold-unit": 1, "weight": 5}}}}})"),
            "");
  EXPECT_EQ(d.reportOf("test", queues + "/uc-3/priority", "\"strict\""), "");
  EXPECT_EQ(d.reportOf("test", queues + "/mc-3/bandwidth", "101"), "");
  EXPECT_EQ(d.reportOf("test", queues + "/uc-3/ecn/max-drop-percent", "30"), "");
  EXPECT_EQ(d.reportOf("test", "/interfaces/Ethernet1/pfc/priorities", "8"), "");
  EXPECT_EQ(d.reportOf("test", queues + "/mc-3", R"({"ecn": {}})"),
            "refused: /interfaces/Ethernet1/tx-queues/mc-3: test failed: at /ecn: expected {}, and "
            "nothing is there");
  EXPECT_EQ(d.reportOf("test", queues + "/mc-3/ecn", "{}"),
            "refused: " + queues + "/mc-3/ecn: nothing is there");
}

TEST(Interfaces, LaterOperationsOfALineSeeTheEarlierOnes) {
  HostDevice d;
  EXPECT_THAT(d.heardFrom("[" + hostOperation("add", "/interfaces/E", "{}") + "," +
                          hostOperation("add", "/interfaces/E/tx-queues/uc-1", "{}") + "," +
                          hostOperation("add", "/interfaces/E/tx-queues/uc-1/shape", "4") + "," +
                          hostOperation("add", "/interfaces/E/tx-queues/uc-1/ecn", "{}") + "," +
                          hostOperation("add", "/interfaces/E/pfc", "{}") + "," +
                          hostOperation("add", "/interfaces/E/pfc/priorities", "1") + "," +
                          hostOperation("test", "/interfaces/E", R"({"pfc": {"priorities": 1},
                              "tx-queues": {"uc-1": {"shape": 4, "ecn": {}}}})") +
                          "]"),
              ElementsAre("intfConfig E", "txQueueConfig E unicast-1", "shape E unicast-1",
                          "ecnConfig E unicast-1", "pfcPortConfig E", "priorities E"));
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(Interfaces, TestSeesTheNativeStateAroundWhatTheLineTouched) {
  HostDevice d(device);
  d.line("[" + hostOperation("test", queues + "/uc-3/ecn/weight", "5") + "," +
         hostOperation("test", queues + "/uc-3/ecn", R"({"min-threshold": 10, "max-threshold": 20,
             "threshold-unit": 1, "max-drop-percent": 30, "weight": 5})") +
         "," + hostOperation("replace", queues + "/uc-3/ecn/weight", "6") + "," +
         hostOperation("test", queues + "/uc-3", R"({"priority": 0, "bandwidth": 40, "shape": 1000,
             "ecn": {"min-threshold": 10, "max-threshold": 20, "threshold-unit": 1,
                     "max-drop-percent": 30, "weight": 6}})") +
         "]");
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(Interfaces, ARefusedLineChangesNothing) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("[" + hostOperation("remove", queues + "/uc-3/ecn") + "," +
                          hostOperation("replace", queues + "/uc-3/bandwidth", "1") + "," +
                          hostOperation("replace", queues + "/uc-3/ecn/weight", "1") + "]"),
              IsEmpty());
  EXPECT_TRUE(queue(d)->ecnConfig());
  EXPECT_EQ(queue(d)->bandwidth().value, 40);
  EXPECT_THAT(d.reports, ElementsAre("line 1: refused: " + queues +
                                     "/uc-3/ecn/weight: nothing is at " + queues + "/uc-3/ecn"));
}

TEST(Interfaces, RefuseChangesThatDoNotFit) {
  HostDevice d(device);
  EXPECT_EQ(
      d.reportOf("add", queues + "/uc-03", "{}"),
      "refused: " + queues + "/uc-03: \"uc-03\" is not a tx queue: uc-N or mc-N, N from 0 to 255");
  EXPECT_EQ(
      d.reportOf("replace", queues + "/uc-3/bandwidth", "256"),
      "refused: " + queues + "/uc-3/bandwidth: expected a whole number from 0 to 255, not 256");
  EXPECT_EQ(d.reportOf("add", queues + "/uc-4", R"({"ecn": {"weight": -1}})"),
            "refused: " + queues +
                "/uc-4: at /ecn/weight: expected a whole number from 0 to 4294967295, not -1");
  EXPECT_EQ(d.reportOf("add", "/interfaces/None/pfc", "{}"),
            "refused: /interfaces/None/pfc: nothing is at /interfaces/None");
}

}  // namespace
}  // namespace host::interfacesTest
