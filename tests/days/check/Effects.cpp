#include "tests/days/check/Effects.h"

#include <algorithm>

namespace days {
namespace {

using host::Tokens;

// Containers that are always there, if only empty.
bool isAlwaysThere(const Tokens& place) {
  const std::string& last = place.back();
  if (place.size() == 1) return true;
  if (place.size() == 2) return place[0] == "class-maps" || place[0] == "access-lists";
  if (place.size() == 3)
    return (place[0] == "interfaces" && last == "tx-queues") ||
           (place[0] == "service-policies" && last == "interfaces");
  return place[0] == "class-maps" || (place[0] == "policy-maps" && place.size() % 2 == 0);
}

bool isPrefix(const Tokens& a, const Tokens& b) {
  return a.size() <= b.size() && std::equal(a.begin(), a.end(), b.begin());
}

class Losses {
 public:
  Losses(const Case& one, ExemptionTally& tally) : one_(one), tally_(tally) {}

  std::vector<std::string> all() {
    judgeBelow({});
    return std::move(silent_);
  }

 private:
  // Whether all below is without effect and accounted for.
  bool judgeBelow(const Tokens& place) {
    bool isAccounted = true;
    for (const std::string& token : one_.document().below(place)) {
      Tokens at = place;
      at.push_back(token);
      isAccounted = judge(at) && isAccounted;
    }
    return isAccounted;
  }

  bool judge(const Tokens& place) {
    const bool isBelow = judgeBelow(place);
    const bool hasBelow = !one_.document().below(place).empty();
    if (isAlwaysThere(place)) return isBelow;
    if (!one_.outcomes().isSame(one_.outcomesWithout(place))) return false;
    if ((hasBelow && isBelow) || isFound(place) || isExempt(place)) return true;
    silent_.push_back("without effect and without a finding: " + host::shownPointer(place));
    return true;
  }

  bool isFound(const Tokens& place) const {
    return std::any_of(one_.findings().begin(), one_.findings().end(),
                       [&](const host::Finding& finding) {
                         return isPrefix(finding.place, place) || isPrefix(place, finding.place);
                       });
  }

  bool isExempt(const Tokens& place) {
    for (std::size_t i = 0; i < exemptions().size(); ++i) {
      if (i == tally_.without || !exemptions()[i].holds(one_, place)) continue;
      ++tally_.used[i];
      return true;
    }
    return false;
  }

  const Case& one_;
  ExemptionTally& tally_;
  std::vector<std::string> silent_;
};

}  // namespace

std::vector<std::string> silentLosses(const Case& one, ExemptionTally& tally) {
  return Losses(one, tally).all();
}

}  // namespace days
