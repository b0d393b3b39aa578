// Policy maps into the actions of classifier terms.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/support/PolicyDevice.h"
#include "tests/support/Refusals.h"
#include "tests/support/TraceCapture.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::policyMapActionTest {
namespace {

using Qos::actionSetTc;
using support::ActionModel;
using support::AtEachLine;
using support::classAction;
using support::nullArgument;
using support::PolicyDevice;
using support::reinstantiating;
using support::TraceCapture;
using support::WalkOrder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr auto edge = "__yang_[IPV4__edge-in]";
constexpr auto edge6 = "__yang_[IPV6__edge-in6]";
constexpr auto both = "__yang_[IPV4__edge-in][IPV6__edge-in6]";
constexpr auto voice = "__yang_[edge-in]_[voice]";
constexpr auto video = "__yang_[edge-in]_[video]";
constexpr auto voice6 = "__yang_[edge-in6]_[voice]";
constexpr auto foreign = "__yang_[core-in]_[voice]";
constexpr auto otherKind = Qos::ActionType{9};
constexpr auto otherType = Qos::MapType{7};

const auto v4 = Classifier::classifierTypeIpv4;
const auto v6 = Classifier::classifierTypeIpv6;

ActionModel edgeVoice(const std::string& action) { return {{"edge-in/v4", {{"voice", action}}}}; }

Config::TermConditions voiceConditions() {
  Config::TermConditions conditions;
  conditions.ipv4.dscp = 46;
  return conditions;
}

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

struct PolicyMapEvents : testing::Test, PolicyDevice {
  PolicyMapEvents() : PolicyDevice(Names()) { start(); }
};

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

// ===== The map of names

TEST_F(PolicyMapEvents, AReplacedMapReEvaluatesNothingUntilOneOfItsEntriesChanges) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  replaceGroups({{"assured", 5}});
  EXPECT_EQ(model(), edgeVoice("expedited"));
  addGroup("unrelated", 7);
  EXPECT_EQ(model(), edgeVoice("assured"));
}

TEST_F(PolicyMapEvents, AReplacedMapThatLacksTheNameBlanksWithItsFirstChange) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  replaceGroups({});
  EXPECT_EQ(model(), edgeVoice("expedited"));
  addGroup("unrelated", 7);
  EXPECT_EQ(model(), edgeVoice("blank"));
}

TEST_F(PolicyMapEvents, AValueThatChangesAfterTheReplacementReadsTheNewMap) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  replaceGroups({{"assured", 3}});
  setTc(edge, voice, 3);
  EXPECT_EQ(model(), edgeVoice("assured"));
}

TEST_F(PolicyMapEvents, TheChainedInputMayBePointedElsewhereAndTheHandlerStillReadsTheMountedMap) {
  addGroup("expedited", 5);
  addClass(edge, voice);
  const auto sm = machine(edge, voice);
  const auto other = Rok::make<Groups>();
  sm->rok_CliConfig_ForwardingGroupNameToTcMapInIs(other);
  EXPECT_EQ(sm->rok_CliConfig_ForwardingGroupNameToTcMapIn(), other);
  setTc(edge, voice, 5);
  removeGroup("expedited");
  EXPECT_EQ(model(), edgeVoice("expedited")) << "nobody watches the mounted map";
  other->forwardingGroupNameToTcIs("other", 5);
  EXPECT_EQ(model(), edgeVoice("blank")) << "the other map wakes, the mounted one is read";
}

TEST_F(PolicyMapEvents, OfTwoNamesOfATrafficClassTheLeastWinsWhateverTheOrderOfArrival) {
  for (const bool ascending : {true, false}) {
    for (const char* name : {"expedited", "assured", "Zeta"}) removeGroup(name);
    addGroup(ascending ? "assured" : "expedited", 5);
    addGroup(ascending ? "expedited" : "assured", 5);
    addClass(edge, voice, 5);
    EXPECT_EQ(model(), edgeVoice("assured"));
    addGroup("Zeta", 5);
    EXPECT_EQ(model(), edgeVoice("Zeta")) << "by bytes, not by alphabet";
    removeClass(edge, voice);
  }
}

// The empty name is the least of all: it is a match for the map's handler, which hands it on, and
// no name for a change of the value. Either way the action comes out blanked.
TEST_F(PolicyMapEvents, AnEmptyForwardingGroupNameBlanksAndKeepsTheMachine) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  const auto child = actionMachine(edge, voice);
  TraceCapture trace({8});
  addGroup("", 5);
  EXPECT_EQ(model(), edgeVoice("blank"));
  EXPECT_EQ(actionMachine(edge, voice), child);
  EXPECT_THAT(trace.linesWith("addClassifierTermAction"), SizeIs(1));
  trace.clear();
  child->handlePolicyActionValue();
  EXPECT_THAT(trace.linesWith("addClassifierTermAction"), IsEmpty());
  EXPECT_EQ(model(), edgeVoice("blank"));
}

TEST_F(PolicyMapEvents, AnOperandAboveAByteNeverFindsAName) {
  addGroup("zero", 0);
  addGroup("five", 5);
  addClass(edge, voice, 256);
  EXPECT_EQ(model(), edgeVoice("blank"));
  for (const std::uint32_t tc : {261u, 0xffffff05u, 0xffffffffu}) {
    setTc(edge, voice, tc);
    EXPECT_EQ(model(), edgeVoice("blank")) << tc;
  }
  addGroup("other", 7);
  EXPECT_EQ(model(), edgeVoice("blank")) << "nor by way of the map's handler";
  EXPECT_EQ(actionMachine(edge, voice), nullptr);
}

TEST_F(PolicyMapEvents, ATrafficClassOf255FindsItsName) {
  addGroup("last", 255);
  addClass(edge, voice, 255);
  EXPECT_EQ(model(), edgeVoice("last"));
}

TEST_F(PolicyMapEvents, AMapChangeWithoutASetTcActionLeavesEverythingAndTracesTheSkip) {
  addClass(edge, voice);
  const auto classifier = classifiers->classifier("edge-in");
  Config::Term term = classifier->terms()->term("voice");
  term.actions = Config::TermActions{{"by-hand"}};
  classifier->terms()->termIs(term);
  TraceCapture trace({0, 2, 8, 9});
  addGroup("expedited", 5);
  EXPECT_EQ(model(), edgeVoice("by-hand"));
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre("8 void QosOc::ClassActionSm::handleForwardingGroupNameToTcMap() (  ) ",
                          "8 void QosOc::ClassActionSm::handleForwardingGroupNameToTcMap(), the "
                          "classAction = __yang_[edge-in]_[voice] has no set traffic-class action, "
                          "skipping"));
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

// ===== Classes that go

TEST_F(PolicyMapEvents, TheTermOfARemovedClassGoesWholeWithItsConditions) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  addClass(edge, video, 5);
  Config::Term term = this->term("edge-in", "voice");
  term.conditions = voiceConditions();
  classifiers->classifier("edge-in")->terms()->termIs(term);
  removeClass(edge, voice);
  EXPECT_EQ(model(), (ActionModel{{"edge-in/v4", {{"video", "expedited"}}}}));
}

TEST_F(PolicyMapEvents, RemovingTheLastTermRemovesTermsAndKeepsTheClassifier) {
  addClass(edge, voice);
  removeClass(edge, voice);
  EXPECT_EQ(model(), (ActionModel{{"edge-in/v4", {}}}));
  EXPECT_EQ(classifiers->classifier("edge-in")->terms(), nullptr);
}

TEST_F(PolicyMapEvents, ARemovedClassOfAClassifierWithoutTermsKeepsItsMachine) {
  addClass(edge, voice, 5);
  const auto sm = machine(edge, voice);
  classifiers->classifier("edge-in")->termsDel();
  removeClass(edge, voice);
  EXPECT_EQ(machine(edge, voice), sm);
  EXPECT_EQ(model(), (ActionModel{{"edge-in/v4", {}}}));
}

TEST_F(PolicyMapEvents, ARemovedClassOfAClassifierThatHasGoneKeepsItsMachine) {
  addClass(edge, voice, 5);
  classifiers->classifierDel("edge-in");
  removeClass(edge, voice);
  EXPECT_NE(machine(edge, voice), nullptr);
  EXPECT_EQ(model(), ActionModel{}) << "the lookup makes nothing";
}

// What the machine that stayed still watches keeps reaching the output.
TEST_F(PolicyMapEvents, TheMachineThatStaysGoesOnTranslating) {
  addClass(edge, voice, 5);
  classifiers->classifier("edge-in")->termsDel();
  removeClass(edge, voice);
  addGroup("expedited", 5);
  EXPECT_EQ(model(), edgeVoice("expedited"));
}

// The machine that stayed was built from the class that went, so another one under its name is
// refused.
TEST_F(PolicyMapEvents, AClassThatComesBackAsAnotherObjectIsRefusedWhileTheOldMachineStays) {
  const auto first = addClass(edge, voice, 5);
  classifiers->classifier("edge-in")->termsDel();
  removeClass(edge, voice);
  EXPECT_EQ(reinstantiating([&] { addClass(edge, voice, 5); }), "classAction 130");
  EXPECT_EQ(machine(edge, voice)->classAction(), first);
}

TEST_F(PolicyMapEvents, ARemovedClassWithTermsButWithoutItsTermLosesItsMachine) {
  addClass(edge, voice, 5);
  const auto terms = classifiers->classifier("edge-in")->terms();
  terms->termIs(Config::Term("video"));
  terms->termDel("voice");
  removeClass(edge, voice);
  EXPECT_EQ(machine(edge, voice), nullptr);
  EXPECT_EQ(model(), (ActionModel{{"edge-in/v4", {{"video", "-"}}}}));
}

// Nothing asks whether the class was ever there.
TEST_F(PolicyMapEvents, HandlingAClassThatIsNotThereDeletesATermThatAnotherWriterMade) {
  addPolicyMap(edge);
  earlier("edge-in", {{"voice", "-"}, {"video", "-"}});
  machine(edge)->handleClassAction(voice);
  EXPECT_EQ(model(), (ActionModel{{"edge-in/v4", {{"video", "-"}}}}));
}

TEST_F(PolicyMapEvents, EmptyTermsGoWithAClassThatIsNotThere) {
  addPolicyMap(edge);
  classifiers->classifier("edge-in")->termsIs();
  machine(edge)->handleClassAction(voice);
  EXPECT_EQ(classifiers->classifier("edge-in")->terms(), nullptr);
}

TEST_F(PolicyMapEvents, ARemovedClassIsNotHeardAnyMore) {
  addGroup("expedited", 5);
  const auto classOf = addClass(edge, voice, 5);
  const auto action = findAction(edge, voice);
  removeClass(edge, voice);
  EXPECT_EQ(classOf->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(action->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(groups->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(config->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(Rok::AllocTrackTypeInfo::of<PolicyActionSm>().blocks(), 0u);
}

// ===== Policy maps and map types that go

TEST_F(PolicyMapEvents, ARemovedPolicyMapLeavesItsTermsWithTheirTargetGroups) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  removePolicyMap(edge);
  EXPECT_EQ(model(), edgeVoice("expedited"));
  EXPECT_EQ(types()->pmapConfigSm().members(), 0u);
  EXPECT_EQ(Rok::AllocTrackTypeInfo::of<ClassActionSm>().blocks(), 0u);
  removeGroup("expedited");
  EXPECT_EQ(model(), edgeVoice("expedited")) << "nobody watches any more";
}

TEST_F(PolicyMapEvents, APolicyMapsPrepareToDieReleasesItsClassesAndTouchesNoOutput) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  machine(edge)->doPrepareToDie();
  EXPECT_EQ(machine(edge)->classActionSm().members(), 0u);
  EXPECT_EQ(model(), edgeVoice("expedited"));
}

TEST_F(PolicyMapEvents, ATypesPrepareToDieReleasesEveryPolicyMap) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  addClass(edge6, voice6, 5);
  addPolicyMap("plain");
  types()->doPrepareToDie();
  EXPECT_EQ(types()->pmapConfigSm().members(), 0u);
  EXPECT_EQ(model(), (ActionModel{{"edge-in/v4", {{"voice", "expedited"}}},
                                  {"edge-in6/v6", {{"voice", "expedited"}}}}));
}

TEST_F(PolicyMapEvents, ARemovedMapTypeReleasesItsTreeAndTouchesNoOutput) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  TraceCapture trace({8});
  aclConfig->pmapTypeDel(Qos::mapQos);
  EXPECT_EQ(root->pmapTypeSm().members(), 0u);
  EXPECT_EQ(model(), edgeVoice("expedited"));
  EXPECT_EQ(policyMaps->notifieeList()->notifiees(), 0u);
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre("8 void QosOc::ClassActionKivToOcSm::handlePmapTypeConfig(Qos::MapType), "
                          "pmapType = mapQos",
                          "8 void QosOc::PmapTypeSm::doPrepareToDie() (  ) ",
                          "8 void QosOc::PmapConfigSm::doPrepareToDie() (  ) "));
}

TEST_F(PolicyMapEvents, AMapTypeThatComesAfterTheStartIsTranslated) {
  addGroup("expedited", 5);
  aclConfig->pmapTypeDel(Qos::mapQos);
  policyMaps = Rok::make<Qos::Input::PolicyMapTypeConfig>(Qos::mapQos);
  addClass(edge, voice, 5);
  EXPECT_EQ(model(), ActionModel{});
  aclConfig->pmapTypeIs(Qos::mapQos, policyMaps);
  EXPECT_EQ(model(), edgeVoice("expedited"));
}

TEST(PolicyMapAction, OnlyTheMapTypeOfQosIsTranslated) {
  PolicyDevice device;
  const auto other = Rok::make<Qos::Input::PolicyMapTypeConfig>(otherType);
  other->pmapIs(edge, Rok::make<Qos::PolicyMapConfig>(edge));
  device.aclConfig->pmapTypeIs(otherType, other);
  device.start();
  EXPECT_EQ(device.root->pmapTypeSm().members(), 1u);
  other->pmapIs(edge6, Rok::make<Qos::PolicyMapConfig>(edge6));
  device.aclConfig->pmapTypeDel(otherType);
  EXPECT_EQ(device.model(), ActionModel{});
  EXPECT_EQ(device.root->pmapTypeSm().members(), 1u);
  EXPECT_EQ(ClassActionKivToOcSm::mapType(), Qos::mapQos);
}

TEST(PolicyMapAction, WithoutAMapTypeTheRootWaitsForIt) {
  PolicyDevice device;
  device.aclConfig->pmapTypeDel(Qos::mapQos);
  device.addClass(edge, voice, 5);
  device.start();
  EXPECT_EQ(device.root->pmapTypeSm().members(), 0u);
  device.aclConfig->pmapTypeIs(Qos::mapQos, device.policyMaps);
  EXPECT_EQ(device.model(), edgeVoice("expedited"));
}

TEST_F(PolicyMapEvents, DeletionsOfWhatHasNoMachineHaveNoEffect) {
  earlier("edge-in", {{"voice", "expedited"}});
  types()->handlePmapConfig(edge);
  root->handlePmapTypeConfig(otherType);
  aclConfig->pmapTypeDel(Qos::mapQos);
  root->handlePmapTypeConfig(Qos::mapQos);
  EXPECT_EQ(model(), edgeVoice("expedited"));
}

// ===== Start and restart

TEST(PolicyMapActionStart, ATermThatNoClassClaimsIsBlankedAndNotDeleted) {
  PolicyDevice device;
  device.addPolicyMap(edge);
  device.earlier("edge-in", {{"voice", "expedited"}});
  device.start();
  EXPECT_EQ(device.model(), edgeVoice("blank"));
}

TEST(PolicyMapActionStart, ATermWithoutActionsComesOutWithABlankedOneAndIsTracedLikeTheOthers) {
  PolicyDevice device;
  device.addPolicyMap(edge);
  device.earlier("edge-in", {{"voice", "-"}});
  TraceCapture trace({8});
  device.start();
  EXPECT_EQ(device.model(), edgeVoice("blank"));
  EXPECT_THAT(
      trace.linesWith(", removed the stale action for classifier = edge-in, termId = voice"),
      SizeIs(1));
}

TEST(PolicyMapActionStart, TheSweepPassesConditionsAndConfigIdThrough) {
  PolicyDevice device;
  device.addPolicyMap(edge);
  device.earlier("edge-in", {{"voice", "expedited"}});
  Config::Term term = device.term("edge-in", "voice");
  term.configId = "another-writers";
  term.conditions = voiceConditions();
  device.classifiers->classifier("edge-in")->terms()->termIs(term);
  device.start();
  term.actions = Config::TermActions();
  EXPECT_EQ(device.term("edge-in", "voice"), term);
}

// The class has blanked such a term before, and the sweep does it once more.
TEST(PolicyMapActionStart, ATermWhoseClassHasNoUsableTargetIsBlankedAndTracedAsStale) {
  PolicyDevice device;
  device.addClass(edge, voice);
  device.addClass(edge, video, 3);
  device.addClass(edge, "__yang_[edge-in]_[data]", 5);
  device.earlier("edge-in", {{"voice", "old"}, {"video", "old"}, {"data", "old"}});
  TraceCapture trace({8});
  device.start();
  EXPECT_EQ(device.model(),
            (ActionModel{
                {"edge-in/v4", {{"voice", "blank"}, {"video", "blank"}, {"data", "expedited"}}}}));
  EXPECT_THAT(trace.linesWith(", removed the stale action for classifier = edge-in"), SizeIs(2));
  for (const char* term : {"termId = voice", "termId = video"}) {
    EXPECT_THAT(trace.linesWith(term), SizeIs(1)) << term;
  }
}

TEST(PolicyMapActionStart, TermsOfClassifiersThatAreNotThePolicyMapsStayAsTheyAre) {
  PolicyDevice device;
  device.addClass(edge, foreign, 5);
  device.earlier("core-in", {{"voice", "old"}, {"video", "old"}, {"data", "-"}});
  device.earlier("other-in", {{"voice", "old"}});
  device.start();
  EXPECT_EQ(device.model(),
            (ActionModel{{"edge-in/v4", {}},
                         {"core-in/v6", {{"voice", "expedited"}, {"video", "old"}, {"data", "-"}}},
                         {"other-in/v4", {{"voice", "old"}}}}));
}

TEST(PolicyMapActionStart, ThePlainPolicyMapsSweepNothing) {
  PolicyDevice device;
  device.addClass("plain", voice, 5);
  device.addClass("__yang_", voice, 5);
  device.earlier("edge-in", {{"voice", "old"}});
  device.earlier("", {{"voice", "old"}});
  device.start();
  EXPECT_EQ(device.model(),
            (ActionModel{{"edge-in/v4", {{"voice", "old"}}}, {"/v4", {{"voice", "old"}}}}));
}

// A policy map of one family has the empty name for the other one, and a classifier of that very
// name counts as its own.
TEST(PolicyMapActionStart, AClassifierOfTheEmptyNameIsSweptByAPolicyMapOfOneFamily) {
  for (const bool traced : {false, true}) {
    PolicyDevice device;
    device.addPolicyMap(edge);
    device.earlier("", {{"voice", "old"}});
    TraceCapture trace(traced ? std::initializer_list<unsigned>{8}
                              : std::initializer_list<unsigned>{});
    device.start();
    EXPECT_EQ(device.model(), (ActionModel{{"edge-in/v4", {}}, {"/v4", {{"voice", "blank"}}}}));
    EXPECT_THAT(trace.linesWith("does not belong to the pmap"), IsEmpty());
  }
}

TEST(PolicyMapActionStart, AClassifierOfTheEmptyNameIsLeftAloneByAPolicyMapOfBothFamilies) {
  PolicyDevice device;
  device.addPolicyMap(both);
  device.earlier("", {{"voice", "old"}});
  device.start();
  EXPECT_EQ(device.model(),
            (ActionModel{{"edge-in/v4", {}}, {"edge-in6/v6", {}}, {"/v4", {{"voice", "old"}}}}));
}

// The sweep asks for the policy map's own classes alone, so of two policy maps of one classifier
// the later name blanks what the earlier one had written.
TEST(PolicyMapActionStart, OfTwoPolicyMapsOfOneClassifierTheLastInNameOrderDecides) {
  ASSERT_LT(Velmo::String(edge), Velmo::String(both));
  for (std::uint32_t seed = 0; seed < 6; ++seed) {
    const WalkOrder order(seed);
    PolicyDevice device;
    device.addClass(both, voice, 5);
    device.addClass(edge, video, 5);
    device.start();
    EXPECT_EQ(device.model(),
              (ActionModel{{"edge-in/v4", {{"voice", "expedited"}, {"video", "blank"}}},
                           {"edge-in6/v6", {}}}));
  }
}

TEST(PolicyMapActionStart, APolicyMapThatComesLaterSweepsToo) {
  PolicyDevice device;
  device.start();
  device.earlier("edge-in", {{"voice", "old"}, {"video", "old"}});
  device.policyMaps->pmapIs(edge, [] {
    auto made = Rok::make<Qos::PolicyMapConfig>(edge);
    made->classActionIs(voice, classAction(voice, 5));
    return made;
  }());
  EXPECT_EQ(device.model(),
            (ActionModel{{"edge-in/v4", {{"voice", "expedited"}, {"video", "blank"}}}}));
}

// The sweep compares no target groups: the classes have written theirs already.
TEST(PolicyMapActionStart, AKeptTermIsNotWrittenByTheSweep) {
  PolicyDevice device;
  device.addClass(edge, voice, 5);
  device.earlier("edge-in", {{"voice", "old"}});
  TraceCapture trace({8});
  device.start();
  EXPECT_EQ(device.model(), edgeVoice("expedited"));
  EXPECT_THAT(trace.linesWith("stale action"), IsEmpty());
}

TEST(PolicyMapActionStart, TheOtherWritersTermsOfAnEarlierLifeSurviveARestartBlanked) {
  PolicyDevice device;
  device.addClass(edge, voice, 5);
  device.start();
  device.stop();
  device.removeClass(edge, voice);
  device.start();
  EXPECT_EQ(device.model(), edgeVoice("blank")) << "live, the term would have gone";
}

TEST(PolicyMapActionStart, SweepsOfManyClassifiersAreTheSameInAnyWalkOrderTracedOrNot) {
  for (std::uint32_t seed = 0; seed < 10; ++seed) {
    const WalkOrder order(seed);
    PolicyDevice device;
    ActionModel expected;
    for (int n = 0; n < 60; ++n) {
      const std::string name = "c" + std::to_string(n);
      device.earlier(name, {{"voice", "old"}, {"video", "-"}, {"data", "blank"}});
      support::Actions& actions = expected[name + "/v4"];
      actions = {{"voice", "old"}, {"video", "-"}, {"data", "blank"}};
      if (n % 3 == 0) continue;
      const std::string pmap = "__yang_[IPV4__" + name + "]";
      device.addPolicyMap(pmap);
      actions = {{"voice", "blank"}, {"video", "blank"}, {"data", "blank"}};
      if (n % 3 == 1) continue;
      device.addClass(pmap, "__yang_[" + name + "]_[video]", 5);
      actions["video"] = "expedited";
    }
    TraceCapture trace(seed % 2 == 0 ? std::initializer_list<unsigned>{8}
                                     : std::initializer_list<unsigned>{});
    device.start();
    EXPECT_EQ(device.model(), expected) << "seed " << seed;
    if (seed % 2 == 0) {
      EXPECT_THAT(trace.linesWith("does not belong to the pmap"), SizeIs(40 * 59));
      EXPECT_THAT(trace.linesWith("removed the stale action"), SizeIs(20 * 3 + 20 * 2));
    }
  }
}

// ===== Construction order

TEST_F(PolicyMapEvents, TheMapIsWatchedWhenAClassHasCaughtUp) {
  addPolicyMap(edge);
  {
    const AtEachLine trace(
        8, [&](std::string_view) { EXPECT_EQ(groups->notifieeList()->notifiees(), 0u); });
    addClass(edge, voice, 5);
    EXPECT_GT(trace.lines(), 5u);
  }
  EXPECT_EQ(groups->notifieeList()->notifiees(), 1u);
}

TEST(PolicyMapActionStart, WithoutTheNamesOfGroupsNothingIsBuiltOrWatched) {
  PolicyDevice device;
  device.addClass(edge, voice, 5);
  device.config->forwardingGroupNameToTcMapIs(nullptr);
  try {
    device.start();
    FAIL() << "nothing thrown";
  } catch (const Rok::MutatorArgNullPointerException& e) {
    EXPECT_STREQ(e.what(),
                 "Qos::Input::Config: argument forwardingGroupNameToTcMap (attribute 133) must not "
                 "be null");
    EXPECT_EQ(e.attribute(), "forwardingGroupNameToTcMap");
    EXPECT_EQ(e.attributeId(), 133u);
  }
  EXPECT_EQ(device.model(), ActionModel{});
  EXPECT_EQ(device.aclConfig->notifieeList()->notifiees(), 0u);
}

TEST(PolicyMapActionStart, TheNamesOfGroupsAreAskedForAlsoWithoutPolicyMaps) {
  PolicyDevice device;
  device.config->forwardingGroupNameToTcMapIs(nullptr);
  EXPECT_EQ(nullArgument([&] { device.start(); }), "forwardingGroupNameToTcMap 133");
}

TEST(PolicyMapActionLife, AClassThatSetsATrafficClassNeedsAConfig) {
  const auto classifiers = Rok::make<Config::ClassifiersDir>();
  EXPECT_EQ(nullArgument([&] {
              classActionSmFactory(classAction(voice, 5), "edge-in", v4, "voice", nullptr,
                                   classifiers, nullptr);
            }),
            "cliConfig 134");
}

TEST(PolicyMapActionLife, WithoutAConfigAClassHasNoChainedInput) {
  const auto classifiers = Rok::make<Config::ClassifiersDir>();
  const auto sm = classActionSmFactory(classAction(voice), "edge-in", v4, "voice", nullptr,
                                       classifiers, nullptr);
  EXPECT_EQ(sm->cliConfig(), nullptr);
  EXPECT_EQ(sm->rok_CliConfig_ForwardingGroupNameToTcMapIn(), nullptr);
  EXPECT_NE(classifiers->classifier("edge-in"), nullptr);
}

// ===== Life

TEST(PolicyMapActionLife, EachOfTheSevenInputsWakesItsHandlerAndNothingElseDoes) {
  PolicyDevice device;
  device.addClass(edge, voice, 5);
  device.start();
  const auto action = device.findAction(edge, voice);
  TraceCapture trace({8});
  const auto woken = [&](const std::function<void()>& write) {
    trace.clear();
    write();
    return trace.lines().empty() ? "" : trace.linesWithoutAddresses().front();
  };
  using testing::StartsWith;
  EXPECT_THAT(woken([&] {
                device.aclConfig->pmapTypeIs(otherType,
                                             Rok::make<Qos::Input::PolicyMapTypeConfig>(otherType));
              }),
              StartsWith("8 void QosOc::ClassActionKivToOcSm::handlePmapTypeConfig(Qos::MapType), "
                         "pmapType = 7"));
  EXPECT_THAT(woken([&] { device.addPolicyMap(edge6); }),
              StartsWith("8 void QosOc::PmapTypeSm::handlePmapConfig(const Velmo::String&), "
                         "pmapName = __yang_[IPV6__edge-in6]"));
  EXPECT_THAT(woken([&] { device.addClass(edge, video); }),
              StartsWith("8 void QosOc::PmapConfigSm::handleClassAction(const Velmo::String&), "
                         "cmapName = __yang_[edge-in]_[video]"));
  EXPECT_THAT(
      woken([&] {
        device.findClass(edge, video)->policyActionIs(otherKind, Rok::make<Qos::Action>(otherKind));
      }),
      StartsWith("8 void QosOc::ClassActionSm::handlePolicyAction(Qos::ActionType), "
                 "actionType = 9"));
  EXPECT_THAT(woken([&] { action->valueIs(3); }),
              StartsWith("8 void QosOc::PolicyActionSm::handlePolicyActionValue() (  ) "));
  EXPECT_THAT(woken([&] { device.addGroup("assured", 3); }),
              StartsWith("8 void QosOc::ClassActionSm::handleForwardingGroupNameToTcMap() (  ) "));
  EXPECT_EQ(woken([&] { device.replaceGroups({}); }), "") << "it only moves the chained input";
  EXPECT_EQ(woken([&] {
              device.config->queueNameToTxQueueIdMapIs(Rok::make<Qos::QueueNameToTxQueueIdMap>());
            }),
            "");
  EXPECT_EQ(woken([&] { device.config->tcToTxQueueMapIs(1, 2); }), "");
  EXPECT_EQ(woken([&] {
              device.aclConfig->cmapTypeIs(Qos::mapQos,
                                           Rok::make<Qos::Input::ClassMapTypeConfig>(Qos::mapQos));
            }),
            "");
}

TEST(PolicyMapActionLife, NamesAreDecodedOnceAndHandedDown) {
  PolicyDevice device;
  device.addClass(both, voice6, 5);
  device.start();
  EXPECT_EQ(device.machine(both)->ipv4ClassifierName(), "edge-in");
  EXPECT_EQ(device.machine(both)->ipv6ClassifierName(), "edge-in6");
  const auto sm = device.machine(both, voice6);
  EXPECT_EQ(sm->classifierName(), "edge-in6");
  EXPECT_EQ(sm->termId(), "voice");
  EXPECT_EQ(sm->pmapConfigSm(), device.machine(both).get());
  const auto action = device.actionMachine(both, voice6);
  EXPECT_EQ(action->classifierName(), "edge-in6");
  EXPECT_EQ(action->termId(), "voice");
  EXPECT_EQ(action->classActionSm(), sm.get());
}

// ===== Refusals

TEST_F(PolicyMapEvents, ANativeActionReplacedWithoutARemovalIsRefusedAndTheOldOneIsStillFollowed) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  const auto action = findAction(edge, voice);
  const auto replacement = Rok::make<Qos::Action>(actionSetTc, 5);
  EXPECT_EQ(
      reinstantiating([&] { findClass(edge, voice)->policyActionIs(actionSetTc, replacement); }),
      "policyAction 130");
  EXPECT_EQ(actionMachine(edge, voice)->policyAction(), action);
  EXPECT_EQ(model(), edgeVoice("expedited"));
  action->valueIs(3);
  EXPECT_EQ(model(), edgeVoice("blank"));
}

TEST_F(PolicyMapEvents, ARefusalNamesTheOldAndTheNewValue) {
  addClass(edge, voice, 5);
  const auto pmapSm = machine(edge);
  try {
    pmapSm->classActionSmIs(findClass(edge, voice), "edge-in", v6, "voice", config, classifiers,
                            pmapSm.get());
    FAIL() << "no exception";
  } catch (const Rok::MutatorReinstantiatingException& e) {
    EXPECT_STREQ(e.what(),
                 "ClassActionSm: a child built with another classifierType (attribute 132) exists: "
                 "classifierTypeIpv4, not classifierTypeIpv6");
  }
}

// ===== Traces

constexpr const char* pmapDecoder =
    "8 std::pair<Velmo::String, Velmo::String> QosOc::classifiersFromPmapName(const "
    "Velmo::String&), pmapName = ";
constexpr const char* keyDecoder =
    "8 std::pair<Velmo::String, Velmo::String> QosOc::classifierKeyFromConfigObjName(const "
    "Velmo::String&) ( ";
constexpr const char* groupLookup =
    "8 Velmo::String QosOc::targetGroupFromTc(uint32_t, const Rok::Ptr<const "
    "Qos::ForwardingGroupNameToTcMap>&), tc = ";

TEST(PolicyMapActionTrace, AStartTracesEachStepInOrderAtLevelEight) {
  PolicyDevice device;
  device.addClass(edge, voice, 5);
  device.earlier("edge-in", {{"video", "old"}});
  device.earlier("core-in");
  TraceCapture trace({0, 2, 8, 9});
  device.start();
  auto lines = trace.linesWithoutAddresses();
  // The last two tell of the two classifiers, in the order of the walk.
  ASSERT_THAT(lines, SizeIs(20));
  std::sort(lines.begin() + 18, lines.end());
  EXPECT_THAT(
      lines,
      ElementsAre(
          "8 void QosOc::ClassActionKivToOcSm::handleInitialized() (  ) ",
          "8 void QosOc::ClassActionKivToOcSm::handlePmapTypeConfig(Qos::MapType), pmapType = "
          "mapQos",
          "8 void QosOc::PmapTypeSm::handleInitialized() (  ) ",
          "8 void QosOc::PmapTypeSm::handlePmapConfig(const Velmo::String&), pmapName = "
          "__yang_[IPV4__edge-in]",
          pmapDecoder + std::string(edge), "8 void QosOc::PmapConfigSm::handleInitialized() (  ) ",
          "8 void QosOc::PmapConfigSm::handleClassAction(const Velmo::String&), cmapName = "
          "__yang_[edge-in]_[voice]",
          keyDecoder + std::string(voice), "8 void QosOc::ClassActionSm::handleInitialized() (  ) ",
          "8 void QosOc::ClassActionSm::handlePolicyAction(Qos::ActionType), actionType = "
          "actionSetTc",
          "8 void QosOc::PolicyActionSm::handleInitialized() (  ) ",
          "8 void QosOc::PolicyActionSm::handlePolicyActionValue() (  ) ",
          groupLookup + std::string("5"),
          "8 void QosOc::PolicyActionSm::addClassifierTermAction(const Velmo::String&), "
          "targetGroup = expedited",
          "8 void QosOc::ClassActionSm::handleInitialized(), removing the stale config",
          keyDecoder + std::string(voice), groupLookup + std::string("5"),
          testing::EndsWith(", removing the stale config"),
          testing::EndsWith(", classifier: core-in does not belong to the pmap"),
          testing::EndsWith(
              ", removed the stale action for classifier = edge-in, termId = video")));
  EXPECT_THAT(trace.handles(), testing::Each("OpenConfigQos"));
}

TEST(PolicyMapActionTrace, TheSweepTellsOfEachForeignClassifierAndOfNoneThatIsThePolicyMaps) {
  PolicyDevice device;
  device.addPolicyMap(both);
  device.earlier("core-in", {{"voice", "old"}});
  device.earlier("other-in");
  device.earlier("");
  TraceCapture trace({8});
  device.start();
  EXPECT_THAT(trace.linesWith("does not belong to the pmap"), SizeIs(3));
  for (const char* name :
       {"classifier: core-in does", "classifier: other-in does", "classifier:  does"}) {
    EXPECT_THAT(trace.linesWith(name), SizeIs(1)) << name;
  }
  EXPECT_THAT(trace.linesWith("removed the stale action"), IsEmpty());
}

TEST(PolicyMapActionTrace, ANameOfBothFamiliesIsSweptAndTracedOnce) {
  PolicyDevice device;
  device.addPolicyMap("__yang_[IPV4__edge-in][IPV6__edge-in]");
  device.earlier("edge-in", {{"voice", "old"}});
  TraceCapture trace({8});
  device.start();
  EXPECT_THAT(trace.linesWith("removed the stale action"), SizeIs(1));
}

TEST_F(PolicyMapEvents, AClassWithoutAnActionTracesThatItBlanked) {
  addPolicyMap(edge);
  TraceCapture trace({8});
  addClass(edge, voice);
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre("8 void QosOc::PmapConfigSm::handleClassAction(const Velmo::String&), "
                          "cmapName = __yang_[edge-in]_[voice]",
                          keyDecoder + std::string(voice),
                          "8 void QosOc::ClassActionSm::handleInitialized() (  ) ",
                          "8 void QosOc::ClassActionSm::handleInitialized(), removing the stale "
                          "config",
                          "8 void QosOc::ClassActionSm::handleInitialized(), removed the stale "
                          "policyAction for classAction = __yang_[edge-in]_[voice]"));
}

TEST_F(PolicyMapEvents, AnotherKindOfActionTracesTheSkip) {
  const auto classOf = addClass(edge, voice);
  TraceCapture trace({0, 2, 8, 9});
  classOf->policyActionIs(otherKind, Rok::make<Qos::Action>(otherKind));
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre("8 void QosOc::ClassActionSm::handlePolicyAction(Qos::ActionType), "
                          "actionType = 9",
                          "8 void QosOc::ClassActionSm::handlePolicyAction(Qos::ActionType), "
                          "actionType = 9, is not actionSetTc, skipping"));
}

TEST_F(PolicyMapEvents, AnotherMapTypeTracesTheSkip) {
  TraceCapture trace({0, 2, 8, 9});
  root->handlePmapTypeConfig(otherType);
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre("8 void QosOc::ClassActionKivToOcSm::handlePmapTypeConfig(Qos::MapType), "
                          "pmapType = 7",
                          "8 void QosOc::ClassActionKivToOcSm::handlePmapTypeConfig(Qos::MapType), "
                          "pmapType = 7 is not mapQos, skipping"));
}

TEST_F(PolicyMapEvents, AForeignPolicyMapTracesEntryAndDecoderAlone) {
  TraceCapture trace({0, 2, 8, 9});
  addPolicyMap("plain");
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre("8 void QosOc::PmapTypeSm::handlePmapConfig(const Velmo::String&), "
                          "pmapName = plain",
                          pmapDecoder + std::string("plain")));
}

TEST_F(PolicyMapEvents, AForeignClassTracesEntryAndDecoderAlone) {
  addPolicyMap(edge);
  TraceCapture trace({0, 2, 8, 9});
  addClass(edge, "plain", 5);
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre("8 void QosOc::PmapConfigSm::handleClassAction(const Velmo::String&), "
                          "cmapName = plain",
                          keyDecoder + std::string("plain")));
}

TEST_F(PolicyMapEvents, ARemovedClassTracesTheTermAlsoWhenThereIsNoneToDelete) {
  addClass(edge, voice, 5);
  classifiers->classifierDel("edge-in");
  TraceCapture trace({0, 2, 8, 9});
  removeClass(edge, voice);
  const auto lines = trace.linesWithoutAddresses();
  ASSERT_THAT(lines, SizeIs(3));
  EXPECT_EQ(lines[0],
            "8 void QosOc::PmapConfigSm::handleClassAction(const Velmo::String&), cmapName = "
            "__yang_[edge-in]_[voice]");
  EXPECT_EQ(lines[1], keyDecoder + std::string(voice));
  EXPECT_THAT(lines[2],
              testing::EndsWith(", deleting the termId: voice from the classifier: edge-in"));
}

TEST_F(PolicyMapEvents, ARemovedClassTracesNoPrepareToDieOfItsActions) {
  addClass(edge, voice, 5);
  TraceCapture trace({0, 2, 8, 9});
  removeClass(edge, voice);
  EXPECT_THAT(trace.lines(), SizeIs(3));
}

TEST_F(PolicyMapEvents, ARemovedActionTracesThePrepareToDieAndTheTermAsItIsNow) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  TraceCapture trace({0, 2, 8, 9});
  removeTc(edge, voice);
  EXPECT_THAT(
      trace.linesWithoutAddresses(),
      ElementsAre("8 void QosOc::ClassActionSm::handlePolicyAction(Qos::ActionType), "
                  "actionType = actionSetTc",
                  "8 void QosOc::PolicyActionSm::doPrepareToDie() (  ) ",
                  "8 void QosOc::PolicyActionSm::delClassifierTermAction(), term = {id voice, "
                  "configId voice, conditions (absent), actions {targetGroup }}"));
}

TEST_F(PolicyMapEvents, BlankingATermThatIsNotThereTracesNoTerm) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  classifiers->classifier("edge-in")->termsDel();
  TraceCapture trace({0, 2, 8, 9});
  removeTc(edge, voice);
  EXPECT_THAT(trace.lines(), SizeIs(2)) << "the two entries";
}

TEST_F(PolicyMapEvents, AMapChangeThatMatchesNothingTracesThePrepareToDieOnlyOnce) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  TraceCapture trace({8});
  removeGroup("expedited");
  EXPECT_THAT(trace.linesWith("doPrepareToDie"), SizeIs(1));
  trace.clear();
  addGroup("unrelated", 7);
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre("8 void QosOc::ClassActionSm::handleForwardingGroupNameToTcMap() (  ) "));
}

TEST_F(PolicyMapEvents, AMapChangeTracesTheNameThatItHandsToTheAction) {
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  TraceCapture trace({0, 2, 8, 9});
  addGroup("assured", 5);
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre("8 void QosOc::ClassActionSm::handleForwardingGroupNameToTcMap() (  ) ",
                          "8 void QosOc::PolicyActionSm::addClassifierTermAction(const "
                          "Velmo::String&), targetGroup = assured"));
}

TEST_F(PolicyMapEvents, NothingIsTracedAtAnyOtherLevel) {
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 9});
  addGroup("expedited", 5);
  addClass(edge, voice, 5);
  addClass(edge, "plain", 5);
  removeTc(edge, voice);
  removeClass(edge, voice);
  removePolicyMap(edge);
  restart();
  EXPECT_THAT(trace.lines(), IsEmpty());
}

// ===== With the class maps' root

TEST(PolicyMapAction, AClassBeforeItsClassMapMakesATermThatTheClassMapLeavesAsItIs) {
  PolicyDevice device;
  const auto classMaps = Rok::make<Qos::Input::ClassMapTypeConfig>(Qos::mapQos);
  device.aclConfig->cmapTypeIs(Qos::mapQos, classMaps);
  const auto classMapRoot = classMapKivToOcSmFactory(device.aclConfig, device.classifiers);
  device.start();
  device.addClass(edge, voice, 5);
  for (const char* name : {"__yang_[edge-in]_[]", voice}) {
    const auto classMap = Rok::make<Qos::ClassMapConfig>(name, Qos::mapQos);
    classMap->matchIs(Qos::matchIpAccessGroup, Rok::make<Qos::ClassMapMatch>());
    classMaps->cmapIs(name, classMap);
  }
  EXPECT_EQ(device.model(), edgeVoice("expedited"));
  device.removeTc(edge, voice);
  EXPECT_EQ(device.model(), edgeVoice("blank"));
}

// ===== Oracles

// Random days on a device whose policy maps share no classifier: what the events leave is what a
// restart over the same output leaves, in any walk order, and what fresh roots build from the
// native side alone. Two things may differ in the course of a day, and each step ends in what
// levels them: a replaced map is read with its next change only, and so is a value that changed
// while the action's machine was gone. Fresh roots moreover have never heard of a policy map that
// went and left its terms as they are, so they are asked for the classifiers of the standing ones
// alone; and where the policy map came back without a class, the term that the sweep has blanked is
// one that they don't know.
class RandomDay : public PolicyDevice {
 public:
  explicit RandomDay(std::uint32_t seed) : events_(seed) { start(); }

  void event() {
    const Site& site = sites()[events_() % sites().size()];
    const std::uint32_t tc = tcs()[events_() % tcs().size()];
    const char* group = groupNames()[events_() % groupNames().size()];
    switch (events_() % 9) {
      case 0:
        return addGroup(group, static_cast<unsigned char>(tc));
      case 1:
        return removeGroup(group);
      case 2:
        return replaceGroups({{group, static_cast<unsigned char>(tc)}});
      case 3:
        return removeOrAddPolicyMap(site.pmap);
      case 4:
        return onClass(site, [&] { removeClass(site.pmap, site.cmap); });
      case 5:
        return onClass(site, [&] { removeTc(site.pmap, site.cmap); });
      default:
        return onClass(site, [&] { setTc(site.pmap, site.cmap, tc); });
    }
  }
  // A change in the map of names, which re-evaluates every class.
  void level() {
    addGroup("~", 99);
    removeGroup("~");
  }
  // What fresh roots make of the native side, and the same classifiers of this device.
  std::pair<ActionModel, ActionModel> besideFresh() const {
    PolicyDevice fresh{Names()};
    fresh.aclConfig = aclConfig;
    fresh.config = config;
    fresh.start();
    const ActionModel theirs = fresh.model();
    ActionModel ours = model();
    std::erase_if(ours, [&](const auto& entry) { return !theirs.contains(entry.first); });
    for (auto& [label, actions] : ours) {
      const support::Actions& known = theirs.at(label);
      std::erase_if(actions, [&](const auto& entry) {
        return entry.second == "blank" && !known.contains(entry.first);
      });
    }
    return {theirs, ours};
  }

 private:
  struct Site {
    const char* pmap;
    const char* cmap;
  };
  static const std::vector<Site>& sites() {
    static const std::vector<Site> all = {{both, voice},
                                          {both, video},
                                          {both, voice6},
                                          {both, foreign},
                                          {"__yang_[IPV6__x]", "__yang_[x]_[t]"},
                                          {both, "plain"},
                                          {"plain", "__yang_[y]_[t]"}};
    return all;
  }
  static const std::vector<std::uint32_t>& tcs() {
    static const std::vector<std::uint32_t> all = {0, 3, 5, 256};
    return all;
  }
  static const std::vector<const char*>& groupNames() {
    static const std::vector<const char*> all = {"a", "b", "c", ""};
    return all;
  }

  void removeOrAddPolicyMap(const char* pmap) {
    if (events_() % 4 != 0) {
      addPolicyMap(pmap);
    } else {
      removePolicyMap(pmap);
    }
  }
  // Does something with a class and its action, once they are there.
  template <class Do>
  void onClass(const Site& site, const Do& act) {
    const auto pmap = addPolicyMap(site.pmap);
    if (pmap->classAction().find(site.cmap) == nullptr) {
      addClass(site.pmap, site.cmap);
    } else {
      act();
    }
  }

  std::mt19937 events_;
};

TEST(PolicyMapActionOracle, RandomDaysEndInTheModelThatARestartGives) {
  for (std::uint32_t seed = 1; seed <= 60; ++seed) {
    std::vector<ActionModel> models;
    for (const std::uint32_t walk : {0u, seed, seed + 100}) {
      const WalkOrder order(walk);
      RandomDay day(seed);
      for (int step = 0; step < 40; ++step) {
        for (int n = 0; n < 5; ++n) day.event();
        day.level();
        const ActionModel live = day.model();
        models.push_back(live);
        const auto [fresh, ours] = day.besideFresh();
        ASSERT_EQ(fresh, ours) << "seed " << seed << ", step " << step;
        day.restart();
        ASSERT_EQ(day.model(), live) << "seed " << seed << ", step " << step;
      }
    }
    for (int step = 0; step < 40; ++step) {
      ASSERT_EQ(models[step], models[step + 40]) << "seed " << seed << ", step " << step;
      ASSERT_EQ(models[step], models[step + 80]) << "seed " << seed << ", step " << step;
    }
  }
}

}  // namespace
}  // namespace QosOc::policyMapActionTest
