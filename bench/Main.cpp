// qosbench: times of everything that claims to be fast, beside what it replaces and beside a
// floor.
//
//   qosbench [--quick] [--counts FILE] [--report FOLDER] [ARGUMENTS OF THE BENCHMARK LIBRARY]
//   qosbench [--quick] --figures FILE --report FOLDER
//
// --quick: devices of 1,000 and of 100,000 objects alone, and a document of 10 MB.
// --counts: instructions as instructions.sh writes them, "event size count" a line, for the goals.
// --report: writes results.md, figures.txt and the data of the plots into a folder.
// --figures: takes the figures of a report, with its date and machine, and measures nothing: for a
// page that is to be laid out anew.
#include <benchmark/benchmark.h>
#include <sys/utsname.h>

#include <ctime>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "support/Check.h"
#include "support/Comparisons.h"
#include "support/MedianReporter.h"
#include "support/Report.h"
#include "support/Series.h"
#include "support/Sizes.h"

namespace Bench {
namespace {

struct Options {
  std::string counts;
  std::string figures;
  std::string report;
  std::vector<char*> others;  // the library's
};

// Medians of five unless the user says otherwise: what comes later on the line wins.
Options optionsOf(int argc, char** argv) {
  static std::string given[] = {"--benchmark_repetitions=" + std::to_string(repetitions),
                                "--benchmark_min_time=0.05"};
  Options options;
  options.others = {argv[0], given[0].data(), given[1].data()};
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    if (word == "--quick") {
      quickIs();
    } else if (word == "--counts" && i + 1 < argc) {
      options.counts = argv[++i];
    } else if (word == "--figures" && i + 1 < argc) {
      options.figures = argv[++i];
    } else if (word == "--report" && i + 1 < argc) {
      options.report = argv[++i];
    } else {
      options.others.push_back(argv[i]);
    }
  }
  return options;
}

// ===== When and where

std::string today() {
  const std::time_t now = std::time(nullptr);
  char text[16];
  std::strftime(text, sizeof(text), "%Y-%m-%d", std::gmtime(&now));
  return text;
}

// "2 x 2.25 GHz x86_64, L2 0.50 MB, L3 32.0 MB".
std::string machine() {
  const benchmark::CPUInfo& cpu = benchmark::CPUInfo::Get();
  std::string result =
      std::to_string(cpu.num_cpus) + " x " + ratio(cpu.cycles_per_second / 1e9) + " GHz ";
  utsname system{};
  if (uname(&system) == 0) result += system.machine;
  for (const auto& cache : cpu.caches) {
    if (cache.level < 2) continue;
    result += ", L" + std::to_string(cache.level) + ' ';
    result += ratio(static_cast<double>(cache.size) / (1 << 20)) + " MB";
  }
  return result;
}

Origin hereAndNow() {
  return {isQuick() ? "./dev bench --quick" : "./dev bench", today(),
          machine() + ", g++ " + __VERSION__};
}

// ===== Figures

void readCounts(const std::string& path, Figures& figures) {
  std::ifstream file(path);
  require(file.is_open(), "cannot read " + path);
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string event;
    std::size_t size = 0;
    double count = 0;
    if (words >> event >> size >> count) figures[at("instructions " + event, size)] = count;
  }
}

// Runs what the library's arguments choose.
Figures measured(const std::string& counts) {
  MedianReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  Figures figures = reporter.figures();
  if (!counts.empty()) readCounts(counts, figures);
  return figures;
}

// What needs two other figures.
void derive(Figures& figures) {
  const auto each = figures.find("start-up of a class map/1000000");
  if (each != figures.end()) figures["start-up of a million class maps"] = each->second * 1e6;
}

void registerAll(Comparisons& comparisons) {
  eventTimes(comparisons);
#ifdef QOS_BENCH_LIBYANG
  libyang(comparisons);
#endif
  feed(comparisons);
#ifdef QOS_BENCH_GNMI
  frames(comparisons);
#endif
  startUp(comparisons);
  documents(comparisons);
  notification(comparisons);
  hashMap(comparisons);
  decoders(comparisons);
  comments(comparisons);
}

int main(int argc, char** argv) {
  Options options = optionsOf(argc, argv);
  int count = static_cast<int>(options.others.size());
  options.others.push_back(nullptr);
  benchmark::Initialize(&count, options.others.data());
  if (benchmark::ReportUnrecognizedArguments(count, options.others.data())) return 1;

  Comparisons comparisons;
  registerAll(comparisons);
  Origin origin = hereAndNow();
  Figures figures;
  if (options.figures.empty()) {
    figures = measured(options.counts);
  } else {
    std::ifstream file(options.figures);
    require(file.is_open(), "cannot read " + options.figures);
    readFigures(file, origin, figures);
  }
  derive(figures);
  printVerdicts(std::cout, figures);
  if (!options.report.empty()) writeReport(options.report, origin, comparisons, figures);
  return 0;
}

}  // namespace
}  // namespace Bench

int main(int argc, char** argv) { return Bench::main(argc, argv); }
