// What the first message of a subscription asks for.
#pragma once

#include <gnmi.pb.h>

#include <chrono>
#include <string>
#include <vector>

#include "gnmi/Bodies.h"

namespace server {

using Duration = std::chrono::nanoseconds;

struct Subscribed {
  using Mode = gnmi::SubscriptionList::Mode;
  // One of the list.
  struct Part {
    Wish wish = {};
    bool isSampled = false;  // otherwise what changes is sent at once
    Duration interval{0};    // of samples
    bool onlyChanged = false;
    Duration heartbeat{0};  // 0: none
  };

  // Samples are taken no more often than that. Throws: Refused.
  Subscribed(const gnmi::SubscribeRequest& request, const host::View& view, Duration least);

  Mode mode;
  bool updatesOnly;
  Wish whole;  // what all parts take in
  std::vector<Part> parts;
  std::string origin;
  std::string target;
  NotificationPrefix prefix() const { return {origin, target}; }
};

}  // namespace server
