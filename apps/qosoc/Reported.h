// What ends a program of ours early, as its messages and exit code.
#pragma once

#include <functional>
#include <string>

namespace qosoc {

// Runs it, and reports what leaves it. `help` is what a message of bad usage ends in, and `allHelp`
// that of an unknown command.
int reported(const std::function<int()>& run, const std::string& help, const std::string& allHelp);

// Where the help is of a command, or of the program without one: " (see qosoc --help)".
std::string helpHint(std::string_view command = {});

}  // namespace qosoc
