#include "Arguments.h"
#include "Commands.h"
#include "Input.h"
#include "Messages.h"
#include "Progress.h"
#include "host/CommentFaults.h"
#include "host/NativeReader.h"
#include "host/Text.h"

namespace qosoc {
namespace {

int run(const Arguments& arguments) {
  const host::Native native;
  const std::string file = *arguments.operand();
  readFile(file, [&](std::FILE* stream) { host::readNative(stream, native); });
  std::optional<Stage> stage("checking the comments");
  const auto faults = host::commentFaults(native);
  stage.reset();
  for (const std::string& line : faults)
    tell("qosoc: " + host::shown(inputName(file)) + ": " + line);
  return faults.empty() ? done : doneWithReports;
}

constexpr std::string_view synopsis[] = {"NATIVE.json"};
constexpr Operand operands[] = {{.name = "NATIVE.json", .kind = Kind::fileOrDash}};
constexpr ExitCode exitCodes[] = {
    {done, "the document is valid"},
    {doneWithReports, "it is, but not all of its comments can be translated"},
    {nothingDone, "bad usage, or the document is not valid or cannot be read"},
};

}  // namespace

constinit const Command checkCommand{
    .name = "check",
    .summary = "say what is wrong with a native document",
    .synopsis = synopsis,
    .about = R"(
Reads a native document, from standard input as `-`, and says what is wrong with it, if anything is. Says nothing when all is well.
A comment under MetaData-OpenConfig with a value of the wrong type is legal in a document, and ends the
program that translates it: such comments are named too.
)",
    .operands = operands,
    .options = {},
    .example = R"(
  $ cat router.json
  {"queue-names": {"EF": 256}}
  $ qosoc check router.json
  qosoc: router.json:1:24: /queue-names/EF: expected a whole number from 0 to 255, not 256
)",
    .exitCodes = exitCodes,
    .run = run,
};

}  // namespace qosoc
