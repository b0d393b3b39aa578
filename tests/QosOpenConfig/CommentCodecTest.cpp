// The documents that comments hold, written and read.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "tests/support/CommentDocuments.h"
#include "tests/support/TraceCapture.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::commentCodecTest {
namespace {

using namespace support::commentDocuments;

Scheduler strict(Scheduler scheduler) {
  scheduler.priorityIs(STRICT);
  return scheduler;
}

// The scheduler in a profile document with the one member "7".
Scheduler schedulerOf(const std::string& members) {
  const Profile read =
      deserializeJsonProfileComment(R"({"MetaData-OpenConfig":{"7":)" + members + "}}");
  EXPECT_EQ(read.schedulers().members(), 1u);
  return read.schedulers(7);
}
const char* const policyAlone =
    R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-gold"}}})";
const char* const managementAlone =
    R"({"MetaData-OpenConfig":{"queue-management-profile":{"name":"qmp-wred"}}})";

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
