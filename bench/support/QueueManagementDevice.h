// A device whose tx queues all use queue-management profiles: interfaces, comments, names of
// queues, QoS profiles; the translator that follows them, and what it writes.
//
// Ten tx queues make one interface, with one profile of its own. Beside them four interfaces have
// tx queues whose ids are on those four alone, at any size of the device: the names that events are
// about lead to these.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"

namespace Bench {

class QueueManagementDevice {
 public:
  // What a host has at hand when an event arrives. Names were just read from a message.
  struct Change {
    std::size_t number;
    Rok::String commentKey;
    Rok::String comment;  // names the profile of the tx queue's interface
    Rok::String otherComment;
    Rok::Ptr<Qos::EcnWredConfig const> ecn;
    Qos::QueueName queueName;
  };

  // The native side only.
  explicit QueueManagementDevice(std::size_t txQueues);
  // The translator and its output come.
  void start();

  // The directories that the translators write, once they are there.
  template <class Visitor>
  void eachOutput(const Visitor& visit) const {
    visit(profiles_);
    visit(interfaces_);
  }

  static Change change(std::size_t number);

  // The events: at a tx queue, at its interface's profile, and at a queue's name, which is given to
  // the other one of two ids. Four tx queues have it.
  void comment(const Change& change) { cli_->commentIs(change.commentKey, change.comment); }
  void otherComment(const Change& change) {
    cli_->commentIs(change.commentKey, change.otherComment);
  }
  void changeThreshold(const Change& change);
  void nameQueue(const Change& change);

  // Ends the process unless the output has what the native side stands for.
  void check() const;

 private:
  void addInterface(std::size_t number);
  void addProfile(std::size_t number);
  void addTxQueue(Qos::IntfConfig& interface, std::size_t number, Qos::TxQueueId id);
  void checkAttachment(std::size_t interface, const std::string& queue) const;

  std::size_t interfaceCount_;
  std::vector<Rok::Ptr<Qos::TxQueueConfig>> profileQueues_;  // by the number of an interface
  Rok::Ptr<Qos::Input::Config> input_ = Rok::make<Qos::Input::Config>();
  Rok::Ptr<Qos::QueueNameToTxQueueIdMap> queueNames_ = Rok::make<Qos::QueueNameToTxQueueIdMap>();
  Rok::Ptr<Cli::Config> cli_ = Rok::make<Cli::Config>();
  Rok::Ptr<Qos::QosProfileConfigDir> qosProfiles_ = Rok::make<Qos::QosProfileConfigDir>();
  Rok::Ptr<QosOc::Config::QueueManagementProfilesDir> profiles_;
  Rok::Ptr<QosOc::Config::InterfacesDir> interfaces_;
  Rok::Ptr<QosOc::QueueManagementProfileKivToOcSm> root_;
};

}  // namespace Bench
