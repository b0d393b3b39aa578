#include <cstdio>

#include "Arguments.h"
#include "Commands.h"
#include "Input.h"
#include "host/CommentFaults.h"
#include "host/Sections.h"

namespace qosoc {
namespace {

constexpr const char* help = R"(usage: qosoc check NATIVE.json

Reads a native document and says what is wrong with it, if anything is. Says nothing when all is well.
A comment under MetaData-OpenConfig with a value of the wrong type is legal in a document, and ends the
program that translates it: such comments are named too.

  $ qosoc check router.json
  qosoc: router.json: /class-maps/qos/VOICE/match/0: expected a match option: ip-access-group, ipv6-access-group or a number from 0 to 255, not "ip"

Exit code: 0 the document is valid; 1 it is, but not all of its comments can be translated; 2 it is not,
or cannot be read.
)";

constexpr Option options[] = {{"--help", false}};

}  // namespace

int checkCommand(std::span<const std::string> words) {
  const Arguments arguments(words, options);
  if (arguments.has("--help")) {
    std::fputs(help, stdout);
    return done;
  }
  const host::Native native;
  const std::string file = arguments.operand("NATIVE.json");
  readFile(file, [&](const std::string& path) { host::readNative(path, native); });
  const auto faults = host::commentFaults(native);
  for (const std::string& line : faults) {
    std::fprintf(stderr, "qosoc: %s: %s\n", file.c_str(), line.c_str());
  }
  return faults.empty() ? done : doneWithReports;
}

}  // namespace qosoc
