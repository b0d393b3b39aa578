#include "Log.h"

#include <chrono>
#include <cstdio>
#include <ctime>

namespace qosoc {

void Log::info(const std::string& text) const {
  if (!isQuiet_) write("info", text);
}

// By one write, so that lines of several threads don't mix.
void Log::write(const char* level, const std::string& text) {
  using namespace std::chrono;
  const auto now = system_clock::now();
  const std::time_t seconds = system_clock::to_time_t(now);
  const auto part = duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000;
  std::tm parts{};
  ::gmtime_r(&seconds, &parts);
  char time[80];
  std::snprintf(time, sizeof time, "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ ", 1900 + parts.tm_year,
                1 + parts.tm_mon, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec,
                static_cast<int>(part));
  std::fputs((time + std::string(level) + ' ' + text + '\n').c_str(), stderr);
}

}  // namespace qosoc
