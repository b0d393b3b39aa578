// `qosoc diff`: documents of both kinds, options, messages and exit codes.
#include <gtest/gtest.h>

#include <filesystem>

#include "Paths.h"
#include "tests/support/HostProgram.h"

namespace diffTest {
namespace {

using support::HostFolder;
using support::HostRun;
using support::hostRun;

class Diff : public testing::Test {
 protected:
  HostRun diff(std::vector<std::string> words, const std::string& in = "") {
    words.insert(words.begin(), {paths::qosoc, "diff"});
    return hostRun(words, {in});
  }
  std::string translated(const std::string& native, std::vector<std::string> words = {}) {
    words.insert(words.begin(), {paths::qosoc, "translate", native});
    return folder_.file("translated.json", hostRun(words).out);
  }
  void expectRefused(const HostRun& run, const std::string& message) {
    EXPECT_EQ(run.exit, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, message);
  }

  HostFolder folder_;
  std::string before_ = folder_.file("before.json", R"({"queue-names": {"EF": 3, "AF": 2}})");
  std::string after_ = folder_.file("after.json", R"({"queue-names": {"EF": 3, "BE": 1}})");
};

TEST_F(Diff, PrintsTheLeavesThatDifferSortedByPath) {
  const HostRun run = diff({before_, after_});
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out,
            "- /qos/queues/queue[name=AF]/config/name \"AF\"\n"
            "- /qos/queues/queue[name=AF]/name \"AF\"\n"
            "+ /qos/queues/queue[name=BE]/config/name \"BE\"\n"
            "+ /qos/queues/queue[name=BE]/name \"BE\"\n");
}

TEST_F(Diff, PrintsOneLineOfJsonWhenAsked) {
  const HostRun run = diff({"--json", before_, after_});
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(run.out, R"({"delete":["/qos/queues/queue[name=AF]"],"update":{)"
                     R"("/qos/queues/queue[name=BE]/config/name":"BE",)"
                     R"("/qos/queues/queue[name=BE]/name":"BE"}})"
                     "\n");
  EXPECT_EQ(diff({"--json", after_, after_}).out, "{\"delete\":[],\"update\":{}}\n");
}

TEST_F(Diff, SaysNothingOfDocumentsWithTheSameLeaves) {
  const HostRun run = diff({before_, translated(before_)});
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(run.out + run.err, "");
}

TEST_F(Diff, ReadsOneDocumentFromStandardInput) {
  EXPECT_EQ(diff({"-", before_}, support::hostText(before_)).exit, 0);
  EXPECT_EQ(diff({before_, "-"}, support::hostText(after_)).exit, 1);
  EXPECT_EQ(diff({before_, "-"}, support::hostText(translated(before_))).exit, 0);
}

TEST_F(Diff, FindsAnExampleEqualToItsDocumentInEachView) {
  const std::string native = std::string(paths::examples) + "/edge-router/01-native.json";
  EXPECT_EQ(diff({native, translated(native)}).exit, 0);
  for (const char* option : {"--no-augments", "--state", "--interface-ref"}) {
    const std::string document = translated(native, {option});
    const HostRun same = diff({native, document, option});
    EXPECT_EQ(same.exit, 0) << option << same.out << same.err;
  }
  // What a document repeats for other consumers is no difference.
  const HostRun run = diff({native, translated(native, {"--state", "--interface-ref"})});
  EXPECT_EQ(run.exit, 0) << run.out << run.err;
  EXPECT_EQ(diff({native, translated(native), "--state"}).exit, 1);
}

TEST_F(Diff, FindsTheDifferenceOfTheExamplesBeforeAndAfterTheirChanges) {
  const std::string folder = std::string(paths::examples) + "/edge-router/";
  const HostRun run = diff({folder + "01-native.json", folder + "02-openconfig.json"});
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(run.out, diff({folder + "01-openconfig.json", folder + "02-openconfig.json"}).out);
}

TEST_F(Diff, ComparesAPartOfTheTree) {
  EXPECT_EQ(diff({before_, after_, "--only", "/qos/queues/queue[name=EF]"}).exit, 0);
  EXPECT_EQ(diff({before_, after_, "--only", "/qos/queues/queue[name=AF]/name"}).out,
            "- /qos/queues/queue[name=AF]/name \"AF\"\n");
}

TEST_F(Diff, OfAPartDeletesNothingAboveIt) {
  const std::string term =
      R"({"class-maps":{"qos":{"__yang_[edge-in]_[]":{},"__yang_[edge-in]_[voice]":{"match":["ip-access-group"]}}}})";
  const std::string without = R"({"class-maps":{"qos":{"__yang_[edge-in]_[]":{}}}})";
  const std::string terms = "/qos/classifiers/classifier[name=edge-in]/terms";
  // A list is no node: its entry is.
  const std::pair<std::string, std::string> tops[] = {
      {terms, terms},
      {terms + "/term", terms + "/term[id=voice]"},
      {terms + "/term[id=voice]/config", terms + "/term[id=voice]/config"}};
  for (const auto& [only, top] : tops) {
    const HostRun run = diff(
        {"--json", "--only", only, folder_.file("a.json", term), folder_.file("b.json", without)});
    EXPECT_EQ(run.out, "{\"delete\":[\"" + top + "\"],\"update\":{}}\n");
    EXPECT_EQ(run.exit, 1);
  }
}

TEST_F(Diff, ShowsAStateThatIsNotItsConfig) {
  const std::string document = folder_.file("state.json", R"({"openconfig-qos:qos":{"queues":
      {"queue":[{"name":"AF","config":{"name":"AF"},"state":{"name":"AF"}},
                {"name":"EF","config":{"name":"EF"},"state":{"name":"FE"}}]}}})");
  const HostRun run = diff({before_, document});
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(run.out, "+ /qos/queues/queue[name=EF]/state/name \"FE\"\n");
}

TEST_F(Diff, NamesTheFaultsOfBothDocuments) {
  const std::string bad =
      folder_.file("bad.json", "{\"openconfig-qos:qos\":{\n\"x\":1,\n \"y\":{}}}");
  const std::string worse = folder_.file("worse.json", R"({"queue-names": 7})");
  const std::string legal =
      " (legal: classifiers, forwarding-groups, interfaces, qosoc-augments:pfc, "
      "queue-management-profiles, queues, scheduler-policies)";
  expectRefused(diff({bad, worse}), "qosoc: " + bad + ":2:1: /qos/x: unknown member" + legal +
                                        "\nqosoc: " + bad + ":3:2: /qos/y: unknown member" + legal +
                                        "\nqosoc: " + worse +
                                        ":1:17: /queue-names: expected an object, not 7\n");
}

TEST_F(Diff, RefusesACommentThatEndsTheProcess) {
  const std::string bad = folder_.file("comment.json", R"({
      "interfaces": {"Ethernet1": {"tx-queues": {"uc-3": {}}}},
      "comments": {"if-Et1-uc-txq-3": "{\"MetaData-OpenConfig\":{\"scheduler-policy\":1}}"}})");
  expectRefused(diff({before_, bad}),
                "qosoc: " + bad +
                    ": /comments/if-Et1-uc-txq-3: at /MetaData-OpenConfig/scheduler-policy of this "
                    "comment: expected an object; it ends the program that translates it\n");
}

TEST_F(Diff, RefusesADocumentThatCannotBeTranslatedWhole) {
  const std::string bad = folder_.file("range.json", R"({"forwarding-groups": {"voice": 17}})");
  const HostRun run = diff({bad, bad});
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_NE(run.err.find("qosoc: " + bad + ": root forwarding-group: range: "), std::string::npos);
}

TEST_F(Diff, WarnsOfWhatOpenConfigCannotHold) {
  const std::string bell = folder_.file("bell.json", R"({"queue-names": {"\u0007": 3}})");
  const HostRun run = diff({bell, bell});
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(run.err.find("warning: " + bell + ": /openconfig-qos:qos/queues/queue["), 0u);
}

TEST_F(Diff, NamesAFileThatCannotBeRead) {
  const HostRun run = diff({before_, folder_.path("none.json")});
  expectRefused(
      run, "qosoc: " + folder_.path("none.json") + ": cannot be read: No such file or directory\n");
}

TEST_F(Diff, ReportsAnOutputThatCannotBeWritten) {
  if (!std::filesystem::exists("/dev/full")) return;
  support::HostStreams streams;
  streams.outTo = "/dev/full";
  const HostRun run = hostRun({paths::qosoc, "diff", before_, after_}, streams);
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(run.err, "qosoc: standard output: No space left on device\n");
}

}  // namespace
}  // namespace diffTest
