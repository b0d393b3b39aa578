// Service policies: which classifiers they bind to which interfaces.
#include <algorithm>
#include <map>
#include <set>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmTerms.h"
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
  BindingRules(const Device& device, const Findings& findings)
      : Rule(device, findings),
        policyMaps_([this] { return policyMapNames(); }, std::string_view("__yang_[IPV4__").size()),
        classifiers_([this] { return classifierNames(); }),
        interfaces_([this] { return interfaceNames(); }) {}

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
    if (policy.intfIds().members() == 0) return;
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
    find("missing", place,
         "there is no policy map " + quoted(name) +
             ", and its classifiers are bound without actions" +
             policyMaps_.advice(name, "add it to policy-maps"));
  }

  void judgeClassifier(std::string_view name, const Tokens& place) {
    if (name.empty() || !isYangString(name)) return;  // what is left out refers to nothing
    const Classification& all = device().classification;
    const auto found = all.find(name);
    if (found != all.end() && found->second.isMade()) return;
    find("unresolved", place,
         "binds the classifier " + quoted(name) + ", which nothing makes" +
             classifiers_.advice(name, "add its class maps"));
  }

  void judgeBound(const Nerit::IntfId& interface, bool isBound, const Tokens& place) {
    if (!isBound) {
      find("false-binding", place,
           "false binds the interface at a start and unbinds it at a change; "
           "remove the interface, or write true");
    }
    if (native().qosConfig->intfConfig().find(interface) != nullptr) return;
    const std::string_view name = interface.stringValue();
    const auto isShort = device().shortNames.find(name);
    const std::string_view meant = isShort != device().shortNames.end()
                                       ? std::string_view(isShort->second.stringValue())
                                       : interfaces_.nearest(name);
    find("unknown-interface", place,
         "no interface " + quoted(name) + " is configured" + advice(meant, "add it to interfaces"));
  }

  // Service policies are met in no order, and of those that bind one interface the last decides.
  void judgeInterface(const Nerit::IntfId& interface, std::vector<Binding>& bindings) {
    if (bindings.size() < 2) return;
    std::sort(bindings.begin(), bindings.end(),
              [](const Binding& a, const Binding& b) { return a.place < b.place; });
    const std::set<std::string> ipv4 = namesOf(bindings, &Binding::ipv4);
    const std::set<std::string> ipv6 = namesOf(bindings, &Binding::ipv6);
    const bool isOrdered = ipv4.size() > 1 || ipv6.size() > 1;
    if (isOrdered) {
      judgeFamily("IPv4", interface, ipv4, bindings.back().place);
      judgeFamily("IPv6", interface, ipv6, bindings.back().place);
      return;
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

  void judgeFamily(const char* family, const Nerit::IntfId& interface,
                   const std::set<std::string>& names, const Tokens& place) {
    if (names.size() < 2) return;
    find("order", place,
         "several service policies bind " + quoted(interface.stringValue()) + ", and which " +
             family + " classifier it gets depends on the order in which they are met: " +
             listed(names) + "; let one service policy bind it");
  }

  // ===== Names to suggest

  Suggestions::Names policyMapNames() const {
    Suggestions::Names names;
    const auto type = native().aclConfig->pmapType(Qos::mapQos);
    if (!type) return names;
    for (const auto& [name, map] : type->pmap()) {
      const auto [ipv4, ipv6] = QosOc::classifiersFromPmapName(name);
      if (!ipv4.empty() || !ipv6.empty()) names.push_back(name);
    }
    return names;
  }
  Suggestions::Names classifierNames() const {
    Suggestions::Names names;
    for (const auto& [name, classifier] : device().classification) {
      if (classifier.isMade() && isYangString(name)) names.push_back(name);
    }
    return names;
  }
  Suggestions::Names interfaceNames() const {
    Suggestions::Names names;
    for (const auto& [name, queues] : device().interfaces) {
      if (isYangString(name.stringValue())) names.push_back(name.stringValue());
    }
    return names;
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
  const Suggestions policyMaps_;
  const Suggestions classifiers_;
  const Suggestions interfaces_;
};

}  // namespace

void judgeBindings(const Device& device, const Findings& findings) {
  BindingRules(device, findings).judge();
}

}  // namespace host
