// Names: those that are almost of a form that is read, and those that the model can't hold.
#include <algorithm>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmTerms.h"
#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "host/Nearest.h"
#include "host/check/Rule.h"
#include "host/check/Rules.h"
#include "host/openconfig/LeafTable.h"

namespace host {
namespace {

constexpr const char* termForm = "__yang_[CLASSIFIER]_[TERM]";
constexpr const char* classMapForm = "__yang_[CLASSIFIER]_[TERM] or __yang_[CLASSIFIER]_[]";
constexpr const char* policyMapForm =
    "__yang_[IPV4__CLASSIFIER], __yang_[IPV6__CLASSIFIER] or "
    "__yang_[IPV4__CLASSIFIER][IPV6__CLASSIFIER]";
constexpr const char* profileForm = "__YANG_QMP_[NAME] or __YANG_SP_[NAME]";

// Whether a name was probably meant to be of a form that is read: its first word is "yang", or has a
// slip of it before a bracket.
bool isNearly(std::string_view name) {
  constexpr std::string_view prefix = "__yang";
  std::string letters(name);
  std::transform(letters.begin(), letters.end(), letters.begin(), lower);
  if (letters.starts_with(prefix)) return true;
  const std::size_t begin = letters.find_first_not_of("_ \t");
  const std::size_t bracket = letters.find('[');
  if (begin == letters.npos || bracket == letters.npos) return false;
  const std::string word = letters.substr(begin, letters.find_first_of("_[ ", begin) - begin);
  return word == "yang" || (begin > 0 && word[0] == 'y' && !nearest(word, {"yang"}).empty());
}

class NameRules : Rule {
 public:
  using Rule::Rule;

  void judge() {
    judgeClassMaps();
    judgeAcls();
    judgePolicyMaps();
    judgeServicePolicies();
    judgeProfiles();
    judgeNamed();
    judgeComments();
  }

 private:
  // ===== Names of a form

  void form(const Tokens& place, std::string_view name, std::string_view kind,
            std::string_view forms) {
    if (!isNearly(name)) return;
    find("name-form", place,
         "the name is almost one that stands for an OpenConfig object, so the " +
             std::string(kind) + " is not translated; write " + std::string(forms));
  }
  // A name that stands in a leaf.
  void text(const Tokens& place, std::string_view name, std::string_view kind) {
    if (isYangString(name)) return;
    find("left-out", place,
         quoted(name) + " has characters that no OpenConfig string holds, and the " +
             std::string(kind) + " is left out; use another name");
  }

  // False for a name that is none of ours.
  bool term(const Tokens& place, const Rok::String& name) {
    const auto [classifier, term] = QosOc::classifierKeyFromConfigObjName(name);
    if (classifier.empty() || term.empty()) return false;
    text(place, classifier, "classifier");
    text(place, term, "term");
    return true;
  }

  void judgeClassMaps() {
    const auto& types = native().aclConfig->cmapType();
    for (auto i = types.unsafeIterator(); i; ++i) {
      for (auto map = i->value()->cmap().unsafeIterator(); map; ++map) {
        if (i->key() == Qos::mapQos) {
          judgeClassMap(map->key());
        } else {
          otherType("class-maps", i->key(), map->key());
        }
      }
    }
  }
  void judgeClassMap(const Rok::String& name) {
    const Tokens place{"class-maps", "qos", std::string(name)};
    if (term(place, name)) return;
    const Rok::String classifier = QosOc::classifierNameFromClassName(name);
    text(place, classifier, "classifier");
    if (classifier.empty()) form(place, name, "class map", classMapForm);
  }

  // A map of a type that no translator reads.
  void otherType(const std::string& section, Qos::MapType type, std::string_view name) {
    if (!isNearly(name)) return;
    const std::string number = std::to_string(static_cast<unsigned>(type));
    const std::string maps = section == "class-maps" ? "class maps" : "policy maps";
    find("untranslated", {section, number, std::string(name)},
         maps + " of the map type " + number + " are not translated; move it to /" + section +
             "/qos");
  }

  void judgeAcls() {
    judgeAcls(Acl::aclTypeIpv4, "ipv4");
    judgeAcls(Acl::aclTypeIpv6, "ipv6");
  }
  void judgeAcls(Acl::AclType family, const char* name) {
    for (const auto& [key, acl] : native().acls->config(family)->acl()) {
      const Tokens place{"access-lists", name, std::string(key)};
      if (!term(place, key)) form(place, key, "access list", termForm);
    }
  }

  void judgePolicyMaps() {
    const auto& types = native().aclConfig->pmapType();
    for (auto i = types.unsafeIterator(); i; ++i) {
      for (const auto& [name, map] : i->value()->pmap()) {
        if (i->key() == Qos::mapQos) {
          judgePolicyMap({"policy-maps", "qos", std::string(name)}, name, *map);
        } else {
          otherType("policy-maps", i->key(), name);
        }
      }
    }
  }
  void judgePolicyMap(const Tokens& place, const Rok::String& name,
                      const Qos::PolicyMapConfig& map) {
    const auto [ipv4, ipv6] = QosOc::classifiersFromPmapName(name);
    text(place, ipv4, "classifier");
    text(place, ipv6, "classifier");
    if (ipv4.empty() && ipv6.empty()) return form(place, name, "policy map", policyMapForm);
    const auto& classes = map.classAction();
    for (auto i = classes.unsafeIterator(); i; ++i) {
      const Tokens at = below(below(place, "classes"), i->key());
      if (!term(at, i->key())) form(at, i->key(), "class", termForm);
    }
  }

  void judgeServicePolicies() {
    const auto& policies = native().qosConfig->servicePolicyConfig();
    for (auto i = policies.unsafeIterator(); i; ++i) {
      const auto [ipv4, ipv6] = QosOc::classifiersFromPmapName(i->key().pmapName);
      const Tokens place = servicePolicyPlace(i->key());
      if (ipv4.empty() && ipv6.empty()) {
        form(place, i->key().pmapName, "service policy", policyMapForm);
      } else {
        text(place, ipv4, "binding of the classifier");
        text(place, ipv6, "binding of the classifier");
        judgeBound(*i->value(), below(place, "interfaces"));
      }
    }
  }
  void judgeBound(const Qos::ServicePolicyConfig& policy, const Tokens& place) {
    for (auto i = policy.intfIds().unsafeIterator(); i; ++i) {
      const Rok::String& name = i->key().stringValue();
      text(below(place, name), name, "interface");
    }
  }

  void judgeProfiles() {
    for (auto i = native().qosProfiles->config().unsafeIterator(); i; ++i) {
      const Tokens place{"qos-profiles", std::string(i->key())};
      const Rok::String profile = decodeQMPProfileName(i->key());
      const Rok::String policy = decodeSPProfileName(i->key());
      text(place, profile, "profile");
      text(place, policy, "scheduler policy");
      if (profile.empty() && policy.empty()) form(place, i->key(), "QoS profile", profileForm);
    }
  }

  // ===== Names that stand for themselves

  void judgeNamed() {
    const auto& config = *native().qosConfig;
    for (const auto& [name, tc] : config.forwardingGroupNameToTcMap()->forwardingGroupNameToTc())
      named("forwarding-groups", name.name, "forwarding group");
    for (const auto& [name, id] : config.queueNameToTxQueueIdMap()->queueNameToTxQueueId())
      named("queue-names", name.name, "queue");
    for (auto i = config.intfConfig().unsafeIterator(); i; ++i) {
      const bool isUsed = i->value()->txQueueConfig().members() > 0 || i->value()->pfcPortConfig();
      if (isUsed) named("interfaces", i->key().stringValue(), "interface");
    }
  }
  void named(const char* section, std::string_view name, const char* kind) {
    const Tokens place{section, std::string(name)};
    if (!name.empty()) return text(place, name, kind);
    find("left-out", place,
         "an empty name is no key, and the " + std::string(kind) + " is left out; name it");
  }

  // ===== Names in comments

  void judgeComments() {
    for (const auto& [id, queues] : device().interfaces) {
      for (const DeviceQueue& queue : queues) {
        text(queue.comment(), queue.policy, "attachment of the scheduler policy");
        text(queue.comment(), queue.profile, "attachment of the profile");
      }
    }
    for (const auto& [name, policy] : device().policies) judgeInputs(policy);
  }
  void judgeInputs(const DevicePolicy& policy) {
    for (const auto& [sequence, scheduler] : policy.info.schedulers()) {
      for (const auto& [id, input] : scheduler.inputs()) {
        text(policy.comment(), id, "scheduler input");
        text(policy.comment(), input.q(), "queue of a scheduler input");
      }
    }
  }
};

}  // namespace

void judgeNames(const Device& device, const Findings& findings) {
  NameRules(device, findings).judge();
}

}  // namespace host
