#include "Progress.h"

#include <unistd.h>

#include <cstdint>
#include <cstdio>

#include "Terminal.h"

namespace qosoc {
namespace {

Progress::Write standardErrorOfTerminal() {
  if (!canErase(STDERR_FILENO)) return {};
  return [](std::string_view text) { std::fwrite(text.data(), 1, text.size(), stderr); };
}

}  // namespace

void Progress::begin(bool isShown) {
  clear();
  isAtWork_ = isShown && write_;
  if (isAtWork_) due_ = now_() + patience;
}

void Progress::clear() {
  if (!isThere_) return;
  write_("\r\033[K");
  isThere_ = false;
}

void Progress::end() {
  clear();
  isAtWork_ = false;
}

bool Progress::isDue() {
  const auto now = now_();
  if (now < due_) return false;
  due_ = now + pause;
  return true;
}

void Progress::show(const std::string& text) {
  // The cursor goes back to its beginning: what a foreign hand writes, as an assertion that fails
  // does, covers it.
  write_("\r\033[K" + text + '\r');
  isThere_ = true;
}

Progress& progress() {
  static Progress progress(standardErrorOfTerminal());
  return progress;
}

std::string bytesText(std::uint64_t bytes) {
  constexpr std::uint64_t step = 1000;
  if (bytes < step) return std::to_string(bytes) + " B";
  const char* unit = "kMGTPE";
  double amount = static_cast<double>(bytes) / step;
  for (; amount >= step; amount /= step) ++unit;
  char text[32];
  std::snprintf(text, sizeof text, "%.1f %cB", amount, *unit);
  return text;
}

}  // namespace qosoc
