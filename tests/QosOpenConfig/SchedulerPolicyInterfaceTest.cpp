// Comments of tx queues into the scheduler policies of interfaces.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <map>
#include <random>
#include <vector>

#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "tests/support/PolicyAttachmentFixture.h"
#include "tests/support/SchedulerDevice.h"
#include "tests/support/TraceCapture.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::schedulerPolicyInterfaceTest {
namespace {

using support::AttachmentModel;
using support::SchedulerDevice;
using support::TraceCapture;
using support::WalkOrder;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

using namespace support::attachmentCases;

const auto multicast3 = SchedulerDevice::multicast(3);

// ===== Attaching

TEST_F(PolicyAttachments, ACommentThatNamesAPolicyAttachesItAndMakesWhatIsMissing) {
  queue("Ethernet7", unicast3);
  EXPECT_EQ(attachments(), AttachmentModel{});
  cli->commentIs("if-Et7-uc-txq-3",
                 R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-gold"}}})");
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet7", "sp-gold"}}));
  EXPECT_EQ(root->interfaceToSchedulerPolicyMap(id("Ethernet7")), "sp-gold");
}

TEST_F(PolicyAttachments, AnInterfaceMadeHereHasNothingElse) {
  queue("Ethernet1", unicast3);
  name("Ethernet1", unicast3, "sp-gold");
  const auto interface = interfaces->interface("Ethernet1");
  EXPECT_EQ(interface->interfaceId(), "Ethernet1");
  EXPECT_FALSE(interface->config());
  EXPECT_EQ(interface->input(), nullptr);
  EXPECT_EQ(interface->output()->queues(), nullptr);
  EXPECT_FALSE(interface->output()->pfc());
}

TEST_F(PolicyAttachments, WhatOthersHaveOnTheInterfaceStays) {
  const auto interface = interfaces->interfaceIs("Ethernet1");
  interface->configIs({"Ethernet1"});
  const auto input = interface->inputIs();
  const auto output = interface->outputIs();
  output->pfcIs({"1f"});
  const auto queues = output->queuesIs("");
  queue("Ethernet1", unicast3);
  name("Ethernet1", unicast3, "sp-gold");
  comment("Ethernet1", unicast3, "");
  machine("Ethernet1", unicast3)->handlePriorityBandwidthShapeConfig();
  EXPECT_EQ(interfaces->interface("Ethernet1"), interface);
  EXPECT_EQ(interface->config().interfaceId, "Ethernet1");
  EXPECT_EQ(interface->input(), input);
  EXPECT_EQ(interface->output(), output);
  EXPECT_EQ(output->pfc().priorities, "1f");
  EXPECT_EQ(output->queues(), queues);
}

TEST_F(PolicyAttachments, NobodyAsksWhetherThePolicyExists) {
  queue("Ethernet1", unicast3);
  name("Ethernet1", unicast3, "sp-gold");
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
  profile("sp-gold");
  profileDel("sp-gold");
  EXPECT_EQ(model(), support::PolicyModel{});
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
}

TEST_F(PolicyAttachments, InterfacesAreKnownByTheirLongNames) {
  queue("Ethernet7/1", unicast3);
  queue("Port-Channel3", unicast3);
  name("Ethernet7/1", unicast3, "a");
  name("Port-Channel3", unicast3, "b");
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet7/1", "a"}, {"Port-Channel3", "b"}}));
  EXPECT_EQ(machine("Ethernet7/1", unicast3)->commentKey(), "if-Et7/1-uc-txq-3");
}

TEST_F(PolicyAttachments, EachTypeOfQueueHasACommentOfItsOwn) {
  queue("Ethernet1", multicast3);
  name("Ethernet1", unicast3, "sp-gold");
  EXPECT_EQ(attachments(), AttachmentModel{});
  cli->commentIs("if-Et1-mc-txq-3", naming("sp-silver"));
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-silver"}}));
}

// The short names of "Ethernet1" and "Etherlink1" are one.
TEST_F(PolicyAttachments, ACommentSpeaksForEveryInterfaceOfItsShortName) {
  queue("Ethernet1", unicast3);
  queue("Etherlink1", unicast3);
  queue("Ethernet2", unicast3);
  cli->commentIs("if-Et1-uc-txq-3", naming("sp-gold"));
  EXPECT_EQ(attachments(), (AttachmentModel{{"Etherlink1", "sp-gold"}, {"Ethernet1", "sp-gold"}}));
}

// A type that is neither has a key all the same, one for all such types.
TEST_F(PolicyAttachments, QueuesOfUnknownTypesShareAComment) {
  queue("Ethernet1", {3, Qos::QueueType{2}});
  queue("Ethernet1", {3, Qos::QueueType{3}});
  cli->commentIs("if-Et1-txq-3", naming("sp-gold"));
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
  TraceCapture trace({9});
  cli->commentIs("if-Et1-txq-3", naming("sp-silver"));
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-silver"}}));
}

TEST_F(PolicyAttachments, EvaluatingTwiceWritesTheSameAndTheMapHasOneEntry) {
  queue("Ethernet1", unicast3);
  name("Ethernet1", unicast3, "sp-gold");
  root->udpateIntfSchedulerPolicies(id("Ethernet1"), unicast3);
  root->udpateIntfSchedulerPolicies(id("Ethernet1"), unicast3);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
  EXPECT_EQ(root->interfaceToSchedulerPolicyMap().members(), 1u);
}

TEST_F(PolicyAttachments, EachEvaluationWritesAlsoWhatIsThereAlready) {
  const auto config = queue("Ethernet1", unicast3);
  name("Ethernet1", unicast3, "sp-gold");
  earlierAttachment("Ethernet1", "tampered");
  config->bandwidthIs(40);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
}

TEST_F(PolicyAttachments, AnOutputThatOthersRemovedIsMadeAgain) {
  const auto config = queue("Ethernet1", unicast3);
  name("Ethernet1", unicast3, "sp-gold");
  interfaces->interface("Ethernet1")->outputDel();
  config->bandwidthIs(40);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
}

// The operation takes any interface and tx queue: it asks nothing but the comments.
TEST_F(PolicyAttachments, TheUpdateServesWhatIsNotConfiguredToo) {
  name("Ethernet1", unicast3, "sp-gold");
  EXPECT_EQ(attachments(), AttachmentModel{});
  root->udpateIntfSchedulerPolicies(id("Ethernet1"), unicast3);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
}

// ===== The order of events

TEST(AttachmentsStart, AQueueAndACommentThatAreThereAtStartAttach) {
  SchedulerDevice device;
  device.queue("Ethernet1", unicast3);
  device.name("Ethernet1", unicast3, "sp-gold");
  device.start();
  EXPECT_EQ(device.attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
  EXPECT_EQ(device.root->interfaceToSchedulerPolicyMap(device.id("Ethernet1")), "sp-gold");
}

TEST_F(PolicyAttachments, AQueueBeforeItsCommentClearsWhatStoodThereAndTheCommentAttaches) {
  earlierAttachment("Ethernet1", "stale");
  queue("Ethernet1", unicast3);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "none"}}));
  name("Ethernet1", unicast3, "sp-gold");
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
}

TEST_F(PolicyAttachments, ACommentBeforeItsQueueWaitsForIt) {
  name("Ethernet1", unicast3, "sp-gold");
  intf("Ethernet1");
  EXPECT_EQ(attachments(), AttachmentModel{});
  queue("Ethernet1", unicast3);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
}

TEST_F(PolicyAttachments, AnInterfaceThatArrivesWithItsQueuesIsEvaluated) {
  name("Ethernet1", unicast3, "sp-gold");
  const auto made = Rok::make<Qos::IntfConfig>(id("Ethernet1"));
  made->txQueueConfigIs(unicast3, Rok::make<Qos::TxQueueConfig>(unicast3));
  config->intfConfigIs(id("Ethernet1"), made);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
}

TEST_F(PolicyAttachments, ACommentThatNamesAnotherPolicyOverwrites) {
  queue("Ethernet1", unicast3);
  name("Ethernet1", unicast3, "sp-gold");
  name("Ethernet1", unicast3, "sp-silver");
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-silver"}}));
  EXPECT_EQ(root->interfaceToSchedulerPolicyMap(id("Ethernet1")), "sp-silver");
}

using Change = std::function<void(Qos::TxQueueConfig&)>;
const std::vector<Change> changesThatCount = {
    [](Qos::TxQueueConfig& queue) { queue.priorityIs(Qos::strictPriority); },
    [](Qos::TxQueueConfig& queue) { queue.bandwidthIs(40); },
    [](Qos::TxQueueConfig& queue) { queue.shapeIs(1000); }};

TEST_F(PolicyAttachments, ACommentThatGoesChangesNothingUntilASettingOfTheQueueChanges) {
  for (const Change& change : changesThatCount) {
    const auto config = queue("Ethernet1", unicast3);
    name("Ethernet1", unicast3, "sp-gold");
    cli->commentDel(key("Ethernet1", unicast3));
    EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
    EXPECT_EQ(root->interfaceToSchedulerPolicyMap().members(), 1u);
    change(*config);
    EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "none"}}));
    EXPECT_EQ(root->interfaceToSchedulerPolicyMap().members(), 0u);
    remove("Ethernet1");
  }
}

TEST_F(PolicyAttachments, ACommentThatGoesIsNoticedByAQueueNameOfThatIdToo) {
  queue("Ethernet1", unicast3);
  name("Ethernet1", unicast3, "sp-gold");
  cli->commentDel(key("Ethernet1", unicast3));
  queueName("q3", 3);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "none"}}));
}

TEST_F(PolicyAttachments, EachSettingThatCountsLooksAtTheCommentAgain) {
  for (const Change& change : changesThatCount) {
    const auto config = queue("Ethernet1", unicast3);
    name("Ethernet1", unicast3, "sp-gold");
    earlierAttachment("Ethernet1", "tampered");
    change(*config);
    EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
    remove("Ethernet1");
    cli->commentDel(key("Ethernet1", unicast3));
  }
}

TEST_F(PolicyAttachments, EcnAndWredWakeNothing) {
  const auto config = queue("Ethernet1", unicast3);
  name("Ethernet1", unicast3, "sp-gold");
  earlierAttachment("Ethernet1", "tampered");
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  const auto settings = Rok::make<Qos::EcnWredConfig>(Qos::EcnWredConfig::Settings{});
  config->ecnConfigIs(settings);
  config->wredConfigIs(settings);
  EXPECT_THAT(trace.lines(), IsEmpty());
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "tampered"}}));
}

// ===== What names no policy

TEST_F(PolicyAttachments, AQueueWithoutACommentOnAnInterfaceWithoutAnOutputCreatesNothing) {
  root->interfaceToSchedulerPolicyMapIs(id("Ethernet1"), "kept");
  queue("Ethernet1", unicast3);
  EXPECT_EQ(attachments(), AttachmentModel{});
  EXPECT_EQ(root->interfaceToSchedulerPolicyMap(id("Ethernet1")), "kept");
  const auto interface = interfaces->interfaceIs("Ethernet1");
  root->udpateIntfSchedulerPolicies(id("Ethernet1"), unicast3);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "no output"}}));
  EXPECT_EQ(root->interfaceToSchedulerPolicyMap(id("Ethernet1")), "kept");
}

TEST_F(PolicyAttachments, AQueueWithoutACommentClearsWhatAnotherQueueAttached) {
  queue("Ethernet1", unicast3);
  name("Ethernet1", unicast3, "sp-gold");
  queue("Ethernet1", unicast4);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "none"}}));
  EXPECT_EQ(root->interfaceToSchedulerPolicyMap().members(), 0u);
}

TEST_F(PolicyAttachments, OnAnOutputWithoutAnAttachmentTheMapLosesItsEntryToo) {
  interfaces->interfaceIs("Ethernet1")->outputIs();
  root->interfaceToSchedulerPolicyMapIs(id("Ethernet1"), "gone");
  queue("Ethernet1", unicast3);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "none"}}));
  EXPECT_EQ(root->interfaceToSchedulerPolicyMap().members(), 0u);
}

TEST_F(PolicyAttachments, NoOtherTextCountsAsAPolicy) {
  const std::vector<Rok::String> texts = {
      "",
      "uplink to core",
      "{}",
      document(""),
      document(R"("queue-management-profile":{"name":"qmp"})"),
      document(R"("scheduler-policy":{"name":""})"),
      document(R"("scheduler-policy":{})"),
      document(R"("1":{"inputs":{}})"),
      naming("sp-gold").addRight("\n").addRight(naming("sp-gold"))};
  const auto config = queue("Ethernet1", unicast3);
  unsigned char percent = 0;
  for (const auto& text : texts) {
    earlierAttachment("Ethernet1", "stale");
    comment("Ethernet1", unicast3, text);
    EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "stale"}})) << text;
    config->bandwidthIs(++percent);
    EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "none"}})) << text;
  }
}

TEST_F(PolicyAttachments, ADocumentWithBothPartsNamesThePolicy) {
  queue("Ethernet1", unicast3);
  comment("Ethernet1", unicast3,
          document(R"("scheduler-policy":{"name":"sp-gold"},)"
                   R"("queue-management-profile":{"name":"qmp"})"));
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
}

// Whoever's it is: the text is read before its tx queue is looked for.
TEST(AttachmentsDeathTest, AWronglyTypedCommentEndsTheProcess) {
  const auto end = "a comment holds a JSON value of the wrong type";
  for (const char* text : {R"({"MetaData-OpenConfig":7})",
                           R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":7}}})",
                           R"({"MetaData-OpenConfig":{"queue-management-profile":[]}})"}) {
    SchedulerDevice device;
    device.start();
    device.queue("Ethernet1", unicast3);
    for (const char* name : {"Ethernet1", "Ethernet2"}) {
      EXPECT_EXIT(device.comment(name, unicast3, text), testing::KilledBySignal(SIGABRT), end)
          << text;
    }
    device.stop();
    device.comment("Ethernet2", unicast3, text);
    device.start();  // no tx queue has this comment, so the root doesn't read it
    device.stop();
    device.comment("Ethernet1", unicast3, text);
    EXPECT_EXIT(device.start(), testing::KilledBySignal(SIGABRT), end) << text;
  }
}

// ===== The last one decides

TEST_F(PolicyAttachments, OfQueuesThatDisagreeTheLastEvaluatedDecides) {
  const auto three = queue("Ethernet1", unicast3);
  const auto four = queue("Ethernet1", unicast4);
  name("Ethernet1", unicast3, "sp-gold");
  name("Ethernet1", unicast4, "sp-silver");
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-silver"}}));
  three->bandwidthIs(40);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
  four->shapeIs(1000);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-silver"}}));
  cli->commentDel(key("Ethernet1", unicast3));
  three->bandwidthIs(50);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "none"}}))
      << "although the other one still names a policy";
  queueName("q4", 4);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-silver"}}));
}

TEST(AttachmentsStart, OfQueuesThatDisagreeAtStartTheLastOfTheWalkDecides) {
  bool gold = false;
  bool none = false;
  for (std::uint32_t order = 0; order < 20; ++order) {
    const WalkOrder walk(order);
    SchedulerDevice device;
    for (unsigned char number = 0; number < 4; ++number) {
      device.queue("Ethernet1", device.unicast(number));
      if (number < 2) device.name("Ethernet1", device.unicast(number), "sp-gold");
    }
    Qos::TxQueue last;
    for (auto i = device.intf("Ethernet1")->txQueueConfig().iterator(); i; ++i) last = i.key();
    device.start();
    const bool named = last.id.value < 2;
    const auto model = device.attachments();
    EXPECT_EQ(model.contains("Ethernet1") && model.at("Ethernet1") == "sp-gold", named);
    (named ? gold : none) = true;
  }
  EXPECT_TRUE(gold && none) << "both must have come about";
}

TEST_F(PolicyAttachments, OneInterfaceIsNoAffairOfAnother) {
  queue("Ethernet1", unicast3);
  queue("Ethernet2", unicast3);
  name("Ethernet1", unicast3, "sp-gold");
  name("Ethernet2", unicast3, "sp-silver");
  cli->commentDel(key("Ethernet1", unicast3));
  root->udpateIntfSchedulerPolicies(id("Ethernet1"), unicast3);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "none"}, {"Ethernet2", "sp-silver"}}));
}

// ===== What goes

TEST_F(PolicyAttachments, AQueueThatGoesLeavesTheAttachment) {
  queue("Ethernet1", unicast3);
  name("Ethernet1", unicast3, "sp-gold");
  removeQueue("Ethernet1", unicast3);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
  EXPECT_EQ(root->interfaceToSchedulerPolicyMap(id("Ethernet1")), "sp-gold");
  EXPECT_EQ(machine("Ethernet1", unicast3), nullptr);
  queue("Ethernet1", unicast4);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "none"}}))
      << "until another queue is evaluated";
}

TEST_F(PolicyAttachments, AnInterfaceThatGoesLeavesTheAttachmentAndLetsItsQueuesGo) {
  const auto config = queue("Ethernet1", unicast3);
  queue("Ethernet1", unicast4);
  const auto intfConfig = intf("Ethernet1");
  name("Ethernet1", unicast3, "sp-gold");
  const auto sm = machine("Ethernet1");
  remove("Ethernet1");
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
  EXPECT_EQ(root->interfaceToSchedulerPolicyMap(id("Ethernet1")), "sp-gold");
  EXPECT_EQ(root->intfSm().members(), 0u);
  EXPECT_EQ(sm->txQueueSm().members(), 0u);
  EXPECT_EQ(config->notifieeList()->notifiees(), 0u);
  name("Ethernet1", unicast3, "sp-silver");
  config->bandwidthIs(40);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}})) << "no machine listens";
}

TEST_F(PolicyAttachments, AnInterfaceThatComesBackIsBuiltAndEvaluatedAnew) {
  queue("Ethernet1", unicast3);
  const auto intfConfig = intf("Ethernet1");
  const auto old = machine("Ethernet1");
  const auto oldQueue = machine("Ethernet1", unicast3);
  remove("Ethernet1");
  cli->commentIs(key("Ethernet1", unicast3), naming("sp-gold"));
  EXPECT_EQ(attachments(), AttachmentModel{});
  config->intfConfigIs(id("Ethernet1"), intfConfig);
  EXPECT_NE(machine("Ethernet1"), old);
  EXPECT_NE(machine("Ethernet1", unicast3), oldQueue);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
  name("Ethernet1", unicast3, "sp-silver");
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-silver"}}));
}

TEST_F(PolicyAttachments, QueuesThatGoLeaveNoTraceInTheIndex) {
  const auto keys = [this] {
    return std::pair(root->txQueues().byCommentKey()->keys(),
                     root->txQueues().byTxQueueId()->keys());
  };
  for (const char* name : {"Ethernet1", "Etherlink1", "Ethernet2"}) {
    queue(name, unicast3);
    queue(name, multicast3);
    queue(name, unicast4);
  }
  EXPECT_EQ(keys(), std::pair(6u, 2u));
  for (const auto& txQueue : {unicast3, multicast3, unicast4}) removeQueue("Ethernet1", txQueue);
  EXPECT_EQ(keys(), std::pair(6u, 2u)) << "two interfaces share their keys";
  removeQueue("Ethernet2", unicast4);
  EXPECT_EQ(keys(), std::pair(5u, 2u));
  remove("Etherlink1");
  remove("Ethernet2");
  EXPECT_EQ(keys(), std::pair(0u, 0u));
}

TEST_F(PolicyAttachments, KeysWithoutAnEntryAndWithoutAMachineHaveNoEffect) {
  earlierAttachment("Ethernet1", "sp-gold");
  intf("Ethernet1");
  machine("Ethernet1")->handleTxQueueConfig(unicast3);
  root->handleIntfConfig(id("Ethernet2"));
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
  EXPECT_EQ(root->intfSm().members(), 1u);
}

TEST_F(PolicyAttachments, PrepareToDieOfAnInterfaceEmptiesItsCollectionAndTouchesNoOutput) {
  queue("Ethernet1", unicast3);
  queue("Ethernet1", unicast4);
  name("Ethernet1", unicast4, "sp-gold");
  machine("Ethernet1", unicast4)->doPrepareToDie();
  EXPECT_NE(machine("Ethernet1", unicast4), nullptr);
  machine("Ethernet1")->doPrepareToDie();
  EXPECT_EQ(machine("Ethernet1")->txQueueSm().members(), 0u);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
}

// ===== Whom a comment and a queue name reach

TEST_F(PolicyAttachments, AQueueNameReachesBothTypesOfItsIdOnEveryInterface) {
  for (const char* name : {"Ethernet1", "Ethernet2"}) {
    queue(name, unicast3);
    queue(name, multicast3);
    queue(name, unicast4);
  }
  TraceCapture trace({2});
  queueName("q3", 3);
  EXPECT_THAT(
      trace.linesWith("No Scheduler Policy"),
      UnorderedElementsAre("2 udpateIntfSchedulerPolicies No Scheduler Policy comment for intf: "
                           "Ethernet1 TxQueueId: unicast-3",
                           "2 udpateIntfSchedulerPolicies No Scheduler Policy comment for intf: "
                           "Ethernet1 TxQueueId: multicast-3",
                           "2 udpateIntfSchedulerPolicies No Scheduler Policy comment for intf: "
                           "Ethernet2 TxQueueId: unicast-3",
                           "2 udpateIntfSchedulerPolicies No Scheduler Policy comment for intf: "
                           "Ethernet2 TxQueueId: multicast-3"));
}

// A walk over the tree doesn't find them, so neither a comment nor a queue name may.
TEST_F(PolicyAttachments, MachinesOutsideTheTreeHearNeitherCommentsNorQueueNames) {
  queue("Ethernet1", unicast3);
  const auto removed = machine("Ethernet1", unicast3);
  removeQueue("Ethernet1", unicast3);
  const auto config = Rok::make<Qos::TxQueueConfig>(unicast3);
  const auto loose = schedulerPolicyTxQueueSmFactory(machine("Ethernet1").get(), id("Ethernet1"),
                                                     policies, interfaces, config);
  name("Ethernet1", unicast3, "sp-gold");
  queueName("q3", 3);
  EXPECT_EQ(attachments(), AttachmentModel{});
  config->bandwidthIs(40);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}})) << "its own input counts";
}

TEST_F(PolicyAttachments, AMachineOfAnInterfaceThatWasReplacedHearsNothing) {
  queue("Ethernet1", unicast3);
  const auto removed = machine("Ethernet1", unicast3);
  remove("Ethernet1");
  queue("Ethernet1", unicast4);
  name("Ethernet1", unicast3, "sp-gold");
  queueName("q3", 3);
  EXPECT_EQ(attachments(), AttachmentModel{});
}

TEST_F(PolicyAttachments, AMachineWhosePlaceWasTakenHearsNothing) {
  queue("Ethernet1", unicast3);
  const auto removed = machine("Ethernet1", unicast3);
  removeQueue("Ethernet1", unicast3);
  queue("Ethernet1", unicast3);
  TraceCapture trace({2});
  queueName("q3", 3);
  EXPECT_THAT(trace.linesWith("No Scheduler Policy"), testing::SizeIs(1));
}

TEST_F(PolicyAttachments, AMachineThatOutlivesTheRootDoesNoHarm) {
  queue("Ethernet1", unicast3);
  const auto outliving = machine("Ethernet1", unicast3);
  restart();
  name("Ethernet1", unicast3, "sp-gold");
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
}

// Where detail is traced, the keys of all queues are computed for it. That may change nothing.
// Queue names reach the queues of an interface in no certain order, so each has one type of them.
TEST_F(PolicyAttachments, TracingChangesNothing) {
  const std::pair<const char*, unsigned char> intfs[] = {
      {"Ethernet1", 0}, {"Etherlink1", 0}, {"Ethernet2", 1}, {"Ethernet3", 2}};
  std::mt19937 random(11);
  SchedulerDevice silent;
  silent.start();
  enum Event : unsigned { aQueueGoes, aCommentGoes, aQueueComes, aQueueName, aComment };
  std::map<Event, int> effects;
  for (int step = 0; step < 1000; ++step) {
    const auto& [intfName, type] = intfs[random() % 4];
    const Rok::String name = intfName;
    const Qos::TxQueue txQueue{static_cast<unsigned char>(random() % 3), Qos::QueueType{type}};
    const auto policy = "sp-" + std::to_string(step);
    const Event event{static_cast<unsigned>(random() % 5)};
    const auto act = [&](SchedulerDevice& on) {
      const bool exists = on.intf(name)->txQueueConfig().find(txQueue) != nullptr;
      if (event == aQueueGoes) on.removeQueue(name, txQueue);
      if (event == aCommentGoes) on.cli->commentDel(on.key(name, txQueue));
      if (event == aQueueComes && !exists) on.queue(name, txQueue);
      if (event == aQueueName) on.queueName(policy.c_str(), txQueue.id.value);
      if (event == aComment) on.name(name, txQueue, policy);
    };
    const auto before = silent.attachments();
    {
      const TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
      act(*this);
    }
    act(silent);
    ASSERT_EQ(attachments(), silent.attachments()) << "step " << step;
    effects[event] += silent.attachments() != before ? 1 : 0;
  }
  EXPECT_EQ(effects[aQueueGoes] + effects[aCommentGoes], 0);
  for (const Event event : {aQueueComes, aQueueName, aComment}) EXPECT_GT(effects[event], 20);
}

// ===== Life

TEST_F(PolicyAttachments, TheMutatorsOfTheMapReplaceAndDelete) {
  root->interfaceToSchedulerPolicyMapIs(id("Ethernet1"), "a");
  root->interfaceToSchedulerPolicyMapIs(id("Ethernet1"), "b");
  root->interfaceToSchedulerPolicyMapIs(id("Ethernet2"), "c");
  EXPECT_EQ(root->interfaceToSchedulerPolicyMap(id("Ethernet1")), "b");
  EXPECT_EQ(root->interfaceToSchedulerPolicyMap(id("Ethernet3")), "");
  root->interfaceToSchedulerPolicyMapDel(id("Ethernet1"));
  root->interfaceToSchedulerPolicyMapDel(id("Ethernet1"));
  EXPECT_EQ(root->interfaceToSchedulerPolicyMap().members(), 1u);
  root->interfaceToSchedulerPolicyMapDelAll();
  EXPECT_EQ(root->interfaceToSchedulerPolicyMap().members(), 0u);
}

}  // namespace
}  // namespace QosOc::schedulerPolicyInterfaceTest
