#include "gnmi/Server.h"

#include <gnmi.grpc.pb.h>
#include <grpc/support/log.h>
#include <grpcpp/grpcpp.h>

#include <stdexcept>

#include "gnmi/Get.h"
#include "gnmi/Hub.h"
#include "gnmi/Refused.h"
#include "gnmi/Request.h"

namespace server {
namespace {

using grpc::ByteBuffer;
using grpc::CallbackServerContext;
using grpc::Status;
using grpc::StatusCode;

constexpr const char* version = "0.10.0";

// Get and Subscribe get and give bytes: what they send is encoded by hand.
using Handlers = gnmi::gNMI::WithCallbackMethod_Capabilities<
    gnmi::gNMI::WithRawCallbackMethod_Get<gnmi::gNMI::WithCallbackMethod_Set<
        gnmi::gNMI::WithRawCallbackMethod_Subscribe<gnmi::gNMI::Service>>>>;

class Service final : public Handlers {
 public:
  Service(Bodies& bodies, Hub& hub, Duration least)
      : bodies_(bodies), hub_(hub), context_{bodies, least, [&hub] { hub.planned(); }} {}

  grpc::ServerUnaryReactor* Capabilities(CallbackServerContext* context,
                                         const gnmi::CapabilityRequest* /*request*/,
                                         gnmi::CapabilityResponse* response) override {
    for (const ServedModel& model : servedModels(bodies_.view())) {
      gnmi::ModelData& added = *response->add_supported_models();
      added.set_name(std::string(model.name));
      added.set_organization(std::string(model.organization));
      added.set_version(std::string(model.version));
    }
    for (const auto encoding : {gnmi::JSON, gnmi::JSON_IETF, gnmi::PROTO}) {
      response->add_supported_encodings(encoding);
    }
    response->set_gnmi_version(version);
    return finished(*context, Status::OK);
  }

  grpc::ServerUnaryReactor* Get(CallbackServerContext* context, const ByteBuffer* request,
                                ByteBuffer* response) override {
    return finished(*context, answer(*request, *response));
  }

  grpc::ServerUnaryReactor* Set(CallbackServerContext* context, const gnmi::SetRequest* /*request*/,
                                gnmi::SetResponse* /*response*/) override {
    return finished(*context,
                    Status(StatusCode::UNIMPLEMENTED,
                           "Set is not served: the direction is native to OpenConfig, and the "
                           "model follows the native configuration"));
  }

  grpc::ServerBidiReactor<ByteBuffer, ByteBuffer>* Subscribe(
      CallbackServerContext* /*context*/) override {
    const std::shared_ptr<Stream> stream = Stream::make(context_);
    hub_.add(stream);
    return stream.get();
  }

 private:
  static grpc::ServerUnaryReactor* finished(CallbackServerContext& context, const Status& status) {
    grpc::ServerUnaryReactor* reactor = context.DefaultReactor();
    reactor->Finish(status);
    return reactor;
  }

  Status answer(const ByteBuffer& bytes, ByteBuffer& response) const {
    gnmi::GetRequest request;
    ByteBuffer read = bytes;
    if (!grpc::SerializationTraits<gnmi::GetRequest>::Deserialize(&read, &request).ok()) {
      return {StatusCode::INVALID_ARGUMENT, "the message is no GetRequest"};
    }
    try {
      const grpc::Slice text(getAnswer(request, bodies_.store(), bodies_.view()));
      response = ByteBuffer(&text, 1);
    } catch (const Refused& refused) {
      return {refused.code(), refused.what()};
    }
    return Status::OK;
  }

  Bodies& bodies_;
  Hub& hub_;
  const Stream::Context context_;
};

}  // namespace

class Server::Parts {
 public:
  Parts(const host::Store& store, const host::View& view, const ServerOptions& options)
      : bodies_(store, view), service_(bodies_, hub_, options.least) {
    // What is wrong with an address or a call is said by exceptions and statuses.
    gpr_set_log_function([](gpr_log_func_args*) {});
    grpc::ServerBuilder builder;
    // Two servers on one port would take turns.
    builder.AddChannelArgument(GRPC_ARG_ALLOW_REUSEPORT, 0);
    builder.AddListeningPort(options.address, options.credentials, &port_);
    builder.RegisterService(&service_);
    server_ = builder.BuildAndStart();
    if (!server_ || port_ <= 0) {
      throw std::runtime_error(options.address + ": cannot be listened to");
    }
  }
  ~Parts() { stop(); }
  Parts(const Parts&) = delete;
  Parts& operator=(const Parts&) = delete;

  int port() const { return port_; }
  void committed() { hub_.committed(); }
  void stop() {
    if (!server_) return;
    hub_.stop();
    server_->Shutdown(std::chrono::system_clock::now() + std::chrono::milliseconds(300));
    server_.reset();
  }

 private:
  Bodies bodies_;
  Hub hub_;
  Service service_;
  int port_ = 0;
  std::unique_ptr<grpc::Server> server_;
};

Server::Server(const host::Store& store, const host::View& view, const ServerOptions& options)
    : parts_(std::make_unique<Parts>(store, view, options)) {}
Server::~Server() = default;

int Server::port() const { return parts_->port(); }
void Server::committed() { parts_->committed(); }
void Server::stop() { parts_->stop(); }

}  // namespace server
