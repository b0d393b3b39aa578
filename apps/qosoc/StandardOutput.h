// Standard output, of which the first write that fails is reported.
#pragma once

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>

namespace qosoc {

class StandardOutput {
 public:
  using Report = std::function<void(const std::string&)>;
  explicit StandardOutput(Report report) : report_(std::move(report)) {}

  void write(std::string_view piece) {
    if (error_ != 0) return;
    if (std::fwrite(piece.data(), 1, piece.size(), stdout) != piece.size()) error_ = errno;
  }
  // Hands on what was written, and reports the failure of this or of a write before it.
  void flush() {
    if (error_ == 0 && std::fflush(stdout) != 0) error_ = errno;
    if (error_ == 0 || hasFailed_) return;
    hasFailed_ = true;
    report_(std::string("qosoc: standard output: ") + std::strerror(error_));
  }

 private:
  Report report_;
  int error_ = 0;  // that of the first write that failed
  bool hasFailed_ = false;
};

}  // namespace qosoc
