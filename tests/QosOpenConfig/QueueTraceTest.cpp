// What the queues' machines trace.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "QosOpenConfig/QosOpenConfigQueueKivToOcSm.h"
#include "tests/support/QueueDevice.h"
#include "tests/support/QueueFixture.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::queueTraceTest {
namespace {

using support::QueueDevice;
using support::TraceCapture;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

using namespace support::queueCases;

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

}  // namespace
}  // namespace QosOc::queueTraceTest
