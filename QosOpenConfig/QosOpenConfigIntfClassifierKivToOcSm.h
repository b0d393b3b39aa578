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

#include <set>
#include <utility>

#include "QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSmBindings.h"
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
class QOS_EXPORT ServicePolicySm final : public Rok::StateMachine<ServicePolicySm> {
 public:
  static constexpr std::string_view rokTypeName = "ServicePolicySm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"servicePolicyConfig", &Self::servicePolicyConfig},
                      Rok::Argument{"interfacesDir", &Self::interfacesDir},
                      Rok::Argument{"intfClassifierKivToOcSm", &Self::intfClassifierKivToOcSm}};
  }
  static auto ServicePolicySmIs(const auto&... arguments) { return create(arguments...); }

  Rok::Ptr<Qos::ServicePolicyConfig const> servicePolicyConfig() const {
    return servicePolicyConfig_.ptr();
  }
  Rok::Out<Config::InterfacesDir> interfacesDir() const { return interfacesDir_; }
  InterfaceClassifierKivToOcSm* intfClassifierKivToOcSm() const { return intfClassifierKivToOcSm_; }
  // Empty without a config.
  Velmo::String pmapName() const {
    return servicePolicyConfig_.read(&Qos::ServicePolicyConfig::pmapName);
  }

  // Unbinds the interfaces that the service policy still has.
  void doPrepareToDie();
  // An interface came, went, or turned from true to false.
  void handleIntfId(const Nerit::IntfId& intfId);
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using RokServicePolicyConfig =
      Rok::Watch<Self, Qos::ServicePolicyConfig,
                 Rok::On<Qos::ServicePolicyConfig::Attr::intfIds, &Self::handleIntfId>>;

  ServicePolicySm(Rok::In<Qos::ServicePolicyConfig> servicePolicyConfig,
                  Rok::Out<Config::InterfacesDir> interfacesDir,
                  InterfaceClassifierKivToOcSm* intfClassifierKivToOcSm);
  auto parts() { return std::tie(servicePolicyConfig_); }

  RokServicePolicyConfig servicePolicyConfig_;
  Rok::Ptr<Config::InterfacesDir> interfacesDir_;
  InterfaceClassifierKivToOcSm* intfClassifierKivToOcSm_;
};

// The root: mirrors the service policies, writes for them, and at start sweeps the bindings that no
// service policy stands for. An interface itself is never removed.
class QOS_EXPORT InterfaceClassifierKivToOcSm final
    : public Rok::StateMachine<InterfaceClassifierKivToOcSm> {
 public:
  static constexpr std::string_view rokTypeName = "InterfaceClassifierKivToOcSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"cliConfig", &Self::cliConfig},
                      Rok::Argument{"interfacesDir", &Self::interfacesDir}};
  }
  // By policy-map name alone: of two service policies with one policy map, the second is refused.
  using ServicePolicySmKeyFunktor =
      Rok::KeyFunktor<&ServicePolicySm::servicePolicyConfig, &Qos::ServicePolicyConfig::pmapName>;
  using ServicePolicySms = Rok::Children<ServicePolicySm, 0x47b5481du, ServicePolicySmKeyFunktor>;

  static auto InterfaceClassifierKivToOcSmIs(const auto&... arguments) {
    return create(arguments...);
  }

  Rok::Ptr<Qos::Input::Config const> cliConfig() const { return cliConfig_.ptr(); }
  Rok::Out<Config::InterfacesDir> interfacesDir() const { return interfacesDir_; }

  const ServicePolicySms& servicePolicySm() const { return servicePolicySm_; }
  auto servicePolicySmIs(const auto&... arguments) { return servicePolicySm_.is(arguments...); }
  void servicePolicySmDel(const Velmo::String& pmapName) { servicePolicySm_.del(pmapName); }
  void servicePolicySmDelAll() { servicePolicySm_.delAll(); }

  // A service policy came or went.
  void handleServicePolicyConfig(const Qos::ServicePolicyKey& key);
  // The record of a classifier at an input; writes nothing.
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
  friend Rok::StateMachine<Self>;
  friend ServicePolicySm;
  using RokCliConfig = Rok::Watch<
      Self, Qos::Input::Config,
      Rok::On<Qos::Input::Config::Attr::servicePolicyConfig, &Self::handleServicePolicyConfig>>;
  // What the service policies are for.
  using KnownNames = std::set<ClassifierNames>;

  InterfaceClassifierKivToOcSm(Rok::In<Qos::Input::Config> cliConfig,
                               Rok::Out<Config::InterfacesDir> interfacesDir);
  auto parts() { return std::tie(cliConfig_, servicePolicySm_); }

  Rok::Ptr<Config::InterfaceInputClassifiers> classifiersOf(const Velmo::String& interfaceId) const;
  KnownNames mirrorServicePolicies();
  void sweepStaleBindings(const KnownNames& known);

  RokCliConfig cliConfig_;
  Rok::Ptr<Config::InterfacesDir> interfacesDir_;
  ServicePolicySms servicePolicySm_;
  BindingIndex bindings_;
};

// ===== Factories

// Deaf without cliConfig. Requires: interfacesDir, and that nothing else writes an interface's
// `input` there while the root lives: an index of the root follows what the root wrote.
// Throws: MutatorReinstantiatingException for two service policies of one policy map.
QOS_EXPORT Rok::Factory<InterfaceClassifierKivToOcSm> interfaceClassifierKivToOcSmFactory;
// Deaf without servicePolicyConfig. Requires: interfacesDir, intfClassifierKivToOcSm, which
// outlives the machine, and that nothing else writes an interface's `input` while that root lives.
QOS_EXPORT Rok::Factory<ServicePolicySm> servicePolicySmFactory;

}  // namespace QosOc
