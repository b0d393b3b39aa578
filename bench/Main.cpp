// qosbench: times of everything that claims to be fast, beside what it replaces and beside a floor.
// Takes the arguments of the benchmark library (--benchmark_filter=...).
#include <benchmark/benchmark.h>

#include <iostream>
#include <string>
#include <vector>

#include "support/Comparisons.h"

int main(int argc, char** argv) {
  // Five repetitions unless the user says otherwise: what comes later on the line wins.
  std::string repetitions = "--benchmark_repetitions=5";
  std::string minTime = "--benchmark_min_time=0.05";
  std::vector<char*> arguments = {argv[0], repetitions.data(), minTime.data()};
  arguments.insert(arguments.end(), argv + 1, argv + argc);
  int count = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;

  Bench::Comparisons comparisons;
  Bench::startUp(comparisons);
  Bench::eventTimes(comparisons);
  Bench::decoders(comparisons);
  Bench::comments(comparisons);
  Bench::notification(comparisons);
  Bench::hashMap(comparisons);

  Bench::MedianReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  comparisons.print(std::cout, reporter.figures());
}
