// What the program says to a person, on standard error.
#pragma once

#include <string>

namespace qosoc {

// A line: "warning: ...", "line 3: refused: ...", "qosoc: ...".
void tell(const std::string& line);

}  // namespace qosoc
