// What a piece of code asks of the heap, counted in malloc itself, and what is in use.
#pragma once

#include <cstdint>

namespace Bench {

// The calls of malloc, calloc and realloc in this process so far.
std::uint64_t heapAllocations();

// Bytes in use: the blocks that the slabs handed out, and everything of malloc that is not a
// slab's.
std::uint64_t bytesInUse();

}  // namespace Bench
