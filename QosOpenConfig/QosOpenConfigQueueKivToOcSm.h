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

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "Rok/Rok.h"
#include "models/native/Cli.h"
#include "models/native/QosInput.h"
#include "models/openconfig/Queue.h"

namespace QosOc {

// ===== Tx queues

// One tx queue of an interface. Writes one queue, and removes it. It remembers neither comment nor
// settings, only what the comment decoded to.
class TxQueueSm final : public Rok::StateMachine<TxQueueSm> {
 public:
  static constexpr std::string_view rokTypeName = "TxQueueSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"intfId", &TxQueueSm::intfId},
                      Rok::Argument{"queuesDir", &TxQueueSm::queuesDir},
                      Rok::Argument{"txQueueConfig", &TxQueueSm::txQueueConfig},
                      Rok::Argument{"cliConfig", &TxQueueSm::cliConfig}};
  }
  static Rok::Ptr<TxQueueSm> TxQueueSmIs(const Nerit::IntfId& intfId,
                                         const Rok::Ptr<Config::QueuesDir>& queuesDir,
                                         const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig,
                                         const Rok::Ptr<Cli::Config const>& cliConfig);

  const Nerit::IntfId& intfId() const { return intfId_; }
  const Rok::Ptr<Config::QueuesDir>& queuesDir() const { return queuesDir_; }
  Rok::Ptr<Qos::TxQueueConfig const> txQueueConfig() const { return txQueueConfig_.ptr(); }
  Rok::Ptr<Cli::Config const> cliConfig() const { return cliConfig_.ptr(); }
  // The default without a config.
  Qos::TxQueue txQueue() const;
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
  friend Rok::StateMachine<TxQueueSm>;
  using RokTxQueueConfig =
      Rok::Watch<TxQueueSm, Qos::TxQueueConfig,
                 Rok::On<Qos::TxQueueConfig::Attr::priority, &TxQueueSm::handleQueueConfig>,
                 Rok::On<Qos::TxQueueConfig::Attr::bandwidth, &TxQueueSm::handleQueueConfig>,
                 Rok::On<Qos::TxQueueConfig::Attr::ecnConfig, &TxQueueSm::handleTxQueueEcnConfig>>;
  using RokCliConfig =
      Rok::KeyedWatch<TxQueueSm, Cli::Config,
                      Rok::On<Cli::Config::Attr::comment, &TxQueueSm::handleComment>>;

  TxQueueSm(const Nerit::IntfId& intfId, const Rok::Ptr<Config::QueuesDir>& queuesDir,
            const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig,
            const Rok::Ptr<Cli::Config const>& cliConfig);
  auto parts() { return std::tie(txQueueConfig_, cliConfig_); }
  Velmo::String comment() const;
  bool namesProfile(const Velmo::String& comment);
  bool namesPolicy(const Velmo::String& comment);

  Nerit::IntfId intfId_;
  Rok::Ptr<Config::QueuesDir> queuesDir_;
  RokTxQueueConfig txQueueConfig_;
  RokCliConfig cliConfig_;
  Velmo::String queueName_;
  Helper::CommentMemo commentMemo_;
};

// ===== Interfaces

// One interface: mirrors its tx queues.
class IntfSm final : public Rok::StateMachine<IntfSm> {
 public:
  static constexpr std::string_view rokTypeName = "IntfSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"queuesDir", &IntfSm::queuesDir},
                      Rok::Argument{"intfConfig", &IntfSm::intfConfig},
                      Rok::Argument{"cliConfig", &IntfSm::cliConfig}};
  }
  using TxQueueSmKeyFunktor =
      Rok::KeyFunktor<&TxQueueSm::txQueueConfig, &Qos::TxQueueConfig::txQueue>;
  using TxQueueSms = Rok::Children<TxQueueSm, 0x2de92c6fu, TxQueueSmKeyFunktor>;

  static Rok::Ptr<IntfSm> IntfSmIs(const Rok::Ptr<Config::QueuesDir>& queuesDir,
                                   const Rok::Ptr<Qos::IntfConfig const>& intfConfig,
                                   const Rok::Ptr<Cli::Config const>& cliConfig);

  const Rok::Ptr<Config::QueuesDir>& queuesDir() const { return queuesDir_; }
  Rok::Ptr<Qos::IntfConfig const> intfConfig() const { return intfConfig_.ptr(); }
  const Rok::Ptr<Cli::Config const>& cliConfig() const { return cliConfig_; }
  // The interface of no name without a config.
  Nerit::IntfId intfId() const;

  const TxQueueSms& txQueueSm() const { return txQueueSm_; }
  Rok::Ptr<TxQueueSm> txQueueSmIs(const Nerit::IntfId& intfId,
                                  const Rok::Ptr<Config::QueuesDir>& queuesDir,
                                  const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig,
                                  const Rok::Ptr<Cli::Config const>& cliConfig) {
    return txQueueSm_.is(intfId, queuesDir, txQueueConfig, cliConfig);
  }
  void txQueueSmDel(const Qos::TxQueue& txQueue) { txQueueSm_.del(txQueue); }
  void txQueueSmDelAll() { txQueueSm_.delAll(); }

  // A tx queue came or went.
  void handleTxQueueConfig(const Qos::TxQueue& txQueue);
  // Withdraws all tx queues.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<IntfSm>;
  using RokIntfConfig =
      Rok::Watch<IntfSm, Qos::IntfConfig,
                 Rok::On<Qos::IntfConfig::Attr::txQueueConfig, &IntfSm::handleTxQueueConfig>>;

  IntfSm(const Rok::Ptr<Config::QueuesDir>& queuesDir,
         const Rok::Ptr<Qos::IntfConfig const>& intfConfig,
         const Rok::Ptr<Cli::Config const>& cliConfig);
  auto parts() { return std::tie(intfConfig_, txQueueSm_); }

  Rok::Ptr<Config::QueuesDir> queuesDir_;
  RokIntfConfig intfConfig_;
  Rok::Ptr<Cli::Config const> cliConfig_;
  TxQueueSms txQueueSm_;
};

// ===== The root

// Mirrors the interfaces. It sweeps nothing: a queue of an earlier life stays.
class QueueKivToOcSm final : public Rok::StateMachine<QueueKivToOcSm> {
 public:
  static constexpr std::string_view rokTypeName = "QueueKivToOcSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"qosCliConfig", &QueueKivToOcSm::qosCliConfig},
                      Rok::Argument{"queuesDir", &QueueKivToOcSm::queuesDir},
                      Rok::Argument{"cliConfig", &QueueKivToOcSm::cliConfig}};
  }
  using IntfSmKeyFunktor = Rok::KeyFunktor<&IntfSm::intfConfig, &Qos::IntfConfig::intfId>;
  using IntfSms = Rok::Children<IntfSm, 0x4a7484aau, IntfSmKeyFunktor>;

  static Rok::Ptr<QueueKivToOcSm> QueueKivToOcSmIs(
      const Rok::Ptr<Qos::Input::Config const>& qosCliConfig,
      const Rok::Ptr<Config::QueuesDir>& queuesDir, const Rok::Ptr<Cli::Config const>& cliConfig);

  Rok::Ptr<Qos::Input::Config const> qosCliConfig() const { return qosCliConfig_.ptr(); }
  const Rok::Ptr<Config::QueuesDir>& queuesDir() const { return queuesDir_; }
  const Rok::Ptr<Cli::Config const>& cliConfig() const { return cliConfig_; }

  const IntfSms& intfSm() const { return intfSm_; }
  Rok::Ptr<IntfSm> intfSmIs(const Rok::Ptr<Config::QueuesDir>& queuesDir,
                            const Rok::Ptr<Qos::IntfConfig const>& intfConfig,
                            const Rok::Ptr<Cli::Config const>& cliConfig) {
    return intfSm_.is(queuesDir, intfConfig, cliConfig);
  }
  void intfSmDel(const Nerit::IntfId& intfId) { intfSm_.del(intfId); }
  void intfSmDelAll() { intfSm_.delAll(); }

  // An interface came or went.
  void handleIntfConfig(const Nerit::IntfId& intfId);
  void handleInitialized();

 private:
  friend Rok::StateMachine<QueueKivToOcSm>;
  using RokQosCliConfig =
      Rok::Watch<QueueKivToOcSm, Qos::Input::Config,
                 Rok::On<Qos::Input::Config::Attr::intfConfig, &QueueKivToOcSm::handleIntfConfig>>;

  QueueKivToOcSm(const Rok::Ptr<Qos::Input::Config const>& qosCliConfig,
                 const Rok::Ptr<Config::QueuesDir>& queuesDir,
                 const Rok::Ptr<Cli::Config const>& cliConfig);
  auto parts() { return std::tie(qosCliConfig_, intfSm_); }

  RokQosCliConfig qosCliConfig_;
  Rok::Ptr<Config::QueuesDir> queuesDir_;
  Rok::Ptr<Cli::Config const> cliConfig_;
  IntfSms intfSm_;
};

// ===== Factories. Each returns when its whole tree is built and the output is in line.
//
// The argument named after "Deaf without" may be null: the machine then does nothing, for good.
// What is required must be there.

// Deaf without qosCliConfig. Requires: queuesDir, cliConfig.
// Throws: RangeException for settings that a queue can't hold; what was written before stays.
QOS_EXPORT Rok::Ptr<QueueKivToOcSm> queueKivToOcSmFactory(
    const Rok::Ptr<Qos::Input::Config const>& qosCliConfig,
    const Rok::Ptr<Config::QueuesDir>& queuesDir, const Rok::Ptr<Cli::Config const>& cliConfig);
// Deaf without intfConfig. Requires: queuesDir, cliConfig. Throws: as the above.
QOS_EXPORT Rok::Ptr<IntfSm> intfSmFactory(const Rok::Ptr<Config::QueuesDir>& queuesDir,
                                          const Rok::Ptr<Qos::IntfConfig const>& intfConfig,
                                          const Rok::Ptr<Cli::Config const>& cliConfig);
// Deaf without txQueueConfig. Requires: queuesDir, cliConfig. Throws: as the above.
QOS_EXPORT Rok::Ptr<TxQueueSm> txQueueSmFactory(
    const Nerit::IntfId& intfId, const Rok::Ptr<Config::QueuesDir>& queuesDir,
    const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig,
    const Rok::Ptr<Cli::Config const>& cliConfig);

}  // namespace QosOc
