#include "support/MedianReporter.h"

namespace Bench {
namespace {

using Run = benchmark::BenchmarkReporter::Run;

// With repetitions there are a mean and other aggregates; with one there is only the run itself.
bool isMedian(const Run& run, std::size_t runs) {
  return run.run_type == Run::RT_Aggregate ? run.aggregate_name == "median" : runs == 1;
}

// The name without what it says about the way of measuring. A batch measures by itself, and its
// processor time includes what it doesn't measure.
Run tidied(Run run) {
  if (!run.run_name.time_type.empty()) run.cpu_accumulated_time = run.real_accumulated_time;
  run.run_name.iterations.clear();
  run.run_name.time_type.clear();
  run.run_name.repetitions.clear();
  run.run_type = Run::RT_Iteration;  // or the name ends in that of the aggregate
  return run;
}

}  // namespace

void MedianReporter::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (!run.error_occurred && !isMedian(run, runs.size())) continue;
    const Run line = tidied(run);
    ConsoleReporter::ReportRuns({line});
    const std::string name = line.benchmark_name();
    const double toNanoseconds = 1e9 / benchmark::GetTimeUnitMultiplier(line.time_unit);
    figures_[name] = line.GetAdjustedCPUTime() * toNanoseconds;
    for (const auto& [counter, value] : line.counters)
      figures_[std::string(name).append(" ").append(counter)] = value.value;
  }
}

}  // namespace Bench
