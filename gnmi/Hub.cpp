#include "gnmi/Hub.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <system_error>

namespace server {
namespace {

int newEvent() {
  const int event = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (event < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
  return event;
}

const grpc::Status& stopped() {
  static const grpc::Status status(grpc::StatusCode::UNAVAILABLE, "the server ends");
  return status;
}

}  // namespace

Hub::Hub() : event_(newEvent()) {
  // Signals are for the program's own threads.
  sigset_t all, before;
  ::sigfillset(&all);
  ::pthread_sigmask(SIG_SETMASK, &all, &before);
  thread_ = std::thread([this] { run(); });
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

Hub::~Hub() {
  stop();
  thread_.join();
  ::close(event_);
}

void Hub::add(std::shared_ptr<Stream> stream) {
  {
    const std::lock_guard lock(mutex_);
    streams_.push_back(stream);
    count_ = streams_.size();
  }
  if (isStopping_) stream->end(stopped());
}

void Hub::committed() {
  if (count_ != 0) signal();
}

void Hub::stop() {
  isStopping_ = true;
  signal();
}

void Hub::signal() {
  if (isSignalled_.exchange(true)) return;
  const std::uint64_t one = 1;
  // It can't be full: there is one signal at a time.
  [[maybe_unused]] const ssize_t written = ::write(event_, &one, sizeof one);
}

void Hub::run() {
  while (!isStopping_) {
    const Streams streams = taken();
    for (const auto& stream : streams) stream->wake();
    sleep(streams);
  }
  for (const auto& stream : taken()) stream->end(stopped());
}

// Those that are not over.
Hub::Streams Hub::taken() {
  Streams streams;
  {
    const std::lock_guard lock(mutex_);
    streams = streams_;
  }
  Streams over;
  for (const auto& stream : streams) {
    if (stream->isOver()) over.push_back(stream);
  }
  if (over.empty()) return streams;
  const auto isOver = [&](const auto& stream) {
    return std::find(over.begin(), over.end(), stream) != over.end();
  };
  std::erase_if(streams, isOver);
  const std::lock_guard lock(mutex_);
  std::erase_if(streams_, isOver);
  count_ = streams_.size();
  return streams;
}

// Until a signal comes, or something is due.
void Hub::sleep(const Streams& streams) {
  std::optional<Delivery::Time> first;
  for (const auto& stream : streams) {
    const auto due = stream->due();
    if (due && (!first || *due < *first)) first = due;
  }
  int wait = -1;
  if (first) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(*first - std::chrono::steady_clock::now());
    wait = static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 60'000));
  }
  pollfd wanted{event_, POLLIN, 0};
  ::poll(&wanted, 1, wait);
  std::uint64_t count = 0;
  [[maybe_unused]] const ssize_t size = ::read(event_, &count, sizeof count);
  // What is signalled from here on ends the next sleep.
  isSignalled_ = false;
}

}  // namespace server
