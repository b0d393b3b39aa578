#include "Arguments.h"

#include <algorithm>

#include "host/Text.h"

namespace qosoc {
namespace {

bool isOption(std::string_view word) { return word.size() > 1 && word.starts_with('-'); }

const Option& named(std::string_view name, std::span<const Option> known) {
  const auto found = std::find_if(known.begin(), known.end(),
                                  [&](const Option& option) { return option.name == name; });
  if (found == known.end()) throw UsageError("unknown option " + host::quoted(name));
  return *found;
}

}  // namespace

Arguments::Arguments(std::span<const std::string> words, std::span<const Option> known) {
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
    const Option& option = named(std::string_view(word).substr(0, equals), known);
    const bool hasValue = equals < word.size();
    if (hasValue && !option.takesValue) throw UsageError(host::quoted(word) + " takes no value");
    if (option.takesValue && !hasValue && i + 1 == words.size()) {
      throw UsageError(word + " needs a value");
    }
    std::string& value = options_[std::string(option.name)];
    if (option.takesValue) value = hasValue ? word.substr(equals + 1) : words[++i];
  }
}

std::optional<std::string> Arguments::value(std::string_view option) const {
  const auto found = options_.find(option);
  return found != options_.end() ? std::optional(found->second) : std::nullopt;
}

const std::string& Arguments::operand(std::string_view what) const {
  return operands({&what, 1}).front();
}

const std::vector<std::string>& Arguments::operands(std::span<const std::string_view> what) const {
  const std::size_t given = operands_.size();
  if (given < what.size()) throw UsageError(std::string(what[given]) + " is missing");
  if (given > what.size())
    throw UsageError("what is " + host::quoted(operands_[what.size()]) + "?");
  return operands_;
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

}  // namespace qosoc
