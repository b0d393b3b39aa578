#include "Temporary.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

namespace qosoc {
namespace {

struct Ending {
  int signal;
  struct sigaction before {};  // what was done at it
};
std::array<Ending, 4> endings{{{SIGINT}, {SIGTERM}, {SIGHUP}, {SIGXFSZ}}};

// The file that a signal removes; null while there is none.
std::atomic<const char*> removed = nullptr;
static_assert(std::atomic<const char*>::is_always_lock_free);

// The signal ends the program as it would have: its default is back, and it waits until this returns.
extern "C" void removeAndEnd(int signal) {
  if (const char* path = removed) ::unlink(path);
  ::raise(signal);
}

void remove(const char* path) {
  removed = path;
  struct sigaction action {};
  action.sa_handler = removeAndEnd;
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (Ending& ending : endings) {
    ::sigaction(ending.signal, nullptr, &ending.before);
    if (ending.before.sa_handler == SIG_DFL) ::sigaction(ending.signal, &action, nullptr);
  }
}

void removeNothing() {
  removed = nullptr;
  for (const Ending& ending : endings) ::sigaction(ending.signal, &ending.before, nullptr);
}

}  // namespace

Temporary::Temporary(const std::string& folder) {
  // A signal waits until the file that is made is known to it.
  sigset_t all, before;
  ::sigfillset(&all);
  ::sigprocmask(SIG_SETMASK, &all, &before);
  const std::string stem = folder + "/.qosoc-" + std::to_string(::getpid()) + '-';
  unsigned count = 0;
  do {
    path_ = stem + std::to_string(count++);
    file_ = std::fopen(path_.c_str(), "wbx");
  } while (file_ == nullptr && errno == EEXIST);
  const int error = errno;
  if (file_ != nullptr) remove(path_.c_str());
  ::sigprocmask(SIG_SETMASK, &before, nullptr);
  errno = error;
}

Temporary::~Temporary() {
  if (file_ == nullptr) return;
  ::unlink(path_.c_str());
  close();
}

bool Temporary::nameIs(const std::string& path) {
  if (std::rename(path_.c_str(), path.c_str()) != 0) return false;
  close();
  return true;
}

void Temporary::close() {
  removeNothing();
  std::fclose(file_);
  file_ = nullptr;
}

}  // namespace qosoc
