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
class PfcKivToOCSm final : public Rok::StateMachine<PfcKivToOCSm> {
 public:
  static constexpr std::string_view rokTypeName = "PfcKivToOCSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"cliConfig", &PfcKivToOCSm::cliConfig},
                      Rok::Argument{"pfcConfig", &PfcKivToOCSm::pfcConfig}};
  }
  static Rok::Ptr<PfcKivToOCSm> PfcKivToOCSmIs(const Rok::Ptr<Qos::Input::Config const>& cliConfig,
                                               const Rok::Ptr<Config::Pfc>& pfcConfig);

  Rok::Ptr<Qos::Input::Config const> cliConfig() const { return cliConfig_.ptr(); }
  const Rok::Ptr<Config::Pfc>& pfcConfig() const { return pfcConfig_; }

  // One of the settings changed. Writes them all.
  void handlePfcWatchdogConfig();
  void handleInitialized();

 private:
  friend Rok::StateMachine<PfcKivToOCSm>;
  using Attr = Qos::Input::Config::Attr;
  using RokCliConfig =
      Rok::Watch<PfcKivToOCSm, Qos::Input::Config,
                 Rok::On<Attr::pfcWatchdogTimeA, &PfcKivToOCSm::handlePfcWatchdogConfig>,
                 Rok::On<Attr::pfcWatchdogTimeB, &PfcKivToOCSm::handlePfcWatchdogConfig>,
                 Rok::On<Attr::pfcWatchdogAction, &PfcKivToOCSm::handlePfcWatchdogConfig>,
                 Rok::On<Attr::pfcWatchdogTimeC, &PfcKivToOCSm::handlePfcWatchdogConfig>,
                 Rok::On<Attr::pfcWatchdogPriorities, &PfcKivToOCSm::handlePfcWatchdogConfig>>;

  PfcKivToOCSm(const Rok::Ptr<Qos::Input::Config const>& cliConfig,
               const Rok::Ptr<Config::Pfc>& pfcConfig);
  auto parts() { return std::tie(cliConfig_); }

  RokCliConfig cliConfig_;
  Rok::Ptr<Config::Pfc> pfcConfig_;
};

// ===== Interfaces

// One interface. Writes the port settings to the interface's output.
class InterfaceConfigSm final : public Rok::StateMachine<InterfaceConfigSm> {
 public:
  static constexpr std::string_view rokTypeName = "InterfaceConfigSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"intfConfig", &InterfaceConfigSm::intfConfig},
                      Rok::Argument{"interfacesDir", &InterfaceConfigSm::interfacesDir}};
  }
  static Rok::Ptr<InterfaceConfigSm> InterfaceConfigSmIs(
      const Rok::Ptr<Qos::IntfConfig const>& intfConfig,
      const Rok::Ptr<Config::InterfacesDir>& interfacesDir);

  Rok::Ptr<Qos::IntfConfig const> intfConfig() const { return intfConfig_.ptr(); }
  const Rok::Ptr<Config::InterfacesDir>& interfacesDir() const { return interfacesDir_; }
  // The interface of no name without a config.
  Nerit::IntfId intfId() const;

  // The changing input: the port record that intfConfig() holds at the moment. Unlike other chained
  // inputs it handles another record at once, since the new priorities may be told by nothing else.
  Rok::Ptr<Pfc::PortConfig const> pfcPortConfig() const { return pfcPortConfig_.ptr(); }
  void pfcPortConfigIs(const Rok::Ptr<Pfc::PortConfig const>& pfcPortConfig) {
    pfcPortConfig_.inputIs(pfcPortConfig);
  }
  void pfcPortConfigDel() { pfcPortConfig_.inputDel(); }

  // Writes the priorities, if the interface has a port record. One that went away leaves what it
  // wrote.
  void handlePfcPortConfig();
  // Blanks the priorities, and removes an output that nobody else needs. Creates nothing.
  void doPrepareToDie();

 private:
  friend Rok::StateMachine<InterfaceConfigSm>;
  void followPfcPortConfig();
  using RokIntfConfig = Rok::Watch<
      InterfaceConfigSm, Qos::IntfConfig,
      Rok::On<Qos::IntfConfig::Attr::pfcPortConfig, &InterfaceConfigSm::followPfcPortConfig>>;
  using RokPfcPortConfig = Rok::Watch<
      InterfaceConfigSm, Pfc::PortConfig, Rok::OnBound<&InterfaceConfigSm::handlePfcPortConfig>,
      Rok::On<Pfc::PortConfig::Attr::priorities, &InterfaceConfigSm::handlePfcPortConfig>>;

  InterfaceConfigSm(const Rok::Ptr<Qos::IntfConfig const>& intfConfig,
                    const Rok::Ptr<Config::InterfacesDir>& interfacesDir);
  auto parts() { return std::tie(intfConfig_, pfcPortConfig_); }

  RokIntfConfig intfConfig_;
  Rok::Ptr<Config::InterfacesDir> interfacesDir_;
  RokPfcPortConfig pfcPortConfig_;
};

// The root of the interfaces' settings. It sweeps nothing: what an earlier life wrote on an
// interface that the native side no longer has stays there.
class IntfPfcKivToOCSm final : public Rok::StateMachine<IntfPfcKivToOCSm> {
 public:
  static constexpr std::string_view rokTypeName = "IntfPfcKivToOCSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"cliConfig", &IntfPfcKivToOCSm::cliConfig},
                      Rok::Argument{"interfacesDir", &IntfPfcKivToOCSm::interfacesDir}};
  }
  using IntfConfigSmKeyFunktor =
      Rok::KeyFunktor<&InterfaceConfigSm::intfConfig, &Qos::IntfConfig::intfId>;
  using IntfConfigSms = Rok::Children<InterfaceConfigSm, 0x76f988dau, IntfConfigSmKeyFunktor>;

  static Rok::Ptr<IntfPfcKivToOCSm> IntfPfcKivToOCSmIs(
      const Rok::Ptr<Qos::Input::Config const>& cliConfig,
      const Rok::Ptr<Config::InterfacesDir>& interfacesDir);

  Rok::Ptr<Qos::Input::Config const> cliConfig() const { return cliConfig_.ptr(); }
  const Rok::Ptr<Config::InterfacesDir>& interfacesDir() const { return interfacesDir_; }

  const IntfConfigSms& intfConfigSm() const { return intfConfigSm_; }
  Rok::Ptr<InterfaceConfigSm> intfConfigSmIs(const Rok::Ptr<Qos::IntfConfig const>& intfConfig,
                                             const Rok::Ptr<Config::InterfacesDir>& interfacesDir) {
    return intfConfigSm_.is(intfConfig, interfacesDir);
  }
  void intfConfigSmDel(const Nerit::IntfId& intfId) { intfConfigSm_.del(intfId); }
  void intfConfigSmDelAll() { intfConfigSm_.delAll(); }

  // An interface came or went.
  void handleIntfConfig(const Nerit::IntfId& intfId);
  void handleInitialized();

 private:
  friend Rok::StateMachine<IntfPfcKivToOCSm>;
  using RokCliConfig = Rok::Watch<
      IntfPfcKivToOCSm, Qos::Input::Config,
      Rok::On<Qos::Input::Config::Attr::intfConfig, &IntfPfcKivToOCSm::handleIntfConfig>>;

  IntfPfcKivToOCSm(const Rok::Ptr<Qos::Input::Config const>& cliConfig,
                   const Rok::Ptr<Config::InterfacesDir>& interfacesDir);
  auto parts() { return std::tie(cliConfig_, intfConfigSm_); }

  RokCliConfig cliConfig_;
  Rok::Ptr<Config::InterfacesDir> interfacesDir_;
  IntfConfigSms intfConfigSm_;
};

// ===== Factories. Each returns when its whole tree is built and the output is in line.
//
// The argument named after "Deaf without" may be null: the machine then does nothing, for good.
// What is required must be there.

// Deaf without cliConfig. Requires: pfcConfig.
QOS_EXPORT Rok::Ptr<PfcKivToOCSm> pfcKivToOCSmFactory(
    const Rok::Ptr<Qos::Input::Config const>& cliConfig, const Rok::Ptr<Config::Pfc>& pfcConfig);
// Deaf without cliConfig. Requires: interfacesDir.
QOS_EXPORT Rok::Ptr<IntfPfcKivToOCSm> intfPfcKivToOCSmFactory(
    const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir);
// Deaf without intfConfig. Requires: interfacesDir.
QOS_EXPORT Rok::Ptr<InterfaceConfigSm> interfaceConfigSmFactory(
    const Rok::Ptr<Qos::IntfConfig const>& intfConfig,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir);

}  // namespace QosOc
