// A new file that takes a name once it is whole.
#pragma once

#include <cstdio>
#include <string>

namespace qosoc {

// Goes again unless it gets a name, also when a signal ends the program: an interrupt, a hangup, a
// request to end, or a limit on the size of files. A signal that is ignored stays so.
// Requires: one at a time.
class Temporary {
 public:
  // In that folder. Sets errno when it can't be made; then file() is null.
  explicit Temporary(const std::string& folder);
  ~Temporary();
  Temporary(const Temporary&) = delete;
  Temporary& operator=(const Temporary&) = delete;

  std::FILE* file() const { return file_; }
  // False sets errno.
  bool nameIs(const std::string& path);

 private:
  void close();

  std::string path_;
  std::FILE* file_ = nullptr;
};

}  // namespace qosoc
