#include "host/check/Device.h"

#include <algorithm>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "host/CommentFaults.h"

namespace host {
namespace {

DeviceQueue queueOf(const Native& native, const Nerit::IntfId& interface, const Qos::TxQueue& id,
                    const Rok::Ptr<Qos::TxQueueConfig>& config) {
  DeviceQueue queue{interface, id, config, QosOc::CommentHelper::commentKey(interface, id), {}, {}};
  const Rok::String text = native.cliConfig->comment(queue.commentKey);
  // One that would end the process names nothing.
  if (text.empty() || attachmentFault(text)) return queue;
  const QosOc::CommentInfo info = deserializeJsonComment(text);
  queue.policy = std::string_view(info.sPInfo().schedulerPolicy());
  queue.profile = std::string_view(info.qMPInfo().queueManagementProfile());
  return queue;
}

}  // namespace

std::string queueText(const Qos::TxQueue& queue) {
  return (queue.type == Qos::unicast ? "uc-" : "mc-") + std::to_string(queue.id.value);
}

Tokens DeviceQueue::place() const {
  return {"interfaces", std::string(interface.stringValue()), "tx-queues", queueText(queue)};
}

Device::Device(const Native& from) : native(from) {
  for (auto i = native.qosConfig->intfConfig().unsafeIterator(); i; ++i) {
    std::vector<DeviceQueue>& queues = interfaces[i->key()];
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
}

}  // namespace host
