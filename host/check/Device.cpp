#include "host/check/Device.h"

#include <algorithm>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "host/CommentFaults.h"
#include "host/check/QueueComment.h"

namespace host {
namespace {

DeviceQueue queueOf(const Native& native, const Nerit::IntfId& interface, const Qos::TxQueue& id,
                    const Rok::Ptr<Qos::TxQueueConfig>& config) {
  QueueComment comment = QueueComment::of(native, interface, id);
  return {interface,
          id,
          config,
          std::move(comment.key),
          comment.isRead,
          std::move(comment.policy),
          std::move(comment.profile)};
}

DevicePolicy policyOf(const Native& native, const Rok::String& profile) {
  DevicePolicy policy{profile, QosOc::CommentHelper::profileCommentKey(profile),
                      QosOc::SchedulerPolicyProfileCommentInfo("")};
  const Rok::String text = native.cliConfig->comment(policy.commentKey);
  if (text.empty()) return policy;
  policy.isRead = !profileFault(text);
  if (policy.isRead) policy.info = deserializeJsonProfileComment(text);
  return policy;
}

bool hasQueue0(const Qos::QosProfileConfig& profile) {
  if (!profile.qosProfile()) return false;
  const auto& queues = profile.qosProfile()->txQueueConfig();
  for (auto i = queues.unsafeIterator(); i; ++i) {
    if (i->key().id.value == 0) return true;
  }
  return false;
}

// The end of a queue's name in the model: "unicast-3".
std::string modelText(const Qos::TxQueue& queue) {
  return std::string(Qos::stringValue(queue.type)) + '-' + std::to_string(queue.id.value);
}

}  // namespace

bool DeviceQueue::isMade() const {
  const bool isConfigured = config->priority() != Qos::priorityNotConfigured ||
                            config->bandwidth() != Qos::percentNotConfigured;
  return profile.empty() || (policy.empty() && isConfigured);
}

Device::Device(const Native& from) : native(from), classification(classificationOf(from)) {
  for (auto i = native.qosConfig->intfConfig().unsafeIterator(); i; ++i) {
    std::vector<DeviceQueue>& queues = interfaces[i->key()];
    shortNames.emplace(std::string_view(i->key().shortName()), i->key());
    for (auto q = i->value()->txQueueConfig().unsafeIterator(); q; ++q) {
      queues.push_back(queueOf(native, i->key(), q->key(), q->value()));
    }
    std::sort(queues.begin(), queues.end(),
              [](const DeviceQueue& a, const DeviceQueue& b) { return a.queue < b.queue; });
  }
  for (const auto& [name, id] :
       native.qosConfig->queueNameToTxQueueIdMap()->queueNameToTxQueueId()) {
    queueNames[id.value] = std::string_view(name.name);
  }
  for (auto i = native.qosProfiles->config().unsafeIterator(); i; ++i) {
    const Rok::String policy = decodeSPProfileName(i->key());
    const Rok::String profile = decodeQMPProfileName(i->key());
    if (!policy.empty()) policies.emplace(policy, policyOf(native, i->key()));
    if (!profile.empty() && hasQueue0(*i->value())) profiles.emplace(profile);
  }
}

bool Device::isQueue(std::string_view name) const {
  const Qos::QueueName key{Rok::String(name)};
  const auto& names = native.qosConfig->queueNameToTxQueueIdMap()->queueNameToTxQueueId();
  if (names.find(key) != nullptr) return true;
  // The name of an interface's queue: Ethernet1-unicast-3.
  const std::size_t last = name.rfind('-');
  const std::size_t middle = last == 0 || last == name.npos ? name.npos : name.rfind('-', last - 1);
  if (middle == name.npos) return false;
  const auto found = interfaces.find(Nerit::IntfId{Rok::String(name.substr(0, middle))});
  const auto isSame = [&](const DeviceQueue& queue) {
    return name.substr(middle + 1) == modelText(queue.queue) && queue.isMade();
  };
  return found != interfaces.end() &&
         std::any_of(found->second.begin(), found->second.end(), isSame);
}

}  // namespace host
