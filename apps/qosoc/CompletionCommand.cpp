#include "Arguments.h"
#include "Commands.h"
#include "Completion.h"
#include "StandardOutput.h"
#include "host/Nearest.h"
#include "host/Text.h"

namespace qosoc {
namespace {

struct Shell {
  std::string_view name;
  std::string (*script)();
};
constexpr Shell shells[] = {{"bash", bashCompletion}, {"zsh", zshCompletion}};

Words shellNames() {
  static constexpr Word words[] = {{shells[0].name}, {shells[1].name}};
  return words;
}

int run(const Arguments& arguments) {
  const std::string name = *arguments.operand();
  for (const Shell& shell : shells) {
    if (shell.name != name) continue;
    print(shell.script());
    return done;
  }
  throw UsageError("expected bash or zsh, not " + host::quoted(name) +
                   host::didYouMean(name, names(shellNames())));
}

constexpr std::string_view synopsis[] = {"bash|zsh"};
constexpr Operand operands[] = {{.name = "bash|zsh", .kind = Kind::word, .words = shellNames}};

}  // namespace

constinit const Command completionCommand{
    .name = "completion",
    .summary = "print what makes a shell complete the arguments",
    .synopsis = synopsis,
    .about = R"(
Prints a script for bash or zsh. A shell that has read it completes commands, options and their values.
An installed program has these scripts where the shells look for them; the command serves a program
that is built and not installed.
)",
    .operands = operands,
    .options = {},
    .example = R"(
  $ source <(qosoc completion bash)
  $ qosoc translate router.json --roots class-map,interface-<TAB>
  class-map,interface-classifier  class-map,interface-pfc
)",
    .exitCodes = exitCodesOfText,
    .run = run,
};

}  // namespace qosoc
