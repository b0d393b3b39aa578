// How much memory is in use.
#pragma once

#include <cstdint>

namespace Bench {

// Bytes in use: the blocks that the slabs handed out, and everything of malloc that is not a
// slab's.
std::uint64_t bytesInUse();

}  // namespace Bench
