#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"

#include <ostream>
#include <string_view>

namespace QosOc {
namespace {

constinit Rok::TraceHandle traceHandle("OpenConfigQos", false);

constexpr Rok::TraceFacility::FacilityLevel fault = 0;
constexpr Rok::TraceFacility::FacilityLevel handler = 8;

// ===== Names
//
// The forms are those of the expressions "^__yang_\[([^\]]+)\]_\[\]$" and
// "^__yang_\[([^\]]+)\]_\[([^\]]+)\]$". A name inside brackets is any bytes but "]", and at least
// one: a "[" or a line terminator inside is accepted.

constexpr std::string_view prefix = "__yang_[";
constexpr std::string_view middle = "]_[";
constexpr std::string_view suffix = "]";

// The two texts inside the brackets; the second may be empty, and a name of another form gives two
// empty ones.
struct InBrackets {
  std::string_view classifier;
  std::string_view term;
};

InBrackets inBrackets(std::string_view name) {
  if (!name.starts_with(prefix)) return {};
  name.remove_prefix(prefix.size());
  const std::size_t end = name.find(']');
  if (end == 0 || end == std::string_view::npos) return {};
  const std::string_view rest = name.substr(end);
  if (!rest.starts_with(middle)) return {};
  const std::string_view term = rest.substr(middle.size());
  if (term.empty() || term.find(']') != term.size() - 1) return {};
  return {name.substr(0, end), term.substr(0, term.size() - suffix.size())};
}

Velmo::String classMapName(std::string_view classifier, std::string_view term) {
  Velmo::String name(prefix);
  return name.append(classifier).append(middle).append(term).append(suffix);
}

}  // namespace

Velmo::String classifierNameFromClassName(const Velmo::String& className) {
  Rok::CallTrace(traceHandle, handler, className);
  const InBrackets found = inBrackets(className);
  return found.term.empty() ? found.classifier : std::string_view();
}

std::pair<Velmo::String, Velmo::String> classifierKeyFromConfigObjName(const Velmo::String& name) {
  Rok::CallTrace(traceHandle, handler, name);
  const InBrackets found = inBrackets(name);
  if (found.term.empty()) return {};
  return {found.classifier, found.term};
}

// ===== ClassMapKivToOcSm

Rok::Ptr<ClassMapKivToOcSm> ClassMapKivToOcSm::ClassMapKivToOcSmIs(
    const Rok::Ptr<Qos::Input::AclConfig const>& qosAclConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
  return create(qosAclConfig, classifierDir);
}

ClassMapKivToOcSm::ClassMapKivToOcSm(const Rok::Ptr<Qos::Input::AclConfig const>& qosAclConfig,
                                     const Rok::Ptr<Config::ClassifiersDir>& classifierDir)
    : qosAclConfig_(qosAclConfig), classifierDir_(classifierDir), cmapTypeConfigSm_(*this) {
  handleInitialized();
}

void ClassMapKivToOcSm::handleInitialized() {
  Rok::EntryTrace(traceHandle, handler, *this);
  const auto* entry = qosAclConfig_->cmapType().find(mapType());
  // Without the entry the argument is null, and that is an exception: the host must have mounted
  // it.
  cmapTypeConfigSmIs(entry != nullptr ? *entry : nullptr, classifierDir_);
}

// ===== ClassMapTypeSm

Rok::Ptr<ClassMapTypeSm> ClassMapTypeSm::ClassMapTypeSmIs(
    const Rok::Ptr<Qos::Input::ClassMapTypeConfig const>& cmapTypeConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
  return create(cmapTypeConfig, classifierDir);
}

ClassMapTypeSm::ClassMapTypeSm(const Rok::Ptr<Qos::Input::ClassMapTypeConfig const>& cmapTypeConfig,
                               const Rok::Ptr<Config::ClassifiersDir>& classifierDir)
    : cmapTypeConfig_(*this, cmapTypeConfig), classifierDir_(classifierDir), cmapConfigSm_(*this) {
  handleInitialized();
}

Qos::MapType ClassMapTypeSm::type() const { return cmapTypeConfig_->type(); }

void ClassMapTypeSm::handleClassMapConfig(const Velmo::String& name) {
  Rok::EntryTrace(traceHandle, handler, *this, name);
  if (const auto* entry = cmapTypeConfig_->cmap().find(name)) {
    cmapConfigSmIs(*entry, classifierDir_);
  } else {
    cmapConfigSm_.withdrawKnown(name);
  }
}

void ClassMapTypeSm::doPrepareToDie() {
  Rok::EntryTrace(traceHandle, handler, *this);
  cmapConfigSm_.prepareToDie();
}

void ClassMapTypeSm::handleInitialized() {
  Rok::EntryTrace(traceHandle, handler, *this);
  for (auto i = cmapTypeConfig_->cmap().iterator(); i; ++i) handleClassMapConfig(i.key());
  sweepStaleClassifiers();
}

// A classifier survives a start only with its placeholder class map, whoever wrote it.
void ClassMapTypeSm::sweepStaleClassifiers() {
  for (auto i = classifierDir_->classifier().iterator(); i; ++i) {
    const Velmo::String name = i.key();
    if (hasClassMap(classMapName(name, ""))) {
      sweepStaleTerms(name);
    } else {
      classifierDir_->classifierDel(name);
    }
  }
}

// A term survives a start only with its own class map. The classifier's config is left alone.
void ClassMapTypeSm::sweepStaleTerms(const Velmo::String& classifierName) {
  const Rok::Ptr<Config::Classifier> classifier = classifierDir_->classifier(classifierName);
  const Rok::Ptr<Config::Terms> terms = classifier->terms();
  if (!terms) return;
  for (auto i = terms->term().iterator(); i; ++i) {
    const Velmo::String id = i.key();
    if (!hasClassMap(classMapName(classifierName, id))) terms->termDel(id);
  }
  if (terms->term().members() == 0) classifier->termsDel();
}

bool ClassMapTypeSm::hasClassMap(const Velmo::String& name) const {
  return cmapTypeConfig_->cmap().find(name) != nullptr;
}

// ===== ClassMapSm

Rok::Ptr<ClassMapSm> ClassMapSm::ClassMapSmIs(
    const Rok::Ptr<Qos::ClassMapConfig const>& cmapConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
  return create(cmapConfig, classifierDir);
}

ClassMapSm::ClassMapSm(const Rok::Ptr<Qos::ClassMapConfig const>& cmapConfig,
                       const Rok::Ptr<Config::ClassifiersDir>& classifierDir)
    : cmapConfig_(*this, cmapConfig), classifierDir_(classifierDir) {
  const InBrackets names = inBrackets(cmapName());
  classifierName_ = names.classifier;
  termId_ = names.term;
  handleInitialized();
}

Velmo::String ClassMapSm::cmapName() const {
  return cmapConfig_ ? cmapConfig_->name() : Velmo::String();
}

Qos::MapType ClassMapSm::type() const { return cmapConfig_ ? cmapConfig_->type() : Qos::MapType(); }

std::ostream& operator<<(std::ostream& out, const ClassMapSm& sm) {
  return out << ClassMapSm::rokTypeName << "( " << sm.cmapName() << "," << sm.type() << " )::";
}

// The option may have gone from `match`: a removed statement writes the classifier again like a new
// one, and nothing is taken back.
void ClassMapSm::handleClassMapMatch(Qos::ClassMapMatchOption option) {
  Rok::EntryTrace(traceHandle, handler, *this, option);
  traceDecoders();
  if (classifierName_.empty()) return;
  const auto classifier = classifierDir_->classifierIs(classifierName_);
  const Classifier::Type type = classifierTypeFromMatchOption(option);
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "Creating classifier named: " << classifierName_ << " of type: " << type;
    if (!termId_.empty()) line << " and termId named: " << termId_;
  }
  classifier->configIs({classifierName_, type});
  if (!termId_.empty()) makeTerm(*classifier->termsIs());
}

// A term that is there stays as it is: its conditions and actions have writers of their own.
void ClassMapSm::makeTerm(Config::Terms& terms) const {
  if (terms.term().find(termId_) != nullptr) return;
  Config::Term term(termId_);
  term.configId = termId_;
  terms.termIs(term);
}

// The names are decoded once, and a trace shows the decoders at work at each event all the same.
void ClassMapSm::traceDecoders() const {
  if (!traceHandle.isOn(handler)) return;
  classifierKeyFromConfigObjName(cmapName());
  classifierNameFromClassName(cmapName());
}

Classifier::Type ClassMapSm::classifierTypeFromMatchOption(Qos::ClassMapMatchOption option) const {
  if (option == Qos::matchIpAccessGroup) return Classifier::classifierTypeIpv4;
  if (option == Qos::matchIpv6AccessGroup) return Classifier::classifierTypeIpv6;
  if (Rok::TraceHelper line{traceHandle, fault}) {
    line << "ClassMap match type " << option << " does not correspond to any "
         << "Classifier Type";
  }
  return Classifier::classifierTypeIpv4;
}

void ClassMapSm::doPrepareToDie() {
  traceDecoders();
  if (classifierName_.empty()) return;
  if (termId_.empty()) return classifierDir_->classifierDel(classifierName_);
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "Deleting termId named: " << termId_ << " for classifier named: " << classifierName_;
  }
  const auto classifier = classifierDir_->classifier(classifierName_);
  if (!classifier || !classifier->terms()) return;
  const auto terms = classifier->terms();
  terms->termDel(termId_);
  if (terms->term().members() == 0) classifier->termsDel();
}

void ClassMapSm::handleInitialized() {
  Rok::EntryTrace(traceHandle, handler, *this);
  for (auto i = cmapConfig_->match().iterator(); i; ++i) handleClassMapMatch(i.key());
}

// ===== Factories

Rok::Ptr<ClassMapKivToOcSm> classMapKivToOcSmFactory(
    const Rok::Ptr<Qos::Input::AclConfig const>& qosAclConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
  return ClassMapKivToOcSm::ClassMapKivToOcSmIs(qosAclConfig, classifierDir);
}

Rok::Ptr<ClassMapTypeSm> classMapTypeSmFactory(
    const Rok::Ptr<Qos::Input::ClassMapTypeConfig const>& cmapTypeConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
  return ClassMapTypeSm::ClassMapTypeSmIs(cmapTypeConfig, classifierDir);
}

Rok::Ptr<ClassMapSm> classMapSmFactory(const Rok::Ptr<Qos::ClassMapConfig const>& cmapConfig,
                                       const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
  return ClassMapSm::ClassMapSmIs(cmapConfig, classifierDir);
}

}  // namespace QosOc
