// Random native documents over a few names, so that what they say meets: the rules of `check` are
// about objects that disagree, shadow each other, or nearly refer to each other.
#pragma once

#include <cstdint>
#include <vector>

#include "tests/days/Step.h"
#include "tests/days/check/Document.h"

namespace days {

enum class Topic : std::uint8_t { everything, classification, bindings, queues, profiles, names };
constexpr std::size_t topics = 6;

struct DocumentPlan {
  Topic topic = Topic::everything;
  bool hasBadValues = false;  // over which a translator raises
  std::vector<Step> steps;    // each adds a thing, or a few that belong together
};

Document documentOf(const DocumentPlan& plan);

}  // namespace days
