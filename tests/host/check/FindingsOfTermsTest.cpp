// What `check` finds in terms, of which something is not there, in service policies and names.
#include "tests/support/HostFindings.h"

namespace host::findingsOfTermsTest {
namespace {

using support::findings;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(TermFindings, AnAccessListOfAnotherNameThanItsClassMap) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "access-lists": {"ipv4":
      {"__yang_[edge-in]_[vocie]": {"rules": {"10": {"dscp": 46}}}}}, "policy-maps": {"qos":
      {"__yang_[IPV4__edge-in]": {"classes": {"__yang_[edge-in]_[voice]": {"actions":
      {"set-traffic-class": 5}}}}}}, "queue-names": {"EF": 5}, "forwarding-groups":
      {"voice": 5}, "tc-to-tx-queue": {"5": 5}})");
  EXPECT_THAT(
      found,
      ElementsAre("missing /access-lists/ipv4/__yang_[edge-in]_[vocie]: there is no class map of "
                  "the name of this access list: did you mean \"__yang_[edge-in]_[voice]\"?; "
                  "otherwise add it to class-maps",
                  "missing /class-maps/qos/__yang_[edge-in]_[voice]: there is no access list of "
                  "the name of this class map, so the term has no conditions: did you mean "
                  "\"__yang_[edge-in]_[vocie]\"?; otherwise add it to access-lists"));
}

TEST(TermFindings, AClassOfAnotherNameThanItsClassMap) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "access-lists": {"ipv4":
      {"__yang_[edge-in]_[voice]": {"rules": {"10": {"dscp": 46}}}}}, "policy-maps": {"qos":
      {"__yang_[IPV4__edge-in]": {"classes": {"__yang_[edge-in]_[vocie]": {"actions":
      {"set-traffic-class": 5}}}}}}, "queue-names": {"EF": 5}, "forwarding-groups":
      {"voice": 5}, "tc-to-tx-queue": {"5": 5}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "missing /class-maps/qos/__yang_[edge-in]_[voice]: no policy map has this class, so the "
          "term gets no actions; add it to the policy map of its classifier",
          "missing /policy-maps/qos/__yang_[IPV4__edge-in]/classes/__yang_[edge-in]_[vocie]: there "
          "is no class map of the name of this class: did you mean \"__yang_[edge-in]_[voice]\"?; "
          "otherwise add it to class-maps"));
}

TEST(TermFindings, AClassMapWithoutAnAccessList) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "policy-maps": {"qos":
      {"__yang_[IPV4__edge-in]": {"classes": {"__yang_[edge-in]_[voice]": {"actions":
      {"set-traffic-class": 5}}}}}}, "queue-names": {"EF": 5}, "forwarding-groups":
      {"voice": 5}, "tc-to-tx-queue": {"5": 5}})");
  EXPECT_THAT(
      found, ElementsAre(
                 "missing /class-maps/qos/__yang_[edge-in]_[voice]: there is no access list of the "
                 "name of this class map, so the term has no conditions; add it to access-lists"));
}

TEST(TermFindings, AnAccessListWithoutRules) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "access-lists": {"ipv4":
      {"__yang_[edge-in]_[voice]": {}}}, "policy-maps": {"qos": {"__yang_[IPV4__edge-in]":
      {"classes": {"__yang_[edge-in]_[voice]": {"actions": {"set-traffic-class": 5}}}}}},
      "queue-names": {"EF": 5}, "forwarding-groups": {"voice": 5}, "tc-to-tx-queue": {"5":
      5}})");
  EXPECT_THAT(
      found,
      ElementsAre("missing /class-maps/qos/__yang_[edge-in]_[voice]: the access list of the name "
                  "of this class map has no rules, so the term has no conditions; add its rules"));
}

TEST(TermFindings, AnIPv6AccessListWithoutAClassMap) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]}}},
      "access-lists": {"ipv6": {"__yang_[core-in]_[voice]": {"rules": {"10": {"tc": 184,
      "tc-mask": 252}}}}}})");
  EXPECT_THAT(found,
              ElementsAre("missing /access-lists/ipv6/__yang_[core-in]_[voice]: there is no class "
                          "map of the name of this access list; add it to class-maps"));
}

TEST(TermFindings, ATermThatThePolicyMapOfItsClassifierHasNot) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "access-lists": {"ipv4":
      {"__yang_[edge-in]_[voice]": {"rules": {"10": {"dscp": 46}}}}}, "policy-maps": {"qos":
      {"__yang_[IPV4__edge-in]": {"classes": {}}}}, "queue-names": {"EF": 5},
      "forwarding-groups": {"voice": 5}, "tc-to-tx-queue": {"5": 5}})");
  EXPECT_THAT(
      found,
      ElementsAre("missing /class-maps/qos/__yang_[edge-in]_[voice]: no policy map has this class, "
                  "so the term gets no actions; add it to the policy map of its classifier"));
}

TEST(TermFindings, AClassifierThatNoPolicyMapHas) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "access-lists": {"ipv4":
      {"__yang_[edge-in]_[voice]": {"rules": {"10": {"dscp": 46}}}}}})");
  EXPECT_THAT(found, IsEmpty());
}

TEST(TermFindings, APolicyMapOfAnotherNameThanItsClassifier) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "access-lists": {"ipv4":
      {"__yang_[edge-in]_[voice]": {"rules": {"10": {"dscp": 46}}}}}, "policy-maps": {"qos":
      {"__yang_[IPV4__egde-in]": {"classes": {}}}}, "service-policies":
      {"1:__yang_[IPV4__egde-in]": {"interfaces": {"Ethernet1/1": true}}}, "interfaces":
      {"Ethernet1/1": {}}})");
  EXPECT_THAT(found, ElementsAre("missing /policy-maps/qos/__yang_[IPV4__egde-in]: its name makes "
                                 "the classifier \"egde-in\", of which nothing else is there: did "
                                 "you mean \"edge-in\"?; otherwise add its class maps"));
}

TEST(TermFindings, AClassThatSetsNoTrafficClass) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
      "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}}, "access-lists": {"ipv4":
      {"__yang_[edge-in]_[voice]": {"rules": {"10": {"dscp": 46}}}}}, "policy-maps": {"qos":
      {"__yang_[IPV4__edge-in]": {"classes": {"__yang_[edge-in]_[voice]": {"actions":
      {}}}}}}, "queue-names": {"EF": 5}, "forwarding-groups": {"voice": 5},
      "tc-to-tx-queue": {"5": 5}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "missing /policy-maps/qos/__yang_[IPV4__edge-in]/classes/__yang_[edge-in]_[voice]: sets "
          "no traffic class, so the term gets no target group; add set-traffic-class to its "
          "actions"));
}

TEST(BindingFindings, AnInterfaceThatIsNotConfigured) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]}}},
      "policy-maps": {"qos": {"__yang_[IPV4__edge-in]": {}}}, "service-policies":
      {"1:__yang_[IPV4__edge-in]": {"interfaces": {"Ethernt1/1": true}}}, "interfaces":
      {"Ethernet1/1": {}, "Ethernet1/2": {}}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "unknown-interface /service-policies/1:__yang_[IPV4__edge-in]/interfaces/Ethernt1~11: no "
          "interface \"Ethernt1/1\" is configured: did you mean \"Ethernet1/1\"?; otherwise add it "
          "to interfaces"));
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
                  "\"__yang_[IPV4__edge-on]\", and its classifiers are bound without actions: did "
                  "you mean \"__yang_[IPV4__edge-in]\"?; otherwise add it to policy-maps",
                  "unresolved /service-policies/1:__yang_[IPV4__edge-on]: binds the classifier "
                  "\"edge-on\", which nothing makes: did you mean \"edge-in\"?; otherwise add its "
                  "class maps"));
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
          "missing /policy-maps/qos/__yang_[IPV4__core-in]: its name makes the classifier "
          "\"core-in\", of which nothing else is there; add its class maps",
          "order /service-policies/1:__yang_[IPV4__edge-in]/interfaces/Ethernet1~11: several "
          "service policies bind \"Ethernet1/1\", and which IPv4 classifier it gets depends on the "
          "order in which they are met: \"core-in\", \"edge-in\"; let one service policy bind it"));
}

TEST(BindingFindings, ServicePoliciesThatBindAFamilyEach) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]}}},
      "policy-maps": {"qos": {"__yang_[IPV4__edge-in]": {}, "__yang_[IPV6__edge-in6]": {}}},
      "service-policies": {"1:__yang_[IPV4__edge-in]": {"interfaces": {"Ethernet1/1":
      true}}, "1:__yang_[IPV6__edge-in6]": {"interfaces": {"Ethernet1/1": true}}},
      "interfaces": {"Ethernet1/1": {}, "Ethernet1/2": {}}})");
  EXPECT_THAT(
      found,
      ElementsAre("missing /policy-maps/qos/__yang_[IPV6__edge-in6]: its name makes the classifier "
                  "\"edge-in6\", of which nothing else is there; add its class maps"));
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
                 "missing /policy-maps/qos/__yang_[IPV4__edge-in][IPV6__edge-in6]: its name makes "
                 "the classifier \"edge-in6\", of which nothing else is there; add its class maps",
                 "shadowed /policy-maps/qos/__yang_[IPV4__edge-in][IPV6__edge-in6]: the classifier "
                 "\"edge-in6\" has another policy map, \"__yang_[IPV6__edge-in6]\", and of the two "
                 "the last one in name order decides on its actions; let one policy map have it",
                 "missing /policy-maps/qos/__yang_[IPV6__edge-in6]: its name makes the classifier "
                 "\"edge-in6\", of which nothing else is there; add its class maps",
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
          "raises /service-policies/1:__yang_[IPV4__edge-in]: tag 2 has the same policy map: the "
          "root interface-classifier raises over it, and bindings are missing; keep one of the two",
          "raises /service-policies/2:__yang_[IPV4__edge-in]: tag 1 has the same policy map: the "
          "root interface-classifier raises over it, and bindings are missing; keep one of the "
          "two"));
}

TEST(BindingFindings, AClassifierThatIsSweptIsNotMade) {
  const auto found = findings(
      R"({"class-maps": {"qos": {"__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}}},
      "service-policies": {"1:__yang_[IPV4__edge-in]": {"interfaces": {"Ethernet1/1":
      true}}}, "interfaces": {"Ethernet1/1": {}}})");
  EXPECT_THAT(
      found, ElementsAre(
                 "missing /class-maps/qos/__yang_[edge-in]_[voice]: there is no access list of the "
                 "name of this class map, so the term has no conditions; add it to access-lists",
                 "swept /class-maps/qos/__yang_[edge-in]_[voice]: its classifier has no "
                 "placeholder, so each start sweeps the classifier \"edge-in\" with all its terms; "
                 "add the class map \"__yang_[edge-in]_[]\"",
                 "missing /service-policies/1:__yang_[IPV4__edge-in]: there is no policy map "
                 "\"__yang_[IPV4__edge-in]\", and its classifiers are bound without actions; add "
                 "it to policy-maps",
                 "unresolved /service-policies/1:__yang_[IPV4__edge-in]: binds the classifier "
                 "\"edge-in\", which nothing makes; add its class maps"));
}

TEST(BindingFindings, AnInterfaceByItsShortName) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]}}},
      "policy-maps": {"qos": {"__yang_[IPV4__edge-in]": {}}}, "service-policies":
      {"1:__yang_[IPV4__edge-in]": {"interfaces": {"Et1/1": true}}}, "interfaces":
      {"Ethernet1/1": {}, "Ethernet1/2": {}}})");
  EXPECT_THAT(
      found,
      ElementsAre("unknown-interface /service-policies/1:__yang_[IPV4__edge-in]/interfaces/Et1~11: "
                  "no interface \"Et1/1\" is configured: did you mean \"Ethernet1/1\"?; otherwise "
                  "add it to interfaces"));
}

TEST(BindingFindings, AServicePolicyWithoutInterfacesBindsNothing) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]}}},
      "policy-maps": {"qos": {"__yang_[IPV4__edge-in]": {}}}, "service-policies":
      {"1:__yang_[IPV4__edge-on]": {}}, "interfaces": {"Ethernet1/1": {}, "Ethernet1/2":
      {}}})");
  EXPECT_THAT(found, IsEmpty());
}

TEST(BindingFindings, ServicePoliciesThatBindBothFamiliesOfOneInterface) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]}}},
      "policy-maps": {"qos": {"__yang_[IPV4__edge-in][IPV6__edge-in6]": {},
      "__yang_[IPV4__core-in][IPV6__core-in6]": {}}}, "service-policies":
      {"1:__yang_[IPV4__edge-in][IPV6__edge-in6]": {"interfaces": {"Ethernet1/1": true}},
      "1:__yang_[IPV4__core-in][IPV6__core-in6]": {"interfaces": {"Ethernet1/1": true}}},
      "interfaces": {"Ethernet1/1": {}, "Ethernet1/2": {}}})");
  EXPECT_THAT(
      found,
      ElementsAre("missing /policy-maps/qos/__yang_[IPV4__core-in][IPV6__core-in6]: its name makes "
                  "the classifier \"core-in\", of which nothing else is there; add its class maps",
                  "missing /policy-maps/qos/__yang_[IPV4__core-in][IPV6__core-in6]: its name makes "
                  "the classifier \"core-in6\", of which nothing else is there; add its class maps",
                  "missing /policy-maps/qos/__yang_[IPV4__edge-in][IPV6__edge-in6]: its name makes "
                  "the classifier \"edge-in6\", of which nothing else is there; add its class maps",
                  "order "
                  "/service-policies/1:__yang_[IPV4__edge-in][IPV6__edge-in6]/interfaces/"
                  "Ethernet1~11: several service policies bind \"Ethernet1/1\", and which IPv4 "
                  "classifier it gets depends on the order in which they are met: \"core-in\", "
                  "\"edge-in\"; let one service policy bind it",
                  "order "
                  "/service-policies/1:__yang_[IPV4__edge-in][IPV6__edge-in6]/interfaces/"
                  "Ethernet1~11: several service policies bind \"Ethernet1/1\", and which IPv6 "
                  "classifier it gets depends on the order in which they are met: \"core-in6\", "
                  "\"edge-in6\"; let one service policy bind it"));
}

TEST(BindingFindings, ANameThatNoLeafHoldsIsNotSuggested) {
  const auto found = findings(
      R"({"class-maps": {"qos": {"__yang_[edge-in\u0001]_[]": {"match": ["ip-access-group"]}}},
      "service-policies": {"1:__yang_[IPV4__edge-in]": {"interfaces": {"Ethernet1/1":
      true}}}, "interfaces": {"Ethernet1/1": {}}, "policy-maps": {"qos":
      {"__yang_[IPV4__edge-in]": {}}}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "left-out /class-maps/qos/__yang_[edge-in\\u0001]_[]: \"edge-in\\u0001\" has characters "
          "that no OpenConfig string holds, and the classifier is left out; use another name",
          "missing /policy-maps/qos/__yang_[IPV4__edge-in]: its name makes the classifier "
          "\"edge-in\", of which nothing else is there; add its class maps"));
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
          "missing /class-maps/qos/__yang_[edge\\u0001]_[vo\\u0002ice]: there is no access list of "
          "the name of this class map, so the term has no conditions; add it to access-lists",
          "left-out /forwarding-groups/: an empty name is no key, and the forwarding group is left "
          "out; name it",
          "left-out /forwarding-groups/vo\\u0004ice: \"vo\\u0004ice\" has characters that no "
          "OpenConfig string holds, and the forwarding group is left out; use another name",
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
                 "left-out /service-policies/1:__yang_[IPV4__edge-in]/interfaces/Ethernet\\u00011: "
                 "\"Ethernet\\u00011\" has characters that no OpenConfig string holds, and the "
                 "interface is left out; use another name"));
}

TEST(NameFindings, NamesWithASlipOfThePrefix) {
  const auto found = findings(
      R"({"class-maps": {"qos": {"__yng_[edge-in]_[voice]": {}, "_yang_[edge-in]_[voice]": {},
      " __yang_[edge-in]_[]": {}, "RANGE_[7]": {}}}, "qos-profiles": {"YANG_QMP_[wred]": {},
      "YANGTZE": {}}})");
  EXPECT_THAT(found,
              ElementsAre("name-form /class-maps/qos/ __yang_[edge-in]_[]: the name is almost one "
                          "that stands for an OpenConfig object, so the class map is not "
                          "translated; write __yang_[CLASSIFIER]_[TERM] or __yang_[CLASSIFIER]_[]",
                          "name-form /class-maps/qos/__yng_[edge-in]_[voice]: the name is almost "
                          "one that stands for an OpenConfig object, so the class map is not "
                          "translated; write __yang_[CLASSIFIER]_[TERM] or __yang_[CLASSIFIER]_[]",
                          "name-form /class-maps/qos/_yang_[edge-in]_[voice]: the name is almost "
                          "one that stands for an OpenConfig object, so the class map is not "
                          "translated; write __yang_[CLASSIFIER]_[TERM] or __yang_[CLASSIFIER]_[]",
                          "name-form /qos-profiles/YANG_QMP_[wred]: the name is almost one that "
                          "stands for an OpenConfig object, so the QoS profile is not translated; "
                          "write __YANG_QMP_[NAME] or __YANG_SP_[NAME]"));
}

TEST(NameFindings, AClassWhoseTermNoLeafHolds) {
  const auto found =
      findings(R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]}}},
      "policy-maps": {"qos": {"__yang_[IPV4__edge-in]": {"classes":
      {"__yang_[edge-in]_[vo\u0002ice]": {}, "__yang_[edge-in]_voice": {}}}}}})");
  EXPECT_THAT(
      found,
      ElementsAre(
          "left-out "
          "/policy-maps/qos/__yang_[IPV4__edge-in]/classes/__yang_[edge-in]_[vo\\u0002ice]: "
          "\"vo\\u0002ice\" has characters that no OpenConfig string holds, and the term is left "
          "out; use another name",
          "missing "
          "/policy-maps/qos/__yang_[IPV4__edge-in]/classes/__yang_[edge-in]_[vo\\u0002ice]: there "
          "is no class map of the name of this class; add it to class-maps",
          "name-form /policy-maps/qos/__yang_[IPV4__edge-in]/classes/__yang_[edge-in]_voice: the "
          "name is almost one that stands for an OpenConfig object, so the class is not "
          "translated; write __yang_[CLASSIFIER]_[TERM]"));
}

TEST(NameFindings, AnInterfaceThatNothingIsMadeOf) {
  const auto found = findings(R"({"interfaces": {"Ether\u0005net": {}}})");
  EXPECT_THAT(found, IsEmpty());
}

}  // namespace
}  // namespace host::findingsOfTermsTest
