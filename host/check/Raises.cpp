#include "host/check/Raises.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "QosOpenConfig/QosOpenConfigHelperComments.h"
#include "QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "host/CommentFaults.h"
#include "host/check/Places.h"
#include "host/check/QueueComment.h"
#include "host/check/Untraced.h"

namespace host {
namespace {

constexpr unsigned noThreshold = 4294967295;
constexpr unsigned lastTrafficClass = Qos::Input::Config::trafficClasses - 1;

// What a value does to its root, and what should stand in its place.
std::string sentence(std::uint64_t value, std::string_view wrong, std::string_view root,
                     std::string_view lost, std::string_view remedy) {
  std::string text = std::to_string(value);
  text.append(" ").append(wrong).append(": the root ").append(root).append(" raises over it, and ");
  return text.append(lost).append(" are missing; write ").append(remedy);
}

// Finds what raises below one place.
struct Judge {
  std::string_view root;
  std::string_view lost;  // without the root
  Tokens decider;
  const Raises::Found& found;

  void percent(const Tokens& place, unsigned value) const {
    if (value <= Qos::percentMax) return;
    const bool isNone = value == Qos::percentNotConfigured.value;
    const std::string_view wrong =
        isNone ? "stands for none, and one is needed" : "is no percentage";
    raise(place, value, wrong, "0 to 100");
  }
  void threshold(const Tokens& place, std::uint32_t value) const {
    if (value == noThreshold) raise(place, value, "is no threshold", "at most 4294967294");
  }
  void raise(const Tokens& place, std::uint64_t value, std::string_view wrong,
             std::string_view remedy) const {
    found({root, place, decider, sentence(value, wrong, root, lost, remedy)});
  }
};

// ===== Tx queues of interfaces

bool raises(const Qos::TxQueueConfig& queue) {
  return queue.bandwidth().value > Qos::percentMax &&
         queue.bandwidth() != Qos::percentNotConfigured;
}

bool raises(const Qos::EcnWredConfig& ecn) {
  return ecn.maxDropPercent().value > Qos::percentMax || ecn.minThreshold() == noThreshold ||
         ecn.maxThreshold() == noThreshold;
}

Tokens placeOf(const QueueComment& comment) { return {"comments", std::string(comment.key)}; }

// ===== QoS profiles

void judgeSettings(const Judge& judge, const Tokens& place,
                   const Qos::TxQueueConfig::EcnWred& settings) {
  if (settings) judge.percent(below(place, "max-drop-percent"), settings->maxDropPercent().value);
}

// Whether the model has a rate of the scheduler. It stays then, and the comment's isn't read.
bool hasRate(const Model* model, const Rok::String& policyName, std::uint32_t sequence) {
  if (model == nullptr) return false;
  const auto policy = model->schedulerPolicies->schedulerPolicy(policyName);
  if (!policy || !policy->schedulers()) return false;
  const auto scheduler = policy->schedulers()->scheduler(sequence);
  return scheduler && scheduler->oneRateTwoColor();
}

// ===== Service policies

// Whether the root reads policy maps of that name. The bare prefix has no classifiers, and counts.
bool isReadPolicyMap(const Rok::String& policyMap) {
  const Untraced untraced;
  const auto [ipv4, ipv6] = QosOc::classifierGroupFromPmapName(policyMap);
  return !ipv4.empty() || !ipv6.empty() || policyMap == "__yang_";
}

}  // namespace

void Raises::bandwidth(const Nerit::IntfId& interface, const Qos::TxQueueConfig& queue,
                       const Found& found) const {
  if (!raises(queue)) return;
  const auto comment = QueueComment::of(native_, interface, queue.txQueue());
  if (comment.speaksForOthers()) return;
  const Judge judge{"queue", "queues", placeOf(comment), found};
  judge.raise(below(queuePlace(interface, queue.txQueue()), "bandwidth"), queue.bandwidth().value,
              "is no percentage", "0 to 100, or leave it out");
}

void Raises::ecn(const Nerit::IntfId& interface, const Qos::TxQueueConfig& queue,
                 const Found& found) const {
  const auto& ecn = queue.ecnConfig();
  if (!ecn || !raises(*ecn)) return;
  const auto comment = QueueComment::of(native_, interface, queue.txQueue());
  if (comment.speaksForEcn()) return;
  const Judge judge{"queue", "queues", placeOf(comment), found};
  const Tokens place = below(queuePlace(interface, queue.txQueue()), "ecn");
  judge.percent(below(place, "max-drop-percent"), ecn->maxDropPercent().value);
  judge.threshold(below(place, "min-threshold"), ecn->minThreshold());
  judge.threshold(below(place, "max-threshold"), ecn->maxThreshold());
}

// The percentages of both blocks are tested, though the numbers of one alone are used.
void Raises::settings(const Qos::QosProfileConfig& profile, const Found& found) const {
  if (!profile.qosProfile()) return;
  const Untraced untraced;
  if (decodeQMPProfileName(profile.name()).empty()) return;
  const Judge judge{
      "queue-management", "queue-management profiles and their attachments", {}, found};
  const auto& queues = profile.qosProfile()->txQueueConfig();
  for (auto q = queues.unsafeIterator(); q; ++q) {
    if (q->key().id != 0 || !q->value()) continue;
    const Tokens place{"qos-profiles", std::string(profile.name()), "tx-queues",
                       queueText(q->key())};
    judgeSettings(judge, below(place, "ecn"), q->value()->ecnConfig());
    judgeSettings(judge, below(place, "wred"), q->value()->wredConfig());
  }
}

void Raises::rates(const Rok::String& profile, const Found& found) const {
  const Untraced untraced;
  const Rok::String policy = decodeSPProfileName(profile);
  if (policy.empty()) return;
  const Rok::String key = QosOc::Helper::profileCommentKey(profile);
  const Rok::String text = native_.cliConfig->comment(key);
  if (text.empty() || profileFault(text)) return;
  const Judge judge{"scheduler-policy",
                    "scheduler policies and their attachments",
                    {"qos-profiles", std::string(profile)},
                    found};
  const auto info = deserializeJsonProfileComment(text);
  for (auto i = info.schedulers().unsafeIterator(); i; ++i) {
    const unsigned percent = i->value().oneRateTwoColor().cirPct();
    if (percent <= Qos::percentMax || hasRate(model_, policy, i->key())) continue;
    judge.raise({"comments", std::string(key)}, percent,
                "is no percentage, as the cir-pct of scheduler " + std::to_string(i->key()),
                "1 to 100");
  }
}

void Raises::group(const Qos::ForwardingGroupName& name, Qos::TrafficClass tc,
                   const Found& found) const {
  if (tc.value <= lastTrafficClass) return;
  const Judge judge{"forwarding-group", "forwarding groups", {}, found};
  judge.raise({"forwarding-groups", std::string(name.name)}, tc.value, "is no traffic class",
              "0 to 16");
}

// A machine stands for a policy map, whatever the tag: the second service policy of one finds that
// of the first.
void Raises::servicePolicies(std::vector<Qos::ServicePolicyKey> keys, const Found& found) const {
  if (keys.size() < 2 || !isReadPolicyMap(keys.front().pmapName)) return;
  std::sort(keys.begin(), keys.end());
  for (const Qos::ServicePolicyKey& key : keys) {
    const Qos::ServicePolicyKey& other = key == keys[0] ? keys[1] : keys[0];
    found({"interface-classifier", servicePolicyPlace(key), servicePolicyPlace(other),
           "tag " + std::to_string(other.keyTag) +
               " has the same policy map: the root interface-classifier raises over it, and "
               "bindings are "
               "missing; keep one of the two"});
  }
}

// ===== The whole device

void Raises::queues(const Found& found) const {
  for (auto i = native_.qosConfig->intfConfig().unsafeIterator(); i; ++i) {
    if (!i->value()) continue;
    for (auto q = i->value()->txQueueConfig().unsafeIterator(); q; ++q) {
      if (!q->value()) continue;
      ecn(i->key(), *q->value(), found);
      bandwidth(i->key(), *q->value(), found);
    }
  }
}

void Raises::profiles(const Found& found) const {
  for (auto i = native_.qosProfiles->config().unsafeIterator(); i; ++i) {
    if (i->value()) settings(*i->value(), found);
  }
}

void Raises::policies(const Found& found) const {
  for (auto i = native_.qosProfiles->config().unsafeIterator(); i; ++i) rates(i->key(), found);
}

void Raises::groups(const Found& found) const {
  const auto& map = native_.qosConfig->forwardingGroupNameToTcMap();
  if (!map) return;
  for (const auto& [name, tc] : map->forwardingGroupNameToTc()) group(name, tc, found);
}

void Raises::servicePolicies(const Found& found) const {
  std::map<std::string_view, std::vector<Qos::ServicePolicyKey>> byPolicyMap;
  for (auto i = native_.qosConfig->servicePolicyConfig().unsafeIterator(); i; ++i) {
    byPolicyMap[i->key().pmapName].push_back(i->key());
  }
  for (const auto& [policyMap, keys] : byPolicyMap) servicePolicies(keys, found);
}

void Raises::all(const Found& found) const {
  servicePolicies(found);
  groups(found);
  queues(found);
  profiles(found);
  policies(found);
}

void Raises::of(std::string_view root, const Found& found) const {
  using Rule = void (Raises::*)(const Found&) const;
  static constexpr std::pair<std::string_view, Rule> rules[] = {
      {"interface-classifier", &Raises::servicePolicies},
      {"forwarding-group", &Raises::groups},
      {"queue", &Raises::queues},
      {"queue-management", &Raises::profiles},
      {"scheduler-policy", &Raises::policies},
  };
  for (const auto& [name, rule] : rules) {
    if (name == root) (this->*rule)(found);
  }
}

}  // namespace host
