#include "Rok/FwkType.h"

#include <array>

#include "Rok/Notifier.h"

namespace fwkTypeTest {
namespace {

TEST(FwkType, AttributesAreNumberedFrom130InDeclarationOrder) {
  static constexpr std::array<std::string_view, 2> names{"port", "log"};
  const Rok::FwkType type{"PortSm", names};
  EXPECT_EQ(Rok::firstAttributeId, 130u);
  EXPECT_EQ(type.name, "PortSm");
  EXPECT_EQ(type.attributeName(130), "port");
  EXPECT_EQ(type.attributeName(131), "log");
}

TEST(FwkType, AnIdThatTheClassDoesNotHaveHasNoName) {
  static constexpr std::array<std::string_view, 1> names{"port"};
  const Rok::FwkType type{"PortSm", names};
  EXPECT_EQ(type.attributeName(131), "");
  EXPECT_EQ(type.attributeName(129), "");
  EXPECT_EQ(type.attributeName(0), "");
}

TEST(FwkType, TheBaseClassesDescribeThemselves) {
  struct Plain : Rok::PtrInterface {};
  struct Deaf : Rok::PtrInterface::NotifieeConst {
    void onAttribute(Rok::AttributeId /*id*/, const void* /*key*/) override {}
  };
  EXPECT_EQ(Rok::make<Plain>()->fwkType().name, "PtrInterface");
  EXPECT_EQ(Rok::make<Deaf>()->fwkType().name, "NotifieeConst");
  EXPECT_TRUE(Rok::make<Plain>()->fwkType().attributes.empty());
}

}  // namespace
}  // namespace fwkTypeTest
