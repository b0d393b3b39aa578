// The tx queues of interfaces, and what their comments name.
#include <map>
#include <set>
#include <vector>

#include "host/check/Rule.h"
#include "host/check/Rules.h"
#include "host/openconfig/LeafTable.h"

namespace host {
namespace {

class QueueRules : Rule {
 public:
  QueueRules(const Device& device, const Findings& findings)
      : Rule(device, findings),
        policies_([this] { return heldNames(namesOf(this->device().policies)); }),
        profiles_([this] {
          const auto& names = this->device().profiles;
          return heldNames({names.begin(), names.end()});
        }) {}

  void judge() {
    for (const auto& [id, queues] : device().interfaces) {
      judgePolicies(queues);
      judgePairs(queues);
      for (const DeviceQueue& queue : queues) {
        judgeReferences(queue);
        judgeSettings(queue);
      }
    }
  }

 private:
  // The last tx queue that is met decides for its interface, also one that names no policy.
  void judgePolicies(const std::vector<DeviceQueue>& queues) {
    std::map<std::string, std::vector<std::string>> byPolicy;
    for (const DeviceQueue& queue : queues) {
      if (!queue.isRead) continue;
      const std::string& policy =
          isYangString(queue.policy) ? queue.policy : "";  // left out is none
      byPolicy[policy].push_back(queueText(queue.queue));
    }
    if (byPolicy.size() < 2) return;
    std::string outcomes;
    for (const auto& [policy, named] : byPolicy) {
      outcomes += (outcomes.empty() ? "" : ", ") +
                  (policy.empty() ? std::string("none") : quoted(policy)) + " by " + few(named);
    }
    const Tokens place = queues.front().place();
    find("order", {place[0], place[1]},
         "the comments of its tx queues don't agree on one scheduler policy, and which one the "
         "interface gets depends on the order in which they are met: " +
             outcomes + "; let all name one");
  }

  // The first of them, and how many more there are.
  static std::string few(const std::vector<std::string>& names) {
    constexpr std::size_t most = 3;
    std::string text;
    for (std::size_t i = 0; i < names.size() && i < most; ++i)
      text += (i > 0 ? ", " : "") + names[i];
    if (names.size() > most) text += " and " + std::to_string(names.size() - most) + " more";
    return text;
  }

  // The unicast and the multicast queue of one id have one name, and one entry under it.
  void judgePairs(const std::vector<DeviceQueue>& queues) {
    for (const DeviceQueue& queue : queues) {
      for (const DeviceQueue& other : queues) {
        const bool isPair = queue.queue.id == other.queue.id && queue.queue < other.queue;
        if (isPair) judgePair(queue, other);
      }
    }
  }
  void judgePair(const DeviceQueue& queue, const DeviceQueue& other) {
    if (queue.profile.empty() || other.profile.empty() || queue.profile == other.profile) return;
    const auto name = device().queueNames.find(queue.queue.id.value);
    if (name == device().queueNames.end() || name->second.empty()) return;
    const std::set<std::string> profiles{queue.profile, other.profile};
    find("order", queue.comment(),
         queueText(queue.queue) + " and " + queueText(other.queue) + " share the queue " +
             quoted(name->second) +
             ", and which profile it gets depends on the order in which they are met: " +
             listed(profiles) + "; let both name one");
  }

  void judgeReferences(const DeviceQueue& queue) {
    // What is left out refers to nothing.
    const bool isHeld = isYangString(queue.policy);
    if (!queue.policy.empty() && isHeld && !device().policies.contains(queue.policy)) {
      find("unresolved", queue.comment(),
           "there is no scheduler policy " + quoted(queue.policy) +
               policies_.advice(queue.policy, "add the QoS profile " +
                                                  quoted("__YANG_SP_[" + queue.policy + ']')));
    }
    if (!queue.profile.empty()) judgeProfile(queue);
  }

  void judgeProfile(const DeviceQueue& queue) {
    const auto name = device().queueNames.find(queue.queue.id.value);
    if (name == device().queueNames.end() || name->second.empty()) {
      return find("missing", queue.comment(),
                  "tx queue " + std::to_string(queue.queue.id.value) +
                      " has no name, so its queue-management profile is not attached; add a name "
                      "to queue-names");
    }
    if (!isYangString(queue.profile) || !isYangString(name->second)) return;
    if (device().profiles.contains(queue.profile)) return;
    const std::string lacking = "there is no queue-management profile " + quoted(queue.profile);
    const std::string profile = "__YANG_QMP_[" + queue.profile + ']';
    if (native().qosProfiles->config().find(Rok::String(profile)) != nullptr) {
      return find("unresolved", queue.comment(),
                  lacking + ", since its QoS profile has no tx queue 0; add uc-0 to it");
    }
    find("unresolved", queue.comment(),
         lacking + profiles_.advice(queue.profile, "add the QoS profile " + quoted(profile) +
                                                       " with the settings of tx queue 0"));
  }

  // What a comment speaks for was made from what it names, and is not lost.
  void judgeSettings(const DeviceQueue& queue) {
    if (!queue.isRead) return;
    const Qos::TxQueueConfig& config = *queue.config;
    if (queue.policy.empty()) judgePriority(config.priority(), below(queue.place(), "priority"));
    if (queue.policy.empty() && config.shape() != 0) {
      find("untranslated", below(queue.place(), "shape"),
           "a shaping rate is not translated, and no scheduler policy speaks for the queue; "
           "remove it, or name the policy in " +
               shownPointer(queue.comment()));
    }
    if (!queue.profile.empty()) return;
    if (config.wredConfig()) {
      find("untranslated", below(queue.place(), "wred"),
           "the WRED settings of a tx queue are not translated, and no queue-management profile "
           "speaks for the queue; remove them, or name the profile in " +
               shownPointer(queue.comment()));
    }
    if (config.ecnConfig()) judgeThresholds(*config.ecnConfig(), below(queue.place(), "ecn"));
  }
  void judgePriority(Qos::TxQueuePriority priority, const Tokens& place) {
    if (priority == Qos::strictPriority || priority == Qos::priorityNotConfigured) return;
    find("untranslated", place,
         "of priorities only strict is translated, and this is " +
             std::to_string(static_cast<unsigned>(priority)) + "; write strict, or leave it out");
  }

  static Suggestions::Names heldNames(Suggestions::Names names) {
    std::erase_if(names, [](std::string_view name) { return !isYangString(name); });
    return names;
  }

  const Suggestions policies_;
  const Suggestions profiles_;
};

}  // namespace

void judgeQueues(const Device& device, const Findings& findings) {
  QueueRules(device, findings).judge();
}

}  // namespace host
