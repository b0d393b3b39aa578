// Classifiers and their terms: three roots write them, in the order of events.
#include <algorithm>
#include <set>
#include <string>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/days/exclusions/Native.h"
#include "tests/days/exclusions/Table.h"

namespace days {
namespace {

using host::Tokens;

constexpr std::string_view blankActions = R"({"target-group":""})";
constexpr std::string_view freshConditions =
    R"({"ipv4":{"dscp":null,"dscp-set":[]},"ipv6":{"dscp":null,"dscp-set":[]}})";

// A classifier, or one of its terms, and what makes it.
class Classifier {
 public:
  explicit Classifier(const Seen& seen)
      : facts_(seen.facts),
        name_(seen.key(1)),
        term_(seen.isAt({"classifiers", "*", "terms", "*", "**"}) ? seen.key(3) : "") {}

  // ===== Names

  static std::string nameOf(const std::string& classifier, const std::string& term) {
    return "__yang_[" + classifier + "]_[" + term + "]";
  }
  Tokens placeholder() const { return {"class-maps", "1", nameOf(name_, "")}; }
  Tokens classMap() const { return {"class-maps", "1", nameOf(name_, term_)}; }
  Tokens acl(const std::string& family) const {
    return {"access-lists", family, nameOf(name_, term_)};
  }
  Tokens rules(const std::string& family) const { return below(acl(family), "rules"); }
  // The class of this term in a policy map.
  Tokens action(const std::string& policyMap) const {
    return {"policy-maps", "1", policyMap, "classes", nameOf(name_, term_)};
  }
  Tokens setTrafficClass(const std::string& policyMap) const {
    return below(below(action(policyMap), "actions"), "4");
  }

  // ===== Makers

  bool isOf(const std::string& policyMap) const {
    const PolicyMapName decoded(policyMap);
    return name_ == decoded.ipv4 || name_ == decoded.ipv6;
  }
  std::vector<std::string> policyMaps() const {
    std::vector<std::string> derived;
    for (const std::string& name : facts_.everKeys({"policy-maps", "1"})) {
      if (PolicyMapName(name).isDerived()) derived.push_back(name);
    }
    return derived;
  }
  template <class Test>
  bool anyPolicyMap(const Test& test) const {
    const auto maps = policyMaps();
    return std::any_of(maps.begin(), maps.end(), test);
  }
  bool isMatched(const Tokens& classMap) const {
    const host::Value* found = facts_.find(classMap);
    return found != nullptr && !found->at("match").list().empty();
  }
  bool hasRules(const std::string& family) const { return !facts_.keys(rules(family)).empty(); }
  // Whether anything native would make this term, or a term of this classifier, or it itself.
  bool termIsMade() const {
    if (isMatched(classMap()) || hasRules("ipv4") || hasRules("ipv6")) return true;
    return anyPolicyMap([&](const std::string& map) { return facts_.has(action(map)); });
  }
  bool isMade() const {
    return anyPolicyMap([&](const std::string& map) {
             return isOf(map) && facts_.has({"policy-maps", "1", map});
           }) ||
           isMatched(placeholder()) ||
           anyTerm([](const Classifier& term) { return term.termIsMade(); });
  }
  template <class Test>
  bool anyTerm(const Test& test) const {
    const std::set<std::string> terms = termsEver();
    return std::any_of(terms.begin(), terms.end(), [&](const std::string& term) {
      Classifier other = *this;
      other.term_ = term;
      return test(other);
    });
  }

  // ===== History

  // Whether the term was taken out of the model, or could have been, and wasn't told of since by
  // what `last` tells.
  bool isDroppedSince(std::size_t last) const { return gone() > 0 && gone() >= last; }
  // Whether the term isn't there, for what this life did and what it was told.
  bool isMissing() const { return (gone() > 0 || isSweptAtStart()) && gone() >= lastMade(); }
  bool isClassifierMissing() const {
    const std::size_t last = facts_.lastGone(placeholder());
    if (last == 0 && !isSweptAtStart()) return false;
    if (isMatched(placeholder()) && facts_.lastTold(placeholder()) > last) return false;
    const bool isMadeAnew = anyPolicyMap([&](const std::string& map) {
      return isOf(map) && facts_.lastPut({"policy-maps", "1", map}) > last;
    });
    return !isMadeAnew && !anyTerm([&](const Classifier& term) { return term.lastMade() > last; });
  }
  // Whether a class of this term stands of which a machine said that it has another one.
  bool wasClassRefused() const {
    return anyPolicyMap([&](const std::string& map) { return facts_.raisedAbout(action(map)); });
  }
  // Without its placeholder the start's own sweep takes the classifier.
  bool isSweptAtStart() const { return facts_.find(0, placeholder()) == nullptr; }
  std::size_t lastOfAcl() const {
    return std::max(facts_.lastTold(acl("ipv4")), facts_.lastTold(acl("ipv6")));
  }
  // An action without a target writes nothing into a term that isn't there.
  std::size_t lastOfActions() const {
    std::size_t last = 0;
    for (const std::string& map : policyMaps()) {
      last = std::max(
          last, target(map).empty() ? facts_.lastPut(action(map)) : facts_.lastTold(action(map)));
    }
    return last;
  }
  // The last step at which anything made the term: a class map without a match statement, an ACL
  // without rules and an action without a target make nothing.
  std::size_t lastMade() const {
    std::size_t last = lastOfActions();
    if (isMatched(classMap())) last = std::max(last, facts_.lastTold(classMap()));
    for (const std::string family : {"ipv4", "ipv6"}) {
      if (hasRules(family)) last = std::max(last, facts_.lastTold(acl(family)));
    }
    return last;
  }
  // The forwarding group to which a policy map sends the term, now or at a step; empty when it
  // sends it nowhere.
  std::string target(const std::string& map) const { return targetAt(facts_.now(), map); }
  std::string targetAt(std::size_t step, const std::string& map) const {
    const host::Value* trafficClass = facts_.find(step, setTrafficClass(map));
    if (trafficClass == nullptr) return "";
    std::set<std::string> names;
    for (const std::string& name : facts_.keys(step, {"forwarding-groups"})) {
      const host::Value* tc = facts_.find(step, {"forwarding-groups", name});
      if (*tc == *trafficClass) names.insert(name);
    }
    return names.empty() ? "" : *names.begin();
  }
  // Whether the action's value was set behind the last change of a group, when before it had lost
  // its target.
  bool hasNoMachine(const std::string& map) const {
    const std::size_t lost = lastOfGroups();
    const auto isAimless = [&](std::size_t step) {
      return facts_.find(step, setTrafficClass(map)) != nullptr && targetAt(step, map).empty();
    };
    const std::size_t last = facts_.lastSet(setTrafficClass(map));
    // Between two operations of one line anything may have stood.
    return lost > 0 && (last == lost || (last > lost && (isAimless(lost) || isAimless(lost - 1))));
  }
  bool groupsWereReplaced() const {
    const std::size_t last = facts_.lastSet({"forwarding-groups"});
    return last > 0 && last >= lastOfGroups() && last >= lastOfActions();
  }
  // The families that wrote the classifier's type at some time, or at a step.
  std::set<std::string> types() const {
    std::set<std::string> all;
    for (std::size_t step = 0; step <= facts_.now(); ++step) all.merge(types(step));
    return all;
  }
  std::set<std::string> types(std::size_t step) const {
    std::set<std::string> all = classMapTypes(step);
    typesAt(step, all);
    return all;
  }
  // Those of class maps alone.
  std::set<std::string> classMapTypes(std::size_t step) const {
    std::set<std::string> all;
    const auto add = [&](const Tokens& classMap) {
      const host::Value* found = facts_.find(step, classMap);
      if (found == nullptr) return;
      for (const host::Value& option : found->at("match").list()) {
        all.insert(option.number() == 2 ? "ipv6" : "ipv4");
      }
    };
    add(placeholder());
    for (const std::string& term : termsEver()) {
      add({"class-maps", "1", nameOf(name_, term)});
    }
    return all;
  }
  bool typesDisagree() const { return types().size() > 1; }
  bool classMapsDisagree() const {
    for (std::size_t step = 0; step <= facts_.now(); ++step) {
      if (classMapTypes(step).size() > 1) return true;
    }
    return false;
  }

 private:
  std::set<std::string> termsEver() const {
    std::set<std::string> terms;
    const auto add = [&](const std::string& name) {
      const auto [classifier, term] = QosOc::classifierKeyFromConfigObjName(name);
      if (classifier == name_.c_str()) terms.insert(std::string(std::string_view(term)));
    };
    for (const Tokens& all : {Tokens{"class-maps", "1"}, Tokens{"access-lists", "ipv4"},
                              Tokens{"access-lists", "ipv6"}}) {
      for (const std::string& name : facts_.everKeys(all)) add(name);
    }
    for (const std::string& map : policyMaps()) {
      for (const std::string& name : facts_.everKeys({"policy-maps", "1", map, "classes"})) {
        add(name);
      }
    }
    return terms;
  }
  // The last step at which the term was taken out, by the going of its placeholder, class map or
  // class; a policy map that goes takes no terms along.
  std::size_t gone() const {
    std::size_t last = std::max(facts_.lastGone(placeholder()), facts_.lastGone(classMap()));
    for (const std::string& map : policyMaps()) {
      last =
          std::max(last, facts_.lastGone(action(map), Tokens{"policy-maps", "1", map}.size() + 1));
    }
    return last;
  }
  std::size_t lastOfGroups() const {
    std::size_t last = 0;
    for (const std::string& name : facts_.everKeys({"forwarding-groups"})) {
      last = std::max(last, facts_.lastSet({"forwarding-groups", name}));
    }
    return last;
  }
  void typesAt(std::size_t step, std::set<std::string>& types) const {
    for (const std::string& term : termsEver()) {
      Classifier other = *this;
      other.term_ = term;
      for (const std::string family : {"ipv4", "ipv6"}) {
        if (!facts_.keys(step, other.rules(family)).empty()) types.insert(family);
      }
      for (const std::string& map : policyMaps()) {
        if (facts_.find(step, other.action(map)) == nullptr) continue;
        types.insert(PolicyMapName(map).ipv4 == name_ ? "ipv4" : "ipv6");
      }
    }
    for (const std::string& map : policyMaps()) {
      if (facts_.find(step, {"policy-maps", "1", map}) == nullptr) continue;
      if (PolicyMapName(map).ipv4 == name_) types.insert("ipv4");
      if (PolicyMapName(map).ipv6 == name_) types.insert("ipv6");
    }
  }

  const Facts& facts_;
  std::string name_;
  std::string term_;
};

bool isTerm(const Seen& seen) { return seen.isAt({"classifiers", "*", "terms", "*"}); }
bool isConditions(const Seen& seen) {
  return seen.isAt({"classifiers", "*", "terms", "*", "conditions", "**"});
}
bool isActions(const Seen& seen) {
  return seen.isAt({"classifiers", "*", "terms", "*", "actions", "**"});
}

// Whether it is a term, or a part of one that neither a rule nor a class would fill.
bool isUnread(const Seen& seen) {
  if (isTerm(seen)) return true;
  const Classifier term(seen);
  if (isConditions(seen)) return !term.hasRules("ipv4") && !term.hasRules("ipv6");
  if (!isActions(seen)) return false;
  return !term.anyPolicyMap(
      [&](const std::string& map) { return seen.facts.has(term.setTrafficClass(map)); });
}
// Whether a value of the place is what reset conditions hold there.
bool isFresh(const Seen& seen, const std::string& value) {
  const std::string& last = seen.difference.place.back();
  if (last == "dscp") return value == "null";
  if (last == "dscp-set") return value == "[]";
  return value == freshConditions;
}
bool isBlank(const Seen& seen) {
  return seen.difference.right == blankActions || seen.difference.right == R"("")";
}
// Whether single rules came, changed or went since the rules were put in as a whole.
bool rulesChanged(const Seen& seen, const std::string& family) {
  const Tokens rules = Classifier(seen).rules(family);
  const auto sequences = seen.facts.everKeys(rules);
  return std::any_of(sequences.begin(), sequences.end(), [&](const std::string& sequence) {
    return seen.facts.lastSet(below(rules, sequence)) > seen.facts.lastPut(rules);
  });
}

constexpr Exclusion classifierRows[] = {
    // ===== Existence

    {"a classifier without its placeholder", Check::restart | Check::rebuild,
     "The sweep deletes it with its terms, and only the roots built behind it make it again, from "
     "what they read.",
     [](const Seen& seen) {
       if (!seen.isAt({"classifiers", "*", "**"})) return false;
       const Classifier classifier(seen);
       if (seen.facts.has(classifier.placeholder())) return false;
       return seen.isAt({"classifiers", "*"}) || seen.isAt({"classifiers", "*", "terms"}) ||
              seen.isAt({"classifiers", "*", "config", "type"}) || isUnread(seen);
     }},
    {"a term without its class map", Check::restart | Check::rebuild,
     "The sweep deletes it, and only the roots built behind it make it again, from what they read.",
     [](const Seen& seen) {
       return isUnread(seen) && !seen.facts.has(Classifier(seen).classMap());
     }},
    {"a classifier that nothing makes any more", +Check::rebuild,
     "Only its placeholder's going removes a classifier: it outlives match statements, ACLs and "
     "policy maps.",
     [](const Seen& seen) {
       return seen.isAt({"classifiers", "*"}) && seen.difference.right.empty() &&
              !Classifier(seen).isMade();
     }},
    {"a term that nothing makes any more", +Check::rebuild,
     "Only its placeholder's, its class map's or its class's going removes a term: it outlives "
     "match statements and rules.",
     [](const Seen& seen) {
       return isTerm(seen) && seen.difference.right.empty() && !Classifier(seen).termIsMade();
     }},
    {"a classifier that went with its placeholder", Check::restart | Check::rebuild,
     "The placeholder takes the classifier along, whoever else keeps it; it comes back with the "
     "next event of one of these.",
     [](const Seen& seen) {
       return seen.isAt({"classifiers", "*"}) && seen.difference.left.empty() &&
              Classifier(seen).isClassifierMissing();
     }},
    {"a term that went with its classifier, class map or class", Check::restart | Check::rebuild,
     "Each of the three takes the term along, whoever else keeps it; it comes back with the next "
     "event of one of these.",
     [](const Seen& seen) {
       if (!isTerm(seen) || !seen.difference.left.empty()) return false;
       const Classifier term(seen);
       return term.isMissing();
     }},

    // ===== The type

    {"the type of a classifier whose makers disagree", Check::restart | Check::rebuild,
     "Class maps, ACLs and policy maps all write it: the last writer's type stands.",
     [](const Seen& seen) {
       return seen.isAt({"classifiers", "*", "config", "type"}) && Classifier(seen).typesDisagree();
     }},
    {"the type of a classifier whose class maps disagree", +Check::order,
     "Class maps and their match statements are read in the order of the walk, and the last one's "
     "type stands.",
     [](const Seen& seen) {
       return seen.isAt({"classifiers", "*", "config", "type"}) &&
              Classifier(seen).classMapsDisagree();
     }},

    // ===== Conditions

    {"the conditions that the sweep resets", Check::restart | Check::rebuild,
     "The sweep of the classifier's family wipes the conditions of a term without an ACL of that "
     "family, also of a term that never had any.",
     [](const Seen& seen) {
       if (!isConditions(seen) || !isFresh(seen, seen.difference.right)) return false;
       const Classifier term(seen);
       const std::set<std::string> types = term.types();
       return std::any_of(types.begin(), types.end(),
                          [&](const std::string& type) { return !seen.facts.has(term.acl(type)); });
     }},
    {"the conditions that the sweep of the other family reset", Check::restart | Check::rebuild,
     "An ACL of one term may turn its classifier's type just before that family's sweep, which "
     "wipes the terms that have their ACLs in the other one.",
     [](const Seen& seen) {
       if (!isConditions(seen) || !isFresh(seen, seen.difference.left)) return false;
       const Classifier term(seen);
       return term.types(0).size() > 1 && term.lastOfAcl() == 0 &&
              (seen.facts.find(0, term.acl("ipv4")) == nullptr ||
               seen.facts.find(0, term.acl("ipv6")) == nullptr);
     }},
    {"the conditions that the sweep of a later type resets", +Check::again,
     "A policy map turns the classifier's type behind the sweeps of its start, and only at the "
     "next "
     "one is it the sweep of that type's family that wipes a term without such an ACL.",
     [](const Seen& seen) {
       if (!isConditions(seen) || !isFresh(seen, seen.difference.right)) return false;
       const Classifier term(seen);
       const std::set<std::string> types = term.types();
       return term.typesDisagree() &&
              std::any_of(types.begin(), types.end(),
                          [&](const std::string& type) { return !seen.facts.has(term.acl(type)); });
     }},
    {"the conditions that a sweep of the other family would reset", +Check::order,
     "The type decides which family's sweep resets them.",
     [](const Seen& seen) {
       return isConditions(seen) && Classifier(seen).classMapTypes(0).size() > 1;
     }},
    {"the conditions of a term that a class made behind the sweep",
     Check::restart | Check::again | Check::rebuild,
     "The root of classes is built behind that of ACLs, which finds such a term, or the type that "
     "it gives the classifier, only when it lives or at the next start.",
     [](const Seen& seen) {
       if (!seen.isAt({"classifiers", "*", "terms", "*", "conditions"})) return false;
       const auto& [place, left, right] = seen.difference;
       if (!(left == "null" && right == freshConditions) &&
           !(left == freshConditions && right == "null")) {
         return false;
       }
       const Classifier term(seen);
       if (seen.check == Check::again && term.typesDisagree()) return true;
       return term.anyPolicyMap(
           [&](const std::string& map) { return seen.facts.has(term.action(map)); });
     }},
    {"the values of an ACL whose rules changed", Check::restart | Check::rebuild,
     "They only grow, in the order of arrival, until its rules are put in anew as a whole or a "
     "start reads them in the order of their numbers.",
     [](const Seen& seen) {
       return isConditions(seen) && (rulesChanged(seen, "ipv4") || rulesChanged(seen, "ipv6"));
     }},
    {"the conditions of an ACL whose rules went", +Check::rebuild,
     "They stay when the rules go as a whole; an ACL that goes leaves them reset.",
     [](const Seen& seen) {
       if (!isConditions(seen) || seen.difference.right != "null") return false;
       const Classifier term(seen);
       if (seen.facts.has(term.rules("ipv4")) || seen.facts.has(term.rules("ipv6"))) return false;
       return seen.facts.everHad(term.acl("ipv4")) || seen.facts.everHad(term.acl("ipv6")) ||
              seen.difference.left == freshConditions;
     }},
    {"the conditions of an ACL without a rule", Check::restart | Check::rebuild,
     "Its start resets the conditions of a term that is there; a term that comes later has none.",
     [](const Seen& seen) {
       if (!isConditions(seen) || !isFresh(seen, seen.difference.right)) return false;
       const Classifier term(seen);
       return (seen.facts.has(term.rules("ipv4")) && !term.hasRules("ipv4")) ||
              (seen.facts.has(term.rules("ipv6")) && !term.hasRules("ipv6"));
     }},
    {"the conditions of a term with ACLs of both families", Check::restart | Check::rebuild,
     "Each writes them whole, with the other family's blank, and so does each that goes.",
     [](const Seen& seen) {
       if (!isConditions(seen)) return false;
       const Classifier term(seen);
       return seen.facts.everHad(term.acl("ipv4")) && seen.facts.everHad(term.acl("ipv6"));
     }},
    {"the conditions of a term that was made anew", Check::restart | Check::rebuild,
     "A term that went took its conditions along, and only the next event of its ACL brings them "
     "back.",
     [](const Seen& seen) {
       if (!isConditions(seen)) return false;
       const Classifier term(seen);
       return term.isDroppedSince(term.lastOfAcl());
     }},

    // ===== Actions

    {"the actions that a policy map's sweep blanks", Check::restart | Check::rebuild,
     "A start of a policy map blanks the terms of its classifiers for which it has no target, also "
     "those that never had actions.",
     [](const Seen& seen) {
       if (!isActions(seen) || !isBlank(seen)) return false;
       const Classifier term(seen);
       return term.anyPolicyMap([&](const std::string& map) {
         return seen.facts.has({"policy-maps", "1", map}) && term.isOf(map) &&
                term.target(map).empty();
       });
     }},
    {"the actions for which several policy maps speak", Check::restart | Check::rebuild,
     "The last one that is told decides, at a start the last in the order of names.",
     [](const Seen& seen) {
       if (!isActions(seen)) return false;
       const Classifier term(seen);
       const auto maps = term.policyMaps();
       return std::count_if(maps.begin(), maps.end(), [&](const std::string& map) {
                return term.isOf(map) || seen.facts.everHad(term.action(map));
              }) > 1;
     }},
    {"the actions of a policy map that went", +Check::rebuild,
     "A policy map that goes leaves the terms of its classes as they are.",
     [](const Seen& seen) {
       if (!isActions(seen) || seen.difference.right != "null") return false;
       const Classifier term(seen);
       return !term.anyPolicyMap([&](const std::string& map) {
         return seen.facts.has(term.action(map)) ||
                (term.isOf(map) && seen.facts.has({"policy-maps", "1", map}));
       });
     }},
    {"the actions of a term that was made anew", Check::restart | Check::rebuild,
     "A term that went took its actions along, and only the next event of its class brings them "
     "back.",
     [](const Seen& seen) {
       if (!isActions(seen)) return false;
       const Classifier term(seen);
       return term.isDroppedSince(term.lastOfActions());
     }},
    {"the target of an action when the forwarding groups were replaced",
     Check::restart | Check::rebuild,
     "A new map in the place of the old one re-evaluates nothing until one of its entries changes.",
     [](const Seen& seen) { return isActions(seen) && Classifier(seen).groupsWereReplaced(); }},
    {"the target of an action that lost its machine", Check::restart | Check::rebuild,
     "When the map loses the traffic class the action's machine goes, and nobody hears a new value "
     "until the map changes again.",
     [](const Seen& seen) {
       if (!isActions(seen)) return false;
       const Classifier term(seen);
       return term.anyPolicyMap([&](const std::string& map) { return term.hasNoMachine(map); });
     }},
    {"a class whose machine outlived it", Check::restart | Check::rebuild,
     "A class that goes while its classifier has no terms leaves its machine behind, which refuses "
     "the class when it comes back.",
     [](const Seen& seen) {
       const Classifier place(seen);
       if (isTerm(seen) || isActions(seen)) return place.wasClassRefused();
       // Nor does the class make its classifier then.
       return seen.isAt({"classifiers", "*"}) && seen.difference.left.empty() &&
              place.anyTerm([](const Classifier& term) { return term.wasClassRefused(); });
     }},
};

}  // namespace

std::span<const Exclusion> classifierExclusions() { return classifierRows; }

}  // namespace days
