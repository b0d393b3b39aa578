// Queues of interfaces: a tx queue's settings and its comment arbitrate, and their order shows.
#include "tests/days/exclusions/Native.h"
#include "tests/days/exclusions/Table.h"

namespace days {
namespace {

// The tx queue of the place, if it is there natively.
std::optional<TxQueue> txQueue(const Seen& seen) {
  if (!seen.isAt({"queues", "*", "**"})) return std::nullopt;
  auto queue = TxQueue::named(seen.facts, seen.key(1));
  return queue && seen.facts.has(queue->place()) ? queue : std::nullopt;
}
bool isConfig(const Seen& seen) { return seen.isAt({"queues", "*", "config", "**"}); }

constexpr Exclusion queueRows[] = {
    {"a queue whose machine raised", Check::order | Check::restart | Check::rebuild,
     "A value that the model refuses leaves the record as it was, also when a comment's going has "
     "the queue read; a machine that raises in its constructor is not there: nothing follows that "
     "queue, or that interface.",
     [](const Seen& seen) {
       if (!seen.isAt({"queues", "*", "**"})) return false;
       const auto queue = TxQueue::named(seen.facts, seen.key(1));
       // The walk of an interface's queues ends at the one that raises.
       if (seen.key(1).empty()) {
         return seen.check == Check::order && seen.facts.everRaisedAbout({"interfaces"});
       }
       if (!queue) return false;
       // What it wrote before it raised stays, also when the tx queue goes and comes back.
       return seen.facts.everRaisedAbout(queue->place()) ||
              seen.facts.everRaisedAbout(queue->commentPlace());
     }},
    {"the record with the empty name", Check::restart | Check::rebuild,
     "It is what a tx queue with nothing configured writes while its comment names a profile alone "
     "and it has no record yet. Nothing removes it.",
     [](const Seen& seen) {
       return seen.isAt({"queues", ""}) &&
              (seen.difference.left.empty() || seen.check == Check::rebuild);
     }},
    {"a queue that a start would not make", +Check::rebuild,
     "Under a comment that names a profile a tx queue makes no record, unless it has settings that "
     "no policy speaks for; one that it had before stays.",
     [](const Seen& seen) {
       const auto queue = txQueue(seen);
       return queue && seen.isAt({"queues", "*"}) && seen.difference.right.empty() &&
              !queue->profile().empty() && (!queue->policy().empty() || !queue->isConfigured());
     }},
    {"a queue that its comment kept from being made", Check::restart | Check::rebuild,
     "A comment that names a profile, and then a policy or a policy no longer, makes no record.",
     [](const Seen& seen) {
       const auto queue = txQueue(seen);
       return queue && seen.isAt({"queues", "*"}) && seen.difference.left.empty() &&
              queue->everNamedProfile() && (!queue->profile().empty() || !queue->policy().empty());
     }},
    {"the name of a queue with nothing configured", Check::restart | Check::rebuild,
     "An ECN block gives the config its name; the name goes with the next change of the settings, "
     "not with the block.",
     [](const Seen& seen) {
       const auto queue = txQueue(seen);
       return queue && seen.isAt({"queues", "*", "config", "name"}) && !queue->isConfigured();
     }},
    {"the name of a queue under a policy's comment", Check::restart | Check::rebuild,
     "The comment's arrival clears the whole config, its name too, which only an ECN block brings "
     "back.",
     [](const Seen& seen) {
       const auto queue = txQueue(seen);
       return queue && seen.isAt({"queues", "*", "config", "name"}) && !queue->policy().empty();
     }},
    {"the config of a queue whose comment named a policy before", Check::restart | Check::rebuild,
     "A comment that now names a profile alone doesn't bring the config back.",
     [](const Seen& seen) {
       const auto queue = txQueue(seen);
       return queue && isConfig(seen) && queue->policy().empty() && !queue->profile().empty() &&
              queue->everNamedPolicy();
     }},
    {"the ECN block of a queue whose comment named a profile before",
     Check::restart | Check::rebuild,
     "A comment that now names a policy alone doesn't bring the block back.",
     [](const Seen& seen) {
       const auto queue = txQueue(seen);
       return queue && seen.isAt({"queues", "*", "ecn-config"}) && seen.difference.left == "null" &&
              !queue->policy().empty() && queue->profile().empty() && queue->everNamedProfile();
     }},
};

}  // namespace

std::span<const Exclusion> queueExclusions() { return queueRows; }

}  // namespace days
