#include "tests/days/check/Claims.h"

#include <algorithm>
#include <functional>
#include <set>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmTerms.h"
#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "host/Text.h"

namespace days {
namespace {

using host::Finding;
using host::Tokens;

constexpr std::uint32_t mostOrders = 256;

bool has(const std::string& text, std::string_view part) { return text.find(part) != text.npos; }

Tokens below(Tokens place, const std::string& key) {
  place.push_back(key);
  return place;
}

std::string told(const Finding& finding) {
  return host::shownPointer(finding.place) + ": " + std::string(finding.kind) + ": " + finding.text;
}

std::string termPath(const std::string& className) {
  const auto [classifier, term] = QosOc::classifierKeyFromConfigObjName(Rok::String(className));
  return classifierPath(classifier) + "/terms" + entryPath("/term", "id", term);
}

// ===== Comments

// The place in a comment that a finding names, and what is said of it.
Tokens placeInComment(const Finding& finding) {
  constexpr std::string_view begin = "at ";
  const std::size_t end = finding.text.find(" of this comment");
  return *host::pointerTokens(finding.text.substr(begin.size(), end - begin.size()));
}
Document comment(const Case& one, const Finding& finding) {
  return Document(one.document().find(finding.place)->GetString());
}
bool isSameWithComment(const Case& one, const Finding& finding, const Document& comment) {
  host::rapidjson::StringBuffer buffer;
  host::rapidjson::Writer<host::rapidjson::StringBuffer> writer(buffer);
  writer.String(comment.text().c_str());
  return one.isSame(one.document().with(finding.place, buffer.GetString()));
}
bool isSameWithoutMember(const Case& one, const Finding& finding) {
  return isSameWithComment(one, finding, comment(one, finding).without(placeInComment(finding)));
}

// The interfaces whose tx queue has the comment of a finding, as it names them.
std::vector<std::string> namedInterfaces(const Case& one, const Finding& finding) {
  std::vector<std::string> names;
  const std::string list = finding.text.substr(finding.text.rfind(": "));
  for (const std::string& name : one.document().below({"interfaces"})) {
    if (has(list, host::quoted(name))) names.push_back(name);
  }
  return names;
}

// The document with one tx queue alone.
Document withQueue(const Case& one, const std::string& interface, const std::string& queue) {
  Document document(one.document());
  for (const std::string& other : document.below({"interfaces"})) {
    if (other != interface) document.remove({"interfaces", other});
  }
  for (const std::string& other : document.below({"interfaces", interface, "tx-queues"})) {
    if (other != queue) document.remove({"interfaces", interface, "tx-queues", other});
  }
  return document;
}

// Whether the comment makes a difference to the tx queue of each of several interfaces.
bool isOfEachInterface(const Case& one, const Finding& finding) {
  const auto names = namedInterfaces(one, finding);
  const std::size_t begin = std::string_view("speaks for ").size();
  const std::string queue = finding.text.substr(begin, finding.text.find(' ', begin) - begin);
  const auto differs = [&](const std::string& interface) {
    const Document alone = withQueue(one, interface, queue);
    return !Outcomes(alone.text()).isSame(Outcomes(alone.without(finding.place).text()));
  };
  // A comment that names something may still have no effect, and says so in another finding.
  const auto isFound = [&](const Finding& other) {
    return other.place == finding.place && other.kind != finding.kind;
  };
  return names.size() > 1 && (std::all_of(names.begin(), names.end(), differs) ||
                              std::any_of(one.findings().begin(), one.findings().end(), isFound));
}

// ===== What holds for a finding

using Holds = bool (*)(const Case& one, const Finding& finding);

bool hasNoEffect(const Case& one, const Finding& finding) {
  return one.isSameWithout(finding.place);
}

// The DSCPs of an ACL's term are the same without the rule.
bool hasNoDscp(const Case& one, const Finding& finding) {
  const auto dscps = [&](const Translation& translation) {
    std::set<std::string> found;
    const std::string path = termPath(finding.place[2]) + "/conditions";
    for (const auto& [leaf, value] : translation.leaves) {
      if (!leaf.starts_with(path) || !has(leaf, "/config/dscp")) continue;
      std::string number;
      for (const char c : value + ',') {
        if (c >= '0' && c <= '9') {
          number += c;
        } else if (!number.empty()) {
          found.insert(std::exchange(number, ""));
        }
      }
    }
    return found;
  };
  const Tokens rule(finding.place.begin(), finding.place.begin() + 5);
  const Translation other(one.document().with(rule, "{}").text(), 0);
  return dscps(one.outcomes().all().front()) == dscps(other);
}

bool isNoLeafName(const Case& one, const Finding& finding) {
  const bool isEmpty = finding.place.back().empty();
  return !one.hasLeaf([&](const std::string& path) {
    return isEmpty ? has(path, "[name=]") || has(path, "-id=]") : has(path, "\x01");
  });
}

struct Claim {
  std::string_view kind;
  std::string_view part;  // of the text; the first row that fits counts
  Holds holds;
};

const Claim missingClaims[] = {
    {"missing", "there is no policy map",
     [](const Case& one, const Finding& finding) {
       const std::string& key = finding.place[1];
       return one.document().find({"policy-maps", "qos", key.substr(key.find(':') + 1)}) == nullptr;
     }},
    {"missing", "sets no traffic class",
     [](const Case& one, const Finding& finding) {
       const std::string leaf = termPath(finding.place.back()) + "/actions/config/target-group";
       return !one.outcomes().values().contains(leaf);
     }},
    {"missing", "so the term gets no target group", hasNoEffect},
    {"missing", "so the term has no conditions",
     [](const Case& one, const Finding& finding) {
       const std::string path = termPath(finding.place[2]) + "/conditions/";
       return !one.hasLeaf([&](const std::string& leaf) { return leaf.starts_with(path); });
     }},
    {"missing", "so the term gets no actions",
     [](const Case& one, const Finding& finding) {
       const std::string path = termPath(finding.place[2]) + "/actions/";
       return !one.hasLeaf([&](const std::string& leaf) {
         return leaf.starts_with(path) && leaf.ends_with("/target-group");
       });
     }},
    {"missing", "there is no class map of the name",
     [](const Case& one, const Finding& finding) {
       return one.document().find({"class-maps", "qos", finding.place.back()}) == nullptr;
     }},
    {"missing", "of which nothing else is there",
     [](const Case& one, const Finding& finding) {
       const std::size_t begin = finding.text.find('"') + 1;
       const std::size_t end = finding.text.find('"', begin);
       const std::string path = classifierPath(finding.text.substr(begin, end - begin));
       return !one.hasLeaf(
           [&](const std::string& leaf) { return leaf.starts_with(path + "/terms"); });
     }},
    {"missing", "so nothing uses the name",
     [](const Case& one, const Finding& finding) {
       return one.isSameWithout(finding.place, [](const std::string& path) {
         return !path.starts_with("/qos/queues/");
       });
     }},
    {"missing", "so it gets no output queue",
     [](const Case& one, const Finding& finding) {
       const std::string path =
           entryPath("/qos/forwarding-groups/forwarding-group", "name", finding.place[1]);
       return !one.outcomes().values().contains(path + "/config/output-queue");
     }},
    {"missing", "is not attached",
     [](const Case& one, const Finding& finding) {
       return one.isSameWithout(finding.place, [](const std::string& path) {
         return path.ends_with("/queue-management-profile");
       });
     }},
    {"missing", "has no schedulers",
     [](const Case& one, const Finding& finding) {
       const Rok::String policy = decodeSPProfileName(Rok::String(finding.place[1]));
       const std::string path =
           entryPath("/qos/scheduler-policies/scheduler-policy", "name", policy) + "/schedulers";
       return !one.hasLeaf([&](const std::string& leaf) { return leaf.starts_with(path); });
     }},
};

const Claim lostClaims[] = {
    {"untranslated", "the thresholds and the percentage of ECN",
     [](const Case& one, const Finding& finding) {
       return one.isSameWithout(finding.place,
                                [](const std::string& path) { return !path.ends_with("/drop"); });
     }},
    {"untranslated", "the two low bits",
     [](const Case& one, const Finding& finding) {
       const unsigned tc = one.document().find(finding.place)->GetUint();
       return one.isSame(one.document().with(finding.place, std::to_string(tc & 252)));
     }},
    {"untranslated", "one without a DSCP",
     [](const Case& one, const Finding& finding) {
       return one.isSame(one.document().with(finding.place, "{}"));
     }},
    {"untranslated", "of priorities only strict",
     [](const Case& one, const Finding& finding) {
       // It may be what makes the queue.
       const auto isOther = [](const std::string& path) {
         return !path.starts_with("/qos/queues/") || path.ends_with("strict-priority");
       };
       return one.isSameWithout(finding.place, isOther);
     }},
    {"untranslated", "", hasNoEffect},
    {"name-form", "", hasNoEffect},
    {"left-out", "is above 63", hasNoDscp},
    {"left-out", "an earlier rule", hasNoDscp},
    {"left-out", "", isNoLeafName},
};

const Claim otherClaims[] = {
    {"shadowed", "has another policy map",
     [](const Case& one, const Finding& finding) {
       const auto isAction = [&](const std::string& path) {
         for (const char* name : {"a", "b"}) {
           if (finding.text.starts_with("the classifier " + host::quoted(name)))
             return path.starts_with(classifierPath(name)) && has(path, "/actions/");
         }
         return true;
       };
       return one.isSameWithout(below(finding.place, "classes"), isAction);
     }},
    {"shadowed", "decides on the action of the term",
     [](const Case& one, const Finding& finding) {
       Tokens actions = finding.place;
       actions.emplace_back("actions");
       return one.isSameWithout(actions);
     }},
    {"shadowed", "the last name in order",
     [](const Case& one, const Finding& finding) {
       const std::string queue = entryPath("/qos/queues/queue", "name", finding.place[1]);
       return one.isSameWithout(finding.place,
                                [&](const std::string& path) { return !path.starts_with(queue); });
     }},
    {"shadowed", "the first name in order",
     [](const Case& one, const Finding& finding) {
       const std::string group =
           entryPath("/qos/forwarding-groups/forwarding-group", "name", finding.place[1]);
       return one.isSameWithout(finding.place,
                                [&](const std::string& path) { return !path.starts_with(group); });
     }},
    {"families", "which it is in the end",
     [](const Case& one, const Finding& finding) {
       const char* type = has(finding.text, "an IPV6 one") ? "\"IPV6\"" : "\"IPV4\"";
       for (const char* name : {"a", "b"}) {
         if (!finding.text.starts_with("makes " + host::quoted(name))) continue;
         const auto& values = one.outcomes().values();
         const auto found = values.find(classifierPath(name) + "/config/type");
         return found != values.end() && found->second == std::set<std::string>{type};
       }
       return true;
     }},
    {"families", "is not translated",
     [](const Case& one, const Finding& finding) {
       const std::string path = termPath(finding.place[2]) + "/conditions/ipv4";
       return !one.hasLeaf([&](const std::string& leaf) { return leaf.starts_with(path); });
     }},
    {"swept", "make theirs anew", hasNoEffect},
    {"swept", "",
     [](const Case& one, const Finding& finding) {
       const std::string path = classifierPath(classifierOf(finding.place[2]));
       return !one.hasLeaf([&](const std::string& leaf) { return leaf.starts_with(path); });
     }},
    {"match-option", "",
     [](const Case& one, const Finding& finding) {
       Document other(one.document());
       const auto options = other.below(finding.place);
       for (std::size_t i = options.size(); i > 0; --i) {
         const Tokens element = below(finding.place, options[i - 1]);
         if (other.find(element)->IsUint()) other.remove(element);
       }
       other.include(finding.place, "\"ip-access-group\"");
       return one.isSame(other);
     }},
    {"other-classifier", "",
     [](const Case& one, const Finding& finding) {
       const std::string path = classifierPath(classifierOf(finding.place.back())) + "/config/type";
       const auto found = one.outcomes().values().find(path);
       if (found == one.outcomes().values().end()) return false;
       return found->second.contains("\"IPV6\"") || one.hasFindingOf("families");
     }},
    {"false-binding", "",
     [](const Case& one, const Finding& finding) {
       return one.isSame(one.document().with(finding.place, "true"));
     }},
    {"unknown-interface", "",
     [](const Case& one, const Finding& finding) {
       return one.document().find({"interfaces", finding.place.back()}) == nullptr;
     }},
    {"thresholds", "",
     [](const Case& one, const Finding& finding) {
       const Tokens settings(finding.place.begin(), finding.place.end() - 1);
       const auto* least = one.document().find(finding.place);
       const auto* most = one.document().find(below(settings, "max-threshold"));
       return least != nullptr && least->GetUint() > (most != nullptr ? most->GetUint() : 0);
     }},
};

const Claim commentClaims[] = {
    {"comment-member", "this member is not read", isSameWithoutMember},
    {"comment-member", "stands in this comment twice",
     [](const Case& one, const Finding& finding) {
       const Document text = comment(one, finding);
       const Tokens metaData{"MetaData-OpenConfig"};
       Document other = text.without(metaData);  // the first of two
       other.remove(metaData);
       other.put(metaData, text.text(metaData));
       return isSameWithComment(one, finding, other);
     }},
    {"comment-member", "the last counts",
     [](const Case& one, const Finding& finding) {
       return isSameWithComment(one, finding,
                                comment(one, finding).without(placeInComment(finding)));
     }},
    {"comment-zero", "", isSameWithoutMember},
    {"comment-shared", "", isOfEachInterface},
    {"comment-name", "the name is empty",
     [](const Case& one, const Finding& finding) {
       Tokens object = placeInComment(finding);
       object.pop_back();
       return isSameWithComment(one, finding, comment(one, finding).without(object));
     }},
    {"comment-scheduler", "the last of them counts",
     [](const Case& one, const Finding& finding) {
       Tokens place = placeInComment(finding);
       const std::string& text = finding.text;
       const std::size_t begin = text.find('"', text.find(" of this comment")) + 1;
       place.back() = text.substr(begin, text.find('"', begin) - begin);
       return isSameWithComment(one, finding, comment(one, finding).without(place));
     }},
    {"comment-scheduler", "this one is read as",
     [](const Case& one, const Finding& finding) {
       Document text = comment(one, finding);
       Tokens place = placeInComment(finding);
       const std::string scheduler = text.text(place);
       text.remove(place);
       const std::size_t begin = finding.text.find("read as ") + 8;
       place.back() = finding.text.substr(begin, finding.text.find(';') - begin);
       if (text.find(place) != nullptr)
         return true;  // two of one number have a finding of their own
       text.put(place, scheduler);
       return isSameWithComment(one, finding, text);
     }},
    {"comment-priority", "",
     [](const Case& one, const Finding& finding) {
       const Document other = comment(one, finding).with(placeInComment(finding), "\"STRICT\"");
       return isSameWithComment(one, finding, other);
     }},
    {"comment-percent", "",
     [](const Case& one, const Finding& finding) {
       const Document text = comment(one, finding);
       const Tokens place = placeInComment(finding);
       const std::string low = std::to_string(text.find(place)->GetUint() & 255);
       return isSameWithComment(one, finding, text.with(place, low));
     }},
    {"comment", "", hasNoEffect},
};

const Claim* claimOf(const Finding& finding) {
  const auto fits = [&](const Claim& claim) {
    const bool isKind = finding.kind == claim.kind ||
                        (claim.kind == "comment" && finding.kind.starts_with("comment-"));
    return isKind && has(finding.text, claim.part);
  };
  for (const auto& [begin, end] : {std::pair(std::begin(missingClaims), std::end(missingClaims)),
                                   std::pair(std::begin(lostClaims), std::end(lostClaims)),
                                   std::pair(std::begin(otherClaims), std::end(otherClaims)),
                                   std::pair(std::begin(commentClaims), std::end(commentClaims))}) {
    const Claim* found = std::find_if(begin, end, fits);
    if (found != end) return found;
  }
  return nullptr;
}

// ===== References

// Whether a finding may be about a reference at the path.
bool isAboutReference(const Finding& finding, const Reference& reference) {
  if (!has(finding.text, host::quoted(reference.name))) return false;
  if (finding.place[0] == "service-policies") return has(reference.path, "/input/classifiers/");
  const bool isProfile = finding.place[1].starts_with("qos-profile-");
  return reference.path.starts_with(isProfile ? "/qos/scheduler-policies/" : "/qos/interfaces/");
}

bool danglesIn(const Translation& translation, const Finding& finding) {
  const auto dangling = danglingReferences(translation.leaves);
  return std::any_of(dangling.begin(), dangling.end(), [&](const Reference& reference) {
    return isAboutReference(finding, reference);
  });
}

bool dangles(const Case& one, const Finding& finding) {
  const auto& all = one.outcomes().all();
  const auto in = [&](const Translation& translation) { return danglesIn(translation, finding); };
  if (std::any_of(all.begin(), all.end(), in)) return true;
  const std::string text = one.document().text();
  for (std::uint32_t order = Outcomes::orders; order < mostOrders; ++order) {
    if (danglesIn(Translation(text, order), finding)) return true;
  }
  return false;
}

// ===== Order

bool isSeen(const Case& one, const Finding& finding) {
  const auto about = [&](const LeafMap& leaves) {
    LeafMap selected;
    for (const auto& leaf : leaves) {
      if (isAboutLeaf(finding, leaf.first)) selected.insert(leaf);
    }
    return selected;
  };
  const auto& all = one.outcomes().all();
  const LeafMap first = about(all.front().leaves);
  for (const Translation& other : all) {
    if (about(other.leaves) != first) return true;
  }
  const std::string text = one.document().text();
  for (std::uint32_t order = Outcomes::orders; order < mostOrders; ++order) {
    if (about(Translation(text, order).leaves) != first) return true;
  }
  return false;
}

void judgeOrder(const Case& one, const Finding& finding, ClaimTally& tally) {
  if (isSeen(one, finding)) {
    ++tally.seenOrders;
    return;
  }
  ++tally.unseenOrders;
  if (tally.unseen.size() < 3)
    tally.unseen.push_back(told(finding) + "\n    " + one.document().text());
}

// ===== Raising

// Puts a value at a place over which nothing raises.
void mend(Document& document, const Tokens& place) {
  if (place[0] == "comments" || place[0] == "service-policies") {
    document.remove(place);
  } else {
    document.put(place, "1");
  }
}

std::set<std::string> raisedRoots(const Document& document) {
  std::set<std::string> roots;
  const std::string text = document.text();
  for (std::uint32_t order = 0; order < Outcomes::orders; ++order) {
    for (const std::string& report : Translation(text, order).reports)
      roots.insert(report.substr(0, report.find(':')));
  }
  return roots;
}

// The places of a document over which a root raises.
std::set<Tokens> raisingPlaces(const Case& one) {
  std::set<Tokens> places;
  for (const Finding& finding : one.findings()) {
    if (finding.kind == "raises") places.insert(finding.place);
  }
  return places;
}

// The roots that raise over one of the places, all others being mended. Service policies raise two
// by two.
std::set<std::string> raisedOver(const Case& one, const std::set<Tokens>& places,
                                 const Tokens& place) {
  Document document(one.document());
  for (const Tokens& other : places) {
    const bool isPair = place[0] == "service-policies" && other[0] == place[0];
    if (other != place && !isPair) mend(document, other);
  }
  return raisedRoots(document);
}

// ===== What is left out

// Whether a finding is about the value that a warning of the document names.
bool isAboutWarning(const Finding& finding, const std::string& warning) {
  if (has(warning, "dscp-set: ") || has(warning, "/dscp: "))
    return finding.place[0] == "access-lists" && has(warning, host::quoted(finding.place[2]));
  if (finding.place[0] == "pfc-watchdog") return has(warning, "/" + finding.place[1] + ": ");
  const std::size_t end = finding.text.find('"', 1);
  if (finding.text.starts_with("an empty name")) return has(warning, "''");
  return end != std::string::npos && has(warning, finding.text.substr(1, end - 1));
}

unsigned long numberIn(const std::string& json) {
  const std::size_t digit = json.find_first_of("0123456789");
  return digit != std::string::npos ? std::stoul(json.substr(digit)) : 0;
}

// ===== What no finding claims

class Unclaimed {
 public:
  explicit Unclaimed(const Case& one) : one_(one), places_(raisingPlaces(one)) {}

  std::vector<std::string> all() {
    if (one_.outcomes().hasRaised() || !places_.empty()) {
      raises();
    } else {
      order();
      references();
      warnings();
      oddLeaves();
    }
    return std::move(missing_);
  }

 private:
  // Asks isAbout(finding) of the findings of a kind.
  template <class IsAbout>
  bool isClaimed(std::string_view kind, const IsAbout& isAbout) const {
    return std::any_of(one_.findings().begin(), one_.findings().end(), [&](const Finding& finding) {
      return finding.kind == kind && isAbout(finding);
    });
  }
  void add(const std::string& line) { missing_.push_back("without a finding: " + line); }

  void raises() {
    std::set<std::string> explained;
    for (const Tokens& place : places_) explained.merge(raisedOver(one_, places_, place));
    for (const std::string& root : raisedRoots(one_.document())) {
      if (!explained.contains(root)) add(root + " raises");
    }
  }

  void order() {
    for (const std::string& path : one_.outcomes().unsettled()) {
      const auto isAbout = [&](const Finding& finding) { return isAboutLeaf(finding, path); };
      if (!isClaimed("order", isAbout)) add(path + " depends on the order");
    }
  }

  void references() {
    std::set<Reference> dangling;
    for (const Translation& translation : one_.outcomes().all()) {
      for (const Reference& reference : danglingReferences(translation.leaves))
        dangling.insert(reference);
    }
    for (const Reference& reference : dangling) {
      const auto isAbout = [&](const Finding& finding) {
        return isAboutReference(finding, reference);
      };
      if (!isClaimed("unresolved", isAbout)) add(reference.path + " dangles: " + reference.name);
    }
  }

  void warnings() {
    for (const std::string& warning : one_.outcomes().all().front().warnings) {
      const auto isAbout = [&](const Finding& finding) { return isAboutWarning(finding, warning); };
      if (!isClaimed("left-out", isAbout)) add(warning);
    }
  }

  void oddLeaves() {
    for (const auto& [path, values] : one_.outcomes().values()) {
      for (const std::string& value : values) {
        thresholds(path, value);
        interface(path, value);
      }
    }
  }
  void thresholds(const std::string& path, const std::string& value) {
    constexpr std::string_view least = "min-threshold";
    if (!path.ends_with(least)) return;
    const auto& all = one_.outcomes().values();
    const auto most = all.find(path.substr(0, path.size() - least.size()) + "max-threshold");
    if (most == all.end() || most->second.size() != 1) return;
    const unsigned long upper = numberIn(*most->second.begin());
    const unsigned long lower = numberIn(value);
    if (lower <= upper) return;
    const std::string what =
        std::to_string(lower) + " is above the max-threshold of " + std::to_string(upper);
    const auto isAbout = [&](const Finding& finding) { return has(finding.text, what); };
    if (!isClaimed("thresholds", isAbout)) add(path + ": " + what);
  }
  void interface(const std::string& path, const std::string& value) {
    if (!path.ends_with("]/interface-id") || value.empty()) return;
    const std::string name = value.substr(1, value.size() - 2);
    if (one_.document().find({"interfaces", name}) != nullptr) return;
    const auto isAbout = [&](const Finding& finding) { return finding.place.back() == name; };
    if (!isClaimed("unknown-interface", isAbout)) add(name + " is not configured");
  }

  const Case& one_;
  const std::set<Tokens> places_;
  std::vector<std::string> missing_;
};

}  // namespace

std::vector<std::string> falseFindings(const Case& one, ClaimTally& tally) {
  std::vector<std::string> wrong;
  const auto places = raisingPlaces(one);
  const bool raises = one.outcomes().hasRaised() || !places.empty();
  for (const Finding& finding : one.findings()) {
    if (raises != (finding.kind == "raises")) continue;
    ++tally.findings[std::string(finding.kind)];
    const Claim* claim = claimOf(finding);
    bool holds = true;
    if (finding.kind == "order") {
      judgeOrder(one, finding, tally);
    } else if (finding.kind == "unresolved") {
      holds = dangles(one, finding);
      // A name that another one covers in all orders that were tried.
      if (!holds && one.hasFindingOf("order")) {
        ++tally.unseenReferences;
        holds = true;
      }
    } else if (raises) {
      holds = !raisedOver(one, places, finding.place).empty();
    } else {
      holds = claim != nullptr && claim->holds(one, finding);
    }
    if (!holds) wrong.push_back("false: " + told(finding));
  }
  return wrong;
}

std::vector<std::string> unclaimed(const Case& one) { return Unclaimed(one).all(); }

}  // namespace days
