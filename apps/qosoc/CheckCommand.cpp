#include <cstdio>

#include "Arguments.h"
#include "Commands.h"
#include "Input.h"
#include "host/Sections.h"

namespace qosoc {
namespace {

constexpr const char* help = R"(usage: qosoc check NATIVE.json

Reads a native document and says what is wrong with it, if anything is. Says nothing when all is well.

  $ qosoc check router.json
  qosoc: router.json: /class-maps/qos/VOICE/match/0: expected a match option: ip-access-group, ipv6-access-group or a number from 0 to 255, not "ip"

Exit code: 0 the document is valid; 2 it is not, or cannot be read.
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
  readFile(arguments.operand("NATIVE.json"),
           [&](const std::string& path) { host::readNative(path, native); });
  return done;
}

}  // namespace qosoc
