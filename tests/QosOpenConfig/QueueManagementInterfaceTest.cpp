// Queue management, interface side: the comments of tx queues into attachments.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"
#include "tests/support/QueueManagementDevice.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::queueManagementInterfaceTest {
namespace {

using support::AttachmentModel;
using support::multicast;
using support::ProfileModel;
using support::QueueManagementDevice;
using support::queueManagementLines;
using support::settings;
using support::TraceCapture;
using support::unicast;
using testing::ElementsAre;
using testing::IsEmpty;

struct QueueManagementAttachments : testing::Test, QueueManagementDevice {
  QueueManagementAttachments() { start(); }
  // Ethernet1's tx queue 2, named q7, with a comment that names qmp-wred.
  Rok::Ptr<Qos::TxQueueConfig> attach() {
    name("q7", 2);
    comment("Ethernet1", unicast(2), "qmp-wred");
    return queue("Ethernet1", unicast(2));
  }
};
const AttachmentModel attached{{"Ethernet1 q7", "qmp-wred"}};
const AttachmentModel blanked{{"Ethernet1 q7", "blank"}};

// ===== What makes an attachment

TEST_F(QueueManagementAttachments, ATxQueueWithACommentAndANameIsAttached) {
  attach();
  EXPECT_EQ(attachmentModel(), attached);
  const auto interface = interfaces->interface("Ethernet1");
  Config::InterfaceOutputQueue expected("q7");
  expected.config = {"q7", "qmp-wred"};
  EXPECT_EQ(interface->output()->queues()->q("q7"), expected);
  EXPECT_EQ(interface->output()->queues()->name(), "");
  EXPECT_FALSE(interface->config());
  EXPECT_EQ(interface->input(), nullptr);
}

// The interface, its tx queue, the comment and the queue's name, whichever comes last.
TEST(QueueManagementAttachmentOrder, WhateverComesLastCompletesTheAttachment) {
  std::vector<int> order = {0, 1, 2, 3};
  do {
    QueueManagementDevice device;
    device.start();
    const auto intf = Rok::make<Qos::IntfConfig>(QueueManagementDevice::id("Ethernet1"));
    const std::function<void()> events[] = {
        [&] { device.config->intfConfigIs(intf->intfId(), intf); },
        [&] { intf->txQueueConfigIs(unicast(2), QueueManagementDevice::txQueue(unicast(2))); },
        [&] { device.comment("Ethernet1", unicast(2), "qmp-wred"); },
        [&] { device.name("q7", 2); }};
    for (int i = 0; i < 3; ++i) events[order[i]]();
    EXPECT_EQ(device.interfaces->interface().members(), 0u) << testing::PrintToString(order);
    events[order[3]]();
    EXPECT_EQ(device.attachmentModel(), attached) << testing::PrintToString(order);
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(QueueManagementAttachments, AnAttachmentMayStandBeforeItsProfileAndAfterIt) {
  attach();
  EXPECT_EQ(attachmentModel(), attached);
  profile("qmp-wred", settings(1, 2, 3));
  EXPECT_EQ(attachmentModel(), attached);
  removeProfile("qmp-wred");
  EXPECT_EQ(profileModel(), ProfileModel{});
  EXPECT_EQ(attachmentModel(), attached);
}

TEST_F(QueueManagementAttachments, TheSettingsOfTheTxQueueAreNotRead) {
  const auto config = attach();
  config->ecnConfigIs(settings(1, 2, 101));
  config->wredConfigIs(settings(1, 2, 101));
  EXPECT_EQ(profileModel(), ProfileModel{});
  EXPECT_EQ(attachmentModel(), attached);
}

TEST_F(QueueManagementAttachments, AChangeOfEcnOrWredWritesTheSameRecordAgain) {
  const auto config = attach();
  earlierAttachment("Ethernet1", "q7", "tampered");
  config->ecnConfigIs(settings(1, 2, 3));
  EXPECT_EQ(attachmentModel(), attached);
  earlierAttachment("Ethernet1", "q7", "tampered");
  config->wredConfigIs(settings(1, 2, 3));
  EXPECT_EQ(attachmentModel(), attached);
  earlierAttachment("Ethernet1", "q7", "tampered");
  config->ecnConfigIs(nullptr);
  EXPECT_EQ(attachmentModel(), attached);
}

TEST_F(QueueManagementAttachments, OtherSettingsOfTheTxQueueWakeNothing) {
  const auto config = attach();
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  config->bandwidthIs(30);
  config->priorityIs(Qos::strictPriority);
  config->shapeIs(4);
  intf("Ethernet1")->pfcPortConfigIs(Rok::make<Pfc::PortConfig>(std::uint8_t{1}));
  EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST_F(QueueManagementAttachments, ATxQueueWithoutACommentCreatesNothing) {
  name("q7", 2);
  queue("Ethernet1", unicast(2));
  EXPECT_EQ(interfaces->interface().members(), 0u);
}

TEST_F(QueueManagementAttachments, OnlyACommentThatIsOneDocumentWithAProfileCounts) {
  name("q7", 2);
  const auto config = queue("Ethernet1", unicast(2));
  const Rok::String document = naming("qmp-wred");
  for (const Rok::String& text :
       {Rok::String(""), Rok::String("uplink to the core"), Rok::String("{}"), naming(""),
        Rok::String(R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-gold"}}})"),
        document.addRight("\nnote"), document.addLeft("note\n"), document.addRight(document)}) {
    cli->commentIs(key("Ethernet1", unicast(2)), text);
    config->ecnConfigIs(settings(1, 2, 3));
    EXPECT_EQ(interfaces->interface().members(), 0u) << text;
  }
  cli->commentIs(key("Ethernet1", unicast(2)),
                 R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-gold"},)"
                 R"("queue-management-profile":{"name":"qmp-wred"}}})");
  EXPECT_EQ(attachmentModel(), attached) << "whatever else the document says";
}

TEST_F(QueueManagementAttachments, AnInterfaceIsKnownByItsLongNameAndItsCommentByTheShortOne) {
  name("q7", 2);
  queue("Ethernet7/1", multicast(2));
  cli->commentIs("if-Et7/1-mc-txq-2", naming("qmp-wred"));
  EXPECT_EQ(attachmentModel(), (AttachmentModel{{"Ethernet7/1 q7", "qmp-wred"}}));
  EXPECT_EQ(txQueueSm("Ethernet7/1", multicast(2))->commentKey(), "if-Et7/1-mc-txq-2");
}

TEST_F(QueueManagementAttachments, EachTxQueueHasAnAttachmentOfItsOwn) {
  name("q1", 1);
  name("q2", 2);
  for (const char* intfName : {"Ethernet1", "Ethernet2"}) {
    queue(intfName, unicast(1));
    queue(intfName, unicast(2));
  }
  comment("Ethernet1", unicast(1), "a");
  comment("Ethernet1", unicast(2), "b");
  comment("Ethernet2", unicast(1), "c");
  EXPECT_EQ(attachmentModel(),
            (AttachmentModel{{"Ethernet1 q1", "a"}, {"Ethernet1 q2", "b"}, {"Ethernet2 q1", "c"}}));
  removeQueue("Ethernet1", unicast(1));
  EXPECT_EQ(
      attachmentModel(),
      (AttachmentModel{{"Ethernet1 q1", "blank"}, {"Ethernet1 q2", "b"}, {"Ethernet2 q1", "c"}}));
}

TEST_F(QueueManagementAttachments, TheUnicastAndTheMulticastQueueOfAnIdShareOneEntry) {
  name("q7", 2);
  const auto uc = queue("Ethernet1", unicast(2));
  queue("Ethernet1", multicast(2));
  comment("Ethernet1", unicast(2), "of-unicast");
  comment("Ethernet1", multicast(2), "of-multicast");
  EXPECT_EQ(attachmentModel(), (AttachmentModel{{"Ethernet1 q7", "of-multicast"}}));
  uc->ecnConfigIs(settings(1, 2, 3));
  EXPECT_EQ(attachmentModel(), (AttachmentModel{{"Ethernet1 q7", "of-unicast"}}));
  removeQueue("Ethernet1", multicast(2));
  EXPECT_EQ(attachmentModel(), blanked) << "although the unicast queue still has its comment";
}

// A type that is neither has a key all the same, one for all such types, and their id one entry.
TEST_F(QueueManagementAttachments, QueuesOfUnknownTypesShareACommentAndAreBothUpdated) {
  name("q7", 2);
  queue("Ethernet1", {2, Qos::QueueType{2}});
  queue("Ethernet1", {2, Qos::QueueType{3}});
  queue("Ethernet1", unicast(2));
  for (const bool keysTraced : {false, true}) {
    const std::string profile = keysTraced ? "silver" : "gold";
    TraceCapture trace({2u, keysTraced ? 9u : 2u});
    cli->commentIs("if-Et1-txq-2", naming(profile));
    EXPECT_THAT(queueManagementLines(trace),
                ElementsAre("2 QueueManagementProfileKivToOcSm: handleComment key: if-Et1-txq-2",
                            "2 QueueManagementProfileKivToOcSm updateIntfQueueManagementProfile",
                            "2 QueueManagementProfileKivToOcSm updateIntfQueueManagementProfile"));
    EXPECT_EQ(attachmentModel(), (AttachmentModel{{"Ethernet1 q7", profile}}));
  }
}

TEST_F(QueueManagementAttachments, WritingKeepsWhatOthersHaveOnTheInterface) {
  const auto interface = interfaces->interfaceIs("Ethernet1");
  interface->configIs({"Ethernet1"});
  const auto input = interface->inputIs();
  const auto output = interface->outputIs();
  output->pfcIs({"1f"});
  output->schedulerPolicyIs(Config::InterfaceOutputSchedulerPolicy{{"wan"}});
  earlierAttachment("Ethernet1", "q1", "other");
  const auto queues = output->queues();
  attach();
  EXPECT_EQ(interfaces->interface("Ethernet1"), interface);
  EXPECT_EQ(interface->config().interfaceId, "Ethernet1");
  EXPECT_EQ(interface->input(), input);
  EXPECT_EQ(interface->output(), output);
  EXPECT_EQ(output->pfc().priorities, "1f");
  EXPECT_TRUE(output->schedulerPolicy().has_value());
  EXPECT_EQ(output->queues(), queues);
  EXPECT_EQ(attachmentModel(),
            (AttachmentModel{{"Ethernet1 q1", "other"}, {"Ethernet1 q7", "qmp-wred"}}));
}

// ===== What doesn't end an attachment

TEST_F(QueueManagementAttachments, ARemovedCommentChangesNothing) {
  const auto config = attach();
  commentDel("Ethernet1", unicast(2));
  EXPECT_EQ(attachmentModel(), attached);
  config->ecnConfigIs(settings(1, 2, 3));
  EXPECT_EQ(attachmentModel(), attached);
}

TEST_F(QueueManagementAttachments, ACommentThatLosesItsProfileChangesNothing) {
  attach();
  for (const char* text :
       {"", "note", R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-gold"}}})"}) {
    cli->commentIs(key("Ethernet1", unicast(2)), text);
    EXPECT_EQ(attachmentModel(), attached) << text;
  }
}

TEST_F(QueueManagementAttachments, ACommentThatNamesAnotherProfileRewritesTheRecord) {
  attach();
  comment("Ethernet1", unicast(2), "gold");
  EXPECT_EQ(attachmentModel(), (AttachmentModel{{"Ethernet1 q7", "gold"}}));
}

TEST_F(QueueManagementAttachments, AnAttachmentWhoseQueueLostItsNameStaysForGood) {
  attach();
  nameDel("q7");
  EXPECT_EQ(attachmentModel(), attached);
  removeQueue("Ethernet1", unicast(2));
  EXPECT_EQ(attachmentModel(), attached);
  name("q7", 2);
  removeIntf("Ethernet1");
  EXPECT_EQ(attachmentModel(), attached);
}

TEST_F(QueueManagementAttachments, ATxQueueWithoutANameBlanksNothingNotEvenTheEntryOfNoName) {
  earlierAttachment("Ethernet1", "", "odd");
  queue("Ethernet1", unicast(2));
  removeQueue("Ethernet1", unicast(2));
  EXPECT_EQ(attachmentModel(), (AttachmentModel{{"Ethernet1 ", "odd"}}));
}

TEST_F(QueueManagementAttachments, AnotherNameOfTheQueueMakesAnotherEntryAndLeavesTheOldOne) {
  const auto config = attach();
  name("q8", 2);
  const AttachmentModel both{{"Ethernet1 q7", "qmp-wred"}, {"Ethernet1 q8", "qmp-wred"}};
  EXPECT_EQ(attachmentModel(), both);
  nameDel("q7");
  config->ecnConfigIs(settings(1, 2, 3));
  EXPECT_EQ(attachmentModel(), both);
  removeQueue("Ethernet1", unicast(2));
  EXPECT_EQ(attachmentModel(),
            (AttachmentModel{{"Ethernet1 q7", "qmp-wred"}, {"Ethernet1 q8", "blank"}}));
}

// ===== What ends an attachment

TEST_F(QueueManagementAttachments, ARemovedTxQueueBlanksItsEntryWhichStays) {
  const auto config = attach();
  removeQueue("Ethernet1", unicast(2));
  EXPECT_EQ(attachmentModel(), blanked);
  const auto entry = interfaces->interface("Ethernet1")->output()->queues()->q("q7");
  EXPECT_EQ(entry, Config::InterfaceOutputQueue("q7"));
  EXPECT_EQ(entry.config.name, "");
  EXPECT_EQ(entry.config.queueManagementProfile, "");
  EXPECT_EQ(txQueueSm("Ethernet1", unicast(2)), nullptr);
  EXPECT_EQ(config->notifieeList()->notifiees(), 0u);
  comment("Ethernet1", unicast(2), "gold");
  EXPECT_EQ(attachmentModel(), blanked);
}

TEST_F(QueueManagementAttachments, ABlankedEntryIsWrittenAgainWhenTheTxQueueComesBack) {
  attach();
  removeQueue("Ethernet1", unicast(2));
  queue("Ethernet1", unicast(2));
  EXPECT_EQ(attachmentModel(), attached);
}

TEST_F(QueueManagementAttachments, ARemovedTxQueueThatNeverHadACommentWritesNothing) {
  name("q7", 2);
  queue("Ethernet1", unicast(2));
  removeQueue("Ethernet1", unicast(2));
  EXPECT_EQ(interfaces->interface().members(), 0u);
}

TEST_F(QueueManagementAttachments, ARemovedTxQueueBlanksAlsoWhatItDidNotWrite) {
  earlierAttachment("Ethernet1", "q7", "old");
  name("q7", 2);
  queue("Ethernet1", unicast(2));
  EXPECT_EQ(attachmentModel(), (AttachmentModel{{"Ethernet1 q7", "old"}}));
  removeQueue("Ethernet1", unicast(2));
  EXPECT_EQ(attachmentModel(), blanked);
}

TEST_F(QueueManagementAttachments, ARemovedTxQueueCreatesNothingWhereOthersLeftNothing) {
  attach();
  const auto interface = interfaces->interface("Ethernet1");
  interface->outputDel();
  removeQueue("Ethernet1", unicast(2));
  EXPECT_EQ(interface->output(), nullptr);
  queue("Ethernet2", unicast(2));
  interfaces->interfaceIs("Ethernet2")->outputIs();
  removeQueue("Ethernet2", unicast(2));
  EXPECT_EQ(interfaces->interface("Ethernet2")->output()->queues(), nullptr);
  queue("Ethernet3", unicast(2));
  interfaces->interfaceIs("Ethernet3")->outputIs()->queuesIs("");
  removeQueue("Ethernet3", unicast(2));
  EXPECT_EQ(interfaces->interface("Ethernet3")->output()->queues()->q().members(), 0u);
}

TEST_F(QueueManagementAttachments, ARemovedInterfaceBlanksAllItsAttachmentsAndNoOther) {
  const char* names[] = {"q0", "q1", "q2", "q3", "q4"};
  for (unsigned char i = 0; i < 5; ++i) {
    name(names[i], i);
    for (const char* intfName : {"Ethernet1", "Ethernet2"}) {
      queue(intfName, unicast(i));
      if (i != 4) comment(intfName, unicast(i), "gold");
    }
  }
  const auto sm = intfSm("Ethernet1");
  removeIntf("Ethernet1");
  EXPECT_EQ(sm->txQueueSm().members(), 0u);
  EXPECT_EQ(intfSm("Ethernet1"), nullptr);
  AttachmentModel expected;
  for (int i = 0; i < 4; ++i) {
    expected[std::string("Ethernet1 ") + names[i]] = "blank";
    expected[std::string("Ethernet2 ") + names[i]] = "gold";
  }
  EXPECT_EQ(attachmentModel(), expected);
}

// ===== Life

TEST_F(QueueManagementAttachments, ARemovalOfWhatIsNotMirroredHasNoEffect) {
  attach();
  root->handleIntfConfig(id("Ethernet9"));
  intfSm("Ethernet1")->handleTxQueueConfig(unicast(9));
  EXPECT_EQ(attachmentModel(), attached);
}

// What the root's events reach is what the collections hold: a machine outside them, released but
// still held by another pointer or made by a factory, hears its own tx queue alone.
TEST_F(QueueManagementAttachments, AMachineOutsideTheCollectionsIsNotReachedByCommentsAndNames) {
  const auto config = attach();
  const auto parent = intfSm("Ethernet1");
  const auto released = txQueueSm("Ethernet1", unicast(2));
  parent->txQueueSmDel(unicast(2));
  const auto made =
      queueManagementProfileTxQueueSmFactory(parent.get(), id("Ethernet1"), interfaces, config);
  comment("Ethernet1", unicast(2), "gold");
  name("q8", 2);
  EXPECT_EQ(attachmentModel(), attached);
  config->ecnConfigIs(settings(1, 2, 3));
  EXPECT_EQ(attachmentModel(),
            (AttachmentModel{{"Ethernet1 q7", "qmp-wred"}, {"Ethernet1 q8", "gold"}}));
}

// ===== Factories

TEST_F(QueueManagementAttachments, ReleasedMachinesLeaveTheIndexesOfTheRoot) {
  attach();
  queue("Ethernet2", unicast(2));
  queue("Ethernet3", unicast(2));
  intfSm("Ethernet1")->txQueueSmDel(unicast(2));
  intfSm("Ethernet2")->txQueueSmDelAll();
  EXPECT_EQ(root->txQueues().byTxQueueId()->keys(), 1u);
  root->intfSmDelAll();
  EXPECT_EQ(root->txQueues().byCommentKey()->keys(), 0u);
  EXPECT_EQ(root->txQueues().byTxQueueId()->keys(), 0u);
}

// ===== Traces

const std::string onRoot = "2 void QosOc::QueueManagementProfileKivToOcSm::";
const std::string onIntf = "2 void QosOc::QueueManagementProfileIntfSm::";
const std::string onTxQueue = "2 void QosOc::QueueManagementProfileTxQueueSm::";
const std::string anUpdate = "2 QueueManagementProfileKivToOcSm updateIntfQueueManagementProfile";
const std::string notFound =
    "2 queueManagementProfile not found in comment for intfId: Ethernet1 txQueue: 2";

TEST_F(QueueManagementAttachments, ANewTxQueueTracesItsWayToTheUpdate) {
  intf("Ethernet1");
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  queue("Ethernet1", unicast(2));
  EXPECT_THAT(queueManagementLines(trace),
              ElementsAre(onIntf + "handleTxQueueConfig(const Qos::TxQueue&) intf: Ethernet1 "
                                   "txQueue = unicast-2",
                          onTxQueue + "handleInitialized() intf: Ethernet1",
                          onTxQueue + "handleEcnWredConfig() intf: Ethernet1", anUpdate, notFound));
}

TEST_F(QueueManagementAttachments, ANewInterfaceTracesItselfAndThenItsTxQueues) {
  const auto made = Rok::make<Qos::IntfConfig>(id("Ethernet1"));
  made->txQueueConfigIs(unicast(2), txQueue(unicast(2)));
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  config->intfConfigIs(id("Ethernet1"), made);
  EXPECT_THAT(queueManagementLines(trace),
              ElementsAre(onRoot + "handleIntfConfig(const Nerit::IntfId&) intf: Ethernet1",
                          onIntf + "handleInitialized() intf: Ethernet1",
                          onIntf + "handleTxQueueConfig(const Qos::TxQueue&) intf: Ethernet1 "
                                   "txQueue = unicast-2",
                          onTxQueue + "handleInitialized() intf: Ethernet1",
                          onTxQueue + "handleEcnWredConfig() intf: Ethernet1", anUpdate, notFound));
}

TEST_F(QueueManagementAttachments, ATxQueueWithoutANameTracesNothingMoreUntilTheNameArrives) {
  queue("Ethernet1", unicast(2));
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  comment("Ethernet1", unicast(2), "qmp-wred");
  EXPECT_THAT(queueManagementLines(trace),
              ElementsAre("2 QueueManagementProfileKivToOcSm: handleComment key: if-Et1-uc-txq-2",
                          anUpdate));
  EXPECT_EQ(interfaces->interface().members(), 0u);
  trace.clear();
  name("q7", 2);
  EXPECT_THAT(queueManagementLines(trace),
              ElementsAre("2 QueueManagementProfileKivToOcSm: handleQueueNameToTxQueue", anUpdate));
  EXPECT_EQ(attachmentModel(), attached);
}

TEST_F(QueueManagementAttachments, EachChangeOfASettingTracesOneUpdateAndAnEqualOneNone) {
  const auto config = attach();
  const auto some = settings(1, 2, 3);
  const auto update = ElementsAre(onTxQueue + "handleEcnWredConfig() intf: Ethernet1", anUpdate);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  config->ecnConfigIs(some);
  EXPECT_THAT(queueManagementLines(trace), update);
  trace.clear();
  config->wredConfigIs(some);
  EXPECT_THAT(queueManagementLines(trace), update);
  trace.clear();
  config->wredConfigIs(some);
  EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST_F(QueueManagementAttachments, ARemovedTxQueueTracesTheBlankingOnlyIfThereIsAnAttachment) {
  attach();
  const std::string going =
      onIntf + "handleTxQueueConfig(const Qos::TxQueue&) intf: Ethernet1 txQueue = unicast-2";
  const std::string dying = onTxQueue + "doPrepareToDie() intf: Ethernet1 txQueue: unicast-2";
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  removeQueue("Ethernet1", unicast(2));
  EXPECT_THAT(queueManagementLines(trace),
              ElementsAre(going, dying,
                          "2 doPrepareToDie deleting QMP intf attachment, intf: Ethernet1 txQueue: "
                          "unicast-2"));
  commentDel("Ethernet1", unicast(2));
  queue("Ethernet1", unicast(2));
  trace.clear();
  removeQueue("Ethernet1", unicast(2));
  EXPECT_THAT(queueManagementLines(trace), ElementsAre(going, dying)) << "a blank entry is none";
  trace.clear();
  removeQueue("Ethernet1", unicast(2));
  intfSm("Ethernet1")->handleTxQueueConfig(unicast(2));
  EXPECT_THAT(queueManagementLines(trace), ElementsAre(going)) << "no machine";
}

TEST_F(QueueManagementAttachments, ARemovedInterfaceTracesItsEndAndThatOfItsTxQueues) {
  attach();
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  removeIntf("Ethernet1");
  EXPECT_THAT(queueManagementLines(trace),
              ElementsAre(onRoot + "handleIntfConfig(const Nerit::IntfId&) intf: Ethernet1",
                          onIntf + "doPrepareToDie() intf: Ethernet1",
                          onTxQueue + "doPrepareToDie() intf: Ethernet1 txQueue: unicast-2",
                          "2 doPrepareToDie deleting QMP intf attachment, intf: Ethernet1 txQueue: "
                          "unicast-2"));
}

}  // namespace
}  // namespace QosOc::queueManagementInterfaceTest
