#include <array>
#include <cstdint>
#include <memory>
#include <utility>

#include "Arguments.h"
#include "Commands.h"
#include "Input.h"
#include "Messages.h"
#include "Output.h"
#include "Printer.h"
#include "Progress.h"
#include "Rok/Rok.h"
#include "Shown.h"
#include "host/Changes.h"
#include "host/CommentFaults.h"
#include "host/ModelReader.h"
#include "host/NativeReader.h"
#include "host/NativeWriter.h"
#include "host/Nearest.h"
#include "host/Roots.h"
#include "host/SavedState.h"
#include "host/Text.h"

namespace qosoc {
namespace {

Words rootWords() {
  static const std::vector<Word> words = [] {
    std::vector<Word> all;
    for (const host::Root& root : host::roots()) all.push_back({root.name});
    return all;
  }();
  return words;
}

std::vector<std::string> rootNames(const std::string& list) {
  std::vector<std::string> names = parts(list);
  for (const std::string& name : names) {
    const host::Root* root = host::rootNamed(name);
    if (root != nullptr) continue;
    throw UsageError("--roots: there is no root " + host::quoted(name) +
                     host::didYouMeanOf(name, qosoc::names(rootWords())));
  }
  return names;
}

std::vector<unsigned> traceLevels(const std::string& list) {
  std::vector<unsigned> levels;
  for (const std::string& part : parts(list)) {
    const auto level = host::decimal(part, Rok::TraceFacility::levels - 1);
    if (!level) {
      throw UsageError("--trace: expected levels from 0 to 9, not " + host::quoted(part));
    }
    levels.push_back(static_cast<unsigned>(*level));
  }
  return levels;
}

void orderSeedIs(const std::string& text) {
  const auto seed = host::decimal(text, 0xffffffffu);
  if (!seed) {
    throw UsageError("--order-seed: expected a number from 0 to 4294967295, not " +
                     host::quoted(text));
  }
  Rok::HashHelper::orderSeedIs(static_cast<std::uint32_t>(*seed));
}

// The native document; empty when a state is restored, which holds one.
std::string nativeOf(const Arguments& arguments) {
  const auto native = arguments.operand();
  if (!arguments.has("--restore")) {
    if (!native) throw UsageError("NATIVE.json is missing");
    return *native;
  }
  if (native) {
    throw UsageError("--restore takes the place of NATIVE.json: what is " + host::quoted(*native) +
                     "?");
  }
  if (arguments.has("--initial")) {
    throw UsageError("--restore takes the place of --initial: give one of them");
  }
  return "";
}

// What the arguments ask for. All of them are checked before any file is read.
struct Request {
  explicit Request(const Arguments& arguments)
      : native(nativeOf(arguments)),
        restore(arguments.value("--restore")),
        changes(arguments.value("--changes")),
        initial(arguments.value("--initial")),
        output(outputFile(arguments)),
        printer(printerOf(arguments, output)) {
    if (const auto list = arguments.value("--roots")) roots = rootNames(*list);
    if (arguments.has("--retry-roots")) leftOut = host::KeptRoots::LeftOut::returns;
    if (arguments.has("--refuse-bad-comments")) badComments = host::Changes::BadComments::refused;
    if (const auto list = arguments.value("--trace")) levels = traceLevels(*list);
    if (const auto seed = arguments.value("--order-seed")) orderSeedIs(*seed);
    const auto file = [&](const char* option) {
      const auto path = arguments.value(option);
      return path ? std::optional<OutputFile>({option, *path, output ? "" : "the model"})
                  : std::nullopt;
    };
    nativeOut = file("--native-out");
    save = file("--save");
    checkFilesDiffer();
    checkInputsDiffer();
    checkInputsStay();
  }

  using Input = std::pair<const char*, std::optional<std::string>>;
  std::array<Input, 4> inputs() const {
    return {{{"NATIVE.json", restore ? std::nullopt : std::optional(native)},
             {"--restore", restore},
             {"--initial", initial},
             {"--changes", changes}}};
  }

  // Throws: UsageError when two options name one file.
  void checkFilesDiffer() const {
    const std::pair<const char*, const std::optional<OutputFile>&> files[] = {
        {"--native-out", nativeOut}, {"--save", save}, {"--output", output}};
    for (const auto& [option, file] : files) {
      for (const auto& [other, otherFile] : files) {
        if (&file == &otherFile) break;
        if (!file || !otherFile || !file->isSameAs(*otherFile)) continue;
        throw UsageError(std::string(other) + " and " + option + " name the same file");
      }
    }
  }

  // Throws: UsageError when two inputs are standard input.
  void checkInputsDiffer() const {
    std::string first;
    for (const auto& [name, file] : inputs()) {
      if (file != "-") continue;
      const std::string other = std::exchange(first, name);
      if (other.empty()) continue;
      throw UsageError("standard input is " + other + " or " + name + ", not both");
    }
  }

  // Throws: UsageError when a file to write is an input. A document may be brought up to date in its
  // place, and so may a saved state.
  void checkInputsStay() const {
    for (const auto& [name, input] : inputs()) {
      if (!input) continue;
      const std::string_view of = name;
      if (output) output->checkIsNot(of, *input);
      if (nativeOut && of != "NATIVE.json") nativeOut->checkIsNot(of, *input);
      if (save && of != "--restore") save->checkIsNot(of, *input);
    }
  }

  std::string native;
  std::optional<std::string> restore;
  std::optional<std::string> changes;
  std::optional<std::string> initial;
  std::optional<OutputFile> output;
  std::unique_ptr<Printer> printer;
  std::vector<std::string> roots;
  host::KeptRoots::LeftOut leftOut = host::KeptRoots::LeftOut::stays;
  host::Changes::BadComments badComments = host::Changes::BadComments::named;
  std::vector<unsigned> levels;  // of the trace
  std::optional<OutputFile> nativeOut;
  std::optional<OutputFile> save;
};

class Translation {
 public:
  explicit Translation(const Request& request) : request_(request) {
    if (request.restore) {
      readFile(*request.restore,
               [&](std::FILE* file) { host::readSavedState(file, native_, model_); });
      return;
    }
    readFile(request.native, [this](std::FILE* file) { host::readNative(file, native_); });
    if (!request.initial) return;
    readFile(*request.initial, [&](std::FILE* file) { host::readModel(file, model_); });
  }

  int run() {
    std::unique_ptr<Lines> lines;
    if (request_.changes) lines = std::make_unique<Lines>(*request_.changes);
    // Trace lines go to the terminal past the line of progress.
    std::optional<Stage> stage(std::in_place, "translating", request_.levels.empty());
    for (const std::string& fault : host::commentFaults(native_)) tell("warning: " + fault);
    // Traced from here on: commentFaults would add lines, since it computes keys and decodes names
    // by the library's functions.
    for (const unsigned level : request_.levels) Rok::TraceFacility::levelIs(level, true);
    host::KeptRoots roots(request_.roots, native_, model_, request_.leftOut,
                          [this](const std::string& line) { report(line); });
    request_.printer->start(model_, [this](const std::string& line) { report("qosoc: " + line); });
    stage.reset();
    if (lines) apply(*lines, roots);
    writeFiles();
    request_.printer->end();
    return clean_ ? done : doneWithReports;
  }

 private:
  void apply(Lines& lines, host::KeptRoots& roots) {
    host::Changes changes(native_, roots, request_.badComments,
                          [this](const std::string& line) { report(line); });
    using Outcome = host::Changes::Outcome;
    progress().begin(!lines.areTyped() && request_.levels.empty());
    for (std::uint64_t number = 1; const auto line = lines.next(); ++number) {
      const Outcome outcome = changes.line(*line);
      if (outcome != Outcome::blank) request_.printer->line(number, outcome == Outcome::refused);
      progress().step([&] { return "change lines: " + std::to_string(number); });
    }
    progress().end();
  }

  // Before the model is printed: a reader that goes away in the middle of it ends the program.
  void writeFiles() {
    writeFile(request_.nativeOut, [this](const host::TextSink& sink) {
      host::nativeJson(native_, host::Layout::pretty, sink);
    });
    writeFile(request_.save, [this](const host::TextSink& sink) {
      host::savedStateJson(native_, model_, host::Layout::pretty, sink);
    });
  }
  void writeFile(const std::optional<OutputFile>& file, const OutputFile::Text& text) {
    if (!file) return;
    try {
      file->write(text);
    } catch (const OutputError& error) {
      report(std::string("qosoc: ") + error.what());
    }
  }

  void report(const std::string& line) {
    tell(line);
    clean_ = false;
  }

  const Request& request_;
  host::Native native_;
  host::Model model_;
  bool clean_ = true;
};

int run(const Arguments& arguments) {
  const Request request(arguments);
  return Translation(request).run();
}

constexpr std::string_view synopsis[] = {"NATIVE.json [OPTIONS]", "--restore FILE [OPTIONS]"};
constexpr Operand operands[] = {
    {.name = "NATIVE.json", .kind = Kind::fileOrDash, .isOptional = true}};

constexpr Option options[] = {
    {.name = "--changes",
     .value = "FILE|-",
     .kind = Kind::fileOrDash,
     .help = "apply a stream of changes: a JSON Patch a line; `-` reads standard input, line by "
             "line as they come"},
    {.name = "--each", .help = "print the model as one line, at the start and after each change"},
    {.name = "--feed",
     .help = "print as a line of JSON all leaves by their paths, and after each change those that "
             "it changed: \"delete\" has the nodes that went, \"update\" the new values"},
    {.name = "--format",
     .value = "FORMAT",
     .kind = Kind::word,
     .help = "print the model in this form",
     .words = formats},
    withHelp(onlyOption,
             "print that part of the tree: a container, a list, an entry of a list or a leaf, as "
             "/qos/queues/queue[name=EF]; the entries around it have their keys alone"),
    noAugmentsOption,
    withHelp(stateOption, "print each `config` a second time, as the `state` beside it"),
    withHelp(interfaceRefOption,
             "print where each interface is: its `interface-ref`, and /interfaces"),
    outputOption,
    {.name = "--initial",
     .value = "FILE",
     .kind = Kind::fileOrDash,
     .help = "start from the model of an earlier life, in the format `model`; what the native side "
             "no longer stands for is swept out of it"},
    {.name = "--native-out",
     .value = "FILE",
     .kind = Kind::file,
     .help = "write the native document to a file, as the changes left it"},
    {.name = "--save",
     .value = "FILE",
     .kind = Kind::file,
     .help = "write the native document and the model to a file, as they stand in the end"},
    {.name = "--restore",
     .value = "FILE",
     .kind = Kind::fileOrDash,
     .help = "go on from what --save wrote, as from NATIVE.json and --initial, in their place"},
    {.name = "--roots",
     .value = "NAME,...",
     .kind = Kind::words,
     .help = "build only these roots",
     .words = rootWords},
    {.name = "--retry-roots",
     .help = "build a root that raised at the start again, after a change of what it raised over"},
    {.name = "--refuse-bad-comments",
     .help = "refuse a change line by which a comment with a value of the wrong type is read; "
             "otherwise the comment is named, and the program ends"},
    {.name = "--trace",
     .value = "LEVEL,...",
     .kind = Kind::other,
     .help = "write the trace lines of these levels (0 to 9) to standard error"},
    {.name = "--order-seed",
     .value = "N",
     .kind = Kind::other,
     .help = "walk every hash collection in another order: the output stays the same, unless "
             "several native objects write one thing (as the tx queues of an interface do that "
             "name different scheduler policies), or a root or a handler raises"},
};

constexpr ExitCode exitCodes[] = {
    {done, "all done"},
    {doneWithReports,
     "translated, but a change line was refused, a root or a handler raised, or the output could "
     "not be written"},
    {nothingDone, "bad usage or bad input, nothing translated"},
};

}  // namespace

constinit const Command translateCommand{
    .name = "translate",
    .summary = "print the model, also after each of a stream of changes",
    .synopsis = synopsis,
    .about = R"(
Reads a native QoS configuration, from standard input as `-`, translates it, and prints the OpenConfig QoS model that comes of it.
Then each change of the native side changes only what it concerns.
)",
    .operands = operands,
    .options = options,
    .example = R"(
  $ cat router.json
  {"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]}}}}
  $ cat changes.jsonl
  [{"op": "add", "path": "/class-maps/qos/__yang_[edge-in]_[voice]", "value": {"match": ["ip-access-group"]}}]
  $ qosoc translate router.json --changes changes.jsonl --each
  {"openconfig-qos:qos":{"classifiers":{"classifier":[{"config":{"name":"edge-in","type":"IPV4"},"name":"edge-in"}]}}}
  {"openconfig-qos:qos":{"classifiers":{"classifier":[{"config":{"name":"edge-in","type":"IPV4"},"name":"edge-in","terms":{"term":[{"config":{"id":"voice"},"id":"voice"}]}}]}}}
  $ qosoc translate router.json --changes changes.jsonl --feed | tail -n 1
  {"line":1,"delete":[],"update":{"/qos/classifiers/classifier[name=edge-in]/terms/term[id=voice]/config/id":"voice","/qos/classifiers/classifier[name=edge-in]/terms/term[id=voice]/id":"voice"}}
)",
    .notes = R"(
A change line that does not apply is refused as a whole, and the next one is read. What is wrong goes
to standard error. A file is written after the last change line, whole or not at all.
)",
    .exitCodes = exitCodes,
    .run = run,
};

}  // namespace qosoc
