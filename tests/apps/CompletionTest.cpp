// What shells complete: in a real bash and a real zsh.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <sstream>

#include "Paths.h"
#include "apps/qosoc/Arguments.h"
#include "apps/qosoc/Commands.h"
#include "tests/support/HostProgram.h"
#include "tests/support/HostTerminal.h"

namespace completionTest {
namespace {

using qosoc::Command;
using qosoc::Option;
using support::HostFolder;
using support::HostRun;
using support::hostRun;
using support::HostTerminal;
using support::hostText;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;

using Texts = std::vector<std::string>;

const std::string share = paths::share;

Texts texts(const std::vector<std::string_view>& names) { return {names.begin(), names.end()}; }

Texts optionsOf(std::span<const Option> known) {
  Texts names;
  for (const Option& option : known) {
    names.emplace_back(option.name);
    if (!option.shortName.empty()) names.emplace_back(option.shortName);
  }
  return names;
}

Texts optionsOf(const Command& command) {
  Texts names = optionsOf(command.options);
  for (const std::string& name : optionsOf(std::span(&qosoc::helpOption, 1))) names.push_back(name);
  return names;
}

TEST(Completion, IsPrintedAsItIsInstalled) {
  for (const auto& [shell, file] :
       {std::pair("bash", "/qosoc.bash"), std::pair("zsh", "/_qosoc")}) {
    const HostRun run = hostRun({paths::qosoc, "completion", shell});
    EXPECT_EQ(run.exit, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, hostText(share + file));
    EXPECT_EQ(hostRun({shell, "-n", share + file}).err, "");
    EXPECT_EQ(hostRun({shell, "-n", share + file}).exit, 0) << shell << " is needed";
  }
}

TEST(Completion, IsForTwoShells) {
  const auto expectRefused = [](const Texts& words, const std::string& message) {
    Texts command{paths::qosoc, "completion"};
    command.insert(command.end(), words.begin(), words.end());
    const HostRun run = hostRun(command);
    EXPECT_EQ(run.exit, 2);
    EXPECT_EQ(run.err, "qosoc: " + message + " (see qosoc completion --help)\n");
  };
  expectRefused({}, "bash|zsh is missing");
  expectRefused({"fish"}, "expected bash or zsh, not \"fish\"");
  expectRefused({"bsh"}, "expected bash or zsh, not \"bsh\": did you mean bash?");
}

// ===== bash

class BashCompletion : public testing::Test {
 protected:
  // What stands for the last of the words, by the function that bash calls.
  Texts completed(const Texts& words, const std::string& before = "") const {
    const std::string script = R"(source "$1" || exit; cd "$2" || exit; shift 2
        COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)); )" +
                               before + R"(
        _qosoc; printf '%s\n' "${COMPREPLY[@]}")";
    Texts command{"bash", "-c", script, "bash", share + "/qosoc.bash", folder_.path("."), "qosoc"};
    command.insert(command.end(), words.begin(), words.end());
    const HostRun run = hostRun(command);
    EXPECT_EQ(run.err, "");
    std::istringstream lines(run.out);
    Texts found;
    for (std::string line; std::getline(lines, line);) {
      if (!line.empty()) found.push_back(line);
    }
    return found;
  }

  HostFolder folder_;
};

TEST_F(BashCompletion, KnowsTheCommands) {
  Texts all;
  for (const Command* command : qosoc::commands()) all.emplace_back(command->name);
  EXPECT_THAT(completed({""}), UnorderedElementsAreArray(all));
  EXPECT_THAT(completed({"che"}), ElementsAre("check"));
  EXPECT_THAT(completed({"help", ""}), UnorderedElementsAreArray(all));
  EXPECT_THAT(completed({"completion", ""}), UnorderedElementsAre("bash", "zsh"));
  EXPECT_THAT(completed({"-"}), UnorderedElementsAreArray(optionsOf(qosoc::programOptions())));
}

TEST_F(BashCompletion, KnowsTheOptionsOfEachCommand) {
  for (const Command* command : qosoc::commands()) {
    const std::string name(command->name);
    EXPECT_THAT(completed({name, "-"}), UnorderedElementsAreArray(optionsOf(*command))) << name;
  }
  EXPECT_THAT(completed({"translate", "native.json", "--no-"}), ElementsAre("--no-augments"));
}

TEST_F(BashCompletion, KnowsTheWordsOfEachOptionThatHasThem) {
  for (const Command* command : qosoc::commands()) {
    for (const Option& option : command->options) {
      if (option.words == nullptr) continue;
      EXPECT_THAT(completed({std::string(command->name), std::string(option.name), ""}),
                  UnorderedElementsAreArray(texts(qosoc::names(option.words()))));
    }
  }
  EXPECT_THAT(completed({"translate", "--format", "mo"}), ElementsAre("model"));
}

TEST_F(BashCompletion, GoesOnBehindTheCommasOfAList) {
  EXPECT_THAT(completed({"translate", "--roots", "acl,interface-"}),
              UnorderedElementsAre("acl,interface-classifier", "acl,interface-pfc"));
  EXPECT_THAT(completed({"translate", "--roots", "acl,interface-pfc,interface-"}),
              ElementsAre("acl,interface-pfc,interface-classifier"));
}

// The words before "<TAB>" in the example, and what stands below them.
TEST_F(BashCompletion, IsAsItsHelpShows) {
  const std::string help = hostRun({paths::qosoc, "completion", "--help"}).out;
  EXPECT_NE(help.find("\n  $ source <(qosoc completion bash)\n"), std::string::npos) << help;
  const std::string command = "\n  $ qosoc ", tab = "<TAB>\n";
  const std::size_t begin = help.find(command) + command.size(), end = help.find(tab, begin);
  ASSERT_NE(end, std::string::npos) << help;
  const auto words = [](const std::string& text) {
    std::istringstream in(text);
    return Texts(std::istream_iterator<std::string>(in), {});
  };
  const std::size_t shown = end + tab.size();
  const Texts expected = words(help.substr(shown, help.find('\n', shown) - shown));
  EXPECT_EQ(expected.size(), 2u);
  EXPECT_THAT(completed(words(help.substr(begin, end - begin))),
              UnorderedElementsAreArray(expected));
}

TEST_F(BashCompletion, TakesAValueBehindAnEqualsSign) {
  EXPECT_THAT(completed({"translate", "--format", "=", "mo"}), ElementsAre("model"));
  EXPECT_THAT(completed({"translate", "--format", "="}),
              UnorderedElementsAre("openconfig", "model"));
  EXPECT_THAT(completed({"translate", "--format=mo"}), ElementsAre("--format=model"));
  EXPECT_THAT(completed({"translate", "--roots=acl,sch"}),
              ElementsAre("--roots=acl,scheduler-policy"));
}

TEST_F(BashCompletion, KnowsTheFiles) {
  folder_.file("a router.json", "");
  folder_.file("other.json", "");
  EXPECT_THAT(completed({"check", "a"}), ElementsAre("a router.json"));
  EXPECT_THAT(completed({"diff", "other.json", "o"}), ElementsAre("other.json"));
  EXPECT_THAT(completed({"translate", "--save", "o"}), ElementsAre("other.json"));
  EXPECT_THAT(completed({"translate", "--changes", ""}),
              UnorderedElementsAre("a router.json", "other.json", "-"));
  EXPECT_THAT(completed({"translate", "-o", "-"}), ElementsAre("-"));
}

TEST_F(BashCompletion, CompletesEachOperandOnce) {
  const std::string file = "router.json";
  folder_.file(file, "");
  EXPECT_THAT(completed({"check", file, ""}), IsEmpty());
  EXPECT_THAT(completed({"diff", file, ""}), UnorderedElementsAre(file, "-"));
  EXPECT_THAT(completed({"diff", file, "-", ""}), IsEmpty());
  EXPECT_THAT(completed({"diff", "--", "--a", ""}), UnorderedElementsAre(file, "-"));
  EXPECT_THAT(completed({"diff", "--", "--a", file, ""}), IsEmpty());
  EXPECT_THAT(completed({"help", "translate", ""}), IsEmpty());
  EXPECT_THAT(completed({"completion", "bash", ""}), IsEmpty());
  EXPECT_THAT(completed({"check", file, "--h"}), ElementsAre("--help"));
}

TEST_F(BashCompletion, TakesNoValueForAnOperand) {
  folder_.file("router.json", "");
  const auto both = UnorderedElementsAre("router.json", "-");
  EXPECT_THAT(completed({"translate", ""}), both);
  EXPECT_THAT(completed({"translate", "-o", "out", "--each", ""}), both);
  EXPECT_THAT(completed({"translate", "--format", "=", "model", ""}), both);
  EXPECT_THAT(completed({"translate", "--format=model", ""}), both);
  EXPECT_THAT(completed({"translate", "-o", "out", "router.json", ""}), IsEmpty());
}

TEST_F(BashCompletion, KnowsTheCommandsBehindTheOptionForHelp) {
  EXPECT_EQ(completed({"-h", ""}), completed({"help", ""}));
  EXPECT_THAT(completed({"--help", "che"}), ElementsAre("check"));
  EXPECT_THAT(completed({"-V", ""}), IsEmpty());
}

TEST_F(BashCompletion, KnowsNothingOfOtherValues) {
  folder_.file("file", "");
  EXPECT_THAT(completed({"translate", "--order-seed", ""}), IsEmpty());
  EXPECT_THAT(completed({"diff", "--only", ""}), IsEmpty());
  EXPECT_THAT(completed({"schema", ""}), IsEmpty());
  EXPECT_THAT(completed({"chek", ""}), IsEmpty());
}

TEST_F(BashCompletion, HasNoOptionsBehindTwoDashes) {
  folder_.file("--file", "");
  EXPECT_THAT(completed({"check", "--", "--"}), ElementsAre("--file"));
}

// What a shell on a terminal makes of a line that ends in a tab.
void expectTyped(HostTerminal& shell, const std::string& typed, const std::string& completed) {
  shell.write(typed + '\t');
  EXPECT_TRUE(shell.shows(completed)) << shell.screen();
  constexpr const char* controlU = "\025";  // the line goes
  shell.write(controlU);
}

TEST_F(BashCompletion, WorksInAShellOnATerminal) {
  folder_.file("a router.json", "");
  HostTerminal shell({"bash", "--norc", "--noprofile", "-i"});
  shell.write("cd " + folder_.path(".") + "; source " + share + "/qosoc.bash; echo rea''dy\n");
  ASSERT_TRUE(shell.shows("ready"));
  expectTyped(shell, "qosoc translate --no-a", "--no-augments ");
  expectTyped(shell, "qosoc translate --roots=acl,sch", "--roots=acl,scheduler-policy");
  expectTyped(shell, "qosoc check a", "a\\ router.json ");
}

// ===== zsh

class ZshCompletion : public testing::Test {
 protected:
  // `begin` makes the shell know the completion.
  void start(const std::string& begin) {
    shell_.write("cd " + folder_.path(".") + "; PS1='% '; autoload -Uz compinit; " + begin +
                 "; echo rea''dy\n");
    ASSERT_TRUE(shell_.shows("ready"));
  }

  HostFolder folder_;
  std::string file_ = folder_.file("router.json", "");
  HostTerminal shell_{{"zsh", "-f", "-i"}};
};

TEST_F(ZshCompletion, WorksAsItIsInstalled) {
  start("fpath=(" + share + " $fpath); compinit -u -D");
  expectTyped(shell_, "qosoc transl", "ate");
  expectTyped(shell_, "qosoc ",
              "say what of a native document is wrong, or lost when it is translated");
  expectTyped(shell_, "qosoc check --h", "--help");
  expectTyped(shell_, "qosoc diff --no-a", "--no-augments");
  expectTyped(shell_, "qosoc diff --", "-- print one line of JSON");
  expectTyped(shell_, "qosoc check ro", "router.json");
}

TEST_F(ZshCompletion, KnowsTheValuesOfOptions) {
  start("compinit -u -D; source " + share + "/_qosoc");
  expectTyped(shell_, "qosoc translate --format=mo", "--format=model");
  expectTyped(shell_, "qosoc translate --format ", "every field of the output records");
  expectTyped(shell_, "qosoc translate --roots=acl,sch", "--roots=acl,scheduler-policy");
  expectTyped(shell_, "qosoc translate --roots acl,interface-",
              "interface-classifier  interface-pfc");
  expectTyped(shell_, "qosoc translate --changes rou", "router.json");
  expectTyped(shell_, "qosoc completion z", "zsh");
}

TEST(ZshScript, NamesEveryOptionOfEveryCommand) {
  const std::string script = hostText(share + "/_qosoc");
  for (const Command* command : qosoc::commands()) {
    const std::size_t begin = script.find("\n        " + std::string(command->name) + ")\n");
    ASSERT_NE(begin, std::string::npos) << command->name;
    const std::string part = script.substr(begin, script.find("\n          ;;", begin) - begin);
    for (const Option& option : command->options) {
      const std::string equals = option.takesValue() ? "=[" : "[";
      EXPECT_NE(part.find(std::string(option.name) + equals), std::string::npos) << option.name;
      EXPECT_NE(part.find(std::string(option.shortName) + '['), std::string::npos);
    }
  }
}

}  // namespace
}  // namespace completionTest
