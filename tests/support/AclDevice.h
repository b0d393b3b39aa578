// A device with ACLs of both families and the classifiers that a root keeps for them.
#pragma once

#include <initializer_list>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/support/ClassMapDevice.h"

namespace support {

// ===== Rules

// Matches a DSCP.
inline Acl::IpRuleConfig dscp(unsigned char value) {
  Acl::IpRuleConfig rule;
  rule.filter.dscp = value;
  rule.filter.matchDscp = true;
  return rule;
}
// Matches on anything else.
inline Acl::IpRuleConfig noDscp() { return {}; }
inline Acl::Ip6RuleConfig trafficClass(unsigned char tc, unsigned char tcMask = 0xfc) {
  Acl::Ip6RuleConfig rule;
  rule.filter.tc = tc;
  rule.filter.tcMask = tcMask;
  return rule;
}

template <class Rule>
using Rules = std::initializer_list<std::pair<std::uint32_t, Rule>>;

// A rule comes, or takes the place of another: the rule first, under an identity of its own, then
// its place in the sequence.
inline void addRule(Acl::AclSubConfig& config, std::uint32_t sequence,
                    const Acl::IpRuleConfig& rule) {
  static std::uint32_t rules = 0;
  const Umb::UniqueId id(++rules, 4, 0);
  config.ipRuleByIdIs(id, rule);
  config.ruleBySequenceIs(sequence, id);
}
inline void addRule(Acl::AclSubConfig& config, std::uint32_t sequence,
                    const Acl::Ip6RuleConfig& rule) {
  static std::uint32_t rules = 0;
  const Umb::UniqueId id(++rules, 6, 0);
  config.ip6RuleByIdIs(id, rule);
  config.ruleBySequenceIs(sequence, id);
}
inline void removeRule(Acl::AclSubConfig& config, std::uint32_t sequence) {
  const Umb::UniqueId* found = config.ruleBySequence().find(sequence);
  const Umb::UniqueId id = found != nullptr ? *found : Umb::UniqueId();
  config.ruleBySequenceDel(sequence);
  config.ipRuleByIdDel(id);
  config.ip6RuleByIdDel(id);
}

template <class Rule = Acl::IpRuleConfig>
Rok::Ptr<Acl::AclSubConfig> subConfig(Rules<Rule> rules = {}) {
  auto config = Rok::make<Acl::AclSubConfig>();
  for (const auto& [sequence, rule] : rules) addRule(*config, sequence, rule);
  return config;
}

// ===== Output

// What a term matches: "ipv4 46", "ipv4 [46, 34]", "default" for present conditions that say
// nothing, "absent".
inline std::string conditionsText(const QosOc::Config::Term& term) {
  if (!term.conditions) return "absent";
  std::ostringstream out;
  const auto family = [&out](const char* name,
                             const QosOc::Config::TermConditionsIpConfig& config) {
    if (!config) return;
    if (!out.str().empty()) out << " ";
    out << name;
    if (config.dscp) out << " " << unsigned{*config.dscp};
    if (config.dscpSet.empty()) return;
    const char* separator = " [";
    for (const unsigned value : config.dscpSet) {
      out << separator << value;
      separator = ", ";
    }
    out << "]";
  };
  family("ipv4", term.conditions->ipv4);
  family("ipv6", term.conditions->ipv6);
  return out.str().empty() ? "default" : out.str();
}

// "name/type" to the terms, each as "id: conditions".
inline std::map<std::string, std::vector<std::string>> conditionsModel(
    const QosOc::Config::ClassifiersDir& classifiers) {
  std::map<std::string, std::vector<std::string>> result;
  for (auto i = classifiers.classifier().iterator(); i; ++i) {
    const auto& classifier = *i.currNodeNonStale()->value();
    auto& terms = result[ClassMapDevice::label(classifier)];
    if (!classifier.terms()) continue;
    for (auto t = classifier.terms()->term().iterator(); t; ++t) {
      const QosOc::Config::Term& term = t.currNodeNonStale()->value();
      terms.push_back(std::string(std::string_view(term.id)) + ": " + conditionsText(term));
    }
    std::ranges::sort(terms);
  }
  return result;
}

// ===== The device

struct AclDevice {
  Rok::Ptr<Acl::Input::Config> config = Rok::make<Acl::Input::Config>();
  Rok::Ptr<Acl::Input::AclTypeConfig> ipv4 = Rok::make<Acl::Input::AclTypeConfig>(Acl::aclTypeIpv4);
  Rok::Ptr<Acl::Input::AclTypeConfig> ipv6 = Rok::make<Acl::Input::AclTypeConfig>(Acl::aclTypeIpv6);
  Rok::Ptr<QosOc::Config::ClassifiersDir> classifiers = Rok::make<QosOc::Config::ClassifiersDir>();
  Rok::Ptr<QosOc::AclKivToOcSm> root;

  AclDevice() {
    config->configIs(Acl::aclTypeIpv4, ipv4);
    config->configIs(Acl::aclTypeIpv6, ipv6);
  }

  // Native writes. An ACL with its rules; the one returned takes further rules.
  Rok::Ptr<Acl::AclSubConfig> add(const Rok::String& name, Rules<Acl::IpRuleConfig> rules = {}) {
    const auto sub = subConfig(rules);
    bare(name)->aclSubConfigIs(sub);
    return sub;
  }
  Rok::Ptr<Acl::AclSubConfig> add6(const Rok::String& name, Rules<Acl::Ip6RuleConfig> rules = {}) {
    const auto sub = subConfig(rules);
    bare6(name)->aclSubConfigIs(sub);
    return sub;
  }
  // An ACL without a sub-configuration.
  Rok::Ptr<Acl::AclConfig> bare(const Rok::String& name) { return bareOf(*ipv4, name); }
  Rok::Ptr<Acl::AclConfig> bare6(const Rok::String& name) { return bareOf(*ipv6, name); }
  Rok::Ptr<Acl::AclConfig> acl(const Rok::String& name) const { return *ipv4->acl().find(name); }
  void remove(const Rok::String& name) { ipv4->aclDel(name); }
  void remove6(const Rok::String& name) { ipv6->aclDel(name); }

  // Starts and stops the root.
  void start() { root = QosOc::aclKivToOcSmFactory(config, classifiers); }
  void stop() { root = nullptr; }
  void restart() {
    stop();
    start();
  }
  Rok::Ptr<QosOc::AclTypeSm> types(Acl::AclType type = Acl::aclTypeIpv4) const {
    return root->aclTypeSm().child(type);
  }
  // The machine of an ACL; null when it is not mirrored.
  Rok::Ptr<QosOc::AclConfigSm> machine(const Rok::String& name,
                                       Acl::AclType type = Acl::aclTypeIpv4) const {
    return types(type)->aclConfigSm().child(name);
  }

  // The output.
  std::map<std::string, std::vector<std::string>> model() const {
    return conditionsModel(*classifiers);
  }
  QosOc::Config::Term term(const Rok::String& classifier, const Rok::String& id) const {
    const auto found = classifiers->classifier(classifier);
    return found && found->terms() ? found->terms()->term(id) : QosOc::Config::Term();
  }
  // Output of an earlier run, or of another writer.
  void earlier(
      const Rok::String& classifier, const QosOc::Config::Term& term,
      Rok::Optional<QosOc::Classifier::Type> type = QosOc::Classifier::classifierTypeIpv4) {
    const auto made = classifiers->classifierIs(classifier);
    made->configIs({classifier, type});
    made->termsIs()->termIs(term);
  }

 private:
  static Rok::Ptr<Acl::AclConfig> bareOf(Acl::Input::AclTypeConfig& type, const Rok::String& name) {
    const auto made = Rok::make<Acl::AclConfig>(name, type.type());
    type.aclIs(name, made);
    return made;
  }
};

}  // namespace support
