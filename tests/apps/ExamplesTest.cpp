// Each folder of examples/ with a 01-native.json is a scenario of numbered steps:
//
//   01-native.json         a device            01-model.json, 01-openconfig.json   its translation
//                                              01-findings.txt    what check says of it
//   02-change.jsonl        what happens to it  02-model.json, 02-openconfig.json   what comes of it
//                                              02-feed.jsonl      which leaves each line changed
//                                              02-messages.txt                     what is reported
//   03-native-after.json   the device after    03-model.json   a restart over it, with
//   02-model.json
//
// With QOS_UPDATE_GOLDEN=1 the right column is written instead of compared.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "Paths.h"
#include "host/Json.h"
#include "rapidjson/stringbuffer.h"
#include "rapidjson/writer.h"
#include "tests/support/HostProgram.h"
#include "tests/support/Scenarios.h"

namespace examplesTest {
namespace {

namespace json = host::rapidjson;
using support::HostFolder;
using support::HostRun;
using support::hostRun;
using support::hostText;

bool updates() {
  const char* wanted = std::getenv("QOS_UPDATE_GOLDEN");
  return wanted != nullptr && std::string_view(wanted) == "1";
}

class Example : public testing::TestWithParam<std::string> {
 protected:
  std::string path(const std::string& file) const {
    return std::string(paths::examples) + '/' + GetParam() + '/' + file;
  }
  void expectGolden(const std::string& file, const std::string& actual) const {
    if (updates()) {
      std::ofstream(path(file), std::ios::binary) << actual;
    } else {
      EXPECT_EQ(actual, hostText(path(file))) << file;
    }
  }
  HostRun translate(const std::string& native, std::vector<std::string> words) const {
    words.insert(words.begin(), {paths::qosoc, "translate", path(native)});
    return hostRun(words);
  }
  HostRun changed(std::vector<std::string> words) const {
    words.insert(words.end(), {"--changes", path("02-change.jsonl")});
    return translate("01-native.json", words);
  }
};

TEST_P(Example, TranslatesTheDevice) {
  const HostRun model = translate("01-native.json", {"--format", "model"});
  EXPECT_EQ(model.exit, 0);
  EXPECT_EQ(model.err, "");
  expectGolden("01-model.json", model.out);
  expectGolden("01-openconfig.json", translate("01-native.json", {}).out);
}

TEST_P(Example, IsChecked) {
  const HostRun run = hostRun(
      {"bash", "-c", R"(cd "$1" && exec "$0" check 01-native.json)", paths::qosoc, path("")});
  EXPECT_EQ(run.exit, run.out.empty() ? 0 : 1);
  EXPECT_EQ(run.err, "");
  expectGolden("01-findings.txt", run.out);
}

// Without line 0, which is the whole model and begins with another epoch each time.
TEST_P(Example, SaysWhatEachChangeLineChanged) {
  const std::string feed = changed({"--feed"}).out;
  expectGolden("02-feed.jsonl", feed.substr(feed.find('\n') + 1));
}

TEST_P(Example, FollowsTheChanges) {
  const HostRun model = changed({"--format", "model"});
  EXPECT_EQ(model.exit, model.err.empty() ? 0 : 1);
  expectGolden("02-model.json", model.out);
  expectGolden("02-messages.txt", model.err);
  expectGolden("02-openconfig.json", changed({}).out);
}

TEST_P(Example, ComesOutTheSameInAnyOrderOfTheCollections) {
  for (const char* format : {"model", "openconfig"}) {
    const HostRun plain = changed({"--each", "--format", format});
    for (const char* seed : {"1", "2", "3", "12345"}) {
      const HostRun other = changed({"--each", "--format", format, "--order-seed", seed});
      EXPECT_EQ(other.out, plain.out) << seed;
      EXPECT_EQ(other.err, plain.err) << seed;
    }
  }
}

TEST_P(Example, KnowsTheDeviceAfterTheChanges) {
  json::Document after;
  after.Parse(hostText(path("03-native-after.json")).c_str());
  ASSERT_TRUE(after.IsObject());
  std::string line = "[";
  for (const auto& section : after.GetObject()) {
    json::StringBuffer value;
    json::Writer<json::StringBuffer> writer(value);
    section.value.Accept(writer);
    line += (line.size() > 1 ? "," : "") + std::string(R"({"op": "test", "path": "/)") +
            section.name.GetString() + R"(", "value": )" + value.GetString() + "}";
  }
  const HostFolder folder;
  const HostRun run =
      translate("01-native.json",
                {"--changes",
                 folder.file("changes.jsonl", hostText(path("02-change.jsonl")) + line + "]\n")});
  EXPECT_EQ(run.err, hostText(path("02-messages.txt")));
}

TEST_P(Example, SurvivesARestart) {
  for (const char* seed : {"0", "1", "2"}) {
    const HostRun run =
        translate("03-native-after.json",
                  {"--format", "model", "--initial", path("02-model.json"), "--order-seed", seed});
    EXPECT_EQ(run.exit, 0) << run.err;
    EXPECT_EQ(run.err, "");
    expectGolden("03-model.json", run.out);
  }
}

TEST(Demo, ShowsTheChangeWithoutColoursWhenNobodyWatches) {
  const HostRun run = hostRun({"bash", std::string(paths::examples) + "/demo.sh", paths::qosoc});
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_NE(run.out.find("\n  + /qos/classifiers/classifier[name=edge-in]/terms/term[id=video]/id "
                         "\"video\"\n"),
            std::string::npos);
  EXPECT_EQ(run.out.find('\x1b'), std::string::npos);
}

TEST(Demo, TellsTheDayOfTheRouterWithWhatWasReported) {
  const HostRun run = hostRun({"bash", std::string(paths::examples) + "/demo.sh", paths::qosoc});
  EXPECT_NE(run.out.find("\n4. A term is added"), std::string::npos);
  EXPECT_NE(run.out.find("\n  line 4: refused: "), std::string::npos);
  EXPECT_NE(run.out.find("\n  no leaf changed\n"), std::string::npos);
  EXPECT_NE(run.out.find("\n  line 10: range: "), std::string::npos);
  EXPECT_NE(run.out.find("\n14. The guests are withdrawn"), std::string::npos);
  EXPECT_NE(run.out.find("/config/max-threshold \"900\" -> \"1200\"\n"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Examples, Example, testing::ValuesIn(support::scenarios(paths::examples)),
                         [](const testing::TestParamInfo<std::string>& scenario) {
                           std::string name = scenario.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

}  // namespace
}  // namespace examplesTest
