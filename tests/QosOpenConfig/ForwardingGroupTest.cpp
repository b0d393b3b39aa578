// Names of forwarding groups and queues, and the traffic-class array, into forwarding groups.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigForwardingGroupKivToOcSm.h"
#include "tests/support/ForwardingDevice.h"
#include "tests/support/Refusals.h"
#include "tests/support/TraceCapture.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::forwardingGroupTest {
namespace {

using support::ForwardingDevice;
using support::nullArgument;
using support::TraceCapture;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using Groups = std::map<std::string, std::string>;
using Names = std::set<std::string>;

// ===== Start

TEST(ForwardingGroup, AGroupHasTheQueueThatItsTrafficClassLeadsTo) {
  ForwardingDevice device;
  device.queue("low", 1);
  device.queue("high", 7);
  device.group("expedited", 5);
  device.group("bulk", 0);
  device.lead(5, 7);
  device.lead(0, 1);
  device.start();
  EXPECT_EQ(device.model(), (Groups{{"bulk", "low"}, {"expedited", "high"}}));
  EXPECT_EQ(device.groups->forwardingGroup("expedited")->config(),
            (Config::ForwardingGroupConfig{"expedited", "high"}));
}

TEST(ForwardingGroup, AStartWithoutNamesMakesNothing) {
  ForwardingDevice device;
  device.lead(5, 7);
  device.start();
  EXPECT_EQ(device.model(), Groups{});
  EXPECT_EQ(device.namedQueues(), Names{});
}

TEST(ForwardingGroup, EachQueueNameMakesADefaultQueueOfThatKey) {
  ForwardingDevice device;
  device.queue("high", 7);
  device.queue("low", 1);
  device.start();
  EXPECT_EQ(device.namedQueues(), (Names{"high", "low"}));
  const Config::Queue high = device.queues->q("high");
  EXPECT_EQ(high, Config::Queue("high"));
  EXPECT_EQ(high.config.name, "") << "the key alone carries the name";
}

TEST(ForwardingGroup, AStartResetsAQueueOfThatNameAndLeavesAllOthers) {
  ForwardingDevice device;
  Config::Queue old("high");
  old.config = Config::QueueConfig("high");
  old.config.strictPriority = true;
  old.ecnConfig = Config::QueueEcnConfig();
  device.queues->qIs(old);
  old.name = "Ethernet1-unicast-3";
  device.queues->qIs(old);
  device.queue("high", 7);
  device.start();
  EXPECT_EQ(device.queues->q("high"), Config::Queue("high"));
  EXPECT_EQ(device.queues->q("Ethernet1-unicast-3"), old);
}

TEST(ForwardingGroup, ANameOfQueueSixteenGetsItsQueueAndIsNeverLedTo) {
  ForwardingDevice device;
  device.queue("none", 16);
  device.group("expedited", 5);
  device.start();
  EXPECT_EQ(device.namedQueues(), (Names{"none"}));
  EXPECT_EQ(device.root->txQueueIdToQueueNameMap(16).name, "none");
  EXPECT_EQ(device.model(), (Groups{{"expedited", ""}}));
}

TEST(ForwardingGroup, OfSeveralNamesOfOneQueueTheLastInNameOrderIsTheOneLedTo) {
  ForwardingDevice device;
  device.queue("zulu", 7);
  device.queue("alpha", 7);
  device.queue("mike", 7);
  device.group("expedited", 5);
  device.lead(5, 7);
  device.start();
  EXPECT_EQ(device.model(), (Groups{{"expedited", "zulu"}}));
  EXPECT_EQ(device.namedQueues(), (Names{"alpha", "mike", "zulu"})) << "each has its queue";
}

TEST(ForwardingGroup, AGroupWhoseTrafficClassHasNoQueueExistsAtStartWithoutOne) {
  ForwardingDevice device;
  device.queue("high", 7);
  device.group("expedited", 5);
  device.start();
  ASSERT_EQ(device.model(), (Groups{{"expedited", ""}}));
  EXPECT_EQ(device.groups->forwardingGroup("expedited")->config().name, "expedited");
}

TEST(ForwardingGroup, AQueueWithoutANameLeavesTheGroupsOutputEmptyAtStartAndAfterAChange) {
  ForwardingDevice device;
  device.queue("high", 7);
  device.group("expedited", 5);
  device.lead(5, 3);
  device.start();
  EXPECT_EQ(device.model(), (Groups{{"expedited", ""}}));
  device.lead(5, 7);
  EXPECT_EQ(device.model(), (Groups{{"expedited", "high"}}));
  device.lead(5, 4);
  EXPECT_EQ(device.model(), (Groups{{"expedited", ""}})) << "led to a queue, so it stays";
}

TEST(ForwardingGroup, AStartReplacesTheConfigOfAGroupOfThatNameAndKeepsTheObject) {
  ForwardingDevice device;
  const auto old = device.groups->forwardingGroupIs("expedited");
  old->configIs({"another", "stale"});
  device.group("expedited", 5);
  device.start();
  EXPECT_EQ(device.groups->forwardingGroup("expedited"), old);
  EXPECT_EQ(old->config(), (Config::ForwardingGroupConfig{"expedited", ""}));
}

// ===== Changes of the array

struct Expedited : testing::Test, ForwardingDevice {
  Expedited() {
    queue("low", 1);
    queue("high", 7);
    group("expedited", 5);
    start();
  }
};

TEST_F(Expedited, AQueueForTheTrafficClassFillsTheGroup) {
  lead(5, 7);
  EXPECT_EQ(model(), (Groups{{"expedited", "high"}}));
  lead(5, 1);
  EXPECT_EQ(model(), (Groups{{"expedited", "low"}}));
}

// The group stood without a queue at start; losing one later is another matter.
TEST_F(Expedited, LosingTheQueueDeletesTheGroupAndTheNextQueueBringsItBack) {
  EXPECT_EQ(model(), (Groups{{"expedited", ""}}));
  lead(5, 7);
  lead(5, 16);
  EXPECT_EQ(model(), Groups{});
  lead(5, 1);
  EXPECT_EQ(model(), (Groups{{"expedited", "low"}}));
  EXPECT_EQ(groups->forwardingGroup("expedited")->config().name, "expedited");
}

TEST_F(Expedited, AnUpdateKeepsTheGroupObject) {
  const auto before = groups->forwardingGroup("expedited");
  lead(5, 7);
  EXPECT_EQ(groups->forwardingGroup("expedited"), before);
}

TEST_F(Expedited, AChangeWritesTheGroupsOwnNameIntoItsConfig) {
  groups->forwardingGroup("expedited")->configIs({"tampered", "tampered"});
  lead(5, 7);
  EXPECT_EQ(groups->forwardingGroup("expedited")->config(),
            (Config::ForwardingGroupConfig{"expedited", "high"}));
}

TEST_F(Expedited, ATrafficClassWithoutAGroupNeitherCreatesNorDeletes) {
  lead(5, 7);
  lead(4, 7);
  lead(4, 16);
  EXPECT_EQ(model(), (Groups{{"expedited", "high"}}));
}

TEST_F(Expedited, AChangeNeverTouchesTheQueues) {
  Config::Queue queue("high");
  queue.config.strictPriority = true;
  queues->qIs(queue);
  lead(5, 7);
  lead(5, 16);
  EXPECT_EQ(queues->q("high"), queue);
}

TEST_F(Expedited, NamesThatComeGoOrMoveAfterStartMakeNoDifferenceUntilTheNextStart) {
  lead(5, 7);
  group("late", 4);
  queue("later", 9);
  groupNames->forwardingGroupNameToTcDel("expedited");
  queueNames->queueNameToTxQueueIdDel("high");
  lead(4, 9);
  EXPECT_EQ(model(), (Groups{{"expedited", "high"}}));
  EXPECT_EQ(namedQueues(), (Names{"high", "low"}));
  lead(5, 1);
  EXPECT_EQ(model(), (Groups{{"expedited", "low"}})) << "the old name still leads";
  lead(5, 7);
  EXPECT_EQ(model(), (Groups{{"expedited", "high"}})) << "and so does the queue's old name";
}

TEST_F(Expedited, OtherMapsInPlaceOfTheOnesOfTheStartMakeNoDifference) {
  const auto otherGroups = Rok::make<Qos::ForwardingGroupNameToTcMap>();
  otherGroups->forwardingGroupNameToTcIs("late", 5);
  const auto otherQueues = Rok::make<Qos::QueueNameToTxQueueIdMap>();
  otherQueues->queueNameToTxQueueIdIs("later", 7);
  config->forwardingGroupNameToTcMapIs(otherGroups);
  config->queueNameToTxQueueIdMapIs(otherQueues);
  EXPECT_EQ(model(), (Groups{{"expedited", ""}}));
  lead(5, 7);
  EXPECT_EQ(model(), (Groups{{"expedited", "high"}}));
  config->forwardingGroupNameToTcMapIs(nullptr);
  config->queueNameToTxQueueIdMapIs(nullptr);
  lead(5, 1);
  EXPECT_EQ(model(), (Groups{{"expedited", "low"}}));
}

TEST(ForwardingGroup, WithoutAMapOfNamesNothingIsWrittenOrWatched) {
  for (const std::string missing : {"queueNameToTxQueueIdMap 134", "forwardingGroupNameToTcMap 133",
                                    "queueNameToTxQueueIdMap 134 and the other"}) {
    SCOPED_TRACE(missing);
    ForwardingDevice device;
    device.queue("high", 7);
    device.group("expedited", 5);
    const bool both = missing.ends_with("the other");
    if (both || missing.starts_with("queue")) device.config->queueNameToTxQueueIdMapIs(nullptr);
    if (both || missing.starts_with("forward")) {
      device.config->forwardingGroupNameToTcMapIs(nullptr);
    }
    EXPECT_EQ(nullArgument([&] { device.start(); }), missing.substr(0, missing.find(" and")));
    EXPECT_EQ(device.model(), Groups{});
    EXPECT_EQ(device.queues->q().members(), 0u);
    EXPECT_EQ(device.config->notifieeList()->notifiees(), 0u);
  }
}

// A term's action takes the first name of a traffic class; a change of the array reaches the last.
TEST(ForwardingGroup, OfSeveralGroupsOfOneTrafficClassAChangeReachesTheLastInNameOrder) {
  ForwardingDevice device;
  device.queue("high", 7);
  device.group("zulu", 5);
  device.group("alpha", 5);
  device.start();
  EXPECT_EQ(device.model(), (Groups{{"alpha", ""}, {"zulu", ""}}));
  device.lead(5, 7);
  EXPECT_EQ(device.model(), (Groups{{"alpha", ""}, {"zulu", "high"}}));
  device.lead(5, 16);
  EXPECT_EQ(device.model(), (Groups{{"alpha", ""}}));
}

TEST(ForwardingGroup, AllGroupsOfOneTrafficClassAreFilledAtStart) {
  ForwardingDevice device;
  device.queue("high", 7);
  device.group("alpha", 5);
  device.group("zulu", 5);
  device.lead(5, 7);
  device.start();
  EXPECT_EQ(device.model(), (Groups{{"alpha", "high"}, {"zulu", "high"}}));
}

TEST(ForwardingGroup, EveryTrafficClassFromZeroToSixteenIsServed) {
  for (unsigned char tc = 0; tc <= 16; ++tc) {
    ForwardingDevice device;
    device.queue("high", 7);
    device.group("expedited", tc);
    device.start();
    device.lead(tc, 7);
    EXPECT_EQ(device.model(), (Groups{{"expedited", "high"}})) << int{tc};
    device.lead(tc, 16);
    EXPECT_EQ(device.model(), Groups{}) << int{tc};
  }
}

TEST(ForwardingGroup, OnlyQueueSixteenMeansNoQueue) {
  ForwardingDevice device;
  device.group("expedited", 5);
  for (unsigned id = 0; id < 256; ++id) {
    device.queue(("q" + std::to_string(id)).c_str(), static_cast<unsigned char>(id));
  }
  device.start();
  for (unsigned id = 0; id < 256; ++id) {
    device.config->tcToTxQueueMapIs(5, static_cast<unsigned char>(id));
    if (id == 16) {
      EXPECT_EQ(device.model(), Groups{});
    } else {
      EXPECT_EQ(device.model(), (Groups{{"expedited", "q" + std::to_string(id)}}));
    }
  }
}

// A group may bear the empty name. A traffic class without a group deletes "the group of no name",
// and so that one.
TEST(ForwardingGroup, AGroupOfTheEmptyNameGoesWithTheFirstChangeOfATrafficClassWithoutAGroup) {
  ForwardingDevice device;
  device.group("", 5);
  device.start();
  EXPECT_EQ(device.model(), (Groups{{"", ""}}));
  device.lead(3, 7);
  EXPECT_EQ(device.model(), Groups{});
}

TEST(ForwardingGroup, AGroupOfTheEmptyNameIsDeletedByItsOwnTrafficClassToo) {
  ForwardingDevice device;
  device.queue("high", 7);
  device.group("", 5);
  device.start();
  device.lead(5, 7);
  EXPECT_EQ(device.model(), Groups{});
}

// ===== Failures

TEST(ForwardingGroup, ATrafficClassAboveSixteenThrowsOutOfTheFactoryAndWhatCameBeforeStays) {
  ForwardingDevice device;
  device.queue("high", 7);
  device.group("alpha", 5);
  device.group("broken", 17);
  device.group("zulu", 6);
  device.lead(5, 7);
  try {
    device.start();
    FAIL() << "no exception";
  } catch (const Rok::RangeException& e) {
    EXPECT_STREQ(e.what(), "cannot access index 17 of an array with size 17");
  }
  EXPECT_EQ(device.model(), (Groups{{"alpha", "high"}}));
  EXPECT_EQ(device.namedQueues(), (Names{"high"}));
  EXPECT_EQ(device.config->notifieeList()->notifiees(), 0u) << "no machine watches";
  EXPECT_EQ(Rok::AllocTrackTypeInfo::of<ForwardingGroupKivToOcSm>().blocks(), 0u);
}

TEST_F(Expedited, ATrafficClassAboveSixteenThrowsOutOfTheHandlerAndTheGroupStays) {
  lead(5, 7);
  for (const unsigned char tc : {17, 255}) {
    root->trafficClassToForwardingGroupNameMapIs(tc, "expedited");
    try {
      root->handleTcToTxQueueMap(tc);
      FAIL() << "no exception";
    } catch (const Rok::RangeException& e) {
      EXPECT_EQ(e.what(),
                "cannot access index " + std::to_string(tc) + " of an array with size 17");
    }
    EXPECT_EQ(model(), (Groups{{"expedited", "high"}}));
  }
}

TEST_F(Expedited, ATrafficClassAboveSixteenWithoutAGroupIsNoFault) {
  EXPECT_NO_THROW(root->handleTcToTxQueueMap(17));
  EXPECT_EQ(model(), (Groups{{"expedited", ""}}));
}

// ===== Memory and life

TEST_F(Expedited, TheTwoMemoriesHoldTheNamesTheOtherWayRound) {
  EXPECT_EQ(root->trafficClassToForwardingGroupNameMap(5).name, "expedited");
  EXPECT_EQ(root->txQueueIdToQueueNameMap(7).name, "high");
  EXPECT_EQ(root->trafficClassToForwardingGroupNameMap(6).name, "") << "a missing key";
  EXPECT_EQ(root->txQueueIdToQueueNameMap(6).name, "");
}

TEST_F(Expedited, TheMutatorsOfTheMemoriesReplaceAndDelete) {
  root->trafficClassToForwardingGroupNameMapIs(5, "other");
  root->trafficClassToForwardingGroupNameMapIs(6, "more");
  EXPECT_EQ(root->trafficClassToForwardingGroupNameMap(5).name, "other");
  root->trafficClassToForwardingGroupNameMapDel(5);
  root->trafficClassToForwardingGroupNameMapDel(5);
  EXPECT_EQ(root->trafficClassToForwardingGroupNameMap(5).name, "");
  EXPECT_EQ(root->trafficClassToForwardingGroupNameMap(6).name, "more");
  root->trafficClassToForwardingGroupNameMapDelAll();
  EXPECT_EQ(root->trafficClassToForwardingGroupNameMap(6).name, "");

  root->txQueueIdToQueueNameMapIs(7, "other");
  EXPECT_EQ(root->txQueueIdToQueueNameMap(7).name, "other");
  root->txQueueIdToQueueNameMapDel(7);
  EXPECT_EQ(root->txQueueIdToQueueNameMap(7).name, "");
  EXPECT_EQ(root->txQueueIdToQueueNameMap(1).name, "low");
  root->txQueueIdToQueueNameMapDelAll();
  EXPECT_EQ(root->txQueueIdToQueueNameMap(1).name, "");
}

TEST_F(Expedited, NoChangeAfterStartTouchesTheMemories) {
  lead(5, 7);
  lead(5, 16);
  lead(4, 1);
  EXPECT_EQ(root->trafficClassToForwardingGroupNameMap(5).name, "expedited");
  EXPECT_EQ(root->trafficClassToForwardingGroupNameMap(4).name, "");
  EXPECT_EQ(root->txQueueIdToQueueNameMap(7).name, "high");
}

TEST_F(Expedited, AStartSweepsNothing) {
  groups->forwardingGroupIs("stale")->configIs({"stale", "high"});
  queues->qIs(Config::Queue("stale"));
  groupNames->forwardingGroupNameToTcDel("expedited");
  queueNames->queueNameToTxQueueIdDel("high");
  restart();
  EXPECT_EQ(model(), (Groups{{"expedited", ""}, {"stale", "high"}}));
  EXPECT_EQ(namedQueues(), (Names{"high", "low", "stale"}));
}

TEST_F(Expedited, ARestartMakesAGroupAgainThatHadLostItsQueue) {
  lead(5, 7);
  lead(5, 16);
  EXPECT_EQ(model(), Groups{});
  restart();
  EXPECT_EQ(model(), (Groups{{"expedited", ""}}));
}

// ===== Traces

TEST(ForwardingGroupTrace, AStartTracesItsEntryAndThenEachGroupWithItsQueue) {
  ForwardingDevice device;
  device.queue("high", 7);
  device.group("alpha", 5);
  device.group("beta", 4);
  device.group("gamma", 3);
  device.lead(5, 7);
  device.lead(3, 2);
  TraceCapture trace({0, 2, 8, 9});
  device.start();
  EXPECT_THAT(
      trace.lines(),
      ElementsAre("2 ForwardingGroupKivToOcSm handleInitialized",
                  EndsWith("  forwardingGroup: alpha tc 5"), EndsWith("  queueName high qId 7"),
                  EndsWith("  forwardingGroup: beta tc 4"),
                  EndsWith("  forwardingGroup: gamma tc 3"), EndsWith("  queueName  qId 2")))
      << "a group without a queue has no queue line, one whose queue has no name does";
  EXPECT_THAT(trace.linesWith("forwardingGroup: "), testing::Each(testing::StartsWith("9 ")));
  EXPECT_THAT(trace.linesWith("queueName "), testing::Each(testing::StartsWith("9 ")));
  EXPECT_THAT(trace.handles(), testing::Each("OpenConfigQos"));
}

TEST(ForwardingGroupTrace, AChangeTracesItsEntryAndTheQueueThatItFinds) {
  ForwardingDevice device;
  device.queue("high", 7);
  device.group("expedited", 5);
  device.start();
  TraceCapture trace({0, 2, 8, 9});
  device.lead(5, 7);
  EXPECT_THAT(trace.lines(), ElementsAre("2 ForwardingGroupKivToOcSm handleTcToTxQueueMap tc 5",
                                         EndsWith("  queueName high qId 7")));
  EXPECT_THAT(trace.lines().back(), testing::StartsWith("9 "));
}

TEST(ForwardingGroupTrace, ADeletionAndAForeignTrafficClassTraceTheirEntryAlone) {
  ForwardingDevice device;
  device.group("expedited", 5);
  device.lead(5, 7);
  device.start();
  TraceCapture trace({0, 2, 8, 9});
  device.lead(5, 16);
  device.lead(16, 2);
  EXPECT_THAT(trace.lines(), ElementsAre("2 ForwardingGroupKivToOcSm handleTcToTxQueueMap tc 5",
                                         "2 ForwardingGroupKivToOcSm handleTcToTxQueueMap tc 16"));
}

TEST(ForwardingGroupTrace, AGroupIsTracedBeforeItsTrafficClassIsFoundOutOfRange) {
  ForwardingDevice device;
  device.group("broken", 17);
  TraceCapture trace({9});
  EXPECT_THROW(device.start(), Rok::RangeException);
  EXPECT_THAT(trace.lines(), ElementsAre(EndsWith("  forwardingGroup: broken tc 17")));
}

TEST(ForwardingGroupTrace, NoNameThatComesLaterWakesAnything) {
  ForwardingDevice device;
  device.start();
  TraceCapture trace({0, 2, 8, 9});
  device.group("late", 4);
  device.queue("later", 9);
  device.config->forwardingGroupNameToTcMapIs(Rok::make<Qos::ForwardingGroupNameToTcMap>());
  device.config->queueNameToTxQueueIdMapIs(Rok::make<Qos::QueueNameToTxQueueIdMap>());
  EXPECT_THAT(trace.lines(), IsEmpty());
}

// ===== Oracles

// Random maps and random changes of the array, told again by a few lines of plain maps.
//
// A restart gives what the names and the array say. The incremental model may differ from it, on
// purpose, in three ways: a group whose slot turned to 16 is gone (a restart makes it again,
// empty); of several names of one traffic class only the last follows the array; the group of the
// empty name goes with any change that finds no group.
TEST(ForwardingGroup, RandomDaysAgreeWithPlainMapsInAnyWalkOrder) {
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    for (const std::uint32_t order : {0u, seed, seed * 7919u}) {
      const support::WalkOrder walk(order);
      std::mt19937 random(seed);
      const auto pick = [&random](unsigned n) { return static_cast<unsigned char>(random() % n); };
      ForwardingDevice device;
      std::map<std::string, int> queueIds;
      std::map<std::string, int> trafficClasses;
      int slots[17];
      for (int& slot : slots) slot = 16;
      for (int n = 0; n < 8; ++n) {
        const std::string queue = "q" + std::to_string(pick(12));
        device.queue(queue.c_str(), queueIds[queue] = pick(18));
        const std::string group = n == 7 && seed % 4 == 0 ? "" : "g" + std::to_string(pick(12));
        device.group(group.c_str(), trafficClasses[group] = pick(17));
      }
      const auto change = [&] {
        const unsigned char tc = pick(17);
        const unsigned char id = pick(18);
        const bool changed = slots[tc] != id;
        slots[tc] = id;
        device.lead(tc, id);
        return std::pair<bool, int>{changed, tc};
      };
      for (int n = 0; n < 10; ++n) change();

      std::map<int, std::string> queueOf;
      for (const auto& [name, id] : queueIds) queueOf[id] = name;
      std::map<int, std::string> groupOf;
      for (const auto& [name, tc] : trafficClasses) groupOf[tc] = name;
      const auto output = [&](int tc) { return slots[tc] == 16 ? "" : queueOf[slots[tc]]; };
      const auto atStart = [&] {
        Groups groups;
        for (const auto& [name, tc] : trafficClasses) groups[name] = output(tc);
        return groups;
      };

      device.start();
      Groups expected = atStart();
      ASSERT_EQ(device.model(), expected) << "seed " << seed;
      for (int step = 0; step < 100; ++step) {
        const auto [changed, tc] = change();
        if (changed) {
          const std::string name = groupOf.contains(tc) ? groupOf[tc] : "";
          if (name.empty() || slots[tc] == 16) {
            expected.erase(name);
          } else {
            expected[name] = output(tc);
          }
        }
        ASSERT_EQ(device.model(), expected) << "seed " << seed << ", step " << step;
      }
      device.restart();
      EXPECT_EQ(device.model(), atStart()) << "seed " << seed;
    }
  }
}

}  // namespace
}  // namespace QosOc::forwardingGroupTest
