// The scripts by which shells complete the program's arguments, made from the table of commands.
#pragma once

#include <string>

namespace qosoc {

std::string bashCompletion();
std::string zshCompletion();

}  // namespace qosoc
