// Allocations that fail on demand, and a count of those that live.
//
// What is seen: every request of the slab allocator, which the linker leads through here before
// the allocator looks for a free block, and everything that goes through operator new. So a
// request fails or not whatever the slabs have in store, and the numbers are the same with slabs,
// without them under the sanitizers, and in each repetition.
#pragma once

#include <cstdint>

namespace faults {

// How many allocations there were so far that have not been given back.
std::int64_t liveAllocations() noexcept;

// From its construction to its destruction, the n-th allocation fails with std::bad_alloc.
class AllocationFault {
 public:
  enum class Kind {
    once,     // and those behind it succeed again
    forGood,  // and all behind it, too
  };
  AllocationFault(std::uint64_t nth, Kind kind) noexcept;
  AllocationFault(const AllocationFault&) = delete;
  AllocationFault& operator=(const AllocationFault&) = delete;
  ~AllocationFault();

  // Whether an allocation has failed.
  bool struck() const noexcept;
};

// While it stands, allocations succeed, and the fault doesn't count them: they are the test's own.
class AllocationPause {
 public:
  AllocationPause() noexcept;
  AllocationPause(const AllocationPause&) = delete;
  AllocationPause& operator=(const AllocationPause&) = delete;
  ~AllocationPause();

 private:
  std::uint64_t untilFault_;
};

}  // namespace faults
