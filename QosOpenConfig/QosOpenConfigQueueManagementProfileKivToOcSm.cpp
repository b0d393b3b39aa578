#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"

#include <string_view>

namespace {

// Unlike the other units' this handle has a name of its own.
constinit Rok::TraceHandle traceHandle("OpenConfigQosQueueManagementProfileKivToOcSm", false);

constexpr Rok::TraceFacility::FacilityLevel handler = 2;

// ===== Names
//
// The form is that of the expression "^__YANG_QMP_\[(.+)\]$". A name is any bytes but "\n" and
// "\r", and at least one: unlike a classifier's it may hold a "]".

constexpr std::string_view prefix = "__YANG_QMP_[";
constexpr std::string_view suffix = "]";

std::string_view inBrackets(std::string_view name) {
  if (!name.starts_with(prefix) || !name.ends_with(suffix)) return {};
  name.remove_prefix(prefix.size());
  name.remove_suffix(suffix.size());
  return name.find_first_of("\n\r") == std::string_view::npos ? name : std::string_view();
}

}  // namespace

Velmo::String encodeQMPProfileName(Velmo::String qmpName) {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in() << ": qmpName: " << qmpName;
  return Velmo::String(prefix).append(qmpName.data()).append(suffix);
}

Velmo::String decodeQMPProfileName(Velmo::String profileName) {
  if (Rok::TraceHelper line{traceHandle, handler}) line.in() << ": profileName: " << profileName;
  return inBrackets(profileName);
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
Rok::Ptr<Qos::TxQueueConfig const> txQueueOf(const Qos::QosProfileConfigDir& dir,
                                             const Velmo::String& profile,
                                             const Qos::TxQueue& txQueue) {
  const auto* config = dir.config().find(profile);
  if (config == nullptr || !(*config)->qosProfile()) return nullptr;
  const auto* tx = (*config)->qosProfile()->txQueueConfig().find(txQueue);
  return tx != nullptr ? *tx : nullptr;
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
    : cliConfig_(cliConfig),
      cli_(cli),
      qosProfileConfigDir_(*this, qosProfileConfigDir),
      queueManagementProfilesDir_(queueManagementProfilesDir),
      interfacesDir_(interfacesDir),
      qosProfileSm_(*this) {
  handleInitialized();
}

void QueueManagementProfileKivToOcSm::updateQueueManagementProfile(const Velmo::String& profile,
                                                                   const Qos::TxQueue& txQueue) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.of(*this) << "updateQueueManagementProfile"
                   << " profile: " << profile << " txQueue: " << txQueue;
  }
  const Velmo::String decoded = decodeQMPProfileName(profile);
  const auto tx = txQueueOf(*qosProfileConfigDir_, profile, txQueue);
  if (!tx) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line.of(*this) << "updateQueueManagementProfile"
                     << " ERROR: txQueue config not present";
    }
    return;
  }
  Config::QueueManagementProfile record(decoded);
  record.config.name = decoded;
  record.wredUniform = wredUniform(*tx);
  queueManagementProfilesDir_->queueManagementProfileIs(record);
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
  mirrorProfiles();
  sweepStaleProfiles();
}

void QueueManagementProfileKivToOcSm::mirrorProfiles() {
  for (auto i = qosProfileConfigDir_->config().iterator(); i; ++i) {
    if (decodeQMPProfileName(i.key()).empty()) continue;
    qosProfileSmIs(this, queueManagementProfilesDir_, i.currNodeNonStale()->value());
  }
}

void QueueManagementProfileKivToOcSm::sweepStaleProfiles() {
  const auto& profiles = queueManagementProfilesDir_->queueManagementProfile();
  for (auto i = profiles.iterator(); i; ++i) {
    const Velmo::String name = i.key();
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
  if (!qosProfileConfig_) return;
  handleInitialized();
  followQosProfile();
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
  for (auto i = qosProfile->txQueueConfig().iterator(); i; ++i) handleTxQueueConfig(i.key());
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
      queueManagementProfilesDir_(queueManagementProfilesDir),
      txQueueConfig_(*this, txQueueConfig) {
  handleInitialized();
}

Qos::TxQueue QueueManagementProfileQosProfileTxQueueSm::txQueue() const {
  return txQueueConfig_ ? txQueueConfig_->txQueue() : Qos::TxQueue();
}

void QueueManagementProfileQosProfileTxQueueSm::handleEcnWredConfig() {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << " profileName: " << profileName_ << " txQueue: " << txQueue();
  }
  profileSm_->queueManagementProfileKivToOcSm()->updateQueueManagementProfile(profileName_,
                                                                              txQueue());
}

void QueueManagementProfileQosProfileTxQueueSm::handleInitialized() {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line.in(*this) << " profileName: " << profileName_ << " txQueue: " << txQueue();
  }
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

}  // namespace QosOc
