// What the policy maps' machines trace.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/support/PolicyDevice.h"
#include "tests/support/PolicyMapFixture.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::policyMapTraceTest {
namespace {

using support::PolicyDevice;
using support::TraceCapture;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using namespace support::policyMapCases;

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
          "8 void QosOc::PmapConfigSm::sweepStaleActions(const Desired&), classifier: core-in "
          "does not belong to the pmap",
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

}  // namespace
}  // namespace QosOc::policyMapTraceTest
