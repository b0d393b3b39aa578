// The figures of a run, and which of them belong side by side.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace Bench {

// By the name of a benchmark, "event class-map-add/1000": nanoseconds; by that name and a
// counter's, "memory of a class map/1000 output bytes": the counter.
using Figures = std::map<std::string, double>;

// Prints one line a benchmark, the median of its repetitions, and keeps it.
class MedianReporter final : public benchmark::ConsoleReporter {
 public:
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

// A figure as people read it; its name gives the unit.
std::string measure(const std::string& name, double value);
// A ratio or a limit, with three digits at least.
std::string ratio(double value);

// Which figures belong side by side, by subject.
class Comparisons {
 public:
  // A figure and what it is compared with; empty when there is nothing to compare.
  struct Line {
    std::string figure;
    std::string against;
  };
  struct Subject {
    std::string title;
    std::vector<Line> lines;
  };

  // What is added from now on is about this.
  void subject(const std::string& title) { subjects_.push_back({title, {}}); }
  void add(const std::string& figure, const std::string& against = "") {
    subjects_.back().lines.push_back({figure, against});
  }
  const std::vector<Subject>& subjects() const { return subjects_; }

 private:
  std::vector<Subject> subjects_;
};

// Every subject registers its benchmarks and what they are compared with.
void startUp(Comparisons& comparisons);
void eventTimes(Comparisons& comparisons);
void libyang(Comparisons& comparisons);
// Seconds of building a tree of so many class maps, divided by their number, in a process of its
// own: what class maps alone stand for, and terms with all that the whole path gives them.
double libyangTypedBuild(std::size_t classMaps);
double libyangWholeBuild(std::size_t classMaps);
void feed(Comparisons& comparisons);
void decoders(Comparisons& comparisons);
void comments(Comparisons& comparisons);
void notification(Comparisons& comparisons);
void hashMap(Comparisons& comparisons);
void documents(Comparisons& comparisons);
// The size of the document.
std::size_t documentMegabytes();

}  // namespace Bench
