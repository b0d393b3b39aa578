#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"

#include "QosOpenConfig/QosOpenConfigHelperNames.h"

namespace {

// Unlike the other units' this handle has a name of its own.
constinit Rok::TraceHandle traceHandle("OpenConfigQosQueueManagementProfileKivToOcSm", false);

constexpr Rok::TraceLevel handler{traceHandle, 2};

std::string_view nameInQMPProfileName(const Velmo::String& profileName) {
  return QosOc::Helper::nameInProfileName(profileName, "__YANG_QMP_[");
}

}  // namespace

Velmo::String encodeQMPProfileName(Velmo::String qmpName) {
  Rok::traceCall(handler, ": qmpName: ", qmpName);
  return Rok::_fmt("__YANG_QMP_[%s]", qmpName.data());
}

Velmo::String decodeQMPProfileName(Velmo::String profileName) {
  Rok::traceCall(handler, ": profileName: ", profileName);
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

// ECN's numbers take precedence over WRED's. The percentage of WRED is tested even then, and first,
// so a profile whose WRED settings are out of range is refused as a whole.
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

}  // namespace

// ===== QueueManagementProfileKivToOcSm

QueueManagementProfileKivToOcSm::QueueManagementProfileKivToOcSm(
    Rok::In<Qos::Input::Config> cliConfig, Rok::In<Cli::Config> cli,
    Rok::In<Qos::QosProfileConfigDir> qosProfileConfigDir,
    Rok::Out<Config::QueueManagementProfilesDir> queueManagementProfilesDir,
    Rok::Out<Config::InterfacesDir> interfacesDir)
    : cliConfig_(*this, cliConfig),
      cli_(*this, cli),
      qosProfileConfigDir_(*this, qosProfileConfigDir),
      queueManagementProfilesDir_(queueManagementProfilesDir),
      interfacesDir_(interfacesDir),
      intfSm_(*this),
      qosProfileSm_(*this),
      nameToTxQueueIdMapIn_(*this) {
  rokInitialize<&Self::handleInitialized, &Self::followQueueNameToTxQueueIdMap>();
}

void QueueManagementProfileKivToOcSm::handleIntfConfig(const Nerit::IntfId& intfId) {
  Rok::traceIn(handler, *this, " intf: ", intfId);
  intfSm_.mirror(cliConfig_->intfConfig(), intfId, this, interfacesDir_, Rok::entry);
}

// A comment that went, or that lost its profile, ends here and leaves the attachment in place: only
// the tx queue takes it back. One that comes before its tx queue waits for it.
void QueueManagementProfileKivToOcSm::handleComment(const Velmo::String& key) {
  Rok::traceLine(handler, "QueueManagementProfileKivToOcSm: handleComment key: ", key);
  const Velmo::String text = cli_->comment(key);
  if (!txQueues_.commentMemo().queueManagementProfileInfo(text)) {
    return Rok::traceOf(handler, *this, "comment not related to QueueManagementProfile");
  }
  txQueues_.eachOfComment(intfSm_, key, [&](QueueManagementProfileTxQueueSm& queue) {
    updateIntfQueueManagementProfile(queue.intfId(), queue.txQueue(), text, queue.entry().memo());
  });
}

// A name that moves stays with its old id as well: until the old id gets a name of its own, its tx
// queues keep the entry that they have.
void QueueManagementProfileKivToOcSm::handleQueueNameToTxQueue(const Velmo::String& name) {
  Rok::traceLine(handler, "QueueManagementProfileKivToOcSm: handleQueueNameToTxQueue");
  const Qos::TxQueueId id = cliConfig_->queueNameToTxQueueIdMap()->queueNameToTxQueueId(name);
  if (id == Qos::noTxQueue) return forgetQueueName(name);
  txQueueIdToQueueNameMapIs(id, name);
  txQueues_.eachOfId(intfSm_, id, [this](QueueManagementProfileTxQueueSm& queue) {
    updateIntfQueueManagementProfile(queue.intfId(), queue.txQueue(), queue.comment(),
                                     queue.entry().memo());
  });
}

// Of several ids that hold the name, the first that the walk meets loses it: the others held it
// before it moved, and go on doing so.
void QueueManagementProfileKivToOcSm::forgetQueueName(const Velmo::String& name) {
  for (const auto& [id, queueName] : queueNames_.map()) {
    if (queueName.name == name) return txQueueIdToQueueNameMapDel(id);
  }
}

void QueueManagementProfileKivToOcSm::updateIntfQueueManagementProfile(
    const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue, const Velmo::String& comment) {
  Helper::TxQueueMemo memo(intfId, txQueue, txQueues_.commentMemo());
  updateIntfQueueManagementProfile(intfId, txQueue, comment, memo);
}

// The name is all that a tx queue's entry goes by: the unicast and the multicast queue of one id
// share it, and the last writer decides.
void QueueManagementProfileKivToOcSm::updateIntfQueueManagementProfile(const Nerit::IntfId& intfId,
                                                                       const Qos::TxQueue& txQueue,
                                                                       const Velmo::String& comment,
                                                                       Helper::TxQueueMemo& memo) {
  Rok::traceLine(handler, "QueueManagementProfileKivToOcSm updateIntfQueueManagementProfile");
  const auto& info = memo.comment().queueManagementProfileInfo(comment);
  if (!info) {
    return Rok::traceOf(handler, *this,
                        "queueManagementProfile not found in comment for intfId: ", intfId,
                        " txQueue: ", txQueue.id);
  }
  const Qos::QueueName* name = queueNames_.map().find(txQueue.id);
  if (name == nullptr || name->empty()) return;
  memo.interfaceIs(*interfacesDir_).outputIs()->queuesIs("")->qContentIs(name->name).config = {
      name->name, info.queueManagementProfile()};
}

void QueueManagementProfileKivToOcSm::updateQueueManagementProfile(const Velmo::String& profile,
                                                                   const Qos::TxQueue& txQueue) {
  updateQueueManagementProfile(profile, nameInQMPProfileName(profile), txQueue);
}

// While decodings are traced, the name is decoded again.
void QueueManagementProfileKivToOcSm::updateQueueManagementProfile(const Velmo::String& profile,
                                                                   const Velmo::String& decoded,
                                                                   const Qos::TxQueue& txQueue) {
  Rok::traceOf(handler, *this, "updateQueueManagementProfile profile: ", profile,
               " txQueue: ", txQueue);
  if (handler.isOn()) decodeQMPProfileName(profile);
  const Qos::TxQueueConfig* const tx = txQueueOf(*qosProfileConfigDir_, profile, txQueue);
  if (tx == nullptr) {
    return Rok::traceOf(handler, *this,
                        "updateQueueManagementProfile ERROR: txQueue config not present");
  }
  const Config::WredUniform wred = wredUniform(*tx);
  auto& record = queueManagementProfilesDir_->queueManagementProfileContentIs(decoded);
  record.config.name = decoded;
  record.wredUniform = wred;
}

void QueueManagementProfileKivToOcSm::handleProfileConfig(const Velmo::String& name) {
  Rok::traceLine(handler, "QueueManagementProfileKivToOcSm handleProfileConfig profile:", name);
  if (decodeQMPProfileName(name).empty()) {
    return Rok::traceOf(handler, *this, "handleProfileConfig profile not related to OC: ", name);
  }
  qosProfileSm_.mirror(qosProfileConfigDir_->config(), name, this, queueManagementProfilesDir_,
                       Rok::entry);
}

void QueueManagementProfileKivToOcSm::handleInitialized() {
  Rok::traceLine(handler, "QueueManagementProfileKivToOcSm: handleInitialized");
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
    Rok::traceOf(handler, *this, "handleInitialized deleting profile: ", name);
    queueManagementProfilesDir_->queueManagementProfileDel(name);
  }
}

// ===== QueueManagementProfileQosProfileSm

// The chained input comes last: the walk at start sees the tx queues first, and only later changes
// come through the chain.
QueueManagementProfileQosProfileSm::QueueManagementProfileQosProfileSm(
    QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
    Rok::Out<Config::QueueManagementProfilesDir> queueManagementProfilesDir,
    Rok::In<Qos::QosProfileConfig> qosProfileConfig)
    : queueManagementProfileKivToOcSm_(queueManagementProfileKivToOcSm),
      queueManagementProfilesDir_(queueManagementProfilesDir),
      qosProfileConfig_(*this, qosProfileConfig),
      txQueueSm_(*this),
      qosProfileIn_(*this) {
  rokInitialize<&Self::handleInitialized, &Self::followQosProfile>();
}

void QueueManagementProfileQosProfileSm::mirrorTxQueues() {
  const auto& qosProfile = qosProfileConfig_->qosProfile();
  if (!qosProfile) return;
  eachKey<&Self::handleTxQueueConfig>(qosProfile->txQueueConfig());
}

void QueueManagementProfileQosProfileSm::handleProfileConfig() {
  if (Rok::TraceHelper line{handler}) line.in(*this) << " profileName: " << profileName();
  mirrorTxQueues();
}

void QueueManagementProfileQosProfileSm::handleTxQueueConfig(const Qos::TxQueue& txQueue) {
  if (Rok::TraceHelper line{handler})
    line.in(*this) << " profileName: " << profileName() << " txQueue = " << txQueue;
  // Only the number counts. Where tx queue 0 is there in both types, the last writer decides the
  // record: the code that makes such profiles writes one of them.
  if (txQueue.id != 0) {
    return Rok::traceOf(
        handler, *this,
        "handleTxQueueConfig ERROR: config other than tx-queue 0, tx-queue: ", txQueue.id);
  }
  // A tx queue that went leaves the record as it is: only the QoS profile takes it along.
  txQueueSm_.mirror(qosProfileConfig_->qosProfile()->txQueueConfig(), txQueue, this, profileName(),
                    queueManagementProfilesDir_, Rok::entry);
}

// The tx queues go with the machine.
void QueueManagementProfileQosProfileSm::doPrepareToDie() {
  if (Rok::TraceHelper line{handler}) line.in(*this) << " profileName: " << profileName();
  const Velmo::String decoded = decodeQMPProfileName(profileName());
  if (queueManagementProfilesDir_->queueManagementProfile().find(decoded) == nullptr) return;
  Rok::traceOf(handler, *this, "doPrepareToDie deleting Queue Management Profile: ", decoded);
  queueManagementProfilesDir_->queueManagementProfileDel(decoded);
}

void QueueManagementProfileQosProfileSm::handleInitialized() {
  if (Rok::TraceHelper line{handler}) line.in(*this) << " profileName: " << profileName();
  mirrorTxQueues();
}

// ===== QueueManagementProfileQosProfileTxQueueSm

QueueManagementProfileQosProfileTxQueueSm::QueueManagementProfileQosProfileTxQueueSm(
    QueueManagementProfileQosProfileSm* profileSm, const Velmo::String& profileName,
    Rok::Out<Config::QueueManagementProfilesDir> queueManagementProfilesDir,
    Rok::In<Qos::TxQueueConfig> txQueueConfig)
    : profileSm_(profileSm),
      profileName_(profileName),
      decodedName_(nameInQMPProfileName(profileName)),
      queueManagementProfilesDir_(queueManagementProfilesDir),
      txQueueConfig_(*this, txQueueConfig) {
  rokInitialize<&Self::handleInitialized>();
}

void QueueManagementProfileQosProfileTxQueueSm::handleEcnWredConfig() {
  if (Rok::TraceHelper line{handler})
    line.in(*this) << " profileName: " << profileName_ << " txQueue: " << txQueue();
  profileSm_->queueManagementProfileKivToOcSm()->updateQueueManagementProfile(
      profileName_, decodedName_, txQueue());
}

void QueueManagementProfileQosProfileTxQueueSm::handleInitialized() {
  if (Rok::TraceHelper line{handler})
    line.in(*this) << " profileName: " << profileName_ << " txQueue: " << txQueue();
  handleEcnWredConfig();
}

// ===== QueueManagementProfileIntfSm

QueueManagementProfileIntfSm::QueueManagementProfileIntfSm(
    QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
    Rok::Out<Config::InterfacesDir> interfacesDir, Rok::In<Qos::IntfConfig> intfConfig)
    : queueManagementProfileKivToOcSm_(queueManagementProfileKivToOcSm),
      interfacesDir_(interfacesDir),
      intfConfig_(*this, intfConfig),
      txQueueSm_(*this) {
  rokInitialize<&Self::handleInitialized>();
}

void QueueManagementProfileIntfSm::handleTxQueueConfig(const Qos::TxQueue& txQueue) {
  if (Rok::TraceHelper line{handler})
    line.in(*this) << " intf: " << intfId() << " txQueue = " << txQueue;
  txQueueSm_.mirror(intfConfig_->txQueueConfig(), txQueue, this, intfId(), interfacesDir_,
                    Rok::entry);
}

void QueueManagementProfileIntfSm::doPrepareToDie() {
  if (Rok::TraceHelper line{handler}) line.in(*this) << " intf: " << intfId();
  txQueueSm_.withdrawAll();
}

void QueueManagementProfileIntfSm::handleInitialized() {
  if (Rok::TraceHelper line{handler}) line.in(*this) << " intf: " << intfId();
  eachKey<&Self::handleTxQueueConfig>(intfConfig_->txQueueConfig());
}

// ===== QueueManagementProfileTxQueueSm

QueueManagementProfileTxQueueSm::QueueManagementProfileTxQueueSm(
    QueueManagementProfileIntfSm* intfSm, const Nerit::IntfId& intfId,
    Rok::Out<Config::InterfacesDir> interfacesDir, Rok::In<Qos::TxQueueConfig> txQueueConfig)
    : intfSm_(intfSm),
      intfId_(intfId),
      interfacesDir_(interfacesDir),
      txQueueConfig_(*this, txQueueConfig),
      entry_(root().txQueues(), intfId, txQueue(), *this) {
  rokInitialize<&Self::handleInitialized>();
}

QueueManagementProfileKivToOcSm& QueueManagementProfileTxQueueSm::root() const {
  return *intfSm_->queueManagementProfileKivToOcSm();
}

Velmo::String QueueManagementProfileTxQueueSm::comment() const {
  Helper::traceCommentKey(intfId_, txQueue());
  return root().cli()->comment(commentKey());
}

void QueueManagementProfileTxQueueSm::handleEcnWredConfig() {
  Rok::traceIn(handler, *this, " intf: ", intfId_);
  root().updateIntfQueueManagementProfile(intfId_, txQueue(), comment(), entry_.memo());
}

// A blank record takes the place of the attachment, without even a name in its config: the model
// has no delete for it, and an entry that says nothing stands for one that is gone. When the id has
// lost its name meanwhile, the attachment stays for good.
void QueueManagementProfileTxQueueSm::doPrepareToDie() {
  if (Rok::TraceHelper line{handler})
    line.in(*this) << " intf: " << intfId_ << " txQueue: " << txQueue();
  const Velmo::String name = root().txQueueIdToQueueNameMap(txQueue().id).name;
  if (name.empty()) return;
  const auto interface = interfacesDir_->interface(intfId_.stringValue());
  if (!interface || !interface->output() || !interface->output()->queues()) return;
  const auto& queues = interface->output()->queues();
  const Config::InterfaceOutputQueue* const entry = queues->q().find(name);
  if (entry == nullptr || entry->config.queueManagementProfile.empty()) return;
  if (Rok::TraceHelper line{handler}) {
    line.of(*this) << "doPrepareToDie deleting QMP intf attachment, intf: " << intfId_
                   << " txQueue: " << txQueue();
  }
  queues->qContent(*entry).config = {};
}

void QueueManagementProfileTxQueueSm::handleInitialized() {
  Rok::traceIn(handler, *this, " intf: ", intfId_);
  handleEcnWredConfig();
}

// ===== Factories

Rok::Ptr<QueueManagementProfileKivToOcSm> queueManagementProfileKivToOcSmFactory(
    Rok::In<Qos::Input::Config> cliConfig, Rok::In<Cli::Config> cli,
    Rok::In<Qos::QosProfileConfigDir> qosProfileConfigDir,
    Rok::Out<Config::QueueManagementProfilesDir> queueManagementProfilesDir,
    Rok::Out<Config::InterfacesDir> interfacesDir) {
  return QueueManagementProfileKivToOcSm::QueueManagementProfileKivToOcSmIs(
      cliConfig, cli, qosProfileConfigDir, queueManagementProfilesDir, interfacesDir);
}

Rok::Ptr<QueueManagementProfileQosProfileSm> queueManagementProfileQosProfileSmFactory(
    QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
    Rok::Out<Config::QueueManagementProfilesDir> queueManagementProfilesDir,
    Rok::In<Qos::QosProfileConfig> qosProfileConfig) {
  return QueueManagementProfileQosProfileSm::QueueManagementProfileQosProfileSmIs(
      queueManagementProfileKivToOcSm, queueManagementProfilesDir, qosProfileConfig);
}

Rok::Ptr<QueueManagementProfileQosProfileTxQueueSm>
queueManagementProfileQosProfileTxQueueSmFactory(
    QueueManagementProfileQosProfileSm* profileSm, const Velmo::String& profileName,
    Rok::Out<Config::QueueManagementProfilesDir> queueManagementProfilesDir,
    Rok::In<Qos::TxQueueConfig> txQueueConfig) {
  return QueueManagementProfileQosProfileTxQueueSm::QueueManagementProfileQosProfileTxQueueSmIs(
      profileSm, profileName, queueManagementProfilesDir, txQueueConfig);
}

Rok::Ptr<QueueManagementProfileIntfSm> queueManagementProfileIntfSmFactory(
    QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
    Rok::Out<Config::InterfacesDir> interfacesDir, Rok::In<Qos::IntfConfig> intfConfig) {
  return QueueManagementProfileIntfSm::QueueManagementProfileIntfSmIs(
      queueManagementProfileKivToOcSm, interfacesDir, intfConfig);
}

Rok::Ptr<QueueManagementProfileTxQueueSm> queueManagementProfileTxQueueSmFactory(
    QueueManagementProfileIntfSm* intfSm, const Nerit::IntfId& intfId,
    Rok::Out<Config::InterfacesDir> interfacesDir, Rok::In<Qos::TxQueueConfig> txQueueConfig) {
  return QueueManagementProfileTxQueueSm::QueueManagementProfileTxQueueSmIs(
      intfSm, intfId, interfacesDir, txQueueConfig);
}

}  // namespace QosOc
