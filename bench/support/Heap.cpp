#include "support/Heap.h"

#include <malloc.h>

#include <cstddef>

#include "Dorpel/Slab.h"

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

std::uint64_t bytesInUse() {
  const Dorpel::SlabUse slabs = Dorpel::slabUse();
  const struct mallinfo2 heap = mallinfo2();
  return slabs.bytes + slabs.mapped + heap.uordblks + heap.hblkhd - slabs.chunks;
}

}  // namespace Bench
