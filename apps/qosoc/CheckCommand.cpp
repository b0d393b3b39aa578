#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <numeric>
#include <optional>

#include "Arguments.h"
#include "Commands.h"
#include "FoundLine.h"
#include "Input.h"
#include "InputFile.h"
#include "Messages.h"
#include "Progress.h"
#include "StandardOutput.h"
#include "Terminal.h"
#include "host/Changes.h"
#include "host/NativeReader.h"
#include "host/Shape.h"
#include "host/Text.h"
#include "host/check/Check.h"
#include "host/check/Positions.h"

namespace qosoc {
namespace {

using host::Finding;

// A document that may be read twice: what is found is looked for in its text.
class Document {
 public:
  Document(std::string file, bool isForShape) : file_(std::move(file)) {
    if (isForShape) return;
    struct stat status {};
    const bool isFile = file_ != "-" && ::stat(file_.c_str(), &status) == 0;
    if (!isFile || !S_ISREG(status.st_mode)) text_ = wholeText(file_);
  }

  const std::string& file() const { return file_; }

  // Throws: Refusal, InputError.
  void read(const host::Native& native) const {
    if (text_) return host::readNativeText(*text_, native);
    const InputFile file(file_);
    host::readNative(file.stream(), native);
  }
  // The same, and nothing is mounted.
  void judgeShape() const {
    const InputFile file(file_);
    host::checkShape(file.stream());
  }
  // Of each place. Requires: the document can be read.
  std::vector<host::TextPosition> positions(std::span<const host::Tokens> places) const {
    return text_ ? host::positionsOfText(*text_, places) : host::positionsOfFile(file_, places);
  }

 private:
  std::string file_;
  std::optional<std::string> text_;  // of what can't be read twice
};

class Check {
 public:
  explicit Check(const Arguments& arguments)
      : isShape_(arguments.has("--shape")),
        document_(*arguments.operand(), isShape_),
        changes_(arguments.value("--changes")),
        isJson_(arguments.has("--json")),
        isColoured_(!isJson_ && hasColours(STDOUT_FILENO)) {}

  int run() {
    if (!read()) return nothingDone;
    if (isShape_) return done;
    {
      const Stage stage("checking");
      findings_ = host::findingsOf(native_);
    }
    printDocument();
    if (changes_) apply();
    out_.flush();
    return exit_;
  }

 private:
  // False for a document that is refused.
  bool read() {
    try {
      isShape_ ? document_.judgeShape() : document_.read(native_);
      return true;
    } catch (const host::Refusal& refusal) {
      if (isUnreadable(refusal)) throw InputError(document_.file(), refusal);
      for (const host::Fault& fault : refusal.faults()) print(fault);
      if (refusal.faults().size() == host::mostFaults)
        tell("qosoc: " + host::linesOf(refusal.faults(), name()).back());
      out_.flush();
      return false;
    }
  }
  static bool isUnreadable(const host::Refusal& refusal) {
    return refusal.faults().front().position().line == 0;
  }

  // In the order of the text.
  void printDocument() {
    if (findings_.empty()) return;
    std::vector<host::Tokens> places;
    for (const Finding& finding : findings_) places.push_back(finding.place);
    const std::vector<host::TextPosition> positions = document_.positions(places);
    std::vector<std::size_t> order(findings_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return positions[a] < positions[b]; });
    for (const std::size_t i : order) print(lineOf(findings_[i], name(), positions[i], "warning"));
  }

  // ===== Changes

  void apply() {
    Lines lines(*changes_);
    host::Changes changes(native_, host::Changes::Judging::comments,
                          [](const std::string& /*line*/) {});
    progress().begin(!lines.areTyped());
    for (std::uint64_t number = 1; const auto line = lines.next(); ++number) {
      line_ = number;
      judge(changes, *line);
      progress().step([&] { return "change lines: " + std::to_string(number); });
    }
    progress().end();
  }

  void judge(host::Changes& changes, std::string_view line) {
    using Outcome = host::Changes::Outcome;
    const Outcome outcome = changes.line(line);
    if (outcome == Outcome::refused) printRefused(changes.refusal());
    if (outcome == Outcome::applied) {
      printDifference(host::findingsOf(native_));
      if (const auto& comment = changes.badComment()) printBadComment(host::findingOf(*comment));
    }
    out_.flush();
  }

  void printDifference(std::vector<Finding> after) {
    const auto each = [this](const std::vector<Finding>& of, const std::vector<Finding>& without,
                             const char* severity) {
      for (const Finding& finding : of) {
        if (std::binary_search(without.begin(), without.end(), finding)) continue;
        print(lineOf(finding, inputName(*changes_), {line_, 1}, severity));
      }
    };
    each(findings_, after, "resolved");
    each(after, findings_, "warning");
    findings_ = std::move(after);
  }

  // What a line reads need not stand in the document behind it, or not as what is read at a start.
  void printBadComment(const Finding& finding) {
    if (std::binary_search(findings_.begin(), findings_.end(), finding)) return;
    print(lineOf(finding, inputName(*changes_), {line_, 1}, "warning"));
  }

  // ===== Lines

  std::string name() const { return inputName(document_.file()); }

  void print(const host::Fault& fault) {
    print(
        {name(), fault.position(), "error", fault.place(), fault.pointer(), "form", fault.what()});
  }
  static FoundLine lineOf(const Finding& finding, const std::string& file,
                          host::TextPosition position, const char* severity) {
    return {file,
            position,
            severity,
            host::shownPointer(finding.place),
            host::pointerText(finding.place),
            finding.kind,
            finding.text};
  }
  void printRefused(const host::Fault& fault) {
    print({inputName(*changes_),
           {line_, 1},
           "error",
           fault.place(),
           fault.pointer(),
           "refused",
           fault.what()});
  }
  void print(const FoundLine& line) {
    if (line.severity == "error") exit_ = nothingDone;
    if (line.severity == "warning") exit_ = std::max(exit_, doneWithReports);
    out_.write((isJson_ ? jsonLine(line) : shownLine(line, isColoured_)) + '\n');
  }

  const bool isShape_;
  const Document document_;
  const std::optional<std::string> changes_;
  const bool isJson_;
  const bool isColoured_;
  StandardOutput out_;
  const host::Native native_;
  std::vector<Finding> findings_;  // sorted
  std::uint64_t line_ = 0;         // of the changes
  int exit_ = done;
};

int run(const Arguments& arguments) {
  if (arguments.operand() == "-" && arguments.value("--changes") == "-") {
    throw UsageError("standard input is NATIVE.json or --changes, not both");
  }
  if (arguments.has("--shape") && arguments.has("--changes")) {
    throw UsageError("--shape judges a document without changes");
  }
  return Check(arguments).run();
}

constexpr std::string_view synopsis[] = {"NATIVE.json [OPTIONS]"};
constexpr Operand operands[] = {{.name = "NATIVE.json", .kind = Kind::fileOrDash}};

constexpr Option options[] = {
    {.name = "--changes",
     .value = "FILE|-",
     .kind = Kind::fileOrDash,
     .help = "judge a stream of changes, too: each line is judged as the lines before it leave the "
             "document, and what it brings or resolves is printed with its number"},
    {.name = "--shape",
     .help =
         "judge the form alone: syntax, members, types, ranges, repetitions; quick, and in little "
         "memory"},
    {.name = "--json", .help = "print an object of JSON for each finding, a line each"},
};

constexpr ExitCode exitCodes[] = {
    {done, "nothing was found"},
    {doneWithReports, "warnings: the document can be translated, and something of it is lost"},
    {nothingDone,
     "bad usage, the document is not valid or cannot be read, or a change line is refused"},
};

}  // namespace

constinit const Command checkCommand{
    .name = "check",
    .summary = "say what of a native document is wrong, or lost when it is translated",
    .synopsis = synopsis,
    .about = R"(
Reads a native document, from standard input as `-`, and prints all that will hurt when it is translated, a line each: the file, the line and the column, the place as a JSON Pointer, what is wrong and what to do. Prints nothing when all is well.

An error refuses the document. A warning names what the document loses, or leaves hanging: a comment that nearly says something, a value over which a translator raises, a name that leads nowhere, a result that depends on the order in which objects are met, a setting that the model has no place for.
)",
    .operands = operands,
    .options = options,
    .example = R"(
  $ cat router.json
  {"interfaces": {"Ethernet1": {"tx-queues": {"uc-3": {"bandwidth": 150}}}},
   "service-policies": {"1:__yang_[IPV4__edge-in]": {"interfaces": {"Ethernt1": true}}},
   "policy-maps": {"qos": {"__yang_[IPV4__edge-in]": {}}},
   "class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]}}}}
  $ qosoc check router.json
  router.json:1:67: warning: /interfaces/Ethernet1/tx-queues/uc-3/bandwidth: 150 is no percentage: the root queue raises over it, and queues are missing; write 0 to 100, or leave it out
  router.json:2:79: warning: /service-policies/1:__yang_[IPV4__edge-in]/interfaces/Ethernt1: no interface "Ethernt1" is configured: did you mean "Ethernet1"?; otherwise add it to interfaces
)",
    .notes = R"(
A line of `--json` has the file, line, column, severity (error, warning, and resolved for what a change line takes away), the pointer, the kind and the text. Kinds are words that stay the same; docs/checking.md has them all. A change line stands in column 1.
)",
    .exitCodes = exitCodes,
    .run = run,
};

}  // namespace qosoc
