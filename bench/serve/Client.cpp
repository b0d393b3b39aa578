#include "serve/Client.h"

namespace Bench {
namespace {

Bytes bytesOf(const std::string& text) {
  const grpc::Slice slice(text);
  return Bytes(&slice, 1);
}

}  // namespace

std::shared_ptr<grpc::Channel> channelTo(const std::string& address) {
  grpc::ChannelArguments arguments;
  arguments.SetMaxReceiveMessageSize(-1);
  arguments.SetInt(GRPC_ARG_USE_LOCAL_SUBCHANNEL_POOL, 1);  // a connection of its own
  return grpc::CreateCustomChannel(address, grpc::InsecureChannelCredentials(), arguments);
}

Call::Call(const std::shared_ptr<grpc::Channel>& channel, const std::string& method,
           const std::string& first, Heard heard)
    : stub_(channel), heard_(std::move(heard)) {
  stub_.PrepareBidiStreamingCall(&context_, method, grpc::StubOptions(), this);
  AddHold();  // for what is sent later
  StartRead(&in_);
  out_ = bytesOf(first);
  StartWrite(&out_);
  StartCall();
}

Call::~Call() {
  context_.TryCancel();
  RemoveHold();
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return isDone_; });
}

void Call::send(const std::string& message) {
  {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !isWriting_; });
    isWriting_ = true;
  }
  out_ = bytesOf(message);
  StartWrite(&out_);
}

void Call::wait() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return hasEnded_; });
}

void Call::OnReadDone(bool isRead) {
  if (!isRead) return say(hasEnded_, true);
  heard_(in_);
  StartRead(&in_);
}

void Call::OnWriteDone(bool /*isSent*/) { say(isWriting_, false); }

void Call::OnDone(const grpc::Status& /*status*/) { say(isDone_, true); }

void Call::say(bool& what, bool value) {
  const std::lock_guard lock(mutex_);
  what = value;
  changed_.notify_all();
}

}  // namespace Bench
