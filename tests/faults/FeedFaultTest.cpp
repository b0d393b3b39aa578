// Memory runs out at each allocation of a commit in turn. The exception leaves it, and when memory
// is there again, the next commit brings every observer up to date.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>

#include "EachAllocation.h"
#include "host/Feed.h"
#include "host/feed/Images.h"
#include "host/openconfig/Leaves.h"
#include "tests/support/HostDevice.h"
#include "tests/support/HostFeed.h"
#include "tests/support/House.h"

namespace faults::feedFaultTest {
namespace {

using support::House;

using Known = std::map<std::string, std::string>;

// What leads from one state to the next is the feed's alone: what a consumer itself takes is not
// refused.
class LeafConsumer {
 public:
  explicit LeafConsumer(host::Feed& feed)
      : subscription_(feed.onLeaves({}, [this](const auto& changes) {
          const AllocationPause pause;
          support::hostApply(changes, known_);
        })) {}
  const Known& known() const { return known_; }

 private:
  Known known_;
  host::Feed::Subscription subscription_;
};

std::string keyOf(const host::RecordKind& kind, const QosOc::Config::RecordKeys& keys) {
  std::string text(kind.path);
  for (const std::string& key : keyTexts(kind, keys)) text += '\t' + key;
  return text;
}

// The records of the outermost lists: what is below goes without a word of its own.
class RecordConsumer {
 public:
  explicit RecordConsumer(host::Feed& feed)
      : subscription_(feed.onRecords([this](const auto& changes) {
          const AllocationPause pause;
          hear(changes);
        })) {}
  const Known& known() const { return known_; }

 private:
  void hear(const host::RecordChanges& changes) {
    if (changes.isWhole) known_.clear();
    for (const host::RecordChange& change : changes.changes) {
      if (change.kind->parent != nullptr) continue;
      const std::string key = keyOf(*change.kind, change.keys);
      change.after != nullptr ? void(known_[key] = "there") : void(known_.erase(key));
    }
  }
  Known known_;
  host::Feed::Subscription subscription_;
};

Known leavesOf(const host::Model& model) {
  Known leaves;
  for (auto& leaf : host::leavesOf(model, host::View())) leaves[leaf.path] = leaf.value;
  return leaves;
}

Known recordsOf(const host::Model& model) {
  Known records;
  host::Images images;
  images.updateAll(model);
  for (const host::RecordChange& record : images.all().changes) {
    if (record.kind->parent == nullptr) records[keyOf(*record.kind, record.keys)] = "there";
  }
  return records;
}

struct Followed {
  House house;
  host::Feed feed{house.model};
  std::vector<std::unique_ptr<LeafConsumer>> leaves;
  std::vector<std::unique_ptr<RecordConsumer>> records;

  void consumersJoin() {
    leaves.push_back(std::make_unique<LeafConsumer>(feed));
    records.push_back(std::make_unique<RecordConsumer>(feed));
  }
  // One line for each operation, on a device with its roots.
  void change(std::initializer_list<std::string> lines) const {
    host::Changes changes(house.native, [](const std::string& line) { ADD_FAILURE() << line; });
    for (const std::string& line : lines) changes.line(line);
  }
  void expectUpToDate(std::uint64_t n) const {
    for (const auto& consumer : leaves) {
      EXPECT_EQ(consumer->known(), leavesOf(house.model)) << "allocation " << n;
    }
    for (const auto& consumer : records) {
      EXPECT_EQ(consumer->known(), recordsOf(house.model)) << "allocation " << n;
    }
  }
};

// Fails each allocation of the commit that follows `prepare`. Behind it comes a change of something
// else, which the next commit brings with all that the failed one did not.
void failEachAllocation(void (*prepare)(Followed& followed)) {
  eachFault([&](std::uint64_t n, AllocationFault::Kind kind) {
    Followed followed;
    followed.consumersJoin();
    prepare(followed);
    const bool struck = strikes(n, kind, [&] { followed.feed.commit(); });
    followed.house.model.queues->qIs(QosOc::Config::Queue("behind"));
    followed.feed.commit();
    followed.expectUpToDate(n);
    return struck;
  });
}

TEST(CommitWithoutMemory, LeavesTheFirstCallOfEachObserverToTheNextCommit) {
  failEachAllocation([](Followed& followed) { followed.house.build(); });
}

TEST(CommitWithoutMemory, LosesNoChange) {
  failEachAllocation([](Followed& followed) {
    followed.house.build();
    followed.feed.commit();
    followed.change(
        {support::hostLine("replace", "/tc-to-tx-queue/5", "1"),
         support::hostLine("remove", "/class-maps/qos/__yang_[c4]_[t]"),
         support::hostLine("add", "/class-maps/qos/__yang_[c7]_[t]", R"({"match": [1]})"),
         support::hostLine("remove", "/comments/if-Et1-uc-txq-3"),
         support::hostLine("remove", "/interfaces/Ethernet3")});
  });
}

TEST(CommitWithoutMemory, LeavesNoHoleForObserversThatJoin) {
  failEachAllocation([](Followed& followed) {
    followed.house.build();
    followed.feed.commit();
    followed.consumersJoin();
    followed.change({support::hostLine("replace", "/tc-to-tx-queue/5", "1")});
  });
}

// ===== While roots write

TEST(ChangeWithoutMemory, IsInTheNextCommitAsFarAsItWasMade) {
  eachFault([&](std::uint64_t n, AllocationFault::Kind kind) {
    Followed followed;
    followed.consumersJoin();
    followed.house.build();
    followed.feed.commit();
    auto& queueNames = *followed.house.native.qosConfig->queueNameToTxQueueIdMap();
    const bool struck = strikes(n, kind, [&] { queueNames.queueNameToTxQueueIdIs("silver", 4); });
    followed.feed.commit();
    followed.expectUpToDate(n);
    return struck;
  });
}

}  // namespace
}  // namespace faults::feedFaultTest
