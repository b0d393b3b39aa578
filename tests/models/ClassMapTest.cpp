// The native class-map records: what they hold and whom they tell.
#include "models/native/ClassMap.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace Qos {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Writes down which attribute changed, and at which key.
class Listener final : public Rok::PtrInterface::NotifieeConst {
 public:
  using Print = std::string (*)(Rok::AttributeId, const void*);
  Listener(const Rok::PtrInterface& notifier, Print print) : print_(print) {
    notifierIs(&notifier);
    isRegisteredNotifieeIs(true);
    hasNotificationActiveIs(true);
  }
  void onAttribute(Rok::AttributeId id, const void* key) override {
    heard_.push_back(print_(id, key));
  }
  const std::vector<std::string>& heard() const { return heard_; }

 private:
  Print print_;
  std::vector<std::string> heard_;
};

std::string printMatch(Rok::AttributeId id, const void* key) {
  std::ostringstream out;
  out << id << " " << *static_cast<const ClassMapMatchOption*>(key);
  return out.str();
}
std::string printName(Rok::AttributeId id, const void* key) {
  std::ostringstream out;
  out << id << " " << *static_cast<const Rok::String*>(key);
  return out.str();
}

TEST(ClassMapConfig, HoldsItsNameAndType) {
  const auto config = Rok::make<ClassMapConfig>("MGMT-SSH", mapQos);
  EXPECT_EQ(config->name(), "MGMT-SSH");
  EXPECT_EQ(config->type(), mapQos);
  EXPECT_EQ(config->match().members(), 0u);
}

TEST(ClassMapConfig, TellsEachMatchThatComesAndGoesByItsOption) {
  const auto config = Rok::make<ClassMapConfig>("MGMT-SSH", mapQos);
  const auto listener = Rok::make<Listener>(*config, printMatch);
  const auto match = Rok::make<ClassMapMatch>();
  config->matchIs(matchIpAccessGroup, match);
  config->matchIs(matchIpAccessGroup, match);  // the same statement again is no change
  config->matchIs(matchIpv6AccessGroup, match);
  config->matchDel(matchIpAccessGroup);
  config->matchDel(matchIpAccessGroup);  // nor is the removal of what isn't there
  EXPECT_THAT(listener->heard(), ElementsAre("132 matchIpAccessGroup", "132 matchIpv6AccessGroup",
                                             "132 matchIpAccessGroup"));
}

TEST(ClassMapTypeConfig, TellsEachClassMapThatComesAndGoesByItsName) {
  const auto type = Rok::make<Input::ClassMapTypeConfig>(mapQos);
  const auto listener = Rok::make<Listener>(*type, printName);
  const auto config = Rok::make<ClassMapConfig>("MGMT-SSH", mapQos);
  type->cmapIs("MGMT-SSH", config);
  type->cmapIs("MGMT-SSH", config);
  type->cmapDel("MGMT-SSH");
  EXPECT_THAT(listener->heard(), ElementsAre("131 MGMT-SSH", "131 MGMT-SSH"));
  EXPECT_EQ(type->cmap().find("MGMT-SSH"), nullptr);
}

TEST(ClassMapTypeConfig, ADeletionByANameThatLivesInTheDeletedEntryIsSafe) {
  const auto type = Rok::make<Input::ClassMapTypeConfig>(mapQos);
  type->cmapIs("MGMT-SSH", Rok::make<ClassMapConfig>("MGMT-SSH", mapQos));
  const auto listener = Rok::make<Listener>(*type, printName);
  type->cmapDel((*type->cmap().find("MGMT-SSH"))->name());
  EXPECT_THAT(listener->heard(), ElementsAre("131 MGMT-SSH"));
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
}  // namespace Qos
