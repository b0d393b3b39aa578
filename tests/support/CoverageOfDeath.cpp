// Part of every test program under the coverage preset: a process that aborts writes its counts
// first. Otherwise what only death tests reach would count as never reached.
#include <csignal>

extern "C" void __gcov_dump();

namespace {

// abort() raises the signal once more after the handler, and then the process does end. A child of
// a death test has its parent's counts besides its own, so how often a line ran is not exact.
[[maybe_unused]] const bool dumpsOnAbort = [] {
  return std::signal(SIGABRT, [](int) { __gcov_dump(); }) != SIG_ERR;
}();

}  // namespace
