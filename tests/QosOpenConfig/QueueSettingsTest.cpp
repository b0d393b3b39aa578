// Tx queues into queues: their settings and their names, what comes, what goes and what stays.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "QosOpenConfig/QosOpenConfigQueueKivToOcSm.h"
#include "tests/support/QueueDevice.h"
#include "tests/support/QueueFixture.h"
#include "tests/support/Refusals.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::queueSettingsTest {
namespace {

using support::nullArgument;
using support::QueueDevice;
using support::QueueModel;
using support::TraceCapture;
using testing::IsEmpty;

using namespace support::queueCases;

// ===== Settings

TEST_F(Queues, ATxQueueWithNothingConfiguredIsAQueueOfItsNameThatShowsNothing) {
  add(intf, uc3);
  EXPECT_EQ(queues->q(queue3), Config::Queue(queue3));
  EXPECT_EQ(model(), (QueueModel{{queue3, "blank"}}));
}

TEST_F(Queues, EverySettingReachesItsOwnField) {
  add(intf, uc3, all());
  Config::Queue expected(queue3);
  expected.config.name = queue3;
  expected.config.strictPriority = true;
  expected.config.bandwidth = 40;
  expected.ecnConfig.emplace();
  expected.ecnConfig->maxDropProbabilityPercent = 50;
  expected.ecnConfig->maxThreshold = 200;
  expected.ecnConfig->minThreshold = 100;
  expected.ecnConfig->thresholdUnit = 3;
  expected.ecnConfig->weight = 7;
  EXPECT_EQ(queues->q(queue3), expected);
  EXPECT_EQ(model(), (QueueModel{{queue3, "named strict 40% ecn 100-200/3 50% 7"}}));
}

// What every pair of a priority and a bandwidth shows.
std::string shownFor(unsigned priority, unsigned bandwidth) {
  if (priority == 2 && bandwidth == 101) return "blank";
  return std::string("named") + (priority == 0 ? " strict" : "") +
         (bandwidth == 101 ? "" : " " + std::to_string(bandwidth) + "%");
}

TEST_F(Queues, EveryPriorityAndEveryBandwidthIsShownAtItsChange) {
  const auto queue = add(intf, uc3);
  for (unsigned priority = 0; priority < 256; ++priority) {
    queue->priorityIs(priorityOf(priority));
    EXPECT_EQ(model()[queue3], shownFor(priority, 101)) << priority;
  }
  for (const unsigned priority : {0u, 1u, 2u}) {
    queue->priorityIs(priorityOf(priority));
    for (unsigned percent = 0; percent <= 101; ++percent) {
      queue->bandwidthIs(static_cast<unsigned char>(percent));
      EXPECT_EQ(model()[queue3], shownFor(priority, percent)) << priority << " " << percent;
    }
  }
}

TEST_F(Queues, EveryPriorityAndEveryBandwidthIsShownOnArrival) {
  for (const unsigned priority : {0u, 1u, 2u, 3u, 255u}) {
    for (unsigned percent = 0; percent <= 101; ++percent) {
      add(intf, uc3, {priorityOf(priority), static_cast<unsigned char>(percent), nullptr});
      EXPECT_EQ(model()[queue3], shownFor(priority, percent)) << priority << " " << percent;
      remove(intf, uc3);
    }
  }
}

TEST_F(Queues, EachFieldOfTheEcnSettingsIsCopiedAsItStands) {
  const auto queue = add(intf, uc3);
  for (unsigned unit = 0; unit < 256; ++unit) {
    queue->ecnConfigIs(Rok::make<Qos::EcnWredConfig>(
        Qos::EcnWredConfig::Settings{unit + 1, unit + 2, static_cast<std::uint8_t>(unit),
                                     static_cast<unsigned char>(unit % 101), allOnes - unit}));
    Config::QueueEcnConfig expected;
    expected.minThreshold = unit + 1;
    expected.maxThreshold = unit + 2;
    expected.thresholdUnit = static_cast<std::uint8_t>(unit);
    expected.maxDropProbabilityPercent = static_cast<std::uint8_t>(unit % 101);
    expected.weight = allOnes - unit;
    EXPECT_EQ(queues->q(queue3).ecnConfig, expected);
  }
}

// Nobody asks whether the lower threshold is the lower one, or whether anything is set at all.
TEST_F(Queues, TheLimitsOfTheEcnSettingsAreAcceptedAndAnEmptyBlockIsABlock) {
  const auto queue = add(intf, uc3, {.ecn = QueueDevice::ecn(4294967294u, 4294967294u, 100)});
  EXPECT_EQ(model()[queue3], "named ecn 4294967294-4294967294/3 100% 7");
  queue->ecnConfigIs(QueueDevice::ecn(2, 1, 0));
  EXPECT_EQ(model()[queue3], "named ecn 2-1/3 0% 7");
  queue->ecnConfigIs(Rok::make<Qos::EcnWredConfig>(Qos::EcnWredConfig::Settings{0, 0, 0, 0, 0}));
  EXPECT_EQ(model()[queue3], "named ecn 0-0/0 0% 0");
}

TEST_F(Queues, EcnSettingsThatComeChangeAndGoLeavePriorityAndBandwidth) {
  const auto queue = add(intf, uc3, {Qos::strictPriority, static_cast<unsigned char>(40), nullptr});
  queue->ecnConfigIs(QueueDevice::ecn(1));
  EXPECT_EQ(model()[queue3], "named strict 40% ecn 1-200/3 50% 7");
  queue->ecnConfigIs(QueueDevice::ecn(2));
  EXPECT_EQ(model()[queue3], "named strict 40% ecn 2-200/3 50% 7");
  queue->ecnConfigIs(nullptr);
  EXPECT_EQ(model()[queue3], "named strict 40%");
}

TEST_F(Queues, PriorityAndBandwidthThatComeAndGoLeaveTheEcnSettingsAndTheName) {
  const auto queue = add(intf, uc3, ecnAlone());
  queue->priorityIs(Qos::strictPriority);
  EXPECT_EQ(model()[queue3], "named strict ecn 100-200/3 50% 7");
  queue->bandwidthIs(40);
  EXPECT_EQ(model()[queue3], "named strict 40% ecn 100-200/3 50% 7");
  queue->priorityIs(Qos::priorityNotConfigured);
  EXPECT_EQ(model()[queue3], "named 40% ecn 100-200/3 50% 7");
  queue->bandwidthIs(Qos::percentNotConfigured);
  EXPECT_EQ(model()[queue3], "named ecn 100-200/3 50% 7");
}

TEST_F(Queues, PriorityAndBandwidthThatGoFromAQueueWithoutEcnSettingsTakeTheName) {
  const auto queue = add(intf, uc3, {Qos::strictPriority, static_cast<unsigned char>(40), nullptr});
  queue->priorityIs(Qos::priorityNotConfigured);
  queue->bandwidthIs(Qos::percentNotConfigured);
  EXPECT_EQ(model(), (QueueModel{{queue3, "blank"}}));
}

// The ECN settings bring the name of the config along, and don't take it when they go: the next
// look at the priority and the bandwidth does.
TEST_F(Queues, EcnSettingsThatGoLeaveTheNameUntilTheNextLookAtTheConfig) {
  const auto queue = add(intf, uc3, ecnAlone());
  queue->ecnConfigIs(nullptr);
  EXPECT_EQ(model()[queue3], "named");
  restart();
  EXPECT_EQ(model()[queue3], "blank");
}

TEST_F(Queues, AnEntryThatOthersRemovedIsMadeAgainByTheNextChange) {
  const auto queue = add(intf, uc3, bandwidth(40));
  queues->qDel(queue3);
  queue->bandwidthIs(41);
  EXPECT_EQ(model(), (QueueModel{{queue3, "named 41%"}}));
  queues->qDel(queue3);
  queue->ecnConfigIs(QueueDevice::ecn());
  EXPECT_EQ(model(), (QueueModel{{queue3, "named ecn 100-200/3 50% 7"}}));
}

// The same with nothing configured: the entry is not made again, and the record of the empty name
// is written.
TEST_F(Queues, AnEntryThatOthersRemovedIsNotMadeAgainByAConfigThatIsGone) {
  const auto queue = add(intf, uc3, bandwidth(40));
  queues->qDel(queue3);
  queue->bandwidthIs(Qos::percentNotConfigured);
  ASSERT_EQ(model(), (QueueModel{{"", "blank"}}));
  EXPECT_EQ(*queues->q().find(""), Config::Queue(""));
}

TEST_F(Queues, WredAndTheShaperWakeNothing) {
  const auto queue = add(intf, uc3, all());
  queues->qDel(queue3);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  queue->wredConfigIs(QueueDevice::ecn());
  queue->shapeIs(5);
  EXPECT_EQ(model(), QueueModel{});
  EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST_F(Queues, WredIsNeverShown) {
  const auto queue = txQueueConfig(uc3);
  queue->wredConfigIs(QueueDevice::ecn());
  interface(intf)->txQueueConfigIs(uc3, queue);
  EXPECT_EQ(model(), (QueueModel{{queue3, "blank"}}));
}

// ===== Names

TEST_F(Queues, AQueuesNameIsItsInterfacesLongNameItsTypeAndItsId) {
  add("Ethernet7/1", unicast(3));
  add("Ethernet7/1", multicast(3), bandwidth(1));
  add("Port-Channel3", unicast(0), bandwidth(2));
  add("Port-Channel3", unicast(16));
  add("Port-Channel3", multicast(255), ecnAlone());
  EXPECT_EQ(model(), (QueueModel{{"Ethernet7/1-unicast-3", "blank"},
                                 {"Ethernet7/1-multicast-3", "named 1%"},
                                 {"Port-Channel3-unicast-0", "named 2%"},
                                 {"Port-Channel3-unicast-16", "blank"},
                                 {"Port-Channel3-multicast-255", "named ecn 100-200/3 50% 7"}}));
  EXPECT_EQ(machine("Ethernet7/1", multicast(3))->queueName(), "Ethernet7/1-multicast-3");
}

TEST_F(Queues, NamedQueuesAndOtherInterfacesAreLeftAlone) {
  earlier("voice", 1);
  earlier("Ethernet2-unicast-3", 2);
  const QueueModel before = model();
  add(intf, uc3);
  remove(intf);
  EXPECT_EQ(model(), before);
}

TEST_F(Queues, EachQueueFollowsItsOwnTxQueue) {
  const auto one = add("Ethernet1", uc3, bandwidth(1));
  const auto two = add("Ethernet1", multicast(3), bandwidth(2));
  const auto three = add("Ethernet2", uc3, bandwidth(3));
  one->bandwidthIs(11);
  two->priorityIs(Qos::strictPriority);
  three->bandwidthIs(33);
  remove("Ethernet1", uc3);
  EXPECT_EQ(model(), (QueueModel{{"Ethernet1-multicast-3", "named strict 2%"},
                                 {"Ethernet2-unicast-3", "named 33%"}}));
}

// ===== What goes

TEST_F(Queues, ARemovedTxQueueTakesItsEntryAndIsNotHeardAnyMore) {
  const auto queue = add(intf, uc3, all());
  add(intf, unicast(4));
  remove(intf, uc3);
  EXPECT_EQ(model(), (QueueModel{{"Ethernet1-unicast-4", "blank"}}));
  EXPECT_EQ(machine(intf, uc3), nullptr);
  EXPECT_EQ(queue->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(comments->notifieeList()->notifiees(), 1u);
  queue->bandwidthIs(1);
  comment(intf, uc3, foreign);
  EXPECT_EQ(model(), (QueueModel{{"Ethernet1-unicast-4", "blank"}}));
}

TEST_F(Queues, ARemovedInterfaceTakesTheEntriesOfAllItsTxQueues) {
  const auto config = interface(intf);
  add(intf, uc3, all());
  add(intf, unicast(4), bandwidth(40));
  add(intf, multicast(3));
  add("Ethernet2", uc3, bandwidth(2));
  remove(intf);
  EXPECT_EQ(model(), (QueueModel{{"Ethernet2-unicast-3", "named 2%"}}));
  EXPECT_EQ(machine(intf), nullptr);
  EXPECT_EQ(config->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(comments->notifieeList()->notifiees(), 1u);
  config->txQueueConfigDel(uc3);
  EXPECT_EQ(model(), (QueueModel{{"Ethernet2-unicast-3", "named 2%"}}));
}

TEST_F(Queues, ATxQueueAndAnInterfaceThatComeBackAreWrittenAgain) {
  add(intf, uc3, all());
  remove(intf, uc3);
  add(intf, uc3, bandwidth(1));
  EXPECT_EQ(model(), (QueueModel{{queue3, "named 1%"}}));
  remove(intf);
  add(intf, uc3, bandwidth(2));
  EXPECT_EQ(model(), (QueueModel{{queue3, "named 2%"}}));
}

TEST_F(Queues, AnInterfaceThatArrivesWithItsTxQueuesIsWritten) {
  const auto config = Rok::make<Qos::IntfConfig>(id(intf));
  config->txQueueConfigIs(uc3, txQueueConfig(uc3, bandwidth(3)));
  config->txQueueConfigIs(multicast(3), txQueueConfig(multicast(3), ecnAlone()));
  this->config->intfConfigIs(id(intf), config);
  EXPECT_EQ(model(), (QueueModel{{queue3, "named 3%"},
                                 {"Ethernet1-multicast-3", "named ecn 100-200/3 50% 7"}}));
}

TEST_F(Queues, ADeletionWithoutAMachineHasNoEffect) {
  add("Ethernet2", unicast(4));
  earlier(queue3, 1);
  const QueueModel before = model();
  root->handleIntfConfig(id(intf));
  machine("Ethernet2")->handleTxQueueConfig(uc3);
  EXPECT_EQ(model(), before);
}

TEST_F(Queues, PrepareToDieOfATxQueueTakesItsEntryAndLeavesTheMachine) {
  add(intf, uc3, all());
  machine(intf, uc3)->doPrepareToDie();
  EXPECT_EQ(model(), QueueModel{});
  EXPECT_NE(machine(intf, uc3), nullptr);
}

TEST_F(Queues, PrepareToDieOfAnInterfaceTakesItsMachinesToo) {
  for (unsigned char number = 0; number < 100; ++number) add(intf, unicast(number), all());
  const auto sm = machine(intf);
  sm->doPrepareToDie();
  EXPECT_EQ(model(), QueueModel{});
  EXPECT_EQ(sm->txQueueSm().members(), 0u);
  EXPECT_EQ(machine(intf), sm);
}

// ===== Start and restart

TEST(QueueStart, AStartWritesWhatExists) {
  QueueDevice device;
  device.interface("Ethernet0");
  device.add("Ethernet1", uc3, all());
  device.add("Ethernet1", QueueDevice::multicast(3), bandwidth(1));
  device.add("Ethernet2", uc3);
  device.start();
  EXPECT_EQ(device.model(), (QueueModel{{queue3, allShown},
                                        {"Ethernet1-multicast-3", "named 1%"},
                                        {"Ethernet2-unicast-3", "blank"}}));
  EXPECT_EQ(device.root->intfSm().members(), 3u);
}

TEST(QueueStart, QueuesOfAnEarlierLifeAreRewrittenWhereATxQueueIsAndStayWhereNoneIs) {
  QueueDevice device;
  device.earlier(queue3, 1);
  device.earlier("Ethernet2-unicast-3", 2);
  device.earlier("voice", 3);
  device.add(intf, uc3);
  device.start();
  EXPECT_EQ(device.model(), (QueueModel{{queue3, "blank"},
                                        {"Ethernet2-unicast-3", "named 2% ecn 0-0/0 0% 0"},
                                        {"voice", "named 3% ecn 0-0/0 0% 0"}}));
}

// A start skips what a comment keeps out, and doesn't clear it: only a comment's arrival does.
TEST(QueueStart, ACommentThatCameWhileNobodyWatchedClearsNothing) {
  const std::pair<const char*, const char*> rows[] = {{profile, "named strict 40% ecn 0-0/0 0% 0"},
                                                      {policy, "named 1% ecn 100-200/3 50% 7"},
                                                      {both, "named 1% ecn 0-0/0 0% 0"}};
  for (const auto& [text, shown] : rows) {
    QueueDevice device;
    device.earlier(queue3, 1);
    device.comment(intf, uc3, text);
    device.add(intf, uc3, all());
    device.start();
    EXPECT_EQ(device.model(), (QueueModel{{queue3, shown}})) << text;
  }
}

TEST(QueueStart, ARestartOverTheSameOutputChangesNothing) {
  QueueDevice device;
  device.start();
  for (std::size_t i = 0; i < 4; ++i) {
    const std::string name = "Ethernet" + std::to_string(i);
    device.add(name, uc3, settingsOf(i));
    device.add(name, QueueDevice::unicast(4), settingsOf(i));
    device.comment(name, QueueDevice::unicast(4), foreign);
    device.add(name, QueueDevice::unicast(5), settingsOf(i));
    device.comment(name, QueueDevice::unicast(5), both);
  }
  const QueueModel before = device.model();
  device.restart();
  EXPECT_EQ(device.model(), before);
}

// Deliberate: see the table of the two orders. After a restart the comment is what came first.
TEST(QueueStart, ARestartUnderAPolicyGivesTheConfigOfAQueueWithEcnSettingsItsNameBack) {
  QueueDevice device;
  device.start();
  device.add(intf, uc3, all());
  device.comment(intf, uc3, policy);
  EXPECT_EQ(device.model()[queue3], "ecn 100-200/3 50% 7");
  device.restart();
  EXPECT_EQ(device.model()[queue3], ecnShown);
}

TEST(QueueStart, ATxQueueRemovedWhileNobodyWatchedKeepsItsEntry) {
  QueueDevice device;
  device.add(intf, uc3, bandwidth(40));
  device.start();
  device.stop();
  device.remove(intf, uc3);
  device.start();
  EXPECT_EQ(device.model(), (QueueModel{{queue3, "named 40%"}}));
}

// ===== Life

TEST(TxQueueSm, WithoutAConfigItIsDeafAndOfTheDefaultTxQueue) {
  QueueDevice device;
  const auto sm = txQueueSmFactory(QueueDevice::id(intf), device.queues, nullptr, device.comments);
  EXPECT_EQ(sm->txQueueConfig(), nullptr);
  EXPECT_EQ(sm->txQueue(), Qos::TxQueue());
  EXPECT_EQ(sm->queueName(), "Ethernet1-unicast-16");
  // A text that makes a machine that hears it read its settings.
  const TraceCapture trace({0, 2, 8});
  device.comment(intf, Qos::TxQueue(), "uplink");
  EXPECT_THAT(trace.lines(), testing::IsEmpty());
  EXPECT_EQ(device.model(), QueueModel{});
}

TEST_F(Queues, OtherAttributesWakeNothing) {
  add(intf, uc3);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  config->pfcWatchdogTimeAIs(1);
  config->tcToTxQueueMapIs(1, 2);
  config->queueNameToTxQueueIdMapIs(Rok::make<Qos::QueueNameToTxQueueIdMap>());
  interface(intf)->pfcPortConfigIs(Rok::make<Pfc::PortConfig>(1));
  EXPECT_THAT(trace.lines(), IsEmpty());
}

// ===== Refusals

TEST(QueueStart, WithoutADirectoryOrACommentStoreNoInterfaceIsBuilt) {
  QueueDevice device;
  device.interface(intf);
  EXPECT_EQ(nullArgument([&] { queueKivToOcSmFactory(device.config, nullptr, device.comments); }),
            "queuesDir 130");
  EXPECT_EQ(nullArgument([&] { queueKivToOcSmFactory(device.config, device.queues, nullptr); }),
            "cliConfig 132");
  EXPECT_EQ(device.config->notifieeList()->notifiees(), 0u);
}

}  // namespace
}  // namespace QosOc::queueSettingsTest
