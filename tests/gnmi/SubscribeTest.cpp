// Subscribe, as a client has it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>
#include <random>
#include <thread>

#include "gnmi/Delivery.h"
#include "host/feed/Images.h"
#include "host/openconfig/Leaves.h"
#include "tests/support/GnmiServed.h"
#include "tests/support/RandomModel.h"

namespace server::subscribeTest {
namespace {

using gnmi::SubscriptionList;
using support::GnmiServed;
using support::GnmiStream;
using support::gnmiSubscribe;
using support::HostLines;
using support::hostOneOfEach;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string a = "/qos/queues/queue[name=a]";
const HostLines queueA{"+ " + a + "/config/name \"a\"", "+ " + a + "/name \"a\""};
const HostLines sync{"sync"};

// ===== ONCE

TEST(Once, SendsWhatThereIsAndTheSyncAndEnds) {
  GnmiServed served(hostOneOfEach);
  GnmiStream stream(*served.stub, gnmiSubscribe(SubscriptionList::ONCE));
  stream.untilSync();
  EXPECT_EQ(stream.leaves(), served.leaves());
  EXPECT_TRUE(stream.end().ok());
}

TEST(Once, SendsTheSyncAloneWithUpdatesOnly) {
  GnmiServed served(hostOneOfEach);
  auto request = gnmiSubscribe(SubscriptionList::ONCE);
  request.mutable_subscribe()->set_updates_only(true);
  GnmiStream stream(*served.stub, request);
  EXPECT_EQ(stream.next(), sync);
  EXPECT_TRUE(stream.end().ok());
}

TEST(Once, SendsWhatAnyOfItsPathsNamesOnce) {
  GnmiServed served(hostOneOfEach);
  auto request =
      gnmiSubscribe(SubscriptionList::ONCE, "/qos/forwarding-groups/forwarding-group/name");
  *request.mutable_subscribe()->add_subscription()->mutable_path() =
      support::gnmiPath("/qos/forwarding-groups/forwarding-group[name=*]");
  *request.mutable_subscribe()->add_subscription()->mutable_path() =
      support::gnmiPath("/qos/classifiers/classifier[name=c]/name");
  GnmiStream stream(*served.stub, request);
  const std::string f = "+ /qos/forwarding-groups/forwarding-group[name=f]";
  EXPECT_THAT(stream.untilSync(), ElementsAre("+ /qos/classifiers/classifier[name=c]/name \"c\"",
                                              f + "/config/name \"f\"",
                                              f + "/config/output-queue \"q\"", f + "/name \"f\""));
}

TEST(Once, SendsManyLeavesInMessagesOfSome32KB) {
  GnmiServed served;
  for (int i = 0; i < 3000; ++i) served.queueIs("queue" + std::to_string(i));
  served.commit();
  GnmiStream stream(*served.stub, gnmiSubscribe(SubscriptionList::ONCE, "/", gnmi::PROTO));
  std::size_t messages = 0, most = 0, all = 0;
  while (stream.next() != sync) {
    ++messages;
    all += stream.last().ByteSizeLong();
    most = std::max(most, stream.last().ByteSizeLong());
  }
  EXPECT_LT(most, 65'536u);
  EXPECT_LT(messages, all / 20'000);
  EXPECT_EQ(stream.leaves().size(), 6000u);
}

TEST(Once, EchoesTheTargetAndTheOrigin) {
  GnmiServed served(hostOneOfEach);
  auto request = gnmiSubscribe(SubscriptionList::ONCE, "/qos/queues");
  GnmiStream without(*served.stub, request);
  without.next();
  EXPECT_FALSE(without.last().has_prefix());
  request.mutable_subscribe()->mutable_prefix()->set_target("router");
  request.mutable_subscribe()->mutable_prefix()->set_origin("openconfig");
  GnmiStream with(*served.stub, request);
  with.next();
  EXPECT_EQ(with.last().prefix().ShortDebugString(), R"(origin: "openconfig" target: "router")");
}

// ===== POLL

TEST(Poll, SendsWhatThereIsAtTheStartAndForEachPoll) {
  GnmiServed served;
  served.queueIs("a");
  served.commit();
  GnmiStream stream(*served.stub, gnmiSubscribe(SubscriptionList::POLL));
  EXPECT_EQ(stream.untilSync(), queueA);
  stream.poll();
  EXPECT_EQ(stream.untilSync(), queueA);
  served.queueIs("b");
  served.model.queues->qDel("a");
  served.commit();
  stream.poll();
  stream.untilSync();
  EXPECT_EQ(stream.leaves(), served.leaves());
  stream.half();
  EXPECT_TRUE(stream.end().ok());
}

TEST(Poll, SendsWhatChangedAloneWithUpdatesOnly) {
  GnmiServed served(hostOneOfEach);
  auto request = gnmiSubscribe(SubscriptionList::POLL);
  request.mutable_subscribe()->set_updates_only(true);
  GnmiStream stream(*served.stub, request);
  EXPECT_THAT(stream.untilSync(), IsEmpty());
  served.queueIs("a");
  served.commit();
  stream.poll();
  EXPECT_EQ(stream.untilSync(), queueA);
}

// ===== STREAM, on change

TEST(Stream, SendsWhatThereIsAndThenEachChange) {
  for (const auto mode : {gnmi::ON_CHANGE, gnmi::TARGET_DEFINED}) {
    GnmiServed served(hostOneOfEach);
    auto request = gnmiSubscribe(SubscriptionList::STREAM);
    request.mutable_subscribe()->mutable_subscription(0)->set_mode(mode);
    GnmiStream stream(*served.stub, request);
    stream.untilSync();
    EXPECT_EQ(stream.leaves(), served.leaves());
    served.queueIs("a");
    served.commit();
    EXPECT_EQ(stream.next(), queueA);
    EXPECT_EQ(stream.last().timestamp(), served.store.head().timestamp);
  }
}

TEST(Stream, SendsNoMoreThanTheSyncAtFirstWithUpdatesOnly) {
  GnmiServed served(hostOneOfEach);
  auto request = gnmiSubscribe(SubscriptionList::STREAM);
  request.mutable_subscribe()->set_updates_only(true);
  GnmiStream stream(*served.stub, request);
  EXPECT_EQ(stream.next(), sync);
  served.queueIs("a");
  served.commit();
  EXPECT_EQ(stream.next(), queueA);
}

TEST(Stream, StaysOpenForAPathThatIsNotThereYet) {
  GnmiServed served;
  GnmiStream stream(*served.stub, gnmiSubscribe(SubscriptionList::STREAM, a + "/name"));
  EXPECT_THAT(stream.untilSync(), IsEmpty());
  served.queueIs("b");
  served.commit();
  served.queueIs("a");
  served.commit();
  EXPECT_THAT(stream.next(), ElementsAre(queueA[1]));
}

TEST(Stream, SendsTheHighestNodeThatWentWithTheUpdatesOfTheCommit) {
  GnmiServed served(hostOneOfEach);
  GnmiStream stream(*served.stub, gnmiSubscribe(SubscriptionList::STREAM));
  stream.untilSync();
  served.model.classifiers->classifier("c")->termsIs()->termDel("t");
  served.model.schedulerPolicies->schedulerPolicyDel("s");
  served.queueIs("a");
  served.commit();
  EXPECT_THAT(stream.next(), ElementsAre("- /qos/classifiers/classifier[name=c]/terms",
                                         "- /qos/scheduler-policies/scheduler-policy[name=s]",
                                         queueA[0], queueA[1]));
  EXPECT_EQ(stream.leaves(), served.leaves());
}

TEST(Stream, SendsADeletionOfWhatIsAroundItsPath) {
  GnmiServed served(hostOneOfEach);
  GnmiStream stream(*served.stub, gnmiSubscribe(SubscriptionList::STREAM,
                                                "/qos/classifiers/classifier[name=c]/config/type"));
  stream.untilSync();
  served.model.queues->qDel("q");
  served.commit();
  served.model.classifiers->classifierDel("c");
  served.commit();
  EXPECT_THAT(stream.next(), ElementsAre("- /qos/classifiers/classifier[name=c]"));
}

TEST(Stream, GoesOnAfterTheClientHasNoMoreToSay) {
  GnmiServed served;
  GnmiStream stream(*served.stub, gnmiSubscribe(SubscriptionList::STREAM));
  stream.half();
  stream.untilSync();
  served.queueIs("a");
  served.commit();
  EXPECT_EQ(stream.next(), queueA);
}

TEST(Stream, SendsAllAgainAtAHeartbeat) {
  GnmiServed served;
  served.queueIs("a");
  served.commit();
  auto request = gnmiSubscribe(SubscriptionList::STREAM);
  request.mutable_subscribe()->mutable_subscription(0)->set_heartbeat_interval(60'000'000);
  GnmiStream stream(*served.stub, request);
  EXPECT_EQ(stream.untilSync(), queueA);
  EXPECT_EQ(stream.next(), queueA);
  EXPECT_EQ(stream.next(), queueA);
}

// ===== STREAM, sampled

gnmi::SubscribeRequest sampled(unsigned interval) {
  auto request = gnmiSubscribe(SubscriptionList::STREAM);
  auto& subscription = *request.mutable_subscribe()->mutable_subscription(0);
  subscription.set_mode(gnmi::SAMPLE);
  subscription.set_sample_interval(interval);
  return request;
}

TEST(Sample, SendsAllInEachInterval) {
  GnmiServed served;
  served.queueIs("a");
  served.commit();
  GnmiStream stream(*served.stub, sampled(60'000'000));
  EXPECT_EQ(stream.untilSync(), queueA);
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(stream.next(), queueA);
  EXPECT_EQ(stream.next(), queueA);
  EXPECT_GT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(60));
}

TEST(Sample, SendsAsOftenAsItMayWithoutAnInterval) {
  GnmiServed served;
  served.queueIs("a");
  served.commit();
  GnmiStream stream(*served.stub, sampled(0));
  EXPECT_EQ(stream.untilSync(), queueA);
  EXPECT_EQ(stream.next(), queueA);
}

TEST(Sample, SendsWhatWentToo) {
  GnmiServed served(hostOneOfEach);
  GnmiStream stream(*served.stub, sampled(50'000'000));
  stream.untilSync();
  served.model.classifiers->classifierDel("c");
  served.commit();
  EXPECT_TRUE(stream.comesTo(served.leaves()));
}

TEST(Sample, LeavesOutWhatDidNotChangeIfAsked) {
  GnmiServed served(hostOneOfEach);
  auto request = sampled(50'000'000);
  request.mutable_subscribe()->mutable_subscription(0)->set_suppress_redundant(true);
  GnmiStream stream(*served.stub, request);
  stream.untilSync();
  std::this_thread::sleep_for(std::chrono::milliseconds(120));
  served.queueIs("a");
  served.commit();
  EXPECT_EQ(stream.next(), queueA);
}

TEST(Sample, SendsAllAtAHeartbeatIfItLeavesOutWhatDidNotChange) {
  GnmiServed served;
  served.queueIs("a");
  served.commit();
  auto request = sampled(50'000'000);
  auto& subscription = *request.mutable_subscribe()->mutable_subscription(0);
  subscription.set_suppress_redundant(true);
  subscription.set_heartbeat_interval(130'000'000);
  GnmiStream stream(*served.stub, request);
  stream.untilSync();
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(stream.next(), queueA);
  EXPECT_GT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(100));
}

// ===== What is refused

TEST(Subscribe, RefusesByTheMessages) {
  GnmiServed served;
  EXPECT_EQ(served.subscribeRefusal("poll {}"),
            "INVALID_ARGUMENT subscribe: the first message has no list");
  EXPECT_EQ(served.subscribeRefusal("subscribe {}"),
            "INVALID_ARGUMENT subscribe.subscription: the list is empty");
  GnmiStream silent(*served.stub);
  silent.half();
  EXPECT_EQ(served.shown(silent.end()), "INVALID_ARGUMENT subscribe: there is no list");
  const auto list = gnmiSubscribe(SubscriptionList::STREAM);
  GnmiStream twice(*served.stub, list);
  twice.send(list);
  EXPECT_EQ(served.shown(twice.end()),
            "INVALID_ARGUMENT subscribe: the stream has its list; a message behind it is a poll");
  GnmiStream polled(*served.stub, list);
  polled.poll();
  EXPECT_EQ(served.shown(polled.end()),
            "INVALID_ARGUMENT poll: the mode of the subscription is not POLL");
}

TEST(Subscribe, RefusesByTheList) {
  GnmiServed served;
  const auto refusal = [&](const std::string& list) {
    return served.subscribeRefusal("subscribe { " + list + " }");
  };
  EXPECT_EQ(refusal("encoding: BYTES subscription {}"),
            "UNIMPLEMENTED encoding: BYTES is not served; JSON, JSON_IETF and PROTO are");
  EXPECT_EQ(refusal("mode: 7 subscription {}"),
            "INVALID_ARGUMENT subscribe.mode: there is no mode 7");
  EXPECT_EQ(refusal("use_models { name: 'x' } subscription {}"),
            "UNIMPLEMENTED subscribe.use_models[0]: \"x\" is not served");
  EXPECT_EQ(
      refusal("prefix { origin: 'openconfig' } subscription { path { origin: 'openconfig' } }"),
      "INVALID_ARGUMENT subscribe.subscription[0].path.origin: the prefix has one, too");
  EXPECT_EQ(refusal("subscription {} subscription { path { elem { name: 'x' } } }"),
            "UNIMPLEMENTED subscribe.subscription[1].path.elem[0]: there is no element \"x\" below "
            "/");
}

TEST(Subscribe, RefusesByIntervals) {
  GnmiServed served;
  const auto refusal = [&](const std::string& subscription) {
    return served.subscribeRefusal("subscribe { subscription { " + subscription + " } }");
  };
  EXPECT_EQ(refusal("mode: SAMPLE sample_interval: 49000000"),
            "INVALID_ARGUMENT subscribe.subscription[0].sample_interval: 0.049000 s is below "
            "0.050000 s, the least");
  EXPECT_EQ(refusal("mode: ON_CHANGE heartbeat_interval: 1"),
            "INVALID_ARGUMENT subscribe.subscription[0].heartbeat_interval: 0.000000 s is below "
            "0.050000 s, the least");
  EXPECT_EQ(refusal("mode: TARGET_DEFINED sample_interval: 1000000000"),
            "INVALID_ARGUMENT subscribe.subscription[0].sample_interval: the mode TARGET_DEFINED "
            "has none");
  EXPECT_EQ(refusal("mode: 9"),
            "INVALID_ARGUMENT subscribe.subscription[0].mode: there is no mode 9");
}

TEST(Subscribe, RefusesHistoryAndHonoursADepth) {
  GnmiServed served;
  served.queueIs("a");
  served.commit();
  EXPECT_EQ(served.subscribeRefusal("subscribe { subscription {} } extension { history {} }"),
            "UNIMPLEMENTED extension.history: it is not served");
  auto request = gnmiSubscribe(SubscriptionList::ONCE, a);
  request.add_extension()->mutable_depth()->set_level(1);
  GnmiStream stream(*served.stub, request);
  EXPECT_THAT(stream.untilSync(), ElementsAre(queueA[1]));
}

// ===== The server's end, and clients that go or sleep

TEST(Subscribe, EndsAsUnavailableWithTheServer) {
  GnmiServed served;
  GnmiStream stream(*served.stub, gnmiSubscribe(SubscriptionList::STREAM));
  EXPECT_EQ(stream.next(), sync);
  const auto begin = std::chrono::steady_clock::now();
  served.server.stop();
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(900));
  EXPECT_EQ(served.shown(stream.end()), "UNAVAILABLE the server ends");
}

TEST(Subscribe, TakesNoTimeWhileNothingHappens) {
  GnmiServed served(hostOneOfEach);
  auto request = gnmiSubscribe(SubscriptionList::STREAM);
  request.mutable_subscribe()->mutable_subscription(0)->set_heartbeat_interval(10'000'000'000);
  GnmiStream stream(*served.stub, request);
  GnmiStream other(*served.stub, gnmiSubscribe(SubscriptionList::STREAM));
  stream.untilSync();
  other.untilSync();
  const std::clock_t before = std::clock();
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 20);
}

TEST(Subscribe, SendsAClientThatSleptOneWindowOfAllThatChanged) {
  GnmiServed served;
  for (int i = 0; i < 4000; ++i) served.queueIs("queue" + std::to_string(i));
  served.commit();
  GnmiStream stream(*served.stub, gnmiSubscribe(SubscriptionList::STREAM));
  // More than the windows of HTTP/2 take: the server stands in the middle of the first set.
  for (int round = 0; round < 20; ++round) {
    for (int i = 0; i < 4000; i += 7) {
      served.model.queues->qContentIs("queue" + std::to_string(i)).config.bandwidth =
          QosOc::PercentType(static_cast<unsigned>(round));
    }
    served.model.queues->qDel("queue" + std::to_string(3999 - round));
    served.commit();
  }
  EXPECT_TRUE(stream.comesTo(served.leaves()));
}

TEST(Delivery, EndsWhenTheClientReadsTooSlowlyToHearWhatWent) {
  support::HostPublished built;
  for (int i = 0; i < 6000; ++i) built.queueIs("queue" + std::to_string(i));
  built.commit();
  const host::View view;
  Bodies bodies(built.store, view);
  const auto now = std::chrono::steady_clock::now();
  Delivery delivery(
      bodies, Subscribed(gnmiSubscribe(SubscriptionList::STREAM), view, std::chrono::seconds(1)),
      now);
  EXPECT_EQ(delivery.next(now).kind, Delivery::Kind::message);
  for (int i = 0; i < 4000; ++i) {
    built.model.queues->qDel("queue" + std::to_string(i));
    built.commit();
  }
  try {
    while (delivery.next(now).kind == Delivery::Kind::message) {
    }
    FAIL();
  } catch (const Refused& refused) {
    EXPECT_EQ(refused.code(), grpc::StatusCode::ABORTED);
    EXPECT_THAT(refused.what(), HasSubstr("the client read too slowly"));
  }
}

TEST(Subscribe, EndsWhenTheClientGoes) {
  GnmiServed served;
  for (int i = 0; i < 50; ++i) {
    GnmiStream stream(*served.stub, gnmiSubscribe(SubscriptionList::STREAM));
    served.queueIs("queue" + std::to_string(i));
    served.commit();
  }
  GnmiStream stream(*served.stub, gnmiSubscribe(SubscriptionList::STREAM));
  EXPECT_TRUE(stream.comesTo(served.leaves()));
}

// ===== Any model

TEST(Subscribe, BringsCollectorsOfAnySpeedToTheLeavesOfTheModel) {
  std::mt19937 random(3);
  host::Store store;
  host::Images images;
  const host::View view({.state = true, .interfaceRef = true});
  Server server(store, view, {"127.0.0.1:0", grpc::InsecureServerCredentials()});
  const auto stub = gnmi::gNMI::NewStub(grpc::CreateChannel(
      "127.0.0.1:" + std::to_string(server.port()), grpc::InsecureChannelCredentials()));
  std::vector<std::unique_ptr<GnmiStream>> collectors;
  std::map<std::string, std::string> now;
  for (unsigned step = 1; step <= 80; ++step) {
    const support::RandomModel next(random() % 9);
    store.publish(images.updateAll(next.model), images.model(), step);
    server.committed();
    now.clear();
    for (const auto& [path, value] : leavesOf(next.model, view)) now[path] = value;
    if (step % 20 == 1) {
      collectors.push_back(
          std::make_unique<GnmiStream>(*stub, gnmiSubscribe(SubscriptionList::STREAM)));
    }
    for (std::size_t i = 0; i < collectors.size(); ++i) {
      if (step % (2 * i + 1) != 0) continue;
      ASSERT_TRUE(collectors[i]->comesTo(now)) << "step " << step;
    }
  }
  for (const auto& collector : collectors) EXPECT_TRUE(collector->comesTo(now));
}

}  // namespace
}  // namespace server::subscribeTest
