#include "Output.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>

#include "Arguments.h"
#include "Progress.h"
#include "Temporary.h"
#include "host/Fault.h"
#include "host/Text.h"

namespace qosoc {
namespace {

namespace fs = std::filesystem;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

constexpr mode_t permissions = 07777;

// Nothing when there is no such file.
std::optional<mode_t> modeOf(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 ? std::optional(status.st_mode) : std::nullopt;
}

// Whether `path` leads to the regular file of that status.
bool isRegularFile(const std::string& path, const struct stat& other) {
  struct stat file {};
  return ::stat(path.c_str(), &file) == 0 && S_ISREG(file.st_mode) && file.st_dev == other.st_dev &&
         file.st_ino == other.st_ino;
}

// Whether the standard output is this file. Devices don't count: several streams can share one.
bool isStandardOutput(const std::string& path) {
  struct stat output {};
  return ::fstat(STDOUT_FILENO, &output) == 0 && isRegularFile(path, output);
}

std::string folderOf(const std::string& path) {
  const std::string folder = fs::path(path).parent_path();
  return folder.empty() ? "." : folder;
}

// Where links lead, also to a file that isn't there yet. A circle is left in the middle of it.
fs::path behindLinks(fs::path path) {
  constexpr int mostLinks = 40;
  std::error_code error;
  for (int i = 0; i < mostLinks && fs::is_symlink(path, error); ++i) {
    path = path.parent_path() / fs::read_symlink(path, error);
  }
  return path;
}

// The name of the file that is written. A pipe or a device has the one that was given: the links of
// /dev/stdout and /dev/fd lead to texts such as "pipe:[4711]", which name no file.
std::string targetOf(const std::string& path) {
  const std::optional<mode_t> mode = modeOf(path);
  if (mode && !S_ISREG(*mode)) return path;
  const fs::path followed = behindLinks(path);
  std::error_code error;
  const fs::path target = fs::canonical(followed, error);
  if (!error) return target;
  return fs::weakly_canonical(folderOf(followed), error) / followed.filename();
}

}  // namespace

OutputError::OutputError(const std::string& file, int error)
    : std::runtime_error(
          host::Fault("", std::string("cannot be written: ") + std::strerror(error)).inFile(file)) {
}

std::optional<OutputFile> outputFile(const Arguments& arguments) {
  const auto path = arguments.value(outputOption.name);
  if (!path || *path == "-") return std::nullopt;
  return OutputFile(outputOption.name, *path);
}

OutputFile::OutputFile(std::string_view option, const std::string& path, std::string_view printed)
    : option_(option), path_(path) {
  const std::string unexpected =
      std::string(option) + ": expected a file, not " + host::quoted(path);
  if (!printed.empty() && (path == "-" || isStandardOutput(path))) {
    throw UsageError(unexpected + ": standard output has " + std::string(printed));
  }
  if (path.empty() || path == "-") throw UsageError(unexpected);
  target_ = targetOf(path);
  judge();
}

void OutputFile::judge() const {
  const std::optional<mode_t> mode = modeOf(path_);
  if (!mode && errno != ENOENT) fail(errno);
  if (mode && S_ISDIR(*mode)) fail(EISDIR);
  if (mode && ::access(target_.c_str(), W_OK) != 0) fail(errno);
  const std::string folder = folderOf(target_);
  if (!mode && !modeOf(folder)) fail(errno);
  const bool isReplaced = !mode || S_ISREG(*mode);
  if (isReplaced && ::access(folder.c_str(), W_OK | X_OK) != 0) fail(errno);
}

void OutputFile::checkIsNot(std::string_view name, const std::string& input) const {
  struct stat status {};
  const bool isThere =
      input == "-" ? ::fstat(STDIN_FILENO, &status) == 0 : ::stat(input.c_str(), &status) == 0;
  if (!isThere || !isRegularFile(path_, status)) return;
  throw UsageError(option_ + " and " + std::string(name) +
                   " name the same file, which would be overwritten");
}

void OutputFile::write(const Text& text) const {
  const Stage stage("writing " + host::shown(path_));
  const std::optional<mode_t> mode = modeOf(target_);
  if (!mode || S_ISREG(*mode)) return replace(text);
  const File file(std::fopen(target_.c_str(), "wb"));
  if (!file) fail(errno);
  fill(file.get(), text);
}

void OutputFile::replace(const Text& text) const {
  Temporary temporary(folderOf(target_));
  if (temporary.file() == nullptr) fail(errno);
  const int descriptor = ::fileno(temporary.file());
  const std::optional<mode_t> old = modeOf(target_);
  if (old && ::fchmod(descriptor, *old & permissions) != 0) fail(errno);
  fill(temporary.file(), text);
  // The name must not lead to a file that isn't on the disk yet.
  if (::fsync(descriptor) != 0 || !temporary.nameIs(target_)) fail(errno);
}

void OutputFile::fill(std::FILE* file, const Text& text) const {
  text([&](std::string_view piece) {
    if (std::fwrite(piece.data(), 1, piece.size(), file) != piece.size()) fail(errno);
  });
  if (std::fflush(file) != 0) fail(errno);
}

}  // namespace qosoc
