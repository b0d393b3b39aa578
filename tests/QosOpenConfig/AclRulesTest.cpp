// The rules of ACLs into conditions.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/support/AclDevice.h"
#include "tests/support/AclFixture.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::aclRulesTest {
namespace {

using Acl::aclTypeIpv4;
using Classifier::classifierTypeIpv6;
using support::AclDevice;
using support::addRule;
using support::conditionsText;
using support::dscp;
using support::Model;
using support::noDscp;
using support::removeRule;
using support::subConfig;
using support::TraceCapture;
using support::trafficClass;
using testing::ElementsAre;
using testing::IsEmpty;

using namespace support::aclCases;

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
  EXPECT_EQ(machineBefore->references(), 1u) << "no other pointer holds the old machine";
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

}  // namespace
}  // namespace QosOc::aclRulesTest
