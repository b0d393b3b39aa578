// The section "pfc-watchdog": how it is mounted, and what each change writes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostDevice.h"

namespace host::pfcWatchdogTest {
namespace {

using support::HostDevice;
using support::hostFault;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* device =
    R"({"pfc-watchdog": {"time-a": 0.2, "time-b": 3, "action": 5, "priorities": 255}})";

std::string faultOf(const std::string& section) {
  return hostFault([&] { HostDevice d(R"({"pfc-watchdog": )" + section + "}"); });
}

TEST(PfcWatchdog, HoldsItsSettings) {
  const HostDevice d(device);
  EXPECT_EQ(d.native.qosConfig->pfcWatchdogTimeA(), 0.2);
  EXPECT_EQ(d.native.qosConfig->pfcWatchdogTimeB(), 3.0);
  EXPECT_EQ(d.native.qosConfig->pfcWatchdogAction(), 5);
  EXPECT_EQ(d.native.qosConfig->pfcWatchdogTimeC(), 0.0);
  EXPECT_EQ(d.native.qosConfig->pfcWatchdogPriorities(), 255);
}

TEST(PfcWatchdog, ActionIsOneWhenLeftOutAndTheRestIsZero) {
  for (const char* document : {"{}", R"({"pfc-watchdog": {}})"}) {
    const HostDevice d(document);
    EXPECT_EQ(d.native.qosConfig->pfcWatchdogTimeA(), 0.0);
    EXPECT_EQ(d.native.qosConfig->pfcWatchdogTimeB(), 0.0);
    EXPECT_EQ(d.native.qosConfig->pfcWatchdogAction(), 1);
    EXPECT_EQ(d.native.qosConfig->pfcWatchdogTimeC(), 0.0);
    EXPECT_EQ(d.native.qosConfig->pfcWatchdogPriorities(), 0);
  }
}

TEST(PfcWatchdog, RefusesWhatItCannotHold) {
  EXPECT_EQ(faultOf("[]"), "/pfc-watchdog: expected an object, not an array");
  EXPECT_EQ(faultOf("null"), "/pfc-watchdog: null is never a value here: expected an object");
  EXPECT_EQ(faultOf(R"({"time-d": 1})"),
            "/pfc-watchdog/time-d: unknown member: did you mean time-a? (legal: time-a, time-b, "
            "action, time-c, priorities)");
  EXPECT_EQ(faultOf(R"({"time-a": "1"})"), "/pfc-watchdog/time-a: expected a number, not \"1\"");
  EXPECT_EQ(faultOf(R"({"action": 256})"),
            "/pfc-watchdog/action: expected a whole number from 0 to 255, not 256");
  EXPECT_EQ(faultOf(R"({"action": 1.5})"),
            "/pfc-watchdog/action: expected a whole number from 0 to 255, not 1.5");
  EXPECT_EQ(faultOf(R"({"action": 1.0})"),
            "/pfc-watchdog/action: expected a whole number from 0 to 255, not 1.0");
  EXPECT_EQ(faultOf(R"({"priorities": -1})"),
            "/pfc-watchdog/priorities: expected a whole number from 0 to 255, not -1");
  EXPECT_EQ(faultOf(R"({"action": null})"),
            "/pfc-watchdog/action: null is never a value here: expected a whole number from 0 to "
            "255");
  EXPECT_EQ(faultOf(R"({"action": 1, "action": 1})"),
            "/pfc-watchdog/action: the same member twice");
}

TEST(PfcWatchdog, ASettingIsAssigned) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("add", "/pfc-watchdog/time-a", "-1.5"), ElementsAre("pfcWatchdogTimeA"));
  EXPECT_THAT(d.heardFrom("replace", "/pfc-watchdog/time-b", "3.0"), IsEmpty());
  EXPECT_THAT(d.heardFrom("replace", "/pfc-watchdog/time-b", "4"), ElementsAre("pfcWatchdogTimeB"));
  EXPECT_THAT(d.heardFrom("replace", "/pfc-watchdog/time-c", "1"), ElementsAre("pfcWatchdogTimeC"));
  EXPECT_THAT(d.heardFrom("replace", "/pfc-watchdog/action", "2"),
              ElementsAre("pfcWatchdogAction"));
  EXPECT_THAT(d.heardFrom("replace", "/pfc-watchdog/priorities", "8"),
              ElementsAre("pfcWatchdogPriorities"));
  EXPECT_EQ(d.native.qosConfig->pfcWatchdogTimeA(), -1.5);
  EXPECT_EQ(d.native.qosConfig->pfcWatchdogTimeB(), 4.0);
  EXPECT_EQ(d.native.qosConfig->pfcWatchdogTimeC(), 1.0);
  EXPECT_EQ(d.native.qosConfig->pfcWatchdogAction(), 2);
  EXPECT_EQ(d.native.qosConfig->pfcWatchdogPriorities(), 8);
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(PfcWatchdog, ARemovedSettingHasItsDefault) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("remove", "/pfc-watchdog/action"), ElementsAre("pfcWatchdogAction"));
  EXPECT_EQ(d.native.qosConfig->pfcWatchdogAction(), 1);
  EXPECT_THAT(d.heardFrom("remove", "/pfc-watchdog/action"), IsEmpty());
  EXPECT_THAT(d.heardFrom("remove", "/pfc-watchdog/time-a"), ElementsAre("pfcWatchdogTimeA"));
  EXPECT_EQ(d.native.qosConfig->pfcWatchdogTimeA(), 0.0);
  EXPECT_THAT(d.heardFrom("remove", "/pfc-watchdog/priorities"),
              ElementsAre("pfcWatchdogPriorities"));
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(PfcWatchdog, AsAWholeLosesWhatIsLeftOutFirst) {
  for (const char* op : {"add", "replace"}) {
    HostDevice d(device);
    EXPECT_THAT(d.heardFrom(op, "/pfc-watchdog", R"({"time-c": 1, "time-a": 2, "time-b": 3})"),
                ElementsAre("pfcWatchdogAction", "pfcWatchdogPriorities", "pfcWatchdogTimeC",
                            "pfcWatchdogTimeA"));
  }
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("remove", "/pfc-watchdog"),
              ElementsAre("pfcWatchdogTimeA", "pfcWatchdogTimeB", "pfcWatchdogAction",
                          "pfcWatchdogPriorities"));
  EXPECT_THAT(d.heardFrom("remove", "/pfc-watchdog"), IsEmpty());
}

TEST(PfcWatchdog, TestSeesWhatTheNativeSideHolds) {
  HostDevice d(device);
  EXPECT_EQ(d.reportOf("test", "/pfc-watchdog",
                       R"({"priorities": 255, "time-a": 2e-1, "time-b": 3.0, "action": 5})"),
            "");
  EXPECT_EQ(d.reportOf("test", "/pfc-watchdog/time-c", "0"), "");
  EXPECT_EQ(d.reportOf("test", "/pfc-watchdog", "{}"),
            "refused: /pfc-watchdog: test failed: at /action: expected 1, and 5 is there");
}

TEST(PfcWatchdog, RefusesChangesThatDoNotFit) {
  HostDevice d(device);
  EXPECT_EQ(d.reportOf("add", "/pfc-watchdog/time-d", "1"),
            "refused: /pfc-watchdog/time-d: unknown member \"time-d\": did you mean time-a? "
            "(legal: time-a, time-b, action, time-c, priorities)");
  EXPECT_EQ(d.reportOf("add", "/pfc-watchdog/action", "256"),
            "refused: /pfc-watchdog/action: expected a whole number from 0 to 255, not 256");
  EXPECT_EQ(d.reportOf("replace", "/pfc-watchdog", R"({"action": true})"),
            "refused: /pfc-watchdog: at /action: expected a whole number from 0 to 255, not true");
}

}  // namespace
}  // namespace host::pfcWatchdogTest
