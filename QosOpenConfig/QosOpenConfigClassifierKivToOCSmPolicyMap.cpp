#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmPolicyMap.h"

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmUnit.h"
#include "QosOpenConfig/QosOpenConfigHelperNames.h"

namespace QosOc {

using namespace ClassifierUnit;

namespace {

// Blanks a term's action: the block stays, with an empty target group.
void blankAction(Config::TermContent& term) { term.actions = Config::TermActions(); }

}  // namespace

// ===== ClassActionKivToOcSm

ClassActionKivToOcSm::ClassActionKivToOcSm(Rok::In<Qos::Input::AclConfig> qosAclConfig,
                                           Rok::In<Qos::Input::Config> cliConfig,
                                           Rok::Out<Config::ClassifiersDir> classifierDir)
    : qosAclConfig_(*this, qosAclConfig),
      cliConfig_(cliConfig),
      classifierDir_(classifierDir),
      pmapTypeSm_(*this) {
  rokInitialize<&Self::handleInitialized>();
}

void ClassActionKivToOcSm::handlePmapTypeConfig(Qos::MapType mapType) {
  Rok::traceIn(handler, *this, ", pmapType = ", mapType);
  if (mapType != this->mapType()) {
    return Rok::traceIn(handler, *this, ", pmapType = ", mapType, " is not mapQos, skipping");
  }
  pmapTypeSm_.mirror(qosAclConfig_->pmapType(), mapType, Rok::entry, cliConfig_, classifierDir_);
}

void ClassActionKivToOcSm::handleInitialized() {
  Rok::traceEntry(handler, *this);
  // A missing config is refused by the first policy map.
  if (cliConfig_) Helper::requireGroupNames(*cliConfig_);
  eachKey<&Self::handlePmapTypeConfig>(qosAclConfig_->pmapType());
}

// ===== PmapTypeSm

PmapTypeSm::PmapTypeSm(Rok::In<Qos::Input::PolicyMapTypeConfig> pmapTypeConfig,
                       Rok::In<Qos::Input::Config> cliConfig,
                       Rok::Out<Config::ClassifiersDir> classifierDir)
    : pmapTypeConfig_(*this, pmapTypeConfig),
      cliConfig_(cliConfig),
      classifierDir_(classifierDir),
      pmapConfigSm_(*this) {
  rokInitialize<&Self::handleInitialized>();
}

void PmapTypeSm::handlePmapConfig(const Velmo::String& pmapName) {
  Rok::traceIn(handler, *this, ", pmapName = ", pmapName);
  const auto [ipv4, ipv6] = classifiersFromPmapName(pmapName);
  if (ipv4.empty() && ipv6.empty()) return;
  pmapConfigSm_.mirror(pmapTypeConfig_->pmap(), pmapName, Rok::entry, ipv4, ipv6, cliConfig_,
                       classifierDir_);
}

void PmapTypeSm::doPrepareToDie() {
  Rok::traceEntry(handler, *this);
  pmapConfigSm_.withdrawAll();
}

void PmapTypeSm::handleInitialized() {
  Rok::traceEntry(handler, *this);
  eachKey<&Self::handlePmapConfig>(pmapTypeConfig_->pmap());
}

// ===== PmapConfigSm

PmapConfigSm::PmapConfigSm(Rok::In<Qos::PolicyMapConfig> pmapConfig,
                           const Velmo::String& ipv4ClassifierName,
                           const Velmo::String& ipv6ClassifierName,
                           Rok::In<Qos::Input::Config> cliConfig,
                           Rok::Out<Config::ClassifiersDir> classifierDir)
    : pmapConfig_(*this, pmapConfig),
      ipv4ClassifierName_(ipv4ClassifierName),
      ipv6ClassifierName_(ipv6ClassifierName),
      cliConfig_(cliConfig),
      classifierDir_(classifierDir),
      classActionSm_(*this) {
  rokInitialize<&Self::handleInitialized>();
}

void PmapConfigSm::handleClassAction(const Velmo::String& cmapName) {
  Rok::traceIn(handler, *this, ", cmapName = ", cmapName);
  const auto [classifierName, termId] = classifierKeyFromConfigObjName(cmapName);
  if (classifierName.empty() || termId.empty()) return;
  const auto* entry = pmapConfig_->classAction().find(cmapName);
  if (entry == nullptr) return deleteTermOf(cmapName, classifierName, termId);
  // A classifier that belongs to neither family counts as an IPv6 one.
  const auto type = classifierName == ipv4ClassifierName_ ? Classifier::classifierTypeIpv4
                                                          : Classifier::classifierTypeIpv6;
  classActionSmIs(*entry, classifierName, type, termId, cliConfig_, classifierDir_, this);
}

// The class went: its whole term goes, conditions included. Where the classifier has no terms any
// more, the child stays in the collection: what is left of the class is then up to the translator
// of class maps.
void PmapConfigSm::deleteTermOf(const Velmo::String& cmapName, const Velmo::String& classifierName,
                                const Velmo::String& termId) {
  Rok::traceIn(handler, *this, ", deleting the termId: ", termId,
               " from the classifier: ", classifierName);
  if (TermPath(classifierName, termId).termDel(*classifierDir_)) classActionSmDel(cmapName);
}

void PmapConfigSm::doPrepareToDie() {
  Rok::traceEntry(handler, *this);
  classActionSmDelAll();
}

void PmapConfigSm::handleInitialized() {
  Rok::traceEntry(handler, *this);
  makeClassifier(ipv4ClassifierName_, Classifier::classifierTypeIpv4);
  makeClassifier(ipv6ClassifierName_, Classifier::classifierTypeIpv6);
  sweepStaleActions(mirrorClasses());
}

void PmapConfigSm::makeClassifier(const Velmo::String& name, Classifier::Type type) {
  if (!name.empty()) classifierDir_->classifierIs(name)->typeIs(type);
}

PmapConfigSm::Desired PmapConfigSm::mirrorClasses() {
  Desired desired;
  for (const auto& [cmapName, classAction] : pmapConfig_->classAction()) {
    handleClassAction(cmapName);
    const auto [classifierName, termId] = classifierKeyFromConfigObjName(cmapName);
    if (classifierName.empty() || termId.empty()) continue;
    const auto* action = classAction->policyAction().find(Qos::actionSetTc);
    const auto& groups = cliConfig_->forwardingGroupNameToTcMap();
    desired[classifierName][termId] =
        action != nullptr ? targetGroupFromTc((*action)->value(), groups) : Velmo::String();
  }
  return desired;
}

// Only the policy map's own classifiers are swept; a trace shows the others too.
void PmapConfigSm::sweepStaleActions(const Desired& desired) {
  Rok::traceIn(handler, *this, ", removing the stale config");
  const Rok::TraceAt here(handler);  // the line names this function
  const auto traceOther = [&](const Velmo::String& name) {
    if (name == ipv4ClassifierName_ || name == ipv6ClassifierName_) return;
    Rok::traceIn(here, *this, ", classifier: ", name, " does not belong to the pmap");
  };
  Rok::inWalkOrder(classifierDir_->classifier(), {ipv4ClassifierName_, ipv6ClassifierName_},
                   handler.isOn(), traceOther,
                   [&](const Velmo::String& name) { sweepStaleActions(desired, name); });
}

// Blanks without looking at what a term held: one that never had an action comes out with a blanked
// one.
void PmapConfigSm::sweepStaleActions(const Desired& desired, const Velmo::String& classifierName) {
  const auto terms = classifierDir_->classifier(classifierName)->terms();
  if (!terms) return;
  const auto wanted = desired.find(classifierName);
  for (const auto& [termId, term] : terms->term()) {
    if (wanted != desired.end()) {
      const auto group = wanted->second.find(termId);
      if (group != wanted->second.end() && !group->second.empty()) continue;
    }
    blankAction(terms->termContent(term));
    Rok::traceIn(handler, *this, ", removed the stale action for classifier = ", classifierName,
                 ", termId = ", termId);
  }
}

// ===== ClassActionSm

// The chained input comes last: what changes in the map while the machine catches up is not seen
// twice.
ClassActionSm::ClassActionSm(Rok::In<Qos::ClassAction> classAction,
                             const Velmo::String& classifierName, Classifier::Type classifierType,
                             const Velmo::String& termId, Rok::In<Qos::Input::Config> cliConfig,
                             Rok::Out<Config::ClassifiersDir> classifierDir,
                             PmapConfigSm* pmapConfigSm)
    : classAction_(*this, classAction),
      classifierName_(classifierName),
      classifierType_(classifierType),
      termId_(termId),
      cliConfig_(*this, cliConfig),
      classifierDir_(classifierDir),
      pmapConfigSm_(pmapConfigSm),
      policyActionSm_(*this),
      nameToTcMapIn_(*this) {
  rokInitialize<&Self::handleInitialized, &Self::followForwardingGroupNameToTcMap>();
}

const Rok::Ptr<Qos::Action>* ClassActionSm::setTcAction() const {
  return classAction_->policyAction().find(Qos::actionSetTc);
}

void ClassActionSm::handlePolicyAction(Qos::ActionType actionType) {
  Rok::traceIn(handler, *this, ", actionType = ", actionType);
  if (actionType != Qos::actionSetTc) {
    return Rok::traceIn(handler, *this, ", actionType = ", actionType,
                        ", is not actionSetTc, skipping");
  }
  policyActionSm_.mirror(classAction_->policyAction(), actionType, Rok::entry, classifierName_,
                         classifierType_, termId_, cliConfig(), classifierDir_, this);
}

void ClassActionSm::handleForwardingGroupNameToTcMap() {
  Rok::traceEntry(handler, *this);
  const auto* action = setTcAction();
  if (action == nullptr) {
    if (Rok::TraceHelper line{handler}) {
      line.in(*this) << ", the classAction = " << cmapName()
                     << " has no set traffic-class action, skipping";
    }
    return;
  }
  const auto* group = firstGroupName((*action)->value(), *cliConfig_->forwardingGroupNameToTcMap());
  if (group == nullptr) return policyActionSm_.withdraw(Qos::actionSetTc);
  if (const auto child = policyActionSm_.child(Qos::actionSetTc)) {
    child->addClassifierTermAction(group->name);
  } else {
    policyActionSmIs(*action, classifierName_, classifierType_, termId_, cliConfig(),
                     classifierDir_, this);
  }
}

void ClassActionSm::handleInitialized() {
  Rok::traceEntry(handler, *this);
  const auto classifier = classifierDir_->classifierIs(classifierName_);
  classifier->typeIs(classifierType_);
  const auto terms = classifier->termsIs();
  terms->termMade(termId_);
  eachKey<&Self::handlePolicyAction>(classAction_->policyAction());
  Rok::traceIn(handler, *this, ", removing the stale config");
  if (setTcAction() != nullptr) return;
  const Config::Term* term = terms->term().find(termId_);
  if (term == nullptr || !*term) return;
  blankAction(terms->termContent(*term));
  if (Rok::TraceHelper line{handler}) {
    line.in(*this) << ", removed the stale policyAction for classAction = " << cmapName();
  }
}

// ===== PolicyActionSm

PolicyActionSm::PolicyActionSm(Rok::In<Qos::Action> policyAction,
                               const Velmo::String& classifierName, Classifier::Type classifierType,
                               const Velmo::String& termId, Rok::In<Qos::Input::Config> cliConfig,
                               Rok::Out<Config::ClassifiersDir> classifierDir,
                               ClassActionSm* classActionSm)
    : policyAction_(*this, policyAction),
      path_(classifierName, termId),
      classifierType_(classifierType),
      cliConfig_(cliConfig),
      classifierDir_(classifierDir),
      classActionSm_(classActionSm) {
  rokInitialize<&Self::handleInitialized>();
}

void PolicyActionSm::handlePolicyActionValue() {
  Rok::traceEntry(handler, *this);
  const Velmo::String targetGroup =
      targetGroupFromTc(policyAction_->value(), cliConfig_->forwardingGroupNameToTcMap());
  if (targetGroup.empty()) {
    delClassifierTermAction();
  } else {
    addClassifierTermAction(targetGroup);
  }
}

void PolicyActionSm::addClassifierTermAction(const Velmo::String& targetGroup) {
  Rok::traceIn(handler, *this, ", targetGroup = ", targetGroup);
  Config::Classifier& classifier = path_.classifierIs(*classifierDir_);
  classifier.typeIs(classifierType_);
  path_.termIs(classifier).actions = Config::TermActions{{targetGroup}};
}

void PolicyActionSm::delClassifierTermAction() {
  const Config::Term* term = path_.term(*classifierDir_);
  if (term == nullptr || !*term) return;
  blankAction(*path_.content(*classifierDir_));
  Rok::traceIn(handler, *this, ", term = ", *term);
}

void PolicyActionSm::doPrepareToDie() {
  Rok::traceEntry(handler, *this);
  delClassifierTermAction();
}

void PolicyActionSm::handleInitialized() {
  Rok::traceEntry(handler, *this);
  handlePolicyActionValue();
}

// ===== Factories

Rok::Ptr<ClassActionKivToOcSm> classActionKivToOcSmFactory(
    Rok::In<Qos::Input::AclConfig> qosAclConfig, Rok::In<Qos::Input::Config> cliConfig,
    Rok::Out<Config::ClassifiersDir> classifierDir) {
  return ClassActionKivToOcSm::ClassActionKivToOcSmIs(qosAclConfig, cliConfig, classifierDir);
}

Rok::Ptr<PmapTypeSm> pmapTypeSmFactory(Rok::In<Qos::Input::PolicyMapTypeConfig> pmapTypeConfig,
                                       Rok::In<Qos::Input::Config> cliConfig,
                                       Rok::Out<Config::ClassifiersDir> classifierDir) {
  return PmapTypeSm::PmapTypeSmIs(pmapTypeConfig, cliConfig, classifierDir);
}

Rok::Ptr<PmapConfigSm> pmapConfigSmFactory(Rok::In<Qos::PolicyMapConfig> pmapConfig,
                                           const Velmo::String& ipv4ClassifierName,
                                           const Velmo::String& ipv6ClassifierName,
                                           Rok::In<Qos::Input::Config> cliConfig,
                                           Rok::Out<Config::ClassifiersDir> classifierDir) {
  return PmapConfigSm::PmapConfigSmIs(pmapConfig, ipv4ClassifierName, ipv6ClassifierName, cliConfig,
                                      classifierDir);
}

Rok::Ptr<ClassActionSm> classActionSmFactory(Rok::In<Qos::ClassAction> classAction,
                                             const Velmo::String& classifierName,
                                             Classifier::Type classifierType,
                                             const Velmo::String& termId,
                                             Rok::In<Qos::Input::Config> cliConfig,
                                             Rok::Out<Config::ClassifiersDir> classifierDir,
                                             PmapConfigSm* pmapConfigSm) {
  return ClassActionSm::ClassActionSmIs(classAction, classifierName, classifierType, termId,
                                        cliConfig, classifierDir, pmapConfigSm);
}

Rok::Ptr<PolicyActionSm> policyActionSmFactory(Rok::In<Qos::Action> policyAction,
                                               const Velmo::String& classifierName,
                                               Classifier::Type classifierType,
                                               const Velmo::String& termId,
                                               Rok::In<Qos::Input::Config> cliConfig,
                                               Rok::Out<Config::ClassifiersDir> classifierDir,
                                               ClassActionSm* classActionSm) {
  return PolicyActionSm::PolicyActionSmIs(policyAction, classifierName, classifierType, termId,
                                          cliConfig, classifierDir, classActionSm);
}

}  // namespace QosOc
