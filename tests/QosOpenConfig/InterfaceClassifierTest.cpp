// Service policies into the classifiers of interfaces.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSm.h"
#include "tests/support/Refusals.h"
#include "tests/support/ServicePolicyDevice.h"
#include "tests/support/TraceCapture.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::interfaceClassifierTest {
namespace {

using support::BindingModel;
using support::intf;
using support::reinstantiating;
using support::ServicePolicyDevice;
using support::TraceCapture;
using support::WalkOrder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

constexpr auto mapA = "__yang_[IPV4__a]";
constexpr auto mapB = "__yang_[IPV6__b]";
constexpr auto mapAB = "__yang_[IPV4__a][IPV6__b]";

const auto v4 = Classifier::classifierTypeIpv4;
const auto v6 = Classifier::classifierTypeIpv6;

struct ServicePolicyEvents : testing::Test, ServicePolicyDevice {
  ServicePolicyEvents() { start(); }
};

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

// ===== Start and restart

TEST(InterfaceClassifierStart, AStartTranslatesWhatExists) {
  ServicePolicyDevice device;
  device.add(mapAB, {"Ethernet1"});
  device.add(mapA, {"Ethernet2"});
  device.add("plain", {"Ethernet3"});
  device.start();
  EXPECT_EQ(device.model(), (BindingModel{{"Ethernet1", "v4 a v6 b"}, {"Ethernet2", "v4 a"}}));
}

TEST(InterfaceClassifierStart, AServicePolicyThatWentTakesABindingOfOneFamily) {
  ServicePolicyDevice device;
  device.earlier("Ethernet1", "a");
  device.earlier("Ethernet2", nullptr, "b");
  device.start();
  EXPECT_EQ(device.model(), (BindingModel{{"Ethernet1", "no input"}, {"Ethernet2", "no input"}}));
  EXPECT_EQ(device.interfaces->interface("Ethernet1")->config().interfaceId, "Ethernet1");
}

// The root builds a text with an underscore between the groups, which no policy map can bear.
TEST(InterfaceClassifierStart, AServicePolicyThatWentLeavesABindingOfBothFamilies) {
  ServicePolicyDevice device;
  device.add(mapAB, {"Ethernet1"});
  device.start();
  device.stop();
  device.remove(mapAB);
  device.start();
  EXPECT_EQ(device.model(), (BindingModel{{"Ethernet1", "v4 a v6 b"}}));
}

TEST(InterfaceClassifierStart,
     AnInterfaceThatWentFromItsServicePolicyIsUnboundFromOneFamilyOrBoth) {
  ServicePolicyDevice device;
  const auto a = device.add(mapA, {"Ethernet1", "Ethernet2"});
  const auto ab = device.add(mapAB, {"Ethernet3", "Ethernet4"});
  device.start();
  device.stop();
  a->intfIdsDel(intf("Ethernet1"));
  ab->intfIdsDel(intf("Ethernet3"));
  device.start();
  EXPECT_EQ(device.model(), (BindingModel{{"Ethernet1", "no input"},
                                          {"Ethernet2", "v4 a"},
                                          {"Ethernet3", "no input"},
                                          {"Ethernet4", "v4 a v6 b"}}));
}

TEST(InterfaceClassifierStart, ABindingThatAKnownServicePolicyExplainsStaysForItsMachine) {
  ServicePolicyDevice device;
  device.earlier("Ethernet1", "a");
  device.add(mapB);
  device.start();
  EXPECT_EQ(device.model(), (BindingModel{{"Ethernet1", "no input"}})) << "nothing explains it";
  device.earlier("Ethernet1", "a");
  device.add(mapA, {"Ethernet1"});
  device.restart();
  EXPECT_EQ(device.model(), (BindingModel{{"Ethernet1", "v4 a"}}));
}

TEST(InterfaceClassifierStart, TheNamesOfTwoPolicyMapsTogetherExplainNothing) {
  ServicePolicyDevice device;
  device.add(mapA);
  device.add(mapB);
  device.earlier("Ethernet1", "a", "b");
  device.earlier("Ethernet2", "a", "other");
  device.start();
  EXPECT_EQ(device.model(),
            (BindingModel{{"Ethernet1", "v4 a v6 b"}, {"Ethernet2", "v4 a v6 other"}}))
      << "not known, and not removable either";
}

TEST(InterfaceClassifierStart, EmptyClassifiersGoUnlessAServicePolicyHasTwoEmptyNames) {
  ServicePolicyDevice device;
  device.earlier("Ethernet1", nullptr);
  device.start();
  EXPECT_EQ(device.model(), (BindingModel{{"Ethernet1", "no input"}}));
  // An ordinary policy map decodes to two empty names, and the sweep knows that pair then.
  device.earlier("Ethernet1", nullptr);
  device.add("plain");
  device.restart();
  EXPECT_EQ(device.model(), (BindingModel{{"Ethernet1", "empty"}}));
  // A bare one has a machine, and that sweeps what it doesn't bind.
  device.add("__yang_", {"Ethernet2"});
  device.restart();
  EXPECT_EQ(device.model(), (BindingModel{{"Ethernet1", "no input"}, {"Ethernet2", "empty"}}));
}

TEST(InterfaceClassifierStart, InterfacesWithoutInputOrClassifiersArePassedBy) {
  ServicePolicyDevice device;
  device.interfaces->interfaceIs("Ethernet1");
  device.interfaces->interfaceIs("Ethernet2")->inputIs();
  device.add("__yang_");
  device.start();
  EXPECT_EQ(device.model(),
            (BindingModel{{"Ethernet1", "no input"}, {"Ethernet2", "no classifiers"}}));
}

TEST(InterfaceClassifierStart, NamesWithBracketsAreRebuiltAsTheyAre) {
  ServicePolicyDevice device;
  device.earlier("Ethernet1", "a[b");
  device.earlier("Ethernet2", nullptr, "c]d");
  device.start();
  EXPECT_EQ(device.model(), (BindingModel{{"Ethernet1", "no input"}, {"Ethernet2", "v6 c]d"}}))
      << "a closing bracket makes a text that decodes to nothing";
}

TEST(InterfaceClassifierStart, EntriesWithEmptyNamesOfAnEarlierLifeAreSweptAsTheyRead) {
  ServicePolicyDevice device;
  device.earlier("Ethernet1", "", nullptr);
  device.earlier("Ethernet2", nullptr, "");
  device.earlier("Ethernet3", "a", "");
  device.start();
  EXPECT_EQ(device.model(),
            (BindingModel{{"Ethernet1", "v4 "}, {"Ethernet2", "v6 "}, {"Ethernet3", "v4 a v6 "}}));
}

// ===== A service policy that comes later sweeps too

TEST_F(ServicePolicyEvents, ANewServicePolicyUnbindsTheInterfacesThatHoldItsNamesAndAreNotItsOwn) {
  root->addIntfClassifiers("Ethernet1", mapAB);
  root->addIntfClassifiers("Ethernet2", mapAB);
  root->addIntfClassifiers("Ethernet3", mapA);
  add(mapAB, {"Ethernet2"});
  EXPECT_EQ(
      model(),
      (BindingModel{{"Ethernet1", "no input"}, {"Ethernet2", "v4 a v6 b"}, {"Ethernet3", "v4 a"}}));
}

TEST_F(ServicePolicyEvents,
       ABindingThatTwoServicePoliciesMadeTogetherIsSweptByOneThatHasBothNames) {
  add(mapA, {"Ethernet1"});
  add(mapB, {"Ethernet1"});
  add(mapAB, {"Ethernet2"});
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "no input"}, {"Ethernet2", "v4 a v6 b"}}));
}

TEST_F(ServicePolicyEvents, ANewBareServicePolicyTakesTheInputOfInterfacesWithEmptyClassifiers) {
  root->addIntfClassifiers("Ethernet1", "plain");
  root->addIntfClassifiers("Ethernet2", mapA);
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "empty"}, {"Ethernet2", "v4 a"}}));
  add("__yang_");
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "no input"}, {"Ethernet2", "v4 a"}}));
}

TEST_F(ServicePolicyEvents, ARepeatedBindingIsFoundAfterwardsUnderItsLatestNamesOnly) {
  root->addIntfClassifiers("Ethernet1", mapA);
  root->addIntfClassifiers("Ethernet1", "__yang_[IPV4__c]");
  root->addIntfClassifiers("Ethernet1", "__yang_[IPV4__c]");
  add(mapA, {});
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "v4 c"}}));
  add("__yang_[IPV4__c]", {});
  EXPECT_EQ(model(), (BindingModel{{"Ethernet1", "no input"}}));
}

// Each stale interface is handled once, also when nothing can be taken from it.
TEST(InterfaceClassifierStart, TheMachinesSweepHandlesEachInterfaceOnceInAnyWalkOrder) {
  for (std::uint32_t seed = 0; seed < 20; ++seed) {
    const WalkOrder order(seed);
    ServicePolicyDevice device;
    for (int n = 0; n < 20; ++n) {
      device.earlier("Ethernet" + std::to_string(n), "", n % 2 == 0 ? "" : nullptr);
    }
    device.add("__yang_");
    const BindingModel before = device.model();
    TraceCapture trace({2});
    device.start();
    const auto lines = trace.linesWith("delIntfClassifiers");
    EXPECT_THAT(lines, SizeIs(20)) << "seed " << seed;
    EXPECT_THAT(std::set(lines.begin(), lines.end()), SizeIs(20));
    EXPECT_EQ(device.model(), before);
  }
}

TEST(InterfaceClassifierStart, SweepsOfManyInterfacesAreTheSameInAnyWalkOrder) {
  for (std::uint32_t seed = 0; seed < 10; ++seed) {
    const WalkOrder order(seed);
    ServicePolicyDevice device;
    BindingModel expected;
    const auto a = device.add(mapA);
    const auto ab = device.add(mapAB);
    for (int n = 0; n < 200; ++n) {
      const std::string name = "Ethernet" + std::to_string(n);
      const auto id = intf(name.c_str());
      std::string& bound = expected[name];
      switch (n % 5) {
        case 0:
          device.earlier(name, "a");
          bound = "no input";
          break;
        case 1:
          device.earlier(name, "a", "b");
          bound = "no input";
          break;
        case 2:
          device.earlier(name, "old");
          a->intfIdsIs(id, true);
          bound = "v4 a";
          break;
        case 3:
          device.earlier(name, "old");
          ab->intfIdsIs(id, true);
          bound = "v4 a v6 b";
          break;
        default:
          device.earlier(name, "old", "old6");
          bound = "v4 old v6 old6";
      }
    }
    device.start();
    EXPECT_EQ(device.model(), expected) << "seed " << seed;
    const auto later = device.add("__yang_[IPV4__old][IPV6__old6]");
    for (auto& [name, bound] : expected) {
      if (bound == "v4 old v6 old6") bound = "no input";
    }
    EXPECT_EQ(device.model(), expected) << "seed " << seed;
  }
}

// Without a service policy of its names, a binding of both families survives.
TEST(InterfaceClassifierStart, AmongManyBindingsAServicePolicyFindsThoseOfItsNamesInAnyWalkOrder) {
  for (std::uint32_t seed = 0; seed < 5; ++seed) {
    const WalkOrder order(seed);
    ServicePolicyDevice device;
    BindingModel expected;
    for (int n = 0; n < 100; ++n) {
      const std::string name = "Ethernet" + std::to_string(n);
      const std::string ipv4 = "c" + std::to_string(n);
      device.earlier(name, ipv4.c_str(), "six");
      expected[name] = n % 2 == 0 ? "no input" : "v4 " + ipv4 + " v6 six";
      if (n % 2 == 0) device.add("__yang_[IPV4__" + ipv4 + "][IPV6__six]");
    }
    device.start();
    EXPECT_EQ(device.model(), expected) << "seed " << seed;
  }
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

// ===== Traces

constexpr const char* decoder =
    "2 std::pair<Velmo::String, Velmo::String> QosOc::classifierGroupFromPmapName(const "
    "Velmo::String&): pmapName = ";
constexpr const char* root2 = "2 void QosOc::InterfaceClassifierKivToOcSm::";
constexpr const char* policy2 = "2 void QosOc::ServicePolicySm::";

TEST(InterfaceClassifierTrace, AStartTracesEachStepInOrderAtLevelTwo) {
  ServicePolicyDevice device;
  device.add(mapAB, {"Ethernet1"});
  TraceCapture trace({0, 2, 8, 9});
  device.start();
  EXPECT_THAT(
      trace.linesWithoutAddresses(),
      ElementsAre(
          root2 + std::string("handleInitialized() (  ) "),
          root2 +
              std::string("handleServicePolicyConfig(const Qos::ServicePolicyKey&): pmapName = ") +
              mapAB,
          policy2 + std::string("handleInitialized(): pmapName = ") + mapAB,
          root2 + std::string("addIntfClassifiers(const Velmo::String&, const Velmo::String&): "
                              "interfaceId = Ethernet1"),
          decoder + std::string(mapAB),
          "2 QosOc::Config::InterfaceInputClassifier "
          "QosOc::InterfaceClassifierKivToOcSm::getIntfClassifier(const Velmo::String&, "
          "QosOc::Classifier::Type) const, classifierName = a, classifierType = classifierTypeIpv4",
          "2 QosOc::Config::InterfaceInputClassifier "
          "QosOc::InterfaceClassifierKivToOcSm::getIntfClassifier(const Velmo::String&, "
          "QosOc::Classifier::Type) const, classifierName = b, classifierType = classifierTypeIpv6",
          decoder + std::string(mapAB), decoder + std::string(mapAB)));
  EXPECT_THAT(trace.handles(), testing::Each("OpenConfigQos"));
}

TEST_F(ServicePolicyEvents, AnUnboundInterfaceTracesEachFamilyAtLevelEightInTypeOrder) {
  const auto policy = add(mapAB, {"Ethernet1"});
  TraceCapture trace({0, 2, 8, 9});
  policy->intfIdsDel(intf("Ethernet1"));
  const auto deletion = [](const char* type) {
    return std::string(
               "8 void QosOc::InterfaceClassifierKivToOcSm::delIntfClassifiers(const "
               "Velmo::String&, const Velmo::String&), deleting the classifier of type: ") +
           type + " from intf = Ethernet1";
  };
  EXPECT_THAT(
      trace.linesWithoutAddresses(),
      ElementsAre(policy2 + std::string("handleIntfId(const Nerit::IntfId&): intfId = Ethernet1"),
                  root2 + std::string("delIntfClassifiers(const Velmo::String&, const "
                                      "Velmo::String&): interfaceId = Ethernet1"),
                  decoder + std::string(mapAB), deletion("classifierTypeIpv4"),
                  deletion("classifierTypeIpv6")));
}

TEST_F(ServicePolicyEvents, UnbindingFromAnInterfaceThatIsNotThereTracesTheEntryAlone) {
  TraceCapture trace({0, 2, 8, 9});
  root->delIntfClassifiers("Ethernet1", mapA);
  EXPECT_THAT(trace.lines(), SizeIs(1));
}

TEST_F(ServicePolicyEvents, ABindingThatStaysTracesNoDeletion) {
  add("__yang_[IPV4__c]", {"Ethernet1"});
  TraceCapture trace({0, 2, 8, 9});
  root->delIntfClassifiers("Ethernet1", mapA);
  EXPECT_THAT(trace.lines(), SizeIs(2)) << "entry and decoder";
}

TEST_F(ServicePolicyEvents, ARemovedServicePolicyTracesItsPrepareToDie) {
  add(mapA, {});
  TraceCapture trace({0, 2, 8, 9});
  remove(mapA);
  EXPECT_THAT(
      trace.linesWithoutAddresses(),
      ElementsAre(root2 +
                      std::string("handleServicePolicyConfig(const Qos::ServicePolicyKey&): "
                                  "pmapName = ") +
                      mapA,
                  policy2 + std::string("doPrepareToDie(): pmapName = ") + mapA));
}

TEST_F(ServicePolicyEvents, AnOrdinaryPolicyMapTracesTheEntryAlone) {
  TraceCapture trace({0, 2, 8, 9});
  add("plain", {"Ethernet1"});
  EXPECT_THAT(trace.lines(), ElementsAre(testing::HasSubstr(": pmapName = plain")));
}

TEST(InterfaceClassifierTrace, TheRootsSweepHandsOverTheTextThatItBuilds) {
  ServicePolicyDevice device;
  device.earlier("Ethernet1", "a", "b");
  device.earlier("Ethernet2", "a");
  device.earlier("Ethernet3", nullptr, "b");
  device.earlier("Ethernet4", nullptr);
  TraceCapture trace({2});
  device.start();
  EXPECT_THAT(trace.linesWith("classifierGroupFromPmapName"),
              UnorderedElementsAre(decoder + std::string("__yang_[IPV4__a]_[IPV6__b]"),
                                   decoder + std::string("__yang_[IPV4__a]"),
                                   decoder + std::string("__yang_[IPV6__b]"),
                                   decoder + std::string("__yang")));
}

TEST(InterfaceClassifierTrace, TheSweepsPassByWhatIsExplained) {
  ServicePolicyDevice device;
  device.add(mapA, {"Ethernet1"});
  device.earlier("Ethernet1", "a");
  device.interfaces->interfaceIs("Ethernet2");
  TraceCapture trace({2});
  device.start();
  EXPECT_THAT(trace.linesWith("delIntfClassifiers"), IsEmpty());
}

TEST_F(ServicePolicyEvents, OnlyTheLevelsTwoAndEightAreUsedAndEightTellsOfDeletionsAlone) {
  TraceCapture trace({0, 1, 3, 4, 5, 6, 7, 8, 9});
  add(mapAB, {"Ethernet1"});
  add("plain", {"Ethernet1"});
  EXPECT_THAT(trace.lines(), IsEmpty());
  remove(mapAB);
  EXPECT_THAT(trace.lines(), SizeIs(2));
  EXPECT_THAT(trace.lines(), testing::Each(testing::HasSubstr("deleting the classifier of type")));
}

// ===== Oracles

// A model of the rules without an index: every sweep walks all interfaces.
class Reference {
 public:
  using Pair = std::pair<std::string, std::string>;

  explicit Reference(BindingModel model) : bound_(std::move(model)) {}
  const BindingModel& model() const { return bound_; }

  void add(const std::string& id, const Pair& names) {
    Pair now = bound_.contains(id) ? read(bound_[id]) : Pair();
    if (!names.first.empty()) now.first = names.first;
    if (!names.second.empty()) now.second = names.second;
    bound_[id] = text(now);
  }
  void del(const std::string& id, const Pair& names) {
    if (!bound_.contains(id) || bound_[id] == "no input") return;
    if (read(bound_[id]) == names || read(bound_[id]) == Pair()) bound_[id] = "no input";
  }
  // A new machine: binds its interfaces, then takes from all others that hold its names.
  void start(const Pair& names, const std::vector<std::string>& ids) {
    for (const auto& id : ids) add(id, names);
    for (const auto& [id, bindings] : BindingModel(bound_)) {
      if (bindings == "no input" || read(bindings) != names) continue;
      if (std::ranges::find(ids, id) == ids.end()) del(id, names);
    }
  }

 private:
  static Pair read(const std::string& bindings) {
    Pair names;
    if (const auto at = bindings.find("v4 "); at != std::string::npos) {
      names.first = bindings.substr(at + 3, 1);
    }
    if (const auto at = bindings.find("v6 "); at != std::string::npos) {
      names.second = bindings.substr(at + 3, 1);
    }
    return names;
  }
  static std::string text(const Pair& names) {
    std::string result = names.first.empty() ? "" : "v4 " + names.first;
    if (!names.second.empty()) result += (result.empty() ? "v6 " : " v6 ") + names.second;
    return result.empty() ? "empty" : result;
  }

  BindingModel bound_;
};

// The device and the reference side by side.
class RandomDay : public ServicePolicyDevice {
 public:
  explicit RandomDay(std::uint32_t seed) : events_(seed), reference_(BindingModel{}) { start(); }

  void event() {
    const Reference::Pair& names = pairs()[events_() % pairs().size()];
    const Rok::String pmap = name(names);
    const std::string id = "Ethernet" + std::to_string(events_() % 4);
    const auto* policy = config->servicePolicyConfig().find(key(pmap));
    if (policy == nullptr) {
      add(pmap, {id.c_str(), "Ethernet1"});
      reference_.start(names, {id, "Ethernet1"});
    } else if (const unsigned what = events_() % 5; what == 0) {
      std::vector<std::string> ids;
      for (auto i = (*policy)->intfIds().iterator(); i; ++i) {
        ids.emplace_back(std::string_view(i.key().stringValue()));
      }
      remove(pmap);
      for (const auto& gone : ids) reference_.del(gone, names);
    } else {
      change(*policy, names, id, what);
    }
  }
  void expectAsTheReference() const { EXPECT_EQ(model(), reference_.model()); }

  static Rok::String name(const Reference::Pair& names) {
    std::string result = "__yang_";
    if (!names.first.empty()) result += "[IPV4__" + names.first + "]";
    if (!names.second.empty()) result += "[IPV6__" + names.second + "]";
    return result;
  }

 private:
  static const std::vector<Reference::Pair>& pairs() {
    static const std::vector<Reference::Pair> all = {{"a", ""}, {"", "b"}, {"a", "b"},
                                                     {"c", ""}, {"", ""},  {"c", "b"}};
    return all;
  }
  void change(const Rok::Ptr<Qos::ServicePolicyConfig>& policy, const Reference::Pair& names,
              const std::string& id, unsigned what) {
    const auto intfId = intf(id.c_str());
    const bool* had = policy->intfIds().find(intfId);
    const bool wants = what > 2;
    if (what == 1) {
      if (had == nullptr) return;
      policy->intfIdsDel(intfId);
    } else {
      if (had != nullptr && *had == wants) return;
      policy->intfIdsIs(intfId, wants);
    }
    if (what > 2) {
      reference_.add(id, names);
    } else {
      reference_.del(id, names);
    }
  }

  std::mt19937 events_;
  Reference reference_;
};

TEST(InterfaceClassifierOracle, RandomDaysGoAsAModelThatWalksAllInterfacesSays) {
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    for (const std::uint32_t walk : {0u, seed}) {
      const WalkOrder order(walk);
      RandomDay day(seed);
      for (int step = 0; step < 200; ++step) {
        day.event();
        day.expectAsTheReference();
        if (testing::Test::HasFailure()) FAIL() << "seed " << seed << ", step " << step;
      }
    }
  }
}

// What a restart may change: entries that hold false are bound by it, bindings of two policy maps
// that overlap are written again in walk order, and what one family of a removed policy left is
// swept. So here the service policies share no interface and hold true alone, and a restart changes
// nothing.
TEST(InterfaceClassifierOracle, WithoutOverlapARestartChangesNothing) {
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    const WalkOrder order(seed);
    std::mt19937 events(seed);
    ServicePolicyDevice device;
    device.start();
    const std::vector<const char*> maps = {mapA, mapB, mapAB, "__yang_", "plain"};
    for (int step = 0; step < 100; ++step) {
      const std::size_t n = events() % maps.size();
      const std::string id = "Ethernet" + std::to_string(n) + "/" + std::to_string(events() % 3);
      const auto* policy = device.config->servicePolicyConfig().find(device.key(maps[n]));
      if (policy == nullptr) {
        device.add(maps[n], {id.c_str()});
      } else if (events() % 6 == 0) {
        device.remove(maps[n]);
      } else if (events() % 3 == 0) {
        (*policy)->intfIdsDel(intf(id.c_str()));
      } else {
        (*policy)->intfIdsIs(intf(id.c_str()), true);
      }
      const BindingModel live = device.model();
      device.restart();
      ASSERT_EQ(device.model(), live) << "seed " << seed << ", step " << step;
    }
  }
}

}  // namespace
}  // namespace QosOc::interfaceClassifierTest
