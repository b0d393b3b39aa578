// What `check` finds in class maps, access lists and policy maps.
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
  EXPECT_THAT(
      found, ElementsAre(
                 "missing /class-maps/qos/__yang_[edge-in]_[voice]: there is no access list of the "
                 "name of this class map, so the term has no conditions; add it to access-lists",
                 "swept /class-maps/qos/__yang_[edge-in]_[voice]: its classifier has no "
                 "placeholder, so each start sweeps the classifier \"edge-in\" with all its terms; "
                 "add the class map \"__yang_[edge-in]_[]\""));
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
      found, ElementsAre(
                 "missing /class-maps/qos/__yang_[edge-in]_[voice]: there is no access list of the "
                 "name of this class map, so the term has no conditions; add it to access-lists",
                 "order /class-maps/qos/__yang_[edge-in]_[voice]: the class maps of the classifier "
                 "\"edge-in\" don't agree on its type, and which one it gets depends on the order "
                 "in which they are met: IPV4, IPV6; let all match one family"));
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
  EXPECT_THAT(
      found,
      ElementsAre(
          "families /class-maps/qos/__yang_[edge-in]_[]: makes \"edge-in\" an IPV4 classifier, and "
          "/access-lists/ipv6/__yang_[edge-in]_[voice] an IPV6 one, which it is in the end; let it "
          "match that family, or give each family a classifier of its own"));
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
          "/access-lists/ipv6/__yang_[edge-in]_[voice] an IPV6 one, which it is in the end; let it "
          "match that family, or give each family a classifier of its own"));
}

TEST(ClassifierFindings, AccessListsOfBothFamiliesForTwoTerms) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[video]": {"match": ["ip-access-group"]}}}, "access-lists": {"ipv4":
      {"__yang_[edge-in]_[voice]": {"rules": {"10": {"dscp": 46}}}}, "ipv6":
      {"__yang_[edge-in]_[video]": {"rules": {"10": {"tc": 136, "tc-mask": 252}}}}}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "families /access-lists/ipv4/__yang_[edge-in]_[voice]: is not translated: the classifier "
          "\"edge-in\" has IPv6 access lists, too, and loses the conditions of IPv4 for them; give "
          "each family a classifier of its own",
          "families /class-maps/qos/__yang_[edge-in]_[]: makes \"edge-in\" an IPV4 classifier, and "
          "/access-lists/ipv6/__yang_[edge-in]_[video] an IPV6 one, which it is in the end; let it "
          "match that family, or give each family a classifier of its own"));
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
          "of the traffic class are no part of the DSCP and are dropped; write a multiple of 4",
          "untranslated /access-lists/ipv6/__yang_[edge-in6]_[voice]/rules/10/tc-mask: the two low "
          "bits of the mask are no part of the DSCP and are dropped; write 252"));
}

TEST(ClassifierFindings, AnActionOfATrafficClassWithoutAForwardingGroup) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "policy-maps": {"qos":
      {"__yang_[IPV4__edge-in]": {"classes": {"__yang_[edge-in]_[voice]": {"actions":
      {"set-traffic-class": 4}}}}}}, "queue-names": {"EF": 5}, "forwarding-groups":
      {"voice": 5}, "tc-to-tx-queue": {"5": 5}})");
  EXPECT_THAT(
      found, ElementsAre(
                 "missing /class-maps/qos/__yang_[edge-in]_[voice]: there is no access list of the "
                 "name of this class map, so the term has no conditions; add it to access-lists",
                 "missing "
                 "/policy-maps/qos/__yang_[IPV4__edge-in]/classes/__yang_[edge-in]_[voice]/actions/"
                 "set-traffic-class: no forwarding group has the traffic class 4, so the term gets "
                 "no target group; add one to forwarding-groups"));
}

TEST(ClassifierFindings, AnActionOfAnotherKind) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "policy-maps": {"qos":
      {"__yang_[IPV4__edge-in]": {"classes": {"__yang_[edge-in]_[voice]": {"actions":
      {"set-traffic-class": 5, "7": 1}}}}}}, "queue-names": {"EF": 5}, "forwarding-groups":
      {"voice": 5}, "tc-to-tx-queue": {"5": 5}})");
  EXPECT_THAT(
      found, ElementsAre(
                 "missing /class-maps/qos/__yang_[edge-in]_[voice]: there is no access list of the "
                 "name of this class map, so the term has no conditions; add it to access-lists",
                 "untranslated "
                 "/policy-maps/qos/__yang_[IPV4__edge-in]/classes/__yang_[edge-in]_[voice]/actions/"
                 "7: of actions only set-traffic-class is translated; remove it"));
}

TEST(ClassifierFindings, AClassThatIsNoTerm) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "policy-maps": {"qos":
      {"__yang_[IPV4__edge-in]": {"classes": {"class-default": {"actions":
      {"set-traffic-class": 5}}, "idle": {}}}}}, "queue-names": {"EF": 5},
      "forwarding-groups": {"voice": 5}, "tc-to-tx-queue": {"5": 5}})");
  EXPECT_THAT(
      found, ElementsAre(
                 "missing /class-maps/qos/__yang_[edge-in]_[voice]: no policy map has this class, "
                 "so the term gets no actions; add it to the policy map of its classifier",
                 "missing /class-maps/qos/__yang_[edge-in]_[voice]: there is no access list of the "
                 "name of this class map, so the term has no conditions; add it to access-lists",
                 "untranslated /policy-maps/qos/__yang_[IPV4__edge-in]/classes/class-default: its "
                 "actions are not translated: the class is no term; write them in a class "
                 "__yang_[CLASSIFIER]_[TERM]"));
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
          "which it is in the end; let it match that family, or give each family a classifier of "
          "its own",
          "missing /class-maps/qos/__yang_[edge-in]_[voice]: there is no access list of the name "
          "of this class map, so the term has no conditions; add it to access-lists",
          "missing /policy-maps/qos/__yang_[IPV6__edge-in6]: its name makes the classifier "
          "\"edge-in6\", of which nothing else is there; add its class maps",
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
          "which it is in the end; let it match that family, or give each family a classifier of "
          "its own",
          "missing /class-maps/qos/__yang_[edge-in]_[voice]: there is no access list of the name "
          "of this class map, so the term has no conditions; add it to access-lists"));
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
      found,
      ElementsAre(
          "missing /class-maps/qos/__yang_[edge-in]_[voice]: there is no access list of the name "
          "of this class map, so the term has no conditions; add it to access-lists",
          "shadowed /policy-maps/qos/__yang_[IPV4__edge-in]: the classifier \"edge-in\" has "
          "another policy map, \"__yang_[IPV4__edge-in][IPV6__edge-in6]\", and of the two the last "
          "one in name order decides on its actions; let one policy map have it",
          "missing /policy-maps/qos/__yang_[IPV4__edge-in][IPV6__edge-in6]: its name makes the "
          "classifier \"edge-in6\", of which nothing else is there; add its class maps"));
}

TEST(ClassifierFindings, AnActionOfATrafficClassWhoseForwardingGroupHasNoName) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "policy-maps": {"qos":
      {"__yang_[IPV4__edge-in]": {"classes": {"__yang_[edge-in]_[voice]": {"actions":
      {"set-traffic-class": 5}}}}}}, "forwarding-groups": {"": 5}})");
  EXPECT_THAT(
      found, ElementsAre(
                 "missing /class-maps/qos/__yang_[edge-in]_[voice]: there is no access list of the "
                 "name of this class map, so the term has no conditions; add it to access-lists",
                 "left-out /forwarding-groups/: an empty name is no key, and the forwarding group "
                 "is left out; name it",
                 "missing /forwarding-groups/: its traffic class 5 has no tx queue, so it gets no "
                 "output queue; add the traffic class to tc-to-tx-queue",
                 "missing "
                 "/policy-maps/qos/__yang_[IPV4__edge-in]/classes/__yang_[edge-in]_[voice]/actions/"
                 "set-traffic-class: the first name of the traffic class 5 is empty, so the term "
                 "gets no target group; name its forwarding group"));
}

TEST(ClassifierFindings, AnActionOfNoTrafficClass) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "policy-maps": {"qos":
      {"__yang_[IPV4__edge-in]": {"classes": {"__yang_[edge-in]_[voice]": {"actions":
      {"set-traffic-class": 17}}}}}}, "queue-names": {"EF": 5}, "forwarding-groups":
      {"voice": 5}, "tc-to-tx-queue": {"5": 5}})");
  EXPECT_THAT(
      found, ElementsAre(
                 "missing /class-maps/qos/__yang_[edge-in]_[voice]: there is no access list of the "
                 "name of this class map, so the term has no conditions; add it to access-lists",
                 "missing "
                 "/policy-maps/qos/__yang_[IPV4__edge-in]/classes/__yang_[edge-in]_[voice]/actions/"
                 "set-traffic-class: 17 is no traffic class, so the term gets no target group; "
                 "write one of a forwarding group"));
}

TEST(ClassifierFindings, TheTwoLowBitsOfAMask) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in6]_[]": {"match": ["ipv6-access-group"]},
      "__yang_[edge-in6]_[voice]": {"match": ["ipv6-access-group"]}}}, "access-lists":
      {"ipv6": {"__yang_[edge-in6]_[voice]": {"rules": {"10": {"tc": 72, "tc-mask":
      255}}}}}})");
  EXPECT_THAT(
      found,
      ElementsAre("untranslated /access-lists/ipv6/__yang_[edge-in6]_[voice]/rules/10/tc-mask: the "
                  "two low bits of the mask are no part of the DSCP and are dropped; write 252"));
}

}  // namespace
}  // namespace host::findingsTest
