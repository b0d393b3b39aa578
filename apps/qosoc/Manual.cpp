#include "Manual.h"

#include "Commands.h"
#include "Flow.h"
#include "Help.h"
#include "host/Version.h"

namespace qosoc {
namespace {

// A text as roff takes it, whatever it begins with. What stands in backticks is bold.
std::string roff(std::string_view text) {
  std::string out = text.starts_with('.') || text.starts_with('\'') ? "\\&" : "";
  bool isBold = false;
  for (const char c : text) {
    switch (c) {
      case '\\':
        out += "\\e";
        break;
      case '-':
        out += "\\-";
        break;
      case '~':
        out += "\\(ti";
        break;
      case '^':
        out += "\\(ha";
        break;
      case '\'':
        out += "\\(aq";
        break;
      case '`':
        isBold = !isBold;
        out += isBold ? "\\fB" : "\\fR";
        break;
      default:
        out += c;
    }
  }
  return out;
}

std::string bold(std::string_view text) { return "\\fB" + roff(text) + "\\fR"; }
std::string italic(std::string_view text) { return "\\fI" + roff(text) + "\\fR"; }

std::string flowed(std::string_view text) {
  std::string out;
  for (const Block& block : blocks(text)) {
    out += block.isVerbatim ? ".PP\n.nf\n" : ".PP\n";
    for (const std::string& line : block.lines) out += roff(line) + '\n';
    if (block.isVerbatim) out += ".fi\n";
  }
  return out;
}

// What is explained, and its explanation in paragraphs.
std::string item(const std::string& label, const std::vector<std::string>& paragraphs) {
  std::string text = ".TP\n" + label + '\n';
  for (const std::string& paragraph : paragraphs) {
    text += (&paragraph == &paragraphs.front() ? "" : ".br\n") + roff(paragraph) + '\n';
  }
  return text;
}

std::string optionItem(const Option& option) {
  std::string label = bold(option.name);
  if (!option.shortName.empty()) label = bold(option.shortName) + ", " + label;
  if (option.takesValue()) label += ' ' + italic(option.value);
  return item(label, optionParagraphs(option));
}

std::string synopsis(const Command& command) {
  std::string text;
  for (const std::string_view way : command.synopsis) {
    text += bold("qosoc " + std::string(command.name)) + (way.empty() ? "" : " ") + roff(way) +
            "\n.br\n";
  }
  return text;
}

std::string section(const Command& command) {
  std::string text = ".SS qosoc " + std::string(command.name) + '\n' + synopsis(command);
  text += flowed(command.about);
  for (const Option& option : command.options) text += optionItem(option);
  text += ".PP\nExample:\n" + flowed(command.example) + flowed(command.notes) + ".PP\nExit code:\n";
  for (const ExitCode& code : command.exitCodes) {
    text += item(bold(std::to_string(code.code)), {std::string(code.meaning)});
  }
  return text;
}

constexpr const char* environment = R"(.SH ENVIRONMENT
.TP
.B NO_COLOR
when it is not empty, a terminal gets no colours
.TP
.B TERM
when it is empty or \(lqdumb\(rq, a terminal gets neither colours nor a line of progress
)";

}  // namespace

std::string manual() {
  std::string text = R"(.TH QOSOC 1 "" "qosoc )" + std::string(host::version()) +
                     R"(" "User Commands"
.SH NAME
qosoc \- )" + roff(programSummary()) +
                     "\n.SH SYNOPSIS\n";
  std::string sections;
  for (const Command* command : commands()) {
    text += synopsis(*command);
    sections += section(*command);
  }
  text += ".SH OPTIONS\n";
  for (const Option& option : programOptions()) text += optionItem(option);
  text += ".PP\n" + roff("Each command has `--help`, too.") + '\n' + flowed(formsOfValues());
  return text + ".SH COMMANDS\n" + sections + environment;
}

}  // namespace qosoc
