// What the program writes to a terminal and to nothing else: colours, and the line of progress.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "Paths.h"
#include "Qosoc.h"
#include "tests/support/HostProgram.h"
#include "tests/support/HostTerminal.h"

namespace terminalTest {
namespace {

using support::HostFolder;
using support::hostRun;
using support::hostScreen;
using support::HostTerminal;
using support::qosocCommand;

// By a shell, in which "$@" is the program with those words.
std::vector<std::string> byShell(const std::string& script, const std::vector<std::string>& words) {
  std::vector<std::string> command{"bash", "-c", script, "bash", paths::qosoc};
  command.insert(command.end(), words.begin(), words.end());
  return command;
}

class Terminal : public testing::Test {
 protected:
  HostFolder folder_;
  std::string before_ =
      folder_.file("before.json", R"({"queue-names": {"EF": 3}, "forwarding-groups": {"voice": 5},
                                      "tc-to-tx-queue": {"5": 3}})");
  std::string after_ =
      folder_.file("after.json", R"({"queue-names": {"AF": 2}, "forwarding-groups": {"voice": 5},
                                     "tc-to-tx-queue": {"5": 2}})");
};

TEST_F(Terminal, HasErrorsWithARedHead) {
  const std::string none = folder_.path("none.json");
  EXPECT_EQ(hostScreen(qosocCommand({"check", none})),
            "\033[1;31mqosoc:\033[0m " + none + ": cannot be read: No such file or directory\n");
  EXPECT_EQ(hostScreen(qosocCommand({"chek"})),
            "\033[1;31mqosoc:\033[0m there is no command \"chek\": "
            "did you mean check? (legal: translate, check, diff, serve, schema, help, completion, "
            "manual, "
            "--help, -h, --version, -V) (see qosoc --help)\n");
}

TEST_F(Terminal, HasReportsOfChangeLinesWithARedHead) {
  const std::string changes =
      folder_.file("changes.jsonl", R"([{"op": "remove", "path": "/comments/none"}])");
  EXPECT_EQ(
      hostScreen(byShell(R"("$@" > /dev/null)", {"translate", before_, "--changes", changes})),
      "\033[1;31mline 1:\033[0m refused: /comments/none: nothing is there\n");
}

TEST_F(Terminal, HasWarningsWithAYellowHead) {
  const std::string bell = folder_.file("bell.json", R"({"queue-names": {"\u0007": 3}})");
  const std::string screen = hostScreen(byShell(R"("$@" > /dev/null)", {"translate", bell}));
  EXPECT_EQ(screen.find("\033[33mwarning:\033[0m /openconfig-qos:qos/"), 0u) << screen;
}

TEST_F(Terminal, HasADifferenceInColours) {
  const std::string group = "/qos/forwarding-groups/forwarding-group[name=voice]/config/";
  EXPECT_EQ(hostScreen(qosocCommand({"diff", before_, after_})),
            "\033[33m~ " + group +
                "output-queue \"EF\" -> \"AF\"\033[0m\n"
                "\033[32m+ /qos/queues/queue[name=AF]/config/name \"AF\"\033[0m\n"
                "\033[32m+ /qos/queues/queue[name=AF]/name \"AF\"\033[0m\n"
                "\033[31m- /qos/queues/queue[name=EF]/config/name \"EF\"\033[0m\n"
                "\033[31m- /qos/queues/queue[name=EF]/name \"EF\"\033[0m\n");
}

TEST_F(Terminal, HasNoColoursInTheJsonOfADifference) {
  EXPECT_EQ(hostScreen(qosocCommand({"diff", before_, after_, "--json"})),
            hostRun(qosocCommand({"diff", before_, after_, "--json"})).out);
}

TEST_F(Terminal, LeavesAFileOfADifferenceWithoutColours) {
  const std::string out = folder_.path("out");
  EXPECT_EQ(hostScreen(qosocCommand({"diff", before_, after_, "-o", out})), "");
  EXPECT_EQ(support::hostText(out), hostRun(qosocCommand({"diff", before_, after_})).out);
}

TEST_F(Terminal, HasHelpWithBoldHeadings) {
  std::string expected = hostRun(qosocCommand({"diff", "--help"})).out;
  for (const std::string heading : {"usage:", "Options:", "Example:", "Exit code:"}) {
    expected.replace(expected.find(heading), heading.size(), "\033[1m" + heading + "\033[0m");
  }
  EXPECT_EQ(hostScreen(qosocCommand({"diff", "--help"})), expected);
  EXPECT_EQ(hostScreen(qosocCommand({"--help"})).find("\033[1musage:\033[0m qosoc COMMAND"), 0u);
}

TEST_F(Terminal, HasNoColoursWhereTheyAreNotWanted) {
  const std::string plain = hostRun(qosocCommand({"diff", before_, after_})).out;
  for (const char* setting : {"NO_COLOR=1", "TERM=dumb", "TERM="}) {
    EXPECT_EQ(hostScreen(qosocCommand({"diff", before_, after_}), {setting}), plain) << setting;
    EXPECT_EQ(hostScreen(qosocCommand({"chek"}), {setting}).find("qosoc: there"), 0u) << setting;
  }
}

TEST_F(Terminal, HasColoursThoughNoColorIsThereEmpty) {
  EXPECT_EQ(hostScreen(qosocCommand({"chek"}), {"NO_COLOR="}).find("\033[1;31mqosoc:"), 0u);
}

TEST_F(Terminal, DoesNotColourTheStreamThatIsAPipe) {
  const std::string plain = hostRun(qosocCommand({"diff", before_, after_})).out;
  EXPECT_EQ(hostScreen(byShell(R"("$@" | cat)", {"diff", before_, after_})), plain);
  EXPECT_EQ(hostScreen(byShell(R"("$@" 2>&1 | cat)", {"chek"})).find("qosoc: there"), 0u);
}

// A run of translate on a terminal, both of whose streams are there or in a pipe, over a stream of
// changes whose first line comes a second late.
class SlowStream : public Terminal {
 protected:
  // What is on the screen behind the answer to the start.
  std::string screenOf(const std::string& redirection,
                       const std::vector<std::string>& environment) {
    using namespace std::chrono_literals;
    const std::string pipe = folder_.path("pipe");
    EXPECT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    HostTerminal terminal(byShell(R"("$@" < ")" + pipe + "\" 2>&1" + redirection,
                                  {"translate", before_, "--changes", "-", "--feed"}),
                          environment);
    std::ofstream changes(pipe);
    EXPECT_TRUE(terminal.shows("}}\n"));
    const std::size_t begin = terminal.screen().size();
    std::this_thread::sleep_for(1300ms);
    changes << "[]" << std::endl;
    EXPECT_TRUE(terminal.shows("{\"line\":1,"));
    std::this_thread::sleep_for(300ms);
    changes << R"([{"op": "remove", "path": "/comments/none"}])" << std::endl;
    changes.close();
    EXPECT_EQ(terminal.end(), redirection.empty() ? 1 : 0);
    return terminal.screen().substr(begin);
  }

  const std::string first_ = R"({"line":1,"delete":[],"update":{}})"
                             "\n";
  const std::string second_ = R"({"line":2,"refused":true,"delete":[],"update":{}})"
                              "\n";
  const std::string refused_ = " refused: /comments/none: nothing is there\n";
};

TEST_F(SlowStream, IsCountedInALineThatIsErasedBeforeOthersArePrinted) {
  EXPECT_EQ(screenOf("", {}), first_ +
                                  "\r\033[Kchange lines: 1\r"
                                  "\r\033[K\033[1;31mline 2:\033[0m" +
                                  refused_ + second_ + "\r\033[Kchange lines: 2\r\r\033[K");
}

TEST_F(SlowStream, IsCountedWithoutColoursToo) {
  EXPECT_EQ(screenOf("", {"NO_COLOR=1"}),
            first_ + "\r\033[Kchange lines: 1\r\r\033[Kline 2:" + refused_ + second_ +
                "\r\033[Kchange lines: 2\r\r\033[K");
}

TEST_F(SlowStream, IsNotCountedInAPipeOrOnADumbTerminal) {
  const std::string plain = first_ + "line 2:" + refused_ + second_;
  EXPECT_EQ(screenOf(" | cat", {}), plain);
  std::filesystem::remove(folder_.path("pipe"));
  EXPECT_EQ(screenOf("", {"TERM=dumb"}), plain);
}

TEST_F(Terminal, SaysHowMuchOfASlowDocumentIsRead) {
  EXPECT_EQ(hostScreen(byShell(R"({ printf '{'; sleep 2; printf '}'; } | "$@" > /dev/null)",
                               {"translate", "-"})),
            "\r\033[Kreading: 2 B\r\r\033[K");
}

// A document whose bytes come late and take a while: `shown` is on the screen as it is worked on.
void expectShown(const HostFolder& folder, const std::vector<std::string>& words,
                 const std::string& shown) {
  std::string text = R"({"class-maps": {"qos": {"V": {})";
  for (int i = 0; i < 200'000; ++i) {
    const std::string term = i % 100 == 0 ? "" : "t" + std::to_string(i);
    text += ",\"__yang_[c" + std::to_string(i / 100) + "]_[" + term +
            "]\": {\"match\": [\"ip-access-group\"]}";
  }
  const std::string large = folder.file("large.json", text + "}}}");
  const std::string screen = hostScreen(byShell(
      "cd '" + folder.path(".") + R"('; { sleep 1.1; cat ')" + large + R"('; } | "$@" > out)",
      words));
  EXPECT_NE(screen.find("\r\033[K" + shown + "\r\r\033[K"), std::string::npos) << screen;
  EXPECT_TRUE(screen.ends_with("\r\033[K")) << screen;
}

TEST_F(Terminal, SaysThatALargeDocumentIsTranslatedAndPrinted) {
  expectShown(folder_, {"translate", "-"}, "translating");
  expectShown(folder_, {"translate", "-"}, "printing");
}

TEST_F(Terminal, SaysThatALargeDocumentIsCompared) {
  expectShown(folder_, {"diff", before_, "-"}, "reading standard input");
}

TEST_F(Terminal, SaysThatAFileIsWritten) {
  const std::string pipe = folder_.path("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(hostScreen(byShell(R"({ sleep 2; cat ')" + pipe + R"(' > /dev/null; } & "$@"; wait)",
                               {"translate", before_, "-o", pipe})),
            "\r\033[Kwriting " + pipe + "\r\r\033[K");
}

}  // namespace
}  // namespace terminalTest
