// Comment keys, and comments read, written and cleaned up.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "QosOpenConfig/QosOpenConfigHelperComments.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::commentHelperTest {
namespace {

using Helper = CommentHelper;
using SchedulerPolicy = SchedulerPolicyCommentInfo;
using Management = QueueManagementProfileCommentInfo;

CommentInfo comment(const Rok::String& schedulerPolicy, const Rok::String& profile) {
  return {SchedulerPolicy(schedulerPolicy), Management(profile)};
}

// The attachment document with the two names, as a line without its end.
std::string line(const char* schedulerPolicy, const char* profile) {
  return std::string(serializeJsonComment(comment(schedulerPolicy, profile)));
}

const SchedulerPolicy gold("sp-gold");
const Management wred("qmp-wred");

// ===== Keys

Velmo::String key(const char* interface, unsigned char id, Qos::QueueType type) {
  return Helper::commentKey(Nerit::IntfId(interface), Qos::TxQueue{id, type});
}

TEST(CommentKey, NamesTheInterfaceTheTypeAndTheQueue) {
  EXPECT_EQ(key("p7", 3, Qos::unicast), "if-p7-uc-txq-3");
  EXPECT_EQ(key("p7", 3, Qos::multicast), "if-p7-mc-txq-3");
}

TEST(CommentKey, AnyOtherTypeHasTheBareWord) {
  EXPECT_EQ(key("p7", 3, Qos::QueueType{2}), "if-p7-txq-3");
  EXPECT_EQ(key("p7", 3, Qos::QueueType{255}), "if-p7-txq-3");
}

TEST(CommentKey, TakesTheShortNameOfTheInterface) {
  EXPECT_EQ(key("Ethernet7/1", 3, Qos::unicast), "if-Et7/1-uc-txq-3");
  EXPECT_EQ(key("", 3, Qos::unicast), "if--uc-txq-3");
  EXPECT_EQ(key("Ethernet%s%n7", 3, Qos::unicast), "if-Et%s%n7-uc-txq-3");
  const std::string longName = "Et" + std::string(2000, '7');
  EXPECT_EQ(key(longName.c_str(), 3, Qos::multicast), "if-" + longName + "-mc-txq-3");
}

TEST(CommentKey, IsThatOfTheFormatForEveryQueue) {
  const std::pair<Qos::QueueType, const char*> words[] = {
      {Qos::unicast, "uc-txq"}, {Qos::multicast, "mc-txq"}, {Qos::QueueType{2}, "txq"}};
  for (const auto& [type, word] : words) {
    for (int id = 0; id < 256; ++id) {
      EXPECT_EQ(key("Ethernet7/1", static_cast<unsigned char>(id), type),
                Rok::_fmt("if-%s-%s-%d", "Et7/1", word, id));
    }
  }
}

TEST(CommentKey, TakesNamesUpToTheirFirstNul) {
  const Qos::TxQueue queue{3, Qos::unicast};
  EXPECT_EQ(Helper::commentKey(Nerit::IntfId(std::string("p7\0x\0y", 6)), queue), "if-p7-uc-txq-3");
  EXPECT_EQ(Helper::commentKey(Nerit::IntfId(std::string("\0p7", 3)), queue), "if--uc-txq-3");
  EXPECT_EQ(Helper::profileCommentKey(std::string("a\0b\0c", 5)), "qos-profile-a");
  EXPECT_EQ(Helper::profileCommentKey(std::string("\0b", 2)), "qos-profile-");
}

TEST(CommentKey, OfAProfileHoldsTheNameAsItIs) {
  EXPECT_EQ(Helper::profileCommentKey("__YANG_SP_[sp-gold]"), "qos-profile-__YANG_SP_[sp-gold]");
  EXPECT_EQ(Helper::profileCommentKey(""), "qos-profile-");
  EXPECT_EQ(Helper::profileCommentKey("100%s"), "qos-profile-100%s");
}

TEST(CommentKey, WithoutATraceIsTheSame) {
  support::TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  const Nerit::IntfId intfId("Ethernet7/1");
  for (unsigned type = 0; type < 256; ++type) {
    const Qos::TxQueue queue{static_cast<unsigned char>(255 - type),
                             Qos::QueueType{static_cast<unsigned char>(type)}};
    trace.clear();
    const Velmo::String silent = QosOc::Helper::commentKey(intfId, queue);
    EXPECT_THAT(trace.lines(), testing::IsEmpty());
    EXPECT_EQ(silent, Helper::commentKey(intfId, queue));
  }
}

TEST(CommentKey, OfAProfileLeadsBackToItsName) {
  for (const std::string& name :
       {std::string("__YANG_SP_[sp-gold]"), std::string(), std::string("qos-profile-"),
        std::string("a\x01"
                    "b\n")}) {
    const Velmo::String key = Helper::profileCommentKey(name);
    EXPECT_EQ(QosOc::Helper::profileNameFromCommentKey(key), std::string_view(name));
    EXPECT_FALSE(QosOc::Helper::isCutInCommentKey(name));
  }
  const std::string withNul("a\0b", 3);
  EXPECT_EQ(QosOc::Helper::profileNameFromCommentKey(Helper::profileCommentKey(withNul)), "a");
  EXPECT_TRUE(QosOc::Helper::isCutInCommentKey(withNul));
  for (const std::string& key :
       {std::string(), std::string("qos-profile"), std::string("Qos-profile-a"),
        std::string(" qos-profile-a"), std::string("if-p7-uc-txq-3"), "qos-profile-" + withNul}) {
    EXPECT_EQ(QosOc::Helper::profileNameFromCommentKey(key), std::nullopt) << key;
  }
}

// ===== Reading

TEST(CommentRead, EachPartIsReadFromTheDocument) {
  EXPECT_EQ(Helper::schedulerPolicyInfoFromComment(line("sp-gold", "qmp-wred")), gold);
  EXPECT_EQ(Helper::queueManagementProfileInfoFromComment(line("sp-gold", "qmp-wred")), wred);
  EXPECT_EQ(Helper::schedulerPolicyInfoFromComment(line("", "qmp-wred")), SchedulerPolicy());
  EXPECT_EQ(Helper::queueManagementProfileInfoFromComment(line("sp-gold", "")), Management());
}

TEST(CommentRead, TheTextIsOneDocument) {
  const std::string several = "note\n" + line("sp-gold", "qmp-wred") + "\n";
  EXPECT_EQ(Helper::schedulerPolicyInfoFromComment(several), SchedulerPolicy());
  EXPECT_EQ(Helper::queueManagementProfileInfoFromComment(several), Management());
  EXPECT_EQ(Helper::schedulerPolicyInfoFromComment(line("sp-gold", "") + "\n"), gold);
  EXPECT_EQ(Helper::schedulerPolicyInfoFromComment(""), SchedulerPolicy());
}

TEST(CommentRead, AProfileIsReadWhole) {
  SchedulerPolicyProfileCommentInfo info("");
  SchedulerCommentInfo scheduler(7);
  scheduler.priorityIs(STRICT);
  info.schedulersIs(scheduler);
  EXPECT_EQ(Helper::schedulerPolicyProfileInfoFromComment(
                Helper::createSchedulerPolicyProfileComment(info)),
            info);
  EXPECT_EQ(Helper::createSchedulerPolicyProfileComment(info),
            R"({"MetaData-OpenConfig":{"7":{"priority":"STRICT","inputs":{}}}})");
  EXPECT_EQ(Helper::schedulerPolicyProfileInfoFromComment("note"),
            SchedulerPolicyProfileCommentInfo(""));
}

// ===== Creating

struct Merge {
  std::string comment;
  std::string withPolicy;
  std::string withManagement;
};

TEST(CommentCreate, MergesIntoWhatIsThere) {
  const Merge rows[] = {
      // Nothing of ours: a new last line, without its end.
      {"", line("sp-gold", ""), line("", "qmp-wred")},
      {"note", "note\n" + line("sp-gold", ""), "note\n" + line("", "qmp-wred")},
      {"note\n", "note\n" + line("sp-gold", ""), "note\n" + line("", "qmp-wred")},
      {"\n", "\n" + line("sp-gold", ""), "\n" + line("", "qmp-wred")},
      {"a\n\nb\n\n", "a\n\nb\n\n" + line("sp-gold", ""), "a\n\nb\n\n" + line("", "qmp-wred")},
      // A document that says nothing is as foreign as any other line.
      {R"({"MetaData-OpenConfig":{}})",
       R"({"MetaData-OpenConfig":{}})"
       "\n" +
           line("sp-gold", ""),
       R"({"MetaData-OpenConfig":{}})"
       "\n" +
           line("", "qmp-wred")},
      // The other part is kept, on the same line.
      {line("", "q"), line("sp-gold", "q") + "\n", line("", "qmp-wred") + "\n"},
      {line("s", ""), line("sp-gold", "") + "\n", line("s", "qmp-wred") + "\n"},
      {line("s", "q") + "\n", line("sp-gold", "q") + "\n", line("s", "qmp-wred") + "\n"},
      // Foreign lines stay, and all get their end.
      {"note\n" + line("s", "q") + "\nend", "note\n" + line("sp-gold", "q") + "\nend\n",
       "note\n" + line("s", "qmp-wred") + "\nend\n"},
      // Two lines of ours are both changed.
      {line("s", "") + "\n" + line("", "q"),
       line("sp-gold", "") + "\n" + line("sp-gold", "q") + "\n",
       line("s", "qmp-wred") + "\n" + line("", "qmp-wred") + "\n"},
  };
  for (const Merge& row : rows) {
    EXPECT_EQ(Helper::createSchedulerPolicyComment(gold, row.comment), row.withPolicy)
        << row.comment;
    EXPECT_EQ(Helper::createQueueManagementProfileComment(wred, row.comment), row.withManagement)
        << row.comment;
  }
}

TEST(CommentCreate, OnNothingGivesTheBareDocument) {
  EXPECT_EQ(Helper::createSchedulerPolicyComment(gold, ""),
            R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-gold"}}})");
  EXPECT_EQ(Helper::createQueueManagementProfileComment(wred, ""),
            R"({"MetaData-OpenConfig":{"queue-management-profile":{"name":"qmp-wred"}}})");
}

TEST(CommentCreate, AProfileOnAPolicyGivesOneDocumentWithBothInTheirOrder) {
  EXPECT_EQ(Helper::createQueueManagementProfileComment(
                wred, Helper::createSchedulerPolicyComment(gold, "")),
            R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-gold"},)"
            R"("queue-management-profile":{"name":"qmp-wred"}}})"
            "\n");
}

TEST(CommentCreate, OverAnExistingPolicyReplacesTheName) {
  const Velmo::String first = Helper::createSchedulerPolicyComment(SchedulerPolicy("s"), "");
  EXPECT_EQ(Helper::createSchedulerPolicyComment(gold, first), line("sp-gold", "") + "\n");
}

TEST(CommentCreate, RewritesALineOfOursWithoutWhatIsNotOurs) {
  EXPECT_EQ(Helper::createSchedulerPolicyComment(
                gold, R"( {"x":1,"MetaData-OpenConfig":{"scheduler-policy":{"name":"s","y":2}}} )"),
            line("sp-gold", "") + "\n");
}

TEST(CommentCreate, OfNothingClearsThePart) {
  EXPECT_EQ(Helper::createSchedulerPolicyComment(SchedulerPolicy(), ""), "");
  EXPECT_EQ(Helper::createSchedulerPolicyComment(SchedulerPolicy(), "note"), "note\n");
  EXPECT_EQ(Helper::createSchedulerPolicyComment(SchedulerPolicy(), line("s", "q")),
            line("", "q") + "\n");
  EXPECT_EQ(Helper::createSchedulerPolicyComment(SchedulerPolicy(), line("s", "")), "\n");
  EXPECT_EQ(Helper::createQueueManagementProfileComment(Management(), line("", "q")), "\n");
}

TEST(CommentCreate, ACarriageReturnIsWhiteSpaceBehindADocument) {
  EXPECT_EQ(Helper::createSchedulerPolicyComment(gold, line("s", "") + "\r\nnote\r\n"),
            line("sp-gold", "") + "\nnote\r\n");
}

// ===== Deleting

TEST(CommentDeleteProfile, LeavesThePolicyOfItsLine) {
  EXPECT_EQ(Helper::deleteQueueManagementProfileComment(line("sp-gold", "qmp-wred")),
            line("sp-gold", "") + "\n");
}

TEST(CommentDeleteProfile, DropsALineThatHoldsNothingElse) {
  EXPECT_EQ(Helper::deleteQueueManagementProfileComment(line("", "qmp-wred")), "");
  EXPECT_EQ(Helper::deleteQueueManagementProfileComment("note\n" + line("", "qmp-wred")), "note\n");
}

TEST(CommentDeleteProfile, KeepsEveryOtherLineAndDropsEmptyOnes) {
  EXPECT_EQ(Helper::deleteQueueManagementProfileComment(""), "");
  EXPECT_EQ(Helper::deleteQueueManagementProfileComment("\n\n"), "");
  EXPECT_EQ(Helper::deleteQueueManagementProfileComment("a\n\nb"), "a\nb\n");
  EXPECT_EQ(Helper::deleteQueueManagementProfileComment(" \n"), " \n");
  EXPECT_EQ(Helper::deleteQueueManagementProfileComment(line("sp-gold", "")),
            line("sp-gold", "") + "\n");
  EXPECT_EQ(Helper::deleteQueueManagementProfileComment(
                "a\n" + line("s", "q") + "\n" + line("", "q") + "\n\n" + line("t", "") + "\nb"),
            "a\n" + line("s", "") + "\n" + line("t", "") + "\nb\n");
}

// A policy alone is not rewritten: its line stays to the byte.
TEST(CommentDeleteProfile, LeavesALineWithoutAProfileAsItIs) {
  const std::string spaced = R"( {"MetaData-OpenConfig":{"scheduler-policy":{"name":"s"}}, "x":1})";
  EXPECT_EQ(Helper::deleteQueueManagementProfileComment(spaced), spaced + "\n");
}

TEST(CommentDeletePolicy, LeavesTheProfileWithoutAnEndOfLine) {
  EXPECT_EQ(Helper::deleteSchedulerPolicyComment(line("sp-gold", "qmp-wred")),
            line("", "qmp-wred"));
  EXPECT_EQ(Helper::deleteSchedulerPolicyComment(line("sp-gold", "qmp-wred") + "\n"),
            line("", "qmp-wred"));
  EXPECT_EQ(Helper::deleteSchedulerPolicyComment(line("", "qmp-wred")), line("", "qmp-wred"));
}

TEST(CommentDeletePolicy, DropsEveryCommentWithoutAProfile) {
  EXPECT_EQ(Helper::deleteSchedulerPolicyComment(line("sp-gold", "")), "");
  EXPECT_EQ(Helper::deleteSchedulerPolicyComment("note"), "");
  EXPECT_EQ(Helper::deleteSchedulerPolicyComment(""), "");
}

TEST(CommentDeletePolicy, IsNotTheTwinOfDeletingAProfile) {
  const std::string several = "note\n" + line("", "qmp-wred");
  EXPECT_EQ(Helper::deleteQueueManagementProfileComment(several), "note\n");
  EXPECT_EQ(Helper::deleteSchedulerPolicyComment(several), "");
  EXPECT_EQ(Helper::deleteSchedulerPolicyComment(line("s", "q") + "\nnote"), "");
}

// ===== Any comment

std::string anyComment(std::mt19937& random) {
  const char* const names[] = {"", "s", "a\nb", "\"", "\xff\x01"};
  std::string text;
  for (auto n = random() % 5; n > 0; --n) {
    switch (random() % 3) {
      case 0:
        text += line(names[random() % 5], names[random() % 5]);
        break;
      case 1:
        text += "note";
        break;
      default:
        break;
    }
    if (n > 1 || random() % 2 == 0) text += '\n';
  }
  return text;
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string one; std::getline(in, one);) lines.push_back(one);
  return lines;
}

// The operations on lines, told once more by the standard library's line reader.
std::string merged(const std::string& comment, const auto& change) {
  std::string result;
  bool found = false;
  for (const std::string& one : linesOf(comment)) {
    CommentInfo info = deserializeJsonComment(one);
    const bool ours = !(info == CommentInfo());
    found = found || ours;
    if (ours) change(info);
    result += (ours ? std::string(serializeJsonComment(info)) : one) + "\n";
  }
  CommentInfo info;
  change(info);
  return found ? result : result + std::string(serializeJsonComment(info));
}

TEST(Comments, OfAnyLinesAreChangedLineByLine) {
  std::mt19937 random(29);
  for (int round = 0; round < 3000; ++round) {
    const std::string text = anyComment(random);
    ASSERT_EQ(Helper::createSchedulerPolicyComment(gold, text),
              merged(text, [](CommentInfo& info) { info.sPInfoIs(gold); }));
    ASSERT_EQ(Helper::createQueueManagementProfileComment(wred, text),
              merged(text, [](CommentInfo& info) { info.qMPInfoIs(wred); }));
    std::string withoutProfile;
    for (std::string one : linesOf(text)) {
      CommentInfo info = deserializeJsonComment(one);
      if (info.qMPInfo()) one = serializeJsonComment({info.sPInfo(), {}});
      if (!one.empty()) withoutProfile += one + "\n";
    }
    ASSERT_EQ(Helper::deleteQueueManagementProfileComment(text), withoutProfile);
    const CommentInfo whole = deserializeJsonComment(text);
    ASSERT_EQ(Helper::deleteSchedulerPolicyComment(text),
              whole.qMPInfo() ? serializeJsonComment({{}, whole.qMPInfo()}) : Velmo::String());
  }
}

TEST(Comments, WhatIsCreatedIsFoundAgain) {
  for (const char* name : {"s", "a\nb", "\"quoted\"", "gr\xc3\xbc\xc3\x9f", "\x01\xff"}) {
    const Velmo::String policy = Helper::createSchedulerPolicyComment(SchedulerPolicy(name), "");
    EXPECT_EQ(Helper::schedulerPolicyInfoFromComment(policy), SchedulerPolicy(name));
    const Velmo::String both =
        Helper::createQueueManagementProfileComment(Management(name), policy);
    EXPECT_EQ(Helper::schedulerPolicyInfoFromComment(both), SchedulerPolicy(name));
    EXPECT_EQ(Helper::queueManagementProfileInfoFromComment(both), Management(name));
  }
}

// ===== The object, and the trace

TEST(CommentHelperObject, EachCallMakesANewOneThatIsOn) {
  const Rok::Ptr<CommentHelper> one = commentHelperFactory();
  const Rok::Ptr<CommentHelper> other = CommentHelper::CommentHelperIs();
  ASSERT_TRUE(one);
  ASSERT_TRUE(other);
  EXPECT_FALSE(one == other);
  EXPECT_TRUE(one->hasNotificationActive());
  EXPECT_EQ(one->references(), 1u);
  EXPECT_EQ(one->profileCommentKey("p"), "qos-profile-p");
}

TEST(CommentHelperTrace, EachOperationOpensWithItsNameAndItsArguments) {
  support::TraceCapture trace({0, 8, 9});
  const Nerit::IntfId intfId("Ethernet7");
  const SchedulerPolicyProfileCommentInfo profile("p");
  Helper::commentKey(intfId, Qos::TxQueue{3, Qos::multicast});
  Helper::createSchedulerPolicyComment(gold, "a");
  Helper::deleteSchedulerPolicyComment("b");
  Helper::schedulerPolicyInfoFromComment("c");
  Helper::createQueueManagementProfileComment(wred, "d\ne");
  Helper::deleteQueueManagementProfileComment("f");
  Helper::queueManagementProfileInfoFromComment("g");
  Helper::profileCommentKey("h");
  Helper::createSchedulerPolicyProfileComment(profile);
  Helper::schedulerPolicyProfileInfoFromComment("i");
  EXPECT_THAT(
      trace.lines(),
      testing::ElementsAre(
          "9 commentKey ( Ethernet7, multicast-3 ) ",
          "9 createSchedulerPolicyComment ( 'sp-gold', a ) ",
          "9 deleteSchedulerPolicyComment ( b ) ", "9 schedulerPolicyInfoFromComment ( c ) ",
          "9 createQueueManagementProfileComment ( 'qmp-wred', d\\x0ae ) ",
          "9 deleteQueueManagementProfileComment ( f ) ",
          "9 queueManagementProfileInfoFromComment ( g ) ", "9 profileCommentKey ( h ) ",
          "9 createSchedulerPolicyProfileComment ( Value('QosOc::SchedulerPolicyProfileCommentInfo'"
          ", ** {'name': 'p', 'schedulers': None}) ) ",
          "9 schedulerPolicyProfileInfoFromComment ( i ) "));
  EXPECT_THAT(trace.handles(), testing::Each("OpenConfigQos"));
}

TEST(CommentHelperTrace, TheCodecBelowTracesAtItsOwnLevel) {
  const std::string document = line("sp-gold", "");
  support::TraceCapture trace({2, 9});
  Helper::createSchedulerPolicyComment(gold, "note");
  EXPECT_THAT(
      trace.lines(),
      testing::ElementsAre("9 createSchedulerPolicyComment ( 'sp-gold', note ) ",
                           "2 deserializeJsonComment comment: note", "2 Comment not json: note",
                           "2 serializeJsonComment", "2 Comment: " + document));
}

TEST(CommentHelperTrace, DeletingAPolicyWritesNothingWithoutAProfile) {
  const std::string document = line("sp-gold", "");
  support::TraceCapture trace({2, 9});
  EXPECT_EQ(Helper::deleteSchedulerPolicyComment(document), "");
  EXPECT_THAT(trace.lines(),
              testing::ElementsAre("9 deleteSchedulerPolicyComment ( " + document + " ) ",
                                   "2 deserializeJsonComment comment: " + document));
}

// ===== What is remembered of a comment

TEST(CommentMemo, GivesTheNamesOfTheTextThatItIsAskedAbout) {
  QosOc::Helper::CommentMemo memo;
  const std::pair<std::string, CommentInfo> rows[] = {
      {"", {}},
      {line("sp-gold", "qmp-wred"), comment("sp-gold", "qmp-wred")},
      {line("sp-gold", ""), comment("sp-gold", "")},
      {"note", {}},
      {line("", "qmp-wred"), comment("", "qmp-wred")},
      {line("sp-gold", "qmp-wred"), comment("sp-gold", "qmp-wred")},
      {"", {}}};
  for (const auto& [text, info] : rows) {
    for (int time = 0; time < 2; ++time) {
      EXPECT_EQ(memo.schedulerPolicyInfo(text), info.sPInfo()) << text;
      EXPECT_EQ(memo.queueManagementProfileInfo(text), info.qMPInfo()) << text;
    }
  }
}

TEST(CommentMemo, DecodesATextOnceForAsLongAsItStaysTheSame) {
  const Velmo::String text(line("sp-gold", "qmp-wred"));
  QosOc::Helper::CommentMemo memo;
  const Velmo::String policy = memo.schedulerPolicyInfo(text).schedulerPolicy();
  EXPECT_TRUE(memo.schedulerPolicyInfo(text).schedulerPolicy().shares(policy));
  EXPECT_TRUE(memo.schedulerPolicyInfo(text).schedulerPolicy().shares(policy));
  EXPECT_TRUE(memo.schedulerPolicyInfo(std::string(text)).schedulerPolicy().shares(policy));
}

// The machines that hear of one comment share its names.
TEST(CommentMemo, TakesWhatAnotherOneHasDecoded) {
  const Velmo::String text(line("sp-gold", "qmp-wred"));
  QosOc::Helper::CommentMemo other;
  QosOc::Helper::CommentMemo memo(other);
  const Velmo::String policy = other.schedulerPolicyInfo(text).schedulerPolicy();
  EXPECT_TRUE(memo.schedulerPolicyInfo(text).schedulerPolicy().shares(policy));
  other.schedulerPolicyInfo("another one");
  EXPECT_TRUE(memo.schedulerPolicyInfo(text).schedulerPolicy().shares(policy));
}

TEST(CommentMemo, TracesEachQuestionAsADecoding) {
  QosOc::Helper::CommentMemo memo;
  memo.schedulerPolicyInfo("note");
  support::TraceCapture trace({2, 9});
  for (int time = 0; time < 2; ++time) {
    trace.clear();
    memo.schedulerPolicyInfo("note");
    memo.queueManagementProfileInfo("note");
    EXPECT_THAT(
        trace.lines(),
        testing::ElementsAre("9 schedulerPolicyInfoFromComment ( note ) ",
                             "2 deserializeJsonComment comment: note", "2 Comment not json: note",
                             "9 queueManagementProfileInfoFromComment ( note ) ",
                             "2 deserializeJsonComment comment: note", "2 Comment not json: note"));
  }
}

}  // namespace
}  // namespace QosOc::commentHelperTest
