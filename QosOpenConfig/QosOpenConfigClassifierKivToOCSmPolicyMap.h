// Policy maps: they give the terms their actions.
#pragma once

#include <map>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmTerms.h"
#include "Rok/Rok.h"
#include "models/native/AclConfig.h"
#include "models/native/QosInput.h"
#include "models/openconfig/Classifier.h"

namespace QosOc {

class ClassActionSm;
class PmapConfigSm;

// One action of a class. Writes the term's target group, or blanks it.
class QOS_EXPORT PolicyActionSm final : public Rok::StateMachine<PolicyActionSm> {
 public:
  static constexpr std::string_view rokTypeName = "PolicyActionSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"policyAction", &Self::policyAction},
                      Rok::Argument{"classifierName", &Self::classifierName},
                      Rok::Argument{"classifierType", &Self::classifierType},
                      Rok::Argument{"termId", &Self::termId},
                      Rok::Argument{"cliConfig", &Self::cliConfig},
                      Rok::Argument{"classifierDir", &Self::classifierDir},
                      Rok::Argument{"classActionSm", &Self::classActionSm}};
  }
  static auto PolicyActionSmIs(const auto&... arguments) { return create(arguments...); }

  Rok::Ptr<Qos::Action const> policyAction() const { return policyAction_.ptr(); }
  const Velmo::String& classifierName() const { return path_.classifierName(); }
  Classifier::Type classifierType() const { return classifierType_; }
  const Velmo::String& termId() const { return path_.termId(); }
  Rok::In<Qos::Input::Config> cliConfig() const { return cliConfig_; }
  Rok::Out<Config::ClassifiersDir> classifierDir() const { return classifierDir_; }
  ClassActionSm* classActionSm() const { return classActionSm_; }
  // The default without an action.
  Qos::ActionType actionType() const { return policyAction_.read(&Qos::Action::actionType); }

  // The traffic class changed.
  void handlePolicyActionValue();
  // Writes the action, and makes the classifier and the term where they are missing.
  void addClassifierTermAction(const Velmo::String& targetGroup);
  // Blanks the action: the block stays, with an empty target group.
  void delClassifierTermAction();
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using RokPolicyAction =
      Rok::Watch<Self, Qos::Action,
                 Rok::On<Qos::Action::Attr::value, &Self::handlePolicyActionValue>>;

  PolicyActionSm(Rok::In<Qos::Action> policyAction, const Velmo::String& classifierName,
                 Classifier::Type classifierType, const Velmo::String& termId,
                 Rok::In<Qos::Input::Config> cliConfig,
                 Rok::Out<Config::ClassifiersDir> classifierDir, ClassActionSm* classActionSm);
  auto parts() { return std::tie(policyAction_); }

  RokPolicyAction policyAction_;
  TermPath path_;
  Classifier::Type classifierType_;
  Rok::Ptr<Qos::Input::Config const> cliConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  ClassActionSm* classActionSm_;
};

// One class of a policy map. Makes the term and follows the forwarding-group names. It has no
// doPrepareToDie: its term goes before it when the class goes, and stays as it is, target group
// included, when the policy map goes.
class QOS_EXPORT ClassActionSm final : public Rok::StateMachine<ClassActionSm> {
 public:
  static constexpr std::string_view rokTypeName = "ClassActionSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"classAction", &Self::classAction},
                      Rok::Argument{"classifierName", &Self::classifierName},
                      Rok::Argument{"classifierType", &Self::classifierType},
                      Rok::Argument{"termId", &Self::termId},
                      Rok::Argument{"cliConfig", &Self::cliConfig},
                      Rok::Argument{"classifierDir", &Self::classifierDir},
                      Rok::Argument{"pmapConfigSm", &Self::pmapConfigSm}};
  }
  using PolicyActionSmKeyFunktor =
      Rok::KeyFunktor<&PolicyActionSm::policyAction, &Qos::Action::actionType>;
  using PolicyActionSms = Rok::Children<PolicyActionSm, 0x629a292au, PolicyActionSmKeyFunktor>;
  using NameToTcMap = Qos::ForwardingGroupNameToTcMap;

  static auto ClassActionSmIs(const auto&... arguments) { return create(arguments...); }

  Rok::Ptr<Qos::ClassAction const> classAction() const { return classAction_.ptr(); }
  const Velmo::String& classifierName() const { return classifierName_; }
  Classifier::Type classifierType() const { return classifierType_; }
  const Velmo::String& termId() const { return termId_; }
  Rok::Ptr<Qos::Input::Config const> cliConfig() const { return cliConfig_.ptr(); }
  Rok::Out<Config::ClassifiersDir> classifierDir() const { return classifierDir_; }
  PmapConfigSm* pmapConfigSm() const { return pmapConfigSm_; }
  // Empty without a class.
  Velmo::String cmapName() const { return classAction_.read(&Qos::ClassAction::name); }

  const PolicyActionSms& policyActionSm() const { return policyActionSm_; }
  auto policyActionSmIs(const auto&... arguments) { return policyActionSm_.is(arguments...); }
  void policyActionSmDel(Qos::ActionType type) { policyActionSm_.del(type); }
  void policyActionSmDelAll() { policyActionSm_.delAll(); }

  // The chained input: the map that cliConfig() holds at the moment. Moving it calls no handler, so
  // a replaced map re-evaluates nothing until one of its entries changes.
  auto rok_CliConfig_ForwardingGroupNameToTcMapIn() const { return nameToTcMapIn_.ptr(); }
  void rok_CliConfig_ForwardingGroupNameToTcMapInIs(Rok::In<NameToTcMap> map) {
    nameToTcMapIn_.inputIs(map);
  }
  void rok_CliConfig_ForwardingGroupNameToTcMapInDel() { nameToTcMapIn_.inputDel(); }

  // An action came or went.
  void handlePolicyAction(Qos::ActionType actionType);
  // A forwarding-group name came, changed or went.
  void handleForwardingGroupNameToTcMap();
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  void followForwardingGroupNameToTcMap() { nameToTcMapIn_.follow(*this); }
  using RokClassAction =
      Rok::Watch<Self, Qos::ClassAction,
                 Rok::On<Qos::ClassAction::Attr::policyAction, &Self::handlePolicyAction>>;
  using RokCliConfig = Rok::Watch<Self, Qos::Input::Config,
                                  Rok::On<Qos::Input::Config::Attr::forwardingGroupNameToTcMap,
                                          &Self::followForwardingGroupNameToTcMap>>;

  ClassActionSm(Rok::In<Qos::ClassAction> classAction, const Velmo::String& classifierName,
                Classifier::Type classifierType, const Velmo::String& termId,
                Rok::In<Qos::Input::Config> cliConfig,
                Rok::Out<Config::ClassifiersDir> classifierDir, PmapConfigSm* pmapConfigSm);
  auto parts() { return std::tie(classAction_, cliConfig_, nameToTcMapIn_, policyActionSm_); }
  const Rok::Ptr<Qos::Action>* setTcAction() const;

  RokClassAction classAction_;
  Velmo::String classifierName_;
  Classifier::Type classifierType_;
  Velmo::String termId_;
  RokCliConfig cliConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  PmapConfigSm* pmapConfigSm_;
  PolicyActionSms policyActionSm_;
  using RokNameToTcMapIn = Rok::ChainedWatch<
      Self, &Self::cliConfig_, &Qos::Input::Config::forwardingGroupNameToTcMap,
      Rok::On<NameToTcMap::Attr::forwardingGroupNameToTc, &Self::handleForwardingGroupNameToTcMap>>;
  RokNameToTcMapIn nameToTcMapIn_;
};

// One policy map. Makes its classifiers, mirrors its classes and, at start, blanks the actions that
// no class claims.
class QOS_EXPORT PmapConfigSm final : public Rok::StateMachine<PmapConfigSm> {
 public:
  static constexpr std::string_view rokTypeName = "PmapConfigSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"pmapConfig", &Self::pmapConfig},
                      Rok::Argument{"ipv4ClassifierName", &Self::ipv4ClassifierName},
                      Rok::Argument{"ipv6ClassifierName", &Self::ipv6ClassifierName},
                      Rok::Argument{"cliConfig", &Self::cliConfig},
                      Rok::Argument{"classifierDir", &Self::classifierDir}};
  }
  using ClassActionSmKeyFunktor =
      Rok::KeyFunktor<&ClassActionSm::classAction, &Qos::ClassAction::name>;
  using ClassActionSms = Rok::Children<ClassActionSm, 0x9159015au, ClassActionSmKeyFunktor>;

  static auto PmapConfigSmIs(const auto&... arguments) { return create(arguments...); }

  Rok::Ptr<Qos::PolicyMapConfig const> pmapConfig() const { return pmapConfig_.ptr(); }
  const Velmo::String& ipv4ClassifierName() const { return ipv4ClassifierName_; }
  const Velmo::String& ipv6ClassifierName() const { return ipv6ClassifierName_; }
  Rok::In<Qos::Input::Config> cliConfig() const { return cliConfig_; }
  Rok::Out<Config::ClassifiersDir> classifierDir() const { return classifierDir_; }
  // Empty without a config.
  Velmo::String pmapName() const { return pmapConfig_.read(&Qos::PolicyMapConfig::name); }

  const ClassActionSms& classActionSm() const { return classActionSm_; }
  auto classActionSmIs(const auto&... arguments) { return classActionSm_.is(arguments...); }
  void classActionSmDel(const Velmo::String& cmapName) { classActionSm_.del(cmapName); }
  void classActionSmDelAll() { classActionSm_.delAll(); }

  // A class came or went.
  void handleClassAction(const Velmo::String& cmapName);
  // Releases the classes. Classifiers and terms stay as they are, with their target groups.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using RokPmapConfig =
      Rok::Watch<Self, Qos::PolicyMapConfig,
                 Rok::On<Qos::PolicyMapConfig::Attr::classAction, &Self::handleClassAction>>;
  // Classifier name to term id to target group: what the classes of the policy map set.
  using Desired = std::map<Velmo::String, std::map<Velmo::String, Velmo::String>>;

  PmapConfigSm(Rok::In<Qos::PolicyMapConfig> pmapConfig, const Velmo::String& ipv4ClassifierName,
               const Velmo::String& ipv6ClassifierName, Rok::In<Qos::Input::Config> cliConfig,
               Rok::Out<Config::ClassifiersDir> classifierDir);
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
class QOS_EXPORT PmapTypeSm final : public Rok::StateMachine<PmapTypeSm> {
 public:
  static constexpr std::string_view rokTypeName = "PmapTypeSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"pmapTypeConfig", &Self::pmapTypeConfig},
                      Rok::Argument{"cliConfig", &Self::cliConfig},
                      Rok::Argument{"classifierDir", &Self::classifierDir}};
  }
  using PmapConfigSmKeyFunktor =
      Rok::KeyFunktor<&PmapConfigSm::pmapConfig, &Qos::PolicyMapConfig::name>;
  using PmapConfigSms = Rok::Children<PmapConfigSm, 0x152fecd8u, PmapConfigSmKeyFunktor>;

  static auto PmapTypeSmIs(const auto&... arguments) { return create(arguments...); }

  Rok::Ptr<Qos::Input::PolicyMapTypeConfig const> pmapTypeConfig() const {
    return pmapTypeConfig_.ptr();
  }
  Rok::In<Qos::Input::Config> cliConfig() const { return cliConfig_; }
  Rok::Out<Config::ClassifiersDir> classifierDir() const { return classifierDir_; }
  // The default without a config.
  Qos::MapType pmapType() const {
    return pmapTypeConfig_.read(&Qos::Input::PolicyMapTypeConfig::type);
  }

  const PmapConfigSms& pmapConfigSm() const { return pmapConfigSm_; }
  auto pmapConfigSmIs(const auto&... arguments) { return pmapConfigSm_.is(arguments...); }
  void pmapConfigSmDel(const Velmo::String& pmapName) { pmapConfigSm_.del(pmapName); }
  void pmapConfigSmDelAll() { pmapConfigSm_.delAll(); }

  // A policy map came or went.
  void handlePmapConfig(const Velmo::String& pmapName);
  // Withdraws and releases every policy map's machine.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using RokPmapTypeConfig =
      Rok::Watch<Self, Qos::Input::PolicyMapTypeConfig,
                 Rok::On<Qos::Input::PolicyMapTypeConfig::Attr::pmap, &Self::handlePmapConfig>>;

  PmapTypeSm(Rok::In<Qos::Input::PolicyMapTypeConfig> pmapTypeConfig,
             Rok::In<Qos::Input::Config> cliConfig, Rok::Out<Config::ClassifiersDir> classifierDir);
  auto parts() { return std::tie(pmapTypeConfig_, pmapConfigSm_); }

  RokPmapTypeConfig pmapTypeConfig_;
  Rok::Ptr<Qos::Input::Config const> cliConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  PmapConfigSms pmapConfigSm_;
};

// The root: the policy maps of the one map type that is translated. Unlike the class maps' root it
// follows its input.
class QOS_EXPORT ClassActionKivToOcSm final : public Rok::StateMachine<ClassActionKivToOcSm> {
 public:
  static constexpr std::string_view rokTypeName = "ClassActionKivToOcSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"qosAclConfig", &Self::qosAclConfig},
                      Rok::Argument{"cliConfig", &Self::cliConfig},
                      Rok::Argument{"classifierDir", &Self::classifierDir}};
  }
  using PmapTypeSmKeyFunktor =
      Rok::KeyFunktor<&PmapTypeSm::pmapTypeConfig, &Qos::Input::PolicyMapTypeConfig::type>;
  using PmapTypeSms = Rok::Children<PmapTypeSm, 0x67332667u, PmapTypeSmKeyFunktor>;

  static auto ClassActionKivToOcSmIs(const auto&... arguments) { return create(arguments...); }

  Rok::Ptr<Qos::Input::AclConfig const> qosAclConfig() const { return qosAclConfig_.ptr(); }
  Rok::In<Qos::Input::Config> cliConfig() const { return cliConfig_; }
  Rok::Out<Config::ClassifiersDir> classifierDir() const { return classifierDir_; }
  // The one that is translated.
  static constexpr Qos::MapType mapType() { return Qos::mapQos; }

  const PmapTypeSms& pmapTypeSm() const { return pmapTypeSm_; }
  auto pmapTypeSmIs(const auto&... arguments) { return pmapTypeSm_.is(arguments...); }
  void pmapTypeSmDel(Qos::MapType mapType) { pmapTypeSm_.del(mapType); }
  void pmapTypeSmDelAll() { pmapTypeSm_.delAll(); }

  // The policy maps of a map type came or went.
  void handlePmapTypeConfig(Qos::MapType mapType);
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using RokQosAclConfig =
      Rok::Watch<Self, Qos::Input::AclConfig,
                 Rok::On<Qos::Input::AclConfig::Attr::pmapType, &Self::handlePmapTypeConfig>>;

  ClassActionKivToOcSm(Rok::In<Qos::Input::AclConfig> qosAclConfig,
                       Rok::In<Qos::Input::Config> cliConfig,
                       Rok::Out<Config::ClassifiersDir> classifierDir);
  auto parts() { return std::tie(qosAclConfig_, pmapTypeSm_); }

  RokQosAclConfig qosAclConfig_;
  Rok::Ptr<Qos::Input::Config const> cliConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  PmapTypeSms pmapTypeSm_;
};

// Deaf without qosAclConfig. Requires: cliConfig, classifierDir.
// Throws: MutatorArgNullPointerException "forwardingGroupNameToTcMap" when the names of forwarding
// groups are not mounted in cliConfig; nothing is written then.
QOS_EXPORT Rok::Factory<ClassActionKivToOcSm> classActionKivToOcSmFactory;
// Deaf without pmapTypeConfig. Requires: cliConfig with its forwardingGroupNameToTcMap,
// classifierDir.
QOS_EXPORT Rok::Factory<PmapTypeSm> pmapTypeSmFactory;
// Deaf without pmapConfig. Requires: cliConfig with its forwardingGroupNameToTcMap, classifierDir.
QOS_EXPORT Rok::Factory<PmapConfigSm> pmapConfigSmFactory;
// Deaf without classAction. Requires: classifierDir; in cliConfig, where there is one, its
// forwardingGroupNameToTcMap; and that pmapConfigSm, if there is one, outlives the machine. Without
// cliConfig the chained input is null.
// Throws: MutatorArgNullPointerException "cliConfig" for a class that sets a traffic class, when
// cliConfig is null.
QOS_EXPORT Rok::Factory<ClassActionSm> classActionSmFactory;
// Deaf without policyAction. Requires: cliConfig with its forwardingGroupNameToTcMap,
// classifierDir, and that classActionSm, if there is one, outlives the machine.
QOS_EXPORT Rok::Factory<PolicyActionSm> policyActionSmFactory;

}  // namespace QosOc
