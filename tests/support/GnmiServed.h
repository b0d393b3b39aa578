// A model that a server in this process serves, and clients of it.
#pragma once

#include <gnmi.grpc.pb.h>
#include <google/protobuf/text_format.h>
#include <grpcpp/grpcpp.h>

#include <map>
#include <memory>
#include <string>

#include "gnmi/Server.h"
#include "host/openconfig/Leaves.h"
#include "tests/support/GnmiPath.h"
#include "tests/support/HostStore.h"

namespace support {

// "/qos/queues/queue[name=q]"; "/" is the root.
inline std::string gnmiText(const gnmi::Path& path) {
  std::string text;
  for (const gnmi::PathElem& elem : path.elem()) {
    text += '/' + elem.name();
    for (const auto& [name, value] : elem.key()) host::appendKey(text, name, value);
  }
  return text.empty() ? "/" : text;
}

// A value as JSON has it, or as the text form of protobuf: `uint_val: 3`.
inline std::string gnmiText(const gnmi::TypedValue& value) {
  if (value.has_json_val()) return value.json_val();
  if (value.has_json_ietf_val()) return value.json_ietf_val();
  return value.ShortDebugString();
}

// "- PATH" for each deletion, "+ PATH VALUE" for each update.
inline HostLines gnmiLines(const gnmi::Notification& notification) {
  HostLines lines;
  for (const gnmi::Path& node : notification.delete_()) lines.push_back("- " + gnmiText(node));
  for (const gnmi::Update& update : notification.update()) {
    lines.push_back("+ " + gnmiText(update.path()) + ' ' + gnmiText(update.val()));
  }
  return lines;
}

// A message by its text form.
template <class Message>
Message gnmiMessage(const std::string& text) {
  Message message;
  EXPECT_TRUE(google::protobuf::TextFormat::ParseFromString(text, &message)) << text;
  return message;
}

// A list of one path, which stands last, so that more may be said of it.
inline gnmi::SubscribeRequest gnmiSubscribe(gnmi::SubscriptionList::Mode mode,
                                            const std::string& path = "/",
                                            gnmi::Encoding encoding = gnmi::JSON_IETF) {
  gnmi::SubscribeRequest request;
  request.mutable_subscribe()->set_mode(mode);
  request.mutable_subscribe()->set_encoding(encoding);
  *request.mutable_subscribe()->add_subscription()->mutable_path() = gnmiPath(path);
  return request;
}

// What no test waits longer for.
inline void gnmiDeadline(grpc::ClientContext& context) {
  context.set_deadline(std::chrono::system_clock::now() + std::chrono::seconds(120));
}

// A subscription of a client, which keeps what its stream says.
class GnmiStream {
 public:
  explicit GnmiStream(gnmi::gNMI::Stub& stub) {
    gnmiDeadline(context_);
    stream_ = stub.Subscribe(&context_);
  }
  GnmiStream(gnmi::gNMI::Stub& stub, const gnmi::SubscribeRequest& request) : GnmiStream(stub) {
    send(request);
  }
  ~GnmiStream() {
    context_.TryCancel();
    gnmi::SubscribeResponse response;
    while (!isOver_ && stream_->Read(&response)) {
    }
    if (!isOver_) stream_->Finish();
  }
  GnmiStream(const GnmiStream&) = delete;
  GnmiStream& operator=(const GnmiStream&) = delete;

  void send(const gnmi::SubscribeRequest& request) { stream_->Write(request); }
  void poll() { send(gnmiMessage<gnmi::SubscribeRequest>("poll {}")); }
  void half() { stream_->WritesDone(); }

  // The lines of the next message; "sync" alone is the answer that all was sent, and none is the end.
  HostLines next() {
    gnmi::SubscribeResponse response;
    if (!stream_->Read(&response)) return {};
    if (response.sync_response()) return {"sync"};
    last_ = response.update();
    apply(last_);
    return gnmiLines(last_);
  }
  // The lines of all messages up to the sync.
  HostLines untilSync() {
    HostLines all;
    for (;;) {
      const HostLines lines = next();
      if (lines.empty() || lines.front() == "sync") return all;
      all.insert(all.end(), lines.begin(), lines.end());
    }
  }
  // Reads on until the leaves are as wanted. Returns whether they came to be.
  bool comesTo(const std::map<std::string, std::string>& wanted) {
    while (leaves_ != wanted) {
      if (next().empty()) return false;
    }
    return true;
  }
  grpc::Status end() {
    gnmi::SubscribeResponse response;
    while (stream_->Read(&response)) {
    }
    isOver_ = true;
    return stream_->Finish();
  }

  const gnmi::Notification& last() const { return last_; }
  const std::map<std::string, std::string>& leaves() const { return leaves_; }

 private:
  void apply(const gnmi::Notification& notification) {
    // What collectors hold against a server.
    EXPECT_GE(notification.timestamp(), timestamp_);
    timestamp_ = notification.timestamp();
    for (const gnmi::Path& node : notification.delete_()) {
      const std::string path = gnmiText(node);
      std::erase_if(leaves_, [&](const auto& leaf) {
        return leaf.first == path || leaf.first.starts_with(path + '/');
      });
    }
    for (const gnmi::Update& update : notification.update()) {
      leaves_[gnmiText(update.path())] = gnmiText(update.val());
    }
  }

  grpc::ClientContext context_;
  std::unique_ptr<grpc::ClientReaderWriter<gnmi::SubscribeRequest, gnmi::SubscribeResponse>>
      stream_;
  gnmi::Notification last_;
  std::int64_t timestamp_ = 0;
  std::map<std::string, std::string> leaves_;
  bool isOver_ = false;
};

struct GnmiServed : HostPublished {
  explicit GnmiServed(const char* text = "{}", const host::ViewOptions& options = {})
      : HostPublished(text), view(options) {}

  void commit() {
    HostPublished::commit();
    if (hasChanged) server.committed();
  }
  // "CODE text"; "OK" is no refusal.
  static std::string shown(const grpc::Status& status) {
    static const std::map<grpc::StatusCode, const char*> names = {
        {grpc::OK, "OK"},
        {grpc::INVALID_ARGUMENT, "INVALID_ARGUMENT"},
        {grpc::NOT_FOUND, "NOT_FOUND"},
        {grpc::UNIMPLEMENTED, "UNIMPLEMENTED"},
        {grpc::UNAVAILABLE, "UNAVAILABLE"},
        {grpc::ABORTED, "ABORTED"}};
    const auto name = names.find(status.error_code());
    const std::string code =
        name != names.end() ? name->second : std::to_string(status.error_code());
    return status.ok() ? code : code + ' ' + status.error_message();
  }
  // Of a request by its text form.
  std::string getRefusal(const std::string& request) {
    gnmi::GetResponse response;
    return shown(get(gnmiMessage<gnmi::GetRequest>(request), response));
  }
  std::string subscribeRefusal(const std::string& request) {
    GnmiStream stream(*stub, gnmiMessage<gnmi::SubscribeRequest>(request));
    return shown(stream.end());
  }
  grpc::Status get(const gnmi::GetRequest& request, gnmi::GetResponse& response) {
    grpc::ClientContext context;
    gnmiDeadline(context);
    return stub->Get(&context, request, &response);
  }
  // The lines of an answer for some paths.
  HostLines get(const std::vector<std::string>& paths, gnmi::Encoding encoding = gnmi::JSON_IETF) {
    gnmi::GetRequest request;
    request.set_encoding(encoding);
    for (const std::string& path : paths) *request.add_path() = gnmiPath(path);
    gnmi::GetResponse response;
    const grpc::Status status = get(request, response);
    if (!status.ok()) return {shown(status)};
    HostLines all;
    for (const gnmi::Notification& notification : response.notification()) {
      const HostLines lines = gnmiLines(notification);
      all.insert(all.end(), lines.begin(), lines.end());
    }
    return all;
  }
  // All leaves by their paths, as JSON_IETF has them.
  std::map<std::string, std::string> leaves() const {
    std::map<std::string, std::string> all;
    for (const auto& [path, value] : host::leavesOf(model, view)) all[path] = value;
    return all;
  }

  const host::View view;
  server::Server server{
      store,
      view,
      {"127.0.0.1:0", grpc::InsecureServerCredentials(), std::chrono::milliseconds(50)}};
  std::shared_ptr<grpc::Channel> channel = grpc::CreateChannel(
      "127.0.0.1:" + std::to_string(server.port()), grpc::InsecureChannelCredentials());
  std::unique_ptr<gnmi::gNMI::Stub> stub = gnmi::gNMI::NewStub(channel);
};

}  // namespace support
