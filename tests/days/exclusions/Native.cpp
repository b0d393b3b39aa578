#include "tests/days/exclusions/Native.h"

#include <algorithm>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "host/CommentFaults.h"

namespace days {
namespace {

std::string plain(const Velmo::String& text) { return std::string(std::string_view(text)); }

}  // namespace

std::string queueName(const Facts& facts, const std::string& id, std::size_t step) {
  std::string last;
  for (const std::string& name : facts.keys(step, {"queue-names"})) {
    const host::Value* held = facts.find(step, {"queue-names", name});
    if (std::to_string(held->number()) == id) last = std::max(last, name);
  }
  return last;
}

std::optional<TxQueue> TxQueue::named(const Facts& facts, const std::string& queueName) {
  for (const std::string kind : {"unicast", "multicast"}) {
    const std::size_t at = queueName.find('-' + kind + '-');
    if (at == std::string::npos) continue;
    const std::string id = queueName.substr(at + kind.size() + 2);
    return TxQueue(facts, queueName.substr(0, at), (kind == "unicast" ? "uc-" : "mc-") + id);
  }
  return std::nullopt;
}

std::vector<TxQueue> TxQueue::of(const Facts& facts, const std::string& interface,
                                 std::size_t step) {
  std::vector<TxQueue> queues;
  for (const std::string& key : facts.keys(step, {"interfaces", interface, "tx-queues"})) {
    queues.emplace_back(facts, interface, key);
  }
  return queues;
}

std::vector<TxQueue> TxQueue::everOf(const Facts& facts, const std::string& interface) {
  std::vector<TxQueue> queues;
  for (const std::string& key : facts.everKeys({"interfaces", interface, "tx-queues"})) {
    queues.emplace_back(facts, interface, key);
  }
  return queues;
}

host::Tokens TxQueue::commentPlace() const {
  const Qos::TxQueue queue{Qos::TxQueueId{static_cast<unsigned char>(std::stoi(id()))},
                           key_.starts_with("uc") ? Qos::unicast : Qos::multicast};
  return {"comments", plain(QosOc::CommentHelper::commentKey(Nerit::IntfId(interface_), queue))};
}

bool TxQueue::isConfigured() const {
  const host::Value& settings = *facts_->find(place());
  return settings.at("priority").number() != 2 || settings.at("bandwidth").number() != 101;
}

// One that can't be read names nothing: it was there before its tx queue, which was refused.
std::string TxQueue::comment(std::size_t step) const {
  const host::Value* text = facts_->find(step, commentPlace());
  return text != nullptr && !host::attachmentFault(text->text()) ? std::string(text->text()) : "";
}

std::string TxQueue::policy(std::size_t step) const {
  return plain(
      QosOc::CommentHelper::schedulerPolicyInfoFromComment(comment(step)).schedulerPolicy());
}

std::string TxQueue::profile(std::size_t step) const {
  return plain(QosOc::CommentHelper::queueManagementProfileInfoFromComment(comment(step))
                   .queueManagementProfile());
}

bool TxQueue::everNamedPolicy() const {
  for (std::size_t step = 0; step <= facts_->now(); ++step) {
    if (!policy(step).empty()) return true;
  }
  return false;
}

bool TxQueue::everNamedProfile() const {
  for (std::size_t step = 0; step <= facts_->now(); ++step) {
    if (!profile(step).empty()) return true;
  }
  return false;
}

PolicyMapName::PolicyMapName(const std::string& name) {
  const auto [first, second] = QosOc::classifiersFromPmapName(name);
  ipv4 = plain(first);
  ipv6 = plain(second);
}

}  // namespace days
