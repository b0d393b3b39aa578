// The arguments of a command, taken apart.
#pragma once

#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Command.h"

namespace qosoc {

class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Arguments {
 public:
  // Options may stand anywhere, with their value behind them or behind a "="; the last one of a
  // name counts. What follows "--" is no option, and "-" alone is none. Throws: UsageError.
  Arguments(std::span<const std::string> words, const Command& command);

  // As they came.
  std::span<const std::string> words() const { return words_; }
  // By the long name of the option.
  bool has(std::string_view option) const { return options_.contains(option); }
  // The value of an option; nothing when it was not given.
  std::optional<std::string> value(std::string_view option) const;
  // The operand of that index. Nothing when it is optional and was not given.
  // Requires: checkOperands().
  std::optional<std::string> operand(std::size_t index = 0) const;
  // Throws: UsageError when there are too few operands or too many.
  void checkOperands() const;

 private:
  const Command& command_;
  std::span<const std::string> words_;
  std::map<std::string, std::string, std::less<>> options_;
  std::vector<std::string> operands_;
};

// The parts of a list, "a,b,c". An empty text has one part, which is empty.
std::vector<std::string> parts(std::string_view list);

// The names of an option's words.
std::vector<std::string_view> names(Words words);

}  // namespace qosoc
