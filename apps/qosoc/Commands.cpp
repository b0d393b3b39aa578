#include "Commands.h"

#include <algorithm>
#include <vector>

#include "Arguments.h"
#include "host/Nearest.h"
#include "host/Text.h"

namespace qosoc {

constexpr Option helpOption{.name = "--help", .shortName = "-h", .help = "print this help"};

namespace {

constexpr const Command* all[] = {
    &translateCommand, &checkCommand, &diffCommand,       &serveCommand,
    &schemaCommand,    &helpCommand,  &completionCommand, &manualCommand,
};

constexpr Option ofTheProgram[] = {
    helpOption,
    {.name = "--version", .shortName = "-V", .help = "print the version"},
};

// The only one of these names that begins so; empty when there is none or another.
std::string_view begun(std::string_view word, const std::vector<std::string_view>& names) {
  const auto begins = [&](std::string_view name) { return name.starts_with(word); };
  if (std::ranges::count_if(names, begins) != 1) return {};
  return *std::ranges::find_if(names, begins);
}

}  // namespace

std::span<const Command* const> commands() { return all; }

const Command& commandNamed(std::string_view name) {
  std::vector<std::string_view> names;
  for (const Command* command : all) {
    if (command->name == name) return *command;
    names.push_back(command->name);
  }
  for (const Option& option : ofTheProgram) {
    names.insert(names.end(), {option.name, option.shortName});
  }
  const std::string what = name.starts_with('-') ? "unknown option " : "there is no command ";
  const std::string_view meant = begun(name, names);
  throw UnknownCommand(what + host::quoted(name) +
                       host::didYouMeanOf(meant.empty() ? name : meant, names));
}

std::vector<Option> Command::allOptions() const {
  std::vector<Option> all(options.begin(), options.end());
  all.push_back(helpOption);
  return all;
}

std::span<const Option> programOptions() { return ofTheProgram; }

std::string_view formsOfValues() {
  return "A value stands behind its option or behind a `=`: `-o FILE`, `-o=FILE`, `--output FILE`, "
         "`--output=FILE`. Options may stand anywhere; what follows `--` is none.";
}

std::string_view programSummary() {
  return "translates native QoS configuration into the OpenConfig QoS model, change by change";
}

}  // namespace qosoc
