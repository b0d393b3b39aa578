// qosoc: translates native QoS configuration into an OpenConfig QoS model.
#include <algorithm>
#include <cstdio>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Arguments.h"
#include "Commands.h"
#include "Input.h"
#include "Output.h"
#include "host/Text.h"
#include "host/Version.h"

namespace {

constexpr const char* help = R"(usage: qosoc COMMAND ...

Translates native QoS configuration into the OpenConfig QoS model, change by change.

  qosoc translate NATIVE.json   print the model, also after each of a stream of changes
  qosoc check NATIVE.json       say what is wrong with a native document
  qosoc diff A.json B.json      print the leaves that differ between two documents
  qosoc --version               print the version

`qosoc COMMAND --help` tells more, with an example.
)";

using Words = std::vector<std::string>;

struct Command {
  std::string_view name;
  int (*run)(std::span<const std::string> words);
};
constexpr Command commands[] = {
    {"translate", qosoc::translateCommand},
    {"check", qosoc::checkCommand},
    {"diff", qosoc::diffCommand},
};
const Command* commandNamed(std::string_view name) {
  const auto found = std::find_if(std::begin(commands), std::end(commands),
                                  [&](const Command& command) { return command.name == name; });
  return found != std::end(commands) ? found : nullptr;
}

int run(const Words& words) {
  const std::string command = words.empty() ? "" : words.front();
  const Words rest(words.begin() + (words.empty() ? 0 : 1), words.end());
  if (const Command* known = commandNamed(command)) return known->run(rest);
  if (command == "--help") {
    std::fputs(help, stdout);
    return qosoc::done;
  }
  if (command == "--version") {
    std::printf("qosoc %s\n", std::string(host::version()).c_str());
    return qosoc::done;
  }
  throw qosoc::UsageError(command.empty() ? "a command is missing"
                                          : "there is no command " + host::quoted(command));
}

int refuse(const std::string& line) {
  std::fprintf(stderr, "qosoc: %s\n", line.c_str());
  return qosoc::nothingDone;
}

}  // namespace

int main(int argc, char** argv) {
  const Words words(argv + 1, argv + argc);
  try {
    return run(words);
  } catch (const qosoc::UsageError& error) {
    const bool known = !words.empty() && commandNamed(words[0]) != nullptr;
    return refuse(error.what() + (" (see qosoc " + (known ? words[0] + ' ' : "") + "--help)"));
  } catch (const qosoc::InputError& error) {
    for (const std::string& line : error.lines()) refuse(line);
    return qosoc::nothingDone;
  } catch (const qosoc::OutputError& error) {
    return refuse(error.what());
  } catch (const std::bad_alloc&) {
    return refuse("out of memory");
  }
}
