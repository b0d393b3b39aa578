// The section "policy-maps": how it is mounted, and what each change writes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostDevice.h"

namespace host::policyMapsTest {
namespace {

using support::HostDevice;
using support::hostFault;
using support::hostOperation;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* device = R"({"policy-maps": {"qos": {
    "P": {"classes": {"C": {"actions": {"set-traffic-class": 5, "9": 1}}, "D": {}}},
    "Q": {}}}})";

std::string faultOf(const std::string& section) {
  return hostFault([&] { HostDevice d(R"({"policy-maps": )" + section + "}"); });
}

Rok::Ptr<Qos::PolicyMapConfig> policyMap(const HostDevice& d, const Rok::String& name,
                                         unsigned char type = 1) {
  const auto* ofType = d.native.aclConfig->pmapType().find(Qos::MapType{type});
  const auto* found = ofType != nullptr ? (*ofType)->pmap().find(name) : nullptr;
  return found != nullptr ? *found : nullptr;
}
Rok::Ptr<Qos::ClassAction> classAction(const HostDevice& d, const Rok::String& policy,
                                       const Rok::String& name) {
  const auto* found = policyMap(d, policy)->classAction().find(name);
  return found != nullptr ? *found : nullptr;
}
Rok::Ptr<Qos::Action> action(const HostDevice& d, unsigned char type = 4) {
  const auto* found = classAction(d, "P", "C")->policyAction().find(Qos::ActionType{type});
  return found != nullptr ? *found : nullptr;
}

// ===== The document

TEST(PolicyMaps, OnlyTheTypesThatTheDocumentNamesAreMounted) {
  EXPECT_EQ(HostDevice("{}").native.aclConfig->pmapType().members(), 0u);
  EXPECT_EQ(HostDevice(R"({"policy-maps": {}})").native.aclConfig->pmapType().members(), 0u);
  const HostDevice d(R"({"policy-maps": {"qos": {}, "7": {"X": {}}}})");
  EXPECT_EQ(d.native.aclConfig->pmapType().members(), 2u);
  EXPECT_EQ((*d.native.aclConfig->pmapType().find(Qos::mapQos))->type(), Qos::mapQos);
  EXPECT_TRUE(policyMap(d, "X", 7));
}

TEST(PolicyMaps, HoldClassesWithTheirActions) {
  const HostDevice d(device);
  EXPECT_EQ(policyMap(d, "P")->name(), "P");
  EXPECT_EQ(policyMap(d, "P")->classAction().members(), 2u);
  EXPECT_EQ(policyMap(d, "Q")->classAction().members(), 0u);
  EXPECT_EQ(classAction(d, "P", "C")->name(), "C");
  EXPECT_EQ(classAction(d, "P", "C")->policyAction().members(), 2u);
  EXPECT_EQ(classAction(d, "P", "D")->policyAction().members(), 0u);
  EXPECT_EQ(action(d)->actionType(), Qos::actionSetTc);
  EXPECT_EQ(action(d)->value(), 5u);
  EXPECT_EQ(action(d, 9)->actionType(), Qos::ActionType{9});
}

TEST(PolicyMaps, TakeTheNumberOfANameForTheName) {
  const HostDevice d(R"({"policy-maps": {"1": {"P": {"classes": {
      "C": {"actions": {"4": 4294967295}}}}}}})");
  EXPECT_EQ(action(d)->value(), 4294967295u);
}

TEST(PolicyMaps, RefuseWhatTheyCannotHold) {
  const std::string place = "/policy-maps/qos/P/classes/C/actions/";
  const auto faultOfAction = [](const std::string& actions) {
    return faultOf(R"({"qos": {"P": {"classes": {"C": {"actions": )" + actions + "}}}}}");
  };
  EXPECT_EQ(faultOf(R"({"qos": {}, "1": {}})"), "/policy-maps/1: the same key twice");
  EXPECT_EQ(faultOf(R"({"QOS": {}})"),
            "/policy-maps/QOS: this key is not a map type: qos or a number from 0 to 255: did you "
            "mean qos?");
  EXPECT_EQ(faultOf(R"({"qos": {"P": {"class": {}}}})"),
            "/policy-maps/qos/P/class: unknown member: did you mean classes? (legal: classes)");
  EXPECT_EQ(faultOf(R"({"qos": {"P": {"classes": {"C": {"action": {}}}}}})"),
            "/policy-maps/qos/P/classes/C/action: unknown member: did you mean actions? (legal: "
            "actions)");
  EXPECT_EQ(faultOf(R"({"qos": {"P": {"classes": null}}})"),
            "/policy-maps/qos/P/classes: null is never a value here: expected an object");
  EXPECT_EQ(faultOfAction(R"({"set-traffic-class": 1, "4": 1})"), place + "4: the same key twice");
  EXPECT_EQ(faultOfAction(R"({"set-tc": 1})"),
            place +
                "set-tc: this key is not an action type: set-traffic-class or a number from 0 "
                "to 255");
  EXPECT_EQ(faultOfAction(R"({"256": 1})"),
            place +
                "256: this key is not an action type: set-traffic-class or a number from 0 to "
                "255");
  EXPECT_EQ(
      faultOfAction(R"({"set-traffic-class": 4294967296})"),
      place + "set-traffic-class: expected a whole number from 0 to 4294967295, not 4294967296");
  EXPECT_EQ(faultOfAction(R"({"set-traffic-class": {}})"),
            place +
                "set-traffic-class: expected a whole number from 0 to 4294967295, not an "
                "object");
}

// ===== Entries

TEST(PolicyMaps, AMapTypeIsAnEntry) {
  HostDevice d;
  EXPECT_THAT(d.heardFrom("add", "/policy-maps/qos", R"({"P": {"classes": {"C": {}}}})"),
              ElementsAre("pmapType 1"));
  EXPECT_TRUE(classAction(d, "P", "C"));
  EXPECT_THAT(d.heardFrom("replace", "/policy-maps/1", "{}"),
              ElementsAre("pmapType 1", "pmapType 1"));
  EXPECT_THAT(d.heardFrom("remove", "/policy-maps/qos"), ElementsAre("pmapType 1"));
  EXPECT_EQ(d.reportOf("remove", "/policy-maps/qos"),
            "refused: /policy-maps/qos: nothing is there");
  EXPECT_EQ(d.reportOf("add", "/policy-maps/qos/P", "{}"),
            "refused: /policy-maps/qos/P: nothing is at /policy-maps/qos");
}

TEST(PolicyMaps, APolicyMapIsAnEntry) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("add", "/policy-maps/qos/R", R"({"classes": {"C": {}}})"),
              ElementsAre("pmap 1/R"));
  EXPECT_THAT(d.heardFrom("add", "/policy-maps/qos/R", "{}"), ElementsAre("pmap 1/R", "pmap 1/R"));
  EXPECT_EQ(policyMap(d, "R")->classAction().members(), 0u);
  EXPECT_THAT(d.heardFrom("remove", "/policy-maps/qos/R"), ElementsAre("pmap 1/R"));
  EXPECT_FALSE(policyMap(d, "R"));
}

TEST(PolicyMaps, AClassIsAnEntry) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("add", "/policy-maps/qos/Q/classes/C",
                          R"({"actions": {"set-traffic-class": 3}})"),
              ElementsAre("classAction Q/C"));
  EXPECT_THAT(d.heardFrom("replace", "/policy-maps/qos/P/classes/C", "{}"),
              ElementsAre("classAction P/C", "classAction P/C"));
  EXPECT_EQ(classAction(d, "P", "C")->policyAction().members(), 0u);
  EXPECT_THAT(d.heardFrom("remove", "/policy-maps/qos/P/classes/C"),
              ElementsAre("classAction P/C"));
  EXPECT_FALSE(classAction(d, "P", "C"));
}

// ===== Actions

TEST(PolicyMaps, AnActionThatIsThereGetsAnotherOperand) {
  for (const char* op : {"add", "replace"}) {
    HostDevice d(device);
    const auto before = action(d);
    EXPECT_THAT(d.heardFrom(op, "/policy-maps/qos/P/classes/C/actions/set-traffic-class", "6"),
                ElementsAre("value P/C 4"));
    EXPECT_THAT(d.heardFrom(op, "/policy-maps/qos/P/classes/C/actions/4", "6"), IsEmpty());
    EXPECT_EQ(action(d), before);
    EXPECT_EQ(action(d)->value(), 6u);
  }
}

TEST(PolicyMaps, AnActionComesAndGoesWithOneNotification) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("add", "/policy-maps/qos/P/classes/C/actions/7", "6"),
              ElementsAre("policyAction P/C 7"));
  EXPECT_EQ(action(d, 7)->value(), 6u);
  EXPECT_THAT(d.heardFrom("remove", "/policy-maps/qos/P/classes/C/actions/7"),
              ElementsAre("policyAction P/C 7"));
  EXPECT_EQ(d.reportOf("replace", "/policy-maps/qos/P/classes/C/actions/7", "1"),
            "refused: /policy-maps/qos/P/classes/C/actions/7: nothing is there");
}

// ===== Collections

TEST(PolicyMaps, ActionsAsAWholeAreDoneOneByOne) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("replace", "/policy-maps/qos/P/classes/C/actions",
                          R"({"7": 2, "set-traffic-class": 6})"),
              ElementsAre("policyAction P/C 9", "policyAction P/C 7", "value P/C 4"));
  EXPECT_THAT(d.heardFrom("remove", "/policy-maps/qos/P/classes/C/actions"),
              ElementsAre("policyAction P/C 4", "policyAction P/C 7"));
  EXPECT_THAT(d.heardFrom("add", "/policy-maps/qos/P/classes/D/actions", R"({"4": 1})"),
              ElementsAre("policyAction P/D 4"));
}

TEST(PolicyMaps, ClassesAsAWholeAreDoneOneByOne) {
  HostDevice d(device);
  const auto mounted = policyMap(d, "P");
  EXPECT_THAT(
      d.heardFrom("replace", "/policy-maps/qos/P/classes", R"({"E": {}, "D": {}})"),
      ElementsAre("classAction P/C", "classAction P/E", "classAction P/D", "classAction P/D"));
  EXPECT_THAT(d.heardFrom("remove", "/policy-maps/qos/P/classes"),
              ElementsAre("classAction P/D", "classAction P/E"));
  EXPECT_THAT(d.heardFrom("remove", "/policy-maps/qos/P/classes"), IsEmpty());
  EXPECT_EQ(policyMap(d, "P"), mounted);
}

TEST(PolicyMaps, TheSectionAsAWholeIsDoneTypeByType) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("replace", "/policy-maps", R"({"8": {}, "qos": {}})"),
              ElementsAre("pmapType 8", "pmapType 1", "pmapType 1"));
  EXPECT_THAT(d.heardFrom("remove", "/policy-maps"), ElementsAre("pmapType 1", "pmapType 8"));
  EXPECT_THAT(d.reports, IsEmpty());
}

// ===== test and whole lines

TEST(PolicyMaps, TestSeesWhatTheNativeSideHolds) {
  HostDevice d(device);
  EXPECT_EQ(d.reportOf("test", "/policy-maps", R"({"1": {"Q": {"classes": {}},
      "P": {"classes": {"D": {"actions": {}}, "C": {"actions": {"9": 1, "4": 5}}}}}})"),
            "");
  EXPECT_EQ(d.reportOf("test", "/policy-maps/qos/P/classes/C/actions/set-traffic-class", "5"), "");
  EXPECT_EQ(d.reportOf("test", "/policy-maps/qos/P/classes/C/actions/set-traffic-class", "6"),
            "refused: /policy-maps/qos/P/classes/C/actions/set-traffic-class: test failed: "
            "expected 6, and 5 is there");
}

TEST(PolicyMaps, LaterOperationsOfALineSeeTheEarlierOnes) {
  HostDevice d;
  EXPECT_THAT(
      d.heardFrom("[" + hostOperation("add", "/policy-maps/qos", "{}") + "," +
                  hostOperation("add", "/policy-maps/qos/P", "{}") + "," +
                  hostOperation("add", "/policy-maps/qos/P/classes/C", "{}") + "," +
                  hostOperation("add", "/policy-maps/qos/P/classes/C/actions/4", "1") + "," +
                  hostOperation("test", "/policy-maps",
                                R"({"qos": {"P": {"classes": {"C": {"actions": {"4": 1}}}}}})") +
                  "]"),
      ElementsAre("pmapType 1", "pmap 1/P", "classAction P/C", "policyAction P/C 4"));
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(PolicyMaps, ARefusedLineChangesNothing) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("[" + hostOperation("remove", "/policy-maps/qos/P") + "," +
                          hostOperation("add", "/policy-maps/qos/P/classes/C", "{}") + "]"),
              IsEmpty());
  EXPECT_THAT(d.reports, ElementsAre("line 1: refused: /policy-maps/qos/P/classes/C: nothing is at "
                                     "/policy-maps/qos/P"));
  EXPECT_TRUE(policyMap(d, "P"));
}

}  // namespace
}  // namespace host::policyMapsTest
