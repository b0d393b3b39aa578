// Class maps, ACLs and policy maps: what they say of classifiers and terms, together.
#include <algorithm>
#include <bitset>
#include <set>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmTerms.h"
#include "host/Nearest.h"
#include "host/check/Classification.h"
#include "host/check/Rule.h"
#include "host/check/Rules.h"

namespace host {
namespace {

using QosOc::Classifier::classifierTypeIpv4;
using QosOc::Classifier::classifierTypeIpv6;

constexpr unsigned highestDscp = 63;

const char* nameOf(ClassifierType type) { return type == classifierTypeIpv6 ? "IPV6" : "IPV4"; }

Tokens classMapPlace(std::string_view classifier, std::string_view term) {
  return {"class-maps", "qos",
          "__yang_[" + std::string(classifier) + "]_[" + std::string(term) + ']'};
}

class ClassifierRules : Rule {
 public:
  using Rule::Rule;

  void judge() {
    for (const auto& [name, classifier] : device().classification) {
      judgeSweep(name, classifier);
      judgeTypes(name, classifier);
      judgePolicyMaps(name, classifier);
      for (const auto& [id, term] : classifier.terms) judgeTerm(name, classifier, id, term);
    }
    judgeMatches();
    judgeClasses();
  }

 private:
  // ===== Classifiers

  void judgeSweep(std::string_view name, const ClassifierObjects& classifier) {
    if (classifier.hasPlaceholder) {
      if (!classifier.isMade()) {
        find("untranslated", classMapPlace(name, ""),
             "no class map of the classifier " + quoted(name) +
                 " has a match statement, and nothing else makes it; add a match statement");
      }
      return;
    }
    const auto found = std::find_if(classifier.terms.begin(), classifier.terms.end(),
                                    [](const auto& term) { return term.second.isMatched; });
    if (found == classifier.terms.end()) return;
    find("swept", classMapPlace(name, found->first),
         "its classifier has no placeholder, so each start sweeps the classifier " + quoted(name) +
             " with all its terms" +
             (classifier.later.empty() ? ""
                                       : ", before access lists and policy maps make theirs anew") +
             "; add the class map " + quoted(classMapPlace(name, "").back()));
  }

  // The last that writes the type decides. Class maps are met in no order; the others come behind
  // them, in theirs.
  void judgeTypes(std::string_view name, const ClassifierObjects& classifier) {
    std::vector<TypeMaker> makers = classifier.classMaps;
    std::sort(makers.begin(), makers.end(), [](const TypeMaker& a, const TypeMaker& b) {
      return a.place != b.place ? a.place < b.place : a.type < b.type;
    });
    const auto other = [](ClassifierType type) {
      return [type](const TypeMaker& maker) { return maker.type != type; };
    };
    if (classifier.later.empty()) {
      if (makers.empty() || !classifier.hasPlaceholder) return;
      const auto found = std::find_if(makers.begin(), makers.end(), other(makers.front().type));
      if (found == makers.end()) return;
      return find("order", found->place,
                  "the class maps of the classifier " + quoted(name) +
                      " don't agree on its type, and which one it gets depends on the order in "
                      "which they are met: IPV4, IPV6; let all match one family");
    }
    makers.insert(makers.end(), classifier.later.begin(), classifier.later.end());
    const ClassifierType type = makers.back().type;
    const auto found = std::find_if(makers.begin(), makers.end(), other(type));
    if (found == makers.end()) return;
    find("families", found->place,
         "makes " + quoted(name) + " an " + nameOf(found->type) + " classifier, and " +
             shownPointer(makers.back().place) + " an " + nameOf(type) +
             " one, which it is in the end; " +
             (found->place[0] == "class-maps" ? "let it match that family, or give" : "give") +
             " each family a classifier of its own");
  }

  // At a start each policy map blanks the actions of its classifiers that it doesn't say itself.
  void judgePolicyMaps(std::string_view name, const ClassifierObjects& classifier) {
    for (std::size_t i = 0; i + 1 < classifier.policyMaps.size(); ++i) {
      find("shadowed", classifier.policyMaps[i],
           "the classifier " + quoted(name) + " has another policy map, " +
               quoted(classifier.policyMaps.back().back()) +
               ", and of the two the last one in name order decides on its actions; "
               "let one policy map have it");
    }
  }

  // Each policy map writes the actions of its classes, and blanks those of its classifiers' other
  // terms. A policy map that has the classifier has a finding of its own when another one comes last.
  void judgeActions(const ClassifierObjects& classifier, const TermObjects& term) {
    const auto& owners = classifier.policyMaps;
    const auto isOwner = [&](std::string_view policyMap) {
      return std::any_of(owners.begin(), owners.end(),
                         [&](const Tokens& owner) { return owner.back() == policyMap; });
    };
    std::string_view last = owners.empty() ? std::string_view() : owners.back().back();
    for (const TermClass& one : term.classes) last = std::max<std::string_view>(last, one.place[2]);
    for (const TermClass& one : term.classes) {
      const std::string& policyMap = one.place[2];
      if (!one.hasTarget || policyMap == last || (isOwner(last) && isOwner(policyMap))) continue;
      find("shadowed", one.place,
           "the policy map " + quoted(last) +
               " comes behind this one in name order and decides on the action of the term; "
               "let one policy map have it");
    }
  }

  // ===== Terms

  void judgeTerm(std::string_view name, const ClassifierObjects& classifier, std::string_view id,
                 const TermObjects& term) {
    const bool isMadeOtherwise = term.hasRules(classifierTypeIpv4) ||
                                 term.hasRules(classifierTypeIpv6) || !term.classes.empty();
    if (term.hasClassMap && !term.isMatched && !isMadeOtherwise) {
      find("untranslated", classMapPlace(name, id),
           "has no match statement, and nothing else makes the term " + quoted(id) +
               "; add a match statement");
    }
    judgeActions(classifier, term);
    for (const auto& acl : term.acls) {
      if (acl && acl->aclSubConfig()) judgeRules(*acl);
    }
    if (!term.hasRules(classifierTypeIpv4)) return;
    const auto& other = term.acls[1];
    const bool isOverwritten = other && other->aclSubConfig();
    const bool isSwept = !other && classifier.hasRules[static_cast<int>(Acl::aclTypeIpv6)];
    if (!isOverwritten && !isSwept) return;
    find("families", aclPlace(*term.acls[0]),
         "is not translated: " +
             (isOverwritten
                  ? "the IPv6 access list of the same name takes its place"
                  : "the classifier " + quoted(name) +
                        " has IPv6 access lists, too, and loses the conditions of IPv4 for them") +
             "; give each family a classifier of its own");
  }

  static Tokens aclPlace(const Acl::AclConfig& acl) {
    return {"access-lists", acl.type() == Acl::aclTypeIpv6 ? "ipv6" : "ipv4",
            std::string(acl.name())};
  }

  void judgeRules(const Acl::AclConfig& acl) {
    std::bitset<highestDscp + 1> seen;
    for (const auto& [sequence, id] : acl.aclSubConfig()->ruleBySequence()) {
      const Tokens place = below(below(aclPlace(acl), "rules"), std::to_string(sequence));
      const auto dscp = acl.type() == Acl::aclTypeIpv6
                            ? judgeIp6Rule(acl.aclSubConfig()->ip6RuleById(id).filter, place)
                            : dscpOf(acl.aclSubConfig()->ipRuleById(id).filter);
      if (!dscp) continue;
      if (*dscp > highestDscp) {
        find("left-out", below(place, "dscp"),
             std::to_string(*dscp) + " is above 63, and is left out; write 0 to 63");
      } else if (seen[*dscp]) {
        find("left-out", place,
             "an earlier rule matches DSCP " + std::to_string(*dscp) +
                 ", too, and a set holds it once; remove one of them");
      } else {
        seen.set(*dscp);
      }
    }
  }

  static std::optional<unsigned> dscpOf(const Acl::IpFilter& filter) {
    return filter.matchDscp ? std::optional<unsigned>(filter.dscp) : std::nullopt;
  }

  std::optional<unsigned> judgeIp6Rule(const Acl::Ip6Filter& filter, const Tokens& place) {
    constexpr unsigned dscpBits = 0xfc;
    if ((filter.tcMask & dscpBits) == dscpBits) {
      if ((filter.tcMask & filter.tc & ~dscpBits) != 0) {
        find("untranslated", below(place, "tc"),
             "the two low bits of the traffic class are no part of the DSCP and are dropped; "
             "write a multiple of 4");
      }
      if ((filter.tcMask & ~dscpBits) != 0) {
        find("untranslated", below(place, "tc-mask"),
             "the two low bits of the mask are no part of the DSCP and are dropped; write 252");
      }
      return filter.tc >> 2;
    }
    if (filter.tcMask != 0 || filter.tc != 0) {
      find("untranslated", place,
           "the rule is taken for one without a DSCP, since its tc-mask has not all of the upper "
           "six bits; write 252");
    }
    return std::nullopt;
  }

  // ===== Statements

  void judgeMatches() {
    const auto& maps = native().aclConfig->cmapType(Qos::mapQos)->cmap();
    for (auto i = maps.unsafeIterator(); i; ++i) {
      const bool isOurs = !QosOc::classifierNameFromClassName(i->key()).empty() ||
                          !QosOc::classifierKeyFromConfigObjName(i->key()).second.empty();
      for (auto match = i->value()->match().unsafeIterator(); isOurs && match; ++match) {
        const auto option = match->key();
        if (option == Qos::matchIpAccessGroup || option == Qos::matchIpv6AccessGroup) continue;
        find("match-option", {"class-maps", "qos", std::string(i->key()), "match"},
             std::to_string(static_cast<unsigned>(option)) +
                 " is no match statement known here and is taken for ip-access-group; "
                 "write ip-access-group or ipv6-access-group");
      }
    }
  }

  void judgeClasses() {
    const auto type = native().aclConfig->pmapType(Qos::mapQos);
    if (!type) return;
    for (const auto& [name, map] : type->pmap()) {
      const auto [ipv4, ipv6] = QosOc::classifiersFromPmapName(name);
      if (ipv4.empty() && ipv6.empty()) continue;
      for (auto i = map->classAction().unsafeIterator(); i; ++i) {
        const Tokens place{"policy-maps", "qos", std::string(name), "classes",
                           std::string(i->key())};
        judgeClass(*i->value(), place, ipv4, ipv6);
      }
    }
  }

  void judgeClass(const Qos::ClassAction& action, const Tokens& place, const Rok::String& ipv4,
                  const Rok::String& ipv6) {
    const auto [classifier, term] = QosOc::classifierKeyFromConfigObjName(action.name());
    if (classifier.empty() || term.empty()) {
      if (action.policyAction().members() == 0) return;
      return find("untranslated", place,
                  "its actions are not translated: the class is no term; "
                  "write them in a class __yang_[CLASSIFIER]_[TERM]");
    }
    if (classifier != ipv4 && classifier != ipv6) {
      find("other-classifier", place,
           "is a class of the classifier " + quoted(classifier) +
               ", which the name of the policy map doesn't have, and makes it an IPV6 one; "
               "move it to the policy map of its classifier");
    }
    for (auto i = action.policyAction().unsafeIterator(); i; ++i) judgeAction(*i->value(), place);
  }

  void judgeAction(const Qos::Action& action, const Tokens& place) {
    const Tokens at = below(place, "actions");
    if (action.actionType() != Qos::actionSetTc) {
      const std::string type = std::to_string(static_cast<unsigned>(action.actionType()));
      return find("untranslated", below(at, type),
                  "of actions only set-traffic-class is translated; remove it");
    }
    const auto& names = native().qosConfig->forwardingGroupNameToTcMap();
    if (!QosOc::targetGroupFromTc(action.value(), names).empty()) return;
    judgeTarget(action.value(), below(at, "set-traffic-class"));
  }

  void judgeTarget(unsigned tc, const Tokens& place) {
    const std::string number = std::to_string(tc);
    if (tc >= Qos::Input::Config::trafficClasses) {
      return find("missing", place,
                  number +
                      " is no traffic class, so the term gets no target group; "
                      "write one of a forwarding group");
    }
    const auto& groups =
        native().qosConfig->forwardingGroupNameToTcMap()->forwardingGroupNameToTc();
    const Qos::TrafficClass* nameless = groups.find(Qos::ForwardingGroupName());
    if (nameless != nullptr && nameless->value == tc) {
      return find("missing", place,
                  "the first name of the traffic class " + number +
                      " is empty, so the term gets no target group; name its forwarding group");
    }
    find("missing", place,
         "no forwarding group has the traffic class " + number +
             ", so the term gets no target group; add one to forwarding-groups");
  }
};

}  // namespace

void judgeClassifiers(const Device& device, const Findings& findings) {
  ClassifierRules(device, findings).judge();
}

}  // namespace host
