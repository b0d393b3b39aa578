// Native classification into OpenConfig classifiers: class maps make classifiers and terms exist,
// ACLs give the terms their conditions, policy maps their actions. The three know nothing of each
// other and meet in the output.
//
// A class map or an ACL takes part only when its name is a derived one: `__yang_[C]_[]` stands for
// classifier C, `__yang_[C]_[T]` for its term T. A policy map takes part when its name gives a
// classifier for one family or both: `__yang_[IPV4__A][IPV6__B]`.
//
// What wakes what:
//   cmap of Qos::Input::ClassMapTypeConfig      ClassMapTypeSm::handleClassMapConfig(name)
//   match of Qos::ClassMapConfig                ClassMapSm::handleClassMapMatch(option)
//   acl of Acl::Input::AclTypeConfig            AclTypeSm::handleAclConfig(name)
//   aclSubConfig of Acl::AclConfig              AclConfigSm::handleAclSubConfig()
//   ruleBySequence of Acl::AclSubConfig         AclSubConfigSm::handleRuleBySequence(sequence)
//   pmapType of Qos::Input::AclConfig           ClassActionKivToOcSm::handlePmapTypeConfig(type)
//   pmap of Qos::Input::PolicyMapTypeConfig     PmapTypeSm::handlePmapConfig(name)
//   classAction of Qos::PolicyMapConfig         PmapConfigSm::handleClassAction(class map's name)
//   policyAction of Qos::ClassAction            ClassActionSm::handlePolicyAction(type)
//   forwardingGroupNameToTcMap of Qos::Input::Config    re-points ClassActionSm's chained input
//   forwardingGroupNameToTc of that map         ClassActionSm::handleForwardingGroupNameToTcMap()
//   value of Qos::Action                        PolicyActionSm::handlePolicyActionValue()
#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <utility>

#include "Rok/Rok.h"
#include "models/native/Acl.h"
#include "models/native/AclConfig.h"
#include "models/native/QosInput.h"
#include "models/openconfig/Classifier.h"

namespace QosOc {

// ===== Names

// The classifier in the name of a placeholder class map, `__yang_[C]_[]`. Empty for any other name.
QOS_EXPORT Velmo::String classifierNameFromClassName(const Velmo::String& className);

// The classifier and the term in a name `__yang_[C]_[T]`. Two empty names for any other name.
QOS_EXPORT std::pair<Velmo::String, Velmo::String> classifierKeyFromConfigObjName(
    const Velmo::String& name);

// The IPv4 and the IPv6 classifier in the name of a policy map, `__yang_[IPV4__A][IPV6__B]`, each
// of them optional. Two empty names for any other name, and for the bare `__yang_`.
QOS_EXPORT std::pair<Velmo::String, Velmo::String> classifiersFromPmapName(
    const Velmo::String& pmapName);

// The forwarding group that serves a traffic class: the first in name order, empty when there is
// none. Requires: map.
QOS_EXPORT Velmo::String targetGroupFromTc(
    std::uint32_t tc, const Rok::Ptr<Qos::ForwardingGroupNameToTcMap const>& map);

// ===== Terms

// The way of a state machine to the term that it writes, by the names of the classifier and of the
// term: both empty for a machine that writes nothing, the term alone for one that writes the
// classifier alone. What was found is remembered while it stands, so an event that changes one term
// looks up nothing.
class TermPath {
 public:
  TermPath() = default;
  TermPath(const Velmo::String& classifierName, const Velmo::String& termId)
      : classifierName_(classifierName), termId_(termId) {}

  const Velmo::String& classifierName() const { return classifierName_; }
  const Velmo::String& termId() const { return termId_; }
  // Whether it leads to a term.
  bool isTerm() const { return !termId_.empty(); }

  // The classifier, a new one if there is none.
  Config::Classifier& classifierIs(Config::ClassifiersDir& dir);
  // What the term of a classifier that was just got here holds: as it stands, or that of a new one.
  Config::TermContent& termIs(Config::Classifier& classifier);
  // The term, or null where it or its classifier is missing.
  const Config::Term* term(Config::ClassifiersDir& dir);
  // What the term that `term` just found holds.
  Config::TermContent& content() const { return classifier_->terms()->termContent(*term_); }
  // Removes the term, and with the last one all that the classifier has of terms. Returns false
  // where the classifier has none to begin with.
  bool termDel(Config::ClassifiersDir& dir);

 private:
  Config::Classifier* classifier(Config::ClassifiersDir& dir);
  bool isRemembered(const Config::Terms& terms) const {
    return term_ != nullptr && terms.term().version() == termsVersion_;
  }
  const Config::Term* remember(const Config::Terms& terms, const Config::Term* term);

  Velmo::String classifierName_;
  Velmo::String termId_;
  // What was found last. A classifier that has gone since lives until the next event.
  Rok::Ptr<Config::Classifier> classifier_;
  std::uint64_t termsVersion_ = 0;  // where `term_` was found
  const Config::Term* term_ = nullptr;
};

// ===== Class maps

// One class map. Makes the classifier, its config and the term exist; never touches a term's
// conditions or actions.
class ClassMapSm final : public Rok::StateMachine<ClassMapSm> {
 public:
  static constexpr std::string_view rokTypeName = "ClassMapSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"cmapConfig", &ClassMapSm::cmapConfig},
                      Rok::Argument{"classifierDir", &ClassMapSm::classifierDir}};
  }
  static Rok::Ptr<ClassMapSm> ClassMapSmIs(const Rok::Ptr<Qos::ClassMapConfig const>& cmapConfig,
                                           const Rok::Ptr<Config::ClassifiersDir>& classifierDir);

  Rok::Ptr<Qos::ClassMapConfig const> cmapConfig() const { return cmapConfig_.ptr(); }
  const Rok::Ptr<Config::ClassifiersDir>& classifierDir() const { return classifierDir_; }
  // Empty without a config; the type is then the default.
  Velmo::String cmapName() const;
  Qos::MapType type() const;

  // A match statement came or went. Either way the classifier is written: only the deletion of the
  // class map removes anything.
  void handleClassMapMatch(Qos::ClassMapMatchOption option);
  Classifier::Type classifierTypeFromMatchOption(Qos::ClassMapMatchOption option) const;
  // Removes the term, or the classifier when this is its placeholder.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<ClassMapSm>;
  using RokCmapConfig =
      Rok::Watch<ClassMapSm, Qos::ClassMapConfig,
                 Rok::On<Qos::ClassMapConfig::Attr::match, &ClassMapSm::handleClassMapMatch>>;

  ClassMapSm(const Rok::Ptr<Qos::ClassMapConfig const>& cmapConfig,
             const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
  auto parts() { return std::tie(cmapConfig_); }
  void traceDecoders() const;

  RokCmapConfig cmapConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  TermPath path_;
};
QOS_EXPORT std::ostream& operator<<(std::ostream& out, const ClassMapSm& sm);

// The class maps of one map type. Mirrors them and, at start, sweeps the classifiers and terms that
// no class map stands for any more.
class ClassMapTypeSm final : public Rok::StateMachine<ClassMapTypeSm> {
 public:
  static constexpr std::string_view rokTypeName = "ClassMapTypeSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"cmapTypeConfig", &ClassMapTypeSm::cmapTypeConfig},
                      Rok::Argument{"classifierDir", &ClassMapTypeSm::classifierDir}};
  }
  using CmapConfigSmKeyFunktor =
      Rok::KeyFunktor<&ClassMapSm::cmapConfig, &Qos::ClassMapConfig::name>;
  using CmapConfigSm = Rok::Children<ClassMapSm, 0x9b05688cu, CmapConfigSmKeyFunktor>;

  static Rok::Ptr<ClassMapTypeSm> ClassMapTypeSmIs(
      const Rok::Ptr<Qos::Input::ClassMapTypeConfig const>& cmapTypeConfig,
      const Rok::Ptr<Config::ClassifiersDir>& classifierDir);

  Rok::Ptr<Qos::Input::ClassMapTypeConfig const> cmapTypeConfig() const {
    return cmapTypeConfig_.ptr();
  }
  const Rok::Ptr<Config::ClassifiersDir>& classifierDir() const { return classifierDir_; }
  // The default without a config.
  Qos::MapType type() const;

  const CmapConfigSm& cmapConfigSm() const { return cmapConfigSm_; }
  Rok::Ptr<ClassMapSm> cmapConfigSmIs(const Rok::Ptr<Qos::ClassMapConfig const>& cmapConfig,
                                      const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
    return cmapConfigSm_.is(cmapConfig, classifierDir);
  }
  void cmapConfigSmDel(const Velmo::String& name) { cmapConfigSm_.del(name); }
  void cmapConfigSmDelAll() { cmapConfigSm_.delAll(); }

  // A class map came or went.
  void handleClassMapConfig(const Velmo::String& name);
  // Has each class map's machine take back what it wrote; all of them stay.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<ClassMapTypeSm>;
  using RokCmapTypeConfig = Rok::Watch<
      ClassMapTypeSm, Qos::Input::ClassMapTypeConfig,
      Rok::On<Qos::Input::ClassMapTypeConfig::Attr::cmap, &ClassMapTypeSm::handleClassMapConfig>>;

  ClassMapTypeSm(const Rok::Ptr<Qos::Input::ClassMapTypeConfig const>& cmapTypeConfig,
                 const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
  auto parts() { return std::tie(cmapTypeConfig_, cmapConfigSm_); }
  void sweepStaleClassifiers();
  void sweepStaleTerms(const Velmo::String& classifierName);
  bool hasClassMap(const Velmo::String& name) const;

  RokCmapTypeConfig cmapTypeConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  CmapConfigSm cmapConfigSm_;
};

// The root: the class maps of the one map type that is translated. It watches nothing: what the
// native side has under mapQos at construction is what it follows all its life.
class ClassMapKivToOcSm final : public Rok::StateMachine<ClassMapKivToOcSm> {
 public:
  static constexpr std::string_view rokTypeName = "ClassMapKivToOcSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"qosAclConfig", &ClassMapKivToOcSm::qosAclConfig},
                      Rok::Argument{"classifierDir", &ClassMapKivToOcSm::classifierDir}};
  }
  using CmapTypeConfigSmKeyFunktor =
      Rok::KeyFunktor<&ClassMapTypeSm::cmapTypeConfig, &Qos::Input::ClassMapTypeConfig::type>;
  using CmapTypeConfigSm = Rok::Children<ClassMapTypeSm, 0x1f83d9abu, CmapTypeConfigSmKeyFunktor>;

  static Rok::Ptr<ClassMapKivToOcSm> ClassMapKivToOcSmIs(
      const Rok::Ptr<Qos::Input::AclConfig const>& qosAclConfig,
      const Rok::Ptr<Config::ClassifiersDir>& classifierDir);

  const Rok::Ptr<Qos::Input::AclConfig const>& qosAclConfig() const { return qosAclConfig_; }
  const Rok::Ptr<Config::ClassifiersDir>& classifierDir() const { return classifierDir_; }
  static constexpr Qos::MapType mapType() { return Qos::mapQos; }

  const CmapTypeConfigSm& cmapTypeConfigSm() const { return cmapTypeConfigSm_; }
  Rok::Ptr<ClassMapTypeSm> cmapTypeConfigSmIs(
      const Rok::Ptr<Qos::Input::ClassMapTypeConfig const>& cmapTypeConfig,
      const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
    return cmapTypeConfigSm_.is(cmapTypeConfig, classifierDir);
  }
  void cmapTypeConfigSmDel(Qos::MapType mapType) { cmapTypeConfigSm_.del(mapType); }
  void cmapTypeConfigSmDelAll() { cmapTypeConfigSm_.delAll(); }

  void handleInitialized();

 private:
  friend Rok::StateMachine<ClassMapKivToOcSm>;

  ClassMapKivToOcSm(const Rok::Ptr<Qos::Input::AclConfig const>& qosAclConfig,
                    const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
  auto parts() { return std::tie(cmapTypeConfigSm_); }

  Rok::Ptr<Qos::Input::AclConfig const> qosAclConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  CmapTypeConfigSm cmapTypeConfigSm_;
};

// ===== Access lists

// What a sub-configuration can't tell of the ACL that it belongs to.
class AclNameAndType final : public Rok::PtrInterface {
 public:
  AclNameAndType(const Velmo::String& aclName, Acl::AclType aclType)
      : aclType_(aclType), aclName_(aclName) {}

  const Velmo::String& aclName() const { return aclName_; }
  Acl::AclType aclType() const { return aclType_; }

 private:
  Acl::AclType aclType_;
  Velmo::String aclName_;
};

// The rules of one ACL. Makes the classifier, its config and the term, and writes the conditions.
class AclSubConfigSm final : public Rok::StateMachine<AclSubConfigSm> {
 public:
  static constexpr std::string_view rokTypeName = "AclSubConfigSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"aclSubConfig", &AclSubConfigSm::aclSubConfig},
                      Rok::Argument{"classifierDir", &AclSubConfigSm::classifierDir},
                      Rok::Argument{"aclNameAndType", &AclSubConfigSm::aclNameAndType}};
  }
  static Rok::Ptr<AclSubConfigSm> AclSubConfigSmIs(
      const Rok::Ptr<Acl::AclSubConfig const>& aclSubConfig,
      const Rok::Ptr<Config::ClassifiersDir>& classifierDir,
      const Rok::Ptr<AclNameAndType const>& aclNameAndType);

  Rok::Ptr<Acl::AclSubConfig const> aclSubConfig() const { return aclSubConfig_.ptr(); }
  const Rok::Ptr<Config::ClassifiersDir>& classifierDir() const { return classifierDir_; }
  const Rok::Ptr<AclNameAndType const>& aclNameAndType() const { return aclNameAndType_; }

  // Every DSCP that a rule of this machine ever matched, in order of arrival, repeats included. It
  // only grows: a rule that goes or changes leaves its earlier value. Deliberate: the native side
  // replaces the sub-configuration when it means to start over.
  const Velmo::ByteVector& dscpValueSet() const { return dscpValueSet_; }
  // Throws: Velmo::VectorException for an index past the end, or for a pop from an empty vector.
  void dscpValueSetIs(std::size_t index, unsigned char value) {
    Velmo::vectorIs(dscpValueSet_, index, value);
  }
  void dscpValueSetPush(unsigned char value) { dscpValueSet_.push_back(value); }
  void dscpValueSetPop() { Velmo::vectorPop(dscpValueSet_); }
  void dscpValueSetPopAll() { dscpValueSet_.clear(); }

  // A rule came, changed or went.
  void handleRuleBySequence(std::uint32_t sequence);
  Classifier::Type classifierTypeFromAclType(Acl::AclType aclType) const;
  void handleInitialized();

 private:
  friend Rok::StateMachine<AclSubConfigSm>;
  using RokAclSubConfig = Rok::Watch<
      AclSubConfigSm, Acl::AclSubConfig,
      Rok::On<Acl::AclSubConfig::Attr::ruleBySequence, &AclSubConfigSm::handleRuleBySequence>>;

  AclSubConfigSm(const Rok::Ptr<Acl::AclSubConfig const>& aclSubConfig,
                 const Rok::Ptr<Config::ClassifiersDir>& classifierDir,
                 const Rok::Ptr<AclNameAndType const>& aclNameAndType);
  auto parts() { return std::tie(aclSubConfig_); }
  Rok::Optional<unsigned char> dscpOf(std::uint32_t sequence) const;
  Config::TermConditions conditions() const;
  void traceDecoder() const;

  RokAclSubConfig aclSubConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  Rok::Ptr<AclNameAndType const> aclNameAndType_;
  Velmo::ByteVector dscpValueSet_;
  TermPath path_;
};

// One ACL. Follows its current sub-configuration.
class AclConfigSm final : public Rok::StateMachine<AclConfigSm> {
 public:
  static constexpr std::string_view rokTypeName = "AclConfigSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"aclConfig", &AclConfigSm::aclConfig},
                      Rok::Argument{"classifierDir", &AclConfigSm::classifierDir}};
  }
  using AclSubConfigChild = Rok::Child<AclSubConfigSm>;

  static Rok::Ptr<AclConfigSm> AclConfigSmIs(const Rok::Ptr<Acl::AclConfig const>& aclConfig,
                                             const Rok::Ptr<Config::ClassifiersDir>& classifierDir);

  Rok::Ptr<Acl::AclConfig const> aclConfig() const { return aclConfig_.ptr(); }
  const Rok::Ptr<Config::ClassifiersDir>& classifierDir() const { return classifierDir_; }
  // Null until handleInitialized. Without a config it is there too, of the empty name and IPv4.
  const Rok::Ptr<AclNameAndType>& aclNameAndType() const { return aclNameAndType_; }
  // The default without a config, like the name.
  Acl::AclType type() const;
  Velmo::String aclName() const;

  const Rok::Ptr<AclSubConfigSm>& aclSubConfigSm() const { return aclSubConfigSm_.child(); }
  // Unlike a keyed collection, this never refuses another object: the ACL's sub-configuration may
  // be replaced at any time, and a new child starts with no values and replays all rules.
  Rok::Ptr<AclSubConfigSm> aclSubConfigSmIs(const Rok::Ptr<Acl::AclSubConfig const>& aclSubConfig,
                                            const Rok::Ptr<Config::ClassifiersDir>& classifierDir,
                                            const Rok::Ptr<AclNameAndType const>& aclNameAndType) {
    return aclSubConfigSm_.is(aclSubConfig, classifierDir, aclNameAndType);
  }
  // The child takes nothing back: the term keeps its conditions.
  Rok::Ptr<AclSubConfigSm> aclSubConfigSmDel() { return aclSubConfigSm_.del(); }

  // The sub-configuration came, went or was replaced.
  void handleAclSubConfig();
  // Resets the term's conditions; the term stays with its actions.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<AclConfigSm>;
  using RokAclConfig =
      Rok::Watch<AclConfigSm, Acl::AclConfig,
                 Rok::On<Acl::AclConfig::Attr::aclSubConfig, &AclConfigSm::handleAclSubConfig>>;

  AclConfigSm(const Rok::Ptr<Acl::AclConfig const>& aclConfig,
              const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
  auto parts() { return std::tie(aclConfig_, aclSubConfigSm_); }
  void makeNameAndType();

  RokAclConfig aclConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  Rok::Ptr<AclNameAndType> aclNameAndType_;
  AclSubConfigChild aclSubConfigSm_;
};
QOS_EXPORT std::ostream& operator<<(std::ostream& out, const AclConfigSm& sm);

// The ACLs of one family. Mirrors them and, at start, resets the conditions of terms that have lost
// their ACL.
class AclTypeSm final : public Rok::StateMachine<AclTypeSm> {
 public:
  static constexpr std::string_view rokTypeName = "AclTypeSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"aclTypeConfig", &AclTypeSm::aclTypeConfig},
                      Rok::Argument{"classifierDir", &AclTypeSm::classifierDir}};
  }
  using AclConfigSmKeyFunktor = Rok::KeyFunktor<&AclConfigSm::aclConfig, &Acl::AclConfig::name>;
  using AclConfigSms = Rok::Children<AclConfigSm, 0x5be0cd19u, AclConfigSmKeyFunktor>;

  static Rok::Ptr<AclTypeSm> AclTypeSmIs(
      const Rok::Ptr<Acl::Input::AclTypeConfig const>& aclTypeConfig,
      const Rok::Ptr<Config::ClassifiersDir>& classifierDir);

  Rok::Ptr<Acl::Input::AclTypeConfig const> aclTypeConfig() const { return aclTypeConfig_.ptr(); }
  const Rok::Ptr<Config::ClassifiersDir>& classifierDir() const { return classifierDir_; }
  // The default without a config.
  Acl::AclType type() const;

  const AclConfigSms& aclConfigSm() const { return aclConfigSm_; }
  Rok::Ptr<AclConfigSm> aclConfigSmIs(const Rok::Ptr<Acl::AclConfig const>& aclConfig,
                                      const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
    return aclConfigSm_.is(aclConfig, classifierDir);
  }
  void aclConfigSmDel(const Velmo::String& name) { aclConfigSm_.del(name); }
  void aclConfigSmDelAll() { aclConfigSm_.delAll(); }

  // An ACL came or went.
  void handleAclConfig(const Velmo::String& name);
  // Has each ACL's machine take back what it wrote; all of them stay.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<AclTypeSm>;
  using RokAclTypeConfig =
      Rok::Watch<AclTypeSm, Acl::Input::AclTypeConfig,
                 Rok::On<Acl::Input::AclTypeConfig::Attr::acl, &AclTypeSm::handleAclConfig>>;

  AclTypeSm(const Rok::Ptr<Acl::Input::AclTypeConfig const>& aclTypeConfig,
            const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
  auto parts() { return std::tie(aclTypeConfig_, aclConfigSm_); }
  void sweepStaleConditions();
  void sweepStaleConditions(const Config::Classifier& classifier);

  RokAclTypeConfig aclTypeConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  AclConfigSms aclConfigSm_;
};

// The root: the ACLs of both families. It watches nothing.
class AclKivToOcSm final : public Rok::StateMachine<AclKivToOcSm> {
 public:
  static constexpr std::string_view rokTypeName = "AclKivToOcSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"aclCliConfig", &AclKivToOcSm::aclCliConfig},
                      Rok::Argument{"classifierDir", &AclKivToOcSm::classifierDir}};
  }
  using AclTypeSmKeyFunktor =
      Rok::KeyFunktor<&AclTypeSm::aclTypeConfig, &Acl::Input::AclTypeConfig::type>;
  using AclTypeSms = Rok::Children<AclTypeSm, 0xcbbb9d5du, AclTypeSmKeyFunktor>;

  static Rok::Ptr<AclKivToOcSm> AclKivToOcSmIs(
      const Rok::Ptr<Acl::Input::Config const>& aclCliConfig,
      const Rok::Ptr<Config::ClassifiersDir>& classifierDir);

  const Rok::Ptr<Acl::Input::Config const>& aclCliConfig() const { return aclCliConfig_; }
  const Rok::Ptr<Config::ClassifiersDir>& classifierDir() const { return classifierDir_; }

  const AclTypeSms& aclTypeSm() const { return aclTypeSm_; }
  Rok::Ptr<AclTypeSm> aclTypeSmIs(const Rok::Ptr<Acl::Input::AclTypeConfig const>& aclTypeConfig,
                                  const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
    return aclTypeSm_.is(aclTypeConfig, classifierDir);
  }
  void aclTypeSmDel(Acl::AclType type) { aclTypeSm_.del(type); }
  void aclTypeSmDelAll() { aclTypeSm_.delAll(); }

  void handleInitialized();

 private:
  friend Rok::StateMachine<AclKivToOcSm>;

  AclKivToOcSm(const Rok::Ptr<Acl::Input::Config const>& aclCliConfig,
               const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
  auto parts() { return std::tie(aclTypeSm_); }

  Rok::Ptr<Acl::Input::Config const> aclCliConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  AclTypeSms aclTypeSm_;
};

// ===== Policy maps

class ClassActionSm;
class PmapConfigSm;

// One action of a class. Writes the term's target group, or blanks it.
class PolicyActionSm final : public Rok::StateMachine<PolicyActionSm> {
 public:
  static constexpr std::string_view rokTypeName = "PolicyActionSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"policyAction", &PolicyActionSm::policyAction},
                      Rok::Argument{"classifierName", &PolicyActionSm::classifierName},
                      Rok::Argument{"classifierType", &PolicyActionSm::classifierType},
                      Rok::Argument{"termId", &PolicyActionSm::termId},
                      Rok::Argument{"cliConfig", &PolicyActionSm::cliConfig},
                      Rok::Argument{"classifierDir", &PolicyActionSm::classifierDir},
                      Rok::Argument{"classActionSm", &PolicyActionSm::classActionSm}};
  }
  static Rok::Ptr<PolicyActionSm> PolicyActionSmIs(
      const Rok::Ptr<Qos::Action const>& policyAction, const Velmo::String& classifierName,
      Classifier::Type classifierType, const Velmo::String& termId,
      const Rok::Ptr<Qos::Input::Config const>& cliConfig,
      const Rok::Ptr<Config::ClassifiersDir>& classifierDir, ClassActionSm* classActionSm);

  Rok::Ptr<Qos::Action const> policyAction() const { return policyAction_.ptr(); }
  const Velmo::String& classifierName() const { return path_.classifierName(); }
  Classifier::Type classifierType() const { return classifierType_; }
  const Velmo::String& termId() const { return path_.termId(); }
  const Rok::Ptr<Qos::Input::Config const>& cliConfig() const { return cliConfig_; }
  const Rok::Ptr<Config::ClassifiersDir>& classifierDir() const { return classifierDir_; }
  ClassActionSm* classActionSm() const { return classActionSm_; }
  // The default without an action.
  Qos::ActionType actionType() const;

  // The traffic class changed.
  void handlePolicyActionValue();
  void addClassifierTermAction(const Velmo::String& targetGroup);
  // Blanks the action: the block stays, with an empty target group.
  void delClassifierTermAction();
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<PolicyActionSm>;
  using RokPolicyAction =
      Rok::Watch<PolicyActionSm, Qos::Action,
                 Rok::On<Qos::Action::Attr::value, &PolicyActionSm::handlePolicyActionValue>>;

  PolicyActionSm(const Rok::Ptr<Qos::Action const>& policyAction,
                 const Velmo::String& classifierName, Classifier::Type classifierType,
                 const Velmo::String& termId, const Rok::Ptr<Qos::Input::Config const>& cliConfig,
                 const Rok::Ptr<Config::ClassifiersDir>& classifierDir,
                 ClassActionSm* classActionSm);
  auto parts() { return std::tie(policyAction_); }

  RokPolicyAction policyAction_;
  TermPath path_;
  Classifier::Type classifierType_;
  Rok::Ptr<Qos::Input::Config const> cliConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  ClassActionSm* classActionSm_;
};

// One class of a policy map. Makes the term and follows the forwarding-group names. It has no
// doPrepareToDie: its term goes before it when the class goes, and stays as it is, target group and
// all, when the policy map goes.
class ClassActionSm final : public Rok::StateMachine<ClassActionSm> {
 public:
  static constexpr std::string_view rokTypeName = "ClassActionSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"classAction", &ClassActionSm::classAction},
                      Rok::Argument{"classifierName", &ClassActionSm::classifierName},
                      Rok::Argument{"classifierType", &ClassActionSm::classifierType},
                      Rok::Argument{"termId", &ClassActionSm::termId},
                      Rok::Argument{"cliConfig", &ClassActionSm::cliConfig},
                      Rok::Argument{"classifierDir", &ClassActionSm::classifierDir},
                      Rok::Argument{"pmapConfigSm", &ClassActionSm::pmapConfigSm}};
  }
  using PolicyActionSmKeyFunktor =
      Rok::KeyFunktor<&PolicyActionSm::policyAction, &Qos::Action::actionType>;
  using PolicyActionSms = Rok::Children<PolicyActionSm, 0x629a292au, PolicyActionSmKeyFunktor>;
  using NameToTcMap = Qos::ForwardingGroupNameToTcMap;

  static Rok::Ptr<ClassActionSm> ClassActionSmIs(
      const Rok::Ptr<Qos::ClassAction const>& classAction, const Velmo::String& classifierName,
      Classifier::Type classifierType, const Velmo::String& termId,
      const Rok::Ptr<Qos::Input::Config const>& cliConfig,
      const Rok::Ptr<Config::ClassifiersDir>& classifierDir, PmapConfigSm* pmapConfigSm);

  Rok::Ptr<Qos::ClassAction const> classAction() const { return classAction_.ptr(); }
  const Velmo::String& classifierName() const { return classifierName_; }
  Classifier::Type classifierType() const { return classifierType_; }
  const Velmo::String& termId() const { return termId_; }
  Rok::Ptr<Qos::Input::Config const> cliConfig() const { return cliConfig_.ptr(); }
  const Rok::Ptr<Config::ClassifiersDir>& classifierDir() const { return classifierDir_; }
  PmapConfigSm* pmapConfigSm() const { return pmapConfigSm_; }
  // Empty without a class.
  const Velmo::String& cmapName() const;

  const PolicyActionSms& policyActionSm() const { return policyActionSm_; }
  Rok::Ptr<PolicyActionSm> policyActionSmIs(const Rok::Ptr<Qos::Action const>& policyAction,
                                            const Velmo::String& classifierName,
                                            Classifier::Type classifierType,
                                            const Velmo::String& termId,
                                            const Rok::Ptr<Qos::Input::Config const>& cliConfig,
                                            const Rok::Ptr<Config::ClassifiersDir>& classifierDir,
                                            ClassActionSm* classActionSm) {
    return policyActionSm_.is(policyAction, classifierName, classifierType, termId, cliConfig,
                              classifierDir, classActionSm);
  }
  void policyActionSmDel(Qos::ActionType type) { policyActionSm_.del(type); }
  void policyActionSmDelAll() { policyActionSm_.delAll(); }

  // The chained input: the map that cliConfig() holds at the moment. Moving it calls no handler, so
  // a replaced map re-evaluates nothing until one of its entries changes.
  Rok::Ptr<NameToTcMap const> rok_CliConfig_ForwardingGroupNameToTcMapIn() const {
    return rok_CliConfig_ForwardingGroupNameToTcMapIn_.ptr();
  }
  void rok_CliConfig_ForwardingGroupNameToTcMapInIs(const Rok::Ptr<NameToTcMap const>& map) {
    rok_CliConfig_ForwardingGroupNameToTcMapIn_.inputIs(map);
  }
  void rok_CliConfig_ForwardingGroupNameToTcMapInDel() {
    rok_CliConfig_ForwardingGroupNameToTcMapIn_.inputDel();
  }

  // An action came or went.
  void handlePolicyAction(Qos::ActionType actionType);
  // A forwarding-group name came, changed or went.
  void handleForwardingGroupNameToTcMap();
  void handleInitialized();

 private:
  friend Rok::StateMachine<ClassActionSm>;
  void followForwardingGroupNameToTcMap();
  using RokClassAction =
      Rok::Watch<ClassActionSm, Qos::ClassAction,
                 Rok::On<Qos::ClassAction::Attr::policyAction, &ClassActionSm::handlePolicyAction>>;
  using RokCliConfig = Rok::Watch<ClassActionSm, Qos::Input::Config,
                                  Rok::On<Qos::Input::Config::Attr::forwardingGroupNameToTcMap,
                                          &ClassActionSm::followForwardingGroupNameToTcMap>>;
  using RokRok_CliConfig_ForwardingGroupNameToTcMapIn =
      Rok::Watch<ClassActionSm, NameToTcMap,
                 Rok::On<NameToTcMap::Attr::forwardingGroupNameToTc,
                         &ClassActionSm::handleForwardingGroupNameToTcMap>>;

  ClassActionSm(const Rok::Ptr<Qos::ClassAction const>& classAction,
                const Velmo::String& classifierName, Classifier::Type classifierType,
                const Velmo::String& termId, const Rok::Ptr<Qos::Input::Config const>& cliConfig,
                const Rok::Ptr<Config::ClassifiersDir>& classifierDir, PmapConfigSm* pmapConfigSm);
  auto parts() {
    return std::tie(classAction_, cliConfig_, rok_CliConfig_ForwardingGroupNameToTcMapIn_,
                    policyActionSm_);
  }
  const Rok::Ptr<Qos::Action>* setTcAction() const;
  void makePolicyActionSm(const Rok::Ptr<Qos::Action const>& action);

  RokClassAction classAction_;
  Velmo::String classifierName_;
  Classifier::Type classifierType_;
  Velmo::String termId_;
  RokCliConfig cliConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  PmapConfigSm* pmapConfigSm_;
  PolicyActionSms policyActionSm_;
  RokRok_CliConfig_ForwardingGroupNameToTcMapIn rok_CliConfig_ForwardingGroupNameToTcMapIn_;
};

// One policy map. Makes its classifiers, mirrors its classes and, at start, blanks the actions that
// no class claims.
class PmapConfigSm final : public Rok::StateMachine<PmapConfigSm> {
 public:
  static constexpr std::string_view rokTypeName = "PmapConfigSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"pmapConfig", &PmapConfigSm::pmapConfig},
                      Rok::Argument{"ipv4ClassifierName", &PmapConfigSm::ipv4ClassifierName},
                      Rok::Argument{"ipv6ClassifierName", &PmapConfigSm::ipv6ClassifierName},
                      Rok::Argument{"cliConfig", &PmapConfigSm::cliConfig},
                      Rok::Argument{"classifierDir", &PmapConfigSm::classifierDir}};
  }
  using ClassActionSmKeyFunktor =
      Rok::KeyFunktor<&ClassActionSm::classAction, &Qos::ClassAction::name>;
  using ClassActionSms = Rok::Children<ClassActionSm, 0x9159015au, ClassActionSmKeyFunktor>;

  static Rok::Ptr<PmapConfigSm> PmapConfigSmIs(
      const Rok::Ptr<Qos::PolicyMapConfig const>& pmapConfig,
      const Velmo::String& ipv4ClassifierName, const Velmo::String& ipv6ClassifierName,
      const Rok::Ptr<Qos::Input::Config const>& cliConfig,
      const Rok::Ptr<Config::ClassifiersDir>& classifierDir);

  Rok::Ptr<Qos::PolicyMapConfig const> pmapConfig() const { return pmapConfig_.ptr(); }
  const Velmo::String& ipv4ClassifierName() const { return ipv4ClassifierName_; }
  const Velmo::String& ipv6ClassifierName() const { return ipv6ClassifierName_; }
  const Rok::Ptr<Qos::Input::Config const>& cliConfig() const { return cliConfig_; }
  const Rok::Ptr<Config::ClassifiersDir>& classifierDir() const { return classifierDir_; }
  // Empty without a config.
  const Velmo::String& pmapName() const;

  const ClassActionSms& classActionSm() const { return classActionSm_; }
  Rok::Ptr<ClassActionSm> classActionSmIs(const Rok::Ptr<Qos::ClassAction const>& classAction,
                                          const Velmo::String& classifierName,
                                          Classifier::Type classifierType,
                                          const Velmo::String& termId,
                                          const Rok::Ptr<Qos::Input::Config const>& cliConfig,
                                          const Rok::Ptr<Config::ClassifiersDir>& classifierDir,
                                          PmapConfigSm* pmapConfigSm) {
    return classActionSm_.is(classAction, classifierName, classifierType, termId, cliConfig,
                             classifierDir, pmapConfigSm);
  }
  void classActionSmDel(const Velmo::String& cmapName) { classActionSm_.del(cmapName); }
  void classActionSmDelAll() { classActionSm_.delAll(); }

  // A class came or went.
  void handleClassAction(const Velmo::String& cmapName);
  // Releases the classes. Classifiers and terms stay as they are, with their target groups.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<PmapConfigSm>;
  using RokPmapConfig = Rok::Watch<
      PmapConfigSm, Qos::PolicyMapConfig,
      Rok::On<Qos::PolicyMapConfig::Attr::classAction, &PmapConfigSm::handleClassAction>>;
  // Classifier name to term id to target group: what the classes of the policy map want.
  using Desired = std::map<Velmo::String, std::map<Velmo::String, Velmo::String>>;

  PmapConfigSm(const Rok::Ptr<Qos::PolicyMapConfig const>& pmapConfig,
               const Velmo::String& ipv4ClassifierName, const Velmo::String& ipv6ClassifierName,
               const Rok::Ptr<Qos::Input::Config const>& cliConfig,
               const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
  auto parts() { return std::tie(pmapConfig_, classActionSm_); }
  void makeClassifier(const Velmo::String& name, Classifier::Type type);
  void deleteTermOf(const Velmo::String& cmapName, const Velmo::String& classifierName,
                    const Velmo::String& termId);
  Desired mirrorClasses();
  void sweepStaleActions(const Desired& desired);
  void sweepStaleActions(const Desired& desired, const Velmo::String& classifierName);

  RokPmapConfig pmapConfig_;
  Velmo::String ipv4ClassifierName_;
  Velmo::String ipv6ClassifierName_;
  Rok::Ptr<Qos::Input::Config const> cliConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  ClassActionSms classActionSm_;
};

// The policy maps of one map type.
class PmapTypeSm final : public Rok::StateMachine<PmapTypeSm> {
 public:
  static constexpr std::string_view rokTypeName = "PmapTypeSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"pmapTypeConfig", &PmapTypeSm::pmapTypeConfig},
                      Rok::Argument{"cliConfig", &PmapTypeSm::cliConfig},
                      Rok::Argument{"classifierDir", &PmapTypeSm::classifierDir}};
  }
  using PmapConfigSmKeyFunktor =
      Rok::KeyFunktor<&PmapConfigSm::pmapConfig, &Qos::PolicyMapConfig::name>;
  using PmapConfigSms = Rok::Children<PmapConfigSm, 0x152fecd8u, PmapConfigSmKeyFunktor>;

  static Rok::Ptr<PmapTypeSm> PmapTypeSmIs(
      const Rok::Ptr<Qos::Input::PolicyMapTypeConfig const>& pmapTypeConfig,
      const Rok::Ptr<Qos::Input::Config const>& cliConfig,
      const Rok::Ptr<Config::ClassifiersDir>& classifierDir);

  Rok::Ptr<Qos::Input::PolicyMapTypeConfig const> pmapTypeConfig() const {
    return pmapTypeConfig_.ptr();
  }
  const Rok::Ptr<Qos::Input::Config const>& cliConfig() const { return cliConfig_; }
  const Rok::Ptr<Config::ClassifiersDir>& classifierDir() const { return classifierDir_; }
  // The default without a config.
  Qos::MapType pmapType() const;

  const PmapConfigSms& pmapConfigSm() const { return pmapConfigSm_; }
  Rok::Ptr<PmapConfigSm> pmapConfigSmIs(const Rok::Ptr<Qos::PolicyMapConfig const>& pmapConfig,
                                        const Velmo::String& ipv4ClassifierName,
                                        const Velmo::String& ipv6ClassifierName,
                                        const Rok::Ptr<Qos::Input::Config const>& cliConfig,
                                        const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
    return pmapConfigSm_.is(pmapConfig, ipv4ClassifierName, ipv6ClassifierName, cliConfig,
                            classifierDir);
  }
  void pmapConfigSmDel(const Velmo::String& pmapName) { pmapConfigSm_.del(pmapName); }
  void pmapConfigSmDelAll() { pmapConfigSm_.delAll(); }

  // A policy map came or went.
  void handlePmapConfig(const Velmo::String& pmapName);
  // Withdraws and releases every policy map's machine.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<PmapTypeSm>;
  using RokPmapTypeConfig = Rok::Watch<
      PmapTypeSm, Qos::Input::PolicyMapTypeConfig,
      Rok::On<Qos::Input::PolicyMapTypeConfig::Attr::pmap, &PmapTypeSm::handlePmapConfig>>;

  PmapTypeSm(const Rok::Ptr<Qos::Input::PolicyMapTypeConfig const>& pmapTypeConfig,
             const Rok::Ptr<Qos::Input::Config const>& cliConfig,
             const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
  auto parts() { return std::tie(pmapTypeConfig_, pmapConfigSm_); }

  RokPmapTypeConfig pmapTypeConfig_;
  Rok::Ptr<Qos::Input::Config const> cliConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  PmapConfigSms pmapConfigSm_;
};

// The root: the policy maps of the one map type that is translated. Unlike the class maps' root it
// follows its input.
class ClassActionKivToOcSm final : public Rok::StateMachine<ClassActionKivToOcSm> {
 public:
  static constexpr std::string_view rokTypeName = "ClassActionKivToOcSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"qosAclConfig", &ClassActionKivToOcSm::qosAclConfig},
                      Rok::Argument{"cliConfig", &ClassActionKivToOcSm::cliConfig},
                      Rok::Argument{"classifierDir", &ClassActionKivToOcSm::classifierDir}};
  }
  using PmapTypeSmKeyFunktor =
      Rok::KeyFunktor<&PmapTypeSm::pmapTypeConfig, &Qos::Input::PolicyMapTypeConfig::type>;
  using PmapTypeSms = Rok::Children<PmapTypeSm, 0x67332667u, PmapTypeSmKeyFunktor>;

  static Rok::Ptr<ClassActionKivToOcSm> ClassActionKivToOcSmIs(
      const Rok::Ptr<Qos::Input::AclConfig const>& qosAclConfig,
      const Rok::Ptr<Qos::Input::Config const>& cliConfig,
      const Rok::Ptr<Config::ClassifiersDir>& classifierDir);

  Rok::Ptr<Qos::Input::AclConfig const> qosAclConfig() const { return qosAclConfig_.ptr(); }
  const Rok::Ptr<Qos::Input::Config const>& cliConfig() const { return cliConfig_; }
  const Rok::Ptr<Config::ClassifiersDir>& classifierDir() const { return classifierDir_; }
  static constexpr Qos::MapType mapType() { return Qos::mapQos; }

  const PmapTypeSms& pmapTypeSm() const { return pmapTypeSm_; }
  Rok::Ptr<PmapTypeSm> pmapTypeSmIs(
      const Rok::Ptr<Qos::Input::PolicyMapTypeConfig const>& pmapTypeConfig,
      const Rok::Ptr<Qos::Input::Config const>& cliConfig,
      const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
    return pmapTypeSm_.is(pmapTypeConfig, cliConfig, classifierDir);
  }
  void pmapTypeSmDel(Qos::MapType mapType) { pmapTypeSm_.del(mapType); }
  void pmapTypeSmDelAll() { pmapTypeSm_.delAll(); }

  // The policy maps of a map type came or went.
  void handlePmapTypeConfig(Qos::MapType mapType);
  void handleInitialized();

 private:
  friend Rok::StateMachine<ClassActionKivToOcSm>;
  using RokQosAclConfig = Rok::Watch<
      ClassActionKivToOcSm, Qos::Input::AclConfig,
      Rok::On<Qos::Input::AclConfig::Attr::pmapType, &ClassActionKivToOcSm::handlePmapTypeConfig>>;

  ClassActionKivToOcSm(const Rok::Ptr<Qos::Input::AclConfig const>& qosAclConfig,
                       const Rok::Ptr<Qos::Input::Config const>& cliConfig,
                       const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
  auto parts() { return std::tie(qosAclConfig_, pmapTypeSm_); }

  RokQosAclConfig qosAclConfig_;
  Rok::Ptr<Qos::Input::Config const> cliConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  PmapTypeSms pmapTypeSm_;
};

// ===== Factories. Each returns when its whole tree is built and the output is in line.
//
// The argument named after "Deaf without" may be null: the machine then does nothing, for good,
// except that an AclConfigSm has its AclNameAndType all the same. What is required must be there.

// Deaf without qosAclConfig. Requires: classifierDir.
// Throws: MutatorArgNullPointerException "cmapTypeConfig" when there is no mapQos entry.
QOS_EXPORT Rok::Ptr<ClassMapKivToOcSm> classMapKivToOcSmFactory(
    const Rok::Ptr<Qos::Input::AclConfig const>& qosAclConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
// Deaf without cmapTypeConfig. Requires: classifierDir.
QOS_EXPORT Rok::Ptr<ClassMapTypeSm> classMapTypeSmFactory(
    const Rok::Ptr<Qos::Input::ClassMapTypeConfig const>& cmapTypeConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
// Deaf without cmapConfig. Requires: classifierDir.
QOS_EXPORT Rok::Ptr<ClassMapSm> classMapSmFactory(
    const Rok::Ptr<Qos::ClassMapConfig const>& cmapConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir);

// Deaf without aclCliConfig. Requires: classifierDir.
// Throws: MutatorArgNullPointerException "aclTypeConfig" when a family is missing.
QOS_EXPORT Rok::Ptr<AclKivToOcSm> aclKivToOcSmFactory(
    const Rok::Ptr<Acl::Input::Config const>& aclCliConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
// Deaf without aclTypeConfig. Requires: classifierDir.
QOS_EXPORT Rok::Ptr<AclTypeSm> aclTypeSmFactory(
    const Rok::Ptr<Acl::Input::AclTypeConfig const>& aclTypeConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
// Deaf without aclConfig. Requires: classifierDir.
QOS_EXPORT Rok::Ptr<AclConfigSm> aclConfigSmFactory(
    const Rok::Ptr<Acl::AclConfig const>& aclConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
// Deaf without aclSubConfig. Requires: classifierDir, aclNameAndType.
QOS_EXPORT Rok::Ptr<AclSubConfigSm> aclSubConfigSmFactory(
    const Rok::Ptr<Acl::AclSubConfig const>& aclSubConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir,
    const Rok::Ptr<AclNameAndType const>& aclNameAndType);

// Deaf without qosAclConfig. Requires: cliConfig, classifierDir.
// Throws: MutatorArgNullPointerException "forwardingGroupNameToTcMap" when the names of forwarding
// groups are not mounted in cliConfig; nothing is written then.
QOS_EXPORT Rok::Ptr<ClassActionKivToOcSm> classActionKivToOcSmFactory(
    const Rok::Ptr<Qos::Input::AclConfig const>& qosAclConfig,
    const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
// Deaf without pmapTypeConfig. Requires: cliConfig with its forwardingGroupNameToTcMap,
// classifierDir.
QOS_EXPORT Rok::Ptr<PmapTypeSm> pmapTypeSmFactory(
    const Rok::Ptr<Qos::Input::PolicyMapTypeConfig const>& pmapTypeConfig,
    const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
// Deaf without pmapConfig. Requires: cliConfig with its forwardingGroupNameToTcMap, classifierDir.
QOS_EXPORT Rok::Ptr<PmapConfigSm> pmapConfigSmFactory(
    const Rok::Ptr<Qos::PolicyMapConfig const>& pmapConfig, const Velmo::String& ipv4ClassifierName,
    const Velmo::String& ipv6ClassifierName, const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
// Deaf without classAction. Requires: classifierDir; in cliConfig, where there is one, its
// forwardingGroupNameToTcMap; and that pmapConfigSm, if there is one, outlives the machine. Without
// cliConfig the chained input is null.
// Throws: MutatorArgNullPointerException "cliConfig" for a class that sets a traffic class, when
// cliConfig is null.
QOS_EXPORT Rok::Ptr<ClassActionSm> classActionSmFactory(
    const Rok::Ptr<Qos::ClassAction const>& classAction, const Velmo::String& classifierName,
    Classifier::Type classifierType, const Velmo::String& termId,
    const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir, PmapConfigSm* pmapConfigSm);
// Deaf without policyAction. Requires: cliConfig with its forwardingGroupNameToTcMap,
// classifierDir, and that classActionSm, if there is one, outlives the machine.
QOS_EXPORT Rok::Ptr<PolicyActionSm> policyActionSmFactory(
    const Rok::Ptr<Qos::Action const>& policyAction, const Velmo::String& classifierName,
    Classifier::Type classifierType, const Velmo::String& termId,
    const Rok::Ptr<Qos::Input::Config const>& cliConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir, ClassActionSm* classActionSm);

}  // namespace QosOc
