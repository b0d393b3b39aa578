#include "support/Report.h"

#include <benchmark/benchmark.h>
#include <sys/utsname.h>

#include <algorithm>
#include <ctime>
#include <fstream>
#include <iostream>
#include <vector>

#include "support/Check.h"
#include "support/EventKinds.h"
#include "support/Goals.h"
#include "support/Sizes.h"

namespace Bench {
namespace {

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

// ===== Texts

std::string grouped(std::size_t number) {
  std::string text = std::to_string(number);
  for (std::size_t at = text.size(); at > 3; at -= 3) text.insert(at - 3, 1, ',');
  return text;
}

std::string padded(std::string text, std::size_t width) {
  text.resize(std::max(width, text.size()), ' ');
  return text;
}

void row(std::ostream& out, const std::vector<std::string>& cells) {
  for (const std::string& cell : cells) out << "| " << cell << ' ';
  out << "|\n";
}

void heading(std::ostream& out, const std::string& title, const std::vector<std::string>& columns) {
  out << "\n## " << title << "\n\n";
  row(out, columns);
  for (std::size_t i = 0; i < columns.size(); ++i) out << "|---";
  out << "|\n";
}

const double* find(const Figures& figures, const std::string& name) {
  const auto found = figures.find(name);
  return found != figures.end() ? &found->second : nullptr;
}

std::string cell(const Figures& figures, const std::string& name) {
  const double* figure = find(figures, name);
  return figure != nullptr ? measure(name, *figure) : "";
}

// ===== Tables

void goalsTable(std::ostream& out, const Figures& figures) {
  heading(out, "Goals", {"", "worst figure", "beside", "ratio", "goal", ""});
  for (const Verdict& one : verdicts(figures)) {
    row(out,
        {one.what, one.own, one.rival, one.ratio, one.goal, one.isMet ? "met" : "**not met**"});
  }
}

// The names of all kinds of events, the floor first.
struct KindNames {
  std::vector<std::string> names;
  template <class Device, auto before, auto event, auto after>
  void kind(const std::string& name) {
    names.push_back(name);
  }
};
std::vector<std::string> kindNames() {
  KindNames kinds;
  eachEventKind(kinds);
  return kinds.names;
}

// A row for each kind of event, a column for each size.
template <class Cell>
void eventTable(std::ostream& out, const std::string& title,
                const std::vector<std::size_t>& columns, const Cell& cellOf) {
  std::vector<std::string> names = {""};
  for (const std::size_t size : columns) names.push_back(grouped(size));
  heading(out, title, names);
  for (const std::string& kind : kindNames()) {
    std::vector<std::string> cells = {kind};
    for (const std::size_t size : columns) cells.push_back(cellOf(kind, size));
    row(out, cells);
  }
}

void timesTable(std::ostream& out, const Figures& figures) {
  const auto cellOf = [&](const std::string& kind, std::size_t size) {
    const double* own = find(figures, at("event " + kind, size));
    const double* floor = find(figures, at("event " + kind, size) + " floor");
    if (own == nullptr) return std::string();
    std::string text = measure("", *own);
    if (floor != nullptr && kind != floorEvent) text += ", " + ratio(*own / *floor) + " x";
    return text;
  };
  eventTable(out, "Time of an event, and how many times the floor's", sizes(), cellOf);
  eventTable(out, "Heap allocations of an event, once warm", sizes(),
             [&](const std::string& kind, std::size_t size) {
               return cell(figures, at("event " + kind, size) + " allocations");
             });
}

// The sizes that instructions were counted at.
std::vector<std::size_t> countedSizes(const Figures& figures) {
  std::vector<std::size_t> result;
  for (const std::size_t size : {1000, 10'000, 100'000, 1'000'000}) {
    if (find(figures, at(std::string("instructions ") + floorEvent, size))) result.push_back(size);
  }
  return result;
}

void instructionsTable(std::ostream& out, const Figures& figures) {
  const std::vector<std::size_t> counted = countedSizes(figures);
  if (counted.empty()) return;
  eventTable(out, "Instructions of an event", counted,
             [&](const std::string& kind, std::size_t size) {
               return cell(figures, at("instructions " + kind, size));
             });
}

void subjectTable(std::ostream& out, const Comparisons::Subject& subject, const Figures& figures) {
  heading(out, subject.title, {"", "", "beside", "", "ratio"});
  for (const Comparisons::Line& line : subject.lines) {
    const double* own = find(figures, line.figure);
    if (own == nullptr) continue;
    const double* other = find(figures, line.against);
    row(out, {line.figure, measure(line.figure, *own), other != nullptr ? line.against : "",
              cell(figures, line.against), other != nullptr ? ratio(*own / *other) : ""});
  }
}

// ===== Data of the plots: a block for each line, by name

void block(std::ostream& out, const std::string& name, const std::string& figure,
           const Figures& figures) {
  std::string lines;
  for (const std::size_t size : {1000, 10'000, 100'000, 1'000'000}) {
    const double* value = find(figures, at(figure, size));
    if (value != nullptr) lines += std::to_string(size) + ' ' + std::to_string(*value) + '\n';
  }
  if (!lines.empty()) out << "# " << name << '\n' << lines << "\n\n";
}

void writeData(const std::string& folder, const Figures& figures) {
  std::ofstream times(folder + "/times.dat");
  std::ofstream instructions(folder + "/instructions.dat");
  for (const std::string& kind : kindNames()) {
    block(times, kind, "event " + kind, figures);
    block(instructions, kind, "instructions " + kind, figures);
  }
  for (const char* edit : {"libyang edit by path", "libyang edit of a held leaf"}) {
    block(times, edit, edit, figures);
  }
  require(times.flush() && instructions.flush(), "cannot write into " + folder);
}

}  // namespace

void printVerdicts(std::ostream& out, const Figures& figures) {
  out << "\nGoals, each with its worst figure of this run (medians)\n";
  for (const Verdict& one : verdicts(figures)) {
    out << padded(one.isMet ? "met" : "NOT MET", 9) << padded(one.what, 62) << padded(one.ratio, 14)
        << padded(one.goal, 14) << one.own;
    if (!one.rival.empty()) out << ", " << one.rival;
    out << '\n';
  }
}

void writeReport(const std::string& folder, const Comparisons& comparisons,
                 const Figures& figures) {
  std::ofstream out(folder + "/results.md");
  out << "# Results\n\nWritten by `./dev bench" << (isQuick() ? " --quick" : "") << "` on "
      << today() << ", on " << machine() << ", g++ " << __VERSION__
      << ". [performance.md](../performance.md) tells what was done.\n";
  goalsTable(out, figures);
  timesTable(out, figures);
  instructionsTable(out, figures);
  for (const Comparisons::Subject& subject : comparisons.subjects()) {
    if (subject.title != "Events") subjectTable(out, subject, figures);
  }
  require(bool(out.flush()), "cannot write into " + folder);
  writeData(folder, figures);
  std::ofstream(folder + "/machine.txt") << today() << ", " << machine() << '\n';
}

}  // namespace Bench
