#include "support/QueueManagementDevice.h"

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "support/Check.h"
#include "support/Order.h"
#include "support/TxQueues.h"

namespace Bench {
namespace {

constexpr std::size_t sharingInterfaces = 4;
constexpr unsigned char firstSharedId = 200;
constexpr unsigned char sharedNames = 8;
constexpr unsigned char sharedIds = 2 * sharedNames;

Qos::TxQueueId idOf(std::size_t number) { return number % txQueuesOfInterface; }
std::string queueName(Qos::TxQueueId id) { return "queue-" + Qos::valueToStrep(id); }
std::string sharedName(std::size_t number) {
  return "shared-" + std::to_string(number % sharedNames);
}
std::string profileName(std::size_t number) { return "qmp-" + std::to_string(number); }
Rok::String naming(const std::string& profile) {
  QosOc::CommentInfo info;
  info.qMPInfoIs(QosOc::QueueManagementProfileCommentInfo(Rok::String(profile)));
  return serializeJsonComment(info);
}
Rok::String commentKey(std::size_t interface, Qos::TxQueueId id) {
  return QosOc::CommentHelper::commentKey(interfaceId(interface), {id, Qos::unicast});
}
Rok::Ptr<Qos::EcnWredConfig const> ecn(std::size_t number) {
  Qos::EcnWredConfig::Settings settings;
  settings.minThreshold = static_cast<std::uint32_t>(number);
  settings.maxThreshold = static_cast<std::uint32_t>(number * 2);
  settings.maxDropPercent = 30;
  return Rok::make<Qos::EcnWredConfig>(settings);
}

}  // namespace

QueueManagementDevice::QueueManagementDevice(std::size_t txQueues)
    : interfaceCount_(txQueues / txQueuesOfInterface), profileQueues_(interfaceCount_) {
  input_->queueNameToTxQueueIdMapIs(queueNames_);
  for (std::size_t id = 0; id < txQueuesOfInterface; ++id) {
    queueNames_->queueNameToTxQueueIdIs(Qos::QueueName(queueName(id)), id);
  }
  for (unsigned char i = 0; i < sharedNames; ++i) {
    queueNames_->queueNameToTxQueueIdIs(Qos::QueueName(sharedName(i)), firstSharedId + 2 * i);
  }
  Random random(1);
  for (const std::size_t number : shuffledNumbers(interfaceCount_, random)) {
    addInterface(number);
    addProfile(number);
  }
}

void QueueManagementDevice::addInterface(std::size_t number) {
  const auto interface = Rok::make<Qos::IntfConfig>(interfaceId(number));
  for (std::size_t id = 0; id < txQueuesOfInterface; ++id) addTxQueue(*interface, number, id);
  for (unsigned char i = 0; i < sharedIds && number < sharingInterfaces; ++i) {
    addTxQueue(*interface, number, firstSharedId + i);
  }
  input_->intfConfigIs(interface->intfId(), interface);
}

void QueueManagementDevice::addTxQueue(Qos::IntfConfig& interface, std::size_t number,
                                       Qos::TxQueueId id) {
  const Qos::TxQueue txQueue{id, Qos::unicast};
  interface.txQueueConfigIs(txQueue, Rok::make<Qos::TxQueueConfig>(txQueue));
  cli_->commentIs(commentKey(number, id), naming(profileName(number)));
}

void QueueManagementDevice::addProfile(std::size_t number) {
  const Qos::TxQueue txQueue{0, Qos::unicast};
  profileQueues_[number] = Rok::make<Qos::TxQueueConfig>(txQueue);
  const auto body = Rok::make<Qos::QosProfile>();
  body->txQueueConfigIs(txQueue, profileQueues_[number]);
  const auto config = Rok::make<Qos::QosProfileConfig>(encodeQMPProfileName(profileName(number)));
  config->qosProfileIs(body);
  qosProfiles_->configIs(config->name(), config);
}

void QueueManagementDevice::start() {
  profiles_ = Rok::make<QosOc::Config::QueueManagementProfilesDir>();
  interfaces_ = Rok::make<QosOc::Config::InterfacesDir>();
  root_ = QosOc::queueManagementProfileKivToOcSmFactory(input_, cli_, qosProfiles_, profiles_,
                                                        interfaces_);
}

QueueManagementDevice::Change QueueManagementDevice::change(std::size_t number) {
  const std::size_t interface = interfaceOf(number);
  return {number,
          commentKey(interface, idOf(number)),
          naming(profileName(interface)),
          naming("other"),
          ecn(number),
          Qos::QueueName(sharedName(number))};
}

void QueueManagementDevice::changeThreshold(const Change& change) {
  profileQueues_[interfaceOf(change.number)]->ecnConfigIs(change.ecn);
}

void QueueManagementDevice::nameQueue(const Change& change) {
  const Qos::TxQueueId id = *queueNames_->queueNameToTxQueueId().find(change.queueName);
  queueNames_->queueNameToTxQueueIdIs(change.queueName, id.value ^ 1u);
}

void QueueManagementDevice::check() const {
  require(profiles_->queueManagementProfile().members() == interfaceCount_, "number of profiles");
  for (std::size_t number = 0; number < interfaceCount_; ++number) {
    const auto& settings = profileQueues_[number]->ecnConfig();
    const auto wred = profiles_->queueManagementProfile(profileName(number)).wredUniform;
    require(wred.enableEcn == (settings != nullptr) &&
                wred.minThreshold == (settings ? settings->minThreshold() : 0),
            "thresholds of a profile");
    for (std::size_t id = 0; id < txQueuesOfInterface; ++id) checkAttachment(number, queueName(id));
  }
  for (unsigned char i = 0; i < sharedNames; ++i) {
    const Qos::QueueName name(sharedName(i));
    const Qos::TxQueueId id = *queueNames_->queueNameToTxQueueId().find(name);
    require(root_->txQueueIdToQueueNameMap(id) == name, "name of an id");
    for (std::size_t n = 0; n < sharingInterfaces; ++n) checkAttachment(n, sharedName(i));
  }
}

void QueueManagementDevice::checkAttachment(std::size_t interface, const std::string& queue) const {
  const auto output = interfaces_->interface(interfaceId(interface).stringValue())->output();
  require(output->queues()->q(queue).config.queueManagementProfile == profileName(interface),
          "profile of a tx queue");
}

}  // namespace Bench
