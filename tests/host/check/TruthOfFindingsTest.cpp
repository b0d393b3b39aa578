// Findings that random documents showed to be false, or missing.
#include "tests/support/HostFindings.h"

namespace host::findingsTest {
namespace {

using support::findings;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

TEST(TruthOfFindings, AQueueThatIsKeptFromBeingMadeDoesNotResolve) {
  const auto found = findings(
      R"({"interfaces": {"Et1": {"tx-queues": {"uc-3": {}}}}, "qos-profiles": {"__YANG_SP_[p]":
      {}}, "comments": {"if-Et1-uc-txq-3":
      "{\"MetaData-OpenConfig\":{\"queue-management-profile\":{\"name\":\"q\"}}}",
      "qos-profile-__YANG_SP_[p]":
      "{\"MetaData-OpenConfig\":{\"1\":{\"inputs\":{\"i\":{\"queue\":\"Et1-unicast-3\"}}}}}"}})");
  EXPECT_THAT(
      found,
      Contains(
          "unresolved /comments/qos-profile-__YANG_SP_[p]: the input \"i\" of scheduler 1 names "
          "the queue \"Et1-unicast-3\", which is not there; add it to queue-names"));
}

TEST(TruthOfFindings, AConfiguredQueueIsMadeBesideItsProfile) {
  const auto found = findings(
      R"({"interfaces": {"Et1": {"tx-queues": {"uc-3": {"bandwidth": 40}}}}, "qos-profiles":
      {"__YANG_SP_[p]": {}}, "comments": {"if-Et1-uc-txq-3":
      "{\"MetaData-OpenConfig\":{\"queue-management-profile\":{\"name\":\"q\"}}}",
      "qos-profile-__YANG_SP_[p]":
      "{\"MetaData-OpenConfig\":{\"1\":{\"inputs\":{\"i\":{\"queue\":\"Et1-unicast-3\"}}}}}"}})");
  EXPECT_THAT(found, ElementsAre(StartsWith("missing /comments/if-Et1-uc-txq-3")));
}

TEST(TruthOfFindings, TheBindingOfAClassifierThatNoLeafHoldsIsLeftOutAndRefersToNothing) {
  const auto found = findings(
      R"({"service-policies": {"0:__yang_[IPV4__c\u0001]": {}}, "policy-maps": {"qos":
      {"__yang_[IPV4__c\u0001]": {}}}})");
  EXPECT_THAT(found,
              ElementsAre(StartsWith("left-out /policy-maps/"),
                          "left-out /service-policies/0:__yang_[IPV4__c\\u0001]: \"c\\u0001\" has "
                          "characters that no OpenConfig string holds, and the binding of the "
                          "classifier is left out; use another name"));
}

TEST(TruthOfFindings, APolicyMapWithOneClassifierForBothFamiliesHasNoOther) {
  const auto found = findings(R"({"policy-maps": {"qos": {"__yang_[IPV4__a][IPV6__a]": {}}}})");
  EXPECT_THAT(found, Not(Contains(StartsWith("shadowed"))));
}

TEST(TruthOfFindings, AnAttachmentThatIsLeftOutRefersToNothing) {
  const auto found = findings(
      R"({"interfaces": {"Et1": {"tx-queues": {"uc-3": {}}}}, "queue-names": {"n\u0001": 3},
      "comments": {"if-Et1-uc-txq-3":
      "{\"MetaData-OpenConfig\":{\"queue-management-profile\":{\"name\":\"q\"}}}"}})");
  EXPECT_THAT(found, ElementsAre(StartsWith("left-out /queue-names/")));
}

TEST(TruthOfFindings, ATxQueueWithTheEmptyNameHasNone) {
  const auto found = findings(
      R"({"interfaces": {"Et1": {"tx-queues": {"uc-3": {}}}}, "queue-names": {"": 3},
      "comments": {"if-Et1-uc-txq-3":
      "{\"MetaData-OpenConfig\":{\"queue-management-profile\":{\"name\":\"q\"}}}"}})");
  EXPECT_THAT(found,
              ElementsAre("missing /comments/if-Et1-uc-txq-3: tx queue 3 has no name, so its "
                          "queue-management profile is not attached; add a name to queue-names",
                          StartsWith("left-out /queue-names/")));
}

TEST(TruthOfFindings, APriorityThatIsNotStrictIsNotTranslated) {
  const auto found =
      findings(R"({"interfaces": {"Et1": {"tx-queues": {"uc-3": {"priority": 7}}}}})");
  EXPECT_THAT(found, ElementsAre("untranslated /interfaces/Et1/tx-queues/uc-3/priority: of "
                                 "priorities only strict is translated, and this is 7; write "
                                 "strict, or leave it out"));
}

TEST(TruthOfFindings, APriorityForWhichAPolicySpeaksIsNotLost) {
  const auto found = findings(
      R"({"interfaces": {"Et1": {"tx-queues": {"uc-3": {"priority": 7}}}}, "qos-profiles":
      {"__YANG_SP_[p]": {}}, "comments": {"qos-profile-__YANG_SP_[p]":
      "{\"MetaData-OpenConfig\":{\"1\":{}}}", "if-Et1-uc-txq-3":
      "{\"MetaData-OpenConfig\":{\"scheduler-policy\":{\"name\":\"p\"}}}"}})");
  EXPECT_THAT(found, IsEmpty());
}

TEST(TruthOfFindings, AWatchdogsActionThatBecomesAnotherOne) {
  EXPECT_THAT(findings(R"({"pfc-watchdog": {"time-a": 100, "action": 3}})"),
              ElementsAre("untranslated /pfc-watchdog/action: of actions only 1, 2 and 5 are "
                          "translated, and 3 becomes 1; write one of them"));
  for (const char* action : {"1", "2", "5"}) {
    const std::string text = R"({"pfc-watchdog": {"time-a": 100, "action": )";
    EXPECT_THAT(findings(text + action + "}}"), IsEmpty()) << action;
  }
}

TEST(TruthOfFindings, AClassMapOfAnotherMapType) {
  EXPECT_THAT(findings(R"({"class-maps": {"7": {"__yang_[a]_[t]": {}, "COPP": {}}}})"),
              ElementsAre("untranslated /class-maps/7/__yang_[a]_[t]: class maps of the map type 7 "
                          "are not translated; move it to /class-maps/qos"));
}

TEST(TruthOfFindings, AClassOfALaterPolicyMapDecidesOnTheAction) {
  const auto found = findings(
      R"({"policy-maps": {"qos": {"__yang_[IPV4__a]": {"classes": {"__yang_[a]_[t]": {"actions":
      {"set-traffic-class": 5}}}}, "__yang_[IPV4__b]": {"classes": {"__yang_[a]_[t]": {}}}}},
      "forwarding-groups": {"g": 5}, "tc-to-tx-queue": {"5": 3}, "queue-names": {"V": 3}})");
  EXPECT_THAT(found,
              Contains("shadowed "
                       "/policy-maps/qos/__yang_[IPV4__a]/classes/__yang_[a]_[t]: the policy "
                       "map \"__yang_[IPV4__b]\" comes behind this one in name order and "
                       "decides on the action of the term; let one policy map have it"));
}

TEST(TruthOfFindings, TheUnitAndTheWeightOfWredAreLostBesideEcn) {
  const auto found = findings(
      R"({"qos-profiles": {"__YANG_QMP_[q]": {"tx-queues": {"uc-0": {"ecn": {"max-drop-percent": 3},
      "wred": {"max-drop-percent": 3, "threshold-unit": 1}}}}}})");
  EXPECT_THAT(
      found,
      ElementsAre(StartsWith("untranslated /qos-profiles/__YANG_QMP_[q]/tx-queues/uc-0/wred: ")));
}

TEST(TruthOfFindings, AnInputThatIsLeftOutRefersToNothing) {
  const auto found = findings(
      R"({"qos-profiles": {"__YANG_SP_[p]": {}}, "comments": {"qos-profile-__YANG_SP_[p]":
      "{\"MetaData-OpenConfig\":{\"1\":{\"inputs\":{\"k\\u0001\":{\"queue\":\"V\"}}}}}"}})");
  EXPECT_THAT(found, ElementsAre(StartsWith("left-out /comments/qos-profile-__YANG_SP_[p]")));
}

TEST(TruthOfFindings, ATxQueueOfTheIdOfNoneUsesItsName) {
  const auto found = findings(
      R"({"interfaces": {"Et1": {"tx-queues": {"uc-16": {}}}}, "queue-names": {"V": 16}})");
  EXPECT_THAT(found, IsEmpty());
}

TEST(TruthOfFindings, APolicyThatIsLeftOutIsNone) {
  const auto found = findings(
      R"({"interfaces": {"Et1": {"tx-queues": {"uc-3": {}, "uc-4": {}}}}, "comments":
      {"if-Et1-uc-txq-3":
      "{\"MetaData-OpenConfig\":{\"scheduler-policy\":{\"name\":\"c\\u0001\"}}}"}})");
  EXPECT_THAT(found, ElementsAre(StartsWith("left-out /comments/if-Et1-uc-txq-3")));
}

}  // namespace
}  // namespace host::findingsTest
