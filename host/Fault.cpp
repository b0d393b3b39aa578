#include "host/Fault.h"

#include "host/Text.h"

namespace host {

std::string Fault::inFile(const std::string& file) const {
  std::string line = shown(file);
  const std::string position = shownPosition(position_);
  if (!position.empty()) line += ':' + position;
  if (!place_.empty()) line += ": " + place_;
  return line + ": " + what();
}

std::vector<std::string> linesOf(const std::vector<Fault>& faults, const std::string& file) {
  std::vector<std::string> lines;
  lines.reserve(faults.size());
  for (const Fault& fault : faults) lines.push_back(fault.inFile(file));
  if (faults.size() == mostFaults) {
    lines.push_back(shown(file) + ": what stands behind these " + std::to_string(mostFaults) +
                    " faults is not judged");
  }
  return lines;
}

}  // namespace host
