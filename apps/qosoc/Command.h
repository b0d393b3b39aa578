// A command of the program as a row of data: how its arguments are parsed, what its help, the manual
// and the completion of shells say of it, all come from here. A new command is a file with such a row
// in CMakeLists.txt, its declaration in Commands.h and its place in the list in Commands.cpp.
#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace qosoc {

class Arguments;

// Exit codes.
inline constexpr int done = 0;
inline constexpr int doneWithReports = 1;
inline constexpr int nothingDone = 2;

// What stands in the place of a value: what a shell completes there.
enum class Kind {
  none,        // there is no value
  file,        // the name of a file
  fileOrDash,  // the same, or "-" for standard input or output
  word,        // one of some words
  words,       // several of them with commas between
  other,       // a number, a path in a tree: nothing that a shell knows
};

// A word that may be a value, with what it means; `help` may be empty.
struct Word {
  std::string_view name;
  std::string_view help = {};
};
using Words = std::span<const Word>;

// Texts are flowed: line ends within a paragraph mean nothing, and `backticks` stand around what is
// typed. Lines that begin with two spaces stay as they are.
struct Option {
  std::string_view name;            // "--output"
  std::string_view shortName = {};  // "-o"
  std::string_view value = {};      // "FILE", as the help names it; empty for one that takes none
  Kind kind = Kind::none;
  std::string_view help;
  Words (*words)() = nullptr;  // of Kind::word and Kind::words; the first is the default of a word

  bool takesValue() const { return !value.empty(); }
  bool isNamed(std::string_view word) const {
    return word == name || (!shortName.empty() && word == shortName);
  }
};

struct Operand {
  std::string_view name;  // "NATIVE.json"
  Kind kind = Kind::file;
  bool isOptional = false;
  Words (*words)() = nullptr;
};

struct ExitCode {
  int code;
  std::string_view meaning;
};

struct Command {
  std::string_view name;
  std::string_view summary;                    // in a few words
  std::span<const std::string_view> synopsis;  // what stands behind the name, a line each
  std::string_view about;
  std::span<const Operand> operands;
  std::span<const Option> options;  // --help is always there besides, see allOptions()
  std::string_view example;         // "$ command" and below it what that prints
  std::string_view notes = {};      // what else one should know
  std::span<const ExitCode> exitCodes;
  // Throws: UsageError, InputError, OutputError.
  int (*run)(const Arguments& arguments);

  // `options` and --help, in the order in which they are shown.
  std::vector<Option> allOptions() const;
};

// Of a command that only prints.
inline constexpr ExitCode exitCodesOfText[] = {
    {done, "all done"},
    {nothingDone, "bad usage, or the output could not be written"},
};

}  // namespace qosoc
