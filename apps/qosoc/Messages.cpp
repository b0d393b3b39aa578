#include "Messages.h"

#include <unistd.h>

#include <cstdio>

#include "Progress.h"
#include "Terminal.h"

namespace qosoc {

void tell(const std::string& line) {
  progress().clear();
  static const bool isColoured = hasColours(STDERR_FILENO);
  std::fputs((withStyledHead(line, isColoured) + '\n').c_str(), stderr);
}

}  // namespace qosoc
