#include "support/Report.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <vector>

#include "support/Check.h"
#include "support/EventKinds.h"
#include "support/Expectations.h"
#include "support/Goals.h"
#include "support/Sizes.h"
#include "support/Table.h"

namespace Bench {
namespace {

std::string padded(std::string text, std::size_t width) {
  text.resize(std::max(width, text.size()), ' ');
  return text;
}

void heading(std::ostream& out, const std::string& title, const std::vector<std::string>& columns) {
  out << "\n## " << title << "\n\n";
  head(out, columns);
}

std::string cell(const Figures& figures, const std::string& name) {
  const double* figure = find(figures, name);
  return figure != nullptr ? measure(name, *figure) : "";
}

// ===== Tables

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
    line(out, cells);
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
  for (const Comparisons::Line& one : subject.lines) {
    const double* own = find(figures, one.figure);
    if (own == nullptr) continue;
    const double* other = find(figures, one.against);
    line(out, {one.figure, measure(one.figure, *own), other != nullptr ? one.against : "",
               cell(figures, one.against), other != nullptr ? ratio(*own / *other) : ""});
  }
}

// ===== Goals

void metGoals(std::ostream& out, const std::vector<Verdict>& all) {
  heading(out, "Goals that are met", {"", "worst figure", "beside", "ratio", "goal"});
  for (const Verdict& one : all) {
    if (one.isMet) line(out, {one.what, one.own, one.rival, one.ratio, one.goal});
  }
}

// Each as a paragraph: what, how far, by which figures, why.
void missedGoals(std::ostream& out, const std::vector<Verdict>& all) {
  if (std::ranges::all_of(all, &Verdict::isMet)) return;
  out << "\n## Goals that are not met\n\n";
  for (const Verdict& one : all) {
    if (one.isMet) continue;
    out << "- **" << one.what << "**: ";
    if (!one.ratio.empty()) out << one.ratio << ", ";
    out << "goal " << one.goal << (one.excess.empty() ? "" : ", " + one.excess) << ". " << one.own
        << (one.rival.empty() ? "" : "; " + one.rival) << ". "
        << (one.why.empty() ? "The reason isn't known." : one.why) << '\n';
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

void writePage(std::ostream& out, const Origin& origin, const Comparisons& comparisons,
               const Figures& figures) {
  out << "# Results\n\nWritten by `" << origin.command << "` on " << origin.date << ", on "
      << origin.machine << ". [performance.md](../performance.md) has the method.\n";
  writeExpectations(out, figures);
  timesTable(out, figures);
  instructionsTable(out, figures);
  for (const Comparisons::Subject& subject : comparisons.subjects()) {
    if (subject.title != "Events") subjectTable(out, subject, figures);
  }
  const std::vector<Verdict> all = verdicts(figures);
  metGoals(out, all);
  missedGoals(out, all);
}

void writeReport(const std::string& folder, const Origin& origin, const Comparisons& comparisons,
                 const Figures& figures) {
  std::ofstream page(folder + "/results.md");
  writePage(page, origin, comparisons, figures);
  std::ofstream stored(folder + "/figures.txt");
  writeFigures(stored, origin, figures);
  require(page.flush() && stored.flush(), "cannot write into " + folder);
  writeData(folder, figures);
  std::ofstream(folder + "/machine.txt") << origin.date << ", " << origin.machine << '\n';
}

}  // namespace Bench
