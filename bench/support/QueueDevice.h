// A device with tx queues, comments on half of them, the translator that follows both, and the
// queues that it writes.
//
// Ten tx queues make an interface. Each has a bandwidth and ECN settings, and every second one a
// comment that names a queue-management profile, which keeps the ECN settings out of its queue.
#pragma once

#include <cstddef>
#include <vector>

#include "QosOpenConfig/QosOpenConfigQueueKivToOcSm.h"

namespace Bench {

class QueueDevice {
 public:
  // What a host has at hand when an event arrives. Like every text here it was just read from a
  // message.
  struct Change {
    std::size_t number;
    Velmo::String commentKey;
    Velmo::String comment;
    Rok::Ptr<Qos::EcnWredConfig const> ecn;
  };

  // The native side only.
  explicit QueueDevice(std::size_t txQueues);
  // The translator and its output come.
  void start();

  // The directories that the translators write, once they are there.
  template <class Visitor>
  void eachOutput(const Visitor& visit) const {
    visit(output_);
  }

  static Change change(std::size_t number);

  // The events, all of them at one tx queue.
  void addComment(const Change& change) { comments_->commentIs(change.commentKey, change.comment); }
  void removeComment(const Change& change) { comments_->commentDel(change.commentKey); }
  // The tx queue gets the other one of two bandwidths.
  void changeBandwidth(const Change& change);
  // The tx queue, or its neighbour that has no comment, gets other ECN settings.
  void changeEcn(const Change& change);
  // The tx queue comes to its interface, and goes.
  void add(const Change& change);
  void remove(const Change& change);
  // Puts the comment back that the tx queue had at first, or none.
  void restoreComment(const Change& change);

  // Ends the process unless the output has what the native side stands for.
  void check() const;

 private:
  void checkQueue(std::size_t number) const;

  Rok::Ptr<Qos::Input::Config> input_ = Rok::make<Qos::Input::Config>();
  Rok::Ptr<Cli::Config> comments_ = Rok::make<Cli::Config>();
  std::vector<Rok::Ptr<Qos::IntfConfig>> interfaces_;   // by number
  std::vector<Rok::Ptr<Qos::TxQueueConfig>> txQueues_;  // by number
  Rok::Ptr<QosOc::Config::QueuesDir> output_;
  Rok::Ptr<QosOc::QueueKivToOcSm> root_;
};

}  // namespace Bench
