#include "QosOpenConfig/QosOpenConfigQueueKivToOcSm.h"

#include <source_location>
#include <utility>

namespace QosOc {
namespace {

constinit Rok::TraceHandle traceHandle("OpenConfigQos", false);

constexpr Rok::TraceLevel handler{traceHandle, 2};
constexpr Rok::TraceLevel detail{traceHandle, 9};

// The line with which a reaction without arguments opens.
void traceEntry(const IntfSm& sm, std::source_location place = std::source_location::current()) {
  if (Rok::TraceHelper line{handler, place}) line.in(sm) << "intf: " << sm.intfId();
}
void traceEntry(const TxQueueSm& sm, std::source_location place = std::source_location::current()) {
  if (Rok::TraceHelper line{handler, place}) {
    line.in(sm) << "intf: " << sm.intfId() << "queue:" << sm.queueName();
  }
}

Velmo::String queueNameOf(const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue) {
  Velmo::String name(intfId.stringValue());
  name.append("-").append(Qos::stringValue(txQueue.type));
  return name.append("-").append(Qos::valueToStrep(txQueue.id));
}

// Thresholds stay in the native unit. A probability that is not configured natively is out of range
// here. The order of the tests is part of what a writer sees: the percentage, then the lower
// threshold.
Config::QueueEcnConfig ecnOf(const Qos::EcnWredConfig& ecn) {
  Config::QueueEcnConfig result;
  result.maxDropProbabilityPercent = PercentType(ecn.maxDropPercent().value);
  result.minThreshold = ThresholdType(ecn.minThreshold());
  result.maxThreshold = ThresholdType(ecn.maxThreshold());
  result.thresholdUnit = ecn.thresholdUnit();
  result.weight = ecn.weight();
  return result;
}

bool isConfigured(Qos::TxQueuePriority priority, Qos::Percent bandwidth) {
  return priority != Qos::priorityNotConfigured || bandwidth != Qos::percentNotConfigured;
}

Config::QueueConfig configOf(const Velmo::String& name, Qos::TxQueuePriority priority,
                             Qos::Percent bandwidth) {
  Config::QueueConfig config(name);
  config.strictPriority = priority == Qos::strictPriority;
  if (bandwidth != Qos::percentNotConfigured) config.bandwidth = PercentType(bandwidth.value);
  return config;
}

}  // namespace

// ===== QueueKivToOcSm

QueueKivToOcSm::QueueKivToOcSm(Rok::In<Qos::Input::Config> qosCliConfig,
                               Rok::Out<Config::QueuesDir> queuesDir,
                               Rok::In<Cli::Config> cliConfig)
    : qosCliConfig_(*this, qosCliConfig),
      queuesDir_(queuesDir),
      cliConfig_(cliConfig),
      intfSm_(*this) {
  rokInitialize<&Self::handleInitialized>();
}

void QueueKivToOcSm::handleIntfConfig(const Nerit::IntfId& intfId) {
  Rok::traceEntry(handler, *this, intfId);
  intfSm_.mirror(qosCliConfig_->intfConfig(), intfId, queuesDir_, Rok::entry, cliConfig_);
}

void QueueKivToOcSm::handleInitialized() {
  Rok::traceEntry(handler, *this);
  eachKey<&Self::handleIntfConfig>(qosCliConfig_->intfConfig());
}

// ===== IntfSm

IntfSm::IntfSm(Rok::Out<Config::QueuesDir> queuesDir, Rok::In<Qos::IntfConfig> intfConfig,
               Rok::In<Cli::Config> cliConfig)
    : queuesDir_(queuesDir),
      intfConfig_(*this, intfConfig),
      cliConfig_(cliConfig),
      txQueueSm_(*this) {
  rokInitialize<&Self::handleInitialized>();
}

void IntfSm::handleTxQueueConfig(const Qos::TxQueue& txQueue) {
  if (Rok::TraceHelper line{handler}) {
    line.in(*this) << "intf: " << intfId() << "txQueue = " << txQueue;
  }
  txQueueSm_.mirror(intfConfig_->txQueueConfig(), txQueue, intfId(), queuesDir_, Rok::entry,
                    cliConfig_);
}

void IntfSm::doPrepareToDie() {
  traceEntry(*this);
  txQueueSm_.withdrawAll();
}

void IntfSm::handleInitialized() {
  traceEntry(*this);
  eachKey<&Self::handleTxQueueConfig>(intfConfig_->txQueueConfig());
}

// ===== TxQueueSm

TxQueueSm::TxQueueSm(const Nerit::IntfId& intfId, Rok::Out<Config::QueuesDir> queuesDir,
                     Rok::In<Qos::TxQueueConfig> txQueueConfig, Rok::In<Cli::Config> cliConfig)
    : intfId_(intfId),
      queuesDir_(queuesDir),
      txQueueConfig_(*this, txQueueConfig),
      cliConfig_(*this, cliConfig, Helper::commentKey(intfId, txQueue())),
      queueName_(queueNameOf(intfId, txQueue())) {
  rokInitialize<&Self::handleInitialized>();
}

// The key is computed once, but each reading traces it as if it were computed there. Always inline:
// with the test of the level, the compiler finds this too large, and a reading then costs a call in
// place of the test.
[[gnu::always_inline]] inline Velmo::String TxQueueSm::comment() const {
  if (detail.isOn()) Helper::traceCommentKey(intfId_, txQueue());
  return cliConfig_->comment(cliConfig_.key());
}

// A comment that goes from a profile to a policy alone clears `config` and doesn't bring the ECN
// settings back, and the other way round: only a comment that names neither does. What was cleared
// returns with its next change, as the code that writes comments expects.
void TxQueueSm::handleComment(const Velmo::String& key) {
  if (key != cliConfig_.key()) return;
  Rok::traceIn(handler, *this, "intf: ", intfId_, "queue:", queueName_, " commentKey: ", key);
  const Velmo::String text = comment();
  if (text.empty()) {
    Rok::traceOf(handler, *this, "Comment not found, Updating the config");
    handleTxQueueEcnConfig();
    handleQueueConfig();
    return;
  }
  const Config::Queue* const q = queuesDir_->q().find(queueName_);
  const bool profile(commentMemo_.queueManagementProfileInfo(text));
  if (profile && q != nullptr) {
    Rok::traceOf(handler, *this, "Deleting the queue: ", queueName_, "'s ecn config");
    queuesDir_->qContent(*q).ecnConfig.reset();
  }
  const bool policy(commentMemo_.schedulerPolicyInfo(text));
  if (policy && q != nullptr) {
    Rok::traceOf(handler, *this, "Deleting the queue: ", queueName_, " config");
    queuesDir_->qContent(*q).config = Config::QueueConfig();
  }
  if (profile || policy) return;
  Rok::traceOf(handler, *this, "Comment not related to OpenConfig, Updating the config");
  handleTxQueueEcnConfig();
  handleQueueConfig();
}

void TxQueueSm::handleTxQueueEcnConfig() {
  traceEntry(*this);
  if (const Velmo::String text = comment();
      !text.empty() && commentMemo_.queueManagementProfileInfo(text)) {
    return Rok::traceOf(handler, *this, "skipping augmented queue ecn config for intf: ", intfId_,
                        "queue: ", queueName_);
  }
  Rok::Optional<Config::QueueEcnConfig> ecnConfig;
  if (const auto& ecn = txQueueConfig_->ecnConfig()) ecnConfig = ecnOf(*ecn);
  // The queue is written also when nothing is configured: this is what makes it, with a config of
  // no name.
  Config::QueueContent& q = queuesDir_->qContentIs(queueName_);
  q.ecnConfig = ecnConfig;
  if (ecnConfig) q.config.name = queueName_;
}

void TxQueueSm::handleQueueConfig() {
  traceEntry(*this);
  if (const Velmo::String text = comment();
      !text.empty() && commentMemo_.schedulerPolicyInfo(text)) {
    return Rok::traceOf(handler, *this,
                        "Skiping augmented queue bandwidth/scheduling update for intf: ", intfId_,
                        " queue: ", queueName_);
  }
  const Qos::TxQueuePriority priority = txQueueConfig_->priority();
  const Qos::Percent bandwidth = txQueueConfig_->bandwidth();
  if (Rok::TraceHelper line{handler}) {
    line.of(*this) << "priority: " << priority << " bandwidth: " << bandwidth;
  }
  if (isConfigured(priority, bandwidth)) {
    Config::QueueConfig config = configOf(queueName_, priority, bandwidth);
    queuesDir_->qContentIs(queueName_).config = std::move(config);
  } else if (const Config::Queue* q = queuesDir_->q().find(queueName_)) {
    queuesDir_->qContent(*q).config =
        Config::QueueConfig(q->ecnConfig ? queueName_ : Velmo::String());
  } else {
    // A queue that is missing is not made here, as it is above: the record of the empty name is
    // written instead. That is meant; documents leave out an entry without a name. It happens
    // when nothing is configured and the comment names a profile alone, which kept the queue from
    // being made.
    queuesDir_->qIs(Config::Queue());
  }
}

void TxQueueSm::doPrepareToDie() {
  traceEntry(*this);
  queuesDir_->qDel(queueName_);
}

// In this order: the first makes the queue.
void TxQueueSm::handleInitialized() {
  traceEntry(*this);
  handleTxQueueEcnConfig();
  handleQueueConfig();
}

// ===== Factories

Rok::Ptr<QueueKivToOcSm> queueKivToOcSmFactory(Rok::In<Qos::Input::Config> qosCliConfig,
                                               Rok::Out<Config::QueuesDir> queuesDir,
                                               Rok::In<Cli::Config> cliConfig) {
  return QueueKivToOcSm::QueueKivToOcSmIs(qosCliConfig, queuesDir, cliConfig);
}

Rok::Ptr<IntfSm> intfSmFactory(Rok::Out<Config::QueuesDir> queuesDir,
                               Rok::In<Qos::IntfConfig> intfConfig,
                               Rok::In<Cli::Config> cliConfig) {
  return IntfSm::IntfSmIs(queuesDir, intfConfig, cliConfig);
}

Rok::Ptr<TxQueueSm> txQueueSmFactory(const Nerit::IntfId& intfId,
                                     Rok::Out<Config::QueuesDir> queuesDir,
                                     Rok::In<Qos::TxQueueConfig> txQueueConfig,
                                     Rok::In<Cli::Config> cliConfig) {
  return TxQueueSm::TxQueueSmIs(intfId, queuesDir, txQueueConfig, cliConfig);
}

}  // namespace QosOc
