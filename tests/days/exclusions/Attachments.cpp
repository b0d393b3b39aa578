// What comments attach to the output of an interface, and PFC.
#include <algorithm>
#include <map>

#include "tests/days/exclusions/Native.h"
#include "tests/days/exclusions/Table.h"

namespace days {
namespace {

// ===== Queue-management profiles

bool isQueue(const Seen& seen) {
  return seen.isAt({"interfaces", "*", "output", "queues", "*", "**"});
}
// Whether a start would attach something under this name.
bool isAttached(const Facts& facts, const std::string& interface, const std::string& name) {
  const auto queues = TxQueue::of(facts, interface, facts.now());
  return std::any_of(queues.begin(), queues.end(), [&](const TxQueue& queue) {
    return queue.isAttached() && queueName(facts, queue.id(), facts.now()) == name;
  });
}
// All names that an id had at any time, or all ids that a name had.
std::set<std::string> everNames(const Facts& facts, const std::string& id) {
  std::set<std::string> names;
  for (std::size_t step = 0; step <= facts.now(); ++step) {
    for (const std::string& name : facts.keys(step, {"queue-names"})) {
      if (std::to_string(facts.find(step, {"queue-names", name})->number()) == id)
        names.insert(name);
    }
  }
  return names;
}
std::set<std::string> everIds(const Facts& facts, const std::string& name) {
  std::set<std::string> ids;
  for (std::size_t step = 0; step <= facts.now(); ++step) {
    const host::Value* id = facts.find(step, {"queue-names", name});
    if (id != nullptr) ids.insert(std::to_string(id->number()));
  }
  return ids;
}
// Whether what a running life takes for the name of an id may be another one than a start's.
bool nameMoved(const Facts& facts, const std::string& id) {
  const std::set<std::string> names = everNames(facts, id);
  return id == "16" || names.size() > 1 || facts.lastSet({"queue-names"}) > 0 ||
         std::any_of(names.begin(), names.end(),
                     [&](const std::string& name) { return everIds(facts, name).size() > 1; });
}
// Whether the interface ever had both queues of an id that ever had this name.
bool isShared(const Facts& facts, const std::string& interface, const std::string& name) {
  std::set<std::string> ids;
  for (const TxQueue& queue : TxQueue::everOf(facts, interface)) {
    const bool isSecond = !ids.insert(queue.id()).second;
    if (isSecond && everNames(facts, queue.id()).contains(name)) return true;
  }
  return false;
}
// Whether a queue of the interface named a profile under a name that moved; with `name`, under that
// one.
bool isNamedOtherwise(const Facts& facts, const std::string& interface,
                      const std::string& name = "") {
  const auto queues = TxQueue::everOf(facts, interface);
  return std::any_of(queues.begin(), queues.end(), [&](const TxQueue& queue) {
    return queue.everNamedProfile() && nameMoved(facts, queue.id()) &&
           (name.empty() || everNames(facts, queue.id()).contains(name));
  });
}

// ===== Scheduler policies

bool isPolicy(const Seen& seen) {
  return seen.isAt({"interfaces", "*", "output", "scheduler-policy", "**"});
}
// Whether a queue of the interface names a policy now.
bool namesPolicy(const Facts& facts, const std::string& interface) {
  const auto queues = TxQueue::of(facts, interface, facts.now());
  return std::any_of(queues.begin(), queues.end(),
                     [](const TxQueue& queue) { return !queue.policy().empty(); });
}
// Whether the queues of the interface ever disagreed: on a policy, or on whether there is one. They
// may have between two operations of a line, where some see the comments of before and some those
// of after.
bool policiesDisagree(const Facts& facts, const std::string& interface) {
  for (std::size_t step = 0; step <= facts.now(); ++step) {
    const auto queues = TxQueue::of(facts, interface, step);
    std::set<std::string> policies;
    for (const TxQueue& queue : queues) {
      policies.insert(queue.policy(step));
      if (queues.size() > 1 && facts.operations(step) > 1) policies.insert(queue.policy(step - 1));
    }
    if (policies.size() > 1) return true;
  }
  return false;
}

// ===== Whole outputs

bool isOutput(const Seen& seen) { return seen.isAt({"interfaces", "*", "output"}); }
// Whether a start would attach anything to the interface.
bool hasAttachments(const Facts& facts, const std::string& interface) {
  if (namesPolicy(facts, interface)) return true;
  const auto queues = TxQueue::of(facts, interface, facts.now());
  return std::any_of(queues.begin(), queues.end(),
                     [](const TxQueue& queue) { return queue.isAttached(); });
}

constexpr Exclusion attachmentRows[] = {
    {"an output that outlives what stood in it", +Check::rebuild,
     "Only the going of an interface looks whether its output is empty.",
     [](const Seen& seen) {
       return isOutput(seen) && seen.difference.right == "null" &&
              !hasAttachments(seen.facts, seen.key(1)) &&
              !seen.facts.has({"interfaces", seen.key(1), "pfc"});
     }},
    {"an output on which the queues of the interface disagree",
     Check::order | Check::restart | Check::rebuild,
     "A queue that names a policy makes the output, another one clears the policy alone; the going "
     "of the interface takes an output without queues and policy.",
     [](const Seen& seen) { return isOutput(seen) && policiesDisagree(seen.facts, seen.key(1)); }},
    {"an attachment by a name that moved", Check::order | Check::restart | Check::rebuild,
     "A name moves and its old id keeps it; of several names a start takes the last in order and a "
     "running life the last that came; no change tells of a name with id 16, or of a new map.",
     [](const Seen& seen) {
       if (isQueue(seen)) return isNamedOtherwise(seen.facts, seen.key(1), seen.key(4));
       return (seen.isAt({"interfaces", "*"}) || isOutput(seen)) &&
              isNamedOtherwise(seen.facts, seen.key(1));
     }},
    {"an attachment that outlives its comment, name or tx queue", +Check::rebuild,
     "Only the tx queue's going ends an attachment, and leaves a blank one.",
     [](const Seen& seen) {
       return isQueue(seen) && seen.difference.right.empty() &&
              !isAttached(seen.facts, seen.key(1), seen.key(4));
     }},
    {"the attachment of two tx queues of one id", Check::order | Check::restart | Check::rebuild,
     "The unicast and the multicast queue of an id share one entry, and the last writer decides.",
     [](const Seen& seen) {
       return isQueue(seen) && isShared(seen.facts, seen.key(1), seen.key(4));
     }},
    {"a policy that nothing names any more", Check::restart | Check::rebuild,
     "A comment, a tx queue or an interface that goes leaves the attachment to the next evaluation "
     "or start.",
     [](const Seen& seen) {
       return isPolicy(seen) && seen.difference.right == "null" &&
              !namesPolicy(seen.facts, seen.key(1));
     }},
    {"a policy on which the queues of the interface disagree",
     Check::order | Check::restart | Check::rebuild,
     "Each evaluation of a queue decides for the whole interface: at a start in the order of the "
     "walk, later in that of events.",
     [](const Seen& seen) { return isPolicy(seen) && policiesDisagree(seen.facts, seen.key(1)); }},
    {"PFC settings without a port record", +Check::rebuild,
     "They stay when the port record goes; only the interface's going blanks them.",
     [](const Seen& seen) {
       return seen.isAt({"interfaces", "*", "output", "pfc", "**"}) &&
              !seen.facts.has({"interfaces", seen.key(1), "pfc"});
     }},
};

}  // namespace

std::span<const Exclusion> attachmentExclusions() { return attachmentRows; }

}  // namespace days
