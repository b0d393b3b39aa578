// What the findings of a document claim, held against its translations.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/days/check/Case.h"

namespace days {

struct ClaimTally {
  std::map<std::string, std::size_t, std::less<>> findings;  // by kind
  std::size_t seenOrders = 0;        // findings of which several outcomes were seen
  std::size_t unseenOrders = 0;      // those of which one was, in all orders that were tried
  std::size_t unseenReferences = 0;  // likewise, references that no order brought into the model
  std::vector<std::string> unseen;   // the first findings of order with one outcome
};

// A line for each finding that is false. Over a document that raises only the raising is judged.
std::vector<std::string> falseFindings(const Case& one, ClaimTally& tally);
// A line for each raised root, dangling reference and leaf that depends on the order, without a
// finding, and for each leaf that is left out.
std::vector<std::string> unclaimed(const Case& one);

}  // namespace days
