#include "Input.h"

#include <sys/types.h>

#include <cerrno>
#include <cstring>

namespace qosoc {
namespace {

[[noreturn]] void throwUnreadable(const std::string& path, int error) {
  throw InputError(path,
                   host::Refusal({"", std::string("cannot be read: ") + std::strerror(error)}));
}

}  // namespace

InputError::InputError(const std::string& file, const host::Refusal& refusal)
    : std::runtime_error(refusal.what()) {
  for (const host::Fault& fault : refusal.faults()) lines_.push_back(fault.inFile(file));
}

std::string wholeText(const std::string& path) {
  struct Close {
    void operator()(std::FILE* file) const {
      if (file != stdin) std::fclose(file);
    }
  };
  const std::unique_ptr<std::FILE, Close> file(path == "-" ? stdin
                                                           : std::fopen(path.c_str(), "rb"));
  if (!file) throwUnreadable(path, errno);
  std::string text;
  for (std::size_t size = 0, more = 1; more > 0; size += more) {
    text.resize(std::max<std::size_t>(2 * size, 65536));
    more = std::fread(text.data() + size, 1, text.size() - size, file.get());
    if (more == 0) text.resize(size);
  }
  if (std::ferror(file.get()) != 0) throwUnreadable(path, errno);
  return text;
}

Lines::Lines(const std::string& path)
    : path_(path), file_(path == "-" ? stdin : std::fopen(path.c_str(), "rb")) {
  if (!file_) throwUnreadable(path_, errno);
  if (file_.get() == stdin) return;
  // A directory opens but can't be read: that is found here, before anything is done.
  std::ungetc(std::fgetc(file_.get()), file_.get());
  checkReadable();
}

std::optional<std::string_view> Lines::next() {
  char* line = line_.release();
  const ssize_t size = ::getline(&line, &capacity_, file_.get());
  line_.reset(line);
  if (size < 0) {
    checkReadable();
    return std::nullopt;
  }
  std::string_view text(line, static_cast<std::size_t>(size));
  if (text.ends_with('\n')) text.remove_suffix(1);
  return text;
}

void Lines::checkReadable() const {
  if (std::ferror(file_.get()) != 0) throwUnreadable(path_, errno);
}

}  // namespace qosoc
