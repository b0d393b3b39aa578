#include "Progress.h"

#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <utility>

#include "Terminal.h"

namespace qosoc {
namespace {

Progress::Write standardErrorOfTerminal() {
  if (!canErase(STDERR_FILENO)) return {};
  return [](std::string_view text) { std::fwrite(text.data(), 1, text.size(), stderr); };
}

}  // namespace

void Progress::begin(std::string word, bool isShown) {
  const std::lock_guard lock(mutex_);
  erase();
  isAtWork_ = isShown && write_;
  word_ = std::move(word);
}

void Progress::tick() {
  const std::lock_guard lock(mutex_);
  const bool isWanted = isAtWork_ && !isThere_ && !word_.empty();
  if (isWanted && now_() >= std::max(due_, quiet_)) show(word_);
}

void Progress::clear() {
  if (!isAtWork_) return;
  const std::lock_guard lock(mutex_);
  erase();
}

void Progress::giveWay() {
  if (!isAtWork_) return;
  const std::lock_guard lock(mutex_);
  erase();
  word_.clear();
}

void Progress::end() {
  const std::lock_guard lock(mutex_);
  erase();
  isAtWork_ = false;
}

void Progress::erase() {
  quiet_ = now_() + pause;
  if (!isThere_) return;
  write_("\r\033[K");
  isThere_ = false;
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

Stage::Stage(std::string word, bool isShown) {
  progress().begin(std::move(word), isShown);
  if (!progress().isAtWork()) return;
  // Signals are for the thread that works: while it makes a file, it lets them wait.
  sigset_t all, before;
  ::sigfillset(&all);
  ::pthread_sigmask(SIG_SETMASK, &all, &before);
  ticks_ = std::jthread([](const std::stop_token& stop) {
    std::mutex mutex;
    std::condition_variable_any ended;
    std::unique_lock lock(mutex);
    while (!stop.stop_requested()) {
      ended.wait_for(lock, stop, Progress::pause, [] { return false; });
      if (!stop.stop_requested()) progress().tick();
    }
  });
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

Stage::~Stage() {
  if (ticks_.joinable()) {
    ticks_.request_stop();
    ticks_.join();
  }
  progress().end();
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
