#include "gnmi/Delivery.h"

#include "gnmi/Refused.h"

namespace server {
namespace {

using grpc::StatusCode;

grpc::Slice sliceOf(const Body& body) {
  return {const_cast<char*>(body->data()), body->size(),
          [](void* held) { delete static_cast<Body*>(held); }, new Body(body)};
}

// The first time behind `now`, in steps from `due`.
Delivery::Time nextOf(Delivery::Time due, Duration step, Delivery::Time now) {
  const auto missed = (now - due) / step;
  return due + (missed + 1) * step;
}

}  // namespace

Delivery::Delivery(Bodies& bodies, Subscribed subscribed, Time now)
    : bodies_(bodies),
      subscribed_(std::move(subscribed)),
      whole_{subscribed_.whole, bodies.store().head().commit} {
  for (const Subscribed::Part& part : subscribed_.parts) {
    parts_.push_back({{part.wish, whole_.since},
                      part.isSampled ? part.interval : Duration{0},
                      part.onlyChanged,
                      part.heartbeat,
                      now + part.interval,
                      now + part.heartbeat});
  }
  set();
  if (subscribed_.mode == gnmi::SubscriptionList::ONCE) jobs_.emplace_back(EndJob{});
}

// All that there is, and the answer that says so.
void Delivery::set() {
  if (!subscribed_.updatesOnly) jobs_.emplace_back(Bodies::Walk(bodies_, whole_.wish));
  jobs_.emplace_back(WindowJob{&whole_});
  jobs_.emplace_back(SyncJob{});
}

void Delivery::poll() {
  if (subscribed_.mode != gnmi::SubscriptionList::POLL) {
    throw Refused(StatusCode::INVALID_ARGUMENT, "poll: the mode of the subscription is not POLL");
  }
  set();
}

Delivery::Step Delivery::next(Time now) {
  for (;;) {
    if (jobs_.empty()) plan(now);
    if (jobs_.empty()) return {};
    Job& job = jobs_.front();
    std::optional<Message> made;
    if (auto* walk = std::get_if<Bodies::Walk>(&job)) {
      made = walk->next();
    } else if (auto* window = std::get_if<WindowJob>(&job)) {
      made = message(*window);
    } else if (std::holds_alternative<EndJob>(job)) {
      return {Kind::end};
    } else {
      jobs_.pop_front();
      begin(now);
      const grpc::Slice sync{std::string(syncResponse())};
      return {Kind::message, grpc::ByteBuffer(&sync, 1)};
    }
    if (made) return {Kind::message, response(*made)};
    jobs_.pop_front();
  }
}

std::optional<Message> Delivery::message(WindowJob& job) {
  if (!job.window) {
    job.window = bodies_.window(job.cursor->since, job.cursor->wish);
    if (job.window->isLost()) {
      throw Refused(StatusCode::ABORTED,
                    "the client read too slowly: what was deleted meanwhile is not known any "
                    "more, and the subscription must begin anew");
    }
    job.cursor->since = job.window->head().commit;
  }
  return job.window->message(job.next++);
}

// The first set was sent: from here on changes are followed.
void Delivery::begin(Time now) {
  if (std::exchange(isFollowing_, true) || subscribed_.mode != gnmi::SubscriptionList::STREAM) {
    return;
  }
  for (Part& part : parts_) {
    part.cursor.since = whole_.since;
    part.nextSample = now + part.interval;
    part.nextHeartbeat = now + part.heartbeat;
  }
}

void Delivery::plan(Time now) {
  if (!isFollowing_ || subscribed_.mode != gnmi::SubscriptionList::STREAM) return;
  for (Part& part : parts_) plan(part, now);
}

void Delivery::plan(Part& part, Time now) {
  const bool isSampled = part.interval != Duration{0};
  const bool isBeat = part.heartbeat != Duration{0} && now >= part.nextHeartbeat;
  const bool isSample = isSampled && now >= part.nextSample;
  if (isBeat) part.nextHeartbeat = nextOf(part.nextHeartbeat, part.heartbeat, now);
  if (isSample) part.nextSample = nextOf(part.nextSample, part.interval, now);
  const bool isWhole = isBeat || (isSample && !part.onlyChanged);
  if (isWhole) jobs_.emplace_back(Bodies::Walk(bodies_, part.cursor.wish));
  const bool hasChanged = bodies_.store().head().commit != part.cursor.since;
  if (hasChanged && (isWhole || isSample || !isSampled)) {
    jobs_.emplace_back(WindowJob{&part.cursor});
  }
}

std::optional<Delivery::Time> Delivery::due() const {
  if (!isFollowing_) return std::nullopt;
  std::optional<Time> first;
  const auto at = [&](Duration step, Time time) {
    if (step != Duration{0} && (!first || time < *first)) first = time;
  };
  for (const Part& part : parts_) {
    at(part.interval, part.nextSample);
    at(part.heartbeat, part.nextHeartbeat);
  }
  return first;
}

grpc::ByteBuffer Delivery::response(const Message& message) const {
  const std::string head = notificationHead(message.timestamp, subscribed_.prefix());
  std::size_t size = head.size();
  for (const Body& body : message.bodies) size += body->size();
  std::vector<grpc::Slice> slices;
  slices.reserve(message.bodies.size() + 1);
  slices.emplace_back(messageHead(size) + head);
  for (const Body& body : message.bodies) slices.push_back(sliceOf(body));
  return {slices.data(), slices.size()};
}

}  // namespace server
