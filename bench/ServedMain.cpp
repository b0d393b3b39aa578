// served: what the gNMI server costs beside a bare server of gRPC.
//
//   served report QOSOC [LEAVES]    a line for each figure, with its goal (default: 100,000 leaves)
//   served bare FRAMES              the bare server (serve/Bare.h)
//
// The server is QOSOC itself in a process of its own, and so is the bare one, on loopback. Processor time
// is that of the server's process. Each cold read is one of a server that has just started; the bare one
// sends the same messages, made beforehand.
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>

#include "gnmi.pb.h"
#include "host/Feed.h"
#include "host/NativeReader.h"
#include "host/Roots.h"
#include "host/publish/Store.h"
#include "serve/Bare.h"
#include "serve/Client.h"
#include "serve/Process.h"

namespace Bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int rounds = 5;
constexpr int manyClients = 8;
constexpr int subscribers = 100;
constexpr int lines = 2000;
constexpr const char* subscribe = "/gnmi.gNMI/Subscribe";

// A device of classifiers with terms, of four leaves each, and an interface with a tx queue.
void writeDevice(const std::string& name, int leaves) {
  std::ofstream file(name);
  const int terms = leaves / 4;
  const auto object = [&](const char* open, const auto& entry, const char* close) {
    file << open;
    for (int i = 0; i < terms; ++i) {
      file << (i > 0 ? "," : "") << "\"__yang_[c" << i / 100 << "]_[t" << i % 100 << "]\":";
      entry(i);
    }
    file << close;
  };
  object(R"({"class-maps":{"qos":{)", [&](int) { file << R"({"match":["ip-access-group"]})"; }, "");
  for (int c = 0; c <= (terms - 1) / 100; ++c) {
    file << ",\"__yang_[c" << c << R"(]_[]":{"match":["ip-access-group"]})";
  }
  object(R"(}},"access-lists":{"ipv4":{)",
         [&](int i) { file << R"({"rules":{"10":{"dscp":)" << i % 64 << "}}}"; }, "}},");
  file << R"("forwarding-groups":{"voice":5},"policy-maps":{"qos":{)";
  for (int i = 0; i < terms; ++i) {
    if (i % 100 == 0) {
      file << (i > 0 ? "}}," : "") << "\"__yang_[IPV4__c" << i / 100 << R"(]":{"classes":{)";
    }
    file << (i % 100 > 0 ? "," : "") << "\"__yang_[c" << i / 100 << "]_[t" << i % 100
         << R"(]":{"actions":{"set-traffic-class":5}})";
  }
  file << R"(}}}},"interfaces":{"Ethernet1":{"tx-queues":{"uc-0":{"bandwidth":1}}}}})";
}

std::string request(gnmi::SubscriptionList::Mode mode, bool updatesOnly = false) {
  gnmi::SubscribeRequest request;
  request.mutable_subscribe()->set_mode(mode);
  request.mutable_subscribe()->set_encoding(gnmi::PROTO);
  request.mutable_subscribe()->set_updates_only(updatesOnly);
  request.mutable_subscribe()->add_subscription();
  return request.SerializeAsString();
}

// The writer of a server's change lines.
class Writer {
 public:
  explicit Writer(const std::string& path) : socket_(::socket(AF_UNIX, SOCK_STREAM, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    const auto* to = reinterpret_cast<const sockaddr*>(&address);
    if (::connect(socket_, to, sizeof address) != 0) throw std::runtime_error("no writer socket");
  }
  ~Writer() { ::close(socket_); }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;

  void write(int number) const {
    const std::string line =
        R"([{"op":"replace","path":"/interfaces/Ethernet1/tx-queues/uc-0/bandwidth","value":)" +
        std::to_string(2 + number % 90) + "}]\n";
    if (::send(socket_, line.data(), line.size(), 0) < 0) throw std::runtime_error("no writer");
  }
  void answer() {
    char c = 0;
    std::string text;
    while (::recv(socket_, &c, 1, 0) == 1 && c != '\n') text += c;
    if (!text.starts_with("applied")) throw std::runtime_error("the server says " + text);
  }

 private:
  const int socket_;
};

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

class Report {
 public:
  Report(std::string self, std::string qosoc, int leaves)
      : self_(std::move(self)), qosoc_(std::move(qosoc)), leaves_(leaves) {
    std::filesystem::create_directories(folder_);
    writeDevice(folder_ + "/device.json", leaves);
    writeFrames();
  }
  ~Report() { std::filesystem::remove_all(folder_); }
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;

  void print() {
    once(1, 2);
    once(manyClients, 3);
    latency();
    translator();
    memory();
  }

 private:
  std::unique_ptr<Process> served() const {
    return std::make_unique<Process>(std::vector<std::string>{
        qosoc_, "serve", folder_ + "/device.json", "--listen", "127.0.0.1:0", "--plaintext",
        "--quiet", "--changes", "unix:" + socket_});
  }
  std::unique_ptr<Process> bare() const {
    return std::make_unique<Process>(std::vector<std::string>{self_, "bare", folder_ + "/frames"});
  }

  // What the server sends to one client.
  void writeFrames() {
    const auto server = served();
    std::ofstream file(folder_ + "/frames", std::ios::binary);
    Call call(channelTo(server->address()), subscribe, request(gnmi::SubscriptionList::ONCE),
              [&](const Bytes& message) {
                std::vector<grpc::Slice> slices;
                if (!message.Dump(&slices).ok()) throw std::runtime_error("a message is lost");
                const std::uint64_t size = message.Length();
                file.write(reinterpret_cast<const char*>(&size), sizeof size);
                for (const grpc::Slice& slice : slices) {
                  file.write(reinterpret_cast<const char*>(slice.begin()),
                             static_cast<std::streamsize>(slice.size()));
                }
                bytes_ += size;
              });
    call.wait();
  }

  // ===== All leaves, once

  void once(int clients, double goal) {
    std::vector<double> ours, bares;
    for (int round = 0; round < rounds; ++round) {
      ours.push_back(cost(*served(), subscribe, clients));
      bares.push_back(cost(*bare(), "/bare/Frames", clients));
    }
    const std::string what = std::to_string(leaves_) + " leaves to " + std::to_string(clients) +
                             (clients == 1 ? " client" : " clients at once");
    line(what, median(ours) / 1e6, median(bares) / 1e6, "ms of the server's processor time", goal);
  }
  double cost(const Process& server, const char* method, int clients) const {
    std::vector<std::shared_ptr<grpc::Channel>> channels;
    for (int i = 0; i < clients; ++i) {
      channels.push_back(channelTo(server.address()));
      channels.back()->WaitForConnected(std::chrono::system_clock::now() + std::chrono::seconds(5));
    }
    std::atomic<std::uint64_t> heard = 0;
    const std::int64_t before = server.time();
    std::vector<std::unique_ptr<Call>> calls;
    for (const auto& channel : channels) {
      calls.push_back(
          std::make_unique<Call>(channel, method, request(gnmi::SubscriptionList::ONCE),
                                 [&](const Bytes& message) { heard += message.Length(); }));
    }
    for (const auto& call : calls) call->wait();
    const auto spent = static_cast<double>(server.time() - before);
    if (heard != bytes_ * static_cast<std::uint64_t>(clients)) {
      throw std::runtime_error("leaves are missing");
    }
    return spent;
  }

  // ===== A line, up to the client

  void latency() {
    const auto server = served();
    const auto echo = bare();
    Writer writer(socket_);
    std::atomic<int> heard = 0;
    Call stream(channelTo(server->address()), subscribe,
                request(gnmi::SubscriptionList::STREAM, true), [&](const Bytes&) { wake(heard); });
    await(heard, 1);  // the sync
    const std::vector<double> ours =
        times([&](int i) { writer.write(i); }, heard, [&] { writer.answer(); });
    std::atomic<int> echoed = 0;
    Call call(channelTo(echo->address()), "/bare/Echo", "0", [&](const Bytes&) { wake(echoed); });
    await(echoed, 1);
    const std::vector<double> bares =
        times([&](int i) { call.send(std::to_string(i)); }, echoed, [] {});
    line("from a change line to its client", median(ours), median(bares), "us, the median", 2);
    line("from a change line to its client", percentile99(ours), percentile99(bares),
         "us, the 99th percentile", 0);
  }
  template <class Send, class Rest>
  static std::vector<double> times(const Send& send, std::atomic<int>& heard, const Rest& rest) {
    std::vector<double> times;
    for (int i = 0; i < lines; ++i) {
      const int before = heard;
      const auto start = Clock::now();
      send(i);
      await(heard, before + 1);
      times.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
      rest();
    }
    return times;
  }
  static void wake(std::atomic<int>& heard) {
    ++heard;
    heard.notify_all();
  }
  static void await(std::atomic<int>& heard, int count) {
    for (int now = heard; now < count; now = heard) heard.wait(now);
  }
  static double percentile99(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() * 99 / 100];
  }

  // ===== The thread that translates

  void translator() const {
    const double alone = lineTime(0);
    line("a change line with " + std::to_string(subscribers) + " subscribers",
         lineTime(subscribers), alone, "us of the translator's thread, beside none", 2);
  }
  double lineTime(int count) const {
    const auto server = served();
    Writer writer(socket_);
    std::atomic<int> heard = 0;
    std::vector<std::shared_ptr<grpc::Channel>> channels;
    std::vector<std::unique_ptr<Call>> streams;
    for (int i = 0; i < count; ++i) {
      if (i % 10 == 0) channels.push_back(channelTo(server->address()));
      streams.push_back(std::make_unique<Call>(channels.back(), subscribe,
                                               request(gnmi::SubscriptionList::STREAM, true),
                                               [&](const Bytes&) { wake(heard); }));
    }
    await(heard, count);
    const std::int64_t before = server->firstThreadTime();
    for (int i = 0; i < lines; ++i) {
      writer.write(i);
      writer.answer();
    }
    return static_cast<double>(server->firstThreadTime() - before) / lines / 1e3;
  }

  // ===== Memory

  void memory() const {
    host::Native native;
    host::Model model;
    std::FILE* file = std::fopen((folder_ + "/device.json").c_str(), "rb");
    host::readNative(file, native);
    std::fclose(file);
    const auto roots = host::buildRoots({}, native, model, [](const std::string&) {});
    host::Feed feed(model);
    host::Store store;
    std::size_t leaves = 0;
    const auto records = feed.onRecords(
        [&](const host::RecordChanges& changes) { store.publish(changes, feed.committed(), 1); });
    const auto counted = feed.onLeaves(
        {}, [&](const host::LeafChanges& changes) { leaves += changes.updated.size(); });
    feed.commit();
    const double bytes = static_cast<double>(store.bytes()) / static_cast<double>(leaves);
    std::printf("%zu leaves in the store: %.1f bytes a leaf, goal 120%s\n", leaves, bytes,
                bytes <= 120 ? "" : " MISSED");
  }

  static void line(const std::string& what, double ours, double bare, const char* unit,
                   double goal) {
    std::printf("%s: %.1f beside %.1f, %s: ratio %.2f", what.c_str(), ours, bare, unit,
                ours / bare);
    if (goal > 0) std::printf(", goal %.1f%s", goal, ours / bare <= goal ? "" : " MISSED");
    std::printf("\n");
    std::fflush(stdout);
  }

  const std::string self_;
  const std::string qosoc_;
  const int leaves_;
  const std::string folder_ =
      std::filesystem::temp_directory_path() / ("served." + std::to_string(::getpid()));
  const std::string socket_ = folder_ + "/writer";
  std::uint64_t bytes_ = 0;
};

}  // namespace
}  // namespace Bench

int main(int count, char** words) {
  const std::vector<std::string> arguments(words, words + count);
  if (count == 3 && arguments[1] == "bare") return Bench::serveBare(arguments[2]);
  if (count < 3 || arguments[1] != "report") {
    std::fprintf(stderr, "usage: served report QOSOC [LEAVES] | served bare FRAMES\n");
    return 2;
  }
  const std::string self = std::filesystem::read_symlink("/proc/self/exe");
  Bench::Report(self, arguments[2], count > 3 ? std::stoi(arguments[3]) : 100'000).print();
  return 0;
}
