#include "tests/support/HostTerminal.h"

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>

namespace support {

HostTerminal::HostTerminal(const std::vector<std::string>& command,
                           const std::vector<std::string>& environment) {
  std::vector<std::string> words{"env", "-u", "NO_COLOR", "TERM=xterm"};
  words.insert(words.end(), environment.begin(), environment.end());
  words.insert(words.end(), command.begin(), command.end());
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  winsize size{};
  size.ws_row = 50;
  size.ws_col = 200;
  child_ = ::forkpty(&terminal_, nullptr, nullptr, &size);
  if (child_ < 0) throw std::runtime_error("no terminal");
  if (child_ > 0) return;
  termios modes{};
  ::tcgetattr(STDOUT_FILENO, &modes);
  modes.c_oflag &= ~static_cast<tcflag_t>(OPOST);
  ::tcsetattr(STDOUT_FILENO, TCSANOW, &modes);
  ::execvp(arguments[0], arguments.data());
  ::_exit(127);
}

HostTerminal::~HostTerminal() {
  if (child_ >= 0) {
    ::kill(child_, SIGKILL);
    end();
  }
  ::close(terminal_);
}

void HostTerminal::write(std::string_view text) {
  while (readMore(0)) continue;
  typedAt_ = screen_.size();
  if (::write(terminal_, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
    throw std::runtime_error("the terminal takes nothing");
  }
}

bool HostTerminal::shows(std::string_view text) {
  constexpr int milliseconds = 20'000;
  while (screen_.find(text, typedAt_) == std::string::npos) {
    if (!readMore(milliseconds)) return false;
  }
  return true;
}

int HostTerminal::end() {
  while (readMore(-1)) continue;
  int status = 0;
  ::waitpid(child_, &status, 0);
  child_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

// False when nothing comes within that time or, since the program has ended, ever.
bool HostTerminal::readMore(int milliseconds) {
  std::array<char, 4096> block{};
  pollfd waited{terminal_, POLLIN, 0};
  if (::poll(&waited, 1, milliseconds) != 1) return false;
  const ssize_t count = ::read(terminal_, block.data(), block.size());
  if (count <= 0) return false;
  screen_.append(block.data(), static_cast<std::size_t>(count));
  return true;
}

std::string hostScreen(const std::vector<std::string>& command,
                       const std::vector<std::string>& environment) {
  HostTerminal terminal(command, environment);
  terminal.end();
  return terminal.screen();
}

}  // namespace support
