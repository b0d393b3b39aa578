// An agent: native changes come in over a Unix socket, a feed of the model goes out. See README.md.
#include <poll.h>
#include <sys/file.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "host/Changes.h"
#include "host/CommentFaults.h"
#include "host/Feed.h"
#include "host/Roots.h"
#include "host/SavedState.h"
#include "host/feed/FeedLine.h"

void report(const std::string& text) { std::fprintf(stderr, "agent: %s\n", text.c_str()); }
int require(ssize_t result, const std::string& what) {  // of a system call
  return result >= 0 ? int(result) : throw std::system_error(errno, std::generic_category(), what);
}
bool isReady(int file, short events, int signals) {  // false: a signal, but what flows out goes on
  pollfd waits[] = {{file, events, 0}, {signals, POLLIN, 0}};
  return require(::poll(waits, 2, -1), "poll") && (waits[0].revents & POLLOUT || !waits[1].revents);
}

struct Output {
  Output(const std::string& name, int flags)
      : path(name), fd(require(::open(path.c_str(), O_CREAT | O_WRONLY | flags, 0600), path)) {}
  ~Output() { ::close(fd); }
  void write(std::string_view text, int signals) const {
    for (; !text.empty(); text.remove_prefix(require(::write(fd, text.data(), text.size()), path)))
      if (!isReady(fd, POLLOUT, signals)) return report(path + ": cut off: its reader stalls");
  }
  const std::string path;
  const int fd;
};

class Agent {
 public:
  Agent(const char* state, const char* feed, int signals) : sink_(feed, O_APPEND | O_NONBLOCK) {
    if (std::filesystem::exists(state)) host::readSavedState(state, native_, model_);
    for (const auto& fault : host::commentFaults(native_)) throw std::runtime_error(fault);
    Rok::TraceFacility::sinkIs([](const auto& line) { report(std::string(line.text)); });
    if (const char* level = std::getenv("TRACE")) Rok::TraceFacility::levelIs(*level - '0', true);
    roots_ = host::buildRoots({}, native_, model_, report);
    leaves_ = feed_.onLeaves({.warn = report}, [this, signals](const host::LeafChanges& changes) {
      sink_.write(host::feedLine(head_, changes) + '\n', signals);
    });
    feed_.commit();
  }

  void run(int listener, int signals) {  // takes the lines of one writer after the other
    while (isReady(listener, POLLIN, signals)) {
      const int writer = require(::accept(listener, nullptr, nullptr), "accept");
      while (isReady(writer, POLLIN, signals) && receive(writer)) continue;
      ::close(writer);
      if (!std::exchange(text_, {}).empty()) report("a line is dropped: its end didn't come");
    }
  }

  void save(const std::string& state) const {  // until it is on the disk, the one before stands
    const Output next(state + ".next", O_TRUNC);
    next.write(host::savedStateJson(native_, model_, host::Layout::compact), -1);
    require(::fsync(next.fd), next.path);
    std::filesystem::rename(next.path, state);
  }

 private:
  bool receive(int writer) {  // false: nothing more is taken from it
    char piece[65536];
    const ssize_t size = ::read(writer, piece, sizeof piece);
    if (size > 0) text_.append(piece, size);
    for (std::size_t end = 0; (end = text_.find('\n')) != text_.npos; text_.erase(0, end + 1)) {
      const auto outcome = changes_.line(std::string_view(text_).substr(0, end));
      head_ = {head_.line + 1, {}, outcome == host::Changes::Outcome::refused};
      if (outcome != host::Changes::Outcome::blank) feed_.commit();
    }
    return size > 0 && text_.size() <= std::size_t{16} << 20;
  }

  const Output sink_;
  std::string epoch_ = host::newEpoch(), text_;  // the latter is what was received of the next line
  host::Native native_;
  host::Model model_;
  std::vector<Rok::Ptr<Rok::PtrInterface>> roots_;
  host::Changes changes_{native_, report};
  host::Feed feed_{model_};
  host::FeedHead head_{0, epoch_};
  host::Feed::Subscription leaves_;
};

int main(int argc, char** argv) try {
  if (argc != 4) throw std::invalid_argument("usage: agent SOCKET STATE FEED");
  const std::string path = argv[1], state = argv[2];
  sigset_t ends{};
  for (const int signal : {SIGINT, SIGTERM, SIGPIPE}) sigaddset(&ends, signal);
  ::sigprocmask(SIG_BLOCK, &ends, nullptr);
  const Output lock(state + ".lock", 0);  // one agent for a state
  require(::flock(lock.fd, LOCK_EX | LOCK_NB), lock.path);
  const int signals = require(::signalfd(-1, &ends, 0), "signalfd");
  Agent agent(argv[2], argv[3], signals);
  sockaddr_un address{AF_UNIX, {}};
  if (path.size() >= sizeof address.sun_path) throw std::invalid_argument(path + ": too long");
  path.copy(address.sun_path, path.size());
  std::filesystem::remove(path);  // an earlier life's
  const int listener = require(::socket(AF_UNIX, SOCK_STREAM, 0), "socket");
  require(::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), path);
  require(::listen(listener, 1), path);
  agent.run(listener, signals);
  agent.save(state);
} catch (const host::Refusal& state) {
  for (const host::Fault& fault : state.faults()) report(fault.inFile(argv[2]));
  return 1;
} catch (const std::exception& error) {
  return report(error.what()), 1;
}
