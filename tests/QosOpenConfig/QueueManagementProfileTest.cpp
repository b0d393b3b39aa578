// Queue management, profile side: QoS profiles into queue-management profiles.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"
#include "tests/support/QueueManagementDevice.h"
#include "tests/support/Refusals.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::queueManagementProfileTest {
namespace {

using support::AtEachLine;
using support::EcnWred;
using support::multicast;
using support::outOfRange;
using support::ProfileModel;
using support::QueueManagementDevice;
using support::queueManagementLines;
using support::reinstantiating;
using support::settings;
using support::TraceCapture;
using support::unicast;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

using ProfileSm = QueueManagementProfileQosProfileSm;
using TxQueueSm = QueueManagementProfileQosProfileTxQueueSm;

const std::string percentText =
    "QosOc::PercentType100::value < QosOc::PercentType100::min or > QosOc::PercentType100::max "
    "not allowed";

struct QueueManagementProfiles : testing::Test, QueueManagementDevice {
  QueueManagementProfiles() { start(); }
};

// ===== The choice between ECN and WRED

TEST_F(QueueManagementProfiles, TheSettingsThatAreThereDecideTheRecord) {
  struct Row {
    EcnWred ecn;
    EcnWred wred;
    const char* record;
  };
  const EcnWred ecn = settings(10, 20, 30);
  const EcnWred wred = settings(1, 2, 3);
  const Row rows[] = {{ecn, wred, "10-20 30% ecn drop"},
                      {ecn, nullptr, "10-20 30% ecn"},
                      {nullptr, wred, "1-2 3% drop"},
                      {nullptr, nullptr, "0-0 100%"}};
  for (const Row& row : rows) {
    const auto queue = profile("at-once", row.ecn, row.wred);
    const auto later = profile("later");
    later->ecnConfigIs(row.ecn);
    later->wredConfigIs(row.wred);
    EXPECT_EQ(profileModel(), (ProfileModel{{"at-once", row.record}, {"later", row.record}}));
    removeProfile("at-once");
    removeProfile("later");
  }
}

TEST_F(QueueManagementProfiles, ARecordFollowsEverySettingThatComesAndGoes) {
  const auto queue = profile("qmp-wred", settings(10, 20, 30));
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "10-20 30% ecn"}}));
  queue->wredConfigIs(settings(1, 2, 3));
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "10-20 30% ecn drop"}}));
  queue->ecnConfigIs(nullptr);
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "1-2 3% drop"}}));
  queue->wredConfigIs(nullptr);
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "0-0 100%"}}));
}

TEST_F(QueueManagementProfiles, NeitherTheUnitNorTheWeightGoesIntoTheRecord) {
  profile("qmp-wred", settings(10, 20, 30));
  Config::QueueManagementProfile expected("qmp-wred");
  expected.config.name = "qmp-wred";
  expected.wredUniform.minThreshold = 10;
  expected.wredUniform.maxThreshold = 20;
  expected.wredUniform.enableEcn = true;
  expected.wredUniform.drop = false;
  expected.wredUniform.weight = 0;
  expected.wredUniform.maxDropProbabilityPercent = 30;
  EXPECT_EQ(profiles->queueManagementProfile("qmp-wred"), expected);
}

TEST_F(QueueManagementProfiles, ThresholdsAreCopiedWithoutARangeTest) {
  constexpr auto ones = std::numeric_limits<std::uint32_t>::max();
  profile("ecn", settings(ones, ones, 1));
  profile("wred", nullptr, settings(ones, 0, 1));
  EXPECT_EQ(profileModel(), (ProfileModel{{"ecn", "4294967295-4294967295 1% ecn"},
                                          {"wred", "4294967295-0 1% drop"}}));
}

TEST_F(QueueManagementProfiles, AChangeRewritesTheWholeRecord) {
  const auto queue = profile("qmp-wred", settings(10, 20, 30));
  earlierProfile("qmp-wred");
  queue->wredConfigIs(settings(1, 2, 3));
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "10-20 30% ecn drop"}}));
}

TEST_F(QueueManagementProfiles, OtherSettingsOfTheTxQueueWakeNothing) {
  const auto queue = profile("qmp-wred", settings(10, 20, 30));
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  queue->bandwidthIs(30);
  queue->priorityIs(Qos::strictPriority);
  queue->shapeIs(4);
  EXPECT_THAT(trace.lines(), IsEmpty());
}

// ===== Percentages

TEST_F(QueueManagementProfiles, APercentageOfZeroOrOfAHundredIsAccepted) {
  profile("none", settings(1, 2, 0), settings(1, 2, 100));
  profile("all", settings(1, 2, 100), settings(1, 2, 0));
  EXPECT_EQ(profileModel(),
            (ProfileModel{{"all", "1-2 100% ecn drop"}, {"none", "1-2 0% ecn drop"}}));
}

TEST_F(QueueManagementProfiles, APercentageAboveAHundredThrowsAndTheRecordStays) {
  for (const unsigned char percent : {101, 102, 255}) {
    const std::string before = "10-20 30% ecn drop";
    const auto queue = profile("qmp-wred", settings(10, 20, 30), settings(1, 2, 3));
    EXPECT_EQ(outOfRange([&] { queue->ecnConfigIs(settings(5, 6, percent)); }), percentText);
    EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", before}}));
    queue->ecnConfigIs(settings(10, 20, 30));
    EXPECT_EQ(outOfRange([&] { queue->wredConfigIs(settings(5, 6, percent)); }), percentText)
        << "although ECN's is fine, and counts";
    EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", before}}));
    EXPECT_EQ(outOfRange([&] { queue->ecnConfigIs(nullptr); }), percentText);
    EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", before}}));
    queue->wredConfigIs(nullptr);
    EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "0-0 100%"}})) << "and it goes on";
    removeProfile("qmp-wred");
  }
}

TEST_F(QueueManagementProfiles, APercentageAboveAHundredPreventsTheMachineOfANewTxQueue) {
  add(native("qmp-wred"), body({}));
  const auto queue = txQueue(unicast(0), settings(1, 2, 101));
  EXPECT_EQ(outOfRange([&] { bodyOf("qmp-wred")->txQueueConfigIs(unicast(0), queue); }),
            percentText);
  EXPECT_EQ(profileModel(), ProfileModel{});
  EXPECT_EQ(profileTxQueueSm("qmp-wred"), nullptr);
  EXPECT_EQ(queue->notifieeList()->notifiees(), 0u);
  queue->ecnConfigIs(settings(1, 2, 3));
  EXPECT_EQ(profileModel(), ProfileModel{}) << "no machine watches that tx queue";
  profileSm("qmp-wred")->handleTxQueueConfig(unicast(0));
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "1-2 3% ecn"}}));
}

TEST_F(QueueManagementProfiles, APercentageAboveAHundredPreventsTheMachineOfANewProfile) {
  EXPECT_EQ(outOfRange([&] { profile("qmp-wred", nullptr, settings(1, 2, 101)); }), percentText);
  EXPECT_EQ(profileSm("qmp-wred"), nullptr);
  EXPECT_EQ(profileModel(), ProfileModel{});
  EXPECT_EQ(Rok::AllocTrackTypeInfo::of<ProfileSm>().blocks(), 0u);
  EXPECT_EQ(Rok::AllocTrackTypeInfo::of<TxQueueSm>().blocks(), 0u);
}

// ===== Bodies and tx queues

TEST_F(QueueManagementProfiles, AProfileWithoutABodyCreatesNoRecordUntilItHasOne) {
  const auto config = add(native("qmp-wred"));
  EXPECT_NE(profileSm("qmp-wred"), nullptr);
  EXPECT_EQ(profileModel(), ProfileModel{});
  config->qosProfileIs(body({txQueue(unicast(0), settings(10, 20, 30))}));
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "10-20 30% ecn"}}));
}

TEST_F(QueueManagementProfiles, ATxQueueThatArrivesLaterCreatesTheRecord) {
  add(native("qmp-wred"), body({}));
  EXPECT_EQ(profileModel(), ProfileModel{});
  bodyOf("qmp-wred")->txQueueConfigIs(unicast(0), txQueue(unicast(0)));
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "0-0 100%"}}));
}

TEST_F(QueueManagementProfiles, ATxQueueOfALaterBodyIsHeardToo) {
  const auto config = add(native("qmp-wred"));
  config->qosProfileIs(body({}));
  bodyOf("qmp-wred")->txQueueConfigIs(unicast(0), txQueue(unicast(0), settings(1, 2, 3)));
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "1-2 3% ecn"}}));
}

TEST_F(QueueManagementProfiles, OnlyTxQueueZeroCounts) {
  profile("one", settings(1, 2, 3), nullptr, unicast(1));
  profile("three", settings(1, 2, 3), nullptr, multicast(3));
  profile("none", settings(1, 2, 3), nullptr, unicast(16));
  profile("last", settings(1, 2, 3), nullptr, unicast(255));
  EXPECT_EQ(profileModel(), ProfileModel{});
  for (const char* name : {"one", "three", "none", "last"}) {
    EXPECT_EQ(profileSm(name)->txQueueSm().members(), 0u);
  }
}

TEST_F(QueueManagementProfiles, TxQueueZeroOfEitherTypeCounts) {
  profile("uc", settings(1, 2, 3), nullptr, unicast(0));
  profile("mc", settings(4, 5, 6), nullptr, multicast(0));
  EXPECT_EQ(profileModel(), (ProfileModel{{"mc", "4-5 6% ecn"}, {"uc", "1-2 3% ecn"}}));
}

TEST_F(QueueManagementProfiles, OfBothTypesOfTxQueueZeroTheLastWriterDecides) {
  const auto uc = profile("both", settings(1, 2, 3));
  const auto mc = txQueue(multicast(0), settings(4, 5, 6));
  bodyOf("both")->txQueueConfigIs(multicast(0), mc);
  EXPECT_EQ(profileModel(), (ProfileModel{{"both", "4-5 6% ecn"}}));
  uc->ecnConfigIs(settings(7, 8, 9));
  EXPECT_EQ(profileModel(), (ProfileModel{{"both", "7-8 9% ecn"}}));
  mc->ecnConfigIs(nullptr);
  EXPECT_EQ(profileModel(), (ProfileModel{{"both", "0-0 100%"}}));
  EXPECT_EQ(profileSm("both")->txQueueSm().members(), 2u);
}

TEST_F(QueueManagementProfiles, ARecordOutlivesTheSettingsOfItsTxQueue) {
  const auto queue = profile("qmp-wred", settings(10, 20, 30));
  bodyOf("qmp-wred")->txQueueConfigDel(unicast(0));
  EXPECT_EQ(profileTxQueueSm("qmp-wred"), nullptr);
  EXPECT_EQ(queue->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "10-20 30% ecn"}}));
  queue->ecnConfigIs(nullptr);
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "10-20 30% ecn"}}));
  bodyOf("qmp-wred")->txQueueConfigIs(unicast(0), txQueue(unicast(0), settings(1, 2, 3)));
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "1-2 3% ecn"}}));
}

TEST_F(QueueManagementProfiles, ABodyThatGoesLeavesTheRecordAndTheMachines) {
  const auto queue = profile("qmp-wred", settings(10, 20, 30));
  const auto config = *qosProfiles->config().find(native("qmp-wred"));
  const auto old = config->qosProfile();
  config->qosProfileIs(nullptr);
  EXPECT_EQ(profileSm("qmp-wred")->rok_QosProfileConfig_QosProfileIn(), nullptr);
  EXPECT_EQ(old->notifieeList()->notifiees(), 0u);
  EXPECT_NE(profileTxQueueSm("qmp-wred"), nullptr);
  TraceCapture trace({2});
  queue->ecnConfigIs(settings(1, 2, 3));
  EXPECT_THAT(queueManagementLines(trace),
              Contains("2 updateQueueManagementProfile ERROR: txQueue config not present"));
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "10-20 30% ecn"}}));
}

TEST_F(QueueManagementProfiles, AnotherBodyIsFollowedAndTheOldOneIsNotHeardAnyMore) {
  const auto config = add(native("qmp-wred"), body({}));
  const auto old = config->qosProfile();
  config->qosProfileIs(body({}));
  EXPECT_EQ(profileSm("qmp-wred")->rok_QosProfileConfig_QosProfileIn(), config->qosProfile());
  old->txQueueConfigIs(unicast(0), txQueue(unicast(0)));
  EXPECT_EQ(profileModel(), ProfileModel{});
  config->qosProfile()->txQueueConfigIs(unicast(0), txQueue(unicast(0), settings(1, 2, 3)));
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "1-2 3% ecn"}}));
}

TEST_F(QueueManagementProfiles, AnotherBodyWithTheSameTxQueueIsWelcomeAndWithAnotherIsRefused) {
  const auto queue = profile("qmp-wred", settings(10, 20, 30));
  const auto config = *qosProfiles->config().find(native("qmp-wred"));
  const auto same = body({queue});
  config->qosProfileIs(same);
  EXPECT_EQ(profileSm("qmp-wred")->rok_QosProfileConfig_QosProfileIn(), same);
  EXPECT_EQ(reinstantiating([&] { config->qosProfileIs(body({txQueue(unicast(0))})); }),
            "txQueueConfig 133");
  EXPECT_EQ(profileTxQueueSm("qmp-wred")->txQueueConfig(), queue);
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "10-20 30% ecn"}}));
  EXPECT_EQ(profileSm("qmp-wred")->rok_QosProfileConfig_QosProfileIn(), same)
      << "the exception leaves before the input is moved";
}

// ===== What goes

TEST_F(QueueManagementProfiles, ARemovedQosProfileTakesItsRecordAlong) {
  const auto queue = profile("qmp-wred", settings(10, 20, 30));
  profile("other", settings(1, 2, 3));
  const auto old = bodyOf("qmp-wred");
  removeProfile("qmp-wred");
  EXPECT_EQ(profileModel(), (ProfileModel{{"other", "1-2 3% ecn"}}));
  EXPECT_EQ(profileSm("qmp-wred"), nullptr);
  EXPECT_EQ(old->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(queue->notifieeList()->notifiees(), 0u);
}

TEST_F(QueueManagementProfiles, ARemovedQosProfileTakesARecordAlongThatItsTxQueueLeftBehind) {
  profile("qmp-wred", settings(10, 20, 30));
  bodyOf("qmp-wred")->txQueueConfigDel(unicast(0));
  removeProfile("qmp-wred");
  EXPECT_EQ(profileModel(), ProfileModel{});
}

TEST_F(QueueManagementProfiles, PrepareToDieLeavesTheTxQueuesInPlace) {
  profile("qmp-wred", settings(10, 20, 30));
  profileSm("qmp-wred")->doPrepareToDie();
  EXPECT_EQ(profileModel(), ProfileModel{});
  EXPECT_NE(profileTxQueueSm("qmp-wred"), nullptr);
}

TEST_F(QueueManagementProfiles, AProfileThatComesBackIsWrittenAnew) {
  profile("qmp-wred", settings(10, 20, 30));
  removeProfile("qmp-wred");
  profile("qmp-wred", nullptr, settings(1, 2, 3));
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "1-2 3% drop"}}));
}

// ===== Life

// The one reaction that a zombie still has, as long as it is told of changes: its chained input
// goes along with the body, and is a zombie as well.
TEST_F(QueueManagementProfiles, AZombieStillFollowsTheBodyWithoutHandlingIt) {
  const auto config = add(native("late"), body({}));
  const auto sm = profileSm("late");
  sm->rokDoZombieReactors(true);
  sm->hasNotificationActiveIs(false);
  sm->hasNotificationActiveIs(true);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  config->qosProfileIs(body({txQueue(unicast(0))}));
  EXPECT_EQ(sm->rok_QosProfileConfig_QosProfileIn(), config->qosProfile());
  config->qosProfile()->txQueueConfigIs(multicast(0), txQueue(multicast(0)));
  EXPECT_THAT(trace.lines(), IsEmpty());
  EXPECT_EQ(profileModel(), ProfileModel{});
}

// The walk at start sees the tx queues first, and only then does the body tell of changes.
TEST_F(QueueManagementProfiles, TheBodyIsWatchedAfterItsTxQueuesHaveBeenSeen) {
  const auto made = body({txQueue(unicast(0))});
  {
    const AtEachLine trace(
        2, [&](std::string_view) { EXPECT_EQ(made->notifieeList()->notifiees(), 0u); });
    add(native("qmp-wred"), made);
    EXPECT_GT(trace.lines(), 5u);
  }
  EXPECT_EQ(made->notifieeList()->notifiees(), 1u);
}

// ===== Factories

// The root turns such profiles away, but a factory doesn't ask: they all decode to the empty name.
TEST_F(QueueManagementProfiles, AMachineOfAnotherNativeNameWritesAndDeletesTheRecordOfNoName) {
  const auto queue = txQueue(unicast(0), settings(10, 20, 30));
  const auto config = add("plain", body({queue}));
  EXPECT_EQ(profileModel(), ProfileModel{});
  const auto sm = queueManagementProfileQosProfileSmFactory(root.get(), profiles, config);
  EXPECT_EQ(profileModel(), (ProfileModel{{"", "10-20 30% ecn"}}));
  queue->ecnConfigIs(nullptr);
  EXPECT_EQ(profileModel(), (ProfileModel{{"", "0-0 100%"}}));
  sm->doPrepareToDie();
  EXPECT_EQ(profileModel(), ProfileModel{});
  const auto child =
      queueManagementProfileQosProfileTxQueueSmFactory(sm.get(), "plain", profiles, queue);
  EXPECT_EQ(profileModel(), (ProfileModel{{"", "0-0 100%"}}));
}

// ===== Traces

const std::string onProfile = "2 void QosOc::QueueManagementProfileQosProfileSm::";
const std::string onTxQueue = "2 void QosOc::QueueManagementProfileQosProfileTxQueueSm::";
const std::string ofGold = "() profileName: __YANG_QMP_[gold]";
const std::string decoding =
    "2 Velmo::String decodeQMPProfileName(Velmo::String): profileName: __YANG_QMP_[gold]";
// What the tx queue of gold traces from its handler on.
const std::vector<std::string> anUpdate = {
    onTxQueue + "handleEcnWredConfig" + ofGold + " txQueue: unicast-0",
    "2 updateQueueManagementProfile profile: __YANG_QMP_[gold] txQueue: unicast-0", decoding};

std::vector<std::string> operator+(std::vector<std::string> left,
                                   const std::vector<std::string>& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

TEST_F(QueueManagementProfiles, ANewProfileTracesItsWayDownToTheRecord) {
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  profile("gold", settings(1, 2, 3));
  EXPECT_EQ(
      trace.linesWithoutAddresses(),
      (std::vector<std::string>{
           "2 QueueManagementProfileKivToOcSm handleProfileConfig profile:__YANG_QMP_[gold]",
           decoding, onProfile + "handleInitialized" + ofGold,
           onProfile + "handleTxQueueConfig(const Qos::TxQueue&) profileName: __YANG_QMP_[gold] "
                       "txQueue = unicast-0",
           onTxQueue + "handleInitialized" + ofGold + " txQueue: unicast-0"} +
       anUpdate));
  EXPECT_THAT(trace.handles(), testing::Each("OpenConfigQosQueueManagementProfileKivToOcSm"));
}

TEST_F(QueueManagementProfiles, LinesOfAMachineBeginWithIt) {
  const auto queue = profile("gold");
  TraceCapture trace({2});
  queue->ecnConfigIs(settings(1, 2, 3));
  std::ostringstream address;
  address << "2 " << static_cast<const void*>(profileTxQueueSm("gold").get()) << " void QosOc::";
  EXPECT_EQ(trace.lines()[0].substr(0, address.str().size()), address.str());
  address.str("");
  address << "2 " << static_cast<const void*>(root.get()) << " updateQueueManagementProfile ";
  EXPECT_EQ(trace.lines()[1].substr(0, address.str().size()), address.str());
}

TEST_F(QueueManagementProfiles, EachChangeOfASettingTracesOneUpdateAndAnEqualOneNone) {
  const auto queue = profile("gold");
  const EcnWred some = settings(1, 2, 3);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  queue->ecnConfigIs(some);
  EXPECT_EQ(trace.linesWithoutAddresses(), anUpdate);
  trace.clear();
  queue->wredConfigIs(some);
  EXPECT_EQ(trace.linesWithoutAddresses(), anUpdate);
  trace.clear();
  queue->ecnConfigIs(some);
  EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST_F(QueueManagementProfiles, AProfileWithoutABodyTracesItsStartAndNoError) {
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  add(native("gold"));
  EXPECT_THAT(
      trace.linesWithoutAddresses(),
      ElementsAre("2 QueueManagementProfileKivToOcSm handleProfileConfig profile:__YANG_QMP_[gold]",
                  decoding, onProfile + "handleInitialized" + ofGold));
  EXPECT_EQ(profileModel(), ProfileModel{});
}

TEST_F(QueueManagementProfiles, AnotherTxQueueTracesThatItIsTheWrongOne) {
  add(native("gold"), body({}));
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  bodyOf("gold")->txQueueConfigIs(multicast(3), txQueue(multicast(3), settings(1, 2, 3)));
  const std::vector<std::string> expected = {
      onProfile +
          "handleTxQueueConfig(const Qos::TxQueue&) profileName: __YANG_QMP_[gold] "
          "txQueue = multicast-3",
      "2 handleTxQueueConfig ERROR: config other than tx-queue 0, tx-queue: 3"};
  EXPECT_EQ(trace.linesWithoutAddresses(), expected);
  trace.clear();
  bodyOf("gold")->txQueueConfigDel(multicast(3));
  EXPECT_EQ(trace.linesWithoutAddresses(), expected) << "coming and going alike";
}

TEST_F(QueueManagementProfiles, ABodyThatArrivesTracesItsHandlerAndThenTheTxQueues) {
  const auto config = add(native("gold"));
  const auto queue = txQueue(unicast(3));
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  config->qosProfileIs(body({queue}));
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre(onProfile + "handleProfileConfig" + ofGold,
                          onProfile + "handleTxQueueConfig(const Qos::TxQueue&) profileName: "
                                      "__YANG_QMP_[gold] txQueue = unicast-3",
                          "2 handleTxQueueConfig ERROR: config other than tx-queue 0, tx-queue: "
                          "3"));
  trace.clear();
  config->qosProfileIs(nullptr);
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre(onProfile + "handleProfileConfig" + ofGold));
}

TEST_F(QueueManagementProfiles, ATxQueueThatGoesTracesItsHandlerAlone) {
  profile("gold", settings(1, 2, 3));
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  bodyOf("gold")->txQueueConfigDel(unicast(0));
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre(onProfile + "handleTxQueueConfig(const Qos::TxQueue&) profileName: "
                                      "__YANG_QMP_[gold] txQueue = unicast-0"));
}

TEST_F(QueueManagementProfiles, ARemovedProfileTracesTheDeletionOnlyIfThereIsARecord) {
  profile("gold", settings(1, 2, 3));
  const std::vector<std::string> entries = {
      "2 QueueManagementProfileKivToOcSm handleProfileConfig profile:__YANG_QMP_[gold]", decoding,
      onProfile + "doPrepareToDie" + ofGold, decoding};
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  removeProfile("gold");
  EXPECT_EQ(trace.linesWithoutAddresses(),
            entries + std::vector<std::string>{
                          "2 doPrepareToDie deleting Queue Management Profile: gold"});
  add(native("gold"));
  trace.clear();
  removeProfile("gold");
  EXPECT_EQ(trace.linesWithoutAddresses(), entries);
}

TEST_F(QueueManagementProfiles, AnUpdateWithoutTheTxQueueTracesAnErrorAndWritesNothing) {
  profile("gold", settings(1, 2, 3));
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  root->updateQueueManagementProfile(native("gold"), multicast(0));
  EXPECT_THAT(
      trace.linesWithoutAddresses(),
      ElementsAre("2 updateQueueManagementProfile profile: __YANG_QMP_[gold] txQueue: "
                  "multicast-0",
                  decoding, "2 updateQueueManagementProfile ERROR: txQueue config not present"));
  trace.clear();
  root->updateQueueManagementProfile(native("none"), unicast(0));
  EXPECT_THAT(trace.linesWithoutAddresses(),
              Contains("2 updateQueueManagementProfile ERROR: txQueue config not present"));
  EXPECT_EQ(profileModel(), (ProfileModel{{"gold", "1-2 3% ecn"}}));
}

TEST_F(QueueManagementProfiles, ARefusedPercentageHasBeenTracedAsFarAsItCame) {
  const auto queue = profile("gold");
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  outOfRange([&] { queue->ecnConfigIs(settings(1, 2, 101)); });
  EXPECT_EQ(trace.linesWithoutAddresses(), anUpdate);
}

}  // namespace
}  // namespace QosOc::queueManagementProfileTest
