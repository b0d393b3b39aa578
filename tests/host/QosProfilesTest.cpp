// The section "qos-profiles": how it is mounted, and what each change writes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostDevice.h"

namespace host::qosProfilesTest {
namespace {

using support::HostDevice;
using support::hostFault;
using support::hostOperation;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* device = R"({"qos-profiles": {
    "P": {"tx-queues": {"uc-3": {"bandwidth": 40, "wred": {"weight": 1}}, "mc-1": {}}},
    "Q": {}}})";
const std::string queues = "/qos-profiles/P/tx-queues";

std::string faultOf(const std::string& section) {
  return hostFault([&] { HostDevice d(R"({"qos-profiles": )" + section + "}"); });
}

Rok::Ptr<Qos::QosProfileConfig> profile(const HostDevice& d, const Rok::String& name) {
  const auto* found = d.native.qosProfiles->config().find(name);
  return found != nullptr ? *found : nullptr;
}
Rok::Ptr<Qos::TxQueueConfig> queue(const HostDevice& d, const Rok::String& name, unsigned char id) {
  const auto* found = profile(d, name)->qosProfile()->txQueueConfig().find({id, Qos::unicast});
  return found != nullptr ? *found : nullptr;
}

// ===== The document

TEST(QosProfiles, HoldTheirTxQueues) {
  const HostDevice d(device);
  EXPECT_EQ(d.native.qosProfiles->config().members(), 2u);
  EXPECT_EQ(profile(d, "P")->name(), "P");
  EXPECT_EQ(profile(d, "P")->qosProfile()->txQueueConfig().members(), 2u);
  EXPECT_EQ(queue(d, "P", 3)->bandwidth().value, 40);
  EXPECT_EQ(queue(d, "P", 3)->wredConfig()->weight(), 1u);
  EXPECT_FALSE(queue(d, "P", 3)->ecnConfig());
}

TEST(QosProfiles, AProfileWithoutTxQueuesHasNoBody) {
  const HostDevice d(R"({"qos-profiles": {"P": {}, "Q": {"tx-queues": {}}}})");
  EXPECT_FALSE(profile(d, "P")->qosProfile());
  ASSERT_TRUE(profile(d, "Q")->qosProfile());
  EXPECT_EQ(profile(d, "Q")->qosProfile()->txQueueConfig().members(), 0u);
}

TEST(QosProfiles, RefuseWhatTheyCannotHold) {
  EXPECT_EQ(faultOf("[]"), "/qos-profiles: expected an object, not an array");
  EXPECT_EQ(faultOf(R"({"P": {}, "P": {}})"), "/qos-profiles/P: the same key twice");
  EXPECT_EQ(faultOf(R"({"P": {"pfc": {}}})"),
            "/qos-profiles/P/pfc: unknown member (legal: tx-queues)");
  EXPECT_EQ(faultOf(R"({"P": null})"),
            "/qos-profiles/P: null is never a value here: expected an object");
  EXPECT_EQ(faultOf(R"({"P": {"tx-queues": null}})"),
            "/qos-profiles/P/tx-queues: null is never a value here: expected an object");
  EXPECT_EQ(faultOf(R"({"P": {"tx-queues": {"uc-3": {"bandwidth": 256}}}})"),
            "/qos-profiles/P/tx-queues/uc-3/bandwidth: expected a whole number from 0 to 255, not "
            "256");
}

// ===== Entries

TEST(QosProfiles, AProfileIsAnEntry) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("add", "/qos-profiles/R", R"({"tx-queues": {"uc-1": {}}})"),
              ElementsAre("config R"));
  EXPECT_TRUE(queue(d, "R", 1));
  for (const char* op : {"add", "replace"}) {
    EXPECT_THAT(d.heardFrom(op, "/qos-profiles/R", "{}"), ElementsAre("config R", "config R"));
  }
  EXPECT_FALSE(profile(d, "R")->qosProfile());
  EXPECT_THAT(d.heardFrom("remove", "/qos-profiles/R"), ElementsAre("config R"));
  EXPECT_FALSE(profile(d, "R"));
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(QosProfiles, ATxQueueIsAnEntry) {
  HostDevice d(device);
  const auto body = profile(d, "P")->qosProfile();
  EXPECT_THAT(d.heardFrom("add", queues + "/uc-1", R"({"shape": 1})"),
              ElementsAre("txQueueConfig P unicast-1"));
  EXPECT_THAT(d.heardFrom("add", queues + "/uc-1", "{}"),
              ElementsAre("txQueueConfig P unicast-1", "txQueueConfig P unicast-1"));
  EXPECT_THAT(d.heardFrom("remove", queues + "/uc-1"), ElementsAre("txQueueConfig P unicast-1"));
  EXPECT_EQ(profile(d, "P")->qosProfile(), body);
}

TEST(QosProfiles, TheSectionAsAWholeIsDoneProfileByProfile) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("replace", "/qos-profiles", R"({"R": {}, "Q": {}})"),
              ElementsAre("config P", "config R", "config Q", "config Q"));
  EXPECT_THAT(d.heardFrom("remove", "/qos-profiles"), ElementsAre("config Q", "config R"));
}

// ===== The body

TEST(QosProfiles, TxQueuesAreInstalledAsAnotherBody) {
  for (const char* op : {"add", "replace"}) {
    HostDevice d(device);
    const auto before = profile(d, "P")->qosProfile();
    EXPECT_THAT(d.heardFrom(op, queues, R"({"uc-3": {}})"), ElementsAre("qosProfile P"));
    EXPECT_NE(profile(d, "P")->qosProfile(), before);
    EXPECT_EQ(profile(d, "P")->qosProfile()->txQueueConfig().members(), 1u);
    EXPECT_EQ(queue(d, "P", 3)->bandwidth().value, 101);
  }
}

TEST(QosProfiles, RemovedTxQueuesAreNull) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("remove", queues), ElementsAre("qosProfile P"));
  EXPECT_FALSE(profile(d, "P")->qosProfile());
  EXPECT_EQ(d.reportOf("remove", queues), "refused: " + queues + ": nothing is there");
}

TEST(QosProfiles, NothingIsBelowABodyThatIsNull) {
  HostDevice d(device);
  EXPECT_EQ(d.reportOf("add", "/qos-profiles/Q/tx-queues/uc-1", "{}"),
            "refused: /qos-profiles/Q/tx-queues/uc-1: nothing is at /qos-profiles/Q/tx-queues");
  EXPECT_EQ(d.reportOf("replace", "/qos-profiles/Q/tx-queues", "{}"),
            "refused: /qos-profiles/Q/tx-queues: nothing is there");
  EXPECT_THAT(d.heardFrom("[" + hostOperation("add", "/qos-profiles/Q/tx-queues", "{}") + "," +
                          hostOperation("add", "/qos-profiles/Q/tx-queues/uc-1", "{}") + "]"),
              ElementsAre("qosProfile Q", "txQueueConfig Q unicast-1"));
}

TEST(QosProfiles, SettingsOfATxQueueAreChangedAsOnAnInterface) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("replace", queues + "/uc-3/bandwidth", "41"),
              ElementsAre("bandwidth P unicast-3"));
  EXPECT_THAT(d.heardFrom("add", queues + "/uc-3/ecn", "{}"), ElementsAre("ecnConfig P unicast-3"));
  EXPECT_THAT(d.heardFrom("replace", queues + "/uc-3/wred/weight", "2"),
              ElementsAre("wredConfig P unicast-3"));
  EXPECT_EQ(queue(d, "P", 3)->wredConfig()->weight(), 2u);
  EXPECT_THAT(d.heardFrom("remove", queues + "/uc-3/wred"), ElementsAre("wredConfig P unicast-3"));
  EXPECT_EQ(d.reportOf("add", queues + "/uc-3/wred/weight", "2"),
            "refused: " + queues + "/uc-3/wred/weight: nothing is at " + queues + "/uc-3/wred");
}

TEST(QosProfiles, TestSeesWhatTheNativeSideHolds) {
  HostDevice d(device);
  EXPECT_EQ(d.reportOf("test", "/qos-profiles", R"({"Q": {}, "P": {"tx-queues": {"mc-1": {},
      "uc-3": {"wred": {"weight": 1}, "bandwidth": 40}}}})"),
            "");
  EXPECT_EQ(
      d.reportOf("test", "/qos-profiles/Q", R"({"tx-queues": {}})"),
      "refused: /qos-profiles/Q: test failed: at /tx-queues: expected {}, and nothing is there");
}

}  // namespace
}  // namespace host::qosProfilesTest
