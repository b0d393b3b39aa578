// What `check` finds in comments.
#include "tests/support/HostFindings.h"

namespace host::findingsOfCommentsTest {
namespace {

using support::findings;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(CommentFindings, ACommentOfOtherOriginHasNoFinding) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-5": "uplink to the core"}, "queue-names": {"EF": 5}})");
  EXPECT_THAT(found, IsEmpty());
}

TEST(CommentFindings, ACommentThatNamesWhatIsThere) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-5":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"wan\"}}}"},
      "queue-names": {"EF": 5}})");
  EXPECT_THAT(found, IsEmpty());
}

TEST(CommentFindings, BrokenJson) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-5":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"wan\"}}"},
      "queue-names": {"EF": 5}})");
  EXPECT_THAT(found,
              ElementsAre("comment-json /comments/if-Et1~11-uc-txq-5: names MetaData-OpenConfig "
                          "and is not one JSON object, so nothing of it is read: missing a comma "
                          "or '}' after an object member at its end; mend it"));
}

TEST(CommentFindings, MetadataThatIsNoObject) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-5": "[\"MetaData-OpenConfig\"]"}, "queue-names": {"EF": 5}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "comment-json /comments/if-Et1~11-uc-txq-5: names MetaData-OpenConfig and is not one "
          "JSON object, so nothing of it is read: it is no object; mend it"));
}

TEST(CommentFindings, AnotherCaseOfTheKey) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-5":
      "{\"metadata-openconfig\": {\"scheduler-policy\": {\"name\": \"wan\"}}}"},
      "queue-names": {"EF": 5}})");
  EXPECT_THAT(
      found,
      ElementsAre("comment-case /comments/if-Et1~11-uc-txq-5: the member \"metadata-openconfig\" "
                  "of this comment is not read; write \"MetaData-OpenConfig\""));
}

TEST(CommentFindings, AMisspeltKey) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-5":
      "{\"MetaData-OpenConfg\": {\"scheduler-policy\": {\"name\": \"wan\"}}}"},
      "queue-names": {"EF": 5}})");
  EXPECT_THAT(
      found,
      ElementsAre("comment-member /comments/if-Et1~11-uc-txq-5: the member \"MetaData-OpenConfg\" "
                  "of this comment is not read; write \"MetaData-OpenConfig\""));
}

TEST(CommentFindings, AMisspeltMember) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-5":
      "{\"MetaData-OpenConfig\": {\"scheduler-polcy\": {\"name\": \"wan\"}}}"},
      "queue-names": {"EF": 5}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "comment-member /comments/if-Et1~11-uc-txq-5: at /MetaData-OpenConfig/scheduler-polcy of "
          "this comment: this member is not read: did you mean scheduler-policy? (legal: "
          "scheduler-policy, queue-management-profile); rename it"));
}

TEST(CommentFindings, AnUnknownMember) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-5":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"wan\", \"weight\": 3}}}"},
      "queue-names": {"EF": 5}})");
  EXPECT_THAT(found, ElementsAre("comment-member /comments/if-Et1~11-uc-txq-5: at "
                                 "/MetaData-OpenConfig/scheduler-policy/weight of this comment: "
                                 "this member is not read (legal: name); leave it out"));
}

TEST(CommentFindings, AMissingName) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-5":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"nmae\": \"wan\"}}}"},
      "queue-names": {"EF": 5}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "comment-member /comments/if-Et1~11-uc-txq-5: at "
          "/MetaData-OpenConfig/scheduler-policy/nmae of this comment: this member is not read: "
          "did you mean name? (legal: name); rename it",
          "comment-name /comments/if-Et1~11-uc-txq-5: at /MetaData-OpenConfig/scheduler-policy of "
          "this comment: \"name\" is missing, and with it all of the comment is passed over; give "
          "the scheduler-policy a name or leave it out"));
}

TEST(CommentFindings, AnEmptyName) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-5":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"\"}}}"}, "queue-names":
      {"EF": 5}})");
  EXPECT_THAT(found,
              ElementsAre("comment-name /comments/if-Et1~11-uc-txq-5: at "
                          "/MetaData-OpenConfig/scheduler-policy/name of this comment: the name is "
                          "empty, and says nothing; name the scheduler-policy or leave it out"));
}

TEST(CommentFindings, AMemberTwice) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-5":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"wan\"}, \"scheduler-policy\": {\"name\": \"lan\"}}}"},
      "queue-names": {"EF": 5}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "comment-member /comments/if-Et1~11-uc-txq-5: at /MetaData-OpenConfig/scheduler-policy "
          "of this comment: the same member twice, and the first counts; keep one"));
}

TEST(CommentFindings, AValueOfTheWrongType) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-5": "{\"MetaData-OpenConfig\": {\"scheduler-policy\": \"wan\"}}"},
      "queue-names": {"EF": 5}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "comment-type /comments/if-Et1~11-uc-txq-5: at /MetaData-OpenConfig/scheduler-policy of "
          "this comment: expected an object, and any other value ends the program that translates "
          "it; write an object"));
}

TEST(CommentFindings, AKeyWithTheLongName) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Ethernet1/1-uc-txq-5":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"wan\"}}}"},
      "queue-names": {"EF": 5}})");
  EXPECT_THAT(found, ElementsAre("comment-key /comments/if-Ethernet1~11-uc-txq-5: the key has the "
                                 "long name of the interface; write if-Et1/1-uc-txq-5"));
}

TEST(CommentFindings, AKeyOfAQueueThatIsNotThere) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-6":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"wan\"}}}"},
      "queue-names": {"EF": 5}})");
  EXPECT_THAT(
      found, ElementsAre("comment-unused /comments/if-Et1~11-uc-txq-6: no tx queue uc-6 of "
                         "Ethernet1/1 is there to read this; add the queue or remove the comment"));
}

TEST(CommentFindings, AKeyOfAnInterfaceThatIsNotThere) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/2-uc-txq-5":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"wan\"}}}"},
      "queue-names": {"EF": 5}})");
  EXPECT_THAT(found,
              ElementsAre("comment-unused /comments/if-Et1~12-uc-txq-5: no interface has the short "
                          "name \"Et1/2\"; add the interface or remove the comment"));
}

TEST(CommentFindings, AKeyOfNoForm) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "Ethernet1/1 queue 5":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"wan\"}}}"},
      "queue-names": {"EF": 5}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "comment-key /comments/Ethernet1~11 queue 5: no translator reads a comment under this "
          "key; write if-SHORT-uc-txq-N for a tx queue, or qos-profile-NAME for a profile"));
}

TEST(CommentFindings, AKeyOfAProfileThatIsNotThere) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "qos-profile-__YANG_SP_[wam]": "{\"MetaData-OpenConfig\": {\"1\": {}}}"},
      "queue-names": {"EF": 5}})");
  EXPECT_THAT(found,
              ElementsAre("comment-unused /comments/qos-profile-__YANG_SP_[wam]: there is no QoS "
                          "profile \"__YANG_SP_[wam]\": did you mean \"__YANG_SP_[wan]\"?; "
                          "otherwise add the profile or remove the comment"));
}

TEST(CommentFindings, AKeyOfAProfileThatIsNotRead) {
  const auto found = findings(R"({"qos-profiles": {"PORT": {}}, "comments": {"qos-profile-PORT":
      "{\"MetaData-OpenConfig\": {}}"}})");
  EXPECT_THAT(
      found, ElementsAre("comment-unused /comments/qos-profile-PORT: only the comments of profiles "
                         "__YANG_SP_[NAME] are read; rename the profile or remove the comment"));
}

TEST(CommentFindings, ASchedulerThatIsNoNumber) {
  const auto found =
      findings(R"({"qos-profiles": {"__YANG_SP_[wan]": {}}, "queue-names": {"EF": 5}, "comments":
      {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"first\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}"}})");
  EXPECT_THAT(found, ElementsAre("comment-scheduler /comments/qos-profile-__YANG_SP_[wan]: at "
                                 "/MetaData-OpenConfig/first of this comment: a scheduler's key is "
                                 "a sequence number, and this one is read as 0; write a number"));
}

TEST(CommentFindings, TwoSchedulersOfOneNumber) {
  const auto found =
      findings(R"({"qos-profiles": {"__YANG_SP_[wan]": {}}, "queue-names": {"EF": 5}, "comments":
      {"qos-profile-__YANG_SP_[wan]": "{\"MetaData-OpenConfig\": {\"1\": {}, \"01\": {}}}"}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "comment-scheduler /comments/qos-profile-__YANG_SP_[wan]: at /MetaData-OpenConfig/01 of "
          "this comment: \"1\" is scheduler 1, too: the last of them counts; keep one",
          "comment-scheduler /comments/qos-profile-__YANG_SP_[wan]: at /MetaData-OpenConfig/01 of "
          "this comment: a scheduler's key is a sequence number, and this one is read as 1; write "
          "a number"));
}

TEST(CommentFindings, APriorityThatIsNotRead) {
  const auto found =
      findings(R"({"qos-profiles": {"__YANG_SP_[wan]": {}}, "queue-names": {"EF": 5}, "comments":
      {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"priority\": \"NONE\"}}}"}})");
  EXPECT_THAT(found,
              ElementsAre("comment-priority /comments/qos-profile-__YANG_SP_[wan]: at "
                          "/MetaData-OpenConfig/1/priority of this comment: any priority is read "
                          "as STRICT, whatever its value; write \"STRICT\" or leave it out"));
}

TEST(CommentFindings, APercentageThatIsCut) {
  const auto found =
      findings(R"({"qos-profiles": {"__YANG_SP_[wan]": {}}, "queue-names": {"EF": 5}, "comments":
      {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"one-rate-two-color\": {\"cir-pct\": 300}}}}"}})");
  EXPECT_THAT(found,
              ElementsAre("comment-percent /comments/qos-profile-__YANG_SP_[wan]: at "
                          "/MetaData-OpenConfig/1/one-rate-two-color/cir-pct of this comment: of a "
                          "percentage the low 8 bits count: 300 is read as 44; write 1 to 100"));
}

TEST(CommentFindings, AMisspeltMemberOfAScheduler) {
  const auto found =
      findings(R"({"qos-profiles": {"__YANG_SP_[wan]": {}}, "queue-names": {"EF": 5}, "comments":
      {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"input\": {\"voice\": {\"queue\": \"EF\"}}}}}"}})");
  EXPECT_THAT(
      found,
      ElementsAre("comment-member /comments/qos-profile-__YANG_SP_[wan]: at "
                  "/MetaData-OpenConfig/1/input of this comment: this member is not read: did you "
                  "mean inputs? (legal: priority, one-rate-two-color, inputs); rename it"));
}

TEST(CommentFindings, AMisspeltMemberOfAnInput) {
  const auto found =
      findings(R"({"qos-profiles": {"__YANG_SP_[wan]": {}}, "queue-names": {"EF": 5}, "comments":
      {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queu\": \"EF\"}}}}}"}})");
  EXPECT_THAT(found,
              ElementsAre("comment-member /comments/qos-profile-__YANG_SP_[wan]: at "
                          "/MetaData-OpenConfig/1/inputs/voice/queu of this comment: this member "
                          "is not read: did you mean queue? (legal: queue, weight); rename it"));
}

TEST(CommentFindings, AWrongTypeInAScheduler) {
  const auto found =
      findings(R"({"qos-profiles": {"__YANG_SP_[wan]": {}}, "queue-names": {"EF": 5}, "comments":
      {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": 5}}}}}"}})");
  EXPECT_THAT(found, ElementsAre("comment-type /comments/qos-profile-__YANG_SP_[wan]: at "
                                 "/MetaData-OpenConfig/1/inputs/voice/queue of this comment: "
                                 "expected a string, and any other value ends the program that "
                                 "translates it; write a string"));
}

TEST(CommentFindings, AMemberOutsideOfTheMetadata) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-5": "{\"scheduler-policy\": {\"name\": \"wan\"}}"}, "queue-names":
      {"EF": 5}})");
  EXPECT_THAT(found,
              ElementsAre("comment-member /comments/if-Et1~11-uc-txq-5: the member "
                          "\"scheduler-policy\" of this comment stands outside of its metadata and "
                          "is not read; write it below \"MetaData-OpenConfig\""));
}

TEST(CommentFindings, AKeyThatIsAlmostThatOfAQueue) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-tqx-5":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"wan\"}}}"},
      "queue-names": {"EF": 5}})");
  EXPECT_THAT(found,
              ElementsAre("comment-key /comments/if-Et1~11-uc-tqx-5: no translator reads a comment "
                          "under this key: did you mean \"if-Et1/1-uc-txq-5\"?; otherwise write "
                          "if-SHORT-uc-txq-N for a tx queue, or qos-profile-NAME for a profile"));
}

TEST(CommentFindings, AKeyWithTheNameOfThePolicyAndNotOfItsProfile) {
  const auto found = findings(
      R"({"qos-profiles": {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-wan":
      "{\"MetaData-OpenConfig\": {\"1\": {}}}"}})");
  EXPECT_THAT(found,
              testing::Contains(
                  "comment-key /comments/qos-profile-wan: the key has the name of the scheduler "
                  "policy and not of its QoS profile; write qos-profile-__YANG_SP_[wan]"));
}

TEST(CommentFindings, AKeyWithASlipInTheNameOfTheProfile) {
  const auto found = findings(
      R"({"qos-profiles": {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wna]":
      "{\"MetaData-OpenConfig\": {\"1\": {}}}"}})");
  EXPECT_THAT(found, testing::Contains(
                         "comment-unused /comments/qos-profile-__YANG_SP_[wna]: there is no QoS "
                         "profile \"__YANG_SP_[wna]\": did you mean \"__YANG_SP_[wan]\"?; "
                         "otherwise add the profile or remove the comment"));
}

}  // namespace
}  // namespace host::findingsOfCommentsTest
