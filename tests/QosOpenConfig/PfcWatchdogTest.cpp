// The settings of the priority flow control's watchdog.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigPfcKivToOCSm.h"
#include "tests/support/PfcDevice.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::pfcWatchdogTest {
namespace {

using support::TraceCapture;
using support::WatchdogDevice;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

// ===== Priorities in hexadecimal

TEST(PriorityConverter, GivesLowerCaseDigitsWithoutPrefixOrLeadingZeros) {
  EXPECT_EQ(priorityConverter(0), "0");
  EXPECT_EQ(priorityConverter(1), "1");
  EXPECT_EQ(priorityConverter(9), "9");
  EXPECT_EQ(priorityConverter(10), "a");
  EXPECT_EQ(priorityConverter(15), "f");
  EXPECT_EQ(priorityConverter(16), "10");
  EXPECT_EQ(priorityConverter(128), "80");
  EXPECT_EQ(priorityConverter(255), "ff");
}

TEST(PriorityConverter, GivesForEveryByteWhatAHexadecimalStreamGives) {
  for (unsigned value = 0; value < 256; ++value) {
    std::ostringstream stream;
    stream << std::hex << value;
    EXPECT_EQ(std::string_view(priorityConverter(static_cast<unsigned char>(value))), stream.str());
  }
}

// ===== Watchdog

constexpr double infinity = std::numeric_limits<double>::infinity();

const Config::PfcWatchdog configured{0.5, 1.5, 2.5, 2, "1f"};
const Config::PfcWatchdog stale{7, 8, 9, 5, "stale"};

struct Watchdog : testing::Test, WatchdogDevice {
  Watchdog() {
    configure();
    start();
  }
};

TEST_F(Watchdog, AStartCopiesEverySetting) { EXPECT_EQ(model(), configured); }

TEST(WatchdogStart, WithoutSettingsItWritesZeroTimesActionOneAndTheDigitZero) {
  WatchdogDevice device;
  device.start();
  EXPECT_EQ(device.model(), (Config::PfcWatchdog{0, 0, 0, 1, "0"}));
}

TEST(WatchdogStart, NothingOfAStaleRecordSurvives) {
  WatchdogDevice device;
  device.pfc->watchdogIs(stale);
  device.start();
  EXPECT_EQ(device.model(), (Config::PfcWatchdog{0, 0, 0, 1, "0"}));
}

TEST_F(Watchdog, EachSettingReachesItsOwnField) {
  config->pfcWatchdogTimeAIs(10);
  EXPECT_EQ(model(), (Config::PfcWatchdog{10, 1.5, 2.5, 2, "1f"}));
  config->pfcWatchdogTimeBIs(20);
  EXPECT_EQ(model(), (Config::PfcWatchdog{10, 20, 2.5, 2, "1f"}));
  config->pfcWatchdogActionIs(5);
  EXPECT_EQ(model(), (Config::PfcWatchdog{10, 20, 2.5, 5, "1f"}));
  config->pfcWatchdogTimeCIs(30);
  EXPECT_EQ(model(), (Config::PfcWatchdog{10, 20, 30, 5, "1f"}));
  config->pfcWatchdogPrioritiesIs(0xa0);
  EXPECT_EQ(model(), (Config::PfcWatchdog{10, 20, 30, 5, "a0"}));
}

TEST_F(Watchdog, AChangeOfOneSettingRewritesThemAll) {
  const std::vector<std::pair<std::function<void()>, Config::PfcWatchdog>> changes = {
      {[&] { config->pfcWatchdogTimeAIs(10); }, {10, 1.5, 2.5, 2, "1f"}},
      {[&] { config->pfcWatchdogTimeBIs(20); }, {10, 20, 2.5, 2, "1f"}},
      {[&] { config->pfcWatchdogActionIs(5); }, {10, 20, 2.5, 5, "1f"}},
      {[&] { config->pfcWatchdogTimeCIs(30); }, {10, 20, 30, 5, "1f"}},
      {[&] { config->pfcWatchdogPrioritiesIs(0xa0); }, {10, 20, 30, 5, "a0"}}};
  for (const auto& [change, expected] : changes) {
    pfc->watchdogIs(stale);
    change();
    EXPECT_EQ(model(), expected);
  }
}

TEST_F(Watchdog, OnlyTheActionsTwoAndFiveAreToldApart) {
  for (unsigned action = 0; action < 256; ++action) {
    config->pfcWatchdogActionIs(static_cast<std::uint8_t>(action));
    EXPECT_EQ(unsigned{model().action}, action == 2 || action == 5 ? action : 1u) << action;
  }
}

TEST(WatchdogStart, OnlyTheActionsTwoAndFiveAreToldApart) {
  for (unsigned action = 0; action < 256; ++action) {
    WatchdogDevice device;
    device.config->pfcWatchdogActionIs(static_cast<std::uint8_t>(action));
    device.start();
    EXPECT_EQ(unsigned{device.model().action}, action == 2 || action == 5 ? action : 1u) << action;
  }
}

TEST_F(Watchdog, EveryValueOfThePrioritiesIsShownInHexadecimal) {
  for (unsigned value = 0; value < 256; ++value) {
    config->pfcWatchdogPrioritiesIs(static_cast<std::uint8_t>(value));
    EXPECT_EQ(model().priorities, priorityConverter(static_cast<unsigned char>(value)));
  }
}

TEST_F(Watchdog, PrioritiesOfZeroAreTheDigitAndNotTheEmptyText) {
  config->pfcWatchdogPrioritiesIs(0);
  EXPECT_EQ(model().priorities, "0");
}

TEST_F(Watchdog, TimesAreCopiedAsTheyStand) {
  for (const double time : {1.0 / 3, -1.5, 1e300, 5e-324, infinity, -infinity, -0.0}) {
    config->pfcWatchdogTimeAIs(time);
    config->pfcWatchdogTimeBIs(time);
    config->pfcWatchdogTimeCIs(time);
    for (const double copy : {model().timeA, model().timeB, model().timeC}) {
      EXPECT_EQ(copy, time);
      EXPECT_EQ(std::signbit(copy), std::signbit(time));
    }
  }
  config->pfcWatchdogTimeBIs(std::numeric_limits<double>::quiet_NaN());
  EXPECT_TRUE(std::isnan(model().timeB));
}

TEST_F(Watchdog, ARestartChangesNothing) {
  restart();
  EXPECT_EQ(model(), configured);
}

TEST(WatchdogTrace, AStartTracesBothOperationsInOrderAtLevelTwo) {
  WatchdogDevice device;
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  device.start();
  EXPECT_THAT(trace.lines(), ElementsAre("2 PfcKivToOCSm handleInitialized",
                                         "2 PfcKivToOCSm "
                                         "handlePfcWatchdogConfig"));
  EXPECT_THAT(trace.handles(), Each("OpenConfigQos"));
}

TEST_F(Watchdog, EachChangeTracesItsEntryOnceAndAnEqualValueIsNoChange) {
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  configure();
  EXPECT_THAT(trace.lines(), IsEmpty());
  const std::vector<std::function<void()>> changes = {
      [&] { config->pfcWatchdogTimeAIs(10); }, [&] { config->pfcWatchdogTimeBIs(20); },
      [&] { config->pfcWatchdogActionIs(7); }, [&] { config->pfcWatchdogTimeCIs(30); },
      [&] { config->pfcWatchdogPrioritiesIs(0); }};
  for (const auto& change : changes) {
    trace.clear();
    change();
    EXPECT_THAT(trace.lines(), ElementsAre("2 PfcKivToOCSm handlePfcWatchdogConfig"));
  }
}

TEST_F(Watchdog, OtherAttributesOfTheConfigurationWakeNothing) {
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  config->intfConfigIs(Nerit::IntfId("Ethernet1"),
                       Rok::make<Qos::IntfConfig>(Nerit::IntfId("Ethernet1")));
  config->tcToTxQueueMapIs(1, 2);
  config->queueNameToTxQueueIdMapIs(Rok::make<Qos::QueueNameToTxQueueIdMap>());
  config->forwardingGroupNameToTcMapIs(Rok::make<Qos::ForwardingGroupNameToTcMap>());
  EXPECT_THAT(trace.lines(), IsEmpty());
}

}  // namespace
}  // namespace QosOc::pfcWatchdogTest
