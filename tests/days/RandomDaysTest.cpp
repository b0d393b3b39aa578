// Random days through all checks. RapidCheck draws them and makes a failing one small; its own
// RC_PARAMS choose how many and which: "max_success=100000 seed=7 max_size=24". The smallest day
// that fails is written to QOS_DAYS_DIRECTORY.
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "tests/days/Reproducer.h"

namespace days {

// The plan of a day in which much is bad.
struct SpoiledPlan {
  Plan plan;
};

void show(const Script& script, std::ostream& out) {
  out << script.document << '\n';
  for (const std::string& line : script.lines) out << line << '\n';
}
void showValue(const Plan& plan, std::ostream& out) { show(scriptOf(plan), out); }
void showValue(const SpoiledPlan& spoiled, std::ostream& out) {
  show(scriptOf(spoiled.plan, Values::spoiled), out);
}

}  // namespace days

namespace rc {

template <>
struct Arbitrary<days::Plan> {
  static Gen<days::Plan> arbitrary() {
    using days::Focus;
    using days::Plan;
    using days::Step;
    const auto byte = [](int first) {
      return gen::resize(kNominalSize, gen::map(gen::inRange(first, 256), [](int n) {
                           return static_cast<std::uint8_t>(n);
                         }));
    };
    const auto step = gen::container<Step>(byte(0));
    const auto steps = [&](int most) {
      return gen::resize(most, gen::container<std::vector<Step>>(step));
    };
    const auto focus = gen::map(gen::resize(kNominalSize, gen::inRange<int>(0, days::focuses)),
                                [](int n) { return static_cast<Focus>(n); });
    return gen::build<Plan>(
        gen::set(&Plan::focus, focus), gen::set(&Plan::before, steps(14)),
        gen::set(&Plan::changes, steps(24)), gen::set(&Plan::order, byte(1)),
        gen::set(&Plan::closing, gen::resize(1, gen::container<std::vector<Step>>(step))));
  }
};

template <>
struct Arbitrary<days::SpoiledPlan> {
  static Gen<days::SpoiledPlan> arbitrary() {
    return gen::map(gen::arbitrary<days::Plan>(),
                    [](days::Plan plan) { return days::SpoiledPlan{std::move(plan)}; });
  }
};

}  // namespace rc

namespace days {
namespace {

// What a long run shows while it goes on, and the table behind it.
class Progress {
 public:
  void dayIs(std::size_t lines) {
    ++days_;
    lines_ += lines;
    if (isShown_ && days_ % 1000 == 0) std::fputs(shown().c_str(), stderr);
  }
  void table(const Tally& tally) const {
    if (!isShown_) return;
    std::string text = shown() + "Differences that are meant:\n";
    for (std::size_t row = 0; row < exclusions().size(); ++row) {
      const std::string used = std::to_string(tally.used[row]);
      text += std::string(9 - std::min<std::size_t>(9, used.size()), ' ') + used + ' ';
      text += exclusions()[row].name;
      text += '\n';
    }
    std::fputs(text.c_str(), stderr);
  }

 private:
  std::string shown() const {
    return std::to_string(days_) + " days, " + std::to_string(lines_) + " lines\n";
  }

  const bool isShown_ = std::getenv("QOS_DAYS_PROGRESS") != nullptr;
  std::size_t days_ = 0;
  std::size_t lines_ = 0;
};

TEST(RandomDays, EndInTheSameModelWhateverTheOrderAndHoweverOftenItRestarts) {
  setenv("RC_PARAMS", "max_success=300 seed=20261121 max_size=24", 0);
  const char* chosen = std::getenv("QOS_DAYS_DIRECTORY");
  const std::string directory = chosen != nullptr ? chosen : QOS_DAYS_DIRECTORY;
  Progress progress;
  Tally tally;
  const bool isRight = rc::check("a day holds all checks", [&](const Plan& plan) {
    const Script script = scriptOf(plan);
    const std::vector<Finding> findings = Day::of(script, plan.order, tally);
    progress.dayIs(script.lines.size());
    if (findings.empty()) return;
    writeReproducer(directory, script, findings, plan.order);
    RC_FAIL(findings.front().told());
  });
  progress.table(tally);
  EXPECT_TRUE(isRight) << "The smallest day that fails is in " << directory;
}

TEST(RandomDays, InWhichRootsReturnAndBadCommentsAreRefusedEndInThatModelToo) {
  setenv("RC_PARAMS", "max_success=300 seed=20261122 max_size=24", 0);
  const char* chosen = std::getenv("QOS_DAYS_DIRECTORY");
  const std::string directory =
      std::string(chosen != nullptr ? chosen : QOS_DAYS_DIRECTORY) + "/spoiled";
  Progress progress;
  Tally tally;
  const bool isRight = rc::check("a spoiled day holds all checks", [&](const SpoiledPlan& spoiled) {
    const Script script = scriptOf(spoiled.plan, Values::spoiled);
    const std::vector<Finding> findings =
        Day::of(script, spoiled.plan.order, tally, Device::LeftOut::returns);
    progress.dayIs(script.lines.size());
    if (findings.empty()) return;
    writeReproducer(directory, script, findings, spoiled.plan.order);
    RC_FAIL(findings.front().told());
  });
  progress.table(tally);
  EXPECT_TRUE(isRight) << "The smallest day that fails is in " << directory;
}

}  // namespace
}  // namespace days
