#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"

#include <cstdlib>
#include <ostream>
#include <string_view>

#include "QosOpenConfig/QosOpenConfigHelper.h"

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

// The name of the class map and of the ACL of a term; of the placeholder when `term` is empty.
Velmo::String configObjName(std::string_view classifier, std::string_view term) {
  Velmo::String name(prefix);
  return name.append(classifier).append(middle).append(term).append(suffix);
}

// The way that the name of a class map or an ACL leads. A native object never changes its name, so
// its machine decodes it once.
TermPath pathOf(std::string_view name) {
  const InBrackets found = inBrackets(name);
  return {found.classifier, found.term};
}

// The first forwarding-group name of a traffic class. The operand of an action is wider than a
// traffic class: what exceeds a byte has no name.
const Qos::ForwardingGroupName* firstGroupName(std::uint32_t tc,
                                               const Qos::ForwardingGroupNameToTcMap& map) {
  return tc <= 0xff ? map.firstName(tc) : nullptr;
}

// ===== Rules

// The DSCP of a rule, if the rule matches one.
Rok::Optional<unsigned char> dscpOf(const Acl::IpRuleConfig& rule) {
  if (!rule.filter.matchDscp) return {};
  return rule.filter.dscp;
}

// A rule that masks only a part of the DSCP's six bits doesn't match on DSCP.
Rok::Optional<unsigned char> dscpOf(const Acl::Ip6RuleConfig& rule) {
  if (rule.filter.tcMask >> 2 != 0x3f) return {};
  return static_cast<unsigned char>(rule.filter.tc >> 2);
}

[[noreturn]] void unexpectedAclType() {
  Rok::SassertHelper(Rok::falseExpr) << "Unexpected ACL type";
  std::abort();  // not reached: the assertion ends the process
}

// ===== Terms

// Sets the conditions of a term to present, default ones: the term has lost its ACL. A term or a
// classifier that isn't there stays away.
void resetConditions(Config::ClassifiersDir& dir, const Velmo::String& classifierName,
                     const Velmo::String& termId) {
  TermPath path(classifierName, termId);
  if (path.term(dir) != nullptr) path.content().conditions = Config::TermConditions();
}

// What the name of a missing object reads as.
constinit const Velmo::String noName;

// Blanks a term's action: the block stays, with an empty target group.
void blankAction(Config::TermContent& term) { term.actions = Config::TermActions(); }

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

std::pair<Velmo::String, Velmo::String> classifiersFromPmapName(const Velmo::String& pmapName) {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in() << ", pmapName = " << pmapName;
  const auto found = Helper::pmapClassifiers(pmapName);
  if (!found) return {};
  return {found->ipv4, found->ipv6};
}

Velmo::String targetGroupFromTc(std::uint32_t tc,
                                const Rok::Ptr<Qos::ForwardingGroupNameToTcMap const>& map) {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in() << ", tc = " << tc;
  const Qos::ForwardingGroupName* name = firstGroupName(tc, *map);
  return name != nullptr ? name->name : Velmo::String();
}

// ===== TermPath

Config::Classifier& TermPath::classifierIs(Config::ClassifiersDir& dir) {
  if (!classifier_ || classifier_->rokMarkedForDeletion()) {
    classifier_ = dir.classifierIs(classifierName_);
    // From here on the name is the same text in the same place, which is compared at a glance.
    classifierName_ = classifier_->name();
  }
  return *classifier_;
}

Config::Classifier* TermPath::classifier(Config::ClassifiersDir& dir) {
  if (!classifier_ || classifier_->rokMarkedForDeletion()) {
    classifier_ = dir.classifier(classifierName_);
  }
  return classifier_.get();
}

Config::TermContent& TermPath::termIs(Config::Classifier& classifier) {
  Config::Terms& terms = *classifier.termsIs();
  if (!isRemembered(terms)) remember(terms, &terms.termMade(termId_));
  return terms.termContent(*term_);
}

const Config::Term* TermPath::term(Config::ClassifiersDir& dir) {
  const Config::Classifier* found = classifier(dir);
  if (found == nullptr || !found->terms()) return nullptr;
  Config::Terms& terms = *found->terms();
  return isRemembered(terms) ? term_ : remember(terms, terms.term().find(termId_));
}

bool TermPath::termDel(Config::ClassifiersDir& dir) {
  Config::Classifier* found = classifier(dir);
  if (found == nullptr || !found->terms()) return false;
  Config::Terms& terms = *found->terms();
  terms.termDel(termId_);
  if (terms.term().members() == 0) found->termsDel();
  return true;
}

const Config::Term* TermPath::remember(const Config::Terms& terms, const Config::Term* term) {
  termsVersion_ = terms.term().version();
  return term_ = term;
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
  rokInitialize<&ClassMapKivToOcSm::handleInitialized>();
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
  rokInitialize<&ClassMapTypeSm::handleInitialized>();
}

Qos::MapType ClassMapTypeSm::type() const {
  return cmapTypeConfig_ ? cmapTypeConfig_->type() : Qos::MapType();
}

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
  for (const auto& [name, cmap] : cmapTypeConfig_->cmap()) handleClassMapConfig(name);
  sweepStaleClassifiers();
}

// A classifier survives a start only with its placeholder class map, whoever wrote it.
void ClassMapTypeSm::sweepStaleClassifiers() {
  for (const auto& [name, classifier] : classifierDir_->classifier()) {
    if (hasClassMap(configObjName(name, ""))) {
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
  for (const auto& [id, term] : terms->term()) {
    if (!hasClassMap(configObjName(classifierName, id))) terms->termDel(id);
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
    : cmapConfig_(*this, cmapConfig), classifierDir_(classifierDir), path_(pathOf(cmapName())) {
  rokInitialize<&ClassMapSm::handleInitialized>();
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
  if (path_.classifierName().empty()) return;
  // Held: a trace line's reader may do anything.
  const Rok::Ptr<Config::Classifier> classifier(&path_.classifierIs(*classifierDir_));
  const Classifier::Type type = classifierTypeFromMatchOption(option);
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.of(*this) << "Creating classifier named: " << path_.classifierName()
                   << " of type: " << type;
    if (path_.isTerm()) line << " and termId named: " << path_.termId();
  }
  classifier->configIs(path_.classifierName(), type);
  // A term that is there stays as it is: its conditions and actions have writers of their own.
  if (path_.isTerm()) path_.termIs(*classifier);
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
    line.of(*this) << "ClassMap match type " << option << " does not correspond to any "
                   << "Classifier Type";
  }
  return Classifier::classifierTypeIpv4;
}

void ClassMapSm::doPrepareToDie() {
  traceDecoders();
  if (path_.classifierName().empty()) return;
  if (!path_.isTerm()) return classifierDir_->classifierDel(path_.classifierName());
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.of(*this) << "Deleting termId named: " << path_.termId()
                   << " for classifier named: " << path_.classifierName();
  }
  path_.termDel(*classifierDir_);
}

void ClassMapSm::handleInitialized() {
  Rok::EntryTrace(traceHandle, handler, *this);
  for (const auto& [option, match] : cmapConfig_->match()) handleClassMapMatch(option);
}

// ===== AclKivToOcSm

Rok::Ptr<AclKivToOcSm> AclKivToOcSm::AclKivToOcSmIs(
    const Rok::Ptr<Acl::Input::Config const>& aclCliConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
  return create(aclCliConfig, classifierDir);
}

AclKivToOcSm::AclKivToOcSm(const Rok::Ptr<Acl::Input::Config const>& aclCliConfig,
                           const Rok::Ptr<Config::ClassifiersDir>& classifierDir)
    : aclCliConfig_(aclCliConfig), classifierDir_(classifierDir), aclTypeSm_(*this) {
  rokInitialize<&AclKivToOcSm::handleInitialized>();
}

void AclKivToOcSm::handleInitialized() {
  Rok::EntryTrace(traceHandle, handler, *this);
  // A family without an entry is a null argument, and that is an exception: the host must have
  // mounted both.
  for (const Acl::AclType type : {Acl::aclTypeIpv4, Acl::aclTypeIpv6}) {
    const auto* entry = aclCliConfig_->config().find(type);
    aclTypeSmIs(entry != nullptr ? *entry : nullptr, classifierDir_);
  }
}

// ===== AclTypeSm

Rok::Ptr<AclTypeSm> AclTypeSm::AclTypeSmIs(
    const Rok::Ptr<Acl::Input::AclTypeConfig const>& aclTypeConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
  return create(aclTypeConfig, classifierDir);
}

AclTypeSm::AclTypeSm(const Rok::Ptr<Acl::Input::AclTypeConfig const>& aclTypeConfig,
                     const Rok::Ptr<Config::ClassifiersDir>& classifierDir)
    : aclTypeConfig_(*this, aclTypeConfig), classifierDir_(classifierDir), aclConfigSm_(*this) {
  rokInitialize<&AclTypeSm::handleInitialized>();
}

Acl::AclType AclTypeSm::type() const {
  return aclTypeConfig_ ? aclTypeConfig_->type() : Acl::AclType();
}

void AclTypeSm::handleAclConfig(const Velmo::String& name) {
  Rok::EntryTrace(traceHandle, handler, *this, name);
  if (const auto* entry = aclTypeConfig_->acl().find(name)) {
    aclConfigSmIs(*entry, classifierDir_);
  } else {
    aclConfigSm_.withdrawKnown(name);
  }
}

void AclTypeSm::doPrepareToDie() {
  Rok::EntryTrace(traceHandle, handler, *this);
  aclConfigSm_.prepareToDie();
}

void AclTypeSm::handleInitialized() {
  Rok::EntryTrace(traceHandle, handler, *this);
  for (const auto& [name, acl] : aclTypeConfig_->acl()) handleAclConfig(name);
  sweepStaleConditions();
}

// Each family judges the classifiers of its own type; one without a type belongs to neither. IPv6
// comes after IPv4, so a classifier with terms of both ends as one of IPv6 and its IPv4 terms are
// reset at each start. Deliberate: a classifier has one type, and the last writer's stands.
void AclTypeSm::sweepStaleConditions() {
  for (const auto& [name, classifier] : classifierDir_->classifier()) {
    if (type() != Acl::aclTypeIpv4 && type() != Acl::aclTypeIpv6) unexpectedAclType();
    const auto own = type() == Acl::aclTypeIpv4 ? Classifier::classifierTypeIpv4
                                                : Classifier::classifierTypeIpv6;
    if (classifier->config().type == own && classifier->terms()) sweepStaleConditions(*classifier);
  }
}

// Neither terms nor classifiers are deleted here: that is the class maps' sweep.
void AclTypeSm::sweepStaleConditions(const Config::Classifier& classifier) {
  const auto terms = classifier.terms();
  for (const auto& [id, term] : terms->term()) {
    const auto name = configObjName(classifier.name(), id);
    if (aclTypeConfig_->acl().find(name) != nullptr) continue;
    terms->termContent(term).conditions = Config::TermConditions();
  }
}

// ===== AclConfigSm

Rok::Ptr<AclConfigSm> AclConfigSm::AclConfigSmIs(
    const Rok::Ptr<Acl::AclConfig const>& aclConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
  return create(aclConfig, classifierDir);
}

AclConfigSm::AclConfigSm(const Rok::Ptr<Acl::AclConfig const>& aclConfig,
                         const Rok::Ptr<Config::ClassifiersDir>& classifierDir)
    : aclConfig_(*this, aclConfig), classifierDir_(classifierDir), aclSubConfigSm_(*this) {
  rokInitialize<&AclConfigSm::handleInitialized>();
  // A machine without its ACL has its name and type all the same.
  if (!aclConfig_) makeNameAndType();
}

Acl::AclType AclConfigSm::type() const { return aclConfig_ ? aclConfig_->type() : Acl::AclType(); }

Velmo::String AclConfigSm::aclName() const {
  return aclConfig_ ? aclConfig_->name() : Velmo::String();
}

std::ostream& operator<<(std::ostream& out, const AclConfigSm& sm) {
  return out << AclConfigSm::rokTypeName << "( " << sm.aclName() << "," << sm.type() << " )::";
}

void AclConfigSm::handleAclSubConfig() {
  Rok::EntryTrace(traceHandle, handler, *this);
  if (const auto& config = aclConfig_->aclSubConfig()) {
    aclSubConfigSmIs(config, classifierDir_, aclNameAndType_);
  } else {
    aclSubConfigSmDel();
  }
}

void AclConfigSm::doPrepareToDie() {
  Rok::EntryTrace(traceHandle, handler, *this);
  const auto [classifierName, termId] = classifierKeyFromConfigObjName(aclName());
  if (classifierName.empty() || termId.empty()) return;
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.of(*this) << "Deleting conditions for termId named: " << termId
                   << " for classifier named: " << classifierName;
  }
  resetConditions(*classifierDir_, classifierName, termId);
}

void AclConfigSm::handleInitialized() {
  Rok::EntryTrace(traceHandle, handler, *this);
  makeNameAndType();
  handleAclSubConfig();
}

void AclConfigSm::makeNameAndType() {
  aclNameAndType_ = Rok::make<AclNameAndType>(aclName(), type());
  aclNameAndType_->hasNotificationActiveIs(true);
}

// ===== AclSubConfigSm

Rok::Ptr<AclSubConfigSm> AclSubConfigSm::AclSubConfigSmIs(
    const Rok::Ptr<Acl::AclSubConfig const>& aclSubConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir,
    const Rok::Ptr<AclNameAndType const>& aclNameAndType) {
  return create(aclSubConfig, classifierDir, aclNameAndType);
}

AclSubConfigSm::AclSubConfigSm(const Rok::Ptr<Acl::AclSubConfig const>& aclSubConfig,
                               const Rok::Ptr<Config::ClassifiersDir>& classifierDir,
                               const Rok::Ptr<AclNameAndType const>& aclNameAndType)
    : aclSubConfig_(*this, aclSubConfig),
      classifierDir_(classifierDir),
      aclNameAndType_(aclNameAndType),
      path_(aclNameAndType ? pathOf(aclNameAndType->aclName()) : TermPath()) {
  rokInitialize<&AclSubConfigSm::handleInitialized>();
}

// A removed rule reads as a default one, which matches no DSCP: the values that are there stay, and
// the term is written again with them.
void AclSubConfigSm::handleRuleBySequence(std::uint32_t sequence) {
  Rok::EntryTrace(traceHandle, handler, *this, sequence);
  traceDecoder();
  if (!path_.isTerm()) return;
  // Held: a trace line's reader may do anything.
  const Rok::Ptr<Config::Classifier> classifier(&path_.classifierIs(*classifierDir_));
  const Classifier::Type type = classifierTypeFromAclType(aclNameAndType_->aclType());
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.of(*this) << " Creating classifier named: " << path_.classifierName()
                   << " and termId named: " << path_.termId() << " of type: " << type;
  }
  classifier->configIs(path_.classifierName(), type);
  if (const auto dscp = dscpOf(sequence)) dscpValueSetPush(*dscp);
  // The term's actions have a writer of their own, and stay.
  path_.termIs(*classifier).conditions = conditions();
}

// The DSCP that a rule matches, if it matches one.
Rok::Optional<unsigned char> AclSubConfigSm::dscpOf(std::uint32_t sequence) const {
  const auto* found = aclSubConfig_->ruleBySequence().find(sequence);
  const Umb::UniqueId id = found != nullptr ? *found : Umb::UniqueId();
  switch (aclNameAndType_->aclType()) {
    case Acl::aclTypeIpv4: {
      static const Acl::IpRuleConfig noRule;
      const auto* stored = aclSubConfig_->ipRuleById().find(id);
      const Acl::IpRuleConfig& rule = stored != nullptr ? *stored : noRule;
      // Only this family shows its rules, and at the level of faults. Whoever reads the trace of a
      // term's conditions looks for this line.
      if (Rok::TraceHelper line{traceHandle, fault}) line.of(*this) << "Rule Config: " << rule;
      return QosOc::dscpOf(rule);
    }
    case Acl::aclTypeIpv6: {
      const auto* rule = aclSubConfig_->ip6RuleById().find(id);
      return rule != nullptr ? QosOc::dscpOf(*rule) : Rok::Optional<unsigned char>();
    }
  }
  unexpectedAclType();
}

// Whatever isn't IPv4 counts as IPv6. What is neither doesn't get past its first rule.
Classifier::Type AclSubConfigSm::classifierTypeFromAclType(Acl::AclType aclType) const {
  return aclType == Acl::aclTypeIpv4 ? Classifier::classifierTypeIpv4
                                     : Classifier::classifierTypeIpv6;
}

// What the values collected so far amount to: one stands alone, several make a set.
Config::TermConditions AclSubConfigSm::conditions() const {
  Config::TermConditionsIpConfig condition;
  if (dscpValueSet_.size() == 1) {
    condition.dscp = dscpValueSet_.front();
  } else {
    condition.dscpSet = dscpValueSet_;
  }
  Config::TermConditions result;
  const bool ipv4 = aclNameAndType_->aclType() == Acl::aclTypeIpv4;
  (ipv4 ? result.ipv4 : result.ipv6) = std::move(condition);
  return result;
}

void AclSubConfigSm::traceDecoder() const {
  if (traceHandle.isOn(handler)) classifierKeyFromConfigObjName(aclNameAndType_->aclName());
}

void AclSubConfigSm::handleInitialized() {
  Rok::EntryTrace(traceHandle, handler, *this);
  for (const auto& [sequence, id] : aclSubConfig_->ruleBySequence()) handleRuleBySequence(sequence);
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.of(*this) << "Deleting stale config for last rule deletion";
  }
  if (aclSubConfig_->ruleBySequence().members() != 0) return;
  traceDecoder();
  if (!path_.isTerm()) return;
  resetConditions(*classifierDir_, path_.classifierName(), path_.termId());
}

// ===== ClassActionKivToOcSm

Rok::Ptr<ClassActionKivToOcSm> ClassActionKivToOcSm::ClassActionKivToOcSmIs(
    const Rok::Ptr<Qos::Input::AclConfig const>& qosAclConfig,
    const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
  return create(qosAclConfig, cliConfig, classifierDir);
}

ClassActionKivToOcSm::ClassActionKivToOcSm(
    const Rok::Ptr<Qos::Input::AclConfig const>& qosAclConfig,
    const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir)
    : qosAclConfig_(*this, qosAclConfig),
      cliConfig_(cliConfig),
      classifierDir_(classifierDir),
      pmapTypeSm_(*this) {
  rokInitialize<&ClassActionKivToOcSm::handleInitialized>();
}

void ClassActionKivToOcSm::handlePmapTypeConfig(Qos::MapType mapType) {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in(*this) << ", pmapType = " << mapType;
  if (mapType != this->mapType()) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.in(*this) << ", pmapType = " << mapType << " is not mapQos, skipping";
    }
    return;
  }
  if (const auto* entry = qosAclConfig_->pmapType().find(mapType)) {
    pmapTypeSmIs(*entry, cliConfig_, classifierDir_);
  } else {
    pmapTypeSm_.withdraw(mapType);
  }
}

void ClassActionKivToOcSm::handleInitialized() {
  Rok::EntryTrace(traceHandle, handler, *this);
  // A missing config is refused by the first policy map.
  if (cliConfig_) Helper::requireGroupNames(*cliConfig_);
  for (const auto& [mapType, pmaps] : qosAclConfig_->pmapType()) handlePmapTypeConfig(mapType);
}

// ===== PmapTypeSm

Rok::Ptr<PmapTypeSm> PmapTypeSm::PmapTypeSmIs(
    const Rok::Ptr<Qos::Input::PolicyMapTypeConfig const>& pmapTypeConfig,
    const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
  return create(pmapTypeConfig, cliConfig, classifierDir);
}

PmapTypeSm::PmapTypeSm(const Rok::Ptr<Qos::Input::PolicyMapTypeConfig const>& pmapTypeConfig,
                       const Rok::Ptr<Qos::Input::Config const>& cliConfig,
                       const Rok::Ptr<Config::ClassifiersDir>& classifierDir)
    : pmapTypeConfig_(*this, pmapTypeConfig),
      cliConfig_(cliConfig),
      classifierDir_(classifierDir),
      pmapConfigSm_(*this) {
  rokInitialize<&PmapTypeSm::handleInitialized>();
}

Qos::MapType PmapTypeSm::pmapType() const {
  return pmapTypeConfig_ ? pmapTypeConfig_->type() : Qos::MapType();
}

void PmapTypeSm::handlePmapConfig(const Velmo::String& pmapName) {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in(*this) << ", pmapName = " << pmapName;
  const auto [ipv4, ipv6] = classifiersFromPmapName(pmapName);
  if (ipv4.empty() && ipv6.empty()) return;
  if (const auto* entry = pmapTypeConfig_->pmap().find(pmapName)) {
    pmapConfigSmIs(*entry, ipv4, ipv6, cliConfig_, classifierDir_);
  } else {
    pmapConfigSm_.withdraw(pmapName);
  }
}

void PmapTypeSm::doPrepareToDie() {
  Rok::EntryTrace(traceHandle, handler, *this);
  pmapConfigSm_.withdrawAll();
}

void PmapTypeSm::handleInitialized() {
  Rok::EntryTrace(traceHandle, handler, *this);
  for (const auto& [name, pmap] : pmapTypeConfig_->pmap()) handlePmapConfig(name);
}

// ===== PmapConfigSm

Rok::Ptr<PmapConfigSm> PmapConfigSm::PmapConfigSmIs(
    const Rok::Ptr<Qos::PolicyMapConfig const>& pmapConfig, const Velmo::String& ipv4ClassifierName,
    const Velmo::String& ipv6ClassifierName, const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
  return create(pmapConfig, ipv4ClassifierName, ipv6ClassifierName, cliConfig, classifierDir);
}

PmapConfigSm::PmapConfigSm(const Rok::Ptr<Qos::PolicyMapConfig const>& pmapConfig,
                           const Velmo::String& ipv4ClassifierName,
                           const Velmo::String& ipv6ClassifierName,
                           const Rok::Ptr<Qos::Input::Config const>& cliConfig,
                           const Rok::Ptr<Config::ClassifiersDir>& classifierDir)
    : pmapConfig_(*this, pmapConfig),
      ipv4ClassifierName_(ipv4ClassifierName),
      ipv6ClassifierName_(ipv6ClassifierName),
      cliConfig_(cliConfig),
      classifierDir_(classifierDir),
      classActionSm_(*this) {
  rokInitialize<&PmapConfigSm::handleInitialized>();
}

const Velmo::String& PmapConfigSm::pmapName() const {
  return pmapConfig_ ? pmapConfig_->name() : noName;
}

void PmapConfigSm::handleClassAction(const Velmo::String& cmapName) {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in(*this) << ", cmapName = " << cmapName;
  const auto [classifierName, termId] = classifierKeyFromConfigObjName(cmapName);
  if (classifierName.empty() || termId.empty()) return;
  const auto* entry = pmapConfig_->classAction().find(cmapName);
  if (entry == nullptr) return deleteTermOf(cmapName, classifierName, termId);
  // A classifier that belongs to neither family counts as an IPv6 one.
  const auto type = classifierName == ipv4ClassifierName_ ? Classifier::classifierTypeIpv4
                                                          : Classifier::classifierTypeIpv6;
  classActionSmIs(*entry, classifierName, type, termId, cliConfig_, classifierDir_, this);
}

// The class went: its term goes whole, conditions and all. Where the classifier has no terms any
// more, the child stays in the collection. Deliberate: what is left of the class is then the class
// maps' affair.
void PmapConfigSm::deleteTermOf(const Velmo::String& cmapName, const Velmo::String& classifierName,
                                const Velmo::String& termId) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << ", deleting the termId: " << termId
                   << " from the classifier: " << classifierName;
  }
  if (TermPath(classifierName, termId).termDel(*classifierDir_)) classActionSmDel(cmapName);
}

void PmapConfigSm::doPrepareToDie() {
  Rok::EntryTrace(traceHandle, handler, *this);
  classActionSmDelAll();
}

void PmapConfigSm::handleInitialized() {
  Rok::EntryTrace(traceHandle, handler, *this);
  makeClassifier(ipv4ClassifierName_, Classifier::classifierTypeIpv4);
  makeClassifier(ipv6ClassifierName_, Classifier::classifierTypeIpv6);
  sweepStaleActions(mirrorClasses());
}

void PmapConfigSm::makeClassifier(const Velmo::String& name, Classifier::Type type) {
  if (!name.empty()) classifierDir_->classifierIs(name)->configIs(name, type);
}

PmapConfigSm::Desired PmapConfigSm::mirrorClasses() {
  Desired desired;
  for (const auto& [cmapName, classAction] : pmapConfig_->classAction()) {
    handleClassAction(cmapName);
    const auto [classifierName, termId] = classifierKeyFromConfigObjName(cmapName);
    if (classifierName.empty() || termId.empty()) continue;
    Velmo::String targetGroup;
    if (const auto* action = classAction->policyAction().find(Qos::actionSetTc)) {
      targetGroup = targetGroupFromTc((*action)->value(), cliConfig_->forwardingGroupNameToTcMap());
    }
    desired[classifierName][termId] = targetGroup;
  }
  return desired;
}

// Only the policy map's own classifiers have anything to sweep, so they alone are visited, unless
// the trace wants to hear of the others.
void PmapConfigSm::sweepStaleActions(const Desired& desired) {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in(*this) << ", removing the stale config";
  if (!traceHandle.isOn(handler)) {
    sweepStaleActions(desired, ipv4ClassifierName_);
    sweepStaleActions(desired, ipv6ClassifierName_);
    return;
  }
  for (const auto& [name, classifier] : classifierDir_->classifier()) {
    if (name == ipv4ClassifierName_ || name == ipv6ClassifierName_) {
      sweepStaleActions(desired, name);
    } else if (Rok::TraceHelper line{traceHandle, handler}) {
      line.in(*this) << ", classifier: " << name << " does not belong to the pmap";
    }
  }
}

// Blanks without looking at what a term held: one that never had an action comes out with a blanked
// one.
void PmapConfigSm::sweepStaleActions(const Desired& desired, const Velmo::String& classifierName) {
  const auto classifier = classifierDir_->classifier(classifierName);
  if (!classifier || !classifier->terms()) return;
  const auto wanted = desired.find(classifierName);
  const auto terms = classifier->terms();
  for (const auto& [termId, term] : terms->term()) {
    if (wanted != desired.end()) {
      const auto group = wanted->second.find(termId);
      if (group != wanted->second.end() && !group->second.empty()) continue;
    }
    blankAction(terms->termContent(term));
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.in(*this) << ", removed the stale action for classifier = " << classifierName
                     << ", termId = " << termId;
    }
  }
}

// ===== ClassActionSm

Rok::Ptr<ClassActionSm> ClassActionSm::ClassActionSmIs(
    const Rok::Ptr<Qos::ClassAction const>& classAction, const Velmo::String& classifierName,
    Classifier::Type classifierType, const Velmo::String& termId,
    const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir, PmapConfigSm* pmapConfigSm) {
  return create(classAction, classifierName, classifierType, termId, cliConfig, classifierDir,
                pmapConfigSm);
}

// The chained input comes last: what changes in the map while the machine catches up is not seen
// twice.
ClassActionSm::ClassActionSm(const Rok::Ptr<Qos::ClassAction const>& classAction,
                             const Velmo::String& classifierName, Classifier::Type classifierType,
                             const Velmo::String& termId,
                             const Rok::Ptr<Qos::Input::Config const>& cliConfig,
                             const Rok::Ptr<Config::ClassifiersDir>& classifierDir,
                             PmapConfigSm* pmapConfigSm)
    : classAction_(*this, classAction),
      classifierName_(classifierName),
      classifierType_(classifierType),
      termId_(termId),
      cliConfig_(*this, cliConfig),
      classifierDir_(classifierDir),
      pmapConfigSm_(pmapConfigSm),
      policyActionSm_(*this),
      rok_CliConfig_ForwardingGroupNameToTcMapIn_(*this) {
  rokInitialize<&ClassActionSm::handleInitialized,
                &ClassActionSm::followForwardingGroupNameToTcMap>();
}

const Velmo::String& ClassActionSm::cmapName() const {
  return classAction_ ? classAction_->name() : noName;
}

void ClassActionSm::followForwardingGroupNameToTcMap() {
  if (!cliConfig_) return;  // then it is the chained input alone that is missing
  rok_CliConfig_ForwardingGroupNameToTcMapInIs(cliConfig_->forwardingGroupNameToTcMap());
}

const Rok::Ptr<Qos::Action>* ClassActionSm::setTcAction() const {
  return classAction_->policyAction().find(Qos::actionSetTc);
}

void ClassActionSm::makePolicyActionSm(const Rok::Ptr<Qos::Action const>& action) {
  policyActionSmIs(action, classifierName_, classifierType_, termId_, cliConfig(), classifierDir_,
                   this);
}

void ClassActionSm::handlePolicyAction(Qos::ActionType actionType) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << ", actionType = " << actionType;
  }
  if (actionType != Qos::actionSetTc) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.in(*this) << ", actionType = " << actionType << ", is not actionSetTc, skipping";
    }
    return;
  }
  if (const auto* action = setTcAction()) {
    makePolicyActionSm(*action);
  } else {
    policyActionSm_.withdraw(actionType);
  }
}

void ClassActionSm::handleForwardingGroupNameToTcMap() {
  Rok::EntryTrace(traceHandle, handler, *this);
  const auto* action = setTcAction();
  if (action == nullptr) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
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
    makePolicyActionSm(*action);
  }
}

void ClassActionSm::handleInitialized() {
  Rok::EntryTrace(traceHandle, handler, *this);
  const auto classifier = classifierDir_->classifierIs(classifierName_);
  classifier->configIs(classifierName_, classifierType_);
  const auto terms = classifier->termsIs();
  terms->termMade(termId_);
  for (const auto& [type, action] : classAction_->policyAction()) handlePolicyAction(type);
  if (Rok::TraceHelper line{traceHandle, handler}) line.in(*this) << ", removing the stale config";
  if (setTcAction() != nullptr) return;
  const Config::Term* term = terms->term().find(termId_);
  if (term == nullptr || !*term) return;
  blankAction(terms->termContent(*term));
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << ", removed the stale policyAction for classAction = " << cmapName();
  }
}

// ===== PolicyActionSm

Rok::Ptr<PolicyActionSm> PolicyActionSm::PolicyActionSmIs(
    const Rok::Ptr<Qos::Action const>& policyAction, const Velmo::String& classifierName,
    Classifier::Type classifierType, const Velmo::String& termId,
    const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir, ClassActionSm* classActionSm) {
  return create(policyAction, classifierName, classifierType, termId, cliConfig, classifierDir,
                classActionSm);
}

PolicyActionSm::PolicyActionSm(const Rok::Ptr<Qos::Action const>& policyAction,
                               const Velmo::String& classifierName, Classifier::Type classifierType,
                               const Velmo::String& termId,
                               const Rok::Ptr<Qos::Input::Config const>& cliConfig,
                               const Rok::Ptr<Config::ClassifiersDir>& classifierDir,
                               ClassActionSm* classActionSm)
    : policyAction_(*this, policyAction),
      path_(classifierName, termId),
      classifierType_(classifierType),
      cliConfig_(cliConfig),
      classifierDir_(classifierDir),
      classActionSm_(classActionSm) {
  rokInitialize<&PolicyActionSm::handleInitialized>();
}

Qos::ActionType PolicyActionSm::actionType() const {
  return policyAction_ ? policyAction_->actionType() : Qos::ActionType();
}

void PolicyActionSm::handlePolicyActionValue() {
  Rok::EntryTrace(traceHandle, handler, *this);
  const Velmo::String targetGroup =
      targetGroupFromTc(policyAction_->value(), cliConfig_->forwardingGroupNameToTcMap());
  if (targetGroup.empty()) {
    delClassifierTermAction();
  } else {
    addClassifierTermAction(targetGroup);
  }
}

void PolicyActionSm::addClassifierTermAction(const Velmo::String& targetGroup) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << ", targetGroup = " << targetGroup;
  }
  Config::Classifier& classifier = path_.classifierIs(*classifierDir_);
  classifier.configIs(path_.classifierName(), classifierType_);
  path_.termIs(classifier).actions = Config::TermActions{{targetGroup}};
}

void PolicyActionSm::delClassifierTermAction() {
  const Config::Term* term = path_.term(*classifierDir_);
  if (term == nullptr || !*term) return;
  blankAction(path_.content());
  if (Rok::TraceHelper line{traceHandle, handler}) line.in(*this) << ", term = " << *term;
}

void PolicyActionSm::doPrepareToDie() {
  Rok::EntryTrace(traceHandle, handler, *this);
  delClassifierTermAction();
}

void PolicyActionSm::handleInitialized() {
  Rok::EntryTrace(traceHandle, handler, *this);
  handlePolicyActionValue();
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

Rok::Ptr<AclKivToOcSm> aclKivToOcSmFactory(const Rok::Ptr<Acl::Input::Config const>& aclCliConfig,
                                           const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
  return AclKivToOcSm::AclKivToOcSmIs(aclCliConfig, classifierDir);
}

Rok::Ptr<AclTypeSm> aclTypeSmFactory(const Rok::Ptr<Acl::Input::AclTypeConfig const>& aclTypeConfig,
                                     const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
  return AclTypeSm::AclTypeSmIs(aclTypeConfig, classifierDir);
}

Rok::Ptr<AclConfigSm> aclConfigSmFactory(const Rok::Ptr<Acl::AclConfig const>& aclConfig,
                                         const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
  return AclConfigSm::AclConfigSmIs(aclConfig, classifierDir);
}

Rok::Ptr<AclSubConfigSm> aclSubConfigSmFactory(
    const Rok::Ptr<Acl::AclSubConfig const>& aclSubConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir,
    const Rok::Ptr<AclNameAndType const>& aclNameAndType) {
  return AclSubConfigSm::AclSubConfigSmIs(aclSubConfig, classifierDir, aclNameAndType);
}

Rok::Ptr<ClassActionKivToOcSm> classActionKivToOcSmFactory(
    const Rok::Ptr<Qos::Input::AclConfig const>& qosAclConfig,
    const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
  return ClassActionKivToOcSm::ClassActionKivToOcSmIs(qosAclConfig, cliConfig, classifierDir);
}

Rok::Ptr<PmapTypeSm> pmapTypeSmFactory(
    const Rok::Ptr<Qos::Input::PolicyMapTypeConfig const>& pmapTypeConfig,
    const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
  return PmapTypeSm::PmapTypeSmIs(pmapTypeConfig, cliConfig, classifierDir);
}

Rok::Ptr<PmapConfigSm> pmapConfigSmFactory(const Rok::Ptr<Qos::PolicyMapConfig const>& pmapConfig,
                                           const Velmo::String& ipv4ClassifierName,
                                           const Velmo::String& ipv6ClassifierName,
                                           const Rok::Ptr<Qos::Input::Config const>& cliConfig,
                                           const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
  return PmapConfigSm::PmapConfigSmIs(pmapConfig, ipv4ClassifierName, ipv6ClassifierName, cliConfig,
                                      classifierDir);
}

Rok::Ptr<ClassActionSm> classActionSmFactory(const Rok::Ptr<Qos::ClassAction const>& classAction,
                                             const Velmo::String& classifierName,
                                             Classifier::Type classifierType,
                                             const Velmo::String& termId,
                                             const Rok::Ptr<Qos::Input::Config const>& cliConfig,
                                             const Rok::Ptr<Config::ClassifiersDir>& classifierDir,
                                             PmapConfigSm* pmapConfigSm) {
  return ClassActionSm::ClassActionSmIs(classAction, classifierName, classifierType, termId,
                                        cliConfig, classifierDir, pmapConfigSm);
}

Rok::Ptr<PolicyActionSm> policyActionSmFactory(
    const Rok::Ptr<Qos::Action const>& policyAction, const Velmo::String& classifierName,
    Classifier::Type classifierType, const Velmo::String& termId,
    const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir, ClassActionSm* classActionSm) {
  return PolicyActionSm::PolicyActionSmIs(policyAction, classifierName, classifierType, termId,
                                          cliConfig, classifierDir, classActionSm);
}

}  // namespace QosOc
