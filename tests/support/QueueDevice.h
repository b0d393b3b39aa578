// A device with the tx queues of interfaces and their comments, and the output that the queue root
// keeps for them.
#pragma once

#include <map>
#include <string>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "QosOpenConfig/QosOpenConfigQueueKivToOcSm.h"

namespace support {

// Queue to what it shows, as "named strict 40% ecn 100-200/3 50% 7": whether the config has the
// queue's name, the priority, the bandwidth, the ECN settings; "blank" when it shows nothing.
using QueueModel = std::map<std::string, std::string>;

// What is configured natively at a tx queue.
struct QueueSettings {
  Qos::TxQueuePriority priority = Qos::priorityNotConfigured;
  Qos::Percent bandwidth;
  Rok::Ptr<Qos::EcnWredConfig const> ecn;
};

struct QueueDevice {
  Rok::Ptr<Qos::Input::Config> config = Rok::make<Qos::Input::Config>();
  Rok::Ptr<Cli::Config> comments = Rok::make<Cli::Config>();
  Rok::Ptr<QosOc::Config::QueuesDir> queues = Rok::make<QosOc::Config::QueuesDir>();
  Rok::Ptr<QosOc::QueueKivToOcSm> root;

  // Native values.
  static Nerit::IntfId id(const Rok::String& interface) { return Nerit::IntfId(interface); }
  static Qos::TxQueue unicast(unsigned char id) { return {id, Qos::unicast}; }
  static Qos::TxQueue multicast(unsigned char id) { return {id, Qos::multicast}; }
  // The unit 3 and the weight 7.
  static Rok::Ptr<Qos::EcnWredConfig const> ecn(std::uint32_t minThreshold = 100,
                                                std::uint32_t maxThreshold = 200,
                                                Qos::Percent maxDropPercent = 50) {
    return Rok::make<Qos::EcnWredConfig>(
        Qos::EcnWredConfig::Settings{minThreshold, maxThreshold, 3, maxDropPercent, 7});
  }

  // Native writes.
  static Rok::Ptr<Qos::TxQueueConfig> txQueueConfig(const Qos::TxQueue& txQueue,
                                                    const QueueSettings& settings = {}) {
    auto made = Rok::make<Qos::TxQueueConfig>(txQueue);
    made->priorityIs(settings.priority);
    made->bandwidthIs(settings.bandwidth);
    made->ecnConfigIs(settings.ecn);
    return made;
  }
  // The interface, made if it isn't there.
  Rok::Ptr<Qos::IntfConfig> interface(const Rok::String& name) {
    if (const auto* found = config->intfConfig().find(id(name))) return *found;
    auto made = Rok::make<Qos::IntfConfig>(id(name));
    config->intfConfigIs(id(name), made);
    return made;
  }
  Rok::Ptr<Qos::TxQueueConfig> add(const Rok::String& name, const Qos::TxQueue& txQueue,
                                   const QueueSettings& settings = {}) {
    auto made = txQueueConfig(txQueue, settings);
    interface(name)->txQueueConfigIs(txQueue, made);
    return made;
  }
  void remove(const Rok::String& name, const Qos::TxQueue& txQueue) {
    interface(name)->txQueueConfigDel(txQueue);
  }
  void remove(const Rok::String& name) { config->intfConfigDel(id(name)); }
  static Rok::String commentKey(const Rok::String& name, const Qos::TxQueue& txQueue) {
    return QosOc::CommentHelper::commentKey(id(name), txQueue);
  }
  void comment(const Rok::String& name, const Qos::TxQueue& txQueue, const Rok::String& text) {
    comments->commentIs(commentKey(name, txQueue), text);
  }
  void commentDel(const Rok::String& name, const Qos::TxQueue& txQueue) {
    comments->commentDel(commentKey(name, txQueue));
  }

  // Starts and stops the root.
  void start() { root = QosOc::queueKivToOcSmFactory(config, queues, comments); }
  void stop() { root = nullptr; }
  void restart() {
    stop();
    start();
  }
  // The machines of an interface and of a tx queue; null when they are not mirrored.
  Rok::Ptr<QosOc::IntfSm> machine(const Rok::String& name) const {
    return root->intfSm().child(id(name));
  }
  Rok::Ptr<QosOc::TxQueueSm> machine(const Rok::String& name, const Qos::TxQueue& txQueue) const {
    const auto parent = machine(name);
    return parent ? parent->txQueueSm().child(txQueue) : nullptr;
  }

  // The output.
  QueueModel model() const {
    QueueModel result;
    for (auto i = queues->q().iterator(); i; ++i) {
      const std::string key(std::string_view(i.key()));
      result[key] = shown(key, i.currNodeNonStale()->value());
    }
    return result;
  }
  static std::string shown(std::string_view key, const QosOc::Config::Queue& queue) {
    const auto& config = queue.config;
    std::string result;
    if (queue.name != key) result += " of key " + std::string(queue.name);
    if (!config.name.empty()) result += " named";
    if (!config.name.empty() && config.name != key) result += " " + std::string(config.name);
    if (config.strictPriority) result += " strict";
    if (config.bandwidth) result += " " + std::to_string(config.bandwidth->value()) + "%";
    if (queue.ecnConfig) result += " ecn " + shown(*queue.ecnConfig);
    return result.empty() ? "blank" : result.substr(1);
  }
  static std::string shown(const QosOc::Config::QueueEcnConfig& ecn) {
    return std::to_string(ecn.minThreshold.value()) + "-" +
           std::to_string(ecn.maxThreshold.value()) + "/" + std::to_string(ecn.thresholdUnit) +
           " " + std::to_string(ecn.maxDropProbabilityPercent.value()) + "% " +
           std::to_string(ecn.weight);
  }

  // Output of an earlier run.
  void earlier(const Rok::String& name, unsigned char bandwidth) {
    QosOc::Config::Queue queue(name);
    queue.config.name = name;
    queue.config.bandwidth = bandwidth;
    queue.ecnConfig = QosOc::Config::QueueEcnConfig();
    queues->qIs(queue);
  }
};

}  // namespace support
