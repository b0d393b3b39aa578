#include "Help.h"

#include <algorithm>

#include "Commands.h"
#include "Flow.h"
#include "Terminal.h"

namespace qosoc {
namespace {

// Lines in two columns: what is explained, and its explanation.
class Table {
 public:
  void row(const std::string& label, const std::vector<std::string>& paragraphs) {
    rows_.push_back({label, paragraphs});
    column_ = std::max(column_, indent + label.size() + gap);
  }
  std::string text() const {
    std::string text;
    for (const auto& [label, paragraphs] : rows_) {
      std::string line = std::string(indent, ' ') + label;
      for (const std::string& paragraph : paragraphs) {
        for (const std::string& part : wrapped(paragraph, helpColumns - column_)) {
          line.resize(column_, ' ');
          text += line.append(part) += '\n';
          line.clear();
        }
      }
    }
    return text;
  }

 private:
  static constexpr std::size_t indent = 2;
  static constexpr std::size_t gap = 2;

  struct Row {
    std::string label;
    std::vector<std::string> paragraphs;
  };
  std::vector<Row> rows_;
  std::size_t column_ = 0;
};

std::string flowed(std::string_view text) {
  std::string out;
  for (const Block& block : blocks(text)) {
    out += '\n';
    for (const std::string& line : block.lines) {
      for (const std::string& part :
           block.isVerbatim ? std::vector{line} : wrapped(line, helpColumns)) {
        out += part + '\n';
      }
    }
  }
  return out;
}

// The name of a command with its operands, in the first way to use it.
std::string commandLabel(const Command& command) {
  const std::string_view synopsis = command.synopsis.front();
  return "qosoc " + std::string(command.name) + ' ' +
         std::string(synopsis.substr(0, synopsis.find(" [OPTIONS]")));
}

std::string exitCodes(const Command& command) {
  Table table;
  for (const ExitCode& code : command.exitCodes) {
    table.row(std::to_string(code.code), {std::string(code.meaning)});
  }
  return table.text();
}

std::string options(std::span<const Option> options) {
  Table table;
  for (const Option& option : options) table.row(optionLabel(option), optionParagraphs(option));
  return table.text();
}

}  // namespace

std::string optionLabel(const Option& option) {
  std::string label(option.name);
  if (!option.shortName.empty()) label = std::string(option.shortName) + ", " + label;
  return option.takesValue() ? label + ' ' + std::string(option.value) : label;
}

std::vector<std::string> optionParagraphs(const Option& option) {
  std::vector<std::string> paragraphs{std::string(option.help)};
  if (option.words == nullptr) return paragraphs;
  const Words words = option.words();
  paragraphs.front() += ':';
  for (const Word& word : words) {
    const std::string name(word.name);
    if (word.help.empty()) {
      paragraphs.front() += (&word == &words.front() ? " " : ", ") + name;
      continue;
    }
    const bool isDefault = option.kind == Kind::word && &word == &words.front();
    paragraphs.push_back(name + (isDefault ? " (the default): " : ": ") + std::string(word.help));
  }
  return paragraphs;
}

std::string help(bool isStyled) {
  const auto heading = [&](std::string_view text) { return styled(text, Style::bold, isStyled); };
  Table table;
  for (const Command* command : commands()) {
    table.row(commandLabel(*command), {std::string(command->summary)});
  }
  return heading("usage:") + " qosoc COMMAND [ARGUMENTS]\n\nThis program " +
         std::string(programSummary()) + ".\n\n" + heading("Commands:") + '\n' + table.text() +
         '\n' + heading("Options:") + '\n' + options(programOptions()) + flowed(formsOfValues()) +
         "\n`qosoc help COMMAND` tells more, with an example.\n";
}

std::string help(const Command& command, bool isStyled) {
  const auto heading = [&](std::string_view text) { return styled(text, Style::bold, isStyled); };
  std::string text;
  for (const std::string_view synopsis : command.synopsis) {
    text += (text.empty() ? heading("usage:") : "      ") + " qosoc " + std::string(command.name);
    text += (synopsis.empty() ? "" : " ") + std::string(synopsis) + '\n';
  }
  text += flowed(command.about);
  text += '\n' + heading("Options:") + '\n' + options(command.allOptions());
  text += '\n' + heading("Example:") + flowed(command.example);
  text += flowed(command.notes);
  return text + '\n' + heading("Exit code:") + '\n' + exitCodes(command);
}

}  // namespace qosoc
