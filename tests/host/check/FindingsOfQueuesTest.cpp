// What `check` finds in forwarding groups, the names of queues, tx queues and QoS profiles.
#include "tests/support/HostFindings.h"

namespace host::findingsOfQueuesTest {
namespace {

using support::findings;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(GroupFindings, NamesThatLeadToEachOther) {
  const auto found = findings(
      R"({"queue-names": {"EF": 5}, "forwarding-groups": {"voice": 5}, "tc-to-tx-queue": {"5": 5}})");
  EXPECT_THAT(found, IsEmpty());
}

TEST(GroupFindings, TwoNamesOfOneTrafficClass) {
  const auto found =
      findings(R"({"queue-names": {"EF": 5}, "forwarding-groups": {"voice": 5, "telephony": 5},
      "tc-to-tx-queue": {"5": 5}})");
  EXPECT_THAT(found, ElementsAre("shadowed /forwarding-groups/voice: traffic class 5 has the name "
                                 "\"telephony\", too: terms get the first name in order, and a "
                                 "change of the tx queue reaches the last; keep one name"));
}

TEST(GroupFindings, TwoNamesOfOneQueue) {
  const auto found = findings(R"({"queue-names": {"EF": 5, "VOICE": 5}})");
  EXPECT_THAT(found, ElementsAre("shadowed /queue-names/EF: queue 5 has the name \"VOICE\", too, "
                                 "and the last name in order takes its place; keep one name"));
}

TEST(GroupFindings, AQueueNameOfNoQueue) {
  const auto found = findings(R"({"queue-names": {"EF": 16}})");
  EXPECT_THAT(found, ElementsAre("missing /queue-names/EF: 16 stands for no queue, so nothing uses "
                                 "the name; write another id"));
}

TEST(GroupFindings, AGroupWhoseTrafficClassHasNoQueue) {
  const auto found = findings(R"({"queue-names": {"EF": 5}, "forwarding-groups": {"voice": 5}})");
  EXPECT_THAT(found,
              ElementsAre("missing /forwarding-groups/voice: its traffic class 5 has no tx queue, "
                          "so it gets no output queue; add the traffic class to tc-to-tx-queue"));
}

TEST(GroupFindings, AGroupWhoseQueueHasNoName) {
  const auto found = findings(
      R"({"queue-names": {"EF": 5}, "forwarding-groups": {"voice": 5}, "tc-to-tx-queue": {"5": 4}})");
  EXPECT_THAT(found,
              ElementsAre("missing /forwarding-groups/voice: the tx queue 4 of its traffic class 5 "
                          "has no name, so it gets no output queue; add one to queue-names"));
}

TEST(GroupFindings, AGroupOfATrafficClassOutOfRange) {
  const auto found = findings(R"({"forwarding-groups": {"voice": 17}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "raises /forwarding-groups/voice: 17 is no traffic class: the root forwarding-group "
          "raises over it, and forwarding groups are missing; write 0 to 16"));
}

TEST(GroupFindings, ATimeThatNoLeafHolds) {
  const auto found =
      findings(R"({"pfc-watchdog": {"time-a": 0.5, "time-b": 0.00000000001, "time-c": 1e30}})");
  EXPECT_THAT(
      found, ElementsAre("left-out /pfc-watchdog/time-b: the time has more digits than its leaf, "
                         "and is left out; write at most nine behind the point and ten before it",
                         "left-out /pfc-watchdog/time-c: the time has more digits than its leaf, "
                         "and is left out; write at most nine behind the point and ten before it"));
}

TEST(QueueFindings, AQueueWithSettingsOfItsOwn) {
  const auto found = findings(
      R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {"priority": "strict", "bandwidth":
      40, "ecn": {"min-threshold": 10, "max-threshold": 20, "threshold-unit": 1,
      "max-drop-percent": 30, "weight": 2}}}}}})");
  EXPECT_THAT(found, IsEmpty());
}

TEST(QueueFindings, WhatACommentSpeaksFor) {
  const auto found = findings(
      R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {"bandwidth": 40, "shape": 400000,
      "wred": {"max-drop-percent": 5}}}}}, "qos-profiles": {"__YANG_SP_[wan]": {},
      "__YANG_QMP_[wred]": {"tx-queues": {"uc-0": {"wred": {"max-drop-percent": 10}}}}},
      "queue-names": {"EF": 5}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-5":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"wan\"}, \"queue-management-profile\": {\"name\": \"wred\"}}}"}})");
  EXPECT_THAT(found, IsEmpty());
}

TEST(QueueFindings, TxQueuesThatDisagreeOnTheSchedulerPolicy) {
  const auto found = findings(
      R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-4": {}, "uc-5": {}, "uc-6": {}}}},
      "qos-profiles": {"__YANG_SP_[wan]": {}, "__YANG_QMP_[wred]": {"tx-queues": {"uc-0":
      {"wred": {"max-drop-percent": 10}}}}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-5":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"wan\"}}}",
      "if-Et1/1-uc-txq-4":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"lan\"}}}"}})");
  EXPECT_THAT(
      found, ElementsAre(
                 "unresolved /comments/if-Et1~11-uc-txq-4: there is no scheduler policy \"lan\": "
                 "did you mean \"wan\"?; otherwise add the QoS profile \"__YANG_SP_[lan]\"",
                 "unresolved /comments/qos-profile-__YANG_SP_[wan]: the input \"voice\" of "
                 "scheduler 1 names the queue \"EF\", which is not there; add it to queue-names",
                 "order /interfaces/Ethernet1~11: the comments of its tx queues don't agree on one "
                 "scheduler policy, and which one the interface gets depends on the order in which "
                 "they are met: none by uc-6, \"lan\" by uc-4, \"wan\" by uc-5; let all name one"));
}

TEST(QueueFindings, TxQueuesOfWhichSomeHaveNoPolicy) {
  const auto found = findings(
      R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-4": {}, "uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}, "__YANG_QMP_[wred]": {"tx-queues": {"uc-0": {"wred":
      {"max-drop-percent": 10}}}}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-5":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"wan\"}}}"}})");
  EXPECT_THAT(
      found,
      ElementsAre("unresolved /comments/qos-profile-__YANG_SP_[wan]: the input \"voice\" of "
                  "scheduler 1 names the queue \"EF\", which is not there; add it to queue-names",
                  "order /interfaces/Ethernet1~11: the comments of its tx queues don't agree on "
                  "one scheduler policy, and which one the interface gets depends on the order in "
                  "which they are met: none by uc-4, \"wan\" by uc-5; let all name one"));
}

TEST(QueueFindings, TwoTxQueuesOfOneNameWithDifferentProfiles) {
  const auto found = findings(
      R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}, "mc-5": {}}}}, "qos-profiles":
      {"__YANG_QMP_[wred]": {"tx-queues": {"uc-0": {}}}, "__YANG_QMP_[ecn]": {"tx-queues":
      {"uc-0": {}}}}, "queue-names": {"EF": 5}, "comments": {"if-Et1/1-uc-txq-5":
      "{\"MetaData-OpenConfig\": {\"queue-management-profile\": {\"name\": \"wred\"}}}",
      "if-Et1/1-mc-txq-5":
      "{\"MetaData-OpenConfig\": {\"queue-management-profile\": {\"name\": \"ecn\"}}}"}})");
  EXPECT_THAT(found, ElementsAre("order /comments/if-Et1~11-uc-txq-5: uc-5 and mc-5 share the "
                                 "queue \"EF\", and which profile it gets depends on the order in "
                                 "which they are met: \"ecn\", \"wred\"; let both name one"));
}

TEST(QueueFindings, ASchedulerPolicyThatIsNotThere) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_SP_[wan]": {}, "__YANG_QMP_[wred]": {"tx-queues": {"uc-0": {"wred":
      {"max-drop-percent": 10}}}}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-5":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"wam\"}}}"}})");
  EXPECT_THAT(
      found,
      ElementsAre("unresolved /comments/if-Et1~11-uc-txq-5: there is no scheduler policy \"wam\": "
                  "did you mean \"wan\"?; otherwise add the QoS profile \"__YANG_SP_[wam]\"",
                  "unresolved /comments/qos-profile-__YANG_SP_[wan]: the input \"voice\" of "
                  "scheduler 1 names the queue \"EF\", which is not there; add it to queue-names"));
}

TEST(QueueFindings, AProfileThatIsNotThere) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_QMP_[wred]": {"tx-queues": {"uc-0": {"wred": {"max-drop-percent": 10}}}}},
      "queue-names": {"EF": 5}, "comments": {"if-Et1/1-uc-txq-5":
      "{\"MetaData-OpenConfig\": {\"queue-management-profile\": {\"name\": \"wrde\"}}}"}})");
  EXPECT_THAT(found,
              ElementsAre("unresolved /comments/if-Et1~11-uc-txq-5: there is no queue-management "
                          "profile \"wrde\": did you mean \"wred\"?; otherwise add the QoS profile "
                          "\"__YANG_QMP_[wrde]\" with the settings of tx queue 0"));
}

TEST(QueueFindings, AProfileWithoutTxQueue0IsNotThere) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {}}}}, "qos-profiles":
      {"__YANG_QMP_[wred]": {"tx-queues": {"uc-1": {}}}}, "queue-names": {"EF": 5},
      "comments": {"if-Et1/1-uc-txq-5":
      "{\"MetaData-OpenConfig\": {\"queue-management-profile\": {\"name\": \"wred\"}}}"}})");
  EXPECT_THAT(
      found,
      ElementsAre("unresolved /comments/if-Et1~11-uc-txq-5: there is no queue-management profile "
                  "\"wred\", since its QoS profile has no tx queue 0; add uc-0 to it",
                  "untranslated /qos-profiles/__YANG_QMP_[wred]: has no tx queue 0, whose settings "
                  "are those of the queue-management profile, so none is made; add tx queue uc-0",
                  "untranslated /qos-profiles/__YANG_QMP_[wred]/tx-queues/uc-1: a queue-management "
                  "profile has the settings of tx queue 0 alone; remove this one"));
}

TEST(QueueFindings, AProfileForAQueueWithoutAName) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-4": {}}}}, "qos-profiles":
      {"__YANG_QMP_[wred]": {"tx-queues": {"uc-0": {"wred": {"max-drop-percent": 10}}}}},
      "queue-names": {"EF": 5}, "comments": {"if-Et1/1-uc-txq-4":
      "{\"MetaData-OpenConfig\": {\"queue-management-profile\": {\"name\": \"wred\"}}}"}})");
  EXPECT_THAT(found,
              ElementsAre("missing /comments/if-Et1~11-uc-txq-4: tx queue 4 has no name, so its "
                          "queue-management profile is not attached; add a name to queue-names"));
}

TEST(QueueFindings, AShapingRate) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {"shape": 400000}}}}})");
  EXPECT_THAT(found,
              ElementsAre("untranslated /interfaces/Ethernet1~11/tx-queues/uc-5/shape: a shaping "
                          "rate is not translated, and no scheduler policy speaks for the queue; "
                          "remove it, or name the policy in /comments/if-Et1~11-uc-txq-5"));
}

TEST(QueueFindings, WredSettingsThatNoProfileSpeaksFor) {
  const auto found = findings(
      R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {"wred": {"min-threshold": 10,
      "max-threshold": 20, "max-drop-percent": 5}}}}}})");
  EXPECT_THAT(
      found,
      ElementsAre("untranslated /interfaces/Ethernet1~11/tx-queues/uc-5/wred: the WRED settings of "
                  "a tx queue are not translated, and no queue-management profile speaks for the "
                  "queue; remove them, or name the profile in /comments/if-Et1~11-uc-txq-5"));
}

TEST(QueueFindings, AMinimumAboveTheMaximum) {
  const auto found = findings(
      R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {"ecn": {"min-threshold": 30,
      "max-threshold": 20, "max-drop-percent": 5}}}}}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "thresholds /interfaces/Ethernet1~11/tx-queues/uc-5/ecn/min-threshold: 30 is above the "
          "max-threshold of 20, and the model gets both as they stand; exchange them"));
}

TEST(QueueFindings, ABandwidthOutOfRange) {
  const auto found =
      findings(R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {"bandwidth": 102}, "uc-6":
      {"bandwidth": 255}, "uc-7": {"bandwidth": 101}}}}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "raises /interfaces/Ethernet1~11/tx-queues/uc-5/bandwidth: 102 is no percentage: the "
          "root queue raises over it, and queues are missing; write 0 to 100, or leave it out",
          "raises /interfaces/Ethernet1~11/tx-queues/uc-6/bandwidth: 255 is no percentage: the "
          "root queue raises over it, and queues are missing; write 0 to 100, or leave it out"));
}

TEST(QueueFindings, EcnSettingsOutOfRange) {
  const auto found = findings(
      R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-5": {"ecn": {"min-threshold": 10,
      "max-threshold": 4294967295}}}}}})");
  EXPECT_THAT(found,
              ElementsAre("raises /interfaces/Ethernet1~11/tx-queues/uc-5/ecn/max-drop-percent: "
                          "101 stands for none, and one is needed: the root queue raises over it, "
                          "and queues are missing; write 0 to 100",
                          "raises /interfaces/Ethernet1~11/tx-queues/uc-5/ecn/max-threshold: "
                          "4294967295 is no threshold: the root queue raises over it, and queues "
                          "are missing; write at most 4294967294"));
}

TEST(QueueFindings, ACommentOfTheWrongTypeIsNoOtherPolicy) {
  const auto found = findings(
      R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-4": {"shape": 400000}, "uc-5": {}}}},
      "qos-profiles": {"__YANG_SP_[wan]": {}, "__YANG_QMP_[wred]": {"tx-queues": {"uc-0":
      {"wred": {"max-drop-percent": 10}}}}}, "queue-names": {"EF": 5}, "comments":
      {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-5":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"wan\"}}}",
      "if-Et1/1-uc-txq-4":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": 7}}}"}})");
  EXPECT_THAT(
      found,
      ElementsAre("comment-type /comments/if-Et1~11-uc-txq-4: at "
                  "/MetaData-OpenConfig/scheduler-policy/name of this comment: expected a string, "
                  "and any other value ends the program that translates it; write a string"));
}

TEST(QueueFindings, ManyTxQueuesThatDisagree) {
  const auto found = findings(
      R"({"interfaces": {"Ethernet1/1": {"tx-queues": {"uc-0": {}, "uc-1": {}, "uc-2": {}, "uc-3":
      {}, "uc-4": {}, "uc-5": {}}}}, "qos-profiles": {"__YANG_SP_[wan]": {},
      "__YANG_QMP_[wred]": {"tx-queues": {"uc-0": {"wred": {"max-drop-percent": 10}}}}},
      "queue-names": {"EF": 5}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}",
      "if-Et1/1-uc-txq-5":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"wan\"}}}"}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "order /interfaces/Ethernet1~11: the comments of its tx queues don't agree on one "
          "scheduler policy, and which one the interface gets depends on the order in which they "
          "are met: none by uc-0, uc-1, uc-2 and 2 more, \"wan\" by uc-5; let all name one"));
}

TEST(ProfileFindings, AProfileWithWred) {
  const auto found = findings(
      R"({"qos-profiles": {"__YANG_QMP_[wred]": {"tx-queues": {"uc-0": {"wred": {"min-threshold": 10,
      "max-threshold": 20, "max-drop-percent": 5}}}}}})");
  EXPECT_THAT(found, IsEmpty());
}

TEST(ProfileFindings, AProfileWithoutABody) {
  const auto found = findings(R"({"qos-profiles": {"__YANG_QMP_[wred]": {}}})");
  EXPECT_THAT(
      found,
      ElementsAre("untranslated /qos-profiles/__YANG_QMP_[wred]: has no tx queue 0, whose settings "
                  "are those of the queue-management profile, so none is made; add tx queue uc-0"));
}

TEST(ProfileFindings, AProfileWithoutTxQueue0) {
  const auto found =
      findings(R"({"qos-profiles": {"__YANG_QMP_[wred]": {"tx-queues": {"uc-3": {}}}}})");
  EXPECT_THAT(
      found,
      ElementsAre("untranslated /qos-profiles/__YANG_QMP_[wred]: has no tx queue 0, whose settings "
                  "are those of the queue-management profile, so none is made; add tx queue uc-0",
                  "untranslated /qos-profiles/__YANG_QMP_[wred]/tx-queues/uc-3: a queue-management "
                  "profile has the settings of tx queue 0 alone; remove this one"));
}

TEST(ProfileFindings, AProfileWithTwoTxQueues0) {
  const auto found = findings(
      R"({"qos-profiles": {"__YANG_QMP_[wred]": {"tx-queues": {"uc-0": {"wred": {"max-threshold": 20,
      "max-drop-percent": 5}}, "mc-0": {"wred": {"max-threshold": 30, "max-drop-percent":
      5}}}}}})");
  EXPECT_THAT(
      found, ElementsAre(
                 "order /qos-profiles/__YANG_QMP_[wred]/tx-queues: uc-0 and mc-0 differ, and whose "
                 "settings the profile gets depends on the order in which they are met; keep one"));
}

TEST(ProfileFindings, AProfileWithTwoEqualTxQueues0) {
  const auto found = findings(
      R"({"qos-profiles": {"__YANG_QMP_[wred]": {"tx-queues": {"uc-0": {"wred": {"max-threshold": 20,
      "max-drop-percent": 5}}, "mc-0": {"wred": {"max-threshold": 20, "max-drop-percent":
      5}}}}}})");
  EXPECT_THAT(found, IsEmpty());
}

TEST(ProfileFindings, SettingsThatAProfileHasNoLeafFor) {
  const auto found = findings(
      R"({"qos-profiles": {"__YANG_QMP_[wred]": {"tx-queues": {"uc-0": {"priority": "strict",
      "bandwidth": 30, "shape": 100, "ecn": {"max-drop-percent": 5, "threshold-unit": 1,
      "weight": 9}}}}}})");
  EXPECT_THAT(
      found,
      ElementsAre("untranslated /qos-profiles/__YANG_QMP_[wred]/tx-queues/uc-0/bandwidth: a "
                  "queue-management profile has the settings of ECN and WRED alone; remove it",
                  "untranslated /qos-profiles/__YANG_QMP_[wred]/tx-queues/uc-0/ecn/threshold-unit: "
                  "the unit is dropped, and the thresholds stand in leaves that count bytes; write "
                  "them in bytes",
                  "untranslated /qos-profiles/__YANG_QMP_[wred]/tx-queues/uc-0/ecn/weight: the "
                  "weight is dropped: that of a queue-management profile is always 0; remove it",
                  "untranslated /qos-profiles/__YANG_QMP_[wred]/tx-queues/uc-0/priority: a "
                  "queue-management profile has the settings of ECN and WRED alone; remove it",
                  "untranslated /qos-profiles/__YANG_QMP_[wred]/tx-queues/uc-0/shape: a "
                  "queue-management profile has the settings of ECN and WRED alone; remove it"));
}

TEST(ProfileFindings, WredSettingsBesideOthersOfEcn) {
  const auto found = findings(
      R"({"qos-profiles": {"__YANG_QMP_[wred]": {"tx-queues": {"uc-0": {"ecn": {"max-threshold": 10,
      "max-drop-percent": 5}, "wred": {"max-threshold": 20, "max-drop-percent": 5}}}}}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "untranslated /qos-profiles/__YANG_QMP_[wred]/tx-queues/uc-0/wred: the profile gets the "
          "thresholds and the percentage of ECN, and these are lost; write the same as in ecn"));
}

TEST(ProfileFindings, AProfilesMinimumAboveItsMaximum) {
  const auto found = findings(
      R"({"qos-profiles": {"__YANG_QMP_[wred]": {"tx-queues": {"uc-0": {"wred": {"min-threshold": 30,
      "max-threshold": 20, "max-drop-percent": 5}}}}}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "thresholds /qos-profiles/__YANG_QMP_[wred]/tx-queues/uc-0/wred/min-threshold: 30 is "
          "above the max-threshold of 20, and the model gets both as they stand; exchange them"));
}

TEST(ProfileFindings, AProfilesPercentageOutOfRange) {
  const auto found = findings(
      R"({"qos-profiles": {"__YANG_QMP_[wred]": {"tx-queues": {"uc-0": {"wred": {"max-threshold":
      20}}}}}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "raises /qos-profiles/__YANG_QMP_[wred]/tx-queues/uc-0/wred/max-drop-percent: 101 stands "
          "for none, and one is needed: the root queue-management raises over it, and "
          "queue-management profiles and their attachments are missing; write 0 to 100"));
}

TEST(ProfileFindings, ASchedulerPolicyWithoutAComment) {
  const auto found = findings(R"({"qos-profiles": {"__YANG_SP_[wan]": {}}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "missing /qos-profiles/__YANG_SP_[wan]: there is no comment "
          "\"qos-profile-__YANG_SP_[wan]\", so the scheduler policy has no schedulers; add it"));
}

TEST(ProfileFindings, ASchedulerInputWithoutItsQueue) {
  const auto found =
      findings(R"({"qos-profiles": {"__YANG_SP_[wan]": {"tx-queues": {"uc-5": {"bandwidth": 40}}}},
      "queue-names": {"AF": 3}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"EF\"}}}}}"}})");
  EXPECT_THAT(
      found,
      ElementsAre("unresolved /comments/qos-profile-__YANG_SP_[wan]: the input \"voice\" of "
                  "scheduler 1 names the queue \"EF\", which is not there; add it to queue-names"));
}

TEST(ProfileFindings, ASchedulerInputFromTheQueueOfAnInterface) {
  const auto found = findings(
      R"({"qos-profiles": {"__YANG_SP_[wan]": {}}, "interfaces": {"Ethernet1-1": {"tx-queues":
      {"uc-3": {}}}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"voice\": {\"queue\": \"Ethernet1-1-unicast-3\"}, \"video\": {\"queue\": \"Ethernet1-1-unicast-4\"}}}}}"}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "unresolved /comments/qos-profile-__YANG_SP_[wan]: the input \"video\" of scheduler 1 "
          "names the queue \"Ethernet1-1-unicast-4\", which is not there; add it to queue-names"));
}

TEST(ProfileFindings, ARateOutOfRange) {
  const auto found = findings(
      R"({"qos-profiles": {"__YANG_SP_[wan]": {}}, "comments": {"qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"one-rate-two-color\": {\"cir-pct\": 120}}}}"}})");
  EXPECT_THAT(
      found,
      ElementsAre("raises /comments/qos-profile-__YANG_SP_[wan]: 120 is no percentage, as the "
                  "cir-pct of scheduler 1: the root scheduler-policy raises over it, and scheduler "
                  "policies and their attachments are missing; write 1 to 100"));
}

}  // namespace
}  // namespace host::findingsOfQueuesTest
