// Native service policies into the classifiers of OpenConfig interfaces.
//
// A service policy takes part when its policy map's name gives a classifier for one family or both,
// `__yang_[IPV4__A][IPV6__B]`. The classifiers are known by name alone.
//
// What wakes what:
//   servicePolicyConfig of Qos::Input::Config    InterfaceClassifierKivToOcSm::
//                                                    handleServicePolicyConfig(key)
//   intfIds of Qos::ServicePolicyConfig          ServicePolicySm::handleIntfId(interface)
#pragma once

#include <cstdint>
#include <utility>

#include "Rok/Rok.h"
#include "models/native/QosInput.h"
#include "models/openconfig/Interface.h"

namespace QosOc {

// The IPv4 and the IPv6 classifier in the name of a policy map. Two empty names for any other name,
// and for the bare `__yang_`.
QOS_EXPORT std::pair<Velmo::String, Velmo::String> classifierGroupFromPmapName(
    const Velmo::String& pmapName);

class InterfaceClassifierKivToOcSm;

// One service policy. Binds its policy map's classifiers to its interfaces, through the root.
class ServicePolicySm final : public Rok::StateMachine<ServicePolicySm> {
 public:
  static constexpr std::string_view rokTypeName = "ServicePolicySm";
  static constexpr auto rokArguments() {
    return std::tuple{
        Rok::Argument{"servicePolicyConfig", &ServicePolicySm::servicePolicyConfig},
        Rok::Argument{"interfacesDir", &ServicePolicySm::interfacesDir},
        Rok::Argument{"intfClassifierKivToOcSm", &ServicePolicySm::intfClassifierKivToOcSm}};
  }
  static Rok::Ptr<ServicePolicySm> ServicePolicySmIs(
      const Rok::Ptr<Qos::ServicePolicyConfig const>& servicePolicyConfig,
      const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
      InterfaceClassifierKivToOcSm* intfClassifierKivToOcSm);

  Rok::Ptr<Qos::ServicePolicyConfig const> servicePolicyConfig() const {
    return servicePolicyConfig_.ptr();
  }
  const Rok::Ptr<Config::InterfacesDir>& interfacesDir() const { return interfacesDir_; }
  InterfaceClassifierKivToOcSm* intfClassifierKivToOcSm() const { return intfClassifierKivToOcSm_; }
  // Empty without a config.
  Velmo::String pmapName() const;

  // Unbinds the interfaces that the service policy still has.
  void doPrepareToDie();
  // An interface came, went, or turned from true to false.
  void handleIntfId(const Nerit::IntfId& intfId);
  void handleInitialized();

 private:
  friend Rok::StateMachine<ServicePolicySm>;
  using RokServicePolicyConfig =
      Rok::Watch<ServicePolicySm, Qos::ServicePolicyConfig,
                 Rok::On<Qos::ServicePolicyConfig::Attr::intfIds, &ServicePolicySm::handleIntfId>>;

  ServicePolicySm(const Rok::Ptr<Qos::ServicePolicyConfig const>& servicePolicyConfig,
                  const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
                  InterfaceClassifierKivToOcSm* intfClassifierKivToOcSm);
  auto parts() { return std::tie(servicePolicyConfig_); }

  RokServicePolicyConfig servicePolicyConfig_;
  Rok::Ptr<Config::InterfacesDir> interfacesDir_;
  InterfaceClassifierKivToOcSm* intfClassifierKivToOcSm_;
};

// The root: mirrors the service policies, writes for them, and at start sweeps the bindings that no
// service policy stands for. An interface itself is never removed.
class InterfaceClassifierKivToOcSm final : public Rok::StateMachine<InterfaceClassifierKivToOcSm> {
 public:
  static constexpr std::string_view rokTypeName = "InterfaceClassifierKivToOcSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"cliConfig", &InterfaceClassifierKivToOcSm::cliConfig},
                      Rok::Argument{"interfacesDir", &InterfaceClassifierKivToOcSm::interfacesDir}};
  }
  // By policy-map name alone: of two service policies with one policy map, the second is refused.
  using ServicePolicySmKeyFunktor =
      Rok::KeyFunktor<&ServicePolicySm::servicePolicyConfig, &Qos::ServicePolicyConfig::pmapName>;
  using ServicePolicySms = Rok::Children<ServicePolicySm, 0x47b5481du, ServicePolicySmKeyFunktor>;

  static Rok::Ptr<InterfaceClassifierKivToOcSm> InterfaceClassifierKivToOcSmIs(
      const Rok::Ptr<Qos::Input::Config const>& cliConfig,
      const Rok::Ptr<Config::InterfacesDir>& interfacesDir);

  Rok::Ptr<Qos::Input::Config const> cliConfig() const { return cliConfig_.ptr(); }
  const Rok::Ptr<Config::InterfacesDir>& interfacesDir() const { return interfacesDir_; }

  const ServicePolicySms& servicePolicySm() const { return servicePolicySm_; }
  Rok::Ptr<ServicePolicySm> servicePolicySmIs(
      const Rok::Ptr<Qos::ServicePolicyConfig const>& servicePolicyConfig,
      const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
      InterfaceClassifierKivToOcSm* intfClassifierKivToOcSm) {
    return servicePolicySm_.is(servicePolicyConfig, interfacesDir, intfClassifierKivToOcSm);
  }
  void servicePolicySmDel(const Velmo::String& pmapName) { servicePolicySm_.del(pmapName); }
  void servicePolicySmDelAll() { servicePolicySm_.delAll(); }

  // A service policy came or went.
  void handleServicePolicyConfig(const Qos::ServicePolicyKey& key);
  Config::InterfaceInputClassifier getIntfClassifier(const Velmo::String& classifierName,
                                                     Classifier::Type classifierType) const;
  // Writes the classifiers of a policy map to an interface, over whatever stood there. The
  // interface gets its classifiers, if only empty ones, also for a name that gives none.
  void addIntfClassifiers(const Velmo::String& interfaceId, const Velmo::String& pmapName);
  // Removes the classifiers of a policy map from an interface, if it holds exactly those. An
  // interface that is left without any loses its input.
  void delIntfClassifiers(const Velmo::String& interfaceId, const Velmo::String& pmapName);
  void handleInitialized();

 private:
  friend Rok::StateMachine<InterfaceClassifierKivToOcSm>;
  friend ServicePolicySm;
  using RokCliConfig =
      Rok::Watch<InterfaceClassifierKivToOcSm, Qos::Input::Config,
                 Rok::On<Qos::Input::Config::Attr::servicePolicyConfig,
                         &InterfaceClassifierKivToOcSm::handleServicePolicyConfig>>;
  // The names of an interface's classifiers; empty where there is none.
  struct Names {
    Velmo::String ipv4;
    Velmo::String ipv6;

    std::uint32_t hash(std::uint32_t seed) const {
      return Rok::hashSingleAttr(Rok::hashSingleAttr(seed, ipv4), ipv6);
    }
    friend auto operator<=>(const Names&, const Names&) = default;
  };
  // The name that an interface's classifier of each family has, if it has one.
  struct Bound {
    Rok::Optional<Velmo::String> ipv4;
    Rok::Optional<Velmo::String> ipv6;

    bool operator==(const Bound&) const = default;
  };
  struct Entry;
  using InterfaceSet = Rok::HashMap2018<Rok::Hm2018NEI<0xae5f9156u, Velmo::String, bool>>;
  using NamesToInterfaces = Rok::HashMap2018<Rok::Hm2018NEI<0xcf6c85d3u, Names, InterfaceSet>>;
  using InterfaceToNames = Rok::HashMap2018<Rok::Hm2018NEI<0x2f73477du, Velmo::String, Names>>;

  InterfaceClassifierKivToOcSm(const Rok::Ptr<Qos::Input::Config const>& cliConfig,
                               const Rok::Ptr<Config::InterfacesDir>& interfacesDir);
  auto parts() { return std::tie(cliConfig_, servicePolicySm_); }

  static Bound boundClassifiers(const Config::InterfaceInputClassifiers& classifiers);
  static Names boundNames(const Config::InterfaceInputClassifiers& classifiers);
  Rok::Ptr<Config::InterfaceInputClassifiers> classifiersOf(const Velmo::String& interfaceId) const;
  void indexInterface(const Velmo::String& interfaceId,
                      const Config::InterfaceInputClassifiers& classifiers);
  void unindexInterface(const Velmo::String& interfaceId);
  void removeFromSet(const Velmo::String& interfaceId, const Names& names);
  template <class Visit>
  void eachInterfaceBoundTo(const Names& names, const Visit& visit);

  RokCliConfig cliConfig_;
  Rok::Ptr<Config::InterfacesDir> interfacesDir_;
  ServicePolicySms servicePolicySm_;
  // Which interfaces hold which classifiers, so that a new service policy finds its stale bindings
  // without a walk over all interfaces. Follows the output, which nobody else writes here.
  NamesToInterfaces interfacesByNames_;
  InterfaceToNames namesByInterface_;
};

// ===== Factories. Each returns when its whole tree is built and the output is in line.
//
// The argument named after "Deaf without" may be null: the machine then does nothing, for good.
// What is required must be there.

// Deaf without cliConfig. Requires: interfacesDir, and that nothing else writes an interface's
// `input` there while the root lives: an index of the root follows what the root wrote.
// Throws: MutatorReinstantiatingException for two service policies of one policy map.
QOS_EXPORT Rok::Ptr<InterfaceClassifierKivToOcSm> interfaceClassifierKivToOcSmFactory(
    const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir);
// Deaf without servicePolicyConfig. Requires: interfacesDir, intfClassifierKivToOcSm, which
// outlives the machine, and that nothing else writes an interface's `input` while that root lives.
QOS_EXPORT Rok::Ptr<ServicePolicySm> servicePolicySmFactory(
    const Rok::Ptr<Qos::ServicePolicyConfig const>& servicePolicyConfig,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    InterfaceClassifierKivToOcSm* intfClassifierKivToOcSm);

}  // namespace QosOc
