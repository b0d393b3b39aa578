// A day of a device: a document, then change lines, with all checks after each of them.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tests/days/Device.h"
#include "tests/days/Exclusions.h"
#include "tests/days/Facts.h"
#include "tests/days/Step.h"

namespace days {

// A difference that no exclusion explains.
struct Finding {
  Check check;
  Difference difference;

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
  static std::vector<Finding> of(const Script& script, std::uint32_t otherOrder, Tally& tally);

 private:
  using Excused = std::map<host::Tokens, std::size_t>;  // place to exclusion

  Day(std::string_view document, std::uint32_t otherOrder, Tally& tally);

  // Applies a line to both devices and checks them.
  void line(std::string_view text);
  void check();
  void compare(Check check, const Snapshot& left, const Snapshot& right);
  // The exclusion that explains the difference; their count when there is none.
  std::size_t exclusionOf(const Seen& seen, const Excused& before) const;

  Device device_;
  Device other_;
  Tally& tally_;
  Facts facts_;
  std::map<Check, Excused> excused_;
  std::vector<Finding> findings_;
};

// The document and lines of a plan. No line is checked.
Script scriptOf(const Plan& plan);

}  // namespace days
