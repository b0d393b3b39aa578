// Files that the commands read, and how they report them.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/Fault.h"

namespace qosoc {

// The name of an input in a message: "-" is standard input, and an empty name is shown by its quotes.
std::string inputName(const std::string& file);

// What is wrong with an input file, a line for each fault.
class InputError : public std::runtime_error {
 public:
  InputError(const std::string& file, const host::Refusal& refusal);

  const std::vector<std::string>& lines() const { return lines_; }

 private:
  std::vector<std::string> lines_;
};

[[noreturn]] void throwUnreadable(const std::string& file, int error);

// Runs `read` over the open file, or over standard input as "-".
// Throws: InputError, also for a Refusal that leaves it.
void readFile(const std::string& path, const std::function<void(std::FILE*)>& read);

// A whole file, or standard input as "-". Throws: InputError.
std::string wholeText(const std::string& path);

// A text file, or standard input as "-", line by line as the lines come.
class Lines {
 public:
  // Throws: InputError.
  explicit Lines(const std::string& path);

  // The next line, without its end; nothing behind the last one. It stands until the next call.
  // Throws: InputError.
  std::optional<std::string_view> next();
  // Whether the lines are typed.
  bool areTyped() const;

 private:
  void checkReadable() const;

  struct Close {
    void operator()(std::FILE* file) const {
      if (file != stdin) std::fclose(file);
    }
  };
  struct Free {
    void operator()(char* block) const { std::free(block); }
  };

  std::string path_;
  std::unique_ptr<std::FILE, Close> file_;
  std::unique_ptr<char, Free> line_;
  std::size_t capacity_ = 0;
};

}  // namespace qosoc
