#include "Rok/WalkOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "Rok/Hash.h"
#include "Velmo/String.h"

namespace {

using Ports = Rok::HashMap2018<Rok::Hm2018NEI<0x77aa, Velmo::String, int>>;
using Names = std::vector<Velmo::String>;

// The walk orders that a map may have.
class WalkOrder : public testing::TestWithParam<std::uint32_t> {
 protected:
  WalkOrder() : before_(Rok::HashHelper::orderSeed()) {
    Rok::HashHelper::orderSeedIs(GetParam());
    for (int i = 0; i < 100; ++i) ports_.newMember(name(i), i);
    for (int i = 0; i < 100; i += 3) ports_.deleteMember(name(i));
  }
  ~WalkOrder() override { Rok::HashHelper::orderSeedIs(before_); }

  static Velmo::String name(int i) { return "Ethernet" + std::to_string(i); }
  Names walk() const {
    Names names;
    for (const auto& [key, value] : ports_) names.push_back(key);
    return names;
  }
  Names served(Names keys, bool traced = false) const {
    Names names;
    Rok::inWalkOrder(
        ports_, std::move(keys), traced,
        [&](const Velmo::String& key) {
          names.push_back("-" + std::string(std::string_view(key)));
        },
        [&](const Velmo::String& key) { names.push_back(key); });
    return names;
  }

  Ports ports_;
  std::uint32_t before_;
};

INSTANTIATE_TEST_SUITE_P(Orders, WalkOrder, testing::Values(0u, 1u, 2u, 3u, 77u));

TEST_P(WalkOrder, APlaceGrowsAlongTheWalk) {
  const Names names = walk();
  for (std::size_t i = 1; i < names.size(); ++i) {
    EXPECT_LT(ports_.walkPlace(names[i - 1]), ports_.walkPlace(names[i])) << names[i];
  }
}

TEST_P(WalkOrder, AFewEntriesAreServedAsTheWalkMeetsThem) {
  Names keys = {name(70), name(1), name(44), name(98)};
  Names expected;
  for (const Velmo::String& key : walk()) {
    if (std::ranges::find(keys, key) != keys.end()) expected.push_back(key);
  }
  EXPECT_EQ(served(keys), expected);
}

TEST_P(WalkOrder, AKeyThatIsNotThereIsLeftOutAndOneThatComesTwiceIsServedOnce) {
  EXPECT_EQ(served({name(0), name(1), name(1), "Ethernet1000"}), Names{name(1)});
  EXPECT_EQ(served({}), Names());
}

TEST_P(WalkOrder, TheLinesOfTheWalkComeInTheirOrderAndEachEntryBehindItsOwn) {
  Names expected;
  for (const Velmo::String& key : walk()) {
    expected.push_back("-" + std::string(std::string_view(key)));
    if (key == name(44) || key == name(1)) expected.push_back(key);
  }
  EXPECT_EQ(served({name(44), name(1)}, true), expected);
}

}  // namespace
