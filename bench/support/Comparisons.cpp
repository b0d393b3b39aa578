#include "support/Comparisons.h"

#include <algorithm>
#include <cstdio>
#include <ostream>

namespace Bench {
namespace {

using Run = benchmark::BenchmarkReporter::Run;

// With repetitions there are a mean and other things too; with one there is only the run itself.
bool isMedian(const Run& run, std::size_t runs) {
  return run.run_type == Run::RT_Aggregate ? run.aggregate_name == "median" : runs == 1;
}

// The name without what it tells about the way of measuring. A batch measures by itself, and its
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

std::string measure(const std::string& name, double value) {
  if (name.ends_with(" bytes")) return formatted("%.0f B", value);
  if (name.ends_with(" allocations")) return formatted("%.0f", value);
  if (value < 10) return formatted("%.2f ns", value);
  if (value < 10e3) return formatted("%.0f ns", value);
  if (value < 10e6) return formatted("%.0f us", value / 1e3);
  return formatted("%.0f ms", value / 1e6);
}

std::string padded(std::string text, std::size_t width) {
  text.resize(std::max(width, text.size()), ' ');
  return text;
}

std::string rightAligned(const std::string& text, std::size_t width) {
  return std::string(width - std::min(width, text.size()), ' ') + text;
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

void Comparisons::print(std::ostream& out, const MedianReporter::Figures& figures) const {
  out << "\nRatios of the medians of this run: the first figure is so many times the second.\n";
  for (const Line& line : lines_) {
    const auto own = figures.find(line.figure);
    if (own == figures.end()) continue;
    out << padded(line.figure, 44) << rightAligned(measure(line.figure, own->second), 10);
    const auto other = figures.find(line.against);
    if (other != figures.end()) {
      out << rightAligned(formatted("%.2f", own->second / other->second), 9) << " x  "
          << padded(line.against, 44) << rightAligned(measure(line.against, other->second), 10);
    }
    out << '\n';
  }
}

}  // namespace Bench
