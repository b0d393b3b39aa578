// What the README shows is what happens.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <sstream>

#include "Paths.h"
#include "host/Changes.h"
#include "host/Feed.h"
#include "host/ModelWriter.h"
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

TEST(Readme, ShowsAFindingOfTheRouter) {
  const std::string findings =
      hostText(std::string(paths::examples) + "/edge-router/01-findings.txt");
  const auto shown = blocks("");
  const auto isFinding = [](const std::string& block) { return block.starts_with("01-native"); };
  const auto block = std::ranges::find_if(shown, isFinding);
  ASSERT_NE(block, shown.end());
  EXPECT_NE(findings.find(*block), std::string::npos);
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

// The lines between two marks are those of a block of the README.
void shownHost() {
  // >>> 0
  const auto report = [](const std::string& line) { std::cerr << line << '\n'; };
  host::Native native;
  host::Model model;
  host::readNative("router.json", native);
  const auto roots = host::buildRoots({}, native, model, report);
  host::Changes changes(native, report);
  for (std::string line; std::getline(std::cin, line);) changes.line(line);
  // <<<
  std::cout << host::modelJson(model, host::Layout::pretty);
}

void shownFeed() {
  const auto report = [](const std::string& line) { std::cerr << line << '\n'; };
  host::Native native;
  host::Model model;
  host::readNative("router.json", native);
  const auto roots = host::buildRoots({}, native, model, report);
  host::Changes changes(native, report);
  // >>> 1
  host::Feed feed(model);
  const auto printed = feed.onLeaves({}, [](const auto& now) {
    for (auto& leaf : now.updated) std::cout << leaf.path << '\n';
  });
  for (std::string line; feed.commit(), std::getline(std::cin, line);) changes.line(line);
  // <<<
}

// What a host prints over the small example.
std::string printedOverExample(void (*host)()) {
  const std::string example = std::string(paths::examples) + "/one-classifier/";
  const support::HostFolder folder;
  folder.file("router.json", hostText(example + "01-native.json"));
  const auto inFolder = [&] {
    std::filesystem::current_path(folder.path("."));
    host();
  };
  return printedBy(inFolder, hostText(example + "02-change.jsonl"));
}

TEST(Readme, ShowsAHostThatWorks) {
  EXPECT_EQ(printedOverExample(shownHost),
            hostText(std::string(paths::examples) + "/one-classifier/02-model.json"));
}

TEST(Readme, ShowsAFeedThatWorks) {
  const std::string classifier = "/qos/classifiers/classifier[name=edge-in]/";
  EXPECT_EQ(printedOverExample(shownFeed), classifier + "config/name\n" + classifier +
                                               "config/type\n" + classifier + "name\n" +
                                               classifier + "terms/term[id=voice]/config/id\n" +
                                               classifier + "terms/term[id=voice]/id\n" +
                                               // and then by the change
                                               classifier + "terms/term[id=video]/config/id\n" +
                                               classifier + "terms/term[id=video]/id\n");
}

// A block's lines of code, without those that include headers, which must stand in this file, too.
std::string shownCode(const std::string& block, const std::string& source) {
  std::string code;
  std::istringstream lines(block);
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("#include ")) {
      code += line + '\n';
    } else {
      EXPECT_NE(source.find("\n" + line + "\n"), std::string::npos) << line;
    }
  }
  return code;
}

TEST(Readme, ShowsThatHostAndThatFeedAsTheyStandHere) {
  const std::string source =
      hostText(std::string(paths::examples) + "/../tests/apps/ReadmeTest.cpp");
  const auto shown = blocks("cpp");
  ASSERT_EQ(shown.size(), 2u);
  for (std::size_t block = 0; block < shown.size(); ++block) {
    const std::string mark = "  // >>> " + std::to_string(block) + '\n';
    const std::size_t begin = source.find(mark) + mark.size();
    const std::string here = source.substr(begin, source.find("  // <<<", begin) - begin);
    EXPECT_EQ(squeezed(shownCode(shown[block], source)), squeezed(here));
  }
  EXPECT_EQ(std::ranges::count(shown[0], '\n'), 10);
  EXPECT_EQ(std::ranges::count(shown[1], '\n'), 3);
}

}  // namespace
}  // namespace readmeTest
