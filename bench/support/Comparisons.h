// The table of ratios with which the program ends, and the reporter that gathers its figures.
#pragma once

#include <benchmark/benchmark.h>

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

namespace Bench {

// Prints one line a benchmark, the median of its repetitions, and keeps it.
class MedianReporter final : public benchmark::ConsoleReporter {
 public:
  // By the name of a benchmark, "class map added/1000": nanoseconds; by that name and a counter's,
  // "map insert, String, own/1000 bytes": the counter.
  using Figures = std::map<std::string, double>;

  MedianReporter() : ConsoleReporter(OO_None) {}
  void ReportRuns(const std::vector<Run>& runs) override;
  const Figures& figures() const { return figures_; }

 private:
  Figures figures_;
};

// The name of a benchmark's figure at a size.
template <class Size>
std::string at(const std::string& name, Size size) {
  return std::string(name).append("/").append(std::to_string(size));
}

// Which figures belong side by side.
class Comparisons {
 public:
  // A line of the table: a figure and what it is measured against.
  void add(const std::string& figure, const std::string& against) {
    lines_.push_back({figure, against});
  }
  // A line for a figure that has no rival.
  void add(const std::string& figure) { lines_.push_back({figure, ""}); }

  // Lines whose figures were not measured in this run are left out.
  void print(std::ostream& out, const MedianReporter::Figures& figures) const;

 private:
  struct Line {
    std::string figure;
    std::string against;
  };
  std::vector<Line> lines_;
};

// Every subject registers its benchmarks and what they are compared with.
void startUp(Comparisons& comparisons);
void eventTimes(Comparisons& comparisons);
void decoders(Comparisons& comparisons);
void comments(Comparisons& comparisons);
void notification(Comparisons& comparisons);
void hashMap(Comparisons& comparisons);

}  // namespace Bench
