// --output: what would be printed goes to a file.
#include <gtest/gtest.h>

#include <filesystem>

#include "Paths.h"
#include "Qosoc.h"
#include "tests/support/HostProgram.h"

namespace outputOptionTest {
namespace {

namespace fs = std::filesystem;
using support::HostFolder;
using support::HostRun;
using support::hostRun;
using support::hostText;
using support::qosoc;

class OutputOption : public testing::Test {
 protected:
  // The file gets what the command prints without the option, and nothing is printed.
  void expectWritten(std::vector<std::string> words) {
    const HostRun printed = qosoc(words);
    EXPECT_NE(printed.out, "");
    words.insert(words.end(), {"--output", out_});
    const HostRun run = qosoc(words);
    EXPECT_EQ(run.exit, printed.exit);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, printed.err);
    EXPECT_EQ(hostText(out_), printed.out);
  }
  static void expectFailure(const std::vector<std::string>& words, int exit,
                            const std::string& message) {
    const HostRun run = qosoc(words);
    EXPECT_EQ(run.exit, exit);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "qosoc: " + message + "\n");
  }

  HostFolder folder_;
  std::string native_ = folder_.file("native.json", R"({"queue-names": {"EF": 3, "\u0007": 4}})");
  std::string other_ = folder_.file("other.json", R"({"queue-names": {"AF": 3}})");
  std::string out_ = folder_.path("out");
};

TEST_F(OutputOption, GivesAFileTheModel) {
  expectWritten({"translate", native_});
  expectWritten({"translate", native_, "--format=model"});
}

TEST_F(OutputOption, GivesAFileTheDifference) {
  expectWritten({"diff", native_, other_});
  expectWritten({"diff", native_, other_, "--json"});
}

TEST_F(OutputOption, HasAShortName) {
  EXPECT_EQ(qosoc({"translate", native_, "-o", out_}).exit, 0);
  EXPECT_EQ(hostText(out_), qosoc({"translate", native_}).out);
}

TEST_F(OutputOption, OfADashIsStandardOutput) {
  EXPECT_EQ(qosoc({"translate", other_, "-o", "-"}).out, qosoc({"translate", other_}).out);
  EXPECT_EQ(qosoc({"diff", native_, other_, "-o", "-"}).out, qosoc({"diff", native_, other_}).out);
}

TEST_F(OutputOption, LeavesAnEmptyFileOfDocumentsThatAreEqual) {
  EXPECT_EQ(qosoc({"diff", other_, other_, "-o", out_}).exit, 0);
  EXPECT_TRUE(fs::exists(out_));
  EXPECT_EQ(hostText(out_), "");
}

TEST_F(OutputOption, LeavesTheFileAsItWasWhenTheInputIsRefused) {
  folder_.file("out", "old");
  EXPECT_EQ(qosoc({"translate", folder_.file("bad.json", "{"), "-o", out_}).exit, 2);
  EXPECT_EQ(qosoc({"diff", other_, folder_.path("bad.json"), "-o", out_}).exit, 2);
  EXPECT_EQ(hostText(out_), "old");
}

TEST_F(OutputOption, NamesAFileThatCannotBeWritten) {
  expectFailure({"translate", other_, "-o", "/dev/full"}, 1,
                "/dev/full: cannot be written: No space left on device");
  expectFailure({"diff", native_, native_, "-o", folder_.path("none/out")}, 2,
                folder_.path("none/out") + ": cannot be written: No such file or directory");
  expectFailure({"diff", other_, folder_.file("native.json", "{}"), "-o", "/dev/full"}, 2,
                "/dev/full: cannot be written: No space left on device");
}

TEST_F(OutputOption, IsNotForAStream) {
  for (const std::string option : {"--each", "--feed"}) {
    expectFailure({"translate", "none.json", option, "-o", out_}, 2,
                  "--output: what " + option +
                      " prints is a stream, and a file is written whole: use > FILE (see qosoc "
                      "translate --help)");
  }
  EXPECT_EQ(qosoc({"translate", other_, "--each", "-o", "-"}).exit, 0);
}

TEST_F(OutputOption, IsAFileOfItsOwn) {
  const std::string see = " name the same file (see qosoc translate --help)";
  expectFailure({"translate", "none.json", "-o", out_, "--save", folder_.path("./out")}, 2,
                "--save and --output" + see);
  expectFailure({"translate", "none.json", "-o", out_, "--native-out", out_}, 2,
                "--native-out and --output" + see);
  expectFailure({"translate", "none.json", "--save", out_, "--native-out", out_}, 2,
                "--native-out and --save" + see);
  expectFailure({"diff", "a", "b", "-o", ""}, 2,
                "--output: expected a file, not \"\" (see qosoc diff --help)");
}

TEST_F(OutputOption, IsNoneOfTheInputs) {
  const std::string before = hostText(native_);
  const auto expectKept = [&](const std::string& names, std::vector<std::string> words) {
    const std::string see = " (see qosoc " + words.front() + " --help)";
    expectFailure(words, 2, names + " name the same file, which would be overwritten" + see);
    EXPECT_EQ(hostText(native_), before);
  };
  fs::create_symlink("native.json", folder_.path("link"));
  const std::string link = folder_.path("link");
  expectKept("--output and NATIVE.json", {"translate", native_, "-o", link});
  expectKept("--output and --changes", {"translate", other_, "--changes", native_, "-o", native_});
  expectKept("--output and --initial", {"translate", other_, "--initial", link, "-o", native_});
  expectKept("--output and --restore", {"translate", "--restore", native_, "-o", native_});
  expectKept("--save and NATIVE.json", {"translate", native_, "--save", native_});
  expectKept("--save and --initial", {"translate", other_, "--initial", link, "--save", native_});
  expectKept("--native-out and --changes",
             {"translate", other_, "--changes", native_, "--native-out", native_});
  expectKept("--native-out and --restore", {"translate", "--restore", link, "--native-out", link});
  expectKept("--output and A.json", {"diff", native_, other_, "-o", native_});
  expectKept("--output and B.json", {"diff", other_, native_, "-o", link});
}

TEST_F(OutputOption, IsNotTheFileOfStandardInput) {
  const std::string before = hostText(native_);
  const HostRun run =
      hostRun({"bash", "-c", R"("$0" translate - -o "$1" < "$1")", paths::qosoc, native_});
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(run.err,
            "qosoc: --output and NATIVE.json name the same file, which would be overwritten (see "
            "qosoc translate --help)\n");
  EXPECT_EQ(hostText(native_), before);
}

TEST_F(OutputOption, LetsADeviceBeReadAndWritten) {
  const HostRun run = qosoc({"translate", other_, "--changes", "/dev/null", "-o", "/dev/null"});
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(run.err, "");
}

TEST_F(OutputOption, LetsAStateBeSavedInItsPlace) {
  ASSERT_EQ(qosoc({"translate", other_, "--save", out_}).exit, 0);
  const std::string before = hostText(out_);
  EXPECT_EQ(qosoc({"translate", "--restore", out_, "--save", out_}).exit, 0);
  EXPECT_EQ(hostText(out_), before);
}

TEST_F(OutputOption, DoesNotFreeStandardOutputForAnotherFile) {
  expectFailure({"translate", "none.json", "-o", out_, "--save", "-"}, 2,
                "--save: expected a file, not \"-\" (see qosoc translate --help)");
}

}  // namespace
}  // namespace outputOptionTest
