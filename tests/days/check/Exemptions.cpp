#include <algorithm>
#include <cctype>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmTerms.h"
#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "host/NativeWriter.h"
#include "host/Text.h"
#include "tests/days/check/Effects.h"

namespace days {
namespace {

using host::Tokens;

std::string nativeText(const Document& document) {
  return host::nativeJson(mounted(document.text(), 0), host::Layout::compact);
}

bool isDefault(const Case& one, const Tokens& place) {
  return nativeText(one.document()) == nativeText(one.document().without(place));
}

bool isForeign(const Case& /*one*/, const Tokens& place) {
  const auto name = [&](std::size_t i) { return Rok::String(place[i]); };
  const auto isTerm = [&](std::size_t i) {
    return !QosOc::classifierKeyFromConfigObjName(name(i)).second.empty();
  };
  const auto isPolicyMap = [](const Rok::String& text) {
    const auto [ipv4, ipv6] = QosOc::classifiersFromPmapName(text);
    return !ipv4.empty() || !ipv6.empty();
  };
  if (place[0] == "class-maps")
    return !isTerm(2) && QosOc::classifierNameFromClassName(name(2)).empty();
  if (place[0] == "access-lists") return !isTerm(2);
  if (place[0] == "policy-maps") return !isPolicyMap(name(2));
  if (place[0] == "service-policies")
    return !isPolicyMap(Rok::String(place[1].substr(place[1].find(':') + 1)));
  if (place[0] == "qos-profiles")
    return decodeQMPProfileName(name(1)).empty() && decodeSPProfileName(name(1)).empty();
  return false;
}

// ===== Interfaces and their comments

struct Attachment {
  bool hasPolicy = false;
  bool hasProfile = false;
};

// What the comment of a tx queue names. Requires: the place is one of a tx queue, or below.
Attachment attachmentOf(const Case& one, const Tokens& place) {
  Qos::TxQueue queue;
  queue.type = place[3].starts_with("uc") ? Qos::unicast : Qos::multicast;
  queue.id.value = static_cast<unsigned char>(std::stoul(place[3].substr(3)));
  const Rok::String key =
      QosOc::CommentHelper::commentKey(Nerit::IntfId{Rok::String(place[1])}, queue);
  const auto* text = one.document().find({"comments", std::string(std::string_view(key))});
  if (text == nullptr || text->GetStringLength() == 0) return {};
  const QosOc::CommentInfo info = deserializeJsonComment(Rok::String(text->GetString()));
  return {!info.sPInfo().schedulerPolicy().empty(),
          !info.qMPInfo().queueManagementProfile().empty()};
}

bool isSpokenFor(const Case& one, const Tokens& place) {
  if (place[0] != "interfaces" || place.size() < 5) return false;
  const Attachment attachment = attachmentOf(one, place);
  const bool isEcn = place[4] == "ecn" || place[4] == "wred";
  return isEcn ? attachment.hasProfile : attachment.hasPolicy;
}

bool isQueueOfProfile(const Case& one, const Tokens& place) {
  return place[0] == "interfaces" && place.size() == 4 && attachmentOf(one, place).hasProfile;
}

bool isBareInterface(const Case& one, const Tokens& place) {
  return place[0] == "interfaces" && place.size() == 2 &&
         one.document().below({place[0], place[1], "tx-queues"}).empty() &&
         one.document().find({place[0], place[1], "pfc"}) == nullptr;
}

bool isOtherComment(const Case& one, const Tokens& place) {
  if (place[0] != "comments") return false;
  std::string text = one.document().find(place)->GetString();
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text.find("metadata-openconfig") == text.npos;
}

bool isEmptyMetaData(const Case& one, const Tokens& place) {
  if (place[0] != "comments") return false;
  const Document comment(one.document().find(place)->GetString());
  const auto* metaData = comment.find({"MetaData-OpenConfig"});
  return metaData != nullptr && metaData->IsObject() && metaData->ObjectEmpty();
}

// ===== Classification

bool isAclWithoutDscp(const Case& one, const Tokens& place) {
  if (place[0] != "access-lists" || place.size() > 4) return false;
  const Tokens rules{place[0], place[1], place[2], "rules"};
  const auto all = one.document().below(rules);
  return std::all_of(all.begin(), all.end(), [&](const std::string& rule) {
    return one.document().below({place[0], place[1], place[2], "rules", rule}).empty();
  });
}

bool isRuleWithoutDscp(const Case& one, const Tokens& place) {
  return place[0] == "access-lists" && place.size() == 5 && one.document().below(place).empty();
}

// Of several rules with one DSCP, the finding stands at those behind the first.
bool isRuleOfSameDscp(const Case& one, const Tokens& place) {
  if (place[0] != "access-lists" || place.size() < 5) return false;
  const Tokens rules(place.begin(), place.begin() + 4);
  for (const host::Finding& finding : one.findings()) {
    const bool isSibling =
        finding.place.size() == 5 && std::equal(rules.begin(), rules.end(), finding.place.begin());
    if (finding.kind == "left-out" && isSibling) return true;
  }
  return false;
}

bool isClassMapOfWhatIsMade(const Case& one, const Tokens& place) {
  if (place[0] != "class-maps" || place.size() != 3) return false;
  if (!one.document().below({place[0], place[1], place[2], "match"}).empty()) return false;
  const auto [classifier, term] = QosOc::classifierKeyFromConfigObjName(Rok::String(place[2]));
  const Rok::String name =
      term.empty() ? QosOc::classifierNameFromClassName(Rok::String(place[2])) : classifier;
  return one.outcomes().values().contains(classifierPath(name) + "/name");
}

// Of two policy maps with one classifier, the finding stands at the first.
bool isLastPolicyMap(const Case& one, const Tokens& place) {
  if (place[0] != "policy-maps" || place.size() != 3) return false;
  for (const host::Finding& finding : one.findings()) {
    const bool isNamed = finding.text.find(host::quoted(place[2])) != std::string::npos;
    if (finding.kind == "shadowed" && finding.place[0] == place[0] && isNamed) return true;
  }
  return false;
}

bool isBarePolicyMap(const Case& one, const Tokens& place) {
  return place[0] == "policy-maps" && place.size() == 3 &&
         one.document().below({place[0], place[1], place[2], "classes"}).empty();
}

bool isClassWithoutActions(const Case& one, const Tokens& place) {
  return place[0] == "policy-maps" && place.size() == 5 &&
         one.document()
             .below({place[0], place[1], place[2], place[3], place[4], "actions"})
             .empty();
}

// Whether another service policy binds the interface to one of the same classifiers.
bool isBoundTwice(const Case& one, const Tokens& place) {
  if (place[0] != "service-policies") return false;
  if (place.size() == 2) {
    const auto all = one.document().below({place[0], place[1], "interfaces"});
    return std::all_of(all.begin(), all.end(), [&](const std::string& interface) {
      return isBoundTwice(one, {place[0], place[1], "interfaces", interface});
    });
  }
  const auto classifiers = [](const std::string& key) {
    return QosOc::classifiersFromPmapName(Rok::String(key.substr(key.find(':') + 1)));
  };
  const auto [ipv4, ipv6] = classifiers(place[1]);
  for (const std::string& key : one.document().below({"service-policies"})) {
    if (key == place[1]) continue;
    if (one.document().find({place[0], key, place[2], place[3]}) == nullptr) continue;
    const auto [other4, other6] = classifiers(key);
    if ((!ipv4.empty() && ipv4 == other4) || (!ipv6.empty() && ipv6 == other6)) return true;
  }
  return false;
}

bool hasFindingAt(const Case& one, const Tokens& place) {
  return std::any_of(one.findings().begin(), one.findings().end(),
                     [&](const host::Finding& finding) { return finding.place == place; });
}

// The groups of a traffic class.
std::vector<std::string> groupsOf(const Case& one, const std::string& trafficClass) {
  std::vector<std::string> groups = one.document().below({"forwarding-groups"});
  std::erase_if(groups, [&](const std::string& group) {
    return one.document().text({"forwarding-groups", group}) != trafficClass;
  });
  return groups;
}

// Whether a name of the tx queue has a finding.
bool isNameFound(const Case& one, const std::string& id) {
  const auto names = one.document().below({"queue-names"});
  return std::any_of(names.begin(), names.end(), [&](const std::string& name) {
    const Tokens place{"queue-names", name};
    return one.document().text(place) == id && hasFindingAt(one, place);
  });
}

bool isAttachmentToFoundName(const Case& one, const Tokens& place) {
  constexpr std::string_view middle = "-txq-";
  if (place[0] != "comments") return false;
  const std::size_t found = place[1].rfind(middle);
  return found != std::string::npos && isNameFound(one, place[1].substr(found + middle.size()));
}

bool isSlotWithoutGroup(const Case& one, const Tokens& place) {
  return place[0] == "tc-to-tx-queue" && groupsOf(one, place[1]).empty();
}

bool isSlotOfFoundGroup(const Case& one, const Tokens& place) {
  if (place[0] != "tc-to-tx-queue") return false;
  if (isNameFound(one, one.document().text(place))) return true;
  const auto groups = groupsOf(one, place[1]);
  return std::any_of(groups.begin(), groups.end(), [&](const std::string& group) {
    return hasFindingAt(one, {"forwarding-groups", group});
  });
}

bool isActionOfGroupLeftOut(const Case& one, const Tokens& place) {
  if (place[0] != "policy-maps" || place.back() != "set-traffic-class") return false;
  const auto groups = groupsOf(one, one.document().text(place));
  return std::any_of(groups.begin(), groups.end(), [&](const std::string& group) {
    return hasFindingAt(one, {"forwarding-groups", group});
  });
}

// ===== Order. A finding stands at one of the places that don't agree.

bool isOfOrderElsewhere(const Case& one, const Tokens& place) {
  const auto isAbout = [&](const host::Finding& finding) {
    if (finding.kind != "order") return false;
    if (place[0] == "service-policies" && finding.place[0] == place[0])
      return one.document().find({place[0], place[1], "interfaces", finding.place[3]}) != nullptr;
    if (place[0] != "comments") return false;
    if (finding.place[0] == "comments") {
      const std::size_t type = place[1].rfind("-txq-");
      const std::size_t begin = type != std::string::npos ? type - 3 : 0;
      return finding.place[1].substr(0, begin) == place[1].substr(0, begin);
    }
    if (finding.place[0] != "interfaces") return false;
    const Nerit::IntfId interface { Rok::String(finding.place[1]) };
    return place[1].starts_with("if-" + std::string(interface.shortName()) + '-');
  };
  return std::any_of(one.findings().begin(), one.findings().end(), isAbout);
}

// ===== Profiles

bool isInPolicyProfile(const Case& /*one*/, const Tokens& place) {
  return place[0] == "qos-profiles" && place.size() > 2 &&
         !decodeSPProfileName(Rok::String(place[1])).empty();
}

bool isOtherQueue0(const Case& one, const Tokens& place) {
  if (place[0] != "qos-profiles" || place.size() != 4) return false;
  const auto has = [&](const char* queue) {
    return one.document().find({place[0], place[1], place[2], queue}) != nullptr;
  };
  return (place[3] == "uc-0" || place[3] == "mc-0") && has("uc-0") && has("mc-0");
}

bool isWredLikeEcn(const Case& one, const Tokens& place) {
  return place[0] == "qos-profiles" && place.size() == 6 && place[4] == "wred" &&
         one.document().find({place[0], place[1], place[2], place[3], "ecn", place[5]}) != nullptr;
}

// The interface's part of a tx queue's comment key: "if-Et1".
std::string interfaceOf(const std::string& key) {
  const std::size_t found = key.rfind("-txq-");
  return found != std::string::npos && found > 3 ? key.substr(0, found - 3) : key;
}

// Of the tx queues of an interface, another one names the same policy, or the same profile.
bool isNamedTwice(const Case& one, const Tokens& place) {
  if (place[0] != "comments") return false;
  const Document comment(one.document().find(place)->GetString());
  for (const std::string& key : one.document().below({"comments"})) {
    if (key == place[1] || interfaceOf(key) != interfaceOf(place[1])) continue;
    const Document other(one.document().find({"comments", key})->GetString());
    for (const char* part : {"scheduler-policy", "queue-management-profile"}) {
      const Tokens name{"MetaData-OpenConfig", part, "name"};
      const auto* mine = comment.find(name);
      const auto* others = other.find(name);
      if (mine != nullptr && others != nullptr && *mine == *others) return true;
    }
  }
  return false;
}

}  // namespace

const std::vector<Exemption>& exemptions() {
  static const std::vector<Exemption> table = {
      {"a setting at its default", "The device holds the same without it.", isDefault,
       R"({"interfaces":{"E1":{"tx-queues":{"uc-3":{"bandwidth":101}}}}})"},
      {"a name of another's", "Objects of other names are the operator's own, and are left alone.",
       isForeign, R"({"class-maps":{"qos":{"MGMT":{}}}})"},
      {"a setting for which a comment speaks",
       "The device's setting was made from what the comment names, and that is translated.",
       isSpokenFor,
       R"({"interfaces":{"E1":{"tx-queues":{"uc-3":{"bandwidth":40}}}},)"
       R"("comments":{"if-E1-uc-txq-3":"{\"MetaData-OpenConfig\":{\"scheduler-policy\":{\"name\":\"p\"}}}"}})"},
      {"a tx queue whose comment names a profile",
       "What the comment says for the interface, another tx queue may say, too.", isQueueOfProfile,
       R"({"interfaces":{"E1":{"tx-queues":{"uc-3":{}}}},)"
       R"("comments":{"if-E1-uc-txq-3":"{\"MetaData-OpenConfig\":{\"queue-management-profile\":{\"name\":\"q\"}}}"}})"},
      {"an interface without settings", "There is nothing to translate.", isBareInterface,
       R"({"interfaces":{"E1":{}}})"},
      {"a comment without metadata", "Comments of other origin share the store.", isOtherComment,
       R"({"comments":{"port":"uplink"}})"},
      {"metadata without a member", "It says nothing, in so many words.", isEmptyMetaData,
       R"({"interfaces":{"E1":{"tx-queues":{"uc-3":{}}}},)"
       R"("comments":{"if-E1-uc-txq-3":"{\"MetaData-OpenConfig\":{}}"}})"},
      {"an access list without a DSCP", "A term's conditions are DSCPs alone.", isAclWithoutDscp,
       R"({"access-lists":{"ipv4":{"__yang_[a]_[t]":{}}}})"},
      {"a rule without a DSCP", "A term's conditions are DSCPs alone.", isRuleWithoutDscp,
       R"({"class-maps":{"qos":{"__yang_[a]_[]":{"match":["ip-access-group"]},"__yang_[a]_[t]":{"match":["ip-access-group"]}}},)"
       R"("access-lists":{"ipv4":{"__yang_[a]_[t]":{"rules":{"10":{"dscp":46},)"
       R"("20":{}}}}}})"},
      {"a rule whose DSCP another rule has", "The finding stands at the later one.",
       isRuleOfSameDscp,
       R"({"class-maps":{"qos":{"__yang_[a]_[]":{"match":["ip-access-group"]},"__yang_[a]_[t]":{"match":["ip-access-group"]}}},)"
       R"("access-lists":{"ipv4":{"__yang_[a]_[t]":{"rules":{"10":{"dscp":46},)"
       R"("20":{"dscp":46},"30":{"dscp":10}}}}}})"},
      {"a class map without a match statement of a classifier that is made",
       "It keeps the classifier, or the term, from being swept at a restart.",
       isClassMapOfWhatIsMade,
       R"({"class-maps":{"qos":{"__yang_[a]_[]":{}}},)"
       R"("policy-maps":{"qos":{"__yang_[IPV4__a]":{}}}})"},
      {"a policy map behind another one of its classifier", "The finding stands at the first.",
       isLastPolicyMap,
       R"({"class-maps":{"qos":{"__yang_[a]_[]":{"match":["ip-access-group"]},"__yang_[b]_[]":{"match":["ip-access-group"]},"__yang_[b]_[t]":{"match":["ip-access-group"]}}},)"
       R"("policy-maps":{"qos":{"__yang_[IPV4__a][IPV6__b]":{"classes":{"__yang_[b]_[t]":{"actions":{"set-traffic-class":5}}}},)"
       R"("__yang_[IPV6__b]":{"classes":{"__yang_[b]_[t]":{"actions":{"set-traffic-class":5}}}}}},)"
       R"("forwarding-groups":{"g":5}})"},
      {"a policy map without classes", "It makes its classifiers, and so may something else.",
       isBarePolicyMap,
       R"({"policy-maps":{"qos":{"__yang_[IPV6__a]":{}}},)"
       R"("access-lists":{"ipv6":{"__yang_[a]_[t]":{"rules":{"10":{"tc":184,)"
       R"("tc-mask":252}}}}}})"},
      {"an interface that another service policy binds to the same", "Both say the same of it.",
       isBoundTwice,
       R"({"service-policies":{"0:__yang_[IPV4__a]":{"interfaces":{"E1":true}},)"
       R"("0:__yang_[IPV4__a][IPV6__b]":{"interfaces":{"E1":true}}},)"
       R"("policy-maps":{"qos":{"__yang_[IPV4__a]":{},"__yang_[IPV4__a][IPV6__b]":{}}},)"
       R"("interfaces":{"E1":{}}})"},
      {"the tx queue of a traffic class without a group",
       "The device has more traffic classes than the model has groups.", isSlotWithoutGroup,
       R"({"tc-to-tx-queue":{"5":3}})"},
      {"the tx queue of a traffic class whose group or queue name has a finding",
       "That says that the group gets no queue, or that it is left out.", isSlotOfFoundGroup,
       R"({"tc-to-tx-queue":{"5":3},"forwarding-groups":{"g":5}})"},
      {"an action whose group has a finding", "The group's finding says that it is left out.",
       isActionOfGroupLeftOut,
       R"({"class-maps":{"qos":{"__yang_[b]_[]":{"match":["ip-access-group"]},"__yang_[b]_[t]":{"match":["ip-access-group"]}}},)"
       R"("forwarding-groups":{"n\u0001":5},)"
       R"("policy-maps":{"qos":{"__yang_[IPV4__b]":{"classes":{"__yang_[b]_[t]":{"actions":{"set-traffic-class":5}}}}}}})"},
      {"a comment of a tx queue whose name has a finding",
       "The name's finding says that it is left out, and the attachment stands under it.",
       isAttachmentToFoundName,
       R"({"interfaces":{"E1":{"tx-queues":{"uc-4":{"priority":"strict"},"uc-3":{}}}},)"
       R"("comments":{"if-E1-uc-txq-4":"{\"MetaData-OpenConfig\":{\"queue-management-profile\":{\"name\":\"q\"}}}",)"
       R"("if-E1-uc-txq-3":"{\"MetaData-OpenConfig\":{\"queue-management-profile\":{\"name\":\"r\"}}}"},)"
       R"("queue-names":{"n\u0001":4,"V":3}})"},
      {"one of several places on which a leaf depends by their order",
       "The finding stands at one of them.", isOfOrderElsewhere,
       R"({"interfaces":{"E1":{"tx-queues":{"uc-3":{},"uc-4":{},"uc-0":{}}}},)"
       R"("qos-profiles":{"__YANG_SP_[p]":{},"__YANG_SP_[r]":{}},)"
       R"("comments":{"qos-profile-__YANG_SP_[p]":"{\"MetaData-OpenConfig\":{\"1\":{}}}",)"
       R"("qos-profile-__YANG_SP_[r]":"{\"MetaData-OpenConfig\":{\"1\":{}}}",)"
       R"("if-E1-uc-txq-3":"{\"MetaData-OpenConfig\":{\"scheduler-policy\":{\"name\":\"p\"}}}",)"
       R"("if-E1-uc-txq-4":"{\"MetaData-OpenConfig\":{\"scheduler-policy\":{\"name\":\"r\"}}}"}})"},
      {"the tx queues of a scheduler policy's profile",
       "They were made from what its comment says, and that is translated.", isInPolicyProfile,
       R"({"qos-profiles":{"__YANG_SP_[p]":{"tx-queues":{"uc-3":{"bandwidth":40}}}},)"
       R"("comments":{"qos-profile-__YANG_SP_[p]":)"
       R"("{\"MetaData-OpenConfig\":{\"1\":{}}}"}})"},
      {"a class without actions", "A term's actions are those of its classes.",
       isClassWithoutActions,
       R"({"class-maps":{"qos":{"__yang_[a]_[]":{"match":["ip-access-group"]}}},)"
       R"("policy-maps":{"qos":{"__yang_[IPV4__a]":{"classes":{"class-default":{}}}}}})"},
      {"one of two queues 0 of a profile", "Where they differ, there is a finding.", isOtherQueue0,
       R"({"qos-profiles":{"__YANG_QMP_[q]":{"tx-queues":{"uc-0":{},"mc-0":{}}}}})"},
      {"WRED settings beside ECN's", "Where they differ, there is a finding.", isWredLikeEcn,
       R"({"qos-profiles":{"__YANG_QMP_[q]":{"tx-queues":{"uc-0":{"ecn":{"min-threshold":1,)"
       R"("max-threshold":2,"max-drop-percent":30},"wred":{"min-threshold":1,)"
       R"("max-threshold":2,"max-drop-percent":30}}}}}})"},
      {"a comment that names what another one of the interface names",
       "They say the same of the interface, whichever is met last.", isNamedTwice,
       R"({"interfaces":{"Ethernet1":{"tx-queues":{"uc-3":{},"uc-4":{},"mc-3":{}}}},)"
       R"("qos-profiles":{"__YANG_SP_[p]":{}},"comments":{"qos-profile-__YANG_SP_[p]":)"
       R"("{\"MetaData-OpenConfig\":{\"1\":{}}}",)"
       R"("if-Et1-uc-txq-3":"{\"MetaData-OpenConfig\":{\"scheduler-policy\":{\"name\":\"p\"}}}",)"
       R"("if-Et1-uc-txq-4":"{\"MetaData-OpenConfig\":{\"scheduler-policy\":{\"name\":\"p\"}}}",)"
       R"("if-Et1-mc-txq-3":"{\"MetaData-OpenConfig\":{\"scheduler-policy\":{\"name\":\"p\"}}}"}})"},
  };
  return table;
}

}  // namespace days
