// What a root leaves when its factory raises: what it wrote until then stands, and nobody keeps it.
#include <algorithm>

#include "tests/days/exclusions/Parts.h"

namespace days {
namespace {

bool raised(const Seen& seen, std::string_view root) {
  return seen.facts.startRaised(root) || seen.facts.freshRaised(root);
}

// An interface as a whole, or that it has an output, may be due to any root that writes there.
bool isInterface(const Seen& seen) {
  return seen.isAt({"interfaces", "*"}) || seen.isAt({"interfaces", "*", "output"});
}

constexpr unsigned always = Check::order | Check::restart | Check::again | Check::rebuild;
constexpr std::string_view reason =
    "A factory that raises leaves its root out: what it wrote until then, in the order of its "
    "walk, stands, and nothing follows the native side.";

constexpr Exclusion table[] = {
    {"bindings, when the root of interface classifiers raised", always, reason,
     [](const Seen& seen) {
       return raised(seen, "interface-classifier") &&
              (isInterface(seen) || seen.isAt({"interfaces", "*", "config", "**"}) ||
               seen.isAt({"interfaces", "*", "input", "**"}));
     }},
    {"forwarding groups and named queues, when their root raised", always, reason,
     [](const Seen& seen) {
       if (!raised(seen, "forwarding-group")) return false;
       const auto names = seen.facts.everKeys({"queue-names"});
       return seen.isAt({"forwarding-groups", "**"}) ||
              (seen.isAt({"queues", "*", "**"}) &&
               std::find(names.begin(), names.end(), seen.key(1)) != names.end());
     }},
    {"queues, when their root raised", always, reason,
     [](const Seen& seen) {
       return raised(seen, "queue") && seen.isAt({"queues", "**"});
     }},
    {"queue management, when its root raised", always, reason,
     [](const Seen& seen) {
       return raised(seen, "queue-management") &&
              (isInterface(seen) || seen.isAt({"queue-management-profiles", "**"}) ||
               seen.isAt({"interfaces", "*", "output", "queues", "**"}));
     }},
    {"scheduler policies, when their root raised", always, reason,
     [](const Seen& seen) {
       return raised(seen, "scheduler-policy") &&
              (isInterface(seen) || seen.isAt({"scheduler-policies", "**"}) ||
               seen.isAt({"interfaces", "*", "output", "scheduler-policy", "**"}));
     }},
};

}  // namespace

std::span<const Exclusion> startExclusions() { return table; }

}  // namespace days
