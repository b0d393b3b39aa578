#include "Terminal.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace qosoc {
namespace {

std::string_view environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

}  // namespace

bool canErase(int stream) {
  const std::string_view kind = environment("TERM");
  return ::isatty(stream) == 1 && !kind.empty() && kind != "dumb";
}

bool hasColours(int stream) { return environment("NO_COLOR").empty() && canErase(stream); }

std::string styled(std::string_view text, Style style, bool isOn) {
  constexpr std::array<std::string_view, 5> codes{"1", "1;31", "31", "32", "33"};
  if (!isOn) return std::string(text);
  return "\033[" + std::string(codes.at(static_cast<std::size_t>(style))) + 'm' +
         std::string(text) + "\033[0m";
}

std::string withStyledHead(std::string_view line, bool isOn) {
  const std::size_t end = std::min(line.find(':'), line.size() - 1) + 1;
  const Style style = line.starts_with("warning:") ? Style::yellow : Style::boldRed;
  return styled(line.substr(0, end), style, isOn) + std::string(line.substr(end));
}

}  // namespace qosoc
