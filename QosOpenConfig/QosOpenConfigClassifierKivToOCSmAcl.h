// ACLs: they give the terms their conditions.
#pragma once

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmTerms.h"
#include "Rok/Rok.h"
#include "models/native/Acl.h"
#include "models/openconfig/Classifier.h"

namespace QosOc {

// What a sub-configuration doesn't hold of its ACL.
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
class QOS_EXPORT AclSubConfigSm final : public Rok::StateMachine<AclSubConfigSm> {
 public:
  static constexpr std::string_view rokTypeName = "AclSubConfigSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"aclSubConfig", &Self::aclSubConfig},
                      Rok::Argument{"classifierDir", &Self::classifierDir},
                      Rok::Argument{"aclNameAndType", &Self::aclNameAndType}};
  }
  static auto AclSubConfigSmIs(const auto&... arguments) { return create(arguments...); }

  Rok::Ptr<Acl::AclSubConfig const> aclSubConfig() const { return aclSubConfig_.ptr(); }
  Rok::Out<Config::ClassifiersDir> classifierDir() const { return classifierDir_; }
  Rok::In<AclNameAndType> aclNameAndType() const { return aclNameAndType_; }

  // Every DSCP that a rule of this machine ever matched, in order of arrival, repeats included. It
  // only grows: a rule that goes or changes leaves its earlier value, since the native side
  // replaces the sub-configuration when the values are to start over.
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
  // The family of the classifiers of an ACL: any type but IPv4 counts as IPv6.
  Classifier::Type classifierTypeFromAclType(Acl::AclType aclType) const;
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using RokAclSubConfig =
      Rok::Watch<Self, Acl::AclSubConfig,
                 Rok::On<Acl::AclSubConfig::Attr::ruleBySequence, &Self::handleRuleBySequence>>;

  AclSubConfigSm(Rok::In<Acl::AclSubConfig> aclSubConfig,
                 Rok::Out<Config::ClassifiersDir> classifierDir,
                 Rok::In<AclNameAndType> aclNameAndType);
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
class QOS_EXPORT AclConfigSm final : public Rok::StateMachine<AclConfigSm> {
 public:
  static constexpr std::string_view rokTypeName = "AclConfigSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"aclConfig", &Self::aclConfig},
                      Rok::Argument{"classifierDir", &Self::classifierDir}};
  }
  using AclSubConfigChild = Rok::Child<AclSubConfigSm>;

  static auto AclConfigSmIs(const auto&... arguments) { return create(arguments...); }

  Rok::Ptr<Acl::AclConfig const> aclConfig() const { return aclConfig_.ptr(); }
  Rok::Out<Config::ClassifiersDir> classifierDir() const { return classifierDir_; }
  // Null until handleInitialized. Without a config it is there too, of the empty name and IPv4.
  const Rok::Ptr<AclNameAndType>& aclNameAndType() const { return aclNameAndType_; }
  // The default without a config, like the name.
  Acl::AclType type() const { return aclConfig_.read(&Acl::AclConfig::type); }
  Velmo::String aclName() const { return aclConfig_.read(&Acl::AclConfig::name); }

  const Rok::Ptr<AclSubConfigSm>& aclSubConfigSm() const { return aclSubConfigSm_.child(); }
  // Unlike a keyed collection, this never refuses another object: the ACL's sub-configuration may
  // be replaced at any time, and a new child starts with no values and replays all rules.
  auto aclSubConfigSmIs(const auto&... arguments) { return aclSubConfigSm_.is(arguments...); }
  // The child takes nothing back: the term keeps its conditions.
  Rok::Ptr<AclSubConfigSm> aclSubConfigSmDel() { return aclSubConfigSm_.del(); }

  // The sub-configuration came, went or was replaced.
  void handleAclSubConfig();
  // Resets the term's conditions; the term stays with its actions.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using RokAclConfig =
      Rok::Watch<Self, Acl::AclConfig,
                 Rok::On<Acl::AclConfig::Attr::aclSubConfig, &Self::handleAclSubConfig>>;

  AclConfigSm(Rok::In<Acl::AclConfig> aclConfig, Rok::Out<Config::ClassifiersDir> classifierDir);
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
class QOS_EXPORT AclTypeSm final : public Rok::StateMachine<AclTypeSm> {
 public:
  static constexpr std::string_view rokTypeName = "AclTypeSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"aclTypeConfig", &Self::aclTypeConfig},
                      Rok::Argument{"classifierDir", &Self::classifierDir}};
  }
  using AclConfigSmKeyFunktor = Rok::KeyFunktor<&AclConfigSm::aclConfig, &Acl::AclConfig::name>;
  using AclConfigSms = Rok::Children<AclConfigSm, 0x5be0cd19u, AclConfigSmKeyFunktor>;

  static auto AclTypeSmIs(const auto&... arguments) { return create(arguments...); }

  Rok::Ptr<Acl::Input::AclTypeConfig const> aclTypeConfig() const { return aclTypeConfig_.ptr(); }
  Rok::Out<Config::ClassifiersDir> classifierDir() const { return classifierDir_; }
  // The default without a config.
  Acl::AclType type() const { return aclTypeConfig_.read(&Acl::Input::AclTypeConfig::type); }

  const AclConfigSms& aclConfigSm() const { return aclConfigSm_; }
  auto aclConfigSmIs(const auto&... arguments) { return aclConfigSm_.is(arguments...); }
  void aclConfigSmDel(const Velmo::String& name) { aclConfigSm_.del(name); }
  void aclConfigSmDelAll() { aclConfigSm_.delAll(); }

  // An ACL came or went.
  void handleAclConfig(const Velmo::String& name);
  // Has each ACL's machine take back what it wrote; all of them stay.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using RokAclTypeConfig =
      Rok::Watch<Self, Acl::Input::AclTypeConfig,
                 Rok::On<Acl::Input::AclTypeConfig::Attr::acl, &Self::handleAclConfig>>;

  AclTypeSm(Rok::In<Acl::Input::AclTypeConfig> aclTypeConfig,
            Rok::Out<Config::ClassifiersDir> classifierDir);
  auto parts() { return std::tie(aclTypeConfig_, aclConfigSm_); }
  void sweepStaleConditions();
  void sweepStaleConditions(const Config::Classifier& classifier);

  RokAclTypeConfig aclTypeConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  AclConfigSms aclConfigSm_;
};

// The root: the ACLs of both families. It watches nothing.
class QOS_EXPORT AclKivToOcSm final : public Rok::StateMachine<AclKivToOcSm> {
 public:
  static constexpr std::string_view rokTypeName = "AclKivToOcSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"aclCliConfig", &Self::aclCliConfig},
                      Rok::Argument{"classifierDir", &Self::classifierDir}};
  }
  using AclTypeSmKeyFunktor =
      Rok::KeyFunktor<&AclTypeSm::aclTypeConfig, &Acl::Input::AclTypeConfig::type>;
  using AclTypeSms = Rok::Children<AclTypeSm, 0xcbbb9d5du, AclTypeSmKeyFunktor>;

  static auto AclKivToOcSmIs(const auto&... arguments) { return create(arguments...); }

  Rok::In<Acl::Input::Config> aclCliConfig() const { return aclCliConfig_; }
  Rok::Out<Config::ClassifiersDir> classifierDir() const { return classifierDir_; }

  const AclTypeSms& aclTypeSm() const { return aclTypeSm_; }
  auto aclTypeSmIs(const auto&... arguments) { return aclTypeSm_.is(arguments...); }
  void aclTypeSmDel(Acl::AclType type) { aclTypeSm_.del(type); }
  void aclTypeSmDelAll() { aclTypeSm_.delAll(); }

  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;

  AclKivToOcSm(Rok::In<Acl::Input::Config> aclCliConfig,
               Rok::Out<Config::ClassifiersDir> classifierDir);
  auto parts() { return std::tie(aclTypeSm_); }

  Rok::Ptr<Acl::Input::Config const> aclCliConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  AclTypeSms aclTypeSm_;
};

// Deaf without aclCliConfig. Requires: classifierDir.
// Throws: MutatorArgNullPointerException "aclTypeConfig" when a family is missing.
QOS_EXPORT Rok::Factory<AclKivToOcSm> aclKivToOcSmFactory;
// Deaf without aclTypeConfig. Requires: classifierDir.
QOS_EXPORT Rok::Factory<AclTypeSm> aclTypeSmFactory;
// Deaf without aclConfig, and has its AclNameAndType even then. Requires: classifierDir.
QOS_EXPORT Rok::Factory<AclConfigSm> aclConfigSmFactory;
// Deaf without aclSubConfig. Requires: classifierDir, aclNameAndType.
QOS_EXPORT Rok::Factory<AclSubConfigSm> aclSubConfigSmFactory;

}  // namespace QosOc
