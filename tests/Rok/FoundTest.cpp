#include "Rok/Found.h"

#include <gtest/gtest.h>

#include "Rok/HashMap2018.h"
#include "Velmo/String.h"

namespace {

using Ports = Rok::HashMap2018<Rok::Hm2018NEI<0x1f2e, Velmo::String, int>>;

TEST(Found, IsNullWhereTheMapHasNoEntry) {
  Ports ports;
  Rok::Found found;
  EXPECT_EQ(found.in(ports, "Ethernet1"), nullptr) << "a map that never had one";
  ports.newMember("Ethernet2", 2);
  EXPECT_EQ(found.in(ports, "Ethernet1"), nullptr);
}

TEST(Found, IsTheEntryThatCameSinceAndTheOneThatTookItsPlace) {
  Ports ports;
  Rok::Found found;
  EXPECT_EQ(found.in(ports, "Ethernet1"), nullptr);
  ports.newMember("Ethernet1", 1);
  ASSERT_NE(found.in(ports, "Ethernet1"), nullptr);
  EXPECT_EQ(*found.in(ports, "Ethernet1"), 1);
  ports.deleteMember("Ethernet1");
  EXPECT_EQ(found.in(ports, "Ethernet1"), nullptr);
  ports.newMember("Ethernet1", 3);
  EXPECT_EQ(*found.in(ports, "Ethernet1"), 3);
}

TEST(Found, StaysAsItWasFoundWhileTheMapStands) {
  Ports ports;
  ports.newMember("Ethernet1", 1);
  ports.newMember("Ethernet2", 2);
  Rok::Found found;
  const int* const first = found.in(ports, "Ethernet1");
  EXPECT_EQ(found.in(ports, "Ethernet2"), first) << "one key for each: there was no second look-up";
}

TEST(Found, SeesAnEntryThatIsWrittenInPlace) {
  Ports ports;
  ports.newMember("Ethernet1", 1);
  Rok::Found found;
  const int* const value = found.in(ports, "Ethernet1");
  *ports.find("Ethernet1") = 5;
  EXPECT_EQ(found.in(ports, "Ethernet1"), value);
  EXPECT_EQ(*value, 5);
}

TEST(Found, LooksIntoAnotherMapAnew) {
  Ports ports;
  ports.newMember("Ethernet1", 1);
  Ports others;
  others.newMember("Ethernet1", 9);
  Rok::Found found;
  EXPECT_EQ(*found.in(ports, "Ethernet1"), 1);
  EXPECT_EQ(*found.in(others, "Ethernet1"), 9);
}

TEST(Found, TakesOverWhatWasMadeByAnotherWay) {
  Ports ports;
  const auto [node, isNew] = ports.newMember("Ethernet1", 1);
  Rok::Found found;
  found.is(ports, &node->value());
  EXPECT_EQ(found.in(ports, "no key that is looked for"), &node->value());
}

}  // namespace
