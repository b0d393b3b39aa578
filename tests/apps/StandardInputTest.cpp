// "-" in the place of a file is standard input, once.
#include <gtest/gtest.h>

#include "Paths.h"
#include "Qosoc.h"
#include "tests/support/HostProgram.h"

namespace standardInputTest {
namespace {

using support::HostFolder;
using support::HostRun;
using support::hostRun;

constexpr const char* native = R"({"queue-names": {"EF": 3}})";

HostRun qosoc(const std::vector<std::string>& words, const std::string& in) {
  return support::qosoc(words, {in});
}

// What translate prints without it.
std::string translated(const std::vector<std::string>& options = {}) {
  const HostFolder folder;
  std::vector<std::string> words{"translate", folder.file("native.json", native)};
  words.insert(words.end(), options.begin(), options.end());
  return qosoc(words, "").out;
}

TEST(StandardInput, IsTheNativeDocument) {
  const HostRun run = qosoc({"translate", "-"}, native);
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, translated());
  EXPECT_EQ(qosoc({"check", "-"}, native).exit, 0);
}

TEST(StandardInput, ComesFromAPipeAsWell) {
  const HostRun run =
      hostRun({"bash", "-c", R"(printf %s "$1" | "$0" translate -)", paths::qosoc, native});
  EXPECT_EQ(run.out, translated());
}

TEST(StandardInput, IsASavedStateOrAnInitialModel) {
  const HostFolder folder;
  const std::string file = folder.file("native.json", native);
  const std::string state = folder.path("state.json");
  ASSERT_EQ(qosoc({"translate", file, "--save", state}, "").exit, 0);
  EXPECT_EQ(qosoc({"translate", "--restore", "-"}, support::hostText(state)).out, translated());
  const std::string model = R"({"queues": {"Ethernet1-unicast-3": {}}})";
  EXPECT_EQ(
      qosoc({"translate", file, "--initial=-", "--format=model", "--roots=acl"}, model).out,
      translated({"--initial", folder.file("model.json", model), "--format=model", "--roots=acl"}));
}

TEST(StandardInput, IsNamedWhenItIsRefused) {
  const std::string bad = R"({"queue-names": {"EF": 256}})";
  const std::string reason = "/queue-names/EF: expected a whole number from 0 to 255, not 256\n";
  const HostRun run = qosoc({"translate", "-"}, bad);
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "qosoc: standard input:1:24: " + reason);
  const HostRun checked = qosoc({"check", "-"}, bad);
  EXPECT_EQ(checked.exit, 2);
  EXPECT_EQ(checked.out, "standard input:1:24: error: " + reason);
  EXPECT_EQ(checked.err, "");
}

TEST(StandardInput, IsOneOfTheInputs) {
  const auto expectRefused = [](const std::vector<std::string>& words, const std::string& both) {
    const HostRun run = qosoc(words, native);
    EXPECT_EQ(run.exit, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err,
              "qosoc: standard input is " + both + ", not both (see qosoc translate --help)\n");
  };
  expectRefused({"translate", "-", "--changes", "-"}, "NATIVE.json or --changes");
  expectRefused({"translate", "--restore=-", "--changes=-"}, "--restore or --changes");
  expectRefused({"translate", "-", "--initial=-"}, "NATIVE.json or --initial");
}

TEST(StandardInput, ThatIsAFolderCannotBeRead) {
  const HostRun run = hostRun({"bash", "-c", R"("$0" check - < /)", paths::qosoc});
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(run.err, "qosoc: standard input: cannot be read: Is a directory\n");
}

TEST(StandardInput, IsNamedByTheOtherCommandsToo) {
  const HostFolder folder;
  const std::string file = folder.file("native.json", native);
  EXPECT_EQ(qosoc({"diff", file, "-"}, "{").err,
            "qosoc: standard input:1:2: (document): not JSON: Missing a name for object member.\n");
  EXPECT_EQ(qosoc({"translate", file, "--initial", "-"}, "[]").err,
            "qosoc: standard input:1:1: (document): expected an object, not an array\n");
  EXPECT_EQ(qosoc({"check", "-"}, R"({"interfaces": {"Ethernet1": {"tx-queues": {"uc-3": {}}}},
    "comments": {"if-Et1-uc-txq-3": "{\"MetaData-OpenConfig\":{\"scheduler-policy\":1}}"}})")
                .out,
            "standard input:2:37: warning: /comments/if-Et1-uc-txq-3: at /MetaData-OpenConfig/"
            "scheduler-policy of this comment: expected an object, and any other value "
            "ends the program that translates it; write an object\n");
}

}  // namespace
}  // namespace standardInputTest
