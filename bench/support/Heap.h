// What a piece of code asks of the heap, counted in malloc itself.
#pragma once

#include <cstdint>

namespace Bench {

// The calls of malloc, calloc and realloc in this process so far.
std::uint64_t heapAllocations();

}  // namespace Bench
