// What the benchmark library measured, as figures.
#pragma once

#include <benchmark/benchmark.h>

#include <vector>

#include "support/Figures.h"

namespace Bench {

// Prints one line a benchmark, the median of its repetitions, and keeps it.
class MedianReporter final : public benchmark::ConsoleReporter {
 public:
  MedianReporter() : ConsoleReporter(OO_None) {}
  void ReportRuns(const std::vector<Run>& runs) override;
  const Figures& figures() const { return figures_; }

 private:
  Figures figures_;
};

}  // namespace Bench
