// Queue-management profiles and scheduler policies, which live in QoS profiles.
#include <algorithm>

#include "tests/days/exclusions/Native.h"
#include "tests/days/exclusions/Table.h"

namespace days {
namespace {

host::Tokens profile(const std::string& name) {
  return {"qos-profiles", "__YANG_QMP_[" + name + "]"};
}
host::Tokens policy(const std::string& name) {
  return {"qos-profiles", "__YANG_SP_[" + name + "]"};
}
host::Tokens policyComment(const std::string& name) {
  return {"comments", "qos-profile-__YANG_SP_[" + name + "]"};
}
bool isProfile(const Seen& seen) { return seen.isAt({"queue-management-profiles", "*", "**"}); }

constexpr Exclusion profileRows[] = {
    {"a queue-management profile without the settings of tx queue 0", +Check::rebuild,
     "Only the QoS profile's going removes the record.",
     [](const Seen& seen) {
       const auto queues = below(profile(seen.key(1)), "tx-queues");
       return isProfile(seen) && seen.difference.right.empty() &&
              !seen.facts.has(below(queues, "uc-0")) && !seen.facts.has(below(queues, "mc-0"));
     }},
    {"a queue-management profile with two tx queues 0",
     Check::order | Check::restart | Check::rebuild,
     "The unicast and the multicast queue write one record, and the last writer decides.",
     [](const Seen& seen) {
       const auto queues = below(profile(seen.key(1)), "tx-queues");
       return isProfile(seen) && seen.facts.everHad(below(queues, "uc-0")) &&
              seen.facts.everHad(below(queues, "mc-0"));
     }},
    {"a queue-management profile whose machine raised",
     Check::order | Check::restart | Check::rebuild,
     "A percentage that the model refuses, or a body that is put in the place of another one, "
     "leaves the record as it was and a machine that isn't there or watches the old body.",
     [](const Seen& seen) {
       return isProfile(seen) && seen.facts.raisedAbout(profile(seen.key(1)));
     }},
    {"what a scheduler policy's comment no longer says", +Check::rebuild,
     "A policy only grows: it keeps the first value of everything, and what a comment no longer "
     "holds.",
     [](const Seen& seen) {
       if (!seen.isAt({"scheduler-policies", "*", "schedulers", "**"})) return false;
       if (seen.difference.left.empty()) return false;
       const auto comment = policyComment(seen.key(1));
       return std::max(seen.facts.lastSet(comment), seen.facts.lastGone(comment)) >
              seen.facts.lastGone(policy(seen.key(1)));
     }},
    {"a scheduler policy whose comment raised", Check::order | Check::restart | Check::rebuild,
     "A rate that the model refuses ends the reading of the comment, in the order of its walk.",
     [](const Seen& seen) {
       return seen.isAt({"scheduler-policies", "*", "**"}) &&
              (seen.facts.raisedAbout(policyComment(seen.key(1))) ||
               seen.facts.raisedAbout(policy(seen.key(1))));
     }},
};

}  // namespace

std::span<const Exclusion> profileExclusions() { return profileRows; }

}  // namespace days
