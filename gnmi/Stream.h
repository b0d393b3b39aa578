// OVERVIEW: one subscription on the wire. It has at most one message on its way: the next one is made
// when that is sent.
//
// RULES
// - A stream has a lock of its own, which is held neither while gRPC nor while the hub is called.
// - It lives until gRPC says that it is done, or for as long as a caller holds it.
#pragma once

#include <grpcpp/support/server_callback.h>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "gnmi/Delivery.h"

namespace server {

class Stream final : public grpc::ServerBidiReactor<grpc::ByteBuffer, grpc::ByteBuffer>,
                     public std::enable_shared_from_this<Stream> {
 public:
  // What it stands on; all must outlive it. `planned` is called when something is due at a time, but
  // not by wake().
  struct Context {
    Bodies& bodies;
    Duration least;  // between samples
    std::function<void()> planned;
  };

  static std::shared_ptr<Stream> make(const Context& context);

  // Sends what is due, unless a message is on its way.
  void wake();
  // Ends it, with what was sent so far.
  void end(const grpc::Status& status);
  // When it is due without a change.
  std::optional<Delivery::Time> due();
  bool isOver();

  void OnReadDone(bool isRead) override;
  void OnWriteDone(bool isSent) override;
  void OnCancel() override;
  void OnDone() override;

 private:
  explicit Stream(const Context& context) : context_(context) {}

  // What is to be asked of gRPC, once the lock is given back.
  struct Acts {
    bool read = false;
    bool write = false;
    bool finish = false;
    bool plan = false;  // of the hub: something is due at a time
  };
  Acts next();
  Acts finish(const grpc::Status& status);
  Acts sent(Delivery::Step step);
  void hear();
  void perform(const Acts& acts);

  const Context context_;
  std::shared_ptr<Stream> self_;  // until gRPC is done with it
  grpc::ByteBuffer in_;           // of the read that is on its way
  std::mutex mutex_;              // of all below
  std::optional<Delivery> delivery_;
  grpc::ByteBuffer out_;
  bool isWriting_ = false;
  bool isFinished_ = false;
  bool isOver_ = false;
  bool isReadDue_ = false;  // once all is sent that was asked for
  bool isHalfClosed_ = false;
  std::optional<grpc::Status> ending_;  // once nothing is on its way
};

}  // namespace server
