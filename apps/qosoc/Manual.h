// The manual page of the program, made from the table of commands.
#pragma once

#include <string>

namespace qosoc {

// qosoc(1), for man.
std::string manual();

}  // namespace qosoc
