#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmAcl.h"

#include <cstdlib>
#include <ostream>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmUnit.h"

namespace QosOc {

using namespace ClassifierUnit;

namespace {

// The DSCP of a rule, if the rule matches one.
Rok::Optional<unsigned char> ruleDscp(const Acl::IpRuleConfig& rule) {
  if (!rule.filter.matchDscp) return {};
  return rule.filter.dscp;
}

// A rule that masks only a part of the DSCP's six bits doesn't match on DSCP.
Rok::Optional<unsigned char> ruleDscp(const Acl::Ip6RuleConfig& rule) {
  if (rule.filter.tcMask >> 2 != 0x3f) return {};
  return static_cast<unsigned char>(rule.filter.tc >> 2);
}

[[noreturn]] void unexpectedAclType() {
  Rok::SassertHelper(Rok::falseExpr) << "Unexpected ACL type";
  std::abort();  // not reached: the assertion ends the process
}

// Sets the conditions of a term to present, default ones: the term has lost its ACL. A term or a
// classifier that isn't there stays away.
void resetConditions(TermPath& path, const Config::ClassifiersDir& dir) {
  if (Config::TermContent* term = path.content(dir)) term->conditions = Config::TermConditions();
}

}  // namespace

// ===== AclKivToOcSm

AclKivToOcSm::AclKivToOcSm(Rok::In<Acl::Input::Config> aclCliConfig,
                           Rok::Out<Config::ClassifiersDir> classifierDir)
    : aclCliConfig_(aclCliConfig), classifierDir_(classifierDir), aclTypeSm_(*this) {
  rokInitialize<&Self::handleInitialized>();
}

// A family without an entry is a null argument, and that is an exception: the host must have
// mounted both.
void AclKivToOcSm::handleInitialized() {
  Rok::traceEntry(handler, *this);
  for (const Acl::AclType type : {Acl::aclTypeIpv4, Acl::aclTypeIpv6}) {
    aclTypeSmIs(aclCliConfig_->config(type), classifierDir_);
  }
}

// ===== AclTypeSm

AclTypeSm::AclTypeSm(Rok::In<Acl::Input::AclTypeConfig> aclTypeConfig,
                     Rok::Out<Config::ClassifiersDir> classifierDir)
    : aclTypeConfig_(*this, aclTypeConfig), classifierDir_(classifierDir), aclConfigSm_(*this) {
  rokInitialize<&Self::handleInitialized>();
}

void AclTypeSm::handleAclConfig(const Velmo::String& name) {
  Rok::traceEntry(handler, *this, name);
  aclConfigSm_.mirrorKnown(aclTypeConfig_->acl(), name, Rok::entry, classifierDir_);
}

void AclTypeSm::doPrepareToDie() {
  Rok::traceEntry(handler, *this);
  aclConfigSm_.prepareToDie();
}

void AclTypeSm::handleInitialized() {
  Rok::traceEntry(handler, *this);
  eachKey<&Self::handleAclConfig>(aclTypeConfig_->acl());
  sweepStaleConditions();
}

// Each family sweeps the classifiers of its own type; one without a type belongs to neither. IPv6
// comes after IPv4, so a classifier with terms of both ends as one of IPv6 and its IPv4 terms are
// reset at each start: a classifier has one type, and the last writer's stands.
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
  const auto& terms = classifier.terms();
  for (const auto& [id, term] : terms->term()) {
    const auto name = configObjName(classifier.name(), id);
    if (aclTypeConfig_->acl().find(name) != nullptr) continue;
    terms->termContent(term).conditions = Config::TermConditions();
  }
}

// ===== AclConfigSm

AclConfigSm::AclConfigSm(Rok::In<Acl::AclConfig> aclConfig,
                         Rok::Out<Config::ClassifiersDir> classifierDir)
    : aclConfig_(*this, aclConfig), classifierDir_(classifierDir), aclSubConfigSm_(*this) {
  rokInitialize<&Self::handleInitialized>();
  // A machine without its ACL has a name and type too.
  if (!aclConfig_) makeNameAndType();
}

std::ostream& operator<<(std::ostream& out, const AclConfigSm& sm) {
  return out << AclConfigSm::rokTypeName << "( " << sm.aclName() << "," << sm.type() << " )::";
}

void AclConfigSm::handleAclSubConfig() {
  Rok::traceEntry(handler, *this);
  if (const auto& config = aclConfig_->aclSubConfig()) {
    aclSubConfigSmIs(config, classifierDir_, aclNameAndType_);
  } else {
    aclSubConfigSmDel();
  }
}

void AclConfigSm::doPrepareToDie() {
  Rok::traceEntry(handler, *this);
  const auto [classifierName, termId] = classifierKeyFromConfigObjName(aclName());
  if (classifierName.empty() || termId.empty()) return;
  Rok::traceOf(handler, *this, "Deleting conditions for termId named: ", termId,
               " for classifier named: ", classifierName);
  TermPath path(classifierName, termId);
  resetConditions(path, *classifierDir_);
}

void AclConfigSm::handleInitialized() {
  Rok::traceEntry(handler, *this);
  makeNameAndType();
  handleAclSubConfig();
}

void AclConfigSm::makeNameAndType() {
  aclNameAndType_ = Rok::make<AclNameAndType>(aclName(), type());
  aclNameAndType_->hasNotificationActiveIs(true);
}

// ===== AclSubConfigSm

AclSubConfigSm::AclSubConfigSm(Rok::In<Acl::AclSubConfig> aclSubConfig,
                               Rok::Out<Config::ClassifiersDir> classifierDir,
                               Rok::In<AclNameAndType> aclNameAndType)
    : aclSubConfig_(*this, aclSubConfig),
      classifierDir_(classifierDir),
      aclNameAndType_(aclNameAndType),
      path_(aclNameAndType ? pathOf(aclNameAndType->aclName()) : TermPath()) {
  rokInitialize<&Self::handleInitialized>();
}

// A removed rule reads as a default one, which matches no DSCP: the values that are there stay, and
// the term is written again with them.
void AclSubConfigSm::handleRuleBySequence(std::uint32_t sequence) {
  Rok::traceEntry(handler, *this, sequence);
  traceDecoder();
  if (!path_.isTerm()) return;
  Config::Classifier& classifier = path_.classifierIs(*classifierDir_);
  const Classifier::Type type = classifierTypeFromAclType(aclNameAndType_->aclType());
  Rok::traceOf(handler, *this, " Creating classifier named: ", path_.classifierName(),
               " and termId named: ", path_.termId(), " of type: ", type);
  classifier.typeIs(type);
  if (const auto dscp = dscpOf(sequence)) dscpValueSetPush(*dscp);
  // The term's actions have a writer of their own, and stay.
  path_.termIs(classifier).conditions = conditions();
}

// The DSCP that a rule matches, if it matches one.
Rok::Optional<unsigned char> AclSubConfigSm::dscpOf(std::uint32_t sequence) const {
  const Umb::UniqueId id = aclSubConfig_->ruleBySequence(sequence);
  switch (aclNameAndType_->aclType()) {
    case Acl::aclTypeIpv4: {
      static const Acl::IpRuleConfig noRule;
      const auto* stored = aclSubConfig_->ipRuleById().find(id);
      const Acl::IpRuleConfig& rule = stored != nullptr ? *stored : noRule;
      // Only this family traces its rules, and at the level of faults: a user who traces a
      // term's conditions looks for this line.
      Rok::traceOf(fault, *this, "Rule Config: ", rule);
      return ruleDscp(rule);
    }
    case Acl::aclTypeIpv6: {
      const auto* rule = aclSubConfig_->ip6RuleById().find(id);
      return rule != nullptr ? ruleDscp(*rule) : Rok::Optional<unsigned char>();
    }
  }
  unexpectedAclType();
}

// Any type but IPv4 counts as IPv6. With a type that is neither, the first rule ends the process.
Classifier::Type AclSubConfigSm::classifierTypeFromAclType(Acl::AclType aclType) const {
  return aclType == Acl::aclTypeIpv4 ? Classifier::classifierTypeIpv4
                                     : Classifier::classifierTypeIpv6;
}

// What the values collected so far amount to: one stands alone, several make a set.
Config::TermConditions AclSubConfigSm::conditions() const {
  Config::TermConditions result;
  const bool ipv4 = aclNameAndType_->aclType() == Acl::aclTypeIpv4;
  Config::TermConditionsIpConfig& condition = ipv4 ? result.ipv4 : result.ipv6;
  if (dscpValueSet_.size() == 1) {
    condition.dscp = dscpValueSet_.front();
  } else {
    condition.dscpSet = dscpValueSet_;
  }
  return result;
}

void AclSubConfigSm::traceDecoder() const {
  if (handler.isOn()) classifierKeyFromConfigObjName(aclNameAndType_->aclName());
}

void AclSubConfigSm::handleInitialized() {
  Rok::traceEntry(handler, *this);
  eachKey<&Self::handleRuleBySequence>(aclSubConfig_->ruleBySequence());
  Rok::traceOf(handler, *this, "Deleting stale config for last rule deletion");
  if (aclSubConfig_->ruleBySequence().members() != 0) return;
  traceDecoder();
  if (path_.isTerm()) resetConditions(path_, *classifierDir_);
}

// ===== Factories

Rok::Ptr<AclKivToOcSm> aclKivToOcSmFactory(Rok::In<Acl::Input::Config> aclCliConfig,
                                           Rok::Out<Config::ClassifiersDir> classifierDir) {
  return AclKivToOcSm::AclKivToOcSmIs(aclCliConfig, classifierDir);
}

Rok::Ptr<AclTypeSm> aclTypeSmFactory(Rok::In<Acl::Input::AclTypeConfig> aclTypeConfig,
                                     Rok::Out<Config::ClassifiersDir> classifierDir) {
  return AclTypeSm::AclTypeSmIs(aclTypeConfig, classifierDir);
}

Rok::Ptr<AclConfigSm> aclConfigSmFactory(Rok::In<Acl::AclConfig> aclConfig,
                                         Rok::Out<Config::ClassifiersDir> classifierDir) {
  return AclConfigSm::AclConfigSmIs(aclConfig, classifierDir);
}

Rok::Ptr<AclSubConfigSm> aclSubConfigSmFactory(Rok::In<Acl::AclSubConfig> aclSubConfig,
                                               Rok::Out<Config::ClassifiersDir> classifierDir,
                                               Rok::In<AclNameAndType> aclNameAndType) {
  return AclSubConfigSm::AclSubConfigSmIs(aclSubConfig, classifierDir, aclNameAndType);
}

}  // namespace QosOc
