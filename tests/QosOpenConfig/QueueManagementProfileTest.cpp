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

using support::EcnWred;
using support::multicast;
using support::nullArgument;
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
  EXPECT_EQ(profileModel(), ProfileModel{}) << "nobody hears a tx queue without a machine";
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

TEST_F(QueueManagementProfiles, TheInputsReadBack) {
  const auto queue = profile("qmp-wred", settings(10, 20, 30));
  const auto sm = profileSm("qmp-wred");
  const auto child = profileTxQueueSm("qmp-wred");
  EXPECT_EQ(sm->queueManagementProfileKivToOcSm(), root.get());
  EXPECT_EQ(sm->queueManagementProfilesDir(), profiles);
  EXPECT_EQ(sm->qosProfileConfig(), *qosProfiles->config().find(native("qmp-wred")));
  EXPECT_EQ(sm->profileName(), "__YANG_QMP_[qmp-wred]");
  EXPECT_EQ(sm->rok_QosProfileConfig_QosProfileIn(), bodyOf("qmp-wred"));
  EXPECT_EQ(child->profileSm(), sm.get());
  EXPECT_EQ(child->profileName(), "__YANG_QMP_[qmp-wred]");
  EXPECT_EQ(child->queueManagementProfilesDir(), profiles);
  EXPECT_EQ(child->txQueueConfig(), queue);
  EXPECT_EQ(child->txQueue(), unicast(0));
  EXPECT_TRUE(sm->hasNotificationActive());
  EXPECT_TRUE(child->hasNotificationActive());
}

TEST_F(QueueManagementProfiles, SwitchedOffTheTreeIsSilentAndSwitchedOnItGoesOn) {
  const auto queue = profile("qmp-wred", settings(10, 20, 30));
  const auto bodiless = add(native("late"));
  const auto empty = add(native("empty"), body({}));
  root->hasNotificationActiveIs(false);
  root->hasNotificationActiveIs(false);
  queue->wredConfigIs(settings(1, 2, 3));
  bodiless->qosProfileIs(body({txQueue(unicast(0))}));
  empty->qosProfile()->txQueueConfigIs(unicast(0), txQueue(unicast(0)));
  profile("new", settings(1, 2, 3));
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "10-20 30% ecn"}}));
  root->hasNotificationActiveIs(true);
  root->hasNotificationActiveIs(true);
  queue->ecnConfigIs(nullptr);
  bodiless->qosProfileIs(body({txQueue(unicast(0), settings(4, 5, 6))}));
  empty->qosProfile()->txQueueConfigIs(multicast(0), txQueue(multicast(0), settings(7, 8, 9)));
  EXPECT_EQ(
      profileModel(),
      (ProfileModel{{"empty", "7-8 9% ecn"}, {"late", "4-5 6% ecn"}, {"qmp-wred", "1-2 3% drop"}}));
}

TEST_F(QueueManagementProfiles, AZombieHearsNothing) {
  const auto queue = profile("qmp-wred", settings(10, 20, 30));
  const auto config = add(native("late"), body({}));
  profileSm("late")->rokDoZombieReactors(true);
  profileTxQueueSm("qmp-wred")->rokDoZombieReactors(true);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  queue->ecnConfigIs(nullptr);
  config->qosProfile()->txQueueConfigIs(unicast(0), txQueue(unicast(0)));
  config->qosProfileIs(body({txQueue(unicast(0))}));
  EXPECT_THAT(trace.lines(), IsEmpty());
}

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

TEST_F(QueueManagementProfiles, TheChainedInputCanBeMovedAndReleasedByHandAndCallsNoHandler) {
  add(native("qmp-wred"), body({}));
  const auto sm = profileSm("qmp-wred");
  const auto other = body({txQueue(unicast(0))});
  TraceCapture trace({2});
  sm->rok_QosProfileConfig_QosProfileInIs(other);
  sm->rok_QosProfileConfig_QosProfileInIs(other);
  EXPECT_EQ(sm->rok_QosProfileConfig_QosProfileIn(), other);
  EXPECT_EQ(other->notifieeList()->notifiees(), 1u);
  sm->rok_QosProfileConfig_QosProfileInDel();
  EXPECT_EQ(sm->rok_QosProfileConfig_QosProfileIn(), nullptr);
  EXPECT_EQ(other->notifieeList()->notifiees(), 0u);
  bodyOf("qmp-wred")->txQueueConfigIs(unicast(0), txQueue(unicast(0)));
  EXPECT_THAT(trace.lines(), IsEmpty());
}

// The walk at start sees the tx queues first, and only then does the body tell of changes.
TEST_F(QueueManagementProfiles, TheBodyIsWatchedAfterItsTxQueuesHaveBeenSeen) {
  const auto made = body({txQueue(unicast(0))});
  int lines = 0;
  const auto before = Rok::TraceFacility::sinkIs([&](const Rok::TraceFacility::Line&) {
    EXPECT_EQ(made->notifieeList()->notifiees(), 0u);
    ++lines;
  });
  Rok::TraceFacility::levelIs(2, true);
  add(native("qmp-wred"), made);
  Rok::TraceFacility::levelDelAll();
  Rok::TraceFacility::sinkIs(before);
  EXPECT_GT(lines, 5);
  EXPECT_EQ(made->notifieeList()->notifiees(), 1u);
}

TEST_F(QueueManagementProfiles, StoppingLeavesTheRecordsAndEndsEveryWatch) {
  const auto queue = profile("qmp-wred", settings(10, 20, 30));
  const auto config = *qosProfiles->config().find(native("qmp-wred"));
  stop();
  EXPECT_EQ(qosProfiles->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(config->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(config->qosProfile()->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(queue->notifieeList()->notifiees(), 0u);
  queue->ecnConfigIs(nullptr);
  removeProfile("qmp-wred");
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "10-20 30% ecn"}}));
}

TEST_F(QueueManagementProfiles, ANotificationOfWhatIsMirroredAlreadyDoesNothing) {
  profile("qmp-wred", settings(10, 20, 30));
  const auto sm = profileSm("qmp-wred");
  const auto child = profileTxQueueSm("qmp-wred");
  earlierProfile("qmp-wred");
  root->handleProfileConfig(native("qmp-wred"));
  sm->handleTxQueueConfig(unicast(0));
  sm->handleProfileConfig();
  EXPECT_EQ(profileSm("qmp-wred"), sm);
  EXPECT_EQ(profileTxQueueSm("qmp-wred"), child);
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "77-0 100%"}}));
}

// ===== Factories

TEST_F(QueueManagementProfiles, TheFactoryOfAProfileWritesAndFollowsOutsideItsParent) {
  const auto queue = profile("qmp-wred", settings(10, 20, 30));
  root->qosProfileSmDelAll();
  earlierProfile("qmp-wred");
  const auto sm = queueManagementProfileQosProfileSmFactory(
      root.get(), profiles, *qosProfiles->config().find(native("qmp-wred")));
  EXPECT_TRUE(sm->hasNotificationActive());
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "10-20 30% ecn"}}));
  queue->wredConfigIs(settings(1, 2, 3));
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "10-20 30% ecn drop"}}));
}

TEST_F(QueueManagementProfiles, TheFactoryOfAProfilesTxQueueWritesAndFollowsOutsideItsParent) {
  const auto queue = profile("qmp-wred", settings(10, 20, 30));
  const auto parent = profileSm("qmp-wred");
  parent->txQueueSmDelAll();
  earlierProfile("qmp-wred");
  const auto sm = queueManagementProfileQosProfileTxQueueSmFactory(parent.get(), native("qmp-wred"),
                                                                   profiles, queue);
  EXPECT_TRUE(sm->hasNotificationActive());
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "10-20 30% ecn"}}));
  queue->ecnConfigIs(nullptr);
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "0-0 100%"}}));
}

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

TEST_F(QueueManagementProfiles, WithoutAConfigAMachineIsDeafAndOfNoName) {
  add(native("qmp-wred"), body({}));
  const auto sm = queueManagementProfileQosProfileSmFactory(root.get(), profiles, nullptr);
  EXPECT_EQ(sm->qosProfileConfig(), nullptr);
  EXPECT_EQ(sm->profileName(), "");
  EXPECT_EQ(sm->rok_QosProfileConfig_QosProfileIn(), nullptr);
  const auto child = queueManagementProfileQosProfileTxQueueSmFactory(
      profileSm("qmp-wred").get(), native("qmp-wred"), profiles, nullptr);
  EXPECT_EQ(child->txQueueConfig(), nullptr);
  EXPECT_EQ(child->txQueue(), Qos::TxQueue());
  EXPECT_EQ(profileModel(), ProfileModel{});
}

TEST_F(QueueManagementProfiles, TheMutatorsOfTheCollectionsReleaseMachinesAndLeaveTheOutput) {
  profile("a", settings(1, 2, 3));
  profile("b", settings(4, 5, 6));
  profile("c", settings(7, 8, 9));
  const ProfileModel before = profileModel();
  profileSm("a")->txQueueSmDel(unicast(0));
  profileSm("a")->txQueueSmDel(unicast(0));
  EXPECT_EQ(profileTxQueueSm("a"), nullptr);
  profileSm("b")->txQueueSmDelAll();
  EXPECT_EQ(profileTxQueueSm("b"), nullptr);
  root->qosProfileSmDel(native("c"));
  root->qosProfileSmDel(native("c"));
  EXPECT_EQ(profileSm("c"), nullptr);
  root->qosProfileSmDelAll();
  EXPECT_EQ(root->qosProfileSm().members(), 0u);
  EXPECT_EQ(profileModel(), before);
}

// ===== Refusals

TEST_F(QueueManagementProfiles, TheSameArgumentsGiveTheSameMachineAndEveryOtherIsRefused) {
  const auto queue = profile("qmp-wred", settings(10, 20, 30));
  const auto sm = profileSm("qmp-wred");
  const auto config = *qosProfiles->config().find(native("qmp-wred"));
  const auto otherDir = Rok::make<Config::QueueManagementProfilesDir>();
  const auto otherConfig = Rok::make<Qos::QosProfileConfig>(native("qmp-wred"));
  QueueManagementDevice other;
  other.start();
  EXPECT_EQ(root->qosProfileSmIs(root.get(), profiles, config), sm);
  EXPECT_EQ(reinstantiating([&] { root->qosProfileSmIs(other.root.get(), profiles, config); }),
            "queueManagementProfileKivToOcSm 130");
  EXPECT_EQ(reinstantiating([&] { root->qosProfileSmIs(root.get(), otherDir, config); }),
            "queueManagementProfilesDir 131");
  EXPECT_EQ(reinstantiating([&] { qosProfiles->configIs(native("qmp-wred"), otherConfig); }),
            "qosProfileConfig 132");
  EXPECT_EQ(root->qosProfileSm().members(), 1u);
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "10-20 30% ecn"}}));
}

TEST_F(QueueManagementProfiles, TheSameArgumentsGiveTheSameTxQueueAndEveryOtherIsRefused) {
  const auto queue = profile("qmp-wred", settings(10, 20, 30));
  add(native("other"), body({}));
  const auto sm = profileSm("qmp-wred");
  const auto name = native("qmp-wred");
  const auto otherDir = Rok::make<Config::QueueManagementProfilesDir>();
  EXPECT_EQ(sm->txQueueSmIs(sm.get(), name, profiles, queue), profileTxQueueSm("qmp-wred"));
  EXPECT_EQ(
      reinstantiating([&] { sm->txQueueSmIs(profileSm("other").get(), name, profiles, queue); }),
      "profileSm 130");
  EXPECT_EQ(reinstantiating([&] { sm->txQueueSmIs(sm.get(), "other", profiles, queue); }),
            "profileName 131");
  EXPECT_EQ(reinstantiating([&] { sm->txQueueSmIs(sm.get(), name, otherDir, queue); }),
            "queueManagementProfilesDir 132");
  EXPECT_EQ(reinstantiating(
                [&] { bodyOf("qmp-wred")->txQueueConfigIs(unicast(0), txQueue(unicast(0))); }),
            "txQueueConfig 133");
  EXPECT_EQ(sm->txQueueSm().members(), 1u);
  EXPECT_EQ(profileModel(), (ProfileModel{{"qmp-wred", "10-20 30% ecn"}}));
}

TEST_F(QueueManagementProfiles, NullArgumentsAreRefusedByName) {
  const auto config = add(native("qmp-wred"), body({}));
  const auto sm = profileSm("qmp-wred");
  const auto queue = txQueue(unicast(0));
  const auto name = native("qmp-wred");
  EXPECT_EQ(nullArgument([&] { root->qosProfileSmIs(nullptr, profiles, config); }),
            "queueManagementProfileKivToOcSm 130");
  EXPECT_EQ(nullArgument([&] { root->qosProfileSmIs(root.get(), nullptr, config); }),
            "queueManagementProfilesDir 131");
  EXPECT_EQ(nullArgument([&] { qosProfiles->configIs(native("null"), nullptr); }),
            "qosProfileConfig 132");
  EXPECT_EQ(nullArgument([&] { sm->txQueueSmIs(nullptr, name, profiles, queue); }),
            "profileSm 130");
  EXPECT_EQ(nullArgument([&] { sm->txQueueSmIs(sm.get(), name, nullptr, queue); }),
            "queueManagementProfilesDir 132");
  EXPECT_EQ(nullArgument([&] { bodyOf("qmp-wred")->txQueueConfigIs(unicast(0), nullptr); }),
            "txQueueConfig 133");
  EXPECT_EQ(profileModel(), ProfileModel{});
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
