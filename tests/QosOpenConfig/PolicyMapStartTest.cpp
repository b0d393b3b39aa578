// The start of the policy maps' root over what is there.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/support/PolicyDevice.h"
#include "tests/support/PolicyMapFixture.h"
#include "tests/support/Refusals.h"
#include "tests/support/TraceCapture.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::policyMapStartTest {
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
using testing::IsEmpty;
using testing::SizeIs;

using namespace support::policyMapCases;

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

}  // namespace
}  // namespace QosOc::policyMapStartTest
