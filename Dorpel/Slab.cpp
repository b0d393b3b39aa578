#include "Dorpel/Slab.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define DORPEL_PASS_THROUGH 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(memory_sanitizer)
#define DORPEL_PASS_THROUGH 1
#endif
#endif
#ifndef DORPEL_PASS_THROUGH
#define DORPEL_PASS_THROUGH 0
#endif

namespace Dorpel {
namespace {

constexpr bool passThrough = DORPEL_PASS_THROUGH != 0;
constexpr std::size_t firstChunkSize = 4096;
constexpr std::size_t hugePage = std::size_t{2} * 1024 * 1024;
constexpr std::size_t lastChunkSize = hugePage;
constexpr std::size_t maxLarge = std::numeric_limits<std::ptrdiff_t>::max() - 2 * hugePage;

struct FreeBlock {
  FreeBlock* next;
};

// One size class: a list of freed blocks, and the rest of the chunk that is being cut up.
struct Slab {
  FreeBlock* freed = nullptr;
  char* fresh = nullptr;
  char* end = nullptr;
  std::uint64_t blocks = 0;
  std::uint64_t chunkBytes = 0;
};

constinit Slab slabs[slabMaxSize / slabGranule + 1];

// The size of a block. Zero bytes take a granule too: every block has an address of its own.
std::size_t roundedUp(std::size_t size) {
  return size == 0 ? slabGranule : (size + slabGranule - 1) / slabGranule * slabGranule;
}

Slab& slabOf(std::size_t size) { return slabs[(size + slabGranule - 1) / slabGranule]; }

void* notNull(void* block) {
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void* stdMalloc(std::size_t size) { return notNull(std::malloc(size)); }

// ===== Large blocks: on huge pages, where the system has them. The first access to a
// page costs more than most of what is then done with it, and a huge one replaces 512 small ones.

std::uint64_t mappedBytes = 0;

constexpr bool isLarge(std::size_t size) { return !passThrough && size >= hugePage; }

std::size_t wholePages(std::size_t size) { return (size + hugePage - 1) / hugePage * hugePage; }

// All bytes are zero.
void* mapLarge(std::size_t size) {
  if (size > maxLarge) throw std::bad_alloc();
  const std::size_t wanted = wholePages(size);
  void* mapped =
      mmap(nullptr, wanted + hugePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapped == MAP_FAILED) throw std::bad_alloc();
  // What lies before the first boundary and behind the last goes back.
  auto* begin = static_cast<char*>(mapped);
  const std::size_t before =
      (hugePage - reinterpret_cast<std::uintptr_t>(mapped) % hugePage) % hugePage;
  if (before != 0) munmap(begin, before);
  munmap(begin + before + wanted, hugePage - before);
  madvise(begin + before, wanted, MADV_HUGEPAGE);  // advice only: some systems ignore it
  mappedBytes += wanted;
  return begin + before;
}

void unmapLarge(void* block, std::size_t size) noexcept {
  if (block == nullptr) return;
  munmap(block, wholePages(size));
  mappedBytes -= wholePages(size);
}

// Chunks double from one page up to a huge one, so that a size that is rarely used stays cheap.
void* allocFromNewChunk(Slab& slab, std::size_t size) {
  const std::size_t wanted =
      std::clamp<std::size_t>(slab.chunkBytes, firstChunkSize, lastChunkSize);
  slab.fresh = static_cast<char*>(isLarge(wanted) ? mapLarge(wanted) : stdMalloc(wanted));
  slab.end = slab.fresh + wanted / size * size;
  slab.chunkBytes += wanted;
  void* block = slab.fresh;
  slab.fresh += size;
  return block;
}

}  // namespace

void* slabAlloc(std::size_t size) {
  Slab& slab = slabOf(size);
  if constexpr (passThrough) {
    void* block = stdMalloc(size);
    ++slab.blocks;
    return block;
  }
  if (FreeBlock* block = slab.freed) {
    slab.freed = block->next;
    ++slab.blocks;
    return block;
  }
  const std::size_t blockSize = roundedUp(size);
  void* block = slab.fresh;
  if (block != slab.end) {
    slab.fresh += blockSize;
  } else {
    block = allocFromNewChunk(slab, blockSize);
  }
  ++slab.blocks;
  return block;
}

void slabFree(void* block, std::size_t size) noexcept {
  if (block == nullptr) return;
  Slab& slab = slabOf(size);
  --slab.blocks;
  if constexpr (passThrough) {
    std::free(block);
    return;
  }
  auto* freed = static_cast<FreeBlock*>(block);
  freed->next = slab.freed;
  slab.freed = freed;
}

void* slabAllocOrStdMalloc(std::size_t size) {
  if (size <= slabMaxSize) return slabAlloc(size);
  return isLarge(size) ? mapLarge(size) : stdMalloc(size);
}

void* slabAllocOrStdCalloc(std::size_t size) {
  if (size <= slabMaxSize) return std::memset(slabAlloc(size), 0, size);
  return isLarge(size) ? mapLarge(size) : notNull(std::calloc(1, size));
}

void slabFreeOrStdFree(void* block, std::size_t size) noexcept {
  if (size <= slabMaxSize) {
    slabFree(block, size);
  } else if (isLarge(size)) {
    unmapLarge(block, size);
  } else {
    std::free(block);
  }
}

SlabUse slabUse() noexcept {
  SlabUse use;
  use.mapped = mappedBytes;
  for (std::size_t i = 0; i < std::size(slabs); ++i) {
    use.blocks += slabs[i].blocks;
    use.bytes += slabs[i].blocks * roundedUp(i * slabGranule);
    use.chunks += slabs[i].chunkBytes;
  }
  return use;
}

}  // namespace Dorpel
