// Documents that are refused: a line for each fault, on standard error or, by `check`, on standard
// output; exit code 2, nothing translated.
#include <gtest/gtest.h>

#include <algorithm>

#include "Paths.h"
#include "tests/support/HostProgram.h"

namespace badInputTest {
namespace {

using support::HostFolder;
using support::HostRun;
using support::hostRun;

// The sanitizers make reading ten times slower and memory several times larger.
#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t large = 10'000'000;
#else
constexpr std::size_t large = 100'000'000;
#endif

const std::string legal =
    " (legal: class-maps, access-lists, policy-maps, service-policies, interfaces, qos-profiles, "
    "comments, tc-to-tx-queue, forwarding-groups, queue-names, pfc-watchdog)";

class BadInput : public testing::Test {
 protected:
  std::string file(std::string_view text) { return folder_.file("bad.json", text); }
  // Both commands refuse the file at `path` with the same words, ":LINE:COLUMN: POINTER: REASON".
  void expectRefused(const std::string& path, const std::string& message) {
    const HostRun run = hostRun({paths::qosoc, "translate", path});
    EXPECT_EQ(run.exit, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "qosoc: " + path + message + "\n");
    const HostRun checked = hostRun({paths::qosoc, "check", path});
    EXPECT_EQ(checked.exit, 2);
    EXPECT_EQ(checked.out, path + asFinding(message) + "\n");
    EXPECT_EQ(checked.err, "");
  }
  static std::string asFinding(std::string message) {
    return message.insert(message.find(": ") + 1, " error:");
  }
  void expectUnreadable(const std::string& path, const std::string& message) {
    for (const char* command : {"check", "translate"}) {
      const HostRun run = hostRun({paths::qosoc, command, path});
      EXPECT_EQ(run.exit, 2) << command;
      EXPECT_EQ(run.out, "") << command;
      EXPECT_EQ(run.err, "qosoc: " + message + "\n") << command;
    }
  }
  void expectTextRefused(std::string_view text, const std::string& message) {
    expectRefused(file(text), message);
  }

  HostFolder folder_;
};

TEST_F(BadInput, IsAFileThatIsNotThere) {
  const std::string path = folder_.path("none.json");
  expectUnreadable(path, path + ": cannot be read: No such file or directory");
}

TEST_F(BadInput, IsAFileWithoutAName) {
  expectUnreadable("", "\"\": cannot be read: No such file or directory");
}

TEST_F(BadInput, IsAnotherDocument) {
  const std::string openConfig =
      R"({"openconfig-qos:qos": {}, "openconfig-interfaces:interfaces": {}})";
  expectTextRefused(openConfig,
                    ":1:2: /openconfig-qos:qos: this is an OpenConfig document, which diff reads");
  expectTextRefused(R"({"qosoc-save": 1, "native": {}, "model": {}})",
                    ":1:2: /qosoc-save: a saved state is given to --restore");
  const std::string other = folder_.file("other.json", openConfig);
  const HostRun run =
      hostRun({paths::qosoc, "translate", folder_.file("n.json", "{}"), "--initial", other});
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(run.err, "qosoc: " + other +
                         ":1:2: /openconfig-qos:qos: this is an OpenConfig document: "
                         "translate --format model prints what --initial reads\n");
}

TEST_F(BadInput, IsASavedStateToBeCompared) {
  const std::string state = file(R"({"native": {}, "qosoc-save": 1, "model": {}})");
  const HostRun run = hostRun({paths::qosoc, "diff", state, folder_.file("n.json", "{}")});
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(run.err,
            "qosoc: " + state + ":1:16: /qosoc-save: a saved state is given to --restore\n");
}

TEST_F(BadInput, IsADirectory) {
  expectUnreadable(folder_.path("."), folder_.path(".") + ": cannot be read: Is a directory");
}

TEST_F(BadInput, IsAnEmptyFile) {
  expectTextRefused("", ":1:1: (document): not JSON: The document is empty.");
}

TEST_F(BadInput, IsNotJson) {
  expectTextRefused("{\n  \"class-maps\": []\n}",
                    ":2:17: /class-maps: expected an object, not an array");
  expectTextRefused("{\n  \"class-maps\": {\n",
                    ":3:1: /class-maps: not JSON: Missing a name for object member.");
}

TEST_F(BadInput, IsNotJsonFarBehindTheFirstLine) {
  std::string text = "{\n\"comments\": {\n";
  for (int i = 0; i < 20'000; ++i) text += "\"key " + std::to_string(i) + "\": \"\",\n";
  expectTextRefused(text + "  \"last\" 7}}",
                    ":20003:10: /comments/last: not JSON: Missing a colon after a name of object "
                    "member.");
  expectTextRefused("{\"comments\": {\"a\": \"" + std::string(200'000, 'x') + "\"}} ]",
                    ":1:200025: (document): not JSON: The document root must not be followed by "
                    "other values.");
}

TEST_F(BadInput, HasTextBehindTheDocument) {
  expectTextRefused("{}\n}\n",
                    ":2:1: (document): not JSON: The document root must not be followed by other "
                    "values.");
}

TEST_F(BadInput, IsNotUnicode) {
  expectTextRefused(
      "{\"class-maps\": {\"qos\": {\"V\": {\"match\": [\"\xc3(\"]}}}}",
      ":1:41: /class-maps/qos/V/match/0: this string is not valid Unicode: \"\\xc3(\"");
  expectTextRefused("{\"class-maps\": {\"qos\": {\"\xc3(\": {}}}}",
                    ":1:25: /class-maps/qos: this key is not valid Unicode: \"\\xc3(\"");
}

TEST_F(BadInput, HoldsAWrongValue) {
  expectTextRefused(R"({"class-maps": {"qos": {"V": {"match": [256]}}}})",
                    ":1:41: /class-maps/qos/V/match/0: expected a match option: ip-access-group, "
                    "ipv6-access-group or a number from 0 to 255, not 256");
  expectTextRefused(R"({"class-maps": {"1": {}, "qos": {}}})",
                    ":1:26: /class-maps/qos: the same key twice");
  expectTextRefused(R"({"queue-names": {"q": 256}})",
                    ":1:23: /queue-names/q: expected a whole number from 0 to 255, not 256");
  expectTextRefused(R"({"queue-name": {}})",
                    ":1:2: /queue-name: unknown member: did you mean queue-names?" + legal);
}

TEST_F(BadInput, CannotWriteToTheTerminal) {
  expectTextRefused("{\"class-maps\": {\"qos\": {\"\\u001b[2J\\n\": 1}}}",
                    ":1:40: /class-maps/qos/\\u001b[2J\\u000a: expected an object, not 1");
}

TEST_F(BadInput, HasALongName) {
  const std::string name(large, 'a');
  const std::string path = file("{\"" + name + "\": 1}");
  const HostRun run = hostRun({paths::qosoc, "check", path});
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(run.out, path + ":1:2: error: /" + name.substr(0, 60) + "...(" + std::to_string(large) +
                         " bytes): unknown member" + legal + "\n");
}

TEST_F(BadInput, NestsDeep) {
  constexpr std::size_t depth = large / 10;
  const std::string deep = std::string(depth, '[') + std::string(depth, ']');
  expectTextRefused(deep, ":1:1: (document): expected an object, not an array");
  expectTextRefused(R"({"class-maps": {"qos": {"V": {"match": )" + deep + "}}}}",
                    ":1:41: /class-maps/qos/V/match/0: expected a match option: ip-access-group, "
                    "ipv6-access-group or a number from 0 to 255, not an array");
}

TEST_F(BadInput, HasAllItsFaultsListed) {
  const std::string path = file(R"({
  "queue-names": {"EF": 3, "AF": 300},
  "interface": {"Ethernet1": {}},
  "interfaces": {
    "Ethernet1": {"tx-queue": {"uc-3": {}}},
    "Ethernet2": {"tx-queues": {"uc3": {}, "uc-4": {"bandwidth": "40"}}}
  }
})");
  const HostRun run = hostRun({paths::qosoc, "translate", path});
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(run.out, "");
  const std::string begin = "qosoc: " + path;
  EXPECT_EQ(
      run.err,
      begin + ":2:34: /queue-names/AF: expected a whole number from 0 to 255, not 300\n" + begin +
          ":3:3: /interface: unknown member: did you mean interfaces?" + legal + "\n" + begin +
          ":5:19: /interfaces/Ethernet1/tx-queue: unknown member: did you mean tx-queues? (legal: "
          "tx-queues, pfc)\n" +
          begin +
          ":6:33: /interfaces/Ethernet2/tx-queues/uc3: this key is not a tx queue: uc-N or "
          "mc-N, N from 0 to 255\n" +
          begin +
          ":6:66: /interfaces/Ethernet2/tx-queues/uc-4/bandwidth: expected a whole number "
          "from 0 to 255, not \"40\"\n");
}

TEST_F(BadInput, IsOfAnotherEncoding) {
  expectTextRefused(
      "\xef\xbb\xbf{}",
      ":1:1: (document): not JSON: Invalid value. (it begins with a byte-order mark: leave "
      "that out)");
  expectTextRefused(
      std::string_view("{\0}\0", 4),
      ":1:2: (document): not JSON: a NUL byte (it looks like UTF-16: write it as UTF-8)");
}

TEST_F(BadInput, IsReportedForAnInitialModelToo) {
  const std::string native = folder_.file("native.json", "{}");
  const std::string model = file(R"({"queues": {"q": {"config": {"bandwidth": 101}}}})");
  const HostRun run = hostRun({paths::qosoc, "translate", native, "--initial", model});
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "qosoc: " + model +
                         ":1:43: /queues/q/config/bandwidth: expected a whole number from 0 "
                         "to 100 or null, not 101\n");
}

TEST_F(BadInput, IsAChangeFileThatCannotBeRead) {
  const std::string native = folder_.file("native.json", "{}");
  const std::string none = folder_.path("none.jsonl");
  const HostRun run = hostRun({paths::qosoc, "translate", native, "--each", "--changes", none});
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "qosoc: " + none + ": cannot be read: No such file or directory\n");
  const std::string folder = folder_.path(".");
  const HostRun other = hostRun({paths::qosoc, "translate", native, "--each", "--changes", folder});
  EXPECT_EQ(other.exit, 2);
  EXPECT_EQ(other.out, "");
  EXPECT_EQ(other.err, "qosoc: " + folder + ": cannot be read: Is a directory\n");
}

TEST_F(BadInput, NestsDeepInAChangeLine) {
  const std::string native = folder_.file("native.json", "{}");
  std::string lines(large / 10, '[');
  lines.append("\n[]\n");
  const HostRun run = hostRun({paths::qosoc, "translate", native, "--changes", "-"}, {lines});
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(run.err, "line 1: refused: (line): nested too deep\n");
}

TEST(LargeInput, IsReadTheSameWhereverItsBlocksEnd) {
  constexpr std::size_t block = std::size_t{64} * 1024;
  const HostFolder folder;
  const std::string document =
      R"({"class-maps": {"qos": {"__yang_[a\u20ac\"\\€]_[]": {"match": [ 2 ]}}}})";
  const auto translated = [&](std::size_t spaces) {
    const std::string path = folder.file("blocks.json", std::string(spaces, ' ') + document);
    return hostRun({paths::qosoc, "translate", path}).out;
  };
  const std::string expected = translated(0);
  EXPECT_NE(expected.find(R"("a€\"\\€")"), std::string::npos);
  for (std::size_t at = 1; at < document.size(); ++at) {
    EXPECT_EQ(translated(block - at), expected) << at;
  }
}

TEST(LargeInput, OfOneLongNameIsTranslated) {
  const HostFolder folder;
  const std::string name(large, 'a');
  const std::string path =
      folder.file("large.json", R"({"class-maps": {"qos": {"__yang_[)" + name +
                                    R"(]_[]": {"match": ["ip-access-group"]}}}})");
  const HostRun run = hostRun({paths::qosoc, "translate", path, "--each"});
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_GT(run.out.size(), 2 * large);
  EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 1);
}

}  // namespace
}  // namespace badInputTest
