#include "Commands.h"

#include <vector>

#include "Arguments.h"
#include "host/Nearest.h"
#include "host/Text.h"

namespace qosoc {

constexpr Option helpOption{.name = "--help", .shortName = "-h", .help = "print this help"};

namespace {

constexpr const Command* all[] = {
    &translateCommand, &checkCommand,      &diffCommand,   &schemaCommand,
    &helpCommand,      &completionCommand, &manualCommand,
};

constexpr Option ofTheProgram[] = {
    helpOption,
    {.name = "--version", .shortName = "-V", .help = "print the version"},
};

}  // namespace

std::span<const Command* const> commands() { return all; }

const Command& commandNamed(std::string_view name) {
  std::vector<std::string_view> names;
  for (const Command* command : all) {
    if (command->name == name) return *command;
    names.push_back(command->name);
  }
  for (const Option& option : ofTheProgram) names.push_back(option.name);
  const std::string what = name.starts_with('-') ? "unknown option " : "there is no command ";
  throw UsageError(what + host::quoted(name) + host::didYouMean(name, names));
}

std::span<const Option> programOptions() { return ofTheProgram; }

std::string_view programSummary() {
  return "translates native QoS configuration into the OpenConfig QoS model, change by change";
}

}  // namespace qosoc
