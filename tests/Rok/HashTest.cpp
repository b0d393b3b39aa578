#include "Rok/Hash.h"

#include <set>

namespace hashTest {
namespace {

enum class Color : unsigned char { red = 1, green = 2 };

struct PortId {
  Velmo::String device;
  std::uint32_t port = 0;

  std::uint32_t hash(std::uint32_t seed) const {
    return Rok::hashSingleAttr(Rok::hashSingleAttr(seed, device), port);
  }
};

TEST(Hash, EqualValuesHaveEqualHashes) {
  const std::uint32_t seed = Rok::HashHelper::hashSeed32();
  EXPECT_EQ(Rok::hashSingleAttr(seed, Velmo::String("edge")),
            Rok::hashSingleAttr(seed, Velmo::String("edge")));
  EXPECT_EQ(Rok::hashSingleAttr(seed, PortId{"edge", 1}),
            Rok::hashSingleAttr(seed, PortId{"edge", 1}));
  EXPECT_EQ(Rok::hashSingleAttr(seed, Color::red), Rok::hashSingleAttr(seed, 1u));
}

TEST(Hash, TheSeedCounts) {
  EXPECT_NE(Rok::hashSingleAttr(1, Velmo::String("edge")),
            Rok::hashSingleAttr(2, Velmo::String("edge")));
  EXPECT_NE(Rok::hashSingleAttr(1, 7u), Rok::hashSingleAttr(2, 7u));
  EXPECT_NE(Rok::hashSingleAttr(1, PortId{"edge", 1}), Rok::hashSingleAttr(2, PortId{"edge", 1}));
}

TEST(Hash, EveryAttributeOfAChainCounts) {
  std::set<std::uint32_t> hashes;
  for (const char* device : {"a", "b", "c"}) {
    for (std::uint32_t port = 0; port < 100; ++port) {
      hashes.insert(Rok::hashSingleAttr(1, PortId{device, port}));
    }
  }
  EXPECT_EQ(hashes.size(), 300u);
}

TEST(Hash, TheOrderSeedIsZeroUntilSomebodySetsIt) {
  EXPECT_EQ(Rok::HashHelper::orderSeed(), 0u);
  Rok::HashHelper::orderSeedIs(7);
  EXPECT_EQ(Rok::HashHelper::orderSeed(), 7u);
  Rok::HashHelper::orderSeedIs(0);
}

}  // namespace
}  // namespace hashTest
