// A line on a terminal that says how far a long piece of work has come, and that goes again.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace qosoc {

class Progress {
 public:
  using Clock = std::chrono::steady_clock;
  using Now = std::function<Clock::time_point()>;
  using Write = std::function<void(std::string_view)>;

  // Work that is over within that time shows nothing.
  static constexpr std::chrono::milliseconds patience{1000};
  // The line changes no more often than this.
  static constexpr std::chrono::milliseconds pause{100};

  // Shows nothing when there is no `write`.
  explicit Progress(Write write, Now now = Clock::now)
      : write_(std::move(write)), now_(std::move(now)) {}

  // A piece of work begins. Nothing is shown of it when it is not one that a person waits for.
  void begin(bool isShown = true);
  // It has come further. `text()` makes the line, when it is shown.
  template <class Text>
  void step(const Text& text) {
    if (isAtWork_ && isDue()) show(text());
  }
  // Erases the line. It comes back with a later step.
  void clear();
  // The work is done: the line is erased and does not come back.
  void end();

 private:
  bool isDue();
  void show(const std::string& text);

  Write write_;
  Now now_;
  Clock::time_point due_;  // when the line is next written
  bool isAtWork_ = false;
  bool isThere_ = false;
};

// The one of this process, on its standard error. What prints to the terminal clears it first.
Progress& progress();

// A number of bytes in the unit that fits it: "900 B", "12.3 MB".
std::string bytesText(std::uint64_t bytes);

}  // namespace qosoc
