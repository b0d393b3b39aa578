#include "host/check/Classification.h"

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmTerms.h"

namespace host {
namespace {

using QosOc::Classifier::classifierTypeIpv4;
using QosOc::Classifier::classifierTypeIpv6;

constexpr std::pair<Acl::AclType, const char*> families[] = {{Acl::aclTypeIpv4, "ipv4"},
                                                             {Acl::aclTypeIpv6, "ipv6"}};

class Gathering {
 public:
  explicit Gathering(const Native& native) : native_(native) {}

  Classification gathered() {
    classMaps();
    acls();
    policyMaps();
    return std::move(all_);
  }

 private:
  void classMaps() {
    const auto& maps = native_.aclConfig->cmapType(Qos::mapQos)->cmap();
    for (auto i = maps.unsafeIterator(); i; ++i) {
      const auto [classifier, term] = QosOc::classifierKeyFromConfigObjName(i->key());
      const Rok::String placeholder = QosOc::classifierNameFromClassName(i->key());
      if (!term.empty() && !classifier.empty()) {
        TermObjects& objects = all_[std::string(classifier)].terms[std::string(term)];
        objects.hasClassMap = true;
        objects.isMatched = i->value()->match().members() > 0;
        matches(all_[std::string(classifier)], *i->value());
      } else if (!placeholder.empty()) {
        all_[std::string(placeholder)].hasPlaceholder = true;
        matches(all_[std::string(placeholder)], *i->value());
      }
    }
  }
  static void matches(ClassifierObjects& classifier, const Qos::ClassMapConfig& classMap) {
    const Tokens place{"class-maps", "qos", std::string(classMap.name())};
    for (auto i = classMap.match().unsafeIterator(); i; ++i) {
      const bool isIpv6 = i->key() == Qos::matchIpv6AccessGroup;
      classifier.classMaps.push_back({isIpv6 ? classifierTypeIpv6 : classifierTypeIpv4, place});
    }
  }

  void acls() {
    for (const auto& [family, name] : families) {
      for (const auto& [key, acl] : native_.acls->config(family)->acl()) {
        const auto [classifier, term] = QosOc::classifierKeyFromConfigObjName(key);
        if (classifier.empty() || term.empty()) continue;
        ClassifierObjects& objects = all_[std::string(classifier)];
        objects.terms[std::string(term)].acls[static_cast<int>(family)] = acl;
        const auto& rules = acl->aclSubConfig();
        if (!rules || rules->ruleBySequence().members() == 0) continue;
        const bool isIpv6 = family == Acl::aclTypeIpv6;
        objects.hasRules[static_cast<int>(family)] = true;
        objects.later.push_back({isIpv6 ? classifierTypeIpv6 : classifierTypeIpv4,
                                 {"access-lists", name, std::string(key)}});
      }
    }
  }

  void policyMaps() {
    const auto type = native_.aclConfig->pmapType(Qos::mapQos);
    if (!type) return;
    for (const auto& [name, map] : type->pmap()) {
      const auto [ipv4, ipv6] = QosOc::classifiersFromPmapName(name);
      if (ipv4.empty() && ipv6.empty()) continue;
      const Tokens place{"policy-maps", "qos", std::string(name)};
      if (!ipv4.empty()) named(ipv4, classifierTypeIpv4, place);
      if (!ipv6.empty()) named(ipv6, classifierTypeIpv6, place);
      classes(*map, {"policy-maps", "qos", std::string(name), "classes"}, ipv4);
    }
  }
  void named(const Rok::String& name, ClassifierType type, const Tokens& place) {
    ClassifierObjects& classifier = all_[std::string(name)];
    classifier.later.push_back({type, place});
    // One name can stand for both families.
    const bool isKnown = !classifier.policyMaps.empty() && classifier.policyMaps.back() == place;
    if (!isKnown) classifier.policyMaps.push_back(place);
  }
  void classes(const Qos::PolicyMapConfig& map, const Tokens& place, const Rok::String& ipv4) {
    for (auto i = map.classAction().unsafeIterator(); i; ++i) {
      const auto [classifier, term] = QosOc::classifierKeyFromConfigObjName(i->key());
      if (classifier.empty() || term.empty()) continue;
      ClassifierObjects& objects = all_[std::string(classifier)];
      const Tokens at = below(place, i->key());
      objects.later.push_back({classifier == ipv4 ? classifierTypeIpv4 : classifierTypeIpv6, at});
      objects.terms[std::string(term)].classes.push_back(
          {at, i->value()->policyAction(Qos::actionSetTc) != nullptr, hasTarget(*i->value())});
    }
  }
  bool hasTarget(const Qos::ClassAction& action) const {
    const auto setTc = action.policyAction(Qos::actionSetTc);
    const auto& names = native_.qosConfig->forwardingGroupNameToTcMap();
    return setTc && !QosOc::targetGroupFromTc(setTc->value(), names).empty();
  }

  const Native& native_;
  Classification all_;
};

}  // namespace

bool TermObjects::hasRules(ClassifierType family) const {
  const auto& acl = acls[family == classifierTypeIpv6 ? 1 : 0];
  return acl && acl->aclSubConfig() && acl->aclSubConfig()->ruleBySequence().members() > 0;
}

Classification classificationOf(const Native& native) { return Gathering(native).gathered(); }

}  // namespace host
