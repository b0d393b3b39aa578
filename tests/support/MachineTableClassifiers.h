// The rows of the table for the machines of class maps, ACLs and policy maps. MachineTable.h says what
// a row holds.
#pragma once

#include "tests/support/MachineTableKeys.h"

namespace support {

// ===== Class maps

template <>
struct Facts<QosOc::ClassMapKivToOcSm> {
  using Sm = QosOc::ClassMapKivToOcSm;
  static constexpr auto name = "ClassMapKivToOcSm";
  static constexpr auto factory = &QosOc::classMapKivToOcSmFactory;
  static constexpr auto arguments = std::tuple{Named{"qosAclConfig", &Sm::qosAclConfig},
                                               Named{"classifierDir", &Sm::classifierDir}};
};

template <>
struct Facts<QosOc::ClassMapTypeSm> : ChildFacts<QosOc::ClassMapTypeSm, QosOc::ClassMapKivToOcSm> {
  using Sm = QosOc::ClassMapTypeSm;
  static constexpr auto name = "ClassMapTypeSm";
  static constexpr auto factory = &QosOc::classMapTypeSmFactory;
  static constexpr auto arguments = std::tuple{Named{"cmapTypeConfig", &Sm::cmapTypeConfig},
                                               Named{"classifierDir", &Sm::classifierDir}};
  static auto computed() { return std::tuple{Computed{&Sm::type, Qos::mapQos}}; }
  static constexpr std::array events{"AClassMapGoes"};
  static auto is(Parent& parent, const auto&... arguments) {
    return parent.cmapTypeConfigSmIs(arguments...);
  }
  static constexpr auto collection = Collection{
      &Parent::cmapTypeConfigSm, &Parent::cmapTypeConfigSmDel, &Parent::cmapTypeConfigSmDelAll};
  static Qos::MapType key() { return Qos::mapQos; }
  static Qos::MapType otherKey() { return Qos::MapType{7}; }
  static auto made(const Qos::MapType& key) {
    return Rok::make<Qos::Input::ClassMapTypeConfig>(key);
  }
};

template <>
struct Facts<QosOc::ClassMapSm> : ChildFacts<QosOc::ClassMapSm, QosOc::ClassMapTypeSm> {
  using Sm = QosOc::ClassMapSm;
  static constexpr auto name = "ClassMapSm";
  static constexpr auto factory = &QosOc::classMapSmFactory;
  static constexpr auto arguments =
      std::tuple{Named{"cmapConfig", &Sm::cmapConfig}, Named{"classifierDir", &Sm::classifierDir}};
  static auto computed() {
    return std::tuple{Computed{&Sm::cmapName, termName}, Computed{&Sm::type, Qos::mapQos}};
  }
  static constexpr std::array events{"AMatchStatementComes"};
  static auto is(Parent& parent, const auto&... arguments) {
    return parent.cmapConfigSmIs(arguments...);
  }
  static constexpr auto collection =
      Collection{&Parent::cmapConfigSm, &Parent::cmapConfigSmDel, &Parent::cmapConfigSmDelAll};
  static constexpr auto told = &Parent::handleClassMapConfig;
  static Velmo::String key() { return termName; }
  static Velmo::String otherKey() { return otherTermName; }
  static auto made(const Velmo::String& key) {
    return Rok::make<Qos::ClassMapConfig>(key, Qos::mapQos);
  }
  static void mount(const House& house, const Rok::Ptr<Qos::ClassMapConfig>& input) {
    classMaps(house.native).cmapIs(termName, input);
  }
};

// ===== ACLs

template <>
struct Facts<QosOc::AclKivToOcSm> {
  using Sm = QosOc::AclKivToOcSm;
  static constexpr auto name = "AclKivToOcSm";
  static constexpr auto factory = &QosOc::aclKivToOcSmFactory;
  static constexpr auto arguments = std::tuple{Named{"aclCliConfig", &Sm::aclCliConfig},
                                               Named{"classifierDir", &Sm::classifierDir}};
};

template <>
struct Facts<QosOc::AclTypeSm> : ChildFacts<QosOc::AclTypeSm, QosOc::AclKivToOcSm> {
  using Sm = QosOc::AclTypeSm;
  static constexpr auto name = "AclTypeSm";
  static constexpr auto factory = &QosOc::aclTypeSmFactory;
  static constexpr auto arguments = std::tuple{Named{"aclTypeConfig", &Sm::aclTypeConfig},
                                               Named{"classifierDir", &Sm::classifierDir}};
  static auto computed() { return std::tuple{Computed{&Sm::type, Acl::aclTypeIpv4}}; }
  static constexpr std::array events{"AnAclGoes"};
  static auto is(Parent& parent, const auto&... arguments) {
    return parent.aclTypeSmIs(arguments...);
  }
  static constexpr auto collection =
      Collection{&Parent::aclTypeSm, &Parent::aclTypeSmDel, &Parent::aclTypeSmDelAll};
  static Acl::AclType key() { return Acl::aclTypeIpv4; }
  static Acl::AclType otherKey() { return Acl::aclTypeIpv6; }
  static auto made(const Acl::AclType& key) { return Rok::make<Acl::Input::AclTypeConfig>(key); }
};

template <>
struct Facts<QosOc::AclConfigSm> : ChildFacts<QosOc::AclConfigSm, QosOc::AclTypeSm> {
  using Sm = QosOc::AclConfigSm;
  static constexpr auto name = "AclConfigSm";
  static constexpr auto factory = &QosOc::aclConfigSmFactory;
  static constexpr auto arguments =
      std::tuple{Named{"aclConfig", &Sm::aclConfig}, Named{"classifierDir", &Sm::classifierDir}};
  static auto computed() {
    return std::tuple{Computed{&Sm::aclName, termName}, Computed{&Sm::type, Acl::aclTypeIpv4}};
  }
  static constexpr std::array events{"TheRulesOfAnAclAreReplaced"};
  static auto is(Parent& parent, const auto&... arguments) {
    return parent.aclConfigSmIs(arguments...);
  }
  static constexpr auto collection =
      Collection{&Parent::aclConfigSm, &Parent::aclConfigSmDel, &Parent::aclConfigSmDelAll};
  static constexpr auto told = &Parent::handleAclConfig;
  static Velmo::String key() { return termName; }
  static Velmo::String otherKey() { return otherTermName; }
  static auto made(const Velmo::String& key) {
    return Rok::make<Acl::AclConfig>(key, Acl::aclTypeIpv4);
  }
  static void mount(const House& house, const Rok::Ptr<Acl::AclConfig>& input) {
    acls(house.native).aclIs(termName, input);
  }
};

// The only child outside a collection: it is replaced instead of refused.
template <>
struct Facts<QosOc::AclSubConfigSm> {
  using Sm = QosOc::AclSubConfigSm;
  using Parent = QosOc::AclConfigSm;
  static constexpr auto name = "AclSubConfigSm";
  static constexpr auto factory = &QosOc::aclSubConfigSmFactory;
  static constexpr auto arguments = std::tuple{Named{"aclSubConfig", &Sm::aclSubConfig},
                                               Named{"classifierDir", &Sm::classifierDir},
                                               Named{"aclNameAndType", &Sm::aclNameAndType}};
  static constexpr std::array events{"ARuleComes"};
  static Rok::Ptr<Sm> in(const Parent& parent) { return parent.aclSubConfigSm(); }
};

// ===== Policy maps

template <>
struct Facts<QosOc::ClassActionKivToOcSm> {
  using Sm = QosOc::ClassActionKivToOcSm;
  static constexpr auto name = "ClassActionKivToOcSm";
  static constexpr auto factory = &QosOc::classActionKivToOcSmFactory;
  static constexpr auto arguments =
      std::tuple{Named{"qosAclConfig", &Sm::qosAclConfig}, Named{"cliConfig", &Sm::cliConfig},
                 Named{"classifierDir", &Sm::classifierDir}};
  static constexpr std::array events{"AMapTypeComes"};
};

template <>
struct Facts<QosOc::PmapTypeSm> : ChildFacts<QosOc::PmapTypeSm, QosOc::ClassActionKivToOcSm> {
  using Sm = QosOc::PmapTypeSm;
  static constexpr auto name = "PmapTypeSm";
  static constexpr auto factory = &QosOc::pmapTypeSmFactory;
  static constexpr auto arguments =
      std::tuple{Named{"pmapTypeConfig", &Sm::pmapTypeConfig}, Named{"cliConfig", &Sm::cliConfig},
                 Named{"classifierDir", &Sm::classifierDir}};
  static auto computed() { return std::tuple{Computed{&Sm::pmapType, Qos::mapQos}}; }
  static constexpr std::array events{"APolicyMapComes"};
  static auto is(Parent& parent, const auto&... arguments) {
    return parent.pmapTypeSmIs(arguments...);
  }
  static constexpr auto collection =
      Collection{&Parent::pmapTypeSm, &Parent::pmapTypeSmDel, &Parent::pmapTypeSmDelAll};
  static constexpr auto told = &Parent::handlePmapTypeConfig;
  static Qos::MapType key() { return Qos::mapQos; }
  static Qos::MapType otherKey() { return Qos::MapType{7}; }
  static auto made(const Qos::MapType& key) {
    return Rok::make<Qos::Input::PolicyMapTypeConfig>(key);
  }
  static void mount(const House& house, const Rok::Ptr<Qos::Input::PolicyMapTypeConfig>& input) {
    house.native.aclConfig->pmapTypeIs(Qos::mapQos, input);
  }
};

template <>
struct Facts<QosOc::PmapConfigSm> : ChildFacts<QosOc::PmapConfigSm, QosOc::PmapTypeSm> {
  using Sm = QosOc::PmapConfigSm;
  static constexpr auto name = "PmapConfigSm";
  static constexpr auto factory = &QosOc::pmapConfigSmFactory;
  static constexpr auto arguments = std::tuple{
      Named{"pmapConfig", &Sm::pmapConfig}, Named{"ipv4ClassifierName", &Sm::ipv4ClassifierName},
      Named{"ipv6ClassifierName", &Sm::ipv6ClassifierName}, Named{"cliConfig", &Sm::cliConfig},
      Named{"classifierDir", &Sm::classifierDir}};
  static auto computed() { return std::tuple{Computed{&Sm::pmapName, policyMapName}}; }
  static constexpr std::array events{"AClassComes"};
  static auto is(Parent& parent, const auto&... arguments) {
    return parent.pmapConfigSmIs(arguments...);
  }
  static constexpr auto collection =
      Collection{&Parent::pmapConfigSm, &Parent::pmapConfigSmDel, &Parent::pmapConfigSmDelAll};
  static constexpr auto told = &Parent::handlePmapConfig;
  static Velmo::String key() { return policyMapName; }
  static Velmo::String otherKey() { return otherPolicyMapName; }
  static auto made(const Velmo::String& key) { return Rok::make<Qos::PolicyMapConfig>(key); }
  static void mount(const House& house, const Rok::Ptr<Qos::PolicyMapConfig>& input) {
    policyMaps(house.native).pmapIs(policyMapName, input);
  }
};

template <>
struct Facts<QosOc::ClassActionSm> : ChildFacts<QosOc::ClassActionSm, QosOc::PmapConfigSm> {
  using Sm = QosOc::ClassActionSm;
  static constexpr auto name = "ClassActionSm";
  static constexpr auto factory = &QosOc::classActionSmFactory;
  static constexpr auto arguments = std::tuple{
      Named{"classAction", &Sm::classAction},       Named{"classifierName", &Sm::classifierName},
      Named{"classifierType", &Sm::classifierType}, Named{"termId", &Sm::termId},
      Named{"cliConfig", &Sm::cliConfig},           Named{"classifierDir", &Sm::classifierDir},
      Named{"pmapConfigSm", &Sm::pmapConfigSm}};
  static auto computed() { return std::tuple{Computed{&Sm::cmapName, termName}}; }
  static constexpr std::array events{"AnActionGoes"};
  static auto is(Parent& parent, const auto&... arguments) {
    return parent.classActionSmIs(arguments...);
  }
  static constexpr auto collection =
      Collection{&Parent::classActionSm, &Parent::classActionSmDel, &Parent::classActionSmDelAll};
  static constexpr auto told = &Parent::handleClassAction;
  static Velmo::String key() { return termName; }
  static Velmo::String otherKey() { return otherTermName; }
  static auto made(const Velmo::String& key) { return Rok::make<Qos::ClassAction>(key); }
  static void mount(const House& house, const Rok::Ptr<Qos::ClassAction>& input) {
    policyMapIn(house).classActionIs(termName, input);
  }
  static constexpr auto chain = Chain{&Sm::rok_CliConfig_ForwardingGroupNameToTcMapIn,
                                      &Sm::rok_CliConfig_ForwardingGroupNameToTcMapInIs,
                                      &Sm::rok_CliConfig_ForwardingGroupNameToTcMapInDel};
  static constexpr auto chainEvent = "AGroupNameComes";
  static auto mounted(const House& house) {
    return house.native.qosConfig->forwardingGroupNameToTcMap();
  }
  static void mountChained(const House& house,
                           const Rok::Ptr<Qos::ForwardingGroupNameToTcMap>& input) {
    house.native.qosConfig->forwardingGroupNameToTcMapIs(input);
  }
};

template <>
struct Facts<QosOc::PolicyActionSm> : ChildFacts<QosOc::PolicyActionSm, QosOc::ClassActionSm> {
  using Sm = QosOc::PolicyActionSm;
  static constexpr auto name = "PolicyActionSm";
  static constexpr auto factory = &QosOc::policyActionSmFactory;
  static constexpr auto arguments = std::tuple{
      Named{"policyAction", &Sm::policyAction},     Named{"classifierName", &Sm::classifierName},
      Named{"classifierType", &Sm::classifierType}, Named{"termId", &Sm::termId},
      Named{"cliConfig", &Sm::cliConfig},           Named{"classifierDir", &Sm::classifierDir},
      Named{"classActionSm", &Sm::classActionSm}};
  static auto computed() { return std::tuple{Computed{&Sm::actionType, Qos::actionSetTc}}; }
  static constexpr std::array events{"AnActionChanges"};
  static auto is(Parent& parent, const auto&... arguments) {
    return parent.policyActionSmIs(arguments...);
  }
  static constexpr auto collection = Collection{&Parent::policyActionSm, &Parent::policyActionSmDel,
                                                &Parent::policyActionSmDelAll};
  static constexpr auto told = &Parent::handlePolicyAction;
  static Qos::ActionType key() { return Qos::actionSetTc; }
  static Qos::ActionType otherKey() { return Qos::ActionType{9}; }
  static auto made(const Qos::ActionType& key) { return Rok::make<Qos::Action>(key); }
  static void mount(const House& house, const Rok::Ptr<Qos::Action>& input) {
    (*policyMapIn(house).classAction().find(termName))->policyActionIs(Qos::actionSetTc, input);
  }
};

}  // namespace support
