// The table of exclusions. Each row has a day of its own below examples/, which it alone explains:
// the first line is the document, the others are change lines.
#include "tests/days/Exclusions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <ostream>

#include "tests/days/Day.h"

namespace days {
namespace {

// The file of a row's day: its name, with a dash for all that is neither letter nor digit.
std::string fileName(std::string_view name) {
  std::string file;
  for (const char c : name) {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
      file += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    } else if (!file.ends_with('-')) {
      file += '-';
    }
  }
  return file + ".day";
}

Script read(const std::filesystem::path& file) {
  std::ifstream in(file);
  Script script;
  std::getline(in, script.document);
  for (std::string line; std::getline(in, line);) script.lines.push_back(line);
  return script;
}

const std::filesystem::path examples = QOS_DAYS_EXAMPLES;

class EachExclusion : public testing::TestWithParam<std::size_t> {};

// The walk orders under which a row of its own may show.
constexpr std::uint32_t orders[] = {1, 2, 3, 4, 5, 6, 7, 8};

TEST_P(EachExclusion, ExplainsADayThatNothingElseExplains) {
  const std::filesystem::path file = examples / fileName(exclusions()[GetParam()].name);
  ASSERT_TRUE(std::filesystem::exists(file)) << file;
  const Script script = read(file);
  bool isNeeded = false;
  using LeftOut = Device::LeftOut;
  for (const std::uint32_t order : orders) {
    for (const LeftOut leftOut : {LeftOut::stays, LeftOut::returns}) {
      Tally all;
      for (const Finding& finding : Day::of(script, order, all, leftOut)) {
        ADD_FAILURE() << finding.told();
      }
      Tally others;
      others.without = GetParam();
      isNeeded = isNeeded || !Day::of(script, order, others, leftOut).empty();
    }
  }
  EXPECT_TRUE(isNeeded) << "this row excludes nothing any more";
}

TEST_P(EachExclusion, SaysWhatDiffersWhereAndWhy) {
  const Exclusion& row = exclusions()[GetParam()];
  EXPECT_FALSE(row.name.empty());
  EXPECT_TRUE(row.reason.ends_with('.')) << row.reason;
  EXPECT_NE(row.checks, 0u);
}

std::string testName(const testing::TestParamInfo<std::size_t>& info) {
  std::string name = fileName(exclusions()[info.param].name);
  name.resize(name.size() - std::string_view(".day").size());
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}
INSTANTIATE_TEST_SUITE_P(Table, EachExclusion, testing::Range<std::size_t>(0, exclusions().size()),
                         testName);

TEST(Exclusions, HaveNoExampleWithoutARow) {
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(examples)) {
    files.push_back(entry.path().filename());
  }
  std::vector<std::string> rows;
  for (const Exclusion& row : exclusions()) rows.push_back(fileName(row.name));
  EXPECT_THAT(files, testing::UnorderedElementsAreArray(rows));
}

}  // namespace
}  // namespace days
