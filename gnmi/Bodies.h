// OVERVIEW: what is in the store as bodies of notifications, encoded when the first stream needs them
// and shared by all that need the same: those of one encoding and one filter.
//
// RULES
// - A body is encoded from images, without a lock that the store or a stream knows of.
// - A message has bodies of some 32 KB. It has the timestamp of the earliest head that a body of it
//   is of, so that what changes it later is younger.
// - A record's deletion and its leaves stand in one body.
// - A body lives as long as a stream has it to send, and the last few a while longer.
#pragma once

#include <array>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "gnmi/Filter.h"
#include "gnmi/Wire.h"
#include "host/publish/Store.h"

namespace server {

using Body = std::shared_ptr<const std::string>;

struct Message {
  std::int64_t timestamp = 0;
  std::vector<Body> bodies = {};
};

// What a subscription wants, and how.
struct Wish {
  std::shared_ptr<const Filter> filter;
  Wire::Encoding encoding = Wire::Encoding::json;
};

class Bodies {
 public:
  static constexpr std::size_t messageSize = 32'768;

  // A window, in messages.
  class Window;
  // A walk over all that there is.
  class Walk;

  // Both must outlive it.
  Bodies(const host::Store& store, const host::View& view) : store_(store), view_(view) {}
  Bodies(const Bodies&) = delete;
  Bodies& operator=(const Bodies&) = delete;

  const host::Store& store() const { return store_; }
  const host::View& view() const { return view_; }

  // What changed behind a commit, up to the head.
  std::shared_ptr<Window> window(host::Commit since, const Wish& wish);

 private:
  struct Piece;
  // A writer that no other thread has meanwhile.
  class Writer;

  Body piece(const host::Ref<host::ImageIndex::Block>& block, std::size_t first,
             std::string_view range, const Wish& wish);
  Body kept(const std::string& key);
  void keep(const std::string& key, const std::shared_ptr<const Piece>& piece);

  const host::Store& store_;
  const host::View& view_;
  std::mutex mutex_;  // of all below
  std::unordered_map<std::string, std::weak_ptr<const Piece>> pieces_;
  std::array<std::shared_ptr<const Piece>, 64> latest_;
  std::size_t next_ = 0;
  std::unordered_map<std::string, std::weak_ptr<Window>> windows_;
  std::array<std::vector<std::unique_ptr<Wire>>, 3> writers_;  // by encodings
};

class Bodies::Window {
 public:
  Window(Bodies& bodies, host::Commit since, const Wish& wish);

  const host::Store::Head& head() const { return window_.head; }
  bool isLost() const { return window_.isLost; }
  // The message of that number; nothing behind the last one.
  std::optional<Message> message(std::size_t number);

 private:
  Body encoded();

  Bodies& bodies_;
  const Wish wish_;
  const host::Store::Window window_;
  std::mutex mutex_;  // of all below
  host::WindowWalk walk_;
  std::size_t nextImage_ = 0;
  std::vector<Body> messages_;
};

class Bodies::Walk {
 public:
  Walk(Bodies& bodies, const Wish& wish) : bodies_(&bodies), wish_(wish) {}

  // Nothing at the end.
  std::optional<Message> next();

 private:
  Bodies* bodies_;
  Wish wish_;
  std::size_t range_ = 0;
  std::string name_;  // where the walk goes on
};

}  // namespace server
