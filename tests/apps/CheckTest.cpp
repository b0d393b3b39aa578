// `qosoc check`: what it prints, and where. What it finds is in tests/host/check.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "Qosoc.h"
#include "host/check/Kinds.h"

namespace checkTest {
namespace {

using support::HostFolder;
using support::hostRun;
using support::HostRun;
using support::qosoc;
using testing::ElementsAre;

// Two findings, in the second line and in the third.
constexpr const char* router = R"({"queue-names": {"EF": 5},
 "forwarding-groups": {"voice": 5},
 "interfaces": {"Ethernet1": {"tx-queues": {"uc-5": {"shape": 9000}}}}}
)";
constexpr const char* noQueue =
    "/forwarding-groups/voice: its traffic class 5 has no tx queue, so it gets no output queue; "
    "add the traffic class to tc-to-tx-queue\n";
constexpr const char* shape =
    "/interfaces/Ethernet1/tx-queues/uc-5/shape: a shaping rate is not translated, and no "
    "scheduler "
    "policy speaks for the queue; remove it, or name the policy in /comments/if-Et1-uc-txq-5\n";

class Check : public testing::Test {
 protected:
  HostRun changed(const std::string& lines, const std::vector<std::string>& more = {}) {
    changes_ = folder_.file("changes.jsonl", lines);
    std::vector<std::string> words{"check", file_, "--changes", changes_};
    words.insert(words.end(), more.begin(), more.end());
    return qosoc(words);
  }
  // The lines behind those of the document.
  std::string behind(const HostRun& run) const {
    const std::string document = qosoc({"check", file_}).out;
    EXPECT_TRUE(run.out.starts_with(document));
    return run.out.substr(document.size());
  }

  const HostFolder folder_;
  const std::string file_ = folder_.file("router.json", router);
  std::string changes_;
};

TEST_F(Check, PrintsWhereEachFindingStandsInTheOrderOfTheText) {
  const HostRun run = qosoc({"check", file_});
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, file_ + ":2:33: warning: " + noQueue + file_ + ":3:63: warning: " + shape);
}

TEST_F(Check, PrintsAnObjectOfJsonForEachFinding) {
  const HostRun run = qosoc({"check", file_, "--json"});
  EXPECT_EQ(run.exit, 1);
  const std::string first = run.out.substr(0, run.out.find('\n'));
  EXPECT_EQ(
      first,
      R"({"file":")" + file_ +
          R"(","line":2,"column":33,"severity":"warning","pointer":"/forwarding-groups/voice",)"
          R"("kind":"missing","text":"its traffic class 5 has no tx queue, so it gets no output )"
          R"(queue; add the traffic class to tc-to-tx-queue"})");
}

TEST_F(Check, PrintsFaultsAsErrorsAndNothingElse) {
  const std::string bad = folder_.file("bad.json", R"({"queue-names": {"E/F": 256, "AF": -1},
 "forwarding-groups": {"voice": 5}})");
  const std::string legal = ": expected a whole number from 0 to 255, not ";
  const HostRun run = qosoc({"check", bad});
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(run.out, bad + ":1:25: error: /queue-names/E~1F" + legal + "256\n" + bad +
                         ":1:36: error: /queue-names/AF" + legal + "-1\n");
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(qosoc({"check", bad, "--json"}).out,
            R"({"file":")" + bad +
                R"(","line":1,"column":25,"severity":"error","pointer":"/queue-names/E~1F",)"
                R"("kind":"form","text":"expected a whole number from 0 to 255, not 256"})"
                "\n"
                R"({"file":")" +
                bad +
                R"(","line":1,"column":36,"severity":"error","pointer":"/queue-names/AF",)"
                R"("kind":"form","text":"expected a whole number from 0 to 255, not -1"})"
                "\n");
}

TEST_F(Check, SaysThatTheRestIsNotJudgedBehindTwentyFaults) {
  std::string text = "{";
  for (int i = 0; i < 25; ++i) text += (i > 0 ? "," : "") + ("\"x" + std::to_string(i)) + "\": 1";
  const std::string bad = folder_.file("bad.json", text + "}");
  const HostRun run = qosoc({"check", bad});
  EXPECT_EQ(std::ranges::count(run.out, '\n'), 20);
  EXPECT_EQ(run.err, "qosoc: " + bad + ": what stands behind these 20 faults is not judged\n");
}

TEST_F(Check, ReadsWhatCanBeReadOnceOnly) {
  const HostRun piped = hostRun({"bash", "-c", R"("$0" check <(cat "$1"))", paths::qosoc, file_});
  EXPECT_EQ(piped.exit, 1);
  EXPECT_THAT(piped.out, testing::HasSubstr(std::string(":2:33: warning: ") + noQueue));
  const HostRun input = qosoc({"check", "-"}, {router});
  EXPECT_EQ(input.out, "standard input:2:33: warning: " + std::string(noQueue) +
                           "standard input:3:63: warning: " + shape);
}

TEST_F(Check, SaysWhatAChangeLineBringsAndTakesAway) {
  const HostRun run = changed(
      R"([{"op": "add", "path": "/tc-to-tx-queue/5", "value": 5}]

[{"op": "replace", "path": "/tc-to-tx-queue/5", "value": 4}, {"op": "remove", "path": "/interfaces/Ethernet1/tx-queues/uc-5/shape"}]
[{"op": "add", "path": "/comments/port-1", "value": "uplink"}]
)");
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(behind(run),
            changes_ + ":1:1: resolved: " + noQueue + changes_ + ":3:1: resolved: " + shape +
                changes_ +
                ":3:1: warning: /forwarding-groups/voice: the tx queue 4 of its traffic class 5 "
                "has no name, so it gets no output queue; add one to queue-names\n");
}

TEST_F(Check, JudgesEachChangeLineAsThoseBeforeItLeaveTheDocument) {
  const HostRun run = changed(
      R"([{"op": "add", "path": "/queue-names/AF", "value": 256}]
[{"op": "add", "path": "/queue-names/AF", "value": 4}]
[{"op": "test", "path": "/queue-names/AF", "value": 4}]
)");
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(behind(run), changes_ +
                             ":1:1: error: /queue-names/AF: expected a whole number from 0 to 255, "
                             "not 256\n");
}

// A running host reads each comment that changes, be it there at the end of the line or not.
TEST_F(Check, NamesAChangeLineThatEndsTheProgram) {
  const std::string bad = R"("value": "{\"MetaData-OpenConfig\": {\"scheduler-policy\": 5}}"})";
  const std::string end =
      ": at /MetaData-OpenConfig/scheduler-policy of this comment: expected an object, and any "
      "other value ends the program that translates it; write an object\n";
  const HostRun run = changed(R"([{"op": "add", "path": "/comments/note", )" + bad + "]\n" +
                              R"([{"op": "add", "path": "/comments/if-Et1-uc-txq-5", )" + bad +
                              R"(, {"op": "remove", "path": "/comments/if-Et1-uc-txq-5"}])" + "\n");
  EXPECT_EQ(run.exit, 1);
  EXPECT_THAT(behind(run), testing::HasSubstr(changes_ + ":1:1: warning: /comments/note" + end));
  EXPECT_THAT(behind(run),
              testing::HasSubstr(changes_ + ":2:1: warning: /comments/if-Et1-uc-txq-5" + end));
}

TEST_F(Check, PrintsChangeLinesAsJsonToo) {
  const HostRun run =
      changed("[{\"op\": \"remove\", \"path\": \"/queue-names/EF\"}]\n[7]\n", {"--json"});
  EXPECT_EQ(run.exit, 2);
  EXPECT_THAT(run.out, testing::HasSubstr(R"("line":2,"column":1,"severity":"error","pointer":"",)"
                                          R"("kind":"refused","text":"not an object"})"));
}

TEST_F(Check, TakesOneInputFromStandardInput) {
  const HostRun run = qosoc({"check", "-", "--changes", "-"}, {router});
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(run.err,
            "qosoc: standard input is NATIVE.json or --changes, not both (see qosoc check "
            "--help)\n");
}

TEST_F(Check, SaysNothingOfACleanDocument) {
  const HostRun run = qosoc({"check", folder_.file("clean.json", R"({"queue-names": {"EF": 5}})")});
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(run.out + run.err, "");
}

// The page has a row for each kind, with its meaning.
TEST(CheckPage, HasAllKinds) {
  std::string expected;
  for (const auto& [word, meaning] : host::findingKinds()) {
    expected += "| `" + std::string(word) + "` | " + std::string(meaning) + " |\n";
  }
  const std::string page = support::hostText(std::string(paths::examples) + "/../docs/checking.md");
  EXPECT_NE(page.find(expected + '\n'), std::string::npos) << expected;
}

}  // namespace
}  // namespace checkTest
