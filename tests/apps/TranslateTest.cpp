// `qosoc translate` and `qosoc check`: streams, messages and exit codes.
#include <gtest/gtest.h>

#include <algorithm>

#include "Paths.h"
#include "tests/support/HostProgram.h"

namespace translateTest {
namespace {

using support::HostDialogue;
using support::HostFolder;
using support::HostRun;
using support::hostRun;

constexpr const char* native =
    R"({"class-maps": {"qos": {"__yang_[c]_[]": {"match": ["ip-access-group"]}, "PLAIN": {}}}})";
constexpr const char* empty = R"({"openconfig-qos:qos":{}})";
constexpr const char* withoutTerms =
    R"({"openconfig-qos:qos":{"classifiers":{"classifier":[{"config":{"name":"c","type":"IPV4"},"name":"c"}]}}})";
constexpr const char* withTerm =
    R"({"openconfig-qos:qos":{"classifiers":{"classifier":[{"config":{"name":"c","type":"IPV4"},"name":"c","terms":{"term":[{"config":{"id":"t"},"id":"t"}]}}]}}})";
constexpr const char* addTerm =
    R"([{"op": "add", "path": "/class-maps/qos/__yang_[c]_[t]", "value": {"match": [1]}}])";
constexpr const char* removeTerm =
    R"([{"op": "remove", "path": "/class-maps/qos/__yang_[c]_[t]"}])";
constexpr const char* removeAll = R"([{"op": "remove", "path": "/class-maps/qos"}])";

class Translate : public testing::Test {
 protected:
  HostRun translate(std::vector<std::string> words, const support::HostStreams& streams = {}) {
    words.insert(words.begin(), {paths::qosoc, "translate", native_});
    return hostRun(words, streams);
  }
  std::string changes(const std::string& text) { return folder_.file("changes.jsonl", text); }

  HostFolder folder_;
  std::string native_ = folder_.file("native.json", native);
};

std::string lines(std::initializer_list<const char*> list) {
  std::string text;
  for (const char* line : list) text += std::string(line) + '\n';
  return text;
}

TEST_F(Translate, PrintsTheOpenConfigTreeUnlessAskedForTheModel) {
  const HostRun run = translate({});
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, translate({"--format", "openconfig"}).out);
  EXPECT_EQ(run.out.find("{\n  \"openconfig-qos:qos\": {\n"), 0u);
  EXPECT_EQ(translate({"--format", "model"}).out.find("{\n  \"classifiers\": {\n    \"c\": {\n"),
            0u);
}

TEST_F(Translate, PrintsOnceAtTheEndUnlessAskedForEach) {
  const HostRun run = translate({"--changes", changes(lines({addTerm, removeTerm, removeAll}))});
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(run.out, "{\n  \"openconfig-qos:qos\": {}\n}\n");
}

TEST_F(Translate, PrintsALineAtTheStartAndAfterEachChangeLine) {
  const HostRun run = translate(
      {"--each", "--changes", changes(lines({addTerm, "", removeTerm, "nope", removeAll}))});
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(run.out, lines({withoutTerms, withTerm, withoutTerms, withoutTerms, empty}));
  EXPECT_EQ(run.err, "line 4: refused: (line): not JSON: at byte 2: Invalid value.\n");
}

TEST_F(Translate, PrintsOneLineWithEachAndNoChanges) {
  EXPECT_EQ(translate({"--each"}).out, lines({withoutTerms}));
}

TEST_F(Translate, ReadsALastLineThatHasNoEnd) {
  EXPECT_EQ(translate({"--each", "--changes", changes(addTerm)}).out,
            lines({withoutTerms, withTerm}));
}

TEST_F(Translate, ReadsChangesFromStandardInput) {
  EXPECT_EQ(translate({"--each", "--changes", "-"}, {lines({addTerm})}).out,
            lines({withoutTerms, withTerm}));
}

TEST_F(Translate, AnswersEachLineOfAPipeAtOnce) {
  HostDialogue dialogue({paths::qosoc, "translate", native_, "--each", "--changes", "-"});
  EXPECT_EQ(dialogue.read(), withoutTerms);
  dialogue.write(addTerm);
  EXPECT_EQ(dialogue.read(), withTerm);
  dialogue.write(removeTerm);
  EXPECT_EQ(dialogue.read(), withoutTerms);
  EXPECT_EQ(dialogue.end(), 0);
}

TEST_F(Translate, ReportsRefusedLinesAndGoesOn) {
  const HostRun run = translate(
      {"--each", "--changes",
       changes(lines({R"([{"op": "remove", "path": "/class-maps/qos/NONE"}])", "", addTerm,
                      R"([{"op": "add", "path": "/comments/x", "value": 1}])"}))});
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(run.err,
            "line 1: refused: /class-maps/qos/NONE: nothing is there\n"
            "line 4: refused: /comments/x: expected a string, not 1\n");
  EXPECT_EQ(run.out, lines({withoutTerms, withoutTerms, withTerm, withTerm}));
}

TEST_F(Translate, StartsFromAnInitialModelAndSweepsWhatIsStale) {
  const std::string initial = folder_.file("model.json", R"({"classifiers": {
      "stale": {"config": {"name": "stale", "type": 0}},
      "c": {"config": {"name": "c", "type": 0},
            "terms": {"old": {"config-id": "old", "conditions": null, "actions": null}}}}})");
  const HostRun run = translate({"--initial", initial, "--each"});
  EXPECT_EQ(run.exit, 0) << run.err;
  EXPECT_EQ(run.out, lines({withoutTerms}));
}

// The class-map root alone: the others would look for the ACL and the policy map.
TEST_F(Translate, KeepsTheConditionsAndActionsOfAnInitialModel) {
  const std::string initial = folder_.file("model.json", R"({"classifiers": {"c": {"terms": {"t": {
      "config-id": "t", "conditions": {"ipv4": {"dscp": 46, "dscp-set": []}},
      "actions": {"target-group": "voice"}}}}}})");
  const HostRun run =
      translate({"--initial", initial, "--each", "--changes", "-"},
                {lines({R"([{"op": "test", "path": "/class-maps/7", "value": {}}])"})});
  EXPECT_EQ(run.exit, 1);
  // The term is swept at the start: no class map stands for it.
  EXPECT_EQ(run.out, lines({withoutTerms, withoutTerms}));
  native_ = folder_.file("other.json", R"({"class-maps": {"qos": {
      "__yang_[c]_[]": {"match": [1]}, "__yang_[c]_[t]": {"match": [1]}}}})");
  EXPECT_EQ(
      translate({"--initial", initial, "--each", "--roots", "class-map"}).out,
      lines(
          {R"({"openconfig-qos:qos":{"classifiers":{"classifier":[{"config":{"name":"c","type":"IPV4"},"name":"c","terms":{"term":[{"actions":{"config":{"target-group":"voice"}},"conditions":{"ipv4":{"config":{"dscp":46}}},"config":{"id":"t"},"id":"t"}]}}]}}})"}));
}

TEST_F(Translate, WarnsOfWhatALeafCannotHoldOnce) {
  native_ = folder_.file("bell.json", R"({"class-maps": {"qos": {
      "__yang_[a\u0007]_[]": {"match": [1]}}}})");
  const HostRun run = translate({"--each", "--changes", "-"}, {"[]\n[]\n"});
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(run.out, lines({empty, empty, empty}));
  EXPECT_EQ(
      run.err,
      "warning: /openconfig-qos:qos/classifiers/classifier[name='a\\u0007']: a name that YANG "
      "strings can't hold: left out (from the class map \"__yang_[a\\u0007]_[]\")\n");
}

TEST_F(Translate, PrintsAPartOfTheTree) {
  const std::string change = changes(lines({addTerm}));
  EXPECT_EQ(
      translate({"--each", "--only", "/qos/classifiers/classifier[name=c]/config"}).out,
      lines(
          {R"({"openconfig-qos:qos":{"classifiers":{"classifier":[{"config":{"name":"c","type":"IPV4"},"name":"c"}]}}})"}));
  EXPECT_EQ(
      translate(
          {"--each", "--only", "/qos/classifiers/classifier[name=c]/terms", "--changes", change})
          .out,
      lines(
          {empty,
           R"({"openconfig-qos:qos":{"classifiers":{"classifier":[{"name":"c","terms":{"term":[{"config":{"id":"t"},"id":"t"}]}}]}}})"}));
  EXPECT_EQ(translate({"--only", "/"}).out, translate({}).out);
  EXPECT_EQ(translate({"--only", "/qos"}).out, translate({}).out);
}

TEST_F(Translate, BuildsOnlyTheNamedRoots) {
  EXPECT_EQ(translate({"--roots", "class-map", "--each"}).out, lines({withoutTerms}));
}

TEST_F(Translate, WritesTheTraceLevelsThatAreAskedFor) {
  const HostRun run = translate({"--trace", "8"});
  EXPECT_EQ(run.exit, 0);
  EXPECT_NE(run.err.find("Creating classifier named: c of type: "), std::string::npos);
  EXPECT_EQ(translate({"--trace", "0,2", "--roots", "class-map"}).err, "");
}

TEST_F(Translate, PrintsTheSameInAnyOrderOfTheCollections) {
  std::string document = R"({"class-maps": {"qos": {)";
  for (int c = 0; c < 12; ++c) {
    for (const char* term : {"", "a", "b", "c", "d", "e", "f", "g", "h", "i", "j"}) {
      document += "\"__yang_[c" + std::to_string(c) + "]_[" + term + "]\": {\"match\": [1]},";
    }
  }
  native_ = folder_.file("many.json", document + R"("PLAIN": {}}}})");
  const std::string plain = translate({}).out;
  for (const char* seed : {"1", "2", "77", "4294967295"}) {
    EXPECT_EQ(translate({"--order-seed", seed}).out, plain) << seed;
  }
}

TEST_F(Translate, SaysSoWhenItCannotWrite) {
  const HostRun run = translate({}, {"", "/dev/full"});
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(run.err, "qosoc: standard output: No space left on device\n");
}

class TranslateLarge : public Translate {
 protected:
  static constexpr int classifiers = 60'000;

  TranslateLarge() {
    std::string document = R"({"class-maps": {"qos": {"__yang_[a\u0001]_[]": {"match": [1]})";
    for (int c = 0; c < classifiers; ++c) {
      document += ",\n\"__yang_[classifier-" + std::to_string(c) + "]_[]\": {\"match\": [1]}";
    }
    document += R"(, "__yang_[z\u0001]_[]": {"match": [1]})";
    native_ = folder_.file("large.json", document + "}}}");
  }
};

TEST_F(TranslateLarge, PrintsAllOfItAndEachWarningOnce) {
  const HostRun run = translate({});
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 2) << run.err;
  EXPECT_GT(run.out.size(), 8'000'000u);
  EXPECT_TRUE(run.out.starts_with("{\n  \"openconfig-qos:qos\": {"));
  EXPECT_TRUE(run.out.ends_with("\n  }\n}\n"));
  std::size_t names = 0;
  for (std::size_t at = run.out.find("\"name\": \"classifier-"); at != std::string::npos; ++names) {
    at = run.out.find("\"name\": \"classifier-", at + 1);
  }
  EXPECT_EQ(names, 2u * classifiers);
}

TEST_F(TranslateLarge, WarnsOfItsEndBeforeItPrintsItsBeginning) {
  const HostRun run =
      hostRun({"sh", "-c", std::string(paths::qosoc) + " translate " + native_ + " 2>&1"});
  const std::size_t begin = run.out.find("\n{\n");
  const std::size_t first = run.out.find("[name='a\\u0001']: ");
  const std::size_t last = run.out.rfind("[name='z\\u0001']: ");
  EXPECT_LT(first, last);
  EXPECT_LT(last, begin);
  EXPECT_NE(begin, std::string::npos);
}

TEST_F(TranslateLarge, PrintsALineForEachChange) {
  const std::string change = R"([{"op": "add", "path": "/queue-names/q", "value": 1}])";
  const HostRun run = translate({"--each", "--format", "model", "--changes", "-"}, {change});
  EXPECT_EQ(run.exit, 0);
  EXPECT_GT(run.out.size(), 2u * 4'000'000);
  EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 2);
  EXPECT_TRUE(run.out.ends_with("}\n"));
}

TEST_F(TranslateLarge, SaysOnceWhenItCannotWrite) {
  const HostRun run = translate({"--format", "model"}, {"", "/dev/full"});
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(run.err, "qosoc: standard output: No space left on device\n");
}

TEST_F(Translate, CheckSaysNothingOfAValidDocument) {
  const HostRun run = hostRun({paths::qosoc, "check", native_});
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "");
}

}  // namespace
}  // namespace translateTest
