// `qosoc serve`, as its users have it: the address, the writer, the log, signals.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/support/GnmiProgram.h"
#include "tests/support/GnmiServed.h"

namespace server::serveTest {
namespace {

using gnmi::SubscriptionList;
using support::GnmiProgram;
using support::GnmiStream;
using support::gnmiSubscribe;
using support::GnmiWriter;
using support::HostFolder;
using support::HostLines;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* native =
    R"({"class-maps": {"qos": {"__yang_[edge-in]_[]": {"match": ["ip-access-group"]}}}})";
constexpr const char* addVoice =
    R"([{"op": "add", "path": "/class-maps/qos/__yang_[edge-in]_[voice]",)"
    R"( "value": {"match": ["ip-access-group"]}}])";
constexpr const char* removeVoice =
    R"([{"op": "remove", "path": "/class-maps/qos/__yang_[edge-in]_[voice]"}])";
const std::string voice = "/qos/classifiers/classifier[name=edge-in]/terms/term[id=voice]";

struct Folder : HostFolder {
  Folder() { file("native.json", native); }
  std::string socket() const { return path("socket"); }
  std::vector<std::string> withSocket() const { return {"--changes", "unix:" + socket()}; }
};

support::HostRun serve(const std::vector<std::string>& options) {
  std::vector<std::string> words{QOS_QOSOC, "serve"};
  words.insert(words.end(), options.begin(), options.end());
  return support::hostRun(words);
}

// ===== The address

TEST(Serve, SaysWhereItServesAndDoesSo) {
  const Folder folder;
  const GnmiProgram program(folder, {});
  EXPECT_THAT(program.firstLine(), testing::MatchesRegex("serving 127\\.0\\.0\\.1:[0-9]+"));
  const auto stub = program.stub();
  GnmiStream stream(*stub, gnmiSubscribe(SubscriptionList::ONCE));
  EXPECT_THAT(stream.untilSync(),
              ElementsAre("+ /qos/classifiers/classifier[name=edge-in]/config/name \"edge-in\"",
                          "+ /qos/classifiers/classifier[name=edge-in]/config/type \"IPV4\"",
                          "+ /qos/classifiers/classifier[name=edge-in]/name \"edge-in\""));
}

TEST(Serve, RefusesAnAddressThatAnotherServerHas) {
  const Folder folder;
  const GnmiProgram first(folder, {});
  const auto run = serve({folder.path("native.json"), "--listen", first.address(), "--plaintext"});
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, HasSubstr("--listen: " + first.address() + ": cannot be listened to"));
}

TEST(Serve, RefusesBadUsage) {
  const Folder folder;
  const std::string file = folder.path("native.json");
  const auto refusal = [&](const std::vector<std::string>& options) {
    const auto run = serve(options);
    EXPECT_EQ(run.exit, 2);
    EXPECT_EQ(run.out, "");
    return run.err;
  };
  const std::string hint = " (see qosoc serve --help)\n";
  EXPECT_EQ(refusal({file}), "qosoc: --listen is missing" + hint);
  for (const char* address : {"", "host", ":1", "host:", "host:65536", "host:-1", "a:b:1", "[:1"}) {
    EXPECT_EQ(refusal({file, "--listen", address, "--plaintext"}),
              "qosoc: --listen: expected HOST:PORT, not \"" + std::string(address) + '"' + hint);
  }
  EXPECT_EQ(refusal({file, "--listen", "127.0.0.1:0"}),
            "qosoc: --plaintext is missing: the server has no TLS yet" + hint);
  EXPECT_EQ(refusal({"-", "--listen", "127.0.0.1:0", "--plaintext", "--changes", "-"}),
            "qosoc: standard input is NATIVE.json or --changes, not both" + hint);
  EXPECT_EQ(refusal({file, "--listen", "127.0.0.1:0", "--plaintext", "--changes", "unix:" + file}),
            "qosoc: --changes: unix:" + file + ": a file is there that is no socket" + hint);
}

TEST(Serve, RefusesACommentThatWouldEndIt) {
  const HostFolder folder;
  const std::string file = folder.file("native.json", R"({
      "interfaces": {"Et1": {"tx-queues": {"uc-3": {}}}},
      "comments": {"if-Et1-uc-txq-3": "{\"MetaData-OpenConfig\":{\"scheduler-policy\":1}}"}})");
  const auto run = serve({file, "--listen", "127.0.0.1:0", "--plaintext"});
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(run.err, "qosoc: " + file +
                         ": /comments/if-Et1-uc-txq-3: at /MetaData-OpenConfig/scheduler-policy of "
                         "this comment: expected an object\n");
}

// ===== The changes

TEST(Serve, AppliesTheChangesOfAFile) {
  const Folder folder;
  folder.file("changes.jsonl", addVoice);
  const GnmiProgram program(folder, {"--changes", folder.path("changes.jsonl")});
  const auto stub = program.stub();
  GnmiStream stream(*stub, gnmiSubscribe(SubscriptionList::STREAM, voice));
  EXPECT_TRUE(stream.comesTo({{voice + "/config/id", "\"voice\""}, {voice + "/id", "\"voice\""}}));
}

TEST(Serve, AnswersEachLineOfTheWriter) {
  const Folder folder;
  const GnmiProgram program(folder, folder.withSocket());
  const auto stub = program.stub();
  GnmiStream stream(*stub, gnmiSubscribe(SubscriptionList::STREAM));
  stream.untilSync();
  GnmiWriter writer(folder.socket());
  EXPECT_EQ(writer.ask(addVoice), "applied 1");
  EXPECT_THAT(stream.next(),
              ElementsAre("+ " + voice + "/config/id \"voice\"", "+ " + voice + "/id \"voice\""));
  EXPECT_EQ(writer.ask(R"([{"op": "remove", "path": "/queue-names/none"}])"),
            "refused 2 \"/queue-names/none\" nothing is there");
  EXPECT_EQ(writer.ask(""), "applied 3");
  EXPECT_THAT(writer.ask("{"), StartsWith("refused 4 \"\" "));
  EXPECT_EQ(writer.ask(removeVoice), "applied 5");
  EXPECT_THAT(stream.next(), ElementsAre("- /qos/classifiers/classifier[name=edge-in]/terms"));
}

TEST(Serve, MakesOneCommitOfALine) {
  const Folder folder;
  const GnmiProgram program(folder, folder.withSocket());
  const auto stub = program.stub();
  GnmiStream stream(*stub, gnmiSubscribe(SubscriptionList::STREAM));
  stream.untilSync();
  GnmiWriter writer(folder.socket());
  std::string line = "[";
  for (const char* name : {"a", "b", "c"}) {
    line += R"({"op": "add", "path": "/class-maps/qos/__yang_[edge-in]_[)" + std::string(name) +
            R"(]", "value": {"match": ["ip-access-group"]}},)";
  }
  line.back() = ']';
  EXPECT_EQ(writer.ask(line), "applied 1");
  EXPECT_EQ(stream.next().size(), 6u);
}

TEST(Serve, PublishesNothingOfARefusedLine) {
  const Folder folder;
  const GnmiProgram program(folder, folder.withSocket());
  const auto stub = program.stub();
  GnmiStream stream(*stub, gnmiSubscribe(SubscriptionList::STREAM));
  stream.untilSync();
  GnmiWriter writer(folder.socket());
  std::string line = addVoice;
  line.insert(line.size() - 1, R"(, {"op": "remove", "path": "/queue-names/none"})");
  EXPECT_THAT(writer.ask(line), StartsWith("refused 1 "));
  std::string other = addVoice;
  other.replace(other.find("voice"), 5, "video");
  EXPECT_EQ(writer.ask(other), "applied 2");
  EXPECT_THAT(stream.next(), Contains(HasSubstr("[id=video]")).Times(2));
}

TEST(Serve, HasOneWriterAtATimeAndSurvivesIt) {
  const Folder folder;
  GnmiProgram program(folder, folder.withSocket());
  struct stat there {};
  ASSERT_EQ(::stat(folder.socket().c_str(), &there), 0);
  EXPECT_EQ(there.st_mode & 0777, 0600u);
  {
    GnmiWriter first(folder.socket());
    EXPECT_EQ(first.ask(addVoice), "applied 1");
    GnmiWriter second(folder.socket());
    EXPECT_EQ(second.read(), "busy");
    EXPECT_EQ(second.read(), "");
    first.write("[{\"op\": \"remove\"");
  }
  GnmiWriter third(folder.socket());
  EXPECT_EQ(third.ask(removeVoice), "applied 1");
  EXPECT_EQ(program.end(SIGTERM), 0);
  EXPECT_THAT(program.log(),
              ElementsAre("info a writer connected", "warning a second writer was sent away",
                          "warning line 2 of the writer has no end, and is dropped",
                          "info the writer left after 1 line", "info a writer connected",
                          "info ended by SIGTERM"));
}

TEST(Serve, ReadsNoMoreOfAWriterThatReadsNoAnswers) {
  const Folder folder;
  const GnmiProgram program(folder, folder.withSocket());
  GnmiWriter writer(folder.socket());
  const std::string line = std::string(200, ' ') + '\n';
  for (int i = 0; i < 2000; ++i) writer.write(line);
  for (int i = 1; i <= 2000; ++i) ASSERT_EQ(writer.read(), "applied " + std::to_string(i));
}

// ===== Timestamps over restarts

TEST(Serve, GivesGreaterTimestampsAfterItWasKilled) {
  const Folder folder;
  std::int64_t last = 0;
  for (int life = 0; life < 3; ++life) {
    GnmiProgram program(folder, {"--stamp-file", folder.path("stamp")});
    const auto stub = program.stub();
    GnmiStream stream(*stub, gnmiSubscribe(SubscriptionList::ONCE));
    stream.untilSync();
    EXPECT_GT(stream.last().timestamp(), last);
    last = stream.last().timestamp();
    program.end(SIGKILL);
    // As after a clock that was set back.
    const std::string text = support::hostText(folder.path("stamp"));
    last = std::stoll(text);
  }
}

// ===== The end

TEST(Serve, EndsItsStreamsAndItselfAtASignal) {
  for (const int signal : {SIGTERM, SIGINT}) {
    const Folder folder;
    GnmiProgram program(folder, folder.withSocket());
    const auto stub = program.stub();
    GnmiStream stream(*stub, gnmiSubscribe(SubscriptionList::STREAM));
    stream.untilSync();
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(program.end(signal), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
    EXPECT_EQ(stream.end().error_code(), grpc::UNAVAILABLE);
    EXPECT_FALSE(std::filesystem::exists(folder.socket()));
    EXPECT_THAT(program.log(),
                ElementsAre(signal == SIGTERM ? "info ended by SIGTERM" : "info ended by SIGINT"));
  }
}

TEST(Serve, EndsWithAClientThatDoesNotRead) {
  const HostFolder folder;
  std::string names;
  for (int i = 0; i < 8000; ++i) {
    names += (i == 0 ? "" : ",") + ("\"__yang_[edge-in]_[" + std::to_string(i)) +
             "]\": {\"match\": [\"ip-access-group\"]}";
  }
  folder.file("native.json", "{\"class-maps\": {\"qos\": {" + names + "}}}");
  GnmiProgram program(folder, {});
  const auto stub = program.stub();
  GnmiStream stream(*stub, gnmiSubscribe(SubscriptionList::STREAM));
  EXPECT_FALSE(stream.next().empty());
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(program.end(SIGTERM), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
}

TEST(Serve, TakesTheSocketOfAServerThatWasKilled) {
  const Folder folder;
  {
    GnmiProgram killed(folder, folder.withSocket());
    killed.end(SIGKILL);
  }
  ASSERT_TRUE(std::filesystem::exists(folder.socket()));
  const GnmiProgram program(folder, folder.withSocket());
  GnmiWriter writer(folder.socket());
  EXPECT_EQ(writer.ask(addVoice), "applied 1");
  const auto run = serve({folder.path("native.json"), "--listen", "127.0.0.1:0", "--plaintext",
                          "--changes", "unix:" + folder.socket()});
  EXPECT_EQ(run.exit, 2);
  EXPECT_THAT(run.err, HasSubstr("unix:" + folder.socket() + ": another server has it"));
}

TEST(Serve, LogsWarningsAloneWhenItIsQuiet) {
  const Folder folder;
  auto options = folder.withSocket();
  options.push_back("--quiet");
  GnmiProgram program(folder, options);
  GnmiWriter writer(folder.socket());
  EXPECT_EQ(writer.ask(addVoice), "applied 1");
  EXPECT_THAT(writer.ask("{"), StartsWith("refused 2"));
  EXPECT_EQ(program.end(SIGTERM), 0);
  EXPECT_THAT(program.log(), ElementsAre(StartsWith("warning line 2: refused: ")));
}

}  // namespace
}  // namespace server::serveTest
