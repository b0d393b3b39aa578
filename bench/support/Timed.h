// Timing of a batch, as the time of one of its events.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>

#include "support/Seconds.h"

namespace Bench {

// Runs the batch and reports its time, divided by the number of its events, as the time of this
// iteration. For a benchmark with UseManualTime and a fixed number of iterations.
template <class Batch>
void timed(benchmark::State& state, std::size_t events, const Batch& batch) {
  const double start = threadSeconds();
  batch();
  state.SetIterationTime((threadSeconds() - start) / static_cast<double>(events));
}

// The number of batches of `events` that make about `wanted` events.
inline benchmark::IterationCount batches(std::size_t events, std::size_t wanted) {
  return static_cast<benchmark::IterationCount>(wanted > events ? wanted / events : 1);
}

}  // namespace Bench
