#include "Rok/GenericIfImpl.h"

#include <array>

#include "Rok/Notifier.h"

namespace genericIfImplTest {
namespace {

TEST(GenericIf, AttributesAreNumberedFrom130InDeclarationOrder) {
  static constexpr std::array<std::string_view, 2> names{"port", "log"};
  const Rok::FwkType type{"PortSm", names};
  EXPECT_EQ(Rok::firstAttributeId, 130u);
  EXPECT_EQ(type.name, "PortSm");
  EXPECT_EQ(type.attributeName(130), "port");
  EXPECT_EQ(type.attributeName(131), "log");
}

TEST(GenericIf, AnIdThatTheClassDoesNotHaveHasNoName) {
  static constexpr std::array<std::string_view, 1> names{"port"};
  const Rok::FwkType type{"PortSm", names};
  EXPECT_EQ(type.attributeName(131), "");
  EXPECT_EQ(type.attributeName(129), "");
  EXPECT_EQ(type.attributeName(0), "");
}

TEST(GenericIf, TheBaseClassesDescribeThemselves) {
  struct Plain : Rok::PtrInterface {};
  struct Deaf : Rok::PtrInterface::NotifieeConst {
    void onAttribute(Rok::AttributeId /*id*/, const void* /*key*/) override {}
  };
  EXPECT_EQ(Rok::make<Plain>()->fwkType().name, "PtrInterface");
  EXPECT_EQ(Rok::make<Deaf>()->fwkType().name, "NotifieeConst");
  EXPECT_TRUE(Rok::make<Plain>()->fwkType().attributes.empty());
}

}  // namespace
}  // namespace genericIfImplTest
