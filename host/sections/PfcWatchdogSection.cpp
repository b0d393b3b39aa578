// "pfc-watchdog": {"time-a": x, "time-b": x, "action": n, "time-c": x, "priorities": n}
#include "host/Sections.h"
#include "host/sections/Parts.h"

namespace host {
namespace {

using Qos::Input::Config;

constexpr const char* timeAMember = "time-a";
constexpr const char* timeBMember = "time-b";
constexpr const char* timeCMember = "time-c";
constexpr const char* actionMember = "action";
constexpr const char* prioritiesMember = "priorities";

Value timeA(const Config& config) { return Value(config.pfcWatchdogTimeA()); }
void timeAIs(Config& config, const Value& value) { config.pfcWatchdogTimeAIs(value.real()); }
Value timeB(const Config& config) { return Value(config.pfcWatchdogTimeB()); }
void timeBIs(Config& config, const Value& value) { config.pfcWatchdogTimeBIs(value.real()); }
Value timeC(const Config& config) { return Value(config.pfcWatchdogTimeC()); }
void timeCIs(Config& config, const Value& value) { config.pfcWatchdogTimeCIs(value.real()); }
Value action(const Config& config) { return numberValue(config.pfcWatchdogAction()); }
void actionIs(Config& config, const Value& value) { config.pfcWatchdogActionIs(byteOf(value)); }
Value watchdogPriorities(const Config& config) {
  return numberValue(config.pfcWatchdogPriorities());
}
void watchdogPrioritiesIs(Config& config, const Value& value) {
  config.pfcWatchdogPrioritiesIs(byteOf(value));
}

constexpr Setting<Config> settings[] = {
    {actionMember, action, actionIs}, {prioritiesMember, watchdogPriorities, watchdogPrioritiesIs},
    {timeAMember, timeA, timeAIs},    {timeBMember, timeB, timeBIs},
    {timeCMember, timeC, timeCIs},
};

std::unique_ptr<Place> pfcWatchdogPlace(const Native& native) {
  return std::make_unique<SettingsPlace<Config>>(native.qosConfig, settings);
}

}  // namespace

Section pfcWatchdogSection() {
  const Schema byte = Schema::number(largestByte);
  return {"pfc-watchdog",
          Schema::record({{timeAMember, Schema::real(), Value(0.0)},
                          {timeBMember, Schema::real(), Value(0.0)},
                          {actionMember, byte, numberValue(1)},
                          {timeCMember, Schema::real(), Value(0.0)},
                          {prioritiesMember, byte, numberValue(0)}}),
          pfcWatchdogPlace};
}

}  // namespace host
