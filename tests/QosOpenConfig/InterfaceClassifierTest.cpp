// Service policies into the classifiers of interfaces.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSm.h"
#include "tests/support/Refusals.h"
#include "tests/support/ServicePolicyDevice.h"
#include "tests/support/ServicePolicyFixture.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::interfaceClassifierTest {
namespace {

using support::BindingModel;
using support::intf;
using support::reinstantiating;
using support::ServicePolicyDevice;
using support::TraceCapture;
using testing::IsEmpty;

using namespace support::servicePolicyCases;

const auto v4 = Classifier::classifierTypeIpv4;
const auto v6 = Classifier::classifierTypeIpv6;

// ===== Binding

TEST_F(ServicePolicyEvents, EachFamilyOfThePolicyMapsNameGetsItsEntry) {
  add(mapA, {"Ethernet1"});
  add(mapB, {"Ethernet2"});
  add(mapAB, {"Ethernet3"});
  EXPECT_EQ(
      model(),
      (BindingModel{{"Ethernet1", "v4 a"}, {"Ethernet2", "v6 b"}, {"Ethernet3", "v4 a v6 b"}}));
}

TEST_F(ServicePolicyEvents, AnInterfaceHoldsItsIdAndEachEntryItsNameAndTypeTwice) {
  add(mapAB, {"Ethernet1"});
  const auto interface = interfaces->interface("Ethernet1");
  EXPECT_EQ(interface->config().interfaceId, "Ethernet1");
  const auto classifiers = interface->input()->classifiers();
  for (const auto& [type, name] : {std::pair{v4, "a"}, std::pair{v6, "b"}}) {
    const Config::InterfaceInputClassifier entry = classifiers->classifier(type);
    EXPECT_EQ(entry.type, type);
    EXPECT_EQ(entry.config.name, name);
    EXPECT_EQ(entry.config.type, type);
  }
  EXPECT_EQ(interface->output(), nullptr);
}

TEST_F(ServicePolicyEvents, InterfacesAreKnownByTheirLongNames) {
  add(mapA, {"Ethernet7/1", "Port-Channel3"});
  EXPECT_EQ(model(), (BindingModel{{"Ethernet7/1", "v4 a"}, {"Port-Channel3", "v4 a"}}));
}

TEST_F(ServicePolicyEvents, AServicePolicyOfAnOrdinaryPolicyMapHasNoMachineAndTouchesNothing) {
  for (const char* name :
       {"plain", "", "__yang_[IPV6__b][IPV4__a]", "__yang_[IPV4__a]_[IPV6__b]"}) {
    add(name, {"Ethernet1"})->intfIdsIs(intf("Ethernet2"), true);
    EXPECT_EQ(root->servicePolicySm().members(), 0u) << name;
    remove(name);
  }
  EXPECT_EQ(model(), BindingModel{});
}

TEST_F(ServicePolicyEvents, TheBareNameHasAMachineAndGivesItsInterfacesEmptyClassifiers) {
  const auto bare = add("__yang_", {"Ethernet1"});
  EXPECT_NE(machine("__yang_"), nullptr);
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "empty"}}));
  bare->intfIdsDel(intf("Ethernet1"));
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "no input"}}));
}

TEST_F(ServicePolicyEvents, AnInterfaceThatComesLaterIsBoundAndOneThatGoesIsUnbound) {
  const auto policy = add(mapAB, {"Ethernet1"});
  policy->intfIdsIs(intf("Ethernet2"), true);
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "v4 a v6 b"}, {"Ethernet2", "v4 a v6 b"}}));
  policy->intfIdsDel(intf("Ethernet1"));
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "no input"}, {"Ethernet2", "v4 a v6 b"}}));
}

TEST_F(ServicePolicyEvents, AnEntryThatTurnsFalseIsUnboundAndOneThatTurnsTrueIsBound) {
  const auto policy = add(mapA, {"Ethernet1"});
  policy->intfIdsIs(intf("Ethernet1"), false);
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "no input"}}));
  policy->intfIdsIs(intf("Ethernet1"), true);
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "v4 a"}}));
  policy->intfIdsIs(intf("Ethernet2"), false);
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "v4 a"}}));
}

// The start reads the interfaces alone, not what their entries hold.
TEST_F(ServicePolicyEvents, AnEntryThatHoldsFalseIsBoundAtStart) {
  const auto policy = Rok::make<Qos::ServicePolicyConfig>(key(mapA));
  policy->intfIdsIs(intf("Ethernet1"), false);
  config->servicePolicyConfigIs(key(mapA), policy);
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "v4 a"}}));
  policy->intfIdsIs(intf("Ethernet2"), false);
  restart();
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "v4 a"}, {"Ethernet2", "v4 a"}}));
}

TEST_F(ServicePolicyEvents, ANewPolicyMapReplacesTheEntriesOfItsFamiliesOnly) {
  add(mapAB, {"Ethernet1"});
  add("__yang_[IPV4__c]", {"Ethernet1"});
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "v4 c v6 b"}}));
}

TEST_F(ServicePolicyEvents, BindingTouchesNoOutput) {
  const auto output = interfaces->interfaceIs("Ethernet1")->outputIs();
  output->pfcIs({"8"});
  const auto policy = add(mapA, {"Ethernet1"});
  policy->intfIdsDel(intf("Ethernet1"));
  EXPECT_EQ(interfaces->interface("Ethernet1")->output(), output);
  EXPECT_EQ(output->pfc(), (Config::IntfPfc{"8"}));
}

// ===== Unbinding

TEST_F(ServicePolicyEvents, ARemovedServicePolicyUnbindsItsInterfacesWhichStayWithTheirConfig) {
  add(mapA, {"Ethernet1", "Ethernet2"});
  remove(mapA);
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "no input"}, {"Ethernet2", "no input"}}));
  EXPECT_EQ(interfaces->interface("Ethernet1")->config().interfaceId, "Ethernet1");
  EXPECT_EQ(machine(mapA), nullptr);
}

TEST_F(ServicePolicyEvents, AnInterfaceThatHoldsAnotherPolicyMapsClassifierTooKeepsAll) {
  const auto a = add(mapA, {"Ethernet1"});
  add(mapB, {"Ethernet1"});
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "v4 a v6 b"}}));
  a->intfIdsDel(intf("Ethernet1"));
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "v4 a v6 b"}}));
  remove(mapB);
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "v4 a v6 b"}}));
}

TEST_F(ServicePolicyEvents, AnInterfaceThatHoldsAnotherNameKeepsIt) {
  const auto a = add(mapA, {"Ethernet1"});
  add("__yang_[IPV4__c]", {"Ethernet1"});
  a->intfIdsDel(intf("Ethernet1"));
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "v4 c"}}));
}

TEST_F(ServicePolicyEvents, AnInterfaceThatHoldsOneFamilyOfTwoKeepsIt) {
  add(mapAB, {"Ethernet1"});
  interfaces->interface("Ethernet1")->input()->classifiers()->classifierDel(v6);
  remove(mapAB);
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "v4 a"}}));
}

TEST_F(ServicePolicyEvents, AnIpv6EntryWithAnEmptyNameCountsAndAnIpv4OneDoesNot) {
  earlier("Ethernet1", "a", "");
  earlier("Ethernet2", "", "b");
  root->delIntfClassifiers("Ethernet1", mapA);
  root->delIntfClassifiers("Ethernet2", mapB);
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "v4 a v6 "}, {"Ethernet2", "v4 "}}));
}

TEST_F(ServicePolicyEvents, UnbindingCreatesNothing) {
  root->delIntfClassifiers("Ethernet1", mapA);
  interfaces->interfaceIs("Ethernet2");
  root->delIntfClassifiers("Ethernet2", mapA);
  interfaces->interfaceIs("Ethernet3")->inputIs();
  root->delIntfClassifiers("Ethernet3", mapA);
  EXPECT_EQ(model(), (BindingModel{{"Ethernet2", "no input"}, {"Ethernet3", "no classifiers"}}));
}

TEST_F(ServicePolicyEvents, EmptyClassifiersLoseTheirInputWhateverPolicyMapIsUnbound) {
  earlier("Ethernet1", nullptr);
  root->delIntfClassifiers("Ethernet1", mapA);
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "no input"}}));
}

TEST_F(ServicePolicyEvents, PrepareToDieUnbindsWhatTheServicePolicyStillHasAlsoWhatHoldsFalse) {
  const auto policy = add(mapA, {"Ethernet1", "Ethernet2"});
  root->addIntfClassifiers("Ethernet3", mapA);
  machine(mapA)->hasNotificationActiveIs(false);
  policy->intfIdsIs(intf("Ethernet1"), false);
  machine(mapA)->doPrepareToDie();
  EXPECT_EQ(
      model(),
      (BindingModel{{"Ethernet1", "no input"}, {"Ethernet2", "no input"}, {"Ethernet3", "v4 a"}}));
}

TEST_F(ServicePolicyEvents, ARemovedServicePolicyIsNotHeardAnyMore) {
  const auto policy = add(mapA, {"Ethernet1"});
  remove(mapA);
  policy->intfIdsIs(intf("Ethernet2"), true);
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "no input"}}));
  EXPECT_EQ(policy->notifieeList()->notifiees(), 0u);
}

TEST_F(ServicePolicyEvents, TheDeletionOfAServicePolicyWithoutAMachineHasNoEffect) {
  root->addIntfClassifiers("Ethernet1", mapA);
  root->handleServicePolicyConfig(key(mapA));
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "v4 a"}}));
}

// ===== Two service policies of one policy map

TEST_F(ServicePolicyEvents, TheSecondServicePolicyOfAPolicyMapIsRefused) {
  const auto first = add(mapA, {"Ethernet1"}, 1);
  EXPECT_EQ(reinstantiating([&] { add(mapA, {"Ethernet2"}, 2); }), "servicePolicyConfig 130");
  EXPECT_EQ(machine(mapA)->servicePolicyConfig(), first);
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "v4 a"}}));
}

// Children go by the policy map's name alone, so whichever of the two goes takes the one machine.
TEST_F(ServicePolicyEvents, TheDeletionOfTheRefusedServicePolicyUnbindsTheFirst) {
  add(mapA, {"Ethernet1"}, 1);
  EXPECT_EQ(reinstantiating([&] { add(mapA, {"Ethernet2"}, 2); }), "servicePolicyConfig 130");
  remove(mapA, 2);
  EXPECT_EQ(machine(mapA), nullptr);
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "no input"}}));
  restart();
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "v4 a"}}));
}

TEST_F(ServicePolicyEvents, TwoServicePoliciesOfAPolicyMapAtStartThrowOutOfTheFactory) {
  stop();
  add(mapA, {"Ethernet1"}, 1);
  add(mapA, {"Ethernet2"}, 2);
  EXPECT_EQ(reinstantiating([&] { start(); }), "servicePolicyConfig 130");
  EXPECT_EQ(config->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(Rok::AllocTrackTypeInfo::of<ServicePolicySm>().blocks(), 0u);
  EXPECT_EQ(Rok::AllocTrackTypeInfo::of<InterfaceClassifierKivToOcSm>().blocks(), 0u);
}

TEST_F(ServicePolicyEvents, TwoServicePoliciesOfAnOrdinaryPolicyMapAreNoneOfOurs) {
  add("plain", {"Ethernet1"}, 1);
  EXPECT_NO_THROW(add("plain", {"Ethernet2"}, 2));
}

// ===== Life

TEST(InterfaceClassifierLife, OtherAttributesOfTheConfigurationWakeNothing) {
  ServicePolicyDevice device;
  device.start();
  TraceCapture trace({2, 8});
  device.config->intfConfigIs(intf("Ethernet1"), Rok::make<Qos::IntfConfig>(intf("Ethernet1")));
  device.config->tcToTxQueueMapIs(1, 2);
  EXPECT_THAT(trace.lines(), IsEmpty());
}

// ===== Refusals

TEST_F(ServicePolicyEvents, ANullServicePolicyOfAnOrdinaryPolicyMapIsNoFault) {
  EXPECT_NO_THROW(config->servicePolicyConfigIs(key("plain"), nullptr));
  EXPECT_EQ(root->servicePolicySm().members(), 0u);
}

}  // namespace
}  // namespace QosOc::interfaceClassifierTest
