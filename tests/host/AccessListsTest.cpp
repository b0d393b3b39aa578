// The section "access-lists": how it is mounted, and what each change writes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostDevice.h"

namespace host::accessListsTest {
namespace {

using support::HostDevice;
using support::hostFault;
using support::hostLine;
using support::hostOperation;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* device = R"({"access-lists": {
    "ipv4": {"A": {"rules": {"10": {"dscp": 46}, "20": {}}}, "B": {}},
    "ipv6": {"A": {"rules": {"10": {"tc": 184, "tc-mask": 252}}}}}})";

std::string faultOf(const std::string& section) {
  return hostFault([&] { HostDevice d(R"({"access-lists": )" + section + "}"); });
}

Rok::Ptr<Acl::AclConfig> acl(const HostDevice& d, const Rok::String& name,
                             Acl::AclType type = Acl::aclTypeIpv4) {
  const auto* found = (*d.native.acls->config().find(type))->acl().find(name);
  return found != nullptr ? *found : nullptr;
}
Umb::UniqueId idOf(const Acl::AclConfig& acl, std::uint32_t sequence) {
  return *acl.aclSubConfig()->ruleBySequence().find(sequence);
}
Acl::IpFilter filter(const HostDevice& d, const Rok::String& name, std::uint32_t sequence) {
  const auto config = acl(d, name);
  return config->aclSubConfig()->ipRuleById().find(idOf(*config, sequence))->filter;
}
Acl::Ip6Filter filter6(const HostDevice& d, const Rok::String& name, std::uint32_t sequence) {
  const auto config = acl(d, name, Acl::aclTypeIpv6);
  return config->aclSubConfig()->ip6RuleById().find(idOf(*config, sequence))->filter;
}

// ===== The document

TEST(AccessLists, BothFamiliesAreMountedWhateverTheDocumentLeavesOut) {
  for (const char* document :
       {"{}", R"({"access-lists": {}})", R"({"access-lists": {"ipv6": {}}})"}) {
    const HostDevice d(document);
    EXPECT_EQ(d.native.acls->config().members(), 2u) << document;
    for (const Acl::AclType type : {Acl::aclTypeIpv4, Acl::aclTypeIpv6}) {
      EXPECT_EQ((*d.native.acls->config().find(type))->type(), type);
      EXPECT_EQ((*d.native.acls->config().find(type))->acl().members(), 0u);
    }
  }
}

TEST(AccessLists, HoldAclsWithTheirRules) {
  const HostDevice d(device);
  EXPECT_EQ(acl(d, "A")->name(), "A");
  EXPECT_EQ(acl(d, "A")->type(), Acl::aclTypeIpv4);
  EXPECT_EQ(acl(d, "A")->aclSubConfig()->ruleBySequence().members(), 2u);
  EXPECT_EQ(acl(d, "A")->aclSubConfig()->ipRuleById().members(), 2u);
  EXPECT_EQ(acl(d, "A")->aclSubConfig()->ip6RuleById().members(), 0u);
  EXPECT_TRUE(filter(d, "A", 10).matchDscp);
  EXPECT_EQ(filter(d, "A", 10).dscp, 46);
  EXPECT_FALSE(filter(d, "A", 20).matchDscp);
  const auto six = acl(d, "A", Acl::aclTypeIpv6);
  EXPECT_EQ(six->type(), Acl::aclTypeIpv6);
  EXPECT_EQ(six->aclSubConfig()->ipRuleById().members(), 0u);
  EXPECT_EQ(filter6(d, "A", 10).tc, 184);
  EXPECT_EQ(filter6(d, "A", 10).tcMask, 252);
}

TEST(AccessLists, AnAclWithoutRulesHasNoSubConfiguration) {
  const HostDevice d(R"({"access-lists": {"ipv4": {"A": {}, "B": {"rules": {}}}}})");
  EXPECT_FALSE(acl(d, "A")->aclSubConfig());
  ASSERT_TRUE(acl(d, "B")->aclSubConfig());
  EXPECT_EQ(acl(d, "B")->aclSubConfig()->ruleBySequence().members(), 0u);
}

TEST(AccessLists, LeftOutMembersOfAnIpv6RuleAreZero) {
  const HostDevice d(R"({"access-lists": {"ipv6": {"A": {"rules": {"1": {}, "2": {"tc": 8},
      "3": {"tc-mask": 255}}}}}})");
  EXPECT_EQ(filter6(d, "A", 1), Acl::Ip6Filter());
  EXPECT_EQ(filter6(d, "A", 2).tc, 8);
  EXPECT_EQ(filter6(d, "A", 2).tcMask, 0);
  EXPECT_EQ(filter6(d, "A", 3).tc, 0);
  EXPECT_EQ(filter6(d, "A", 3).tcMask, 255);
}

TEST(AccessLists, TakeAllThatTheNativeFieldsHold) {
  const HostDevice d(R"({"access-lists": {"ipv4": {"": {"rules": {
      "0": {"dscp": 0}, "4294967295": {"dscp": 255}}}}}})");
  EXPECT_TRUE(filter(d, "", 0).matchDscp);
  EXPECT_EQ(filter(d, "", 0).dscp, 0);
  EXPECT_EQ(filter(d, "", 4294967295).dscp, 255);
}

TEST(AccessLists, EachRuleHasAnIdentityOfItsOwn) {
  const HostDevice d(device);
  const HostDevice other(device);
  EXPECT_NE(idOf(*acl(d, "A"), 10), idOf(*acl(d, "A"), 20));
  EXPECT_NE(idOf(*acl(d, "A"), 10), idOf(*acl(other, "A"), 10));
  EXPECT_NE(idOf(*acl(d, "A"), 10), Umb::UniqueId());
}

TEST(AccessLists, RefuseWhatTheyCannotHold) {
  EXPECT_EQ(faultOf("[]"), "/access-lists: expected an object, not an array");
  EXPECT_EQ(faultOf(R"({"0": {}})"), "/access-lists/0: unknown member (legal: ipv4, ipv6)");
  EXPECT_EQ(faultOf(R"({"ipv4": {}, "ipv4": {}})"), "/access-lists/ipv4: the same member twice");
  EXPECT_EQ(faultOf(R"({"ipv4": null})"),
            "/access-lists/ipv4: null is never a value here: expected an object");
  EXPECT_EQ(faultOf(R"({"ipv4": {"A": {}, "A": {}}})"), "/access-lists/ipv4/A: the same key twice");
  EXPECT_EQ(faultOf(R"({"ipv4": {"A": {"rule": {}}}})"),
            "/access-lists/ipv4/A/rule: unknown member: did you mean rules? (legal: rules)");
  EXPECT_EQ(faultOf(R"({"ipv4": {"A": {"rules": null}}})"),
            "/access-lists/ipv4/A/rules: null is never a value here: expected an object");
  EXPECT_EQ(faultOf(R"({"ipv4": {"A": {"rules": {"10": {}, "10": {}}}}})"),
            "/access-lists/ipv4/A/rules/10: the same key twice");
  EXPECT_EQ(faultOf(R"({"ipv4": {"A": {"rules": {"10": {"tc": 8}}}}})"),
            "/access-lists/ipv4/A/rules/10/tc: unknown member (legal: dscp)");
  EXPECT_EQ(faultOf(R"({"ipv6": {"A": {"rules": {"10": {"dscp": 8}}}}})"),
            "/access-lists/ipv6/A/rules/10/dscp: unknown member (legal: tc, tc-mask)");
  EXPECT_EQ(faultOf(R"({"ipv4": {"A": {"rules": {"10": {"dscp": 256}}}}})"),
            "/access-lists/ipv4/A/rules/10/dscp: expected a whole number from 0 to 255, not 256");
  EXPECT_EQ(faultOf(R"({"ipv4": {"A": {"rules": {"10": {"dscp": "46"}}}}})"),
            "/access-lists/ipv4/A/rules/10/dscp: expected a whole number from 0 to 255, not "
            "\"46\"");
  EXPECT_EQ(faultOf(R"({"ipv6": {"A": {"rules": {"10": {"tc-mask": -1}}}}})"),
            "/access-lists/ipv6/A/rules/10/tc-mask: expected a whole number from 0 to 255, not -1");
}

TEST(AccessLists, RefuseSequenceNumbersThatAreNotCanonical) {
  for (const char* sequence : {"010", "4294967296", "-1", "1.0", "", "x"}) {
    EXPECT_EQ(faultOf(R"({"ipv4": {"A": {"rules": {")" + std::string(sequence) + R"(": {}}}}})"),
              "/access-lists/ipv4/A/rules/" + std::string(sequence) +
                  ": this key is not a sequence number: a number from 0 to 4294967295");
  }
}

// ===== ACLs

TEST(AccessLists, AnAclIsAnEntry) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("add", "/access-lists/ipv4/C", R"({"rules": {"5": {"dscp": 1}}})"),
              ElementsAre("acl 0/C"));
  EXPECT_EQ(filter(d, "C", 5).dscp, 1);
  const auto before = acl(d, "C");
  EXPECT_THAT(d.heardFrom("add", "/access-lists/ipv4/C", "{}"), ElementsAre("acl 0/C", "acl 0/C"));
  EXPECT_NE(acl(d, "C"), before);
  EXPECT_FALSE(acl(d, "C")->aclSubConfig());
  EXPECT_THAT(d.heardFrom("replace", "/access-lists/ipv6/A", "{}"),
              ElementsAre("acl 1/A", "acl 1/A"));
  EXPECT_THAT(d.heardFrom("remove", "/access-lists/ipv6/A"), ElementsAre("acl 1/A"));
  EXPECT_FALSE(acl(d, "A", Acl::aclTypeIpv6));
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(AccessLists, AFamilyIsNeverRemoved) {
  HostDevice d(device);
  const auto mounted = *d.native.acls->config().find(Acl::aclTypeIpv4);
  EXPECT_THAT(d.heardFrom("remove", "/access-lists/ipv4"), ElementsAre("acl 0/A", "acl 0/B"));
  EXPECT_EQ(*d.native.acls->config().find(Acl::aclTypeIpv4), mounted);
  EXPECT_THAT(d.heardFrom("remove", "/access-lists/ipv4"), IsEmpty());
  EXPECT_TRUE(acl(d, "A", Acl::aclTypeIpv6));
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(AccessLists, ReplaceOfAFamilyIsDoneOnEachOfItsAcls) {
  for (const char* op : {"add", "replace"}) {
    HostDevice d(device);
    EXPECT_THAT(d.heardFrom(op, "/access-lists/ipv4", R"({"C": {}, "B": {}})"),
                ElementsAre("acl 0/A", "acl 0/C", "acl 0/B", "acl 0/B"));
  }
}

TEST(AccessLists, TheSectionLosesAllThatGoesBeforeAnythingComes) {
  HostDevice d(device);
  EXPECT_THAT(
      d.heardFrom("replace", "/access-lists", R"({"ipv6": {"N": {}}, "ipv4": {"A": {}, "M": {}}})"),
      ElementsAre("acl 1/A", "acl 0/B", "acl 1/N", "acl 0/A", "acl 0/A", "acl 0/M"));
  EXPECT_THAT(d.heardFrom("remove", "/access-lists"), ElementsAre("acl 0/A", "acl 0/M", "acl 1/N"));
  EXPECT_EQ(d.native.acls->config().members(), 2u);
}

// ===== rules

TEST(AccessLists, RulesAreInstalledAsAnotherObject) {
  for (const char* op : {"add", "replace"}) {
    HostDevice d(device);
    const auto before = acl(d, "A")->aclSubConfig();
    EXPECT_THAT(d.heardFrom(op, "/access-lists/ipv4/A/rules", R"({"10": {"dscp": 46}})"),
                ElementsAre("aclSubConfig 0/A"));
    EXPECT_NE(acl(d, "A")->aclSubConfig(), before);
    EXPECT_EQ(acl(d, "A")->aclSubConfig()->ruleBySequence().members(), 1u);
  }
}

TEST(AccessLists, RemovedRulesAreNull) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("remove", "/access-lists/ipv4/A/rules"), ElementsAre("aclSubConfig 0/A"));
  EXPECT_FALSE(acl(d, "A")->aclSubConfig());
  EXPECT_EQ(d.reportOf("remove", "/access-lists/ipv4/A/rules"),
            "refused: /access-lists/ipv4/A/rules: nothing is there");
}

TEST(AccessLists, NothingIsBelowRulesThatAreNull) {
  HostDevice d(device);
  EXPECT_EQ(d.reportOf("add", "/access-lists/ipv4/B/rules/10", "{}"),
            "refused: /access-lists/ipv4/B/rules/10: nothing is at /access-lists/ipv4/B/rules");
  EXPECT_EQ(d.reportOf("replace", "/access-lists/ipv4/B/rules", "{}"),
            "refused: /access-lists/ipv4/B/rules: nothing is there");
  EXPECT_THAT(d.heardFrom("[" + hostOperation("add", "/access-lists/ipv4/B/rules", "{}") + "," +
                          hostOperation("add", "/access-lists/ipv4/B/rules/10", "{}") + "]"),
              ElementsAre("aclSubConfig 0/B", "ipRuleById 0/B {dscp 0, matchDscp false}",
                          "ruleBySequence 0/B 10"));
}

// ===== One rule

TEST(AccessLists, AnAddedRuleIsWrittenBeforeItsPlaceInTheSequence) {
  HostDevice d(device);
  const auto rules = acl(d, "A")->aclSubConfig();
  EXPECT_THAT(d.heardFrom("add", "/access-lists/ipv4/A/rules/30", R"({"dscp": 34})"),
              ElementsAre("ipRuleById 0/A {dscp 34, matchDscp true}", "ruleBySequence 0/A 30"));
  EXPECT_EQ(acl(d, "A")->aclSubConfig(), rules);
  EXPECT_THAT(d.heardFrom("add", "/access-lists/ipv6/A/rules/30", R"({"tc": 8})"),
              ElementsAre("ip6RuleById 1/A {tc 8, tcMask 0}", "ruleBySequence 1/A 30"));
}

TEST(AccessLists, AReplacedRuleGetsAnotherIdentity) {
  for (const char* op : {"add", "replace"}) {
    HostDevice d(device);
    const Umb::UniqueId before = idOf(*acl(d, "A"), 10);
    EXPECT_THAT(d.heardFrom(op, "/access-lists/ipv4/A/rules/10", R"({"dscp": 34})"),
                ElementsAre("ipRuleById 0/A {dscp 34, matchDscp true}", "ruleBySequence 0/A 10",
                            "ipRuleById 0/A gone"));
    EXPECT_NE(idOf(*acl(d, "A"), 10), before);
    EXPECT_EQ(acl(d, "A")->aclSubConfig()->ipRuleById().find(before), nullptr);
    EXPECT_EQ(acl(d, "A")->aclSubConfig()->ipRuleById().members(), 2u);
  }
}

TEST(AccessLists, AnEqualRuleIsAnotherRuleToo) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("replace", "/access-lists/ipv4/A/rules/10", R"({"dscp": 46})"),
              ElementsAre("ipRuleById 0/A {dscp 46, matchDscp true}", "ruleBySequence 0/A 10",
                          "ipRuleById 0/A gone"));
}

TEST(AccessLists, ARemovedRuleLeavesTheSequenceFirst) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("remove", "/access-lists/ipv4/A/rules/10"),
              ElementsAre("ruleBySequence 0/A 10", "ipRuleById 0/A gone"));
  EXPECT_THAT(d.heardFrom("remove", "/access-lists/ipv6/A/rules/10"),
              ElementsAre("ruleBySequence 1/A 10", "ip6RuleById 1/A gone"));
  EXPECT_EQ(acl(d, "A")->aclSubConfig()->ipRuleById().members(), 1u);
  EXPECT_EQ(d.reportOf("remove", "/access-lists/ipv4/A/rules/10"),
            "refused: /access-lists/ipv4/A/rules/10: nothing is there");
}

TEST(AccessLists, AMemberOfARuleReplacesTheRule) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("replace", "/access-lists/ipv4/A/rules/10/dscp", "8"),
              ElementsAre("ipRuleById 0/A {dscp 8, matchDscp true}", "ruleBySequence 0/A 10",
                          "ipRuleById 0/A gone"));
  EXPECT_THAT(d.heardFrom("remove", "/access-lists/ipv4/A/rules/10/dscp"),
              ElementsAre("ipRuleById 0/A {dscp 0, matchDscp false}", "ruleBySequence 0/A 10",
                          "ipRuleById 0/A gone"));
  EXPECT_EQ(d.reportOf("replace", "/access-lists/ipv4/A/rules/10/dscp", "8"),
            "refused: /access-lists/ipv4/A/rules/10/dscp: nothing is there");
  EXPECT_THAT(d.heardFrom("add", "/access-lists/ipv4/A/rules/10/dscp", "0"),
              ElementsAre("ipRuleById 0/A {dscp 0, matchDscp true}", "ruleBySequence 0/A 10",
                          "ipRuleById 0/A gone"));
}

TEST(AccessLists, AMemberOfAnIpv6RuleKeepsTheOther) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("add", "/access-lists/ipv6/A/rules/10/tc", "8"),
              ElementsAre("ip6RuleById 1/A {tc 8, tcMask 252}", "ruleBySequence 1/A 10",
                          "ip6RuleById 1/A gone"));
  EXPECT_THAT(d.heardFrom("remove", "/access-lists/ipv6/A/rules/10/tc-mask"),
              ElementsAre("ip6RuleById 1/A {tc 8, tcMask 0}", "ruleBySequence 1/A 10",
                          "ip6RuleById 1/A gone"));
}

TEST(AccessLists, AnExceptionKeepsNoWriteOfARuleFromTheNextOne) {
  HostDevice d(device);
  const auto thrower = Rok::make<support::HostNotifiee>(
      *acl(d, "A")->aclSubConfig(),
      [](Rok::AttributeId, const void*) { Rok::throwRangeException("too far"); });
  d.line(hostLine("replace", "/access-lists/ipv4/A/rules/10", R"({"dscp": 34})"));
  EXPECT_THAT(d.reports, ElementsAre("line 1: range: too far", "line 1: range: too far",
                                     "line 1: range: too far"));
  EXPECT_EQ(filter(d, "A", 10).dscp, 34);
  EXPECT_EQ(acl(d, "A")->aclSubConfig()->ipRuleById().members(), 2u);
}

// ===== test and whole lines

TEST(AccessLists, TestSeesWhatTheNativeSideHolds) {
  HostDevice d(device);
  EXPECT_EQ(d.reportOf("test", "/access-lists", R"({"ipv4": {"B": {},
      "A": {"rules": {"20": {}, "10": {"dscp": 46}}}},
      "ipv6": {"A": {"rules": {"10": {"tc-mask": 252, "tc": 184}}}}})"),
            "");
  EXPECT_EQ(d.reportOf("test", "/access-lists/ipv4/A/rules/10/dscp", "46"), "");
  EXPECT_EQ(d.reportOf("test", "/access-lists/ipv4/A/rules/10", "{}"),
            "refused: /access-lists/ipv4/A/rules/10: test failed: at /dscp: expected nothing, and "
            "46 is there");
  EXPECT_EQ(d.reportOf("test", "/access-lists/ipv4/A/rules/20/dscp", "0"),
            "refused: /access-lists/ipv4/A/rules/20/dscp: nothing is there");
  EXPECT_EQ(
      d.reportOf("test", "/access-lists/ipv4/B", R"({"rules": {}})"),
      "refused: /access-lists/ipv4/B: test failed: at /rules: expected {}, and nothing is there");
}

TEST(AccessLists, LaterOperationsOfALineSeeTheEarlierOnes) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("[" + hostOperation("remove", "/access-lists/ipv4/A/rules/10/dscp") +
                          "," + hostOperation("test", "/access-lists/ipv4/A/rules/10", "{}") + "," +
                          hostOperation("remove", "/access-lists/ipv4/A/rules") + "," +
                          hostOperation("test", "/access-lists/ipv4/A", "{}") + "," +
                          hostOperation("add", "/access-lists/ipv4/A/rules/10", "{}") + "]"),
              IsEmpty());
  EXPECT_THAT(d.reports,
              ElementsAre("line 1: refused: /access-lists/ipv4/A/rules/10: nothing is at "
                          "/access-lists/ipv4/A/rules"));
}

TEST(AccessLists, RefuseChangesThatDoNotFit) {
  HostDevice d(device);
  EXPECT_EQ(d.reportOf("add", "/access-lists/ipv5/A", "{}"),
            "refused: /access-lists/ipv5/A: unknown member \"ipv5\" (legal: ipv4, ipv6)");
  EXPECT_EQ(d.reportOf("add", "/access-lists/ipv4/A/rules/010", "{}"),
            "refused: /access-lists/ipv4/A/rules/010: \"010\" is not a sequence number: a number "
            "from 0 to 4294967295");
  EXPECT_EQ(d.reportOf("add", "/access-lists/ipv4/A/rules/10", R"({"dscp": 256})"),
            "refused: /access-lists/ipv4/A/rules/10: at /dscp: expected a whole number from 0 to "
            "255, not 256");
  EXPECT_EQ(d.reportOf("add", "/access-lists/ipv4/A/rules/10/dscp", "null"),
            "refused: /access-lists/ipv4/A/rules/10/dscp: null is never a value here: expected a "
            "whole number from 0 to 255");
  EXPECT_EQ(d.reportOf("add", "/access-lists/ipv4/A/rules/10/dscp/x", "1"),
            "refused: /access-lists/ipv4/A/rules/10/dscp/x: nothing can stand below \"dscp\"");
}

}  // namespace
}  // namespace host::accessListsTest
