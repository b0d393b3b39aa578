#include "Writer.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <cerrno>
#include <cstring>

#include "apps/qosoc/Arguments.h"

namespace qosoc {
namespace {

constexpr std::size_t mostUnread = 1'000'000;  // of answers

[[noreturn]] void fail(const std::string& path, const std::string& why) {
  throw UsageError("--changes: unix:" + path + ": " + why);
}

sockaddr_un addressOf(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.empty()) fail(path, "a path is missing");
  if (path.size() >= sizeof address.sun_path) fail(path, "the path is too long for a socket");
  std::memcpy(address.sun_path, path.data(), path.size());
  return address;
}

Descriptor newSocket() {
  return Descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

// Whether the other side is closed.
bool hasHungUp(int descriptor) {
  pollfd wanted{descriptor, 0, 0};
  return ::poll(&wanted, 1, 0) > 0 && (wanted.revents & (POLLHUP | POLLERR)) != 0;
}

// A socket that a server left behind that ended early is taken away.
void makeRoom(const std::string& path, const sockaddr_un& address) {
  struct stat there {};
  if (::lstat(path.c_str(), &there) != 0) return;
  if (!S_ISSOCK(there.st_mode)) fail(path, "a file is there that is no socket");
  const Descriptor probe = newSocket();
  if (::connect(probe.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
    fail(path, "another server has it");
  }
  ::unlink(path.c_str());
}

}  // namespace

Writer::Writer(std::string path, const Log& log, Answer answer)
    : path_(std::move(path)), log_(log), answer_(std::move(answer)), socket_(newSocket()) {
  const sockaddr_un address = addressOf(path_);
  makeRoom(path_, address);
  // From its first moment on it is its owner's alone.
  const mode_t before = ::umask(0177);
  const int bound =
      ::bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
  const int error = errno;
  ::umask(before);
  if (bound != 0) fail(path_, std::strerror(error));
  if (::listen(socket_.get(), 8) != 0) fail(path_, std::strerror(errno));
}

Writer::~Writer() { ::unlink(path_.c_str()); }

std::vector<pollfd> Writer::waits() const {
  std::vector<pollfd> waits{{socket_.get(), POLLIN, 0}};
  if (!writer_) return waits;
  const bool isRead = !hasEnded_ && out_.size() < mostUnread;
  waits.push_back(
      {writer_.get(), static_cast<short>((isRead ? POLLIN : 0) | (out_.empty() ? 0 : POLLOUT)), 0});
  return waits;
}

void Writer::serve() {
  accept();
  if (writer_ && !hasEnded_ && out_.size() < mostUnread) read();
  if (writer_ && !out_.empty()) write();
  if (writer_ && hasEnded_ && out_.empty()) leave();
}

void Writer::accept() {
  for (;;) {
    Descriptor next(::accept4(socket_.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (!next) return;
    // One that is gone made room as soon as its last lines are read.
    const bool isGone = writer_ && hasHungUp(writer_.get());
    while (isGone && !hasEnded_) read();
    if (isGone) leave();
    if (writer_) {
      log_.warning("a second writer was sent away");
      [[maybe_unused]] const ssize_t sent =
          ::send(next.get(), "busy\n", 5, MSG_NOSIGNAL | MSG_DONTWAIT);
      continue;
    }
    log_.info("a writer connected");
    writer_ = std::move(next);
    number_ = 0;
    hasEnded_ = false;
  }
}

void Writer::read() {
  char block[65'536];
  const ssize_t size = ::recv(writer_.get(), block, sizeof block, 0);
  if (size > 0) {
    in_.append(block, static_cast<std::size_t>(size));
    return answerLines();
  }
  const bool isWaiting = size < 0 && (errno == EAGAIN || errno == EINTR);
  if (isWaiting) return;
  hasEnded_ = true;
  if (size < 0) out_.clear();
}

void Writer::answerLines() {
  std::size_t begin = 0;
  for (std::size_t end; (end = in_.find('\n', begin)) != std::string::npos; begin = end + 1) {
    out_ += answer_(++number_, std::string_view(in_).substr(begin, end - begin));
    out_ += '\n';
  }
  in_.erase(0, begin);
}

void Writer::write() {
  const ssize_t size = ::send(writer_.get(), out_.data(), out_.size(), MSG_NOSIGNAL);
  if (size >= 0) {
    out_.erase(0, static_cast<std::size_t>(size));
  } else if (errno != EAGAIN && errno != EINTR) {
    out_.clear();
    hasEnded_ = true;
  }
}

void Writer::leave() {
  if (!in_.empty()) {
    log_.warning("line " + std::to_string(number_ + 1) +
                 " of the writer has no end, and is dropped");
  }
  log_.info("the writer left after " + std::to_string(number_) +
            (number_ == 1 ? " line" : " lines"));
  writer_.close();
  in_.clear();
  out_.clear();
}

}  // namespace qosoc
