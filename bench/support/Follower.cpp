#include "support/Follower.h"

#include <valgrind/callgrind.h>

#include <iostream>
#include <optional>

#include "host/Feed.h"

namespace Bench {
namespace {

void tellEach(std::size_t all, std::size_t events) {
  std::cout << static_cast<double>(all) / static_cast<double>(events) << '\n';
}

class JournalFollower final : public Follower {
 public:
  ~JournalFollower() override { model_.journalIs(nullptr); }

  void start(const host::Model& model) override {
    model_ = model;
    model_.journalIs(&journal_);
  }
  void eventIsNext() override { journal_.taken(); }
  void eventIsOver(bool isCounted) override {
    if (isCounted) marks_ += journal_.taken().size();
  }
  void tell(std::size_t events) const override { tellEach(marks_, events); }

 private:
  host::Model model_;
  QosOc::Config::Journal journal_;
  std::size_t marks_ = 0;
};

class FeedFollower final : public Follower {
 public:
  void start(const host::Model& model) override {
    model_ = model;
    feed_.emplace(model_);
    subscription_ = feed_->onLeaves({}, [this](const host::LeafChanges& changes) {
      leaves_ = changes.deleted.size() + changes.updated.size();
    });
    feed_->commit();
  }
  bool countsEvents() const override { return false; }
  void eventIsNext() override { feed_->commit(); }
  void eventIsOver(bool isCounted) override {
    if (!isCounted) return feed_->commit();
    CALLGRIND_TOGGLE_COLLECT;
    feed_->commit();
    CALLGRIND_TOGGLE_COLLECT;
    all_ += leaves_;
  }
  void tell(std::size_t events) const override { tellEach(all_, events); }

 private:
  host::Model model_;
  std::optional<host::Feed> feed_;
  host::Feed::Subscription subscription_;
  std::size_t leaves_ = 0;  // of the last commit
  std::size_t all_ = 0;
};

}  // namespace

std::unique_ptr<Follower> journalFollower() { return std::make_unique<JournalFollower>(); }
std::unique_ptr<Follower> feedFollower() { return std::make_unique<FeedFollower>(); }

}  // namespace Bench
