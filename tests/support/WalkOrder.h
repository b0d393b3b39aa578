// Chooses the walk order of the hash collections that are filled while it stands.
#pragma once

#include "Rok/Hash.h"

namespace support {

struct WalkOrder {
  explicit WalkOrder(std::uint32_t seed) { Rok::HashHelper::orderSeedIs(seed); }
  WalkOrder(const WalkOrder&) = delete;
  WalkOrder& operator=(const WalkOrder&) = delete;
  ~WalkOrder() { Rok::HashHelper::orderSeedIs(0); }
};

}  // namespace support
