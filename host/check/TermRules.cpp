// What the objects of a term need beside them: a class map an access list with rules and a class of
// the classifier's policy map, these two the class map, and a policy map a classifier.
#include <algorithm>

#include "host/check/Classification.h"
#include "host/check/Rule.h"
#include "host/check/Rules.h"
#include "host/openconfig/LeafTable.h"

namespace host {
namespace {

using QosOc::Classifier::classifierTypeIpv4;
using QosOc::Classifier::classifierTypeIpv6;

bool hasClassMap(const TermObjects& term) { return term.hasClassMap; }
bool hasRules(const TermObjects& term) {
  return term.hasRules(classifierTypeIpv4) || term.hasRules(classifierTypeIpv6);
}

Tokens classMapPlace(std::string_view name) { return {"class-maps", "qos", std::string(name)}; }

// The rules for one classifier.
class TermRules : Rule {
 public:
  TermRules(const Device& device, const Findings& findings, const std::string& name,
            const Suggestions& classifiers)
      : Rule(device, findings),
        name_(name),
        objects_(device.classification.find(name)->second),
        classifiers_(classifiers),
        classMaps_([this] { return termsWith(&hasClassMap); }),
        accessLists_([this] { return termsWith(&hasRules); }) {}

  void judge() {
    if (!objects_.hasPlaceholder && objects_.terms.empty()) return judgeBare();
    for (const auto& [id, term] : objects_.terms) {
      if (!term.hasClassMap) {
        judgeUnmatched(id, term);
      } else {
        judgeMatched(id, term);
      }
    }
  }

 private:
  // Of a classifier that is there by the name of a policy map alone.
  void judgeBare() {
    if (!isYangString(name_)) return;
    for (const Tokens& policyMap : objects_.policyMaps) {
      find("missing", policyMap,
           "its name makes the classifier " + quoted(name_) + ", of which nothing else is there" +
               classifiers_.advice(name_, "add its class maps"));
    }
  }

  // ===== Terms

  void judgeUnmatched(std::string_view id, const TermObjects& term) {
    const std::string name = termName(id);
    const auto lacking = [&](const Tokens& place, const char* object) {
      find("missing", place,
           std::string("there is no class map of the name of this ") + object +
               advice(meant(classMaps_, id), "add it to class-maps"));
    };
    if (term.hasRules(classifierTypeIpv4)) lacking({"access-lists", "ipv4", name}, "access list");
    if (term.hasRules(classifierTypeIpv6)) lacking({"access-lists", "ipv6", name}, "access list");
    for (const TermClass& one : term.classes) lacking(one.place, "class");
  }

  void judgeMatched(std::string_view id, const TermObjects& term) {
    const Tokens place = classMapPlace(termName(id));
    if (term.isMatched && !hasRules(term)) judgeConditions(id, term, place);
    judgeAction(term);
    if (objects_.policyMaps.empty() || !term.classes.empty()) return;
    find("missing", place,
         "no policy map has this class, so the term gets no actions; add it to the policy map of "
         "its classifier");
  }

  void judgeConditions(std::string_view id, const TermObjects& term, const Tokens& place) {
    if (term.acls[0] || term.acls[1]) {
      return find("missing", place,
                  "the access list of the name of this class map has no rules, so the term has no "
                  "conditions; add its rules");
    }
    find("missing", place,
         "there is no access list of the name of this class map, so the term has no conditions" +
             advice(meant(accessLists_, id), "add it to access-lists"));
  }

  void judgeAction(const TermObjects& term) {
    const auto& classes = term.classes;
    const auto hasAction = [](const TermClass& one) { return one.hasAction; };
    if (classes.empty() || std::any_of(classes.begin(), classes.end(), hasAction)) return;
    find("missing", classes.front().place,
         "sets no traffic class, so the term gets no target group; add set-traffic-class to its "
         "actions");
  }

  // The name of an object of the term that was probably meant; empty: unknown.
  std::string meant(const Suggestions& terms, std::string_view id) const {
    const std::string_view near = terms.nearest(id);
    return near.empty() ? "" : termName(near);
  }
  std::string termName(std::string_view id) const {
    return "__yang_[" + name_ + "]_[" + std::string(id) + ']';
  }
  Suggestions::Names termsWith(bool (*has)(const TermObjects&)) const {
    Suggestions::Names names;
    for (const auto& [id, term] : objects_.terms) {
      if (has(term)) names.push_back(id);
    }
    return names;
  }

  const std::string& name_;
  const ClassifierObjects& objects_;
  const Suggestions& classifiers_;
  const Suggestions classMaps_;
  const Suggestions accessLists_;
};

}  // namespace

void judgeTerms(const Device& device, const Findings& findings) {
  const Suggestions classifiers([&] {
    Suggestions::Names names;
    for (const auto& [name, objects] : device.classification) {
      const bool isThere = objects.hasPlaceholder || !objects.terms.empty();
      if (isThere && isYangString(name)) names.push_back(name);
    }
    return names;
  });
  for (const auto& [name, objects] : device.classification) {
    TermRules(device, findings, name, classifiers).judge();
  }
}

}  // namespace host
