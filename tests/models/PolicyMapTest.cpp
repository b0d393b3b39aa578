// The native policy-map records.
#include "models/native/PolicyMap.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "models/native/AclConfig.h"
#include "tests/support/NotificationLog.h"

namespace Qos::policyMapTest {
namespace {

using support::NotificationLog;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(ActionType, TheOnlyNamedKindIsSetTc) {
  EXPECT_EQ(static_cast<int>(actionSetTc), 4);
  std::ostringstream out;
  out << actionSetTc << " " << ActionType{9};
  EXPECT_EQ(out.str(), "actionSetTc 9");
}

TEST(Action, HoldsItsTypeAndAnOperandOf32Bits) {
  const Action action(actionSetTc);
  EXPECT_EQ(action.actionType(), actionSetTc);
  EXPECT_EQ(action.value(), 0u);
  EXPECT_EQ(Action(ActionType{9}, 0xffffffffu).value(), 0xffffffffu);
}

TEST(Action, AChangedOperandIsANotificationWithoutAKeyAndAnEqualOneIsNone) {
  const auto action = Rok::make<Action>(actionSetTc, 5);
  const NotificationLog<Action::Attr::value> log(*action);
  action->valueIs(5);
  EXPECT_THAT(log.lines(), IsEmpty());
  action->valueIs(261);
  EXPECT_EQ(action->value(), 261u);
  EXPECT_THAT(log.lines(), ElementsAre("131"));
}

TEST(ClassAction, AChangeOfItsActionsNamesTheType) {
  const auto classAction = Rok::make<ClassAction>("__yang_[a]_[t]");
  EXPECT_EQ(classAction->name(), "__yang_[a]_[t]");
  const NotificationLog<ClassAction::Attr::policyAction> log(*classAction);
  const auto action = Rok::make<Action>(actionSetTc, 5);
  classAction->policyActionIs(actionSetTc, action);
  classAction->policyActionIs(actionSetTc, action);
  EXPECT_EQ(*classAction->policyAction().find(actionSetTc), action);
  classAction->policyActionIs(actionSetTc, Rok::make<Action>(actionSetTc, 5));
  classAction->policyActionIs(ActionType{9}, Rok::make<Action>(ActionType{9}));
  classAction->policyActionDel(actionSetTc);
  classAction->policyActionDel(actionSetTc);
  EXPECT_EQ(classAction->policyAction().find(actionSetTc), nullptr);
  EXPECT_THAT(log.lines(),
              ElementsAre("131 actionSetTc", "131 actionSetTc", "131 9", "131 actionSetTc"));
}

TEST(PolicyMapConfig, AChangeOfItsClassesNamesTheClassMap) {
  const auto pmap = Rok::make<PolicyMapConfig>("__yang_[IPV4__a]");
  EXPECT_EQ(pmap->name(), "__yang_[IPV4__a]");
  const NotificationLog<PolicyMapConfig::Attr::classAction> log(*pmap);
  const auto voice = Rok::make<ClassAction>("voice");
  pmap->classActionIs("voice", voice);
  pmap->classActionIs("voice", voice);
  EXPECT_EQ(*pmap->classAction().find("voice"), voice);
  pmap->classActionDel("voice");
  pmap->classActionDel("voice");
  EXPECT_EQ(pmap->classAction().members(), 0u);
  EXPECT_THAT(log.lines(), ElementsAre("131 voice", "131 voice"));
}

TEST(PolicyMapTypeConfig, PolicyMapsAreWalkedInNameOrderAndAChangeNamesTheMap) {
  const auto maps = Rok::make<Input::PolicyMapTypeConfig>(mapQos);
  EXPECT_EQ(maps->type(), mapQos);
  const NotificationLog<Input::PolicyMapTypeConfig::Attr::pmap> log(*maps);
  for (const char* name : {"b", "", "a", "B"}) maps->pmapIs(name, Rok::make<PolicyMapConfig>(name));
  std::vector<std::string> order;
  for (auto i = maps->pmap().iterator(); i; ++i) order.emplace_back(std::string_view(i.key()));
  EXPECT_THAT(order, ElementsAre("", "B", "a", "b"));
  maps->pmapIs("a", *maps->pmap().find("a"));
  maps->pmapDel("a");
  maps->pmapDel("a");
  EXPECT_EQ(maps->pmap().find("a"), nullptr);
  EXPECT_THAT(log.lines(), ElementsAre("131 b", "131 ", "131 a", "131 B", "131 a"));
}

TEST(AclConfig, AChangeOfItsPolicyMapTypesNamesTheTypeAndNotTheClassMapsAttribute) {
  const auto aclConfig = Rok::make<Input::AclConfig>();
  const NotificationLog<Input::AclConfig::Attr::cmapType, Input::AclConfig::Attr::pmapType> log(
      *aclConfig);
  const auto maps = Rok::make<Input::PolicyMapTypeConfig>(mapQos);
  aclConfig->pmapTypeIs(mapQos, maps);
  EXPECT_EQ(*aclConfig->pmapType().find(mapQos), maps);
  EXPECT_EQ(aclConfig->cmapType().find(mapQos), nullptr);
  aclConfig->cmapTypeIs(mapQos, Rok::make<Input::ClassMapTypeConfig>(mapQos));
  aclConfig->pmapTypeDel(mapQos);
  aclConfig->pmapTypeDel(mapQos);
  EXPECT_EQ(aclConfig->pmapType().members(), 0u);
  EXPECT_THAT(log.lines(), ElementsAre("131 mapQos", "130 mapQos", "131 mapQos"));
}

}  // namespace
}  // namespace Qos::policyMapTest
