// The feed as its observers see it: each rule at the head of host/Feed.h.
#include "host/Feed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cassert>
#include <optional>
#include <stdexcept>

#include "host/openconfig/Leaves.h"
#include "tests/support/HeaderExample.h"
#include "tests/support/HostFeed.h"

namespace host::feedTest {
namespace {

using support::HostConsumer;
using support::HostFollowed;
using support::HostLines;
using support::HostModel;
using support::hostOneOfEach;
using testing::ElementsAre;
using testing::IsEmpty;

const HostLines queueA{"+ /qos/queues/queue[name=a]/config/name \"a\"",
                       "+ /qos/queues/queue[name=a]/name \"a\""};
const HostLines queueB{"+ /qos/queues/queue[name=b]/config/name \"b\"",
                       "+ /qos/queues/queue[name=b]/name \"b\""};

// All leaves of a model, as an observer's first call has them.
HostLines whole(const HostModel& built) {
  HostLines lines;
  for (const auto& [path, value] : leavesOf(built.model, View())) {
    lines.push_back("+ " + path + ' ' + value);
  }
  return lines;
}

// Writes down which observers are called.
struct Calls {
  Feed::OnLeaves named(const std::string& name) {
    return [this, name](const LeafChanges&) { names.push_back(name); };
  }
  HostLines names;
};

// ===== What the calls bring

TEST(Feed, BringsEverythingInTheFirstCall) {
  HostModel built;
  readModelText(hostOneOfEach, built.model);
  Feed feed(built.model);
  HostConsumer consumer(feed);
  feed.commit();
  EXPECT_TRUE(consumer.wasWhole());
  const HostLines lines = consumer.lines();
  EXPECT_GT(lines.size(), 40u);
  EXPECT_EQ(lines, whole(built));
}

TEST(Feed, BringsTheDifferenceInLaterCalls) {
  HostFollowed built;
  built.queueIs("a");
  EXPECT_EQ(built.commit(), queueA);
  built.queueIs("b");
  EXPECT_EQ(built.commit(), queueB);
  EXPECT_FALSE(built.consumer.wasWhole());
}

TEST(Feed, BringsEverythingToAnObserverThatJoinsLate) {
  HostFollowed built(hostOneOfEach);
  HostConsumer late(built.feed);
  built.queueIs("a");
  EXPECT_EQ(built.commit(), queueA);
  EXPECT_TRUE(late.wasWhole());
  EXPECT_EQ(late.lines(), whole(built));
}

TEST(Feed, HasNoHoleBehindTheFirstCallOfALateObserver) {
  HostFollowed built(hostOneOfEach);
  HostConsumer late(built.feed);
  built.queueIs("a");
  built.commit();
  late.lines();
  built.queueIs("b");
  built.commit();
  EXPECT_EQ(late.lines(), queueB);
  EXPECT_EQ(late.known(), built.consumer.known());
}

TEST(Feed, CallsEachObserverOnceAtACommitWithoutAChange) {
  HostFollowed built(hostOneOfEach);
  HostConsumer other(built.feed);
  built.commit();
  other.lines();
  EXPECT_THAT(built.commit(), IsEmpty());
  EXPECT_EQ(built.consumer.calls(), 3);
  EXPECT_EQ(other.calls(), 2);
  EXPECT_THAT(other.lines(), IsEmpty());
}

TEST(Feed, SaysNothingOfWhatCameAndWentBetweenTwoCommits) {
  HostFollowed built;
  built.queueIs("a");
  built.termIs(built.term("t"));
  built.model.queues->qDel("a");
  built.model.classifiers->classifierDel("c");
  EXPECT_THAT(built.commit(), IsEmpty());
}

TEST(Feed, ShowsTheModelAsTheLastCommitLeftIt) {
  HostFollowed built;
  built.queueIs("a");
  EXPECT_EQ(built.feed.committed().queues->q().members(), 0u);
  built.commit();
  EXPECT_NE(built.feed.committed().queues->q().find("a"), nullptr);
}

// ===== Who is called

TEST(Feed, CallsItsObserversInTheOrderInWhichTheyJoined) {
  const HostModel built;
  Feed feed(built.model);
  Calls calls;
  const auto first = feed.onLeaves({}, calls.named("first"));
  const auto second =
      feed.onRecords([&](const RecordChanges&) { calls.names.push_back("second"); });
  const auto third = feed.onLeaves({}, calls.named("third"));
  feed.commit();
  EXPECT_THAT(calls.names, ElementsAre("first", "second", "third"));
}

TEST(Feed, CallsNoObserverWhoseSubscriptionEnded) {
  const HostModel built;
  Feed feed(built.model);
  Calls calls;
  auto ended = feed.onLeaves({}, calls.named("ended"));
  { const auto shortLived = feed.onLeaves({}, calls.named("short-lived")); }
  const auto kept = feed.onLeaves({}, calls.named("kept"));
  ended.end();
  ended.end();
  feed.commit();
  EXPECT_THAT(calls.names, ElementsAre("kept"));
}

TEST(Feed, LetsAnObserverEndItselfDuringItsCall) {
  const HostModel built;
  Feed feed(built.model);
  int calls = 0;
  Feed::Subscription own;
  own = feed.onLeaves({}, [&](const LeafChanges&) {
    ++calls;
    own.end();
  });
  feed.commit();
  feed.commit();
  EXPECT_EQ(calls, 1);
}

TEST(Feed, CallsNoObserverThatAnEarlierOneEndedDuringTheSameCommit) {
  const HostModel built;
  Feed feed(built.model);
  Calls calls;
  Feed::Subscription later;
  const auto earlier = feed.onLeaves({}, [&](const LeafChanges&) { later.end(); });
  later = feed.onLeaves({}, calls.named("later"));
  feed.commit();
  feed.commit();
  EXPECT_THAT(calls.names, IsEmpty());
}

TEST(Feed, CallsNoMoreAnObserverThatALaterOneEnded) {
  const HostModel built;
  Feed feed(built.model);
  Calls calls;
  auto earlier = feed.onLeaves({}, calls.named("earlier"));
  const auto later = feed.onLeaves({}, [&](const LeafChanges&) { earlier.end(); });
  feed.commit();
  feed.commit();
  EXPECT_THAT(calls.names, ElementsAre("earlier"));
}

TEST(Feed, CallsAnObserverThatJoinsDuringACommitFromTheNextOneOn) {
  const HostModel built;
  built.queueIs("a");
  Feed feed(built.model);
  std::optional<HostConsumer> joined;
  const auto joins = feed.onLeaves({}, [&](const LeafChanges&) {
    if (!joined) joined.emplace(feed);
  });
  feed.commit();
  EXPECT_EQ(joined->calls(), 0);
  feed.commit();
  EXPECT_TRUE(joined->wasWhole());
  EXPECT_EQ(joined->lines(), queueA);
}

TEST(Feed, KeepsASubscriptionThatMoves) {
  const HostModel built;
  Feed feed(built.model);
  Calls calls;
  auto one = feed.onLeaves({}, calls.named("one"));
  auto other = feed.onLeaves({}, calls.named("other"));
  Feed::Subscription moved(std::move(one));
  feed.commit();
  EXPECT_THAT(calls.names, ElementsAre("one", "other"));
  moved = std::move(other);  // ends what it held
  feed.commit();
  EXPECT_THAT(calls.names, ElementsAre("one", "other", "other"));
}

// ===== What an observer may do

TEST(Feed, TakesWhatAnObserverWritesIntoTheNextCommit) {
  HostModel built;
  Feed feed(built.model);
  const auto writes = feed.onLeaves({}, [&](const LeafChanges& changes) {
    if (changes.isWhole) built.queueIs("a");
  });
  HostConsumer consumer(feed);
  feed.commit();
  EXPECT_THAT(consumer.lines(), IsEmpty());
  feed.commit();
  EXPECT_EQ(consumer.lines(), queueA);
  feed.commit();
  EXPECT_THAT(consumer.lines(), IsEmpty());
}

TEST(Feed, RefusesACommitFromAnObserver) {
  const HostModel built;
  Feed feed(built.model);
  const auto commits = feed.onLeaves({}, [&](const LeafChanges&) { feed.commit(); });
  EXPECT_THROW(feed.commit(), std::logic_error);
}

TEST(Feed, CommitsAgainBehindACommitThatWasRefused) {
  HostFollowed built;
  auto commits = built.feed.onLeaves({}, [&](const LeafChanges&) { built.feed.commit(); });
  EXPECT_THROW(built.feed.commit(), std::logic_error);
  commits.end();
  built.queueIs("a");
  EXPECT_EQ(built.commit(), queueA);
}

// ===== Exceptions

struct Raising {
  explicit Raising(Feed& feed, const char* text)
      : subscription(feed.onLeaves({}, [this, text](const LeafChanges&) {
          if (isOn) throw std::runtime_error(text);
        })) {}
  bool isOn = true;
  Feed::Subscription subscription;
};

std::string raised(Feed& feed) {
  try {
    feed.commit();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
}

TEST(Feed, CallsTheOthersBeforeAnExceptionOfAnObserverLeavesIt) {
  HostModel built;
  built.queueIs("a");
  Feed feed(built.model);
  HostConsumer before(feed);
  const Raising raising(feed, "no");
  HostConsumer behind(feed);
  EXPECT_EQ(raised(feed), "no");
  EXPECT_EQ(before.lines(), queueA);
  EXPECT_EQ(behind.lines(), queueA);
}

TEST(Feed, LetsTheFirstOfSeveralExceptionsLeaveIt) {
  const HostModel built;
  Feed feed(built.model);
  const Raising one(feed, "one");
  const Raising other(feed, "other");
  EXPECT_EQ(raised(feed), "one");
}

TEST(Feed, CountsWhatAnObserverRaisedAtAsDelivered) {
  HostModel built;
  Feed feed(built.model);
  std::vector<HostLines> calls;
  const auto raising = feed.onLeaves({}, [&](const LeafChanges& changes) {
    calls.push_back(support::hostLines(changes));
    throw std::runtime_error("no");
  });
  built.queueIs("a");
  EXPECT_EQ(raised(feed), "no");
  built.queueIs("b");
  EXPECT_EQ(raised(feed), "no");
  EXPECT_EQ(calls, (std::vector<HostLines>{queueA, queueB}));
}

TEST(Feed, BringsTheOthersTheDifferenceAloneBehindAnException) {
  HostFollowed built(hostOneOfEach);
  Raising raising(built.feed, "no");
  built.queueIs("a");
  EXPECT_EQ(raised(built.feed), "no");
  EXPECT_EQ(built.consumer.lines(), queueA);
  raising.isOn = false;
  built.queueIs("b");
  EXPECT_EQ(built.commit(), queueB);
}

// ===== Lives

TEST(Feed, MayGoBeforeItsSubscriptions) {
  const HostModel built;
  std::optional<Feed> feed(built.model);
  auto subscription = feed->onLeaves({}, [](const LeafChanges&) {});
  feed.reset();
  subscription.end();
}

TEST(Feed, MayGoBehindTheModelWhoseDirectoriesItHolds) {
  std::optional<HostModel> built(std::in_place);
  std::optional<Feed> feed(std::in_place, built->model);
  HostConsumer consumer(*feed);
  built->queueIs("a");
  built.reset();
  feed->commit();
  EXPECT_EQ(consumer.lines(), queueA);
  feed.reset();
}

TEST(Feed, IsTheOnlyOneOfItsModel) {
  HostFollowed built;
  built.commit();
  Feed second(built.model);
  EXPECT_THROW(second.commit(), std::logic_error);
  built.queueIs("a");
  EXPECT_EQ(built.commit(), queueA) << "the first one follows the model as before";
}

TEST(Feed, MayComeBehindAnotherOneThatWent) {
  const HostModel built;
  Feed(built.model).commit();
  Feed second(built.model);
  HostConsumer consumer(second);
  built.queueIs("a");
  second.commit();
  EXPECT_EQ(consumer.lines(), queueA);
}

TEST(Feed, LetsGoOfAnObserverWhenItsSubscriptionEnds) {
  const HostModel built;
  Feed feed(built.model);
  const auto held = std::make_shared<int>(7);
  auto subscription = feed.onLeaves({}, [held](const LeafChanges&) {});
  feed.commit();
  EXPECT_EQ(held.use_count(), 2);
  subscription.end();
  EXPECT_EQ(held.use_count(), 1);
}

TEST(Feed, LeavesTheModelWithoutAJournal) {
  HostModel built;
  readModelText(hostOneOfEach, built.model);
  std::optional<Feed> feed(built.model);
  feed->commit();
  feed.reset();
  // A mark would go into a journal that is no more: the sanitizers would see that.
  support::writeAsItIs(built);
  built.model.classifiers->classifierDel("c");
  built.interface("e")->outputDel();
  built.queueIs("a");
  Feed next(built.model);
  HostConsumer consumer(next);
  next.commit();
  EXPECT_EQ(consumer.lines(), whole(built));
}

TEST(Feed, AttachesToTheModelAtItsFirstCommit) {
  HostModel built;
  built.queueIs("a");
  Feed feed(built.model);
  HostConsumer consumer(feed);
  built.queueIs("b");
  feed.commit();
  EXPECT_EQ(consumer.known().size(), queueA.size() + queueB.size());
}

// ===== Records

// "queue a came", in the order of the call.
struct Records {
  explicit Records(Feed& feed)
      : subscription(feed.onRecords([this](const RecordChanges& changes) {
          isWhole = changes.isWhole;
          for (const RecordChange& change : changes.changes) lines.push_back(line(change));
        })) {}
  static std::string line(const RecordChange& change) {
    std::string text(change.kind->path);
    for (const std::string& key : keyTexts(*change.kind, change.keys)) text += ' ' + key;
    return text + (change.before == nullptr  ? " came"
                   : change.after == nullptr ? " went"
                                             : " changed");
  }
  bool isWhole = false;
  HostLines lines;
  Feed::Subscription subscription;
};

TEST(FeedOfRecords, BringsEachRecordAsOneThatCameInTheFirstCall) {
  HostModel built;
  readModelText(hostOneOfEach, built.model);
  Feed feed(built.model);
  const Records records(feed);
  feed.commit();
  EXPECT_TRUE(records.isWhole);
  EXPECT_THAT(
      records.lines,
      testing::UnorderedElementsAre(
          "classifiers/classifier c came", "terms/term c t came",
          "forwarding-groups/forwarding-group f came", "interfaces/interface e came",
          "input/classifiers/classifier e IPV4 came", "output/qosoc-augments:pfc e came",
          "output/queues/queue e q came", "output/scheduler-policy e came",
          "qosoc-augments:pfc/watchdog came",
          "queue-management-profiles/queue-management-profile p came", "queues/queue q came",
          "scheduler-policies/scheduler-policy s came", "schedulers/scheduler s 1 came",
          "inputs/input s 1 i came", "one-rate-two-color s 1 came"));
}

TEST(FeedOfRecords, BringsAChangedRecordWithBothOfItsSides) {
  HostFollowed built(hostOneOfEach);
  HostLines seen;
  const auto subscription = built.feed.onRecords([&](const RecordChanges& changes) {
    for (const RecordChange& change : changes.changes) {
      if (changes.isWhole || change.kind != &kinds::queue) continue;
      const auto* was = change.was<QosOc::Config::Queue>();
      const auto* is = change.is<QosOc::Config::Queue>();
      seen.push_back(std::to_string(static_cast<bool>(was->config.strictPriority)) + " to " +
                     std::to_string(static_cast<bool>(is->config.strictPriority)));
    }
  });
  built.commit();
  built.model.queues->qContentIs("q").config.strictPriority = false;
  built.commit();
  EXPECT_THAT(seen, ElementsAre("1 to 0"));
}

TEST(FeedOfRecords, GivesNoRecordOfAnotherType) {
  HostFollowed built;
  bool wasCalled = false;
  const auto subscription = built.feed.onRecords([&](const RecordChanges& changes) {
    for (const RecordChange& change : changes.changes) {
      wasCalled = true;
      EXPECT_NE(change.is<QosOc::Config::Queue>(), nullptr);
      EXPECT_EQ(change.is<QosOc::Config::Term>(), nullptr);
    }
  });
  built.commit();
  built.queueIs("a");
  built.commit();
  EXPECT_TRUE(wasCalled);
}

TEST(FeedOfRecords, KeepsWhatWentForTheCall) {
  HostFollowed built(hostOneOfEach);
  std::string name;
  const auto subscription = built.feed.onRecords([&](const RecordChanges& changes) {
    for (const RecordChange& change : changes.changes) {
      if (change.after == nullptr) name = change.was<QosOc::Config::Queue>()->config.name;
    }
  });
  built.commit();
  built.model.queues->qDel("q");
  built.commit();
  EXPECT_EQ(name, "q");
}

TEST(FeedOfRecords, CoversWhatWasBelowByTheRemovalOfAnEntry) {
  HostFollowed built(hostOneOfEach);
  Records records(built.feed);
  built.commit();
  records.lines.clear();
  built.model.schedulerPolicies->schedulerPolicyDel("s");
  built.model.classifiers->classifierDel("c");
  built.commit();
  EXPECT_FALSE(records.isWhole);
  EXPECT_THAT(records.lines, ElementsAre("scheduler-policies/scheduler-policy s went",
                                         "classifiers/classifier c went"));
}

TEST(FeedOfRecords, SaysNothingOfARecordThatWasWrittenAsItWas) {
  HostFollowed built(hostOneOfEach);
  Records records(built.feed);
  built.commit();
  records.lines.clear();
  support::writeAsItIs(built);
  built.commit();
  EXPECT_THAT(records.lines, IsEmpty());
}

TEST(FeedOfRecords, NamesAnEntryThatTheDocumentCannotHold) {
  HostFollowed built;
  HostLines misfits;
  const auto subscription = built.feed.onRecords([&](const RecordChanges& changes) {
    for (const LeftOutEntry& entry : changes.leftOut) misfits.push_back(entry.misfit);
    EXPECT_THAT(changes.changes, IsEmpty());
  });
  built.commit();
  built.queueIs("a\x01");
  built.commit();
  ASSERT_EQ(misfits.size(), 1u);
}

// ===== The example of the header

TEST(FeedExample, Runs) {
  const Model model;
  host::Feed feed(model);
  std::map<std::string, std::string> known;  // leaves, by their paths
  const auto leaves = feed.onLeaves({}, [&](const host::LeafChanges& changes) {
    if (changes.isWhole) known.clear();
    for (const std::string& node : changes.deleted) {
      std::erase_if(known, [&](const auto& leaf) {
        return leaf.first == node || leaf.first.starts_with(node + '/');
      });
    }
    for (const auto& [path, type, value] : changes.updated) {
      known[path] = host::leafText(type, value);
    }
  });
  std::vector<std::string> newQueues;
  const auto records = feed.onRecords([&](const host::RecordChanges& changes) {
    for (const host::RecordChange& change : changes.changes) {
      const auto* queue = change.is<QosOc::Config::Queue>();
      if (queue != nullptr && change.before == nullptr) newQueues.push_back(queue->name.data());
    }
  });
  feed.commit();
  model.queues->qIs(QosOc::Config::Queue("voice"));  // as a root would
  feed.commit();
  assert(known["/qos/queues/queue[name=voice]/name"] == "\"voice\"");
  assert(newQueues == std::vector<std::string>{"voice"});
}

TEST(FeedExample, IsTheOneOfTheHeader) {
  support::expectExample("host/Feed.h", "tests/host/FeedTest.cpp");
}

}  // namespace
}  // namespace host::feedTest
