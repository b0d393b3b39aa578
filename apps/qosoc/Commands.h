// The commands of the program.
#pragma once

#include <span>
#include <string_view>

#include "Arguments.h"
#include "Command.h"

namespace qosoc {

// One for each file of a command.
extern const Command translateCommand;
extern const Command checkCommand;
extern const Command diffCommand;
extern const Command serveCommand;
extern const Command schemaCommand;
extern const Command helpCommand;
extern const Command completionCommand;
extern const Command manualCommand;

// All of them, in the order in which the help names them.
std::span<const Command* const> commands();
// A name that no command has. The help of the program has all of them.
class UnknownCommand : public UsageError {
 public:
  using UsageError::UsageError;
};
// Throws: UnknownCommand.
const Command& commandNamed(std::string_view name);

// What every command knows, and what the program itself knows without a command.
extern const Option helpOption;
std::span<const Option> programOptions();
// How the value of an option is given.
std::string_view formsOfValues();
// What it does, as the rest of a sentence.
std::string_view programSummary();

}  // namespace qosoc
