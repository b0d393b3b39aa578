#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "QosOpenConfig/QosOpenConfigHelperNames.h"

namespace {

constinit Rok::TraceHandle traceHandle("OpenConfigQos", false);

constexpr Rok::TraceLevel handler{traceHandle, 2};

}  // namespace

Velmo::String decodeSPProfileName(Velmo::String profileName) {
  Rok::traceCall(handler, ": profileName: ", profileName);
  return QosOc::Helper::nameInProfileName(profileName, "__YANG_SP_[");
}

Velmo::String encodeSPProfileName(Velmo::String schedulerPolicyName) {
  Rok::traceCall(handler, ": schedulerPolicyName: ", schedulerPolicyName);
  return Rok::_fmt("__YANG_SP_[%s]", schedulerPolicyName.data());
}

namespace QosOc {
namespace {

// ===== What a comment says, as records

// In a comment a rate or a weight of 0 stands for an absent one.
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

// The queue names come last: what the map holds at start is not handled, since the machines of the
// tx queues have read their comments by then.
SchedulerPolicyKivToOCSm::SchedulerPolicyKivToOCSm(
    Rok::In<Cli::Config> cliConfig, Rok::In<Qos::Input::Config> qosCliConfig,
    Rok::In<Qos::QosProfileConfigDir> qosProfileConfigDir,
    Rok::Out<Config::SchedulerPoliciesDir> schedulerPoliciesDir,
    Rok::Out<Config::InterfacesDir> interfacesDir)
    : cliConfig_(*this, cliConfig),
      qosCliConfig_(*this, qosCliConfig),
      qosProfileConfigDir_(*this, qosProfileConfigDir),
      schedulerPoliciesDir_(schedulerPoliciesDir),
      interfacesDir_(interfacesDir),
      intfSm_(*this),
      nameToTxQueueIdMapIn_(*this) {
  rokInitialize<&Self::handleInitialized, &Self::followQueueNameToTxQueueIdMap>();
}

// ===== SchedulerPolicyKivToOCSm: policies

// What the comment says is only ever added: the code that changes a policy takes its profile away
// first. A value that the comment changes, or an item that it no longer has, stays as it was first
// read until the profile goes and comes back.
void SchedulerPolicyKivToOCSm::udpateSchedulerPolicies(const Velmo::String& profileName) {
  Rok::traceIn(handler, *this, " profile: ", profileName);
  noteCutName(profileName);
  const Velmo::String policyName = decodeSPProfileName(profileName);
  if (policyName.empty()) {
    return Rok::traceLine(handler,
                          "udpateSchedulerPolicies profile not related to OC: ", profileName);
  }
  if (qosProfileConfigDir_->config().find(profileName) == nullptr) return deletePolicy(policyName);
  const auto policy = makePolicy(policyName);
  const Velmo::String text = cliConfig_->comment(CommentHelper::profileCommentKey(profileName));
  if (text.empty()) {
    return Rok::traceLine(handler, "udpateSchedulerPolicies No comment for profile: ", profileName);
  }
  const auto info = CommentHelper::schedulerPolicyProfileInfoFromComment(text);
  // A malformed comment counts as one without schedulers.
  if (!info) {
    Rok::traceLine(handler, "udpateSchedulerPolicies Bad comment for profile: ", profileName);
  }
  for (auto i = info.schedulers().unsafeIterator(); i; ++i) addScheduler(*policy, i->value());
}

void SchedulerPolicyKivToOCSm::deletePolicy(const Velmo::String& policyName) {
  if (!schedulerPoliciesDir_->schedulerPolicy(policyName)) return;
  Rok::traceLine(handler, "udpateSchedulerPolicies deleting scheduler policy: ", policyName);
  schedulerPoliciesDir_->schedulerPolicyDel(policyName);
}

// The policy of that name. One that is there stays as it stands, its config included.
Rok::Ptr<Config::SchedulerPolicy> SchedulerPolicyKivToOCSm::makePolicy(
    const Velmo::String& policyName) {
  if (const auto policy = schedulerPoliciesDir_->schedulerPolicy(policyName)) return policy;
  Rok::traceOf(handler, *this, "creating scheduler Policy: ", policyName);
  const auto policy = schedulerPoliciesDir_->schedulerPolicyIs(policyName);
  policy->configIs({policyName});
  return policy;
}

// A rate out of range throws, and what was written before stays. The scheduler has no rate then, so
// the next reading throws again.
void SchedulerPolicyKivToOCSm::addScheduler(Config::SchedulerPolicy& policy,
                                            const SchedulerCommentInfo& comment) {
  const std::uint32_t sequence = comment.sequence();
  if (!policy.schedulers()) {
    Rok::traceOf(handler, *this, "creating schedulers for Policy: ", policy.name());
  }
  const auto& schedulers = policy.schedulersIs();
  auto scheduler = schedulers->scheduler(sequence);
  if (!scheduler) {
    Rok::traceOf(handler, *this, "creating scheduler: ", sequence);
    scheduler = schedulers->schedulerIs(sequence);
    scheduler->configIs(schedulerConfig(comment));
  }
  addRate(*scheduler, comment.oneRateTwoColor());
  for (auto i = comment.inputs().unsafeIterator(); i; ++i) addInput(*scheduler, i->value());
}

void SchedulerPolicyKivToOCSm::addRate(Config::Scheduler& scheduler,
                                       const OneRateTwoColorCommentInfo& comment) {
  if (scheduler.oneRateTwoColor() || !comment) return;
  Rok::traceOf(handler, *this, "creating oneRateTwoColor for scheduler: ", scheduler.sequence());
  scheduler.oneRateTwoColorIs(oneRateTwoColor(comment));
}

void SchedulerPolicyKivToOCSm::addInput(Config::Scheduler& scheduler,
                                        const SchedulerInputCommentInfo& comment) {
  if (!scheduler.inputs()) {
    Rok::traceOf(handler, *this, "creating scheduler Inputs for scheduler: ", scheduler.sequence());
  }
  const auto& inputs = scheduler.inputsIs();
  const Config::SchedulerInput* found = inputs->input().find(comment.inputId());
  if (found != nullptr && *found) return;  // the default record stands for none
  Rok::traceOf(handler, *this, "creating scheduler input: ", comment.inputId());
  inputs->inputIs(schedulerInput(comment));
}

// ===== SchedulerPolicyKivToOCSm: attachments

// An interface has one policy and a comment for each tx queue, so every evaluation of a tx queue
// decides for the whole interface, and the last one stands: at a start the last in the walk over
// the tx queues, whose order is unspecified, and afterwards the last one of the last event. Devices
// whose tx queues disagree rely on nothing else.
void SchedulerPolicyKivToOCSm::udpateIntfSchedulerPolicies(const Nerit::IntfId& intfId,
                                                           const Qos::TxQueue& txQueue) {
  Helper::TxQueueMemo memo(intfId, txQueue, txQueues_.commentMemo());
  udpateIntfSchedulerPolicies(intfId, txQueue, cliConfig_->comment(memo.commentKey()), memo);
}

void SchedulerPolicyKivToOCSm::udpateIntfSchedulerPolicies(const Nerit::IntfId& intfId,
                                                           const Qos::TxQueue& txQueue,
                                                           const Velmo::String& comment,
                                                           Helper::TxQueueMemo& memo) {
  Helper::traceCommentKey(intfId, txQueue);
  const auto& info = memo.comment().schedulerPolicyInfo(comment);
  if (info) return attach(intfId, info.schedulerPolicy(), memo);
  Rok::traceLine(handler,
                 "udpateIntfSchedulerPolicies No Scheduler Policy comment for intf: ", intfId,
                 " TxQueueId: ", txQueue);
  detach(intfId, memo);
}

// Whether the policy exists doesn't matter: its profile may come later, or have gone.
void SchedulerPolicyKivToOCSm::attach(const Nerit::IntfId& intfId, const Velmo::String& policyName,
                                      Helper::TxQueueMemo& memo) {
  Config::Interface* interface = memo.interface(*interfacesDir_);
  if (interface == nullptr) {
    Rok::traceOf(handler, *this, "creating interface: ", intfId);
    interface = &memo.interfaceIs(*interfacesDir_);
  }
  if (!interface->output()) {
    Rok::traceOf(handler, *this, "creating interface output for intf: ", intfId);
  }
  interface->outputIs()->schedulerPolicyIs(Config::InterfaceOutputSchedulerPolicy{{policyName}});
  interfaceToSchedulerPolicyMapIs(intfId, policyName);
}

// Unlike a queue-management profile, which a comment without a name leaves, the attachment goes,
// whichever tx queue made it: it is the interface's. Creates nothing.
void SchedulerPolicyKivToOCSm::detach(const Nerit::IntfId& intfId, Helper::TxQueueMemo& memo) {
  const Config::Interface* interface = memo.interface(*interfacesDir_);
  if (interface == nullptr || !interface->output()) return;
  Rok::traceLine(handler,
                 "udpateIntfSchedulerPolicies deleting intf scheduler policy attachment: ", intfId);
  interface->output()->schedulerPolicyIs(Config::InterfaceOutput::SchedulerPolicy());
  interfaceToSchedulerPolicyMapDel(intfId);
}

// ===== SchedulerPolicyKivToOCSm: events

void SchedulerPolicyKivToOCSm::handleIntfConfig(const Nerit::IntfId& intfId) {
  Rok::traceEntry(handler, *this, intfId);
  intfSm_.mirror(qosCliConfig_->intfConfig(), intfId, this, schedulerPoliciesDir_, interfacesDir_,
                 Rok::entry);
}

// A comment that stops naming a policy ends here and leaves the attachment: it goes with the next
// change of the tx queue's settings or queue name, which the code that writes comments makes.
void SchedulerPolicyKivToOCSm::handleComment(const Velmo::String& key) {
  Rok::traceLine(handler, "SchedulerPolicyKivToOCSm: handleComment");
  updatePoliciesOfComment(key);
  const Velmo::String text = cliConfig_->comment(key);
  if (!txQueues_.commentMemo().schedulerPolicyInfo(text)) {
    return Rok::traceOf(handler, *this,
                        "comment not related to Interface attachment of Scheduler Policy");
  }
  txQueues_.eachOfComment(intfSm_, key, [&](SchedulerPolicyTxQueueSm& queue) {
    udpateIntfSchedulerPolicies(queue.intfId(), queue.txQueue(), text, queue.entry().memo());
  });
}

// So that updatePoliciesOfComment finds them.
void SchedulerPolicyKivToOCSm::noteCutName(const Velmo::String& profileName) {
  if (!Helper::isCutInCommentKey(profileName)) return;
  const bool isThere = qosProfileConfigDir_->config().find(profileName) != nullptr;
  isThere ? cutNames_.memberIs(profileName, true) : cutNames_.deleteMember(profileName);
}

// The profile whose comment has this key is found by its name, which the key holds, and so are
// those whose names go on behind a NUL. A walk over all profiles would find no others; it would
// compute the key of each, and a trace shows that.
void SchedulerPolicyKivToOCSm::updatePoliciesOfComment(const Velmo::String& key) {
  const auto name = Helper::profileNameFromCommentKey(key);
  if (!name && !Helper::keysAreTraced()) return;
  Rok::inWalkOrder(
      qosProfileConfigDir_->config(), name ? profilesNamed(*name) : std::vector<Velmo::String>(),
      Helper::keysAreTraced(),
      [](const Velmo::String& other) { CommentHelper::profileCommentKey(other); },
      [this](const Velmo::String& profile) { udpateSchedulerPolicies(profile); });
}

// That name, and those that begin with it and a NUL.
std::vector<Velmo::String> SchedulerPolicyKivToOCSm::profilesNamed(std::string_view name) const {
  std::vector<Velmo::String> names{name};
  if (cutNames_.members() == 0) return names;
  const Velmo::String cut = names.front().addRight(std::string_view("\0", 1));
  for (const auto& [cutName, isThere] : cutNames_) {
    if (std::string_view(cutName).starts_with(cut)) names.push_back(cutName);
  }
  return names;
}

// The name is only a reason to look at the comments again: unlike a queue-management profile, an
// attachment doesn't need it. A name that went undoes nothing.
void SchedulerPolicyKivToOCSm::handleQueueNameToTxQueue(const Velmo::String& queueName) {
  Rok::traceLine(handler,
                 "SchedulerPolicyKivToOCSm: handleQueueNameToTxQueue queue Name: ", queueName);
  const auto& names = *qosCliConfig_->queueNameToTxQueueIdMap();
  const Qos::TxQueueId id = names.queueNameToTxQueueId(queueName);  // 16 when there is none
  if (id != Qos::noTxQueue) {
    return txQueues_.eachOfId(intfSm_, id, [this](SchedulerPolicyTxQueueSm& queue) {
      udpateIntfSchedulerPolicies(queue.intfId(), queue.txQueue(), comment(queue.commentKey()),
                                  queue.entry().memo());
    });
  }
  Rok::traceOf(handler, *this, "queue Name: ", queueName, " to id: ", id, " map deleted");
}

void SchedulerPolicyKivToOCSm::handleInitialized() {
  Rok::traceLine(handler, "SchedulerPolicyKivToOCSm: handleInitialized");
  mirrorInterfaces();
  eachKey<&Self::udpateSchedulerPolicies>(qosProfileConfigDir_->config());
  sweepPolicies();
  sweepAttachments();
}

void SchedulerPolicyKivToOCSm::mirrorInterfaces() {
  if (!qosCliConfig_) return;
  eachKey<&Self::handleIntfConfig>(qosCliConfig_->intfConfig());
}

void SchedulerPolicyKivToOCSm::sweepPolicies() {
  for (const auto& [name, policy] : schedulerPoliciesDir_->schedulerPolicy()) {
    if (qosProfileConfigDir_->config().find(encodeSPProfileName(name)) != nullptr) continue;
    Rok::traceOf(handler, *this, "Deleting scheduler policy: ", name);
    schedulerPoliciesDir_->schedulerPolicyDel(name);
  }
}

// Goes by what the tx queues attached at this start, not by the policies: an attachment whose
// policy was swept stays as long as a comment names it.
void SchedulerPolicyKivToOCSm::sweepAttachments() {
  for (const auto& [interfaceId, interface] : interfacesDir_->interface()) {
    const auto output = interface->output();
    if (!output || !output->schedulerPolicy()) continue;
    if (attachments_.map().find(Nerit::IntfId(interfaceId)) != nullptr) continue;
    Rok::traceOf(handler, *this, "Deleting scheduler policy intf attachment: ", interfaceId);
    output->schedulerPolicyIs(Config::InterfaceOutput::SchedulerPolicy());
  }
}

// ===== SchedulerPolicyIntfSm

SchedulerPolicyIntfSm::SchedulerPolicyIntfSm(
    SchedulerPolicyKivToOCSm* schedulerPolicyKivToOCSm,
    Rok::Out<Config::SchedulerPoliciesDir> schedulerPoliciesDir,
    Rok::Out<Config::InterfacesDir> interfacesDir, Rok::In<Qos::IntfConfig> intfConfig)
    : schedulerPolicyKivToOCSm_(schedulerPolicyKivToOCSm),
      schedulerPoliciesDir_(schedulerPoliciesDir),
      interfacesDir_(interfacesDir),
      intfConfig_(*this, intfConfig),
      txQueueSm_(*this) {
  rokInitialize<&Self::handleInitialized>();
}

void SchedulerPolicyIntfSm::doPrepareToDie() {
  Rok::traceEntry(handler, *this);
  txQueueSm_.withdrawAll();
}

void SchedulerPolicyIntfSm::handleTxQueueConfig(const Qos::TxQueue& txQueue) {
  Rok::traceEntry(handler, *this, txQueue);
  txQueueSm_.mirror(intfConfig_->txQueueConfig(), txQueue, this, intfId(), schedulerPoliciesDir_,
                    interfacesDir_, Rok::entry);
}

void SchedulerPolicyIntfSm::handleInitialized() {
  Rok::traceEntry(handler, *this);
  eachKey<&Self::handleTxQueueConfig>(intfConfig_->txQueueConfig());
}

// ===== SchedulerPolicyTxQueueSm

SchedulerPolicyTxQueueSm::SchedulerPolicyTxQueueSm(
    SchedulerPolicyIntfSm* schedulerPolicyIntfSm, const Nerit::IntfId& intfId,
    Rok::Out<Config::SchedulerPoliciesDir> schedulerPoliciesDir,
    Rok::Out<Config::InterfacesDir> interfacesDir, Rok::In<Qos::TxQueueConfig> txQueueConfig)
    : schedulerPolicyIntfSm_(schedulerPolicyIntfSm),
      intfId_(intfId),
      schedulerPoliciesDir_(schedulerPoliciesDir),
      interfacesDir_(interfacesDir),
      txQueueConfig_(*this, txQueueConfig),
      entry_(root().txQueues(), intfId_, txQueue(), *this) {
  rokInitialize<&Self::handleInitialized>();
}

SchedulerPolicyKivToOCSm& SchedulerPolicyTxQueueSm::root() const {
  return *schedulerPolicyIntfSm_->schedulerPolicyKivToOCSm();
}

// Unlike a queue-management profile, whose entry is blanked, the attachment is the interface's and
// not this tx queue's, so it stays until another tx queue of the interface is
// evaluated, or until the sweep of a later start.
void SchedulerPolicyTxQueueSm::doPrepareToDie() { Rok::traceEntry(handler, *this); }

void SchedulerPolicyTxQueueSm::handlePriorityBandwidthShapeConfig() {
  Rok::traceEntry(handler, *this);
  root().udpateIntfSchedulerPolicies(intfId_, txQueue(), root().comment(commentKey()),
                                     entry_.memo());
}

void SchedulerPolicyTxQueueSm::handleInitialized() {
  Rok::traceEntry(handler, *this);
  handlePriorityBandwidthShapeConfig();
}

// ===== Factories

Rok::Ptr<SchedulerPolicyKivToOCSm> schedulerPolicyKivToOCSmFactory(
    Rok::In<Cli::Config> cliConfig, Rok::In<Qos::Input::Config> qosCliConfig,
    Rok::In<Qos::QosProfileConfigDir> qosProfileConfigDir,
    Rok::Out<Config::SchedulerPoliciesDir> schedulerPoliciesDir,
    Rok::Out<Config::InterfacesDir> interfacesDir) {
  return SchedulerPolicyKivToOCSm::SchedulerPolicyKivToOCSmIs(
      cliConfig, qosCliConfig, qosProfileConfigDir, schedulerPoliciesDir, interfacesDir);
}

Rok::Ptr<SchedulerPolicyIntfSm> schedulerPolicyIntfSmFactory(
    SchedulerPolicyKivToOCSm* schedulerPolicyKivToOCSm,
    Rok::Out<Config::SchedulerPoliciesDir> schedulerPoliciesDir,
    Rok::Out<Config::InterfacesDir> interfacesDir, Rok::In<Qos::IntfConfig> intfConfig) {
  return SchedulerPolicyIntfSm::SchedulerPolicyIntfSmIs(
      schedulerPolicyKivToOCSm, schedulerPoliciesDir, interfacesDir, intfConfig);
}

Rok::Ptr<SchedulerPolicyTxQueueSm> schedulerPolicyTxQueueSmFactory(
    SchedulerPolicyIntfSm* schedulerPolicyIntfSm, const Nerit::IntfId& intfId,
    Rok::Out<Config::SchedulerPoliciesDir> schedulerPoliciesDir,
    Rok::Out<Config::InterfacesDir> interfacesDir, Rok::In<Qos::TxQueueConfig> txQueueConfig) {
  return SchedulerPolicyTxQueueSm::SchedulerPolicyTxQueueSmIs(
      schedulerPolicyIntfSm, intfId, schedulerPoliciesDir, interfacesDir, txQueueConfig);
}

}  // namespace QosOc
