// What the program says of itself, and how it takes its arguments.
#include <gtest/gtest.h>

#include <filesystem>

#include "Qosoc.h"
#include "host/Roots.h"
#include "host/Version.h"
#include "tests/support/HostProgram.h"

namespace commandsTest {
namespace {

using support::HostFolder;
using support::HostRun;
using support::qosoc;

void expectUsageError(const std::vector<std::string>& words, const std::string& message) {
  const HostRun run = qosoc(words);
  EXPECT_EQ(run.exit, 2) << message;
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "qosoc: " + message + "\n");
}

const std::string legal =
    " (legal: translate, check, diff, serve, schema, help, completion, manual, --help, -h, "
    "--version, -V)";
const std::string roots = [] {
  std::string names;
  for (const host::Root& root : host::roots()) {
    names += (names.empty() ? "" : ", ") + std::string(root.name);
  }
  return " (legal: " + names + ')';
}();

TEST(Qosoc, TellsItsVersion) {
  const HostRun run = qosoc({"--version"});
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(run.out, "qosoc " + std::string(host::version()) + "\n");
  EXPECT_EQ(run.err, "");
}

TEST(Qosoc, TellsItsVersionByTheShortOptionToo) {
  const HostRun run = qosoc({"-V"});
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(run.out, qosoc({"--version"}).out);
}

TEST(Qosoc, SaysWhatItTakesToServe) {
  const HostFolder folder;
  std::filesystem::copy(paths::qosoc, folder.path("qosoc"));
  const HostRun run = support::hostRun({folder.path("qosoc"), "serve", "none.json"});
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(run.err,
            "qosoc: qosoc-serve is not beside qosoc: it is built where gRPC is there "
            "(QOS_BUILD_GNMI) (see qosoc serve --help)\n");
}

TEST(Qosoc, RefusesWhatItDoesNotKnow) {
  expectUsageError({}, "a command is missing (see qosoc --help)");
  expectUsageError({"convert"}, "there is no command \"convert\"" + legal + " (see qosoc --help)");
  expectUsageError({"-x"}, "unknown option \"-x\"" + legal + " (see qosoc --help)");
  expectUsageError({"--version", "all"}, "what is \"all\"? (see qosoc --help)");
  expectUsageError({"translate"}, "NATIVE.json is missing (see qosoc translate --help)");
  expectUsageError({"check"}, "NATIVE.json is missing (see qosoc check --help)");
  expectUsageError({"check", "a", "b"}, "what is \"b\"? (see qosoc check --help)");
  expectUsageError({"diff", "a"}, "B.json is missing (see qosoc diff --help)");
  expectUsageError({"diff", "a", "b", "c"}, "what is \"c\"? (see qosoc diff --help)");
  expectUsageError({"diff", "-", "-"}, "standard input is one document (see qosoc diff --help)");
  expectUsageError({"diff", "a", "b", "--only", "/x"},
                   "--only: /: there is no element \"x\" here (see qosoc diff --help)");
  expectUsageError({"check", "--each", "a"}, "unknown option \"--each\" (see qosoc check --help)");
}

TEST(Qosoc, SaysWhatWasProbablyMeant) {
  expectUsageError({"chek", "a"}, "there is no command \"chek\": did you mean check?" + legal +
                                      " (see qosoc --help)");
  expectUsageError({"version"}, "there is no command \"version\": did you mean --version?" + legal +
                                    " (see qosoc --help)");
  expectUsageError({"--hlep"}, "unknown option \"--hlep\": did you mean --help?" + legal +
                                   " (see qosoc --help)");
  expectUsageError({"-v"},
                   "unknown option \"-v\": did you mean -V?" + legal + " (see qosoc --help)");
  expectUsageError({"translate", "a", "-O", "b"},
                   "unknown option \"-O\": did you mean -o? (see qosoc translate --help)");
  expectUsageError({"help", "dif"}, "there is no command \"dif\": did you mean diff?" + legal +
                                        " (see qosoc --help)");
  const std::string see = " (see qosoc translate --help)";
  expectUsageError({"translate", "a", "--fromat=model"},
                   "unknown option \"--fromat\": did you mean --format?" + see);
  expectUsageError(
      {"translate", "a", "--roots", "acl,class-maps"},
      "--roots: there is no root \"class-maps\": did you mean class-map?" + roots + see);
  expectUsageError(
      {"translate", "a", "--format", "modle"},
      "--format: expected openconfig or model, not \"modle\": did you mean model?" + see);
  expectUsageError({"check", "a", "--hlep"},
                   "unknown option \"--hlep\": did you mean --help? (see qosoc check --help)");
}

TEST(Qosoc, TakesTheBeginningOfACommandForIt) {
  const std::string see = legal + " (see qosoc --help)";
  for (const std::string name : {"translate", "completion", "manual"}) {
    const std::string begin = name.substr(0, 4);
    const std::string message =
        "there is no command \"" + begin + "\": did you mean " + name + "?" + see;
    expectUsageError({begin}, message);
    expectUsageError({"help", begin}, message);
  }
  expectUsageError({"c"}, "there is no command \"c\"" + see);
  expectUsageError({""}, "there is no command \"\"" + see);
}

TEST(Qosoc, PrintsAFeedInOneWay) {
  for (const char* other : {"--each", "--format=model"}) {
    const std::string name = std::string(other).substr(0, std::string(other).find('='));
    expectUsageError(
        {"translate", "none.json", "--feed", other},
        "--feed and " + name + " are two ways to print: give one (see qosoc translate --help)");
  }
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
                   "--roots: there is no root \"bridge\"" + roots + see);
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
  EXPECT_EQ(run.out, file +
                         ":3:37: warning: /comments/if-Et1-uc-txq-3: at "
                         "/MetaData-OpenConfig/scheduler-policy of this comment: expected an "
                         "object, and any other value ends the program that translates it; write "
                         "an object\n");
  EXPECT_EQ(run.err, "");
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

TEST(Qosoc, TakesAValueInTheFormsThatItsHelpNames) {
  EXPECT_NE(
      qosoc({"--help"})
          .out.find(
              "\nA value stands behind its option or behind a `=`: `-o FILE`, `-o=FILE`, "
              "`--output FILE`,\n`--output=FILE`. Options may stand anywhere; what follows `--` is "
              "none.\n"),
      std::string::npos);
  const HostFolder folder;
  const std::string file = folder.file("native.json", "{}");
  const std::string out = folder.path("out");
  for (const std::vector<std::string>& form : {std::vector{std::string("-o"), out},
                                               {"-o=" + out},
                                               {"--output", out},
                                               {"--output=" + out}}) {
    std::vector<std::string> words{"translate", file};
    words.insert(words.end(), form.begin(), form.end());
    EXPECT_EQ(qosoc(words).exit, 0);
    EXPECT_EQ(support::hostText(out), "{\n  \"openconfig-qos:qos\": {}\n}\n");
    std::filesystem::remove(out);
  }
  expectUsageError({"translate", file, "-o" + out},
                   "unknown option \"-o" + out + "\" (see qosoc translate --help)");
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
