// ACLs into the conditions of terms.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/support/AclDevice.h"
#include "tests/support/TraceCapture.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::aclTranslationTest {
namespace {

using Acl::aclTypeIpv4;
using Acl::aclTypeIpv6;
using Classifier::classifierTypeIpv4;
using Classifier::classifierTypeIpv6;
using support::AclDevice;
using support::addRule;
using support::ClassMapDevice;
using support::conditionsText;
using support::dscp;
using support::Model;
using support::noDscp;
using support::removeRule;
using support::subConfig;
using support::TraceCapture;
using support::trafficClass;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* voiceName = "__yang_[edge-in]_[voice]";
constexpr auto unknownType = Acl::AclType{7};

Config::Term termOf(const Rok::String& id, Rok::Optional<Config::TermConditions> conditions = {},
                    Rok::Optional<Config::TermActions> actions = {}) {
  Config::Term term(id);
  term.configId = id;
  term.conditions = std::move(conditions);
  term.actions = std::move(actions);
  return term;
}
Config::TermConditions ipv4Conditions(unsigned char value) {
  Config::TermConditions conditions;
  conditions.ipv4.dscp = value;
  return conditions;
}
Config::TermConditions ipv6Conditions(unsigned char value) {
  Config::TermConditions conditions;
  conditions.ipv6.dscp = value;
  return conditions;
}
const Config::TermActions expedited{{"expedited"}};

// A started device.
struct AclTranslation : testing::Test, AclDevice {
  AclTranslation() { start(); }
  std::string voice() const { return conditionsText(term("edge-in", "voice")); }
};

// ===== Rules to conditions

TEST_F(AclTranslation, OneDscpStandsAloneAndARuleWithoutOneAddsNothing) {
  add(voiceName, {{10, dscp(46)}, {20, noDscp()}});
  const auto conditions = term("edge-in", "voice").conditions;
  ASSERT_TRUE(conditions.has_value());
  EXPECT_EQ(conditions->ipv4.dscp, static_cast<unsigned char>(46));
  EXPECT_THAT(conditions->ipv4.dscpSet, IsEmpty());
  EXPECT_EQ(conditions->ipv6, Config::TermConditionsIpConfig()) << "the other family";
}

TEST_F(AclTranslation, TwoDscpsMakeASetAndBetweenTheTwoEventsTheFirstStandsAlone) {
  const auto acl = add(voiceName);
  addRule(*acl, 10, dscp(46));
  EXPECT_EQ(voice(), "ipv4 46");
  addRule(*acl, 20, dscp(34));
  const auto conditions = term("edge-in", "voice").conditions;
  ASSERT_TRUE(conditions.has_value());
  EXPECT_FALSE(conditions->ipv4.dscp.has_value());
  EXPECT_THAT(conditions->ipv4.dscpSet, ElementsAre(46, 34));
}

TEST_F(AclTranslation, AnIpv6RuleMatchesByTheUpperSixBitsOfItsTrafficClass) {
  add6(voiceName, {{10, trafficClass(0xb8, 0xfc)}, {20, trafficClass(0xb8, 0xf0)}});
  const auto conditions = term("edge-in", "voice").conditions;
  ASSERT_TRUE(conditions.has_value());
  EXPECT_EQ(conditions->ipv6.dscp, static_cast<unsigned char>(46));
  EXPECT_THAT(conditions->ipv6.dscpSet, IsEmpty());
  EXPECT_EQ(conditions->ipv4, Config::TermConditionsIpConfig()) << "the other family";
}

TEST_F(AclTranslation, SeveralIpv6DscpsMakeASet) {
  add6(voiceName, {{10, trafficClass(0xb8)}, {20, trafficClass(0x28)}, {30, trafficClass(0)}});
  EXPECT_EQ(voice(), "ipv6 [46, 10, 0]");
}

TEST_F(AclTranslation, EveryIpv4DscpIsTakenAsItStandsAndOnlyWhenItIsInForce) {
  for (unsigned value = 0; value < 256; ++value) {
    const auto byte = static_cast<unsigned char>(value);
    AclDevice device;
    device.start();
    Acl::IpRuleConfig off = dscp(byte);
    off.filter.matchDscp = false;
    device.add(voiceName, {{10, dscp(byte)}, {20, off}});
    EXPECT_EQ(device.term("edge-in", "voice").conditions, ipv4Conditions(byte)) << value;
  }
}

// An IPv6 rule that masks a part of the DSCP's bits doesn't match on DSCP.
TEST_F(AclTranslation, OnlyMasksWithAllSixUpperBitsMatchADscp) {
  for (unsigned mask = 0; mask < 256; ++mask) {
    AclDevice device;
    device.start();
    device.add6(voiceName, {{10, trafficClass(0xb8, static_cast<unsigned char>(mask))}});
    const bool whole = mask == 0xfc || mask == 0xfd || mask == 0xfe || mask == 0xff;
    EXPECT_EQ(conditionsText(device.term("edge-in", "voice")), whole ? "ipv6 46" : "default")
        << mask;
  }
}

TEST_F(AclTranslation, EveryIpv6TrafficClassIsShiftedByItsTwoLowerBits) {
  for (unsigned tc = 0; tc < 256; ++tc) {
    AclDevice device;
    device.start();
    device.add6(voiceName, {{10, trafficClass(static_cast<unsigned char>(tc))}});
    EXPECT_EQ(device.term("edge-in", "voice").conditions,
              ipv6Conditions(static_cast<unsigned char>(tc / 4)))
        << tc;
  }
}

TEST_F(AclTranslation, ARuleThatMatchesNoDscpLeavesATermWithPresentDefaultConditions) {
  add(voiceName, {{10, noDscp()}});
  EXPECT_EQ(term("edge-in", "voice"), termOf("voice", Config::TermConditions()));
}

TEST_F(AclTranslation, AddressesAndPortsNeverReachTheModel) {
  Acl::IpRuleConfig rule = dscp(46);
  rule.text2 = "remark";
  rule.filter.text1 = Rok::String("10.0.0.0/8");
  rule.filter.word2 = 443;
  rule.filter.tunnel22 = Acl::TunnelData{7, 1};
  add(voiceName, {{10, rule}});
  EXPECT_EQ(term("edge-in", "voice"), termOf("voice", ipv4Conditions(46)));
}

// ===== What an ACL writes

TEST_F(AclTranslation, AnAclMakesTheClassifierItsConfigAndTheTerm) {
  add(voiceName, {{10, dscp(46)}});
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {"voice: ipv4 46"}}}));
  EXPECT_EQ(classifiers->classifier("edge-in")->config(),
            (Config::ClassifierConfig{"edge-in", classifierTypeIpv4}));
  const Config::Term made = term("edge-in", "voice");
  EXPECT_EQ(made.id, "voice");
  EXPECT_EQ(made.configId, "voice");
  EXPECT_FALSE(made.actions.has_value());
}

TEST_F(AclTranslation, AnIpv6AclMakesAnIpv6Classifier) {
  add6("__yang_[core-in]_[voice]", {{10, trafficClass(0xb8)}});
  EXPECT_EQ(model(), (Model{{"core-in/v6", {"voice: ipv6 46"}}}));
  EXPECT_EQ(classifiers->classifier("core-in")->config(),
            (Config::ClassifierConfig{"core-in", classifierTypeIpv6}));
}

TEST_F(AclTranslation, ATermThatIsThereKeepsEverythingButItsConditions) {
  Config::Term before("voice");
  before.configId = "written by somebody else";
  before.actions = expedited;
  earlier("edge-in", before);
  earlier("edge-in", termOf("video", ipv4Conditions(34)));
  add(voiceName, {{10, dscp(46)}});
  Config::Term after = before;
  after.conditions = ipv4Conditions(46);
  EXPECT_EQ(term("edge-in", "voice"), after);
  EXPECT_EQ(term("edge-in", "video"), termOf("video", ipv4Conditions(34))) << "its neighbour";
}

TEST_F(AclTranslation, AClassifierThatIsThereKeepsItsTermsAndGetsTheWholeConfigAgain) {
  const auto before = classifiers->classifierIs("edge-in");
  before->configIs({"stale-name", {}});
  add6(voiceName, {{10, trafficClass(0, 0)}});
  EXPECT_EQ(classifiers->classifier("edge-in"), before);
  EXPECT_EQ(before->config(), (Config::ClassifierConfig{"edge-in", classifierTypeIpv6}));
}

// Both families may use one name. Each writes whole conditions, so the last writer's stand alone.
TEST_F(AclTranslation, OfTwoFamiliesUnderOneNameTheLastRuleDecidesConditionsAndType) {
  const auto first = add(voiceName, {{10, dscp(46)}});
  add6(voiceName, {{10, trafficClass(0x28)}});
  EXPECT_EQ(model(), (Model{{"edge-in/v6", {"voice: ipv6 10"}}}));
  addRule(*first, 20, dscp(34));
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {"voice: ipv4 [46, 34]"}}}));
}

TEST_F(AclTranslation, RemovingTheAclOfOneFamilyResetsWhatTheOtherOneWroteUnderThatName) {
  add(voiceName, {{10, dscp(46)}});
  add6(voiceName, {{10, trafficClass(0x28)}});
  remove(voiceName);
  EXPECT_EQ(model(), (Model{{"edge-in/v6", {"voice: default"}}}));
}

TEST_F(AclTranslation, NamesThatAreNoTermsAreMirroredAndHaveNoEffect) {
  const std::vector<const char*> names = {
      "MGMT-SSH", "__yang_[edge-in]_[]", "__yang_[]_[]",    "__yang_[]_[t]",  "__yang_[a]b]_[c]",
      "",         "__yang_[a]_[b] ",     "x__yang_[a]_[b]", "__YANG_[a]_[b]", "__yang_[IPV4__a]"};
  for (const char* name : names) {
    const auto acl = add(name, {{10, dscp(46)}});
    addRule(*acl, 20, dscp(34));
    removeRule(*acl, 10);
    EXPECT_NE(machine(name), nullptr) << name;
    EXPECT_THAT(machine(name)->aclSubConfigSm()->dscpValueSet(), IsEmpty()) << name;
    remove(name);
    EXPECT_EQ(machine(name), nullptr) << name;
  }
  EXPECT_EQ(model(), Model{});
}

TEST_F(AclTranslation, AnAclNamedLikeAPlaceholderTouchesNothingOfItsClassifier) {
  earlier("edge-in", termOf("voice", ipv4Conditions(34)));
  const auto acl = add("__yang_[edge-in]_[]", {{10, dscp(46)}});
  addRule(*acl, 20, dscp(34));
  acl->ruleBySequenceDel(10);
  remove("__yang_[edge-in]_[]");
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {"voice: ipv4 34"}}}));
}

TEST_F(AclTranslation, NamesInBracketsMayHoldBracketsAndLineTerminators) {
  add("__yang_[a[b]_[[c\n]", {{10, dscp(46)}});
  EXPECT_EQ(model(), (Model{{"a[b/v4", {"[c\n: ipv4 46"}}}));
}

TEST_F(AclTranslation, AnAclWithoutRulesOrWithoutASubConfigurationMakesNothing) {
  add(voiceName);
  bare("__yang_[core-in]_[voice]");
  EXPECT_EQ(model(), Model{});
  EXPECT_EQ(machine("__yang_[core-in]_[voice]")->aclSubConfigSm(), nullptr);
}

TEST_F(AclTranslation, AnAclIsOfTheFamilyThatItNamesItself) {
  const auto acl = Rok::make<Acl::AclConfig>(voiceName, aclTypeIpv6);
  acl->aclSubConfigIs(subConfig<Acl::Ip6RuleConfig>({{10, trafficClass(0xb8)}}));
  ipv4->aclIs(voiceName, acl);
  EXPECT_EQ(model(), (Model{{"edge-in/v6", {"voice: ipv6 46"}}}));
}

// ===== Rule events

// The set only grows: the history of one sub-configuration, not what its rules say now.
TEST_F(AclTranslation, ARuleThatGoesLeavesItsValue) {
  const auto acl = add(voiceName, {{10, dscp(46)}, {20, dscp(34)}});
  removeRule(*acl, 10);
  EXPECT_EQ(voice(), "ipv4 [46, 34]");
  removeRule(*acl, 20);
  EXPECT_EQ(voice(), "ipv4 [46, 34]") << "the last rule of a live ACL is gone";
}

TEST_F(AclTranslation, ARuleThatChangesPushesItsNewValueBehindTheOldOne) {
  const auto acl = add(voiceName, {{10, dscp(46)}});
  addRule(*acl, 10, dscp(34));
  EXPECT_EQ(voice(), "ipv4 [46, 34]");
  addRule(*acl, 10, noDscp());
  EXPECT_EQ(voice(), "ipv4 [46, 34]");
}

TEST_F(AclTranslation, ARuleThatComesBackStandsTwice) {
  const auto acl = add(voiceName, {{10, dscp(46)}});
  removeRule(*acl, 10);
  EXPECT_EQ(voice(), "ipv4 46");
  addRule(*acl, 10, dscp(46));
  EXPECT_EQ(voice(), "ipv4 [46, 46]");
}

TEST_F(AclTranslation, TwoRulesOfOneDscpStandTwice) {
  add(voiceName, {{10, dscp(46)}, {20, dscp(46)}});
  EXPECT_EQ(voice(), "ipv4 [46, 46]");
}

TEST_F(AclTranslation, ValuesStandInOrderOfArrivalUntilARestartSortsThemBySequence) {
  const auto acl = add(voiceName, {{30, dscp(1)}});
  addRule(*acl, 10, dscp(3));
  addRule(*acl, 20, dscp(2));
  EXPECT_EQ(voice(), "ipv4 [1, 3, 2]");
  restart();
  EXPECT_EQ(voice(), "ipv4 [3, 2, 1]");
}

TEST_F(AclTranslation, ARestartForgetsTheValuesOfRulesThatHaveGone) {
  const auto acl = add(voiceName, {{10, dscp(46)}, {20, dscp(34)}});
  removeRule(*acl, 10);
  restart();
  EXPECT_EQ(voice(), "ipv4 34");
}

TEST_F(AclTranslation, TheLastValueLeftAfterARestartStandsAloneAgain) {
  const auto acl = add(voiceName, {{10, dscp(46)}});
  addRule(*acl, 10, dscp(34));
  EXPECT_EQ(voice(), "ipv4 [46, 34]");
  restart();
  EXPECT_EQ(term("edge-in", "voice").conditions, ipv4Conditions(34));
}

TEST_F(AclTranslation, ARemovedRuleStillWritesClassifierConfigTermAndConditions) {
  const auto acl = add(voiceName, {{10, dscp(46)}});
  classifiers->classifierDel("edge-in");
  removeRule(*acl, 10);
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {"voice: ipv4 46"}}}));
}

TEST_F(AclTranslation, ARuleEventOverwritesConditionsThatSomebodyElseWrote) {
  const auto acl = add(voiceName, {{10, dscp(46)}});
  earlier("edge-in", termOf("voice", ipv6Conditions(1)));
  addRule(*acl, 20, noDscp());
  EXPECT_EQ(voice(), "ipv4 46");
}

TEST_F(AclTranslation, ASequenceWithoutARuleReadsAsADefaultRule) {
  const auto acl = add(voiceName);
  acl->ruleBySequenceIs(10, Umb::UniqueId(999999, 0, 0));
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {"voice: default"}}}));
  const auto acl6 = add6("__yang_[core-in]_[voice]");
  acl6->ruleBySequenceIs(10, Umb::UniqueId(999999, 0, 0));
  EXPECT_EQ(term("core-in", "voice"), termOf("voice", Config::TermConditions()));
}

TEST_F(AclTranslation, ARuleCountsOnlyInTheCollectionOfItsOwnFamily) {
  const Umb::UniqueId id(7, 7, 7);
  const auto acl = add(voiceName);
  acl->ip6RuleByIdIs(id, trafficClass(0xb8));
  acl->ruleBySequenceIs(10, id);
  EXPECT_EQ(voice(), "default");
  const auto acl6 = add6("__yang_[core-in]_[voice]");
  acl6->ipRuleByIdIs(id, dscp(46));
  acl6->ruleBySequenceIs(10, id);
  EXPECT_EQ(conditionsText(term("core-in", "voice")), "default");
}

TEST_F(AclTranslation, ARuleWrittenUnderItsOldIdentityWakesNobody) {
  const Umb::UniqueId id(7, 7, 7);
  const auto acl = add(voiceName);
  acl->ruleBySequenceIs(10, id);
  acl->ipRuleByIdIs(id, dscp(46));
  EXPECT_EQ(voice(), "default");
  restart();
  EXPECT_EQ(voice(), "ipv4 46");
  acl->ipRuleByIdDel(id);
  EXPECT_EQ(voice(), "ipv4 46");
}

TEST_F(AclTranslation, ARuleIsFoundByItsWholeIdentity) {
  const auto acl = add(voiceName);
  acl->ipRuleByIdIs(Umb::UniqueId(1, 2, 3), dscp(1));
  acl->ipRuleByIdIs(Umb::UniqueId(1, 2, 4), dscp(2));
  acl->ipRuleByIdIs(Umb::UniqueId(1, 3, 3), dscp(3));
  acl->ipRuleByIdIs(Umb::UniqueId(2, 2, 3), dscp(4));
  acl->ruleBySequenceIs(10, Umb::UniqueId(1, 2, 3));
  EXPECT_EQ(voice(), "ipv4 1");
}

// ===== The sub-configuration

TEST_F(AclTranslation, ASubConfigurationThatComesLaterIsReplayed) {
  const auto acl = bare(voiceName);
  acl->aclSubConfigIs(subConfig({{20, dscp(34)}, {10, dscp(46)}}));
  EXPECT_EQ(voice(), "ipv4 [46, 34]");
}

TEST_F(AclTranslation, AnotherSubConfigurationStartsOverWithItsOwnRules) {
  const auto first = add(voiceName, {{10, dscp(46)}, {20, dscp(34)}});
  const auto machineBefore = machine(voiceName)->aclSubConfigSm();
  acl(voiceName)->aclSubConfigIs(subConfig({{10, dscp(8)}}));
  EXPECT_EQ(voice(), "ipv4 8");
  EXPECT_NE(machine(voiceName)->aclSubConfigSm(), machineBefore);
  EXPECT_TRUE(machine(voiceName)->aclSubConfigSm()->hasNotificationActive());
  EXPECT_EQ(machineBefore->references(), 1u) << "nobody else holds the old one";
}

TEST_F(AclTranslation, TheOldSubConfigurationIsNotWatchedAnyMore) {
  const auto first = add(voiceName, {{10, dscp(46)}});
  acl(voiceName)->aclSubConfigIs(subConfig({{10, dscp(8)}}));
  EXPECT_EQ(first->notifieeList()->notifiees(), 0u);
  addRule(*first, 20, dscp(34));
  EXPECT_EQ(voice(), "ipv4 8");
}

TEST_F(AclTranslation, AnEmptySubConfigurationInItsPlaceResetsTheTermAndKeepsItsActions) {
  add(voiceName, {{10, dscp(46)}});
  earlier("edge-in", termOf("voice", ipv4Conditions(46), expedited));
  acl(voiceName)->aclSubConfigIs(subConfig());
  EXPECT_EQ(term("edge-in", "voice"), termOf("voice", Config::TermConditions(), expedited));
}

TEST(AclConfigSm, WithoutAConfigItIsDeafAndHoldsTheEmptyNameAndTheFirstFamily) {
  const auto classifiers = Rok::make<Config::ClassifiersDir>();
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  const auto sm = aclConfigSmFactory(nullptr, classifiers);
  ASSERT_NE(sm->aclNameAndType(), nullptr);
  EXPECT_EQ(sm->aclNameAndType()->aclName(), "");
  EXPECT_EQ(sm->aclNameAndType()->aclType(), Acl::aclTypeIpv4);
  EXPECT_TRUE(sm->aclNameAndType()->hasNotificationActive());
  EXPECT_EQ(sm->aclSubConfigSm(), nullptr);
  EXPECT_EQ(sm->aclName(), "");
  EXPECT_EQ(sm->type(), Acl::aclTypeIpv4);
  EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST_F(AclTranslation, AnEmptySubConfigurationWithoutATermMakesNone) {
  const auto acl = bare(voiceName);
  acl->aclSubConfigIs(subConfig());
  EXPECT_EQ(model(), Model{}) << "no classifier";
  classifiers->classifierIs("edge-in");
  acl->aclSubConfigIs(subConfig());
  EXPECT_EQ(classifiers->classifier("edge-in")->terms(), nullptr) << "no terms";
  earlier("edge-in", termOf("video", ipv4Conditions(34)));
  acl->aclSubConfigIs(subConfig());
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {"video: ipv4 34"}}})) << "no such term";
}

TEST_F(AclTranslation, AnEmptySubConfigurationOfAForeignAclResetsNothing) {
  earlier("edge-in", termOf("voice", ipv4Conditions(34)));
  add("MGMT-SSH");
  add("__yang_[edge-in]_[]");
  EXPECT_EQ(voice(), "ipv4 34");
}

// An empty sub-configuration takes no side: it resets the term also of a classifier of the other
// family, and leaves its type alone.
TEST_F(AclTranslation, AnEmptySubConfigurationLeavesTheClassifiersConfigAlone) {
  earlier("edge-in", termOf("voice", ipv6Conditions(46)), classifierTypeIpv6);
  add(voiceName);
  EXPECT_EQ(model(), (Model{{"edge-in/v6", {"voice: default"}}}));
}

TEST_F(AclTranslation, WithoutASubConfigurationTheTermKeepsItsLastConditions) {
  const auto first = add(voiceName, {{10, dscp(46)}, {20, dscp(34)}});
  acl(voiceName)->aclSubConfigIs(nullptr);
  EXPECT_EQ(machine(voiceName)->aclSubConfigSm(), nullptr);
  EXPECT_EQ(first->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(voice(), "ipv4 [46, 34]");
  addRule(*first, 30, dscp(8));
  EXPECT_EQ(voice(), "ipv4 [46, 34]");
}

TEST_F(AclTranslation, TheSameSubConfigurationAfterNoneStartsOver) {
  const auto sub = add(voiceName, {{10, dscp(46)}});
  addRule(*sub, 10, dscp(34));
  EXPECT_EQ(voice(), "ipv4 [46, 34]");
  acl(voiceName)->aclSubConfigIs(nullptr);
  acl(voiceName)->aclSubConfigIs(sub);
  EXPECT_EQ(voice(), "ipv4 34");
}

TEST_F(AclTranslation, TheSameSubConfigurationAgainKeepsTheChildAndItsHistory) {
  const auto sub = add(voiceName, {{10, dscp(46)}});
  addRule(*sub, 10, dscp(34));
  const auto sm = machine(voiceName);
  const auto child = sm->aclSubConfigSm();
  sm->handleAclSubConfig();
  EXPECT_EQ(sm->aclSubConfigSm(), child);
  EXPECT_EQ(sm->aclSubConfigSmIs(sub, classifiers, sm->aclNameAndType()), child);
  EXPECT_THAT(child->dscpValueSet(), ElementsAre(46, 34));
}

TEST_F(AclTranslation, EachOfTheThreeArgumentsMakesAnotherChildAndNoneThrows) {
  const auto sub = add(voiceName, {{10, dscp(46)}});
  const auto sm = machine(voiceName);
  const auto nameAndType = sm->aclNameAndType();
  const auto same = Rok::make<AclNameAndType>(nameAndType->aclName(), nameAndType->aclType());
  const auto otherDir = Rok::make<Config::ClassifiersDir>();
  const auto otherSub = subConfig({{10, dscp(8)}});
  auto before = sm->aclSubConfigSm();
  const auto expectAnother = [&](const Rok::Ptr<AclSubConfigSm>& child) {
    EXPECT_NE(child, before);
    EXPECT_EQ(child, sm->aclSubConfigSm());
    EXPECT_TRUE(child->hasNotificationActive());
    before = child;
  };
  expectAnother(sm->aclSubConfigSmIs(otherSub, classifiers, nameAndType));
  expectAnother(sm->aclSubConfigSmIs(otherSub, otherDir, nameAndType));
  EXPECT_EQ(support::conditionsModel(*otherDir), (Model{{"edge-in/v4", {"voice: ipv4 8"}}}));
  expectAnother(sm->aclSubConfigSmIs(otherSub, otherDir, same));
  expectAnother(sm->aclSubConfigSmIs(sub, classifiers, nameAndType));
}

TEST_F(AclTranslation, DeletingTheChildSwitchesItOffAndGivesItBackWithItsHistory) {
  const auto sub = add(voiceName, {{10, dscp(46)}});
  const auto sm = machine(voiceName);
  const auto child = sm->aclSubConfigSm();
  EXPECT_EQ(sm->aclSubConfigSmDel(), child);
  EXPECT_EQ(sm->aclSubConfigSm(), nullptr);
  EXPECT_FALSE(child->hasNotificationActive());
  addRule(*sub, 20, dscp(34));
  EXPECT_THAT(child->dscpValueSet(), ElementsAre(46));
  EXPECT_EQ(voice(), "ipv4 46");
  EXPECT_EQ(sm->aclSubConfigSmDel(), nullptr) << "there is none any more";
}

// ===== Deletion orders

TEST_F(AclTranslation, DeletingAnAclResetsTheTermsConditionsAndKeepsItsActions) {
  add(voiceName, {{10, dscp(46)}});
  earlier("edge-in", termOf("voice", ipv4Conditions(46), expedited));
  remove(voiceName);
  EXPECT_EQ(term("edge-in", "voice"), termOf("voice", Config::TermConditions(), expedited));
  EXPECT_EQ(machine(voiceName), nullptr);
}

TEST_F(AclTranslation, DeletingAnAclThatWroteNothingResetsATermThatIsThere) {
  bare(voiceName);
  earlier("edge-in", termOf("voice", ipv4Conditions(34)));
  earlier("edge-in", termOf("video", ipv4Conditions(34)));
  remove(voiceName);
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {"video: ipv4 34", "voice: default"}}}));
}

TEST_F(AclTranslation, DeletingAnAclMakesConditionsPresentThatWereAbsent) {
  bare(voiceName);
  earlier("edge-in", termOf("voice"));
  remove(voiceName);
  EXPECT_EQ(voice(), "default");
}

TEST_F(AclTranslation, DeletingAnAclWithoutItsTermMakesNone) {
  bare(voiceName);
  remove(voiceName);
  EXPECT_EQ(model(), Model{}) << "no classifier";
  classifiers->classifierIs("edge-in");
  bare(voiceName);
  remove(voiceName);
  EXPECT_EQ(classifiers->classifier("edge-in")->terms(), nullptr) << "no terms";
  earlier("edge-in", termOf("video", ipv4Conditions(34)));
  bare(voiceName);
  remove(voiceName);
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {"video: ipv4 34"}}})) << "no such term";
}

TEST_F(AclTranslation, AnAclThatIsMadeAgainAsAnotherObjectStartsOver) {
  add(voiceName, {{10, dscp(46)}});
  remove(voiceName);
  add(voiceName, {{10, dscp(34)}});
  EXPECT_EQ(voice(), "ipv4 34");
}

// The class-map root and the ACL root over one directory.
struct BothRoots : testing::Test {
  AclDevice acls;
  ClassMapDevice classMaps;

  BothRoots() { classMaps.classifiers = acls.classifiers; }
  void start() {
    classMaps.start();
    acls.start();
  }
  Model model() const { return acls.model(); }
};

TEST_F(BothRoots, AclFirstAndThenTheClassMapResetsTheTermAndThenRemovesIt) {
  start();
  classMaps.add(voiceName);
  acls.add(voiceName, {{10, dscp(46)}});
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {"voice: ipv4 46"}}}));
  acls.remove(voiceName);
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {"voice: default"}}}));
  classMaps.remove(voiceName);
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {}}}));
}

TEST_F(BothRoots, ClassMapFirstRemovesTheTermAndTheAclThenFindsNone) {
  start();
  classMaps.add("__yang_[edge-in]_[]");
  classMaps.add(voiceName);
  acls.add(voiceName, {{10, dscp(46)}});
  classMaps.remove(voiceName);
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {}}}));
  acls.remove(voiceName);
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {}}}));
  EXPECT_EQ(acls.classifiers->classifier("edge-in")->terms(), nullptr);
}

TEST_F(BothRoots, ARuleEventBetweenTheTwoDeletionsBringsTheTermBackUntilTheNextStart) {
  start();
  classMaps.add("__yang_[edge-in]_[]");
  classMaps.add(voiceName);
  const auto acl = acls.add(voiceName, {{10, dscp(46)}});
  classMaps.remove(voiceName);
  classMaps.remove("__yang_[edge-in]_[]");
  EXPECT_EQ(model(), Model{});
  removeRule(*acl, 10);
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {"voice: ipv4 46"}}})) << "with a classifier";
  acls.remove(voiceName);
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {"voice: default"}}})) << "no class map behind it";
  classMaps.restart();
  EXPECT_EQ(model(), Model{});
}

TEST_F(BothRoots, NeitherOverwritesTheOthersPartOfATerm) {
  start();
  acls.add(voiceName, {{10, dscp(46)}});
  const auto voice = classMaps.add(voiceName);
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {"voice: ipv4 46"}}}));
  voice->matchIs(Qos::matchIpv6AccessGroup, Rok::make<Qos::ClassMapMatch>());
  EXPECT_EQ(model(), (Model{{"edge-in/v6", {"voice: ipv4 46"}}}))
      << "the last writer's type stands";
  acls.add("__yang_[edge-in]_[video]", {{10, dscp(34)}});
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {"video: ipv4 34", "voice: ipv4 46"}}}));
}

// What the order of the two roots changes at start: only what has no class map. The class maps'
// sweep removes it; an ACL root that comes after makes it again.
TEST_F(BothRoots, TheClassMapRootAsTheSecondRemovesWhatTheAclRootJustWroteWithoutAPlaceholder) {
  acls.add(voiceName, {{10, dscp(46)}});
  classMaps.add(voiceName);
  acls.start();
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {"voice: ipv4 46"}}}));
  classMaps.start();
  EXPECT_EQ(model(), Model{});
}

TEST_F(BothRoots, TheAclRootAsTheSecondMakesAClassifierWithoutAPlaceholderAgain) {
  acls.add(voiceName, {{10, dscp(46)}});
  classMaps.add(voiceName);
  classMaps.start();
  EXPECT_EQ(model(), Model{});
  acls.start();
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {"voice: ipv4 46"}}}));
}

TEST_F(BothRoots, ATermWithoutItsClassMapStandsOnlyWhenTheAclRootIsTheSecond) {
  acls.add(voiceName, {{10, dscp(46)}});
  classMaps.add("__yang_[edge-in]_[]");
  acls.start();
  classMaps.start();
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {}}}));
  acls.restart();
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {"voice: ipv4 46"}}}));
}

TEST_F(BothRoots, WithAllClassMapsTheOrderOfTheRootsMakesNoDifference) {
  for (const bool aclsFirst : {true, false}) {
    AclDevice acls;
    ClassMapDevice classMaps;
    classMaps.classifiers = acls.classifiers;
    acls.earlier("edge-in", termOf("gone", ipv4Conditions(1)));
    acls.earlier("edge-in", termOf("video", ipv4Conditions(1), expedited));
    for (const char* name :
         {"__yang_[edge-in]_[]", "__yang_[edge-in]_[voice]", "__yang_[edge-in]_[video]"}) {
      classMaps.add(name);
    }
    acls.add(voiceName, {{10, dscp(46)}});
    if (aclsFirst) acls.start();
    classMaps.start();
    if (!aclsFirst) acls.start();
    EXPECT_EQ(acls.model(), (Model{{"edge-in/v4", {"video: default", "voice: ipv4 46"}}}));
    EXPECT_EQ(acls.term("edge-in", "video"), termOf("video", Config::TermConditions(), expedited));
  }
}

// ===== Start and restart

TEST(AclStart, AStartBuildsTheOutputOfWhatExists) {
  AclDevice device;
  device.add("__yang_[edge-in]_[voice]", {{10, dscp(46)}});
  device.add("__yang_[edge-in]_[video]", {{20, dscp(34)}, {10, dscp(36)}});
  device.add6("__yang_[core-in]_[voice]", {{10, trafficClass(0xb8)}});
  device.bare("__yang_[other]_[voice]");
  device.start();
  EXPECT_EQ(device.model(), (Model{{"core-in/v6", {"voice: ipv6 46"}},
                                   {"edge-in/v4", {"video: ipv4 [36, 34]", "voice: ipv4 46"}}}));
}

TEST(AclStart, ATermThatLostItsAclIsResetAndKeepsItsActionsAndItsPlace) {
  AclDevice device;
  device.earlier("edge-in", termOf("voice", ipv4Conditions(46), expedited));
  device.earlier("edge-in", termOf("bare"));
  device.start();
  EXPECT_EQ(device.term("edge-in", "voice"), termOf("voice", Config::TermConditions(), expedited));
  EXPECT_EQ(device.term("edge-in", "bare"), termOf("bare", Config::TermConditions()))
      << "absent conditions come out present";
}

TEST(AclStart, ATermWithItsAclIsLeftAsItStandsAlsoWhenTheAclHasNoSubConfiguration) {
  AclDevice device;
  const Config::Term before = termOf("voice", ipv4Conditions(46), expedited);
  device.earlier("edge-in", before);
  device.earlier("edge-in", termOf("video", ipv4Conditions(34)));
  device.bare(voiceName);
  device.start();
  EXPECT_EQ(device.term("edge-in", "voice"), before);
  EXPECT_EQ(conditionsText(device.term("edge-in", "video")), "default");
}

TEST(AclStart, AnAclWithAnEmptySubConfigurationResetsItsTerm) {
  AclDevice device;
  device.earlier("edge-in", termOf("voice", ipv4Conditions(46), expedited));
  device.add(voiceName);
  device.start();
  EXPECT_EQ(device.term("edge-in", "voice"), termOf("voice", Config::TermConditions(), expedited));
}

TEST(AclStart, EachFamilySweepsItsOwnClassifiersAndNoneThoseWithoutAType) {
  struct Case {
    Rok::Optional<Classifier::Type> type;
    bool sweptByIpv4;
    bool sweptByIpv6;
  };
  for (const Case& c :
       {Case{classifierTypeIpv4, true, false}, Case{classifierTypeIpv6, false, true},
        Case{{}, false, false}, Case{Classifier::Type{9}, false, false}}) {
    AclDevice device;
    device.earlier("edge-in", termOf("voice", ipv6Conditions(46)), c.type);
    const auto four = aclTypeSmFactory(device.ipv4, device.classifiers);
    EXPECT_EQ(conditionsText(device.term("edge-in", "voice")),
              c.sweptByIpv4 ? "default" : "ipv6 46");
    device.earlier("edge-in", termOf("voice", ipv6Conditions(46)), c.type);
    const auto six = aclTypeSmFactory(device.ipv6, device.classifiers);
    EXPECT_EQ(conditionsText(device.term("edge-in", "voice")),
              c.sweptByIpv6 ? "default" : "ipv6 46");
  }
}

TEST(AclStart, AClassifierOfIpv6IsJudgedByTheIpv6AclsAlone) {
  AclDevice device;
  device.earlier("edge-in", termOf("voice", ipv6Conditions(46)), classifierTypeIpv6);
  device.bare(voiceName);
  device.start();
  EXPECT_EQ(conditionsText(device.term("edge-in", "voice")), "default")
      << "the IPv4 ACL of that name doesn't count";
  device.bare6(voiceName);
  device.earlier("edge-in", termOf("voice", ipv6Conditions(46)), classifierTypeIpv6);
  device.restart();
  EXPECT_EQ(conditionsText(device.term("edge-in", "voice")), "ipv6 46");
}

// IPv4 comes first: its ACLs are replayed and its sweep has run before IPv6 writes a type.
TEST(AclStart, TheIpv4FamilyIsBuiltAndSweptBeforeTheIpv6Family) {
  AclDevice device;
  device.earlier("edge-in", termOf("video", ipv4Conditions(34)), classifierTypeIpv4);
  device.add6(voiceName, {{10, trafficClass(0xb8)}});
  device.start();
  EXPECT_EQ(device.model(), (Model{{"edge-in/v6", {"video: default", "voice: ipv6 46"}}}));
}

// A classifier has one type. When its terms are of both families, the type at start is IPv6's, and
// the IPv6 sweep then takes the conditions of the terms that only IPv4 knows. Before the restart
// they stood: nothing sweeps while the root lives.
TEST(AclStart, OfAClassifierWithTermsOfBothFamiliesTheIpv4TermsAreResetAtEachStart) {
  AclDevice device;
  device.start();
  device.add("__yang_[edge-in]_[video]", {{10, dscp(34)}});
  device.add6(voiceName, {{10, trafficClass(0xb8)}});
  EXPECT_EQ(device.model(), (Model{{"edge-in/v6", {"video: ipv4 34", "voice: ipv6 46"}}}));
  device.restart();
  EXPECT_EQ(device.model(), (Model{{"edge-in/v6", {"video: default", "voice: ipv6 46"}}}));
}

TEST(AclStart, TheSweepDeletesNeitherTermsNorClassifiersNorEmptyTerms) {
  AclDevice device;
  device.classifiers->classifierIs("empty")->configIs({"empty", classifierTypeIpv4});
  device.classifiers->classifierIs("hollow")->configIs({"hollow", classifierTypeIpv4});
  device.classifiers->classifier("hollow")->termsIs();
  device.earlier("edge-in", termOf("voice"));
  device.start();
  EXPECT_EQ(device.model(),
            (Model{{"edge-in/v4", {"voice: default"}}, {"empty/v4", {}}, {"hollow/v4", {}}}));
  EXPECT_EQ(device.classifiers->classifier("empty")->terms(), nullptr);
  EXPECT_NE(device.classifiers->classifier("hollow")->terms(), nullptr);
}

TEST(AclStart, TheSweepLeavesTheConfigAlone) {
  AclDevice device;
  device.earlier("edge-in", termOf("voice"));
  device.classifiers->classifier("edge-in")->configIs({"stale-name", classifierTypeIpv4});
  device.start();
  EXPECT_EQ(device.classifiers->classifier("edge-in")->config(),
            (Config::ClassifierConfig{"stale-name", classifierTypeIpv4}));
  EXPECT_EQ(conditionsText(device.term("edge-in", "voice")), "default");
}

TEST(AclStart, TheSweepBuildsTheNameAndDoesNotDecodeOne) {
  AclDevice device;
  device.earlier("c]d", termOf("t", ipv4Conditions(1)));
  device.earlier("c]d", termOf("u", ipv4Conditions(1)));
  device.bare("__yang_[c]d]_[t]");  // decodes to nothing
  device.start();
  EXPECT_EQ(device.model(), (Model{{"c]d/v4", {"t: ipv4 1", "u: default"}}}));
}

TEST(AclStart, SweepsOfManyClassifiersAndTermsDoNotInterfere) {
  for (std::uint32_t seed = 0; seed < 8; ++seed) {
    const support::WalkOrder walk(seed);
    AclDevice device;
    Model expected;
    for (int n = 0; n < 100; ++n) {
      const std::string name = "c" + std::to_string(n);
      const bool ipv6 = n % 2 == 1;
      auto& terms = expected[name + (ipv6 ? "/v6" : "/v4")];
      for (const char* id : {"a", "b", "c"}) {
        device.earlier(name, termOf(id, ipv4Conditions(1)),
                       ipv6 ? classifierTypeIpv6 : classifierTypeIpv4);
        const std::string acl = "__yang_[" + name + "]_[" + id + "]";
        const bool kept = (n + *id) % 3 == 0;
        if (kept) {
          if (ipv6) {
            device.bare6(acl);
          } else {
            device.bare(acl);
          }
        }
        terms.push_back(id + std::string(kept ? ": ipv4 1" : ": default"));
      }
    }
    device.start();
    EXPECT_EQ(device.model(), expected) << "seed " << seed;
  }
}

TEST_F(AclTranslation, TheRootFollowsTheEntriesOfItsConstructionForLife) {
  const auto replacement = Rok::make<Acl::Input::AclTypeConfig>(aclTypeIpv4);
  const auto old = ipv4;
  config->configIs(aclTypeIpv4, replacement);
  config->configDel(aclTypeIpv6);
  ipv4 = replacement;
  add("__yang_[new]_[voice]", {{10, dscp(46)}});
  EXPECT_EQ(model(), Model{});
  ipv4 = old;
  add("__yang_[old]_[voice]", {{10, dscp(46)}});
  add6("__yang_[old6]_[voice]", {{10, trafficClass(0xb8)}});
  EXPECT_EQ(model(), (Model{{"old/v4", {"voice: ipv4 46"}}, {"old6/v6", {"voice: ipv6 46"}}}));
}

TEST(AclStart, FurtherFamiliesAreNotTranslated) {
  AclDevice device;
  const auto other = Rok::make<Acl::Input::AclTypeConfig>(unknownType);
  device.config->configIs(unknownType, other);
  device.earlier("edge-in", termOf("voice"), Rok::Optional<Classifier::Type>());
  device.start();
  const auto acl = Rok::make<Acl::AclConfig>(voiceName, unknownType);
  acl->aclSubConfigIs(subConfig({{10, dscp(46)}}));
  other->aclIs(voiceName, acl);
  EXPECT_EQ(device.root->aclTypeSm().members(), 2u);
  EXPECT_EQ(conditionsText(device.term("edge-in", "voice")), "absent");
}

// ===== Failures

TEST(AclFailure, AMissingFamilyThrowsOutOfTheFactoryAndLeavesNothingRegistered) {
  for (const Acl::AclType missing : {aclTypeIpv4, aclTypeIpv6}) {
    AclDevice device;
    device.add(voiceName, {{10, dscp(46)}});
    device.config->configDel(missing);
    try {
      device.start();
      FAIL() << "no exception";
    } catch (const Rok::MutatorArgNullPointerException& e) {
      EXPECT_EQ(e.attribute(), "aclTypeConfig");
      EXPECT_EQ(e.attributeId(), 130u);
      EXPECT_STREQ(e.what(), "AclTypeSm: argument aclTypeConfig (attribute 130) must not be null");
    }
    EXPECT_EQ(device.model(),
              missing == aclTypeIpv4 ? Model{} : (Model{{"edge-in/v4", {"voice: ipv4 46"}}}))
        << "what was written before stays";
    EXPECT_EQ(device.ipv4->notifieeList()->notifiees(), 0u);
    EXPECT_EQ(Rok::AllocTrackTypeInfo::of<AclKivToOcSm>().blocks(), 0u);
    EXPECT_EQ(Rok::AllocTrackTypeInfo::of<AclSubConfigSm>().blocks(), 0u);
  }
}

TEST(AclFailure, AnEmptyFamilyEntryIsAMissingOne) {
  AclDevice device;
  device.config->configIs(aclTypeIpv6, nullptr);
  EXPECT_THROW(device.start(), Rok::MutatorArgNullPointerException);
}

TEST(AclFailure, OneEntryUnderBothFamiliesIsTheSameMachineAndAnotherOfThatTypeThrows) {
  AclDevice device;
  device.config->configIs(aclTypeIpv6, device.ipv4);
  EXPECT_NO_THROW(device.start());
  EXPECT_EQ(device.root->aclTypeSm().members(), 1u);
  device.config->configIs(aclTypeIpv6, Rok::make<Acl::Input::AclTypeConfig>(aclTypeIpv4));
  EXPECT_THROW(device.restart(), Rok::MutatorReinstantiatingException);
}

using AclTranslationDeathTest = AclTranslation;

// A deletion that was never announced as an addition is a fault of the notifier, and fatal.
TEST_F(AclTranslationDeathTest, TheDeletionOfAKeyWithoutAMachineEndsTheProcess) {
  EXPECT_DEATH(types()->handleAclConfig("__yang_[never]_[seen]"),
               R"(assertion failed: "false" == nullptr: AclConfigSm: no child to delete under key )"
               R"(__yang_\[never\]_\[seen\])");
}

// By then the classifier is there, as one of IPv6: whatever isn't IPv4 counts as that.
TEST_F(AclTranslationDeathTest, ARuleOfAnUnknownFamilyEndsTheProcess) {
  const auto acl = Rok::make<Acl::AclConfig>(voiceName, unknownType);
  acl->aclSubConfigIs(subConfig({{10, dscp(46)}}));
  const auto writeTraced = [&] {
    Rok::TraceFacility::levelIs(8, true);
    ipv4->aclIs(voiceName, acl);
  };
  EXPECT_DEATH(writeTraced(),
               "Creating classifier named: edge-in and termId named: voice of type: "
               "classifierTypeIpv6\n"
               "assertion failed: \"false\" == nullptr: Unexpected ACL type\n");
}

TEST_F(AclTranslationDeathTest, ARemovedRuleOfAnUnknownFamilyEndsTheProcessToo) {
  const auto acl = Rok::make<Acl::AclConfig>(voiceName, unknownType);
  const auto sub = subConfig();
  acl->aclSubConfigIs(sub);
  ipv4->aclIs(voiceName, acl);
  EXPECT_DEATH(machine(voiceName)->aclSubConfigSm()->handleRuleBySequence(10),
               "Unexpected ACL type");
}

TEST_F(AclTranslationDeathTest, TheSweepOfAnUnknownFamilyEndsTheProcessAtTheFirstClassifier) {
  const auto other = Rok::make<Acl::Input::AclTypeConfig>(unknownType);
  EXPECT_NO_FATAL_FAILURE(aclTypeSmFactory(other, classifiers)) << "there is nothing to sweep yet";
  classifiers->classifierIs("any");  // without a type and without terms
  EXPECT_DEATH(aclTypeSmFactory(other, classifiers),
               "assertion failed: \"false\" == nullptr: Unexpected ACL type\n");
}

TEST_F(AclTranslation, AnUnknownFamilyUnderAForeignNameOrWithoutRulesIsNoFault) {
  const auto foreign = Rok::make<Acl::AclConfig>("MGMT-SSH", unknownType);
  foreign->aclSubConfigIs(subConfig({{10, dscp(46)}}));
  ipv4->aclIs("MGMT-SSH", foreign);
  const auto empty = Rok::make<Acl::AclConfig>(voiceName, unknownType);
  empty->aclSubConfigIs(subConfig());
  earlier("edge-in", termOf("voice", ipv4Conditions(46)));
  ipv4->aclIs(voiceName, empty);
  EXPECT_EQ(voice(), "default");
}

// ===== Life

TEST_F(AclTranslation, ATypesPrepareToDieResetsEveryTermAndKeepsTheChildren) {
  add(voiceName, {{10, dscp(46)}});
  add("__yang_[core-in]_[voice]", {{10, dscp(46)}});
  add("MGMT-SSH", {{10, dscp(46)}});
  add6("__yang_[other]_[voice]", {{10, trafficClass(0xb8)}});
  types()->doPrepareToDie();
  EXPECT_EQ(model(), (Model{{"core-in/v4", {"voice: default"}},
                            {"edge-in/v4", {"voice: default"}},
                            {"other/v6", {"voice: ipv6 46"}}}));
  EXPECT_EQ(types()->aclConfigSm().members(), 3u);
}

TEST_F(AclTranslation, TheRulesAreMadeFromTheNameAndTypeOfTheirAcl) {
  add6(voiceName, {{10, trafficClass(0xb8)}});
  const auto sm = machine(voiceName, aclTypeIpv6);
  EXPECT_TRUE(sm->aclNameAndType()->hasNotificationActive());
  EXPECT_EQ(sm->aclNameAndType()->aclName(), voiceName);
  EXPECT_EQ(sm->aclNameAndType()->aclType(), aclTypeIpv6);
  EXPECT_EQ(sm->aclSubConfigSm()->aclNameAndType().get(), sm->aclNameAndType().get());
  EXPECT_EQ(sm->aclSubConfigSm()->aclSubConfig().get(), sm->aclConfig()->aclSubConfig().get());
}

TEST_F(AclTranslation, WhateverIsNotIpv4CountsAsIpv6) {
  add(voiceName, {{10, dscp(46)}});
  const auto child = machine(voiceName)->aclSubConfigSm();
  for (unsigned type = 0; type < 256; ++type) {
    EXPECT_EQ(child->classifierTypeFromAclType(static_cast<Acl::AclType>(type)),
              type == 0 ? classifierTypeIpv4 : classifierTypeIpv6);
  }
}

TEST_F(AclTranslation, TheMutatorsOfTheValuesChangeTheVectorAlone) {
  const auto sub = add(voiceName, {{10, dscp(46)}, {20, dscp(34)}});
  const auto child = machine(voiceName)->aclSubConfigSm();
  child->dscpValueSetIs(1, 8);
  EXPECT_THAT(child->dscpValueSet(), ElementsAre(46, 8));
  child->dscpValueSetPush(8);
  EXPECT_THAT(child->dscpValueSet(), ElementsAre(46, 8, 8)) << "no care is taken of repeats";
  child->dscpValueSetPop();
  EXPECT_THAT(child->dscpValueSet(), ElementsAre(46, 8));
  EXPECT_THROW(child->dscpValueSetIs(3, 1), Velmo::VectorException);
  child->dscpValueSetPopAll();
  EXPECT_THAT(child->dscpValueSet(), IsEmpty());
  EXPECT_THROW(child->dscpValueSetPop(), Velmo::VectorException);
  EXPECT_THROW(child->dscpValueSetIs(0, 1), Velmo::VectorException);
  EXPECT_EQ(voice(), "ipv4 [46, 34]");
  addRule(*sub, 30, dscp(1));
  EXPECT_EQ(voice(), "ipv4 1") << "the next event takes the vector as it stands";
}

// ===== Traces

constexpr const char* decoder =
    "8 std::pair<Velmo::String, Velmo::String> "
    "QosOc::classifierKeyFromConfigObjName(const Velmo::String&) ( ";

std::string addressOf(const void* object) {
  std::ostringstream out;
  out << object;
  return out.str();
}

TEST_F(AclTranslation, AnIpv4RuleTracesEntryDecoderCreationAndAtLevelZeroTheRule) {
  const auto sub = add(voiceName);
  const std::string self = addressOf(machine(voiceName)->aclSubConfigSm().get());
  TraceCapture trace({0, 2, 8, 9});
  addRule(*sub, 10, dscp(46));
  EXPECT_THAT(
      trace.lines(),
      ElementsAre(
          "8 " + self + " void QosOc::AclSubConfigSm::handleRuleBySequence(uint32_t) ( 10 ) ",
          decoder + std::string(voiceName),
          "8 " + self +
              "  Creating classifier named: edge-in and termId named: voice of type: "
              "classifierTypeIpv4",
          "0 " + self + " Rule Config: {dscp 46, matchDscp true}"));
  EXPECT_THAT(trace.handles(), testing::Each("OpenConfigQos"));
}

TEST_F(AclTranslation, ARemovedIpv4RuleIsTracedAsADefaultRule) {
  const auto sub = add(voiceName, {{10, dscp(46)}});
  TraceCapture trace({0});
  removeRule(*sub, 10);
  EXPECT_THAT(trace.lines(), ElementsAre(HasSubstr("Rule Config: {dscp 0, matchDscp false}")));
}

TEST_F(AclTranslation, AnIpv6RuleIsNotShown) {
  const auto sub = add6(voiceName);
  TraceCapture trace({0, 2, 8, 9});
  addRule(*sub, 10, trafficClass(0xb8));
  EXPECT_THAT(trace.lines(),
              ElementsAre(HasSubstr("handleRuleBySequence(uint32_t) ( 10 ) "), StartsWith(decoder),
                          HasSubstr(" Creating classifier named: edge-in and termId "
                                    "named: voice of type: classifierTypeIpv6")));
}

TEST_F(AclTranslation, ARuleOfAForeignAclTracesEntryAndDecoderAlone) {
  const auto sub = add("MGMT-SSH");
  const auto placeholder = add("__yang_[edge-in]_[]");
  TraceCapture trace({0, 2, 8, 9});
  addRule(*sub, 10, dscp(46));
  addRule(*placeholder, 10, dscp(46));
  EXPECT_THAT(
      trace.lines(),
      ElementsAre(HasSubstr("handleRuleBySequence"), decoder + std::string("MGMT-SSH"),
                  HasSubstr("handleRuleBySequence"), decoder + std::string("__yang_[edge-in]_[]")));
}

TEST_F(AclTranslation, DeletingAnAclTracesWhatItDeletes) {
  add(voiceName, {{10, dscp(46)}});
  const std::string type = addressOf(types().get());
  TraceCapture trace({0, 2, 8, 9});
  remove(voiceName);
  EXPECT_THAT(
      trace.lines(),
      ElementsAre("8 " + type + " void QosOc::AclTypeSm::handleAclConfig(const Velmo::String&) ( " +
                      voiceName + " ) ",
                  "8 AclConfigSm( __yang_[edge-in]_[voice],aclTypeIpv4 ):: void "
                  "QosOc::AclConfigSm::doPrepareToDie() (  ) ",
                  decoder + std::string(voiceName),
                  "8 AclConfigSm( __yang_[edge-in]_[voice],aclTypeIpv4 ):: Deleting conditions for "
                  "termId named: voice for classifier named: edge-in"));
}

TEST_F(AclTranslation, TheDeletionIsTracedAlsoWhenTheTermIsNotThereAndNeverForAForeignAcl) {
  bare(voiceName);
  bare("MGMT-SSH");
  TraceCapture trace({8});
  remove(voiceName);
  remove("MGMT-SSH");
  EXPECT_THAT(trace.linesWith("Deleting"),
              ElementsAre(HasSubstr("Deleting conditions for termId named: voice for classifier "
                                    "named: edge-in")));
}

TEST_F(AclTranslation, ASubConfigurationTracesTheStaleDeletionWhateverItsRulesAndName) {
  bare(voiceName);
  bare("MGMT-SSH");
  const std::string entry = "void QosOc::AclSubConfigSm::handleInitialized() (  ) ";
  {
    TraceCapture trace({0, 2, 8, 9});
    acl(voiceName)->aclSubConfigIs(subConfig({{10, dscp(46)}}));
    EXPECT_THAT(trace.lines(),
                ElementsAre("8 AclConfigSm( __yang_[edge-in]_[voice],aclTypeIpv4 ):: void "
                            "QosOc::AclConfigSm::handleAclSubConfig() (  ) ",
                            HasSubstr(entry), HasSubstr("handleRuleBySequence"),
                            StartsWith(decoder), HasSubstr("Creating"), HasSubstr("Rule Config: "),
                            "8 " + addressOf(machine(voiceName)->aclSubConfigSm().get()) +
                                " Deleting stale config for last rule deletion"))
        << "after the rules, and no second look at the name";
  }
  for (const char* name : {voiceName, "MGMT-SSH"}) {
    TraceCapture trace({0, 2, 8, 9});
    acl(name)->aclSubConfigIs(subConfig());
    EXPECT_THAT(trace.lines(),
                ElementsAre(HasSubstr("handleAclSubConfig"), HasSubstr(entry),
                            HasSubstr("Deleting stale config for last rule deletion"),
                            decoder + std::string(name)));
  }
  TraceCapture trace({0, 2, 8, 9});
  acl("MGMT-SSH")->aclSubConfigIs(subConfig({{10, dscp(46)}}));
  EXPECT_EQ(trace.linesWith("Deleting stale config for last rule deletion").size(), 1u);
}

TEST_F(AclTranslation, LosingTheSubConfigurationTracesItsEntryAlone) {
  add(voiceName, {{10, dscp(46)}});
  TraceCapture trace({0, 2, 8, 9});
  acl(voiceName)->aclSubConfigIs(nullptr);
  EXPECT_THAT(trace.lines(), ElementsAre(HasSubstr("handleAclSubConfig() (  ) ")));
}

TEST(AclTrace, EveryStepOfAStartOpensWithItsEntryLineAndTheSweepIsSilent) {
  AclDevice device;
  device.earlier("core-in", termOf("voice"));
  device.bare(voiceName);
  TraceCapture trace({0, 2, 8, 9});
  device.start();
  EXPECT_THAT(trace.lines(),
              ElementsAre("8 " + addressOf(device.root.get()) +
                              " void QosOc::AclKivToOcSm::handleInitialized() (  ) ",
                          HasSubstr("void QosOc::AclTypeSm::handleInitialized() (  ) "),
                          HasSubstr("void QosOc::AclTypeSm::handleAclConfig("),
                          HasSubstr("void QosOc::AclConfigSm::handleInitialized() (  ) "),
                          HasSubstr("void QosOc::AclConfigSm::handleAclSubConfig() (  ) "),
                          HasSubstr("void QosOc::AclTypeSm::handleInitialized() (  ) ")));
  EXPECT_EQ(conditionsText(device.term("core-in", "voice")), "default") << "and yet it swept";
}

TEST_F(AclTranslation, ATypesPrepareToDieOpensWithItsEntryLine) {
  TraceCapture trace({0, 2, 8, 9});
  types()->doPrepareToDie();
  EXPECT_THAT(trace.lines(), ElementsAre("8 " + addressOf(types().get()) +
                                         " void QosOc::AclTypeSm::doPrepareToDie() (  ) "));
}

TEST_F(AclTranslation, AMachinePrintsAsItsNameAndType) {
  add6(voiceName);
  std::ostringstream out;
  out << *machine(voiceName, aclTypeIpv6);
  EXPECT_EQ(out.str(), "AclConfigSm( __yang_[edge-in]_[voice],aclTypeIpv6 )::");
}

// ===== Oracles

// The translator told again in plain maps, with the history of each sub-configuration.
//
// A restart may differ from the incremental model, on purpose: it forgets the values of rules that
// went or changed, puts the rest in the order of their sequence numbers, resets the terms whose
// family's ACL has gone, and gives a classifier the type of the last ACL of the replay.
class PlainModel {
 public:
  enum Family { four, six };
  using Values = std::vector<int>;  // -1 stands for a rule without a DSCP
  struct PlainAcl {
    bool hasRules = false;  // there is a sub-configuration
    std::map<unsigned, int> rules;
    Values collected;
  };

  PlainAcl& acl(Family family, const std::string& name) { return acls_[family][name]; }
  bool has(Family family, const std::string& name) const { return acls_[family].contains(name); }

  void add(Family family, const std::string& name) { acls_[family][name] = {}; }
  void remove(Family family, const std::string& name) {
    reset(name);
    acls_[family].erase(name);
  }
  void subConfigNone(Family family, const std::string& name) { acls_[family][name] = {}; }
  void subConfigNew(Family family, const std::string& name, std::map<unsigned, int> rules) {
    PlainAcl& acl = acls_[family][name];
    acl.hasRules = true;
    acl.rules = std::move(rules);
    replay(family, name, acl);
  }
  void rule(Family family, const std::string& name, unsigned sequence, int dscp) {
    acls_[family][name].rules[sequence] = dscp;
    event(family, name, dscp);
  }
  void ruleDel(Family family, const std::string& name, unsigned sequence) {
    acls_[family][name].rules.erase(sequence);
    event(family, name, -1);
  }

  void restart() {
    for (const Family family : {four, six}) {
      for (auto& [name, acl] : acls_[family]) {
        if (acl.hasRules) replay(family, name, acl);
      }
      for (auto& [classifier, value] : classifiers_) {
        if (value.first != family) continue;
        for (auto& [term, text] : value.second) {
          if (!has(family, "__yang_[" + classifier + "]_[" + term + "]")) text = "default";
        }
      }
    }
  }

  Model model() const {
    Model result;
    for (const auto& [name, classifier] : classifiers_) {
      auto& terms = result[name + (classifier.first == four ? "/v4" : "/v6")];
      for (const auto& [term, text] : classifier.second) terms.push_back(term + ": " + text);
    }
    return result;
  }

 private:
  void replay(Family family, const std::string& name, PlainAcl& acl) {
    acl.collected.clear();
    for (const auto& [sequence, dscp] : acl.rules) event(family, name, dscp);
    if (acl.rules.empty()) reset(name);
  }
  void event(Family family, const std::string& name, int dscp) {
    const auto [classifier, term] = classifierKeyFromConfigObjName(name);
    if (term.empty()) return;
    Values& collected = acls_[family][name].collected;
    if (dscp >= 0) collected.push_back(dscp);
    std::string text;
    for (const int value : collected) text += (text.empty() ? "" : ", ") + std::to_string(value);
    if (collected.size() > 1) text = "[" + text + "]";
    if (!text.empty()) text = (family == four ? "ipv4 " : "ipv6 ") + text;
    auto& written = classifiers_[std::string(std::string_view(classifier))];
    written.first = family;
    written.second[std::string(std::string_view(term))] = text.empty() ? "default" : text;
  }
  void reset(const std::string& name) {
    const auto [classifier, term] = classifierKeyFromConfigObjName(name);
    const auto found = classifiers_.find(std::string(std::string_view(classifier)));
    if (found == classifiers_.end()) return;
    const auto text = found->second.second.find(std::string(std::string_view(term)));
    if (text != found->second.second.end()) text->second = "default";
  }

  std::map<std::string, PlainAcl> acls_[2];
  std::map<std::string, std::pair<Family, std::map<std::string, std::string>>> classifiers_;
};

class RandomDay {
 public:
  explicit RandomDay(std::uint32_t seed) : random_(seed) { device.start(); }

  void step() {
    static const std::vector<std::string> names = {"__yang_[a]_[x]", "__yang_[a]_[y]",
                                                   "__yang_[b]_[x]", "__yang_[b]_[]", "plain"};
    const auto family = pick(2) == 0 ? PlainModel::four : PlainModel::six;
    const std::string& name = names[pick(names.size())];
    auto& type = *(family == PlainModel::four ? device.ipv4 : device.ipv6);
    if (!plain.has(family, name)) {
      type.aclIs(name, Rok::make<Acl::AclConfig>(name, type.type()));
      return plain.add(family, name);
    }
    const Rok::Ptr<Acl::AclConfig> acl = *type.acl().find(name);
    const Rok::Ptr<Acl::AclSubConfig> sub = acl->aclSubConfig();
    const unsigned what = pick(20);
    if (what == 0) {
      plain.remove(family, name);
      type.aclDel(name);
    } else if (what == 1) {
      plain.subConfigNone(family, name);
      acl->aclSubConfigIs(nullptr);
    } else if (what <= 4 || !sub) {
      std::map<unsigned, int> rules;
      const auto made = Rok::make<Acl::AclSubConfig>();
      for (unsigned n = pick(4); n > 0; --n) {
        const unsigned sequence = pick(8);
        rules[sequence] = newRule(*made, sequence, family);
      }
      plain.subConfigNew(family, name, rules);
      acl->aclSubConfigIs(made);
    } else {
      const unsigned sequence = pick(8);
      if (what <= 8 && sub->ruleBySequence().find(sequence) != nullptr) {
        plain.ruleDel(family, name, sequence);
        removeRule(*sub, sequence);
      } else {
        plain.rule(family, name, sequence, newRule(*sub, sequence, family));
      }
    }
  }

  AclDevice device;
  PlainModel plain;

 private:
  unsigned pick(std::size_t n) { return static_cast<unsigned>(random_() % n); }
  int newRule(Acl::AclSubConfig& sub, unsigned sequence, PlainModel::Family family) {
    const auto value = static_cast<unsigned char>(pick(64));
    const bool matches = pick(4) != 0;
    if (family == PlainModel::four) {
      addRule(sub, sequence, matches ? dscp(value) : noDscp());
    } else {
      addRule(sub, sequence,
              trafficClass(static_cast<unsigned char>(value << 2), matches ? 0xfc : 0xf8));
    }
    return matches ? value : -1;
  }

  std::mt19937 random_;
};

TEST(AclOracle, RandomDaysAgreeWithPlainMapsAfterEachStepAndEachRestartInAnyWalkOrder) {
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    for (const std::uint32_t order : {0u, seed, seed * 7919u}) {
      const support::WalkOrder walk(order);
      RandomDay day(seed);
      for (int step = 1; step <= 300; ++step) {
        day.step();
        ASSERT_EQ(day.device.model(), day.plain.model()) << "seed " << seed << ", step " << step;
        if (step % 100 != 0) continue;
        day.device.restart();
        day.plain.restart();
        const Model once = day.device.model();
        ASSERT_EQ(once, day.plain.model()) << "restart, seed " << seed << ", step " << step;
        day.device.restart();
        ASSERT_EQ(day.device.model(), once) << "a second restart changes nothing, seed " << seed;
      }
    }
  }
}

}  // namespace
}  // namespace QosOc::aclTranslationTest
