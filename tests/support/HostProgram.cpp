#include "tests/support/HostProgram.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace support {
namespace {

// Becomes the program. Only calls that are safe behind a fork.
[[noreturn]] void become(const std::vector<char*>& arguments, int in, int out, int err) {
  ::dup2(in, STDIN_FILENO);
  ::dup2(out, STDOUT_FILENO);
  if (err >= 0) ::dup2(err, STDERR_FILENO);
  ::execvp(arguments[0], arguments.data());
  ::_exit(127);
}

pid_t start(const std::vector<std::string>& command, int in, int out, int err) {
  std::vector<char*> arguments;
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const pid_t child = ::fork();
  if (child < 0) throw std::runtime_error("fork failed");
  if (child == 0) become(arguments, in, out, err);
  return child;
}

int exitOf(pid_t child) {
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

int openFile(const std::string& path, int flags) {
  const int file = ::open(path.c_str(), flags | O_CLOEXEC, 0600);
  if (file < 0) throw std::runtime_error("cannot open " + path);
  return file;
}

bool isReady(int file, short events, int milliseconds) {
  pollfd waited{file, events, 0};
  return ::poll(&waited, 1, milliseconds) == 1 && (waited.revents & events) != 0;
}

}  // namespace

HostRun hostRun(const std::vector<std::string>& command, const HostStreams& streams) {
  const HostFolder folder;
  const std::string out = streams.outTo.empty() ? folder.path("out") : streams.outTo;
  const int files[] = {openFile(folder.file("in", streams.in), O_RDONLY),
                       openFile(out, O_WRONLY | O_CREAT),
                       openFile(folder.path("err"), O_WRONLY | O_CREAT)};
  HostRun run;
  run.exit = exitOf(start(command, files[0], files[1], files[2]));
  for (const int file : files) ::close(file);
  if (streams.outTo.empty()) run.out = hostText(out);
  run.err = hostText(folder.path("err"));
  return run;
}

HostDialogue::HostDialogue(const std::vector<std::string>& command) {
  std::array<int, 2> toChild{};
  std::array<int, 2> fromChild{};
  if (::pipe2(toChild.data(), O_CLOEXEC) != 0 || ::pipe2(fromChild.data(), O_CLOEXEC) != 0) {
    throw std::runtime_error("pipe failed");
  }
  child_ = start(command, toChild[0], fromChild[1], -1);
  ::close(toChild[0]);
  ::close(fromChild[1]);
  in_ = toChild[1];
  out_ = fromChild[0];
}

HostDialogue::~HostDialogue() {
  if (child_ >= 0) end();
  ::close(out_);
}

void HostDialogue::write(std::string_view line) { writeText(std::string(line) + '\n'); }

void HostDialogue::writeText(std::string_view text) {
  if (::write(in_, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
    throw std::runtime_error("the program does not read");
  }
}

bool HostDialogue::takesInput(int milliseconds) const {
  return isReady(in_, POLLOUT, milliseconds);
}

bool HostDialogue::hasAnswered(int milliseconds) const {
  return isReady(out_, POLLIN, milliseconds);
}

std::string HostDialogue::read() {
  std::string line;
  char c = 0;
  while (::read(out_, &c, 1) == 1 && c != '\n') line += c;
  return line;
}

int HostDialogue::end() {
  ::close(in_);
  const int code = exitOf(child_);
  child_ = -1;
  return code;
}

HostFolder::HostFolder()
    : path_((std::filesystem::temp_directory_path() / "qosoc-XXXXXX").string()) {
  if (::mkdtemp(path_.data()) == nullptr) throw std::runtime_error("cannot make " + path_);
}

HostFolder::~HostFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string HostFolder::file(const std::string& name, std::string_view text) const {
  std::ofstream(path(name), std::ios::binary) << text;
  return path(name);
}

std::string hostText(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

}  // namespace support
