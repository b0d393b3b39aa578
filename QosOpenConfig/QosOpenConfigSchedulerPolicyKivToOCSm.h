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

#include <cstdint>

#include "QosOpenConfig/QosOpenConfigHelperTxQueues.h"
#include "QosOpenConfig/QosOpenConfigTypes.h"
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
class SchedulerPolicyTxQueueSm final : public Rok::StateMachine<SchedulerPolicyTxQueueSm> {
 public:
  static constexpr std::string_view rokTypeName = "SchedulerPolicyTxQueueSm";
  static constexpr auto rokArguments() {
    return std::tuple{
        Rok::Argument{"schedulerPolicyIntfSm", &SchedulerPolicyTxQueueSm::schedulerPolicyIntfSm},
        Rok::Argument{"intfId", &SchedulerPolicyTxQueueSm::intfId},
        Rok::Argument{"schedulerPoliciesDir", &SchedulerPolicyTxQueueSm::schedulerPoliciesDir},
        Rok::Argument{"interfacesDir", &SchedulerPolicyTxQueueSm::interfacesDir},
        Rok::Argument{"txQueueConfig", &SchedulerPolicyTxQueueSm::txQueueConfig}};
  }
  // How the root finds the tx queues that an event is about.
  using TxQueues = Helper::TxQueues<SchedulerPolicyTxQueueSm, 0x8a51407du, 0x27d4eb2fu>;

  static Rok::Ptr<SchedulerPolicyTxQueueSm> SchedulerPolicyTxQueueSmIs(
      SchedulerPolicyIntfSm* schedulerPolicyIntfSm, const Nerit::IntfId& intfId,
      const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
      const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
      const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig);

  SchedulerPolicyIntfSm* schedulerPolicyIntfSm() const { return schedulerPolicyIntfSm_; }
  const Nerit::IntfId& intfId() const { return intfId_; }
  // Held, like that of the interface, and not used: the root writes.
  const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir() const {
    return schedulerPoliciesDir_;
  }
  const Rok::Ptr<Config::InterfacesDir>& interfacesDir() const { return interfacesDir_; }
  Rok::Ptr<Qos::TxQueueConfig const> txQueueConfig() const { return txQueueConfig_.ptr(); }
  // The default tx queue without a config.
  Qos::TxQueue txQueue() const;
  // The key of the comment of this tx queue.
  const Velmo::String& commentKey() const { return entry_.commentKey(); }
  TxQueues::Entry& entry() { return entry_; }
  Helper::Attachment& attachment() { return attachment_; }

  // Leaves the output as it stands.
  void doPrepareToDie();
  // One of the settings changed.
  void handlePriorityBandwidthShapeConfig();
  void handleInitialized();

 private:
  friend Rok::StateMachine<SchedulerPolicyTxQueueSm>;
  using Attr = Qos::TxQueueConfig::Attr;
  using RokTxQueueConfig = Rok::Watch<
      SchedulerPolicyTxQueueSm, Qos::TxQueueConfig,
      Rok::On<Attr::priority, &SchedulerPolicyTxQueueSm::handlePriorityBandwidthShapeConfig>,
      Rok::On<Attr::bandwidth, &SchedulerPolicyTxQueueSm::handlePriorityBandwidthShapeConfig>,
      Rok::On<Attr::shape, &SchedulerPolicyTxQueueSm::handlePriorityBandwidthShapeConfig>>;

  SchedulerPolicyTxQueueSm(SchedulerPolicyIntfSm* schedulerPolicyIntfSm,
                           const Nerit::IntfId& intfId,
                           const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
                           const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
                           const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig);
  auto parts() { return std::tie(txQueueConfig_); }
  SchedulerPolicyKivToOCSm& root() const;

  SchedulerPolicyIntfSm* schedulerPolicyIntfSm_;
  Nerit::IntfId intfId_;
  Rok::Ptr<Config::SchedulerPoliciesDir> schedulerPoliciesDir_;
  Rok::Ptr<Config::InterfacesDir> interfacesDir_;
  RokTxQueueConfig txQueueConfig_;
  TxQueues::Entry entry_;
  Helper::Attachment attachment_;
};

// One interface. Mirrors its tx queues.
class SchedulerPolicyIntfSm final : public Rok::StateMachine<SchedulerPolicyIntfSm> {
 public:
  static constexpr std::string_view rokTypeName = "SchedulerPolicyIntfSm";
  static constexpr auto rokArguments() {
    return std::tuple{
        Rok::Argument{"schedulerPolicyKivToOCSm", &SchedulerPolicyIntfSm::schedulerPolicyKivToOCSm},
        Rok::Argument{"schedulerPoliciesDir", &SchedulerPolicyIntfSm::schedulerPoliciesDir},
        Rok::Argument{"interfacesDir", &SchedulerPolicyIntfSm::interfacesDir},
        Rok::Argument{"intfConfig", &SchedulerPolicyIntfSm::intfConfig}};
  }
  using TxQueueSmKeyFunktor =
      Rok::KeyFunktor<&SchedulerPolicyTxQueueSm::txQueueConfig, &Qos::TxQueueConfig::txQueue>;
  using TxQueueSms = Rok::Children<SchedulerPolicyTxQueueSm, 0x165667b1u, TxQueueSmKeyFunktor>;

  static Rok::Ptr<SchedulerPolicyIntfSm> SchedulerPolicyIntfSmIs(
      SchedulerPolicyKivToOCSm* schedulerPolicyKivToOCSm,
      const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
      const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
      const Rok::Ptr<Qos::IntfConfig const>& intfConfig);

  SchedulerPolicyKivToOCSm* schedulerPolicyKivToOCSm() const { return schedulerPolicyKivToOCSm_; }
  const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir() const {
    return schedulerPoliciesDir_;
  }
  const Rok::Ptr<Config::InterfacesDir>& interfacesDir() const { return interfacesDir_; }
  Rok::Ptr<Qos::IntfConfig const> intfConfig() const { return intfConfig_.ptr(); }
  // The interface of no name without a config.
  Nerit::IntfId intfId() const;

  const TxQueueSms& txQueueSm() const { return txQueueSm_; }
  Rok::Ptr<SchedulerPolicyTxQueueSm> txQueueSmIs(
      SchedulerPolicyIntfSm* schedulerPolicyIntfSm, const Nerit::IntfId& intfId,
      const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
      const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
      const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig) {
    return txQueueSm_.is(schedulerPolicyIntfSm, intfId, schedulerPoliciesDir, interfacesDir,
                         txQueueConfig);
  }
  void txQueueSmDel(const Qos::TxQueue& txQueue) { txQueueSm_.del(txQueue); }
  void txQueueSmDelAll() { txQueueSm_.delAll(); }

  // Lets all tx queues go. Leaves the output as it stands.
  void doPrepareToDie();
  // A tx queue came or went.
  void handleTxQueueConfig(const Qos::TxQueue& txQueue);
  void handleInitialized();

 private:
  friend Rok::StateMachine<SchedulerPolicyIntfSm>;
  using RokIntfConfig = Rok::Watch<
      SchedulerPolicyIntfSm, Qos::IntfConfig,
      Rok::On<Qos::IntfConfig::Attr::txQueueConfig, &SchedulerPolicyIntfSm::handleTxQueueConfig>>;

  SchedulerPolicyIntfSm(SchedulerPolicyKivToOCSm* schedulerPolicyKivToOCSm,
                        const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
                        const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
                        const Rok::Ptr<Qos::IntfConfig const>& intfConfig);
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
class SchedulerPolicyKivToOCSm final : public Rok::StateMachine<SchedulerPolicyKivToOCSm> {
 public:
  static constexpr std::string_view rokTypeName = "SchedulerPolicyKivToOCSm";
  static constexpr auto rokArguments() {
    return std::tuple{
        Rok::Argument{"cliConfig", &SchedulerPolicyKivToOCSm::cliConfig},
        Rok::Argument{"qosCliConfig", &SchedulerPolicyKivToOCSm::qosCliConfig},
        Rok::Argument{"qosProfileConfigDir", &SchedulerPolicyKivToOCSm::qosProfileConfigDir},
        Rok::Argument{"schedulerPoliciesDir", &SchedulerPolicyKivToOCSm::schedulerPoliciesDir},
        Rok::Argument{"interfacesDir", &SchedulerPolicyKivToOCSm::interfacesDir}};
  }
  using IntfSmKeyFunktor =
      Rok::KeyFunktor<&SchedulerPolicyIntfSm::intfConfig, &Qos::IntfConfig::intfId>;
  using IntfSms = Rok::Children<SchedulerPolicyIntfSm, 0xc2b2ae3du, IntfSmKeyFunktor>;
  using Attachments = Rok::ValueMap<0x85ebca77u, Nerit::IntfId, Velmo::String>;
  using TxQueues = SchedulerPolicyTxQueueSm::TxQueues;
  using NameToTxQueueIdMap = Qos::QueueNameToTxQueueIdMap;

  static Rok::Ptr<SchedulerPolicyKivToOCSm> SchedulerPolicyKivToOCSmIs(
      const Rok::Ptr<Cli::Config const>& cliConfig,
      const Rok::Ptr<Qos::Input::Config const>& qosCliConfig,
      const Rok::Ptr<Qos::QosProfileConfigDir const>& qosProfileConfigDir,
      const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
      const Rok::Ptr<Config::InterfacesDir>& interfacesDir);

  // The comment store.
  Rok::Ptr<Cli::Config const> cliConfig() const { return cliConfig_.ptr(); }
  Rok::Ptr<Qos::Input::Config const> qosCliConfig() const { return qosCliConfig_.ptr(); }
  Rok::Ptr<Qos::QosProfileConfigDir const> qosProfileConfigDir() const {
    return qosProfileConfigDir_.ptr();
  }
  const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir() const {
    return schedulerPoliciesDir_;
  }
  const Rok::Ptr<Config::InterfacesDir>& interfacesDir() const { return interfacesDir_; }

  // What this object attached to interfaces in its lifetime. Read by the sweep alone, and kept up
  // to date all the same. A missing interface reads as the empty name.
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
  Rok::Ptr<SchedulerPolicyIntfSm> intfSmIs(
      SchedulerPolicyKivToOCSm* schedulerPolicyKivToOCSm,
      const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
      const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
      const Rok::Ptr<Qos::IntfConfig const>& intfConfig) {
    return intfSm_.is(schedulerPolicyKivToOCSm, schedulerPoliciesDir, interfacesDir, intfConfig);
  }
  void intfSmDel(const Nerit::IntfId& intfId) { intfSm_.del(intfId); }
  void intfSmDelAll() { intfSm_.delAll(); }

  // The tx queues of all interfaces, where they enter themselves.
  const TxQueues& txQueues() const { return txQueues_; }
  // The comment that was told of last.
  Helper::CommentMemo& commentMemo() { return commentMemo_; }

  // The chained input: the queue names that qosCliConfig() holds at the moment. Moving it calls no
  // handler, so a replaced map re-evaluates nothing until one of its entries changes.
  Rok::Ptr<NameToTxQueueIdMap const> rok_QosCliConfig_QueueNameToTxQueueIdMapIn() const {
    return rok_QosCliConfig_QueueNameToTxQueueIdMapIn_.ptr();
  }
  void rok_QosCliConfig_QueueNameToTxQueueIdMapInIs(const Rok::Ptr<NameToTxQueueIdMap const>& map) {
    rok_QosCliConfig_QueueNameToTxQueueIdMapIn_.inputIs(map);
  }
  void rok_QosCliConfig_QueueNameToTxQueueIdMapInDel() {
    rok_QosCliConfig_QueueNameToTxQueueIdMapIn_.inputDel();
  }

  // A QoS profile came or went, or its comment changed. Adds to the policy what it lacks, and
  // changes and removes nothing that it has; a profile that went takes its policy along.
  // Throws: RangeException for a rate of more than 100 percent; what was written before stays.
  void udpateSchedulerPolicies(const Velmo::String& profileName);
  // Attaches the policy that a tx queue's comment names to the interface, or removes whatever is
  // attached to it when the comment names none.
  void udpateIntfSchedulerPolicies(const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue);
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
  friend Rok::StateMachine<SchedulerPolicyKivToOCSm>;
  friend SchedulerPolicyTxQueueSm;
  void followQueueNameToTxQueueIdMap();
  using RokCliConfig =
      Rok::Watch<SchedulerPolicyKivToOCSm, Cli::Config,
                 Rok::On<Cli::Config::Attr::comment, &SchedulerPolicyKivToOCSm::handleComment>>;
  using RokQosCliConfig = Rok::Watch<
      SchedulerPolicyKivToOCSm, Qos::Input::Config,
      Rok::On<Qos::Input::Config::Attr::intfConfig, &SchedulerPolicyKivToOCSm::handleIntfConfig>,
      Rok::On<Qos::Input::Config::Attr::queueNameToTxQueueIdMap,
              &SchedulerPolicyKivToOCSm::followQueueNameToTxQueueIdMap>>;
  using RokQosProfileConfigDir =
      Rok::Watch<SchedulerPolicyKivToOCSm, Qos::QosProfileConfigDir,
                 Rok::On<Qos::QosProfileConfigDir::Attr::config,
                         &SchedulerPolicyKivToOCSm::udpateSchedulerPolicies>>;
  using RokRok_QosCliConfig_QueueNameToTxQueueIdMapIn =
      Rok::Watch<SchedulerPolicyKivToOCSm, NameToTxQueueIdMap,
                 Rok::On<NameToTxQueueIdMap::Attr::queueNameToTxQueueId,
                         &SchedulerPolicyKivToOCSm::
                             rok_handleQosCliConfig_queueNameToTxQueueIdMap_queueNameToTxQueueId>>;

  SchedulerPolicyKivToOCSm(const Rok::Ptr<Cli::Config const>& cliConfig,
                           const Rok::Ptr<Qos::Input::Config const>& qosCliConfig,
                           const Rok::Ptr<Qos::QosProfileConfigDir const>& qosProfileConfigDir,
                           const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
                           const Rok::Ptr<Config::InterfacesDir>& interfacesDir);
  auto parts() {
    return std::tie(cliConfig_, qosCliConfig_, qosProfileConfigDir_, intfSm_,
                    rok_QosCliConfig_QueueNameToTxQueueIdMapIn_);
  }
  void deletePolicy(const Velmo::String& policyName);
  Rok::Ptr<Config::SchedulerPolicy> makePolicy(const Velmo::String& policyName);
  void addScheduler(Config::SchedulerPolicy& policy, const SchedulerCommentInfo& comment);
  void addRate(Config::Scheduler& scheduler, const OneRateTwoColorCommentInfo& comment);
  void addInput(Config::Scheduler& scheduler, const SchedulerInputCommentInfo& comment);
  void attachAsCommentSays(const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue,
                           const Velmo::String& comment, Helper::Attachment& attachment);
  void attach(const Nerit::IntfId& intfId, const Velmo::String& policyName,
              Helper::Attachment& attachment);
  void detach(const Nerit::IntfId& intfId, Helper::Attachment& attachment);
  void evaluate(SchedulerPolicyTxQueueSm& queue);
  void noteCutName(const Velmo::String& profileName);
  void updatePolicyOfComment(const Velmo::String& key);
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
  Helper::CommentMemo commentMemo_;
  IntfSms intfSm_;
  RokRok_QosCliConfig_QueueNameToTxQueueIdMapIn rok_QosCliConfig_QueueNameToTxQueueIdMapIn_;
};

// ===== Factories. Each returns when its whole tree is built and the output is in line.
//
// The argument named after "Deaf without" may be null: the machine then does nothing, for good.
// What is required must be there.

// Deaf without cliConfig. Requires: qosProfileConfigDir, schedulerPoliciesDir, interfacesDir.
// Without qosCliConfig there are no interfaces, and the chained input is null.
// Throws: RangeException when a profile's comment has a rate of more than 100 percent; what was
// written before stays.
QOS_EXPORT Rok::Ptr<SchedulerPolicyKivToOCSm> schedulerPolicyKivToOCSmFactory(
    const Rok::Ptr<Cli::Config const>& cliConfig,
    const Rok::Ptr<Qos::Input::Config const>& qosCliConfig,
    const Rok::Ptr<Qos::QosProfileConfigDir const>& qosProfileConfigDir,
    const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir);
// Deaf without intfConfig. Requires: schedulerPoliciesDir, interfacesDir, and
// schedulerPolicyKivToOCSm, which outlives the machine.
QOS_EXPORT Rok::Ptr<SchedulerPolicyIntfSm> schedulerPolicyIntfSmFactory(
    SchedulerPolicyKivToOCSm* schedulerPolicyKivToOCSm,
    const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    const Rok::Ptr<Qos::IntfConfig const>& intfConfig);
// Deaf without txQueueConfig. Requires: schedulerPoliciesDir, interfacesDir, and
// schedulerPolicyIntfSm, which outlives the machine.
QOS_EXPORT Rok::Ptr<SchedulerPolicyTxQueueSm> schedulerPolicyTxQueueSmFactory(
    SchedulerPolicyIntfSm* schedulerPolicyIntfSm, const Nerit::IntfId& intfId,
    const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig);

}  // namespace QosOc
