// Consumers that follow an output model by its feed, and the feed that the whole model would give.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/Feed.h"

namespace days {

using Leaves = std::map<std::string, std::string>;  // values as JSON by their paths

// What a feed must say when the leaves of a consumer change from one set to another.
struct Expected {
  Expected(const Leaves& before, const Leaves& after, const host::Subtree& only);

  std::vector<std::string> deleted;
  Leaves updated;
};

class Follower {
 public:
  // Begins to follow a model, also in the middle of a day. The first commit brings everything.
  explicit Follower(const host::Model& model);
  Follower(const Follower&) = delete;
  Follower& operator=(const Follower&) = delete;
  ~Follower();

  // Commits, and compares all that each consumer was given with the whole model. Returns what is
  // wrong; empty when nothing is. Now and then
  // one more consumer joins.
  std::string commit();

 private:
  class LeafConsumer;
  class RecordConsumer;

  const host::Model& model_;
  host::Feed feed_;
  std::vector<std::unique_ptr<LeafConsumer>> consumers_;
  std::unique_ptr<RecordConsumer> records_;
  std::unique_ptr<LeafConsumer> late_;
  std::size_t commits_ = 0;
};

}  // namespace days
