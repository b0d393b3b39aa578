#include "support/QueueDevice.h"

#include <string>
#include <string_view>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "support/Check.h"
#include "support/Order.h"
#include "support/TxQueues.h"

namespace Bench {
namespace {

constexpr std::string_view comment =
    R"({"MetaData-OpenConfig":{"queue-management-profile":{"name":"qmp-wred"}}})";

std::string queueName(std::size_t number) {
  return "Ethernet" + std::to_string(interfaceOf(number)) + "-unicast-" +
         std::to_string(number % txQueuesOfInterface);
}
// Never twice the same thresholds.
Rok::Ptr<Qos::EcnWredConfig const> freshEcn() {
  static std::uint32_t made = 0;
  return Rok::make<Qos::EcnWredConfig>(Qos::EcnWredConfig::Settings{++made, made + 100, 1, 50, 7});
}
bool hasComment(std::size_t number) { return number % 2 == 0; }

}  // namespace

QueueDevice::QueueDevice(std::size_t txQueues)
    : interfaces_(txQueues / txQueuesOfInterface), txQueues_(txQueues) {
  Random random(1);
  for (const std::size_t number : shuffledNumbers(txQueues, random)) {
    const Qos::TxQueue txQueue = txQueueOf(number);
    txQueues_[number] = Rok::make<Qos::TxQueueConfig>(txQueue);
    txQueues_[number]->bandwidthIs(bandwidths[0]);
    txQueues_[number]->ecnConfigIs(freshEcn());
    auto& interface = interfaces_[interfaceOf(number)];
    if (!interface) {
      interface = Rok::make<Qos::IntfConfig>(interfaceId(interfaceOf(number)));
      input_->intfConfigIs(interface->intfId(), interface);
    }
    interface->txQueueConfigIs(txQueue, txQueues_[number]);
    restoreComment(change(number));
  }
}

void QueueDevice::start() {
  output_ = Rok::make<QosOc::Config::QueuesDir>();
  root_ = QosOc::queueKivToOcSmFactory(input_, output_, comments_);
}

QueueDevice::Change QueueDevice::change(std::size_t number) {
  return {number,
          QosOc::CommentHelper::commentKey(interfaceId(interfaceOf(number)), txQueueOf(number)),
          Velmo::String(comment), freshEcn()};
}

void QueueDevice::changeBandwidth(const Change& change) {
  Bench::changeBandwidth(*txQueues_[change.number]);
}

void QueueDevice::changeEcn(const Change& change) {
  // The one without a comment, or nothing would be written.
  txQueues_[change.number | 1u]->ecnConfigIs(change.ecn);
}

void QueueDevice::add(const Change& change) {
  interfaces_[interfaceOf(change.number)]->txQueueConfigIs(txQueueOf(change.number),
                                                           txQueues_[change.number]);
}

void QueueDevice::remove(const Change& change) {
  interfaces_[interfaceOf(change.number)]->txQueueConfigDel(txQueueOf(change.number));
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
  require(hasComment(number) || queue.ecnConfig->minThreshold.value() ==
                                    txQueues_[number]->ecnConfig()->minThreshold(),
          "threshold of " + queueName(number));
}

}  // namespace Bench
