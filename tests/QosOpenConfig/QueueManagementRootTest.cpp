// The root of queue-management profiles: its start, comments and queue names.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"
#include "tests/support/QueueManagementDevice.h"
#include "tests/support/TraceCapture.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::queueManagementRootTest {
namespace {

using support::AtEachLine;
using support::AttachmentModel;
using support::multicast;
using support::ProfileModel;
using support::QueueManagementDevice;
using support::queueManagementLines;
using support::settings;
using support::TraceCapture;
using support::unicast;
using support::WalkOrder;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

const std::string onRoot = "2 QueueManagementProfileKivToOcSm: ";
const std::string anUpdate = "2 QueueManagementProfileKivToOcSm updateIntfQueueManagementProfile";
std::string decoding(const std::string& name) {
  return "2 Velmo::String decodeQMPProfileName(Velmo::String): profileName: " + name;
}
std::string encoding(const std::string& name) {
  return "2 Velmo::String encodeQMPProfileName(Velmo::String): qmpName: " + name;
}

struct QueueManagementRoot : testing::Test, QueueManagementDevice {
  QueueManagementRoot() { start(); }
  Velmo::String nameOf(unsigned char txQueueId) const {
    return root->txQueueIdToQueueNameMap(txQueueId).name;
  }
};

// ===== Start

TEST(QueueManagementStart, OnePassMakesTheProfileAndTheAttachment) {
  QueueManagementDevice device;
  device.name("q6", 1);
  device.queue("Ethernet1", unicast(1));
  device.comment("Ethernet1", unicast(1), "qmp-wred");
  device.profile("qmp-wred", settings(1, 2, 3));
  device.start();
  EXPECT_EQ(device.profileModel(), (ProfileModel{{"qmp-wred", "1-2 3% ecn"}}));
  EXPECT_EQ(device.attachmentModel(), (AttachmentModel{{"Ethernet1 q6", "qmp-wred"}}));
}

TEST(QueueManagementStart, NamesThenInterfacesThenProfilesThenTheSweep) {
  QueueManagementDevice device;
  device.name("q6", 1);
  device.queue("Ethernet1", unicast(1));
  device.comment("Ethernet1", unicast(1), "gold");
  device.profile("gold", settings(1, 2, 3));
  device.earlierProfile("old");
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  device.start();
  auto lines = queueManagementLines(trace);
  const std::vector<std::string> sweep(lines.begin() + 13, lines.end());
  lines.resize(13);
  EXPECT_THAT(
      lines,
      ElementsAre(
          onRoot + "handleInitialized",
          "2 void QosOc::QueueManagementProfileIntfSm::handleInitialized() intf: Ethernet1",
          "2 void QosOc::QueueManagementProfileIntfSm::handleTxQueueConfig(const Qos::TxQueue&) "
          "intf: Ethernet1 txQueue = unicast-1",
          "2 void QosOc::QueueManagementProfileTxQueueSm::handleInitialized() intf: Ethernet1",
          "2 void QosOc::QueueManagementProfileTxQueueSm::handleEcnWredConfig() intf: Ethernet1",
          anUpdate, decoding("__YANG_QMP_[gold]"),
          "2 void QosOc::QueueManagementProfileQosProfileSm::handleInitialized() profileName: "
          "__YANG_QMP_[gold]",
          "2 void QosOc::QueueManagementProfileQosProfileSm::handleTxQueueConfig(const "
          "Qos::TxQueue&) profileName: __YANG_QMP_[gold] txQueue = unicast-0",
          "2 void QosOc::QueueManagementProfileQosProfileTxQueueSm::handleInitialized() "
          "profileName: __YANG_QMP_[gold] txQueue: unicast-0",
          "2 void QosOc::QueueManagementProfileQosProfileTxQueueSm::handleEcnWredConfig() "
          "profileName: __YANG_QMP_[gold] txQueue: unicast-0",
          "2 updateQueueManagementProfile profile: __YANG_QMP_[gold] txQueue: unicast-0",
          decoding("__YANG_QMP_[gold]")));
  EXPECT_THAT(sweep, UnorderedElementsAre(encoding("gold"), encoding("old"),
                                          "2 handleInitialized deleting profile: old"));
}

// While the root catches up its three inputs are live and the map of names is not yet watched.
TEST(QueueManagementStart, TheMapOfNamesIsWatchedLast) {
  QueueManagementDevice device;
  device.name("q6", 1);
  device.queue("Ethernet1", unicast(1));
  device.earlierProfile("old");
  {
    const AtEachLine trace(2, [&](std::string_view) {
      EXPECT_EQ(device.queueNames->notifieeList()->notifiees(), 0u);
      EXPECT_EQ(device.config->notifieeList()->notifiees(), 1u);
      EXPECT_EQ(device.cli->notifieeList()->notifiees(), 1u);
      EXPECT_EQ(device.qosProfiles->notifieeList()->notifiees(), 1u);
    });
    device.start();
    EXPECT_GT(trace.lines(), 5u);
  }
  EXPECT_EQ(device.queueNames->notifieeList()->notifiees(), 1u);
  EXPECT_EQ(device.root->rok_CliConfig_QueueNameToTxQueueIdMapIn(), device.queueNames);
}

TEST(QueueManagementStart, OfSeveralNamesOfOneIdTheLastInNameOrderCounts) {
  QueueManagementDevice device;
  device.name("b", 1);
  device.name("c", 1);
  device.name("a", 1);
  device.start();
  EXPECT_EQ(device.root->txQueueIdToQueueNameMap(1), Qos::QueueName("c"));
}

TEST(QueueManagementStart, ANameWithIdSixteenIsTakenLikeAnyOther) {
  QueueManagementDevice device;
  device.name("none", 16);
  device.queue("Ethernet1", unicast(16));
  device.comment("Ethernet1", unicast(16), "gold");
  device.start();
  EXPECT_EQ(device.root->txQueueIdToQueueNameMap(16), Qos::QueueName("none"));
  EXPECT_EQ(device.attachmentModel(), (AttachmentModel{{"Ethernet1 none", "gold"}}));
}

TEST(QueueManagementStart, TheSweepDeletesTheProfilesWithoutAQosProfile) {
  QueueManagementDevice device;
  device.earlierProfile("gone");
  device.earlierProfile("there");
  device.earlierProfile("bodiless");
  device.profile("there", settings(1, 2, 3));
  device.add(QueueManagementDevice::native("bodiless"));
  device.add("gone");
  device.start();
  EXPECT_EQ(device.profileModel(),
            (ProfileModel{{"bodiless", "77-0 100%"}, {"there", "1-2 3% ecn"}}))
      << "a QoS profile without a body is one, and leaves the record as it is";
}

TEST(QueueManagementStart, AttachmentsAreNotSwept) {
  QueueManagementDevice device;
  device.earlierAttachment("Ethernet1", "q7", "gone");
  device.name("q7", 2);
  device.queue("Ethernet1", unicast(2));
  device.start();
  EXPECT_EQ(device.attachmentModel(), (AttachmentModel{{"Ethernet1 q7", "gone"}}));
}

// The sweep looks for the encoded name, and encoding ends a name at its NUL.
TEST(QueueManagementStart, AProfileWithANulInItsNameIsWrittenAndSweptAtOnce) {
  const Rok::String name(std::string("go\0ld", 5));
  QueueManagementDevice device;
  device.profile(name, settings(1, 2, 3));
  device.start();
  EXPECT_EQ(device.profileModel(), ProfileModel{});
  EXPECT_NE(device.profileSm(name), nullptr);
}

TEST(QueueManagementStart, AProfileOfNoNameStaysWhileThereIsAQosProfileOfEmptyBrackets) {
  QueueManagementDevice device;
  device.earlierProfile("");
  device.add("__YANG_QMP_[]");
  device.start();
  EXPECT_EQ(device.profileModel(), (ProfileModel{{"", "77-0 100%"}}));
  EXPECT_EQ(device.root->qosProfileSm().members(), 0u);
}

TEST(QueueManagementStart, QosProfilesOfOtherNamesAreLeftAlone) {
  QueueManagementDevice device;
  for (const char* name : {"gold", "__YANG_SP_[gold]", "__YANG_QMP_[]", "__YANG_QMP_[a\nb]"}) {
    device.add(name, QueueManagementDevice::body({QueueManagementDevice::txQueue(unicast(0))}));
  }
  TraceCapture trace({2});
  device.start();
  EXPECT_EQ(device.root->qosProfileSm().members(), 0u);
  EXPECT_EQ(device.profileModel(), ProfileModel{});
  EXPECT_THAT(trace.linesWith("not related"), IsEmpty()) << "the start says nothing of them";
}

TEST(QueueManagementStart, APercentageAboveAHundredLeavesTheFactoryWithWhatWasWrittenBefore) {
  QueueManagementDevice device;
  device.name("q7", 2);
  device.queue("Ethernet1", unicast(2));
  device.comment("Ethernet1", unicast(2), "gold");
  device.profile("gold", nullptr, settings(1, 2, 101));
  device.earlierProfile("old");
  EXPECT_THROW(device.start(), Rok::RangeException);
  EXPECT_EQ(device.attachmentModel(), (AttachmentModel{{"Ethernet1 q7", "gold"}}));
  EXPECT_EQ(device.profileModel(), (ProfileModel{{"old", "77-0 100%"}})) << "and nothing is swept";
  EXPECT_EQ(device.config->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(device.cli->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(device.qosProfiles->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(Rok::AllocTrackTypeInfo::of<QueueManagementProfileKivToOcSm>().blocks(), 0u);
  EXPECT_EQ(Rok::AllocTrackTypeInfo::of<QueueManagementProfileTxQueueSm>().blocks(), 0u);
}

TEST_F(QueueManagementRoot, ARestartChangesNothing) {
  name("q7", 2);
  queue("Ethernet1", unicast(2));
  comment("Ethernet1", unicast(2), "gold");
  profile("gold", settings(1, 2, 3));
  const auto attachments = attachmentModel();
  const auto profiles = profileModel();
  restart();
  EXPECT_EQ(attachmentModel(), attachments);
  EXPECT_EQ(profileModel(), profiles);
}

TEST_F(QueueManagementRoot, WhatWentWhileNobodyWatchedIsSweptForProfilesAndStaysForAttachments) {
  name("q7", 2);
  queue("Ethernet1", unicast(2));
  comment("Ethernet1", unicast(2), "gold");
  profile("gold", settings(1, 2, 3));
  stop();
  removeProfile("gold");
  removeIntf("Ethernet1");
  start();
  EXPECT_EQ(profileModel(), ProfileModel{});
  EXPECT_EQ(attachmentModel(), (AttachmentModel{{"Ethernet1 q7", "gold"}}));
}

// Told of changes again, it doesn't even follow another map of names.
TEST_F(QueueManagementRoot, AZombieThatIsSwitchedOffAndOnKeepsItsMapOfNames) {
  root->rokDoZombieReactors(true);
  root->hasNotificationActiveIs(false);
  root->hasNotificationActiveIs(true);
  const auto next = Rok::make<Qos::QueueNameToTxQueueIdMap>();
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  config->queueNameToTxQueueIdMapIs(next);
  next->queueNameToTxQueueIdIs("q7", 2);
  EXPECT_EQ(root->rok_CliConfig_QueueNameToTxQueueIdMapIn(), queueNames);
  EXPECT_EQ(next->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(nameOf(2), "");
  EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST(QueueManagementStart, WithoutTheNamesOfQueuesNothingIsBuiltSweptOrWatched) {
  QueueManagementDevice device;
  device.earlierProfile("stale");
  const auto before = device.profileModel();
  device.queue("Ethernet1", unicast(2));
  device.config->queueNameToTxQueueIdMapIs(nullptr);
  try {
    device.start();
    FAIL() << "nothing thrown";
  } catch (const Rok::MutatorArgNullPointerException& e) {
    EXPECT_STREQ(e.what(),
                 "Qos::Input::Config: argument queueNameToTxQueueIdMap (attribute 134) must not be "
                 "null");
    EXPECT_EQ(e.attribute(), "queueNameToTxQueueIdMap");
    EXPECT_EQ(e.attributeId(), 134u);
  }
  EXPECT_EQ(device.profileModel(), before);
  EXPECT_EQ(device.attachmentModel(), AttachmentModel{});
  EXPECT_EQ(device.config->notifieeList()->notifiees(), 0u);
}

// ===== QoS profiles

TEST_F(QueueManagementRoot, AQosProfileOfAnotherNameIsLeftAloneWithATrace) {
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  add("plain", body({txQueue(unicast(0))}));
  const std::vector<std::string> expected = {
      "2 QueueManagementProfileKivToOcSm handleProfileConfig profile:plain", decoding("plain"),
      "2 handleProfileConfig profile not related to OC: plain"};
  EXPECT_EQ(trace.linesWithoutAddresses(), expected);
  trace.clear();
  qosProfiles->configDel("plain");
  EXPECT_EQ(trace.linesWithoutAddresses(), expected);
  EXPECT_EQ(profileModel(), ProfileModel{});
}

TEST_F(QueueManagementRoot, ARemovalOfAProfileThatIsNotMirroredHasNoEffect) {
  earlierProfile("gold");
  root->handleProfileConfig(native("gold"));
  EXPECT_EQ(profileModel(), (ProfileModel{{"gold", "77-0 100%"}}));
}

// ===== Comments

TEST_F(QueueManagementRoot, ACommentThatNamesNoProfileEndsAtOnce) {
  name("q7", 2);
  queue("Ethernet1", unicast(2));
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  cli->commentIs("if-Et1-uc-txq-2", "note");
  EXPECT_THAT(queueManagementLines(trace),
              ElementsAre(onRoot + "handleComment key: if-Et1-uc-txq-2",
                          "2 comment not related to QueueManagementProfile"));
  trace.clear();
  cli->commentDel("if-Et1-uc-txq-2");
  EXPECT_THAT(queueManagementLines(trace),
              ElementsAre(onRoot + "handleComment key: if-Et1-uc-txq-2",
                          "2 comment not related to QueueManagementProfile"));
}

TEST_F(QueueManagementRoot, ACommentWithAKeyThatNoTxQueueHasWritesNothing) {
  name("q7", 2);
  queue("Ethernet1", unicast(2));
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  for (const char* key : {"if-Et1-uc-txq-3", "if-Et1-mc-txq-2", "if-Et2-uc-txq-2", "if-Et1-txq-2",
                          "if-Et1-uc-txq-02", "if-Ethernet1-uc-txq-2", "qos-profile-gold", ""}) {
    trace.clear();
    cli->commentIs(key, naming("gold"));
    EXPECT_THAT(queueManagementLines(trace), ElementsAre(onRoot + "handleComment key: " + key));
  }
  EXPECT_EQ(interfaces->interface().members(), 0u);
}

TEST_F(QueueManagementRoot, ACommentKeyThatSeveralTxQueuesShareReachesThemAll) {
  name("q7", 2);
  queue("Ethernet1", unicast(2));
  queue("Etna1", unicast(2));
  queue("Etna2", unicast(2));
  TraceCapture trace({2});
  cli->commentIs("if-Et1-uc-txq-2", naming("gold"));
  EXPECT_THAT(queueManagementLines(trace),
              ElementsAre(onRoot + "handleComment key: if-Et1-uc-txq-2", anUpdate, anUpdate));
  EXPECT_EQ(attachmentModel(), (AttachmentModel{{"Ethernet1 q7", "gold"}, {"Etna1 q7", "gold"}}));
}

// The comment helper's own trace tells of every key that is computed.
TEST_F(QueueManagementRoot, KeysAreTracedAsOftenAsAWalkOverTheTxQueuesComputesThem) {
  name("q7", 2);
  const auto config = queue("Ethernet1", unicast(2));
  queue("Ethernet1", unicast(3));
  queue("Etna1", unicast(2));
  TraceCapture trace({9});
  cli->commentIs("if-Et1-uc-txq-2", naming("gold"));
  EXPECT_THAT(trace.linesWith("commentKey"),
              UnorderedElementsAre("9 commentKey ( Ethernet1, unicast-2 ) ",
                                   "9 commentKey ( Ethernet1, unicast-3 ) ",
                                   "9 commentKey ( Etna1, unicast-2 ) "));
  EXPECT_EQ(attachmentModel(), (AttachmentModel{{"Ethernet1 q7", "gold"}, {"Etna1 q7", "gold"}}));
  trace.clear();
  name("q8", 2);
  EXPECT_THAT(trace.linesWith("commentKey"),
              UnorderedElementsAre("9 commentKey ( Ethernet1, unicast-2 ) ",
                                   "9 commentKey ( Etna1, unicast-2 ) "));
  trace.clear();
  config->ecnConfigIs(settings(1, 2, 3));
  queue("Vlan1", unicast(2));
  EXPECT_THAT(trace.linesWith("commentKey"), ElementsAre("9 commentKey ( Ethernet1, unicast-2 ) ",
                                                         "9 commentKey ( Vlan1, unicast-2 ) "))
      << "also of the one that a new tx queue computes for good";
}

TEST_F(QueueManagementRoot, AnUpdateIsTracedBetweenItsOwnKeyAndTheNext) {
  name("q7", 2);
  name("q8", 3);
  queue("Ethernet1", unicast(2));
  queue("Ethernet1", unicast(3));
  std::vector<Qos::TxQueue> walk;
  for (auto i = intfSm("Ethernet1")->txQueueSm().iterator(); i; ++i) walk.push_back(i.key());
  const auto keyOf = [](const Qos::TxQueue& queue) {
    return "9 commentKey ( Ethernet1, unicast-" + std::to_string(queue.id.value) + " ) ";
  };
  const Rok::String changed = key("Ethernet1", walk[0]);
  TraceCapture trace({2, 9});
  cli->commentIs(changed, naming("gold"));
  auto lines = trace.lines();
  std::erase_if(lines, [](const std::string& line) {
    return !line.starts_with("9 commentKey") && line != anUpdate;
  });
  EXPECT_THAT(lines, ElementsAre(keyOf(walk[0]), anUpdate, keyOf(walk[1])));
}

// ===== Queue names

TEST_F(QueueManagementRoot, ANameForAnIdReachesEveryTxQueueOfTheIdAndNoOther) {
  queue("Ethernet1", unicast(2));
  queue("Ethernet1", multicast(2));
  queue("Ethernet2", unicast(2));
  queue("Ethernet2", unicast(3));
  comment("Ethernet2", unicast(2), "gold");
  comment("Ethernet2", unicast(3), "gold");
  TraceCapture trace({2});
  name("q7", 2);
  const auto lines = queueManagementLines(trace);
  EXPECT_EQ(lines[0], onRoot + "handleQueueNameToTxQueue");
  const std::string notFound =
      "2 queueManagementProfile not found in comment for intfId: Ethernet1 txQueue: 2";
  EXPECT_THAT(std::vector(lines.begin() + 1, lines.end()),
              UnorderedElementsAre(anUpdate, anUpdate, anUpdate, notFound, notFound));
  EXPECT_EQ(attachmentModel(), (AttachmentModel{{"Ethernet2 q7", "gold"}}));
}

TEST_F(QueueManagementRoot, ANameForTheMulticastQueueOfAnIdCountsToo) {
  queue("Ethernet1", multicast(2));
  comment("Ethernet1", multicast(2), "gold");
  name("q7", 2);
  EXPECT_EQ(attachmentModel(), (AttachmentModel{{"Ethernet1 q7", "gold"}}));
}

TEST_F(QueueManagementRoot, AQueueOfAnyIdMayHaveAName) {
  queue("Ethernet1", unicast(255));
  comment("Ethernet1", unicast(255), "gold");
  name("last", 255);
  EXPECT_EQ(attachmentModel(), (AttachmentModel{{"Ethernet1 last", "gold"}}));
}

TEST_F(QueueManagementRoot, TheEmptyNameIsNoName) {
  queue("Ethernet1", unicast(2));
  comment("Ethernet1", unicast(2), "gold");
  name("", 2);
  EXPECT_EQ(root->txQueueIdToQueueNameMap().members(), 1u);
  EXPECT_EQ(interfaces->interface().members(), 0u);
}

TEST_F(QueueManagementRoot, ARemovedNameIsForgottenAndTheEntryStays) {
  name("q7", 2);
  queue("Ethernet1", unicast(2));
  comment("Ethernet1", unicast(2), "gold");
  TraceCapture trace({2});
  nameDel("q7");
  EXPECT_THAT(queueManagementLines(trace), ElementsAre(onRoot + "handleQueueNameToTxQueue"));
  EXPECT_EQ(nameOf(2), "");
  EXPECT_EQ(root->txQueueIdToQueueNameMap().members(), 0u);
  EXPECT_EQ(attachmentModel(), (AttachmentModel{{"Ethernet1 q7", "gold"}}));
  comment("Ethernet1", unicast(2), "silver");
  EXPECT_EQ(attachmentModel(), (AttachmentModel{{"Ethernet1 q7", "gold"}}));
}

TEST_F(QueueManagementRoot, ANameThatTurnsToIdSixteenIsTreatedAsRemoved) {
  name("q7", 2);
  queue("Ethernet1", unicast(16));
  comment("Ethernet1", unicast(16), "gold");
  TraceCapture trace({2});
  name("q7", 16);
  EXPECT_THAT(queueManagementLines(trace), ElementsAre(onRoot + "handleQueueNameToTxQueue"));
  name("other", 16);
  EXPECT_EQ(root->txQueueIdToQueueNameMap().members(), 0u);
  EXPECT_EQ(interfaces->interface().members(), 0u);
}

TEST_F(QueueManagementRoot, ANameThatMovesLeavesItsOldIdWithIt) {
  queue("Ethernet1", unicast(2));
  queue("Ethernet2", unicast(3));
  comment("Ethernet1", unicast(2), "gold");
  comment("Ethernet2", unicast(3), "gold");
  name("q7", 2);
  EXPECT_EQ(attachmentModel(), (AttachmentModel{{"Ethernet1 q7", "gold"}}));
  name("q7", 3);
  EXPECT_EQ(nameOf(2), "q7");
  EXPECT_EQ(nameOf(3), "q7");
  EXPECT_EQ(attachmentModel(),
            (AttachmentModel{{"Ethernet1 q7", "gold"}, {"Ethernet2 q7", "gold"}}));
  comment("Ethernet1", unicast(2), "silver");
  EXPECT_EQ(attachmentModel(),
            (AttachmentModel{{"Ethernet1 q7", "silver"}, {"Ethernet2 q7", "gold"}}));
}

TEST(QueueManagementRootNames, OfSeveralIdsThatHoldARemovedNameTheFirstOfTheWalkLosesIt) {
  std::set<unsigned> losers;
  for (std::uint32_t seed = 0; seed < 12; ++seed) {
    const WalkOrder walk(seed);
    QueueManagementDevice device;
    device.start();
    for (const unsigned char id : {2, 3, 4}) device.name("q7", id);
    device.name("other", 5);
    std::vector<Qos::TxQueueId> holders;
    for (auto i = device.root->txQueueIdToQueueNameMap().iterator(); i; ++i) {
      if (i.currNodeNonStale()->value() == Qos::QueueName("q7")) holders.push_back(i.key());
    }
    ASSERT_EQ(holders.size(), 3u);
    device.nameDel("q7");
    EXPECT_TRUE(device.root->txQueueIdToQueueNameMap(holders[0]).empty());
    EXPECT_EQ(device.root->txQueueIdToQueueNameMap(holders[1]), Qos::QueueName("q7"));
    EXPECT_EQ(device.root->txQueueIdToQueueNameMap(holders[2]), Qos::QueueName("q7"));
    EXPECT_EQ(device.root->txQueueIdToQueueNameMap(5), Qos::QueueName("other"));
    losers.insert(holders[0].value);
  }
  EXPECT_GT(losers.size(), 1u) << "the orders must differ";
}

TEST_F(QueueManagementRoot, AnotherMapOfNamesIsNotWalkedAndHeardFromThenOn) {
  name("q7", 2);
  queue("Ethernet1", unicast(2));
  queue("Ethernet1", unicast(3));
  comment("Ethernet1", unicast(2), "gold");
  comment("Ethernet1", unicast(3), "gold");
  const auto next = Rok::make<Qos::QueueNameToTxQueueIdMap>();
  next->queueNameToTxQueueIdIs("q8", 3);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  config->queueNameToTxQueueIdMapIs(next);
  EXPECT_THAT(trace.lines(), IsEmpty());
  EXPECT_EQ(root->rok_CliConfig_QueueNameToTxQueueIdMapIn(), next);
  EXPECT_EQ(nameOf(2), "q7");
  EXPECT_EQ(nameOf(3), "");
  EXPECT_EQ(attachmentModel(), (AttachmentModel{{"Ethernet1 q7", "gold"}}));
  nameDel("q7");
  EXPECT_EQ(nameOf(2), "q7") << "the old map is not heard any more";
  next->queueNameToTxQueueIdIs("q9", 3);
  EXPECT_EQ(nameOf(3), "q9");
  EXPECT_EQ(attachmentModel(),
            (AttachmentModel{{"Ethernet1 q7", "gold"}, {"Ethernet1 q9", "gold"}}));
}

TEST_F(QueueManagementRoot, AMapOfNamesThatGoesIsReleasedAndItsNamesAreKept) {
  name("q7", 2);
  config->queueNameToTxQueueIdMapIs(nullptr);
  EXPECT_EQ(root->rok_CliConfig_QueueNameToTxQueueIdMapIn(), nullptr);
  EXPECT_EQ(queueNames->notifieeList()->notifiees(), 0u);
  name("q8", 3);
  EXPECT_EQ(nameOf(2), "q7");
  EXPECT_EQ(nameOf(3), "");
  config->queueNameToTxQueueIdMapIs(queueNames);
  name("q9", 4);
  EXPECT_EQ(nameOf(4), "q9");
}

TEST_F(QueueManagementRoot, TheMapOfIdsIsReadReplacedAndForgotten) {
  root->txQueueIdToQueueNameMapIs(2, "q7");
  root->txQueueIdToQueueNameMapIs(3, "q8");
  root->txQueueIdToQueueNameMapIs(2, "q9");
  EXPECT_EQ(nameOf(2), "q9");
  EXPECT_EQ(nameOf(4), "");
  root->txQueueIdToQueueNameMapDel(2);
  root->txQueueIdToQueueNameMapDel(2);
  EXPECT_EQ(nameOf(2), "");
  root->txQueueIdToQueueNameMapDelAll();
  EXPECT_EQ(root->txQueueIdToQueueNameMap().members(), 0u);
}

TEST_F(QueueManagementRoot, OtherAttributesOfTheConfigurationWakeNothing) {
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  config->tcToTxQueueMapIs(1, 2);
  config->pfcWatchdogTimeAIs(1);
  config->forwardingGroupNameToTcMapIs(Rok::make<Qos::ForwardingGroupNameToTcMap>());
  EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST_F(QueueManagementRoot, EveryLineOfTheUnitIsOnItsOwnTraceAtLevelTwo) {
  Rok::TraceFacility::levelIs("OpenConfigQosQueueManagementProfileKivToOcSm", 2, true);
  TraceCapture trace({});
  name("q7", 2);
  queue("Ethernet1", unicast(2));
  comment("Ethernet1", unicast(2), "gold");
  profile("gold", settings(1, 2, 3));
  EXPECT_FALSE(trace.lines().empty());
  EXPECT_THAT(trace.handles(), Each("OpenConfigQosQueueManagementProfileKivToOcSm"));
}

}  // namespace
}  // namespace QosOc::queueManagementRootTest
