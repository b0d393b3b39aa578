// What a root leaves when its factory raises: what it wrote until then stands, and no machine keeps it in step.
#include "tests/days/exclusions/Native.h"
#include "tests/days/exclusions/Table.h"

namespace days {
namespace {

// An interface as a whole, or that it has an output, may be due to any root that writes there.
bool isInterface(const Seen& seen) {
  return seen.isAt({"interfaces", "*"}) || seen.isAt({"interfaces", "*", "output"});
}

// Whether a place is of the part of the model that a root writes, which was out and is back.
bool isOfReturned(const Seen& seen) {
  const auto isBack = [&](std::string_view root) {
    return seen.facts.wasOut(root) && !seen.hasRaised(root);
  };
  const auto isBelow = [&](std::string_view part) {
    return seen.isAt({"interfaces", "*", "output", part, "**"});
  };
  return (isBack("queue") && seen.isAt({"queues", "*", "**"}) &&
          (seen.key(1).empty() || TxQueue::named(seen.facts, seen.key(1)))) ||
         (isBack("forwarding-group") && seen.isAt({"forwarding-groups", "**"})) ||
         (isBack("queue-management") &&
          (isInterface(seen) || seen.isAt({"queue-management-profiles", "**"}) ||
           isBelow("queues"))) ||
         (isBack("scheduler-policy") &&
          (isInterface(seen) || seen.isAt({"scheduler-policies", "**"}) ||
           isBelow("scheduler-policy"))) ||
         (isBack("interface-classifier") &&
          (isInterface(seen) || seen.isAt({"interfaces", "*", "input", "**"})));
}

constexpr unsigned always = Check::order | Check::restart | Check::again | Check::rebuild;
constexpr std::string_view reason =
    "A factory that raises leaves its root out: what it wrote until then, in the order of its "
    "walk, stands, and nothing follows the native side.";

constexpr Exclusion startRows[] = {
    {"what a root left that raised and is back", Check::order | Check::rebuild,
     "What it had written when it raised, in the order of its walk, stayed while nothing followed "
     "the "
     "native side. It goes on from there, as a restart does.",
     isOfReturned},
    {"bindings, when the root of interface classifiers raised", always, reason,
     [](const Seen& seen) {
       return seen.hasRaised("interface-classifier") &&
              (isInterface(seen) || seen.isAt({"interfaces", "*", "config", "**"}) ||
               seen.isAt({"interfaces", "*", "input", "**"}));
     }},
    {"forwarding groups, when their root raised", Check::restart | Check::rebuild, reason,
     [](const Seen& seen) {
       return seen.hasRaised("forwarding-group") && seen.isAt({"forwarding-groups", "**"});
     }},
    {"queues, when their root raised", always, reason,
     [](const Seen& seen) {
       return seen.hasRaised("queue") && seen.isAt({"queues", "*", "**"}) &&
              (seen.key(1).empty() || TxQueue::named(seen.facts, seen.key(1)));
     }},
    {"queue management, when its root raised", always, reason,
     [](const Seen& seen) {
       return seen.hasRaised("queue-management") &&
              (isInterface(seen) || seen.isAt({"queue-management-profiles", "**"}) ||
               seen.isAt({"interfaces", "*", "output", "queues", "**"}));
     }},
    {"scheduler policies, when their root raised", always, reason,
     [](const Seen& seen) {
       return seen.hasRaised("scheduler-policy") &&
              (isInterface(seen) || seen.isAt({"scheduler-policies", "**"}) ||
               seen.isAt({"interfaces", "*", "output", "scheduler-policy", "**"}));
     }},
};

}  // namespace

std::span<const Exclusion> startExclusions() { return startRows; }

}  // namespace days
