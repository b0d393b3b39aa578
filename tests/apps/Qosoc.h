// The program that was built, run with some arguments.
#pragma once

#include <string>
#include <vector>

#include "Paths.h"
#include "tests/support/HostProgram.h"

namespace support {

inline std::vector<std::string> qosocCommand(const std::vector<std::string>& words) {
  std::vector<std::string> command{paths::qosoc};
  command.insert(command.end(), words.begin(), words.end());
  return command;
}

inline HostRun qosoc(const std::vector<std::string>& words, const HostStreams& streams = {}) {
  return hostRun(qosocCommand(words), streams);
}

}  // namespace support
