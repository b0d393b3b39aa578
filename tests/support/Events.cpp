#include "tests/support/Events.h"

#include <algorithm>
#include <ostream>

#include "tests/support/House.h"

namespace support {
namespace {

using host::Native;

const Nerit::IntfId ethernet1("Ethernet1");
const Nerit::IntfId ethernet2("Ethernet2");
const Nerit::IntfId ethernet3("Ethernet3");
const Rok::String term("__yang_[c4]_[t]");
const Rok::String otherTerm("__yang_[c4]_[u]");
const Rok::String policyMap("__yang_[IPV4__c4][IPV6__c6]");
const Rok::String otherPolicyMap("__yang_[IPV4__c4]");
const Rok::String profileName("__YANG_QMP_[drop]");
const Rok::String otherProfileName("__YANG_QMP_[late]");
const Rok::String policyProfileName("__YANG_SP_[late]");

// ===== Native objects: where they are, and new ones

Qos::IntfConfig& interface(const Native& native, const Nerit::IntfId& intfId) {
  return **native.qosConfig->intfConfig().find(intfId);
}
Qos::TxQueue unicast(unsigned char id) { return {Qos::TxQueueId{id}, Qos::unicast}; }
// The tx queue without a comment.
Qos::TxQueueConfig& queue(const Native& native) {
  return **interface(native, ethernet3).txQueueConfig().find(unicast(1));
}
Qos::QosProfileConfig& profile(const Native& native) {
  return **native.qosProfiles->config().find(profileName);
}

Rok::Ptr<Qos::ClassMapConfig> newClassMap(const Rok::String& name) {
  auto made = Rok::make<Qos::ClassMapConfig>(name, Qos::mapQos);
  made->matchIs(Qos::matchIpAccessGroup, Rok::make<Qos::ClassMapMatch>());
  return made;
}
Rok::Ptr<Qos::PolicyMapConfig> newPolicyMap(const Rok::String& name) {
  auto made = Rok::make<Qos::PolicyMapConfig>(name);
  for (const Rok::String& classMap : {term, otherTerm}) {
    made->classActionIs(classMap, newClassAction(classMap));
  }
  return made;
}
Rok::Ptr<Acl::AclSubConfig> newRules() {
  auto made = Rok::make<Acl::AclSubConfig>();
  Acl::IpRuleConfig rule;
  rule.filter.dscp = 12;
  rule.filter.matchDscp = true;
  for (const std::uint32_t sequence : {10u, 20u, 30u}) {
    const Umb::UniqueId id(7, 7, sequence);
    made->ipRuleByIdIs(id, rule);
    made->ruleBySequenceIs(sequence, id);
    ++rule.filter.dscp;
  }
  return made;
}
Rok::Ptr<Acl::AclConfig> newAcl(const Rok::String& name) {
  auto made = Rok::make<Acl::AclConfig>(name, Acl::aclTypeIpv4);
  made->aclSubConfigIs(newRules());
  return made;
}
Qos::TxQueueConfig::EcnWred newThresholds() {
  Qos::EcnWredConfig::Settings settings;
  settings.maxThreshold = 77;
  settings.maxDropPercent = Qos::Percent{33};
  return Rok::make<Qos::EcnWredConfig>(settings);
}
Rok::Ptr<Qos::TxQueueConfig> newQueue(unsigned char id, Qos::QueueType type = Qos::unicast) {
  auto made = Rok::make<Qos::TxQueueConfig>(Qos::TxQueue{Qos::TxQueueId{id}, type});
  made->bandwidthIs(Qos::Percent{15});
  made->ecnConfigIs(newThresholds());
  return made;
}
Rok::Ptr<Qos::IntfConfig> newInterface(const Nerit::IntfId& intfId) {
  auto made = Rok::make<Qos::IntfConfig>(intfId);
  made->txQueueConfigIs(unicast(3), newQueue(3));
  made->txQueueConfigIs(unicast(4), newQueue(4));
  made->pfcPortConfigIs(Rok::make<Pfc::PortConfig>(std::uint8_t{4}));
  return made;
}
Rok::Ptr<Qos::QosProfileConfig> newProfile(const Rok::String& name) {
  auto made = Rok::make<Qos::QosProfileConfig>(name);
  auto body = Rok::make<Qos::QosProfile>();
  body->txQueueConfigIs(unicast(0), newQueue(0));
  made->qosProfileIs(body);
  return made;
}
Rok::Ptr<Qos::ServicePolicyConfig> newServicePolicy(const Qos::ServicePolicyKey& key) {
  auto made = Rok::make<Qos::ServicePolicyConfig>(key);
  made->intfIdsIs(ethernet1, true);
  made->intfIdsIs(ethernet2, true);
  return made;
}

// ===== Changes

Change classMapComes(const Native& native) {
  const auto made = newClassMap(otherTerm);
  return {[&, made] { classMaps(native).cmapIs(otherTerm, made); }, nullptr};
}
Change classMapGoes(const Native& native) {
  const auto next = newClassMap(term);
  return {[&] { classMaps(native).cmapDel(term); },
          [&, next] { classMaps(native).cmapIs(term, next); }};
}
Change matchComes(const Native& native) {
  const auto made = Rok::make<Qos::ClassMapMatch>();
  const auto& classMap = **classMaps(native).cmap().find(term);
  auto& changed = const_cast<Qos::ClassMapConfig&>(classMap);
  return {[&, made] { changed.matchIs(Qos::matchIpv6AccessGroup, made); },
          [&] { changed.matchDel(Qos::matchIpv6AccessGroup); }};
}

Change aclComes(const Native& native) {
  const auto made = newAcl(otherTerm);
  return {[&, made] { acls(native).aclIs(otherTerm, made); }, nullptr};
}
Change aclGoes(const Native& native) {
  const auto next = newAcl(term);
  return {[&] { acls(native).aclDel(term); }, [&, next] { acls(native).aclIs(term, next); }};
}
Change rulesAreReplaced(const Native& native) {
  const auto acl = *acls(native).acl().find(term);
  const auto made = newRules();
  const auto old = acl->aclSubConfig();
  return {[=] { acl->aclSubConfigIs(made); }, [=] { acl->aclSubConfigIs(old); }};
}
Change ruleComes(const Native& native) {
  const auto rules = (*acls(native).acl().find(term))->aclSubConfig();
  Acl::IpRuleConfig rule;
  rule.filter.dscp = 9;
  rule.filter.matchDscp = true;
  const Umb::UniqueId id(9, 9, 9);
  return {[=] {
            rules->ipRuleByIdIs(id, rule);
            rules->ruleBySequenceIs(30, id);
          },
          [=] {
            rules->ruleBySequenceDel(30);
            rules->ipRuleByIdDel(id);
          }};
}

Change policyMapComes(const Native& native) {
  const auto made = newPolicyMap(otherPolicyMap);
  return {[&, made] { policyMaps(native).pmapIs(otherPolicyMap, made); },
          [&] { policyMaps(native).pmapDel(otherPolicyMap); }};
}
Change policyMapGoes(const Native& native) {
  const auto next = newPolicyMap(policyMap);
  return {[&] { policyMaps(native).pmapDel(policyMap); },
          [&, next] { policyMaps(native).pmapIs(policyMap, next); }};
}
Change classComes(const Native& native) {
  const auto pmap = *policyMaps(native).pmap().find(policyMap);
  const auto made = newClassAction(otherTerm);
  return {[=] { pmap->classActionIs(otherTerm, made); }, [=] { pmap->classActionDel(otherTerm); }};
}
Change classGoes(const Native& native) {
  const auto pmap = *policyMaps(native).pmap().find(policyMap);
  const auto next = newClassAction(term);
  return {[=] { pmap->classActionDel(term); }, [=] { pmap->classActionIs(term, next); }};
}
Change actionComes(const Native& native) {
  const Rok::String other("__yang_[c6]_[t]");
  const auto classAction = *(*policyMaps(native).pmap().find(policyMap))->classAction().find(other);
  const auto made = Rok::make<Qos::Action>(Qos::actionSetTc, 5u);
  return {[=] { classAction->policyActionIs(Qos::actionSetTc, made); },
          [=] { classAction->policyActionDel(Qos::actionSetTc); }};
}
Change actionGoes(const Native& native) {
  const auto classAction = *(*policyMaps(native).pmap().find(policyMap))->classAction().find(term);
  const auto next = Rok::make<Qos::Action>(Qos::actionSetTc, 5u);
  return {[=] { classAction->policyActionDel(Qos::actionSetTc); },
          [=] { classAction->policyActionIs(Qos::actionSetTc, next); }};
}
Change actionChanges(const Native& native) {
  const auto classAction = *(*policyMaps(native).pmap().find(policyMap))->classAction().find(term);
  const auto action = *classAction->policyAction().find(Qos::actionSetTc);
  return {[=] { action->valueIs(1); }, [=] { action->valueIs(5); }};
}

Change mapTypeComes(const Native& native) {
  const Qos::MapType type{7};  // which is not translated
  const auto made = Rok::make<Qos::Input::PolicyMapTypeConfig>(type);
  return {[&, type, made] { native.aclConfig->pmapTypeIs(type, made); },
          [&, type] { native.aclConfig->pmapTypeDel(type); }};
}

Change groupNameIs(const Native& native, const char* name, unsigned char tc,
                   const std::function<void(Qos::ForwardingGroupNameToTcMap&)>& undo) {
  const auto map = native.qosConfig->forwardingGroupNameToTcMap();
  const Qos::ForwardingGroupName group{name};
  return {[=] { map->forwardingGroupNameToTcIs(group, Qos::TrafficClass{tc}); },
          [=] { undo(*map); }};
}
Change groupNameComes(const Native& native) {
  return groupNameIs(native, "a-first-one", 5, [](auto& map) {
    map.forwardingGroupNameToTcDel(Qos::ForwardingGroupName{"a-first-one"});
  });
}
Change groupNameMoves(const Native& native) {
  return groupNameIs(native, "bulk", 5, [](auto& map) {
    map.forwardingGroupNameToTcIs(Qos::ForwardingGroupName{"bulk"}, Qos::TrafficClass{1});
  });
}
Change groupNameGoes(const Native& native) {
  const auto map = native.qosConfig->forwardingGroupNameToTcMap();
  const Qos::ForwardingGroupName group{"voice"};
  return {[=] { map->forwardingGroupNameToTcDel(group); },
          [=] { map->forwardingGroupNameToTcIs(group, Qos::TrafficClass{5}); }};
}
Change groupNamesAreReplaced(const Native& native) {
  const auto made = Rok::make<Qos::ForwardingGroupNameToTcMap>();
  made->forwardingGroupNameToTcIs(Qos::ForwardingGroupName{"speech"}, Qos::TrafficClass{5});
  const auto old = native.qosConfig->forwardingGroupNameToTcMap();
  return {[&, made] { native.qosConfig->forwardingGroupNameToTcMapIs(made); },
          [&, old] { native.qosConfig->forwardingGroupNameToTcMapIs(old); }};
}
Change trafficClassMoves(const Native& native) {
  const Qos::TrafficClass tc{1};
  return {[&, tc] { native.qosConfig->tcToTxQueueMapIs(tc, Qos::TxQueueId{3}); },
          [&, tc] { native.qosConfig->tcToTxQueueMapIs(tc, Qos::noTxQueue); }};
}

Change servicePolicyComes(const Native& native) {
  const Qos::ServicePolicyKey key{2, otherPolicyMap};
  const auto made = newServicePolicy(key);
  return {[&, key, made] { native.qosConfig->servicePolicyConfigIs(key, made); },
          [&, key] { native.qosConfig->servicePolicyConfigDel(key); }};
}
Change servicePolicyGoes(const Native& native) {
  const Qos::ServicePolicyKey key{1, policyMap};
  const auto next = newServicePolicy(key);
  return {[&, key] { native.qosConfig->servicePolicyConfigDel(key); },
          [&, key, next] { native.qosConfig->servicePolicyConfigIs(key, next); }};
}
Change interfaceIsBound(const Native& native) {
  const auto policy = *native.qosConfig->servicePolicyConfig().find({1, policyMap});
  return {[=] { policy->intfIdsIs(ethernet2, true); }, [=] { policy->intfIdsDel(ethernet2); }};
}
Change interfaceIsUnbound(const Native& native) {
  const auto policy = *native.qosConfig->servicePolicyConfig().find({1, policyMap});
  return {[=] { policy->intfIdsDel(ethernet1); }, [=] { policy->intfIdsIs(ethernet1, true); }};
}

Change interfaceComes(const Native& native) {
  const auto made = newInterface(ethernet2);
  return {[&, made] { native.qosConfig->intfConfigIs(ethernet2, made); },
          [&] { native.qosConfig->intfConfigDel(ethernet2); }};
}
Change interfaceGoes(const Native& native) {
  const auto next = newInterface(ethernet1);
  return {[&] { native.qosConfig->intfConfigDel(ethernet1); },
          [&, next] { native.qosConfig->intfConfigIs(ethernet1, next); }};
}
Change txQueueComes(const Native& native) {
  const auto made = newQueue(5);
  return {[&, made] { interface(native, ethernet3).txQueueConfigIs(unicast(5), made); },
          [&] { interface(native, ethernet3).txQueueConfigDel(unicast(5)); }};
}
Change txQueueGoes(const Native& native) {
  const auto next = newQueue(3);
  return {[&] { interface(native, ethernet1).txQueueConfigDel(unicast(3)); },
          [&, next] { interface(native, ethernet1).txQueueConfigIs(unicast(3), next); }};
}
Change bandwidthChanges(const Native& native) {
  return {[&] { queue(native).bandwidthIs(Qos::Percent{60}); },
          [&] { queue(native).bandwidthIs(Qos::Percent{20}); }};
}
Change ecnChanges(const Native& native) {
  const auto made = newThresholds();
  const auto old = queue(native).ecnConfig();
  return {[&, made] { queue(native).ecnConfigIs(made); },
          [&, old] { queue(native).ecnConfigIs(old); }};
}
Change portIsReplaced(const Native& native) {
  const auto made = Rok::make<Pfc::PortConfig>(std::uint8_t{255});
  const auto old = interface(native, ethernet1).pfcPortConfig();
  return {[&, made] { interface(native, ethernet1).pfcPortConfigIs(made); },
          [&, old] { interface(native, ethernet1).pfcPortConfigIs(old); }};
}
Change prioritiesChange(const Native& native) {
  const auto port = interface(native, ethernet1).pfcPortConfig();
  return {[=] { port->prioritiesIs(17); }, [=] { port->prioritiesIs(8); }};
}
Change watchdogChanges(const Native& native) {
  return {[&] { native.qosConfig->pfcWatchdogPrioritiesIs(200); },
          [&] { native.qosConfig->pfcWatchdogPrioritiesIs(24); }};
}

Change profileComes(const Native& native, const Rok::String& name) {
  const auto made = newProfile(name);
  return {[&, name, made] { native.qosProfiles->configIs(name, made); },
          [&, name] { native.qosProfiles->configDel(name); }};
}
Change managementProfileComes(const Native& native) {
  return profileComes(native, otherProfileName);
}
Change policyProfileComes(const Native& native) { return profileComes(native, policyProfileName); }
Change profileGoes(const Native& native) {
  const auto next = newProfile(profileName);
  return {[&] { native.qosProfiles->configDel(profileName); },
          [&, next] { native.qosProfiles->configIs(profileName, next); }};
}
Change profileBodyIsReplaced(const Native& native) {
  // Of another tx queue: one under the same key would be refused.
  const auto made = Rok::make<Qos::QosProfile>();
  const auto settings = newQueue(0, Qos::multicast);
  made->txQueueConfigIs(settings->txQueue(), settings);
  const auto old = profile(native).qosProfile();
  return {[&, made] { profile(native).qosProfileIs(made); },
          [&, old] { profile(native).qosProfileIs(old); }};
}
Change profileTxQueueComes(const Native& native) {
  const auto body = profile(native).qosProfile();
  const auto made = newQueue(7);  // which no profile reads
  return {[=] { body->txQueueConfigIs(made->txQueue(), made); },
          [=] { body->txQueueConfigDel(made->txQueue()); }};
}
Change wredChanges(const Native& native) {
  const auto queue = *profile(native).qosProfile()->txQueueConfig().find(unicast(0));
  const auto made = newThresholds();
  const auto old = queue->wredConfig();
  return {[=] { queue->wredConfigIs(made); }, [=] { queue->wredConfigIs(old); }};
}

Change commentComes(const Native& native, const char* key, const char* comment) {
  const Rok::String name(key);
  const Rok::String text(comment);
  const Rok::String old = native.cliConfig->comment(name);
  return {[&, name, text] { native.cliConfig->commentIs(name, text); },
          [&, name, old] {
            if (old.empty()) return native.cliConfig->commentDel(name);
            native.cliConfig->commentIs(name, old);
          }};
}
Change attachmentComes(const Native& native) {
  return commentComes(native, "if-Et3-uc-txq-1",
                      R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"other"},)"
                      R"("queue-management-profile":{"name":"other"}}})");
}
Change attachmentGoes(const Native& native) {
  return commentComes(native, "if-Et1-uc-txq-3", "nothing of ours");
}
Change schedulersCome(const Native& native) {
  return commentComes(native, "qos-profile-__YANG_SP_[fair]",
                      R"({"MetaData-OpenConfig":{"2":{"priority":"STRICT",)"
                      R"("one-rate-two-color":{"cir":9},"inputs":{"j":{"weight":3},"k":{}}}}})");
}

Change queueNameComes(const Native& native) {
  const auto map = native.qosConfig->queueNameToTxQueueIdMap();
  const Qos::QueueName name{"silver"};
  return {[=] { map->queueNameToTxQueueIdIs(name, Qos::TxQueueId{1}); },
          [=] { map->queueNameToTxQueueIdDel(name); }};
}
Change queueNamesAreReplaced(const Native& native) {
  const auto made = Rok::make<Qos::QueueNameToTxQueueIdMap>();
  made->queueNameToTxQueueIdIs(Qos::QueueName{"brass"}, Qos::TxQueueId{3});
  const auto old = native.qosConfig->queueNameToTxQueueIdMap();
  return {[&, made] { native.qosConfig->queueNameToTxQueueIdMapIs(made); },
          [&, old] { native.qosConfig->queueNameToTxQueueIdMapIs(old); }};
}

// The DSCPs of a term are those of all rules of which its machine was notified.
constexpr Event table[] = {
    {"AClassMapComes", classMapComes, false},
    {"AClassMapGoes", classMapGoes},
    {"AMatchStatementComes", matchComes},
    {"AnAclComes", aclComes, false},
    {"AnAclGoes", aclGoes},
    {"TheRulesOfAnAclAreReplaced", rulesAreReplaced},
    {"ARuleComes", ruleComes, false},
    {"APolicyMapComes", policyMapComes},
    {"APolicyMapGoes", policyMapGoes},
    {"AClassComes", classComes},
    {"AClassGoes", classGoes},
    {"AnActionComes", actionComes},
    {"AnActionGoes", actionGoes},
    {"AnActionChanges", actionChanges},
    {"AMapTypeComes", mapTypeComes},
    {"AGroupNameComes", groupNameComes},
    {"AGroupNameMoves", groupNameMoves},
    {"AGroupNameGoes", groupNameGoes},
    {"TheGroupNamesAreReplaced", groupNamesAreReplaced},
    {"ATrafficClassMoves", trafficClassMoves},
    {"AServicePolicyComes", servicePolicyComes},
    {"AServicePolicyGoes", servicePolicyGoes},
    {"AnInterfaceIsBound", interfaceIsBound},
    {"AnInterfaceIsUnbound", interfaceIsUnbound},
    {"AnInterfaceComes", interfaceComes},
    {"AnInterfaceGoes", interfaceGoes},
    {"ATxQueueComes", txQueueComes},
    {"ATxQueueGoes", txQueueGoes},
    {"ABandwidthChanges", bandwidthChanges},
    {"EcnSettingsChange", ecnChanges},
    {"APortRecordIsReplaced", portIsReplaced},
    {"PrioritiesChange", prioritiesChange},
    {"TheWatchdogChanges", watchdogChanges},
    {"AManagementProfileComes", managementProfileComes},
    {"APolicyProfileComes", policyProfileComes},
    {"AProfileGoes", profileGoes},
    {"TheBodyOfAProfileIsReplaced", profileBodyIsReplaced},
    {"ATxQueueOfAProfileComes", profileTxQueueComes},
    {"WredSettingsChange", wredChanges},
    {"AnAttachmentComes", attachmentComes},
    {"AnAttachmentGoes", attachmentGoes},
    {"SchedulersCome", schedulersCome},
    {"AQueueNameComes", queueNameComes},
    {"TheQueueNamesAreReplaced", queueNamesAreReplaced},
};

}  // namespace

std::ostream& operator<<(std::ostream& out, const Event& event) { return out << event.name; }

std::span<const Event> events() { return table; }

Change prepared(const host::Native& native, std::string_view name) {
  const auto* found = std::find_if(std::begin(table), std::end(table),
                                   [&](const Event& event) { return event.name == name; });
  return found->prepare(native);
}

}  // namespace support
