#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmClassMap.h"

#include <ostream>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmUnit.h"

namespace QosOc {

using namespace ClassifierUnit;

// ===== ClassMapKivToOcSm

ClassMapKivToOcSm::ClassMapKivToOcSm(Rok::In<Qos::Input::AclConfig> qosAclConfig,
                                     Rok::Out<Config::ClassifiersDir> classifierDir)
    : qosAclConfig_(qosAclConfig), classifierDir_(classifierDir), cmapTypeConfigSm_(*this) {
  rokInitialize<&Self::handleInitialized>();
}

// Without the entry the argument is null, and that is an exception: the host must have mounted it.
void ClassMapKivToOcSm::handleInitialized() {
  Rok::traceEntry(handler, *this);
  cmapTypeConfigSmIs(qosAclConfig_->cmapType(mapType()), classifierDir_);
}

// ===== ClassMapTypeSm

ClassMapTypeSm::ClassMapTypeSm(Rok::In<Qos::Input::ClassMapTypeConfig> cmapTypeConfig,
                               Rok::Out<Config::ClassifiersDir> classifierDir)
    : cmapTypeConfig_(*this, cmapTypeConfig), classifierDir_(classifierDir), cmapConfigSm_(*this) {
  rokInitialize<&Self::handleInitialized>();
}

void ClassMapTypeSm::handleClassMapConfig(const Velmo::String& name) {
  Rok::traceEntry(handler, *this, name);
  cmapConfigSm_.mirrorKnown(cmapTypeConfig_->cmap(), name, Rok::entry, classifierDir_);
}

void ClassMapTypeSm::doPrepareToDie() {
  Rok::traceEntry(handler, *this);
  cmapConfigSm_.prepareToDie();
}

void ClassMapTypeSm::handleInitialized() {
  Rok::traceEntry(handler, *this);
  eachKey<&Self::handleClassMapConfig>(cmapTypeConfig_->cmap());
  sweepStaleClassifiers();
}

// Deletes every classifier without a placeholder class map, also those of other writers.
void ClassMapTypeSm::sweepStaleClassifiers() {
  for (const auto& [name, classifier] : classifierDir_->classifier()) {
    if (hasClassMap(configObjName(name, ""))) {
      sweepStaleTerms(*classifier);
    } else {
      classifierDir_->classifierDel(name);
    }
  }
}

// Deletes every term without a class map of its own. The classifier's config stays.
void ClassMapTypeSm::sweepStaleTerms(Config::Classifier& classifier) {
  const Rok::Ptr<Config::Terms>& terms = classifier.terms();
  if (!terms) return;
  for (const auto& [id, term] : terms->term()) {
    if (!hasClassMap(configObjName(classifier.name(), id))) terms->termDel(id);
  }
  if (terms->term().members() == 0) classifier.termsDel();
}

bool ClassMapTypeSm::hasClassMap(const Velmo::String& name) const {
  return cmapTypeConfig_->cmap().find(name) != nullptr;
}

// ===== ClassMapSm

ClassMapSm::ClassMapSm(Rok::In<Qos::ClassMapConfig> cmapConfig,
                       Rok::Out<Config::ClassifiersDir> classifierDir)
    : cmapConfig_(*this, cmapConfig), classifierDir_(classifierDir), path_(pathOf(cmapName())) {
  rokInitialize<&Self::handleInitialized>();
}

std::ostream& operator<<(std::ostream& out, const ClassMapSm& sm) {
  return out << ClassMapSm::rokTypeName << "( " << sm.cmapName() << "," << sm.type() << " )::";
}

// The option may have gone from `match`: a removed statement writes the classifier again like a new
// one, and nothing is taken back.
void ClassMapSm::handleClassMapMatch(Qos::ClassMapMatchOption option) {
  Rok::traceEntry(handler, *this, option);
  traceDecoders();
  if (path_.classifierName().empty()) return;
  Config::Classifier& classifier = path_.classifierIs(*classifierDir_);
  const Classifier::Type type = classifierTypeFromMatchOption(option);
  if (Rok::TraceHelper line{handler}) {
    line.of(*this) << "Creating classifier named: " << path_.classifierName()
                   << " of type: " << type;
    if (path_.isTerm()) line << " and termId named: " << path_.termId();
  }
  classifier.typeIs(type);
  // A term that is there stays as it is: its conditions and actions have writers of their own.
  if (path_.isTerm()) path_.termIs(classifier);
}

// The names are decoded once, but each event traces the decoders as if they ran.
void ClassMapSm::traceDecoders() const {
  if (!handler.isOn()) return;
  classifierKeyFromConfigObjName(cmapName());
  classifierNameFromClassName(cmapName());
}

Classifier::Type ClassMapSm::classifierTypeFromMatchOption(Qos::ClassMapMatchOption option) const {
  if (option == Qos::matchIpAccessGroup) return Classifier::classifierTypeIpv4;
  if (option == Qos::matchIpv6AccessGroup) return Classifier::classifierTypeIpv6;
  Rok::traceOf(fault, *this, "ClassMap match type ", option,
               " does not correspond to any Classifier Type");
  return Classifier::classifierTypeIpv4;
}

void ClassMapSm::doPrepareToDie() {
  traceDecoders();
  if (path_.classifierName().empty()) return;
  if (!path_.isTerm()) return classifierDir_->classifierDel(path_.classifierName());
  Rok::traceOf(handler, *this, "Deleting termId named: ", path_.termId(),
               " for classifier named: ", path_.classifierName());
  path_.termDel(*classifierDir_);
}

void ClassMapSm::handleInitialized() {
  Rok::traceEntry(handler, *this);
  eachKey<&Self::handleClassMapMatch>(cmapConfig_->match());
}

// ===== Factories

Rok::Ptr<ClassMapKivToOcSm> classMapKivToOcSmFactory(
    Rok::In<Qos::Input::AclConfig> qosAclConfig, Rok::Out<Config::ClassifiersDir> classifierDir) {
  return ClassMapKivToOcSm::ClassMapKivToOcSmIs(qosAclConfig, classifierDir);
}

Rok::Ptr<ClassMapTypeSm> classMapTypeSmFactory(
    Rok::In<Qos::Input::ClassMapTypeConfig> cmapTypeConfig,
    Rok::Out<Config::ClassifiersDir> classifierDir) {
  return ClassMapTypeSm::ClassMapTypeSmIs(cmapTypeConfig, classifierDir);
}

Rok::Ptr<ClassMapSm> classMapSmFactory(Rok::In<Qos::ClassMapConfig> cmapConfig,
                                       Rok::Out<Config::ClassifiersDir> classifierDir) {
  return ClassMapSm::ClassMapSmIs(cmapConfig, classifierDir);
}

}  // namespace QosOc
