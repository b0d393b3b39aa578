// `qosoc translate --save` and `--restore`: a state that is left and taken up again.
#include <gtest/gtest.h>

#include <filesystem>
#include <span>
#include <sstream>

#include "Paths.h"
#include "host/NativeReader.h"
#include "host/Sections.h"
#include "tests/support/HostProgram.h"

namespace restoreTest {
namespace {

using support::HostFolder;
using support::HostRun;
using support::hostRun;
using support::hostText;

using Words = std::vector<std::string>;

HostRun translate(Words words) {
  words.insert(words.begin(), {paths::qosoc, "translate"});
  return hostRun(words);
}

std::vector<std::string> linesOf(const std::string& file) {
  std::istringstream in(hostText(file));
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line + '\n');
  return lines;
}

std::string joined(std::span<const std::string> lines) {
  std::string text;
  for (const std::string& line : lines) text += line;
  return text;
}

std::string deviceOf(const std::string& example) {
  return std::string(paths::examples) + '/' + example + "/01-native.json";
}
std::string changesOf(const std::string& example) {
  return std::string(paths::examples) + '/' + example + "/02-change.jsonl";
}

class Restore : public testing::Test {
 protected:
  HostFolder folder_;
  std::string saved_ = folder_.path("saved.json");
  std::string native_ = folder_.path("native.json");
};

class RestoredExample : public Restore, public testing::WithParamInterface<const char*> {
 protected:
  // What is printed when the first lines are applied and the state is left behind in all forms.
  HostRun leave(std::span<const std::string> first) {
    const HostRun run =
        translate({deviceOf(GetParam()), "--changes", folder_.file("first", joined(first)),
                   "--format", "model", "--native-out", native_, "--save", saved_});
    folder_.file("model.json", run.out);
    return run;
  }
  Words others(std::span<const std::string> rest) {
    return {"--changes", folder_.file("rest", joined(rest)), "--each", "--format", "model"};
  }
};

// At each line of a day: with a restored state as with its parts.
TEST_P(RestoredExample, GoesOnAsARestartWithBothPartsDoes) {
  const std::vector<std::string> lines = linesOf(changesOf(GetParam()));
  for (std::size_t size = 0; size <= lines.size(); ++size) {
    const std::span all(lines);
    leave(all.first(size));
    Words fromParts = others(all.subspan(size));
    Words fromWhole = fromParts;
    fromParts.insert(fromParts.end(), {native_, "--initial", folder_.path("model.json")});
    fromWhole.insert(fromWhole.end(), {"--restore", saved_});
    const HostRun parts = translate(fromParts);
    const HostRun whole = translate(fromWhole);
    EXPECT_NE(parts.exit, 2) << parts.err;
    EXPECT_EQ(whole.exit, parts.exit) << size;
    EXPECT_EQ(whole.out, parts.out) << size;
    EXPECT_EQ(whole.err, parts.err) << size;
  }
}

TEST_P(RestoredExample, LeavesTheDeviceThatTheDayComesTo) {
  leave(linesOf(changesOf(GetParam())));
  const host::Native left;
  host::readNative(native_, left);
  const std::string example = deviceOf(GetParam());
  const host::Native after;
  host::readNative(std::filesystem::path(example).replace_filename("03-native-after.json"), after);
  EXPECT_EQ(host::nativePlace(left)->value(), host::nativePlace(after)->value());
}

INSTANTIATE_TEST_SUITE_P(Examples, RestoredExample,
                         testing::Values("one-classifier", "edge-router"), [](const auto& example) {
                           std::string name = example.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

TEST_F(Restore, MaySaveInThePlaceOfWhatItRestored) {
  const std::string device = folder_.file("device.json", R"({"comments": {"a": "b"}})");
  EXPECT_EQ(translate({device, "--save", saved_}).exit, 0);
  const std::string first = hostText(saved_);
  EXPECT_EQ(first.find("{\n  \"qosoc-save\": 1,\n  \"native\": {\n    \"comments\": {\n"), 0u);
  const std::string change =
      folder_.file("change", R"([{"op": "replace", "path": "/comments/a", "value": "c"}])");
  EXPECT_EQ(translate({"--restore", saved_, "--changes", change, "--save", saved_}).exit, 0);
  EXPECT_NE(hostText(saved_).find("\"a\": \"c\""), std::string::npos);
  EXPECT_EQ(translate({"--restore", saved_, "--native-out", native_}).exit, 0);
  EXPECT_EQ(hostText(native_), "{\n  \"comments\": {\n    \"a\": \"c\"\n  }\n}\n");
}

TEST_F(Restore, KeepsTheStateOfADeviceWhoseRootRaised) {
  const std::string device = folder_.file("device.json", R"({"forwarding-groups": {"f": 17}})");
  const HostRun run = translate({device, "--save", saved_});
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(run.err.find("root forwarding-group: range: "), 0u);
  const HostRun again = translate({"--restore", saved_});
  EXPECT_EQ(again.exit, 1);
  EXPECT_EQ(again.err, run.err);
  EXPECT_EQ(again.out, run.out);
}

TEST_F(Restore, StandsInThePlaceOfItsParts) {
  const std::string see = " (see qosoc translate --help)\n";
  const HostRun native = translate({"--restore", "none.json", "native.json"});
  EXPECT_EQ(native.exit, 2);
  EXPECT_EQ(native.err,
            "qosoc: --restore takes the place of NATIVE.json: what is "
            "\"native.json\"?" +
                see);
  const HostRun model = translate({"--restore", "none.json", "--initial", "model.json"});
  EXPECT_EQ(model.exit, 2);
  EXPECT_EQ(model.err, "qosoc: --restore takes the place of --initial: give one of them" + see);
}

TEST_F(Restore, HasOneFileForEachOutput) {
  const HostRun run =
      translate({"none.json", "--native-out", saved_, "--save", folder_.path("./saved.json")});
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(run.err,
            "qosoc: --native-out and --save name the same file (see qosoc translate --help)\n");
}

TEST_F(Restore, IsWhatASavedStateIsFor) {
  const std::string file = folder_.file("saved.json", R"({"qosoc-save": 1})");
  const HostRun run = hostRun({paths::qosoc, "translate", file});
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(run.err, "qosoc: " + file + ":1:2: /qosoc-save: a saved state is given to --restore\n");
}

TEST_F(Restore, RefusesWhatIsNoSavedState) {
  const auto refused = [&](std::string_view text) {
    const HostRun run = translate({"--restore", folder_.file("saved.json", text)});
    EXPECT_EQ(run.exit, 2);
    EXPECT_EQ(run.out, "");
    return run.err;
  };
  const std::string at = "qosoc: " + saved_;
  EXPECT_EQ(refused("{\n  \"class-maps\": {}}"),
            at + ":2:3: /class-maps: unknown member: this is no saved state\n");
  EXPECT_EQ(refused(R"({"qosoc-save": 2})"),
            at + ":1:16: /qosoc-save: expected version 1 of a saved state, not 2\n");
  EXPECT_EQ(refused("{\"qosoc-save\": 1,\n\"native\": {"),
            at + ":2:12: /native: not JSON: Missing a name for object member.\n");
  EXPECT_EQ(refused("{\"qosoc-save\": 1,\n\"native\": {\"queue-names\": {\"q\": true}}}"),
            at + ":2:33: /native/queue-names/q: expected a whole number from 0 to 255, not true\n");
  const HostRun none = translate({"--restore", folder_.path("none.json")});
  EXPECT_EQ(none.exit, 2);
  EXPECT_EQ(none.err, "qosoc: " + folder_.path("none.json") +
                          ": cannot be read: No such file or directory\n");
}

}  // namespace
}  // namespace restoreTest
