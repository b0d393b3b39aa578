#include "Loop.h"

#include <fcntl.h>
#include <sys/signalfd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

#include "apps/qosoc/Input.h"

namespace qosoc {
namespace {

constexpr std::string_view socketPrefix = "unix:";

sigset_t endingSignals() {
  sigset_t signals;
  ::sigemptyset(&signals);
  ::sigaddset(&signals, SIGTERM);
  ::sigaddset(&signals, SIGINT);
  return signals;
}

Descriptor opened(const std::string& path) {
  if (path == "-") return Descriptor(::dup(STDIN_FILENO));
  Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file) throwUnreadable(path, errno);
  return file;
}

}  // namespace

void holdSignals() {
  const sigset_t signals = endingSignals();
  ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
}

Loop::Loop(const std::optional<std::string>& changes, const Log& log, Line line)
    : log_(log), line_(std::move(line)) {
  const sigset_t signals = endingSignals();
  signals_ = Descriptor(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
  if (!changes) return;
  if (changes->starts_with(socketPrefix)) {
    writer_ = std::make_unique<Writer>(changes->substr(socketPrefix.size()), log_, line_);
  } else {
    file_ = opened(*changes);
  }
}

void Loop::run() {
  for (;;) {
    std::vector<pollfd> waits{{signals_.get(), POLLIN, 0}};
    if (file_) waits.push_back({file_.get(), POLLIN, 0});
    if (writer_) {
      for (const pollfd& wait : writer_->waits()) waits.push_back(wait);
    }
    if (::poll(waits.data(), waits.size(), -1) < 0) continue;
    signalfd_siginfo signal{};
    if (::read(signals_.get(), &signal, sizeof signal) == sizeof signal) {
      log_.info(std::string("ended by ") + (signal.ssi_signo == SIGTERM ? "SIGTERM" : "SIGINT"));
      return;
    }
    if (file_ && waits[1].revents != 0) readFile();
    if (writer_) writer_->serve();
  }
}

// The last line of a file need not have an end.
void Loop::readFile() {
  char block[65'536];
  const ssize_t size = ::read(file_.get(), block, sizeof block);
  if (size < 0 && (errno == EINTR || errno == EAGAIN)) return;
  if (size > 0) in_.append(block, static_cast<std::size_t>(size));
  std::size_t begin = 0;
  for (std::size_t end; (end = in_.find('\n', begin)) != std::string::npos; begin = end + 1) {
    line_(++number_, std::string_view(in_).substr(begin, end - begin));
  }
  in_.erase(0, begin);
  if (size > 0) return;
  if (size < 0) log_.error(std::string("the changes cannot be read: ") + std::strerror(errno));
  if (!in_.empty()) line_(++number_, in_);
  log_.info("the changes ended after " + std::to_string(number_) +
            (number_ == 1 ? " line" : " lines"));
  file_.close();
}

}  // namespace qosoc
