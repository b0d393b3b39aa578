#include "Arguments.h"
#include "Commands.h"
#include "Manual.h"
#include "StandardOutput.h"

namespace qosoc {
namespace {

int run(const Arguments& /*arguments*/) {
  print(manual());
  return done;
}

constexpr std::string_view synopsis[] = {""};
constexpr ExitCode exitCodes[] = {
    {done, "all done"},
    {nothingDone, "bad usage, or the output could not be written"},
};

}  // namespace

constinit const Command manualCommand{
    .name = "manual",
    .summary = "print the manual page",
    .synopsis = synopsis,
    .about = R"(
Prints the manual page qosoc(1), for `man`. An installed program has it where `man` looks for it.
)",
    .operands = {},
    .options = {},
    .example = R"(
  $ qosoc manual | man -l -
)",
    .exitCodes = exitCodes,
    .run = run,
};

}  // namespace qosoc
