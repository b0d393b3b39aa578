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
    .exitCodes = exitCodesOfText,
    .run = run,
};

}  // namespace qosoc
