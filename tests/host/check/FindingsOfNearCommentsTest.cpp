// What `check` finds in comments that nearly say something, and in those of which a part is lost.
#include "host/Json.h"
#include "tests/support/HostFindings.h"

namespace host::findingsOfNearCommentsTest {
namespace {

using support::findings;
using testing::ElementsAre;
using testing::IsEmpty;

// A device with a tx queue and a scheduler policy "wan", and a comment.
std::vector<std::string> withComment(std::string_view key, std::string_view text) {
  rapidjson::StringBuffer comment;
  rapidjson::Writer<rapidjson::StringBuffer> writer(comment);
  writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
  return findings(
      R"({"interfaces": {"Ethernet1": {"tx-queues": {"uc-3": {}}}}, "queue-names": {"EF": 3},)"
      R"("qos-profiles": {"__YANG_SP_[wan]": {}}, "comments": {")" +
      std::string(key) + "\": " + comment.GetString() + "}}");
}

// Of the tx queue. The policy has no comment, and that has a finding of its own.
std::vector<std::string> ofQueue(std::string_view text) {
  auto lines = withComment("if-Et1-uc-txq-3", text);
  std::erase_if(lines, [](const std::string& line) { return line.starts_with("missing "); });
  return lines;
}
std::vector<std::string> ofPolicy(std::string_view text) {
  return withComment("qos-profile-__YANG_SP_[wan]", text);
}

const std::string noSchedulers =
    "missing /qos-profiles/__YANG_SP_[wan]: nothing in its comment \"qos-profile-__YANG_SP_[wan]\" "
    "is read as a scheduler, so the scheduler policy has no schedulers; write them there, below "
    "\"MetaData-OpenConfig\"";

// ===== A scheduler policy

TEST(NearComments, APolicyWithACommentOfOtherOriginHasNoSchedulers) {
  EXPECT_THAT(ofPolicy("WAN, ask Jane"), ElementsAre(noSchedulers));
}

TEST(NearComments, APolicyWithoutTheMetadataAroundItsSchedulers) {
  EXPECT_THAT(ofPolicy(R"({"1": {"inputs": {"i": {"queue": "EF"}}}})"), ElementsAre(noSchedulers));
}

TEST(NearComments, APolicyWithEmptyMetadata) {
  EXPECT_THAT(ofPolicy(R"({"MetaData-OpenConfig": {}})"), ElementsAre(noSchedulers));
}

TEST(NearComments, APolicyWithHalfOfTheKey) {
  EXPECT_THAT(ofPolicy(R"({"MetaData": {"1": {"inputs": {"i": {"queue": "EF"}}}}})"),
              ElementsAre("comment-member /comments/qos-profile-__YANG_SP_[wan]: the member "
                          "\"MetaData\" of this comment is not read; write "
                          "\"MetaData-OpenConfig\"",
                          noSchedulers));
}

TEST(NearComments, APolicyWhoseCommentEndsTheProcessHasThatFindingAlone) {
  EXPECT_THAT(ofPolicy(R"({"MetaData-OpenConfig": {"1": {"inputs": {"i": {"weight": -1}}}}})"),
              ElementsAre("comment-type /comments/qos-profile-__YANG_SP_[wan]: at "
                          "/MetaData-OpenConfig/1/inputs/i/weight of this comment: expected a "
                          "whole number of at most 64 bits, and any other value ends the program "
                          "that translates it; write a whole number of at most 64 bits"));
}

// ===== The key of the metadata

// The finding of a tx queue's comment whose metadata has another name.
std::string notRead(const std::string& name) {
  return "comment-member /comments/if-Et1-uc-txq-3: the member \"" + name +
         R"(" of this comment is not read; write "MetaData-OpenConfig")";
}

class NearKey : public testing::TestWithParam<const char*> {};

TEST_P(NearKey, HasAFinding) {
  const std::string name = GetParam();
  EXPECT_THAT(ofQueue("{\"" + name + R"(": {"scheduler-policy": {"name": "wan"}}})"),
              ElementsAre(notRead(name)));
}

TEST_P(NearKey, HasAFindingUnderAKeyThatNoTranslatorReads) {
  const std::string name = GetParam();
  const auto lines =
      withComment("remark", "{\"" + name + R"(": {"scheduler-policy": {"name": "wan"}}})");
  EXPECT_THAT(lines, testing::Contains(
                         "comment-key /comments/remark: no translator reads a comment under this "
                         "key; write if-SHORT-uc-txq-N for a tx queue, or qos-profile-NAME for a "
                         "profile"));
}

INSTANTIATE_TEST_SUITE_P(Names, NearKey,
                         testing::Values("MetaData", "OpenConfig-MetaData", "Metadata_OpenConfig",
                                         "MetaData-OpenConfg", "openconfig"));

class OtherOrigin : public testing::TestWithParam<const char*> {};

TEST_P(OtherOrigin, HasNoFinding) {
  EXPECT_THAT(ofQueue(GetParam()), IsEmpty());
  const auto lines = withComment("remark", GetParam());
  EXPECT_EQ(lines.size(), 1u);  // that the policy has no comment
}

INSTANTIATE_TEST_SUITE_P(
    Texts, OtherOrigin,
    testing::Values("uplink to the core", R"({"MetaData": {"owner": "Jane"}})",
                    R"({"owner": {"scheduler-policy": {"name": "wan"}}})",
                    R"({"metadata": "of the core"})", R"({"MetaData": {"owner": "Jane"})",
                    R"({"openconfig": {"1": "first"}})", R"({"note": "see MetaData-OpenConfig"})",
                    "{see the scheduler-policy", "scheduler-policy: wan", R"(["MetaData")"));

TEST(NearComments, BrokenJsonWithAMisspeltKey) {
  EXPECT_THAT(ofQueue(R"({"MetaData-OpenConfg": {"scheduler-policy": {"name": "wan"}})"),
              ElementsAre("comment-json /comments/if-Et1-uc-txq-3: names \"MetaData-OpenConfg\" "
                          "and is not one JSON object, so nothing of it is read: missing a comma "
                          "or '}' after an object member at its end; mend it, and write "
                          "\"MetaData-OpenConfig\""));
}

TEST(NearComments, BrokenJsonWithAPartOfTheMetadata) {
  EXPECT_THAT(ofQueue(R"({"MetaData": {"scheduler-policy": {"name": "wan"}, }})"),
              ElementsAre("comment-json /comments/if-Et1-uc-txq-3: names \"scheduler-policy\" and "
                          "is not one JSON object, so nothing of it is read: missing a name for "
                          "object member at byte 52; mend it, and write \"MetaData-OpenConfig\""));
}

TEST(NearComments, BrokenJsonWithAMisspeltKeyUnderAKeyThatNoTranslatorReads) {
  EXPECT_THAT(withComment("remark", R"({"MetaData-OpenConfg": {"scheduler-policy")"),
              testing::Contains("comment-key /comments/remark: no translator reads a comment under "
                                "this key; write if-SHORT-uc-txq-N for a tx queue, or "
                                "qos-profile-NAME for a profile"));
}

TEST(NearComments, ANearKeyBesideTheKey) {
  EXPECT_THAT(ofQueue(R"({"MetaData-OpenConfig": {}, "MetaData-OpenConfg": {}})"),
              ElementsAre(notRead("MetaData-OpenConfg")));
}

// ===== Where the JSON breaks

TEST(NearComments, AControlCharacter) {
  EXPECT_THAT(ofQueue("{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"w\x01\"}}}"),
              ElementsAre("comment-json /comments/if-Et1-uc-txq-3: names MetaData-OpenConfig and "
                          "is not one JSON object, so nothing of it is read: a control character "
                          "in a string at byte 57; mend it"));
}

TEST(NearComments, ANulByte) {
  constexpr std::string_view text{
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"w\0\"}}}", 61};
  EXPECT_THAT(ofQueue(text),
              ElementsAre("comment-json /comments/if-Et1-uc-txq-3: names MetaData-OpenConfig and "
                          "is not one JSON object, so nothing of it is read: a NUL byte at byte "
                          "57; mend it"));
}

TEST(NearComments, AValueThatIsNoJson) {
  EXPECT_THAT(ofQueue("{\"MetaData-OpenConfig\": wan}"),
              ElementsAre("comment-json /comments/if-Et1-uc-txq-3: names MetaData-OpenConfig and "
                          "is not one JSON object, so nothing of it is read: invalid value at "
                          "byte 25; mend it"));
}

// ===== What stands there twice

TEST(NearComments, TheMetadataTwice) {
  EXPECT_THAT(
      ofQueue(R"({"MetaData-OpenConfig": {"scheduler-policy": {"name": "wan"}},)"
              R"("MetaData-OpenConfig": {"scheduler-policy": {"name": "lan"}}})"),
      ElementsAre("comment-member /comments/if-Et1-uc-txq-3: the member \"MetaData-OpenConfig\" "
                  "stands in this comment twice, and the first counts; keep one"));
}

// Of the metadata below scheduler 1.
std::vector<std::string> ofScheduler(const std::string& text) {
  return ofPolicy(R"({"MetaData-OpenConfig": {"1": {)" + text + "}}}");
}
std::string inScheduler(const std::string& kind, const std::string& rest) {
  return kind + " /comments/qos-profile-__YANG_SP_[wan]: at /MetaData-OpenConfig/1/" + rest;
}

TEST(NearComments, AnInputTwice) {
  EXPECT_THAT(ofScheduler(R"("inputs": {"i": {"queue": "EF"}, "i": {"queue": "EF"}})"),
              ElementsAre(inScheduler("comment-member",
                                      "inputs/i of this comment: the same input twice, and the "
                                      "last counts; keep one")));
}

TEST(NearComments, OfInputsInTwoMembersAllAreRead) {
  EXPECT_THAT(ofScheduler(R"("inputs": {"i": {"queue": "EF"}}, "inputs": {"j": {"queue": "EF"}})"),
              IsEmpty());
}

TEST(NearComments, AnInputInTwoMembers) {
  EXPECT_THAT(ofScheduler(R"("inputs": {"i": {"queue": "EF"}}, "inputs": {"i": {}})"),
              ElementsAre(inScheduler("comment-member",
                                      "inputs/i of this comment: the same input twice, and the "
                                      "last counts; keep one")));
}

TEST(NearComments, ARateTwice) {
  EXPECT_THAT(ofScheduler(R"("one-rate-two-color": {"cir": 3, "cir": 4})"),
              ElementsAre(inScheduler("comment-member",
                                      "one-rate-two-color/cir of this comment: the same member "
                                      "twice, and the last counts; keep one")));
}

// ===== What a reader takes for nothing

TEST(NearComments, AnInputWithoutAnId) {
  EXPECT_THAT(ofScheduler(R"("inputs": {"": {"queue": "AF"}})"),
              ElementsAre(inScheduler("left-out",
                                      "inputs/ of this comment: an empty name is no key, and the "
                                      "scheduler input is left out; name it")));
}

TEST(NearComments, AnInputWithoutAQueueIsAllRead) {
  EXPECT_THAT(ofScheduler(R"("inputs": {"i": {"weight": 3}})"), IsEmpty());
}

TEST(NearComments, AWeightOf0) {
  EXPECT_THAT(ofScheduler(R"("inputs": {"i": {"weight": 0}})"),
              ElementsAre(inScheduler("comment-zero",
                                      "inputs/i/weight of this comment: 0 is read as no value, "
                                      "and the model gets none; write another number or leave it "
                                      "out")));
}

TEST(NearComments, RatesOf0) {
  const std::string rest =
      " of this comment: 0 is read as no value, and the model gets none; write another number or "
      "leave it out";
  EXPECT_THAT(ofScheduler(R"("one-rate-two-color": {"cir": 0, "cir-pct": 0})"),
              ElementsAre(inScheduler("comment-zero", "one-rate-two-color/cir" + rest),
                          inScheduler("comment-zero", "one-rate-two-color/cir-pct" + rest)));
}

// ===== Texts that JSON holds and their readers don't

TEST(NearComments, AByteOrderMarkKeepsAllOfACommentFromBeingRead) {
  EXPECT_THAT(
      ofQueue("\ufeff{\"MetaData-OpenConfig\": {\"scheduler-policy\": 5}}"),
      ElementsAre("comment-json /comments/if-Et1-uc-txq-3: names MetaData-OpenConfig and is "
                  "not one JSON object, so nothing of it is read: a byte-order mark at "
                  "byte 1; mend it"));
}

TEST(NearComments, ANulInANameEndsIt) {
  EXPECT_THAT(
      ofQueue(R"({"MetaData-OpenConfig": {"scheduler-policy": {"name": "wan\u0000x"}}})"),
      ElementsAre("comment-name /comments/if-Et1-uc-txq-3: at "
                  "/MetaData-OpenConfig/scheduler-policy/name of this comment: the name is read "
                  "up to its NUL character, as \"wan\"; leave the NUL out"));
  const auto inputs =
      ofPolicy(R"({"MetaData-OpenConfig": {"1": {"inputs": {"a\u0000": {"queue": "EF\u0000"}}}}})");
  EXPECT_EQ(inputs.size(), 2U);
}

TEST(NearComments, ASentenceThatHasTheKeyIsOfOtherOrigin) {
  EXPECT_THAT(withComment("note", "see MetaData-OpenConfig in the manual"),
              ElementsAre(testing::StartsWith("missing /qos-profiles")));
  EXPECT_THAT(withComment("note", R"("MetaData-OpenConfig": {"scheduler-policy")"),
              testing::Contains(testing::StartsWith("comment-key /comments/note")));
}

TEST(NearComments, LongOnesAreJudgedInTheTimeOfTheirLength) {
  EXPECT_THAT(ofQueue("{" + std::string(1'000'000, '\n')), IsEmpty());
  std::string members = R"({"MetaData-OpenConfig": {"x0": 1)";
  for (int i = 1; i < 50'000; ++i) members += ", \"x" + std::to_string(i) + "\": 1";
  EXPECT_EQ(ofQueue(members + "}}").size(), 50'000U);
}

// ===== Keys

TEST(NearComments, AKeyThatIsNearlyThatOfAProfile) {
  for (const char* key : {"qos-profile__YANG_SP_[wan]", "Qos-Profile-__YANG_SP_[wan]",
                          "profile-__YANG_SP_[wan]", "__YANG_SP_[wan]"}) {
    EXPECT_THAT(withComment(key, R"({"MetaData-OpenConfig": {}})"),
                testing::Contains("comment-key /comments/" + std::string(key) +
                                  ": no translator reads a comment under this key: did you mean "
                                  "\"qos-profile-__YANG_SP_[wan]\"?; otherwise write "
                                  "if-SHORT-uc-txq-N for a tx queue, or qos-profile-NAME for a "
                                  "profile"));
  }
}

// ===== Interfaces of one short name

TEST(NearComments, ACommentOfTwoInterfaces) {
  const std::string document = R"({"interfaces": {"Ethernet1": {"tx-queues": {"uc-3": {}}},)"
                               R"("Ether1": {"tx-queues": {"uc-3": {}}}}, "queue-names":)"
                               R"({"EF": 3}, "qos-profiles": {"__YANG_QMP_[red]":)"
                               R"({"tx-queues": {"uc-0": {}}}}, "comments":)"
                               R"({"if-Et1-uc-txq-3": )";
  EXPECT_THAT(findings(document + R"("{\"MetaData-OpenConfig\": {\"queue-management-profile\":)"
                                  R"({\"name\": \"red\"}}}"}})"),
              ElementsAre("comment-shared /comments/if-Et1-uc-txq-3: speaks for uc-3 of several "
                          "interfaces, whose short name is \"Et1\": \"Ether1\", \"Ethernet1\"; "
                          "rename all but one"));
  EXPECT_THAT(findings(document + R"("uplink"}})"), IsEmpty());
}

}  // namespace
}  // namespace host::findingsOfNearCommentsTest
