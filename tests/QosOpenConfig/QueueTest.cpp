// Tx queues into queues, unless a comment speaks for them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "QosOpenConfig/QosOpenConfigQueueKivToOcSm.h"
#include "tests/support/NotificationLog.h"
#include "tests/support/QueueDevice.h"
#include "tests/support/Refusals.h"
#include "tests/support/TraceCapture.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::queueTest {
namespace {

using support::NotificationLog;
using support::nullArgument;
using support::outOfRange;
using support::QueueDevice;
using support::QueueModel;
using support::QueueSettings;
using support::TraceCapture;
using support::WalkOrder;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* intf = "Ethernet1";
const Qos::TxQueue uc3 = QueueDevice::unicast(3);
constexpr const char* queue3 = "Ethernet1-unicast-3";

// The comments of the table below.
constexpr const char* foreign = "note";
constexpr const char* profile =
    R"({"MetaData-OpenConfig":{"queue-management-profile":{"name":"qmp-wred"}}})";
constexpr const char* policy = R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-gold"}}})";
constexpr const char* both = R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-gold"},)"
                             R"("queue-management-profile":{"name":"qmp-wred"}}})";

const std::string percentText =
    "QosOc::PercentType::value < QosOc::PercentType::min or > QosOc::PercentType::max not allowed";
const std::string thresholdText =
    "QosOc::ThresholdType::value < QosOc::ThresholdType::min or > QosOc::ThresholdType::max not "
    "allowed";
constexpr std::uint32_t allOnes = 4294967295u;

Qos::TxQueuePriority priorityOf(unsigned value) { return static_cast<Qos::TxQueuePriority>(value); }
QueueSettings bandwidth(unsigned char percent) { return {.bandwidth = percent}; }
QueueSettings ecnAlone() { return {.ecn = QueueDevice::ecn()}; }
QueueSettings all() {
  return {Qos::strictPriority, static_cast<unsigned char>(40), QueueDevice::ecn()};
}

struct Queues : testing::Test, QueueDevice {
  Queues() { start(); }
};

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

// ===== Who speaks for a queue

// What a tx queue shows, "none" for no entry; "+nameless" when there is a record of no name too.
std::string outcome(const QueueDevice& device) {
  const QueueModel model = device.model();
  const auto found = model.find(queue3);
  const auto nameless = model.find("");
  if (nameless != model.end()) {
    EXPECT_EQ(nameless->second, "blank");
  }
  return (found != model.end() ? found->second : "none") +
         (nameless != model.end() ? " +nameless" : "");
}

constexpr const char* ecnShown = "named ecn 100-200/3 50% 7";
constexpr const char* allShown = "named strict 40% ecn 100-200/3 50% 7";

// A comment and a tx queue's settings in either order: nothing configured, priority and bandwidth,
// ECN settings, all of them.
struct Arbitration {
  const char* comment;
  std::array<const char*, 4> settingsFirst;
  std::array<const char*, 4> commentFirst;
};
// Deliberate, and there to be known:
// - A profile that comes first keeps the entry from being made while neither priority nor bandwidth
//   is configured; both names do so whatever is configured.
// - A policy that comes last clears the config's name too; when it comes first, the ECN settings
//   write it.
const Arbitration arbitrations[] = {
    {nullptr,
     {"blank", "named strict 40%", ecnShown, allShown},
     {"blank", "named strict 40%", ecnShown, allShown}},
    {"",
     {"blank", "named strict 40%", ecnShown, allShown},
     {"blank", "named strict 40%", ecnShown, allShown}},
    {foreign,
     {"blank", "named strict 40%", ecnShown, allShown},
     {"blank", "named strict 40%", ecnShown, allShown}},
    {profile,
     {"blank", "named strict 40%", "named", "named strict 40%"},
     {"none +nameless", "named strict 40%", "none +nameless", "named strict 40%"}},
    {policy,
     {"blank", "blank", "ecn 100-200/3 50% 7", "ecn 100-200/3 50% 7"},
     {"blank", "blank", ecnShown, ecnShown}},
    {both, {"blank", "blank", "blank", "blank"}, {"none", "none", "none", "none"}},
};

QueueSettings settingsOf(std::size_t number) {
  if (number == 0) return {};
  if (number == 1) return {Qos::strictPriority, static_cast<unsigned char>(40), nullptr};
  return number == 2 ? ecnAlone() : all();
}

TEST(QueueArbitration, SettingsThenComment) {
  for (const Arbitration& row : arbitrations) {
    for (std::size_t i = 0; i < 4; ++i) {
      QueueDevice device;
      device.start();
      device.add(intf, uc3, settingsOf(i));
      if (row.comment != nullptr) device.comment(intf, uc3, row.comment);
      EXPECT_EQ(outcome(device), row.settingsFirst[i]) << row.comment << " " << i;
    }
  }
}

TEST(QueueArbitration, CommentThenTxQueueWithItsSettings) {
  for (const Arbitration& row : arbitrations) {
    for (std::size_t i = 0; i < 4; ++i) {
      QueueDevice device;
      device.start();
      if (row.comment != nullptr) device.comment(intf, uc3, row.comment);
      device.add(intf, uc3, settingsOf(i));
      EXPECT_EQ(outcome(device), row.commentFirst[i]) << row.comment << " " << i;
    }
  }
}

TEST(QueueArbitration, CommentAndTxQueueBeforeTheRoot) {
  for (const Arbitration& row : arbitrations) {
    for (std::size_t i = 0; i < 4; ++i) {
      QueueDevice device;
      if (row.comment != nullptr) device.comment(intf, uc3, row.comment);
      device.add(intf, uc3, settingsOf(i));
      device.start();
      EXPECT_EQ(outcome(device), row.commentFirst[i]) << row.comment << " " << i;
    }
  }
}

TEST(QueueArbitration, ACommentThatGoesOrTurnsForeignBringsEverythingBack) {
  for (const bool settingsFirst : {true, false}) {
    for (const char* after : {static_cast<const char*>(nullptr), "", foreign}) {
      for (const char* before : {profile, policy, both}) {
        for (std::size_t i = 0; i < 4; ++i) {
          QueueDevice device;
          device.start();
          if (settingsFirst) device.add(intf, uc3, settingsOf(i));
          device.comment(intf, uc3, before);
          if (!settingsFirst) device.add(intf, uc3, settingsOf(i));
          device.queues->qDel("");
          after != nullptr ? device.comment(intf, uc3, after) : device.commentDel(intf, uc3);
          EXPECT_EQ(outcome(device), arbitrations[0].settingsFirst[i])
              << before << " " << i << " " << settingsFirst;
        }
      }
    }
  }
}

TEST_F(Queues, AProfileKeepsChangesOfTheEcnSettingsOutAndLetsTheOthersIn) {
  const auto queue = add(intf, uc3);
  comment(intf, uc3, profile);
  queue->ecnConfigIs(QueueDevice::ecn());
  EXPECT_EQ(model(), (QueueModel{{queue3, "blank"}}));
  queue->bandwidthIs(40);
  queue->priorityIs(Qos::strictPriority);
  EXPECT_EQ(model(), (QueueModel{{queue3, "named strict 40%"}}));
}

TEST_F(Queues, APolicyKeepsChangesOfPriorityAndBandwidthOutAndLetsTheEcnSettingsIn) {
  const auto queue = add(intf, uc3);
  comment(intf, uc3, policy);
  queue->bandwidthIs(40);
  queue->priorityIs(Qos::strictPriority);
  EXPECT_EQ(model(), (QueueModel{{queue3, "blank"}}));
  queue->ecnConfigIs(QueueDevice::ecn());
  EXPECT_EQ(model(), (QueueModel{{queue3, ecnShown}}));
  queue->ecnConfigIs(nullptr);
  EXPECT_EQ(model(), (QueueModel{{queue3, "named"}}));
}

TEST_F(Queues, BothNamesKeepEverythingOut) {
  const auto queue = add(intf, uc3);
  comment(intf, uc3, both);
  queue->bandwidthIs(40);
  queue->ecnConfigIs(QueueDevice::ecn());
  EXPECT_EQ(model(), (QueueModel{{queue3, "blank"}}));
}

// The entry is made by the first priority or bandwidth that arrives; the nameless record stays.
TEST_F(Queues, AProfileThatComesFirstLetsABandwidthMakeTheEntry) {
  comment(intf, uc3, profile);
  const auto queue = add(intf, uc3, ecnAlone());
  EXPECT_EQ(model(), (QueueModel{{"", "blank"}}));
  queue->bandwidthIs(40);
  EXPECT_EQ(model(), (QueueModel{{"", "blank"}, {queue3, "named 40%"}}));
  queue->bandwidthIs(Qos::percentNotConfigured);
  EXPECT_EQ(model(), (QueueModel{{"", "blank"}, {queue3, "blank"}}));
  remove(intf);
  EXPECT_EQ(model(), (QueueModel{{"", "blank"}}));
}

TEST_F(Queues, ACommentThatGoesFromAProfileToAPolicyBringsNoEcnSettingsBack) {
  const auto queue = add(intf, uc3, all());
  comment(intf, uc3, profile);
  comment(intf, uc3, policy);
  EXPECT_EQ(model()[queue3], "blank");
  queue->ecnConfigIs(QueueDevice::ecn(1));
  EXPECT_EQ(model()[queue3], "named ecn 1-200/3 50% 7");
}

TEST_F(Queues, ACommentThatGoesFromAPolicyToAProfileBringsNoConfigBack) {
  const auto queue = add(intf, uc3, all());
  comment(intf, uc3, policy);
  comment(intf, uc3, profile);
  EXPECT_EQ(model()[queue3], "blank");
  queue->bandwidthIs(41);
  EXPECT_EQ(model()[queue3], "named strict 41%");
}

TEST_F(Queues, ACommentThatLosesOneOfTwoNamesBringsNothingBackUntilTheOtherGoesToo) {
  for (const char* left : {profile, policy}) {
    add(intf, uc3, all());
    comment(intf, uc3, both);
    comment(intf, uc3, left);
    EXPECT_EQ(model()[queue3], "blank");
    commentDel(intf, uc3);
    EXPECT_EQ(model()[queue3], allShown);
    remove(intf, uc3);
  }
}

TEST_F(Queues, ACommentThatGainsANameClearsWhatThatNameKeepsOut) {
  add(intf, uc3, all());
  comment(intf, uc3, profile);
  EXPECT_EQ(model()[queue3], "named strict 40%");
  comment(intf, uc3, both);
  EXPECT_EQ(model()[queue3], "blank");
}

// ===== Which comments count

TEST_F(Queues, ACommentOfAnotherKeyChangesAndTracesNothing) {
  add(intf, uc3, all());
  add(intf, unicast(4));
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  for (const char* key : {"if-Et1-mc-txq-3", "if-Et1-txq-3", "if-Et1-uc-txq-33", "if-Et11-uc-txq-3",
                          "if-Ethernet1-uc-txq-3", "qos-profile-if-Et1-uc-txq-3", ""}) {
    comments->commentIs(key, both);
    machine(intf, uc3)->handleComment(key);
  }
  EXPECT_THAT(trace.lines(), IsEmpty());
  EXPECT_EQ(model(), (QueueModel{{queue3, allShown}, {"Ethernet1-unicast-4", "blank"}}));
  machine(intf, uc3)->handleComment("if-Et1-uc-txq-4");
  EXPECT_THAT(trace.lines(), IsEmpty()) << "a key that is another's";
}

TEST_F(Queues, EachTxQueueHasItsOwnComment) {
  add(intf, uc3, all());
  add(intf, multicast(3), all());
  add("Ethernet2", uc3, all());
  comment(intf, uc3, profile);
  comment(intf, multicast(3), policy);
  comment("Ethernet2", uc3, both);
  EXPECT_EQ(model(), (QueueModel{{queue3, "named strict 40%"},
                                 {"Ethernet1-multicast-3", "ecn 100-200/3 50% 7"},
                                 {"Ethernet2-unicast-3", "blank"}}));
}

TEST_F(Queues, InterfacesOfOneShortNameShareTheirComments) {
  add("Ethernet1", uc3, all());
  add("Et1", uc3, all());
  comment("Ethernet1", uc3, profile);
  EXPECT_EQ(model(),
            (QueueModel{{queue3, "named strict 40%"}, {"Et1-unicast-3", "named strict 40%"}}));
}

TEST_F(Queues, ACommentThatNamesNothingCountsAsForeign) {
  const auto queue = add(intf, uc3);
  unsigned char percent = 0;
  const std::vector<std::string> texts = {
      "note",
      "[1]",
      R"({"other":1})",
      R"({"MetaData-OpenConfig":{}})",
      R"({"MetaData-OpenConfig":{"queue-management-profile":{"name":""}}})",
      R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":""}}})",
      R"({"MetaData-OpenConfig":{"queue-management-profile":{}}})",
      R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-gold"},)"
      R"("queue-management-profile":{}}})",
      "note\n" + std::string(both),
      std::string(both) + "\n" + both};
  for (const std::string& text : texts) {
    comment(intf, uc3, text);
    queue->bandwidthIs(++percent);
    queue->ecnConfigIs(QueueDevice::ecn(percent));
    const std::string number = std::to_string(percent);
    EXPECT_EQ(model()[queue3], "named " + number + "% ecn " + number + "-200/3 50% 7") << text;
  }
}

TEST_F(Queues, ADocumentAmongWhiteSpaceNamesWhatItNames) {
  add(intf, uc3, all());
  comment(intf, uc3, " " + std::string(both) + "\n");
  EXPECT_EQ(model()[queue3], "blank");
}

TEST_F(Queues, ACommentOnAQueueWithoutAnEntryWritesNothingUnlessItNamesNothing) {
  add(intf, uc3, all());
  for (const char* text : {profile, policy, both}) {
    queues->qDel(queue3);
    comment(intf, uc3, text);
    EXPECT_EQ(model(), QueueModel{}) << text;
  }
  comment(intf, uc3, foreign);
  EXPECT_EQ(model(), (QueueModel{{queue3, allShown}}));
}

TEST(QueueDeathTest, AWronglyTypedCommentEndsTheProcess) {
  for (const char* text : {R"({"MetaData-OpenConfig":7})",
                           R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":7}}})",
                           R"({"MetaData-OpenConfig":{"queue-management-profile":[]}})"}) {
    const auto end = "a comment holds a JSON value of the wrong type";
    QueueDevice device;
    device.start();
    device.add(intf, uc3);
    EXPECT_EXIT(device.comment(intf, uc3, text), testing::KilledBySignal(SIGABRT), end) << text;
    device.stop();
    device.comment(intf, uc3, text);
    EXPECT_EXIT(device.start(), testing::KilledBySignal(SIGABRT), end) << text;
    device.comment("Ethernet2", uc3, text);  // nobody's
  }
}

// ===== Values out of range

struct Refusal {
  QueueSettings settings;
  std::string text;
};
std::vector<Refusal> refusals() {
  const auto drop = [](unsigned char percent) {
    return QueueSettings{.ecn = QueueDevice::ecn(100, 200, percent)};
  };
  return {{bandwidth(102), percentText},
          {bandwidth(255), percentText},
          {drop(101), percentText},
          {drop(102), percentText},
          {drop(255), percentText},
          {{.ecn = QueueDevice::ecn(allOnes, 200)}, thresholdText},
          {{.ecn = QueueDevice::ecn(100, allOnes)}, thresholdText},
          {{.ecn = QueueDevice::ecn(allOnes, allOnes)}, thresholdText},
          // The percentage is looked at first.
          {{.ecn = QueueDevice::ecn(allOnes, allOnes, 101)}, percentText}};
}

TEST_F(Queues, AChangeOutOfRangeThrowsItsTextAndLeavesTheQueueAsItWas) {
  const auto queue = add(intf, uc3, all());
  for (const auto& [settings, text] : refusals()) {
    const bool isEcn = settings.ecn != nullptr;
    EXPECT_EQ(outOfRange([&, wanted = settings] {
                isEcn ? queue->ecnConfigIs(wanted.ecn) : queue->bandwidthIs(wanted.bandwidth);
              }),
              text);
    EXPECT_EQ(model(), (QueueModel{{queue3, allShown}}));
  }
  queue->ecnConfigIs(QueueDevice::ecn(1));
  EXPECT_EQ(model()[queue3], "named strict 40% ecn 1-200/3 50% 7") << "the bandwidth is not asked";
  EXPECT_EQ(outOfRange([&] { queue->priorityIs(Qos::priorityNotConfigured); }), percentText)
      << "the priority is written with the bandwidth or not at all";
  queue->bandwidthIs(41);
  EXPECT_EQ(model()[queue3], "named 41% ecn 1-200/3 50% 7");
}

TEST_F(Queues, EveryoneElseIsToldOfAChangeOutOfRange) {
  using Attr = Qos::TxQueueConfig::Attr;
  const auto queue = txQueueConfig(uc3);
  const auto before = Rok::make<NotificationLog<Attr::bandwidth, Attr::ecnConfig>>(*queue);
  interface(intf)->txQueueConfigIs(uc3, queue);
  const auto after = Rok::make<NotificationLog<Attr::bandwidth, Attr::ecnConfig>>(*queue);
  EXPECT_EQ(outOfRange([&] { queue->bandwidthIs(102); }), percentText);
  EXPECT_EQ(outOfRange([&] { queue->ecnConfigIs(QueueDevice::ecn(allOnes)); }), thresholdText);
  EXPECT_THAT(before->lines(), ElementsAre("132", "134"));
  EXPECT_THAT(after->lines(), ElementsAre("132", "134"));
}

TEST_F(Queues, ACommentKeepsOutWhatWouldThrow) {
  comment(intf, uc3, both);
  const auto queue = add(
      intf, uc3, {Qos::strictPriority, static_cast<unsigned char>(102), QueueDevice::ecn(allOnes)});
  queue->bandwidthIs(103);
  queue->ecnConfigIs(QueueDevice::ecn(100, allOnes));
  EXPECT_EQ(model(), QueueModel{});
  EXPECT_EQ(outOfRange([&] { comment(intf, uc3, profile); }), "");
  EXPECT_EQ(outOfRange([&] { queue->bandwidthIs(104); }), percentText);
  comment(intf, uc3, policy);
  EXPECT_EQ(outOfRange([&] { queue->bandwidthIs(105); }), "");
  EXPECT_EQ(outOfRange([&] { queue->ecnConfigIs(QueueDevice::ecn(allOnes)); }), thresholdText);
  EXPECT_EQ(model(), QueueModel{});
}

// The ECN settings come first: when they throw, the config is not looked at, and when the config
// throws, they have been written.
TEST_F(Queues, ACommentThatGoesThrowsWhatItKeptOut) {
  const auto queue = add(intf, uc3);
  for (const bool isForeign : {false, true}) {
    const auto go = [&] { isForeign ? comment(intf, uc3, foreign) : commentDel(intf, uc3); };
    comment(intf, uc3, both);
    queue->bandwidthIs(40);
    queue->ecnConfigIs(QueueDevice::ecn(allOnes));
    EXPECT_EQ(outOfRange(go), thresholdText);
    EXPECT_EQ(model(), (QueueModel{{queue3, "blank"}}));
    comment(intf, uc3, both);
    queue->bandwidthIs(102);
    queue->ecnConfigIs(QueueDevice::ecn());
    EXPECT_EQ(outOfRange(go), percentText);
    EXPECT_EQ(model(), (QueueModel{{queue3, ecnShown}}));
  }
}

TEST_F(Queues, ATxQueueThatArrivesOutOfRangeHasNoMachineAndLeavesNothingRegistered) {
  const auto config = interface(intf);
  for (const auto& [settings, text] : refusals()) {
    const auto queue = txQueueConfig(uc3, settings);
    const auto log = Rok::make<NotificationLog<Qos::IntfConfig::Attr::txQueueConfig>>(*config);
    EXPECT_EQ(outOfRange([&] { config->txQueueConfigIs(uc3, queue); }), text);
    EXPECT_THAT(log->lines(), ElementsAre("131 unicast-3")) << "everyone else is told";
    EXPECT_EQ(machine(intf, uc3), nullptr);
    EXPECT_EQ(queue->notifieeList()->notifiees(), 0u);
    EXPECT_EQ(comments->notifieeList()->notifiees(), 0u);
    const bool isEcn = settings.ecn != nullptr;
    EXPECT_EQ(model(), isEcn ? QueueModel{} : (QueueModel{{queue3, "blank"}}))
        << "the ECN settings come first, and what was written stays";
    remove(intf, uc3);
    EXPECT_EQ(model(), isEcn ? QueueModel{} : (QueueModel{{queue3, "blank"}})) << "nobody's entry";
    queues->qDel(queue3);
  }
}

TEST_F(Queues, ATxQueueThatWasRefusedIsBuiltWhenItIsSetRightAndReportedAgain) {
  const auto queue = txQueueConfig(uc3, bandwidth(102));
  EXPECT_EQ(outOfRange([&] { interface(intf)->txQueueConfigIs(uc3, queue); }), percentText);
  queue->bandwidthIs(40);
  machine(intf)->handleTxQueueConfig(uc3);
  EXPECT_EQ(model(), (QueueModel{{queue3, "named 40%"}}));
}

TEST_F(Queues, AnInterfaceThatArrivesOutOfRangeHasNoMachine) {
  const auto config = Rok::make<Qos::IntfConfig>(id(intf));
  config->txQueueConfigIs(uc3, txQueueConfig(uc3, bandwidth(102)));
  EXPECT_EQ(outOfRange([&] { this->config->intfConfigIs(id(intf), config); }), percentText);
  EXPECT_EQ(machine(intf), nullptr);
  EXPECT_EQ(root->intfSm().members(), 0u);
  EXPECT_EQ(config->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(model(), (QueueModel{{queue3, "blank"}}));
}

TEST(QueueStart, AValueOutOfRangeThrowsOutOfTheFactoryAndNothingStaysBehind) {
  for (const auto& [settings, text] : refusals()) {
    QueueDevice device;
    const auto queue = device.add(intf, uc3, settings);
    EXPECT_EQ(outOfRange([&] { device.start(); }), text);
    EXPECT_EQ(device.root, nullptr);
    for (const auto* notifier :
         std::initializer_list<const Rok::Notifier*>{device.config.get(), device.comments.get(),
                                                     device.interface(intf).get(), queue.get()}) {
      EXPECT_EQ(notifier->notifieeList()->notifiees(), 0u);
    }
    EXPECT_EQ(Rok::AllocTrackTypeInfo::of<QueueKivToOcSm>().blocks(), 0u);
    EXPECT_EQ(Rok::AllocTrackTypeInfo::of<IntfSm>().blocks(), 0u);
    EXPECT_EQ(Rok::AllocTrackTypeInfo::of<TxQueueSm>().blocks(), 0u);
  }
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

// ===== Traces

const std::string root2 = "2 void QosOc::QueueKivToOcSm::";
const std::string intf2 = "2 void QosOc::IntfSm::";
const std::string queue2 = "2 void QosOc::TxQueueSm::";
const std::string ofQueue = "intf: Ethernet1queue:Ethernet1-unicast-3";

std::string entry(const char* handler) { return queue2 + handler + "()" + ofQueue; }
std::string settingsTrace(const char* priority, const char* bandwidth) {
  return std::string("2 priority: ") + priority + " bandwidth: " + bandwidth;
}
const std::string nothingSet = settingsTrace("priorityNotConfigured", "101");
const std::string commentTrace =
    queue2 + "handleComment(const Velmo::String&)" + ofQueue + " commentKey: if-Et1-uc-txq-3";
const std::string skippedEcn =
    "2 skipping augmented queue ecn config for intf: Ethernet1queue: Ethernet1-unicast-3";
const std::string skippedConfig =
    "2 Skiping augmented queue bandwidth/scheduling update for intf: Ethernet1 queue: "
    "Ethernet1-unicast-3";
const std::string clearedEcn = "2 Deleting the queue: Ethernet1-unicast-3's ecn config";
const std::string clearedConfig = "2 Deleting the queue: Ethernet1-unicast-3 config";
// The helper's own lines.
const std::string ofKey = "9 commentKey ( Ethernet1, unicast-3 ) ";
std::string question(const std::string& part, const std::string& text) {
  return "9 " + part + "InfoFromComment ( " + text + " ) ";
}
// The decoder's own lines.
std::string read(const std::string& text) { return "2 deserializeJsonComment comment: " + text; }
const std::string notJson = "2 Comment not json: note";

TEST(QueueTrace, AStartTracesEachStepInOrderAtLevelTwo) {
  QueueDevice device;
  device.add(intf, uc3, {Qos::strictPriority, static_cast<unsigned char>(40), nullptr});
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8});
  device.start();
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre(root2 + "handleInitialized() (  ) ",
                          root2 + "handleIntfConfig(const Nerit::IntfId&) ( Ethernet1 ) ",
                          intf2 + "handleInitialized()intf: Ethernet1",
                          intf2 + "handleTxQueueConfig(const Qos::TxQueue&)intf: Ethernet1"
                                  "txQueue = unicast-3",
                          entry("handleInitialized"), entry("handleTxQueueEcnConfig"),
                          entry("handleQueueConfig"), settingsTrace("strictPriority", "40")));
  EXPECT_THAT(trace.handles(), Each("OpenConfigQos"));
}

TEST_F(Queues, EachChangeTracesItsEntryOnceAndAnEqualValueIsNoChange) {
  const auto queue = add(intf, uc3);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  queue->priorityIs(Qos::priorityNotConfigured);
  queue->bandwidthIs(Qos::percentNotConfigured);
  queue->ecnConfigIs(nullptr);
  EXPECT_THAT(trace.lines(), IsEmpty());
  queue->priorityIs(Qos::strictPriority);
  EXPECT_THAT(trace.linesWithoutAddresses(), ElementsAre(entry("handleQueueConfig"), ofKey,
                                                         settingsTrace("strictPriority", "101")));
  trace.clear();
  queue->bandwidthIs(40);
  EXPECT_THAT(trace.linesWithoutAddresses(), ElementsAre(entry("handleQueueConfig"), ofKey,
                                                         settingsTrace("strictPriority", "40")));
  trace.clear();
  queue->ecnConfigIs(QueueDevice::ecn());
  EXPECT_THAT(trace.linesWithoutAddresses(), ElementsAre(entry("handleTxQueueEcnConfig"), ofKey));
}

TEST_F(Queues, ACommentThatNamesSomethingTracesWhatItClears) {
  add(intf, uc3, all());
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8});
  comment(intf, uc3, profile);
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre(commentTrace, read(profile), clearedEcn, read(profile)));
  trace.clear();
  comment(intf, uc3, policy);
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre(commentTrace, read(policy), read(policy), clearedConfig));
  trace.clear();
  comment(intf, uc3, both);
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre(commentTrace, read(both), clearedEcn, read(both), clearedConfig))
      << "also when there is nothing to clear any more";
  trace.clear();
  queues->qDel(queue3);
  comment(intf, uc3, std::string(both) + " ");
  EXPECT_THAT(trace.linesWith("Deleting"), IsEmpty()) << "without an entry";
}

TEST_F(Queues, ACommentThatNamesNothingTracesThatTheConfigIsUpdated) {
  add(intf, uc3);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8});
  comment(intf, uc3, foreign);
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre(commentTrace, read("note"), notJson, read("note"), notJson,
                          "2 Comment not related to OpenConfig, Updating the config",
                          entry("handleTxQueueEcnConfig"), read("note"), notJson,
                          entry("handleQueueConfig"), read("note"), notJson, nothingSet));
}

TEST_F(Queues, AnEmptyCommentAndOneThatGoesTraceThatNoneIsFound) {
  add(intf, uc3);
  const auto lines =
      ElementsAre(commentTrace, "2 Comment not found, Updating the config",
                  entry("handleTxQueueEcnConfig"), entry("handleQueueConfig"), nothingSet);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8});
  comment(intf, uc3, "");
  EXPECT_THAT(trace.linesWithoutAddresses(), lines);
  trace.clear();
  commentDel(intf, uc3);
  EXPECT_THAT(trace.linesWithoutAddresses(), lines);
}

TEST_F(Queues, WhatACommentKeepsOutIsTracedAsSkipped) {
  const auto queue = add(intf, uc3);
  comment(intf, uc3, both);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8});
  queue->ecnConfigIs(QueueDevice::ecn());
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre(entry("handleTxQueueEcnConfig"), read(both), skippedEcn));
  trace.clear();
  queue->bandwidthIs(40);
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre(entry("handleQueueConfig"), read(both), skippedConfig));
}

TEST_F(Queues, AConstructorUnderACommentTracesWhatItSkips) {
  comment(intf, uc3, profile);
  interface(intf);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8});
  add(intf, uc3);
  EXPECT_THAT(
      trace.linesWithoutAddresses(),
      ElementsAre(intf2 + "handleTxQueueConfig(const Qos::TxQueue&)intf: Ethernet1"
                          "txQueue = unicast-3",
                  entry("handleInitialized"), entry("handleTxQueueEcnConfig"), read(profile),
                  skippedEcn, entry("handleQueueConfig"), read(profile), nothingSet));
}

TEST_F(Queues, WhatGoesTracesItsPrepareToDieAndWhatHasNoMachineItsEntryAlone) {
  add(intf, uc3);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  remove(intf, uc3);
  const std::string parentEntry =
      intf2 + "handleTxQueueConfig(const Qos::TxQueue&)intf: Ethernet1txQueue = unicast-3";
  EXPECT_THAT(trace.linesWithoutAddresses(), ElementsAre(parentEntry, entry("doPrepareToDie")));
  trace.clear();
  machine(intf)->handleTxQueueConfig(uc3);
  EXPECT_THAT(trace.linesWithoutAddresses(), ElementsAre(parentEntry));
  add(intf, uc3);
  trace.clear();
  remove(intf);
  const std::string rootEntry = root2 + "handleIntfConfig(const Nerit::IntfId&) ( Ethernet1 ) ";
  EXPECT_THAT(
      trace.linesWithoutAddresses(),
      ElementsAre(rootEntry, intf2 + "doPrepareToDie()intf: Ethernet1", entry("doPrepareToDie")));
  trace.clear();
  root->handleIntfConfig(id(intf));
  EXPECT_THAT(trace.linesWithoutAddresses(), ElementsAre(rootEntry));
}

TEST_F(Queues, EachReadingOfTheOwnCommentTracesItsKeyAsDetail) {
  const auto queue = add(intf, uc3);
  TraceCapture trace({2, 9});
  comments->commentIs("if-Et1-uc-txq-3", policy);
  EXPECT_THAT(
      trace.linesWithoutAddresses(),
      ElementsAre(commentTrace, ofKey, question("queueManagementProfile", policy), read(policy),
                  question("schedulerPolicy", policy), read(policy), clearedConfig));
  trace.clear();
  queue->ecnConfigIs(QueueDevice::ecn());
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre(entry("handleTxQueueEcnConfig"), ofKey,
                          question("queueManagementProfile", policy), read(policy)));
  trace.clear();
  comments->commentDel("if-Et1-uc-txq-3");
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre(commentTrace, ofKey, "2 Comment not found, Updating the config",
                          entry("handleTxQueueEcnConfig"), ofKey, entry("handleQueueConfig"), ofKey,
                          nothingSet));
}

TEST(QueueTrace, AStartTracesTheKeyOfTheCommentForEachOfItsTwoReadingsAlone) {
  QueueDevice device;
  device.add(intf, uc3);
  TraceCapture trace({9});
  device.start();
  EXPECT_THAT(trace.linesWithoutAddresses(), ElementsAre(ofKey, ofKey));
}

TEST_F(Queues, TheKeyOfAnotherQueueTracesNothingAtAnyLevel) {
  add(intf, uc3);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  comments->commentIs("if-Et1-uc-txq-4", policy);
  machine(intf, uc3)->handleComment("if-Et1-uc-txq-4");
  EXPECT_THAT(trace.lines(), IsEmpty());
}

// ===== Oracles

// Random days told again by plain maps: who comes first matters, so the records are kept, and each
// event does to them what it does to its own queue.
class QueueDay {
 public:
  enum Comment { missing, empty, note, namesProfile, namesPolicy, namesBoth, comments };
  using Key = std::pair<std::string, Qos::TxQueue>;

  explicit QueueDay(std::uint32_t seed) : random_(seed) {
    device_.earlier("voice", 1);
    device_.start();
  }

  void step() {
    const Key key{"Ethernet" + std::to_string(random_() % 3),
                  {static_cast<unsigned char>(random_() % 3), Qos::QueueType(random_() % 2)}};
    switch (random_() % 12) {
      case 0:
        return arriveOrGo(key);
      case 1:
        return arriveOutOfRange(key);
      case 2:
        return interfaceGoesAndComes(key.first);
      case 3:
        return restart();
      case 4:
        return outOfRange(key);
      case 5:
      case 6:
      case 7:
        return comment(key, static_cast<Comment>(random_() % comments));
      default:
        return settings(key);
    }
  }

  QueueModel model() const { return device_.model(); }
  QueueModel expected() const {
    QueueModel result{{"voice", "named 1% ecn 0-0/0 0% 0"}};
    if (nameless_) result[""] = "blank";
    for (const auto& [key, queue] : queues_) {
      if (queue.record) result[nameOf(key)] = queue.record->text();
    }
    return result;
  }

 private:
  struct Record {
    bool named = false;
    bool strict = false;
    unsigned bandwidth = 101;
    std::optional<unsigned> drop;

    std::string text() const {
      std::string result;
      if (named) result += " named";
      if (strict) result += " strict";
      if (bandwidth != 101) result += " " + std::to_string(bandwidth) + "%";
      if (drop) result += " ecn 100-200/3 " + std::to_string(*drop) + "% 7";
      return result.empty() ? "blank" : result.substr(1);
    }
  };
  struct Queue {
    bool isThere = false;
    unsigned priority = 2;
    unsigned bandwidth = 101;
    std::optional<unsigned> drop;
    Comment comment = missing;
    std::optional<Record> record;
  };
  struct OutOfRange {};

  static std::string nameOf(const Key& key) {
    return key.first + (key.second.type == Qos::unicast ? "-unicast-" : "-multicast-") +
           std::to_string(key.second.id.value);
  }
  static bool hasProfile(const Queue& queue) {
    return queue.comment == namesProfile || queue.comment == namesBoth;
  }
  static bool hasPolicy(const Queue& queue) {
    return queue.comment == namesPolicy || queue.comment == namesBoth;
  }

  // ---- what the events do to the records
  static void ecnRule(Queue& queue) {
    if (hasProfile(queue)) return;
    if (queue.drop && *queue.drop > 100) throw OutOfRange();
    Record next = queue.record.value_or(Record());
    next.drop = queue.drop;
    if (next.drop) next.named = true;
    queue.record = next;
  }
  void configRule(Queue& queue) {
    if (hasPolicy(queue)) return;
    if (queue.priority != 2 || queue.bandwidth != 101) {
      if (queue.bandwidth > 101) throw OutOfRange();
      const auto drop = queue.record ? queue.record->drop : std::nullopt;
      queue.record = Record{true, queue.priority == 0, queue.bandwidth, drop};
    } else if (queue.record) {
      queue.record = Record{queue.record->drop.has_value(), false, 101, queue.record->drop};
    } else {
      nameless_ = true;
    }
  }
  void bothRules(Queue& queue) {
    ecnRule(queue);
    configRule(queue);
  }
  void commentRule(Queue& queue) {
    if (!hasProfile(queue) && !hasPolicy(queue)) return bothRules(queue);
    if (!queue.record) return;
    if (hasProfile(queue)) queue.record->drop.reset();
    if (hasPolicy(queue)) queue.record = Record{false, false, 101, queue.record->drop};
  }
  // Does the same natively and to the records; both are refused, or none.
  void refusedAlike(const std::function<void()>& write, const std::function<void()>& rule) {
    bool expected = false;
    try {
      rule();
    } catch (const OutOfRange&) {
      expected = true;
    }
    EXPECT_EQ(outOfRangeText(write), expected ? percentText : "");
  }
  static std::string outOfRangeText(const std::function<void()>& write) {
    return support::outOfRange(write);
  }

  // ---- the events
  QueueSettings random(Queue& queue) {
    queue.priority = random_() % 3;
    queue.bandwidth = std::array{0u, 40u, 100u, 101u, 101u}[random_() % 5];
    queue.drop = std::array<std::optional<unsigned>, 4>{0, 50, 100, std::nullopt}[random_() % 4];
    return native(queue);
  }
  static QueueSettings native(const Queue& queue) {
    return {priorityOf(queue.priority), static_cast<unsigned char>(queue.bandwidth),
            queue.drop ? ecnOf(*queue.drop) : nullptr};
  }
  static Rok::Ptr<Qos::EcnWredConfig const> ecnOf(unsigned drop) {
    return QueueDevice::ecn(100, 200, static_cast<unsigned char>(drop));
  }
  Qos::TxQueueConfig& nativeOf(const Key& key) {
    return **device_.interface(key.first)->txQueueConfig().find(key.second);
  }

  void arriveOrGo(const Key& key) {
    Queue& queue = queues_[key];
    queue.isThere = !queue.isThere;
    if (queue.isThere) {
      device_.add(key.first, key.second, random(queue));
      bothRules(queue);
    } else {
      device_.remove(key.first, key.second);
      queue.record.reset();
    }
  }
  // There is no machine then, and the entry that it may have left is nobody's.
  void arriveOutOfRange(const Key& key) {
    Queue& queue = queues_[key];
    if (queue.isThere) return;
    random(queue);
    if (random_() % 2 == 0) {
      queue.bandwidth = 102;
    } else {
      queue.drop = 101;
    }
    refusedAlike([&] { device_.add(key.first, key.second, native(queue)); },
                 [&] { bothRules(queue); });
    const bool isBuilt = device_.machine(key.first, key.second) != nullptr;
    device_.remove(key.first, key.second);
    if (isBuilt) queue.record.reset();
  }
  void interfaceGoesAndComes(const std::string& name) {
    device_.remove(name);
    const auto made = Rok::make<Qos::IntfConfig>(QueueDevice::id(name));
    for (auto& [key, queue] : queues_) {
      if (key.first != name) continue;
      if (std::exchange(queue.isThere, random_() % 2 == 0)) queue.record.reset();
      if (!queue.isThere) continue;
      made->txQueueConfigIs(key.second, QueueDevice::txQueueConfig(key.second, random(queue)));
      bothRules(queue);
    }
    device_.config->intfConfigIs(QueueDevice::id(name), made);
  }
  void restart() {
    device_.restart();
    for (auto& [key, queue] : queues_) {
      if (queue.isThere) bothRules(queue);
    }
  }
  // A value out of range that is set right again.
  void outOfRange(const Key& key) {
    Queue& queue = queues_[key];
    if (!queue.isThere) return;
    Qos::TxQueueConfig& config = nativeOf(key);
    const bool isEcn = random_() % 2 == 0;
    const Queue before = queue;
    (isEcn ? queue.drop.emplace() : queue.bandwidth) = isEcn ? 101 : 102;
    const auto write = [&] {
      isEcn ? config.ecnConfigIs(native(queue).ecn) : config.bandwidthIs(native(queue).bandwidth);
    };
    const auto rule = [&] { isEcn ? ecnRule(queue) : configRule(queue); };
    refusedAlike(write, rule);
    queue.drop = before.drop;
    queue.bandwidth = before.bandwidth;
    refusedAlike(write, rule);
  }
  void comment(const Key& key, Comment to) {
    Queue& queue = queues_[key];
    if (std::exchange(queue.comment, to) == to) return;
    constexpr std::array<const char*, comments> texts{"", "", foreign, profile, policy, both};
    if (to == missing) {
      device_.commentDel(key.first, key.second);
    } else {
      device_.comment(key.first, key.second, texts[to]);
    }
    if (queue.isThere) commentRule(queue);
  }
  void settings(const Key& key) {
    Queue& queue = queues_[key];
    if (!queue.isThere) return;
    Qos::TxQueueConfig& config = nativeOf(key);
    const Queue before = queue;
    const QueueSettings wanted = random(queue);
    const Queue after = std::exchange(queue, before);
    switch (random_() % 3) {
      case 0:
        config.priorityIs(wanted.priority);
        if (std::exchange(queue.priority, after.priority) != after.priority) configRule(queue);
        break;
      case 1:
        config.bandwidthIs(wanted.bandwidth);
        if (std::exchange(queue.bandwidth, after.bandwidth) != after.bandwidth) configRule(queue);
        break;
      default:
        config.ecnConfigIs(wanted.ecn);
        if (std::exchange(queue.drop, after.drop) || after.drop) ecnRule(queue);
    }
  }

  std::mt19937 random_;
  QueueDevice device_;
  std::map<Key, Queue> queues_;
  bool nameless_ = false;
};

TEST(QueueOracle, RandomDaysAgreeWithPlainMapsInAnyWalkOrder) {
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    const WalkOrder walk(seed % 2 == 0 ? seed : 0);
    QueueDay day(seed);
    for (int step = 0; step < 200; ++step) {
      day.step();
      ASSERT_EQ(day.model(), day.expected()) << "seed " << seed << ", step " << step;
    }
  }
}

TEST(QueueOracle, AStartIsTheSameInAnyWalkOrder) {
  std::optional<QueueModel> first;
  for (std::uint32_t seed = 0; seed < 10; ++seed) {
    const WalkOrder walk(seed);
    QueueDevice device;
    for (unsigned number = 0; number < 60; ++number) {
      const std::string name = "Ethernet" + std::to_string(number % 7);
      const Qos::TxQueue txQueue{static_cast<unsigned char>(number), Qos::QueueType(number % 2)};
      constexpr std::array texts{foreign, profile, policy, both};
      if (number % 5 != 4) device.comment(name, txQueue, texts[number % 5]);
      device.add(name, txQueue, settingsOf(number / 5 % 4));
    }
    device.start();
    if (!first) first = device.model();
    EXPECT_EQ(device.model(), *first);
  }
}

}  // namespace
}  // namespace QosOc::queueTest
