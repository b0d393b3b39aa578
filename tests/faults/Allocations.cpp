#include "Allocations.h"

#include <cstddef>
#include <cstdlib>
#include <new>
#include <utility>

namespace faults {
namespace {

std::int64_t live = 0;
std::uint64_t untilFault = 0;  // allocations, with the one that fails; 0: none fails
bool forGood = false;
bool hasStruck = false;

// Requires nothing of the heap itself: g++ makes the exception outside operator new.
void allocationIs() {
  if (untilFault > 0 && --untilFault == 0) {
    hasStruck = true;
    untilFault = forGood ? 1 : 0;
    throw std::bad_alloc();
  }
  ++live;
}

void* newBlock(std::size_t size) {
  allocationIs();
  if (void* block = std::malloc(size != 0 ? size : 1)) return block;
  --live;
  throw std::bad_alloc();
}

void deleteBlock(void* block) noexcept {
  if (block == nullptr) return;
  --live;
  std::free(block);
}

}  // namespace

std::int64_t liveAllocations() noexcept { return live; }

AllocationFault::AllocationFault(std::uint64_t nth, Kind kind) noexcept {
  untilFault = nth;
  forGood = kind == Kind::forGood;
  hasStruck = false;
}

AllocationFault::~AllocationFault() { untilFault = 0; }

AllocationPause::AllocationPause() noexcept : untilFault_(std::exchange(untilFault, 0)) {}

AllocationPause::~AllocationPause() { untilFault = untilFault_; }

bool AllocationFault::struck() const noexcept { return hasStruck; }

}  // namespace faults

// ===== The slab allocator, by --wrap

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {
void* __real__ZN6Dorpel9slabAllocEm(std::size_t size);
void* __real__ZN6Dorpel20slabAllocOrStdMallocEm(std::size_t size);
void* __real__ZN6Dorpel20slabAllocOrStdCallocEm(std::size_t size);
void __real__ZN6Dorpel8slabFreeEPvm(void* block, std::size_t size) noexcept;
void __real__ZN6Dorpel17slabFreeOrStdFreeEPvm(void* block, std::size_t size) noexcept;

void* __wrap__ZN6Dorpel9slabAllocEm(std::size_t size) {
  faults::allocationIs();
  return __real__ZN6Dorpel9slabAllocEm(size);
}
void* __wrap__ZN6Dorpel20slabAllocOrStdMallocEm(std::size_t size) {
  faults::allocationIs();
  return __real__ZN6Dorpel20slabAllocOrStdMallocEm(size);
}
void* __wrap__ZN6Dorpel20slabAllocOrStdCallocEm(std::size_t size) {
  faults::allocationIs();
  return __real__ZN6Dorpel20slabAllocOrStdCallocEm(size);
}
void __wrap__ZN6Dorpel8slabFreeEPvm(void* block, std::size_t size) noexcept {
  if (block != nullptr) --faults::live;
  __real__ZN6Dorpel8slabFreeEPvm(block, size);
}
void __wrap__ZN6Dorpel17slabFreeOrStdFreeEPvm(void* block, std::size_t size) noexcept {
  if (block != nullptr) --faults::live;
  __real__ZN6Dorpel17slabFreeOrStdFreeEPvm(block, size);
}
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

// ===== The standard library's allocator

void* operator new(std::size_t size) { return faults::newBlock(size); }
void* operator new[](std::size_t size) { return faults::newBlock(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return faults::newBlock(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void operator delete(void* block) noexcept { faults::deleteBlock(block); }
void operator delete[](void* block) noexcept { faults::deleteBlock(block); }
void operator delete(void* block, std::size_t) noexcept { faults::deleteBlock(block); }
void operator delete[](void* block, std::size_t) noexcept { faults::deleteBlock(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { faults::deleteBlock(block); }
