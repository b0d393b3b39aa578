#include "support/Expectations.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include "support/EventKinds.h"
#include "support/Sizes.h"
#include "support/Table.h"

namespace Bench {
namespace {

// A row: of these figures the least and the most, at each size.
struct Row {
  std::string what;
  std::vector<std::string> figures;  // without their sizes
  std::string counter = "";          // behind the size
};

// What changes more than one record, or brings objects. A policy that is read whole stands alone.
bool isStructural(const std::string& kind) {
  return kind != floorEvent && kind != "scheduler-policy-read" &&
         std::ranges::find(oneRecordEvents, kind) == std::end(oneRecordEvents);
}

std::vector<Row> rows() {
  Row settings{"one setting changes", {}};
  for (const char* kind : oneRecordEvents) {
    settings.figures.push_back(std::string("event ").append(kind));
  }
  Row objects{"an object comes, goes, is bound, named or attached", {}};
  for (const std::string& kind : kindNames()) {
    if (isStructural(kind)) objects.figures.push_back("event " + kind);
  }
  return {settings,
          objects,
          {"the comment of a policy of 64 inputs is read", {"event scheduler-policy-read"}},
          {"a change, and the line of the feed for it", {"change and line of the feed"}},
          {"a start, for each class map", {"start-up of a class map"}},
          {"a start, for each term with ACL and action", {"start-up of a term's whole road"}},
          {"memory, for each class map", {"memory of a class map"}, " whole bytes"},
          {"memory, for each term with ACL and action",
           {"memory of a term's whole road"},
           " whole bytes"}};
}

std::string range(const Row& row, std::size_t size, const Figures& figures) {
  std::string least;
  std::string most;
  double low = 0;
  double high = 0;
  for (const std::string& figure : row.figures) {
    const std::string name = at(figure, size) + row.counter;
    const double* value = find(figures, name);
    if (value == nullptr) continue;
    if (least.empty() || *value < low) {
      low = *value;
      least = measure(name, low);
    }
    if (most.empty() || *value > high) {
      high = *value;
      most = measure(name, high);
    }
  }
  return least == most ? least : least + " to " + most;
}

void sizedTable(std::ostream& out, const Figures& figures) {
  std::vector<std::string> columns = {"On a device of so many objects"};
  for (const std::size_t size : sizes()) columns.push_back(grouped(size));
  head(out, columns);
  for (const Row& row : rows()) {
    std::vector<std::string> cells = {row.what};
    for (const std::size_t size : sizes()) cells.push_back(range(row, size, figures));
    const bool isEmpty = std::all_of(cells.begin() + 1, cells.end(),
                                     [](const std::string& cell) { return cell.empty(); });
    if (!isEmpty) line(out, cells);
  }
}

void documentTable(std::ostream& out, const Figures& figures) {
  const std::size_t size = documentMegabytes();
  std::vector<std::vector<std::string>> lines;
  for (const char* way :
       {"qosoc check", "qosoc check --shape", "qosoc translate", "qosoc translate --feed"}) {
    const std::string name = at(std::string("document, ").append(way), size);
    const double* time = find(figures, name);
    const double* peak = find(figures, name + " peak bytes");
    if (time == nullptr || peak == nullptr) continue;
    lines.push_back({std::string("`").append(way).append("`"), measure(name, *time),
                     measure(name + " peak bytes", *peak)});
  }
  if (lines.empty()) return;
  out << '\n';
  head(out, {"A native document of " + std::to_string(size) + " MB", "time", "peak memory"});
  for (const auto& cells : lines) line(out, cells);
}

}  // namespace

void writeExpectations(std::ostream& out, const Figures& figures) {
  out << "\n## What to expect\n\nMedians of one thread. Objects are class maps, tx queues or "
         "interfaces, whichever an event is about, and change in random order.\n\n";
  sizedTable(out, figures);
  documentTable(out, figures);
}

}  // namespace Bench
