// Service policies: which classifiers they bind to which interfaces.
#include <algorithm>
#include <map>
#include <set>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmTerms.h"
#include "host/Nearest.h"
#include "host/check/Rule.h"
#include "host/check/Rules.h"
#include "host/openconfig/LeafTable.h"

namespace host {
namespace {

struct Binding {
  Tokens place;
  std::string ipv4;
  std::string ipv6;
};

class BindingRules : Rule {
 public:
  using Rule::Rule;

  void judge() {
    const auto& policies = native().qosConfig->servicePolicyConfig();
    for (auto i = policies.unsafeIterator(); i; ++i) {
      const auto [ipv4, ipv6] = QosOc::classifiersFromPmapName(i->key().pmapName);
      if (!ipv4.empty() || !ipv6.empty()) gather(*i->value(), ipv4, ipv6);
    }
    for (auto& [interface, bindings] : bound_) judgeInterface(interface, bindings);
  }

 private:
  void gather(const Qos::ServicePolicyConfig& policy, std::string_view ipv4,
              std::string_view ipv6) {
    const Tokens place = servicePolicyPlace(policy.key());
    pairs_.emplace(ipv4, ipv6);
    judgePolicyMap(policy.pmapName(), place);
    judgeClassifier(ipv4, place);
    judgeClassifier(ipv6, place);
    for (auto i = policy.intfIds().unsafeIterator(); i; ++i) {
      const Tokens at = below(below(place, "interfaces"), i->key().stringValue());
      judgeBound(i->key(), i->value(), at);
      bound_[i->key()].push_back({at, std::string(ipv4), std::string(ipv6)});
    }
  }

  void judgePolicyMap(const Rok::String& name, const Tokens& place) {
    const auto type = native().aclConfig->pmapType(Qos::mapQos);
    if (type && type->pmap().find(name) != nullptr) return;
    std::vector<std::string_view> names;
    if (type) {
      for (const auto& [other, map] : type->pmap()) names.push_back(other);
    }
    find("missing", place,
         "there is no policy map " + quoted(name) + didYouMean(name, names) +
             "; its classifiers are bound without actions; add it to policy-maps");
  }

  void judgeClassifier(std::string_view name, const Tokens& place) {
    if (name.empty() || !isYangString(name)) return;  // what is left out refers to nothing
    const Classification& all = device().classification;
    const auto found = all.find(name);
    if (found != all.end() && found->second.isMade()) return;
    std::vector<std::string_view> names;
    for (const auto& [other, classifier] : all) {
      if (classifier.isMade()) names.push_back(other);
    }
    find("unresolved", place,
         "binds the classifier " + quoted(name) + ", which nothing makes" +
             didYouMean(name, names) + "; add its class maps");
  }

  void judgeBound(const Nerit::IntfId& interface, bool isBound, const Tokens& place) {
    if (!isBound) {
      find("false-binding", place,
           "false binds the interface at a start and unbinds it at a change; "
           "remove the interface, or write true");
    }
    if (native().qosConfig->intfConfig().find(interface) != nullptr) return;
    std::vector<std::string_view> names;
    const auto& all = device().interfaces;
    for (const auto& [other, queues] : all) names.push_back(other.stringValue());
    find("unknown-interface", place,
         "no interface " + quoted(interface.stringValue()) + " is configured" +
             didYouMean(interface.stringValue(), names) + "; add it to interfaces");
  }

  // Service policies are met in no order, and of those that bind one interface the last decides.
  void judgeInterface(const Nerit::IntfId& interface, std::vector<Binding>& bindings) {
    if (bindings.size() < 2) return;
    std::sort(bindings.begin(), bindings.end(),
              [](const Binding& a, const Binding& b) { return a.place < b.place; });
    const std::set<std::string> ipv4 = namesOf(bindings, &Binding::ipv4);
    const std::set<std::string> ipv6 = namesOf(bindings, &Binding::ipv6);
    const std::set<std::string>& names = ipv4.size() > 1 ? ipv4 : ipv6;
    if (names.size() > 1) {
      return find(
          "order", bindings.back().place,
          "several service policies bind " + quoted(interface.stringValue()) +
              ", and which classifier it gets depends on the order in which they are met: " +
              listed(names) + "; let one service policy bind it");
    }
    if (ipv4.empty() || ipv6.empty() || !pairs_.contains({*ipv4.begin(), *ipv6.begin()})) return;
    const auto isPair = [&](const Binding& b) { return !b.ipv4.empty() && !b.ipv6.empty(); };
    if (std::any_of(bindings.begin(), bindings.end(), isPair)) return;
    // A service policy takes these two for a binding of its own that was removed.
    find("order", bindings.back().place,
         "another service policy binds both classifiers of " + quoted(interface.stringValue()) +
             " elsewhere and not here, and whether it removes them here depends on the order in "
             "which the service policies are met; let one service policy bind both");
  }

  static std::set<std::string> namesOf(const std::vector<Binding>& bindings,
                                       std::string Binding::*name) {
    std::set<std::string> names;
    for (const Binding& binding : bindings) names.insert(binding.*name);
    names.erase("");
    return names;
  }

  std::set<std::pair<std::string, std::string>> pairs_;  // of all service policies
  std::map<Nerit::IntfId, std::vector<Binding>> bound_;
};

}  // namespace

void judgeBindings(const Device& device, const Findings& findings) {
  BindingRules(device, findings).judge();
}

}  // namespace host
