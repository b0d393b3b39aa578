// OVERVIEW: wakes streams: when a commit changed something, and when something of theirs is due. It has
// a thread of its own, so that neither the thread that commits nor one of gRPC's waits for a stream.
//
// RULES
// - `committed` and `planned` take no lock.
// - No lock of the hub is held while a stream is called.
#pragma once

#include <grpcpp/support/status.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "gnmi/Stream.h"

namespace server {

class Hub {
 public:
  Hub();
  ~Hub();
  Hub(const Hub&) = delete;
  Hub& operator=(const Hub&) = delete;

  // A stream that is to be woken, until it is over.
  void add(std::shared_ptr<Stream> stream);
  // The store has something new.
  void committed();
  // Something may be due earlier than what was before.
  void planned() { signal(); }
  // Ends all streams, and those that come later.
  void stop();

 private:
  using Streams = std::vector<std::shared_ptr<Stream>>;

  void run();
  void signal();
  void sleep(const Streams& streams);
  Streams taken();

  const int event_;  // a write to it ends the thread's sleep
  std::atomic<bool> isSignalled_ = false;
  std::atomic<bool> isStopping_ = false;
  std::atomic<std::size_t> count_ = 0;
  std::mutex mutex_;  // of the next
  Streams streams_;
  std::thread thread_;
};

}  // namespace server
