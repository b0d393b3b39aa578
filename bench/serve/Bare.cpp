#include "serve/Bare.h"

#include <grpcpp/generic/async_generic_service.h>
#include <grpcpp/grpcpp.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <vector>

namespace Bench {
namespace {

using grpc::ByteBuffer;

std::vector<ByteBuffer> readFrames(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  std::vector<ByteBuffer> frames;
  for (std::size_t at = 0; at + sizeof(std::uint64_t) <= text.size();) {
    std::uint64_t size = 0;
    std::memcpy(&size, text.data() + at, sizeof size);
    const grpc::Slice slice(text.data() + at + sizeof size, size);
    frames.emplace_back(&slice, 1);
    at += sizeof size + size;
  }
  return frames;
}

class Frames final : public grpc::ServerGenericBidiReactor {
 public:
  explicit Frames(const std::vector<ByteBuffer>& frames) : frames_(frames) { StartRead(&in_); }

  void OnReadDone(bool isRead) override { isRead ? next() : Finish(grpc::Status::OK); }
  void OnWriteDone(bool isSent) override { isSent ? next() : Finish(grpc::Status::CANCELLED); }
  void OnDone() override { delete this; }

 private:
  void next() {
    if (sent_ == frames_.size()) return Finish(grpc::Status::OK);
    out_ = frames_[sent_++];
    StartWrite(&out_);
  }

  const std::vector<ByteBuffer>& frames_;
  std::size_t sent_ = 0;
  ByteBuffer in_, out_;
};

class Echo final : public grpc::ServerGenericBidiReactor {
 public:
  Echo() { StartRead(&message_); }

  void OnReadDone(bool isRead) override {
    isRead ? StartWrite(&message_) : Finish(grpc::Status::OK);
  }
  void OnWriteDone(bool isSent) override {
    isSent ? StartRead(&message_) : Finish(grpc::Status::CANCELLED);
  }
  void OnDone() override { delete this; }

 private:
  ByteBuffer message_;
};

class Service final : public grpc::CallbackGenericService {
 public:
  explicit Service(const std::string& frames) : frames_(readFrames(frames)) {}

  grpc::ServerGenericBidiReactor* CreateReactor(
      grpc::GenericCallbackServerContext* context) override {
    if (context->method() == "/bare/Echo") return new Echo;
    return new Frames(frames_);
  }

 private:
  const std::vector<ByteBuffer> frames_;
};

}  // namespace

int serveBare(const std::string& frames) {
  sigset_t ends;
  ::sigemptyset(&ends);
  ::sigaddset(&ends, SIGTERM);
  ::pthread_sigmask(SIG_BLOCK, &ends, nullptr);
  Service service(frames);
  grpc::ServerBuilder builder;
  int port = 0;
  builder.AddListeningPort("127.0.0.1:0", grpc::InsecureServerCredentials(), &port);
  builder.RegisterCallbackGenericService(&service);
  const auto server = builder.BuildAndStart();
  if (!server) return 1;
  std::printf("serving 127.0.0.1:%d\n", port);
  std::fflush(stdout);
  int signal = 0;
  ::sigwait(&ends, &signal);
  server->Shutdown(std::chrono::system_clock::now());
  return 0;
}

}  // namespace Bench
