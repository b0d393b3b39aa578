// Native priority flow control into OpenConfig: the watchdog of the whole device, and the port
// settings of each interface.
//
// What wakes what:
//   pfcWatchdogTimeA, pfcWatchdogTimeB, pfcWatchdogAction, pfcWatchdogTimeC,
//   pfcWatchdogPriorities of Qos::Input::Config    PfcKivToOCSm::handlePfcWatchdogConfig()
//   intfConfig of Qos::Input::Config               IntfPfcKivToOCSm::handleIntfConfig(interface)
//   pfcPortConfig of Qos::IntfConfig               re-points InterfaceConfigSm's changing input
//   another port record in that input              InterfaceConfigSm::handlePfcPortConfig()
//   priorities of Pfc::PortConfig                  InterfaceConfigSm::handlePfcPortConfig()
#pragma once

#include "Rok/Rok.h"
#include "models/native/Pfc.h"
#include "models/native/QosInput.h"
#include "models/openconfig/Interface.h"
#include "models/openconfig/Pfc.h"

namespace QosOc {

// The value in hexadecimal: lower-case digits, no prefix, no leading zeros.
QOS_EXPORT Velmo::String priorityConverter(unsigned char value);

// ===== The watchdog

// The root of the watchdog's settings, and the only machine of its kind.
class QOS_EXPORT PfcKivToOCSm final : public Rok::StateMachine<PfcKivToOCSm> {
 public:
  static constexpr std::string_view rokTypeName = "PfcKivToOCSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"cliConfig", &Self::cliConfig},
                      Rok::Argument{"pfcConfig", &Self::pfcConfig}};
  }
  static auto PfcKivToOCSmIs(const auto&... arguments) { return create(arguments...); }

  Rok::Ptr<Qos::Input::Config const> cliConfig() const { return cliConfig_.ptr(); }
  Rok::Out<Config::Pfc> pfcConfig() const { return pfcConfig_; }

  // One of the settings changed. Writes them all.
  void handlePfcWatchdogConfig();
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using Attr = Qos::Input::Config::Attr;
  using RokCliConfig =
      Rok::Watch<Self, Qos::Input::Config,
                 Rok::On<Attr::pfcWatchdogTimeA, &Self::handlePfcWatchdogConfig>,
                 Rok::On<Attr::pfcWatchdogTimeB, &Self::handlePfcWatchdogConfig>,
                 Rok::On<Attr::pfcWatchdogAction, &Self::handlePfcWatchdogConfig>,
                 Rok::On<Attr::pfcWatchdogTimeC, &Self::handlePfcWatchdogConfig>,
                 Rok::On<Attr::pfcWatchdogPriorities, &Self::handlePfcWatchdogConfig>>;

  PfcKivToOCSm(Rok::In<Qos::Input::Config> cliConfig, Rok::Out<Config::Pfc> pfcConfig);
  auto parts() { return std::tie(cliConfig_); }

  RokCliConfig cliConfig_;
  Rok::Ptr<Config::Pfc> pfcConfig_;
};

// ===== Interfaces

// One interface. Writes the port settings to the interface's output.
class QOS_EXPORT InterfaceConfigSm final : public Rok::StateMachine<InterfaceConfigSm> {
 public:
  static constexpr std::string_view rokTypeName = "InterfaceConfigSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"intfConfig", &Self::intfConfig},
                      Rok::Argument{"interfacesDir", &Self::interfacesDir}};
  }
  static auto InterfaceConfigSmIs(const auto&... arguments) { return create(arguments...); }

  Rok::Ptr<Qos::IntfConfig const> intfConfig() const { return intfConfig_.ptr(); }
  Rok::Out<Config::InterfacesDir> interfacesDir() const { return interfacesDir_; }
  // The interface of no name without a config.
  Nerit::IntfId intfId() const { return intfConfig_.read(&Qos::IntfConfig::intfId); }

  // The changing input: the port record that intfConfig() holds at the moment. Unlike other chained
  // inputs it handles another record at once, since nothing else may announce the new priorities.
  Rok::Ptr<Pfc::PortConfig const> pfcPortConfig() const { return pfcPortConfig_.ptr(); }
  void pfcPortConfigIs(Rok::In<Pfc::PortConfig> port) { pfcPortConfig_.inputIs(port); }
  void pfcPortConfigDel() { pfcPortConfig_.inputDel(); }

  // Writes the priorities, if the interface has a port record. One that went away leaves what it
  // wrote.
  void handlePfcPortConfig();
  // Blanks the priorities, and removes an output that nothing else needs. Creates nothing.
  void doPrepareToDie();

 private:
  friend Rok::StateMachine<Self>;
  void followPfcPortConfig() { pfcPortConfig_.follow(*this); }
  using RokIntfConfig =
      Rok::Watch<Self, Qos::IntfConfig,
                 Rok::On<Qos::IntfConfig::Attr::pfcPortConfig, &Self::followPfcPortConfig>>;

  InterfaceConfigSm(Rok::In<Qos::IntfConfig> intfConfig,
                    Rok::Out<Config::InterfacesDir> interfacesDir);
  auto parts() { return std::tie(intfConfig_, pfcPortConfig_); }

  RokIntfConfig intfConfig_;
  Rok::Ptr<Config::InterfacesDir> interfacesDir_;
  using RokPfcPortConfig =
      Rok::ChainedWatch<Self, &Self::intfConfig_, &Qos::IntfConfig::pfcPortConfig,
                        Rok::OnBound<&Self::handlePfcPortConfig>,
                        Rok::On<Pfc::PortConfig::Attr::priorities, &Self::handlePfcPortConfig>>;
  RokPfcPortConfig pfcPortConfig_;
};

// The root of the interfaces' settings. It sweeps nothing: what an earlier run wrote on an
// interface that the native side no longer has stays there.
class QOS_EXPORT IntfPfcKivToOCSm final : public Rok::StateMachine<IntfPfcKivToOCSm> {
 public:
  static constexpr std::string_view rokTypeName = "IntfPfcKivToOCSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"cliConfig", &Self::cliConfig},
                      Rok::Argument{"interfacesDir", &Self::interfacesDir}};
  }
  using IntfConfigSmKeyFunktor =
      Rok::KeyFunktor<&InterfaceConfigSm::intfConfig, &Qos::IntfConfig::intfId>;
  using IntfConfigSms = Rok::Children<InterfaceConfigSm, 0x76f988dau, IntfConfigSmKeyFunktor>;

  static auto IntfPfcKivToOCSmIs(const auto&... arguments) { return create(arguments...); }

  Rok::Ptr<Qos::Input::Config const> cliConfig() const { return cliConfig_.ptr(); }
  Rok::Out<Config::InterfacesDir> interfacesDir() const { return interfacesDir_; }

  const IntfConfigSms& intfConfigSm() const { return intfConfigSm_; }
  auto intfConfigSmIs(const auto&... arguments) { return intfConfigSm_.is(arguments...); }
  void intfConfigSmDel(const Nerit::IntfId& intfId) { intfConfigSm_.del(intfId); }
  void intfConfigSmDelAll() { intfConfigSm_.delAll(); }

  // An interface came or went.
  void handleIntfConfig(const Nerit::IntfId& intfId);
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using RokCliConfig =
      Rok::Watch<Self, Qos::Input::Config,
                 Rok::On<Qos::Input::Config::Attr::intfConfig, &Self::handleIntfConfig>>;

  IntfPfcKivToOCSm(Rok::In<Qos::Input::Config> cliConfig,
                   Rok::Out<Config::InterfacesDir> interfacesDir);
  auto parts() { return std::tie(cliConfig_, intfConfigSm_); }

  RokCliConfig cliConfig_;
  Rok::Ptr<Config::InterfacesDir> interfacesDir_;
  IntfConfigSms intfConfigSm_;
};

// ===== Factories

// Deaf without cliConfig. Requires: pfcConfig.
QOS_EXPORT Rok::Factory<PfcKivToOCSm> pfcKivToOCSmFactory;
// Deaf without cliConfig. Requires: interfacesDir.
QOS_EXPORT Rok::Factory<IntfPfcKivToOCSm> intfPfcKivToOCSmFactory;
// Deaf without intfConfig. Requires: interfacesDir.
QOS_EXPORT Rok::Factory<InterfaceConfigSm> interfaceConfigSmFactory;

}  // namespace QosOc
