// What stands beside the events whose instructions are counted, and follows the output.
#pragma once

#include <cstddef>
#include <memory>

#include "host/Model.h"

namespace Bench {

// Itself, nothing: the events are counted alone.
class Follower {
 public:
  Follower() = default;
  virtual ~Follower() = default;
  Follower(const Follower&) = delete;
  Follower& operator=(const Follower&) = delete;

  // The output as the device started it.
  virtual void start(const host::Model& /*model*/) {}
  // Whether the events are what is counted.
  virtual bool countsEvents() const { return true; }
  virtual void eventIsNext() {}
  virtual void eventIsOver(bool /*isCounted*/) {}
  // Prints what it has to say of one of so many counted events.
  virtual void tell(std::size_t /*events*/) const {}
};

// Counts the marks of events in a journal that is empty before each.
std::unique_ptr<Follower> journalFollower();
// A feed with an observer of leaves: its commit after an event is what is counted.
std::unique_ptr<Follower> feedFollower();

}  // namespace Bench
