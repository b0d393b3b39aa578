// Native QoS profiles into OpenConfig queue-management profiles, and the comments of tx queues into
// the attachments of those profiles to the queues of interfaces.
//
// A queue-management profile has no native object of its own. It lives as a QoS profile of the name
// `__YANG_QMP_[name]`, whose tx queue 0 holds its ECN and WRED settings: the profile says what the
// thresholds are. Who uses them is said by the comment of an interface's tx queue, and by nothing
// else: the settings of that tx queue are not read.
//
// What wakes what:
//   config of Qos::QosProfileConfigDir     QueueManagementProfileKivToOcSm::
//                                              handleProfileConfig(name)
//   qosProfile of Qos::QosProfileConfig    QueueManagementProfileQosProfileSm::
//                                              handleProfileConfig(), and re-points that
//                                              machine's chained input
//   txQueueConfig of Qos::QosProfile       QueueManagementProfileQosProfileSm::
//                                              handleTxQueueConfig(tx queue)
//   ecnConfig, wredConfig of a profile's   QueueManagementProfileQosProfileTxQueueSm::
//     Qos::TxQueueConfig                       handleEcnWredConfig()
//
//   intfConfig of Qos::Input::Config       QueueManagementProfileKivToOcSm::
//                                              handleIntfConfig(interface)
//   txQueueConfig of Qos::IntfConfig       QueueManagementProfileIntfSm::
//                                              handleTxQueueConfig(tx queue)
//   ecnConfig, wredConfig of an            QueueManagementProfileTxQueueSm::handleEcnWredConfig()
//     interface's Qos::TxQueueConfig
//   comment of Cli::Config                 QueueManagementProfileKivToOcSm::handleComment(key)
//   queueNameToTxQueueIdMap of             re-points the root's chained input
//     Qos::Input::Config
//   queueNameToTxQueueId in that input     QueueManagementProfileKivToOcSm::
//                                              handleQueueNameToTxQueue(name)
#pragma once

#include "QosOpenConfig/QosOpenConfigHelperTxQueues.h"
#include "Rok/Rok.h"
#include "models/native/Cli.h"
#include "models/native/QosInput.h"
#include "models/native/TxQueue.h"
#include "models/openconfig/Interface.h"
#include "models/openconfig/Queue.h"

// The name of the QoS profile that a queue-management profile lives in: `__YANG_QMP_[qmpName]`. A
// name ends at its first NUL.
QOS_EXPORT Velmo::String encodeQMPProfileName(Velmo::String qmpName);
// The queue-management profile in the name of a QoS profile; empty for a name of another form.
QOS_EXPORT Velmo::String decodeQMPProfileName(Velmo::String profileName);

namespace QosOc {

class QueueManagementProfileIntfSm;
class QueueManagementProfileKivToOcSm;
class QueueManagementProfileQosProfileSm;

// ===== Profiles

// The tx queue of a QoS profile. Its settings are the profile's record, which outlives them: a tx
// queue that goes leaves what it wrote.
class QueueManagementProfileQosProfileTxQueueSm final
    : public Rok::StateMachine<QueueManagementProfileQosProfileTxQueueSm> {
  using Self = QueueManagementProfileQosProfileTxQueueSm;

 public:
  static constexpr std::string_view rokTypeName = "QueueManagementProfileQosProfileTxQueueSm";
  static constexpr auto rokArguments() {
    return std::tuple{
        Rok::Argument{"profileSm", &Self::profileSm},
        Rok::Argument{"profileName", &Self::profileName},
        Rok::Argument{"queueManagementProfilesDir", &Self::queueManagementProfilesDir},
        Rok::Argument{"txQueueConfig", &Self::txQueueConfig}};
  }
  static Rok::Ptr<QueueManagementProfileQosProfileTxQueueSm>
  QueueManagementProfileQosProfileTxQueueSmIs(
      QueueManagementProfileQosProfileSm* profileSm, const Velmo::String& profileName,
      const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
      const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig);

  QueueManagementProfileQosProfileSm* profileSm() const { return profileSm_; }
  const Velmo::String& profileName() const { return profileName_; }
  // What decodeQMPProfileName makes of it.
  const Velmo::String& decodedName() const { return decodedName_; }
  const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir() const {
    return queueManagementProfilesDir_;
  }
  Rok::Ptr<Qos::TxQueueConfig const> txQueueConfig() const { return txQueueConfig_.ptr(); }
  // No tx queue without a config.
  Qos::TxQueue txQueue() const;

  // Rewrites the profile's record. Throws: RangeException for a percentage above 100; the record
  // stays as it was.
  void handleEcnWredConfig();
  void handleInitialized();

 private:
  friend Rok::StateMachine<QueueManagementProfileQosProfileTxQueueSm>;
  using RokTxQueueConfig =
      Rok::Watch<Self, Qos::TxQueueConfig,
                 Rok::On<Qos::TxQueueConfig::Attr::ecnConfig, &Self::handleEcnWredConfig>,
                 Rok::On<Qos::TxQueueConfig::Attr::wredConfig, &Self::handleEcnWredConfig>>;

  QueueManagementProfileQosProfileTxQueueSm(
      QueueManagementProfileQosProfileSm* profileSm, const Velmo::String& profileName,
      const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
      const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig);
  auto parts() { return std::tie(txQueueConfig_); }

  QueueManagementProfileQosProfileSm* profileSm_;
  Velmo::String profileName_;
  Velmo::String decodedName_;
  Rok::Ptr<Config::QueueManagementProfilesDir> queueManagementProfilesDir_;
  RokTxQueueConfig txQueueConfig_;
};

// One QoS profile, with or without a body.
class QueueManagementProfileQosProfileSm final
    : public Rok::StateMachine<QueueManagementProfileQosProfileSm> {
  using Self = QueueManagementProfileQosProfileSm;
  using TxQueueSm = QueueManagementProfileQosProfileTxQueueSm;

 public:
  static constexpr std::string_view rokTypeName = "QueueManagementProfileQosProfileSm";
  static constexpr auto rokArguments() {
    return std::tuple{
        Rok::Argument{"queueManagementProfileKivToOcSm", &Self::queueManagementProfileKivToOcSm},
        Rok::Argument{"queueManagementProfilesDir", &Self::queueManagementProfilesDir},
        Rok::Argument{"qosProfileConfig", &Self::qosProfileConfig}};
  }
  using TxQueueSmKeyFunktor =
      Rok::KeyFunktor<&TxQueueSm::txQueueConfig, &Qos::TxQueueConfig::txQueue>;
  using TxQueueSms = Rok::Children<TxQueueSm, 0xd76aa478u, TxQueueSmKeyFunktor>;

  static Rok::Ptr<QueueManagementProfileQosProfileSm> QueueManagementProfileQosProfileSmIs(
      QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
      const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
      const Rok::Ptr<Qos::QosProfileConfig const>& qosProfileConfig);

  QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm() const {
    return queueManagementProfileKivToOcSm_;
  }
  const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir() const {
    return queueManagementProfilesDir_;
  }
  Rok::Ptr<Qos::QosProfileConfig const> qosProfileConfig() const { return qosProfileConfig_.ptr(); }
  // The native name; empty without a config.
  Velmo::String profileName() const;

  const TxQueueSms& txQueueSm() const { return txQueueSm_; }
  Rok::Ptr<TxQueueSm> txQueueSmIs(
      QueueManagementProfileQosProfileSm* profileSm, const Velmo::String& profileName,
      const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
      const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig) {
    return txQueueSm_.is(profileSm, profileName, queueManagementProfilesDir, txQueueConfig);
  }
  void txQueueSmDel(const Qos::TxQueue& txQueue) { txQueueSm_.del(txQueue); }
  void txQueueSmDelAll() { txQueueSm_.delAll(); }

  // The chained input: the body that qosProfileConfig() holds. Calls no handler.
  Rok::Ptr<Qos::QosProfile const> rok_QosProfileConfig_QosProfileIn() const {
    return rok_QosProfileConfig_QosProfileIn_.ptr();
  }
  void rok_QosProfileConfig_QosProfileInIs(const Rok::Ptr<Qos::QosProfile const>& qosProfile) {
    rok_QosProfileConfig_QosProfileIn_.inputIs(qosProfile);
  }
  void rok_QosProfileConfig_QosProfileInDel() { rok_QosProfileConfig_QosProfileIn_.inputDel(); }

  // The profile has a body, or another one. A body that goes leaves everything as it is.
  void handleProfileConfig();
  // A tx queue came or went.
  // Throws: RangeException for a percentage above 100, and nothing is made or written.
  void handleTxQueueConfig(const Qos::TxQueue& txQueue);
  // Removes the profile's record.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<QueueManagementProfileQosProfileSm>;
  void followQosProfile();
  using RokQosProfileConfig = Rok::Watch<
      Self, Qos::QosProfileConfig,
      Rok::On<Qos::QosProfileConfig::Attr::qosProfile, &Self::handleProfileConfig>,
      Rok::OnEvenZombie<Qos::QosProfileConfig::Attr::qosProfile, &Self::followQosProfile>>;
  using RokRok_QosProfileConfig_QosProfileIn =
      Rok::Watch<Self, Qos::QosProfile,
                 Rok::On<Qos::QosProfile::Attr::txQueueConfig, &Self::handleTxQueueConfig>>;

  QueueManagementProfileQosProfileSm(
      QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
      const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
      const Rok::Ptr<Qos::QosProfileConfig const>& qosProfileConfig);
  auto parts() {
    return std::tie(qosProfileConfig_, txQueueSm_, rok_QosProfileConfig_QosProfileIn_);
  }
  void mirrorTxQueues();

  QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm_;
  Rok::Ptr<Config::QueueManagementProfilesDir> queueManagementProfilesDir_;
  RokQosProfileConfig qosProfileConfig_;
  TxQueueSms txQueueSm_;
  RokRok_QosProfileConfig_QosProfileIn rok_QosProfileConfig_QosProfileIn_;
};

// ===== Interfaces

// One tx queue of an interface. Writes the attachment, under the name that the tx queue's id has.
// Once written, an attachment is blanked only when its tx queue goes.
class QueueManagementProfileTxQueueSm final
    : public Rok::StateMachine<QueueManagementProfileTxQueueSm> {
  using Self = QueueManagementProfileTxQueueSm;

 public:
  static constexpr std::string_view rokTypeName = "QueueManagementProfileTxQueueSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"intfSm", &Self::intfSm},
                      Rok::Argument{"intfId", &Self::intfId},
                      Rok::Argument{"interfacesDir", &Self::interfacesDir},
                      Rok::Argument{"txQueueConfig", &Self::txQueueConfig}};
  }
  // How the root finds the tx queues that an event is about.
  using TxQueues = Helper::TxQueues<Self, 0xc1bdceeeu, 0xf57c0fafu>;

  static Rok::Ptr<QueueManagementProfileTxQueueSm> QueueManagementProfileTxQueueSmIs(
      QueueManagementProfileIntfSm* intfSm, const Nerit::IntfId& intfId,
      const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
      const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig);

  QueueManagementProfileIntfSm* intfSm() const { return intfSm_; }
  const Nerit::IntfId& intfId() const { return intfId_; }
  const Rok::Ptr<Config::InterfacesDir>& interfacesDir() const { return interfacesDir_; }
  Rok::Ptr<Qos::TxQueueConfig const> txQueueConfig() const { return txQueueConfig_.ptr(); }
  // No tx queue without a config.
  Qos::TxQueue txQueue() const;
  const Velmo::String& commentKey() const { return entry_.commentKey(); }
  TxQueues::Entry& entry() { return entry_; }
  // The comment's text; empty without a comment.
  Velmo::String comment() const;
  Helper::Attachment& attachment() { return attachment_; }

  // Looks at the comment again.
  void handleEcnWredConfig();
  // Blanks the attachment. Creates nothing.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<QueueManagementProfileTxQueueSm>;
  using RokTxQueueConfig =
      Rok::Watch<Self, Qos::TxQueueConfig,
                 Rok::On<Qos::TxQueueConfig::Attr::ecnConfig, &Self::handleEcnWredConfig>,
                 Rok::On<Qos::TxQueueConfig::Attr::wredConfig, &Self::handleEcnWredConfig>>;

  QueueManagementProfileTxQueueSm(QueueManagementProfileIntfSm* intfSm, const Nerit::IntfId& intfId,
                                  const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
                                  const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig);
  auto parts() { return std::tie(txQueueConfig_); }
  QueueManagementProfileKivToOcSm& root() const;

  QueueManagementProfileIntfSm* intfSm_;
  Nerit::IntfId intfId_;
  Rok::Ptr<Config::InterfacesDir> interfacesDir_;
  RokTxQueueConfig txQueueConfig_;
  TxQueues::Entry entry_;
  Helper::Attachment attachment_;
};

// One interface: mirrors its tx queues.
class QueueManagementProfileIntfSm final : public Rok::StateMachine<QueueManagementProfileIntfSm> {
  using Self = QueueManagementProfileIntfSm;
  using TxQueueSm = QueueManagementProfileTxQueueSm;

 public:
  static constexpr std::string_view rokTypeName = "QueueManagementProfileIntfSm";
  static constexpr auto rokArguments() {
    return std::tuple{
        Rok::Argument{"queueManagementProfileKivToOcSm", &Self::queueManagementProfileKivToOcSm},
        Rok::Argument{"interfacesDir", &Self::interfacesDir},
        Rok::Argument{"intfConfig", &Self::intfConfig}};
  }
  using TxQueueSmKeyFunktor =
      Rok::KeyFunktor<&TxQueueSm::txQueueConfig, &Qos::TxQueueConfig::txQueue>;
  using TxQueueSms = Rok::Children<TxQueueSm, 0x4787c62au, TxQueueSmKeyFunktor>;

  static Rok::Ptr<QueueManagementProfileIntfSm> QueueManagementProfileIntfSmIs(
      QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
      const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
      const Rok::Ptr<Qos::IntfConfig const>& intfConfig);

  QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm() const {
    return queueManagementProfileKivToOcSm_;
  }
  const Rok::Ptr<Config::InterfacesDir>& interfacesDir() const { return interfacesDir_; }
  Rok::Ptr<Qos::IntfConfig const> intfConfig() const { return intfConfig_.ptr(); }
  // The interface of no name without a config.
  Nerit::IntfId intfId() const;

  const TxQueueSms& txQueueSm() const { return txQueueSm_; }
  Rok::Ptr<TxQueueSm> txQueueSmIs(QueueManagementProfileIntfSm* intfSm, const Nerit::IntfId& intfId,
                                  const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
                                  const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig) {
    return txQueueSm_.is(intfSm, intfId, interfacesDir, txQueueConfig);
  }
  void txQueueSmDel(const Qos::TxQueue& txQueue) { txQueueSm_.del(txQueue); }
  void txQueueSmDelAll() { txQueueSm_.delAll(); }

  // A tx queue came or went.
  void handleTxQueueConfig(const Qos::TxQueue& txQueue);
  // Withdraws all tx queues.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<QueueManagementProfileIntfSm>;
  using RokIntfConfig =
      Rok::Watch<Self, Qos::IntfConfig,
                 Rok::On<Qos::IntfConfig::Attr::txQueueConfig, &Self::handleTxQueueConfig>>;

  QueueManagementProfileIntfSm(QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
                               const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
                               const Rok::Ptr<Qos::IntfConfig const>& intfConfig);
  auto parts() { return std::tie(intfConfig_, txQueueSm_); }

  QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm_;
  Rok::Ptr<Config::InterfacesDir> interfacesDir_;
  RokIntfConfig intfConfig_;
  TxQueueSms txQueueSm_;
};

// ===== The root

// Mirrors the QoS profiles and the interfaces, writes for both, and at start sweeps the profiles
// that no QoS profile stands for. Attachments are not swept.
class QueueManagementProfileKivToOcSm final
    : public Rok::StateMachine<QueueManagementProfileKivToOcSm> {
  using Self = QueueManagementProfileKivToOcSm;
  using IntfSm = QueueManagementProfileIntfSm;
  using QosProfileSm = QueueManagementProfileQosProfileSm;
  using NameToTxQueueIdMap = Qos::QueueNameToTxQueueIdMap;

 public:
  static constexpr std::string_view rokTypeName = "QueueManagementProfileKivToOcSm";
  static constexpr auto rokArguments() {
    return std::tuple{
        Rok::Argument{"cliConfig", &Self::cliConfig}, Rok::Argument{"cli", &Self::cli},
        Rok::Argument{"qosProfileConfigDir", &Self::qosProfileConfigDir},
        Rok::Argument{"queueManagementProfilesDir", &Self::queueManagementProfilesDir},
        Rok::Argument{"interfacesDir", &Self::interfacesDir}};
  }
  using QueueNames = Rok::ValueMap<0xa8304613u, Qos::TxQueueId, Qos::QueueName>;
  using IntfSmKeyFunktor = Rok::KeyFunktor<&IntfSm::intfConfig, &Qos::IntfConfig::intfId>;
  using IntfSms = Rok::Children<IntfSm, 0xfd469501u, IntfSmKeyFunktor>;
  using QosProfileSmKeyFunktor =
      Rok::KeyFunktor<&QosProfileSm::qosProfileConfig, &Qos::QosProfileConfig::name>;
  using QosProfileSms = Rok::Children<QosProfileSm, 0x242070dbu, QosProfileSmKeyFunktor>;
  using TxQueues = QueueManagementProfileTxQueueSm::TxQueues;

  static Rok::Ptr<QueueManagementProfileKivToOcSm> QueueManagementProfileKivToOcSmIs(
      const Rok::Ptr<Qos::Input::Config const>& cliConfig, const Rok::Ptr<Cli::Config const>& cli,
      const Rok::Ptr<Qos::QosProfileConfigDir const>& qosProfileConfigDir,
      const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
      const Rok::Ptr<Config::InterfacesDir>& interfacesDir);

  Rok::Ptr<Qos::Input::Config const> cliConfig() const { return cliConfig_.ptr(); }
  Rok::Ptr<Cli::Config const> cli() const { return cli_.ptr(); }
  Rok::Ptr<Qos::QosProfileConfigDir const> qosProfileConfigDir() const {
    return qosProfileConfigDir_.ptr();
  }
  const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir() const {
    return queueManagementProfilesDir_;
  }
  const Rok::Ptr<Config::InterfacesDir>& interfacesDir() const { return interfacesDir_; }

  // The map of queue names turned round, as far as it has been told. A missing id reads as the
  // empty name. Several ids may hold one name.
  const QueueNames::Map& txQueueIdToQueueNameMap() const { return queueNames_.map(); }
  Qos::QueueName txQueueIdToQueueNameMap(Qos::TxQueueId id) const { return queueNames_.get(id); }
  void txQueueIdToQueueNameMapIs(Qos::TxQueueId id, const Qos::QueueName& name) {
    queueNames_.is(id, name);
  }
  void txQueueIdToQueueNameMapDel(Qos::TxQueueId id) { queueNames_.del(id); }
  void txQueueIdToQueueNameMapDelAll() { queueNames_.delAll(); }

  const IntfSms& intfSm() const { return intfSm_; }
  Rok::Ptr<IntfSm> intfSmIs(QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
                            const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
                            const Rok::Ptr<Qos::IntfConfig const>& intfConfig) {
    return intfSm_.is(queueManagementProfileKivToOcSm, interfacesDir, intfConfig);
  }
  void intfSmDel(const Nerit::IntfId& intfId) { intfSm_.del(intfId); }
  void intfSmDelAll() { intfSm_.delAll(); }

  const QosProfileSms& qosProfileSm() const { return qosProfileSm_; }
  Rok::Ptr<QosProfileSm> qosProfileSmIs(
      QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
      const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
      const Rok::Ptr<Qos::QosProfileConfig const>& qosProfileConfig) {
    return qosProfileSm_.is(queueManagementProfileKivToOcSm, queueManagementProfilesDir,
                            qosProfileConfig);
  }
  void qosProfileSmDel(const Velmo::String& name) { qosProfileSm_.del(name); }
  void qosProfileSmDelAll() { qosProfileSm_.delAll(); }

  // The chained input: the map of queue names that cliConfig() holds. Calls no handler, so another
  // map takes effect only where it changes.
  Rok::Ptr<NameToTxQueueIdMap const> rok_CliConfig_QueueNameToTxQueueIdMapIn() const {
    return rok_CliConfig_QueueNameToTxQueueIdMapIn_.ptr();
  }
  void rok_CliConfig_QueueNameToTxQueueIdMapInIs(const Rok::Ptr<NameToTxQueueIdMap const>& map) {
    rok_CliConfig_QueueNameToTxQueueIdMapIn_.inputIs(map);
  }
  void rok_CliConfig_QueueNameToTxQueueIdMapInDel() {
    rok_CliConfig_QueueNameToTxQueueIdMapIn_.inputDel();
  }

  // The tx queues of all interfaces, where they enter themselves.
  const TxQueues& txQueues() const { return txQueues_; }
  // The comment that was told of last.
  Helper::CommentMemo& commentMemo() { return commentMemo_; }

  // An interface came or went.
  void handleIntfConfig(const Nerit::IntfId& intfId);
  // A comment changed. One that names no profile, or that went, changes nothing.
  void handleComment(const Velmo::String& key);
  // A queue name got an id, or lost it. The one writes the attachments of that id's tx queues, the
  // other only forgets the name: the attachments stay.
  void handleQueueNameToTxQueue(const Velmo::String& name);
  void rok_handleCliConfig_queueNameToTxQueueIdMap_queueNameToTxQueueId(const Qos::QueueName& key);
  // Writes the attachment that the text of a tx queue's comment names, if it names one and the tx
  // queue's id has a name. Whether there is such a profile doesn't matter.
  void updateIntfQueueManagementProfile(const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue,
                                        const Velmo::String& comment);
  // Writes the record of a profile, known by its native name, from the settings of a tx queue of
  // it. Without that tx queue nothing is written.
  // Throws: RangeException for a percentage above 100; the record stays as it was.
  void updateQueueManagementProfile(const Velmo::String& profile, const Qos::TxQueue& txQueue);
  // A QoS profile came or went. Throws: as QueueManagementProfileQosProfileSm.
  void handleProfileConfig(const Velmo::String& name);
  void handleInitialized();

 private:
  friend Rok::StateMachine<QueueManagementProfileKivToOcSm>;
  friend QueueManagementProfileQosProfileTxQueueSm;
  friend QueueManagementProfileTxQueueSm;
  void followQueueNameToTxQueueIdMap();
  using RokCliConfig =
      Rok::Watch<Self, Qos::Input::Config,
                 Rok::On<Qos::Input::Config::Attr::intfConfig, &Self::handleIntfConfig>,
                 Rok::On<Qos::Input::Config::Attr::queueNameToTxQueueIdMap,
                         &Self::followQueueNameToTxQueueIdMap>>;
  using RokCli =
      Rok::Watch<Self, Cli::Config, Rok::On<Cli::Config::Attr::comment, &Self::handleComment>>;
  using RokQosProfileConfigDir =
      Rok::Watch<Self, Qos::QosProfileConfigDir,
                 Rok::On<Qos::QosProfileConfigDir::Attr::config, &Self::handleProfileConfig>>;
  using RokRok_CliConfig_QueueNameToTxQueueIdMapIn =
      Rok::Watch<Self, NameToTxQueueIdMap,
                 Rok::On<NameToTxQueueIdMap::Attr::queueNameToTxQueueId,
                         &Self::rok_handleCliConfig_queueNameToTxQueueIdMap_queueNameToTxQueueId>>;

  QueueManagementProfileKivToOcSm(
      const Rok::Ptr<Qos::Input::Config const>& cliConfig, const Rok::Ptr<Cli::Config const>& cli,
      const Rok::Ptr<Qos::QosProfileConfigDir const>& qosProfileConfigDir,
      const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
      const Rok::Ptr<Config::InterfacesDir>& interfacesDir);
  auto parts() {
    return std::tie(cliConfig_, cli_, qosProfileConfigDir_, intfSm_, qosProfileSm_,
                    rok_CliConfig_QueueNameToTxQueueIdMapIn_);
  }
  void readQueueNames();
  void mirrorInterfaces();
  void mirrorProfiles();
  void sweepStaleProfiles();
  void forgetQueueName(const Velmo::String& name);
  void update(QueueManagementProfileTxQueueSm& queue, const Velmo::String& comment);
  void updateAttachment(const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue,
                        const Velmo::String& comment, Helper::Attachment& attachment);
  void update(const QueueManagementProfileQosProfileTxQueueSm& queue);
  void updateRecord(const Velmo::String& profile, const Velmo::String& decoded,
                    const Qos::TxQueue& txQueue);

  RokCliConfig cliConfig_;
  RokCli cli_;
  RokQosProfileConfigDir qosProfileConfigDir_;
  Rok::Ptr<Config::QueueManagementProfilesDir> queueManagementProfilesDir_;
  Rok::Ptr<Config::InterfacesDir> interfacesDir_;
  QueueNames queueNames_;
  // So that a comment and a queue name find their tx queues without a walk over all of the device.
  TxQueues txQueues_;
  Helper::CommentMemo commentMemo_;
  IntfSms intfSm_;
  QosProfileSms qosProfileSm_;
  RokRok_CliConfig_QueueNameToTxQueueIdMapIn rok_CliConfig_QueueNameToTxQueueIdMapIn_;
};

// ===== Factories. Each returns when its whole tree is built and the output is in line.
//
// The argument named after "Deaf without" may be null: the machine then does nothing, for good.
// What is required must be there.

// Deaf without cliConfig. Requires: all other arguments.
// Throws: MutatorArgNullPointerException "queueNameToTxQueueIdMap" when the names of queues are not
// mounted in cliConfig; nothing is written then. RangeException as handleProfileConfig; what was
// written before stays.
QOS_EXPORT Rok::Ptr<QueueManagementProfileKivToOcSm> queueManagementProfileKivToOcSmFactory(
    const Rok::Ptr<Qos::Input::Config const>& cliConfig, const Rok::Ptr<Cli::Config const>& cli,
    const Rok::Ptr<Qos::QosProfileConfigDir const>& qosProfileConfigDir,
    const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir);
// Deaf without qosProfileConfig. Requires: queueManagementProfilesDir, and
// queueManagementProfileKivToOcSm, which outlives the machine. Throws: as handleTxQueueConfig.
QOS_EXPORT Rok::Ptr<QueueManagementProfileQosProfileSm> queueManagementProfileQosProfileSmFactory(
    QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
    const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
    const Rok::Ptr<Qos::QosProfileConfig const>& qosProfileConfig);
// Deaf without txQueueConfig. Requires: queueManagementProfilesDir, and profileSm, which outlives
// the machine. Throws: as handleEcnWredConfig.
QOS_EXPORT Rok::Ptr<QueueManagementProfileQosProfileTxQueueSm>
queueManagementProfileQosProfileTxQueueSmFactory(
    QueueManagementProfileQosProfileSm* profileSm, const Velmo::String& profileName,
    const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
    const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig);
// Deaf without intfConfig. Requires: interfacesDir, and queueManagementProfileKivToOcSm, which
// outlives the machine.
QOS_EXPORT Rok::Ptr<QueueManagementProfileIntfSm> queueManagementProfileIntfSmFactory(
    QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    const Rok::Ptr<Qos::IntfConfig const>& intfConfig);
// Deaf without txQueueConfig. Requires: interfacesDir, and intfSm, which outlives the machine.
QOS_EXPORT Rok::Ptr<QueueManagementProfileTxQueueSm> queueManagementProfileTxQueueSmFactory(
    QueueManagementProfileIntfSm* intfSm, const Nerit::IntfId& intfId,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir,
    const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig);

}  // namespace QosOc
