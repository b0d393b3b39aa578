// "pfc-watchdog": {"time-a": x, "time-b": x, "action": n, "time-c": x, "priorities": n}
#include "host/sections/Forms.h"

namespace host {
namespace {

using Qos::Input::Config;

constexpr Setting<Config> watchdogSettings[] = {
    attribute<&Config::pfcWatchdogTimeA, &Config::pfcWatchdogTimeAIs>("time-a"),
    attribute<&Config::pfcWatchdogTimeB, &Config::pfcWatchdogTimeBIs>("time-b"),
    attribute<&Config::pfcWatchdogAction, &Config::pfcWatchdogActionIs>("action"),
    attribute<&Config::pfcWatchdogTimeC, &Config::pfcWatchdogTimeCIs>("time-c"),
    attribute<&Config::pfcWatchdogPriorities, &Config::pfcWatchdogPrioritiesIs>("priorities"),
};

}  // namespace

Section pfcWatchdogSection() {
  return section(&Native::qosConfig, part<Record<watchdogSettings>>("pfc-watchdog"));
}

}  // namespace host
