// A line on a terminal that says how far a long piece of work has come, and that goes again.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace qosoc {

class Progress {
 public:
  using Clock = std::chrono::steady_clock;
  using Now = std::function<Clock::time_point()>;
  using Write = std::function<void(std::string_view)>;

  // A program that is done within that time shows nothing.
  static constexpr std::chrono::milliseconds patience{1000};
  // The line changes no more often than this.
  static constexpr std::chrono::milliseconds pause{100};

  // The program starts its work. Shows nothing when there is no `write`.
  explicit Progress(Write write, Now now = Clock::now)
      : write_(std::move(write)), now_(std::move(now)), due_(now_() + patience) {}

  // A piece of work begins. Nothing is shown of it when it is not one that a person waits for.
  void begin(bool isShown = true) { begin("", isShown); }
  // One that cannot say how far it has come: tick() shows `word`, unless the work is over soon.
  void begin(std::string word, bool isShown);
  bool isAtWork() const { return isAtWork_; }
  // It has come further. `text()` makes the line, when it is shown.
  template <class Text>
  void step(const Text& text) {
    if (!isAtWork_) return;
    const std::lock_guard lock(mutex_);
    if (isDue()) show(text());
  }
  // Time has passed. May be called by another thread.
  void tick();
  // Erases the line. It comes back with a later step or tick.
  void clear();
  // The same for what is printed piece by piece: the word does not come back between the pieces.
  void giveWay();
  // The work is done: the line is erased and does not come back.
  void end();

 private:
  bool isDue();
  void show(const std::string& text);
  void erase();

  std::mutex mutex_;  // of what tick() reads and writes
  Write write_;
  Now now_;
  Clock::time_point due_;    // when a step next writes the line
  Clock::time_point quiet_;  // until then a tick writes none
  std::string word_;
  bool isAtWork_ = false;
  bool isThere_ = false;
};

// The one of this process, on its standard error. What prints to the terminal clears it first.
Progress& progress();

// A piece of work of this process that cannot say how far it has come, for as long as this lives.
class Stage {
 public:
  explicit Stage(std::string word, bool isShown = true);
  ~Stage();
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

 private:
  std::jthread ticks_;  // there is none where nothing is shown
};

// A number of bytes in the unit that fits it: "900 B", "12.3 MB".
std::string bytesText(std::uint64_t bytes);

}  // namespace qosoc
