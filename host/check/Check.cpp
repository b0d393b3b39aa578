#include "host/check/Check.h"

#include <algorithm>

#include "host/check/Device.h"
#include "host/check/Rules.h"

namespace host {
std::vector<Finding> findingsOf(const Native& native) {
  const Device device(native);
  std::vector<Finding> found;
  const Findings findings = [&](Finding finding) { found.push_back(std::move(finding)); };
  for (const auto judge : {judgeNames, judgeClassifiers, judgeTerms, judgeBindings, judgeGroups,
                           judgeQueues, judgeProfiles, judgeRanges, judgeComments}) {
    judge(device, findings);
  }
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  return found;
}

Finding findingOf(const BadComment& comment) {
  return {"comment-type", comment.place(),
          comment.reason() + ", and any other value ends the program that translates it; write " +
              comment.fault.expected};
}

}  // namespace host
