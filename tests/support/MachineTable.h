// What each machine of the library is made from, what it computes, which events of Events.h it
// handles, and it alone in its tree. The row of a child says where it stands in the House: its
// parent and the collection, its key there and another one, how the native side mounts an object
// for it, and which handler of its parent is called then. The row of a machine with a chained input
// has that input, an event that comes through it, and where the object for it is mounted.
#pragma once

#include "tests/support/MachineTableClassifiers.h"
#include "tests/support/MachineTableKeys.h"

namespace support {

// ===== Service policies

template <>
struct Facts<QosOc::InterfaceClassifierKivToOcSm> {
  using Sm = QosOc::InterfaceClassifierKivToOcSm;
  static constexpr auto name = "InterfaceClassifierKivToOcSm";
  static constexpr auto factory = &QosOc::interfaceClassifierKivToOcSmFactory;
  static constexpr auto arguments =
      std::tuple{Named{"cliConfig", &Sm::cliConfig}, Named{"interfacesDir", &Sm::interfacesDir}};
  static constexpr std::array events{"AServicePolicyComes"};
};

template <>
struct Facts<QosOc::ServicePolicySm>
    : ChildFacts<QosOc::ServicePolicySm, QosOc::InterfaceClassifierKivToOcSm> {
  using Sm = QosOc::ServicePolicySm;
  static constexpr auto name = "ServicePolicySm";
  static constexpr auto factory = &QosOc::servicePolicySmFactory;
  static constexpr auto arguments =
      std::tuple{Named{"servicePolicyConfig", &Sm::servicePolicyConfig},
                 Named{"interfacesDir", &Sm::interfacesDir},
                 Named{"intfClassifierKivToOcSm", &Sm::intfClassifierKivToOcSm}};
  static auto computed() { return std::tuple{Computed{&Sm::pmapName, policyMapName}}; }
  static constexpr std::array events{"AnInterfaceIsBound"};
  static auto is(Parent& parent, const auto&... arguments) {
    return parent.servicePolicySmIs(arguments...);
  }
  static constexpr auto collection = Collection{
      &Parent::servicePolicySm, &Parent::servicePolicySmDel, &Parent::servicePolicySmDelAll};
  static Velmo::String key() { return policyMapName; }
  static Velmo::String otherKey() { return otherPolicyMapName; }
  static auto made(const Velmo::String& key) {
    return Rok::make<Qos::ServicePolicyConfig>(Qos::ServicePolicyKey{1, key});
  }
  static void mount(const House& house, const Rok::Ptr<Qos::ServicePolicyConfig>& input) {
    house.native.qosConfig->servicePolicyConfigIs({1, policyMapName}, input);
  }
  static void told(Parent& parent, const Velmo::String& key) {
    parent.handleServicePolicyConfig(Qos::ServicePolicyKey{1, key});
  }
};

// ===== Forwarding groups

template <>
struct Facts<QosOc::ForwardingGroupKivToOcSm> {
  using Sm = QosOc::ForwardingGroupKivToOcSm;
  static constexpr auto name = "ForwardingGroupKivToOcSm";
  static constexpr auto factory = &QosOc::forwardingGroupKivToOcSmFactory;
  static constexpr auto arguments =
      std::tuple{Named{"cliConfig", &Sm::cliConfig},
                 Named{"forwardingGroupConfigDir", &Sm::forwardingGroupConfigDir},
                 Named{"queuesDir", &Sm::queuesDir}};
  static constexpr std::array events{"ATrafficClassMoves"};
};

// ===== Queues

template <>
struct Facts<QosOc::QueueKivToOcSm> {
  using Sm = QosOc::QueueKivToOcSm;
  static constexpr auto name = "QueueKivToOcSm";
  static constexpr auto factory = &QosOc::queueKivToOcSmFactory;
  static constexpr auto arguments =
      std::tuple{Named{"qosCliConfig", &Sm::qosCliConfig}, Named{"queuesDir", &Sm::queuesDir},
                 Named{"cliConfig", &Sm::cliConfig}};
  static constexpr std::array events{"AnInterfaceComes"};
};

template <>
struct Facts<QosOc::IntfSm> : InterfaceFacts<QosOc::IntfSm, QosOc::QueueKivToOcSm> {
  using Sm = QosOc::IntfSm;
  static constexpr auto name = "IntfSm";
  static constexpr auto factory = &QosOc::intfSmFactory;
  static constexpr auto arguments =
      std::tuple{Named{"queuesDir", &Sm::queuesDir}, Named{"intfConfig", &Sm::intfConfig},
                 Named{"cliConfig", &Sm::cliConfig}};
  static constexpr std::array events{"ATxQueueComes"};
  static auto is(Parent& parent, const auto&... arguments) { return parent.intfSmIs(arguments...); }
  static constexpr auto collection =
      Collection{&Parent::intfSm, &Parent::intfSmDel, &Parent::intfSmDelAll};
  static constexpr auto told = &Parent::handleIntfConfig;
  static Nerit::IntfId key() { return ethernet3; }
};

template <>
struct Facts<QosOc::TxQueueSm> : TxQueueFacts<QosOc::TxQueueSm, QosOc::IntfSm> {
  using Sm = QosOc::TxQueueSm;
  static constexpr auto name = "TxQueueSm";
  static constexpr auto factory = &QosOc::txQueueSmFactory;
  static constexpr auto arguments =
      std::tuple{Named{"intfId", &Sm::intfId}, Named{"queuesDir", &Sm::queuesDir},
                 Named{"txQueueConfig", &Sm::txQueueConfig}, Named{"cliConfig", &Sm::cliConfig}};
  static constexpr std::array events{"ABandwidthChanges", "EcnSettingsChange", "AnAttachmentComes"};
  static auto is(Parent& parent, const auto&... arguments) {
    return parent.txQueueSmIs(arguments...);
  }
  static constexpr auto collection =
      Collection{&Parent::txQueueSm, &Parent::txQueueSmDel, &Parent::txQueueSmDelAll};
  static constexpr auto told = &Parent::handleTxQueueConfig;
};

// ===== Priority flow control

template <>
struct Facts<QosOc::PfcKivToOCSm> {
  using Sm = QosOc::PfcKivToOCSm;
  static constexpr auto name = "PfcKivToOCSm";
  static constexpr auto factory = &QosOc::pfcKivToOCSmFactory;
  static constexpr auto arguments =
      std::tuple{Named{"cliConfig", &Sm::cliConfig}, Named{"pfcConfig", &Sm::pfcConfig}};
  static constexpr std::array events{"TheWatchdogChanges"};
};

template <>
struct Facts<QosOc::IntfPfcKivToOCSm> {
  using Sm = QosOc::IntfPfcKivToOCSm;
  static constexpr auto name = "IntfPfcKivToOCSm";
  static constexpr auto factory = &QosOc::intfPfcKivToOCSmFactory;
  static constexpr auto arguments =
      std::tuple{Named{"cliConfig", &Sm::cliConfig}, Named{"interfacesDir", &Sm::interfacesDir}};
  static constexpr std::array events{"AnInterfaceComes"};
};

template <>
struct Facts<QosOc::InterfaceConfigSm>
    : InterfaceFacts<QosOc::InterfaceConfigSm, QosOc::IntfPfcKivToOCSm> {
  using Sm = QosOc::InterfaceConfigSm;
  static constexpr auto name = "InterfaceConfigSm";
  static constexpr auto factory = &QosOc::interfaceConfigSmFactory;
  static constexpr auto arguments =
      std::tuple{Named{"intfConfig", &Sm::intfConfig}, Named{"interfacesDir", &Sm::interfacesDir}};
  static constexpr std::array events{"APortRecordIsReplaced", "PrioritiesChange"};
  static auto is(Parent& parent, const auto&... arguments) {
    return parent.intfConfigSmIs(arguments...);
  }
  static constexpr auto collection =
      Collection{&Parent::intfConfigSm, &Parent::intfConfigSmDel, &Parent::intfConfigSmDelAll};
  static constexpr auto told = &Parent::handleIntfConfig;
  static Nerit::IntfId key() { return ethernet1; }
};

// ===== Queue-management profiles

template <>
struct Facts<QosOc::QueueManagementProfileKivToOcSm> {
  using Sm = QosOc::QueueManagementProfileKivToOcSm;
  static constexpr auto name = "QueueManagementProfileKivToOcSm";
  static constexpr auto factory = &QosOc::queueManagementProfileKivToOcSmFactory;
  static constexpr auto arguments =
      std::tuple{Named{"cliConfig", &Sm::cliConfig}, Named{"cli", &Sm::cli},
                 Named{"qosProfileConfigDir", &Sm::qosProfileConfigDir},
                 Named{"queueManagementProfilesDir", &Sm::queueManagementProfilesDir},
                 Named{"interfacesDir", &Sm::interfacesDir}};
  static constexpr std::array events{"AManagementProfileComes", "AnInterfaceComes",
                                     "AQueueNameComes", "AnAttachmentComes"};
  static constexpr auto chain = Chain{&Sm::rok_CliConfig_QueueNameToTxQueueIdMapIn,
                                      &Sm::rok_CliConfig_QueueNameToTxQueueIdMapInIs,
                                      &Sm::rok_CliConfig_QueueNameToTxQueueIdMapInDel};
  static constexpr auto chainEvent = "AQueueNameComes";
  static auto mounted(const House& house) {
    return house.native.qosConfig->queueNameToTxQueueIdMap();
  }
  static void mountChained(const House& house,
                           const Rok::Ptr<Qos::QueueNameToTxQueueIdMap>& input) {
    house.native.qosConfig->queueNameToTxQueueIdMapIs(input);
  }
};

template <>
struct Facts<QosOc::QueueManagementProfileQosProfileSm>
    : ChildFacts<QosOc::QueueManagementProfileQosProfileSm,
                 QosOc::QueueManagementProfileKivToOcSm> {
  using Sm = QosOc::QueueManagementProfileQosProfileSm;
  static constexpr auto name = "QueueManagementProfileQosProfileSm";
  static constexpr auto factory = &QosOc::queueManagementProfileQosProfileSmFactory;
  static constexpr auto arguments =
      std::tuple{Named{"queueManagementProfileKivToOcSm", &Sm::queueManagementProfileKivToOcSm},
                 Named{"queueManagementProfilesDir", &Sm::queueManagementProfilesDir},
                 Named{"qosProfileConfig", &Sm::qosProfileConfig}};
  static auto computed() { return std::tuple{Computed{&Sm::profileName, profileName}}; }
  static constexpr std::array events{"TheBodyOfAProfileIsReplaced", "ATxQueueOfAProfileComes"};
  static auto is(Parent& parent, const auto&... arguments) {
    return parent.qosProfileSmIs(arguments...);
  }
  static constexpr auto collection =
      Collection{&Parent::qosProfileSm, &Parent::qosProfileSmDel, &Parent::qosProfileSmDelAll};
  static constexpr auto told = &Parent::handleProfileConfig;
  static Velmo::String key() { return profileName; }
  static Velmo::String otherKey() { return Velmo::String("__YANG_QMP_[other]"); }
  static auto made(const Velmo::String& key) { return Rok::make<Qos::QosProfileConfig>(key); }
  static void mount(const House& house, const Rok::Ptr<Qos::QosProfileConfig>& input) {
    house.native.qosProfiles->configIs(profileName, input);
  }
  static constexpr auto chain =
      Chain{&Sm::rok_QosProfileConfig_QosProfileIn, &Sm::rok_QosProfileConfig_QosProfileInIs,
            &Sm::rok_QosProfileConfig_QosProfileInDel};
  static constexpr auto chainEvent = "ATxQueueOfAProfileComes";
  static auto mounted(const House& house) {
    return (*house.native.qosProfiles->config().find(profileName))->qosProfile();
  }
  static void mountChained(const House& house, const Rok::Ptr<Qos::QosProfile>& input) {
    (*house.native.qosProfiles->config().find(profileName))->qosProfileIs(input);
  }
};

template <>
struct Facts<QosOc::QueueManagementProfileQosProfileTxQueueSm>
    : ChildFacts<QosOc::QueueManagementProfileQosProfileTxQueueSm,
                 QosOc::QueueManagementProfileQosProfileSm> {
  using Sm = QosOc::QueueManagementProfileQosProfileTxQueueSm;
  static constexpr auto name = "QueueManagementProfileQosProfileTxQueueSm";
  static constexpr auto factory = &QosOc::queueManagementProfileQosProfileTxQueueSmFactory;
  static constexpr auto arguments =
      std::tuple{Named{"profileSm", &Sm::profileSm}, Named{"profileName", &Sm::profileName},
                 Named{"queueManagementProfilesDir", &Sm::queueManagementProfilesDir},
                 Named{"txQueueConfig", &Sm::txQueueConfig}};
  static auto computed() { return std::tuple{Computed{&Sm::txQueue, txQueue0}}; }
  static constexpr std::array events{"WredSettingsChange"};
  static auto is(Parent& parent, const auto&... arguments) {
    return parent.txQueueSmIs(arguments...);
  }
  static constexpr auto collection =
      Collection{&Parent::txQueueSm, &Parent::txQueueSmDel, &Parent::txQueueSmDelAll};
  static constexpr auto told = &Parent::handleTxQueueConfig;
  static Qos::TxQueue key() { return txQueue0; }
  static Qos::TxQueue otherKey() { return otherTxQueue; }
  static auto made(const Qos::TxQueue& key) { return Rok::make<Qos::TxQueueConfig>(key); }
  static void mount(const House& house, const Rok::Ptr<Qos::TxQueueConfig>& input) {
    (*house.native.qosProfiles->config().find(profileName))
        ->qosProfile()
        ->txQueueConfigIs(txQueue0, input);
  }
};

template <>
struct Facts<QosOc::QueueManagementProfileIntfSm>
    : InterfaceFacts<QosOc::QueueManagementProfileIntfSm, QosOc::QueueManagementProfileKivToOcSm> {
  using Sm = QosOc::QueueManagementProfileIntfSm;
  static constexpr auto name = "QueueManagementProfileIntfSm";
  static constexpr auto factory = &QosOc::queueManagementProfileIntfSmFactory;
  static constexpr auto arguments =
      std::tuple{Named{"queueManagementProfileKivToOcSm", &Sm::queueManagementProfileKivToOcSm},
                 Named{"interfacesDir", &Sm::interfacesDir}, Named{"intfConfig", &Sm::intfConfig}};
  static constexpr std::array events{"ATxQueueComes"};
  static auto is(Parent& parent, const auto&... arguments) { return parent.intfSmIs(arguments...); }
  static constexpr auto collection =
      Collection{&Parent::intfSm, &Parent::intfSmDel, &Parent::intfSmDelAll};
  static constexpr auto told = &Parent::handleIntfConfig;
  static Nerit::IntfId key() { return ethernet3; }
};

template <>
struct Facts<QosOc::QueueManagementProfileTxQueueSm>
    : TxQueueFacts<QosOc::QueueManagementProfileTxQueueSm, QosOc::QueueManagementProfileIntfSm> {
  using Sm = QosOc::QueueManagementProfileTxQueueSm;
  static constexpr auto name = "QueueManagementProfileTxQueueSm";
  static constexpr auto factory = &QosOc::queueManagementProfileTxQueueSmFactory;
  static constexpr auto arguments = std::tuple{
      Named{"intfSm", &Sm::intfSm}, Named{"intfId", &Sm::intfId},
      Named{"interfacesDir", &Sm::interfacesDir}, Named{"txQueueConfig", &Sm::txQueueConfig}};
  static constexpr std::array events{"EcnSettingsChange"};
  static auto is(Parent& parent, const auto&... arguments) {
    return parent.txQueueSmIs(arguments...);
  }
  static constexpr auto collection =
      Collection{&Parent::txQueueSm, &Parent::txQueueSmDel, &Parent::txQueueSmDelAll};
  static constexpr auto told = &Parent::handleTxQueueConfig;
};

// ===== Scheduler policies

template <>
struct Facts<QosOc::SchedulerPolicyKivToOCSm> {
  using Sm = QosOc::SchedulerPolicyKivToOCSm;
  static constexpr auto name = "SchedulerPolicyKivToOCSm";
  static constexpr auto factory = &QosOc::schedulerPolicyKivToOCSmFactory;
  static constexpr auto arguments =
      std::tuple{Named{"cliConfig", &Sm::cliConfig}, Named{"qosCliConfig", &Sm::qosCliConfig},
                 Named{"qosProfileConfigDir", &Sm::qosProfileConfigDir},
                 Named{"schedulerPoliciesDir", &Sm::schedulerPoliciesDir},
                 Named{"interfacesDir", &Sm::interfacesDir}};
  static constexpr std::array events{"APolicyProfileComes", "AnInterfaceComes", "AQueueNameComes",
                                     "SchedulersCome"};
  static constexpr auto chain = Chain{&Sm::rok_QosCliConfig_QueueNameToTxQueueIdMapIn,
                                      &Sm::rok_QosCliConfig_QueueNameToTxQueueIdMapInIs,
                                      &Sm::rok_QosCliConfig_QueueNameToTxQueueIdMapInDel};
  static constexpr auto chainEvent = "AQueueNameComes";
  static auto mounted(const House& house) {
    return house.native.qosConfig->queueNameToTxQueueIdMap();
  }
  static void mountChained(const House& house,
                           const Rok::Ptr<Qos::QueueNameToTxQueueIdMap>& input) {
    house.native.qosConfig->queueNameToTxQueueIdMapIs(input);
  }
};

template <>
struct Facts<QosOc::SchedulerPolicyIntfSm>
    : InterfaceFacts<QosOc::SchedulerPolicyIntfSm, QosOc::SchedulerPolicyKivToOCSm> {
  using Sm = QosOc::SchedulerPolicyIntfSm;
  static constexpr auto name = "SchedulerPolicyIntfSm";
  static constexpr auto factory = &QosOc::schedulerPolicyIntfSmFactory;
  static constexpr auto arguments =
      std::tuple{Named{"schedulerPolicyKivToOCSm", &Sm::schedulerPolicyKivToOCSm},
                 Named{"schedulerPoliciesDir", &Sm::schedulerPoliciesDir},
                 Named{"interfacesDir", &Sm::interfacesDir}, Named{"intfConfig", &Sm::intfConfig}};
  static constexpr std::array events{"ATxQueueComes"};
  static auto is(Parent& parent, const auto&... arguments) { return parent.intfSmIs(arguments...); }
  static constexpr auto collection =
      Collection{&Parent::intfSm, &Parent::intfSmDel, &Parent::intfSmDelAll};
  static constexpr auto told = &Parent::handleIntfConfig;
  static Nerit::IntfId key() { return ethernet3; }
};

template <>
struct Facts<QosOc::SchedulerPolicyTxQueueSm>
    : TxQueueFacts<QosOc::SchedulerPolicyTxQueueSm, QosOc::SchedulerPolicyIntfSm> {
  using Sm = QosOc::SchedulerPolicyTxQueueSm;
  static constexpr auto name = "SchedulerPolicyTxQueueSm";
  static constexpr auto factory = &QosOc::schedulerPolicyTxQueueSmFactory;
  static constexpr auto arguments = std::tuple{
      Named{"schedulerPolicyIntfSm", &Sm::schedulerPolicyIntfSm}, Named{"intfId", &Sm::intfId},
      Named{"schedulerPoliciesDir", &Sm::schedulerPoliciesDir},
      Named{"interfacesDir", &Sm::interfacesDir}, Named{"txQueueConfig", &Sm::txQueueConfig}};
  static constexpr std::array events{"ABandwidthChanges"};
  static auto is(Parent& parent, const auto&... arguments) {
    return parent.txQueueSmIs(arguments...);
  }
  static constexpr auto collection =
      Collection{&Parent::txQueueSm, &Parent::txQueueSmDel, &Parent::txQueueSmDelAll};
  static constexpr auto told = &Parent::handleTxQueueConfig;
};

// ===== All of them

// Every machine that the library exports.
using Machines = testing::Types<
    QosOc::ClassMapKivToOcSm, QosOc::ClassMapTypeSm, QosOc::ClassMapSm, QosOc::AclKivToOcSm,
    QosOc::AclTypeSm, QosOc::AclConfigSm, QosOc::AclSubConfigSm, QosOc::ClassActionKivToOcSm,
    QosOc::PmapTypeSm, QosOc::PmapConfigSm, QosOc::ClassActionSm, QosOc::PolicyActionSm,
    QosOc::InterfaceClassifierKivToOcSm, QosOc::ServicePolicySm, QosOc::ForwardingGroupKivToOcSm,
    QosOc::QueueKivToOcSm, QosOc::IntfSm, QosOc::TxQueueSm, QosOc::PfcKivToOCSm,
    QosOc::IntfPfcKivToOCSm, QosOc::InterfaceConfigSm, QosOc::QueueManagementProfileKivToOcSm,
    QosOc::QueueManagementProfileQosProfileSm, QosOc::QueueManagementProfileQosProfileTxQueueSm,
    QosOc::QueueManagementProfileIntfSm, QosOc::QueueManagementProfileTxQueueSm,
    QosOc::SchedulerPolicyKivToOCSm, QosOc::SchedulerPolicyIntfSm, QosOc::SchedulerPolicyTxQueueSm>;

// Those of them whose rows have a member.
template <class Sm>
concept Computing = requires {
  Facts<Sm>::computed();
};
template <class Sm>
concept Watching = requires {
  Facts<Sm>::events;
};
template <class Sm>
concept Chained = requires {
  Facts<Sm>::chain;
};
template <class Sm>
concept Collected = requires {
  Facts<Sm>::collection;
};
template <class Sm>
concept Mirrored = requires {
  Facts<Sm>::told;
};

// `says` is a lambda that asks one of these of a pointer to a machine.
template <auto says, class... Sm>
auto machinesThat(testing::Types<Sm...> /*machines*/) {
  using Rows = decltype(std::tuple_cat(
      std::conditional_t<says(static_cast<Sm*>(nullptr)), std::tuple<Sm*>, std::tuple<>>()...));
  return []<class... Kept>(std::type_identity<std::tuple<Kept*...>>) {
    return std::type_identity<testing::Types<Kept...>>();
  }(std::type_identity<Rows>());
}
template <auto says>
using MachinesThat = typename decltype(machinesThat<says>(Machines()))::type;

using ComputingMachines = MachinesThat<[]<class Sm>(Sm*) { return Computing<Sm>; }>;
using WatchingMachines = MachinesThat<[]<class Sm>(Sm*) { return Watching<Sm>; }>;
using ChainedMachines = MachinesThat<[]<class Sm>(Sm*) { return Chained<Sm>; }>;
using CollectedMachines = MachinesThat<[]<class Sm>(Sm*) { return Collected<Sm>; }>;
using MirroredMachines = MachinesThat<[]<class Sm>(Sm*) { return Mirrored<Sm>; }>;

// Names the tests of a typed suite after its machines.
struct ByName {
  template <class Sm>
  static std::string GetName(int /*number*/) {
    return Facts<Sm>::name;
  }
};

}  // namespace support
