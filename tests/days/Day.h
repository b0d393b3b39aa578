// A day of a device: a document, then change lines, with all checks after each of them.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/days/Device.h"
#include "tests/days/Exclusions.h"
#include "tests/days/Facts.h"
#include "tests/days/Follower.h"
#include "tests/days/Step.h"

namespace days {

// What no exclusion explains.
struct Finding {
  std::size_t lines;           // of the day, up to the one behind which it was found
  std::optional<Check> check;  // nothing: a line did what no line may do
  std::string what;

  std::string told() const;
};

// How often each exclusion explained a difference.
struct Tally {
  std::vector<std::size_t> used = std::vector<std::size_t>(exclusions().size());
  std::size_t without = exclusions().size();  // an exclusion that is left out of the table
};

// A day as texts: what `qosoc translate` replays.
struct Script {
  std::string document;
  std::vector<std::string> lines;
};

class Day {
 public:
  // The findings of a day up to the first step that has any. `otherOrder` is the order in which the
  // other device walks its hash collections.
  // With `returns`, roots that were left out come back.
  static std::vector<Finding> of(const Script& script, std::uint32_t otherOrder, Tally& tally,
                                 Device::LeftOut leftOut = Device::LeftOut::stays);

 private:
  // What was different at a place, and the exclusion that explained it.
  struct Excuse {
    std::string left;
    std::size_t row;
  };
  using Excused = std::map<host::Tokens, Excuse>;

  Day(std::string_view document, std::uint32_t otherOrder, Tally& tally, Device::LeftOut leftOut);

  // Applies a line to both devices and checks them.
  void line(std::string_view text);
  // A refused line changes nothing.
  void checkRefused(const Snapshot& before);
  // One that is refused for a bad comment would end the process.
  void checkBadComment(std::string_view text);
  // The state that is saved of the device is read back as the same, and its native document doesn't
  // depend on the walk order.
  void checkSaved();
  void check();
  // The feeds of both devices, for consumers that follow them from the start.
  void follow();
  void checkFeed(Follower& follower);
  // `fresh` is what the fresh roots of the right side raised.
  void compare(Check check, const Snapshot& left, const Snapshot& right, const Reports& fresh = {});
  // The exclusion that explains the difference; their count when there is none.
  std::size_t exclusionOf(const Seen& seen, const Excused& before) const;

  Device device_;
  Device other_;
  Follower follower_{device_.model()};
  Follower otherFollower_{other_.model()};
  Tally& tally_;
  Facts facts_;
  std::size_t lines_ = 0;
  std::map<Check, Excused> excused_;
  std::vector<Finding> findings_;
};

// The document and lines of a plan. No line is checked. The lines of a day that is spoiled, and its
// document, hold what roots raise over, and comments that end a process.
Script scriptOf(const Plan& plan, Values values = Values::mostlyGood);

}  // namespace days
