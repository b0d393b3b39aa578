// Programs that are measured: their processor time, and what they say of themselves.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Bench {

// A program that prints "... HOST:PORT" on its first line. It ends with this.
class Process {
 public:
  explicit Process(const std::vector<std::string>& command);
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  const std::string& address() const { return address_; }
  // Of all its threads, in nanoseconds.
  std::int64_t time() const;
  // Of its first thread.
  std::int64_t firstThreadTime() const;

 private:
  pid_t process_ = 0;
  std::string address_;
};

}  // namespace Bench
