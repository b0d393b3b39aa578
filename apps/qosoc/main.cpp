// qosoc: translates native QoS configuration into an OpenConfig QoS model.
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "Arguments.h"
#include "Commands.h"
#include "Help.h"
#include "Progress.h"
#include "Reported.h"
#include "StandardOutput.h"
#include "Terminal.h"
#include "host/Text.h"
#include "host/Version.h"

namespace {

using Arguments = std::span<const std::string>;

int runCommand(const qosoc::Command& command, Arguments words) {
  const qosoc::Arguments arguments(words, command);
  if (arguments.has(qosoc::helpOption.name)) {
    qosoc::print(help(command, qosoc::hasColours(STDOUT_FILENO)));
    return qosoc::done;
  }
  arguments.checkOperands();
  return command.run(arguments);
}

int printVersion(Arguments words) {
  if (!words.empty()) throw qosoc::UsageError("what is " + host::quoted(words.front()) + "?");
  qosoc::print("qosoc " + std::string(host::version()) + '\n');
  return qosoc::done;
}

int run(Arguments words) {
  if (words.empty()) throw qosoc::UsageError("a command is missing");
  const std::string& first = words.front();
  const Arguments rest = words.subspan(1);
  for (const qosoc::Option& option : qosoc::programOptions()) {
    if (!option.isNamed(first)) continue;
    return option.name == "--version" ? printVersion(rest) : runCommand(qosoc::helpCommand, rest);
  }
  return runCommand(qosoc::commandNamed(first), rest);
}

// Where the help is that says how it is done.
std::string helpFor(Arguments words) {
  const auto isFirst = [&](const qosoc::Command* command) { return command->name == words[0]; };
  const auto all = qosoc::commands();
  const bool isKnown = !words.empty() && std::any_of(all.begin(), all.end(), isFirst);
  return qosoc::helpHint(isKnown ? words[0] : "");
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + 1, argv + argc);
  qosoc::progress();  // its patience counts from here
  return qosoc::reported([&] { return run(words); }, helpFor(words), qosoc::helpHint());
}
