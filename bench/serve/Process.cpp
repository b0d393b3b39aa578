#include "serve/Process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <stdexcept>

namespace Bench {

Process::Process(const std::vector<std::string>& command) {
  int out[2];
  if (::pipe2(out, O_CLOEXEC) != 0) throw std::runtime_error("there is no pipe");
  process_ = ::fork();
  if (process_ == 0) {
    ::dup2(out[1], STDOUT_FILENO);
    std::vector<char*> words;
    for (const std::string& word : command) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    ::execv(words[0], words.data());
    ::_exit(127);
  }
  ::close(out[1]);
  std::FILE* first = ::fdopen(out[0], "r");
  for (int c = std::fgetc(first); c != EOF && c != '\n'; c = std::fgetc(first)) {
    address_ += static_cast<char>(c);
  }
  std::fclose(first);
  address_ = address_.substr(address_.rfind(' ') + 1);
  if (address_.empty()) throw std::runtime_error(command[0] + " serves nothing");
}

Process::~Process() {
  ::kill(process_, SIGTERM);
  ::waitpid(process_, nullptr, 0);
}

std::int64_t Process::time() const {
  clockid_t clock;
  timespec spent{};
  if (::clock_getcpuclockid(process_, &clock) != 0 || ::clock_gettime(clock, &spent) != 0) {
    throw std::runtime_error("the process has ended");
  }
  return std::int64_t{spent.tv_sec} * 1'000'000'000 + spent.tv_nsec;
}

std::int64_t Process::firstThreadTime() const {
  const std::string number = std::to_string(process_);
  std::ifstream file("/proc/" + number + "/task/" + number + "/schedstat");
  std::int64_t spent = 0;
  file >> spent;
  return spent;
}

}  // namespace Bench
