// The help of the program and of its commands.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "Paths.h"
#include "Qosoc.h"
#include "apps/qosoc/Commands.h"
#include "tests/support/HostProgram.h"

namespace helpTest {
namespace {

using support::HostFolder;
using support::HostRun;
using support::hostRun;
using support::qosoc;

std::string helpOf(const qosoc::Command& command) {
  return qosoc({std::string(command.name), "--help"}).out;
}

TEST(Help, IsAlsoHadByTheShortOptionAndAsACommand) {
  const std::string all = qosoc({"--help"}).out;
  EXPECT_EQ(qosoc({"-h"}).out, all);
  EXPECT_EQ(qosoc({"help"}).out, all);
  for (const qosoc::Command* command : qosoc::commands()) {
    const std::string name(command->name);
    const HostRun run = qosoc({name, "--help"});
    EXPECT_EQ(run.exit, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(qosoc({name, "-h"}).out, run.out);
    EXPECT_EQ(qosoc({"help", name}).out, run.out);
    EXPECT_EQ(qosoc({"--help", name}).out, run.out);
  }
}

TEST(Help, OfTheProgramNamesEachCommand) {
  const std::string all = qosoc({"--help"}).out;
  EXPECT_EQ(all.find("usage: qosoc COMMAND"), 0u);
  EXPECT_NE(all.find("\n  qosoc translate NATIVE.json  "), std::string::npos);
  for (const qosoc::Command* command : qosoc::commands()) {
    EXPECT_NE(all.find("\n  qosoc " + std::string(command->name) + ' '), std::string::npos);
    EXPECT_NE(all.find("  " + std::string(command->summary) + '\n'), std::string::npos);
  }
}

TEST(Help, NamesEachOptionOfTheCommandWithItsValue) {
  for (const qosoc::Command* command : qosoc::commands()) {
    const std::string text = helpOf(*command);
    for (const qosoc::Option& option : command->options) {
      const std::string label =
          std::string(option.name) + (option.takesValue() ? " " : "") + std::string(option.value);
      const std::string begin =
          option.shortName.empty() ? "\n  " : "\n  " + std::string(option.shortName) + ", ";
      EXPECT_NE(text.find(begin + label + "  "), std::string::npos) << label;
    }
    EXPECT_NE(text.find("\n  -h, --help  "), std::string::npos);
  }
}

TEST(Help, BeginsWithTheUsageAndHasAnExampleAndTheExitCodes) {
  for (const qosoc::Command* command : qosoc::commands()) {
    const std::string text = helpOf(*command);
    EXPECT_EQ(text.find("usage: qosoc " + std::string(command->name)), 0u);
    EXPECT_NE(text.find("\nExample:\n  $ "), std::string::npos) << text;
    EXPECT_NE(text.find("\nExit code:\n  0  "), std::string::npos) << text;
  }
}

// What stands there as it is typed or printed may be longer.
TEST(Help, FitsIntoAHundredColumns) {
  for (const qosoc::Command* command : qosoc::commands()) {
    std::istringstream text(helpOf(*command));
    bool isExample = false;
    for (std::string line; std::getline(text, line);) {
      if (line == "Example:") isExample = true;
      if (line == "Exit code:") isExample = false;
      const bool isFree = isExample && line.starts_with("  ");
      EXPECT_TRUE(isFree || line.size() <= 100) << line;
      EXPECT_FALSE(line.ends_with(' ')) << line;
    }
  }
}

TEST(Help, NamesTheWordsThatAValueMayBe) {
  const std::string text = qosoc({"translate", "--help"}).out;
  EXPECT_NE(text.find("build only these roots: class-map, acl, class-action,"), std::string::npos);
  EXPECT_NE(text.find("\n                         openconfig (the default): the "),
            std::string::npos);
  EXPECT_NE(text.find("\n                         model: every "), std::string::npos);
}

TEST(Help, ThatCannotBeWrittenFails) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"--help"}, {"-V"}, {"help", "diff"}, {"check", "--help"}}) {
    const HostRun run = qosoc(words, {"", "/dev/full"});
    EXPECT_EQ(run.exit, 2);
    EXPECT_EQ(run.err, "qosoc: standard output: No space left on device\n");
  }
}

// What the help of a command shows below a command of its example, up to the next one. It must be
// true.
std::string shownBelow(const std::string& help, const std::string& command) {
  std::size_t at = help.find("  $ " + command);
  EXPECT_NE(at, std::string::npos) << command;
  std::string text;
  for (at = help.find('\n', at) + 1; help.compare(at, 2, "  ") == 0 && help[at + 2] != '$';) {
    const std::size_t end = help.find('\n', at) + 1;
    text += help.substr(at + 2, end - at - 2);
    at = end;
  }
  return text;
}

TEST(Help, ShowsAnExampleOfATranslationThatIsTrue) {
  const std::string help = qosoc({"translate", "--help"}).out;
  const HostFolder folder;
  const std::string router = folder.file("router.json", shownBelow(help, "cat router.json"));
  const std::string changes = folder.file("changes.jsonl", shownBelow(help, "cat changes.jsonl"));
  const std::string command = "qosoc translate router.json --changes changes.jsonl ";
  const HostRun run = qosoc({"translate", router, "--changes", changes, "--each"});
  EXPECT_EQ(run.exit, 0) << run.err;
  EXPECT_EQ(run.out, shownBelow(help, command + "--each"));
  const std::string feed = qosoc({"translate", router, "--changes", changes, "--feed"}).out;
  EXPECT_EQ(feed.substr(feed.find('\n') + 1), shownBelow(help, command + "--feed"));
}

TEST(Help, ShowsAnExampleOfADifferenceThatIsTrue) {
  const std::string help = qosoc({"diff", "--help"}).out;
  const HostFolder folder;
  const HostRun run =
      qosoc({"diff", folder.file("before.json", shownBelow(help, "cat before.json")),
             folder.file("after.json", shownBelow(help, "cat after.json"))});
  EXPECT_EQ(run.exit, 1) << run.err;
  EXPECT_EQ(run.out, shownBelow(help, "qosoc diff"));
}

TEST(Help, ShowsAnExampleOfACheckThatIsTrue) {
  const std::string text = qosoc({"check", "--help"}).out;
  const HostFolder folder;
  folder.file("router.json", shownBelow(text, "cat router.json"));
  const HostRun run = hostRun(
      {"bash", "-c", R"(cd "$1" && exec "$0" check router.json)", paths::qosoc, folder.path(".")});
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(run.out, shownBelow(text, "qosoc check router.json"));
}

TEST(Help, ShowsAnExampleOfHelpThatIsTrue) {
  const std::string text = qosoc({"help", "help"}).out;
  const std::string diff = qosoc({"help", "diff"}).out;
  EXPECT_EQ(shownBelow(text, "qosoc help diff | head -n 1"), diff.substr(0, diff.find('\n') + 1));
}

}  // namespace
}  // namespace helpTest
