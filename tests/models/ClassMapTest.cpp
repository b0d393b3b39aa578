// The native class-map records: what they hold and whom they tell.
#include "models/native/ClassMap.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "models/native/AclConfig.h"
#include "tests/support/NotificationLog.h"

namespace Qos::classMapTest {
namespace {

using support::NotificationLog;
using testing::ElementsAre;

TEST(ClassMapConfig, HoldsItsNameAndType) {
  const auto config = Rok::make<ClassMapConfig>("MGMT-SSH", mapQos);
  EXPECT_EQ(config->name(), "MGMT-SSH");
  EXPECT_EQ(config->type(), mapQos);
  EXPECT_EQ(config->match().members(), 0u);
}

TEST(ClassMapConfig, TellsEachMatchThatComesAndGoesByItsOption) {
  const auto config = Rok::make<ClassMapConfig>("MGMT-SSH", mapQos);
  const auto log = Rok::make<NotificationLog<ClassMapConfig::Attr::match>>(*config);
  const auto match = Rok::make<ClassMapMatch>();
  config->matchIs(matchIpAccessGroup, match);
  config->matchIs(matchIpAccessGroup, match);  // the same statement again is no change
  config->matchIs(matchIpv6AccessGroup, match);
  config->matchDel(matchIpAccessGroup);
  config->matchDel(matchIpAccessGroup);  // nor is the removal of what isn't there
  EXPECT_THAT(log->lines(), ElementsAre("132 matchIpAccessGroup", "132 matchIpv6AccessGroup",
                                        "132 matchIpAccessGroup"));
}

TEST(ClassMapTypeConfig, TellsEachClassMapThatComesAndGoesByItsName) {
  const auto type = Rok::make<Input::ClassMapTypeConfig>(mapQos);
  const auto log = Rok::make<NotificationLog<Input::ClassMapTypeConfig::Attr::cmap>>(*type);
  const auto config = Rok::make<ClassMapConfig>("MGMT-SSH", mapQos);
  type->cmapIs("MGMT-SSH", config);
  type->cmapIs("MGMT-SSH", config);
  type->cmapDel("MGMT-SSH");
  EXPECT_THAT(log->lines(), ElementsAre("131 MGMT-SSH", "131 MGMT-SSH"));
  EXPECT_EQ(type->cmap().find("MGMT-SSH"), nullptr);
}

TEST(ClassMapTypeConfig, ADeletionByANameThatLivesInTheDeletedEntryIsSafe) {
  const auto type = Rok::make<Input::ClassMapTypeConfig>(mapQos);
  type->cmapIs("MGMT-SSH", Rok::make<ClassMapConfig>("MGMT-SSH", mapQos));
  const auto log = Rok::make<NotificationLog<Input::ClassMapTypeConfig::Attr::cmap>>(*type);
  type->cmapDel((*type->cmap().find("MGMT-SSH"))->name());
  EXPECT_THAT(log->lines(), ElementsAre("131 MGMT-SSH"));
}

TEST(AclConfig, HoldsClassMapsByMapType) {
  const auto acl = Rok::make<Input::AclConfig>();
  const auto type = Rok::make<Input::ClassMapTypeConfig>(mapQos);
  acl->cmapTypeIs(mapQos, type);
  EXPECT_EQ(*acl->cmapType().find(mapQos), type);
  acl->cmapTypeDel(mapQos);
  EXPECT_EQ(acl->cmapType().find(mapQos), nullptr);
}

TEST(ClassMapEnumerations, PrintTheirNamesAndUnknownValuesAsNumbers) {
  std::ostringstream out;
  out << mapQos << " " << MapType{7} << " " << matchIpAccessGroup << " " << matchIpv6AccessGroup
      << " " << ClassMapMatchOption{200};
  EXPECT_EQ(out.str(), "mapQos 7 matchIpAccessGroup matchIpv6AccessGroup 200");
}

TEST(ClassMapEnumerations, HaveTheNativeValues) {
  EXPECT_EQ(static_cast<int>(mapQos), 1);
  EXPECT_EQ(static_cast<int>(matchIpAccessGroup), 1);
  EXPECT_EQ(static_cast<int>(matchIpv6AccessGroup), 2);
  EXPECT_EQ(sizeof(MapType) + sizeof(ClassMapMatchOption), 2u);
}

}  // namespace
}  // namespace Qos::classMapTest
