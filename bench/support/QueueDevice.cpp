#include "support/QueueDevice.h"

#include <string>
#include <string_view>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "support/Check.h"
#include "support/Order.h"

namespace Bench {
namespace {

constexpr std::size_t txQueuesOfInterface = 10;
constexpr unsigned char bandwidths[] = {40, 41};
constexpr std::string_view comment =
    R"({"MetaData-OpenConfig":{"queue-management-profile":{"name":"qmp-wred"}}})";

Nerit::IntfId interfaceOf(std::size_t number) {
  return Nerit::IntfId("Ethernet" + std::to_string(number / txQueuesOfInterface));
}
Qos::TxQueue txQueueOf(std::size_t number) {
  return {static_cast<unsigned char>(number % txQueuesOfInterface), Qos::unicast};
}
std::string queueName(std::size_t number) {
  return "Ethernet" + std::to_string(number / txQueuesOfInterface) + "-unicast-" +
         std::to_string(number % txQueuesOfInterface);
}
bool hasComment(std::size_t number) { return number % 2 == 0; }

}  // namespace

QueueDevice::QueueDevice(std::size_t txQueues) : txQueues_(txQueues) {
  Random random(1);
  for (const std::size_t number : shuffledNumbers(txQueues, random)) {
    const Qos::TxQueue txQueue = txQueueOf(number);
    txQueues_[number] = Rok::make<Qos::TxQueueConfig>(txQueue);
    txQueues_[number]->bandwidthIs(bandwidths[0]);
    txQueues_[number]->ecnConfigIs(
        Rok::make<Qos::EcnWredConfig>(Qos::EcnWredConfig::Settings{100, 200, 1, 50, 7}));
    const Nerit::IntfId intfId = interfaceOf(number);
    if (input_->intfConfig().find(intfId) == nullptr) {
      input_->intfConfigIs(intfId, Rok::make<Qos::IntfConfig>(intfId));
    }
    (*input_->intfConfig().find(intfId))->txQueueConfigIs(txQueue, txQueues_[number]);
    restoreComment(change(number));
  }
}

void QueueDevice::start() {
  output_ = Rok::make<QosOc::Config::QueuesDir>();
  root_ = QosOc::queueKivToOcSmFactory(input_, output_, comments_);
}

QueueDevice::Change QueueDevice::change(std::size_t number) {
  return {number, QosOc::CommentHelper::commentKey(interfaceOf(number), txQueueOf(number)),
          Velmo::String(comment)};
}

void QueueDevice::changeBandwidth(const Change& change) {
  Qos::TxQueueConfig& txQueue = *txQueues_[change.number];
  txQueue.bandwidthIs(bandwidths[txQueue.bandwidth() == bandwidths[0] ? 1 : 0]);
}

void QueueDevice::restoreComment(const Change& change) {
  hasComment(change.number) ? addComment(change) : removeComment(change);
}

void QueueDevice::check() const {
  require(output_->q().members() == txQueues_.size(), "number of queues");
  for (std::size_t number = 0; number < txQueues_.size(); ++number) checkQueue(number);
}

void QueueDevice::checkQueue(std::size_t number) const {
  const auto queue = output_->q(queueName(number));
  require(queue.config.name == queueName(number), "name of " + queueName(number));
  require(queue.config.bandwidth &&
              queue.config.bandwidth->value() == txQueues_[number]->bandwidth().value,
          "bandwidth of " + queueName(number));
  require(queue.ecnConfig.has_value() != hasComment(number),
          "ECN settings of " + queueName(number));
}

}  // namespace Bench
