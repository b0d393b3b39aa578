// What the README shows is what happens.
#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <sstream>

#include "Paths.h"
#include "host/Changes.h"
#include "host/Feed.h"
#include "host/NativeReader.h"
#include "host/Roots.h"
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
  ASSERT_EQ(shown.size(), 4u);
  EXPECT_EQ(squeezed(shown[0]), squeezed(hostText(folder + "01-native.json")));
  EXPECT_EQ(shown[1], hostText(folder + "02-change.jsonl"));
  EXPECT_EQ(shown[2], hostRun({paths::qosoc, "translate", folder + "01-native.json", "--changes",
                               folder + "02-change.jsonl", "--each"})
                          .out);
  EXPECT_EQ(shown[3], hostText(folder + "02-feed.jsonl"));
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

// In the folder of its example, with standard input from a text. Returns what it printed.
template <class Host>
std::string printedBy(const Host& host, const std::string& in) {
  const auto before = std::filesystem::current_path();
  std::istringstream lines(in);
  std::streambuf* const terminal = std::cin.rdbuf(lines.rdbuf());
  testing::internal::CaptureStdout();
  host();
  std::cin.rdbuf(terminal);
  std::filesystem::current_path(before);
  return testing::internal::GetCapturedStdout();
}

// The lines between the two marks are those of the README.
void shownHost() {
  // >>>
  const auto report = [](const std::string& line) { std::cerr << line << '\n'; };
  host::Native native;
  host::Model model;
  host::readNative("router.json", native);
  const auto roots = host::buildRoots({}, native, model, report);

  host::Feed feed(model);
  const auto printed = feed.onLeaves({}, [](const host::LeafChanges& changes) {
    for (const auto& leaf : changes.updated) std::cout << leaf.path << '\n';
  });
  host::Changes changes(native, report);
  feed.commit();
  for (std::string line; std::getline(std::cin, line); feed.commit()) changes.line(line);
  // <<<
}

TEST(Readme, ShowsAHostThatWorks) {
  const std::string example = std::string(paths::examples) + "/one-classifier/";
  const support::HostFolder folder;
  folder.file("router.json", hostText(example + "01-native.json"));
  const auto inFolder = [&] {
    std::filesystem::current_path(folder.path("."));
    shownHost();
  };
  const std::string classifier = "/qos/classifiers/classifier[name=edge-in]/";
  EXPECT_EQ(printedBy(inFolder, hostText(example + "02-change.jsonl")),
            classifier + "config/name\n" + classifier + "config/type\n" + classifier + "name\n" +
                classifier + "terms/term[id=voice]/config/id\n" + classifier +
                "terms/term[id=voice]/id\n" +
                // and then by the change
                classifier + "terms/term[id=video]/config/id\n" + classifier +
                "terms/term[id=video]/id\n");
}

TEST(Readme, ShowsThatHostAsItStandsHere) {
  const std::string source =
      hostText(std::string(paths::examples) + "/../tests/apps/ReadmeTest.cpp");
  const std::size_t begin = source.find("// >>>") + 6;
  const std::string here = source.substr(begin, source.find("// <<<") - begin);
  const auto shown = blocks("cpp");
  ASSERT_EQ(shown.size(), 1u);
  const std::size_t code = shown[0].find("\n\n");
  EXPECT_EQ(squeezed(shown[0].substr(code)), squeezed(here));
  std::istringstream includes(shown[0].substr(0, code));
  for (std::string line; std::getline(includes, line);) {
    EXPECT_NE(source.find("\n" + line + "\n"), std::string::npos) << line;
  }
}

}  // namespace
}  // namespace readmeTest
