#include "StandardOutput.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "Output.h"
#include "Progress.h"

namespace qosoc {

StandardOutput::StandardOutput()
    : StandardOutput([](const std::string& reason) { throw OutputError(reason); }) {}

StandardOutput::StandardOutput(Report report) : report_(std::move(report)) {
  struct stat status {};
  isFile_ = ::fstat(STDOUT_FILENO, &status) == 0 && S_ISREG(status.st_mode);
}

void StandardOutput::write(std::string_view piece) {
  if (error_ != 0) return;
  // A terminal gets the text itself, and so may what reads a pipe.
  if (!isFile_) progress().giveWay();
  if (std::fwrite(piece.data(), 1, piece.size(), stdout) != piece.size()) error_ = errno;
}

void StandardOutput::flush() {
  if (error_ == 0 && std::fflush(stdout) != 0) error_ = errno;
  if (error_ == 0 || hasFailed_) return;
  hasFailed_ = true;
  report_(std::string("standard output: ") + std::strerror(error_));
}

void print(std::string_view text) {
  print([&](const host::TextSink& sink) { sink(text); });
}

void print(const std::function<void(const host::TextSink& sink)>& text) {
  const Stage stage("printing");
  StandardOutput out;
  text([&](std::string_view piece) { out.write(piece); });
  out.flush();
}

}  // namespace qosoc
