// What the program says of itself, and how it takes its arguments.
#include <gtest/gtest.h>

#include "Paths.h"
#include "host/Version.h"
#include "tests/support/HostProgram.h"

namespace commandsTest {
namespace {

using support::HostFolder;
using support::HostRun;
using support::hostRun;

HostRun qosoc(const std::vector<std::string>& words) {
  std::vector<std::string> command{paths::qosoc};
  command.insert(command.end(), words.begin(), words.end());
  return hostRun(command);
}

void expectUsageError(const std::vector<std::string>& words, const std::string& message) {
  const HostRun run = qosoc(words);
  EXPECT_EQ(run.exit, 2) << message;
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(
      run.err,
      "qosoc: --feed and --each are two ways to print: give one (see qosoc translate --help)\n");
}

TEST(Qosoc, TellsItsVersion) {
  const HostRun run = qosoc({"--version"});
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(run.out, "qosoc " + std::string(host::version()) + "\n");
  EXPECT_EQ(run.err, "");
}

TEST(Qosoc, TeachesItsCommands) {
  const HostRun all = qosoc({"--help"});
  EXPECT_EQ(all.exit, 0);
  EXPECT_NE(all.out.find("qosoc translate NATIVE.json"), std::string::npos);
  EXPECT_NE(all.out.find("qosoc check NATIVE.json"), std::string::npos);
  EXPECT_NE(all.out.find("qosoc diff A.json B.json"), std::string::npos);
  for (const char* command : {"translate", "check", "diff"}) {
    const HostRun run = qosoc({command, "--help"});
    EXPECT_EQ(run.exit, 0);
    EXPECT_EQ(run.out.find("usage: qosoc " + std::string(command)), 0u);
    EXPECT_NE(run.out.find("\n  $ qosoc "), std::string::npos) << "no example";
    EXPECT_EQ(run.err, "");
  }
}

TEST(Qosoc, TeachesEveryOption) {
  const std::string help = qosoc({"translate", "--help"}).out;
  for (const char* option : {"--changes FILE|-", "--each", "--format FORMAT", "--initial FILE",
                             "--native-out FILE", "--save FILE", "--restore FILE",
                             "--roots NAME,...", "--trace LEVEL,...", "--order-seed N"}) {
    EXPECT_NE(help.find("\n  " + std::string(option) + ' '), std::string::npos) << option;
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

TEST(Qosoc, ShowsAnExampleOfATranslationThatIsTrue) {
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

TEST(Qosoc, PrintsAFeedInOneWay) {
  for (const char* other : {"--each", "--format=model"}) {
    const std::string name = std::string(other).substr(0, std::string(other).find('='));
    expectUsageError(
        {"translate", "none.json", "--feed", other},
        "--feed and " + name + " are two ways to print: give one (see qosoc translate --help)");
  }
}

TEST(Qosoc, ShowsAnExampleOfADifferenceThatIsTrue) {
  const std::string help = qosoc({"diff", "--help"}).out;
  const HostFolder folder;
  const HostRun run =
      qosoc({"diff", folder.file("before.json", shownBelow(help, "cat before.json")),
             folder.file("after.json", shownBelow(help, "cat after.json"))});
  EXPECT_EQ(run.exit, 1) << run.err;
  EXPECT_EQ(run.out, shownBelow(help, "qosoc diff"));
}

TEST(Qosoc, RefusesWhatItDoesNotKnow) {
  expectUsageError({}, "a command is missing (see qosoc --help)");
  expectUsageError({"convert"}, "there is no command \"convert\" (see qosoc --help)");
  expectUsageError({"translate"}, "NATIVE.json is missing (see qosoc translate --help)");
  expectUsageError({"check"}, "NATIVE.json is missing (see qosoc check --help)");
  expectUsageError({"check", "a", "b"}, "what is \"b\"? (see qosoc check --help)");
  expectUsageError({"diff", "a"}, "B.json is missing (see qosoc diff --help)");
  expectUsageError({"diff", "a", "b", "c"}, "what is \"c\"? (see qosoc diff --help)");
  expectUsageError({"diff", "-", "-"}, "standard input is one document (see qosoc diff --help)");
  expectUsageError({"diff", "a", "b", "--only", "/x"},
                   "--only: /: there is no element \"x\" here (see qosoc diff --help)");
  expectUsageError({"check", "--each", "a"}, "unknown option \"--each\" (see qosoc check --help)");
  expectUsageError({"translate", "a", "--formt=model"},
                   "unknown option \"--formt\" (see qosoc translate --help)");
}

TEST(Qosoc, JudgesAllOptionsBeforeItReadsAFile) {
  const std::string see = " (see qosoc translate --help)";
  expectUsageError({"translate", "none.json", "--changes"}, "--changes needs a value" + see);
  expectUsageError({"translate", "none.json", "--each=1"}, "\"--each=1\" takes no value" + see);
  expectUsageError({"translate", "none.json", "--format", "xml"},
                   "--format: expected openconfig or model, not \"xml\"" + see);
  expectUsageError({"translate", "none.json", "--trace", "0,10"},
                   "--trace: expected levels from 0 to 9, not \"10\"" + see);
  expectUsageError({"translate", "none.json", "--trace", "0,"},
                   "--trace: expected levels from 0 to 9, not \"\"" + see);
  expectUsageError({"translate", "none.json", "--order-seed", "-1"},
                   "--order-seed: expected a number from 0 to 4294967295, not \"-1\"" + see);
  for (const char* option : {"--no-augments", "--state", "--interface-ref"}) {
    expectUsageError({"translate", "none.json", option, "--format=model"},
                     std::string(option) + " is for the format openconfig" + see);
  }
  expectUsageError({"translate", "none.json", "--only=/qos", "--format=model"},
                   "--only is for the format openconfig" + see);
  const std::string none = ": the other options leave all of it out" + see;
  expectUsageError({"translate", "none.json", "--only=/interfaces"}, "--only: /interfaces" + none);
  expectUsageError({"translate", "none.json", "--feed", "--only=/qos/queues/queue[name=q]/state"},
                   "--only: /qos/queues/queue[name=q]/state" + none);
  expectUsageError({"translate", "none.json", "--no-augments", "--only=/qos/qosoc-augments:pfc"},
                   "--only: /qos/qosoc-augments:pfc" + none);
  expectUsageError({"translate", "none.json", "--only", "/qos/queue"},
                   "--only: /qos: there is no element \"queue\" here: did you mean queues?" + see);
  expectUsageError({"translate", "none.json", "--roots", "class-map,bridge"},
                   "--roots: there is no root \"bridge\"" + see);
}

// A device with a comment that is legal and can't be translated.
constexpr const char* badComment = R"({
    "interfaces": {"Ethernet1": {"tx-queues": {"uc-3": {}}}},
    "comments": {"if-Et1-uc-txq-3": "{\"MetaData-OpenConfig\":{\"scheduler-policy\":1}}"}})";
constexpr const char* badCommentSaid =
    "/comments/if-Et1-uc-txq-3: at /MetaData-OpenConfig/scheduler-policy of this comment: expected "
    "an object; it ends the program that translates it\n";

TEST(Qosoc, CheckNamesACommentThatEndsWhoeverTranslatesIt) {
  const HostFolder folder;
  const std::string file = folder.file("native.json", badComment);
  const HostRun run = qosoc({"check", file});
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "qosoc: " + file + ": " + badCommentSaid);
}

TEST(Qosoc, TranslateWarnsOfSuchACommentBeforeItEnds) {
  const HostFolder folder;
  const HostRun run = qosoc({"translate", folder.file("native.json", badComment)});
  EXPECT_EQ(run.exit, 134);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err.find("warning: " + std::string(badCommentSaid)), 0u) << run.err;
  EXPECT_NE(run.err.find("wrong type"), std::string::npos);
}

TEST(Qosoc, TheJudgementOfCommentsLeavesNoTrace) {
  const HostFolder folder;
  const std::string file = folder.file("native.json", R"({
      "interfaces": {"Ethernet1": {"tx-queues": {"uc-3": {}}}},
      "qos-profiles": {"__YANG_SP_[gold]": {}}})");
  const HostRun run = qosoc({"translate", file, "--trace", "2,9", "--roots", "acl"});
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(run.err, "");
}

TEST(Qosoc, TakesAValueBehindAnEqualsSignAndOperandsBehindTwoDashes) {
  const HostFolder folder;
  const std::string file = folder.file("native.json", "{}");
  const HostRun run = qosoc({"translate", "--format=model", "--", file});
  EXPECT_EQ(run.exit, 0) << run.err;
  EXPECT_EQ(run.out.find("{\n  \"classifiers\": {},"), 0u);
}

}  // namespace
}  // namespace commandsTest
