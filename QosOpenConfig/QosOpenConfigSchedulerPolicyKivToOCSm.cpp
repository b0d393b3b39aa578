#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"

#include <string_view>

#include "QosOpenConfig/QosOpenConfigHelper.h"

namespace {

constinit Rok::TraceHandle traceHandle("OpenConfigQos", false);

constexpr Rok::TraceFacility::FacilityLevel handler = 2;

}  // namespace

Velmo::String decodeSPProfileName(Velmo::String profileName) {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in() << ": profileName: " << profileName;
  return QosOc::Helper::nameInProfileName(profileName, "__YANG_SP_[");
}

Velmo::String encodeSPProfileName(Velmo::String schedulerPolicyName) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in() << ": schedulerPolicyName: " << schedulerPolicyName;
  }
  return Rok::_fmt("__YANG_SP_[%s]", schedulerPolicyName.data());
}

namespace QosOc {
namespace {

// ===== What a comment says, as records

// In a comment a rate or a weight of 0 is one that it doesn't give.
template <class Value>
Rok::Optional<Value> present(const auto& number) {
  return number != 0 ? Rok::Optional<Value>(Value(number)) : Rok::Optional<Value>();
}

Config::SchedulerConfig schedulerConfig(const SchedulerCommentInfo& comment) {
  Config::SchedulerConfig config;
  config.sequence = comment.sequence();
  if (comment.priority() == STRICT) config.priority = Config::SchedulerPriority::STRICT;
  return config;
}

// Throws: RangeException for more than 100 percent.
Config::OneRateTwoColor oneRateTwoColor(const OneRateTwoColorCommentInfo& comment) {
  return {present<std::uint64_t>(comment.cir()), present<PercentType>(comment.cirPct())};
}

Config::SchedulerInput schedulerInput(const SchedulerInputCommentInfo& comment) {
  Config::SchedulerInput input(comment.inputId());
  input.config.id = comment.inputId();
  input.config.queue = comment.q();
  input.config.weight = present<std::uint64_t>(comment.weight());
  return input;
}

}  // namespace

// ===== SchedulerPolicyKivToOCSm

Rok::Ptr<SchedulerPolicyKivToOCSm> SchedulerPolicyKivToOCSm::SchedulerPolicyKivToOCSmIs(
    const Rok::Ptr<Cli::Config const>& cliConfig,
    const Rok::Ptr<Qos::Input::Config const>& qosCliConfig,
    const Rok::Ptr<Qos::QosProfileConfigDir const>& qosProfileConfigDir,
    const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir) {
  return create(cliConfig, qosCliConfig, qosProfileConfigDir, schedulerPoliciesDir, interfacesDir);
}

// The queue names come last: what the map holds at start is not handled, since the machines of the
// tx queues have read their comments by then.
SchedulerPolicyKivToOCSm::SchedulerPolicyKivToOCSm(
    const Rok::Ptr<Cli::Config const>& cliConfig,
    const Rok::Ptr<Qos::Input::Config const>& qosCliConfig,
    const Rok::Ptr<Qos::QosProfileConfigDir const>& qosProfileConfigDir,
    const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir)
    : cliConfig_(*this, cliConfig),
      qosCliConfig_(*this, qosCliConfig),
      qosProfileConfigDir_(*this, qosProfileConfigDir),
      schedulerPoliciesDir_(schedulerPoliciesDir),
      interfacesDir_(interfacesDir),
      intfSm_(*this),
      rok_QosCliConfig_QueueNameToTxQueueIdMapIn_(*this) {
  rokInitialize<&SchedulerPolicyKivToOCSm::handleInitialized,
                &SchedulerPolicyKivToOCSm::followQueueNameToTxQueueIdMap>();
}

void SchedulerPolicyKivToOCSm::followQueueNameToTxQueueIdMap() {
  if (!qosCliConfig_) return;  // then it is the chained input alone that is missing
  rok_QosCliConfig_QueueNameToTxQueueIdMapInIs(qosCliConfig_->queueNameToTxQueueIdMap());
}

// ===== SchedulerPolicyKivToOCSm: policies

// Deliberate: what the comment says is only ever added. A value that it changes, or an item that
// it no longer has, stays as it was first read until the profile goes and comes back.
void SchedulerPolicyKivToOCSm::udpateSchedulerPolicies(const Velmo::String& profileName) {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in(*this) << " profile: " << profileName;
  noteCutName(profileName);
  const Velmo::String policyName = decodeSPProfileName(profileName);
  if (policyName.empty()) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line << "udpateSchedulerPolicies "
           << "profile not related to OC: " << profileName;
    }
    return;
  }
  if (qosProfileConfigDir_->config().find(profileName) == nullptr) return deletePolicy(policyName);
  const auto policy = makePolicy(policyName);
  const Velmo::String text = cliConfig_->comment(CommentHelper::profileCommentKey(profileName));
  if (text.empty()) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line << "udpateSchedulerPolicies "
           << "No comment for profile: " << profileName;
    }
    return;
  }
  const auto info = CommentHelper::schedulerPolicyProfileInfoFromComment(text);
  // Deliberate: a bad comment is no reason to stop, it just has no schedulers.
  if (!info) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line << "udpateSchedulerPolicies "
           << "Bad comment for profile: " << profileName;
    }
  }
  for (auto i = info.schedulers().unsafeIterator(); i; ++i) addScheduler(*policy, i->value());
}

void SchedulerPolicyKivToOCSm::deletePolicy(const Velmo::String& policyName) {
  if (!schedulerPoliciesDir_->schedulerPolicy(policyName)) return;
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "udpateSchedulerPolicies"
         << " deleting scheduler policy: " << policyName;
  }
  schedulerPoliciesDir_->schedulerPolicyDel(policyName);
}

// The policy of that name. One that is there stays as it stands, its config included.
Rok::Ptr<Config::SchedulerPolicy> SchedulerPolicyKivToOCSm::makePolicy(
    const Velmo::String& policyName) {
  if (const auto policy = schedulerPoliciesDir_->schedulerPolicy(policyName)) return policy;
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.of(*this) << "creating scheduler Policy: " << policyName;
  }
  const auto policy = schedulerPoliciesDir_->schedulerPolicyIs(policyName);
  policy->configIs({policyName});
  return policy;
}

// A rate out of range leaves here, and what was written before stays. The scheduler has no rate
// then, so that the next reading comes to the same place.
void SchedulerPolicyKivToOCSm::addScheduler(Config::SchedulerPolicy& policy,
                                            const SchedulerCommentInfo& comment) {
  const std::uint32_t sequence = comment.sequence();
  if (!policy.schedulers()) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.of(*this) << "creating schedulers for Policy: " << policy.name();
    }
  }
  const auto& schedulers = policy.schedulersIs();
  auto scheduler = schedulers->scheduler(sequence);
  if (!scheduler) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.of(*this) << "creating scheduler: " << sequence;
    }
    scheduler = schedulers->schedulerIs(sequence);
    scheduler->configIs(schedulerConfig(comment));
  }
  addRate(*scheduler, comment.oneRateTwoColor());
  for (auto i = comment.inputs().unsafeIterator(); i; ++i) addInput(*scheduler, i->value());
}

void SchedulerPolicyKivToOCSm::addRate(Config::Scheduler& scheduler,
                                       const OneRateTwoColorCommentInfo& comment) {
  if (scheduler.oneRateTwoColor() || !comment) return;
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.of(*this) << "creating oneRateTwoColor for scheduler: " << scheduler.sequence();
  }
  scheduler.oneRateTwoColorIs(oneRateTwoColor(comment));
}

void SchedulerPolicyKivToOCSm::addInput(Config::Scheduler& scheduler,
                                        const SchedulerInputCommentInfo& comment) {
  if (!scheduler.inputs()) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.of(*this) << "creating scheduler Inputs for scheduler: " << scheduler.sequence();
    }
  }
  const auto& inputs = scheduler.inputsIs();
  const Config::SchedulerInput* found = inputs->input().find(comment.inputId());
  if (found != nullptr && *found) return;  // the default record stands for none
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.of(*this) << "creating scheduler input: " << comment.inputId();
  }
  inputs->inputIs(schedulerInput(comment));
}

// ===== SchedulerPolicyKivToOCSm: attachments

// An interface has one policy and a comment for each tx queue, so every evaluation of a tx queue
// decides for the whole interface, and the last one stands: at a start the last in the walk over
// the tx queues, whose order is unspecified, and afterwards the last one of the last event. Devices
// whose tx queues disagree rely on nothing else.
void SchedulerPolicyKivToOCSm::udpateIntfSchedulerPolicies(const Nerit::IntfId& intfId,
                                                           const Qos::TxQueue& txQueue) {
  Helper::Attachment attachment(commentMemo_);
  const Velmo::String key = CommentHelper::commentKey(intfId, txQueue);
  attachAsCommentSays(intfId, txQueue, cliConfig_->comment(key), attachment);
}

// The same, with the key that the tx queue's machine keeps, and what it remembers.
void SchedulerPolicyKivToOCSm::evaluate(SchedulerPolicyTxQueueSm& queue) {
  Helper::traceCommentKey(queue.intfId(), queue.txQueue());
  attachAsCommentSays(queue.intfId(), queue.txQueue(), cliConfig_->comment(queue.commentKey()),
                      queue.attachment());
}

void SchedulerPolicyKivToOCSm::attachAsCommentSays(const Nerit::IntfId& intfId,
                                                   const Qos::TxQueue& txQueue,
                                                   const Velmo::String& comment,
                                                   Helper::Attachment& attachment) {
  const auto& info = attachment.comment().schedulerPolicyInfo(comment);
  if (info) return attach(intfId, info.schedulerPolicy(), attachment);
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "udpateIntfSchedulerPolicies "
         << "No Scheduler Policy comment for intf: " << intfId << " "
         << "TxQueueId: " << txQueue;
  }
  detach(intfId, attachment);
}

// Nobody asks whether the policy exists: its profile may come later, or have gone.
void SchedulerPolicyKivToOCSm::attach(const Nerit::IntfId& intfId, const Velmo::String& policyName,
                                      Helper::Attachment& attachment) {
  if (!attachment.interface(*interfacesDir_, intfId)) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.of(*this) << "creating interface: " << intfId;
    }
  }
  const auto& interface = attachment.interfaceIs(*interfacesDir_, intfId);
  if (!interface->output()) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.of(*this) << "creating interface output for intf: " << intfId;
    }
  }
  interface->outputIs()->schedulerPolicyIs(Config::InterfaceOutputSchedulerPolicy{{policyName}});
  interfaceToSchedulerPolicyMapIs(intfId, policyName);
}

// Deliberate, and unlike a queue-management profile, which a comment without a name leaves: here
// the attachment goes, whichever tx queue made it. Creates nothing.
void SchedulerPolicyKivToOCSm::detach(const Nerit::IntfId& intfId, Helper::Attachment& attachment) {
  const auto& interface = attachment.interface(*interfacesDir_, intfId);
  if (!interface || !interface->output()) return;
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "udpateIntfSchedulerPolicies "
         << "deleting intf scheduler policy attachment: " << intfId;
  }
  interface->output()->schedulerPolicyIs(Config::InterfaceOutput::SchedulerPolicy());
  interfaceToSchedulerPolicyMapDel(intfId);
}

// ===== SchedulerPolicyKivToOCSm: events

void SchedulerPolicyKivToOCSm::handleIntfConfig(const Nerit::IntfId& intfId) {
  Rok::EntryTrace(traceHandle, handler, *this, intfId);
  if (const auto* entry = qosCliConfig_->intfConfig().find(intfId)) {
    intfSmIs(this, schedulerPoliciesDir_, interfacesDir_, *entry);
  } else {
    intfSm_.withdraw(intfId);
  }
}

// Deliberate: a comment that stops naming a policy ends here and leaves the attachment. It goes
// with the next change of the tx queue's settings or queue name.
void SchedulerPolicyKivToOCSm::handleComment(const Velmo::String& key) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "SchedulerPolicyKivToOCSm: "
         << "handleComment";
  }
  updatePolicyOfComment(key);
  const Velmo::String text = cliConfig_->comment(key);
  if (commentMemo_.schedulerPolicyInfo(text)) {
    txQueues_.eachOfComment(intfSm_, key, [&](SchedulerPolicyTxQueueSm& queue) {
      Helper::traceCommentKey(queue.intfId(), queue.txQueue());
      attachAsCommentSays(queue.intfId(), queue.txQueue(), text, queue.attachment());
    });
  } else if (Rok::TraceHelper line{traceHandle, handler}) {
    line.of(*this) << "comment not related to Interface attachment of Scheduler Policy";
  }
}

// So that updatePolicyOfComment finds them.
void SchedulerPolicyKivToOCSm::noteCutName(const Velmo::String& profileName) {
  if (!Helper::isCutInCommentKey(profileName)) return;
  if (qosProfileConfigDir_->config().find(profileName) != nullptr) {
    cutNames_.memberIs(profileName, true);
  } else {
    cutNames_.deleteMember(profileName);
  }
}

// The profile whose comment has this key is found by its name, which the key holds, and so are
// those whose names go on behind a NUL. A walk over all profiles finds no others, but it computes
// the key of each and traces that. Where this is to be seen, the walk is made.
void SchedulerPolicyKivToOCSm::updatePolicyOfComment(const Velmo::String& key) {
  const auto& profiles = qosProfileConfigDir_->config();
  if (!Helper::keysAreTraced()) {
    const auto name = Helper::profileNameFromCommentKey(key);
    if (!name) return;
    const Velmo::String profileName(*name);
    if (profiles.find(profileName) != nullptr) udpateSchedulerPolicies(profileName);
    const Velmo::String cut = profileName.addRight(std::string_view("\0", 1));
    for (const auto& [cutName, isThere] : cutNames_) {
      if (std::string_view(cutName).starts_with(cut)) udpateSchedulerPolicies(cutName);
    }
    return;
  }
  for (const auto& [name, profile] : profiles) {
    if (CommentHelper::profileCommentKey(name) == key) udpateSchedulerPolicies(name);
  }
}

// The name is only a reason to look at the comments again: unlike a queue-management profile, an
// attachment doesn't need it. A name that went undoes nothing.
void SchedulerPolicyKivToOCSm::handleQueueNameToTxQueue(const Velmo::String& queueName) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "SchedulerPolicyKivToOCSm: "
         << "handleQueueNameToTxQueue"
         << " queue Name: " << queueName;
  }
  const auto& names = qosCliConfig_->queueNameToTxQueueIdMap()->queueNameToTxQueueId();
  const Qos::TxQueueId* found = names.find(queueName);
  const Qos::TxQueueId id = found != nullptr ? *found : Qos::noTxQueue;
  if (id != Qos::noTxQueue) {
    return txQueues_.eachOfId(intfSm_, id,
                              [this](SchedulerPolicyTxQueueSm& queue) { evaluate(queue); });
  }
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.of(*this) << "queue Name: " << queueName << " to id: " << id << " map deleted";
  }
}

void SchedulerPolicyKivToOCSm::handleInitialized() {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "SchedulerPolicyKivToOCSm: "
         << "handleInitialized";
  }
  mirrorInterfaces();
  for (const auto& [name, profile] : qosProfileConfigDir_->config()) udpateSchedulerPolicies(name);
  sweepPolicies();
  sweepAttachments();
}

void SchedulerPolicyKivToOCSm::mirrorInterfaces() {
  if (!qosCliConfig_) return;
  for (const auto& [intfId, config] : qosCliConfig_->intfConfig()) handleIntfConfig(intfId);
}

void SchedulerPolicyKivToOCSm::sweepPolicies() {
  for (const auto& [name, policy] : schedulerPoliciesDir_->schedulerPolicy()) {
    if (qosProfileConfigDir_->config().find(encodeSPProfileName(name)) != nullptr) continue;
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.of(*this) << "Deleting scheduler policy: " << name;
    }
    schedulerPoliciesDir_->schedulerPolicyDel(name);
  }
}

// Asks what the tx queues attached just now, not which policies there are. Deliberate: an
// attachment whose policy was swept stays as long as a comment names it.
void SchedulerPolicyKivToOCSm::sweepAttachments() {
  for (const auto& [interfaceId, interface] : interfacesDir_->interface()) {
    const auto output = interface->output();
    if (!output || !output->schedulerPolicy()) continue;
    if (attachments_.map().find(Nerit::IntfId(interfaceId)) != nullptr) continue;
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.of(*this) << "Deleting scheduler policy intf attachment: " << interfaceId;
    }
    output->schedulerPolicyIs(Config::InterfaceOutput::SchedulerPolicy());
  }
}

// ===== SchedulerPolicyIntfSm

Rok::Ptr<SchedulerPolicyIntfSm> SchedulerPolicyIntfSm::SchedulerPolicyIntfSmIs(
    SchedulerPolicyKivToOCSm* schedulerPolicyKivToOCSm,
    const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    const Rok::Ptr<Qos::IntfConfig const>& intfConfig) {
  return create(schedulerPolicyKivToOCSm, schedulerPoliciesDir, interfacesDir, intfConfig);
}

SchedulerPolicyIntfSm::SchedulerPolicyIntfSm(
    SchedulerPolicyKivToOCSm* schedulerPolicyKivToOCSm,
    const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    const Rok::Ptr<Qos::IntfConfig const>& intfConfig)
    : schedulerPolicyKivToOCSm_(schedulerPolicyKivToOCSm),
      schedulerPoliciesDir_(schedulerPoliciesDir),
      interfacesDir_(interfacesDir),
      intfConfig_(*this, intfConfig),
      txQueueSm_(*this) {
  rokInitialize<&SchedulerPolicyIntfSm::handleInitialized>();
}

Nerit::IntfId SchedulerPolicyIntfSm::intfId() const {
  return intfConfig_ ? intfConfig_->intfId() : Nerit::IntfId();
}

void SchedulerPolicyIntfSm::doPrepareToDie() {
  Rok::EntryTrace(traceHandle, handler, *this);
  txQueueSm_.withdrawAll();
}

void SchedulerPolicyIntfSm::handleTxQueueConfig(const Qos::TxQueue& txQueue) {
  Rok::EntryTrace(traceHandle, handler, *this, txQueue);
  if (const auto* entry = intfConfig_->txQueueConfig().find(txQueue)) {
    txQueueSmIs(this, intfId(), schedulerPoliciesDir_, interfacesDir_, *entry);
  } else {
    txQueueSm_.withdraw(txQueue);
  }
}

void SchedulerPolicyIntfSm::handleInitialized() {
  Rok::EntryTrace(traceHandle, handler, *this);
  for (const auto& [txQueue, config] : intfConfig_->txQueueConfig()) handleTxQueueConfig(txQueue);
}

// ===== SchedulerPolicyTxQueueSm

Rok::Ptr<SchedulerPolicyTxQueueSm> SchedulerPolicyTxQueueSm::SchedulerPolicyTxQueueSmIs(
    SchedulerPolicyIntfSm* schedulerPolicyIntfSm, const Nerit::IntfId& intfId,
    const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig) {
  return create(schedulerPolicyIntfSm, intfId, schedulerPoliciesDir, interfacesDir, txQueueConfig);
}

SchedulerPolicyTxQueueSm::SchedulerPolicyTxQueueSm(
    SchedulerPolicyIntfSm* schedulerPolicyIntfSm, const Nerit::IntfId& intfId,
    const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig)
    : schedulerPolicyIntfSm_(schedulerPolicyIntfSm),
      intfId_(intfId),
      schedulerPoliciesDir_(schedulerPoliciesDir),
      interfacesDir_(interfacesDir),
      txQueueConfig_(*this, txQueueConfig),
      entry_(root().txQueues(), intfId_, txQueue(), *this),
      attachment_(root().commentMemo()) {
  rokInitialize<&SchedulerPolicyTxQueueSm::handleInitialized>();
}

Qos::TxQueue SchedulerPolicyTxQueueSm::txQueue() const {
  return txQueueConfig_ ? txQueueConfig_->txQueue() : Qos::TxQueue();
}

SchedulerPolicyKivToOCSm& SchedulerPolicyTxQueueSm::root() const {
  return *schedulerPolicyIntfSm_->schedulerPolicyKivToOCSm();
}

// Deliberate, and unlike a queue-management profile, whose entry is blanked: the attachment is the
// interface's and not this tx queue's, so it stays until another tx queue of the interface is
// evaluated, or until the sweep of a later start.
void SchedulerPolicyTxQueueSm::doPrepareToDie() { Rok::EntryTrace(traceHandle, handler, *this); }

void SchedulerPolicyTxQueueSm::handlePriorityBandwidthShapeConfig() {
  Rok::EntryTrace(traceHandle, handler, *this);
  root().evaluate(*this);
}

void SchedulerPolicyTxQueueSm::handleInitialized() {
  Rok::EntryTrace(traceHandle, handler, *this);
  handlePriorityBandwidthShapeConfig();
}

// ===== Factories

Rok::Ptr<SchedulerPolicyKivToOCSm> schedulerPolicyKivToOCSmFactory(
    const Rok::Ptr<Cli::Config const>& cliConfig,
    const Rok::Ptr<Qos::Input::Config const>& qosCliConfig,
    const Rok::Ptr<Qos::QosProfileConfigDir const>& qosProfileConfigDir,
    const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir) {
  return SchedulerPolicyKivToOCSm::SchedulerPolicyKivToOCSmIs(
      cliConfig, qosCliConfig, qosProfileConfigDir, schedulerPoliciesDir, interfacesDir);
}

Rok::Ptr<SchedulerPolicyIntfSm> schedulerPolicyIntfSmFactory(
    SchedulerPolicyKivToOCSm* schedulerPolicyKivToOCSm,
    const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    const Rok::Ptr<Qos::IntfConfig const>& intfConfig) {
  return SchedulerPolicyIntfSm::SchedulerPolicyIntfSmIs(
      schedulerPolicyKivToOCSm, schedulerPoliciesDir, interfacesDir, intfConfig);
}

Rok::Ptr<SchedulerPolicyTxQueueSm> schedulerPolicyTxQueueSmFactory(
    SchedulerPolicyIntfSm* schedulerPolicyIntfSm, const Nerit::IntfId& intfId,
    const Rok::Ptr<Config::SchedulerPoliciesDir>& schedulerPoliciesDir,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig) {
  return SchedulerPolicyTxQueueSm::SchedulerPolicyTxQueueSmIs(
      schedulerPolicyIntfSm, intfId, schedulerPoliciesDir, interfacesDir, txQueueConfig);
}

}  // namespace QosOc
