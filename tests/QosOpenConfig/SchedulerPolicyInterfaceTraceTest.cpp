// What the attachments of scheduler policies trace.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "tests/support/PolicyAttachmentFixture.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::schedulerPolicyInterfaceTraceTest {
namespace {

using support::AttachmentModel;
using support::schedulerLines;
using support::TraceCapture;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

using namespace support::attachmentCases;

// ===== Traces

constexpr auto queueInitialized =
    "2 void QosOc::SchedulerPolicyTxQueueSm::handleInitialized() (  ) ";
constexpr auto queueSettings =
    "2 void QosOc::SchedulerPolicyTxQueueSm::handlePriorityBandwidthShapeConfig() (  ) ";

TEST_F(PolicyAttachments, AnInterfaceThatComesTracesItsWayDownToItsQueues) {
  const auto made = Rok::make<Qos::IntfConfig>(id("Ethernet1"));
  made->txQueueConfigIs(unicast3, Rok::make<Qos::TxQueueConfig>(unicast3));
  name("Ethernet1", unicast3, "sp-gold");
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  config->intfConfigIs(id("Ethernet1"), made);
  EXPECT_THAT(
      trace.linesWithoutAddresses(),
      ElementsAre(
          "2 void QosOc::SchedulerPolicyKivToOCSm::handleIntfConfig(const Nerit::IntfId&) ( "
          "Ethernet1 ) ",
          "2 void QosOc::SchedulerPolicyIntfSm::handleInitialized() (  ) ",
          "2 void QosOc::SchedulerPolicyIntfSm::handleTxQueueConfig(const Qos::TxQueue&) ( "
          "unicast-3 ) ",
          queueInitialized, queueSettings, "9 commentKey ( Ethernet1, unicast-3 ) ",
          R"(9 schedulerPolicyInfoFromComment ( {"MetaData-OpenConfig":)"
          R"({"scheduler-policy":{"name":"sp-gold"}}} ) )",
          R"(2 deserializeJsonComment comment: {"MetaData-OpenConfig":)"
          R"({"scheduler-policy":{"name":"sp-gold"}}})",
          "2 creating interface: Ethernet1", "2 creating interface output for intf: Ethernet1"));
  EXPECT_THAT(trace.handles(), testing::Each("OpenConfigQos"));
}

TEST_F(PolicyAttachments, AnAttachmentOverAnotherTracesNothingOfItsOwn) {
  const auto config = queue("Ethernet1", unicast3);
  name("Ethernet1", unicast3, "sp-gold");
  TraceCapture trace({2});
  config->bandwidthIs(40);
  EXPECT_THAT(schedulerLines(trace), ElementsAre(queueSettings));
}

TEST_F(PolicyAttachments, AnInterfaceWithoutAnOutputTracesOnlyTheOutput) {
  interfaces->interfaceIs("Ethernet1");
  queue("Ethernet1", unicast3);
  TraceCapture trace({2});
  name("Ethernet1", unicast3, "sp-gold");
  EXPECT_THAT(schedulerLines(trace),
              ElementsAre("2 SchedulerPolicyKivToOCSm: handleComment",
                          "2 creating interface output for intf: Ethernet1"));
}

TEST_F(PolicyAttachments, ACommentBeforeItsQueueTracesItsEntryAlone) {
  intf("Ethernet1");
  TraceCapture trace({2});
  name("Ethernet1", unicast3, "sp-gold");
  EXPECT_THAT(schedulerLines(trace), ElementsAre("2 SchedulerPolicyKivToOCSm: handleComment"));
}

TEST_F(PolicyAttachments, AQueueWithoutAPolicyTracesThatAndTheClearing) {
  const std::string noPolicy =
      "2 udpateIntfSchedulerPolicies No Scheduler Policy comment for intf: Ethernet1 TxQueueId: "
      "unicast-3";
  TraceCapture trace({2});
  const auto config = queue("Ethernet1", unicast3);
  EXPECT_THAT(schedulerLines(trace), Contains(noPolicy));
  EXPECT_THAT(trace.linesWith("deleting"), IsEmpty());
  interfaces->interfaceIs("Ethernet1");
  trace.clear();
  config->bandwidthIs(40);
  EXPECT_THAT(schedulerLines(trace), ElementsAre(queueSettings, noPolicy));
  interfaces->interface("Ethernet1")->outputIs();
  trace.clear();
  config->bandwidthIs(50);
  EXPECT_THAT(schedulerLines(trace),
              ElementsAre(queueSettings, noPolicy,
                          "2 udpateIntfSchedulerPolicies deleting intf scheduler policy "
                          "attachment: Ethernet1"));
}

TEST_F(PolicyAttachments, WhatGoesTracesItsPrepareToDieAndNothingElse) {
  queue("Ethernet1", unicast3);
  queue("Ethernet1", unicast4);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  removeQueue("Ethernet1", unicast3);
  EXPECT_THAT(
      trace.linesWithoutAddresses(),
      ElementsAre("2 void QosOc::SchedulerPolicyIntfSm::handleTxQueueConfig(const Qos::TxQueue&) "
                  "( unicast-3 ) ",
                  "2 void QosOc::SchedulerPolicyTxQueueSm::doPrepareToDie() (  ) "));
  trace.clear();
  remove("Ethernet1");
  EXPECT_THAT(
      trace.linesWithoutAddresses(),
      ElementsAre(
          "2 void QosOc::SchedulerPolicyKivToOCSm::handleIntfConfig(const Nerit::IntfId&) ( "
          "Ethernet1 ) ",
          "2 void QosOc::SchedulerPolicyIntfSm::doPrepareToDie() (  ) ",
          "2 void QosOc::SchedulerPolicyTxQueueSm::doPrepareToDie() (  ) "));
}

// The keys of all queues are computed to find those of a comment, as the trace tells.
TEST_F(PolicyAttachments, ACommentTracesTheKeyOfEveryQueueAndOfEveryProfileAtLevelNine) {
  queue("Ethernet1", unicast3);
  queue("Ethernet2", unicast4);
  name("Ethernet2", unicast4, "sp-gold");
  profile("sp-gold");
  const Rok::String ofQueue = key("Ethernet1", unicast3);
  const Rok::String ofProfile = profileKey("sp-gold");
  TraceCapture trace({9});
  cli->commentIs(ofQueue, naming("sp-gold"));
  EXPECT_THAT(trace.linesWith("Key ("),
              UnorderedElementsAre("9 profileCommentKey ( __YANG_SP_[sp-gold] ) ",
                                   "9 commentKey ( Ethernet1, unicast-3 ) ",
                                   "9 commentKey ( Ethernet1, unicast-3 ) ",
                                   "9 commentKey ( Ethernet2, unicast-4 ) "));
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}, {"Ethernet2", "sp-gold"}}));
  trace.clear();
  cli->commentIs(ofProfile, document(R"("1":{})"));
  EXPECT_THAT(trace.linesWith("Key ("),
              ElementsAre("9 profileCommentKey ( __YANG_SP_[sp-gold] ) ",
                          "9 profileCommentKey ( __YANG_SP_[sp-gold] ) "));
  EXPECT_EQ(model().at("sp-gold"), "1");
  trace.clear();
  queueName("q3", 3);
  EXPECT_THAT(trace.linesWith("Key ("), ElementsAre("9 commentKey ( Ethernet1, unicast-3 ) "));
}

}  // namespace
}  // namespace QosOc::schedulerPolicyInterfaceTraceTest
