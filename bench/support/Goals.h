// The goals of this system, in one table, and whether a run reached them.
#pragma once

#include <string>
#include <vector>

#include "support/Figures.h"

namespace Bench {

// A claim as it came out: of all figures that it is about, the worst.
struct Verdict {
  std::string what;
  std::string own;    // "event class-map-match/1000: 270 ns"
  std::string rival;  // what it is compared with, or empty
  std::string ratio;
  std::string goal;
  bool isMet;
  std::string excess;  // "1.80 times the goal"; empty when it is met
  std::string why;     // it isn't met, as far as is known
};

// In the order of the table. Claims without a figure in this run are left out.
std::vector<Verdict> verdicts(const Figures& figures);

}  // namespace Bench
