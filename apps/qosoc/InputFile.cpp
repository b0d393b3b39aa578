#include "InputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "Input.h"
#include "Progress.h"

namespace qosoc {

InputFile::InputFile(const std::string& path)
    : descriptor_(path == "-" ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
  if (descriptor_ < 0) throwUnreadable(path, errno);
  struct stat status {};
  if (::fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode)) {
    isRegular_ = true;
    size_ = static_cast<std::uint64_t>(status.st_size);
  }
  stream_.reset(::fopencookie(this, "rb", {.read = read, .seek = seek}));
  if (!stream_) throwUnreadable(path, errno);
  // A document that is typed is not waited for.
  progress().begin(::isatty(descriptor_) == 0);
}

InputFile::~InputFile() {
  progress().end();
  stream_.reset();  // it may go back to where its reader stands
  if (descriptor_ != STDIN_FILENO) ::close(descriptor_);
}

ssize_t InputFile::read(void* self, char* block, std::size_t size) {
  auto& file = *static_cast<InputFile*>(self);
  const ssize_t count = ::read(file.descriptor_, block, size);
  if (count > 0) file.read_ += static_cast<std::uint64_t>(count);
  progress().step([&] { return file.progressLine(); });
  return count;
}

// Others than regular files may say that they went there, and read on all the same.
int InputFile::seek(void* self, off64_t* offset, int whence) {
  auto& file = *static_cast<InputFile*>(self);
  const off64_t now = file.isRegular_ ? ::lseek64(file.descriptor_, *offset, whence) : -1;
  if (now < 0) return -1;
  *offset = now;
  file.read_ = static_cast<std::uint64_t>(now);
  return 0;
}

std::string InputFile::progressLine() const {
  const std::string line = "reading: " + bytesText(read_);
  return size_ > 0 ? line + " of " + bytesText(size_) : line;
}

}  // namespace qosoc
