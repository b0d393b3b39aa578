// The examples of docs/native-document.md and docs/checking.md. A block of
//
//   (indented) is the usage of the program
//   json       is a native document that can be translated without a message
//   jsonl      is change lines of the first document of the page
//   console    is a command over the document before it, native.json, and over {}, empty.json, and
//              what it prints
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "Paths.h"
#include "apps/qosoc/Commands.h"
#include "apps/qosoc/Help.h"
#include "tests/support/HostProgram.h"
#include "tests/support/Page.h"

namespace pagesTest {
namespace {

using support::Block;
using support::HostFolder;
using support::HostRun;
using support::hostRun;

std::vector<Block> examples(const std::string& page = "native-document.md") {
  return support::blocks(support::hostText(std::string(paths::examples) + "/../docs/" + page));
}

std::ptrdiff_t count(const std::vector<Block>& all, const std::string& language) {
  return std::ranges::count(all, language, &Block::language);
}

// The words of "$ qosoc ...", with a file of the folder for each that names one.
std::vector<std::string> command(const std::string& line, const HostFolder& folder) {
  std::istringstream in(line);
  std::vector<std::string> words;
  for (std::string word; in >> word;) {
    words.push_back(word.ends_with(".json") ? folder.path(word) : word);
  }
  EXPECT_GE(words.size(), 3u) << line;
  EXPECT_EQ(words.at(0) + words.at(1), "$qosoc") << line;
  words.erase(words.begin(), words.begin() + 2);
  words.insert(words.begin(), paths::qosoc);
  return words;
}

// What the page shows of a command, in lines that fit: its operands, and each option of its first way
// to be used.
std::string usage(const qosoc::Command& command) {
  constexpr std::size_t columns = 100;
  const std::string begin = "    qosoc " + std::string(command.name);
  std::string text;
  for (const std::string_view way : command.synopsis) {
    const std::size_t end = way.find(" [OPTIONS]");
    std::string line = begin + (way.empty() ? "" : " ") + std::string(way.substr(0, end));
    if (end == std::string_view::npos) return line + '\n';
    if (!text.empty()) return text + line + " ...\n";
    for (const qosoc::Option& option : command.options) {
      const std::string part = " [" + qosoc::optionLabel(option) + ']';
      if (line.size() + part.size() > columns) {
        text += line + '\n';
        line = std::string(begin.size(), ' ');
      }
      line += part;
    }
    text += line + '\n';
  }
  return text;
}

TEST(Pages, BeginWithTheUsageOfEachCommand) {
  std::string expected = "\n\n";
  for (const qosoc::Command* command : qosoc::commands()) expected += usage(*command);
  for (const qosoc::Option& option : qosoc::programOptions()) {
    expected +=
        "    qosoc " + std::string(option.shortName) + '|' + std::string(option.name) + '\n';
  }
  const std::string page =
      support::hostText(std::string(paths::examples) + "/../docs/native-document.md");
  EXPECT_NE(page.find(expected + '\n'), std::string::npos) << "the usage is" << expected;
}

TEST(Pages, HaveDocumentsThatCanBeTranslated) {
  const auto all = examples();
  EXPECT_GE(count(all, "json"), 7);
  const HostFolder folder;
  for (const Block& block : all) {
    if (block.language != "json") continue;
    const HostRun run = hostRun({paths::qosoc, "translate", folder.file("a.json", block.text)});
    EXPECT_EQ(run.err, "") << block.text;
    EXPECT_EQ(run.exit, 0) << block.text;
  }
}

TEST(Pages, HaveChangesThatApplyToTheFirstDocument) {
  const auto all = examples();
  ASSERT_EQ(count(all, "jsonl"), 1);
  const HostFolder folder;
  const auto lines = std::ranges::find(all, "jsonl", &Block::language);
  const HostRun run = hostRun({paths::qosoc, "translate", folder.file("a.json", all.at(0).text),
                               "--changes", folder.file("a.jsonl", lines->text)});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.exit, 0);
}

// The files of the folder are named in it as the page has them.
std::string withoutFolder(std::string text, const HostFolder& folder) {
  const std::string path = folder.path("");
  for (std::size_t at = 0; (at = text.find(path, at)) != text.npos;) text.erase(at, path.size());
  return text;
}

TEST(Pages, ShowWhatTheProgramPrintsForTheDocumentBefore) {
  for (const char* page : {"native-document.md", "checking.md"}) {
    const auto all = examples(page);
    EXPECT_GE(count(all, "console"), 1) << page;
    const HostFolder folder;
    folder.file("empty.json", "{}");
    for (const Block& block : all) {
      if (block.language == "json") folder.file("native.json", block.text);
      if (block.language != "console") continue;
      const std::size_t end = block.text.find('\n');
      const HostRun run = hostRun(command(block.text.substr(0, end), folder));
      EXPECT_EQ(withoutFolder(run.out, folder), block.text.substr(end + 1));
      EXPECT_EQ(run.err, "");
    }
  }
}

}  // namespace
}  // namespace pagesTest
