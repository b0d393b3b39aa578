// The JSON form of comments: the texts to the byte, what is read from them, and the trace.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "host/CommentFaults.h"
#include "tests/support/CommentByDocument.h"
#include "tests/support/TraceCapture.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::commentCodecTest {
namespace {

using Input = SchedulerInputCommentInfo;
using Rate = OneRateTwoColorCommentInfo;
using Scheduler = SchedulerCommentInfo;
using Profile = SchedulerPolicyProfileCommentInfo;

CommentInfo comment(const Rok::String& schedulerPolicy, const Rok::String& profile) {
  return {SchedulerPolicyCommentInfo(schedulerPolicy), QueueManagementProfileCommentInfo(profile)};
}

Input input(const Rok::String& inputId, const Rok::String& q = "", std::uint64_t weight = 0) {
  Input result(inputId);
  result.qIs(q);
  result.weightIs(weight);
  return result;
}

Scheduler scheduler(std::uint32_t sequence, const Rate& rate = {},
                    std::initializer_list<Input> inputs = {}) {
  Scheduler result(sequence);
  result.oneRateTwoColorIs(rate);
  for (const Input& one : inputs) result.inputsIs(one);
  return result;
}

Scheduler strict(Scheduler scheduler) {
  scheduler.priorityIs(STRICT);
  return scheduler;
}

Profile profile(std::initializer_list<Scheduler> schedulers) {
  Profile result("");
  for (const Scheduler& one : schedulers) result.schedulersIs(one);
  return result;
}

// The scheduler in a profile document with the one member "7".
Scheduler schedulerOf(const std::string& members) {
  const Profile read =
      deserializeJsonProfileComment(R"({"MetaData-OpenConfig":{"7":)" + members + "}}");
  EXPECT_EQ(read.schedulers().members(), 1u);
  return read.schedulers(7);
}

const char* const bothParts = R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-gold"},)"
                              R"("queue-management-profile":{"name":"qmp-wred"}}})";
const char* const policyAlone =
    R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-gold"}}})";
const char* const managementAlone =
    R"({"MetaData-OpenConfig":{"queue-management-profile":{"name":"qmp-wred"}}})";
const char* const twoSchedulers =
    R"({"MetaData-OpenConfig":{"1":{"priority":"STRICT","one-rate-two-color":)"
    R"({"cir":1000000000,"cir-pct":40},"inputs":{"in-a":{"queue":"q7","weight":30},)"
    R"("in-b":{"queue":"q6"}}},"2":{"inputs":{}}}})";

Profile twoSchedulersRead() {
  return profile(
      {strict(scheduler(1, Rate(1000000000, 40), {input("in-a", "q7", 30), input("in-b", "q6")})),
       scheduler(2)});
}

// ===== Attachment documents, written

TEST(AttachmentDocument, HoldsThePartsThatAreNotEmpty) {
  EXPECT_EQ(serializeJsonComment(comment("sp-gold", "qmp-wred")), bothParts);
  EXPECT_EQ(serializeJsonComment(comment("sp-gold", "")), policyAlone);
  EXPECT_EQ(serializeJsonComment(comment("", "qmp-wred")), managementAlone);
}

TEST(AttachmentDocument, OfNothingIsTheEmptyString) {
  EXPECT_EQ(serializeJsonComment(CommentInfo()), "");
}

TEST(AttachmentDocument, NamesAreEscapedAsJsonWantsIt) {
  const auto written = [](std::string_view name) {
    const std::string text(serializeJsonComment(comment(name, "")));
    const std::string before = R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":)";
    EXPECT_TRUE(text.starts_with(before) && text.ends_with("}}}")) << text;
    return text.substr(before.size(), text.size() - before.size() - 3);
  };
  EXPECT_EQ(written("a\"b\\c"), R"("a\"b\\c")");
  EXPECT_EQ(written("\b\f\n\r\t"), R"("\b\f\n\r\t")");
  EXPECT_EQ(written("\x01\x1f"), R"("\u0001\u001F")");
  EXPECT_EQ(written("a/b"), R"("a/b")");
  EXPECT_EQ(written("\x7f"), "\"\x7f\"");
  EXPECT_EQ(written("gr\xc3\xbc\xc3\x9f"), "\"gr\xc3\xbc\xc3\x9f\"");
}

// Deliberate: names are C strings here.
TEST(AttachmentDocument, ANameEndsAtItsFirstNul) {
  const Rok::String name(std::string("sp\0gold", 7));
  EXPECT_EQ(serializeJsonComment(comment(name, "")),
            R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp"}}})");
  EXPECT_EQ(deserializeJsonComment(
                R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp\u0000gold"}}})"),
            comment("sp", ""));
  EXPECT_EQ(serializeJsonComment(comment("", Rok::String(std::string("q\0m", 3)))),
            R"({"MetaData-OpenConfig":{"queue-management-profile":{"name":"q"}}})");
}

TEST(ProfileDocument, KeysAndQueuesEndAtTheirFirstNul) {
  SchedulerCommentInfo scheduler(1);
  SchedulerInputCommentInfo input(Rok::String(std::string("a\0b", 3)));
  input.qIs(Rok::String(std::string("q\0r", 3)));
  scheduler.inputsIs(input);
  SchedulerPolicyProfileCommentInfo info("");
  info.schedulersIs(scheduler);
  EXPECT_EQ(serializeJsonProfileComment(info),
            R"({"MetaData-OpenConfig":{"1":{"inputs":{"a":{"queue":"q"}}}}})");
  const auto read = deserializeJsonProfileComment(
      R"({"MetaData-OpenConfig":{"1":{"inputs":{"a\u0000b":{"queue":"q\u0000r"}}}}})");
  EXPECT_EQ(read.schedulers(1).inputs("a").q(), "q");
}

// ===== Attachment documents, read

TEST(AttachmentDocument, ReadsBack) {
  EXPECT_EQ(deserializeJsonComment(bothParts), comment("sp-gold", "qmp-wred"));
  EXPECT_EQ(deserializeJsonComment(policyAlone), comment("sp-gold", ""));
  EXPECT_EQ(deserializeJsonComment(managementAlone), comment("", "qmp-wred"));
}

TEST(AttachmentDocument, OfWhatWasReadIsTheSameText) {
  for (const char* text : {bothParts, policyAlone, managementAlone}) {
    EXPECT_EQ(serializeJsonComment(deserializeJsonComment(text)), text);
  }
}

TEST(AttachmentDocument, MayBeInAnyFormThatJsonAllows) {
  EXPECT_EQ(deserializeJsonComment(" {\n \"MetaData-OpenConfig\" :\t{ \"queue-management-profile\""
                                   " : { \"name\" : \"\\u0071mp\" } , \"scheduler-policy\":"
                                   "{\"name\":\"\\ud83d\\ude00\"} } }\r\n "),
            comment("\xf0\x9f\x98\x80", "qmp"));
}

TEST(AttachmentDocument, FollowedByALineBreakReads) {
  EXPECT_EQ(deserializeJsonComment(Rok::String(bothParts).addRight("\n")),
            comment("sp-gold", "qmp-wred"));
}

TEST(AttachmentDocument, OtherMembersAreIgnoredAtEveryLevel) {
  for (const char* other : {"null", "true", "7", "-1.5", "\"x\"", "[1,[2]]", "{\"name\":7}"}) {
    const std::string extra = std::string(R"("extra":)") + other;
    EXPECT_EQ(deserializeJsonComment("{" + extra + R"(,"MetaData-OpenConfig":{)" + extra +
                                     R"(,"scheduler-policy":{)" + extra + R"(,"name":"a",)" +
                                     extra + R"(},"queue-management-profile":{"name":"b",)" +
                                     extra + "}," + extra + "}," + extra + "}"),
              comment("a", "b"))
        << other;
  }
}

TEST(AttachmentDocument, KeysAreTakenToTheLetter) {
  for (const char* text : {R"({"MetaData-OpenConfig":{"Scheduler-policy":{"name":"a"}}})",
                           R"({"MetaData-OpenConfig":{"scheduler-policy ":{"name":"a"}}})",
                           R"({"MetaData-OpenConfig":{"scheduler-policy\u0000":{"name":"a"}}})",
                           R"({"metadata-openconfig":{"scheduler-policy":{"name":"a"}}})"}) {
    EXPECT_EQ(deserializeJsonComment(text), CommentInfo()) << text;
  }
}

TEST(AttachmentDocument, OfTwoMembersOfOneKeyTheFirstCounts) {
  EXPECT_EQ(deserializeJsonComment(
                R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"a","name":"b"},)"
                R"("scheduler-policy":{"name":"c"}},"MetaData-OpenConfig":{}})"),
            comment("a", ""));
}

TEST(AttachmentDocument, WithoutEitherPartIsSilent) {
  support::TraceCapture trace({0, 2, 8, 9});
  EXPECT_EQ(deserializeJsonComment(R"({"MetaData-OpenConfig":{}})"), CommentInfo());
  EXPECT_THAT(
      trace.lines(),
      testing::ElementsAre(R"(2 deserializeJsonComment comment: {"MetaData-OpenConfig":{}})"));
}

TEST(AttachmentDocument, APartWithoutANameIsNoDocument) {
  const std::pair<const char*, const char*> rows[] = {
      {R"({"MetaData-OpenConfig":{"scheduler-policy":{}}})", "SP name not found"},
      {R"({"MetaData-OpenConfig":{"scheduler-policy":{"Name":"a"}}})", "SP name not found"},
      {R"({"MetaData-OpenConfig":{"scheduler-policy":{},)"
       R"("queue-management-profile":{"name":"b"}}})",
       "SP name not found"},
      {R"({"MetaData-OpenConfig":{"queue-management-profile":{}}})", "QMP name not found"},
      {R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"a"},)"
       R"("queue-management-profile":{}}})",
       "QMP name not found"},
      {R"({"MetaData-OpenConfig":{"queue-management-profile":{},"scheduler-policy":{}}})",
       "SP name not found"}};
  for (const auto& [text, message] : rows) {
    support::TraceCapture trace({2});
    EXPECT_EQ(deserializeJsonComment(text), CommentInfo()) << text;
    EXPECT_THAT(trace.lines(),
                testing::ElementsAre(std::string("2 deserializeJsonComment comment: ") + text,
                                     std::string("2 deserializeJsonComment ") + message));
  }
}

// The second part is not looked at when the first one has no name.
TEST(AttachmentDocument, TheSchedulerPolicyComesFirst) {
  EXPECT_EQ(deserializeJsonComment(R"({"MetaData-OpenConfig":{"scheduler-policy":{},)"
                                   R"("queue-management-profile":{"name":7}}})"),
            CommentInfo());
}

TEST(AttachmentDocument, AnEmptyNameReadsAsNone) {
  EXPECT_EQ(deserializeJsonComment(R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":""}}})"),
            CommentInfo());
}

TEST(AttachmentDocument, AProfileDocumentReadsAsTheDefault) {
  support::TraceCapture trace({2});
  EXPECT_EQ(deserializeJsonComment(twoSchedulers), CommentInfo());
  EXPECT_EQ(trace.lines().size(), 1u);
}

// ===== Profile documents, written

TEST(ProfileDocument, HoldsEachSchedulerWithWhatIsNotDefault) {
  EXPECT_EQ(serializeJsonProfileComment(twoSchedulersRead()), twoSchedulers);
}

TEST(ProfileDocument, OfNoSchedulersIsADocument) {
  EXPECT_EQ(serializeJsonProfileComment(Profile("")), R"({"MetaData-OpenConfig":{}})");
}

TEST(ProfileDocument, DoesNotHoldTheName) {
  EXPECT_EQ(serializeJsonProfileComment(Profile("sp-gold")), R"({"MetaData-OpenConfig":{}})");
}

TEST(ProfileDocument, OfDefaultsHoldsTheEmptyInputsAlone) {
  EXPECT_EQ(serializeJsonProfileComment(profile({scheduler(0)})),
            R"({"MetaData-OpenConfig":{"0":{"inputs":{}}}})");
}

TEST(ProfileDocument, LeavesOutEachMemberThatIsDefault) {
  const auto written = [](const Scheduler& one) {
    return serializeJsonProfileComment(profile({one}));
  };
  EXPECT_EQ(written(scheduler(3, Rate(7, 0))),
            R"({"MetaData-OpenConfig":{"3":{"one-rate-two-color":{"cir":7},"inputs":{}}}})");
  EXPECT_EQ(written(scheduler(3, Rate(0, 7))),
            R"({"MetaData-OpenConfig":{"3":{"one-rate-two-color":{"cir-pct":7},"inputs":{}}}})");
  EXPECT_EQ(written(strict(scheduler(3))),
            R"({"MetaData-OpenConfig":{"3":{"priority":"STRICT","inputs":{}}}})");
  EXPECT_EQ(written(scheduler(3, {}, {input("a")})),
            R"({"MetaData-OpenConfig":{"3":{"inputs":{"a":{}}}}})");
  EXPECT_EQ(written(scheduler(3, {}, {input("a", "q")})),
            R"({"MetaData-OpenConfig":{"3":{"inputs":{"a":{"queue":"q"}}}}})");
  EXPECT_EQ(written(scheduler(3, {}, {input("a", "", 1)})),
            R"({"MetaData-OpenConfig":{"3":{"inputs":{"a":{"weight":1}}}}})");
  EXPECT_EQ(written(scheduler(3, {}, {input("")})),
            R"({"MetaData-OpenConfig":{"3":{"inputs":{"":{}}}}})");
}

// Only STRICT is ever written: a priority of any other byte is left out.
TEST(ProfileDocument, APriorityWithoutANameIsLeftOut) {
  Scheduler one(3);
  one.priorityIs(SchedulerPriorityCommentInfo{2});
  EXPECT_EQ(serializeJsonProfileComment(profile({one})),
            R"({"MetaData-OpenConfig":{"3":{"inputs":{}}}})");
}

TEST(ProfileDocument, HoldsTheGreatestNumbers) {
  const Profile all = profile({scheduler(4294967295u, Rate(18446744073709551615u, 255),
                                         {input("a", "q", 18446744073709551615u)})});
  EXPECT_EQ(serializeJsonProfileComment(all),
            R"({"MetaData-OpenConfig":{"4294967295":{"one-rate-two-color":)"
            R"({"cir":18446744073709551615,"cir-pct":255},)"
            R"("inputs":{"a":{"queue":"q","weight":18446744073709551615}}}}})");
  EXPECT_EQ(deserializeJsonProfileComment(serializeJsonProfileComment(all)), all);
}

// With any order, that is: the value goes in by a move, since a copy may be in another one.
TEST(ProfileDocument, GoesInTheOrderOfTheCollections) {
  const support::WalkOrder order(9);
  Profile all("");
  for (std::uint32_t sequence = 1; sequence <= 20; ++sequence) {
    Scheduler one(sequence);
    for (int n = 0; n < 10; ++n) one.inputsIs(input("in-" + std::to_string(n)));
    all.schedulersIs(one);
  }
  std::string expected = R"({"MetaData-OpenConfig":{)";
  for (auto i = all.schedulers().iterator(); i; ++i) {
    expected += '"' + std::to_string(i.key()) + R"(":{"inputs":{)";
    for (auto j = i.currNodeNonStale()->value().inputs().iterator(); j; ++j) {
      expected += '"' + std::string(j.key()) + R"(":{},)";
    }
    expected.back() = '}';
    expected += "},";
  }
  expected.back() = '}';
  EXPECT_EQ(serializeJsonProfileComment(std::move(all)), expected + "}");
}

// ===== Profile documents, read

TEST(ProfileDocument, ReadsBackWithoutTheName) {
  Profile named = twoSchedulersRead();
  named.nameIs("sp-gold");
  const Profile read = deserializeJsonProfileComment(serializeJsonProfileComment(named));
  EXPECT_EQ(read.name(), "");
  EXPECT_EQ(read, twoSchedulersRead());
}

TEST(ProfileDocument, WithoutSchedulersIsSilent) {
  support::TraceCapture trace({0, 2, 8, 9});
  EXPECT_EQ(deserializeJsonProfileComment(R"({"MetaData-OpenConfig":{}})"), Profile(""));
  EXPECT_THAT(trace.lines(),
              testing::ElementsAre(
                  R"(2 deserializeJsonProfileComment comment: {"MetaData-OpenConfig":{}})"));
}

TEST(ProfileDocument, APriorityOfAnyValueIsStrict) {
  for (const char* value :
       {R"("STRICT")", R"("NONE")", R"("")", "null", "false", "0", "-1.5", "[]", "{}"}) {
    EXPECT_EQ(schedulerOf(std::string(R"({"priority":)") + value + "}"), strict(scheduler(7)))
        << value;
  }
  EXPECT_EQ(schedulerOf(R"({"Priority":"STRICT"})"), scheduler(7));
}

TEST(ProfileDocument, AKeyIsANumberAsFarAsItGoes) {
  const std::pair<const char*, std::uint32_t> rows[] = {{"1", 1},
                                                        {"007", 7},
                                                        {"12abc", 12},
                                                        {"12 13", 12},
                                                        {"1e3", 1},
                                                        {"0x10", 0},
                                                        {" 5", 5},
                                                        {"+5", 5},
                                                        {"", 0},
                                                        {"abc", 0},
                                                        {"scheduler-policy", 0},
                                                        {"-1", 4294967295u},
                                                        {"4294967295", 4294967295u},
                                                        {"4294967296", 0},
                                                        {"4294967298", 2},
                                                        {"9223372036854775807", 4294967295u},
                                                        {"99999999999999999999", 4294967295u},
                                                        {"-99999999999999999999", 0},
                                                        {R"(3\u00004)", 3}};
  for (const auto& [key, sequence] : rows) {
    const std::string text =
        std::string(R"({"MetaData-OpenConfig":{")") + key + R"(":{"priority":""}}})";
    EXPECT_EQ(deserializeJsonProfileComment(text), profile({strict(scheduler(sequence))})) << key;
  }
}

TEST(ProfileDocument, OfTwoMembersOfOneSequenceTheLaterCounts) {
  EXPECT_EQ(deserializeJsonProfileComment(
                R"({"MetaData-OpenConfig":{"1":{"priority":"","inputs":{"a":{}}},)"
                R"("2":{},"1x":{"inputs":{"b":{}}}}})"),
            profile({scheduler(1, {}, {input("b")}), scheduler(2)}));
}

TEST(ProfileDocument, OnlyTheLowEightBitsOfAPercentageCount) {
  const std::pair<const char*, std::uint8_t> rows[] = {
      {"0", 0},    {"40", 40},   {"101", 101},        {"255", 255}, {"256", 0},
      {"300", 44}, {"65536", 0}, {"4294967295", 255}, {"-0", 0}};
  for (const auto& [number, cirPct] : rows) {
    EXPECT_EQ(schedulerOf(std::string(R"({"one-rate-two-color":{"cir-pct":)") + number + "}}"),
              scheduler(7, Rate(0, cirPct)))
        << number;
  }
}

TEST(ProfileDocument, ARateStartsFromZeroEachTimeItIsThere) {
  EXPECT_EQ(schedulerOf(R"({"one-rate-two-color":{"cir":5,"cir-pct":6},)"
                        R"("one-rate-two-color":{"cir":7}})"),
            scheduler(7, Rate(7, 0)));
  EXPECT_EQ(schedulerOf(R"({"one-rate-two-color":{}})"), scheduler(7));
}

TEST(ProfileDocument, TheLaterOfTwoMembersCounts) {
  EXPECT_EQ(schedulerOf(R"({"one-rate-two-color":{"cir":1,"cir":2,"cir-pct":3,"cir-pct":4},)"
                        R"("inputs":{"a":{"queue":"q","queue":"r","weight":5,"weight":6}}})"),
            scheduler(7, Rate(2, 4), {input("a", "r", 6)}));
  EXPECT_EQ(schedulerOf(R"({"inputs":{"a":{"queue":"q"},"a":{"weight":5}}})"),
            scheduler(7, {}, {input("a", "", 5)}));
  EXPECT_EQ(schedulerOf(R"({"inputs":{"a":{}},"inputs":{"b":{}}})"),
            scheduler(7, {}, {input("a"), input("b")}));
}

TEST(ProfileDocument, OtherMembersAreIgnoredAtEveryLevel) {
  for (const char* other : {"null", "true", "7", "-1.5", "\"x\"", "[1,[2]]", "{\"queue\":7}"}) {
    const std::string extra = std::string(R"("extra":)") + other;
    EXPECT_EQ(deserializeJsonProfileComment("{" + extra + R"(,"MetaData-OpenConfig":{"1":{)" +
                                            extra + R"(,"one-rate-two-color":{)" + extra +
                                            R"(,"cir":2},"inputs":{"a":{)" + extra +
                                            R"(,"weight":3}}}},)" + extra + "}"),
              profile({scheduler(1, Rate(2, 0), {input("a", "", 3)})}))
        << other;
  }
}

TEST(ProfileDocument, AnAttachmentDocumentReadsAsSchedulerZero) {
  EXPECT_EQ(deserializeJsonProfileComment(policyAlone), profile({scheduler(0)}));
  EXPECT_EQ(deserializeJsonProfileComment(bothParts), profile({scheduler(0)}));
}

TEST(ProfileDocument, NothingIsCheckedAgainstTheDevice) {
  EXPECT_EQ(schedulerOf(R"({"one-rate-two-color":{"cir-pct":200},)"
                        R"("inputs":{"":{"queue":"no such queue","weight":99999999999}}})"),
            scheduler(7, Rate(0, 200), {input("", "no such queue", 99999999999u)}));
}

// ===== Texts that are no documents

struct Foreign : testing::TestWithParam<std::string> {
  const Rok::String text{GetParam()};
};

struct NotJson : Foreign {};
INSTANTIATE_TEST_SUITE_P(
    Comments, NotJson,
    testing::Values("", " ", "hello", "[1]", "null", "7", "\"x\"", "true", "{", "{}}", "{} {}",
                    "{}x", "{\"a\":}", "{\"a\":1,}", "{a:1}", "{'a':1}", "{\"a\":01}", "{\"a\":+1}",
                    "{\"a\":.5}", "{\"a\":1e999}", "{\"a\":NaN}", "{\"a\":\"\n\"}",
                    "{\"a\":\"\\x\"}", "{\"a\":\"\\ud800\"}", "{\"a\":1 /* b */}", "// a\n{}",
                    "\xef\xbb\xbf{}", "{\"MetaData-OpenConfig\":{}}\n{\"MetaData-OpenConfig\":{}}",
                    "note\n{\"MetaData-OpenConfig\":{}}"));

TEST_P(NotJson, ReadsAsTheDefaultWithATrace) {
  support::TraceCapture trace({0, 2, 8, 9});
  EXPECT_EQ(deserializeJsonComment(text), CommentInfo());
  EXPECT_EQ(deserializeJsonProfileComment(text), Profile(""));
  ASSERT_EQ(trace.lines().size(), 4u);
  EXPECT_TRUE(trace.lines()[0].starts_with("2 deserializeJsonComment comment: "));
  EXPECT_TRUE(trace.lines()[1].starts_with("2 Comment not json: "));
  EXPECT_TRUE(trace.lines()[2].starts_with("2 deserializeJsonProfileComment comment: "));
  EXPECT_EQ(trace.lines()[3], trace.lines()[1]);
}

struct NotOurs : Foreign {};
INSTANTIATE_TEST_SUITE_P(Comments, NotOurs,
                         testing::Values("{}", "{\"other\":1}", " {\"metadata-openconfig\":{}} ",
                                         "{\"MetaData-OpenConfig2\":{}}",
                                         "{\"a\":{\"MetaData-OpenConfig\":{}}}",
                                         "{\"MetaData-OpenConfig\\u0000\":{}}"));

TEST_P(NotOurs, ReadsAsTheDefaultWithATrace) {
  support::TraceCapture trace({0, 2, 8, 9});
  EXPECT_EQ(deserializeJsonComment(text), CommentInfo());
  EXPECT_EQ(deserializeJsonProfileComment(text), Profile(""));
  const std::string shown(text);
  EXPECT_THAT(trace.lines(),
              testing::ElementsAre("2 deserializeJsonComment comment: " + shown,
                                   "2 Comment has no MetaData-OpenConfig: " + shown,
                                   "2 deserializeJsonProfileComment comment: " + shown,
                                   "2 Comment has no MetaData-OpenConfig: " + shown));
}

TEST(ForeignText, IsShownWhole) {
  support::TraceCapture trace({2});
  deserializeJsonComment("hello");
  EXPECT_THAT(trace.lines(), testing::ElementsAre("2 deserializeJsonComment comment: hello",
                                                  "2 Comment not json: hello"));
  EXPECT_THAT(trace.handles(), testing::Each("OpenConfigQos"));
}

TEST(ForeignText, BehindANulIsNoPartOfADocument) {
  std::string text(policyAlone);
  for (const char* behind : {"", " ", "x", "{}"}) {
    const std::string longer = text + '\0' + behind;
    EXPECT_EQ(deserializeJsonComment(longer), CommentInfo()) << behind;
    EXPECT_EQ(deserializeJsonProfileComment(longer), Profile("")) << behind;
  }
}

// Somebody else's comment may nest as it likes: it doesn't exhaust the stack.
TEST(ForeignText, MayNestToAnyDepth) {
  for (const std::size_t depth : {998u, 999u, 1000u, 1001u, 5000u, 300000u}) {
    const std::string open(depth, '[');
    const std::string close(depth, ']');
    EXPECT_EQ(deserializeJsonComment(open), CommentInfo());
    EXPECT_EQ(deserializeJsonProfileComment(open + close), Profile(""));
    EXPECT_EQ(deserializeJsonComment(R"({"MetaData-OpenConfig":{"x":)" + open + close +
                                     R"(,"scheduler-policy":{"name":"a"}}})"),
              comment("a", ""))
        << depth;
    EXPECT_EQ(deserializeJsonComment(R"({"MetaData-OpenConfig":{"x":)" + open + close +
                                     R"(,"scheduler-policy":{"name":"a"}}}!)"),
              CommentInfo())
        << depth;
    std::string objects;
    for (std::size_t n = 0; n < depth; ++n) objects += R"({"a":)";
    EXPECT_EQ(deserializeJsonProfileComment(objects), Profile(""));
    EXPECT_EQ(deserializeJsonProfileComment(R"({"MetaData-OpenConfig":{"1":{"x":)" + objects + "0" +
                                            std::string(depth, '}') + R"(,"priority":""}}})"),
              profile({strict(scheduler(1))}))
        << depth;
  }
}

// ===== Any text, written and read back

std::string anyName(std::mt19937& random) {
  std::string text(random() % 24, '\0');
  for (char& c : text) {
    c = random() % 3 == 0 ? "\"\\/\b\f\n\r\t\x1f\x7f{}[]:,u0"[random() % 18]
                          : static_cast<char>(1 + random() % 255);
  }
  return text;
}

std::uint64_t anyNumber(std::mt19937_64& random) { return random() >> (random() % 64); }

TEST(CommentCodec, AttachmentsOfAnyNamesReadBack) {
  std::mt19937 random(11);
  for (int round = 0; round < 20000; ++round) {
    const CommentInfo info = comment(anyName(random), anyName(random));
    const Rok::String text = serializeJsonComment(info);
    ASSERT_EQ(deserializeJsonComment(text), info) << text;
    ASSERT_EQ(serializeJsonComment(deserializeJsonComment(text)), text);
    // What is written is one line: comments are sequences of lines.
    ASSERT_EQ(std::string_view(text).find('\n'), std::string_view::npos);
  }
}

TEST(CommentCodec, ProfilesOfAnyValuesReadBack) {
  std::mt19937 random(12);
  std::mt19937_64 numbers(13);
  for (int round = 0; round < 500; ++round) {
    Profile info("");
    for (auto n = random() % 12; n > 0; --n) {
      Scheduler one(static_cast<std::uint32_t>(anyNumber(numbers)));
      one.priorityIs(random() % 2 == 0 ? NONE : STRICT);
      one.oneRateTwoColorIs(Rate(random() % 2 == 0 ? 0 : anyNumber(numbers),
                                 static_cast<std::uint8_t>(random() % 3 == 0 ? 0 : random())));
      for (auto m = random() % 12; m > 0; --m) {
        one.inputsIs(input(anyName(random), anyName(random), anyNumber(numbers)));
      }
      info.schedulersIs(one);
    }
    const Rok::String text = serializeJsonProfileComment(info);
    ASSERT_EQ(deserializeJsonProfileComment(text), info) << text;
  }
}

TEST(CommentCodec, DocumentsMayBeLargerThanTheBuffersOfTheReader) {
  const std::string longName(100000, 'n');
  EXPECT_EQ(deserializeJsonComment(serializeJsonComment(comment(longName, longName + "\n"))),
            comment(longName, longName + "\n"));
  Profile info("");
  for (std::uint32_t sequence = 0; sequence < 300; ++sequence) {
    Scheduler one(sequence);
    for (std::uint32_t n = 0; n < 100; ++n) {
      one.inputsIs(input("input-of-a-long-name-" + std::to_string(n),
                         "queue-of-a-long-name-" + std::to_string(n), n));
    }
    info.schedulersIs(one);
  }
  EXPECT_EQ(deserializeJsonProfileComment(serializeJsonProfileComment(info)), info);
}

// Cut anywhere, a document is none, and that is an ordinary event.
TEST(CommentCodec, ADocumentThatIsCutOffIsNone) {
  for (const char* text : {bothParts, twoSchedulers}) {
    const std::string whole(text);
    for (std::size_t size = 0; size < whole.size(); ++size) {
      ASSERT_EQ(deserializeJsonComment(whole.substr(0, size)), CommentInfo()) << size;
      ASSERT_EQ(deserializeJsonProfileComment(whole.substr(0, size)), Profile("")) << size;
    }
  }
}

// ===== Any text, beside the plain way to read it

// Mostly documents: of ours, with something foreign, with members twice and in any order.
class AnyDocument {
 public:
  explicit AnyDocument(std::uint32_t seed) : random_(seed) {}

  std::string text() {
    std::string result = rarely() ? value() : root();
    if (random_() % 4 != 0) return result;
    for (auto n = 1 + random_() % 3; n > 0 && !result.empty(); --n) corrupt(result);
    return result;
  }

 private:
  bool rarely() { return random_() % 16 == 0; }
  std::string any(std::initializer_list<const char*> texts) {
    return texts.begin()[random_() % texts.size()];
  }

  std::string root() { return object({R"("MetaData-OpenConfig")"}, &AnyDocument::metaData); }
  std::string metaData() {
    return random_() % 2 == 0
               ? object({R"("scheduler-policy")", R"("queue-management-profile")"},
                        &AnyDocument::part)
               : object({R"("1")", R"("2")", R"("1x")", R"("-1")", R"(" 2")", R"("")"},
                        &AnyDocument::scheduler);
  }
  std::string part() { return object({R"("name")"}, &AnyDocument::string); }
  std::string scheduler() {
    switch (random_() % 3) {
      case 0:
        return object({R"("priority")"}, &AnyDocument::value);
      case 1:
        return object({R"("one-rate-two-color")"}, &AnyDocument::rate);
      default:
        return object({R"("inputs")"}, &AnyDocument::inputs);
    }
  }
  std::string rate() { return object({R"("cir")", R"("cir-pct")"}, &AnyDocument::number); }
  std::string inputs() { return object({R"("a")", R"("b")", R"("a\u0000")"}, &AnyDocument::input); }
  std::string input() {
    return random_() % 2 == 0 ? object({R"("queue")"}, &AnyDocument::string)
                              : object({R"("weight")"}, &AnyDocument::number);
  }

  std::string object(std::initializer_list<const char*> keys,
                     std::string (AnyDocument::*member)()) {
    if (rarely()) return value();
    std::string result = "{" + space();
    for (auto n = random_() % 4; n > 0; --n) {
      result += rarely() ? string() + ":" + value() : any(keys) + space() + ":" + (this->*member)();
      if (n > 1) result += space() + ",";
    }
    return result + "}" + space();
  }
  std::string string() {
    return any({R"("")", R"("sp")", R"("q\u0071\n\"")", R"("a\u0000b")", R"("\ud83d\ude00")",
                "\"gr\xc3\xbc\xc3\x9f\"", "\"\xff\"", R"("MetaData-OpenConfig")", R"("name")"});
  }
  std::string number() {
    return any({"0", "-0", "7", "300", "4294967295", "18446744073709551615", "40"});
  }
  std::string value() {
    return any({"null", "true", "-7", "1.5", "1e300", "1e999", "\"x\"", "\"\x1a\"", "[]",
                "[1,{\"name\":[{}]}]", R"({"name":"a","MetaData-OpenConfig":{}})", "4294967296",
                "-9223372036854775808", "18446744073709551616", "{}"});
  }
  std::string space() { return rarely() ? any({" ", "\n", "\t\r", "  "}) : ""; }

  void corrupt(std::string& text) {
    const std::size_t at = random_() % text.size();
    switch (random_() % 4) {
      case 0:
        text[at] = "\"\\{}[]:,0e-n \x1f"[random_() % 15];
        break;
      case 1:
        text.erase(at, 1 + random_() % 3);
        break;
      case 2:
        text.insert(at, text.substr(random_() % text.size(), random_() % 30));
        break;
      default:
        text.resize(at);
    }
  }

  std::mt19937 random_;
};

// The lines of one reading behind the one that tells of the text.
template <class Read, class Expected>
void expectReading(const std::string& text, Read read, const Expected& expected) {
  support::TraceCapture trace({2});
  EXPECT_EQ(read(text), expected.info) << text;
  ASSERT_EQ(trace.lines().size(), expected.remark.empty() ? 1u : 2u) << text;
  EXPECT_TRUE(trace.lines().back().starts_with("2 " + expected.remark)) << text;
}

TEST(CommentCodec, AnyTextIsReadAsItsDocumentWouldBe) {
  AnyDocument any(14);
  unsigned attachments = 0;
  unsigned profiles = 0;
  for (int round = 0; round < 10000 && !HasFailure(); ++round) {
    const std::string text = any.text();
    if (!host::attachmentFault(text)) {
      const auto expected = support::attachmentByDocument(text);
      expectReading(text, deserializeJsonComment, expected);
      attachments += expected.info ? 1 : 0;
    }
    if (!host::profileFault(text)) {
      const auto expected = support::profileByDocument(text);
      expectReading(text, deserializeJsonProfileComment, expected);
      profiles += expected.info ? 1 : 0;
    }
  }
  EXPECT_GT(attachments, 500u);
  EXPECT_GT(profiles, 500u);
}

// ===== Trace

TEST(CommentCodec, TheWritersTraceTheirNameAndTheText) {
  support::TraceCapture trace({0, 2, 8, 9});
  serializeJsonComment(comment("sp-gold", ""));
  serializeJsonProfileComment(Profile(""));
  EXPECT_THAT(trace.lines(), testing::ElementsAre(
                                 "2 serializeJsonComment", std::string("2 Comment: ") + policyAlone,
                                 "2 serializeJsonProfileComment",
                                 R"(2 Profile Comment: {"MetaData-OpenConfig":{}})"));
  EXPECT_THAT(trace.handles(), testing::Each("OpenConfigQos"));
}

TEST(CommentCodec, ACommentOfNothingIsTracedByNameAlone) {
  support::TraceCapture trace({0, 2, 8, 9});
  serializeJsonComment(CommentInfo());
  EXPECT_THAT(trace.lines(), testing::ElementsAre("2 serializeJsonComment"));
}

TEST(CommentCodec, TheReadersTraceTheirNameAndTheText) {
  support::TraceCapture trace({0, 2, 8, 9});
  deserializeJsonComment(bothParts);
  deserializeJsonProfileComment(twoSchedulers);
  EXPECT_THAT(trace.lines(),
              testing::ElementsAre(
                  std::string("2 deserializeJsonComment comment: ") + bothParts,
                  std::string("2 deserializeJsonProfileComment comment: ") + twoSchedulers));
}

}  // namespace
}  // namespace QosOc::commentCodecTest
