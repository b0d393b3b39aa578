#include "gnmi/Stream.h"

#include <grpcpp/impl/codegen/proto_utils.h>

#include "gnmi/Refused.h"

namespace server {
namespace {

using grpc::Status;
using grpc::StatusCode;

Status statusOf(const Refused& refused) { return {refused.code(), refused.what()}; }

}  // namespace

std::shared_ptr<Stream> Stream::make(const Context& context) {
  std::shared_ptr<Stream> stream(new Stream(context));
  stream->self_ = stream;
  stream->StartRead(&stream->in_);
  return stream;
}

void Stream::wake() {
  Acts acts;
  {
    const std::lock_guard lock(mutex_);
    acts = next();
    acts.plan = false;  // the caller asks for that itself
  }
  perform(acts);
}

void Stream::end(const Status& status) {
  Acts acts;
  {
    const std::lock_guard lock(mutex_);
    acts = finish(status);
  }
  perform(acts);
}

std::optional<Delivery::Time> Stream::due() {
  const std::lock_guard lock(mutex_);
  // One that is sending goes on by itself.
  return delivery_ && !isWriting_ && !isFinished_ ? delivery_->due() : std::nullopt;
}

bool Stream::isOver() {
  const std::lock_guard lock(mutex_);
  return isOver_;
}

// ===== What gRPC says

void Stream::OnReadDone(bool isRead) {
  Acts acts;
  {
    const std::lock_guard lock(mutex_);
    try {
      isHalfClosed_ = !isRead;
      if (isRead) {
        hear();
      } else if (!delivery_) {
        throw Refused(StatusCode::INVALID_ARGUMENT, "subscribe: there is no list");
      }
      // Polls wait: what a client asks for without reading it would pile up.
      isReadDue_ = isRead && delivery_->isPolled();
      acts = next();
      acts.read |= isRead && !delivery_->isPolled() && !ending_;
    } catch (const Refused& refused) {
      acts = finish(statusOf(refused));
    }
  }
  perform(acts);
}

// A message of the client: the list, and then polls.
void Stream::hear() {
  gnmi::SubscribeRequest request;
  if (!grpc::SerializationTraits<gnmi::SubscribeRequest>::Deserialize(&in_, &request).ok()) {
    throw Refused(StatusCode::INVALID_ARGUMENT, "the message is no SubscribeRequest");
  }
  if (!delivery_) {
    delivery_.emplace(context_.bodies, Subscribed(request, context_.bodies.view(), context_.least),
                      std::chrono::steady_clock::now());
  } else if (request.has_poll()) {
    delivery_->poll();
  } else {
    throw Refused(StatusCode::INVALID_ARGUMENT,
                  "subscribe: the stream has its list; a message behind it is a poll");
  }
}

void Stream::OnWriteDone(bool isSent) {
  Acts acts;
  {
    const std::lock_guard lock(mutex_);
    isWriting_ = false;
    out_.Clear();
    acts = isSent ? next() : finish(Status(StatusCode::CANCELLED, "the client is gone"));
  }
  perform(acts);
}

void Stream::OnCancel() { end(Status(StatusCode::CANCELLED, "cancelled")); }

void Stream::OnDone() {
  std::shared_ptr<Stream> self;
  const std::lock_guard lock(mutex_);
  isOver_ = true;
  delivery_.reset();
  self = std::move(self_);
}

// ===== What it does. All but perform() require the lock.

Stream::Acts Stream::next() {
  if (isFinished_ || isWriting_ || !delivery_) return {};
  if (ending_) return finish(*ending_);
  try {
    return sent(delivery_->next(std::chrono::steady_clock::now()));
  } catch (const Refused& refused) {
    return finish(statusOf(refused));
  }
}

Stream::Acts Stream::sent(Delivery::Step step) {
  if (step.kind == Delivery::Kind::end) return finish(Status::OK);
  if (step.kind == Delivery::Kind::nothing) {
    if (isHalfClosed_ && delivery_->isPolled()) return finish(Status::OK);
    return {.read = std::exchange(isReadDue_, false), .plan = delivery_->due().has_value()};
  }
  out_ = std::move(step.bytes);
  isWriting_ = true;
  return {.write = true};
}

// A stream is finished when nothing is on its way.
Stream::Acts Stream::finish(const Status& status) {
  if (isFinished_) return {};
  if (!ending_) ending_ = status;
  if (isWriting_) return {};
  isFinished_ = true;
  return {.finish = true};
}

void Stream::perform(const Acts& acts) {
  if (acts.read) StartRead(&in_);
  if (acts.write) {
    StartWrite(&out_);
  } else if (acts.finish) {
    Finish(*ending_);
  } else if (acts.plan) {
    context_.planned();
  }
}

}  // namespace server
