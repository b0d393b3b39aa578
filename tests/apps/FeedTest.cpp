// `qosoc translate --feed`: what each change line changed, as one line of JSON.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "Paths.h"
#include "tests/support/FlatDocument.h"
#include "tests/support/HostProgram.h"

namespace feedTest {
namespace {

namespace json = host::rapidjson;
using support::FlatLeaves;
using support::HostDialogue;
using support::HostFolder;
using support::HostRun;
using support::hostRun;
using testing::HasSubstr;
using testing::StartsWith;

using Words = std::vector<std::string>;

HostRun translate(Words words, const support::HostStreams& streams = {}) {
  words.insert(words.begin(), {paths::qosoc, "translate"});
  return hostRun(words, streams);
}

Words linesOf(const std::string& text) {
  Words lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

json::Document parsed(const std::string& line) {
  json::Document document;
  document.Parse(line.c_str());
  EXPECT_FALSE(document.HasParseError()) << line;
  return document;
}

// What a consumer does with a line.
void apply(const std::string& line, FlatLeaves& known) {
  const json::Document feed = parsed(line);
  for (const auto& node : feed["delete"].GetArray()) {
    const std::string top = node.GetString();
    std::erase_if(known, [&](const auto& leaf) {
      return leaf.first == top || leaf.first.starts_with(top + '/');
    });
  }
  for (const auto& leaf : feed["update"].GetObject()) {
    known[leaf.name.GetString()] = support::jsonText(leaf.value);
  }
}

// ===== Against the documents

struct Case {
  const char* name;
  Words options;
};
std::ostream& operator<<(std::ostream& out, const Case& shown) { return out << shown.name; }

class FollowedExample : public testing::TestWithParam<std::tuple<const char*, Case>> {
 protected:
  std::string path(const std::string& file) const {
    return std::string(paths::examples) + '/' + std::get<0>(GetParam()) + '/' + file;
  }
  Words words(const char* print) const {
    Words words = {"--changes", path("02-change.jsonl"), print};
    for (std::string word : std::get<1>(GetParam()).options) {
      words.push_back(word.ends_with(".json") ? path(word) : word);
    }
    return words;
  }
};

// Within a subtree, the document has the keys of the entries around it besides.
FlatLeaves within(FlatLeaves leaves, const Words& options) {
  const auto only = std::find(options.begin(), options.end(), "--only");
  if (only == options.end()) return leaves;
  std::erase_if(leaves, [&](const auto& leaf) {
    const std::string& top = *(only + 1);
    return leaf.first != top && !leaf.first.starts_with(top + '/') &&
           !leaf.first.starts_with(top + '[');
  });
  return leaves;
}

TEST_P(FollowedExample, GivesTheLeavesOfTheWholeDocumentAfterEachLine) {
  const HostRun feed = translate(words("--feed"));
  const HostRun each = translate(words("--each"));
  EXPECT_EQ(feed.exit, each.exit);
  EXPECT_EQ(feed.err, each.err);
  const Words lines = linesOf(feed.out);
  const Words documents = linesOf(each.out);
  ASSERT_EQ(lines.size(), documents.size());
  ASSERT_GT(lines.size(), 1u);
  FlatLeaves known;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    apply(lines[i], known);
    EXPECT_EQ(known, within(support::flatDocument(documents[i]), std::get<1>(GetParam()).options))
        << lines[i];
  }
}

const Case cases[] = {
    {"AsItIs", {"01-native.json"}},
    {"WithAnInitialModel", {"01-native.json", "--initial", "02-model.json"}},
    {"WithoutAugments", {"01-native.json", "--no-augments"}},
    {"WithState", {"01-native.json", "--state"}},
    {"WithInterfaceRef", {"01-native.json", "--interface-ref"}},
    {"WithAContainerOnly",
     {"01-native.json", "--only", "/qos/classifiers/classifier[name=edge-in]/terms"}},
    {"WithANestedListOnly",
     {"01-native.json", "--only", "/qos/classifiers/classifier[name=guest-in]/terms/term"}},
    {"WithAListOnly", {"01-native.json", "--only", "/qos/interfaces/interface"}},
    {"WithALeafOnly",
     {"01-native.json", "--only", "/qos/qosoc-augments:pfc/watchdog/config/action"}},
};

INSTANTIATE_TEST_SUITE_P(Examples, FollowedExample,
                         testing::Combine(testing::Values("one-classifier", "edge-router"),
                                          testing::ValuesIn(cases)),
                         [](const auto& example) {
                           std::string name = std::get<0>(example.param);
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name + '_' + std::get<1>(example.param).name;
                         });

// ===== One device

constexpr const char* native =
    R"({"interfaces": {"Ethernet1": {"tx-queues": {"uc-3": {"bandwidth": 40}}}}})";
constexpr const char* bandwidth41 =
    R"([{"op": "replace", "path": "/interfaces/Ethernet1/tx-queues/uc-3/bandwidth", "value": 41}])";
constexpr const char* bandwidth42 =
    R"([{"op": "replace", "path": "/interfaces/Ethernet1/tx-queues/uc-3/bandwidth", "value": 42}])";
constexpr const char* refused = R"([{"op": "remove", "path": "/queue-names/none"}])";
constexpr const char* raising =
    R"([{"op": "replace", "path": "/interfaces/Ethernet1/tx-queues/uc-3/bandwidth", "value": 130},)"
    R"( {"op": "add", "path": "/class-maps/qos/__yang_[c]_[]", "value": {"match": [1]}}])";
const std::string path =
    "/qos/queues/queue[name=Ethernet1-unicast-3]/config/qosoc-augments:bandwidth";
const std::string answer41 = R"({"line":1,"delete":[],"update":{")" + path + R"(":41}})";

class Feed : public testing::Test {
 protected:
  // The lines of a feed behind the first one.
  Words answers(const std::string& changes, Words words = {}) {
    words.insert(words.begin(), {native_, "--changes", folder_.file("changes.jsonl", changes)});
    words.emplace_back("--feed");
    run_ = translate(words);
    Words lines = linesOf(run_.out);
    if (!lines.empty()) lines.erase(lines.begin());
    return lines;
  }
  HostRun run_;
  HostFolder folder_;
  std::string native_ = folder_.file("native.json", native);
};

TEST_F(Feed, AnswersEachLineWithItsNumber) {
  EXPECT_EQ(answers(std::string(bandwidth41) + '\n' + bandwidth42 + '\n'),
            (Words{answer41, R"({"line":2,"delete":[],"update":{")" + path + R"(":42}})"}));
}

TEST_F(Feed, AnswersALineThatChangesNothingWithEmptyMembers) {
  EXPECT_EQ(answers("[]\n"), Words{R"({"line":1,"delete":[],"update":{}})"});
}

TEST_F(Feed, CountsABlankLineWithoutAnAnswer) {
  EXPECT_EQ(
      answers(std::string("\n  \n[]\n\n[]\n")),
      (Words{R"({"line":3,"delete":[],"update":{}})", R"({"line":5,"delete":[],"update":{}})"}));
}

TEST_F(Feed, SaysThatALineWasRefused) {
  EXPECT_EQ(answers(std::string(refused) + "\nno JSON\n"),
            (Words{R"({"line":1,"refused":true,"delete":[],"update":{}})",
                   R"({"line":2,"refused":true,"delete":[],"update":{}})"}));
  EXPECT_EQ(run_.exit, 1);
}

TEST_F(Feed, SaysWhatALineChangedAtWhichAHandlerRaised) {
  const Words lines = answers(std::string(raising) + '\n');
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0], R"({"line":1,"delete":[],"update":{)"
                      R"("/qos/classifiers/classifier[name=c]/config/name":"c",)"
                      R"("/qos/classifiers/classifier[name=c]/config/type":"IPV4",)"
                      R"("/qos/classifiers/classifier[name=c]/name":"c"}})");
  EXPECT_THAT(run_.err, StartsWith("line 1: range: "));
  EXPECT_EQ(run_.exit, 1);
}

TEST_F(Feed, HasAnotherEpochAtEachStartAndInLine0Alone) {
  const Words first = linesOf(translate({native_, "--feed"}).out);
  const Words second = linesOf(translate({native_, "--feed"}).out);
  ASSERT_EQ(first.size(), 1u);
  ASSERT_EQ(second.size(), 1u);
  const json::Document one = parsed(first[0]);
  const json::Document other = parsed(second[0]);
  EXPECT_EQ(one["line"].GetUint(), 0u);
  EXPECT_STRNE(one["epoch"].GetString(), other["epoch"].GetString());
  EXPECT_EQ(one["update"], other["update"]);
  EXPECT_THAT(answers("[]\n")[0], testing::Not(HasSubstr("epoch")));
}

TEST_F(Feed, BeginsBehindTheSweepsOfAnInitialModel) {
  const std::string model = folder_.file(
      "model.json",
      R"({"classifiers": {"stale": {"config": {"name": "stale", "type": 0}, "terms": null}}})");
  const HostRun run = translate({native_, "--initial", model, "--feed"});
  FlatLeaves known;
  apply(run.out, known);
  EXPECT_EQ(known, support::flatDocument(translate({native_, "--initial", model}).out));
  EXPECT_EQ(known.count("/qos/classifiers/classifier[name=stale]/name"), 0u);
  EXPECT_EQ(known.at(path), "40");
  EXPECT_EQ(linesOf(run.out).size(), 1u);
}

TEST_F(Feed, GoesOnFromARestoredState) {
  const std::string saved = folder_.path("saved.json");
  answers(std::string(bandwidth41) + '\n', {"--save", saved});
  const HostRun run = translate({"--restore", saved, "--feed", "--changes",
                                 folder_.file("changes.jsonl", std::string(bandwidth42) + '\n')});
  const Words lines = linesOf(run.out);
  ASSERT_EQ(lines.size(), 2u);
  FlatLeaves known;
  apply(lines[0], known);
  EXPECT_EQ(known.at(path), "41");
  EXPECT_EQ(lines[1], R"({"line":1,"delete":[],"update":{")" + path + R"(":42}})");
}

TEST_F(Feed, WarnsOnceOfWhatTheLeavesCannotHold) {
  const std::string place = R"("path": "/class-maps/qos/__yang_[a\u0001]_[]")";
  const std::string add = R"([{"op": "add", )" + place + R"(, "value": {"match": [1]}}])";
  answers(add + "\n[]\n" + R"([{"op": "remove", )" + place + "}]\n" + add + '\n');
  const Words warnings = linesOf(run_.err);
  ASSERT_EQ(warnings.size(), 1u) << run_.err;
  EXPECT_THAT(warnings[0],
              StartsWith("warning: /openconfig-qos:qos/classifiers/classifier[name='a"));
}

TEST(FeedOfTheExamples, HasLessThan500BytesForAChangedLeaf) {
  std::size_t seen = 0;
  for (const char* example : {"one-classifier", "edge-router"}) {
    const std::string folder = std::string(paths::examples) + '/' + example;
    const HostRun run =
        translate({folder + "/01-native.json", "--changes", folder + "/02-change.jsonl", "--feed"});
    for (const std::string& line : linesOf(run.out)) {
      const json::Document feed = parsed(line);
      if (feed["delete"].Size() + feed["update"].MemberCount() != 1) continue;
      EXPECT_LT(line.size(), 500u) << line;
      ++seen;
    }
  }
  EXPECT_GE(seen, 3u);
}

// ===== Pipes

class FeedPipe : public Feed {
 protected:
  HostDialogue program_{{paths::qosoc, "translate", native_, "--changes", "-", "--feed"}};
};

TEST_F(FeedPipe, AnswersEachLineBeforeTheNextOneIsWritten) {
  EXPECT_THAT(program_.read(), StartsWith(R"({"line":0,)"));
  program_.write(bandwidth41);
  EXPECT_EQ(program_.read(), answer41);
  program_.write(refused);
  EXPECT_EQ(program_.read(), R"({"line":2,"refused":true,"delete":[],"update":{}})");
  program_.write("");
  program_.write("[]");
  EXPECT_EQ(program_.read(), R"({"line":4,"delete":[],"update":{}})");
  EXPECT_EQ(program_.end(), 1);
}

TEST_F(FeedPipe, WaitsForTheRestOfALine) {
  program_.read();
  const std::string line = bandwidth41;
  program_.writeText(line.substr(0, 20));
  EXPECT_FALSE(program_.hasAnswered(200));
  program_.write(line.substr(20));
  EXPECT_EQ(program_.read(), answer41);
  EXPECT_EQ(program_.end(), 0);
}

// What was written and not answered is what the two pipes hold: the program keeps nothing of it.
TEST_F(FeedPipe, StopsWhileItsAnswersAreNotRead) {
  EXPECT_THAT(program_.read(), StartsWith(R"({"line":0,)"));
  constexpr std::size_t most = 10000;  // several times what pipes hold
  std::size_t written = 0;
  while (written < most && program_.takesInput(500)) {
    program_.write(written % 2 == 0 ? bandwidth41 : bandwidth42);
    ++written;
  }
  ASSERT_LT(written, most);
  for (std::size_t i = 1; i <= written; ++i) {
    ASSERT_THAT(program_.read(), StartsWith("{\"line\":" + std::to_string(i) + ','));
  }
  EXPECT_EQ(program_.end(), 0);
}

TEST_F(Feed, EndsByASignalWhenItsReaderGoes) {
  const std::string command = std::string("yes '[]' | \"$0\" translate \"$1\" --changes - --feed") +
                              " | head -n 1; echo ${PIPESTATUS[1]}";
  const HostRun run = hostRun({"bash", "-c", command, paths::qosoc, native_});
  const Words lines = linesOf(run.out);
  ASSERT_EQ(lines.size(), 2u) << run.out << run.err;
  EXPECT_THAT(lines[0], StartsWith(R"({"line":0,)"));
  EXPECT_EQ(lines[1], "141");  // 128 and SIGPIPE
  EXPECT_EQ(run.err, "");
}

TEST_F(Feed, ReportsOnceThatItsOutputCannotBeWritten) {
  const std::string changes = folder_.file("changes.jsonl", "[]\n[]\n[]\n");
  const HostRun run = translate({native_, "--changes", changes, "--feed"}, {"", "/dev/full"});
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(run.err, "qosoc: standard output: No space left on device\n");
}

}  // namespace
}  // namespace feedTest
