// Native QoS profiles into OpenConfig queue-management profiles.
//
// A queue-management profile has no native object of its own. It lives as a QoS profile of the name
// `__YANG_QMP_[name]`, whose tx queue 0 holds its ECN and WRED settings. The profile says what the
// thresholds are.
//
// What wakes what:
//   config of Qos::QosProfileConfigDir QueueManagementProfileKivToOcSm::handleProfileConfig(name)
//   qosProfile of Qos::QosProfileConfig QueueManagementProfileQosProfileSm::handleProfileConfig(),
//                                              and re-points that machine's chained input
//   txQueueConfig of Qos::QosProfile       QueueManagementProfileQosProfileSm::
//                                              handleTxQueueConfig(tx queue)
//   ecnConfig, wredConfig of a profile's   QueueManagementProfileQosProfileTxQueueSm::
//     Qos::TxQueueConfig                       handleEcnWredConfig()
#pragma once

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
  // Requires: profileSm, which outlives the machine. Throws: see handleEcnWredConfig.
  static Rok::Ptr<QueueManagementProfileQosProfileTxQueueSm>
  QueueManagementProfileQosProfileTxQueueSmIs(
      QueueManagementProfileQosProfileSm* profileSm, const Velmo::String& profileName,
      const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
      const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig);

  QueueManagementProfileQosProfileSm* profileSm() const { return profileSm_; }
  const Velmo::String& profileName() const { return profileName_; }
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

  // Requires: queueManagementProfileKivToOcSm, which outlives the machine. Throws: as
  // handleTxQueueConfig.
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

// ===== The root

// Mirrors the QoS profiles, and writes for the whole tree.
class QueueManagementProfileKivToOcSm final
    : public Rok::StateMachine<QueueManagementProfileKivToOcSm> {
  using Self = QueueManagementProfileKivToOcSm;
  using QosProfileSm = QueueManagementProfileQosProfileSm;

 public:
  static constexpr std::string_view rokTypeName = "QueueManagementProfileKivToOcSm";
  static constexpr auto rokArguments() {
    return std::tuple{
        Rok::Argument{"cliConfig", &Self::cliConfig}, Rok::Argument{"cli", &Self::cli},
        Rok::Argument{"qosProfileConfigDir", &Self::qosProfileConfigDir},
        Rok::Argument{"queueManagementProfilesDir", &Self::queueManagementProfilesDir},
        Rok::Argument{"interfacesDir", &Self::interfacesDir}};
  }
  using QosProfileSmKeyFunktor =
      Rok::KeyFunktor<&QosProfileSm::qosProfileConfig, &Qos::QosProfileConfig::name>;
  using QosProfileSms = Rok::Children<QosProfileSm, 0x242070dbu, QosProfileSmKeyFunktor>;

  // Requires: all inputs.
  // Throws: as handleProfileConfig; what was written before stays.
  static Rok::Ptr<QueueManagementProfileKivToOcSm> QueueManagementProfileKivToOcSmIs(
      const Rok::Ptr<Qos::Input::Config const>& cliConfig, const Rok::Ptr<Cli::Config const>& cli,
      const Rok::Ptr<Qos::QosProfileConfigDir const>& qosProfileConfigDir,
      const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
      const Rok::Ptr<Config::InterfacesDir>& interfacesDir);

  const Rok::Ptr<Qos::Input::Config const>& cliConfig() const { return cliConfig_; }
  const Rok::Ptr<Cli::Config const>& cli() const { return cli_; }
  Rok::Ptr<Qos::QosProfileConfigDir const> qosProfileConfigDir() const {
    return qosProfileConfigDir_.ptr();
  }
  const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir() const {
    return queueManagementProfilesDir_;
  }
  const Rok::Ptr<Config::InterfacesDir>& interfacesDir() const { return interfacesDir_; }

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

  // Writes the record of a profile, known by its native name, from the settings of a tx queue of
  // it. Without that tx queue nothing is written.
  // Throws: RangeException for a percentage above 100; the record stays as it was.
  void updateQueueManagementProfile(const Velmo::String& profile, const Qos::TxQueue& txQueue);
  // A QoS profile came or went. Throws: as QueueManagementProfileQosProfileSm.
  void handleProfileConfig(const Velmo::String& name);
  void handleInitialized();

 private:
  friend Rok::StateMachine<QueueManagementProfileKivToOcSm>;
  using RokQosProfileConfigDir =
      Rok::Watch<Self, Qos::QosProfileConfigDir,
                 Rok::On<Qos::QosProfileConfigDir::Attr::config, &Self::handleProfileConfig>>;

  QueueManagementProfileKivToOcSm(
      const Rok::Ptr<Qos::Input::Config const>& cliConfig, const Rok::Ptr<Cli::Config const>& cli,
      const Rok::Ptr<Qos::QosProfileConfigDir const>& qosProfileConfigDir,
      const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
      const Rok::Ptr<Config::InterfacesDir>& interfacesDir);
  auto parts() { return std::tie(qosProfileConfigDir_, qosProfileSm_); }
  void mirrorProfiles();
  void sweepStaleProfiles();

  Rok::Ptr<Qos::Input::Config const> cliConfig_;
  Rok::Ptr<Cli::Config const> cli_;
  RokQosProfileConfigDir qosProfileConfigDir_;
  Rok::Ptr<Config::QueueManagementProfilesDir> queueManagementProfilesDir_;
  Rok::Ptr<Config::InterfacesDir> interfacesDir_;
  QosProfileSms qosProfileSm_;
};

// ===== Factories. Each returns when its whole tree is built and the output is in line.

QOS_EXPORT Rok::Ptr<QueueManagementProfileKivToOcSm> queueManagementProfileKivToOcSmFactory(
    const Rok::Ptr<Qos::Input::Config const>& cliConfig, const Rok::Ptr<Cli::Config const>& cli,
    const Rok::Ptr<Qos::QosProfileConfigDir const>& qosProfileConfigDir,
    const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
    const Rok::Ptr<Config::InterfacesDir>& interfacesDir);
QOS_EXPORT Rok::Ptr<QueueManagementProfileQosProfileSm> queueManagementProfileQosProfileSmFactory(
    QueueManagementProfileKivToOcSm* queueManagementProfileKivToOcSm,
    const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
    const Rok::Ptr<Qos::QosProfileConfig const>& qosProfileConfig);
QOS_EXPORT Rok::Ptr<QueueManagementProfileQosProfileTxQueueSm>
queueManagementProfileQosProfileTxQueueSmFactory(
    QueueManagementProfileQosProfileSm* profileSm, const Velmo::String& profileName,
    const Rok::Ptr<Config::QueueManagementProfilesDir>& queueManagementProfilesDir,
    const Rok::Ptr<Qos::TxQueueConfig const>& txQueueConfig);

}  // namespace QosOc
