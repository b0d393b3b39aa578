#include "QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSm.h"

#include <set>

#include "QosOpenConfig/QosOpenConfigHelper.h"

namespace QosOc {
namespace {

constinit Rok::TraceHandle traceHandle("OpenConfigQos", false);

constexpr Rok::TraceFacility::FacilityLevel handler = 2;
constexpr Rok::TraceFacility::FacilityLevel detail = 8;

}  // namespace

std::pair<Velmo::String, Velmo::String> classifierGroupFromPmapName(const Velmo::String& pmapName) {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in() << ": pmapName = " << pmapName;
  const auto found = Helper::pmapClassifiers(pmapName);
  if (!found) return {};
  return {found->ipv4, found->ipv6};
}

// ===== InterfaceClassifierKivToOcSm

Rok::Ptr<InterfaceClassifierKivToOcSm> InterfaceClassifierKivToOcSm::InterfaceClassifierKivToOcSmIs(
    const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir) {
  return create(cliConfig, interfacesDir);
}

InterfaceClassifierKivToOcSm::InterfaceClassifierKivToOcSm(
    const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir)
    : cliConfig_(*this, cliConfig), interfacesDir_(interfacesDir), servicePolicySm_(*this) {
  rokInitialize<&InterfaceClassifierKivToOcSm::handleInitialized>();
}

void InterfaceClassifierKivToOcSm::handleServicePolicyConfig(const Qos::ServicePolicyKey& key) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << ": pmapName = " << key.pmapName;
  }
  if (!Helper::pmapClassifiers(key.pmapName)) return;
  if (const auto* entry = cliConfig_->servicePolicyConfig().find(key)) {
    servicePolicySmIs(*entry, interfacesDir_, this);
  } else {
    servicePolicySm_.withdraw(key.pmapName);
  }
}

Config::InterfaceInputClassifier InterfaceClassifierKivToOcSm::getIntfClassifier(
    const Velmo::String& classifierName, Classifier::Type classifierType) const {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << ", classifierName = " << classifierName
                   << ", classifierType = " << classifierType;
  }
  Config::InterfaceInputClassifier classifier(classifierType);
  classifier.config = {classifierName, classifierType};
  return classifier;
}

void InterfaceClassifierKivToOcSm::addIntfClassifiers(const Velmo::String& interfaceId,
                                                      const Velmo::String& pmapName) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << ": interfaceId = " << interfaceId;
  }
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
  indexInterface(interfaceId, *classifiers);
}

void InterfaceClassifierKivToOcSm::delIntfClassifiers(const Velmo::String& interfaceId,
                                                      const Velmo::String& pmapName) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << ": interfaceId = " << interfaceId;
  }
  const auto classifiers = classifiersOf(interfaceId);
  if (!classifiers) return;
  const auto [ipv4, ipv6] = classifierGroupFromPmapName(pmapName);
  Bound wanted;
  if (!ipv4.empty()) wanted.ipv4 = ipv4;
  if (!ipv6.empty()) wanted.ipv6 = ipv6;
  if (wanted == boundClassifiers(*classifiers)) {
    for (const auto type : {Classifier::classifierTypeIpv4, Classifier::classifierTypeIpv6}) {
      if (!(type == Classifier::classifierTypeIpv4 ? wanted.ipv4 : wanted.ipv6)) continue;
      classifiers->classifierDel(type);
      if (Rok::TraceHelper line{traceHandle, detail}) {
        line.in(*this) << ", deleting the classifier of type: " << type
                       << " from intf = " << interfaceId;
      }
    }
  }
  if (classifiers->classifier().members() != 0) return indexInterface(interfaceId, *classifiers);
  interfacesDir_->interface(interfaceId)->inputDel();
  unindexInterface(interfaceId);
}

void InterfaceClassifierKivToOcSm::handleInitialized() {
  Rok::EntryTrace(traceHandle, handler, *this);
  for (const auto& [interfaceId, interface] : interfacesDir_->interface()) {
    const auto classifiers = classifiersOf(interfaceId);
    classifiers ? indexInterface(interfaceId, *classifiers) : unindexInterface(interfaceId);
  }

  std::set<std::pair<Velmo::String, Velmo::String>> known;
  for (const auto& [key, servicePolicy] : cliConfig_->servicePolicyConfig()) {
    handleServicePolicyConfig(key);
    known.insert(classifierGroupFromPmapName(key.pmapName));
  }
  for (const auto& [interfaceId, interface] : interfacesDir_->interface()) {
    const auto classifiers = classifiersOf(interfaceId);
    if (!classifiers) continue;
    const Names names = boundNames(*classifiers);
    if (known.contains({names.ipv4, names.ipv6})) continue;
    // With both families the text is none that the form knows, since an underscore stands between
    // the groups: such a binding of an earlier life survives. Deliberate, so the text is built just
    // so.
    Velmo::String pmapName("__yang");
    if (!names.ipv4.empty()) pmapName.append("_[IPV4__").append(names.ipv4).append("]");
    if (!names.ipv6.empty()) pmapName.append("_[IPV6__").append(names.ipv6).append("]");
    delIntfClassifiers(interfaceId, pmapName);
  }
}

// An entry that equals the default record counts as none.
InterfaceClassifierKivToOcSm::Bound InterfaceClassifierKivToOcSm::boundClassifiers(
    const Config::InterfaceInputClassifiers& classifiers) {
  const auto name = [&](Classifier::Type type) {
    const auto* found = classifiers.classifier().find(type);
    const bool counts = found != nullptr && *found;
    return counts ? Rok::Optional<Velmo::String>(found->config.name) : std::nullopt;
  };
  return {name(Classifier::classifierTypeIpv4), name(Classifier::classifierTypeIpv6)};
}

InterfaceClassifierKivToOcSm::Names InterfaceClassifierKivToOcSm::boundNames(
    const Config::InterfaceInputClassifiers& classifiers) {
  const Bound bound = boundClassifiers(classifiers);
  return {bound.ipv4.value_or(Velmo::String()), bound.ipv6.value_or(Velmo::String())};
}

Rok::Ptr<Config::InterfaceInputClassifiers> InterfaceClassifierKivToOcSm::classifiersOf(
    const Velmo::String& interfaceId) const {
  const auto interface = interfacesDir_->interface(interfaceId);
  if (!interface || !interface->input()) return nullptr;
  return interface->input()->classifiers();
}

// An interface's entry in the index, which goes again unless both halves of it are there.
struct InterfaceClassifierKivToOcSm::Entry {
  Entry(InterfaceClassifierKivToOcSm& owner, const Velmo::String& id, const Names& boundTo)
      : sm(owner), interfaceId(id), names(boundTo) {}
  Entry(const Entry&) = delete;
  Entry& operator=(const Entry&) = delete;
  ~Entry() {
    if (!whole) sm.removeFromSet(interfaceId, names);
  }
  void make() {
    auto& set = sm.interfacesByNames_.newMember(names, InterfaceSet()).first->value();
    set.newMember(interfaceId, true);
    sm.namesByInterface_.newMember(interfaceId, names);
    whole = true;
  }

  InterfaceClassifierKivToOcSm& sm;
  const Velmo::String& interfaceId;
  const Names& names;
  bool whole = false;
};

// Brings the index in line with what the interface holds now. An interface that holds what it held
// keeps its place, since a walk over the interfaces of these very names may be under way.
void InterfaceClassifierKivToOcSm::indexInterface(
    const Velmo::String& interfaceId, const Config::InterfaceInputClassifiers& classifiers) {
  const Names names = boundNames(classifiers);
  const Names* old = namesByInterface_.find(interfaceId);
  if (old != nullptr && *old == names) return;
  if (old != nullptr) unindexInterface(interfaceId);
  Entry(*this, interfaceId, names).make();
}

void InterfaceClassifierKivToOcSm::unindexInterface(const Velmo::String& interfaceId) {
  Names names;
  if (namesByInterface_.deleteMember(interfaceId, &names)) removeFromSet(interfaceId, names);
}

void InterfaceClassifierKivToOcSm::removeFromSet(const Velmo::String& interfaceId,
                                                 const Names& names) {
  InterfaceSet* interfaces = interfacesByNames_.find(names);
  if (interfaces == nullptr) return;
  interfaces->deleteMember(interfaceId);
  if (interfaces->members() == 0) interfacesByNames_.deleteMember(names);
}

template <class Visit>
void InterfaceClassifierKivToOcSm::eachInterfaceBoundTo(const Names& names, const Visit& visit) {
  const InterfaceSet* interfaces = interfacesByNames_.find(names);
  if (interfaces == nullptr) return;
  for (const auto& [interfaceId, isBound] : *interfaces) visit(interfaceId);
}

// ===== ServicePolicySm

Rok::Ptr<ServicePolicySm> ServicePolicySm::ServicePolicySmIs(
    const Rok::Ptr<Qos::ServicePolicyConfig const>& servicePolicyConfig,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    InterfaceClassifierKivToOcSm* intfClassifierKivToOcSm) {
  return create(servicePolicyConfig, interfacesDir, intfClassifierKivToOcSm);
}

ServicePolicySm::ServicePolicySm(
    const Rok::Ptr<Qos::ServicePolicyConfig const>& servicePolicyConfig,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    InterfaceClassifierKivToOcSm* intfClassifierKivToOcSm)
    : servicePolicyConfig_(*this, servicePolicyConfig),
      interfacesDir_(interfacesDir),
      intfClassifierKivToOcSm_(intfClassifierKivToOcSm) {
  rokInitialize<&ServicePolicySm::handleInitialized>();
}

Velmo::String ServicePolicySm::pmapName() const {
  return servicePolicyConfig_ ? servicePolicyConfig_->pmapName() : Velmo::String();
}

void ServicePolicySm::doPrepareToDie() {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in(*this) << ": pmapName = " << pmapName();
  for (const auto& [intfId, isBound] : servicePolicyConfig_->intfIds()) {
    intfClassifierKivToOcSm_->delIntfClassifiers(intfId.stringValue(), pmapName());
  }
}

void ServicePolicySm::handleIntfId(const Nerit::IntfId& intfId) {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in(*this) << ": intfId = " << intfId;
  const bool* bound = servicePolicyConfig_->intfIds().find(intfId);
  if (bound != nullptr && *bound) {
    intfClassifierKivToOcSm_->addIntfClassifiers(intfId.stringValue(), pmapName());
  } else {
    intfClassifierKivToOcSm_->delIntfClassifiers(intfId.stringValue(), pmapName());
  }
}

// At start an interface counts as bound also when its entry holds false, unlike in handleIntfId.
void ServicePolicySm::handleInitialized() {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in(*this) << ": pmapName = " << pmapName();
  std::set<Velmo::String> bound;
  for (const auto& [intfId, isBound] : servicePolicyConfig_->intfIds()) {
    const Velmo::String& interfaceId = intfId.stringValue();
    intfClassifierKivToOcSm_->addIntfClassifiers(interfaceId, pmapName());
    bound.insert(interfaceId);
  }
  const auto [ipv4, ipv6] = classifierGroupFromPmapName(pmapName());
  intfClassifierKivToOcSm_->eachInterfaceBoundTo({ipv4, ipv6}, [&](const Velmo::String& id) {
    if (!bound.contains(id)) intfClassifierKivToOcSm_->delIntfClassifiers(id, pmapName());
  });
}

// ===== Factories

Rok::Ptr<InterfaceClassifierKivToOcSm> interfaceClassifierKivToOcSmFactory(
    const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir) {
  return InterfaceClassifierKivToOcSm::InterfaceClassifierKivToOcSmIs(cliConfig, interfacesDir);
}

Rok::Ptr<ServicePolicySm> servicePolicySmFactory(
    const Rok::Ptr<Qos::ServicePolicyConfig const>& servicePolicyConfig,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    InterfaceClassifierKivToOcSm* intfClassifierKivToOcSm) {
  return ServicePolicySm::ServicePolicySmIs(servicePolicyConfig, interfacesDir,
                                            intfClassifierKivToOcSm);
}

}  // namespace QosOc
