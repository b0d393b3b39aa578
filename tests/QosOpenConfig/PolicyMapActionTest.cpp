// Policy maps into the actions of classifier terms.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/support/PolicyDevice.h"
#include "tests/support/PolicyMapFixture.h"

namespace QosOc::policyMapActionTest {
namespace {

using support::ActionModel;
using support::classAction;
using support::PolicyDevice;

using namespace support::policyMapCases;

// ===== The road of one event

TEST(PolicyMapAction, AClassThatSetsATrafficClassGivesItsTermTheForwardingGroup) {
  PolicyDevice device;
  device.start();
  device.addClass(edge, voice, 5);
  EXPECT_EQ(device.model(), edgeVoice("expedited"));
}

TEST(PolicyMapAction, AStartTranslatesWhatExists) {
  PolicyDevice device({{"expedited", 5}, {"assured", 3}});
  device.addClass(both, voice, 5);
  device.addClass(both, video, 3);
  device.addClass(both, voice6, 5);
  device.start();
  EXPECT_EQ(device.model(),
            (ActionModel{{"edge-in/v4", {{"voice", "expedited"}, {"video", "assured"}}},
                         {"edge-in6/v6", {{"voice", "expedited"}}}}));
}

TEST(PolicyMapAction, APolicyMapMakesItsClassifiersWithNameAndTypeBeforeAnyClass) {
  PolicyDevice device;
  device.start();
  device.addPolicyMap(both);
  EXPECT_EQ(device.model(), (ActionModel{{"edge-in/v4", {}}, {"edge-in6/v6", {}}}));
  EXPECT_EQ(device.classifiers->classifier("edge-in")->config(),
            (Config::ClassifierConfig{"edge-in", v4}));
  EXPECT_EQ(device.classifiers->classifier("edge-in6")->config(),
            (Config::ClassifierConfig{"edge-in6", v6}));
  EXPECT_EQ(device.classifiers->classifier("edge-in")->terms(), nullptr);
}

TEST(PolicyMapAction, APolicyMapOfOneFamilyMakesOneClassifierAndAMachineForEveryClass) {
  PolicyDevice device;
  device.start();
  device.addPolicyMap(edge6);
  EXPECT_EQ(device.model(), (ActionModel{{"edge-in6/v6", {}}}));
  device.addClass(edge6, voice6, 5);
  device.addClass(edge6, voice, 5);
  EXPECT_THAT(device.machine(edge6)->classActionSm().members(), 2u);
  EXPECT_EQ(device.model(), (ActionModel{{"edge-in6/v6", {{"voice", "expedited"}}},
                                         {"edge-in/v6", {{"voice", "expedited"}}}}));
}

// ===== Names that are none of ours

TEST(PolicyMapAction, APolicyMapWhoseNameGivesNoClassifierIsLeftAlone) {
  PolicyDevice device;
  device.start();
  for (const char* name :
       {"plain", "", "__yang_", "__yang_[IPV6__b][IPV4__a]", "__yang_[IPV4__]"}) {
    device.addClass(name, voice, 5);
    EXPECT_EQ(device.types()->pmapConfigSm().members(), 0u) << name;
    device.removePolicyMap(name);
  }
  EXPECT_EQ(device.model(), ActionModel{});
}

TEST(PolicyMapAction, AClassWhoseNameGivesNoTermIsLeftAlone) {
  PolicyDevice device;
  device.start();
  for (const char* name : {"plain", "", "__yang_[edge-in]_[]", "__yang_[]_[voice]"}) {
    device.addClass(edge, name, 5);
  }
  EXPECT_EQ(device.machine(edge)->classActionSm().members(), 0u);
  EXPECT_EQ(device.model(), (ActionModel{{"edge-in/v4", {}}}));
  device.earlier("edge-in", {{"voice", "expedited"}});
  for (const char* name : {"plain", "", "__yang_[edge-in]_[]", "__yang_[]_[voice]"}) {
    device.removeClass(edge, name);
  }
  EXPECT_EQ(device.model(), edgeVoice("expedited"));
}

TEST(PolicyMapAction, AClassNameThatGivesNoTermClaimsNothingInTheSweep) {
  PolicyDevice device;
  device.addClass(edge, "__yang_[edge-in]_[]", 5);
  device.earlier("edge-in", {{"", "expedited"}, {"voice", "expedited"}});
  device.start();
  EXPECT_EQ(device.model(), (ActionModel{{"edge-in/v4", {{"", "blank"}, {"voice", "blank"}}}}));
}

TEST(PolicyMapAction, AForeignClassifierCountsAsAnIpv6One) {
  PolicyDevice device;
  device.start();
  device.addClass(both, foreign, 5);
  EXPECT_EQ(device.machine(both, foreign)->classifierType(), v6);
  EXPECT_EQ(device.actionMachine(both, foreign)->classifierType(), v6);
  EXPECT_EQ(device.model(), (ActionModel{{"core-in/v6", {{"voice", "expedited"}}},
                                         {"edge-in/v4", {}},
                                         {"edge-in6/v6", {}}}));
}

TEST(PolicyMapAction, ANameThatServesBothFamiliesIsAnIpv6ClassifierUntilAClassMakesItIpv4) {
  PolicyDevice device;
  device.start();
  device.addPolicyMap("__yang_[IPV4__edge-in][IPV6__edge-in]");
  EXPECT_EQ(device.model(), (ActionModel{{"edge-in/v6", {}}}));
  device.addClass("__yang_[IPV4__edge-in][IPV6__edge-in]", voice, 5);
  EXPECT_EQ(device.model(), edgeVoice("expedited"));
}

// ===== The order in which native events arrive

TEST_F(PolicyMapEvents, NameThenAction) {
  addGroup("expedited", 5);
  addClass(edge, voice);
  setTc(edge, voice, 5);
  EXPECT_EQ(model(), edgeVoice("expedited"));
}

TEST_F(PolicyMapEvents, AnActionThatGoesIsTakenBackFromTheClassifierThatStandsNow) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  classifiers->classifierDel("edge-in");
  earlier("edge-in", {{"voice", "expedited"}});
  removeTc(edge, voice);
  EXPECT_EQ(model(), edgeVoice("blank"));
}

TEST_F(PolicyMapEvents, ActionThenName) {
  addClass(edge, voice, 5);
  EXPECT_EQ(model(), edgeVoice("blank"));
  const auto child = actionMachine(edge, voice);
  ASSERT_NE(child, nullptr);
  addGroup("expedited", 5);
  EXPECT_EQ(model(), edgeVoice("expedited"));
  EXPECT_EQ(actionMachine(edge, voice), child) << "the same machine learns of the name";
}

TEST_F(PolicyMapEvents, ClassWithoutAnActionThatComesLater) {
  addGroup("expedited", 5);
  addClass(edge, voice);
  EXPECT_EQ(model(), edgeVoice("blank"));
  EXPECT_EQ(actionMachine(edge, voice), nullptr);
  setTc(edge, voice, 5);
  EXPECT_EQ(model(), edgeVoice("expedited"));
}

TEST_F(PolicyMapEvents, ClassWithoutAnActionThatComesLaterForATrafficClassWithoutAName) {
  addClass(edge, voice);
  setTc(edge, voice, 5);
  EXPECT_EQ(model(), edgeVoice("blank"));
  EXPECT_NE(actionMachine(edge, voice), nullptr);
}

TEST_F(PolicyMapEvents, NameRemovedWhileTheActionStays) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  removeGroup("expedited");
  EXPECT_EQ(model(), edgeVoice("blank"));
  EXPECT_EQ(actionMachine(edge, voice), nullptr);
}

TEST_F(PolicyMapEvents, NameRemovedAndBack) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  const auto first = actionMachine(edge, voice);
  removeGroup("expedited");
  addGroup("expedited", 5);
  EXPECT_EQ(model(), edgeVoice("expedited"));
  EXPECT_NE(actionMachine(edge, voice), nullptr);
  EXPECT_NE(actionMachine(edge, voice), first);
}

TEST_F(PolicyMapEvents, AnEarlierNameOfTheSameTrafficClassTakesOver) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  addGroup("assured", 5);
  EXPECT_EQ(model(), edgeVoice("assured"));
  removeGroup("assured");
  EXPECT_EQ(model(), edgeVoice("expedited"));
}

TEST_F(PolicyMapEvents, ALaterNameOfTheSameTrafficClassChangesNothing) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  addGroup("zeta", 5);
  EXPECT_EQ(model(), edgeVoice("expedited"));
  removeGroup("expedited");
  EXPECT_EQ(model(), edgeVoice("zeta"));
}

TEST_F(PolicyMapEvents, ANameThatMovesToAnotherTrafficClass) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  addClass(edge, video, 3);
  addGroup("expedited", 3);
  EXPECT_EQ(model(), (ActionModel{{"edge-in/v4", {{"voice", "blank"}, {"video", "expedited"}}}}));
}

TEST_F(PolicyMapEvents, ValueThatLosesItsNameBlanksAndKeepsTheMachine) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  const auto child = actionMachine(edge, voice);
  setTc(edge, voice, 3);
  EXPECT_EQ(model(), edgeVoice("blank"));
  EXPECT_EQ(actionMachine(edge, voice), child);
  setTc(edge, voice, 5);
  EXPECT_EQ(model(), edgeVoice("expedited"));
}

TEST_F(PolicyMapEvents, ValueThatChangesToAnotherName) {
  addGroup("expedited", 5);
  addGroup("assured", 3);
  addClass(edge, voice, 5);
  setTc(edge, voice, 3);
  EXPECT_EQ(model(), edgeVoice("assured"));
}

TEST_F(PolicyMapEvents, ActionRemoved) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  removeTc(edge, voice);
  EXPECT_EQ(model(), edgeVoice("blank"));
  EXPECT_EQ(actionMachine(edge, voice), nullptr);
  setTc(edge, voice, 5);
  EXPECT_EQ(model(), edgeVoice("expedited"));
}

TEST_F(PolicyMapEvents, ActionRemovedWhileItsMachineIsGone) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  removeGroup("expedited");
  const auto classifier = classifiers->classifier("edge-in");
  Config::Term term = classifier->terms()->term("voice");
  term.actions = Config::TermActions{{"by-hand"}};
  classifier->terms()->termIs(term);
  removeTc(edge, voice);
  EXPECT_EQ(model(), edgeVoice("by-hand")) << "without a child nothing is done";
}

TEST_F(PolicyMapEvents, ClassRemoved) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  addClass(edge, video, 5);
  removeClass(edge, voice);
  EXPECT_EQ(model(), (ActionModel{{"edge-in/v4", {{"video", "expedited"}}}}));
  EXPECT_EQ(machine(edge, voice), nullptr);
}

// The machine of the action went when its traffic class lost its name, and with it the watch on the
// value: what the value becomes then is heard of only with the next change of the map.
TEST_F(PolicyMapEvents, AValueThatChangesWhileItsMachineIsGoneWaitsForTheMap) {
  addGroup("expedited", 5);
  addGroup("assured", 3);
  addClass(edge, voice, 5);
  removeGroup("expedited");
  setTc(edge, voice, 3);
  EXPECT_EQ(model(), edgeVoice("blank"));
  addGroup("unrelated", 7);
  EXPECT_EQ(model(), edgeVoice("assured"));
}

// ===== Other action kinds

TEST_F(PolicyMapEvents, AnotherKindOfActionChangesNothingWhetherItComesOrGoes) {
  addGroup("expedited", 5);
  const auto classOf = addClass(edge, voice, 5);
  const auto child = actionMachine(edge, voice);
  classOf->policyActionIs(otherKind, Rok::make<Qos::Action>(otherKind, 5));
  EXPECT_EQ(machine(edge, voice)->policyActionSm().members(), 1u);
  classOf->policyActionDel(otherKind);
  EXPECT_EQ(model(), edgeVoice("expedited"));
  EXPECT_EQ(actionMachine(edge, voice), child);
}

TEST_F(PolicyMapEvents, AClassWithAnotherKindOfActionAloneIsBlanked) {
  addGroup("expedited", 5);
  const auto made = classAction(voice);
  made->policyActionIs(otherKind, Rok::make<Qos::Action>(otherKind, 5));
  addPolicyMap(edge)->classActionIs(voice, made);
  EXPECT_EQ(model(), edgeVoice("blank"));
  EXPECT_EQ(machine(edge, voice)->policyActionSm().members(), 0u);
}

// ===== What a term keeps

TEST_F(PolicyMapEvents, AnActionPassesConditionsAndConfigIdThrough) {
  addGroup("expedited", 5);
  const auto terms = classifiers->classifierIs("edge-in")->termsIs();
  Config::Term term("voice");
  term.configId = "another-writers";
  term.conditions = voiceConditions();
  terms->termIs(term);

  addClass(edge, voice, 5);
  term.actions = Config::TermActions{{"expedited"}};
  EXPECT_EQ(terms->term("voice"), term);
  setTc(edge, voice, 3);
  term.actions = Config::TermActions();
  EXPECT_EQ(terms->term("voice"), term);
  setTc(edge, voice, 5);
  removeTc(edge, voice);
  EXPECT_EQ(terms->term("voice"), term);
}

TEST_F(PolicyMapEvents, ANewTermHasItsIdTwiceAndNoConditions) {
  addClass(edge, voice);
  Config::Term expected("voice");
  expected.configId = "voice";
  expected.actions = Config::TermActions();
  EXPECT_EQ(term("edge-in", "voice"), expected);
}

TEST_F(PolicyMapEvents, AnActionMakesClassifierAndTermAgainThatHadGone) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  classifiers->classifierDel("edge-in");
  setTc(edge, voice, 3);
  EXPECT_EQ(model(), ActionModel{}) << "blanking makes nothing";
  setTc(edge, voice, 5);
  EXPECT_EQ(model(), edgeVoice("expedited"));
  EXPECT_EQ(term("edge-in", "voice").configId, "voice");
}

TEST_F(PolicyMapEvents, BlankingMakesNeitherTermsNorATerm) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  const auto classifier = classifiers->classifier("edge-in");
  classifier->termsIs()->termIs(Config::Term("video"));
  classifier->terms()->termDel("voice");
  setTc(edge, voice, 3);
  EXPECT_EQ(model(), (ActionModel{{"edge-in/v4", {{"video", "-"}}}}));
  classifier->termsDel();
  setTc(edge, voice, 4);
  EXPECT_EQ(model(), (ActionModel{{"edge-in/v4", {}}}));
}

TEST_F(PolicyMapEvents, AnActionWritesTheClassifiersConfigAgainAndBlankingLeavesIt) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  const auto classifier = classifiers->classifier("edge-in");
  classifier->configIs({"another", v6});
  setTc(edge, voice, 3);
  EXPECT_EQ(classifier->config(), (Config::ClassifierConfig{"another", v6}));
  setTc(edge, voice, 5);
  EXPECT_EQ(classifier->config(), (Config::ClassifierConfig{"edge-in", v4}));
}

}  // namespace
}  // namespace QosOc::policyMapActionTest
