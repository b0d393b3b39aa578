// What the README shows is what happens.
#include <gtest/gtest.h>

#include <sstream>

#include "Paths.h"
#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/support/HostProgram.h"
#include "tests/support/Page.h"

namespace readmeTest {
namespace {

using support::HostRun;
using support::hostRun;
using support::hostText;

// The blocks of the README in one language.
std::vector<std::string> blocks(const std::string& language) {
  return support::blocks(hostText(std::string(paths::examples) + "/../README.md"), language);
}

std::string squeezed(std::string text) {
  std::erase_if(text, [](unsigned char c) { return std::isspace(c) != 0; });
  return text;
}

TEST(Readme, ShowsTheExampleAndWhatTheProgramPrints) {
  const std::string folder = std::string(paths::examples) + "/one-classifier/";
  const auto shown = blocks("json");
  ASSERT_EQ(shown.size(), 3u);
  EXPECT_EQ(squeezed(shown[0]), squeezed(hostText(folder + "01-native.json")));
  EXPECT_EQ(shown[1], hostText(folder + "02-change.jsonl"));
  EXPECT_EQ(shown[2], hostRun({paths::qosoc, "translate", folder + "01-native.json", "--changes",
                               folder + "02-change.jsonl", "--each"})
                          .out);
}

TEST(Readme, ShowsLeavesThatTheDayOfTheRouterChanges) {
  const HostRun demo = hostRun({"bash", std::string(paths::examples) + "/demo.sh", paths::qosoc});
  std::size_t shown = 0;
  for (const std::string& block : blocks("")) {
    std::istringstream lines(block);
    for (std::string line; std::getline(lines, line);) {
      if (line.find(" /qos/") != 1) continue;
      ++shown;
      EXPECT_NE(demo.out.find("\n  " + line + '\n'), std::string::npos) << line;
    }
  }
  EXPECT_EQ(shown, 3u);
}

// The lines between the two marks are those of the README.
TEST(Readme, ShowsAHostThatWorks) {
  // >>>
  auto native = Rok::make<Qos::Input::AclConfig>();
  auto classMaps = Rok::make<Qos::Input::ClassMapTypeConfig>(Qos::mapQos);
  native->cmapTypeIs(Qos::mapQos, classMaps);

  auto classifiers = Rok::make<QosOc::Config::ClassifiersDir>();
  auto root = QosOc::classMapKivToOcSmFactory(native, classifiers);

  auto voice = Rok::make<Qos::ClassMapConfig>("__yang_[edge-in]_[voice]", Qos::mapQos);
  voice->matchIs(Qos::matchIpAccessGroup, Rok::make<Qos::ClassMapMatch>());
  classMaps->cmapIs(voice->name(), voice);

  auto term = classifiers->classifier("edge-in")->terms()->term("voice");  // is there now
  // <<<
  EXPECT_EQ(term.configId, "voice");

  const std::string source =
      hostText(std::string(paths::examples) + "/../tests/apps/ReadmeTest.cpp");
  const std::size_t begin = source.find("// >>>") + 6;
  const std::string here = source.substr(begin, source.find("// <<<") - begin);
  const auto shown = blocks("cpp");
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_NE(squeezed(shown[0]).find(squeezed(here)), std::string::npos);
}

}  // namespace
}  // namespace readmeTest
