#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostModel.h"

namespace host::pfcJsonTest {
namespace {

using QosOc::Config::PfcWatchdog;
using support::HostModel;
using support::HostRendered;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string path = "/openconfig-qos:qos/qosoc-augments:pfc/watchdog/config/";
const std::string native = ": left out (from the PFC watchdog)";

HostRendered rendered(const PfcWatchdog& watchdog) {
  const HostModel built;
  built.model.pfc->watchdogIs(watchdog);
  return HostRendered(built);
}
std::string tree(const std::string& leaves) {
  return R"("qosoc-augments:pfc":{"watchdog":{"config":{)" + leaves + "}}}";
}

TEST(PfcJson, ShowsNothingOfAWatchdogThatNobodyConfigured) {
  EXPECT_EQ(rendered(PfcWatchdog()).tree(), "");
  EXPECT_EQ(rendered({0, 0, 0, 1, "0"}).tree(), "");
}

TEST(PfcJson, ShowsEverySettingOfTheWatchdog) {
  const auto all = rendered({0.1, 20, 123456789.987654321, 5, "ff"});
  EXPECT_EQ(all.tree(), tree(R"("action":5,"priorities":"ff","time-a":"0.1","time-b":"20.0",)"
                             R"("time-c":"123456789.98765433")"));
  EXPECT_THAT(all.warnings, IsEmpty());
}

TEST(PfcJson, ShowsAllWhenOneSettingIsConfigured) {
  const std::string zero = R"("time-a":"0.0","time-b":"0.0","time-c":"0.0")";
  EXPECT_EQ(rendered({0, 0, 0, 2, ""}).tree(), tree(R"("action":2,)" + zero));
  EXPECT_EQ(rendered({0, 0, 0, 1, "1"}).tree(), tree(R"("action":1,"priorities":"1",)" + zero));
  EXPECT_EQ(rendered({0, 0, 1, 1, "0"}).tree(),
            tree(R"("action":1,"priorities":"0","time-a":"0.0","time-b":"0.0","time-c":"1.0")"));
}

TEST(PfcJson, ShowsTimesUpToTheBordersOfTheLeaf) {
  const auto all = rendered({0.000000001, 9223372036.0, -9223372036.0, 1, "0"});
  EXPECT_EQ(all.tree(), tree(R"("action":1,"priorities":"0","time-a":"0.000000001",)"
                             R"("time-b":"9223372036.0","time-c":"-9223372036.0")"));
  EXPECT_THAT(all.warnings, IsEmpty());
  EXPECT_EQ(rendered({-0.0, 0, 0, 2, "0"}).tree(),
            tree(R"("action":2,"priorities":"0","time-a":"0.0","time-b":"0.0","time-c":"0.0")"));
}

TEST(PfcJson, LeavesOutTimesThatTheLeafCannotHold) {
  const auto none = rendered({1e-10, 9223372037.0, -1e300, 1, "0"});
  EXPECT_EQ(none.tree(), tree(R"("action":1,"priorities":"0")"));
  const std::string reason = " does not fit a decimal number with 9 fraction digits";
  EXPECT_THAT(none.warnings, ElementsAre(path + "time-a: 1e-10" + reason + native,
                                         path + "time-b: 9223372037" + reason + native,
                                         path + "time-c: -1e+300" + reason + native));
}

TEST(PfcJson, LeavesOutPrioritiesThatAreNoByte) {
  for (const char* text : {"00", "0f", "F", "100", "g", "0x1", " 1", "-1"}) {
    const auto none = rendered({0, 0, 0, 2, text});
    EXPECT_EQ(none.tree(), tree(R"("action":2,"time-a":"0.0","time-b":"0.0","time-c":"0.0")"));
    EXPECT_THAT(none.warnings, ElementsAre(path + "priorities: \"" + text +
                                           "\" is not eight bits in hexadecimal" + native));
  }
  for (const char* text : {"0", "9", "a", "10", "80", "ff"}) {
    EXPECT_THAT(rendered({0, 0, 0, 2, text}).warnings, IsEmpty()) << text;
  }
}

}  // namespace
}  // namespace host::pfcJsonTest
