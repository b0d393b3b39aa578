#include <cerrno>
#include <cstdio>
#include <cstring>

#include "Arguments.h"
#include "Commands.h"
#include "Input.h"
#include "Shown.h"
#include "host/LeafDiff.h"
#include "host/LeavesOfText.h"

namespace qosoc {
namespace {

constexpr const char* help = R"(usage: qosoc diff A.json B.json [OPTIONS]

Prints the leaves of the OpenConfig tree that differ between two documents, by path. Each is a native
document, which is translated, or an OpenConfig one, as `translate` and other programs print it. "-"
is standard input, for one of them.

  - PATH VALUE         a leaf of A that B has not
  + PATH VALUE         a leaf of B that A has not
  ~ PATH OLD -> NEW    a leaf of both, with its values

  --json             print one line of JSON: the nodes to delete and the leaves to set in A to get B
  --only PATH        compare that part of the tree: a container, a list, an entry of a list or a leaf,
                     as /qos/queues/queue[name=EF]
  --no-augments      leave out what is not in OpenConfig's own modules
  --state            compare each `state`, and not only one that differs from the `config` beside it
  --interface-ref    compare each `interface-ref` and /interfaces, likewise

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

A native document is refused when one of its comments ends the program that translates it, or when
a root raises over it.

Exit code: 0 the documents have the same leaves; 1 they differ; 2 bad usage or bad input, nothing
compared, or the output could not be written.
)";

constexpr Option options[] = {
    {"--help", false},        {"--json", false},  {"--only", true},
    {"--no-augments", false}, {"--state", false}, {"--interface-ref", false},
};

constexpr std::string_view documents[] = {"A.json", "B.json"};

// Lines of a document, on standard error.
void tell(const char* begin, const std::vector<std::string>& lines) {
  for (const std::string& line : lines) std::fprintf(stderr, "%s%s\n", begin, line.c_str());
}

host::LeavesOfText leavesOf(const std::string& file, const Shown& shown) {
  host::LeavesOfText read = host::leavesOfText(file, wholeText(file), shown.view, shown.only);
  tell("qosoc: ", read.faults);
  tell("warning: ", read.warnings);
  return read;
}

bool print(const std::string& line) {
  return std::fwrite(line.data(), 1, line.size(), stdout) == line.size() &&
         std::fputc('\n', stdout) != EOF;
}

bool printAll(const std::vector<host::LeafChange>& changes) {
  for (const host::LeafChange& change : changes) {
    if (!print(host::changeLine(change))) return false;
  }
  return true;
}

}  // namespace

int diffCommand(std::span<const std::string> words) {
  const Arguments arguments(words, options);
  if (arguments.has("--help")) {
    std::fputs(help, stdout);
    return done;
  }
  const auto& files = arguments.operands(documents);
  if (files[0] == "-" && files[1] == "-") throw UsageError("standard input is one document");
  const Shown shown(arguments);
  const host::LeavesOfText before = leavesOf(files[0], shown);
  const host::LeavesOfText after = leavesOf(files[1], shown);
  if (!before.faults.empty() || !after.faults.empty()) return nothingDone;
  const auto changes = host::leafChanges(before.leaves, after.leaves);
  const bool isPrinted = arguments.has("--json")
                             ? print(host::changesJson(changes, after.leaves, shown.only))
                             : printAll(changes);
  if (isPrinted && std::fflush(stdout) == 0) return changes.empty() ? done : doneWithReports;
  std::fprintf(stderr, "qosoc: standard output: %s\n", std::strerror(errno));
  return nothingDone;
}

}  // namespace qosoc
