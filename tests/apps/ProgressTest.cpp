// The line that says how far a long piece of work has come.
#include "apps/qosoc/Progress.h"

#include <gtest/gtest.h>

namespace progressTest {
namespace {

using namespace std::chrono_literals;
using qosoc::bytesText;
using qosoc::Progress;

class ProgressLine : public testing::Test {
 protected:
  // A step, that long after the one before.
  void step(std::chrono::milliseconds later, const std::string& text) {
    now_ += later;
    progress_.step([&] {
      ++made_;
      return text;
    });
  }
  void tick(std::chrono::milliseconds later) {
    now_ += later;
    progress_.tick();
  }
  std::string taken() { return std::exchange(screen_, ""); }

  Progress::Clock::time_point now_;
  std::string screen_;
  int made_ = 0;
  Progress progress_{[this](std::string_view text) { screen_ += text; }, [this] { return now_; }};
};

TEST_F(ProgressLine, IsNotThereForShortWork) {
  progress_.begin();
  for (int i = 0; i < 9; ++i) step(111ms, "work");
  progress_.end();
  EXPECT_EQ(screen_, "");
  EXPECT_EQ(made_, 0);
}

TEST_F(ProgressLine, ComesAfterASecondAndGoesInTheEnd) {
  progress_.begin();
  step(1000ms, "10 lines");
  EXPECT_EQ(taken(), "\r\033[K10 lines\r");
  step(100ms, "12 lines");
  EXPECT_EQ(taken(), "\r\033[K12 lines\r");
  progress_.end();
  EXPECT_EQ(taken(), "\r\033[K");
  step(1000ms, "13 lines");
  EXPECT_EQ(taken(), "");
}

TEST_F(ProgressLine, ChangesTenTimesASecondAtMost) {
  progress_.begin();
  step(1000ms, "first");
  step(50ms, "second");
  step(49ms, "third");
  EXPECT_EQ(taken(), "\r\033[Kfirst\r");
  EXPECT_EQ(made_, 1);
  step(1ms, "fourth");
  EXPECT_EQ(taken(), "\r\033[Kfourth\r");
}

TEST_F(ProgressLine, IsErasedOnceAndComesBackWithTheNextStep) {
  progress_.begin();
  step(1000ms, "first");
  taken();
  progress_.clear();
  progress_.clear();
  EXPECT_EQ(taken(), "\r\033[K");
  step(100ms, "second");
  EXPECT_EQ(taken(), "\r\033[Ksecond\r");
}

TEST_F(ProgressLine, WaitsOneSecondForAllPiecesOfWork) {
  progress_.begin();
  step(600ms, "first");
  progress_.end();
  progress_.begin();
  EXPECT_EQ(taken(), "");
  step(400ms, "second");
  EXPECT_EQ(taken(), "\r\033[Ksecond\r");
  progress_.begin();
  EXPECT_EQ(taken(), "\r\033[K");
  step(100ms, "third");
  EXPECT_EQ(taken(), "\r\033[Kthird\r");
}

TEST_F(ProgressLine, IsTheWordOfWorkThatDoesNotCount) {
  progress_.begin("translating", true);
  tick(999ms);
  EXPECT_EQ(taken(), "");
  tick(1ms);
  EXPECT_EQ(taken(), "\r\033[Ktranslating\r");
  tick(100ms);
  EXPECT_EQ(taken(), "");
  progress_.end();
  EXPECT_EQ(taken(), "\r\033[K");
  tick(1000ms);
  EXPECT_EQ(taken(), "");
}

TEST_F(ProgressLine, DoesNotFlashTheWordOfShortWork) {
  now_ += 2000ms;
  progress_.begin("comparing", true);
  tick(99ms);
  EXPECT_EQ(taken(), "");
  tick(1ms);
  EXPECT_EQ(taken(), "\r\033[Kcomparing\r");
}

TEST_F(ProgressLine, ComesBackBehindAMessageAndNotBetweenPiecesOfText) {
  progress_.begin("printing", true);
  tick(1000ms);
  taken();
  progress_.clear();
  EXPECT_EQ(taken(), "\r\033[K");
  tick(99ms);
  EXPECT_EQ(taken(), "");
  tick(1ms);
  EXPECT_EQ(taken(), "\r\033[Kprinting\r");
  progress_.giveWay();
  EXPECT_EQ(taken(), "\r\033[K");
  tick(1000ms);
  EXPECT_EQ(taken(), "");
}

TEST_F(ProgressLine, IsNotThereForWorkThatIsNotWaitedFor) {
  progress_.begin(false);
  step(2000ms, "typed");
  EXPECT_EQ(screen_, "");
}

TEST(ProgressOfAPipe, IsNotThere) {
  int made = 0;
  Progress progress({});
  progress.begin();
  progress.step([&] {
    ++made;
    return std::string();
  });
  progress.end();
  EXPECT_EQ(made, 0);
}

TEST(BytesText, HasTheUnitThatFits) {
  EXPECT_EQ(bytesText(0), "0 B");
  EXPECT_EQ(bytesText(999), "999 B");
  EXPECT_EQ(bytesText(1000), "1.0 kB");
  EXPECT_EQ(bytesText(12'345'678), "12.3 MB");
  EXPECT_EQ(bytesText(4'000'000'000), "4.0 GB");
}

}  // namespace
}  // namespace progressTest
