#include "Faults.h"

#include <ostream>

#include "tests/support/House.h"

namespace faults {
namespace {

using host::Native;
using support::acls;
using support::classMaps;
using support::newClassAction;
using support::policyMaps;

constexpr const char* percentText =
    "range: QosOc::PercentType::value < QosOc::PercentType::min or > QosOc::PercentType::max not "
    "allowed";
constexpr const char* percent100Text =
    "range: QosOc::PercentType100::value < QosOc::PercentType100::min or > "
    "QosOc::PercentType100::max not allowed";
constexpr const char* thresholdText =
    "range: QosOc::ThresholdType::value < QosOc::ThresholdType::min or > QosOc::ThresholdType::max "
    "not allowed";

const Nerit::IntfId ethernet1("Ethernet1");
const Nerit::IntfId ethernet2("Ethernet2");
const Nerit::IntfId ethernet3("Ethernet3");
const Rok::String newTerm("__yang_[c4]_[u]");
const Rok::String policyMapName("__yang_[IPV4__c4][IPV6__c6]");
const Rok::String newPolicyMap("__yang_[IPV4__c4]");
const Rok::String newProfile("__YANG_QMP_[late]");
const Rok::String schedulersKey("qos-profile-__YANG_SP_[fair]");
const Qos::TxQueue newTxQueue{Qos::TxQueueId{6}, Qos::unicast};
const Qos::TxQueue profileTxQueue{Qos::TxQueueId{0}, Qos::unicast};
const Qos::TxQueue newProfileTxQueue{Qos::TxQueueId{0}, Qos::multicast};

// ===== Where things are

Qos::PolicyMapConfig& policyMap(const Native& native) {
  return **policyMaps(native).pmap().find(policyMapName);
}
Qos::ClassAction& classWithoutAction(const Native& native) {
  return **policyMap(native).classAction().find("__yang_[c6]_[t]");
}
Qos::IntfConfig& interface(const Native& native) {
  return **native.qosConfig->intfConfig().find(ethernet3);
}
Qos::TxQueueConfig& txQueue(const Native& native) {
  return **interface(native).txQueueConfig().find({Qos::TxQueueId{1}, Qos::unicast});
}
Qos::QosProfile& profile(const Native& native) {
  return *(*native.qosProfiles->config().find("__YANG_QMP_[drop]"))->qosProfile();
}
Qos::TxQueueConfig& txQueueOfProfile(const Native& native) {
  return **profile(native).txQueueConfig().find(profileTxQueue);
}

Qos::TxQueueConfig::EcnWred thresholds(unsigned char percent, std::uint32_t minimum) {
  Qos::EcnWredConfig::Settings settings;
  settings.minThreshold = minimum;
  settings.maxThreshold = 900;
  settings.maxDropPercent = Qos::Percent{percent};
  return Rok::make<Qos::EcnWredConfig>(settings);
}

const Rok::PtrInterface* classMapsPlace(const Native& native) { return &classMaps(native); }
const Rok::PtrInterface* aclsPlace(const Native& native) { return &acls(native); }
const Rok::PtrInterface* policyMapsPlace(const Native& native) { return &policyMaps(native); }
const Rok::PtrInterface* policyMapPlace(const Native& native) { return &policyMap(native); }
const Rok::PtrInterface* classPlace(const Native& native) { return &classWithoutAction(native); }
const Rok::PtrInterface* qosPlace(const Native& native) { return native.qosConfig.get(); }
const Rok::PtrInterface* interfacePlace(const Native& native) { return &interface(native); }
const Rok::PtrInterface* txQueuePlace(const Native& native) { return &txQueue(native); }
const Rok::PtrInterface* profilesPlace(const Native& native) { return native.qosProfiles.get(); }
const Rok::PtrInterface* profilePlace(const Native& native) { return &profile(native); }
const Rok::PtrInterface* txQueueOfProfilePlace(const Native& native) {
  return &txQueueOfProfile(native);
}
const Rok::PtrInterface* commentsPlace(const Native& native) { return native.cliConfig.get(); }

// ===== What is wrong, and what is right

void classMapIsNull(const Native& native) { classMaps(native).cmapIs(newTerm, nullptr); }
void classMapIsThere(const Native& native) {
  const auto made = Rok::make<Qos::ClassMapConfig>(newTerm, Qos::mapQos);
  made->matchIs(Qos::matchIpAccessGroup, Rok::make<Qos::ClassMapMatch>());
  classMaps(native).cmapIs(newTerm, made);
}

void classMapTypeIsMissing(const Native& native) { native.aclConfig->cmapTypeDel(Qos::mapQos); }
void classMapTypeIsThere(const Native& native) {
  native.aclConfig->cmapTypeIs(Qos::mapQos, Rok::make<Qos::Input::ClassMapTypeConfig>(Qos::mapQos));
  classMapIsThere(native);
}

void aclIsNull(const Native& native) { acls(native).aclIs(newTerm, nullptr); }
void aclIsThere(const Native& native) {
  Acl::IpRuleConfig rule;
  rule.filter.dscp = 12;
  rule.filter.matchDscp = true;
  const auto rules = Rok::make<Acl::AclSubConfig>();
  rules->ipRuleByIdIs(Umb::UniqueId(1, 1, 1), rule);
  rules->ruleBySequenceIs(10, Umb::UniqueId(1, 1, 1));
  const auto made = Rok::make<Acl::AclConfig>(newTerm, Acl::aclTypeIpv4);
  made->aclSubConfigIs(rules);
  acls(native).aclIs(newTerm, made);
}

void aclFamilyIsMissing(const Native& native) { native.acls->configDel(Acl::aclTypeIpv4); }
void aclFamilyIsThere(const Native& native) {
  native.acls->configIs(Acl::aclTypeIpv4, Rok::make<Acl::Input::AclTypeConfig>(Acl::aclTypeIpv4));
  aclIsThere(native);
}

void policyMapIsNull(const Native& native) { policyMaps(native).pmapIs(newPolicyMap, nullptr); }
void policyMapIsThere(const Native& native) {
  const Rok::String classMap("__yang_[c4]_[t]");
  const auto made = Rok::make<Qos::PolicyMapConfig>(newPolicyMap);
  made->classActionIs(classMap, newClassAction(classMap));
  policyMaps(native).pmapIs(newPolicyMap, made);
}

void classIsNull(const Native& native) { policyMap(native).classActionIs(newTerm, nullptr); }
void classIsThere(const Native& native) {
  policyMap(native).classActionIs(newTerm, newClassAction(newTerm));
}

void actionIsNull(const Native& native) {
  classWithoutAction(native).policyActionIs(Qos::actionSetTc, nullptr);
}
void actionIsThere(const Native& native) {
  classWithoutAction(native).policyActionIs(Qos::actionSetTc,
                                            Rok::make<Qos::Action>(Qos::actionSetTc, 5u));
}

void servicePolicyIs(const Native& native, const Qos::ServicePolicyKey& key) {
  const auto made = Rok::make<Qos::ServicePolicyConfig>(key);
  made->intfIdsIs(ethernet1, true);
  native.qosConfig->servicePolicyConfigIs(key, made);
}
void servicePolicyIsNull(const Native& native) {
  native.qosConfig->servicePolicyConfigIs({1, newPolicyMap}, nullptr);
}
void servicePolicyIsThere(const Native& native) { servicePolicyIs(native, {1, newPolicyMap}); }

void policyMapIsBoundTwice(const Native& native) { servicePolicyIs(native, {2, policyMapName}); }
// The deletion of either takes the machine that both share, so the other has to come again.
void policyMapIsBoundOnce(const Native& native) {
  native.qosConfig->servicePolicyConfigDel({2, policyMapName});
  native.qosConfig->servicePolicyConfigDel({1, policyMapName});
  servicePolicyIs(native, {1, policyMapName});
}

void groupNameIs(const Native& native, unsigned char tc) {
  native.qosConfig->forwardingGroupNameToTcMap()->forwardingGroupNameToTcIs(
      Qos::ForwardingGroupName{"bulk"}, Qos::TrafficClass{tc});
}
void trafficClassIsTooLarge(const Native& native) { groupNameIs(native, 17); }
void trafficClassIsRight(const Native& native) { groupNameIs(native, 1); }

void groupNamesAreMissing(const Native& native) {
  native.qosConfig->forwardingGroupNameToTcMapIs(nullptr);
}
void groupNamesAreThere(const Native& native) {
  native.qosConfig->forwardingGroupNameToTcMapIs(Rok::make<Qos::ForwardingGroupNameToTcMap>());
  trafficClassIsRight(native);
}
void queueNamesAreMissing(const Native& native) {
  native.qosConfig->queueNameToTxQueueIdMapIs(nullptr);
}
void queueNamesAreThere(const Native& native) {
  const auto names = Rok::make<Qos::QueueNameToTxQueueIdMap>();
  names->queueNameToTxQueueIdIs(Qos::QueueName{"gold"}, Qos::TxQueueId{3});
  native.qosConfig->queueNameToTxQueueIdMapIs(names);
}

void bandwidthIsTooLarge(const Native& native) { txQueue(native).bandwidthIs(Qos::Percent{102}); }
void bandwidthIsRight(const Native& native) { txQueue(native).bandwidthIs(Qos::Percent{30}); }

void ecnPercentageIsTooLarge(const Native& native) {
  txQueue(native).ecnConfigIs(thresholds(101, 0));
}
void ecnThresholdIsTooLarge(const Native& native) {
  txQueue(native).ecnConfigIs(thresholds(10, 4294967295u));
}
void ecnIsRight(const Native& native) { txQueue(native).ecnConfigIs(thresholds(11, 5)); }

void interfaceIsNull(const Native& native) { native.qosConfig->intfConfigIs(ethernet2, nullptr); }
void interfaceIsThere(const Native& native) {
  const auto settings = Rok::make<Qos::TxQueueConfig>(newTxQueue);
  settings->bandwidthIs(Qos::Percent{7});
  const auto made = Rok::make<Qos::IntfConfig>(ethernet2);
  made->txQueueConfigIs(newTxQueue, settings);
  made->pfcPortConfigIs(Rok::make<Pfc::PortConfig>(std::uint8_t{4}));
  native.qosConfig->intfConfigIs(ethernet2, made);
}

void txQueueIsNull(const Native& native) { interface(native).txQueueConfigIs(newTxQueue, nullptr); }
void txQueueIsThere(const Native& native) {
  const auto made = Rok::make<Qos::TxQueueConfig>(newTxQueue);
  made->bandwidthIs(Qos::Percent{7});
  interface(native).txQueueConfigIs(newTxQueue, made);
}
// The machine of the tx queue can't be made.
void txQueueComesWithTooMuch(const Native& native) {
  const auto made = Rok::make<Qos::TxQueueConfig>(newTxQueue);
  made->bandwidthIs(Qos::Percent{255});
  interface(native).txQueueConfigIs(newTxQueue, made);
}
void txQueueComesAgain(const Native& native) {
  interface(native).txQueueConfigDel(newTxQueue);
  txQueueIsThere(native);
}

void wredPercentageIsTooLarge(const Native& native) {
  txQueueOfProfile(native).wredConfigIs(thresholds(101, 0));
}
void wredIsRight(const Native& native) { txQueueOfProfile(native).wredConfigIs(thresholds(12, 0)); }

void profileIsNull(const Native& native) { native.qosProfiles->configIs(newProfile, nullptr); }
void profileIsThere(const Native& native) {
  const auto body = Rok::make<Qos::QosProfile>();
  body->txQueueConfigIs(profileTxQueue, Rok::make<Qos::TxQueueConfig>(profileTxQueue));
  const auto made = Rok::make<Qos::QosProfileConfig>(newProfile);
  made->qosProfileIs(body);
  native.qosProfiles->configIs(newProfile, made);
}

void txQueueOfProfileIsNull(const Native& native) {
  profile(native).txQueueConfigIs(newProfileTxQueue, nullptr);
}
// With the settings of the other one, since either may be the last to write the record.
void txQueueOfProfileIsThere(const Native& native) {
  const auto made = Rok::make<Qos::TxQueueConfig>(newProfileTxQueue);
  made->wredConfigIs(txQueueOfProfile(native).wredConfig());
  profile(native).txQueueConfigIs(newProfileTxQueue, made);
}

void rateIsTooLarge(const Native& native) {
  native.cliConfig->commentIs(
      schedulersKey,
      R"({"MetaData-OpenConfig":{"2":{"one-rate-two-color":{"cir-pct":101},"inputs":{"k":{}}}}})");
}
void rateIsRight(const Native& native) {
  native.cliConfig->commentIs(schedulersKey,
                              R"({"MetaData-OpenConfig":{"1":{"one-rate-two-color":{"cir-pct":40},)"
                              R"("inputs":{"i":{"queue":"gold"}}},)"
                              R"("2":{"one-rate-two-color":{"cir-pct":50},"inputs":{"k":{}}}}})");
}

const Fault table[] = {
    {"ANullClassMap",
     {"class-map"},
     "null argument: cmapConfig",
     classMapIsNull,
     classMapIsThere,
     classMapsPlace},
    {"AMissingMapType",
     {"class-map"},
     "null argument: cmapTypeConfig",
     classMapTypeIsMissing,
     classMapTypeIsThere,
     nullptr},
    {"ANullAcl", {"acl"}, "null argument: aclConfig", aclIsNull, aclIsThere, aclsPlace},
    {"AMissingAclFamily",
     {"acl"},
     "null argument: aclTypeConfig",
     aclFamilyIsMissing,
     aclFamilyIsThere,
     nullptr},
    {"ANullPolicyMap",
     {"class-action"},
     "null argument: pmapConfig",
     policyMapIsNull,
     policyMapIsThere,
     policyMapsPlace},
    {"ANullClass",
     {"class-action"},
     "null argument: classAction",
     classIsNull,
     classIsThere,
     policyMapPlace},
    {"ANullAction",
     {"class-action"},
     "null argument: policyAction",
     actionIsNull,
     actionIsThere,
     classPlace},
    {"ANullServicePolicy",
     {"interface-classifier"},
     "null argument: servicePolicyConfig",
     servicePolicyIsNull,
     servicePolicyIsThere,
     qosPlace},
    {"APolicyMapThatIsBoundTwice",
     {"interface-classifier"},
     "reinstantiating: servicePolicyConfig",
     policyMapIsBoundTwice,
     policyMapIsBoundOnce,
     qosPlace},
    {"AGroupOfATrafficClassThatIsNone",
     {"forwarding-group"},
     "range: cannot access index 17 of an array with size 17",
     trafficClassIsTooLarge,
     trafficClassIsRight,
     nullptr},
    {"GroupNamesThatAreNotMounted",
     {"class-action", "forwarding-group"},
     "null argument: forwardingGroupNameToTcMap",
     groupNamesAreMissing,
     groupNamesAreThere,
     nullptr},
    {"QueueNamesThatAreNotMounted",
     {"forwarding-group", "queue-management"},
     "null argument: queueNameToTxQueueIdMap",
     queueNamesAreMissing,
     queueNamesAreThere,
     nullptr},
    {"ABandwidthAbove100",
     {"queue"},
     percentText,
     bandwidthIsTooLarge,
     bandwidthIsRight,
     txQueuePlace},
    {"AnEcnPercentageAbove100",
     {"queue"},
     percentText,
     ecnPercentageIsTooLarge,
     ecnIsRight,
     txQueuePlace},
    {"AThresholdOutOfRange",
     {"queue"},
     thresholdText,
     ecnThresholdIsTooLarge,
     ecnIsRight,
     txQueuePlace},
    {"ATxQueueThatComesWithABandwidthAbove100",
     {"queue"},
     percentText,
     txQueueComesWithTooMuch,
     txQueueComesAgain,
     interfacePlace},
    {"ANullInterface",
     {"queue", "interface-pfc", "queue-management", "scheduler-policy"},
     "null argument: intfConfig",
     interfaceIsNull,
     interfaceIsThere,
     qosPlace},
    {"ANullTxQueue",
     {"queue", "queue-management", "scheduler-policy"},
     "null argument: txQueueConfig",
     txQueueIsNull,
     txQueueIsThere,
     interfacePlace},
    {"AWredPercentageAbove100",
     {"queue-management"},
     percent100Text,
     wredPercentageIsTooLarge,
     wredIsRight,
     txQueueOfProfilePlace},
    {"ANullProfile",
     {"queue-management"},
     "null argument: qosProfileConfig",
     profileIsNull,
     profileIsThere,
     profilesPlace},
    {"ANullTxQueueOfAProfile",
     {"queue-management"},
     "null argument: txQueueConfig",
     txQueueOfProfileIsNull,
     txQueueOfProfileIsThere,
     profilePlace},
    {"ARateAbove100",
     {"scheduler-policy"},
     percentText,
     rateIsTooLarge,
     rateIsRight,
     commentsPlace},
};

}  // namespace

std::ostream& operator<<(std::ostream& out, const Fault& fault) { return out << fault.name; }

std::span<const Fault> faultTable() { return table; }

}  // namespace faults
