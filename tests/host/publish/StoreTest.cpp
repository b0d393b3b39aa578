// What readers of a store find: each rule at the head of host/publish/Store.h and WindowWalk.h.
#include "host/publish/Store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <thread>

#include "host/feed/Images.h"
#include "host/openconfig/Leaves.h"
#include "tests/support/HostStore.h"
#include "tests/support/RandomModel.h"

namespace host::storeTest {
namespace {

using support::HostLines;
using support::hostOneOfEach;
using support::HostPublished;
using support::StoreReader;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string a = "/qos/queues/queue[name=a]";
const HostLines queueA{"+ " + a + "/config/name \"a\"", "+ " + a + "/name \"a\""};

TEST(Store, SaysNothingBeforeTheFirstCommit) {
  const Store store;
  EXPECT_EQ(store.head().commit, 0u);
  EXPECT_THAT(StoreReader().read(store), IsEmpty());
  EXPECT_FALSE(store.piece("").block);
}

TEST(Store, HasWhatTheModelHasThatItBeganWith) {
  HostPublished built(hostOneOfEach);
  StoreReader reader;
  reader.read(built.store);
  support::HostConsumer consumer(built.feed);
  built.commit();
  EXPECT_GT(reader.leaves().size(), 40u);
  EXPECT_EQ(reader.leaves(), consumer.known());
}

TEST(Store, SaysWhatChangedBehindACommit) {
  HostPublished built;
  StoreReader reader;
  built.queueIs("a");
  built.commit();
  EXPECT_EQ(reader.read(built.store), queueA);
  EXPECT_THAT(reader.read(built.store), IsEmpty());
}

TEST(Store, CountsCommitsThatChangeSomething) {
  HostPublished built;
  built.queueIs("a");
  built.commit();
  EXPECT_TRUE(built.hasChanged);
  const Store::Head before = built.store.head();
  support::writeAsItIs(built);
  built.model.queues->qIs(QosOc::Config::Queue("a"));
  built.commit();
  built.model.queues->qDel("a");
  built.commit();
  EXPECT_TRUE(built.hasChanged);
  EXPECT_EQ(built.store.head().commit, before.commit + 1 + 1);
  EXPECT_EQ(built.store.head().timestamp, built.timestamp);
}

TEST(Store, SaysOfARecordTheLeavesThatChanged) {
  HostPublished built(hostOneOfEach);
  StoreReader reader;
  reader.read(built.store);
  built.model.queues->qContentIs("q").config.bandwidth = QosOc::PercentType(50);
  built.commit();
  EXPECT_THAT(reader.read(built.store),
              ElementsAre("+ /qos/queues/queue[name=q]/config/qosoc-augments:bandwidth 50"));
}

TEST(Store, SaysOnceWhatChangedTwiceBetweenTwoReads) {
  HostPublished built(hostOneOfEach);
  StoreReader reader;
  reader.read(built.store);
  for (const unsigned share : {50, 60}) {
    built.model.queues->qContentIs("q").config.bandwidth = QosOc::PercentType(share);
    built.commit();
  }
  EXPECT_THAT(reader.read(built.store),
              ElementsAre("+ /qos/queues/queue[name=q]/config/qosoc-augments:bandwidth 60"));
}

TEST(Store, SaysOfALeafAlsoWhenALaterCommitChangedAnotherOne) {
  HostPublished built(hostOneOfEach);
  StoreReader reader;
  reader.read(built.store);
  built.model.queues->qContentIs("q").config.bandwidth = QosOc::PercentType(50);
  built.commit();
  built.model.queues->qContentIs("q").config.strictPriority = false;
  built.commit();
  EXPECT_THAT(reader.read(built.store),
              ElementsAre("- /qos/queues/queue[name=q]/config/qosoc-augments:strict-priority",
                          "+ /qos/queues/queue[name=q]/config/qosoc-augments:bandwidth 50"));
}

// ===== What went

TEST(Store, SaysWhichEntryWent) {
  HostPublished built(hostOneOfEach);
  StoreReader reader;
  reader.read(built.store);
  built.model.classifiers->classifierDel("c");
  built.commit();
  EXPECT_THAT(reader.read(built.store), ElementsAre("- /qos/classifiers/classifier[name=c]"));
}

TEST(Store, SaysTheHighestNodeThatWent) {
  HostPublished built(hostOneOfEach);
  StoreReader reader;
  reader.read(built.store);
  built.model.classifiers->classifier("c")->termsIs()->termDel("t");
  built.model.pfc->watchdogIs({});
  built.model.interfaces->interface("e")->outputIs()->schedulerPolicyIs({});
  built.commit();
  EXPECT_THAT(reader.read(built.store),
              ElementsAre("- /qos/classifiers/classifier[name=c]/terms",
                          "- /qos/interfaces/interface[interface-id=e]/output/scheduler-policy",
                          "- /qos/qosoc-augments:pfc"));
}

TEST(Store, SaysOfAnEntryThatWentAndCameBackBoth) {
  HostPublished built;
  built.queueIs("a");
  built.commit();
  StoreReader reader;
  reader.read(built.store);
  built.model.queues->qDel("a");
  built.commit();
  built.queueIs("a");
  built.commit();
  EXPECT_THAT(reader.read(built.store), ElementsAre("- " + a, queueA[0], queueA[1]));
}

TEST(Store, SaysNothingOfTheEntryBeforeToAReaderThatKnowsThatItWent) {
  HostPublished built;
  built.queueIs("a");
  built.commit();
  StoreReader reader;
  built.model.queues->qDel("a");
  built.commit();
  reader.read(built.store);
  built.queueIs("a");
  built.commit();
  EXPECT_EQ(reader.read(built.store), queueA);
}

TEST(Store, SaysTheDeletionOfAnEntryForAllThatWasBelow) {
  HostPublished built(hostOneOfEach);
  StoreReader reader;
  reader.read(built.store);
  built.model.classifiers->classifier("c")->termsIs()->termDel("t");
  built.commit();
  built.model.classifiers->classifierDel("c");
  built.commit();
  EXPECT_THAT(reader.read(built.store), ElementsAre("- /qos/classifiers/classifier[name=c]"));
}

TEST(Store, HasNoMoreOfWhatWentThanAShareOfWhatIsThere) {
  HostPublished built;
  StoreReader quick;
  for (int i = 0; i < 5000; ++i) {
    const std::string name = std::to_string(i);
    built.queueIs(name);
    built.commit();
    built.model.queues->qDel(name);
    built.commit();
    quick.read(built.store);
  }
  EXPECT_LT(built.store.bytes(), 300'000u);
  EXPECT_FALSE(quick.isLost());
  EXPECT_THAT(quick.leaves(), IsEmpty());
  StoreReader slow;
  slow.read(built.store);
  EXPECT_TRUE(slow.isLost());
}

// ===== Pieces and snapshots

TEST(Store, GivesPiecesThatMissNothingBesideTheWindowBehindThem) {
  HostPublished built(hostOneOfEach);
  for (int i = 0; i < 500; ++i) built.queueIs("n" + std::to_string(i));
  built.commit();
  StoreReader reader;
  int count = 0;
  reader.readPieces(built.store, [&] {
    // One that was read already, one that comes before it and one that goes.
    built.forwardingGroupIs("f", std::to_string(++count));
    built.queueIs("b" + std::to_string(count));
    built.model.queues->qDel("n" + std::to_string(500 - count));
    built.commit();
  });
  StoreReader whole;
  whole.read(built.store);
  EXPECT_GT(count, 5);
  EXPECT_EQ(reader.leaves(), whole.leaves());
}

TEST(Store, KeepsASnapshotAsItIs) {
  HostPublished built;
  built.queueIs("a");
  built.commit();
  const Store::Snapshot before = built.store.snapshot();
  built.queueIs("b");
  built.model.queues->qDel("a");
  built.commit();
  std::vector<std::string> names;
  for (ImageIndex::Place at; !before.images.isEnd(at); at = before.images.next(at)) {
    Keys keys;
    before.images.at(at).keys(keys);
    names.emplace_back(keys.back());
  }
  EXPECT_THAT(names, ElementsAre("a"));
  EXPECT_EQ(before.head.commit + 1, built.store.head().commit);
}

TEST(Store, HasARecordsLeavesInTheOrderOfTheWalk) {
  HostPublished built(hostOneOfEach);
  built.model.schedulerPolicies->schedulerPolicyIs("s")->schedulersIs()->schedulerIs(10);
  built.model.schedulerPolicies->schedulerPolicyIs("s")->schedulersIs()->schedulerIs(9);
  built.commit();
  HostLines walked;
  eachRecord(built.feed.committed(), View({.interfaceRef = true}),
             [&](const RecordAt& at) { walked.emplace_back(entryName(at.kind, at.keys)); });
  HostLines images;
  const Store::Snapshot all = built.store.snapshot();
  for (ImageIndex::Place at; !all.images.isEnd(at); at = all.images.next(at)) {
    images.emplace_back(all.images.at(at).name());
  }
  EXPECT_EQ(images, walked);
}

// ===== Any model

// Readers that read after each commit, after some, and once.
TEST(Store, BringsReadersOfAnySpeedToTheSameLeaves) {
  std::mt19937 random(7);
  const View view({.state = true, .interfaceRef = true});
  for (unsigned day = 0; day < 6; ++day) {
    Store store;
    Images images;
    std::vector<StoreReader> readers(4, StoreReader(view));
    for (unsigned step = 1; step <= 60; ++step) {
      const support::RandomModel next(random() % 9 + 100 * day);
      if (random() % 2 == 0) next.model.queues->qIs(QosOc::Config::Queue("x"));
      if (random() % 2 == 0) {
        next.model.classifiers->classifierIs("y")->termsIs()->termIs(
            QosOc::Config::Term(std::to_string(random() % 3)));
      }
      store.publish(images.updateAll(next.model), images.model(), step);
      for (std::size_t i = 0; i < readers.size(); ++i) {
        if (random() % (1u << (2 * i)) == 0) readers[i].read(store);
      }
      std::map<std::string, std::string> now;
      for (const auto& [path, value] : leavesOf(next.model, view)) now[path] = value;
      ASSERT_EQ(readers[0].leaves(), now) << "day " << day << ", step " << step;
    }
    for (StoreReader& reader : readers) {
      reader.read(store);
      EXPECT_EQ(reader.leaves(), readers[0].leaves());
    }
  }
}

TEST(Store, FindsWhatWentWhereAFeedBeginsAnew) {
  Store store;
  Images images;
  const support::RandomModel first(3), second(4);
  store.publish(images.updateAll(first.model), images.model(), 1);
  StoreReader reader;
  reader.read(store);
  images.updateAll(second.model);
  store.publish(images.all(), images.model(), 2);
  reader.read(store);
  std::map<std::string, std::string> now;
  for (const auto& [path, value] : leavesOf(second.model, View())) now[path] = value;
  EXPECT_EQ(reader.leaves(), now);
}

// One thread publishes, and never waits; others take pieces, windows and snapshots meanwhile.
TEST(Store, IsReadByOtherThreadsWhileItIsWritten) {
  Store store;
  std::atomic<bool> isOver = false;
  std::vector<StoreReader> readers(3);
  std::vector<std::thread> threads;
  for (StoreReader& reader : readers) {
    threads.emplace_back([&] {
      reader.readPieces(store, [] {});
      while (!isOver) {
        const Store::Snapshot all = store.snapshot();
        reader.read(store);
        std::this_thread::yield();
      }
    });
  }
  Images images;
  for (unsigned step = 1; step <= 200; ++step) {
    const support::RandomModel next(step % 7);
    store.publish(images.updateAll(next.model), images.model(), step);
  }
  isOver = true;
  for (std::thread& thread : threads) thread.join();
  StoreReader whole;
  whole.read(store);
  for (StoreReader& reader : readers) {
    reader.read(store);
    EXPECT_FALSE(reader.isLost());
    EXPECT_EQ(reader.leaves(), whole.leaves());
  }
}

}  // namespace
}  // namespace host::storeTest
