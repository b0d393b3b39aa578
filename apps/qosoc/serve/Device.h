// The native side, the roots over it and the model, which is published after each change. All of it
// belongs to one thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Log.h"
#include "host/Changes.h"
#include "host/Feed.h"
#include "host/KeptRoots.h"
#include "host/publish/Clock.h"
#include "host/publish/Store.h"

namespace qosoc {

class Device {
 public:
  struct Source {
    std::string native;
    std::optional<std::string> initial;
    host::KeptRoots::LeftOut leftOut;
    std::optional<std::string> stampFile;
  };
  // What became of a change line.
  struct Answer {
    enum class Kind { applied, refused, raised } kind;
    std::string pointer = {};  // of what was refused
    std::string text = {};     // why, or what was raised first
  };

  // Reads the documents, builds the roots, and publishes what there is.
  // Throws: InputError, UsageError.
  Device(const Source& source, const Log& log);

  const host::Store& store() const { return store_; }
  // Applies a line and publishes what that changed; then calls `published`, if it did. The number is
  // for the log.
  Answer line(std::uint64_t number, std::string_view text, const std::function<void()>& published);

 private:
  void read(const Source& source);
  void report(const std::string& line);

  const Log& log_;
  host::Clock clock_;
  host::Native native_;
  host::Model model_;
  std::unique_ptr<host::KeptRoots> roots_;
  std::unique_ptr<host::Changes> changes_;
  host::Store store_;
  std::unique_ptr<host::Feed> feed_;
  host::Feed::Subscription subscription_;
  bool hasPublished_ = false;  // by the last commit
  std::uint64_t number_ = 0;   // of the line; 0 at the start
  std::string raised_;         // what the line raised first
};

}  // namespace qosoc
