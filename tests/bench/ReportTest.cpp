// The page that `./dev bench` writes, from figures that are given.
#include "support/Report.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/Goals.h"

namespace reportTest {
namespace {

using Bench::Comparisons;
using Bench::Figures;

const Bench::Origin origin{"./dev bench", "2026-11-22", "2 x 2.25 GHz x86_64, g++ 12.2.0"};

std::string page(const Figures& figures, const Comparisons& comparisons = {}) {
  std::ostringstream out;
  Bench::writePage(out, origin, comparisons, figures);
  return out.str();
}

// From a heading to the next one, without either.
std::string section(const std::string& page, const std::string& heading) {
  const std::size_t at = page.find("\n## " + heading + "\n\n");
  if (at == page.npos) return "(none)";
  const std::size_t begin = at + heading.size() + 6;
  return page.substr(begin, page.find("\n## ", begin) - begin);
}

std::vector<std::string> headings(const std::string& page) {
  std::vector<std::string> found;
  std::istringstream lines(page);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("## ")) found.push_back(line.substr(3));
  }
  return found;
}

// An event of a setting, an event of an object, a goal that is met, and goals that are not.
const Figures figures{{"event queue-ecn/1000", 82},
                      {"event queue-ecn/1000 floor", 40},
                      {"event pfc-port/1000", 80},
                      {"event pfc-port/1000 floor", 16},
                      {"event class-map-add/1000", 192},
                      {"event queue-add/1000", 616},
                      {"event queue-add/1000 allocations", 0.5},
                      {"instructions profile-threshold/1000", 400},
                      {"instructions profile-threshold/100000", 420},
                      {"memory of a class map/1000 whole bytes", 498},
                      {"document, qosoc translate/100", 7.261e9},
                      {"document, qosoc translate/100 peak bytes", 971.5e6},
                      {"document, qosoc translate/100 file bytes", 100.3e6},
                      {"libyang edit by path/10000", 9000},
                      {"event action-change/10000", 180}};

TEST(Report, SaysWhenAndWhereItWasWritten) {
  EXPECT_TRUE(page({}).starts_with(
      "# Results\n\nWritten by `./dev bench` on 2026-11-22, on 2 x 2.25 GHz x86_64, g++ 12.2.0. "
      "[performance.md](../performance.md) has the method.\n\n## What to expect\n"))
      << page({});
}

TEST(Report, BeginsWithWhatToExpectAndEndsWithTheGoalsThatAreNotMet) {
  Comparisons comparisons;
  comparisons.subject("Native document");
  comparisons.add("document, qosoc translate/100");
  EXPECT_EQ(headings(page(figures, comparisons)),
            (std::vector<std::string>{"What to expect",
                                      "Time of an event, and how many times the floor's",
                                      "Heap allocations of an event, once warm", "Native document",
                                      "Goals that are met", "Goals that are not met"}));
}

TEST(Report, GivesWhatToExpectAsRangesOverTheKindsOfEvents) {
  const std::string expected = section(page(figures), "What to expect");
  EXPECT_NE(expected.find("| one setting changes | 80 ns to 82 ns | 180 ns |  |  |\n"),
            std::string::npos)
      << expected;
  EXPECT_NE(expected.find("| an object comes, goes, is bound, named or attached | 192 ns to 616 ns "
                          "|  |  |  |\n"),
            std::string::npos)
      << expected;
  EXPECT_NE(expected.find("| memory, for each class map | 498 B |  |  |  |\n"), std::string::npos);
  EXPECT_NE(expected.find("| `qosoc translate` | 7261 ms | 971.5 MB |\n"), std::string::npos);
}

TEST(Report, LeavesOutWhatHasNoFigure) {
  const std::string expected = section(page(figures), "What to expect");
  EXPECT_EQ(expected.find("a start, for each"), std::string::npos);
  EXPECT_EQ(expected.find("qosoc check"), std::string::npos);
}

TEST(Report, ListsTheGoalsThatAreMetAsATable) {
  EXPECT_EQ(section(page(figures), "Goals that are met"),
            "|  | worst figure | beside | ratio | goal |\n|---|---|---|---|---|\n"
            "| queue-ecn beside the floor | event queue-ecn/1000: 82 ns | event queue-ecn/1000 "
            "floor: 40 ns | 2.05 | <= 2.50 |\n"
            "| instructions of profile-threshold | instructions profile-threshold/100000: 420 |  | "
            " | <= 500 |\n");
}

TEST(Report, SaysOfAGoalThatIsNotMetHowFarAndWhy) {
  const std::string missed = section(page(figures), "Goals that are not met");
  EXPECT_TRUE(missed.starts_with(
      "- **pfc-port beside the floor**: 5.00, goal <= 2.50, 2.00 times the goal. event "
      "pfc-port/1000: 80 ns; event pfc-port/1000 floor: 16 ns. The floor reads one record."))
      << missed;
  EXPECT_NE(missed.find("- **instructions at every size, of all events**: 1.05, goal within 1.02, "
                        "1.03 times the goal. instructions profile-threshold/100000: 420; "
                        "instructions profile-threshold/1000: 400. The reason isn't known.\n"),
            std::string::npos)
      << missed;
  EXPECT_NE(missed.find("- **allocations of an event, of all**: goal <= 0. event queue-add/1000 "
                        "allocations: 0.50. A fraction far below one is"),
            std::string::npos)
      << missed;
  EXPECT_NE(missed.find("50.0 x faster, goal >= 100, 2.00 times too slow."), std::string::npos)
      << missed;
  EXPECT_NE(missed.find("9.69, goal <= 4.00, 2.42 times the goal."), std::string::npos) << missed;
}

TEST(Report, HasNoListWhenEachGoalIsMet) {
  const std::string met = page({{"event queue-ecn/1000", 82}, {"event queue-ecn/1000 floor", 40}});
  EXPECT_EQ(section(met, "Goals that are not met"), "(none)");
}

TEST(Report, IsTheSameFromStoredFigures) {
  std::ostringstream stored;
  Bench::writeFigures(stored, origin, figures);
  std::istringstream in(stored.str());
  Bench::Origin readOrigin;
  Figures readAgain;
  Bench::readFigures(in, readOrigin, readAgain);
  EXPECT_EQ(readAgain, figures);
  std::ostringstream out;
  Bench::writePage(out, readOrigin, {}, readAgain);
  EXPECT_EQ(out.str(), page(figures));
}

}  // namespace
}  // namespace reportTest
