// Fails each allocation of a test in turn.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <new>

#include "Allocations.h"

namespace faults {

// Whether the n-th allocation of `act` failed. The test fails unless that is heard of.
template <class Act>
bool strikes(std::uint64_t n, AllocationFault::Kind kind, const Act& act) {
  bool left = false;
  AllocationFault fault(n, kind);
  try {
    act();
  } catch (const std::bad_alloc&) {
    left = true;
  }
  if (left != fault.struck()) ADD_FAILURE() << "std::bad_alloc was lost on its way out";
  return fault.struck();
}

// Calls act(n, kind) for each n from 1 on until it returns false.
template <class Act>
void eachFault(const Act& act) {
  for (const auto kind : {AllocationFault::Kind::once, AllocationFault::Kind::forGood}) {
    std::uint64_t n = 1;
    while (!testing::Test::HasFailure() && act(n, kind)) ++n;
  }
}

}  // namespace faults
