#include "host/publish/Clock.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstring>
#include <stdexcept>
#include <system_error>

namespace host {
namespace {

[[noreturn]] void fail(const std::string& file, const std::string& why) {
  throw std::runtime_error(file + ": " + why);
}
[[noreturn]] void failBySystem(const std::string& file, const char* what) {
  fail(file, std::string(what) + ": " + std::strerror(errno));
}

class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  ~Descriptor() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  operator int() const { return descriptor_; }

 private:
  int descriptor_;
};

// The time that a file holds; 0 when there is none.
std::int64_t timeIn(const std::string& file) {
  const Descriptor in(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
  if (in < 0 && errno == ENOENT) return 0;
  char text[32];
  const ssize_t size = in < 0 ? -1 : ::read(in, text, sizeof text);
  if (size < 0) failBySystem(file, "cannot be read");
  std::int64_t time = 0;
  const auto [end, error] = std::from_chars(text, text + size, time);
  const bool isLine = error == std::errc() && std::string_view(end, text + size) == "\n";
  if (!isLine || time < 0) fail(file, "holds no time");
  return time;
}

void write(const std::string& file, const std::string& text) {
  const std::string beside = file + ".new";
  const Descriptor out(::open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
  const bool isWritten =
      out >= 0 && ::write(out, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  if (!isWritten || ::rename(beside.c_str(), file.c_str()) != 0) {
    failBySystem(file, "cannot be written");
  }
}

}  // namespace

std::int64_t Clock::now() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

Clock::Clock(std::string stampFile, Report report, Now now)
    : now_(std::move(now)),
      file_(std::move(stampFile)),
      report_(std::move(report)),
      last_(timeIn(file_)),
      reserved_(std::max(now_(), last_) + reserve) {
  reserveUpTo(reserved_);
}

std::int64_t Clock::next() {
  last_ = std::max(now_(), last_ + 1);
  if (!file_.empty() && last_ > reserved_) {
    reserved_ = last_ + reserve;
    try {
      reserveUpTo(reserved_);
    } catch (const std::runtime_error& error) {
      report_(error.what());
    }
  }
  return last_;
}

void Clock::reserveUpTo(std::int64_t time) const { write(file_, std::to_string(time) + '\n'); }

}  // namespace host
