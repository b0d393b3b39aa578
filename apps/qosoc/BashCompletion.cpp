#include <vector>

#include "Arguments.h"
#include "Commands.h"
#include "Completion.h"

namespace qosoc {
namespace {

// The last lines of the script's function use what those of the table set: `kind` and `words` of what
// stands at the cursor, `isValue` when that is the value of an option, and `options`.
constexpr const char* begin =
    R"(# Completes the arguments of qosoc in bash; made by `qosoc completion bash`.

_qosoc_list() {
  local chosen= word left=
  [[ $cur == *,* ]] && chosen=${cur%,*},
  for word in $words; do
    [[ ,$chosen == *",$word,"* ]] || left+=" $word"
  done
  compopt -o nospace 2>/dev/null
  COMPREPLY=($(compgen -P "$chosen" -W "$left" -- "${cur##*,}"))
}

_qosoc_files() {
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(compgen -f -- "$cur")
}

_qosoc() {
  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
  local command= options= kind=other words= isValue= attached=
  COMPREPLY=()
  # "--option=value" is three words here, or one where COMP_WORDBREAKS has no "=".
  if [[ $cur == = ]]; then
    cur=
  elif [[ $prev == = ]]; then
    prev=${COMP_WORDS[COMP_CWORD - 2]}
  elif [[ $cur == --*=* ]]; then
    prev=${cur%%=*} attached=$prev= cur=${cur#*=}
  fi
  ((COMP_CWORD > 1)) && command=${COMP_WORDS[1]}
  case $command in
)";

constexpr const char* end = R"(  esac
  [[ " ${COMP_WORDS[*]:1:COMP_CWORD-1} " == *' -- '* ]] && isValue=1
  if [[ $cur == -* && ! $isValue ]]; then
    kind=word words=$options
  fi
  case $kind in
    file) _qosoc_files ;;
    fileOrDash)
      _qosoc_files
      [[ $isValue && - == "$cur"* ]] && COMPREPLY+=(-)
      ;;
    word) COMPREPLY=($(compgen -W "$words" -- "$cur")) ;;
    words) _qosoc_list ;;
  esac
  COMPREPLY=("${COMPREPLY[@]/#/$attached}")
}

complete -F _qosoc qosoc
)";

std::string joined(const std::vector<std::string_view>& words) {
  std::string text;
  for (const std::string_view word : words) text += (text.empty() ? "" : " ") + std::string(word);
  return text;
}

std::string kindText(Kind kind) {
  switch (kind) {
    case Kind::file:
      return "file";
    case Kind::fileOrDash:
      return "fileOrDash";
    case Kind::word:
      return "word";
    case Kind::words:
      return "words";
    case Kind::none:
    case Kind::other:
      break;
  }
  return "other";
}

// What the script sets for a value.
std::string setting(Kind kind, Words (*words)()) {
  const std::string text = "kind=" + kindText(kind);
  return words == nullptr ? text : text + " words='" + joined(names(words())) + '\'';
}

std::string optionNames(std::span<const Option> options) {
  std::vector<std::string_view> names;
  for (const Option& option : options) {
    names.push_back(option.name);
    if (!option.shortName.empty()) names.push_back(option.shortName);
  }
  return joined(names);
}

std::string valueCase(const Option& option) {
  const std::string shortName =
      option.shortName.empty() ? "" : " | " + std::string(option.shortName);
  return "        " + std::string(option.name) + shortName + ") isValue=1 " +
         setting(option.kind, option.words) + " ;;\n";
}

std::string commandCase(const Command& command) {
  std::vector<Option> options(command.options.begin(), command.options.end());
  options.push_back(helpOption);
  std::string text = "    " + std::string(command.name) + ")\n";
  text += "      options='" + optionNames(options) + "'\n";
  if (!command.operands.empty()) {
    const Operand& operand = command.operands.front();
    text += "      " + setting(operand.kind, operand.words) + '\n';
  }
  std::string values;
  for (const Option& option : options) {
    if (option.takesValue()) values += valueCase(option);
  }
  if (!values.empty()) text += "      case $prev in\n" + values + "      esac\n";
  return text + "      ;;\n";
}

}  // namespace

std::string bashCompletion() {
  std::vector<std::string_view> names;
  std::string cases;
  for (const Command* command : commands()) {
    names.push_back(command->name);
    cases += commandCase(*command);
  }
  return begin + ("    '') kind=word words='" + joined(names)) + "' options='" +
         optionNames(programOptions()) + "' ;;\n" + cases + end;
}

}  // namespace qosoc
