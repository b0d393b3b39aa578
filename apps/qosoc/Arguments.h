// The arguments of a command, taken apart.
#pragma once

#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace qosoc {

// Exit codes.
inline constexpr int done = 0;
inline constexpr int doneWithReports = 1;
inline constexpr int nothingDone = 2;

class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct Option {
  std::string_view name;  // "--format"
  bool takesValue;
};

class Arguments {
 public:
  // Options may stand anywhere, with their value behind them or behind a "="; the last one of a
  // name counts. What follows "--" is no option. Throws: UsageError.
  Arguments(std::span<const std::string> words, std::span<const Option> known);

  bool has(std::string_view option) const { return options_.contains(option); }
  // The value of an option; nothing when it was not given.
  std::optional<std::string> value(std::string_view option) const;
  bool hasOperand() const { return !operands_.empty(); }
  // The one operand. Throws: UsageError when there is none or more than one.
  const std::string& operand(std::string_view what) const;
  // The same for several, each of which has a name. Throws: UsageError for another number of them.
  const std::vector<std::string>& operands(std::span<const std::string_view> what) const;

 private:
  std::map<std::string, std::string, std::less<>> options_;
  std::vector<std::string> operands_;
};

// The parts of a list, "a,b,c". An empty text has one part, which is empty.
std::vector<std::string> parts(std::string_view list);

}  // namespace qosoc
