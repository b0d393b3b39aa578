#include "QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSm.h"

#include "QosOpenConfig/QosOpenConfigHelperNames.h"

namespace QosOc {
namespace {

constinit Rok::TraceHandle traceHandle("OpenConfigQos", false);

constexpr Rok::TraceLevel handler{traceHandle, 2};
constexpr Rok::TraceLevel detail{traceHandle, 8};

// The name that an interface's classifier of each family has, if it has one.
struct Bound {
  Rok::Optional<Velmo::String> ipv4;
  Rok::Optional<Velmo::String> ipv6;

  bool operator==(const Bound&) const = default;
};

// An entry that equals the default record counts as none.
Bound boundOf(const Config::InterfaceInputClassifiers& classifiers) {
  const auto name = [&](Classifier::Type type) {
    const auto* found = classifiers.classifier().find(type);
    const bool counts = found != nullptr && *found;
    return counts ? Rok::Optional<Velmo::String>(found->config.name) : std::nullopt;
  };
  return {name(Classifier::classifierTypeIpv4), name(Classifier::classifierTypeIpv6)};
}

ClassifierNames namesOf(const Config::InterfaceInputClassifiers& classifiers) {
  const Bound bound = boundOf(classifiers);
  return {bound.ipv4.value_or(Velmo::String()), bound.ipv6.value_or(Velmo::String())};
}

// The policy-map name by which the sweep unbinds. With both families it is of no form that a
// policy map may have, since an underscore stands between the groups: such a binding of an earlier
// run survives each start, and hosts count on that.
Velmo::String sweptPmapName(const ClassifierNames& names) {
  Velmo::String pmapName("__yang");
  if (!names.ipv4.empty()) pmapName.append("_[IPV4__").append(names.ipv4).append("]");
  if (!names.ipv6.empty()) pmapName.append("_[IPV6__").append(names.ipv6).append("]");
  return pmapName;
}

}  // namespace

std::pair<Velmo::String, Velmo::String> classifierGroupFromPmapName(const Velmo::String& pmapName) {
  Rok::traceCall(handler, ": pmapName = ", pmapName);
  const auto found = Helper::pmapClassifiers(pmapName);
  if (!found) return {};
  return {found->ipv4, found->ipv6};
}

// ===== InterfaceClassifierKivToOcSm

InterfaceClassifierKivToOcSm::InterfaceClassifierKivToOcSm(
    Rok::In<Qos::Input::Config> cliConfig, Rok::Out<Config::InterfacesDir> interfacesDir)
    : cliConfig_(*this, cliConfig), interfacesDir_(interfacesDir), servicePolicySm_(*this) {
  rokInitialize<&Self::handleInitialized>();
}

void InterfaceClassifierKivToOcSm::handleServicePolicyConfig(const Qos::ServicePolicyKey& key) {
  Rok::traceIn(handler, *this, ": pmapName = ", key.pmapName);
  if (!Helper::pmapClassifiers(key.pmapName)) return;
  servicePolicySm_.mirror(cliConfig_->servicePolicyConfig().find(key), key.pmapName, Rok::entry,
                          interfacesDir_, this);
}

Config::InterfaceInputClassifier InterfaceClassifierKivToOcSm::getIntfClassifier(
    const Velmo::String& classifierName, Classifier::Type classifierType) const {
  Rok::traceIn(handler, *this, ", classifierName = ", classifierName,
               ", classifierType = ", classifierType);
  Config::InterfaceInputClassifier classifier(classifierType);
  classifier.config = {classifierName, classifierType};
  return classifier;
}

void InterfaceClassifierKivToOcSm::addIntfClassifiers(const Velmo::String& interfaceId,
                                                      const Velmo::String& pmapName) {
  Rok::traceIn(handler, *this, ": interfaceId = ", interfaceId);
  const auto interface = interfacesDir_->interfaceIs(interfaceId);
  interface->configIs({interfaceId});
  const auto classifiers = interface->inputIs()->classifiersIs();
  const auto [ipv4, ipv6] = classifierGroupFromPmapName(pmapName);
  if (!ipv4.empty()) {
    classifiers->classifierIs(getIntfClassifier(ipv4, Classifier::classifierTypeIpv4));
  }
  if (!ipv6.empty()) {
    classifiers->classifierIs(getIntfClassifier(ipv6, Classifier::classifierTypeIpv6));
  }
  bindings_.is(interfaceId, namesOf(*classifiers));
}

void InterfaceClassifierKivToOcSm::delIntfClassifiers(const Velmo::String& interfaceId,
                                                      const Velmo::String& pmapName) {
  Rok::traceIn(handler, *this, ": interfaceId = ", interfaceId);
  const auto classifiers = classifiersOf(interfaceId);
  if (!classifiers) return;
  const auto [ipv4, ipv6] = classifierGroupFromPmapName(pmapName);
  Bound wanted;
  if (!ipv4.empty()) wanted.ipv4 = ipv4;
  if (!ipv6.empty()) wanted.ipv6 = ipv6;
  if (wanted == boundOf(*classifiers)) {
    for (const auto type : {Classifier::classifierTypeIpv4, Classifier::classifierTypeIpv6}) {
      if (!(type == Classifier::classifierTypeIpv4 ? wanted.ipv4 : wanted.ipv6)) continue;
      classifiers->classifierDel(type);
      Rok::traceIn(detail, *this, ", deleting the classifier of type: ", type,
                   " from intf = ", interfaceId);
    }
  }
  if (classifiers->classifier().members() != 0)
    return bindings_.is(interfaceId, namesOf(*classifiers));
  interfacesDir_->interface(interfaceId)->inputDel();
  bindings_.del(interfaceId);
}

void InterfaceClassifierKivToOcSm::handleInitialized() {
  Rok::traceEntry(handler, *this);
  for (const auto& [interfaceId, interface] : interfacesDir_->interface()) {
    const auto classifiers = classifiersOf(interfaceId);
    classifiers ? bindings_.is(interfaceId, namesOf(*classifiers)) : bindings_.del(interfaceId);
  }
  sweepStaleBindings(mirrorServicePolicies());
}

InterfaceClassifierKivToOcSm::KnownNames InterfaceClassifierKivToOcSm::mirrorServicePolicies() {
  KnownNames known;
  for (const auto& [key, servicePolicy] : cliConfig_->servicePolicyConfig()) {
    handleServicePolicyConfig(key);
    const auto [ipv4, ipv6] = classifierGroupFromPmapName(key.pmapName);
    known.insert({ipv4, ipv6});
  }
  return known;
}

void InterfaceClassifierKivToOcSm::sweepStaleBindings(const KnownNames& known) {
  for (const auto& [interfaceId, interface] : interfacesDir_->interface()) {
    const auto classifiers = classifiersOf(interfaceId);
    if (!classifiers) continue;
    const ClassifierNames names = namesOf(*classifiers);
    if (!known.contains(names)) delIntfClassifiers(interfaceId, sweptPmapName(names));
  }
}

Rok::Ptr<Config::InterfaceInputClassifiers> InterfaceClassifierKivToOcSm::classifiersOf(
    const Velmo::String& interfaceId) const {
  const auto interface = interfacesDir_->interface(interfaceId);
  if (!interface || !interface->input()) return nullptr;
  return interface->input()->classifiers();
}

// ===== ServicePolicySm

ServicePolicySm::ServicePolicySm(Rok::In<Qos::ServicePolicyConfig> servicePolicyConfig,
                                 Rok::Out<Config::InterfacesDir> interfacesDir,
                                 InterfaceClassifierKivToOcSm* intfClassifierKivToOcSm)
    : servicePolicyConfig_(*this, servicePolicyConfig),
      interfacesDir_(interfacesDir),
      intfClassifierKivToOcSm_(intfClassifierKivToOcSm) {
  rokInitialize<&Self::handleInitialized>();
}

void ServicePolicySm::doPrepareToDie() {
  if (Rok::TraceHelper line{handler}) line.in(*this) << ": pmapName = " << pmapName();
  for (const auto& [intfId, isBound] : servicePolicyConfig_->intfIds()) {
    intfClassifierKivToOcSm_->delIntfClassifiers(intfId.stringValue(), pmapName());
  }
}

void ServicePolicySm::handleIntfId(const Nerit::IntfId& intfId) {
  Rok::traceIn(handler, *this, ": intfId = ", intfId);
  const bool* bound = servicePolicyConfig_->intfIds().find(intfId);
  if (bound != nullptr && *bound) {
    intfClassifierKivToOcSm_->addIntfClassifiers(intfId.stringValue(), pmapName());
  } else {
    intfClassifierKivToOcSm_->delIntfClassifiers(intfId.stringValue(), pmapName());
  }
}

// At start an interface counts as bound also when its entry holds false, unlike in handleIntfId.
void ServicePolicySm::handleInitialized() {
  if (Rok::TraceHelper line{handler}) line.in(*this) << ": pmapName = " << pmapName();
  std::set<Velmo::String> bound;
  for (const auto& [intfId, isBound] : servicePolicyConfig_->intfIds()) {
    const Velmo::String& interfaceId = intfId.stringValue();
    intfClassifierKivToOcSm_->addIntfClassifiers(interfaceId, pmapName());
    bound.insert(interfaceId);
  }
  const auto [ipv4, ipv6] = classifierGroupFromPmapName(pmapName());
  intfClassifierKivToOcSm_->bindings_.each({ipv4, ipv6}, [&](const Velmo::String& id) {
    if (!bound.contains(id)) intfClassifierKivToOcSm_->delIntfClassifiers(id, pmapName());
  });
}

// ===== Factories

Rok::Ptr<InterfaceClassifierKivToOcSm> interfaceClassifierKivToOcSmFactory(
    Rok::In<Qos::Input::Config> cliConfig, Rok::Out<Config::InterfacesDir> interfacesDir) {
  return InterfaceClassifierKivToOcSm::InterfaceClassifierKivToOcSmIs(cliConfig, interfacesDir);
}

Rok::Ptr<ServicePolicySm> servicePolicySmFactory(
    Rok::In<Qos::ServicePolicyConfig> servicePolicyConfig,
    Rok::Out<Config::InterfacesDir> interfacesDir,
    InterfaceClassifierKivToOcSm* intfClassifierKivToOcSm) {
  return ServicePolicySm::ServicePolicySmIs(servicePolicyConfig, interfacesDir,
                                            intfClassifierKivToOcSm);
}

}  // namespace QosOc
