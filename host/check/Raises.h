// The values over which a root raises, by their native places: those that an output record can't
// hold, and service policies that share a policy map.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/Model.h"
#include "host/Native.h"
#include "host/Pointer.h"

namespace host {

struct Raise {
  std::string_view root;  // as messages name it
  Tokens place;           // of the value, as in a Finding
  // What else decides whether the root raises over it, be it there or not: the comment of a tx queue,
  // the profile of a comment, the other service policy. Empty when nothing else does.
  Tokens decider;
  std::string text;  // what is wrong; what to do
};

// What raises in the native objects as they stand. A comment with a value of the wrong type ends the
// process that reads it, so nothing raises over what it speaks for. An object that a host mounted null is
// passed over.
class Raises {
 public:
  using Found = std::function<void(Raise raise)>;

  // Of roots that start from nothing or, with `model`, from that. Both must outlive this.
  explicit Raises(const Native& native, const Model* model = nullptr)
      : native_(native), model_(model) {}

  // Over the whole device. The order is not specified.
  void all(const Found& found) const;
  // Those of one root.
  void of(std::string_view root, const Found& found) const;

  // ===== A single object

  // The tx queue of an interface.
  void bandwidth(const Nerit::IntfId& interface, const Qos::TxQueueConfig& queue,
                 const Found& found) const;
  void ecn(const Nerit::IntfId& interface, const Qos::TxQueueConfig& queue,
           const Found& found) const;
  // A QoS profile that stands for a queue-management profile.
  void settings(const Qos::QosProfileConfig& profile, const Found& found) const;
  // One that stands for a scheduler policy: the rates in its comment.
  void rates(const Rok::String& profile, const Found& found) const;
  void group(const Qos::ForwardingGroupName& name, Qos::TrafficClass tc, const Found& found) const;
  // Service policies of one policy map.
  void servicePolicies(std::vector<Qos::ServicePolicyKey> keys, const Found& found) const;

 private:
  void queues(const Found& found) const;
  void profiles(const Found& found) const;
  void policies(const Found& found) const;
  void groups(const Found& found) const;
  void servicePolicies(const Found& found) const;

  const Native& native_;
  const Model* model_;
};

}  // namespace host
