// The priority flow control of interfaces.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigPfcKivToOCSm.h"
#include "tests/support/PfcDevice.h"
#include "tests/support/TraceCapture.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::pfcInterfaceTest {
namespace {

using support::AtEachLine;
using support::PortDevice;
using support::PortModel;
using support::TraceCapture;
using support::WalkOrder;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

// ===== Ports: what comes

struct Ports : testing::Test, PortDevice {
  Ports() { start(); }
};

TEST_F(Ports, AnInterfaceThatArrivesWithAPortRecordIsWritten) {
  add("Ethernet1", 8);
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "8"}}));
}

TEST_F(Ports, AnInterfaceThatArrivesWithoutAPortRecordCreatesNothing) {
  add("Ethernet1");
  EXPECT_NE(machine("Ethernet1"), nullptr);
  EXPECT_EQ(model(), PortModel{});
}

TEST_F(Ports, AnInterfaceWithoutAPortRecordLeavesWhatItsOutputHolds) {
  earlier("Ethernet1", "aa");
  add("Ethernet1");
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "aa"}}));
}

TEST_F(Ports, APortRecordThatArrivesLaterIsWritten) {
  const auto intf = add("Ethernet1");
  intf->pfcPortConfigIs(port(0x80));
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "80"}}));
}

TEST_F(Ports, APortRecordReplacedByAnotherIsWrittenAndTheOldOneIsNotHeardAnyMore) {
  const auto old = port(8);
  const auto intf = add("Ethernet1", old);
  intf->pfcPortConfigIs(port(0x10));
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "10"}}));
  EXPECT_EQ(old->notifieeList()->notifiees(), 0u);
  old->prioritiesIs(9);
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "10"}}));
  intf->pfcPortConfig()->prioritiesIs(0x11);
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "11"}}));
}

TEST_F(Ports, AnotherPortRecordOfEqualPrioritiesIsWrittenToo) {
  const auto intf = add("Ethernet1", 8);
  earlier("Ethernet1", "tampered");
  intf->pfcPortConfigIs(port(8));
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "8"}}));
}

TEST_F(Ports, AChangeOfThePrioritiesIsWritten) {
  const auto intf = add("Ethernet1", 8);
  intf->pfcPortConfig()->prioritiesIs(0xff);
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "ff"}}));
  intf->pfcPortConfig()->prioritiesIs(1);
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "1"}}));
}

TEST_F(Ports, EveryValueOfThePrioritiesIsShownInHexadecimal) {
  const auto intf = add("Ethernet1", 255);
  for (unsigned value = 0; value < 256; ++value) {
    intf->pfcPortConfig()->prioritiesIs(static_cast<std::uint8_t>(value));
    EXPECT_EQ(interfaces->interface("Ethernet1")->output()->pfc().priorities,
              priorityConverter(static_cast<unsigned char>(value)));
  }
}

TEST_F(Ports, PrioritiesOfZeroAreTheDigitAndABlankedRecordIsTheEmptyText) {
  add("Ethernet1", std::uint8_t{0});
  queues("Ethernet1");
  const auto output = interfaces->interface("Ethernet1")->output();
  EXPECT_EQ(output->pfc().priorities, "0");
  EXPECT_TRUE(output->pfc());
  remove("Ethernet1");
  EXPECT_EQ(output->pfc().priorities, "");
  EXPECT_FALSE(output->pfc());
}

TEST_F(Ports, InterfacesAreKnownByTheirLongNames) {
  add("Ethernet7/1", 1);
  add("Port-Channel3", 3);
  EXPECT_EQ(model(), (PortModel{{"Ethernet7/1", "1"}, {"Port-Channel3", "3"}}));
}

TEST_F(Ports, AnInterfaceMadeHereHasNeitherConfigNorInput) {
  add("Ethernet1", 8);
  const auto interface = interfaces->interface("Ethernet1");
  EXPECT_EQ(interface->interfaceId(), "Ethernet1");
  EXPECT_FALSE(interface->config());
  EXPECT_EQ(interface->input(), nullptr);
  EXPECT_EQ(interface->output()->queues(), nullptr);
  EXPECT_FALSE(interface->output()->schedulerPolicy().has_value());
}

TEST_F(Ports, WritingKeepsWhatOthersHaveOnTheInterface) {
  const auto interface = interfaces->interfaceIs("Ethernet1");
  interface->configIs({"Ethernet1"});
  const auto input = interface->inputIs();
  queues("Ethernet1");
  policy("Ethernet1");
  const auto output = interface->output();
  add("Ethernet1", 8);
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "8 +queues +policy"}}));
  EXPECT_EQ(interfaces->interface("Ethernet1"), interface);
  EXPECT_EQ(interface->config().interfaceId, "Ethernet1");
  EXPECT_EQ(interface->input(), input);
  EXPECT_EQ(interface->output(), output);
}

TEST_F(Ports, AnOutputThatOthersRemovedIsMadeAgainByTheNextChange) {
  const auto intf = add("Ethernet1", 8);
  interfaces->interface("Ethernet1")->outputDel();
  intf->pfcPortConfig()->prioritiesIs(9);
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "9"}}));
}

TEST_F(Ports, EachInterfaceFollowsItsOwnPortRecord) {
  const auto one = add("Ethernet1", 1);
  const auto two = add("Ethernet2", 2);
  one->pfcPortConfig()->prioritiesIs(0x11);
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "11"}, {"Ethernet2", "2"}}));
  two->pfcPortConfigIs(port(0x22));
  remove("Ethernet1");
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "no output"}, {"Ethernet2", "22"}}));
}

TEST_F(Ports, OnePortRecordMayServeTwoInterfaces) {
  const auto shared = port(8);
  add("Ethernet1", shared);
  add("Ethernet2", shared);
  shared->prioritiesIs(9);
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "9"}, {"Ethernet2", "9"}}));
}

// ===== Ports: what goes

TEST_F(Ports, APortRecordThatGoesLeavesWhatItWroteAndIsNotHeardAnyMore) {
  const auto old = port(8);
  const auto intf = add("Ethernet1", old);
  intf->pfcPortConfigIs(nullptr);
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "8"}}));
  EXPECT_EQ(machine("Ethernet1")->pfcPortConfig(), nullptr);
  EXPECT_EQ(old->notifieeList()->notifiees(), 0u);
  old->prioritiesIs(9);
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "8"}}));
}

TEST_F(Ports, APortRecordThatWentAndComesBackIsWrittenAndHeardAgain) {
  const auto same = port(8);
  const auto intf = add("Ethernet1", same);
  intf->pfcPortConfigIs(nullptr);
  same->prioritiesIs(9);
  intf->pfcPortConfigIs(same);
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "9"}}));
  same->prioritiesIs(0xa);
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "a"}}));
}

TEST_F(Ports, ARemovedInterfaceTakesAnOutputInWhichNothingElseLivesAndStaysItself) {
  add("Ethernet1", 8);
  const auto interface = interfaces->interface("Ethernet1");
  remove("Ethernet1");
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "no output"}}));
  EXPECT_EQ(interfaces->interface("Ethernet1"), interface);
  EXPECT_EQ(machine("Ethernet1"), nullptr);
}

TEST_F(Ports, ARemovedInterfaceKeepsAnOutputWithQueues) {
  add("Ethernet1", 8);
  queues("Ethernet1");
  const auto output = interfaces->interface("Ethernet1")->output();
  remove("Ethernet1");
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "blank +queues"}}));
  EXPECT_EQ(interfaces->interface("Ethernet1")->output(), output);
}

TEST_F(Ports, ARemovedInterfaceKeepsAnOutputWithASchedulerPolicy) {
  add("Ethernet1", 8);
  policy("Ethernet1");
  remove("Ethernet1");
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "blank +policy"}}));
}

TEST_F(Ports, ARemovedInterfaceKeepsAnOutputWithBoth) {
  add("Ethernet1", 8);
  queues("Ethernet1");
  policy("Ethernet1");
  remove("Ethernet1");
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "blank +queues +policy"}}));
}

// Queues are never removed, so an empty collection of them holds the output too; an attachment of
// an empty name is an attachment.
TEST_F(Ports, EmptyQueuesAndANamelessAttachmentHoldTheOutputToo) {
  add("Ethernet1", 8);
  add("Ethernet2", 8);
  queues("Ethernet1");
  interfaces->interface("Ethernet2")
      ->output()
      ->schedulerPolicyIs(Config::InterfaceOutputSchedulerPolicy());
  remove("Ethernet1");
  remove("Ethernet2");
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "blank +queues"}, {"Ethernet2", "blank +policy"}}));
}

TEST_F(Ports, AnAttachmentThatWasClearedHoldsTheOutputNoLonger) {
  add("Ethernet1", 8);
  policy("Ethernet1");
  policyDel("Ethernet1");
  remove("Ethernet1");
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "no output"}}));
}

TEST_F(Ports, ARemovedInterfaceThatWasNeverWrittenCreatesNothing) {
  add("Ethernet1");
  remove("Ethernet1");
  EXPECT_EQ(model(), PortModel{});
}

TEST_F(Ports, ARemovedInterfaceWithoutAnOutputGetsNone) {
  const auto interface = interfaces->interfaceIs("Ethernet1");
  const auto input = interface->inputIs();
  add("Ethernet1");
  remove("Ethernet1");
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "no output"}}));
  EXPECT_EQ(interface->input(), input);
}

TEST_F(Ports, ARemovedInterfaceWhosePortRecordWentBeforeIsBlankedAndCleanedUpAllTheSame) {
  const auto one = add("Ethernet1", 8);
  const auto two = add("Ethernet2", 8);
  queues("Ethernet2");
  one->pfcPortConfigIs(nullptr);
  two->pfcPortConfigIs(nullptr);
  remove("Ethernet1");
  remove("Ethernet2");
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "no output"}, {"Ethernet2", "blank +queues"}}));
}

// The machine doesn't ask who made an output, only whether anything lives in it.
TEST_F(Ports, ARemovedInterfaceTakesAnEmptyOutputThatOthersMade) {
  add("Ethernet1");
  interfaces->interfaceIs("Ethernet1")->outputIs();
  remove("Ethernet1");
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "no output"}}));
}

TEST_F(Ports, RemovingAnInterfaceKeepsItsConfigAndInput) {
  const auto interface = interfaces->interfaceIs("Ethernet1");
  interface->configIs({"Ethernet1"});
  const auto input = interface->inputIs();
  add("Ethernet1", 8);
  remove("Ethernet1");
  EXPECT_EQ(interface->config().interfaceId, "Ethernet1");
  EXPECT_EQ(interface->input(), input);
}

TEST_F(Ports, ARemovedInterfaceIsNotHeardAnyMore) {
  const auto intf = add("Ethernet1", 8);
  const auto old = intf->pfcPortConfig();
  remove("Ethernet1");
  EXPECT_EQ(intf->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(old->notifieeList()->notifiees(), 0u);
  old->prioritiesIs(9);
  intf->pfcPortConfigIs(port(1));
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "no output"}}));
}

TEST_F(Ports, AnInterfaceThatComesBackIsWrittenAgain) {
  add("Ethernet1", 8);
  remove("Ethernet1");
  add("Ethernet1", 9);
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "9"}}));
}

TEST_F(Ports, TheDeletionOfAnInterfaceWithoutAMachineHasNoEffect) {
  earlier("Ethernet1", "8");
  root->handleIntfConfig(id("Ethernet1"));
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "8"}}));
}

TEST_F(Ports, PrepareToDieTakesBackWhatWasWrittenAndLeavesTheMachine) {
  add("Ethernet1", 8);
  machine("Ethernet1")->doPrepareToDie();
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "no output"}}));
  EXPECT_NE(machine("Ethernet1"), nullptr);
  machine("Ethernet1")->doPrepareToDie();
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "no output"}}));
}

// ===== The changing input

TEST_F(Ports, TheInputIsThePortRecordThatTheInterfaceHolds) {
  const auto intf = add("Ethernet1");
  EXPECT_EQ(machine("Ethernet1")->pfcPortConfig(), nullptr);
  intf->pfcPortConfigIs(port(8));
  EXPECT_EQ(machine("Ethernet1")->pfcPortConfig(), intf->pfcPortConfig());
  intf->pfcPortConfigIs(port(9));
  EXPECT_EQ(machine("Ethernet1")->pfcPortConfig(), intf->pfcPortConfig());
  intf->pfcPortConfigIs(nullptr);
  EXPECT_EQ(machine("Ethernet1")->pfcPortConfig(), nullptr);
  EXPECT_EQ(interfaceConfigSmFactory(nullptr, interfaces)->pfcPortConfig(), nullptr);
}

TEST_F(Ports, AnotherRecordInTheInputWritesWhatTheInterfaceHoldsAndNotWhatTheInputHolds) {
  const auto intf = add("Ethernet1", 8);
  earlier("Ethernet1", "tampered");
  const auto other = port(5);
  machine("Ethernet1")->pfcPortConfigIs(other);
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "8"}}));
  earlier("Ethernet1", "tampered");
  other->prioritiesIs(6);
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "8"}}));
}

TEST_F(Ports, AnotherRecordInTheInputOfAnInterfaceWithoutOneWritesNothing) {
  add("Ethernet1");
  TraceCapture trace({2});
  const auto other = port(5);
  machine("Ethernet1")->pfcPortConfigIs(other);
  other->prioritiesIs(6);
  EXPECT_EQ(model(), PortModel{});
  EXPECT_THAT(trace.lines(), ElementsAre("2 InterfaceConfigSm handlePfcPortConfig",
                                         "2 InterfaceConfigSm handlePfcPortConfig"));
}

TEST_F(Ports, TheSameRecordInTheInputIsNotHandledAgain) {
  const auto intf = add("Ethernet1", 8);
  TraceCapture trace({2});
  machine("Ethernet1")->pfcPortConfigIs(intf->pfcPortConfig());
  EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST_F(Ports, AReleasedInputIsDeafUntilTheNextRecord) {
  const auto intf = add("Ethernet1", 8);
  const auto old = intf->pfcPortConfig();
  machine("Ethernet1")->pfcPortConfigDel();
  EXPECT_EQ(machine("Ethernet1")->pfcPortConfig(), nullptr);
  old->prioritiesIs(9);
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "8"}}));
  intf->pfcPortConfigIs(port(0xa));
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "a"}}));
  intf->pfcPortConfig()->prioritiesIs(0xb);
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "b"}}));
}

// A handler that is called now may read the input, but is not yet among those that the record
// tells.
TEST_F(Ports, ANewRecordIsHandledAfterItIsSetAndBeforeItIsWatched) {
  const auto intf = add("Ethernet1");
  const auto next = port(8);
  {
    const AtEachLine trace(2, [&](std::string_view text) {
      EXPECT_EQ(text, "InterfaceConfigSm handlePfcPortConfig");
      EXPECT_EQ(machine("Ethernet1")->pfcPortConfig(), next);
      EXPECT_EQ(next->notifieeList()->notifiees(), 0u);
    });
    intf->pfcPortConfigIs(next);
    EXPECT_EQ(trace.lines(), 1u);
  }
  EXPECT_EQ(next->notifieeList()->notifiees(), 1u);
}

TEST_F(Ports, AnInputReleasedByAZombieHandlesTheNextRecordOfTheRevivedMachine) {
  add("Ethernet1", 8);
  const auto machine = this->machine("Ethernet1");
  machine->rokDoZombieReactors(true);
  machine->pfcPortConfigDel();
  machine->rokDoZombieReactors(false);
  interfaces->interface("Ethernet1")->outputDel();
  machine->pfcPortConfigIs(port(9));
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "8"}})) << "it writes what the interface holds";
}

TEST_F(Ports, AZombieHandlesNeitherAnotherRecordNorAChange) {
  const auto intf = add("Ethernet1", 8);
  const auto old = intf->pfcPortConfig();
  const auto sm = machine("Ethernet1");
  sm->rokDoZombieReactors(true);
  TraceCapture trace({2});
  old->prioritiesIs(9);
  intf->pfcPortConfigIs(port(0xa));
  const auto other = port(0xb);
  sm->pfcPortConfigIs(other);
  other->prioritiesIs(0xc);
  EXPECT_THAT(trace.lines(), IsEmpty());
  EXPECT_EQ(model(), (PortModel{{"Ethernet1", "8"}}));
}

// ===== Start and restart

TEST(PortsStart, AStartWritesWhatExists) {
  PortDevice device;
  device.add("Ethernet1", 1);
  device.add("Ethernet2");
  device.add("Ethernet3", 0x33);
  device.start();
  EXPECT_EQ(device.model(), (PortModel{{"Ethernet1", "1"}, {"Ethernet3", "33"}}));
  EXPECT_EQ(device.root->intfConfigSm().members(), 3u);
}

TEST(PortsStart, WhatIsConfiguredReplacesWhatAnEarlierLifeWroteAndAllElseStays) {
  PortDevice device;
  device.earlier("Ethernet1", "old");
  device.earlier("Ethernet2", "old");
  device.earlier("Ethernet3", "old");
  device.add("Ethernet1", 1);
  device.add("Ethernet2");
  device.start();
  EXPECT_EQ(device.model(),
            (PortModel{{"Ethernet1", "1"}, {"Ethernet2", "old"}, {"Ethernet3", "old"}}))
      << "an interface without a port record, and one that the native side no longer has";
}

TEST(PortsStart, AnInterfaceRemovedWhileNobodyWatchedKeepsItsRecord) {
  PortDevice device;
  device.add("Ethernet1", 1);
  device.start();
  device.stop();
  device.remove("Ethernet1");
  device.start();
  EXPECT_EQ(device.model(), (PortModel{{"Ethernet1", "1"}}));
}

// ===== Life

TEST_F(Ports, OtherAttributesWakeNothing) {
  const auto intf = add("Ethernet1", 8);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  config->pfcWatchdogTimeAIs(1);
  config->pfcWatchdogPrioritiesIs(1);
  config->tcToTxQueueMapIs(1, 2);
  const Qos::TxQueue queue{3, Qos::unicast};
  intf->txQueueConfigIs(queue, Rok::make<Qos::TxQueueConfig>(queue));
  EXPECT_THAT(trace.lines(), IsEmpty());
}

// ===== Traces

TEST(PortsTrace, AStartTracesEachInterfaceAndHandlesItsPortRecordTwice) {
  PortDevice device;
  device.add("Ethernet1", 8);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  device.start();
  EXPECT_THAT(trace.lines(), ElementsAre("2 IntfPfcKivToOCSm handleInitialized",
                                         "2 IntfPfcKivToOCSm handleIntfConfig: interface id = "
                                         "Ethernet1",
                                         "2 InterfaceConfigSm handlePfcPortConfig",
                                         "2 InterfaceConfigSm handlePfcPortConfig"));
  EXPECT_THAT(trace.handles(), Each("OpenConfigQos"));
}

TEST_F(Ports, AnInterfaceWithoutAPortRecordIsHandledOnce) {
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  add("Ethernet1");
  EXPECT_THAT(trace.lines(),
              ElementsAre("2 IntfPfcKivToOCSm handleIntfConfig: interface id = Ethernet1",
                          "2 InterfaceConfigSm handlePfcPortConfig"));
}

TEST_F(Ports, EachRecordAndEachChangeIsTracedOnceAndTheEndOfARecordNotAtAll) {
  const auto intf = add("Ethernet1");
  const std::vector<std::string> once = {"2 InterfaceConfigSm handlePfcPortConfig"};
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  intf->pfcPortConfigIs(port(8));
  EXPECT_EQ(trace.lines(), once) << "a record arrives";
  trace.clear();
  intf->pfcPortConfigIs(port(9));
  EXPECT_EQ(trace.lines(), once) << "a record is replaced";
  trace.clear();
  intf->pfcPortConfig()->prioritiesIs(8);
  EXPECT_EQ(trace.lines(), once) << "its priorities change";
  trace.clear();
  intf->pfcPortConfig()->prioritiesIs(8);
  intf->pfcPortConfigIs(nullptr);
  EXPECT_THAT(trace.lines(), IsEmpty()) << "an equal value, and the end";
}

TEST_F(Ports, ARemovedInterfaceTracesItsPrepareToDieAndOneWithoutAMachineItsEntryAlone) {
  add("Ethernet1", 8);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  remove("Ethernet1");
  EXPECT_THAT(trace.lines(),
              ElementsAre("2 IntfPfcKivToOCSm handleIntfConfig: interface id = Ethernet1",
                          "2 InterfaceConfigSm doPrepareToDie"));
  trace.clear();
  root->handleIntfConfig(id("Ethernet1"));
  EXPECT_THAT(trace.lines(),
              ElementsAre("2 IntfPfcKivToOCSm handleIntfConfig: interface id = Ethernet1"));
}

// ===== Oracles

// Random days told again by a few lines of plain maps. A restart changes nothing: what is
// configured is written as it stands, and what isn't stays.
TEST(PortsOracle, RandomDaysAgreeWithPlainMapsInAnyWalkOrder) {
  struct Interface {
    bool configured = false;
    std::optional<unsigned> port;
    bool known = false;
    std::optional<std::string> priorities;  // of an output that is there
    bool queues = false;
    bool policy = false;

    void write() {
      if (!configured || !port) return;
      std::ostringstream digits;
      digits << std::hex << *port;
      known = true;
      priorities = digits.str();
    }
    void removed() {
      if (!std::exchange(configured, false)) return;
      port.reset();
      if (!priorities) return;
      priorities = "blank";
      if (!queues && !policy) priorities.reset();
    }
    void shared(bool Interface::*what, bool v) {
      known = true;
      if (!priorities) priorities = "blank";
      this->*what = v;
    }
    std::string text() const {
      if (!priorities) return "no output";
      return *priorities + (queues ? " +queues" : "") + (policy ? " +policy" : "");
    }
  };
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    const WalkOrder walk(seed % 2 == 0 ? seed : 0);
    std::mt19937 random(seed);
    PortDevice device;
    device.start();
    std::map<std::string, Interface> expected;
    for (int step = 0; step < 200; ++step) {
      const std::string name = "Ethernet" + std::to_string(random() % 5);
      const auto priorities = static_cast<std::uint8_t>(random() % 256);
      Interface& interface = expected[name];
      const auto* found = device.config->intfConfig().find(PortDevice::id(name));
      const unsigned what = random() % 12;
      if (what == 0) {
        device.queues(name);
        interface.shared(&Interface::queues, true);
      } else if (what == 1) {
        device.policy(name);
        interface.shared(&Interface::policy, true);
      } else if (what == 2) {
        device.policyDel(name);
        interface.shared(&Interface::policy, false);
      } else if (found == nullptr) {
        const bool withPort = random() % 2 == 0;
        interface.configured = true;
        if (withPort) interface.port = priorities;
        device.add(name, withPort ? PortDevice::port(priorities) : nullptr);
        interface.write();
      } else if (what < 6) {
        device.remove(name);
        interface.removed();
      } else if (what < 8) {
        (*found)->pfcPortConfigIs(nullptr);
        interface.port.reset();
      } else if (what < 10 || !(*found)->pfcPortConfig()) {
        (*found)->pfcPortConfigIs(PortDevice::port(priorities));
        interface.port = priorities;
        interface.write();
      } else {
        (*found)->pfcPortConfig()->prioritiesIs(priorities);
        interface.port = priorities;
        interface.write();
      }
      if (random() % 20 == 0) device.restart();
      PortModel model;
      for (const auto& [key, value] : expected) {
        if (value.known) model[key] = value.text();
      }
      ASSERT_EQ(device.model(), model) << "seed " << seed << ", step " << step;
    }
  }
}

}  // namespace
}  // namespace QosOc::pfcInterfaceTest
