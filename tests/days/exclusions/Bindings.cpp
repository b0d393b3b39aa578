// Interfaces and the classifiers at their input.
#include <algorithm>

#include "tests/days/exclusions/Native.h"
#include "tests/days/exclusions/Table.h"

namespace days {
namespace {

// The service policies of derived policy maps that hold the interface now, or did at any time.
std::set<std::string> policies(const Facts& facts, const std::string& interface, bool ever) {
  std::set<std::string> keys;
  for (const std::string& key : facts.everKeys({"service-policies"})) {
    const std::string map = key.substr(key.find(':') + 1);
    if (!PolicyMapName(map).isDerived() && map != "__yang_") continue;
    const host::Tokens place{"service-policies", key, "interfaces", interface};
    if (ever ? facts.everHad(place) : facts.has(place)) keys.insert(key);
  }
  return keys;
}
// Whether it holds the interface without binding it.
bool isUnbound(const Facts& facts, const std::string& policy, const std::string& interface) {
  const host::Value* bound = facts.find({"service-policies", policy, "interfaces", interface});
  return bound != nullptr && !*bound->as<bool>();
}
bool isInput(const Seen& seen) { return seen.isAt({"interfaces", "*", "input", "**"}); }

// The same, or what a binding makes with it.
bool isInterfaceInput(const Seen& seen) {
  return isInput(seen) || seen.isAt({"interfaces", "*"}) ||
         seen.isAt({"interfaces", "*", "config", "**"});
}
// Whether the policy's policy map ever had another key tag.
bool isTwice(const Facts& facts, const std::string& policy) {
  const std::string map = policy.substr(policy.find(':'));
  const auto all = facts.everKeys({"service-policies"});
  return std::any_of(all.begin(), all.end(), [&](const std::string& other) {
    return other != policy && other.substr(other.find(':')) == map;
  });
}

// Whether anything native would make the interface.
bool isMade(const Facts& facts, const std::string& interface) {
  if (!policies(facts, interface, false).empty()) return true;
  if (facts.has({"interfaces", interface, "pfc"})) return true;
  const auto queues = TxQueue::of(facts, interface, facts.now());
  return std::any_of(queues.begin(), queues.end(), [](const TxQueue& queue) {
    return !queue.policy().empty() || queue.isAttached();
  });
}

constexpr Exclusion bindingRows[] = {
    {"an interface that nothing makes any more", +Check::rebuild, "An interface, once made, stays.",
     [](const Seen& seen) {
       return seen.isAt({"interfaces", "*"}) && seen.difference.right.empty() &&
              !isMade(seen.facts, seen.key(1));
     }},
    {"the id of an interface that no service policy holds any more", +Check::rebuild,
     "The binding writes it, and nothing takes it back.",
     [](const Seen& seen) {
       return seen.isAt({"interfaces", "*", "config", "interface-id"}) &&
              seen.difference.right == R"("")" && policies(seen.facts, seen.key(1), false).empty();
     }},
    {"the input of an interface with several service policies",
     Check::order | Check::restart | Check::again | Check::rebuild,
     "Each writes its own families, the last one stands, and one that goes takes only exactly what "
     "it would have written.",
     [](const Seen& seen) {
       return isInput(seen) && policies(seen.facts, seen.key(1), true).size() > 1;
     }},
    {"the input of an interface whose policy map has two key tags",
     Check::order | Check::restart | Check::again | Check::rebuild,
     "Service policies are known by the policy map's name alone: the second one is refused, and "
     "either one's going takes the first one's machine.",
     [](const Seen& seen) {
       if (!isInterfaceInput(seen)) return false;
       const auto holders = policies(seen.facts, seen.key(1), true);
       return std::any_of(holders.begin(), holders.end(),
                          [&](const std::string& policy) { return isTwice(seen.facts, policy); });
     }},
    {"the input of an interface that a service policy holds without binding it",
     Check::restart | Check::rebuild,
     "A start binds what it finds; only a change is asked whether the interface is bound.",
     [](const Seen& seen) {
       if (!isInterfaceInput(seen)) return false;
       const auto holders = policies(seen.facts, seen.key(1), false);
       return std::any_of(holders.begin(), holders.end(), [&](const std::string& policy) {
         return isUnbound(seen.facts, policy, seen.key(1));
       });
     }},
};

}  // namespace

std::span<const Exclusion> bindingExclusions() { return bindingRows; }

}  // namespace days
