// QoS profiles and their comments into scheduler policies.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <random>
#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "tests/support/Refusals.h"
#include "tests/support/SchedulerDevice.h"
#include "tests/support/TraceCapture.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::schedulerPolicyProfileTest {
namespace {

using support::AttachmentModel;
using support::outOfRange;
using support::PolicyModel;
using support::SchedulerDevice;
using support::schedulerLines;
using support::TraceCapture;
using support::WalkOrder;
using testing::ElementsAre;

constexpr auto percentText =
    "QosOc::PercentType::value < QosOc::PercentType::min or > QosOc::PercentType::max not allowed";

// Documents of profile comments, by their members.
Rok::String document(const std::string& members) { return SchedulerDevice::document(members); }
const auto full =
    document(R"("1":{"priority":"STRICT","one-rate-two-color":{"cir":5000,"cir-pct":40},)"
             R"("inputs":{"in-a":{"queue":"q7","weight":30},"in-b":{"queue":"q3"}}},)"
             R"("2":{"inputs":{"in-c":{"weight":5}}})");
const std::string fullText = "1 STRICT cir 5000 40% [in-a q7 30, in-b q3]; 2 [in-c 5]";

struct Policies : testing::Test, SchedulerDevice {
  Policies() { start(); }
  // The policy sp-gold with this comment, made from nothing.
  std::string made(const Rok::String& comment) {
    profileDel("sp-gold");
    profileComment("sp-gold", comment);
    profile("sp-gold");
    return model().at("sp-gold");
  }
  // The comment of the policy sp-gold that is there.
  std::string changed(const Rok::String& comment) {
    profileComment("sp-gold", comment);
    return model().at("sp-gold");
  }
};

// ===== What a profile and its comment give

TEST_F(Policies, AProfileWithoutACommentGivesAPolicyWithItsConfigAlone) {
  profiles->configIs("__YANG_SP_[sp-gold]",
                     Rok::make<Qos::QosProfileConfig>("__YANG_SP_[sp-gold]"));
  ASSERT_EQ(model(), (PolicyModel{{"sp-gold", "-"}}));
  const auto policy = policies->schedulerPolicy("sp-gold");
  EXPECT_EQ(policy->config().name, "sp-gold");
  EXPECT_EQ(policy->schedulers(), nullptr);
  EXPECT_EQ(attachments(), AttachmentModel{});
}

TEST_F(Policies, TheCommentGivesSchedulersRatesAndInputs) { EXPECT_EQ(made(full), fullText); }

TEST_F(Policies, EveryFieldIsCopiedToItsPlace) {
  cli->commentIs("qos-profile-__YANG_SP_[sp-gold]", full);
  profile("sp-gold");
  const auto scheduler = policies->schedulerPolicy("sp-gold")->schedulers()->scheduler(1);
  Config::SchedulerConfig config;
  config.sequence = 1;
  config.priority = Config::SchedulerPriority::STRICT;
  EXPECT_EQ(scheduler->config(), config);
  EXPECT_EQ(static_cast<unsigned>(scheduler->config().schedulerType), 0u);
  EXPECT_EQ(*scheduler->oneRateTwoColor(), (Config::OneRateTwoColor{5000, PercentType(40)}));
  Config::SchedulerInput input("in-a");
  input.config.id = "in-a";
  input.config.queue = "q7";
  input.config.weight = 30;
  EXPECT_EQ(scheduler->inputs()->input("in-a"), input);
  EXPECT_EQ(static_cast<unsigned>(scheduler->inputs()->input("in-a").config.inputType), 0u);
}

TEST_F(Policies, ASchedulerWithEmptyInputsHasNeitherPriorityNorRateNorInputs) {
  EXPECT_EQ(made(R"({"MetaData-OpenConfig":{"1":{"inputs":{}}}})"), "1");
  const auto scheduler = policies->schedulerPolicy("sp-gold")->schedulers()->scheduler(1);
  EXPECT_FALSE(scheduler->config().priority.has_value());
  EXPECT_FALSE(scheduler->oneRateTwoColor().has_value());
  EXPECT_EQ(scheduler->inputs(), nullptr);
}

TEST_F(Policies, RatesComeOneByOneOrTogetherAndZeroIsNone) {
  const std::pair<const char*, const char*> rows[] = {
      {R"("cir":5000)", "1 cir 5000"},
      {R"("cir-pct":40)", "1 40%"},
      {R"("cir":5000,"cir-pct":40)", "1 cir 5000 40%"},
      {R"("cir":5000,"cir-pct":0)", "1 cir 5000"},
      {R"("cir":0,"cir-pct":40)", "1 40%"},
      {R"("cir":0,"cir-pct":0)", "1"},
      {"", "1"},
      {R"("cir-pct":1)", "1 1%"},
      {R"("cir-pct":100)", "1 100%"},
      {R"("cir":18446744073709551615)", "1 cir 18446744073709551615"}};
  for (const auto& [rate, text] : rows) {
    EXPECT_EQ(made(document(R"("1":{"one-rate-two-color":{)" + std::string(rate) + "}}")), text);
  }
}

TEST_F(Policies, APriorityOfTheCommentIsStrictAndNoneIsAbsent) {
  EXPECT_EQ(made(document(R"("1":{"priority":"STRICT"})")), "1 STRICT");
  EXPECT_EQ(made(document(R"("1":{})")), "1");
}

TEST_F(Policies, InputsHaveWhatTheyAreGiven) {
  EXPECT_EQ(made(document(R"("1":{"inputs":{"a":{},"b":{"queue":"q1"},"c":{"weight":7},)"
                          R"("d":{"queue":"","weight":0},)"
                          R"("e":{"queue":"q5","weight":18446744073709551615}}})")),
            "1 [a, b q1, c 7, d, e q5 18446744073709551615]");
  const auto input =
      policies->schedulerPolicy("sp-gold")->schedulers()->scheduler(1)->inputs()->input("a");
  EXPECT_EQ(input.config.queue, "");
  EXPECT_FALSE(input.config.weight.has_value());
}

TEST_F(Policies, SequencesOfAllSizesAreKeys) {
  EXPECT_EQ(made(document(R"("0":{},"4294967295":{},"7":{})")), "0; 7; 4294967295");
}

TEST_F(Policies, NothingInTheProfileIsRead) {
  profileComment("sp-gold", full);
  profiles->configIs("__YANG_SP_[sp-gold]", nullptr);
  EXPECT_EQ(model(), (PolicyModel{{"sp-gold", fullText}}));
}

TEST_F(Policies, EachProfileHasItsOwnComment) {
  profileComment("a", document(R"("1":{})"));
  profileComment("b", document(R"("2":{})"));
  profile("a");
  profile("b");
  profile("c");
  EXPECT_EQ(model(), (PolicyModel{{"a", "1"}, {"b", "2"}, {"c", "-"}}));
}

TEST_F(Policies, OtherProfilesAreLeftAlone) {
  for (const char* name : {"plain", "__YANG_SP_[]", "__YANG_QMP_[gold]", "__yang_sp_[gold]", ""}) {
    cli->commentIs(CommentHelper::profileCommentKey(name), full);
    foreignProfile(name);
    profiles->configDel(name);
  }
  EXPECT_EQ(model(), PolicyModel{});
}

// ===== The order of events

TEST_F(Policies, ACommentAfterItsProfileFillsThePolicy) {
  profile("sp-gold");
  const auto policy = policies->schedulerPolicy("sp-gold");
  EXPECT_EQ(changed(full), fullText);
  EXPECT_EQ(policies->schedulerPolicy("sp-gold"), policy);
}

TEST_F(Policies, ACommentBeforeItsProfileWaitsForIt) {
  profileComment("sp-gold", full);
  EXPECT_EQ(model(), PolicyModel{});
  profile("sp-gold");
  EXPECT_EQ(model(), (PolicyModel{{"sp-gold", fullText}}));
}

TEST_F(Policies, ACommentThatGainsASchedulerAnInputOrARateAddsIt) {
  made(document(R"("1":{"inputs":{"in-a":{"queue":"q7"}}})"));
  EXPECT_EQ(changed(document(R"("1":{"inputs":{"in-a":{"queue":"q7"},"in-b":{}}},"2":{})")),
            "1 [in-a q7, in-b]; 2");
  EXPECT_EQ(changed(document(R"("1":{"one-rate-two-color":{"cir":5}},"2":{"inputs":{"x":{}}})")),
            "1 cir 5 [in-a q7, in-b]; 2 [x]");
}

// The comment only adds: what is there stays until the profile goes.
TEST_F(Policies, ACommentThatChangesAValueHasNoEffect) {
  made(full);
  EXPECT_EQ(changed(document(R"("1":{"one-rate-two-color":{"cir":1,"cir-pct":1},)"
                             R"("inputs":{"in-a":{"queue":"q0","weight":1},"in-b":{"weight":1}}},)"
                             R"("2":{"priority":"STRICT","inputs":{"in-c":{}}})")),
            fullText);
}

TEST_F(Policies, ARateThatIsThereGainsNoOtherHalf) {
  EXPECT_EQ(made(document(R"("1":{"one-rate-two-color":{"cir":5000}})")), "1 cir 5000");
  EXPECT_EQ(changed(document(R"("1":{"one-rate-two-color":{"cir":5000,"cir-pct":40}})")),
            "1 cir 5000");
  EXPECT_EQ(changed(document(R"("1":{"one-rate-two-color":{"cir-pct":101}})")), "1 cir 5000")
      << "and isn't even tested";
}

TEST_F(Policies, ACommentThatLosesSchedulersOrInputsHasNoEffect) {
  made(full);
  EXPECT_EQ(changed(document(R"("1":{"inputs":{}})")), fullText);
  EXPECT_EQ(changed(document("")), fullText);
}

TEST_F(Policies, ACommentThatIsEmptiedOrGoesLeavesThePolicy) {
  made(full);
  EXPECT_EQ(changed(""), fullText);
  profileComment("sp-gold", full);
  cli->commentDel(profileKey("sp-gold"));
  EXPECT_EQ(model(), (PolicyModel{{"sp-gold", fullText}}));
}

TEST_F(Policies, AProfileThatGoesTakesItsPolicyWhateverTheCommentSays) {
  made(full);
  profileDel("sp-gold");
  EXPECT_EQ(model(), PolicyModel{});
  profileComment("sp-gold", document(R"("3":{})"));
  EXPECT_EQ(model(), PolicyModel{});
  profile("sp-gold");
  EXPECT_EQ(model(), (PolicyModel{{"sp-gold", "3"}})) << "read again, with today's values";
}

TEST_F(Policies, AnExistingPolicyKeepsItsObjectsAndItsConfigs) {
  const auto policy = earlierPolicy("sp-gold");
  policy->configIs({"another"});
  const auto scheduler = policy->schedulersIs()->schedulerIs(1);
  scheduler->configIs({9, {}, {}});
  const auto inputs = scheduler->inputsIs();
  profileComment("sp-gold", document(R"("1":{"priority":"STRICT","inputs":{"in-a":{}}})"));
  profile("sp-gold");
  EXPECT_EQ(model(), (PolicyModel{{"sp-gold", "1!9 [in-a]!config another"}}));
  EXPECT_EQ(policies->schedulerPolicy("sp-gold"), policy);
  EXPECT_EQ(policy->schedulers()->scheduler(1), scheduler);
  EXPECT_EQ(scheduler->inputs(), inputs);
}

TEST_F(Policies, AnotherProfileObjectOfThatNameChangesNothing) {
  made(full);
  const auto policy = policies->schedulerPolicy("sp-gold");
  profile("sp-gold");
  EXPECT_EQ(policies->schedulerPolicy("sp-gold"), policy);
  EXPECT_EQ(model(), (PolicyModel{{"sp-gold", fullText}}));
}

// ===== Bad comments

TEST_F(Policies, TextThatIsNoDocumentOrHasNoSchedulersLeavesSchedulersNull) {
  for (const auto& text : {Rok::String("uplink"), Rok::String("{}"), document(""),
                           Rok::String("[1]"), full.addRight("\n").addRight(full)}) {
    EXPECT_EQ(made(text), "-") << text;
  }
}

TEST_F(Policies, ABadCommentLeavesWhatIsThere) {
  made(full);
  for (const auto& text : {Rok::String("uplink"), Rok::String("{}"), document("")}) {
    EXPECT_EQ(changed(text), fullText) << text;
  }
}

// Every member is a scheduler there, and a key without a number reads as 0.
TEST_F(Policies, AnAttachmentDocumentUnderAProfilesKeyIsASchedulerOfSequenceZero) {
  EXPECT_EQ(made(document(R"("scheduler-policy":{"name":"sp-gold"})")), "0");
  EXPECT_EQ(attachments(), AttachmentModel{});
}

TEST(PoliciesDeathTest, AWronglyTypedCommentEndsTheProcess) {
  const auto end = "a comment holds a JSON value of the wrong type";
  for (const auto& text : {Rok::String(R"({"MetaData-OpenConfig":7})"), document(R"("1":7)"),
                           document(R"("1":{"inputs":{"a":{"weight":"heavy"}}})")}) {
    SchedulerDevice device;
    device.start();
    device.profile("sp-gold");
    EXPECT_EXIT(device.profileComment("sp-gold", text), testing::KilledBySignal(SIGABRT), end)
        << text;
    device.stop();
    device.profileComment("sp-gold", text);
    EXPECT_EXIT(device.start(), testing::KilledBySignal(SIGABRT), end) << text;
    device.profileDel("sp-gold");
    device.start();  // no profile has this comment, so the root doesn't read it
  }
}

// An input without an id, a queue and a weight equals the record that stands for none.
TEST_F(Policies, AnInputOfTheEmptyIdWithoutValuesIsWrittenAgainEachTime) {
  made(document(R"("1":{"inputs":{"":{}}})"));
  const auto& inputs = *policies->schedulerPolicy("sp-gold")->schedulers()->scheduler(1)->inputs();
  EXPECT_EQ(inputs.input().members(), 1u);
  TraceCapture trace({2});
  root->udpateSchedulerPolicies(native("sp-gold"));
  EXPECT_THAT(trace.linesWith("creating scheduler input: "), testing::SizeIs(1));
  profileComment("sp-gold", document(R"("1":{"inputs":{"":{"queue":"q1"}}})"));
  EXPECT_EQ(model().at("sp-gold"), "1 [ q1]") << "and so its values may still come";
  profileComment("sp-gold", document(R"("1":{"inputs":{"":{"queue":"q2"}}})"));
  EXPECT_EQ(model().at("sp-gold"), "1 [ q1]");
}

// ===== A rate out of range

TEST_F(Policies, MoreThanAHundredPercentIsRefusedAndWhatCameBeforeStays) {
  profile("sp-gold");
  for (const int percent : {101, 255}) {
    const auto comment = document(R"("1":{"priority":"STRICT","one-rate-two-color":{"cir":7,)"
                                  R"("cir-pct":)" +
                                  std::to_string(percent) + R"(},"inputs":{"in-a":{}}})");
    EXPECT_EQ(outOfRange([&] { profileComment("sp-gold", comment); }), percentText);
    EXPECT_EQ(model(), (PolicyModel{{"sp-gold", "1 STRICT"}})) << "no rate and no inputs";
    EXPECT_EQ(outOfRange([&] { root->udpateSchedulerPolicies(native("sp-gold")); }), percentText);
    EXPECT_EQ(model(), (PolicyModel{{"sp-gold", "1 STRICT"}})) << "the same place again";
  }
  EXPECT_EQ(changed(document(R"("1":{"one-rate-two-color":{"cir":7}})")), "1 STRICT cir 7");
}

TEST_F(Policies, AProfileWhoseRateIsRefusedThrowsOutOfItsNotification) {
  profileComment("sp-gold", document(R"("1":{"one-rate-two-color":{"cir-pct":101}})"));
  EXPECT_EQ(outOfRange([&] { profile("sp-gold"); }), percentText);
  EXPECT_EQ(model(), (PolicyModel{{"sp-gold", "1"}}));
  profileDel("sp-gold");
  EXPECT_EQ(model(), PolicyModel{});
}

// Only the low byte of the number gets here.
TEST_F(Policies, APercentageOfTwoHundredAndFiftySixIsNone) {
  EXPECT_EQ(made(document(R"("1":{"one-rate-two-color":{"cir-pct":256}})")), "1");
}

TEST(PoliciesRange, TheSchedulersBehindTheRefusedOneAreNotReached) {
  bool before = false;
  bool behind = false;
  for (std::uint32_t order = 0; order < 20; ++order) {
    const WalkOrder walk(order);
    SchedulerDevice device;
    device.start();
    device.profileComment("sp", document(R"("1":{"inputs":{"a":{}}},)"
                                         R"("2":{"one-rate-two-color":{"cir-pct":101}},)"
                                         R"("3":{"inputs":{"c":{}}})"));
    EXPECT_EQ(outOfRange([&] { device.profile("sp"); }), percentText);
    const std::string once = device.model().at("sp");
    EXPECT_THAT(once, testing::AnyOf("2", "1 [a]; 2", "2; 3 [c]", "1 [a]; 2; 3 [c]"));
    EXPECT_EQ(outOfRange([&] { device.root->udpateSchedulerPolicies(device.native("sp")); }),
              percentText);
    EXPECT_EQ(device.model().at("sp"), once) << "the same place again";
    before = before || once != "2";
    behind = behind || once != "1 [a]; 2; 3 [c]";
  }
  EXPECT_TRUE(before && behind) << "both must have come about";
}

// ===== Whom a comment reaches

TEST_F(Policies, ACommentOfNoProfileAndNoQueueHasNoEffect) {
  profile("sp-gold");
  queue("Ethernet1", unicast(3));
  for (const char* key :
       {"", "qos-profile-", "qos-profile", "qos-profile-sp-gold", "qos-profile-__YANG_SP_[sp-gold",
        "qos-profile-__YANG_SP_[other]", "xqos-profile-__YANG_SP_[sp-gold]", "__YANG_SP_[sp-gold]",
        "if-Et1-uc-txq-4", "if-Et2-uc-txq-3"}) {
    cli->commentIs(key, full);
    cli->commentIs(key, naming("sp-gold"));
  }
  EXPECT_EQ(model(), (PolicyModel{{"sp-gold", "-"}}));
  EXPECT_EQ(attachments(), AttachmentModel{});
}

TEST_F(Policies, ACommentReachesAProfileOfOtherOriginWhichIsTurnedAway) {
  foreignProfile("plain");
  foreignProfile("");
  for (const char* name : {"plain", ""}) {
    TraceCapture trace({2});
    cli->commentIs(CommentHelper::profileCommentKey(name), full);
    EXPECT_THAT(
        trace.linesWith("profile not related to OC: "),
        ElementsAre("2 udpateSchedulerPolicies profile not related to OC: " + std::string(name)));
  }
  EXPECT_EQ(model(), PolicyModel{});
}

TEST_F(Policies, NamesOfAnyBytesAreReachedByTheirComments) {
  for (const std::string& policy :
       {std::string("a]b"), std::string("[x]"), std::string("qos-profile-"), std::string("\xff "),
        std::string("a\0b", 3)}) {
    profile(policy);
    profileComment(policy, full);
    EXPECT_EQ(model().at(policy), fullText) << testing::PrintToString(policy);
  }
}

TEST_F(Policies, ACommentReachesAllProfilesWhoseNamesAreTheSameUpToANul) {
  const std::string names[] = {std::string("a\0b", 3), std::string("a\0c", 3), "a", "ab"};
  for (const std::string& policy : names) profile(policy);
  cli->commentIs("qos-profile-__YANG_SP_[a", full);
  EXPECT_EQ(model(),
            (PolicyModel{{names[0], fullText}, {names[1], fullText}, {"a", "-"}, {"ab", "-"}}));
  profileDel(names[0]);
  profile(names[0]);
  EXPECT_EQ(model().at(names[0]), fullText) << "and a profile that comes finds it";
  profileDel(names[1]);
  cli->commentIs("qos-profile-__YANG_SP_[a", "");
  EXPECT_EQ(model().count(names[1]), 0u);
}

// Where detail is traced, the keys of all profiles are computed for it. That may change nothing.
TEST_F(Policies, TracingChangesNothing) {
  std::mt19937 random(5);
  SchedulerDevice silent;
  silent.start();
  const std::string names[] = {"a", "b", "a]", "c", std::string("a\0b", 3), std::string("a\0c", 3)};
  for (int step = 0; step < 500; ++step) {
    const Rok::String policy = names[random() % 6];
    const unsigned what = random() % 6;
    const auto comment = document("\"" + std::to_string(random() % 9) + R"(":{"inputs":{}})");
    const auto act = [&](SchedulerDevice& on) {
      if (what == 0) on.profile(policy);
      if (what == 1) on.profileDel(policy);
      if (what == 2) on.foreignProfile(policy);
      if (what == 3) on.cli->commentIs(policy.addLeft("qos-profile-"), comment);
      if (what >= 4) on.profileComment(policy, comment);
    };
    {
      const TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
      act(*this);
    }
    act(silent);
    ASSERT_EQ(model(), silent.model()) << "step " << step;
  }
}

// ===== Traces

constexpr auto entry =
    "2 void QosOc::SchedulerPolicyKivToOCSm::udpateSchedulerPolicies(const Velmo::String&) "
    "profile: __YANG_SP_[sp-gold]";
constexpr auto decoding =
    "2 Velmo::String decodeSPProfileName(Velmo::String): profileName: __YANG_SP_[sp-gold]";

TEST_F(Policies, AProfileWithoutACommentTracesItsCreationAndThat) {
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  profile("sp-gold");
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre(entry, decoding, "2 creating scheduler Policy: sp-gold",
                          "9 profileCommentKey ( __YANG_SP_[sp-gold] ) ",
                          "2 udpateSchedulerPolicies No comment for profile: __YANG_SP_[sp-gold]"));
  EXPECT_THAT(trace.handles(), testing::Each("OpenConfigQos"));
}

TEST_F(Policies, ACommentTracesEachThingThatItAdds) {
  profile("sp-gold");
  TraceCapture trace({2});
  profileComment("sp-gold", document(R"("5":{"one-rate-two-color":{"cir":1},)"
                                     R"("inputs":{"in-a":{}}})"));
  const std::vector<std::string> end = {
      "2 comment not related to Interface attachment of Scheduler Policy"};
  EXPECT_THAT(schedulerLines(trace),
              ElementsAre("2 SchedulerPolicyKivToOCSm: handleComment", entry, decoding,
                          "2 creating schedulers for Policy: sp-gold", "2 creating scheduler: 5",
                          "2 creating oneRateTwoColor for scheduler: 5",
                          "2 creating scheduler Inputs for scheduler: 5",
                          "2 creating scheduler input: in-a", end[0]));
  trace.clear();
  profileComment("sp-gold", document(R"("5":{"inputs":{"in-b":{}}})"));
  EXPECT_THAT(schedulerLines(trace),
              ElementsAre("2 SchedulerPolicyKivToOCSm: handleComment", entry, decoding,
                          "2 creating scheduler input: in-b", end[0]));
}

TEST_F(Policies, RunningAgainOnTheSameStateWritesAndTracesNothingMore) {
  made(full);
  TraceCapture trace({2});
  root->udpateSchedulerPolicies(native("sp-gold"));
  EXPECT_THAT(schedulerLines(trace), ElementsAre(entry, decoding));
  EXPECT_EQ(model(), (PolicyModel{{"sp-gold", fullText}}));
}

TEST_F(Policies, ABadCommentIsTracedAndTheOperationGoesOn) {
  profile("sp-gold");
  for (const auto& text : {document(""), Rok::String("uplink")}) {
    TraceCapture trace({2});
    profileComment("sp-gold", text);
    EXPECT_THAT(schedulerLines(trace),
                ElementsAre("2 SchedulerPolicyKivToOCSm: handleComment", entry, decoding,
                            "2 udpateSchedulerPolicies Bad comment for profile: "
                            "__YANG_SP_[sp-gold]",
                            "2 comment not related to Interface attachment of Scheduler Policy"));
  }
}

TEST_F(Policies, ABadCommentIsTracedAfterItsReading) {
  profile("sp-gold");
  TraceCapture trace({2});
  profileComment("sp-gold", "uplink");
  EXPECT_THAT(
      trace.linesWithoutAddresses(),
      ElementsAre("2 SchedulerPolicyKivToOCSm: handleComment", entry, decoding,
                  "2 deserializeJsonProfileComment comment: uplink", "2 Comment not json: uplink",
                  "2 udpateSchedulerPolicies Bad comment for profile: "
                  "__YANG_SP_[sp-gold]",
                  "2 deserializeJsonComment comment: uplink", "2 Comment not json: uplink",
                  "2 comment not related to Interface attachment of Scheduler Policy"));
}

TEST_F(Policies, ACommentThatIsEmptiedOrGoesTracesThatThereIsNone) {
  const auto none =
      ElementsAre("2 SchedulerPolicyKivToOCSm: handleComment", entry, decoding,
                  "2 udpateSchedulerPolicies No comment for profile: __YANG_SP_[sp-gold]",
                  "2 comment not related to Interface attachment of Scheduler Policy");
  made(full);
  TraceCapture trace({2});
  profileComment("sp-gold", "");
  EXPECT_THAT(schedulerLines(trace), none);
  profileComment("sp-gold", full);
  trace.clear();
  cli->commentDel(profileKey("sp-gold"));
  EXPECT_THAT(schedulerLines(trace), none);
}

TEST_F(Policies, ADeletedProfileTracesTheDeletionOnlyIfItsPolicyIsThere) {
  profile("sp-gold");
  TraceCapture trace({2});
  profileDel("sp-gold");
  EXPECT_THAT(
      trace.linesWithoutAddresses(),
      ElementsAre(entry, decoding, "2 udpateSchedulerPolicies deleting scheduler policy: sp-gold"));
  profile("sp-gold");
  policies->schedulerPolicyDel("sp-gold");
  trace.clear();
  profileDel("sp-gold");
  EXPECT_THAT(trace.linesWithoutAddresses(), ElementsAre(entry, decoding));
}

TEST_F(Policies, AForeignProfileTracesThatItIsNotRelated) {
  TraceCapture trace({2});
  foreignProfile("plain");
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre("2 void QosOc::SchedulerPolicyKivToOCSm::udpateSchedulerPolicies(const "
                          "Velmo::String&) profile: plain",
                          "2 Velmo::String decodeSPProfileName(Velmo::String): profileName: plain",
                          "2 udpateSchedulerPolicies profile not related to OC: plain"));
}

TEST_F(Policies, TheRateIsTracedBeforeItIsRefused) {
  profile("sp-gold");
  TraceCapture trace({2});
  EXPECT_THROW(profileComment("sp-gold", document(R"("5":{"one-rate-two-color":{"cir-pct":101}})")),
               Rok::RangeException);
  EXPECT_THAT(schedulerLines(trace).back(), "2 creating oneRateTwoColor for scheduler: 5");
}

TEST_F(Policies, ACommentOfOtherOriginTracesThatItIsNotRelated) {
  TraceCapture trace({2});
  cli->commentIs("vlan-7", "uplink");
  EXPECT_THAT(schedulerLines(trace),
              ElementsAre("2 SchedulerPolicyKivToOCSm: handleComment",
                          "2 comment not related to Interface attachment of Scheduler Policy"));
}

}  // namespace
}  // namespace QosOc::schedulerPolicyProfileTest
