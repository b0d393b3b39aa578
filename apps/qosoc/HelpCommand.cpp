#include <unistd.h>

#include <vector>

#include "Arguments.h"
#include "Commands.h"
#include "Help.h"
#include "StandardOutput.h"
#include "Terminal.h"

namespace qosoc {
namespace {

Words commandNames() {
  static const std::vector<Word> words = [] {
    std::vector<Word> all;
    for (const Command* command : commands()) all.push_back({command->name, command->summary});
    return all;
  }();
  return words;
}

int run(const Arguments& arguments) {
  const bool isStyled = hasColours(STDOUT_FILENO);
  const auto name = arguments.operand();
  print(name ? help(commandNamed(*name), isStyled) : help(isStyled));
  return done;
}

constexpr std::string_view synopsis[] = {"[COMMAND]"};
constexpr Operand operands[] = {
    {.name = "COMMAND", .kind = Kind::word, .isOptional = true, .words = commandNames}};

}  // namespace

constinit const Command helpCommand{
    .name = "help",
    .summary = "say how the program or one of its commands is used",
    .synopsis = synopsis,
    .about =
        "Prints the help of a command, as `qosoc COMMAND --help` does, or that of the program.",
    .operands = operands,
    .options = {},
    .example = R"(
  $ qosoc help diff | head -n 1
  usage: qosoc diff A.json B.json [OPTIONS]
)",
    .exitCodes = exitCodesOfText,
    .run = run,
};

}  // namespace qosoc
