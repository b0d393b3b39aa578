#include "QosOpenConfig/QosOpenConfigPfcKivToOCSm.h"

#include <charconv>
#include <cstdint>
#include <string_view>

namespace QosOc {
namespace {

constinit Rok::TraceHandle traceHandle("OpenConfigQos", false);

constexpr Rok::TraceLevel handler{traceHandle, 2};

// Two actions have a value of their own; any other native one reads as the default.
std::uint8_t watchdogAction(std::uint8_t action) {
  return action == 2 || action == 5 ? action : Config::PfcWatchdog().action;
}

}  // namespace

Velmo::String priorityConverter(unsigned char value) {
  char digits[2];
  const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value, 16);
  return Velmo::String(std::string_view(digits, end));
}

// ===== PfcKivToOCSm

PfcKivToOCSm::PfcKivToOCSm(Rok::In<Qos::Input::Config> cliConfig, Rok::Out<Config::Pfc> pfcConfig)
    : cliConfig_(*this, cliConfig), pfcConfig_(pfcConfig) {
  rokInitialize<&Self::handleInitialized>();
}

void PfcKivToOCSm::handlePfcWatchdogConfig() {
  Rok::traceLine(handler, "PfcKivToOCSm handlePfcWatchdogConfig");
  Config::PfcWatchdog watchdog;
  watchdog.timeA = cliConfig_->pfcWatchdogTimeA();
  watchdog.timeB = cliConfig_->pfcWatchdogTimeB();
  watchdog.timeC = cliConfig_->pfcWatchdogTimeC();
  watchdog.action = watchdogAction(cliConfig_->pfcWatchdogAction());
  watchdog.priorities = priorityConverter(cliConfig_->pfcWatchdogPriorities());
  pfcConfig_->watchdogIs(watchdog);
}

void PfcKivToOCSm::handleInitialized() {
  Rok::traceLine(handler, "PfcKivToOCSm handleInitialized");
  handlePfcWatchdogConfig();
}

// ===== IntfPfcKivToOCSm

IntfPfcKivToOCSm::IntfPfcKivToOCSm(Rok::In<Qos::Input::Config> cliConfig,
                                   Rok::Out<Config::InterfacesDir> interfacesDir)
    : cliConfig_(*this, cliConfig), interfacesDir_(interfacesDir), intfConfigSm_(*this) {
  rokInitialize<&Self::handleInitialized>();
}

void IntfPfcKivToOCSm::handleIntfConfig(const Nerit::IntfId& intfId) {
  Rok::traceLine(handler, "IntfPfcKivToOCSm handleIntfConfig: interface id = ", intfId);
  intfConfigSm_.mirror(cliConfig_->intfConfig(), intfId, Rok::entry, interfacesDir_);
}

void IntfPfcKivToOCSm::handleInitialized() {
  Rok::traceLine(handler, "IntfPfcKivToOCSm handleInitialized");
  eachKey<&Self::handleIntfConfig>(cliConfig_->intfConfig());
}

// ===== InterfaceConfigSm

// The port record is handled twice at start, here and when the input is bound to it. Both write the
// same.
InterfaceConfigSm::InterfaceConfigSm(Rok::In<Qos::IntfConfig> intfConfig,
                                     Rok::Out<Config::InterfacesDir> interfacesDir)
    : intfConfig_(*this, intfConfig), interfacesDir_(interfacesDir), pfcPortConfig_(*this) {
  rokInitialize<&Self::handlePfcPortConfig, &Self::followPfcPortConfig>();
}

// Reads the record that the interface holds, which the input only follows.
void InterfaceConfigSm::handlePfcPortConfig() {
  Rok::traceLine(handler, "InterfaceConfigSm handlePfcPortConfig");
  const auto& port = intfConfig_->pfcPortConfig();
  // A port record that went leaves its priorities in the output: only the interface's going blanks
  // them.
  if (!port) return;
  // An interface that is made here gets no config: only the binding of classifiers writes one.
  const auto interface = interfacesDir_->interfaceIs(intfId().stringValue());
  interface->outputIs()->pfcIs({priorityConverter(port->priorities())});
}

void InterfaceConfigSm::doPrepareToDie() {
  Rok::traceLine(handler, "InterfaceConfigSm doPrepareToDie");
  const auto interface = interfacesDir_->interface(intfId().stringValue());
  if (!interface || !interface->output()) return;
  const auto output = interface->output();
  output->pfcIs(Config::IntfPfc());
  if (output->queues() || output->schedulerPolicy()) return;
  interface->outputDel();
}

// ===== Factories

Rok::Ptr<PfcKivToOCSm> pfcKivToOCSmFactory(Rok::In<Qos::Input::Config> cliConfig,
                                           Rok::Out<Config::Pfc> pfcConfig) {
  return PfcKivToOCSm::PfcKivToOCSmIs(cliConfig, pfcConfig);
}

Rok::Ptr<IntfPfcKivToOCSm> intfPfcKivToOCSmFactory(Rok::In<Qos::Input::Config> cliConfig,
                                                   Rok::Out<Config::InterfacesDir> interfacesDir) {
  return IntfPfcKivToOCSm::IntfPfcKivToOCSmIs(cliConfig, interfacesDir);
}

Rok::Ptr<InterfaceConfigSm> interfaceConfigSmFactory(
    Rok::In<Qos::IntfConfig> intfConfig, Rok::Out<Config::InterfacesDir> interfacesDir) {
  return InterfaceConfigSm::InterfaceConfigSmIs(intfConfig, interfacesDir);
}

}  // namespace QosOc
