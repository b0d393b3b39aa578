// The names of forwarding groups, which the classes of policy maps follow.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/support/PolicyMapFixture.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::policyMapGroupNamesTest {
namespace {

using support::TraceCapture;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using namespace support::policyMapCases;

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
  EXPECT_EQ(model(), edgeVoice("expedited")) << "the machine no longer watches the mounted map";
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

}  // namespace
}  // namespace QosOc::policyMapGroupNamesTest
