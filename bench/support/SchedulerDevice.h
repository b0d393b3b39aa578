// A device with tx queues, QoS profiles and their comments, the translator that follows them, and
// the scheduler policies and attachments that it writes.
//
// Ten tx queues make an interface, with a scheduler policy of its own: each tx queue has a comment
// that names it, and a QoS profile a comment of eight schedulers with eight inputs each.
#pragma once

#include <cstddef>
#include <vector>

#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"

namespace Bench {

class SchedulerDevice {
 public:
  // What a host has at hand when an event arrives. The keys were just read from a message; the
  // comments are shared.
  struct Change {
    std::size_t number;
    Velmo::String commentKey;
    Velmo::String comment;
    Velmo::String profileKey;
    Velmo::String profileComment;
  };

  // The native side only.
  explicit SchedulerDevice(std::size_t txQueues);
  // The translator and its output come.
  void start();

  // The directories that the translators write, once they are there.
  template <class Visitor>
  void eachOutput(const Visitor& visit) const {
    visit(policies_);
    visit(interfaces_);
  }

  static Change change(std::size_t number);

  // The events, all of them at one tx queue or at the policy of its interface.
  void attach(const Change& change) { comments_->commentIs(change.commentKey, change.comment); }
  void removeComment(const Change& change) { comments_->commentDel(change.commentKey); }
  // The policy is there, with all that the comment says.
  void readPolicy(const Change& change) {
    comments_->commentIs(change.profileKey, change.profileComment);
  }
  void removeProfileComment(const Change& change) { comments_->commentDel(change.profileKey); }
  // The tx queue gets the other one of two bandwidths.
  void changeBandwidth(const Change& change);

  // Ends the process unless the output has what the native side stands for.
  void check() const;

 private:
  void addInterface(std::size_t number);
  void checkInterface(std::size_t number) const;

  Rok::Ptr<Cli::Config> comments_ = Rok::make<Cli::Config>();
  Rok::Ptr<Qos::Input::Config> input_ = Rok::make<Qos::Input::Config>();
  Rok::Ptr<Qos::QosProfileConfigDir> profiles_ = Rok::make<Qos::QosProfileConfigDir>();
  std::vector<Rok::Ptr<Qos::TxQueueConfig>> txQueues_;  // by number
  Rok::Ptr<QosOc::Config::SchedulerPoliciesDir> policies_;
  Rok::Ptr<QosOc::Config::InterfacesDir> interfaces_;
  Rok::Ptr<QosOc::SchedulerPolicyKivToOCSm> root_;
};

}  // namespace Bench
