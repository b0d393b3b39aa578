#include "QosOpenConfig/QosOpenConfigPfcKivToOCSm.h"

#include <charconv>
#include <cstdint>
#include <string_view>

namespace QosOc {
namespace {

constinit Rok::TraceHandle traceHandle("OpenConfigQos", false);

constexpr Rok::TraceFacility::FacilityLevel handler = 2;

// Two actions are told apart; whatever else the native side holds is the default.
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

Rok::Ptr<PfcKivToOCSm> PfcKivToOCSm::PfcKivToOCSmIs(
    const Rok::Ptr<Qos::Input::Config const>& cliConfig, const Rok::Ptr<Config::Pfc>& pfcConfig) {
  return create(cliConfig, pfcConfig);
}

PfcKivToOCSm::PfcKivToOCSm(const Rok::Ptr<Qos::Input::Config const>& cliConfig,
                           const Rok::Ptr<Config::Pfc>& pfcConfig)
    : cliConfig_(*this, cliConfig), pfcConfig_(pfcConfig) {
  rokInitialize<&PfcKivToOCSm::handleInitialized>();
}

void PfcKivToOCSm::handlePfcWatchdogConfig() {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "PfcKivToOCSm "
         << "handlePfcWatchdogConfig";
  }
  Config::PfcWatchdog watchdog;
  watchdog.timeA = cliConfig_->pfcWatchdogTimeA();
  watchdog.timeB = cliConfig_->pfcWatchdogTimeB();
  watchdog.timeC = cliConfig_->pfcWatchdogTimeC();
  watchdog.action = watchdogAction(cliConfig_->pfcWatchdogAction());
  watchdog.priorities = priorityConverter(cliConfig_->pfcWatchdogPriorities());
  pfcConfig_->watchdogIs(watchdog);
}

void PfcKivToOCSm::handleInitialized() {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "PfcKivToOCSm "
         << "handleInitialized";
  }
  handlePfcWatchdogConfig();
}

// ===== IntfPfcKivToOCSm

Rok::Ptr<IntfPfcKivToOCSm> IntfPfcKivToOCSm::IntfPfcKivToOCSmIs(
    const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir) {
  return create(cliConfig, interfacesDir);
}

IntfPfcKivToOCSm::IntfPfcKivToOCSm(const Rok::Ptr<Qos::Input::Config const>& cliConfig,
                                   const Rok::Ptr<Config::InterfacesDir>& interfacesDir)
    : cliConfig_(*this, cliConfig), interfacesDir_(interfacesDir), intfConfigSm_(*this) {
  rokInitialize<&IntfPfcKivToOCSm::handleInitialized>();
}

void IntfPfcKivToOCSm::handleIntfConfig(const Nerit::IntfId& intfId) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "IntfPfcKivToOCSm "
         << "handleIntfConfig"
         << ": interface id = " << intfId;
  }
  if (const auto* entry = cliConfig_->intfConfig().find(intfId)) {
    intfConfigSmIs(*entry, interfacesDir_);
  } else {
    intfConfigSm_.withdraw(intfId);
  }
}

void IntfPfcKivToOCSm::handleInitialized() {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "IntfPfcKivToOCSm "
         << "handleInitialized";
  }
  for (const auto& [intfId, config] : cliConfig_->intfConfig()) handleIntfConfig(intfId);
}

// ===== InterfaceConfigSm

Rok::Ptr<InterfaceConfigSm> InterfaceConfigSm::InterfaceConfigSmIs(
    const Rok::Ptr<Qos::IntfConfig const>& intfConfig,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir) {
  return create(intfConfig, interfacesDir);
}

// The port record is handled twice at start, here and when the input is bound to it. Both write the
// same.
InterfaceConfigSm::InterfaceConfigSm(const Rok::Ptr<Qos::IntfConfig const>& intfConfig,
                                     const Rok::Ptr<Config::InterfacesDir>& interfacesDir)
    : intfConfig_(*this, intfConfig), interfacesDir_(interfacesDir), pfcPortConfig_(*this) {
  rokInitialize<&InterfaceConfigSm::handlePfcPortConfig, &InterfaceConfigSm::followPfcPortConfig>();
}

Nerit::IntfId InterfaceConfigSm::intfId() const {
  return intfConfig_ ? intfConfig_->intfId() : Nerit::IntfId();
}

void InterfaceConfigSm::followPfcPortConfig() { pfcPortConfigIs(intfConfig_->pfcPortConfig()); }

// Reads the record that the interface holds, which the input only follows.
void InterfaceConfigSm::handlePfcPortConfig() {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "InterfaceConfigSm "
         << "handlePfcPortConfig";
  }
  const auto& port = intfConfig_->pfcPortConfig();
  // A port record that went leaves its priorities in the output until the interface goes.
  // Deliberate.
  if (!port) return;
  // An interface that is made here gets no config: only the binding of classifiers writes one.
  const auto interface = interfacesDir_->interfaceIs(intfId().stringValue());
  interface->outputIs()->pfcIs({priorityConverter(port->priorities())});
}

void InterfaceConfigSm::doPrepareToDie() {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "InterfaceConfigSm "
         << "doPrepareToDie";
  }
  const auto interface = interfacesDir_->interface(intfId().stringValue());
  if (!interface || !interface->output()) return;
  const auto output = interface->output();
  output->pfcIs(Config::IntfPfc());
  if (output->queues() || output->schedulerPolicy()) return;
  interface->outputDel();
}

// ===== Factories

Rok::Ptr<PfcKivToOCSm> pfcKivToOCSmFactory(const Rok::Ptr<Qos::Input::Config const>& cliConfig,
                                           const Rok::Ptr<Config::Pfc>& pfcConfig) {
  return PfcKivToOCSm::PfcKivToOCSmIs(cliConfig, pfcConfig);
}

Rok::Ptr<IntfPfcKivToOCSm> intfPfcKivToOCSmFactory(
    const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir) {
  return IntfPfcKivToOCSm::IntfPfcKivToOCSmIs(cliConfig, interfacesDir);
}

Rok::Ptr<InterfaceConfigSm> interfaceConfigSmFactory(
    const Rok::Ptr<Qos::IntfConfig const>& intfConfig,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir) {
  return InterfaceConfigSm::InterfaceConfigSmIs(intfConfig, interfacesDir);
}

}  // namespace QosOc
