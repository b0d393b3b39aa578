// Tx queues into queues, where a comment speaks for them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigQueueKivToOcSm.h"
#include "tests/support/QueueDevice.h"
#include "tests/support/QueueFixture.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::queueCommentTest {
namespace {

using support::QueueDevice;
using support::QueueModel;
using support::TraceCapture;
using testing::IsEmpty;

using namespace support::queueCases;

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
    device.comment("Ethernet2", uc3, text);  // no tx queue has this comment, so no machine reads it
  }
}

}  // namespace
}  // namespace QosOc::queueCommentTest
