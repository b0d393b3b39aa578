#include "host/Roots.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostDevice.h"

namespace host::rootsTest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Roots, ComeInOneOrder) {
  std::vector<std::string_view> names;
  for (const Root& root : roots()) names.push_back(root.name);
  EXPECT_THAT(names, ElementsAre("class-map", "acl", "class-action", "interface-classifier",
                                 "forwarding-group", "queue", "pfc", "interface-pfc",
                                 "queue-management", "scheduler-policy"));
}

TEST(Roots, AreFoundByName) {
  ASSERT_NE(rootNamed("class-map"), nullptr);
  EXPECT_NE(rootNamed("class-map")->factory, nullptr);
  EXPECT_NE(rootNamed("acl"), nullptr);
  EXPECT_EQ(rootNamed("class-maps"), nullptr);
}

// A native side on which the roots have something to write each.
void mountAll(const Native& native) {
  const Rok::String name("__yang_[c]_[t]");
  const auto classMap = Rok::make<Qos::ClassMapConfig>(name, Qos::mapQos);
  classMap->matchIs(Qos::matchIpAccessGroup, Rok::make<Qos::ClassMapMatch>());
  (*native.aclConfig->cmapType().find(Qos::mapQos))->cmapIs(name, classMap);

  const auto rules = Rok::make<Acl::AclSubConfig>();
  Acl::IpRuleConfig rule;
  rule.filter.dscp = 46;
  rule.filter.matchDscp = true;
  const Umb::UniqueId id(1, 2, 3);
  rules->ipRuleByIdIs(id, rule);
  rules->ruleBySequenceIs(10, id);
  const auto acl = Rok::make<Acl::AclConfig>(name, Acl::aclTypeIpv4);
  acl->aclSubConfigIs(rules);
  (*native.acls->config().find(Acl::aclTypeIpv4))->aclIs(name, acl);

  const Qos::ForwardingGroupName group{"fg"};
  native.qosConfig->forwardingGroupNameToTcMap()->forwardingGroupNameToTcIs(group,
                                                                            Qos::TrafficClass{5});
  native.qosConfig->queueNameToTxQueueIdMap()->queueNameToTxQueueIdIs(Qos::QueueName{"q"},
                                                                      Qos::TxQueueId{3});
  native.qosConfig->tcToTxQueueMapIs(Qos::TrafficClass{5}, Qos::TxQueueId{3});

  native.qosConfig->pfcWatchdogTimeAIs(0.5);
  const auto port = Rok::make<Pfc::PortConfig>();
  port->prioritiesIs(8);
  const auto interface = Rok::make<Qos::IntfConfig>(Nerit::IntfId("Ethernet1"));
  interface->pfcPortConfigIs(port);
  const Qos::TxQueue txQueue{Qos::TxQueueId{3}, Qos::unicast};
  const auto settings = Rok::make<Qos::TxQueueConfig>(txQueue);
  settings->bandwidthIs(Qos::Percent{40});
  interface->txQueueConfigIs(txQueue, settings);
  native.qosConfig->intfConfigIs(interface->intfId(), interface);

  native.cliConfig->commentIs("if-Et1-uc-txq-3",
                              R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"s"},)"
                              R"("queue-management-profile":{"name":"p"}}})");
  for (const char* profileName : {"__YANG_QMP_[p]", "__YANG_SP_[s]"}) {
    const auto profile = Rok::make<Qos::QosProfileConfig>(profileName);
    const auto body = Rok::make<Qos::QosProfile>();
    const Qos::TxQueue first{Qos::TxQueueId{0}, Qos::unicast};
    body->txQueueConfigIs(first, Rok::make<Qos::TxQueueConfig>(first));
    profile->qosProfileIs(body);
    native.qosProfiles->configIs(profile->name(), profile);
  }
}

struct Built {
  explicit Built(const Native& native, const std::vector<std::string>& names = {})
      : roots(buildRoots(names, native, model,
                         [this](const std::string& line) { reports.push_back(line); })) {}
  Model model;
  std::vector<std::string> reports;
  std::vector<Rok::Ptr<Rok::PtrInterface>> roots;
};

TEST(Roots, BringTheModelInLineWithTheNativeSide) {
  const Native native;
  mountAll(native);
  const Built built(native);
  EXPECT_EQ(built.roots.size(), 10u);
  EXPECT_THAT(built.reports, IsEmpty());
  const auto term = built.model.classifiers->classifier("c")->terms()->term("t");
  EXPECT_EQ(term.conditions->ipv4.dscp, std::uint8_t{46});
  EXPECT_TRUE(built.model.queues->q("q"));
  EXPECT_EQ(built.model.forwardingGroups->forwardingGroup("fg")->config().outputQueue, "q");
  EXPECT_EQ(built.model.pfc->watchdog().timeA, 0.5);
  const auto& output = built.model.interfaces->interface("Ethernet1")->output();
  EXPECT_EQ(output->pfc().priorities, "8");
  EXPECT_EQ(output->queues()->q("q").config.queueManagementProfile, "p");
  EXPECT_EQ(output->schedulerPolicy()->config.name, "s");
  EXPECT_TRUE(built.model.queueManagementProfiles->queueManagementProfile("p"));
  EXPECT_TRUE(built.model.schedulerPolicies->schedulerPolicy("s"));
}

TEST(Roots, ShowTheSettingsOfAQueueOfWhichNoCommentSpeaks) {
  const Native native;
  mountAll(native);
  native.cliConfig->commentDel("if-Et1-uc-txq-3");
  const Built built(native);
  EXPECT_EQ(built.model.queues->q("Ethernet1-unicast-3").config.bandwidth, QosOc::PercentType(40));
}

TEST(Roots, WriteActionsAndBindings) {
  const Native native;
  mountAll(native);
  const Rok::String classMap("__yang_[c]_[t]");
  const Rok::String policyMap("__yang_[IPV4__c]");
  const auto setTc = Rok::make<Qos::Action>(Qos::actionSetTc);
  setTc->valueIs(5);
  const auto actions = Rok::make<Qos::ClassAction>(classMap);
  actions->policyActionIs(Qos::actionSetTc, setTc);
  const auto policy = Rok::make<Qos::PolicyMapConfig>(policyMap);
  policy->classActionIs(classMap, actions);
  const auto policies = Rok::make<Qos::Input::PolicyMapTypeConfig>(Qos::mapQos);
  policies->pmapIs(policyMap, policy);
  native.aclConfig->pmapTypeIs(Qos::mapQos, policies);
  const Qos::ServicePolicyKey key{1, policyMap};
  const auto service = Rok::make<Qos::ServicePolicyConfig>(key);
  service->intfIdsIs(Nerit::IntfId("Ethernet1"), true);
  native.qosConfig->servicePolicyConfigIs(key, service);

  const Built built(native);
  EXPECT_THAT(built.reports, IsEmpty());
  const auto term = built.model.classifiers->classifier("c")->terms()->term("t");
  EXPECT_EQ(term.actions->config.targetGroup, "fg");
  const auto& input = built.model.interfaces->interface("Ethernet1")->input();
  EXPECT_EQ(input->classifiers()->classifier(QosOc::Classifier::classifierTypeIpv4).config.name,
            "c");
}

TEST(Roots, AreBuiltByNameInTheOrderOfTheTable) {
  const Native native;
  mountAll(native);
  const Built one(native, {"forwarding-group"});
  EXPECT_EQ(one.roots.size(), 1u);
  EXPECT_FALSE(one.model.classifiers->classifier("c"));
  EXPECT_TRUE(one.model.forwardingGroups->forwardingGroup("fg"));
  // Built first, the class-map root would find the classifier of the ACLs and sweep it.
  const Built two(native, {"acl", "class-map"});
  EXPECT_EQ(two.roots.size(), 2u);
  EXPECT_TRUE(two.model.classifiers->classifier("c"));
}

TEST(Roots, ThatThrowAreReportedAndLeftOut) {
  const Native native;
  native.aclConfig->cmapTypeDel(Qos::mapQos);
  native.qosConfig->forwardingGroupNameToTcMap()->forwardingGroupNameToTcIs(
      Qos::ForwardingGroupName{"fg"}, Qos::TrafficClass{17});
  const Built built(native);
  EXPECT_EQ(built.roots.size(), 8u);
  EXPECT_THAT(built.reports,
              ElementsAre("root class-map: null argument: cmapTypeConfig",
                          "root forwarding-group: range: cannot access index 17 of an array with "
                          "size 17 at /forwarding-groups/fg"));
}

}  // namespace
}  // namespace host::rootsTest
