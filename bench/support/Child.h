// Measuring in a process of its own.
#pragma once

#include <cstddef>
#include <type_traits>

namespace Bench {

// Runs work(result, argument) in a child process and brings the bytes of `result` back. Memory
// there is as fresh as at a program's start; here, earlier benchmarks left free blocks behind.
void inChild(void (*work)(void* result, std::size_t argument), std::size_t argument, void* result,
             std::size_t bytes);

template <auto measure>
auto inChild(std::size_t argument) {
  using Result = decltype(measure(argument));
  static_assert(std::is_trivially_copyable_v<Result>);
  Result result{};
  inChild([](void* at, std::size_t value) { *static_cast<Result*>(at) = measure(value); }, argument,
          &result, sizeof(result));
  return result;
}

}  // namespace Bench
