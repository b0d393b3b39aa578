// The OpenConfig priority flow control of the whole device.
#include "models/openconfig/Pfc.h"

#include <gtest/gtest.h>

#include <limits>

namespace QosOc::Config::pfcTest {
namespace {

TEST(PfcWatchdog, HasActionOneAndNothingElseAtFirst) {
  const PfcWatchdog watchdog;
  EXPECT_EQ(watchdog.timeA, 0);
  EXPECT_EQ(watchdog.timeB, 0);
  EXPECT_EQ(watchdog.timeC, 0);
  EXPECT_EQ(watchdog.action, 1);
  EXPECT_EQ(watchdog.priorities, "");
}

TEST(Pfc, TheWatchdogIsTheDefaultAtFirstAndReplacedWhole) {
  const auto pfc = Rok::make<Pfc>();
  EXPECT_EQ(pfc->watchdog(), PfcWatchdog());
  pfc->watchdogIs({0.5, 1.5, 2.5, 5, "ff"});
  EXPECT_EQ(pfc->watchdog(), (PfcWatchdog{0.5, 1.5, 2.5, 5, "ff"}));
  pfc->watchdogIs(PfcWatchdog());
  EXPECT_EQ(pfc->watchdog(), PfcWatchdog());
}

TEST(Pfc, TimesAreKeptInFullPrecision) {
  const auto pfc = Rok::make<Pfc>();
  constexpr double third = 1.0 / 3;
  pfc->watchdogIs({third, std::numeric_limits<double>::max(), -third, 1, ""});
  EXPECT_EQ(pfc->watchdog().timeA, third);
  EXPECT_EQ(pfc->watchdog().timeB, std::numeric_limits<double>::max());
  EXPECT_EQ(pfc->watchdog().timeC, -third);
}

}  // namespace
}  // namespace QosOc::Config::pfcTest
