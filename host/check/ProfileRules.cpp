// QoS profiles that stand for queue-management profiles and for scheduler policies.
#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"
#include "host/check/Rule.h"
#include "host/check/Rules.h"
#include "host/openconfig/LeafTable.h"

namespace host {
namespace {

using TxQueues = std::vector<Rok::Ptr<Qos::TxQueueConfig>>;

class ProfileRules : Rule {
 public:
  ProfileRules(const Device& device, const Findings& findings)
      : Rule(device, findings), queues_([this] { return queueNames(); }) {}

  void judge() {
    for (auto i = native().qosProfiles->config().unsafeIterator(); i; ++i) {
      if (!decodeQMPProfileName(i->key()).empty()) judgeQueueManagement(*i->value());
    }
    for (const auto& [name, policy] : device().policies) judgePolicy(policy);
  }

 private:
  static Tokens placeOf(const Qos::QosProfileConfig& profile) {
    return {"qos-profiles", std::string(profile.name())};
  }
  static Tokens placeOf(const Qos::QosProfileConfig& profile, const Qos::TxQueue& queue) {
    return {"qos-profiles", std::string(profile.name()), "tx-queues", queueText(queue)};
  }

  // ===== Queue management

  void judgeQueueManagement(const Qos::QosProfileConfig& profile) {
    TxQueues read;  // the unicast and the multicast queue 0
    if (profile.qosProfile()) {
      for (auto i = profile.qosProfile()->txQueueConfig().unsafeIterator(); i; ++i) {
        if (i->key().id.value == 0) {
          read.push_back(i->value());
        } else {
          find("untranslated", placeOf(profile, i->key()),
               "a queue-management profile has the settings of tx queue 0 alone; remove this one");
        }
      }
    }
    if (read.empty()) {
      return find("untranslated", placeOf(profile),
                  "has no tx queue 0, whose settings are those of the queue-management profile, so "
                  "none is made; add tx queue uc-0");
    }
    for (const auto& queue : read) judgeSettings(*queue, placeOf(profile, queue->txQueue()));
    if (read.size() == 2 && !isSameProfile(*read[0], *read[1])) {
      find("order", below(placeOf(profile), "tx-queues"),
           "uc-0 and mc-0 differ, and whose settings the profile gets depends on the order in "
           "which they are met; keep one");
    }
  }

  // The settings that a profile is made from: ECN's, if there are any.
  static const Qos::TxQueueConfig::EcnWred& sourceOf(const Qos::TxQueueConfig& queue) {
    return queue.ecnConfig() ? queue.ecnConfig() : queue.wredConfig();
  }
  static bool isSameProfile(const Qos::TxQueueConfig& a, const Qos::TxQueueConfig& b) {
    const auto& x = sourceOf(a);
    const auto& y = sourceOf(b);
    if (!x != !y || !a.ecnConfig() != !b.ecnConfig() || !a.wredConfig() != !b.wredConfig())
      return false;
    return !x ||
           (x->minThreshold() == y->minThreshold() && x->maxThreshold() == y->maxThreshold() &&
            x->maxDropPercent() == y->maxDropPercent());
  }

  void judgeSettings(const Qos::TxQueueConfig& queue, const Tokens& place) {
    const auto lost = [&](const char* setting) {
      find("untranslated", below(place, setting),
           "a queue-management profile has the settings of ECN and WRED alone; remove it");
    };
    if (queue.priority() != Qos::priorityNotConfigured) lost("priority");
    if (queue.bandwidth() != Qos::Percent()) lost("bandwidth");
    if (queue.shape() != 0) lost("shape");
    const auto& source = sourceOf(queue);
    if (!source) return;
    const Tokens from = below(place, queue.ecnConfig() ? "ecn" : "wred");
    judgeSource(*source, from);
    if (!queue.ecnConfig() || !queue.wredConfig()) return;
    const auto& ecn = *queue.ecnConfig();
    const auto& wred = *queue.wredConfig();
    const bool isSame =
        ecn.minThreshold() == wred.minThreshold() && ecn.maxThreshold() == wred.maxThreshold() &&
        ecn.thresholdUnit() == wred.thresholdUnit() &&
        ecn.maxDropPercent() == wred.maxDropPercent() && ecn.weight() == wred.weight();
    if (isSame) return;
    find("untranslated", below(place, "wred"),
         "the profile gets the thresholds and the percentage of ECN, and these are lost; "
         "write the same as in ecn");
  }

  void judgeSource(const Qos::EcnWredConfig& source, const Tokens& place) {
    judgeThresholds(source, place);
    if (source.thresholdUnit() != 0) {
      find("untranslated", below(place, "threshold-unit"),
           "the unit is dropped, and the thresholds stand in leaves that count bytes; "
           "write them in bytes");
    }
    if (source.weight() != 0) {
      find("untranslated", below(place, "weight"),
           "the weight is dropped: that of a queue-management profile is always 0; remove it");
    }
  }

  // ===== Scheduler policies. What their profiles hold was made from what the comment says.

  void judgePolicy(const DevicePolicy& policy) {
    if (native().cliConfig->comment(policy.commentKey).empty()) {
      find("missing", {"qos-profiles", std::string(policy.profile)},
           "there is no comment " + quoted(policy.commentKey) +
               ", so the scheduler policy has no schedulers; add it");
    } else if (policy.info.schedulers().members() == 0 && policy.isRead) {
      find("missing", {"qos-profiles", std::string(policy.profile)},
           "nothing in its comment " + quoted(policy.commentKey) +
               " is read as a scheduler, so the scheduler policy has no schedulers; write them "
               "there, below \"MetaData-OpenConfig\"");
    }
    for (const auto& [sequence, scheduler] : policy.info.schedulers()) {
      for (const auto& [id, input] : scheduler.inputs()) {
        if (!id.empty() && isYangString(id)) judgeInput(sequence, id, input.q(), policy.comment());
      }
    }
  }

  void judgeInput(std::uint32_t scheduler, std::string_view id, std::string_view queue,
                  const Tokens& comment) {
    if (queue.empty() || !isYangString(queue) || device().isQueue(queue)) return;
    find("unresolved", comment,
         "the input " + quoted(id) + " of scheduler " + std::to_string(scheduler) +
             " names the queue " + quoted(queue) + ", which is not there" +
             queues_.advice(queue, "add it to queue-names"));
  }

  Suggestions::Names queueNames() const {
    Suggestions::Names names;
    for (const auto& [id, name] : device().queueNames) {
      if (isYangString(name)) names.push_back(name);
    }
    return names;
  }

  const Suggestions queues_;
};

}  // namespace

void judgeProfiles(const Device& device, const Findings& findings) {
  ProfileRules(device, findings).judge();
}

}  // namespace host
