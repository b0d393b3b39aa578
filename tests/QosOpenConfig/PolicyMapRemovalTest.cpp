// Classes, policy maps and map types that go.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/support/PolicyDevice.h"
#include "tests/support/PolicyMapFixture.h"
#include "tests/support/Refusals.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::policyMapRemovalTest {
namespace {

using support::ActionModel;
using support::classAction;
using support::PolicyDevice;
using support::reinstantiating;
using support::TraceCapture;
using testing::ElementsAre;

using namespace support::policyMapCases;

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
  EXPECT_EQ(model(), edgeVoice("expedited")) << "no machine follows the groups any more";
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

}  // namespace
}  // namespace QosOc::policyMapRemovalTest
