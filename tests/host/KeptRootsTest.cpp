// Roots that raised at the start, and come back.
#include "host/KeptRoots.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/KeptDevice.h"

namespace host::keptRootsTest {
namespace {

using support::KeptDevice;
using support::ourComment;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* percent =
    "range: QosOc::PercentType::value < QosOc::PercentType::min or > QosOc::PercentType::max not "
    "allowed";
constexpr const char* percent100 =
    "range: QosOc::PercentType100::value < QosOc::PercentType100::min or > "
    "QosOc::PercentType100::max not allowed";

const std::string queue3 = "/interfaces/Ethernet1~12/tx-queues/uc-3";
const std::string queue4 = "/interfaces/Ethernet1~12/tx-queues/uc-4";
const std::string policyComment = ourComment(R"({"scheduler-policy":{"name":"s"}})");

std::string queues(const std::string& first, const std::string& second = "{}") {
  return R"({"interfaces":{"Ethernet1/2":{"tx-queues":{"uc-3":)" + first + R"(,"uc-4":)" + second +
         "}}}}";
}

std::string atBandwidth(const std::string& queue) {
  return std::string(percent) + " at " + queue + "/bandwidth";
}

TEST(KeptRoots, NameThePlacesAtTheStart) {
  KeptDevice d(queues(R"({"bandwidth":150})", R"({"bandwidth":102,"ecn":{}})"));
  EXPECT_THAT(d.reports(), ElementsAre("root queue: " + atBandwidth(queue3) + ", " + queue4 +
                                       "/bandwidth, " + queue4 + "/ecn/max-drop-percent"));
  EXPECT_FALSE(d.roots().isBuilt("queue"));
  EXPECT_TRUE(d.roots().isKept("queue"));
  EXPECT_TRUE(d.roots().isBuilt("acl"));
}

TEST(KeptRoots, NameTheFirstOfManyPlaces) {
  std::string all;
  for (int n = 100; n < 125; ++n) {
    all += (all.empty() ? "\"uc-" : ",\"uc-") + std::to_string(n) + R"(":{"bandwidth":150})";
  }
  KeptDevice d(R"({"interfaces":{"p7":{"tx-queues":{)" + all + "}}}}");
  const std::string report = d.reports().at(0);
  EXPECT_NE(report.find("at /interfaces/p7/tx-queues/uc-100/bandwidth, "), report.npos);
  EXPECT_TRUE(report.ends_with("/uc-119/bandwidth, and 5 more")) << report;
}

TEST(KeptRoots, ReturnWhenTheValueIsGood) {
  KeptDevice d(queues(R"({"bandwidth":150})", R"({"bandwidth":40})"));
  EXPECT_THAT(d.put(queue3 + "/bandwidth", "30"), ElementsAre("line 1: root queue: built"));
  EXPECT_TRUE(d.roots().isBuilt("queue"));
  EXPECT_EQ(d.model().queues->q("Ethernet1/2-unicast-3").config.bandwidth, QosOc::PercentType(30));
  EXPECT_EQ(d.model().queues->q("Ethernet1/2-unicast-4").config.bandwidth, QosOc::PercentType(40));
  // It follows the native side from then on.
  EXPECT_THAT(d.put(queue3 + "/bandwidth", "31"), IsEmpty());
  EXPECT_EQ(d.model().queues->q("Ethernet1/2-unicast-3").config.bandwidth, QosOc::PercentType(31));
}

TEST(KeptRoots, ReturnWhenACommentSpeaksForTheValue) {
  KeptDevice d(queues(R"({"bandwidth":150})"));
  EXPECT_THAT(d.put("/comments/if-Et1~12-uc-txq-3", "\"a note\""), IsEmpty());
  EXPECT_THAT(d.put("/comments/if-Et1~12-uc-txq-3", policyComment),
              ElementsAre("line 2: root queue: built"));
  EXPECT_THAT(d.remove("/comments/if-Et1~12-uc-txq-3"),
              ElementsAre("line 3: " + atBandwidth(queue3)));
}

TEST(KeptRoots, ReturnWhenTheObjectIsGone) {
  for (const std::string path :
       {"/interfaces/Ethernet1~12/tx-queues/uc-3", "/interfaces/Ethernet1~12",
        "/interfaces/Ethernet1~12/tx-queues", "/interfaces"}) {
    KeptDevice d(queues(R"({"bandwidth":150})"));
    EXPECT_THAT(d.remove(path), ElementsAre("line 1: root queue: built")) << path;
  }
}

TEST(KeptRoots, SayWhatTheyRaiseOverAgain) {
  KeptDevice d(queues(R"({"bandwidth":150})", R"({"bandwidth":102})"));
  EXPECT_THAT(
      d.put(queue3 + "/bandwidth", "160"),
      ElementsAre("line 1: root queue: " + atBandwidth(queue3) + ", " + queue4 + "/bandwidth"));
  EXPECT_THAT(d.put(queue3 + "/bandwidth", "40"),
              ElementsAre("line 2: root queue: " + atBandwidth(queue4)));
  EXPECT_THAT(d.put(queue4 + "/bandwidth", "40"), ElementsAre("line 3: root queue: built"));
}

TEST(KeptRoots, WaitForWhatBecameBadMeanwhile) {
  KeptDevice d(queues(R"({"bandwidth":150})", R"({"bandwidth":40})"));
  EXPECT_THAT(d.put(queue4 + "/bandwidth", "255"), IsEmpty());
  EXPECT_THAT(d.put(queue3 + "/bandwidth", "40"),
              ElementsAre("line 2: root queue: " + atBandwidth(queue4)));
  EXPECT_THAT(d.remove(queue4 + "/bandwidth"), ElementsAre("line 3: root queue: built"));
}

TEST(KeptRoots, TryOnceForALine) {
  KeptDevice d(queues(R"({"bandwidth":150})", R"({"bandwidth":102})"));
  const std::string both = '[' + support::hostOperation("add", queue3 + "/bandwidth", "1") + ',' +
                           support::hostOperation("add", queue4 + "/bandwidth", "2") + ']';
  const std::string worse = '[' + support::hostOperation("add", queue3 + "/bandwidth", "151") +
                            ',' + support::hostOperation("add", queue4 + "/bandwidth", "103") + ']';
  EXPECT_THAT(d.line(worse), ElementsAre("line 1: root queue: " + atBandwidth(queue3) + ", " +
                                         queue4 + "/bandwidth"));
  EXPECT_THAT(d.line(both), ElementsAre("line 2: root queue: built"));
}

TEST(KeptRoots, WaitForNothingElse) {
  KeptDevice d(queues(R"({"bandwidth":150,"ecn":{"max-drop-percent":1}})"));
  EXPECT_THAT(d.put(queue3 + "/ecn/weight", "7"), IsEmpty());
  EXPECT_THAT(d.put(queue3 + "/priority", "1"), IsEmpty());
  EXPECT_THAT(d.put(queue3 + "/bandwidth", "150"), IsEmpty());
  EXPECT_THAT(d.put("/interfaces/Ethernet1~12/pfc", R"({"priorities":1})"), IsEmpty());
  EXPECT_THAT(d.put("/interfaces/Ethernet1~12/pfc/priorities", "2"), IsEmpty());
  EXPECT_THAT(d.put("/comments/note", "\"a note\""), IsEmpty());
  EXPECT_THAT(d.put("/forwarding-groups/g", "3"), IsEmpty());
}

TEST(KeptRoots, ThatStayOutStayOut) {
  KeptDevice d(queues(R"({"bandwidth":150})"), {.leftOut = KeptDevice::LeftOut::stays});
  EXPECT_FALSE(d.roots().isKept("queue"));
  EXPECT_THAT(d.put(queue3 + "/bandwidth", "40"), IsEmpty());
  EXPECT_FALSE(d.roots().isBuilt("queue"));
}

// ===== Every root that may raise

TEST(KeptRoots, OfForwardingGroupsReturn) {
  const std::string report =
      "forwarding-group: range: cannot access index 17 of an array with size 17 at "
      "/forwarding-groups/g";
  KeptDevice d(R"({"forwarding-groups":{"g":17,"h":3}})");
  EXPECT_THAT(d.reports(), ElementsAre("root " + report));
  EXPECT_THAT(d.put("/forwarding-groups/h", "200"), IsEmpty());
  EXPECT_THAT(d.put("/forwarding-groups/h", "4"), ElementsAre("line 2: root " + report));
  EXPECT_THAT(d.put("/forwarding-groups", R"({"h":5})"),
              ElementsAre("line 3: root forwarding-group: built"));
}

TEST(KeptRoots, OfQueueManagementReturn) {
  const std::string ecn = "/qos-profiles/__YANG_QMP_[p]/tx-queues/uc-0/ecn";
  KeptDevice d(
      R"({"qos-profiles":{"__YANG_QMP_[p]":{"tx-queues":{"uc-0":{"ecn":{},"wred":{}}}}}})");
  EXPECT_THAT(d.reports(),
              ElementsAre("root queue-management: " + std::string(percent100) + " at " + ecn +
                          "/max-drop-percent, /qos-profiles/__YANG_QMP_[p]/tx-queues/uc-0/wred/"
                          "max-drop-percent"));
  EXPECT_THAT(d.remove("/qos-profiles/__YANG_QMP_[p]/tx-queues/uc-0/wred"),
              ElementsAre("line 1: root queue-management: " + std::string(percent100) + " at " +
                          ecn + "/max-drop-percent"));
  EXPECT_THAT(d.put(ecn + "/max-drop-percent", "9"),
              ElementsAre("line 2: root queue-management: built"));
  EXPECT_THAT(
      d.put(ecn + "/max-drop-percent", "200"),
      ElementsAre("line 3: " + std::string(percent100) + " at " + ecn + "/max-drop-percent"));
}

TEST(KeptRoots, OfSchedulerPoliciesReturn) {
  const auto rate = [](int n) {
    return ourComment(R"({"1":{"one-rate-two-color":{"cir-pct":)" + std::to_string(n) + "}}}");
  };
  const std::string key = "/comments/qos-profile-__YANG_SP_[s]";
  const std::string document = R"({"qos-profiles":{"__YANG_SP_[s]":{}},"comments":{)"
                               R"("qos-profile-__YANG_SP_[s]":)" +
                               rate(150) + "}}";
  const std::string report = "root scheduler-policy: " + std::string(percent) + " at " + key;
  KeptDevice d(document);
  EXPECT_THAT(d.reports(), ElementsAre(report));
  EXPECT_THAT(d.put(key, rate(101)), ElementsAre("line 1: " + report));
  EXPECT_THAT(d.put(key, rate(44)), ElementsAre("line 2: root scheduler-policy: built"));
  KeptDevice other(document);
  EXPECT_THAT(other.remove("/qos-profiles/__YANG_SP_[s]"),
              ElementsAre("line 1: root scheduler-policy: built"));
  EXPECT_THAT(other.put("/qos-profiles/__YANG_SP_[s]", "{}"),
              ElementsAre("line 2: " + std::string(percent) + " at " + key));
}

TEST(KeptRoots, OfInterfaceClassifiersReturn) {
  const std::string policy = "/service-policies/";
  const std::string name = "__yang_[IPV4__a]";
  KeptDevice d(R"({"service-policies":{"1:)" + name + R"(":{},"2:)" + name + R"(":{}}})");
  EXPECT_THAT(d.reports(),
              ElementsAre("root interface-classifier: reinstantiating: servicePolicyConfig at " +
                          policy + "1:" + name + ", " + policy + "2:" + name));
  EXPECT_THAT(d.put(policy + "3:" + name, "{}"), IsEmpty());
  EXPECT_THAT(d.remove(policy + "1:" + name),
              ElementsAre("line 2: root interface-classifier: reinstantiating: servicePolicyConfig "
                          "at " +
                          policy + "2:" + name + ", " + policy + "3:" + name));
  EXPECT_THAT(d.remove(policy + "3:" + name),
              ElementsAre("line 3: root interface-classifier: built"));
  EXPECT_THAT(
      d.put(policy + "4:" + name, "{}"),
      ElementsAre("line 4: reinstantiating: servicePolicyConfig at " + policy + "4:" + name));
}

TEST(KeptRoots, WaitForTheEndOfTheirOwnBadComments) {
  KeptDevice d(R"({"interfaces":{"p7":{"tx-queues":{"uc-1":{"bandwidth":150}}}},"comments":{)"
               R"("if-p7-uc-txq-2":)" +
                   ourComment("5") + "}}",
               {.roots = {"queue"}});
  EXPECT_THAT(
      d.put("/interfaces/p7/tx-queues/uc-2", "{}"),
      ElementsAre("line 1: refused: /comments/if-p7-uc-txq-2: at /MetaData-OpenConfig of this "
                  "comment: expected an object"));
  // Past the lines, by the host itself.
  const auto interface = d.native().qosConfig->intfConfig(Nerit::IntfId("p7"));
  const Qos::TxQueue second{2, Qos::unicast};
  interface->txQueueConfigIs(second, Rok::make<Qos::TxQueueConfig>(second));
  EXPECT_THAT(
      d.put("/interfaces/p7/tx-queues/uc-1/bandwidth", "40"),
      ElementsAre("line 2: root queue: /comments/if-p7-uc-txq-2: at /MetaData-OpenConfig of "
                  "this comment: expected an object"));
  EXPECT_THAT(d.remove("/comments/if-p7-uc-txq-2"), ElementsAre("line 3: root queue: built"));
}

}  // namespace
}  // namespace host::keptRootsTest
