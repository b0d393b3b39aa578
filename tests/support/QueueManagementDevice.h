// A device with QoS profiles, interfaces, comments and queue names, and the queue-management
// profiles and attachments that a root keeps for them.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"
#include "tests/support/TraceCapture.h"

namespace support {

// The tx queues that tests use most.
inline Qos::TxQueue unicast(unsigned char id) { return {id, Qos::unicast}; }
inline Qos::TxQueue multicast(unsigned char id) { return {id, Qos::multicast}; }

using EcnWred = Rok::Ptr<Qos::EcnWredConfig const>;

// ECN or WRED settings of which every field differs from its default.
inline EcnWred settings(std::uint32_t minThreshold, std::uint32_t maxThreshold,
                        unsigned char maxDropPercent) {
  return Rok::make<Qos::EcnWredConfig>(
      Qos::EcnWredConfig::Settings{minThreshold, maxThreshold, 3, maxDropPercent, 9});
}

// Profile name to "minThreshold-maxThreshold percentage%", followed by " ecn" and " drop", and by
// the fields that are wrong.
using ProfileModel = std::map<std::string, std::string>;

// "interface queue-name" to the profile that is attached, or to "blank"; followed by the fields
// that are wrong.
using AttachmentModel = std::map<std::string, std::string>;

struct QueueManagementDevice {
  Rok::Ptr<Qos::Input::Config> config = Rok::make<Qos::Input::Config>();
  Rok::Ptr<Qos::QueueNameToTxQueueIdMap> queueNames = Rok::make<Qos::QueueNameToTxQueueIdMap>();
  Rok::Ptr<Cli::Config> cli = Rok::make<Cli::Config>();
  Rok::Ptr<Qos::QosProfileConfigDir> qosProfiles = Rok::make<Qos::QosProfileConfigDir>();
  Rok::Ptr<QosOc::Config::QueueManagementProfilesDir> profiles =
      Rok::make<QosOc::Config::QueueManagementProfilesDir>();
  Rok::Ptr<QosOc::Config::InterfacesDir> interfaces = Rok::make<QosOc::Config::InterfacesDir>();
  Rok::Ptr<QosOc::QueueManagementProfileKivToOcSm> root;

  QueueManagementDevice() { config->queueNameToTxQueueIdMapIs(queueNames); }

  // Native writes: QoS profiles. Their names are those of the queue-management profiles.
  static Rok::String native(const Rok::String& name) {
    return name.addLeft("__YANG_QMP_[").addRight("]");
  }
  static Rok::Ptr<Qos::TxQueueConfig> txQueue(const Qos::TxQueue& key, const EcnWred& ecn = nullptr,
                                              const EcnWred& wred = nullptr) {
    auto made = Rok::make<Qos::TxQueueConfig>(key);
    made->ecnConfigIs(ecn);
    made->wredConfigIs(wred);
    return made;
  }
  static Rok::Ptr<Qos::QosProfile> body(const std::vector<Rok::Ptr<Qos::TxQueueConfig>>& queues) {
    auto made = Rok::make<Qos::QosProfile>();
    for (const auto& queue : queues) made->txQueueConfigIs(queue->txQueue(), queue);
    return made;
  }
  // A QoS profile of any native name, with a body or without.
  Rok::Ptr<Qos::QosProfileConfig> add(const Rok::String& nativeName,
                                      const Rok::Ptr<Qos::QosProfile>& qosProfile = nullptr) {
    auto made = Rok::make<Qos::QosProfileConfig>(nativeName);
    made->qosProfileIs(qosProfile);
    qosProfiles->configIs(nativeName, made);
    return made;
  }
  // Adds a queue-management profile. Returns its tx queue.
  Rok::Ptr<Qos::TxQueueConfig> profile(const Rok::String& name, const EcnWred& ecn = nullptr,
                                       const EcnWred& wred = nullptr,
                                       const Qos::TxQueue& key = unicast(0)) {
    auto queue = txQueue(key, ecn, wred);
    add(native(name), body({queue}));
    return queue;
  }
  const Rok::Ptr<Qos::QosProfile>& bodyOf(const Rok::String& name) const {
    return (*qosProfiles->config().find(native(name)))->qosProfile();
  }
  void removeProfile(const Rok::String& name) { qosProfiles->configDel(native(name)); }

  // Native writes: interfaces and their tx queues, the comments of these, the names of queues.
  static Nerit::IntfId id(const Rok::String& name) { return Nerit::IntfId(name); }
  Rok::Ptr<Qos::IntfConfig> intf(const Rok::String& name) {
    if (const auto* found = config->intfConfig().find(id(name))) return *found;
    auto made = Rok::make<Qos::IntfConfig>(id(name));
    config->intfConfigIs(id(name), made);
    return made;
  }
  Rok::Ptr<Qos::TxQueueConfig> queue(const Rok::String& intfName, const Qos::TxQueue& key) {
    auto made = txQueue(key);
    intf(intfName)->txQueueConfigIs(key, made);
    return made;
  }
  void removeQueue(const Rok::String& intfName, const Qos::TxQueue& key) {
    intf(intfName)->txQueueConfigDel(key);
  }
  void removeIntf(const Rok::String& name) { config->intfConfigDel(id(name)); }
  static Rok::String key(const Rok::String& intfName, const Qos::TxQueue& txQueue) {
    return QosOc::CommentHelper::commentKey(id(intfName), txQueue);
  }
  static Rok::String naming(const Rok::String& profile) {
    return profile.addLeft(R"({"MetaData-OpenConfig":{"queue-management-profile":{"name":")")
        .addRight(R"("}}})");
  }
  // A comment that names a profile.
  void comment(const Rok::String& intfName, const Qos::TxQueue& txQueue,
               const Rok::String& profile) {
    cli->commentIs(key(intfName, txQueue), naming(profile));
  }
  void commentDel(const Rok::String& intfName, const Qos::TxQueue& txQueue) {
    cli->commentDel(key(intfName, txQueue));
  }
  void name(const Rok::String& queueName, unsigned char txQueueId) {
    queueNames->queueNameToTxQueueIdIs(queueName, txQueueId);
  }
  void nameDel(const Rok::String& queueName) { queueNames->queueNameToTxQueueIdDel(queueName); }

  // Starts and stops the root.
  void start() {
    root = QosOc::queueManagementProfileKivToOcSmFactory(config, cli, qosProfiles, profiles,
                                                         interfaces);
  }
  void stop() { root = nullptr; }
  void restart() {
    stop();
    start();
  }
  // The machines; null for what is not mirrored.
  Rok::Ptr<QosOc::QueueManagementProfileQosProfileSm> profileSm(const Rok::String& name) const {
    return root->qosProfileSm().child(native(name));
  }
  Rok::Ptr<QosOc::QueueManagementProfileQosProfileTxQueueSm> profileTxQueueSm(
      const Rok::String& name, const Qos::TxQueue& key = unicast(0)) const {
    return profileSm(name)->txQueueSm().child(key);
  }
  Rok::Ptr<QosOc::QueueManagementProfileIntfSm> intfSm(const Rok::String& name) const {
    return root->intfSm().child(id(name));
  }
  Rok::Ptr<QosOc::QueueManagementProfileTxQueueSm> txQueueSm(const Rok::String& intfName,
                                                             const Qos::TxQueue& key) const {
    return intfSm(intfName)->txQueueSm().child(key);
  }

  // The output.
  ProfileModel profileModel() const {
    ProfileModel result;
    for (auto i = profiles->queueManagementProfile().iterator(); i; ++i) {
      result[std::string(std::string_view(i.key()))] = text(i.currNodeNonStale()->value());
    }
    return result;
  }
  static std::string text(const QosOc::Config::QueueManagementProfile& profile) {
    const auto& wred = profile.wredUniform;
    std::string result = std::to_string(wred.minThreshold) + "-" +
                         std::to_string(wred.maxThreshold) + " " +
                         std::to_string(wred.maxDropProbabilityPercent.value()) + "%";
    if (wred.enableEcn) result += " ecn";
    if (wred.drop) result += " drop";
    if (wred.weight != 0) result += " weight " + std::to_string(wred.weight);
    if (profile.config.name != profile.name) {
      result += " config " + std::string(std::string_view(profile.config.name));
    }
    return result;
  }
  AttachmentModel attachmentModel() const {
    AttachmentModel result;
    for (auto i = interfaces->interface().iterator(); i; ++i) {
      const auto& output = i.currNodeNonStale()->value()->output();
      if (!output || !output->queues()) continue;
      for (auto q = output->queues()->q().iterator(); q; ++q) {
        const Rok::String label = i.key().addRight(" ").addRight(q.key());
        result[std::string(std::string_view(label))] = text(q.currNodeNonStale()->value());
      }
    }
    return result;
  }
  static std::string text(const QosOc::Config::InterfaceOutputQueue& queue) {
    if (queue.config == QosOc::Config::InterfaceOutputQueueConfig()) return "blank";
    std::string result(std::string_view(queue.config.queueManagementProfile));
    if (queue.config.name != queue.name) {
      result += " config " + std::string(std::string_view(queue.config.name));
    }
    return result;
  }

  // An attachment of an earlier run.
  void earlierAttachment(const Rok::String& intfName, const Rok::String& queueName,
                         const Rok::String& profile) {
    QosOc::Config::InterfaceOutputQueue record(queueName);
    record.config = {queueName, profile};
    interfaces->interfaceIs(intfName)->outputIs()->queuesIs("")->qIs(record);
  }
  // A profile of an earlier run.
  void earlierProfile(const Rok::String& name) {
    QosOc::Config::QueueManagementProfile record(name);
    record.config.name = name;
    record.wredUniform.minThreshold = 77;
    profiles->queueManagementProfileIs(record);
  }
};

// The lines of the queue-management unit alone, without addresses: the comment helper has a trace
// of its own.
inline std::vector<std::string> queueManagementLines(const TraceCapture& trace) {
  std::vector<std::string> result;
  const auto lines = trace.linesWithoutAddresses();
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (trace.handles()[i] == "OpenConfigQosQueueManagementProfileKivToOcSm") {
      result.push_back(lines[i]);
    }
  }
  return result;
}

}  // namespace support
