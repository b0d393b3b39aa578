// OVERVIEW
//   The slab allocator: small blocks of equal size come from large chunks and go back to a free
//   list of their size, so that an allocation is a handful of instructions and objects of one kind
//   lie close together.
//
// RULES
//   - A block is freed with the size that it was allocated with.
//   - Blocks are aligned to eight bytes. Types that need more do not belong here.
//   - One thread. Chunks are kept for the life of the process.
//   - Blocks and chunks of two megabytes and more are mapped by themselves, on huge pages.
//   - Under a sanitizer every block comes from malloc, so that the sanitizer sees each of them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "Dorpel/Export.h"

namespace Dorpel {

inline constexpr std::size_t slabGranule = 8;
inline constexpr std::size_t slabMaxSize = 512;

// Takes a block of `size` bytes. One of zero bytes has an address of its own too.
// Requires: size <= slabMaxSize. Throws: std::bad_alloc.
QOS_EXPORT void* slabAlloc(std::size_t size);

// Gives back a block. Requires: `block` came from slabAlloc(size), or is null.
QOS_EXPORT void slabFree(void* block, std::size_t size) noexcept;

// As above for any size: what is too large for a slab comes from malloc, or is mapped.
QOS_EXPORT void* slabAllocOrStdMalloc(std::size_t size);
// With all bytes zero. A large block costs its pages only as they are written.
QOS_EXPORT void* slabAllocOrStdCalloc(std::size_t size);
// Gives a block back. Requires: `size` is that with which it was asked for.
QOS_EXPORT void slabFreeOrStdFree(void* block, std::size_t size) noexcept;

// What the slabs hold at the moment, for tests and for memory figures.
struct SlabUse {
  std::uint64_t blocks = 0;  // blocks handed out and not yet given back
  std::uint64_t bytes = 0;   // their sizes, rounded up to the granule
  std::uint64_t chunks = 0;  // bytes of all chunks
  std::uint64_t mapped = 0;  // bytes that are no part of malloc's: large chunks and large blocks
};
// That of the whole process.
QOS_EXPORT SlabUse slabUse() noexcept;

}  // namespace Dorpel
