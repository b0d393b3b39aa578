// Native QoS profiles into OpenConfig queue-management profiles, and the comments of tx queues into
// the attachments of those profiles to the queues of interfaces.
//
// A queue-management profile has no native object of its own. It is kept as a QoS profile of the
// name `__YANG_QMP_[name]`, whose tx queue 0 holds its ECN and WRED settings: the profile says what
// the thresholds are. Which queues use them is said by the comments of the interfaces' tx queues,
// and by nothing else: the settings of those tx queues are not read.
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

// The name of the QoS profile that a queue-management profile is kept in: `__YANG_QMP_[qmpName]`. A
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
class QOS_EXPORT QueueManagementProfileQosProfileTxQueueSm final
    : public Rok::StateMachine<QueueManagementProfileQosProfileTxQueueSm> {
 public:
  static constexpr std::string_view rokTypeName = "QueueManagementProfileQosProfileTxQueueSm";
  static constexpr auto rokArguments() {
    return std::tuple{
        Rok::Argument{"profileSm", &Self::profileSm},
        Rok::Argument{"profileName", &Self::profileName},
        Rok::Argument{"queueManagementProfilesDir", &Self::queueManagementProfilesDir},
        Rok::Argument{"txQueueConfig", &Self::txQueueConfig}};
  }
  static auto QueueManagementProfileQosProfileTxQueueSmIs(const auto&... arguments) {
    return create(arguments...);
  }

  QueueManagementProfileQosProfileSm* profileSm() const { return profileSm_; }
  const Velmo::String& profileName() const { return profileName_; }
  // What decodeQMPProfileName makes of it.
  const Velmo::String& decodedName() const { return decodedName_; }
  Rok::Out<Config::QueueManagementProfilesDir> queueManagementProfilesDir() const {
    return queueManagementProfilesDir_;
  }
  Rok::Ptr<Qos::TxQueueConfig const> txQueueConfig() const { return txQueueConfig_.ptr(); }
  // No tx queue without a config.
  Qos::TxQueue txQueue() const { return txQueueConfig_.read(&Qos::TxQueueConfig::txQueue); }

  // Rewrites the profile's record. Throws: RangeException for a percentage above 100; the record
  // stays as it was.
  void handleEcnWredConfig();
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using RokTxQueueConfig =
      Rok::Watch<Self, Qos::TxQueueConfig,
                 Rok::On<Qos::TxQueueConfig::Attr::ecnConfig, &Self::handleEcnWredConfig>,
                 Rok::On<Qos::TxQueueConfig::Attr::wredConfig, &Self::handleEcnWredConfig>>;

  QueueManagementProfileQosProfileTxQueueSm(
      QueueManagementProfileQosProfileSm* profileSm, const Velmo::String& profileName,
      Rok::Out<Config::QueueManagementProfilesDir> queueManagementProfilesDir,
      Rok::In<Qos::TxQueueConfig> txQueueConfig);
  auto parts() { return std::tie(txQueueConfig_); }

  QueueManagementProfileQosProfileSm* profileSm_;
  Velmo::String profileName_;
  Velmo::String decodedName_;
  Rok::Ptr<Config::QueueManagementProfilesDir> queueManagementProfilesDir_;
  RokTxQueueConfig txQueueConfig_;
};

// One QoS profile, with or without a body.
class QOS_EXPORT QueueManagementProfileQosProfileSm final
    : public Rok::StateMachine<QueueManagementProfileQosProfileSm> {
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

  static auto QueueManagementProfileQosProfileSmIs(const auto&... arguments) {
    return create(arguments...);
  }

  QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm() const {
    return queueManagementProfileKivToOcSm_;
  }
  Rok::Out<Config::QueueManagementProfilesDir> queueManagementProfilesDir() const {
    return queueManagementProfilesDir_;
  }
  Rok::Ptr<Qos::QosProfileConfig const> qosProfileConfig() const { return qosProfileConfig_.ptr(); }
  // The native name; empty without a config.
  Velmo::String profileName() const { return qosProfileConfig_.read(&Qos::QosProfileConfig::name); }

  const TxQueueSms& txQueueSm() const { return txQueueSm_; }
  auto txQueueSmIs(const auto&... arguments) { return txQueueSm_.is(arguments...); }
  void txQueueSmDel(const Qos::TxQueue& txQueue) { txQueueSm_.del(txQueue); }
  void txQueueSmDelAll() { txQueueSm_.delAll(); }

  // The chained input: the body that qosProfileConfig() holds. Calls no handler.
  auto rok_QosProfileConfig_QosProfileIn() const { return qosProfileIn_.ptr(); }
  void rok_QosProfileConfig_QosProfileInIs(Rok::In<Qos::QosProfile> qosProfile) {
    qosProfileIn_.inputIs(qosProfile);
  }
  void rok_QosProfileConfig_QosProfileInDel() { qosProfileIn_.inputDel(); }

  // The profile has a body, or another one. A body that goes leaves everything as it is.
  void handleProfileConfig();
  // A tx queue came or went.
  // Throws: RangeException for a percentage above 100, and nothing is made or written.
  void handleTxQueueConfig(const Qos::TxQueue& txQueue);
  // Removes the profile's record.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  void followQosProfile() { qosProfileIn_.follow(*this); }
  using RokQosProfileConfig = Rok::Watch<
      Self, Qos::QosProfileConfig,
      Rok::On<Qos::QosProfileConfig::Attr::qosProfile, &Self::handleProfileConfig>,
      Rok::OnEvenZombie<Qos::QosProfileConfig::Attr::qosProfile, &Self::followQosProfile>>;

  QueueManagementProfileQosProfileSm(
      QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
      Rok::Out<Config::QueueManagementProfilesDir> queueManagementProfilesDir,
      Rok::In<Qos::QosProfileConfig> qosProfileConfig);
  auto parts() { return std::tie(qosProfileConfig_, txQueueSm_, qosProfileIn_); }
  void mirrorTxQueues();

  QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm_;
  Rok::Ptr<Config::QueueManagementProfilesDir> queueManagementProfilesDir_;
  RokQosProfileConfig qosProfileConfig_;
  TxQueueSms txQueueSm_;
  using RokQosProfileIn =
      Rok::ChainedWatch<Self, &Self::qosProfileConfig_, &Qos::QosProfileConfig::qosProfile,
                        Rok::On<Qos::QosProfile::Attr::txQueueConfig, &Self::handleTxQueueConfig>>;
  RokQosProfileIn qosProfileIn_;
};

// ===== Interfaces

// One tx queue of an interface. Writes the attachment, under the name that the tx queue's id has.
// Once written, an attachment is blanked only when its tx queue goes.
class QOS_EXPORT QueueManagementProfileTxQueueSm final
    : public Rok::StateMachine<QueueManagementProfileTxQueueSm> {
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

  static auto QueueManagementProfileTxQueueSmIs(const auto&... arguments) {
    return create(arguments...);
  }

  QueueManagementProfileIntfSm* intfSm() const { return intfSm_; }
  const Nerit::IntfId& intfId() const { return intfId_; }
  Rok::Out<Config::InterfacesDir> interfacesDir() const { return interfacesDir_; }
  Rok::Ptr<Qos::TxQueueConfig const> txQueueConfig() const { return txQueueConfig_.ptr(); }
  // No tx queue without a config.
  Qos::TxQueue txQueue() const { return txQueueConfig_.read(&Qos::TxQueueConfig::txQueue); }
  // The key of the comment of this tx queue.
  const Velmo::String& commentKey() const { return entry_.memo().commentKey(); }
  // Its place in the root's indexes.
  TxQueues::Entry& entry() { return entry_; }
  // The comment's text; empty without a comment.
  Velmo::String comment() const;

  // Looks at the comment again.
  void handleEcnWredConfig();
  // Blanks the attachment. Creates nothing.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using RokTxQueueConfig =
      Rok::Watch<Self, Qos::TxQueueConfig,
                 Rok::On<Qos::TxQueueConfig::Attr::ecnConfig, &Self::handleEcnWredConfig>,
                 Rok::On<Qos::TxQueueConfig::Attr::wredConfig, &Self::handleEcnWredConfig>>;

  QueueManagementProfileTxQueueSm(QueueManagementProfileIntfSm* intfSm, const Nerit::IntfId& intfId,
                                  Rok::Out<Config::InterfacesDir> interfacesDir,
                                  Rok::In<Qos::TxQueueConfig> txQueueConfig);
  auto parts() { return std::tie(txQueueConfig_); }
  QueueManagementProfileKivToOcSm& root() const;

  QueueManagementProfileIntfSm* intfSm_;
  Nerit::IntfId intfId_;
  Rok::Ptr<Config::InterfacesDir> interfacesDir_;
  RokTxQueueConfig txQueueConfig_;
  TxQueues::Entry entry_;
};

// One interface: mirrors its tx queues.
class QOS_EXPORT QueueManagementProfileIntfSm final
    : public Rok::StateMachine<QueueManagementProfileIntfSm> {
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

  static auto QueueManagementProfileIntfSmIs(const auto&... arguments) {
    return create(arguments...);
  }

  QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm() const {
    return queueManagementProfileKivToOcSm_;
  }
  Rok::Out<Config::InterfacesDir> interfacesDir() const { return interfacesDir_; }
  Rok::Ptr<Qos::IntfConfig const> intfConfig() const { return intfConfig_.ptr(); }
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

  QueueManagementProfileIntfSm(QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
                               Rok::Out<Config::InterfacesDir> interfacesDir,
                               Rok::In<Qos::IntfConfig> intfConfig);
  auto parts() { return std::tie(intfConfig_, txQueueSm_); }

  QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm_;
  Rok::Ptr<Config::InterfacesDir> interfacesDir_;
  RokIntfConfig intfConfig_;
  TxQueueSms txQueueSm_;
};

// ===== The root

// Mirrors the QoS profiles and the interfaces, writes for both, and at start sweeps the profiles
// that no QoS profile stands for. Attachments are not swept.
class QOS_EXPORT QueueManagementProfileKivToOcSm final
    : public Rok::StateMachine<QueueManagementProfileKivToOcSm> {
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

  static auto QueueManagementProfileKivToOcSmIs(const auto&... arguments) {
    return create(arguments...);
  }

  Rok::Ptr<Qos::Input::Config const> cliConfig() const { return cliConfig_.ptr(); }
  Rok::Ptr<Cli::Config const> cli() const { return cli_.ptr(); }
  Rok::Ptr<Qos::QosProfileConfigDir const> qosProfileConfigDir() const {
    return qosProfileConfigDir_.ptr();
  }
  Rok::Out<Config::QueueManagementProfilesDir> queueManagementProfilesDir() const {
    return queueManagementProfilesDir_;
  }
  Rok::Out<Config::InterfacesDir> interfacesDir() const { return interfacesDir_; }

  // The queue names by id, as the start and the notifications gave them. A missing id reads as the
  // empty name. Several ids may hold one name.
  const QueueNames::Map& txQueueIdToQueueNameMap() const { return queueNames_.map(); }
  Qos::QueueName txQueueIdToQueueNameMap(Qos::TxQueueId id) const { return queueNames_.get(id); }
  void txQueueIdToQueueNameMapIs(Qos::TxQueueId id, const Qos::QueueName& name) {
    queueNames_.is(id, name);
  }
  void txQueueIdToQueueNameMapDel(Qos::TxQueueId id) { queueNames_.del(id); }
  void txQueueIdToQueueNameMapDelAll() { queueNames_.delAll(); }

  const IntfSms& intfSm() const { return intfSm_; }
  auto intfSmIs(const auto&... arguments) { return intfSm_.is(arguments...); }
  void intfSmDel(const Nerit::IntfId& intfId) { intfSm_.del(intfId); }
  void intfSmDelAll() { intfSm_.delAll(); }

  const QosProfileSms& qosProfileSm() const { return qosProfileSm_; }
  auto qosProfileSmIs(const auto&... arguments) { return qosProfileSm_.is(arguments...); }
  void qosProfileSmDel(const Velmo::String& name) { qosProfileSm_.del(name); }
  void qosProfileSmDelAll() { qosProfileSm_.delAll(); }

  // The chained input: the map of queue names that cliConfig() holds. Calls no handler, so another
  // map takes effect only where it changes.
  auto rok_CliConfig_QueueNameToTxQueueIdMapIn() const { return nameToTxQueueIdMapIn_.ptr(); }
  void rok_CliConfig_QueueNameToTxQueueIdMapInIs(Rok::In<NameToTxQueueIdMap> map) {
    nameToTxQueueIdMapIn_.inputIs(map);
  }
  void rok_CliConfig_QueueNameToTxQueueIdMapInDel() { nameToTxQueueIdMapIn_.inputDel(); }

  // The tx queues of all interfaces, where they enter themselves.
  TxQueues& txQueues() { return txQueues_; }

  // An interface came or went.
  void handleIntfConfig(const Nerit::IntfId& intfId);
  // A comment changed. One that names no profile, or that went, changes nothing.
  void handleComment(const Velmo::String& key);
  // A queue name got an id, or lost it. The one writes the attachments of that id's tx queues, the
  // other only forgets the name: the attachments stay.
  void handleQueueNameToTxQueue(const Velmo::String& name);
  void rok_handleCliConfig_queueNameToTxQueueIdMap_queueNameToTxQueueId(const Qos::QueueName& key) {
    handleQueueNameToTxQueue(key.name);
  }
  // Writes the attachment that the text of a tx queue's comment names, if it names one and the tx
  // queue's id has a name. Whether there is such a profile doesn't matter.
  void updateIntfQueueManagementProfile(const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue,
                                        const Velmo::String& comment);
  // The same, with what is kept of the tx queue.
  void updateIntfQueueManagementProfile(const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue,
                                        const Velmo::String& comment, Helper::TxQueueMemo& memo);
  // Writes the record of a profile, known by its native name, from the settings of a tx queue of
  // it. Without that tx queue nothing is written.
  // Throws: RangeException for a percentage above 100; the record stays as it was.
  void updateQueueManagementProfile(const Velmo::String& profile, const Qos::TxQueue& txQueue);
  // The same, with what decodeQMPProfileName makes of the name.
  void updateQueueManagementProfile(const Velmo::String& profile, const Velmo::String& decoded,
                                    const Qos::TxQueue& txQueue);
  // A QoS profile came or went. Throws: as QueueManagementProfileQosProfileSm.
  void handleProfileConfig(const Velmo::String& name);
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  void followQueueNameToTxQueueIdMap() { nameToTxQueueIdMapIn_.follow(*this); }
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

  QueueManagementProfileKivToOcSm(
      Rok::In<Qos::Input::Config> cliConfig, Rok::In<Cli::Config> cli,
      Rok::In<Qos::QosProfileConfigDir> qosProfileConfigDir,
      Rok::Out<Config::QueueManagementProfilesDir> queueManagementProfilesDir,
      Rok::Out<Config::InterfacesDir> interfacesDir);
  auto parts() {
    return std::tie(cliConfig_, cli_, qosProfileConfigDir_, intfSm_, qosProfileSm_,
                    nameToTxQueueIdMapIn_);
  }
  void readQueueNames();
  void mirrorInterfaces();
  void mirrorProfiles();
  void sweepStaleProfiles();
  void forgetQueueName(const Velmo::String& name);

  RokCliConfig cliConfig_;
  RokCli cli_;
  RokQosProfileConfigDir qosProfileConfigDir_;
  Rok::Ptr<Config::QueueManagementProfilesDir> queueManagementProfilesDir_;
  Rok::Ptr<Config::InterfacesDir> interfacesDir_;
  QueueNames queueNames_;
  // So that a comment and a queue name find their tx queues without a walk over all of the device.
  TxQueues txQueues_;
  IntfSms intfSm_;
  QosProfileSms qosProfileSm_;
  using RokNameToTxQueueIdMapIn = Rok::ChainedWatch<
      Self, &Self::cliConfig_, &Qos::Input::Config::queueNameToTxQueueIdMap,
      Rok::On<NameToTxQueueIdMap::Attr::queueNameToTxQueueId,
              &Self::rok_handleCliConfig_queueNameToTxQueueIdMap_queueNameToTxQueueId>>;
  RokNameToTxQueueIdMapIn nameToTxQueueIdMapIn_;
};

// ===== Factories

// Deaf without cliConfig. Requires: all other arguments.
// Throws: MutatorArgNullPointerException "queueNameToTxQueueIdMap" when the names of queues are not
// mounted in cliConfig; nothing is written then. RangeException as handleProfileConfig; what was
// written before stays.
QOS_EXPORT Rok::Factory<QueueManagementProfileKivToOcSm> queueManagementProfileKivToOcSmFactory;
// Deaf without qosProfileConfig. Requires: queueManagementProfilesDir, and
// queueManagementProfileKivToOcSm, which outlives the machine. Throws: as handleTxQueueConfig.
QOS_EXPORT Rok::Factory<QueueManagementProfileQosProfileSm>
    queueManagementProfileQosProfileSmFactory;
// Deaf without txQueueConfig. Requires: queueManagementProfilesDir, and profileSm, which outlives
// the machine. Throws: as handleEcnWredConfig.
QOS_EXPORT Rok::Factory<QueueManagementProfileQosProfileTxQueueSm>
    queueManagementProfileQosProfileTxQueueSmFactory;
// Deaf without intfConfig. Requires: interfacesDir, and queueManagementProfileKivToOcSm, which
// outlives the machine.
QOS_EXPORT Rok::Factory<QueueManagementProfileIntfSm> queueManagementProfileIntfSmFactory;
// Deaf without txQueueConfig. Requires: interfacesDir, and intfSm, which outlives the machine.
QOS_EXPORT Rok::Factory<QueueManagementProfileTxQueueSm> queueManagementProfileTxQueueSmFactory;

}  // namespace QosOc
