#include <vector>

#include "Arguments.h"
#include "Commands.h"
#include "Completion.h"

namespace qosoc {
namespace {

// The last lines of the script's function use what those of the table set: `options`, `valued`, which
// are those that take a value, `operands`, each as its kind and its words, and where the value of an
// option stands at the cursor, `isValue` and its `kind` and `words`.
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

# Sets `count` to the operands before the cursor, and `isRest` when no option can follow.
_qosoc_count() {
  local i word
  for ((i = 2; i < COMP_CWORD; ++i)); do
    word=${COMP_WORDS[i]}
    if [[ ! $isRest && $word == -- ]]; then
      isRest=1
    elif [[ $isRest || $word == - || $word != -* ]]; then
      ((++count))
    elif [[ " $valued " == *" $word "* ]]; then
      [[ ${COMP_WORDS[++i]} != = ]] || ((++i))
    fi
  done
}

_qosoc() {
  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
  local command= options= valued= kind= words= isValue= attached= isRest= count=0
  local -a operands=()
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
  _qosoc_count
  if [[ $cur == -* && ! $isValue && ! $isRest ]]; then
    kind=word words=$options
  elif [[ ! $isValue ]]; then
    read -r kind words <<<"${operands[count]-}"
  fi
  case $kind in
    file) _qosoc_files ;;
    fileOrDash)
      _qosoc_files
      [[ - == "$cur"* ]] && COMPREPLY+=(-)
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

std::string wordsText(Words (*words)()) { return words == nullptr ? "" : joined(names(words())); }

// The elements of the script's `operands`.
std::string operandTexts(std::span<const Operand> operands) {
  std::string text;
  for (const Operand& operand : operands) {
    text += (text.empty() ? "'" : " '") + kindText(operand.kind) + ' ' + wordsText(operand.words) +
            '\'';
  }
  return text;
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
  return "        " + std::string(option.name) + shortName +
         ") isValue=1 kind=" + kindText(option.kind) + " words='" + wordsText(option.words) +
         "' ;;\n";
}

std::string commandCase(const Command& command) {
  const std::vector<Option> options = command.allOptions();
  const std::string asOption = &command == &helpCommand ? " | --help | -h" : "";
  std::string text = "    " + std::string(command.name) + asOption + ")\n";
  text += "      options='" + optionNames(options) + "'\n";
  text += "      operands=(" + operandTexts(command.operands) + ")\n";
  std::string values;
  std::vector<Option> valued;
  for (const Option& option : options) {
    if (!option.takesValue()) continue;
    values += valueCase(option);
    valued.push_back(option);
  }
  text += "      valued='" + optionNames(valued) + "'\n";
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
  return begin + ("    '') operands=('word " + joined(names)) + "') options='" +
         optionNames(programOptions()) + "' ;;\n" + cases + end;
}

}  // namespace qosoc
