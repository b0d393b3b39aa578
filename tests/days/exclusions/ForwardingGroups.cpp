// Forwarding groups and named queues: their root reads all names once, and then follows the array.
#include <algorithm>

#include "tests/days/exclusions/Native.h"
#include "tests/days/exclusions/Table.h"

namespace days {
namespace {

const host::Tokens groups{"forwarding-groups"};
const host::Tokens queueNames{"queue-names"};

bool isGroup(const Seen& seen) { return seen.isAt({"forwarding-groups", "*"}); }
bool isNamedQueue(const Seen& seen) {
  if (!seen.isAt({"queues", "*", "**"})) return false;
  return seen.facts.everHad(below(queueNames, seen.key(1)));
}
// The traffic class of a group as its root knows it.
std::string trafficClass(const Facts& facts, const std::string& group) {
  return std::to_string(facts.find(0, below(groups, group))->number());
}
// Whether the root knows the group, and that under the class that it has now.
bool isKnown(const Facts& facts, const std::string& group) {
  const host::Value* then = facts.find(0, below(groups, group));
  const host::Value* now = facts.find(below(groups, group));
  return then != nullptr && now != nullptr && *then == *now;
}
// Whether a later name has the same traffic class: the array's changes reach only the last one.
bool isHidden(const Facts& facts, const std::string& group) {
  const auto names = facts.keys(0, groups);
  return std::any_of(names.begin(), names.end(), [&](const std::string& other) {
    return other > group && trafficClass(facts, other) == trafficClass(facts, group);
  });
}
// Whether the queue of the group's slot had another name when the names were read.
bool isRenamed(const Facts& facts, const std::string& group) {
  if (!facts.has(below(groups, group))) return false;
  const std::string tc = std::to_string(facts.find(below(groups, group))->number());
  const host::Value* slot = facts.find({"tc-to-tx-queue", tc});
  if (slot == nullptr) return false;
  const std::string id = std::to_string(slot->number());
  return queueName(facts, id, 0) != queueName(facts, id, facts.now());
}

constexpr Exclusion forwardingGroupRows[] = {
    {"a forwarding group named after the start", Check::restart | Check::rebuild,
     "The names are read once.",
     [](const Seen& seen) {
       return isGroup(seen) && seen.difference.left.empty() && !isKnown(seen.facts, seen.key(1));
     }},
    {"a forwarding group whose traffic class has no queue", Check::restart | Check::rebuild,
     "A class that loses its queue loses its group; at a start the group stands without a queue.",
     [](const Seen& seen) {
       if (!isGroup(seen) || !seen.difference.left.empty()) return false;
       if (!isKnown(seen.facts, seen.key(1))) return false;
       const host::Value* slot =
           seen.facts.find({"tc-to-tx-queue", trafficClass(seen.facts, seen.key(1))});
       return slot == nullptr || slot->number() == 16;
     }},
    {"the forwarding group with the empty name", Check::restart | Check::rebuild,
     "A class without a group has the empty name, and its change removes the group that bears it.",
     [](const Seen& seen) {
       return seen.isAt({"forwarding-groups", ""}) && seen.difference.left.empty();
     }},
    {"a forwarding group that nothing names any more", +Check::rebuild,
     "The names are read once, and what an earlier life left stays.",
     [](const Seen& seen) {
       return isGroup(seen) && seen.difference.right.empty() &&
              !seen.facts.has(below(groups, seen.key(1)));
     }},
    {"the queue of a forwarding group whose names changed", Check::restart | Check::rebuild,
     "Group names and queue names are read once; the array alone is followed, for the last group "
     "of a class.",
     [](const Seen& seen) {
       if (!seen.isAt({"forwarding-groups", "*", "output-queue"})) return false;
       return !isKnown(seen.facts, seen.key(1)) || isHidden(seen.facts, seen.key(1)) ||
              isRenamed(seen.facts, seen.key(1));
     }},
    {"a queue named after the start", Check::restart | Check::rebuild, "The names are read once.",
     [](const Seen& seen) {
       return isNamedQueue(seen) && seen.difference.left.empty() &&
              seen.facts.find(0, below(queueNames, seen.key(1))) == nullptr;
     }},
    {"a named queue that nothing names any more", +Check::rebuild,
     "The names are read once, and what an earlier life left stays.",
     [](const Seen& seen) {
       return isNamedQueue(seen) && seen.difference.right.empty() &&
              !seen.facts.has(below(queueNames, seen.key(1)));
     }},
    {"a queue named like an interface's queue", Check::restart | Check::rebuild,
     "Two roots keep queues in one directory: the one writes named queues blank at its start, the "
     "other one writes and removes its own.",
     [](const Seen& seen) {
       return isNamedQueue(seen) && seen.key(1).find("cast-") != std::string::npos;
     }},
};

}  // namespace

std::span<const Exclusion> forwardingGroupExclusions() { return forwardingGroupRows; }

}  // namespace days
