#include <unistd.h>

#include "Arguments.h"
#include "Commands.h"
#include "Input.h"
#include "Messages.h"
#include "Output.h"
#include "Progress.h"
#include "Shown.h"
#include "StandardOutput.h"
#include "Terminal.h"
#include "host/LeafDiff.h"
#include "host/LeavesOfText.h"
#include "host/Text.h"

namespace qosoc {
namespace {

// Lines of a document, on standard error.
void tellAll(const char* begin, const std::vector<std::string>& lines) {
  for (const std::string& line : lines) tell(begin + line);
}

host::LeavesOfText leavesOf(const std::string& file, const Shown& shown) {
  const std::string text = wholeText(file);
  const Stage stage("reading " + host::shown(inputName(file)));
  host::LeavesOfText read = host::leavesOfText(inputName(file), text, shown.view, shown.only);
  tellAll("qosoc: ", read.faults);
  tellAll("warning: ", read.warnings);
  return read;
}

// Hands on a difference, a line each.
void write(const std::vector<host::LeafChange>& changes, bool isColoured,
           const host::TextSink& sink) {
  for (const host::LeafChange& change : changes) {
    const std::string line = host::changeLine(change);
    const Style style = line.starts_with('-')   ? Style::red
                        : line.starts_with('+') ? Style::green
                                                : Style::yellow;
    sink(styled(line, style, isColoured) + '\n');
  }
}

constexpr Operand operands[] = {{.name = "A.json", .kind = Kind::fileOrDash},
                                {.name = "B.json", .kind = Kind::fileOrDash}};

int run(const Arguments& arguments) {
  const std::string files[] = {*arguments.operand(0), *arguments.operand(1)};
  if (files[0] == "-" && files[1] == "-") throw UsageError("standard input is one document");
  const Shown shown(arguments);
  const auto file = outputFile(arguments);
  for (std::size_t i = 0; file && i < std::size(files); ++i) {
    file->checkIsNot(operands[i].name, files[i]);
  }
  const host::LeavesOfText before = leavesOf(files[0], shown);
  const host::LeavesOfText after = leavesOf(files[1], shown);
  if (!before.faults.empty() || !after.faults.empty()) return nothingDone;
  std::optional<Stage> stage("comparing");
  const auto changes = host::leafChanges(before.leaves, after.leaves);
  stage.reset();
  const bool isColoured = !file && hasColours(STDOUT_FILENO);
  const auto text = [&](const host::TextSink& sink) {
    if (!arguments.has("--json")) return write(changes, isColoured, sink);
    sink(host::changesJson(changes, after.leaves, shown.only) + '\n');
  };
  file ? file->write(text) : print(text);
  return changes.empty() ? done : doneWithReports;
}

constexpr std::string_view synopsis[] = {"A.json B.json [OPTIONS]"};

constexpr Option options[] = {
    {.name = "--json",
     .help = "print one line of JSON: the nodes to delete and the leaves to set in A to get B"},
    withHelp(onlyOption,
             "compare that part of the tree: a container, a list, an entry of a list or a leaf, as "
             "/qos/queues/queue[name=EF]"),
    noAugmentsOption,
    withHelp(stateOption,
             "compare each `state`, and not only one that differs from the `config` beside it"),
    withHelp(interfaceRefOption, "compare each `interface-ref` and /interfaces, likewise"),
    outputOption,
};

constexpr ExitCode exitCodes[] = {
    {done, "the documents have the same leaves"},
    {doneWithReports, "they differ"},
    {nothingDone, "bad usage or bad input, nothing compared, or the output could not be written"},
};

}  // namespace

constinit const Command diffCommand{
    .name = "diff",
    .summary = "print the leaves that differ between two documents",
    .synopsis = synopsis,
    .about = R"(
Prints the leaves of the OpenConfig tree that differ between two documents, by path. Each is a native
document, which is translated, or an OpenConfig one, as `translate` and other programs print it. `-`
is standard input, for one of them.

  - PATH VALUE         a leaf of A that B has not
  + PATH VALUE         a leaf of B that A has not
  ~ PATH OLD -> NEW    a leaf of both, with its values
)",
    .operands = operands,
    .options = options,
    .example = R"(
  $ cat before.json
  {"queue-names": {"EF": 3}, "forwarding-groups": {"voice": 5}, "tc-to-tx-queue": {"5": 3}}
  $ cat after.json
  {"queue-names": {"AF": 2}, "forwarding-groups": {"voice": 5}, "tc-to-tx-queue": {"5": 2}}
  $ qosoc diff before.json after.json
  ~ /qos/forwarding-groups/forwarding-group[name=voice]/config/output-queue "EF" -> "AF"
  + /qos/queues/queue[name=AF]/config/name "AF"
  + /qos/queues/queue[name=AF]/name "AF"
  - /qos/queues/queue[name=EF]/config/name "EF"
  - /qos/queues/queue[name=EF]/name "EF"
)",
    .notes = R"(
A native document is refused when one of its comments ends the program that translates it, or when a
root raises over it.
)",
    .exitCodes = exitCodes,
    .run = run,
};

}  // namespace qosoc
