// A client that takes what a stream sends as bytes, so that it costs little beside the server.
#pragma once

#include <grpcpp/generic/generic_stub.h>
#include <grpcpp/grpcpp.h>

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace Bench {

using Bytes = grpc::ByteBuffer;

class Call final : public grpc::ClientBidiReactor<Bytes, Bytes> {
 public:
  // Called for each message, by a thread of gRPC's.
  using Heard = std::function<void(const Bytes& message)>;

  Call(const std::shared_ptr<grpc::Channel>& channel, const std::string& method,
       const std::string& first, Heard heard);
  // Cancels a stream that has not ended.
  ~Call() override;

  void send(const std::string& message);
  // Waits until it has ended.
  void wait();

  void OnReadDone(bool isRead) override;
  void OnWriteDone(bool isSent) override;
  void OnDone(const grpc::Status& status) override;

 private:
  void say(bool& what, bool value);

  grpc::TemplatedGenericStub<Bytes, Bytes> stub_;
  grpc::ClientContext context_;
  const Heard heard_;
  Bytes in_, out_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool isWriting_ = true;
  bool hasEnded_ = false;  // the server's messages
  bool isDone_ = false;
};

std::shared_ptr<grpc::Channel> channelTo(const std::string& address);

}  // namespace Bench
