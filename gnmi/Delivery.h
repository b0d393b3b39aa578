// OVERVIEW: what a subscription has to send next. It is a place in the order of the changes and no
// queue: what a slow client doesn't read isn't made.
//
// RULES
// - The first set is a walk and the window of what changed during the walk, so that it is whole at
//   its end. Then comes the answer `sync`.
// - What is sampled is sent like a first set, without an answer. What isn't sampled is a window.
//
// EXAMPLE
//   Delivery delivery(bodies, Subscribed(request, view, least), now());
//   for (;;) {
//     Delivery::Step step = delivery.next(now());
//     if (step.kind == Delivery::Kind::message) send(step.bytes);
//     ...
//   }
#pragma once

#include <grpcpp/support/byte_buffer.h>

#include <deque>
#include <optional>
#include <variant>

#include "gnmi/Subscribed.h"

namespace server {

class Delivery {
 public:
  using Time = std::chrono::steady_clock::time_point;
  enum class Kind { message, nothing, end };
  struct Step {
    Kind kind = Kind::nothing;
    grpc::ByteBuffer bytes = {};
  };

  // The bodies must outlive it.
  Delivery(Bodies& bodies, Subscribed subscribed, Time now);
  Delivery(const Delivery&) = delete;
  Delivery& operator=(const Delivery&) = delete;

  // The next message that is due. Throws: Refused when it is too late for what went.
  Step next(Time now);
  // The client asks for what there is. Throws: Refused for a subscription of another mode.
  void poll();
  bool isPolled() const { return subscribed_.mode == gnmi::SubscriptionList::POLL; }
  // When something is due without a change; nothing where that is never.
  std::optional<Time> due() const;

 private:
  // A place in the order of the changes.
  struct Cursor {
    Wish wish;
    host::Commit since;
  };
  struct Part {
    Cursor cursor;
    Duration interval;  // 0: what changes is sent at once
    bool onlyChanged;
    Duration heartbeat;
    Time nextSample;
    Time nextHeartbeat;
  };
  // What changed behind a cursor, and the cursor then.
  struct WindowJob {
    Cursor* cursor;
    std::shared_ptr<Bodies::Window> window = nullptr;
    std::size_t next = 0;
  };
  struct SyncJob {};
  struct EndJob {};
  using Job = std::variant<Bodies::Walk, WindowJob, SyncJob, EndJob>;

  void set();
  void plan(Time now);
  void plan(Part& part, Time now);
  std::optional<Message> message(WindowJob& job);
  void begin(Time now);
  grpc::ByteBuffer response(const Message& message) const;

  Bodies& bodies_;
  const Subscribed subscribed_;
  Cursor whole_;
  std::vector<Part> parts_;
  std::deque<Job> jobs_;
  bool isFollowing_ = false;  // the first set was sent, and changes come
};

}  // namespace server
