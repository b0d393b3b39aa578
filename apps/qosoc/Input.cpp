#include "Input.h"

#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "InputFile.h"
#include "host/Text.h"

namespace qosoc {

std::string inputName(const std::string& file) {
  if (file == "-") return "standard input";
  return file.empty() ? host::quoted(file) : file;
}

InputError::InputError(const std::string& file, const host::Refusal& refusal)
    : std::runtime_error(refusal.what()),
      lines_(host::linesOf(refusal.faults(), inputName(file))) {}

void throwUnreadable(const std::string& file, int error) {
  throw InputError(file,
                   host::Refusal({"", std::string("cannot be read: ") + std::strerror(error)}));
}

void readFile(const std::string& path, const std::function<void(std::FILE*)>& read) {
  const InputFile file(path);
  try {
    read(file.stream());
  } catch (const host::Refusal& refusal) {
    throw InputError(path, refusal);
  }
}

std::string wholeText(const std::string& path) {
  const InputFile file(path);
  std::string text;
  for (std::size_t size = 0, more = 1; more > 0; size += more) {
    text.resize(std::max<std::size_t>(2 * size, 65536));
    more = std::fread(text.data() + size, 1, text.size() - size, file.stream());
    if (more == 0) text.resize(size);
  }
  if (std::ferror(file.stream()) != 0) throwUnreadable(path, errno);
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

bool Lines::areTyped() const { return ::isatty(::fileno(file_.get())) == 1; }

void Lines::checkReadable() const {
  if (std::ferror(file_.get()) != 0) throwUnreadable(path_, errno);
}

}  // namespace qosoc
