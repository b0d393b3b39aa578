// What the root of service policies sweeps at its start, and what one that comes later sweeps.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSm.h"
#include "tests/support/ServicePolicyDevice.h"
#include "tests/support/ServicePolicyFixture.h"
#include "tests/support/TraceCapture.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::interfaceClassifierSweepTest {
namespace {

using support::BindingModel;
using support::intf;
using support::ServicePolicyDevice;
using support::TraceCapture;
using support::WalkOrder;
using testing::SizeIs;

using namespace support::servicePolicyCases;

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

}  // namespace
}  // namespace QosOc::interfaceClassifierSweepTest
