// The commands of the program. Each takes the words behind its name and returns the exit code.
#pragma once

#include <span>
#include <string>

namespace qosoc {

// Throw: UsageError, InputError, OutputError.
int translateCommand(std::span<const std::string> words);
int checkCommand(std::span<const std::string> words);
int diffCommand(std::span<const std::string> words);

}  // namespace qosoc
