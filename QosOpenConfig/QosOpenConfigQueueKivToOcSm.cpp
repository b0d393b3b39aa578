#include "QosOpenConfig/QosOpenConfigQueueKivToOcSm.h"

#include <source_location>
#include <utility>

namespace QosOc {
namespace {

constinit Rok::TraceHandle traceHandle("OpenConfigQos", false);

constexpr Rok::TraceFacility::FacilityLevel handler = 2;
constexpr Rok::TraceFacility::FacilityLevel detail = 9;

// The line with which a reaction without arguments opens.
void traceEntry(const IntfSm& sm, std::source_location place = std::source_location::current()) {
  if (Rok::TraceHelper line{traceHandle, handler, place}) line.in(sm) << "intf: " << sm.intfId();
}
void traceEntry(const TxQueueSm& sm, std::source_location place = std::source_location::current()) {
  if (Rok::TraceHelper line{traceHandle, handler, place}) {
    line.in(sm) << "intf: " << sm.intfId() << "queue:" << sm.queueName();
  }
}

Velmo::String queueNameOf(const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue) {
  Velmo::String name(intfId.stringValue());
  name.append("-");
  name.append(Qos::stringValue(txQueue.type));
  name.append("-");
  name.append(Qos::valueToStrep(txQueue.id));
  return name;
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

Rok::Ptr<QueueKivToOcSm> QueueKivToOcSm::QueueKivToOcSmIs(
    const Rok::Ptr<Qos::Input::Config const>& qosCliConfig,
    const Rok::Ptr<Config::QueuesDir>& queuesDir, const Rok::Ptr<Cli::Config const>& cliConfig) {
  return create(qosCliConfig, queuesDir, cliConfig);
}

QueueKivToOcSm::QueueKivToOcSm(const Rok::Ptr<Qos::Input::Config const>& qosCliConfig,
                               const Rok::Ptr<Config::QueuesDir>& queuesDir,
                               const Rok::Ptr<Cli::Config const>& cliConfig)
    : qosCliConfig_(*this, qosCliConfig),
      queuesDir_(queuesDir),
      cliConfig_(cliConfig),
      intfSm_(*this) {
  rokInitialize<&QueueKivToOcSm::handleInitialized>();
}

void QueueKivToOcSm::handleIntfConfig(const Nerit::IntfId& intfId) {
  Rok::EntryTrace(traceHandle, handler, *this, intfId);
  if (const auto* entry = qosCliConfig_->intfConfig().find(intfId)) {
    intfSmIs(queuesDir_, *entry, cliConfig_);
  } else {
    intfSm_.withdraw(intfId);
  }
}

void QueueKivToOcSm::handleInitialized() {
  Rok::EntryTrace(traceHandle, handler, *this);
  for (const auto& [intfId, config] : qosCliConfig_->intfConfig()) handleIntfConfig(intfId);
}

// ===== IntfSm

Rok::Ptr<IntfSm> IntfSm::IntfSmIs(const Rok::Ptr<Config::QueuesDir>& queuesDir,
                                  const Rok::Ptr<Qos::IntfConfig const>& intfConfig,
                                  const Rok::Ptr<Cli::Config const>& cliConfig) {
  return create(queuesDir, intfConfig, cliConfig);
}

IntfSm::IntfSm(const Rok::Ptr<Config::QueuesDir>& queuesDir,
               const Rok::Ptr<Qos::IntfConfig const>& intfConfig,
               const Rok::Ptr<Cli::Config const>& cliConfig)
    : queuesDir_(queuesDir),
      intfConfig_(*this, intfConfig),
      cliConfig_(cliConfig),
      txQueueSm_(*this) {
  rokInitialize<&IntfSm::handleInitialized>();
}

Nerit::IntfId IntfSm::intfId() const {
  return intfConfig_ ? intfConfig_->intfId() : Nerit::IntfId();
}

void IntfSm::handleTxQueueConfig(const Qos::TxQueue& txQueue) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << "intf: " << intfId() << "txQueue = " << txQueue;
  }
  if (const auto* entry = intfConfig_->txQueueConfig().find(txQueue)) {
    txQueueSmIs(intfId(), queuesDir_, *entry, cliConfig_);
  } else {
    txQueueSm_.withdraw(txQueue);
  }
}

void IntfSm::doPrepareToDie() {
  traceEntry(*this);
  txQueueSm_.withdrawAll();
}

void IntfSm::handleInitialized() {
  traceEntry(*this);
  for (const auto& [txQueue, config] : intfConfig_->txQueueConfig()) handleTxQueueConfig(txQueue);
}

// ===== TxQueueSm

Rok::Ptr<TxQueueSm> TxQueueSm::TxQueueSmIs(const Nerit::IntfId& intfId,
                                           const Rok::Ptr<Config::QueuesDir>& queuesDir,
                                           const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig,
                                           const Rok::Ptr<Cli::Config const>& cliConfig) {
  return create(intfId, queuesDir, txQueueConfig, cliConfig);
}

TxQueueSm::TxQueueSm(const Nerit::IntfId& intfId, const Rok::Ptr<Config::QueuesDir>& queuesDir,
                     const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig,
                     const Rok::Ptr<Cli::Config const>& cliConfig)
    : intfId_(intfId),
      queuesDir_(queuesDir),
      txQueueConfig_(*this, txQueueConfig),
      cliConfig_(*this, cliConfig, Helper::commentKey(intfId, txQueue())),
      queueName_(queueNameOf(intfId, txQueue())) {
  rokInitialize<&TxQueueSm::handleInitialized>();
}

Qos::TxQueue TxQueueSm::txQueue() const {
  return txQueueConfig_ ? txQueueConfig_->txQueue() : Qos::TxQueue();
}

// The key is computed once, and a trace shows the computing at each reading all the same. With the
// test of the level the compiler takes this for too much to inline, and then a reading costs a call
// in place of the test: so it is told to.
[[gnu::always_inline]] inline Velmo::String TxQueueSm::comment() const {
  if (traceHandle.isOn(detail)) Helper::traceCommentKey(intfId_, txQueue());
  return cliConfig_->comment(cliConfig_.key());
}

bool TxQueueSm::namesProfile(const Velmo::String& comment) {
  return bool(commentMemo_.queueManagementProfileInfo(comment));
}

bool TxQueueSm::namesPolicy(const Velmo::String& comment) {
  return bool(commentMemo_.schedulerPolicyInfo(comment));
}

// A comment that goes from a profile to a policy alone clears `config` and doesn't bring the ECN
// settings back, and the other way round: only a comment that names neither does. What was cleared
// returns with its next change, as the code that writes comments expects.
void TxQueueSm::handleComment(const Velmo::String& key) {
  if (key != cliConfig_.key()) return;
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << "intf: " << intfId_ << "queue:" << queueName_ << " commentKey: " << key;
  }
  const Velmo::String text = comment();
  if (text.empty()) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.of(*this) << "Comment not found, Updating the config";
    }
    handleTxQueueEcnConfig();
    handleQueueConfig();
    return;
  }
  const Config::Queue* const q = queuesDir_->q().find(queueName_);
  const bool profile = namesProfile(text);
  if (profile && q != nullptr) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.of(*this) << "Deleting the queue: " << queueName_ << "'s ecn config";
    }
    queuesDir_->qContent(*q).ecnConfig.reset();
  }
  const bool policy = namesPolicy(text);
  if (policy && q != nullptr) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.of(*this) << "Deleting the queue: " << queueName_ << " config";
    }
    queuesDir_->qContent(*q).config = Config::QueueConfig();
  }
  if (profile || policy) return;
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.of(*this) << "Comment not related to OpenConfig, Updating the config";
  }
  handleTxQueueEcnConfig();
  handleQueueConfig();
}

void TxQueueSm::handleTxQueueEcnConfig() {
  traceEntry(*this);
  if (const Velmo::String text = comment(); !text.empty() && namesProfile(text)) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.of(*this) << "skipping augmented queue ecn config for intf: " << intfId_
                     << "queue: " << queueName_;
    }
    return;
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
  if (const Velmo::String text = comment(); !text.empty() && namesPolicy(text)) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.of(*this) << "Skiping augmented queue bandwidth/scheduling update for intf: " << intfId_
                     << " queue: " << queueName_;
    }
    return;
  }
  const Qos::TxQueuePriority priority = txQueueConfig_->priority();
  const Qos::Percent bandwidth = txQueueConfig_->bandwidth();
  if (Rok::TraceHelper line{traceHandle, handler}) {
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
    // written in its stead. That is meant; documents leave out an entry without a name. It happens
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

Rok::Ptr<QueueKivToOcSm> queueKivToOcSmFactory(
    const Rok::Ptr<Qos::Input::Config const>& qosCliConfig,
    const Rok::Ptr<Config::QueuesDir>& queuesDir, const Rok::Ptr<Cli::Config const>& cliConfig) {
  return QueueKivToOcSm::QueueKivToOcSmIs(qosCliConfig, queuesDir, cliConfig);
}

Rok::Ptr<IntfSm> intfSmFactory(const Rok::Ptr<Config::QueuesDir>& queuesDir,
                               const Rok::Ptr<Qos::IntfConfig const>& intfConfig,
                               const Rok::Ptr<Cli::Config const>& cliConfig) {
  return IntfSm::IntfSmIs(queuesDir, intfConfig, cliConfig);
}

Rok::Ptr<TxQueueSm> txQueueSmFactory(const Nerit::IntfId& intfId,
                                     const Rok::Ptr<Config::QueuesDir>& queuesDir,
                                     const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig,
                                     const Rok::Ptr<Cli::Config const>& cliConfig) {
  return TxQueueSm::TxQueueSmIs(intfId, queuesDir, txQueueConfig, cliConfig);
}

}  // namespace QosOc
