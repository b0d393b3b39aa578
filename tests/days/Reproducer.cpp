#include "tests/days/Reproducer.h"

#include <filesystem>
#include <fstream>
#include <span>

#include "host/NativeWriter.h"

namespace days {
namespace {

// The commands that show both models, one after the other.
std::string commands(Check check, std::uint32_t otherOrder) {
  const std::string day = "qosoc translate native.json --changes changes.jsonl --format model";
  const std::string start = "qosoc translate native-after.json --format model";
  switch (check) {
    case Check::order:
      return day + '\n' + day + " --order-seed " + std::to_string(otherOrder) + '\n';
    case Check::restart:
      return day + " > model.json\n" + start + " --initial model.json\n";
    case Check::again:
      return day + " > model.json\n" + start + " --initial model.json > again.json\n" + start +
             " --initial again.json\n";
    case Check::rebuild:
      return day + '\n' + start + '\n';
  }
  return "";
}

}  // namespace

void writeReproducer(const std::string& directory, const Script& script,
                     const std::vector<Finding>& findings, std::uint32_t otherOrder) {
  std::filesystem::create_directories(directory);
  const auto file = [&](const std::string& name) { return std::ofstream(directory + '/' + name); };
  file("native.json") << script.document << '\n';
  std::ofstream changes = file("changes.jsonl");
  Device device(script.document, 0);
  const std::size_t lines = findings.empty() ? script.lines.size() : findings.front().lines;
  for (const std::string& line : std::span(script.lines).first(lines)) {
    changes << line << '\n';
    device.line(line);
  }
  file("native-after.json") << host::nativeJson(device.native(), host::Layout::pretty);
  std::ofstream told = file("told.txt");
  for (const Finding& finding : findings) told << finding.told() << '\n';
  if (findings.empty()) return;
  told << '\n' << commands(findings.front().check.value_or(Check::order), otherOrder);
}

}  // namespace days
