#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"

#include <string_view>

#include "QosOpenConfig/QosOpenConfigHelper.h"

namespace {

// Unlike the other units' this handle has a name of its own.
constinit Rok::TraceHandle traceHandle("OpenConfigQosQueueManagementProfileKivToOcSm", false);

constexpr Rok::TraceFacility::FacilityLevel handler = 2;

std::string_view nameInQMPProfileName(const Velmo::String& profileName) {
  return QosOc::Helper::nameInProfileName(profileName, "__YANG_QMP_[");
}

}  // namespace

Velmo::String encodeQMPProfileName(Velmo::String qmpName) {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in() << ": qmpName: " << qmpName;
  return Rok::_fmt("__YANG_QMP_[%s]", qmpName.data());
}

Velmo::String decodeQMPProfileName(Velmo::String profileName) {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in() << ": profileName: " << profileName;
  return nameInQMPProfileName(profileName);
}

namespace QosOc {
namespace {

// ===== Profiles

// Values are copied, never converted. The unit and the averaging weight stay behind: the record's
// weight is always 0.
void takeNumbers(Config::WredUniform& wred, const Qos::EcnWredConfig& settings) {
  wred.minThreshold = settings.minThreshold();
  wred.maxThreshold = settings.maxThreshold();
  wred.maxDropProbabilityPercent = settings.maxDropPercent().value;
}

// ECN's numbers win over WRED's. Deliberate: the percentage of WRED is tested all the same, and
// first, so a profile whose WRED settings are no legal ones is refused as a whole.
Config::WredUniform wredUniform(const Qos::TxQueueConfig& tx) {
  Config::WredUniform wred;
  if (tx.wredConfig()) takeNumbers(wred, *tx.wredConfig());
  if (tx.ecnConfig()) takeNumbers(wred, *tx.ecnConfig());
  wred.enableEcn = tx.ecnConfig() != nullptr;
  wred.drop = tx.wredConfig() != nullptr;
  return wred;
}

// The settings of a tx queue of a profile; null when there are none, for whatever reason.
const Qos::TxQueueConfig* txQueueOf(const Qos::QosProfileConfigDir& dir,
                                    const Velmo::String& profile, const Qos::TxQueue& txQueue) {
  const auto* config = dir.config().find(profile);
  if (config == nullptr || !(*config)->qosProfile()) return nullptr;
  const auto* tx = (*config)->qosProfile()->txQueueConfig().find(txQueue);
  return tx != nullptr ? tx->get() : nullptr;
}

void traceUpdate(const QueueManagementProfileKivToOcSm& sm, const Velmo::String& profile,
                 const Qos::TxQueue& txQueue) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.of(sm) << "updateQueueManagementProfile"
                << " profile: " << profile << " txQueue: " << txQueue;
  }
}

}  // namespace

// ===== QueueManagementProfileKivToOcSm

Rok::Ptr<QueueManagementProfileKivToOcSm>
QueueManagementProfileKivToOcSm::QueueManagementProfileKivToOcSmIs(
    const Rok::Ptr<Qos::Input::Config const>& cliConfig, const Rok::Ptr<Cli::Config const>& cli,
    const Rok::Ptr<Qos::QosProfileConfigDir const>& qosProfileConfigDir,
    const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir) {
  return create(cliConfig, cli, qosProfileConfigDir, queueManagementProfilesDir, interfacesDir);
}

QueueManagementProfileKivToOcSm::QueueManagementProfileKivToOcSm(
    const Rok::Ptr<Qos::Input::Config const>& cliConfig, const Rok::Ptr<Cli::Config const>& cli,
    const Rok::Ptr<Qos::QosProfileConfigDir const>& qosProfileConfigDir,
    const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir)
    : cliConfig_(*this, cliConfig),
      cli_(*this, cli),
      qosProfileConfigDir_(*this, qosProfileConfigDir),
      queueManagementProfilesDir_(queueManagementProfilesDir),
      interfacesDir_(interfacesDir),
      intfSm_(*this),
      qosProfileSm_(*this),
      rok_CliConfig_QueueNameToTxQueueIdMapIn_(*this) {
  rokInitialize<&QueueManagementProfileKivToOcSm::handleInitialized,
                &QueueManagementProfileKivToOcSm::followQueueNameToTxQueueIdMap>();
}

void QueueManagementProfileKivToOcSm::followQueueNameToTxQueueIdMap() {
  rok_CliConfig_QueueNameToTxQueueIdMapInIs(cliConfig_->queueNameToTxQueueIdMap());
}

void QueueManagementProfileKivToOcSm::handleIntfConfig(const Nerit::IntfId& intfId) {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in(*this) << " intf: " << intfId;
  if (const auto* entry = cliConfig_->intfConfig().find(intfId)) {
    intfSmIs(this, interfacesDir_, *entry);
  } else {
    intfSm_.withdraw(intfId);
  }
}

// A comment that went, or that lost its profile, ends here and leaves the attachment in place.
// Deliberate: only the tx queue takes it back. One that comes before its tx queue waits for it.
void QueueManagementProfileKivToOcSm::handleComment(const Velmo::String& key) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "QueueManagementProfileKivToOcSm: "
         << "handleComment"
         << " key: " << key;
  }
  const Velmo::String text = cli_->comment(key);
  if (!commentMemo_.queueManagementProfileInfo(text)) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.of(*this) << "comment not related to QueueManagementProfile";
    }
    return;
  }
  txQueues_.eachOfComment(intfSm_, key,
                          [&](QueueManagementProfileTxQueueSm& queue) { update(queue, text); });
}

// A name that moves stays with its old id as well. Deliberate: until the old id gets a name of its
// own, its tx queues keep the entry that they have.
void QueueManagementProfileKivToOcSm::handleQueueNameToTxQueue(const Velmo::String& name) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "QueueManagementProfileKivToOcSm: "
         << "handleQueueNameToTxQueue";
  }
  const auto* found = cliConfig_->queueNameToTxQueueIdMap()->queueNameToTxQueueId().find(name);
  if (found == nullptr || *found == Qos::noTxQueue) return forgetQueueName(name);
  const Qos::TxQueueId id = *found;
  txQueueIdToQueueNameMapIs(id, name);
  txQueues_.eachOfId(intfSm_, id, [this](QueueManagementProfileTxQueueSm& queue) {
    update(queue, queue.comment());
  });
}

void QueueManagementProfileKivToOcSm::
    rok_handleCliConfig_queueNameToTxQueueIdMap_queueNameToTxQueueId(const Qos::QueueName& key) {
  handleQueueNameToTxQueue(key.name);
}

// Of several ids that hold the name, the first that the walk meets loses it. Deliberate: the others
// held it before it moved, and go on doing so.
void QueueManagementProfileKivToOcSm::forgetQueueName(const Velmo::String& name) {
  for (const auto& [id, queueName] : queueNames_.map()) {
    if (queueName.name == name) return txQueueIdToQueueNameMapDel(id);
  }
}

void QueueManagementProfileKivToOcSm::updateIntfQueueManagementProfile(
    const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue, const Velmo::String& comment) {
  Helper::Attachment attachment(commentMemo_);
  updateAttachment(intfId, txQueue, comment, attachment);
}

// The same, with what the tx queue's machine remembers.
void QueueManagementProfileKivToOcSm::update(QueueManagementProfileTxQueueSm& queue,
                                             const Velmo::String& comment) {
  updateAttachment(queue.intfId(), queue.txQueue(), comment, queue.attachment());
}

// The name is all that a tx queue's entry goes by: the unicast and the multicast queue of one id
// share it, and the last writer decides.
void QueueManagementProfileKivToOcSm::updateAttachment(const Nerit::IntfId& intfId,
                                                       const Qos::TxQueue& txQueue,
                                                       const Velmo::String& comment,
                                                       Helper::Attachment& attachment) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "QueueManagementProfileKivToOcSm "
         << "updateIntfQueueManagementProfile";
  }
  const auto& info = attachment.comment().queueManagementProfileInfo(comment);
  if (!info) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.of(*this) << "queueManagementProfile not found in comment for intfId: " << intfId
                     << " txQueue: " << txQueue.id;
    }
    return;
  }
  const Qos::QueueName* name = queueNames_.map().find(txQueue.id);
  if (name == nullptr || name->empty()) return;
  const auto& interface = attachment.interfaceIs(*interfacesDir_, intfId);
  interface->outputIs()->queuesIs("")->qContentIs(name->name).config = {
      name->name, info.queueManagementProfile()};
}

void QueueManagementProfileKivToOcSm::updateQueueManagementProfile(const Velmo::String& profile,
                                                                   const Qos::TxQueue& txQueue) {
  traceUpdate(*this, profile, txQueue);
  updateRecord(profile, decodeQMPProfileName(profile), txQueue);
}

// The same, with the name that the tx queue's machine keeps. Where decodings are to be seen, it is
// decoded anew.
void QueueManagementProfileKivToOcSm::update(
    const QueueManagementProfileQosProfileTxQueueSm& queue) {
  const Velmo::String& profile = queue.profileName();
  traceUpdate(*this, profile, queue.txQueue());
  if (traceHandle.isOn(handler)) decodeQMPProfileName(profile);
  updateRecord(profile, queue.decodedName(), queue.txQueue());
}

void QueueManagementProfileKivToOcSm::updateRecord(const Velmo::String& profile,
                                                   const Velmo::String& decoded,
                                                   const Qos::TxQueue& txQueue) {
  const Qos::TxQueueConfig* const tx = txQueueOf(*qosProfileConfigDir_, profile, txQueue);
  if (tx == nullptr) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.of(*this) << "updateQueueManagementProfile"
                     << " ERROR: txQueue config not present";
    }
    return;
  }
  const Config::WredUniform wred = wredUniform(*tx);
  auto& record = queueManagementProfilesDir_->queueManagementProfileContentIs(decoded);
  record.config.name = decoded;
  record.wredUniform = wred;
}

void QueueManagementProfileKivToOcSm::handleProfileConfig(const Velmo::String& name) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "QueueManagementProfileKivToOcSm "
         << "handleProfileConfig "
         << "profile:" << name;
  }
  if (decodeQMPProfileName(name).empty()) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.of(*this) << "handleProfileConfig "
                     << "profile not related to OC: " << name;
    }
    return;
  }
  if (const auto* entry = qosProfileConfigDir_->config().find(name)) {
    qosProfileSmIs(this, queueManagementProfilesDir_, *entry);
  } else {
    qosProfileSm_.withdraw(name);
  }
}

void QueueManagementProfileKivToOcSm::handleInitialized() {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "QueueManagementProfileKivToOcSm: "
         << "handleInitialized";
  }
  Helper::requireQueueNames(*cliConfig_);
  // In this order: nothing later writes the attachments of interfaces that were made before the
  // names were known.
  readQueueNames();
  mirrorInterfaces();
  mirrorProfiles();
  sweepStaleProfiles();
}

// Unlike a change, the start takes a name with id 16 for a name like any other.
void QueueManagementProfileKivToOcSm::readQueueNames() {
  const auto& names = cliConfig_->queueNameToTxQueueIdMap()->queueNameToTxQueueId();
  for (const auto& [name, id] : names) txQueueIdToQueueNameMapIs(id, name);
}

void QueueManagementProfileKivToOcSm::mirrorInterfaces() {
  for (const auto& [intfId, config] : cliConfig_->intfConfig()) {
    intfSmIs(this, interfacesDir_, config);
  }
}

void QueueManagementProfileKivToOcSm::mirrorProfiles() {
  for (const auto& [name, config] : qosProfileConfigDir_->config()) {
    if (decodeQMPProfileName(name).empty()) continue;
    qosProfileSmIs(this, queueManagementProfilesDir_, config);
  }
}

void QueueManagementProfileKivToOcSm::sweepStaleProfiles() {
  const auto& profiles = queueManagementProfilesDir_->queueManagementProfile();
  for (const auto& [name, profile] : profiles) {
    if (qosProfileConfigDir_->config().find(encodeQMPProfileName(name)) != nullptr) continue;
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.of(*this) << "handleInitialized "
                     << "deleting profile: " << name;
    }
    queueManagementProfilesDir_->queueManagementProfileDel(name);
  }
}

// ===== QueueManagementProfileQosProfileSm

Rok::Ptr<QueueManagementProfileQosProfileSm>
QueueManagementProfileQosProfileSm::QueueManagementProfileQosProfileSmIs(
    QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
    const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
    const Rok::Ptr<Qos::QosProfileConfig const>& qosProfileConfig) {
  return create(queueManagementProfileKivToOcSm, queueManagementProfilesDir, qosProfileConfig);
}

// The chained input comes last: the walk at start sees the tx queues first, and only later changes
// come through the chain.
QueueManagementProfileQosProfileSm::QueueManagementProfileQosProfileSm(
    QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
    const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
    const Rok::Ptr<Qos::QosProfileConfig const>& qosProfileConfig)
    : queueManagementProfileKivToOcSm_(queueManagementProfileKivToOcSm),
      queueManagementProfilesDir_(queueManagementProfilesDir),
      qosProfileConfig_(*this, qosProfileConfig),
      txQueueSm_(*this),
      rok_QosProfileConfig_QosProfileIn_(*this) {
  rokInitialize<&QueueManagementProfileQosProfileSm::handleInitialized,
                &QueueManagementProfileQosProfileSm::followQosProfile>();
}

Velmo::String QueueManagementProfileQosProfileSm::profileName() const {
  return qosProfileConfig_ ? qosProfileConfig_->name() : Velmo::String();
}

void QueueManagementProfileQosProfileSm::followQosProfile() {
  rok_QosProfileConfig_QosProfileInIs(qosProfileConfig_->qosProfile());
}

void QueueManagementProfileQosProfileSm::mirrorTxQueues() {
  const auto& qosProfile = qosProfileConfig_->qosProfile();
  if (!qosProfile) return;
  for (const auto& [txQueue, config] : qosProfile->txQueueConfig()) handleTxQueueConfig(txQueue);
}

void QueueManagementProfileQosProfileSm::handleProfileConfig() {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << " profileName: " << profileName();
  }
  mirrorTxQueues();
}

void QueueManagementProfileQosProfileSm::handleTxQueueConfig(const Qos::TxQueue& txQueue) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << " profileName: " << profileName() << " txQueue = " << txQueue;
  }
  // Only the number counts. Where tx queue 0 is there in both types, the last writer decides the
  // record. Deliberate: the code that makes such profiles writes one of them.
  if (txQueue.id != 0) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.of(*this) << "handleTxQueueConfig"
                     << " ERROR: config other than tx-queue 0, tx-queue: " << txQueue.id;
    }
    return;
  }
  if (const auto* entry = qosProfileConfig_->qosProfile()->txQueueConfig().find(txQueue)) {
    txQueueSmIs(this, profileName(), queueManagementProfilesDir_, *entry);
  } else {
    // The record stays as it is, deliberately: only the QoS profile takes it along.
    txQueueSmDel(txQueue);
  }
}

// The tx queues go with the machine.
void QueueManagementProfileQosProfileSm::doPrepareToDie() {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << " profileName: " << profileName();
  }
  const Velmo::String decoded = decodeQMPProfileName(profileName());
  if (queueManagementProfilesDir_->queueManagementProfile().find(decoded) == nullptr) return;
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.of(*this) << "doPrepareToDie"
                   << " deleting Queue Management Profile: " << decoded;
  }
  queueManagementProfilesDir_->queueManagementProfileDel(decoded);
}

void QueueManagementProfileQosProfileSm::handleInitialized() {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << " profileName: " << profileName();
  }
  mirrorTxQueues();
}

// ===== QueueManagementProfileQosProfileTxQueueSm

Rok::Ptr<QueueManagementProfileQosProfileTxQueueSm>
QueueManagementProfileQosProfileTxQueueSm::QueueManagementProfileQosProfileTxQueueSmIs(
    QueueManagementProfileQosProfileSm* profileSm, const Velmo::String& profileName,
    const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
    const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig) {
  return create(profileSm, profileName, queueManagementProfilesDir, txQueueConfig);
}

QueueManagementProfileQosProfileTxQueueSm::QueueManagementProfileQosProfileTxQueueSm(
    QueueManagementProfileQosProfileSm* profileSm, const Velmo::String& profileName,
    const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
    const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig)
    : profileSm_(profileSm),
      profileName_(profileName),
      decodedName_(nameInQMPProfileName(profileName)),
      queueManagementProfilesDir_(queueManagementProfilesDir),
      txQueueConfig_(*this, txQueueConfig) {
  rokInitialize<&QueueManagementProfileQosProfileTxQueueSm::handleInitialized>();
}

Qos::TxQueue QueueManagementProfileQosProfileTxQueueSm::txQueue() const {
  return txQueueConfig_ ? txQueueConfig_->txQueue() : Qos::TxQueue();
}

void QueueManagementProfileQosProfileTxQueueSm::handleEcnWredConfig() {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << " profileName: " << profileName_ << " txQueue: " << txQueue();
  }
  profileSm_->queueManagementProfileKivToOcSm()->update(*this);
}

void QueueManagementProfileQosProfileTxQueueSm::handleInitialized() {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << " profileName: " << profileName_ << " txQueue: " << txQueue();
  }
  handleEcnWredConfig();
}

// ===== QueueManagementProfileIntfSm

Rok::Ptr<QueueManagementProfileIntfSm> QueueManagementProfileIntfSm::QueueManagementProfileIntfSmIs(
    QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    const Rok::Ptr<Qos::IntfConfig const>& intfConfig) {
  return create(queueManagementProfileKivToOcSm, interfacesDir, intfConfig);
}

QueueManagementProfileIntfSm::QueueManagementProfileIntfSm(
    QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    const Rok::Ptr<Qos::IntfConfig const>& intfConfig)
    : queueManagementProfileKivToOcSm_(queueManagementProfileKivToOcSm),
      interfacesDir_(interfacesDir),
      intfConfig_(*this, intfConfig),
      txQueueSm_(*this) {
  rokInitialize<&QueueManagementProfileIntfSm::handleInitialized>();
}

Nerit::IntfId QueueManagementProfileIntfSm::intfId() const {
  return intfConfig_ ? intfConfig_->intfId() : Nerit::IntfId();
}

void QueueManagementProfileIntfSm::handleTxQueueConfig(const Qos::TxQueue& txQueue) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << " intf: " << intfId() << " txQueue = " << txQueue;
  }
  if (const auto* entry = intfConfig_->txQueueConfig().find(txQueue)) {
    txQueueSmIs(this, intfId(), interfacesDir_, *entry);
  } else {
    txQueueSm_.withdraw(txQueue);
  }
}

void QueueManagementProfileIntfSm::doPrepareToDie() {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in(*this) << " intf: " << intfId();
  txQueueSm_.withdrawAll();
}

void QueueManagementProfileIntfSm::handleInitialized() {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in(*this) << " intf: " << intfId();
  for (const auto& [txQueue, config] : intfConfig_->txQueueConfig()) handleTxQueueConfig(txQueue);
}

// ===== QueueManagementProfileTxQueueSm

Rok::Ptr<QueueManagementProfileTxQueueSm>
QueueManagementProfileTxQueueSm::QueueManagementProfileTxQueueSmIs(
    QueueManagementProfileIntfSm* intfSm, const Nerit::IntfId& intfId,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig) {
  return create(intfSm, intfId, interfacesDir, txQueueConfig);
}

QueueManagementProfileTxQueueSm::QueueManagementProfileTxQueueSm(
    QueueManagementProfileIntfSm* intfSm, const Nerit::IntfId& intfId,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig)
    : intfSm_(intfSm),
      intfId_(intfId),
      interfacesDir_(interfacesDir),
      txQueueConfig_(*this, txQueueConfig),
      entry_(root().txQueues(), intfId, txQueue(), *this),
      attachment_(root().commentMemo()) {
  rokInitialize<&QueueManagementProfileTxQueueSm::handleInitialized>();
}

Qos::TxQueue QueueManagementProfileTxQueueSm::txQueue() const {
  return txQueueConfig_ ? txQueueConfig_->txQueue() : Qos::TxQueue();
}

QueueManagementProfileKivToOcSm& QueueManagementProfileTxQueueSm::root() const {
  return *intfSm_->queueManagementProfileKivToOcSm();
}

Velmo::String QueueManagementProfileTxQueueSm::comment() const {
  Helper::traceCommentKey(intfId_, txQueue());
  return root().cli()->comment(commentKey());
}

void QueueManagementProfileTxQueueSm::handleEcnWredConfig() {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in(*this) << " intf: " << intfId_;
  root().update(*this, comment());
}

// A blank record takes the place of the attachment, without even a name in its config. Deliberate:
// the model has no delete for it, and an entry that says nothing stands for one that is gone. When
// the id has lost its name meanwhile, the attachment stays for good.
void QueueManagementProfileTxQueueSm::doPrepareToDie() {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << " intf: " << intfId_ << " txQueue: " << txQueue();
  }
  const Velmo::String name = root().txQueueIdToQueueNameMap(txQueue().id).name;
  if (name.empty()) return;
  const auto interface = interfacesDir_->interface(intfId_.stringValue());
  if (!interface || !interface->output() || !interface->output()->queues()) return;
  const auto& queues = interface->output()->queues();
  const Config::InterfaceOutputQueue* const entry = queues->q().find(name);
  if (entry == nullptr || entry->config.queueManagementProfile.empty()) return;
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.of(*this) << "doPrepareToDie"
                   << " deleting QMP intf attachment, intf: " << intfId_
                   << " txQueue: " << txQueue();
  }
  queues->qContent(*entry).config = {};
}

void QueueManagementProfileTxQueueSm::handleInitialized() {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in(*this) << " intf: " << intfId_;
  handleEcnWredConfig();
}

// ===== Factories

Rok::Ptr<QueueManagementProfileKivToOcSm> queueManagementProfileKivToOcSmFactory(
    const Rok::Ptr<Qos::Input::Config const>& cliConfig, const Rok::Ptr<Cli::Config const>& cli,
    const Rok::Ptr<Qos::QosProfileConfigDir const>& qosProfileConfigDir,
    const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir) {
  return QueueManagementProfileKivToOcSm::QueueManagementProfileKivToOcSmIs(
      cliConfig, cli, qosProfileConfigDir, queueManagementProfilesDir, interfacesDir);
}

Rok::Ptr<QueueManagementProfileQosProfileSm> queueManagementProfileQosProfileSmFactory(
    QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
    const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
    const Rok::Ptr<Qos::QosProfileConfig const>& qosProfileConfig) {
  return QueueManagementProfileQosProfileSm::QueueManagementProfileQosProfileSmIs(
      queueManagementProfileKivToOcSm, queueManagementProfilesDir, qosProfileConfig);
}

Rok::Ptr<QueueManagementProfileQosProfileTxQueueSm>
queueManagementProfileQosProfileTxQueueSmFactory(
    QueueManagementProfileQosProfileSm* profileSm, const Velmo::String& profileName,
    const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
    const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig) {
  return QueueManagementProfileQosProfileTxQueueSm::QueueManagementProfileQosProfileTxQueueSmIs(
      profileSm, profileName, queueManagementProfilesDir, txQueueConfig);
}

Rok::Ptr<QueueManagementProfileIntfSm> queueManagementProfileIntfSmFactory(
    QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    const Rok::Ptr<Qos::IntfConfig const>& intfConfig) {
  return QueueManagementProfileIntfSm::QueueManagementProfileIntfSmIs(
      queueManagementProfileKivToOcSm, interfacesDir, intfConfig);
}

Rok::Ptr<QueueManagementProfileTxQueueSm> queueManagementProfileTxQueueSmFactory(
    QueueManagementProfileIntfSm* intfSm, const Nerit::IntfId& intfId,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig) {
  return QueueManagementProfileTxQueueSm::QueueManagementProfileTxQueueSmIs(
      intfSm, intfId, interfacesDir, txQueueConfig);
}

}  // namespace QosOc
