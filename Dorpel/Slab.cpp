#include "Dorpel/Slab.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
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
constexpr std::size_t lastChunkSize = std::size_t{256} * 1024;

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

std::size_t roundedUp(std::size_t size) {
  return (size + slabGranule - 1) / slabGranule * slabGranule;
}

Slab& slabOf(std::size_t size) { return slabs[(size + slabGranule - 1) / slabGranule]; }

void* stdMalloc(std::size_t size) {
  if (void* block = std::malloc(size)) return block;
  throw std::bad_alloc();
}

// Chunks double from one page, so that a size that is rarely used stays cheap.
void* allocFromNewChunk(Slab& slab, std::size_t size) {
  const std::size_t wanted =
      std::clamp<std::size_t>(slab.chunkBytes, firstChunkSize, lastChunkSize) / size * size;
  slab.fresh = static_cast<char*>(stdMalloc(wanted));
  slab.end = slab.fresh + wanted;
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
  return size <= slabMaxSize ? slabAlloc(size) : stdMalloc(size);
}

void* slabAllocOrStdCalloc(std::size_t size) {
  if (size <= slabMaxSize) return std::memset(slabAlloc(size), 0, size);
  if (void* block = std::calloc(1, size)) return block;
  throw std::bad_alloc();
}

void slabFreeOrStdFree(void* block, std::size_t size) noexcept {
  if (size <= slabMaxSize) {
    slabFree(block, size);
  } else {
    std::free(block);
  }
}

SlabUse slabUse() noexcept {
  SlabUse use;
  for (std::size_t i = 0; i < std::size(slabs); ++i) {
    use.blocks += slabs[i].blocks;
    use.bytes += slabs[i].blocks * i * slabGranule;
    use.chunks += slabs[i].chunkBytes;
  }
  return use;
}

}  // namespace Dorpel
