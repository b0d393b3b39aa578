// What `check` finds in class maps, access lists, policy maps, service policies and names.
#include "tests/support/HostFindings.h"

namespace host::findingsTest {
namespace {

using support::findings;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(ClassifierFindings, AClassifierWithAllItsPartsHasNoFinding) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "access-lists": {"ipv4":
      {"__yang_[edge-in]_[voice]": {"rules": {"10": {"dscp": 46}}}}}, "policy-maps": {"qos":
      {"__yang_[IPV4__edge-in]": {"classes": {"__yang_[edge-in]_[voice]": {"actions":
      {"set-traffic-class": 5}}}}}}, "service-policies": {"1:__yang_[IPV4__edge-in]":
      {"interfaces": {"Ethernet1/1": true}}}, "interfaces": {"Ethernet1/1": {}},
      "queue-names": {"EF": 5}, "forwarding-groups": {"voice": 5}, "tc-to-tx-queue": {"5":
      5}})");
  EXPECT_THAT(found, IsEmpty());
}

TEST(ClassifierFindings, ObjectsOfOtherOriginHaveNoFinding) {
  const auto found = findings(
      R"({"class-maps": {"qos": {"MGMT-SSH": {}, "PLAIN": {"match": [7, "ipv6-access-group"]}}},
      "access-lists": {"ipv4": {"MGMT-SSH": {"rules": {"10": {"dscp": 200}}}}},
      "policy-maps": {"qos": {"CONTROL-PLANE": {"classes": {"MGMT-SSH": {"actions": {"7":
      1}}}}}, "9": {"COPP": {}}}, "service-policies": {"2:CONTROL-PLANE": {"interfaces":
      {"Management1": true}}}, "qos-profiles": {"PORT-FAST": {"tx-queues": {"uc-5":
      {"bandwidth": 200}}}}, "comments": {"port-1": "uplink to core"}})");
  EXPECT_THAT(found, IsEmpty());
}

TEST(ClassifierFindings, ATermWithoutItsPlaceholderIsSwept) {
  const auto found = findings(
      R"({"class-maps": {"qos": {"__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}})");
  EXPECT_THAT(found,
              ElementsAre("swept /class-maps/qos/__yang_[edge-in]_[voice]: its classifier has no "
                          "placeholder, so each start sweeps the classifier \"edge-in\" with all "
                          "its terms; add the class map \"__yang_[edge-in]_[]\""));
}

TEST(ClassifierFindings, ATermWithoutItsPlaceholderIsSweptAndMadeAnewByOthers) {
  const auto found = findings(
      R"({"class-maps": {"qos": {"__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}},
      "access-lists": {"ipv4": {"__yang_[edge-in]_[voice]": {"rules": {"10": {"dscp":
      46}}}}}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "swept /class-maps/qos/__yang_[edge-in]_[voice]: its classifier has no placeholder, so "
          "each start sweeps the classifier \"edge-in\" with all its terms, before access lists "
          "and policy maps make theirs anew; add the class map \"__yang_[edge-in]_[]\""));
}

TEST(ClassifierFindings, AClassifierOfWhichNothingMatchesIsNotMade) {
  const auto found = findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {}}}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "untranslated /class-maps/qos/__yang_[edge-in]_[]: no class map of the classifier "
          "\"edge-in\" has a match statement, and nothing else makes it; add a match statement"));
}

TEST(ClassifierFindings, ATermThatMatchesNothingIsNotMade) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {}}}})");
  EXPECT_THAT(
      found,
      ElementsAre("untranslated /class-maps/qos/__yang_[edge-in]_[voice]: has no match statement, "
                  "and nothing else makes the term \"voice\"; add a match statement"));
}

TEST(ClassifierFindings, ATermThatMatchesNothingIsMadeByItsRules) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {}}}, "access-lists": {"ipv4":
      {"__yang_[edge-in]_[voice]": {"rules": {"10": {"dscp": 46}}}}}})");
  EXPECT_THAT(found, IsEmpty());
}

TEST(ClassifierFindings, ClassMapsThatDisagreeOnTheTypeOfTheirClassifier) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ipv6-access-group"]}}}})");
  EXPECT_THAT(
      found,
      ElementsAre("order /class-maps/qos/__yang_[edge-in]_[voice]: the class maps of the "
                  "classifier \"edge-in\" don't agree on its type, and which one it gets depends "
                  "on the order in which they are met: IPV4, IPV6; let all match one family"));
}

TEST(ClassifierFindings, AClassMapOfBothFamilies) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group",
      "ipv6-access-group"]}}}})");
  EXPECT_THAT(
      found,
      ElementsAre("order /class-maps/qos/__yang_[edge-in]_[]: the class maps of the classifier "
                  "\"edge-in\" don't agree on its type, and which one it gets depends on the order "
                  "in which they are met: IPV4, IPV6; let all match one family"));
}

TEST(ClassifierFindings, AMatchStatementThatIsNotKnown) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": [7]}}}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "match-option /class-maps/qos/__yang_[edge-in]_[]/match: 7 is no match statement known "
          "here and is taken for ip-access-group; write ip-access-group or ipv6-access-group"));
}

TEST(ClassifierFindings, AnIPv6AccessListOfAnIPv4Classifier) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "access-lists": {"ipv6":
      {"__yang_[edge-in]_[voice]": {"rules": {"10": {"tc": 184, "tc-mask": 252}}}}}})");
  EXPECT_THAT(found,
              ElementsAre("families /class-maps/qos/__yang_[edge-in]_[]: makes \"edge-in\" an IPV4 "
                          "classifier, and /access-lists/ipv6/__yang_[edge-in]_[voice] an IPV6 "
                          "one, which it is in the end; give each family a classifier of its own"));
}

TEST(ClassifierFindings, AccessListsOfBothFamiliesForOneTerm) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "access-lists": {"ipv4":
      {"__yang_[edge-in]_[voice]": {"rules": {"10": {"dscp": 46}}}}, "ipv6":
      {"__yang_[edge-in]_[voice]": {"rules": {"10": {"tc": 184, "tc-mask": 252}}}}}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "families /access-lists/ipv4/__yang_[edge-in]_[voice]: is not translated: the IPv6 "
          "access list of the same name takes its place; give each family a classifier of its own",
          "families /class-maps/qos/__yang_[edge-in]_[]: makes \"edge-in\" an IPV4 classifier, and "
          "/access-lists/ipv6/__yang_[edge-in]_[voice] an IPV6 one, which it is in the end; give "
          "each family a classifier of its own"));
}

TEST(ClassifierFindings, AccessListsOfBothFamiliesForTwoTerms) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[video]": {"match": ["ip-access-group"]}}}, "access-lists": {"ipv4":
      {"__yang_[edge-in]_[voice]": {"rules": {"10": {"dscp": 46}}}}, "ipv6":
      {"__yang_[edge-in]_[video]": {"rules": {"10": {"tc": 136, "tc-mask": 252}}}}}})");
  EXPECT_THAT(
      found, ElementsAre("families /access-lists/ipv4/__yang_[edge-in]_[voice]: is not translated: "
                         "the classifier \"edge-in\" has IPv6 access lists, too, and loses the "
                         "conditions of IPv4 for them; give each family a classifier of its own",
                         "families /class-maps/qos/__yang_[edge-in]_[]: makes \"edge-in\" an IPV4 "
                         "classifier, and /access-lists/ipv6/__yang_[edge-in]_[video] an IPV6 one, "
                         "which it is in the end; give each family a classifier of its own"));
}

TEST(ClassifierFindings, ADscpAbove63) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "access-lists": {"ipv4":
      {"__yang_[edge-in]_[voice]": {"rules": {"10": {"dscp": 64}}}}}})");
  EXPECT_THAT(found,
              ElementsAre("left-out /access-lists/ipv4/__yang_[edge-in]_[voice]/rules/10/dscp: 64 "
                          "is above 63, and is left out; write 0 to 63"));
}

TEST(ClassifierFindings, ADscpThatTwoRulesMatch) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "access-lists": {"ipv4":
      {"__yang_[edge-in]_[voice]": {"rules": {"10": {"dscp": 46}, "20": {"dscp": 46}}}}}})");
  EXPECT_THAT(
      found,
      ElementsAre("left-out /access-lists/ipv4/__yang_[edge-in]_[voice]/rules/20: an earlier rule "
                  "matches DSCP 46, too, and a set holds it once; remove one of them"));
}

TEST(ClassifierFindings, AMaskThatLeavesBitsOfTheDscpOut) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in6]_[]": {"match": ["ipv6-access-group"]},
      "__yang_[edge-in6]_[voice]": {"match": ["ipv6-access-group"]}}}, "access-lists":
      {"ipv6": {"__yang_[edge-in6]_[voice]": {"rules": {"10": {"tc": 184, "tc-mask":
      224}}}}}})");
  EXPECT_THAT(found,
              ElementsAre("untranslated /access-lists/ipv6/__yang_[edge-in6]_[voice]/rules/10: the "
                          "rule is taken for one without a DSCP, since its tc-mask has not all of "
                          "the upper six bits; write 252"));
}

TEST(ClassifierFindings, TheTwoLowBitsOfATrafficClass) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in6]_[]": {"match": ["ipv6-access-group"]},
      "__yang_[edge-in6]_[voice]": {"match": ["ipv6-access-group"]}}}, "access-lists":
      {"ipv6": {"__yang_[edge-in6]_[voice]": {"rules": {"10": {"tc": 185, "tc-mask":
      255}}}}}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "untranslated /access-lists/ipv6/__yang_[edge-in6]_[voice]/rules/10/tc: the two low bits "
          "of the traffic class are no part of the DSCP and are dropped; write a multiple of 4"));
}

TEST(ClassifierFindings, AnActionOfATrafficClassWithoutAForwardingGroup) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "policy-maps": {"qos":
      {"__yang_[IPV4__edge-in]": {"classes": {"__yang_[edge-in]_[voice]": {"actions":
      {"set-traffic-class": 4}}}}}}, "queue-names": {"EF": 5}, "forwarding-groups":
      {"voice": 5}, "tc-to-tx-queue": {"5": 5}})");
  EXPECT_THAT(
      found, ElementsAre("missing "
                         "/policy-maps/qos/__yang_[IPV4__edge-in]/classes/__yang_[edge-in]_[voice]/"
                         "actions/set-traffic-class: no forwarding group has the traffic class 4, "
                         "so the term gets no target group; add one to forwarding-groups"));
}

TEST(ClassifierFindings, AnActionOfAnotherKind) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "policy-maps": {"qos":
      {"__yang_[IPV4__edge-in]": {"classes": {"__yang_[edge-in]_[voice]": {"actions":
      {"set-traffic-class": 5, "7": 1}}}}}}, "queue-names": {"EF": 5}, "forwarding-groups":
      {"voice": 5}, "tc-to-tx-queue": {"5": 5}})");
  EXPECT_THAT(
      found, ElementsAre("untranslated "
                         "/policy-maps/qos/__yang_[IPV4__edge-in]/classes/__yang_[edge-in]_[voice]/"
                         "actions/7: of actions only set-traffic-class is translated; remove it"));
}

TEST(ClassifierFindings, AClassThatIsNoTerm) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "policy-maps": {"qos":
      {"__yang_[IPV4__edge-in]": {"classes": {"class-default": {"actions":
      {"set-traffic-class": 5}}, "idle": {}}}}}, "queue-names": {"EF": 5},
      "forwarding-groups": {"voice": 5}, "tc-to-tx-queue": {"5": 5}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "untranslated /policy-maps/qos/__yang_[IPV4__edge-in]/classes/class-default: its actions "
          "are not translated: the class is no term; name it __yang_[CLASSIFIER]_[TERM]"));
}

TEST(ClassifierFindings, AClassOfAnotherClassifier) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "policy-maps": {"qos":
      {"__yang_[IPV6__edge-in6]": {"classes": {"__yang_[edge-in]_[voice]": {"actions":
      {"set-traffic-class": 5}}}}}}, "queue-names": {"EF": 5}, "forwarding-groups":
      {"voice": 5}, "tc-to-tx-queue": {"5": 5}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "families /class-maps/qos/__yang_[edge-in]_[]: makes \"edge-in\" an IPV4 classifier, and "
          "/policy-maps/qos/__yang_[IPV6__edge-in6]/classes/__yang_[edge-in]_[voice] an IPV6 one, "
          "which it is in the end; give each family a classifier of its own",
          "other-classifier "
          "/policy-maps/qos/__yang_[IPV6__edge-in6]/classes/__yang_[edge-in]_[voice]: is a class "
          "of the classifier \"edge-in\", which the name of the policy map doesn't have, and makes "
          "it an IPV6 one; move it to the policy map of its classifier"));
}

TEST(ClassifierFindings, APolicyMapOfTheOtherFamily) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "policy-maps": {"qos":
      {"__yang_[IPV6__edge-in]": {"classes": {"__yang_[edge-in]_[voice]": {"actions":
      {"set-traffic-class": 5}}}}}}, "queue-names": {"EF": 5}, "forwarding-groups":
      {"voice": 5}, "tc-to-tx-queue": {"5": 5}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "families /class-maps/qos/__yang_[edge-in]_[]: makes \"edge-in\" an IPV4 classifier, and "
          "/policy-maps/qos/__yang_[IPV6__edge-in]/classes/__yang_[edge-in]_[voice] an IPV6 one, "
          "which it is in the end; give each family a classifier of its own"));
}

TEST(ClassifierFindings, TwoPolicyMapsOfOneClassifier) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "policy-maps": {"qos":
      {"__yang_[IPV4__edge-in]": {"classes": {"__yang_[edge-in]_[voice]": {"actions":
      {"set-traffic-class": 5}}}}, "__yang_[IPV4__edge-in][IPV6__edge-in6]": {}}},
      "queue-names": {"EF": 5}, "forwarding-groups": {"voice": 5}, "tc-to-tx-queue": {"5":
      5}})");
  EXPECT_THAT(
      found, ElementsAre(
                 "shadowed /policy-maps/qos/__yang_[IPV4__edge-in]: the classifier \"edge-in\" has "
                 "another policy map, \"__yang_[IPV4__edge-in][IPV6__edge-in6]\", and of the two "
                 "the last one in name order decides on its actions; let one policy map have it"));
}

TEST(BindingFindings, AnInterfaceThatIsNotConfigured) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]}}},
      "policy-maps": {"qos": {"__yang_[IPV4__edge-in]": {}}}, "service-policies":
      {"1:__yang_[IPV4__edge-in]": {"interfaces": {"Ethernt1/1": true}}}, "interfaces":
      {"Ethernet1/1": {}, "Ethernet1/2": {}}})");
  EXPECT_THAT(
      found,
      ElementsAre("unknown-interface "
                  "/service-policies/1:__yang_[IPV4__edge-in]/interfaces/Ethernt1~11: no interface "
                  "\"Ethernt1/1\" is configured: did you mean Ethernet1/1?; add it to interfaces"));
}

TEST(BindingFindings, AnInterfaceThatIsNotBound) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]}}},
      "policy-maps": {"qos": {"__yang_[IPV4__edge-in]": {}}}, "service-policies":
      {"1:__yang_[IPV4__edge-in]": {"interfaces": {"Ethernet1/1": false}}}, "interfaces":
      {"Ethernet1/1": {}, "Ethernet1/2": {}}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "false-binding /service-policies/1:__yang_[IPV4__edge-in]/interfaces/Ethernet1~11: false "
          "binds the interface at a start and unbinds it at a change; remove the interface, or "
          "write true"));
}

TEST(BindingFindings, APolicyMapThatIsNotThere) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]}}},
      "policy-maps": {"qos": {"__yang_[IPV4__edge-in]": {}}}, "service-policies":
      {"1:__yang_[IPV4__edge-on]": {"interfaces": {"Ethernet1/1": true}}}, "interfaces":
      {"Ethernet1/1": {}, "Ethernet1/2": {}}})");
  EXPECT_THAT(
      found,
      ElementsAre("missing /service-policies/1:__yang_[IPV4__edge-on]: there is no policy map "
                  "\"__yang_[IPV4__edge-on]\": did you mean __yang_[IPV4__edge-in]?; its "
                  "classifiers are bound without actions; add it to policy-maps",
                  "unresolved /service-policies/1:__yang_[IPV4__edge-on]: binds the classifier "
                  "\"edge-on\", which nothing makes: did you mean edge-in?; add its class maps"));
}

TEST(BindingFindings, ServicePoliciesThatBindOneInterface) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]}}},
      "policy-maps": {"qos": {"__yang_[IPV4__edge-in]": {}, "__yang_[IPV4__core-in]": {}}},
      "service-policies": {"1:__yang_[IPV4__edge-in]": {"interfaces": {"Ethernet1/1":
      true}}, "1:__yang_[IPV4__core-in]": {"interfaces": {"Ethernet1/1": true}}},
      "interfaces": {"Ethernet1/1": {}, "Ethernet1/2": {}}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "order /service-policies/1:__yang_[IPV4__edge-in]/interfaces/Ethernet1~11: several "
          "service policies bind \"Ethernet1/1\", and which classifier it gets depends on the "
          "order in which they are met: \"core-in\", \"edge-in\"; let one service policy bind it"));
}

TEST(BindingFindings, ServicePoliciesThatBindAFamilyEach) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]}}},
      "policy-maps": {"qos": {"__yang_[IPV4__edge-in]": {}, "__yang_[IPV6__edge-in6]": {}}},
      "service-policies": {"1:__yang_[IPV4__edge-in]": {"interfaces": {"Ethernet1/1":
      true}}, "1:__yang_[IPV6__edge-in6]": {"interfaces": {"Ethernet1/1": true}}},
      "interfaces": {"Ethernet1/1": {}, "Ethernet1/2": {}}})");
  EXPECT_THAT(found, IsEmpty());
}

TEST(BindingFindings, AServicePolicyThatBindsTheSameTwoElsewhere) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]}}},
      "policy-maps": {"qos": {"__yang_[IPV4__edge-in]": {}, "__yang_[IPV6__edge-in6]": {},
      "__yang_[IPV4__edge-in][IPV6__edge-in6]": {}}}, "service-policies":
      {"1:__yang_[IPV4__edge-in]": {"interfaces": {"Ethernet1/1": true}},
      "1:__yang_[IPV6__edge-in6]": {"interfaces": {"Ethernet1/1": true}},
      "1:__yang_[IPV4__edge-in][IPV6__edge-in6]": {"interfaces": {"Ethernet1/2": true}}},
      "interfaces": {"Ethernet1/1": {}, "Ethernet1/2": {}}})");
  EXPECT_THAT(
      found, ElementsAre(
                 "shadowed /policy-maps/qos/__yang_[IPV4__edge-in]: the classifier \"edge-in\" has "
                 "another policy map, \"__yang_[IPV4__edge-in][IPV6__edge-in6]\", and of the two "
                 "the last one in name order decides on its actions; let one policy map have it",
                 "shadowed /policy-maps/qos/__yang_[IPV4__edge-in][IPV6__edge-in6]: the classifier "
                 "\"edge-in6\" has another policy map, \"__yang_[IPV6__edge-in6]\", and of the two "
                 "the last one in name order decides on its actions; let one policy map have it",
                 "order /service-policies/1:__yang_[IPV6__edge-in6]/interfaces/Ethernet1~11: "
                 "another service policy binds both classifiers of \"Ethernet1/1\" elsewhere and "
                 "not here, and whether it removes them here depends on the order in which the "
                 "service policies are met; let one service policy bind both"));
}

TEST(BindingFindings, AServicePolicyUnderTwoTags) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]}}},
      "policy-maps": {"qos": {"__yang_[IPV4__edge-in]": {}}}, "service-policies":
      {"1:__yang_[IPV4__edge-in]": {"interfaces": {"Ethernet1/1": true}},
      "2:__yang_[IPV4__edge-in]": {}}, "interfaces": {"Ethernet1/1": {}, "Ethernet1/2": {}}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "raises /service-policies/1:__yang_[IPV4__edge-in]: tag 2 has the same policy map: "
          "interface-classifier raises over it, and bindings are missing; keep one of the two",
          "raises /service-policies/2:__yang_[IPV4__edge-in]: tag 1 has the same policy map: "
          "interface-classifier raises over it, and bindings are missing; keep one of the two"));
}

TEST(BindingFindings, AClassifierThatIsSweptIsNotMade) {
  const auto found = findings(
      R"({"class-maps": {"qos": {"__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}},
      "service-policies": {"1:__yang_[IPV4__edge-in]": {"interfaces": {"Ethernet1/1":
      true}}}, "interfaces": {"Ethernet1/1": {}}})");
  EXPECT_THAT(found,
              ElementsAre("swept /class-maps/qos/__yang_[edge-in]_[voice]: its classifier has no "
                          "placeholder, so each start sweeps the classifier \"edge-in\" with all "
                          "its terms; add the class map \"__yang_[edge-in]_[]\"",
                          "missing /service-policies/1:__yang_[IPV4__edge-in]: there is no policy "
                          "map \"__yang_[IPV4__edge-in]\"; its classifiers are bound without "
                          "actions; add it to policy-maps",
                          "unresolved /service-policies/1:__yang_[IPV4__edge-in]: binds the "
                          "classifier \"edge-in\", which nothing makes; add its class maps"));
}

TEST(NameFindings, APolicyMapWhoseNameIsNoForm) {
  const auto found = findings(
      R"({"policy-maps": {"qos": {"__yang_[IPV4__a]_[IPV6__b]": {}, "__yang_[IPV6__b][IPV4__a]": {},
      "__yang_IPV4__a": {}, "__yang_": {}}}})");
  EXPECT_THAT(
      found, ElementsAre("name-form /policy-maps/qos/__yang_: the name is almost one that stands "
                         "for an OpenConfig object, so the policy map is not translated; write "
                         "__yang_[IPV4__CLASSIFIER], __yang_[IPV6__CLASSIFIER] or "
                         "__yang_[IPV4__CLASSIFIER][IPV6__CLASSIFIER]",
                         "name-form /policy-maps/qos/__yang_IPV4__a: the name is almost one that "
                         "stands for an OpenConfig object, so the policy map is not translated; "
                         "write __yang_[IPV4__CLASSIFIER], __yang_[IPV6__CLASSIFIER] or "
                         "__yang_[IPV4__CLASSIFIER][IPV6__CLASSIFIER]",
                         "name-form /policy-maps/qos/__yang_[IPV4__a]_[IPV6__b]: the name is "
                         "almost one that stands for an OpenConfig object, so the policy map is "
                         "not translated; write __yang_[IPV4__CLASSIFIER], "
                         "__yang_[IPV6__CLASSIFIER] or __yang_[IPV4__CLASSIFIER][IPV6__CLASSIFIER]",
                         "name-form /policy-maps/qos/__yang_[IPV6__b][IPV4__a]: the name is almost "
                         "one that stands for an OpenConfig object, so the policy map is not "
                         "translated; write __yang_[IPV4__CLASSIFIER], __yang_[IPV6__CLASSIFIER] "
                         "or __yang_[IPV4__CLASSIFIER][IPV6__CLASSIFIER]"));
}

TEST(NameFindings, ClassMapsAndAccessListsWhoseNamesAreNoForm) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_edge-in_voice": {}, "__Yang_[edge-in]_[]": {}}},
      "access-lists": {"ipv4": {"__yang_[edge-in]": {}}, "ipv6": {"__yang_[edge-in]_[]":
      {}}}})");
  EXPECT_THAT(
      found, ElementsAre("name-form /access-lists/ipv4/__yang_[edge-in]: the name is almost one "
                         "that stands for an OpenConfig object, so the access list is not "
                         "translated; write __yang_[CLASSIFIER]_[TERM]",
                         "name-form /access-lists/ipv6/__yang_[edge-in]_[]: the name is almost one "
                         "that stands for an OpenConfig object, so the access list is not "
                         "translated; write __yang_[CLASSIFIER]_[TERM]",
                         "name-form /class-maps/qos/__Yang_[edge-in]_[]: the name is almost one "
                         "that stands for an OpenConfig object, so the class map is not "
                         "translated; write __yang_[CLASSIFIER]_[TERM] or __yang_[CLASSIFIER]_[]",
                         "name-form /class-maps/qos/__yang_edge-in_voice: the name is almost one "
                         "that stands for an OpenConfig object, so the class map is not "
                         "translated; write __yang_[CLASSIFIER]_[TERM] or __yang_[CLASSIFIER]_[]"));
}

TEST(NameFindings, QoSProfilesWhoseNamesAreNoForm) {
  const auto found =
      findings(R"({"qos-profiles": {"__yang_QMP_[wred]": {}, "__YANG_SP_wan": {}}})");
  EXPECT_THAT(found, ElementsAre("name-form /qos-profiles/__YANG_SP_wan: the name is almost one "
                                 "that stands for an OpenConfig object, so the QoS profile is not "
                                 "translated; write __YANG_QMP_[NAME] or __YANG_SP_[NAME]",
                                 "name-form /qos-profiles/__yang_QMP_[wred]: the name is almost "
                                 "one that stands for an OpenConfig object, so the QoS profile is "
                                 "not translated; write __YANG_QMP_[NAME] or __YANG_SP_[NAME]"));
}

TEST(NameFindings, AServicePolicyWhosePolicyMapIsNoForm) {
  const auto found = findings(R"({"service-policies": {"1:__yang_[edge-in]": {}}})");
  EXPECT_THAT(found,
              ElementsAre("name-form /service-policies/1:__yang_[edge-in]: the name is almost one "
                          "that stands for an OpenConfig object, so the service policy is not "
                          "translated; write __yang_[IPV4__CLASSIFIER], __yang_[IPV6__CLASSIFIER] "
                          "or __yang_[IPV4__CLASSIFIER][IPV6__CLASSIFIER]"));
}

TEST(NameFindings, APolicyMapOfAnotherMapType) {
  const auto found =
      findings(R"({"policy-maps": {"7": {"__yang_[IPV4__edge-in]": {}, "COPP": {}}}})");
  EXPECT_THAT(found,
              ElementsAre("untranslated /policy-maps/7/__yang_[IPV4__edge-in]: policy maps of the "
                          "map type 7 are not translated; move it to /policy-maps/qos"));
}

TEST(NameFindings, NamesThatNoLeafHolds) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge\u0001]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge\u0001]_[vo\u0002ice]": {"match": ["ip-access-group"]}}}, "queue-names":
      {"E\u0003F": 5, "": 4}, "forwarding-groups": {"": 5, "vo\u0004ice": 4},
      "tc-to-tx-queue": {"5": 5, "4": 4}, "interfaces": {"Ether\u0005net": {}}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "left-out /class-maps/qos/__yang_[edge\\u0001]_[]: \"edge\\u0001\" has characters that "
          "no OpenConfig string holds, and the classifier is left out; use another name",
          "left-out /class-maps/qos/__yang_[edge\\u0001]_[vo\\u0002ice]: \"edge\\u0001\" has "
          "characters that no OpenConfig string holds, and the classifier is left out; use another "
          "name",
          "left-out /class-maps/qos/__yang_[edge\\u0001]_[vo\\u0002ice]: \"vo\\u0002ice\" has "
          "characters that no OpenConfig string holds, and the term is left out; use another name",
          "left-out /forwarding-groups/: an empty name is no key, and the forwarding group is left "
          "out; name it",
          "left-out /forwarding-groups/vo\\u0004ice: \"vo\\u0004ice\" has characters that no "
          "OpenConfig string holds, and the forwarding group is left out; use another name",
          "left-out /interfaces/Ether\\u0005net: \"Ether\\u0005net\" has characters that no "
          "OpenConfig string holds, and the interface is left out; use another name",
          "left-out /queue-names/: an empty name is no key, and the queue is left out; name it",
          "left-out /queue-names/E\\u0003F: \"E\\u0003F\" has characters that no OpenConfig string "
          "holds, and the queue is left out; use another name"));
}

TEST(NameFindings, NamesInCommentsThatNoLeafHolds) {
  const auto found = findings(
      R"({"interfaces": {"Ethernet1": {"tx-queues": {"uc-5": {}}}}, "queue-names": {"EF": 5,
      "A\u0001": 4}, "qos-profiles": {"__YANG_SP_[wan]": {}, "__YANG_SP_[w\u0002]": {}},
      "comments": {"if-Et1-uc-txq-5":
      "{\"MetaData-OpenConfig\": {\"scheduler-policy\": {\"name\": \"w\\u0002\"}}}",
      "qos-profile-__YANG_SP_[wan]":
      "{\"MetaData-OpenConfig\": {\"1\": {\"inputs\": {\"i\\u0003\": {\"queue\": \"A\\u0001\"}}}}}"}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "left-out /comments/if-Et1-uc-txq-5: \"w\\u0002\" has characters that no OpenConfig "
          "string holds, and the attachment of the scheduler policy is left out; use another name",
          "left-out /comments/qos-profile-__YANG_SP_[wan]: \"A\\u0001\" has characters that no "
          "OpenConfig string holds, and the queue of a scheduler input is left out; use another "
          "name",
          "left-out /comments/qos-profile-__YANG_SP_[wan]: \"i\\u0003\" has characters that no "
          "OpenConfig string holds, and the scheduler input is left out; use another name",
          "left-out /qos-profiles/__YANG_SP_[w\\u0002]: \"w\\u0002\" has characters that no "
          "OpenConfig string holds, and the scheduler policy is left out; use another name",
          "missing /qos-profiles/__YANG_SP_[w\\u0002]: there is no comment "
          "\"qos-profile-__YANG_SP_[w\\u0002]\", so the scheduler policy has no schedulers; add it",
          "left-out /queue-names/A\\u0001: \"A\\u0001\" has characters that no OpenConfig string "
          "holds, and the queue is left out; use another name"));
}

TEST(NameFindings, AnInterfaceThatIsBoundAndThatNoLeafHolds) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]}}},
      "policy-maps": {"qos": {"__yang_[IPV4__edge-in]": {}}}, "service-policies":
      {"1:__yang_[IPV4__edge-in]": {"interfaces": {"Ethernet\u00011": true}}}, "interfaces":
      {"Ethernet\u00011": {}}})");
  EXPECT_THAT(
      found, ElementsAre(
                 "left-out /interfaces/Ethernet\\u00011: \"Ethernet\\u00011\" has characters that "
                 "no OpenConfig string holds, and the interface is left out; use another name",
                 "left-out /service-policies/1:__yang_[IPV4__edge-in]/interfaces/Ethernet\\u00011: "
                 "\"Ethernet\\u00011\" has characters that no OpenConfig string holds, and the "
                 "interface is left out; use another name"));
}

}  // namespace
}  // namespace host::findingsTest
