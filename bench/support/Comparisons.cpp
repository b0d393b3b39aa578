#include "support/Comparisons.h"

#include <cstdio>

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

std::string formatted(const char* format, double value) {
  char text[40];
  std::snprintf(text, sizeof(text), format, value);
  return text;
}

}  // namespace

std::string measure(const std::string& name, double value) {
  if (name.starts_with("instructions ")) return formatted("%.0f", value);
  if (name.ends_with(" peak bytes") || name.ends_with(" file bytes")) {
    return formatted("%.1f MB", value / 1e6);
  }
  if (name.ends_with(" bytes")) return formatted("%.0f B", value);
  if (name.ends_with(" allocations")) return formatted(value < 0.1 ? "%.2g" : "%.2f", value);
  if (value < 10) return formatted("%.2f ns", value);
  if (value < 10e3) return formatted("%.0f ns", value);
  if (value < 10e6) return formatted("%.0f us", value / 1e3);
  return formatted("%.0f ms", value / 1e6);
}

std::string ratio(double value) {
  return formatted(value < 10 ? "%.2f" : value < 100 ? "%.1f" : "%.0f", value);
}

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
