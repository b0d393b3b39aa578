// OVERVIEW
//   A gNMI server over a store: Capabilities, Get and Subscribe. Nothing is set through it: the model
//   follows the native configuration.
//
// RULES
// - The thread that publishes calls `committed` behind it, and never waits for a client.
// - Store and view must outlive the server.
//
// EXAMPLE
//   server::Server server(store, view, {"127.0.0.1:0", grpc::InsecureServerCredentials()});
//   printf("serving on port %d\n", server.port());
//   ...
//   if (store.publish(changes, feed.committed(), clock.next())) server.committed();
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "host/openconfig/View.h"
#include "host/publish/Store.h"

namespace grpc {
class ServerCredentials;
}

namespace server {

struct ServerOptions {
  std::string address;  // "HOST:PORT"; the port 0 is any
  std::shared_ptr<grpc::ServerCredentials> credentials;
  // Samples are taken no more often, and heartbeats sent.
  std::chrono::nanoseconds least = std::chrono::seconds(1);
};

class Server {
 public:
  // Throws: std::runtime_error when the address can't be listened to.
  Server(const host::Store& store, const host::View& view, const ServerOptions& options);
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  int port() const;
  // The store has something new.
  void committed();
  // Ends all streams as UNAVAILABLE. What is on its way then has 0.3 s.
  void stop();

 private:
  class Parts;
  const std::unique_ptr<Parts> parts_;
};

}  // namespace server
