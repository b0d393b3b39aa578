// Files that the commands write.
#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Command.h"
#include "host/JsonWriter.h"

namespace qosoc {

// An output that can't be written.
class OutputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  OutputError(const std::string& file, int error);
};

// A file that is written whole or not at all: a new one beside it takes its name once all is there.
// One that was there keeps its permissions, and a link stays one. A device or a pipe is written as
// it stands.
class OutputFile {
 public:
  // Judges the name and its folder, and writes nothing. `option` is what asks for the file; standard
  // output is none, and what it has otherwise, if anything, is named in the message.
  // Throws: UsageError for a name that can be no file's; OutputError.
  OutputFile(std::string_view option, const std::string& path, std::string_view printed = {});

  const std::string& path() const { return path_; }
  // Whether both names lead to one file.
  bool isSameAs(const OutputFile& other) const { return target_ == other.target_; }

  // Throws: UsageError when the input `name`, whose file is `input` ("-" is standard input), is the
  // regular file that a write would replace.
  void checkIsNot(std::string_view name, const std::string& input) const;

  // Writes what `text` hands to the sink. Throws: OutputError; then the file is as it was.
  using Text = std::function<void(const host::TextSink& sink)>;
  void write(const Text& text) const;

 private:
  void judge() const;
  void replace(const Text& text) const;
  void fill(std::FILE* file, const Text& text) const;
  [[noreturn]] void fail(int error) const { throw OutputError(path_, error); }

  std::string option_;
  std::string path_;    // as it was given
  std::string target_;  // where its links lead
};

// --output, which several commands have: the file that gets what would be printed.
inline constexpr Option outputOption{
    .name = "--output",
    .shortName = "-o",
    .value = "FILE",
    .kind = Kind::fileOrDash,
    .help = "write to a file what would be printed, whole or not at all"};
// Nothing when it was not given, or as "-", which is standard output. Throws: UsageError, OutputError.
std::optional<OutputFile> outputFile(const Arguments& arguments);

}  // namespace qosoc
