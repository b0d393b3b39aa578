// QoS profiles and comments into OpenConfig scheduler policies, and comments of tx queues into the
// policies of interfaces.
//
// A policy has no native record of its own. A QoS profile of the name `__YANG_SP_[S]` says that
// the policy S exists, and nothing in the profile is read: the profile's comment has all the rest.
// Which interface uses a policy is what the comments of its tx queues say. The settings of a tx
// queue are not read either; a change of them is a reason to look at the comment again.
//
// What wakes what:
//   comment of Cli::Config                SchedulerPolicyKivToOCSm::handleComment(key)
//   intfConfig of Qos::Input::Config      SchedulerPolicyKivToOCSm::handleIntfConfig(interface)
//   queueNameToTxQueueIdMap of            re-points the root's chained input
//     Qos::Input::Config
//   queueNameToTxQueueId in that input    SchedulerPolicyKivToOCSm::
//                                             handleQueueNameToTxQueue(name)
//   config of Qos::QosProfileConfigDir    SchedulerPolicyKivToOCSm::
//                                             udpateSchedulerPolicies(profile)
//   txQueueConfig of Qos::IntfConfig      SchedulerPolicyIntfSm::handleTxQueueConfig(tx queue)
//   priority, bandwidth, shape of         SchedulerPolicyTxQueueSm::
//     Qos::TxQueueConfig                      handlePriorityBandwidthShapeConfig()
#pragma once

#include <string_view>
#include <vector>

#include "QosOpenConfig/QosOpenConfigHelperTxQueues.h"
#include "Rok/Rok.h"
#include "models/native/Cli.h"
#include "models/native/QosInput.h"
#include "models/openconfig/Interface.h"
#include "models/openconfig/SchedulerPolicy.h"

// The scheduler policy in the name of a QoS profile, `__YANG_SP_[S]`; empty for any other name.
QOS_EXPORT Velmo::String decodeSPProfileName(Velmo::String profileName);
// The name of the QoS profile of a scheduler policy. A policy's name ends at its first NUL.
QOS_EXPORT Velmo::String encodeSPProfileName(Velmo::String schedulerPolicyName);

namespace QosOc {

class SchedulerPolicyIntfSm;
class SchedulerPolicyKivToOCSm;

// ===== Interfaces

// One tx queue. Has the root look at its comment.
class QOS_EXPORT SchedulerPolicyTxQueueSm final
    : public Rok::StateMachine<SchedulerPolicyTxQueueSm> {
 public:
  static constexpr std::string_view rokTypeName = "SchedulerPolicyTxQueueSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"schedulerPolicyIntfSm", &Self::schedulerPolicyIntfSm},
                      Rok::Argument{"intfId", &Self::intfId},
                      Rok::Argument{"schedulerPoliciesDir", &Self::schedulerPoliciesDir},
                      Rok::Argument{"interfacesDir", &Self::interfacesDir},
                      Rok::Argument{"txQueueConfig", &Self::txQueueConfig}};
  }
  // How the root finds the tx queues that an event is about.
  using TxQueues = Helper::TxQueues<SchedulerPolicyTxQueueSm, 0x8a51407du, 0x27d4eb2fu>;

  static auto SchedulerPolicyTxQueueSmIs(const auto&... arguments) { return create(arguments...); }

  SchedulerPolicyIntfSm* schedulerPolicyIntfSm() const { return schedulerPolicyIntfSm_; }
  const Nerit::IntfId& intfId() const { return intfId_; }
  // Held, like that of the interface, and not used: the root writes.
  Rok::Out<Config::SchedulerPoliciesDir> schedulerPoliciesDir() const {
    return schedulerPoliciesDir_;
  }
  Rok::Out<Config::InterfacesDir> interfacesDir() const { return interfacesDir_; }
  Rok::Ptr<Qos::TxQueueConfig const> txQueueConfig() const { return txQueueConfig_.ptr(); }
  // The default tx queue without a config.
  Qos::TxQueue txQueue() const { return txQueueConfig_.read(&Qos::TxQueueConfig::txQueue); }
  // The key of the comment of this tx queue.
  const Velmo::String& commentKey() const { return entry_.memo().commentKey(); }
  // Its place in the root's indexes.
  TxQueues::Entry& entry() { return entry_; }

  // Leaves the output as it stands.
  void doPrepareToDie();
  // One of the settings changed.
  void handlePriorityBandwidthShapeConfig();
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using Attr = Qos::TxQueueConfig::Attr;
  using RokTxQueueConfig =
      Rok::Watch<Self, Qos::TxQueueConfig,
                 Rok::On<Attr::priority, &Self::handlePriorityBandwidthShapeConfig>,
                 Rok::On<Attr::bandwidth, &Self::handlePriorityBandwidthShapeConfig>,
                 Rok::On<Attr::shape, &Self::handlePriorityBandwidthShapeConfig>>;

  SchedulerPolicyTxQueueSm(SchedulerPolicyIntfSm* schedulerPolicyIntfSm,
                           const Nerit::IntfId& intfId,
                           Rok::Out<Config::SchedulerPoliciesDir> schedulerPoliciesDir,
                           Rok::Out<Config::InterfacesDir> interfacesDir,
                           Rok::In<Qos::TxQueueConfig> txQueueConfig);
  auto parts() { return std::tie(txQueueConfig_); }
  SchedulerPolicyKivToOCSm& root() const;

  SchedulerPolicyIntfSm* schedulerPolicyIntfSm_;
  Nerit::IntfId intfId_;
  Rok::Ptr<Config::SchedulerPoliciesDir> schedulerPoliciesDir_;
  Rok::Ptr<Config::InterfacesDir> interfacesDir_;
  RokTxQueueConfig txQueueConfig_;
  TxQueues::Entry entry_;
};

// One interface. Mirrors its tx queues.
class QOS_EXPORT SchedulerPolicyIntfSm final : public Rok::StateMachine<SchedulerPolicyIntfSm> {
 public:
  static constexpr std::string_view rokTypeName = "SchedulerPolicyIntfSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"schedulerPolicyKivToOCSm", &Self::schedulerPolicyKivToOCSm},
                      Rok::Argument{"schedulerPoliciesDir", &Self::schedulerPoliciesDir},
                      Rok::Argument{"interfacesDir", &Self::interfacesDir},
                      Rok::Argument{"intfConfig", &Self::intfConfig}};
  }
  using TxQueueSmKeyFunktor =
      Rok::KeyFunktor<&SchedulerPolicyTxQueueSm::txQueueConfig, &Qos::TxQueueConfig::txQueue>;
  using TxQueueSms = Rok::Children<SchedulerPolicyTxQueueSm, 0x165667b1u, TxQueueSmKeyFunktor>;

  static auto SchedulerPolicyIntfSmIs(const auto&... arguments) { return create(arguments...); }

  SchedulerPolicyKivToOCSm* schedulerPolicyKivToOCSm() const { return schedulerPolicyKivToOCSm_; }
  Rok::Out<Config::SchedulerPoliciesDir> schedulerPoliciesDir() const {
    return schedulerPoliciesDir_;
  }
  Rok::Out<Config::InterfacesDir> interfacesDir() const { return interfacesDir_; }
  Rok::Ptr<Qos::IntfConfig const> intfConfig() const { return intfConfig_.ptr(); }
  // The interface of no name without a config.
  Nerit::IntfId intfId() const { return intfConfig_.read(&Qos::IntfConfig::intfId); }

  const TxQueueSms& txQueueSm() const { return txQueueSm_; }
  auto txQueueSmIs(const auto&... arguments) { return txQueueSm_.is(arguments...); }
  void txQueueSmDel(const Qos::TxQueue& txQueue) { txQueueSm_.del(txQueue); }
  void txQueueSmDelAll() { txQueueSm_.delAll(); }

  // Lets all tx queues go. Leaves the output as it stands.
  void doPrepareToDie();
  // A tx queue came or went.
  void handleTxQueueConfig(const Qos::TxQueue& txQueue);
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using RokIntfConfig =
      Rok::Watch<Self, Qos::IntfConfig,
                 Rok::On<Qos::IntfConfig::Attr::txQueueConfig, &Self::handleTxQueueConfig>>;

  SchedulerPolicyIntfSm(SchedulerPolicyKivToOCSm* schedulerPolicyKivToOCSm,
                        Rok::Out<Config::SchedulerPoliciesDir> schedulerPoliciesDir,
                        Rok::Out<Config::InterfacesDir> interfacesDir,
                        Rok::In<Qos::IntfConfig> intfConfig);
  auto parts() { return std::tie(intfConfig_, txQueueSm_); }

  SchedulerPolicyKivToOCSm* schedulerPolicyKivToOCSm_;
  Rok::Ptr<Config::SchedulerPoliciesDir> schedulerPoliciesDir_;
  Rok::Ptr<Config::InterfacesDir> interfacesDir_;
  RokIntfConfig intfConfig_;
  TxQueueSms txQueueSm_;
};

// ===== The root

// Writes the policies and the attachments, and at start sweeps the policies without a profile and
// the attachments that no tx queue's comment made.
class QOS_EXPORT SchedulerPolicyKivToOCSm final
    : public Rok::StateMachine<SchedulerPolicyKivToOCSm> {
 public:
  static constexpr std::string_view rokTypeName = "SchedulerPolicyKivToOCSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"cliConfig", &Self::cliConfig},
                      Rok::Argument{"qosCliConfig", &Self::qosCliConfig},
                      Rok::Argument{"qosProfileConfigDir", &Self::qosProfileConfigDir},
                      Rok::Argument{"schedulerPoliciesDir", &Self::schedulerPoliciesDir},
                      Rok::Argument{"interfacesDir", &Self::interfacesDir}};
  }
  using IntfSmKeyFunktor =
      Rok::KeyFunktor<&SchedulerPolicyIntfSm::intfConfig, &Qos::IntfConfig::intfId>;
  using IntfSms = Rok::Children<SchedulerPolicyIntfSm, 0xc2b2ae3du, IntfSmKeyFunktor>;
  using Attachments = Rok::ValueMap<0x85ebca77u, Nerit::IntfId, Velmo::String>;
  using TxQueues = SchedulerPolicyTxQueueSm::TxQueues;
  using NameToTxQueueIdMap = Qos::QueueNameToTxQueueIdMap;

  static auto SchedulerPolicyKivToOCSmIs(const auto&... arguments) { return create(arguments...); }

  // The comment store.
  Rok::Ptr<Cli::Config const> cliConfig() const { return cliConfig_.ptr(); }
  // The text of a comment; empty when there is none. Requires: cliConfig().
  Velmo::String comment(const Velmo::String& key) const { return cliConfig_->comment(key); }
  Rok::Ptr<Qos::Input::Config const> qosCliConfig() const { return qosCliConfig_.ptr(); }
  Rok::Ptr<Qos::QosProfileConfigDir const> qosProfileConfigDir() const {
    return qosProfileConfigDir_.ptr();
  }
  Rok::Out<Config::SchedulerPoliciesDir> schedulerPoliciesDir() const {
    return schedulerPoliciesDir_;
  }
  Rok::Out<Config::InterfacesDir> interfacesDir() const { return interfacesDir_; }

  // What this object attached to interfaces in its lifetime. Read by the sweep alone, but always
  // kept up to date. A missing interface reads as the empty name.
  const Attachments::Map& interfaceToSchedulerPolicyMap() const { return attachments_.map(); }
  Velmo::String interfaceToSchedulerPolicyMap(const Nerit::IntfId& intfId) const {
    return attachments_.get(intfId);
  }
  void interfaceToSchedulerPolicyMapIs(const Nerit::IntfId& intfId, const Velmo::String& name) {
    attachments_.is(intfId, name);
  }
  void interfaceToSchedulerPolicyMapDel(const Nerit::IntfId& intfId) { attachments_.del(intfId); }
  void interfaceToSchedulerPolicyMapDelAll() { attachments_.delAll(); }

  const IntfSms& intfSm() const { return intfSm_; }
  auto intfSmIs(const auto&... arguments) { return intfSm_.is(arguments...); }
  void intfSmDel(const Nerit::IntfId& intfId) { intfSm_.del(intfId); }
  void intfSmDelAll() { intfSm_.delAll(); }

  // The tx queues of all interfaces, where they enter themselves.
  TxQueues& txQueues() { return txQueues_; }

  // The chained input: the queue names that qosCliConfig() holds at the moment. Moving it calls no
  // handler, so a replaced map re-evaluates nothing until one of its entries changes.
  auto rok_QosCliConfig_QueueNameToTxQueueIdMapIn() const { return nameToTxQueueIdMapIn_.ptr(); }
  void rok_QosCliConfig_QueueNameToTxQueueIdMapInIs(Rok::In<NameToTxQueueIdMap> map) {
    nameToTxQueueIdMapIn_.inputIs(map);
  }
  void rok_QosCliConfig_QueueNameToTxQueueIdMapInDel() { nameToTxQueueIdMapIn_.inputDel(); }

  // A QoS profile came or went, or its comment changed. Adds to the policy what it lacks, and
  // changes and removes nothing that it has; a profile that went takes its policy along.
  // Throws: RangeException for a rate of more than 100 percent; what was written before stays.
  void udpateSchedulerPolicies(const Velmo::String& profileName);
  // Attaches the policy that a tx queue's comment names to the interface, or removes whatever is
  // attached to it when the comment names none.
  void udpateIntfSchedulerPolicies(const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue);
  // The same for the text of that comment, with what is kept of the tx queue.
  void udpateIntfSchedulerPolicies(const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue,
                                   const Velmo::String& comment, Helper::TxQueueMemo& memo);
  // An interface came or went.
  void handleIntfConfig(const Nerit::IntfId& intfId);
  // A comment came, changed or went: a profile's, a tx queue's or one of other origin.
  // Throws: as udpateSchedulerPolicies.
  void handleComment(const Velmo::String& key);
  // A queue's name came, went or moved to another id.
  void handleQueueNameToTxQueue(const Velmo::String& queueName);
  void rok_handleQosCliConfig_queueNameToTxQueueIdMap_queueNameToTxQueueId(
      const Qos::QueueName& queueName) {
    handleQueueNameToTxQueue(queueName.name);
  }
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  void followQueueNameToTxQueueIdMap() { nameToTxQueueIdMapIn_.follow(*this); }
  using RokCliConfig =
      Rok::Watch<Self, Cli::Config, Rok::On<Cli::Config::Attr::comment, &Self::handleComment>>;
  using RokQosCliConfig =
      Rok::Watch<Self, Qos::Input::Config,
                 Rok::On<Qos::Input::Config::Attr::intfConfig, &Self::handleIntfConfig>,
                 Rok::On<Qos::Input::Config::Attr::queueNameToTxQueueIdMap,
                         &Self::followQueueNameToTxQueueIdMap>>;
  using RokQosProfileConfigDir =
      Rok::Watch<Self, Qos::QosProfileConfigDir,
                 Rok::On<Qos::QosProfileConfigDir::Attr::config, &Self::udpateSchedulerPolicies>>;

  SchedulerPolicyKivToOCSm(Rok::In<Cli::Config> cliConfig, Rok::In<Qos::Input::Config> qosCliConfig,
                           Rok::In<Qos::QosProfileConfigDir> qosProfileConfigDir,
                           Rok::Out<Config::SchedulerPoliciesDir> schedulerPoliciesDir,
                           Rok::Out<Config::InterfacesDir> interfacesDir);
  auto parts() {
    return std::tie(cliConfig_, qosCliConfig_, qosProfileConfigDir_, intfSm_,
                    nameToTxQueueIdMapIn_);
  }
  void deletePolicy(const Velmo::String& policyName);
  Rok::Ptr<Config::SchedulerPolicy> makePolicy(const Velmo::String& policyName);
  void addScheduler(Config::SchedulerPolicy& policy, const SchedulerCommentInfo& comment);
  void addRate(Config::Scheduler& scheduler, const OneRateTwoColorCommentInfo& comment);
  void addInput(Config::Scheduler& scheduler, const SchedulerInputCommentInfo& comment);
  void attach(const Nerit::IntfId& intfId, const Velmo::String& policyName,
              Helper::TxQueueMemo& memo);
  void detach(const Nerit::IntfId& intfId, Helper::TxQueueMemo& memo);
  void noteCutName(const Velmo::String& profileName);
  void updatePoliciesOfComment(const Velmo::String& key);
  std::vector<Velmo::String> profilesNamed(std::string_view name) const;
  void mirrorInterfaces();
  void sweepPolicies();
  void sweepAttachments();

  RokCliConfig cliConfig_;
  RokQosCliConfig qosCliConfig_;
  RokQosProfileConfigDir qosProfileConfigDir_;
  Rok::Ptr<Config::SchedulerPoliciesDir> schedulerPoliciesDir_;
  Rok::Ptr<Config::InterfacesDir> interfacesDir_;
  Attachments attachments_;
  // The profiles whose comment keys don't hold their whole names.
  Rok::OrderedMap<Velmo::String, bool> cutNames_;
  // So that a comment and a queue name find their tx queues without a walk over all of the device.
  TxQueues txQueues_;
  IntfSms intfSm_;
  using RokNameToTxQueueIdMapIn = Rok::ChainedWatch<
      Self, &Self::qosCliConfig_, &Qos::Input::Config::queueNameToTxQueueIdMap,
      Rok::On<NameToTxQueueIdMap::Attr::queueNameToTxQueueId,
              &Self::rok_handleQosCliConfig_queueNameToTxQueueIdMap_queueNameToTxQueueId>>;
  RokNameToTxQueueIdMapIn nameToTxQueueIdMapIn_;
};

// ===== Factories

// Deaf without cliConfig. Requires: qosProfileConfigDir, schedulerPoliciesDir, interfacesDir.
// Without qosCliConfig there are no interfaces, and the chained input is null.
// Throws: RangeException when a profile's comment has a rate of more than 100 percent; what was
// written before stays.
QOS_EXPORT Rok::Factory<SchedulerPolicyKivToOCSm> schedulerPolicyKivToOCSmFactory;
// Deaf without intfConfig. Requires: schedulerPoliciesDir, interfacesDir, and
// schedulerPolicyKivToOCSm, which outlives the machine.
QOS_EXPORT Rok::Factory<SchedulerPolicyIntfSm> schedulerPolicyIntfSmFactory;
// Deaf without txQueueConfig. Requires: schedulerPoliciesDir, interfacesDir, and
// schedulerPolicyIntfSm, which outlives the machine.
QOS_EXPORT Rok::Factory<SchedulerPolicyTxQueueSm> schedulerPolicyTxQueueSmFactory;

}  // namespace QosOc
