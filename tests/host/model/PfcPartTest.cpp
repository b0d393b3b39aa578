#include <gtest/gtest.h>

#include "tests/support/HostDevice.h"
#include "tests/support/HostModel.h"

namespace host::pfcPartTest {
namespace {

using QosOc::Config::PfcWatchdog;
using support::hostFault;
using support::hostModelWith;
using support::hostPart;

TEST(PfcPart, ReadsAndWritesEveryField) {
  const std::string text = R"({"watchdog":{"action":255,"priorities":"ff","time-a":0.1,)"
                           R"("time-b":-1e+300,"time-c":3.0}})";
  const Model model = hostModelWith("pfc", text);
  EXPECT_EQ(hostPart(model, "pfc"), text);
  EXPECT_EQ(model.pfc->watchdog(), (PfcWatchdog{0.1, -1e300, 3, 255, "ff"}));
}

TEST(PfcPart, TakesWhatIsLeftOutAsDefault) {
  EXPECT_EQ(hostModelWith("pfc", "{}").pfc->watchdog(), PfcWatchdog());
  PfcWatchdog watchdog;
  watchdog.timeB = 2;
  EXPECT_EQ(hostModelWith("pfc", R"({"watchdog": {"time-b": 2}})").pfc->watchdog(), watchdog);
}

TEST(PfcPart, RefusesWhatIsNoWatchdog) {
  EXPECT_EQ(hostFault([] { hostModelWith("pfc", R"({"watchdog": {"action": 256}})"); }),
            "/pfc/watchdog/action: expected a whole number from 0 to 255, not 256");
  EXPECT_EQ(hostFault([] { hostModelWith("pfc", R"({"watchdog": {"time-a": "1"}})"); }),
            "/pfc/watchdog/time-a: expected a number, not \"1\"");
}

}  // namespace
}  // namespace host::pfcPartTest
