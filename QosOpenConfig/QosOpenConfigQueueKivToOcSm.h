// The native tx queues of interfaces into OpenConfig queues, with what the plain OpenConfig queue
// has no leaf for: the ECN settings, the strict priority, the bandwidth.
//
// A tx queue that was itself made from OpenConfig has a comment. What the comment names is
// expressed elsewhere, so the queue doesn't show it again: a queue-management profile keeps the ECN
// settings out, a scheduler policy the priority and the bandwidth. Comment and settings may come in
// any order.
//
// What wakes what:
//   intfConfig of Qos::Input::Config             QueueKivToOcSm::handleIntfConfig(interface)
//   txQueueConfig of Qos::IntfConfig             IntfSm::handleTxQueueConfig(tx queue)
//   ecnConfig of Qos::TxQueueConfig              TxQueueSm::handleTxQueueEcnConfig()
//   priority, bandwidth of Qos::TxQueueConfig    TxQueueSm::handleQueueConfig()
//   comment of Cli::Config at the queue's key    TxQueueSm::handleComment(key)
#pragma once

#include "QosOpenConfig/QosOpenConfigHelperComments.h"
#include "Rok/Rok.h"
#include "models/native/Cli.h"
#include "models/native/QosInput.h"
#include "models/openconfig/Queue.h"

namespace QosOc {

// ===== Tx queues

// One tx queue of an interface. Writes one queue, and removes it. It remembers neither comment nor
// settings, only what the comment decoded to.
class QOS_EXPORT TxQueueSm final : public Rok::StateMachine<TxQueueSm> {
 public:
  static constexpr std::string_view rokTypeName = "TxQueueSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"intfId", &Self::intfId},
                      Rok::Argument{"queuesDir", &Self::queuesDir},
                      Rok::Argument{"txQueueConfig", &Self::txQueueConfig},
                      Rok::Argument{"cliConfig", &Self::cliConfig}};
  }
  static auto TxQueueSmIs(const auto&... arguments) { return create(arguments...); }

  const Nerit::IntfId& intfId() const { return intfId_; }
  Rok::Out<Config::QueuesDir> queuesDir() const { return queuesDir_; }
  Rok::Ptr<Qos::TxQueueConfig const> txQueueConfig() const { return txQueueConfig_.ptr(); }
  Rok::Ptr<Cli::Config const> cliConfig() const { return cliConfig_.ptr(); }
  // The default without a config.
  Qos::TxQueue txQueue() const { return txQueueConfig_.read(&Qos::TxQueueConfig::txQueue); }
  // The key of the queue in queuesDir: Ethernet7/1-unicast-3. It has nothing to do with the names
  // that the native configuration gives to queue ids.
  const Velmo::String& queueName() const { return queueName_; }

  // The comment changed. For any other key than the tx queue's own nothing happens.
  // Throws, like the two below: RangeException for a setting that the queue can't hold; what was
  // written before stays.
  void handleComment(const Velmo::String& key);
  // Writes the ECN settings, unless the comment names a queue-management profile. This is what
  // makes the queue.
  void handleTxQueueEcnConfig();
  // Writes the priority and the bandwidth, unless the comment names a scheduler policy.
  void handleQueueConfig();
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using RokTxQueueConfig =
      Rok::Watch<Self, Qos::TxQueueConfig,
                 Rok::On<Qos::TxQueueConfig::Attr::priority, &Self::handleQueueConfig>,
                 Rok::On<Qos::TxQueueConfig::Attr::bandwidth, &Self::handleQueueConfig>,
                 Rok::On<Qos::TxQueueConfig::Attr::ecnConfig, &Self::handleTxQueueEcnConfig>>;
  using RokCliConfig =
      Rok::KeyedWatch<Self, Cli::Config, Rok::On<Cli::Config::Attr::comment, &Self::handleComment>>;

  TxQueueSm(const Nerit::IntfId& intfId, Rok::Out<Config::QueuesDir> queuesDir,
            Rok::In<Qos::TxQueueConfig> txQueueConfig, Rok::In<Cli::Config> cliConfig);
  auto parts() { return std::tie(txQueueConfig_, cliConfig_); }
  Velmo::String comment() const;

  Nerit::IntfId intfId_;
  Rok::Ptr<Config::QueuesDir> queuesDir_;
  RokTxQueueConfig txQueueConfig_;
  RokCliConfig cliConfig_;
  Velmo::String queueName_;
  Helper::CommentMemo commentMemo_;
};

// ===== Interfaces

// One interface: mirrors its tx queues.
class QOS_EXPORT IntfSm final : public Rok::StateMachine<IntfSm> {
 public:
  static constexpr std::string_view rokTypeName = "IntfSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"queuesDir", &Self::queuesDir},
                      Rok::Argument{"intfConfig", &Self::intfConfig},
                      Rok::Argument{"cliConfig", &Self::cliConfig}};
  }
  using TxQueueSmKeyFunktor =
      Rok::KeyFunktor<&TxQueueSm::txQueueConfig, &Qos::TxQueueConfig::txQueue>;
  using TxQueueSms = Rok::Children<TxQueueSm, 0x2de92c6fu, TxQueueSmKeyFunktor>;

  static auto IntfSmIs(const auto&... arguments) { return create(arguments...); }

  Rok::Out<Config::QueuesDir> queuesDir() const { return queuesDir_; }
  Rok::Ptr<Qos::IntfConfig const> intfConfig() const { return intfConfig_.ptr(); }
  Rok::In<Cli::Config> cliConfig() const { return cliConfig_; }
  // The interface of no name without a config.
  Nerit::IntfId intfId() const { return intfConfig_.read(&Qos::IntfConfig::intfId); }

  const TxQueueSms& txQueueSm() const { return txQueueSm_; }
  auto txQueueSmIs(const auto&... arguments) { return txQueueSm_.is(arguments...); }
  void txQueueSmDel(const Qos::TxQueue& txQueue) { txQueueSm_.del(txQueue); }
  void txQueueSmDelAll() { txQueueSm_.delAll(); }

  // A tx queue came or went.
  void handleTxQueueConfig(const Qos::TxQueue& txQueue);
  // Withdraws all tx queues.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using RokIntfConfig =
      Rok::Watch<Self, Qos::IntfConfig,
                 Rok::On<Qos::IntfConfig::Attr::txQueueConfig, &Self::handleTxQueueConfig>>;

  IntfSm(Rok::Out<Config::QueuesDir> queuesDir, Rok::In<Qos::IntfConfig> intfConfig,
         Rok::In<Cli::Config> cliConfig);
  auto parts() { return std::tie(intfConfig_, txQueueSm_); }

  Rok::Ptr<Config::QueuesDir> queuesDir_;
  RokIntfConfig intfConfig_;
  Rok::Ptr<Cli::Config const> cliConfig_;
  TxQueueSms txQueueSm_;
};

// ===== The root

// Mirrors the interfaces. It sweeps nothing: a queue of an earlier run stays.
class QOS_EXPORT QueueKivToOcSm final : public Rok::StateMachine<QueueKivToOcSm> {
 public:
  static constexpr std::string_view rokTypeName = "QueueKivToOcSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"qosCliConfig", &Self::qosCliConfig},
                      Rok::Argument{"queuesDir", &Self::queuesDir},
                      Rok::Argument{"cliConfig", &Self::cliConfig}};
  }
  using IntfSmKeyFunktor = Rok::KeyFunktor<&IntfSm::intfConfig, &Qos::IntfConfig::intfId>;
  using IntfSms = Rok::Children<IntfSm, 0x4a7484aau, IntfSmKeyFunktor>;

  static auto QueueKivToOcSmIs(const auto&... arguments) { return create(arguments...); }

  Rok::Ptr<Qos::Input::Config const> qosCliConfig() const { return qosCliConfig_.ptr(); }
  Rok::Out<Config::QueuesDir> queuesDir() const { return queuesDir_; }
  Rok::In<Cli::Config> cliConfig() const { return cliConfig_; }

  const IntfSms& intfSm() const { return intfSm_; }
  auto intfSmIs(const auto&... arguments) { return intfSm_.is(arguments...); }
  void intfSmDel(const Nerit::IntfId& intfId) { intfSm_.del(intfId); }
  void intfSmDelAll() { intfSm_.delAll(); }

  // An interface came or went.
  void handleIntfConfig(const Nerit::IntfId& intfId);
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using RokQosCliConfig =
      Rok::Watch<Self, Qos::Input::Config,
                 Rok::On<Qos::Input::Config::Attr::intfConfig, &Self::handleIntfConfig>>;

  QueueKivToOcSm(Rok::In<Qos::Input::Config> qosCliConfig, Rok::Out<Config::QueuesDir> queuesDir,
                 Rok::In<Cli::Config> cliConfig);
  auto parts() { return std::tie(qosCliConfig_, intfSm_); }

  RokQosCliConfig qosCliConfig_;
  Rok::Ptr<Config::QueuesDir> queuesDir_;
  Rok::Ptr<Cli::Config const> cliConfig_;
  IntfSms intfSm_;
};

// ===== Factories

// Deaf without qosCliConfig. Requires: queuesDir, cliConfig.
// Throws: RangeException for settings that a queue can't hold; what was written before stays.
QOS_EXPORT Rok::Factory<QueueKivToOcSm> queueKivToOcSmFactory;
// Deaf without intfConfig. Requires: queuesDir, cliConfig. Throws: as the above.
QOS_EXPORT Rok::Factory<IntfSm> intfSmFactory;
// Deaf without txQueueConfig. Requires: queuesDir, cliConfig. Throws: as the above.
QOS_EXPORT Rok::Factory<TxQueueSm> txQueueSmFactory;

}  // namespace QosOc
