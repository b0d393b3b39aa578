// What comments attach to the output of an interface, and PFC.
#include <algorithm>
#include <map>

#include "tests/days/exclusions/Native.h"
#include "tests/days/exclusions/Parts.h"

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
    return queue.isAttached() && queueName(facts, queue.id()) == name;
  });
}
// Whether an id ever had two names, a name ever had two ids, or the map was replaced.
bool namesMoved(const Facts& facts) {
  std::map<std::string, std::set<std::string>> names;
  std::map<std::string, std::set<std::string>> ids;
  for (std::size_t step = 0; step <= facts.now(); ++step) {
    for (const std::string& name : facts.keys(step, {"queue-names"})) {
      const std::string id = std::to_string(facts.find(step, {"queue-names", name})->number());
      names[id].insert(name);
      ids[name].insert(id);
    }
  }
  const auto isShared = [](const auto& entry) { return entry.second.size() > 1; };
  return facts.lastSet({"queue-names"}) > 0 || std::any_of(names.begin(), names.end(), isShared) ||
         std::any_of(ids.begin(), ids.end(), isShared);
}
// Whether the interface ever had both queues of one id.
bool idsShared(const Facts& facts, const std::string& interface) {
  std::set<std::string> ids;
  for (const TxQueue& queue : TxQueue::everOf(facts, interface)) {
    if (!ids.insert(queue.id()).second) return true;
  }
  return false;
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
// Whether the queues of the interface ever disagreed: on a policy, or on whether there is one.
bool policiesDisagree(const Facts& facts, const std::string& interface) {
  for (std::size_t step = 0; step <= facts.now(); ++step) {
    std::set<std::string> policies;
    for (const TxQueue& queue : TxQueue::of(facts, interface, step)) {
      policies.insert(queue.policy(step));
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
// Whether a queue of the interface names a profile, and the names of a running life and those of a
// start may differ for it.
bool isNamedOtherwise(const Facts& facts, const std::string& interface) {
  const auto queues = TxQueue::everOf(facts, interface);
  return std::any_of(queues.begin(), queues.end(), [&](const TxQueue& queue) {
    return queue.everNamedProfile() && (queue.id() == "16" || namesMoved(facts));
  });
}

constexpr Exclusion table[] = {
    {"an output that outlives what stood in it", +Check::rebuild,
     "Only the going of an interface's PFC settings looks whether an output is empty.",
     [](const Seen& seen) {
       return isOutput(seen) && seen.difference.right == "null" &&
              !hasAttachments(seen.facts, seen.key(1)) &&
              !seen.facts.has({"interfaces", seen.key(1), "pfc"});
     }},
    {"an output on which the queues of the interface disagree",
     Check::order | Check::restart | Check::rebuild,
     "A queue that names a policy makes the output, another one clears the policy alone; the going "
     "of PFC settings takes an output without a policy.",
     [](const Seen& seen) { return isOutput(seen) && policiesDisagree(seen.facts, seen.key(1)); }},
    {"an attachment by a name that moved", Check::order | Check::restart | Check::rebuild,
     "Of a name that holds id 16, and of names that share an id, moved or were put in as a whole, "
     "a "
     "start reads what no change tells.",
     [](const Seen& seen) {
       if (!seen.isAt({"interfaces", "*"}) && !isOutput(seen) && !isQueue(seen)) return false;
       return isNamedOtherwise(seen.facts, seen.key(1));
     }},
    {"an attachment that outlives its comment, name or tx queue", +Check::rebuild,
     "Only the tx queue's going ends an attachment, and leaves a blank one.",
     [](const Seen& seen) {
       return isQueue(seen) && seen.difference.right.empty() &&
              !isAttached(seen.facts, seen.key(1), seen.key(4));
     }},
    {"the attachment of two tx queues of one id", Check::order | Check::restart | Check::rebuild,
     "The unicast and the multicast queue of an id share one entry, and the last writer decides.",
     [](const Seen& seen) { return isQueue(seen) && idsShared(seen.facts, seen.key(1)); }},
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

std::span<const Exclusion> attachmentExclusions() { return table; }

}  // namespace days
