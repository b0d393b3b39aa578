#include "support/Heap.h"

#include <cstddef>

namespace {

std::uint64_t allocations = 0;

}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

void* malloc(std::size_t size) noexcept {
  ++allocations;
  return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) noexcept {
  ++allocations;
  return __libc_calloc(count, size);
}
void* realloc(void* block, std::size_t size) noexcept {
  ++allocations;
  return __libc_realloc(block, size);
}
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

namespace Bench {

std::uint64_t heapAllocations() { return allocations; }

}  // namespace Bench
