#include "Arguments.h"

#include <algorithm>

#include "Commands.h"
#include "host/Nearest.h"
#include "host/Text.h"

namespace qosoc {
namespace {

bool isOption(std::string_view word) { return word.size() > 1 && word.starts_with('-'); }

Option named(std::string_view name, const Command& command) {
  std::vector<std::string_view> known;
  for (const Option& option : command.allOptions()) {
    if (option.isNamed(name)) return option;
    known.push_back(option.name);
    if (!option.shortName.empty()) known.push_back(option.shortName);
  }
  throw UsageError("unknown option " + host::quoted(name) + host::didYouMean(name, known));
}

}  // namespace

Arguments::Arguments(std::span<const std::string> words, const Command& command)
    : command_(command), words_(words) {
  bool onlyOperands = false;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string& word = words[i];
    if (onlyOperands || !isOption(word)) {
      operands_.push_back(word);
      continue;
    }
    onlyOperands = word == "--";
    if (onlyOperands) continue;
    const std::size_t equals = std::min(word.find('='), word.size());
    const Option option = named(std::string_view(word).substr(0, equals), command);
    const bool hasValue = equals < word.size();
    if (hasValue && !option.takesValue()) throw UsageError(host::quoted(word) + " takes no value");
    if (option.takesValue() && !hasValue && i + 1 == words.size()) {
      throw UsageError(word + " needs a value");
    }
    std::string& value = options_[std::string(option.name)];
    if (option.takesValue()) value = hasValue ? word.substr(equals + 1) : words[++i];
  }
}

std::optional<std::string> Arguments::value(std::string_view option) const {
  const auto found = options_.find(option);
  return found != options_.end() ? std::optional(found->second) : std::nullopt;
}

std::optional<std::string> Arguments::operand(std::size_t index) const {
  return index < operands_.size() ? std::optional(operands_[index]) : std::nullopt;
}

void Arguments::checkOperands() const {
  const auto& known = command_.operands;
  const std::size_t given = operands_.size();
  if (given > known.size())
    throw UsageError("what is " + host::quoted(operands_[known.size()]) + "?");
  if (given < known.size() && !known[given].isOptional) {
    throw UsageError(std::string(known[given].name) + " is missing");
  }
}

std::vector<std::string> parts(std::string_view list) {
  std::vector<std::string> parts;
  for (;;) {
    const std::size_t comma = std::min(list.find(','), list.size());
    parts.emplace_back(list.substr(0, comma));
    if (comma == list.size()) return parts;
    list.remove_prefix(comma + 1);
  }
}

std::vector<std::string_view> names(Words words) {
  std::vector<std::string_view> names;
  for (const Word& word : words) names.push_back(word.name);
  return names;
}

}  // namespace qosoc
