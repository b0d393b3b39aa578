// The program `qosoc serve` in a process of its own, and a writer at its socket.
#pragma once

#include <fcntl.h>
#include <gnmi.grpc.pb.h>
#include <grpcpp/grpcpp.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/HostProgram.h"

namespace support {

class GnmiProgram {
 public:
  // Standard error goes to a file of the folder. Waits for the first line of standard output.
  GnmiProgram(const HostFolder& folder, const std::vector<std::string>& options)
      : log_(folder.path("log")) {
    std::vector<std::string> words{QOS_QOSOC,  "serve",       folder.path("native.json"),
                                   "--listen", "127.0.0.1:0", "--plaintext"};
    words.insert(words.end(), options.begin(), options.end());
    int out[2];
    EXPECT_EQ(::pipe2(out, O_CLOEXEC), 0);
    child_ = ::fork();
    if (child_ == 0) run(words, out[1]);
    ::close(out[1]);
    char c = 0;
    while (::read(out[0], &c, 1) == 1 && c != '\n') first_ += c;
    ::close(out[0]);
  }
  ~GnmiProgram() { end(SIGKILL); }
  GnmiProgram(const GnmiProgram&) = delete;
  GnmiProgram& operator=(const GnmiProgram&) = delete;

  const std::string& firstLine() const { return first_; }
  std::string address() const { return first_.substr(first_.find(' ') + 1); }
  std::unique_ptr<gnmi::gNMI::Stub> stub() const {
    return gnmi::gNMI::NewStub(grpc::CreateChannel(address(), grpc::InsecureChannelCredentials()));
  }
  // Returns the exit code; 128 and more: ended by a signal.
  int end(int signal) {
    if (child_ > 0) ::kill(child_, signal);
    return wait();
  }
  int wait() {
    if (child_ <= 0) return -1;
    int status = 0;
    ::waitpid(child_, &status, 0);
    child_ = -1;
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
  }
  // What it logged so far, without the times.
  std::vector<std::string> log() const {
    std::vector<std::string> lines;
    const std::string text = hostText(log_);
    for (std::size_t begin = 0, end; (end = text.find('\n', begin)) != std::string::npos;
         begin = end + 1) {
      const std::string line = text.substr(begin, end - begin);
      lines.push_back(line.substr(std::min(line.size(), line.find(' ') + 1)));
    }
    return lines;
  }

 private:
  [[noreturn]] void run(const std::vector<std::string>& words, int out) const {
    ::dup2(out, STDOUT_FILENO);
    ::dup2(::open(log_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
    std::vector<char*> pointers;
    for (const std::string& word : words) pointers.push_back(const_cast<char*>(word.c_str()));
    pointers.push_back(nullptr);
    ::execv(pointers[0], pointers.data());
    ::_exit(127);
  }

  std::string log_;
  std::string first_;
  pid_t child_ = -1;
};

// A connection to the socket.
class GnmiWriter {
 public:
  explicit GnmiWriter(const std::string& path) : socket_(::socket(AF_UNIX, SOCK_STREAM, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    isThere_ = ::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  }
  ~GnmiWriter() { leave(); }
  GnmiWriter(const GnmiWriter&) = delete;
  GnmiWriter& operator=(const GnmiWriter&) = delete;

  bool isThere() const { return isThere_; }
  void write(const std::string& text) {
    EXPECT_EQ(::send(socket_, text.data(), text.size(), MSG_NOSIGNAL),
              static_cast<ssize_t>(text.size()));
  }
  // The next line of the answers; empty at the end.
  std::string read() {
    std::string line;
    char c = 0;
    while (::recv(socket_, &c, 1, 0) == 1 && c != '\n') line += c;
    return line;
  }
  // The answer to a line.
  std::string ask(const std::string& line) {
    write(line + '\n');
    return read();
  }
  void leave() {
    if (socket_ >= 0) ::close(socket_);
    socket_ = -1;
  }

 private:
  int socket_;
  bool isThere_ = false;
};

}  // namespace support
