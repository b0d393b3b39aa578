// Timestamps that only grow.
#include "host/publish/Clock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace host::clockTest {
namespace {

// A time of day that stands still, and the file of a test.
struct Time {
  Time() { std::filesystem::remove(file); }
  ~Time() { std::filesystem::remove(file); }
  Clock::Now now() {
    return [this] { return time; };
  }
  std::string text() const {
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  void textIs(const std::string& text) const { std::ofstream(file) << text; }

  std::int64_t time = 1'000'000'000'000;
  const std::string file =
      testing::TempDir() + "stamp-" + testing::UnitTest::GetInstance()->current_test_info()->name();
};

TEST(Clock, GivesTheTimeOfDay) {
  Time time;
  Clock clock(time.now());
  EXPECT_EQ(clock.next(), time.time);
  time.time += 5;
  EXPECT_EQ(clock.next(), time.time);
}

TEST(Clock, NeverGivesATimeTwice) {
  Time time;
  Clock clock(time.now());
  const std::int64_t first = clock.next();
  EXPECT_EQ(clock.next(), first + 1);
  EXPECT_EQ(clock.next(), first + 2);
}

TEST(Clock, GoesOnFromTheLastTimeWhenTheTimeOfDayIsSetBack) {
  Time time;
  Clock clock(time.now());
  const std::int64_t first = clock.next();
  time.time -= 3'600'000'000'000;
  EXPECT_EQ(clock.next(), first + 1);
}

TEST(Clock, ReservesTenSecondsInItsFile) {
  Time time;
  const Clock clock(time.file, nullptr, time.now());
  EXPECT_EQ(time.text(), std::to_string(time.time + Clock::reserve) + '\n');
}

TEST(Clock, WritesItsFileOnceInTheTimeThatItReserves) {
  Time time;
  Clock clock(time.file, nullptr, time.now());
  std::filesystem::remove(time.file);
  time.time += Clock::reserve;
  clock.next();
  EXPECT_FALSE(std::filesystem::exists(time.file));
  time.time += 1;
  clock.next();
  EXPECT_EQ(time.text(), std::to_string(time.time + Clock::reserve) + '\n');
}

TEST(Clock, BeginsBehindAllThatTheProcessBeforeMayHaveGiven) {
  Time time;
  Clock before(time.file, nullptr, time.now());
  time.time += Clock::reserve - 1;
  const std::int64_t last = before.next();
  time.time -= 3'600'000'000'000;
  Clock after(time.file, nullptr, time.now());
  EXPECT_GT(after.next(), last);
  EXPECT_GT(std::stoll(time.text()), after.next());
}

TEST(Clock, RefusesAFileThatHoldsNoTime) {
  for (const char* text : {"", "\n", "12", "12 \n", "-3\n", "time\n", "99999999999999999999\n"}) {
    Time time;
    time.textIs(text);
    try {
      const Clock clock(time.file, nullptr, time.now());
      FAIL() << text;
    } catch (const std::runtime_error& error) {
      EXPECT_EQ(error.what(), time.file + ": holds no time");
    }
  }
}

TEST(Clock, RefusesAFileThatCannotBeWritten) {
  Time time;
  try {
    const Clock clock("/nowhere/stamp", nullptr, time.now());
    FAIL();
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "/nowhere/stamp: cannot be written: No such file or directory");
  }
}

TEST(Clock, GoesOnAndSaysSoOnceWhenItsFileCannotBeWrittenAnyMore) {
  Time time;
  std::filesystem::create_directory(time.file);
  const std::string file = time.file + "/stamp";
  std::vector<std::string> reports;
  Clock clock(
      file, [&](const std::string& line) { reports.push_back(line); }, time.now());
  std::filesystem::remove_all(time.file);
  time.time += Clock::reserve + 1;
  const std::int64_t first = clock.next();
  EXPECT_EQ(clock.next(), first + 1);
  EXPECT_THAT(reports,
              testing::ElementsAre(file + ": cannot be written: No such file or directory"));
}

}  // namespace
}  // namespace host::clockTest
