// Devices with priority flow control: the watchdog's settings, and the interfaces whose port
// settings a root writes to their outputs.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "QosOpenConfig/QosOpenConfigPfcKivToOCSm.h"

namespace support {

struct WatchdogDevice {
  Rok::Ptr<Qos::Input::Config> config = Rok::make<Qos::Input::Config>();
  Rok::Ptr<QosOc::Config::Pfc> pfc = Rok::make<QosOc::Config::Pfc>();
  Rok::Ptr<QosOc::PfcKivToOCSm> root;

  // Native writes: each setting differs from its default and from the others.
  void configure() {
    config->pfcWatchdogTimeAIs(0.5);
    config->pfcWatchdogTimeBIs(1.5);
    config->pfcWatchdogActionIs(2);
    config->pfcWatchdogTimeCIs(2.5);
    config->pfcWatchdogPrioritiesIs(0x1f);
  }

  // Starts and stops the root.
  void start() { root = QosOc::pfcKivToOCSmFactory(config, pfc); }
  void stop() { root = nullptr; }
  void restart() {
    stop();
    start();
  }

  // The output.
  const QosOc::Config::PfcWatchdog& model() const { return pfc->watchdog(); }
};

// Interface to its flow control: the priorities, "blank" for empty ones, "no output" when there is
// none, followed by " +queues" and " +policy" for what others have in the output.
using PortModel = std::map<std::string, std::string>;

struct PortDevice {
  Rok::Ptr<Qos::Input::Config> config = Rok::make<Qos::Input::Config>();
  Rok::Ptr<QosOc::Config::InterfacesDir> interfaces = Rok::make<QosOc::Config::InterfacesDir>();
  Rok::Ptr<QosOc::IntfPfcKivToOCSm> root;

  // Native writes.
  static Nerit::IntfId id(const Rok::String& name) { return Nerit::IntfId(name); }
  static Rok::Ptr<Pfc::PortConfig> port(std::uint8_t priorities) {
    return Rok::make<Pfc::PortConfig>(priorities);
  }
  // An interface, with a port record or without.
  Rok::Ptr<Qos::IntfConfig> add(const Rok::String& name,
                                const Rok::Ptr<Pfc::PortConfig>& portConfig = nullptr) {
    auto made = Rok::make<Qos::IntfConfig>(id(name));
    made->pfcPortConfigIs(portConfig);
    config->intfConfigIs(id(name), made);
    return made;
  }
  Rok::Ptr<Qos::IntfConfig> add(const Rok::String& name, std::uint8_t priorities) {
    return add(name, port(priorities));
  }
  void remove(const Rok::String& name) { config->intfConfigDel(id(name)); }

  // Starts and stops the root.
  void start() { root = QosOc::intfPfcKivToOCSmFactory(config, interfaces); }
  void stop() { root = nullptr; }
  void restart() {
    stop();
    start();
  }
  // The machine of an interface; null when it is not mirrored.
  Rok::Ptr<QosOc::InterfaceConfigSm> machine(const Rok::String& name) const {
    return root->intfConfigSm().child(id(name));
  }

  // The output.
  PortModel model() const {
    PortModel result;
    for (auto i = interfaces->interface().iterator(); i; ++i) {
      result[std::string(std::string_view(i.key()))] = flowControl(*i.currNodeNonStale()->value());
    }
    return result;
  }
  static std::string flowControl(const QosOc::Config::Interface& interface) {
    const auto& output = interface.output();
    if (!output) return "no output";
    const Rok::String& priorities = output->pfc().priorities;
    std::string result(priorities.empty() ? "blank" : std::string_view(priorities));
    if (output->queues()) result += " +queues";
    if (output->schedulerPolicy()) result += " +policy";
    return result;
  }

  // What others write to the output of an interface.
  void queues(const Rok::String& name) { interfaces->interfaceIs(name)->outputIs()->queuesIs(""); }
  void policy(const Rok::String& name) {
    interfaces->interfaceIs(name)->outputIs()->schedulerPolicyIs(
        QosOc::Config::InterfaceOutputSchedulerPolicy{{"wan"}});
  }
  void policyDel(const Rok::String& name) {
    interfaces->interfaceIs(name)->outputIs()->schedulerPolicyIs(
        QosOc::Config::InterfaceOutput::SchedulerPolicy());
  }
  // Output of an earlier run.
  Rok::Ptr<QosOc::Config::Interface> earlier(const Rok::String& name,
                                             const Rok::String& priorities) {
    auto interface = interfaces->interfaceIs(name);
    interface->outputIs()->pfcIs({priorities});
    return interface;
  }
};

}  // namespace support
