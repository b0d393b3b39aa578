// Runs a program on a terminal of its own, which is its standard input, output and error.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>
#include <vector>

namespace support {

class HostTerminal {
 public:
  // TERM is xterm and NO_COLOR is not set, unless `environment` ("NO_COLOR=1") says otherwise. The
  // terminal shows each byte that is written as it is.
  explicit HostTerminal(const std::vector<std::string>& command,
                        const std::vector<std::string>& environment = {});
  ~HostTerminal();
  HostTerminal(const HostTerminal&) = delete;
  HostTerminal& operator=(const HostTerminal&) = delete;

  // Types a text.
  void write(std::string_view text);
  // Waits until `text` is on the screen, below what was there when a text was last typed. False when
  // it is not there within some seconds.
  bool shows(std::string_view text);
  // Waits for the end of the program. Returns its exit code; 128 and more: ended by a signal.
  int end();
  // All that was written to the terminal so far.
  const std::string& screen() const { return screen_; }

 private:
  bool readMore(int milliseconds);

  pid_t child_ = -1;
  int terminal_ = -1;
  std::string screen_;
  std::size_t typedAt_ = 0;  // the end of the screen then
};

// The screen of a program that has ended.
std::string hostScreen(const std::vector<std::string>& command,
                       const std::vector<std::string>& environment = {});

}  // namespace support
