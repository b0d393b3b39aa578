// The files that `qosoc translate` writes: whole or not at all.
#include "apps/qosoc/Output.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>

#include "Paths.h"
#include "tests/support/HostProgram.h"

namespace outputTest {
namespace {

namespace fs = std::filesystem;
using support::HostFolder;
using support::HostRun;
using support::hostRun;
using support::hostText;
using testing::ElementsAre;
using testing::EndsWith;

constexpr const char* native = R"({"comments": {"a": "b"}})";
constexpr const char* written = "{\n  \"comments\": {\n    \"a\": \"b\"\n  }\n}\n";
constexpr const char* model = "{\n  \"openconfig-qos:qos\": {}\n}\n";

class Output : public testing::Test {
 protected:
  std::vector<std::string> command(const std::string& file) const {
    return {paths::qosoc, "translate", native_, "--native-out", file};
  }
  HostRun write(const std::string& file) const { return hostRun(command(file)); }
  // By a shell that first runs `before`.
  HostRun writeBehind(const std::string& before, const std::string& file) const {
    std::vector<std::string> words{"bash", "-c", before + "; exec \"$@\"", "bash"};
    for (const std::string& word : command(file)) words.push_back(word);
    return hostRun(words);
  }
  void expectUsageError(const std::string& file, const std::string& message) {
    native_ = folder_.path("none.json");
    const HostRun run = write(file);
    EXPECT_EQ(run.exit, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "qosoc: --native-out: " + message + " (see qosoc translate --help)\n");
  }
  // Before anything is read.
  void expectRefused(const std::string& file, const std::string& reason) {
    native_ = folder_.path("none.json");
    const HostRun run = write(file);
    EXPECT_EQ(run.exit, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "qosoc: " + file + ": cannot be written: " + reason + "\n");
  }
  // What stands in the folder beside the native document.
  std::vector<std::string> files() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder_.path("."))) {
      if (entry.path().filename() != "native.json") names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  static unsigned modeOf(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777u : 0;
  }

  HostFolder folder_;
  std::string native_ = folder_.file("native.json", native);
  std::string out_ = folder_.path("out.json");
};

TEST_F(Output, IsAFileThatIsNew) {
  const HostRun run = write(out_);
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, model);
  EXPECT_EQ(hostText(out_), written);
  EXPECT_THAT(files(), ElementsAre("out.json"));
}

TEST_F(Output, HasThePermissionsOfTheShellWhenItIsNew) {
  EXPECT_EQ(writeBehind("umask 027", out_).exit, 0);
  EXPECT_EQ(modeOf(out_), 0640u);
}

TEST_F(Output, KeepsThePermissionsOfTheFileThatWasThere) {
  folder_.file("out.json", "old");
  ::chmod(out_.c_str(), 0604);
  EXPECT_EQ(write(out_).exit, 0);
  EXPECT_EQ(hostText(out_), written);
  EXPECT_EQ(modeOf(out_), 0604u);
}

TEST_F(Output, MayTakeThePlaceOfTheInput) {
  EXPECT_EQ(write(native_).exit, 0);
  EXPECT_EQ(hostText(native_), written);
}

TEST_F(Output, FollowsALink) {
  folder_.file("target.json", "old");
  fs::create_symlink("target.json", out_);
  EXPECT_EQ(write(out_).exit, 0);
  EXPECT_TRUE(fs::is_symlink(out_));
  EXPECT_EQ(hostText(folder_.path("target.json")), written);
  EXPECT_THAT(files(), ElementsAre("out.json", "target.json"));
}

TEST_F(Output, FollowsALinkToAFileThatIsNotThereYet) {
  fs::create_symlink("first", out_);
  fs::create_symlink("target.json", folder_.path("first"));
  EXPECT_EQ(write(out_).exit, 0);
  EXPECT_TRUE(fs::is_symlink(out_));
  EXPECT_EQ(hostText(folder_.path("target.json")), written);
  EXPECT_THAT(files(), ElementsAre("first", "out.json", "target.json"));
}

TEST_F(Output, MayBeADeviceOrAPipe) {
  EXPECT_EQ(write("/dev/null").exit, 0);
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
  const std::string pipe = folder_.path("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  std::vector<std::string> words{"bash", "-c", R"(cat "$0" & "$@" > /dev/null; wait)", pipe};
  for (const std::string& word : command(pipe)) words.push_back(word);
  EXPECT_EQ(hostRun(words).out, written);
  EXPECT_TRUE(fs::is_fifo(pipe));
}

TEST_F(Output, MayBeAPipeThatHasNoNameInAFolder) {
  for (const std::string option : {"--native-out", "--save", "--output"}) {
    const std::string script = R"("$0" translate "$1" )" + option + R"( /dev/fd/3 3>&1 >&2 | cat)";
    const HostRun run =
        hostRun({"bash", "-c", "set -o pipefail; " + script, paths::qosoc, native_});
    EXPECT_EQ(run.exit, 0);
    const std::string file = folder_.path(option);
    hostRun({paths::qosoc, "translate", native_, option, file});
    EXPECT_EQ(run.out, hostText(file));
    EXPECT_EQ(run.err, option == "--output" ? "" : model);
  }
  EXPECT_EQ(
      hostRun({"bash", "-c", R"("$0" translate "$1" -o /dev/stdout | cat)", paths::qosoc, native_})
          .out,
      model);
  EXPECT_EQ(
      hostRun({"bash", "-c", R"("$0" translate "$1" -o >(cat); wait $!)", paths::qosoc, native_})
          .out,
      model);
}

TEST_F(Output, IsNotTheStandardOutput) {
  expectUsageError("-", "expected a file, not \"-\": standard output has the model");
  expectUsageError("", "expected a file, not \"\"");
  const HostRun run = hostRun(command(out_), {"", out_});
  EXPECT_EQ(run.exit, 2);
  EXPECT_THAT(run.err, EndsWith("standard output has the model (see qosoc translate --help)\n"));
  EXPECT_EQ(hostText(out_), "");
}

TEST_F(Output, IsJudgedBeforeAnythingIsRead) {
  expectRefused(folder_.path("none/out.json"), "No such file or directory");
  expectRefused(folder_.path("new/"), "No such file or directory");
  expectRefused(folder_.path("."), "Is a directory");
  expectRefused(folder_.file("file", "") + "/out.json", "Not a directory");
  fs::create_symlink("loop", folder_.path("loop"));
  expectRefused(folder_.path("loop"), "Too many levels of symbolic links");
}

TEST_F(Output, StaysAsItWasWhenItCannotBeWritten) {
  folder_.file("out.json", "old");
  folder_.file("native.json", R"({"comments": {"a": ")" + std::string(100'000, 'b') + "\"}}");
  const HostRun run = writeBehind("ulimit -f 8; trap '' XFSZ", out_);
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(run.err, "qosoc: " + out_ + ": cannot be written: File too large\n");
  EXPECT_EQ(run.out, model);
  EXPECT_EQ(hostText(out_), "old");
  EXPECT_THAT(files(), ElementsAre("out.json"));
}

// The text ends the process in the middle of the write, which has a new file in the folder.
TEST_F(Output, StaysAsItWasWhenASignalEndsTheProgram) {
  folder_.file("out.json", "old");
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGXFSZ}) {
    EXPECT_EXIT(qosoc::OutputFile("--output", out_).write([&](const host::TextSink& sink) {
      sink("new");
      if (files().size() == 2) ::raise(signal);
    }),
                testing::KilledBySignal(signal), "");
    EXPECT_THAT(files(), ElementsAre("out.json"));
    EXPECT_EQ(hostText(out_), "old");
  }
}

TEST_F(Output, IsReportedWhenItsFolderOrDeviceTakesNothing) {
  for (const auto& [file, reason] : {std::pair("/proc/out.json", "No such file or directory"),
                                     std::pair("/dev/full", "No space left on device")}) {
    const HostRun run = write(file);
    EXPECT_EQ(run.exit, 1);
    EXPECT_EQ(run.out, model);
    EXPECT_EQ(run.err, std::string("qosoc: ") + file + ": cannot be written: " + reason + "\n");
  }
}

TEST_F(Output, IsWrittenThoughALineIsRefused) {
  std::vector<std::string> words = command(out_);
  words.insert(words.end(), {"--changes", "-"});
  const HostRun run = hostRun(words, {R"([{"op": "add", "path": "/comments/c", "value": "d"}]
[{"op": "remove", "path": "/comments/none"}]
[{"op": "remove", "path": "/comments/a"}])"});
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(run.err, "line 2: refused: /comments/none: nothing is there\n");
  EXPECT_EQ(hostText(out_), "{\n  \"comments\": {\n    \"c\": \"d\"\n  }\n}\n");
}

TEST_F(Output, IsWrittenThoughTheModelCannotBePrinted) {
  EXPECT_EQ(hostRun(command(out_), {"", "/dev/full"}).exit, 1);
  EXPECT_EQ(hostText(out_), written);
}

TEST_F(Output, IsNotWrittenWhenTheInputIsRefused) {
  folder_.file("native.json", "{");
  EXPECT_EQ(write(out_).exit, 2);
  EXPECT_FALSE(fs::exists(out_));
}

}  // namespace
}  // namespace outputTest
