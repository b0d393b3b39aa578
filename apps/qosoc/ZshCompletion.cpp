#include "Commands.h"
#include "Completion.h"

namespace qosoc {
namespace {

constexpr const char* begin = R"(#compdef qosoc
# Completes the arguments of qosoc in zsh; made by `qosoc completion zsh`.

_qosoc_file_or_dash() {
  _alternative 'files:file:_files' 'dash:standard input or output:(-)'
}

_qosoc() {
  local curcontext=$curcontext state line ret=1
  typeset -A opt_args
  local -a commands=(
)";

constexpr const char* behindCommands = R"(  )
  _arguments -C -S \
)";

constexpr const char* behindOptions = R"(    '1: :->command' \
    '*:: :->arguments' && ret=0
  case $state in
    command) _describe command commands && ret=0 ;;
    arguments)
      curcontext=${curcontext%:*:*}:qosoc-$words[1]:
      case $words[1] in
)";

// As a file in $fpath it is run for a completion; in a file that is sourced it is made known.
constexpr const char* end = R"(      esac
      ;;
  esac
  return ret
}

if [[ $funcstack[1] == _qosoc ]]; then
  _qosoc "$@"
else
  compdef _qosoc qosoc
fi
)";

// In single quotes, as a shell takes it.
std::string inQuotes(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? "'\\''" : std::string(1, c);
  return quoted + '\'';
}

// With a backslash before each character that _arguments would take for its own.
std::string escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (std::string_view(R"(\:[]"`$)").find(c) != std::string_view::npos) escaped += '\\';
    escaped += c;
  }
  return escaped;
}

// What comes before the details of an explanation.
std::string brief(std::string_view help) {
  std::string text(help.substr(0, help.find_first_of(":;,(")));
  std::erase(text, '`');
  while (text.ends_with(' ')) text.pop_back();
  return text;
}

// The action of _arguments for a value.
std::string action(Kind kind, Words (*words)()) {
  if (kind == Kind::file) return "_files";
  if (kind == Kind::fileOrDash) return "_qosoc_file_or_dash";
  if (words == nullptr) return " ";
  std::string list;
  bool isExplained = false;
  for (const Word& word : words()) {
    list += ' ' + std::string(word.name);
    if (word.help.empty() || kind == Kind::words) continue;
    list += "\\:\"" + escaped(word.help) + '"';
    isExplained = true;
  }
  if (kind == Kind::words) return "_sequence compadd -" + list;
  return (isExplained ? "((" : "(") + list.substr(1) + (isExplained ? "))" : ")");
}

std::string optionLines(const Option& option, const std::string& indent) {
  const std::string both =
      '(' + std::string(option.shortName) + ' ' + std::string(option.name) + ')';
  const std::string help = '[' + escaped(brief(option.help)) + ']';
  const std::string value =
      option.takesValue() ? ':' + escaped(option.value) + ':' + action(option.kind, option.words)
                          : "";
  const auto line = [&](std::string_view name, const char* equals) {
    const std::string others = option.shortName.empty() ? "" : both;
    return indent + inQuotes(others + std::string(name) + equals + help + value) + " \\\n";
  };
  std::string text = line(option.name, option.takesValue() ? "=" : "");
  if (!option.shortName.empty()) text += line(option.shortName, "");
  return text;
}

std::string commandCase(const Command& command) {
  const std::string indent(12, ' ');
  std::string text = "        " + std::string(command.name) + ")\n          _arguments -S \\\n";
  for (const Option& option : command.allOptions()) text += optionLines(option, indent);
  for (std::size_t i = 0; i < command.operands.size(); ++i) {
    const Operand& operand = command.operands[i];
    text += indent +
            inQuotes(std::to_string(i + 1) + (operand.isOptional ? "::" : ":") +
                     escaped(operand.name) + ':' + action(operand.kind, operand.words)) +
            " \\\n";
  }
  return text + indent + "&& ret=0\n          ;;\n";
}

}  // namespace

std::string zshCompletion() {
  std::string names;
  std::string cases;
  std::string options;
  for (const Command* command : commands()) {
    names +=
        "    " + inQuotes(std::string(command->name) + ':' + std::string(command->summary)) + '\n';
    cases += commandCase(*command);
  }
  for (const Option& option : programOptions()) options += optionLines(option, "    ");
  return begin + names + behindCommands + options + behindOptions + cases + end;
}

}  // namespace qosoc
