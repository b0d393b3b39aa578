// ACLs into the conditions of classifier terms: what comes and what goes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/support/AclDevice.h"
#include "tests/support/AclFixture.h"

namespace QosOc::aclTranslationTest {
namespace {

using Acl::aclTypeIpv4;
using Acl::aclTypeIpv6;
using Classifier::classifierTypeIpv4;
using Classifier::classifierTypeIpv6;
using support::AclDevice;
using support::addRule;
using support::ClassMapDevice;
using support::dscp;
using support::Model;
using support::removeRule;
using support::subConfig;
using support::trafficClass;
using testing::ElementsAre;
using testing::IsEmpty;

using namespace support::aclCases;

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

}  // namespace
}  // namespace QosOc::aclTranslationTest
