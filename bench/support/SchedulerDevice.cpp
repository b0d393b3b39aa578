#include "support/SchedulerDevice.h"

#include <cstdint>
#include <string>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "support/Check.h"
#include "support/Order.h"
#include "support/TxQueues.h"

namespace Bench {
namespace {

constexpr std::uint32_t schedulers = 8;
constexpr std::uint32_t inputs = 8;

// All by the number of a tx queue.
std::string policyName(std::size_t number) { return "sp-" + std::to_string(interfaceOf(number)); }
Velmo::String profileName(std::size_t number) { return "__YANG_SP_[" + policyName(number) + "]"; }

// The comment of every profile. It differs by white space from one tx queue of an interface to the
// next, so that each of them reads it again.
Velmo::String policyComment(std::size_t number) {
  QosOc::SchedulerPolicyProfileCommentInfo info("");
  for (std::uint32_t sequence = 1; sequence <= schedulers; ++sequence) {
    QosOc::SchedulerCommentInfo scheduler(sequence);
    scheduler.oneRateTwoColorIs({1000000 * sequence, 40});
    for (std::uint32_t i = 0; i < inputs; ++i) {
      QosOc::SchedulerInputCommentInfo input("in-" + std::to_string(i));
      input.qIs("queue-" + std::to_string(i));
      input.weightIs(10 + i);
      scheduler.inputsIs(input);
    }
    info.schedulersIs(scheduler);
  }
  return QosOc::CommentHelper::createSchedulerPolicyProfileComment(info).addRight(
      std::string(number % txQueuesOfInterface, ' '));
}

// The same, made once: the texts are long.
const Velmo::String& sharedPolicyComment(std::size_t number) {
  static const std::vector<Velmo::String> comments = [] {
    std::vector<Velmo::String> made;
    for (std::size_t i = 0; i < txQueuesOfInterface; ++i) made.push_back(policyComment(i));
    return made;
  }();
  return comments[number % txQueuesOfInterface];
}

}  // namespace

SchedulerDevice::SchedulerDevice(std::size_t txQueues) : txQueues_(txQueues) {
  input_->queueNameToTxQueueIdMapIs(Rok::make<Qos::QueueNameToTxQueueIdMap>());
  Random random(1);
  for (const std::size_t number : shuffledNumbers(txQueues, random)) {
    if (number % txQueuesOfInterface == 0) addInterface(number);
  }
}

void SchedulerDevice::addInterface(std::size_t number) {
  const auto interface = Rok::make<Qos::IntfConfig>(interfaceId(interfaceOf(number)));
  for (std::size_t each = number; each < number + txQueuesOfInterface; ++each) {
    txQueues_[each] = Rok::make<Qos::TxQueueConfig>(txQueueOf(each));
    txQueues_[each]->bandwidthIs(bandwidths[0]);
    interface->txQueueConfigIs(txQueueOf(each), txQueues_[each]);
    attach(change(each));
  }
  input_->intfConfigIs(interface->intfId(), interface);
  profiles_->configIs(profileName(number), Rok::make<Qos::QosProfileConfig>(profileName(number)));
  readPolicy(change(number));
}

void SchedulerDevice::start() {
  policies_ = Rok::make<QosOc::Config::SchedulerPoliciesDir>();
  interfaces_ = Rok::make<QosOc::Config::InterfacesDir>();
  root_ =
      QosOc::schedulerPolicyKivToOCSmFactory(comments_, input_, profiles_, policies_, interfaces_);
}

SchedulerDevice::Change SchedulerDevice::change(std::size_t number) {
  return {
      number, QosOc::CommentHelper::commentKey(interfaceId(interfaceOf(number)), txQueueOf(number)),
      QosOc::CommentHelper::createSchedulerPolicyComment(
          QosOc::SchedulerPolicyCommentInfo(policyName(number)), ""),
      QosOc::CommentHelper::profileCommentKey(profileName(number)), sharedPolicyComment(number)};
}

void SchedulerDevice::changeBandwidth(const Change& change) {
  Bench::changeBandwidth(*txQueues_[change.number]);
}

void SchedulerDevice::check() const {
  for (std::size_t number = 0; number < txQueues_.size(); number += txQueuesOfInterface) {
    checkInterface(number);
  }
}

void SchedulerDevice::checkInterface(std::size_t number) const {
  const std::string name = policyName(number);
  const auto interface = interfaces_->interface(interfaceId(interfaceOf(number)).stringValue());
  require(interface && interface->output() && interface->output()->schedulerPolicy() &&
              interface->output()->schedulerPolicy()->config.name == name,
          "attachment of " + name);
  const auto policy = policies_->schedulerPolicy(name);
  require(
      policy && policy->schedulers() && policy->schedulers()->scheduler().members() == schedulers,
      "schedulers of " + name);
  for (std::uint32_t sequence = 1; sequence <= schedulers; ++sequence) {
    const auto scheduler = policy->schedulers()->scheduler(sequence);
    require(scheduler && scheduler->oneRateTwoColor() && scheduler->inputs() &&
                scheduler->inputs()->input().members() == inputs,
            "rate and inputs of " + name);
  }
}

}  // namespace Bench
