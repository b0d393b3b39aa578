// The root of the scheduler policies: start, sweeps, queue names, and days at random.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "tests/support/SchedulerDevice.h"
#include "tests/support/TraceCapture.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::schedulerPolicyRootTest {
namespace {

using support::AtEachLine;
using support::AttachmentModel;
using support::PolicyModel;
using support::SchedulerDevice;
using support::TraceCapture;
using support::WalkOrder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const auto unicast3 = SchedulerDevice::unicast(3);

// ===== Start and sweeps

TEST(SchedulerPolicyStart, WithEmptyInputsTheOutputIsSwept) {
  SchedulerDevice device;
  device.earlierPolicy("sp-gold");
  device.earlierAttachment("Ethernet1", "sp-gold");
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  device.start();
  EXPECT_THAT(
      trace.linesWithoutAddresses(),
      ElementsAre("2 SchedulerPolicyKivToOCSm: handleInitialized",
                  "2 Velmo::String encodeSPProfileName(Velmo::String): schedulerPolicyName: "
                  "sp-gold",
                  "2 Deleting scheduler policy: sp-gold",
                  "2 Deleting scheduler policy intf attachment: Ethernet1"));
  EXPECT_THAT(trace.handles(), testing::Each("OpenConfigQos"));
  EXPECT_EQ(device.model(), PolicyModel{});
  EXPECT_EQ(device.attachments(), (AttachmentModel{{"Ethernet1", "none"}}));
}

TEST(SchedulerPolicyStart, InterfacesComeBeforePoliciesAndBothBeforeTheSweeps) {
  SchedulerDevice device;
  device.intf("Ethernet1");
  device.profile("sp-gold");
  TraceCapture trace({2});
  device.start();
  EXPECT_THAT(
      trace.linesWithoutAddresses(),
      ElementsAre(
          "2 SchedulerPolicyKivToOCSm: handleInitialized",
          "2 void QosOc::SchedulerPolicyKivToOCSm::handleIntfConfig(const Nerit::IntfId&) ( "
          "Ethernet1 ) ",
          "2 void QosOc::SchedulerPolicyIntfSm::handleInitialized() (  ) ",
          "2 void QosOc::SchedulerPolicyKivToOCSm::udpateSchedulerPolicies(const Velmo::String&) "
          "profile: __YANG_SP_[sp-gold]",
          "2 Velmo::String decodeSPProfileName(Velmo::String): profileName: __YANG_SP_[sp-gold]",
          "2 creating scheduler Policy: sp-gold",
          "2 udpateSchedulerPolicies No comment for profile: __YANG_SP_[sp-gold]",
          "2 Velmo::String encodeSPProfileName(Velmo::String): schedulerPolicyName: sp-gold"));
}

TEST(SchedulerPolicyStart, WithEmptyInputsAndAnEmptyOutputNothingHappens) {
  SchedulerDevice device;
  device.start();
  EXPECT_EQ(device.model(), PolicyModel{});
  EXPECT_EQ(device.attachments(), AttachmentModel{});
}

TEST(SchedulerPolicyStart, APolicyWithItsProfileKeepsWhatItHasAndGainsWhatItLacks) {
  SchedulerDevice device;
  const auto policy = device.earlierPolicy("sp-gold");
  const auto scheduler = policy->schedulersIs()->schedulerIs(1);
  Config::SchedulerConfig config;
  config.sequence = 1;
  scheduler->configIs(config);
  Config::SchedulerInput input("in-a");
  input.config.id = "in-a";
  input.config.weight = 1;
  scheduler->inputsIs()->inputIs(input);
  device.profile("sp-gold");
  device.profileComment("sp-gold",
                        device.document(R"("1":{"priority":"STRICT","inputs":)"
                                        R"({"in-a":{"weight":9},"in-b":{"weight":9}}},"2":{})"));
  device.start();
  EXPECT_EQ(device.model(), (PolicyModel{{"sp-gold", "1 [in-a 1, in-b 9]; 2"}}));
  EXPECT_EQ(device.policies->schedulerPolicy("sp-gold"), policy);
}

TEST(SchedulerPolicyStart, APolicyWhoseCommentWentKeepsWhatItHas) {
  SchedulerDevice device;
  device.earlierPolicy("sp-gold")->schedulersIs()->schedulerIs(1)->configIs({1, {}, {}});
  device.profile("sp-gold");
  TraceCapture trace({2});
  device.start();
  EXPECT_EQ(device.model(), (PolicyModel{{"sp-gold", "1"}}));
  EXPECT_THAT(trace.linesWith("No comment for profile: "), SizeIs(1));
}

TEST(SchedulerPolicyStart, OnlyAProfileOfTheEncodedNameHoldsAPolicy) {
  SchedulerDevice device;
  for (const char* name : {"a", "b", "__YANG_SP_[c]", "d", ""}) device.earlierPolicy(name);
  device.foreignProfile("a");
  device.foreignProfile("__YANG_QMP_[b]");
  device.foreignProfile("__YANG_SP_[c]");
  device.foreignProfile("__YANG_SP_[d]");
  device.start();
  EXPECT_EQ(device.model(), (PolicyModel{{"c", "-"}, {"d", "-"}}));
}

// The sweep encodes the name, which doesn't decode: a profile of the empty name holds a policy of
// the empty name, though it would never make one.
TEST(SchedulerPolicyStart, AProfileOfTheEmptyNameHoldsAPolicyOfTheEmptyName) {
  SchedulerDevice device;
  device.earlierPolicy("");
  device.foreignProfile("__YANG_SP_[]");
  device.start();
  EXPECT_EQ(device.model(), (PolicyModel{{"", "-"}}));
}

// A name ends at its first NUL when it is encoded, and not when it is decoded.
TEST(SchedulerPolicyStart, APolicyWithANulInItsNameIsSweptAsSoonAsItIsMade) {
  SchedulerDevice device;
  device.profile(std::string("a\0b", 3));
  device.start();
  EXPECT_EQ(device.model(), PolicyModel{});
}

TEST(SchedulerPolicyStart, AttachmentsThatNoQueueMadeAreCleared) {
  SchedulerDevice device;
  device.queue("Ethernet1", unicast3);
  device.name("Ethernet1", unicast3, "sp-gold");
  device.intf("Ethernet2");
  device.queue("Ethernet3", unicast3);
  for (const char* name : {"Ethernet1", "Ethernet2", "Ethernet3", "Ethernet4", ""}) {
    device.earlierAttachment(name, "stale");
  }
  device.interfaces->interfaceIs("Ethernet5")->outputIs();
  device.interfaces->interfaceIs("Ethernet6");
  TraceCapture trace({2});
  device.start();
  EXPECT_EQ(device.attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"},
                                                   {"Ethernet2", "none"},
                                                   {"Ethernet3", "none"},
                                                   {"Ethernet4", "none"},
                                                   {"Ethernet5", "none"},
                                                   {"Ethernet6", "no output"},
                                                   {"", "none"}}));
  EXPECT_THAT(trace.linesWith("Deleting scheduler policy intf attachment: "), SizeIs(3))
      << "Ethernet3 was cleared by its queue";
}

TEST(SchedulerPolicyStart, TheSweepLeavesWhatElseAnInterfaceHas) {
  SchedulerDevice device;
  const auto output = device.earlierAttachment("Ethernet1", "stale");
  output->pfcIs({"1f"});
  const auto queues = output->queuesIs("");
  device.start();
  EXPECT_EQ(device.interfaces->interface("Ethernet1")->output(), output);
  EXPECT_EQ(output->pfc().priorities, "1f");
  EXPECT_EQ(output->queues(), queues);
}

// The sweeps don't ask each other.
TEST(SchedulerPolicyStart, AnAttachmentStaysWhosePolicyIsSweptAndAPolicyWithoutAnAttachmentToo) {
  SchedulerDevice device;
  device.earlierPolicy("sp-gold");
  device.earlierAttachment("Ethernet1", "sp-gold");
  device.queue("Ethernet1", unicast3);
  device.name("Ethernet1", unicast3, "sp-gold");
  device.earlierPolicy("sp-silver");
  device.profile("sp-silver");
  device.earlierAttachment("Ethernet2", "sp-silver");
  device.start();
  EXPECT_EQ(device.model(), (PolicyModel{{"sp-silver", "-"}}));
  EXPECT_EQ(device.attachments(),
            (AttachmentModel{{"Ethernet1", "sp-gold"}, {"Ethernet2", "none"}}));
}

TEST(SchedulerPolicyStart, ManyStaleThingsGoInAnyWalkOrder) {
  for (std::uint32_t order = 0; order < 10; ++order) {
    const WalkOrder walk(order);
    SchedulerDevice device;
    AttachmentModel expected;
    PolicyModel kept;
    for (int number = 0; number < 50; ++number) {
      const std::string policy = "sp-" + std::to_string(number);
      const std::string name = "Ethernet" + std::to_string(number);
      device.earlierPolicy(policy);
      device.earlierAttachment(name, policy);
      expected[name] = number % 3 == 0 ? policy : "none";
      if (number % 3 != 0) continue;
      kept[policy] = "-";
      device.profile(policy);
      device.queue(name, unicast3);
      device.name(name, unicast3, policy);
    }
    device.start();
    EXPECT_EQ(device.attachments(), expected);
    EXPECT_EQ(device.model(), kept);
  }
}

TEST(SchedulerPolicyStart, ARateOutOfRangeThrowsOutOfTheFactoryAndWhatCameBeforeStays) {
  SchedulerDevice device;
  const auto config = device.queue("Ethernet1", unicast3);
  device.name("Ethernet1", unicast3, "sp-gold");
  device.earlierPolicy("stale");
  device.earlierAttachment("Ethernet2", "stale");
  device.profile("sp-gold");
  device.profileComment("sp-gold",
                        device.document(R"("1":{"one-rate-two-color":{"cir-pct":101}})"));
  EXPECT_THROW(device.start(), Rok::RangeException);
  EXPECT_EQ(device.model(), (PolicyModel{{"sp-gold", "1"}, {"stale", "-"}})) << "nothing is swept";
  EXPECT_EQ(device.attachments(),
            (AttachmentModel{{"Ethernet1", "sp-gold"}, {"Ethernet2", "stale"}}));
  EXPECT_EQ(device.cli->notifieeList()->notifiees(), 0u) << "no machine watches";
  EXPECT_EQ(device.config->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(device.profiles->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(config->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(Rok::AllocTrackTypeInfo::of<SchedulerPolicyKivToOCSm>().blocks(), 0u);
  EXPECT_EQ(Rok::AllocTrackTypeInfo::of<SchedulerPolicyIntfSm>().blocks(), 0u);
  EXPECT_EQ(Rok::AllocTrackTypeInfo::of<SchedulerPolicyTxQueueSm>().blocks(), 0u);
}

// ===== Restart

struct SchedulerRoot : testing::Test, SchedulerDevice {
  SchedulerRoot() { start(); }
};

TEST_F(SchedulerRoot, WhatWentWhileNobodyWatchedIsSweptByTheNextStart) {
  queue("Ethernet1", unicast3);
  name("Ethernet1", unicast3, "sp-gold");
  profile("sp-gold");
  stop();
  profileDel("sp-gold");
  cli->commentDel(key("Ethernet1", unicast3));
  EXPECT_EQ(model(), (PolicyModel{{"sp-gold", "-"}}));
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
  start();
  EXPECT_EQ(model(), PolicyModel{});
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "none"}}));
}

TEST_F(SchedulerRoot, ARestartForgetsWhatItAttached) {
  queue("Ethernet1", unicast3);
  name("Ethernet1", unicast3, "sp-gold");
  removeQueue("Ethernet1", unicast3);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
  restart();
  EXPECT_EQ(root->interfaceToSchedulerPolicyMap().members(), 0u);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "none"}}));
}

TEST_F(SchedulerRoot, OtherAttributesWakeNothing) {
  const auto intfConfig = intf("Ethernet1");
  foreignProfile("plain");
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  config->tcToTxQueueMapIs(1, 2);
  config->pfcWatchdogTimeAIs(1);
  config->forwardingGroupNameToTcMapIs(Rok::make<Qos::ForwardingGroupNameToTcMap>());
  intfConfig->pfcPortConfigIs(Rok::make<Pfc::PortConfig>(std::uint8_t{8}));
  (*profiles->config().find("plain"))->qosProfileIs(Rok::make<Qos::QosProfile>());
  EXPECT_THAT(trace.lines(), IsEmpty());
}

// ===== Queue names

TEST_F(SchedulerRoot, AQueueNameLooksAtTheCommentsAgain) {
  queue("Ethernet1", unicast3);
  name("Ethernet1", unicast3, "sp-gold");
  earlierAttachment("Ethernet1", "tampered");
  queueName("q3", 4);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "tampered"}}));
  queueName("q3", 3);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
}

TEST_F(SchedulerRoot, ANameThatGoesOrHoldsNoQueueUndoesNothing) {
  queue("Ethernet1", unicast3);
  queue("Ethernet1", SchedulerDevice::unicast(16));
  name("Ethernet1", unicast3, "sp-gold");
  queueName("q3", 3);
  cli->commentDel(key("Ethernet1", unicast3));
  TraceCapture trace({2});
  queueNames->queueNameToTxQueueIdDel("q3");
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre("2 SchedulerPolicyKivToOCSm: handleQueueNameToTxQueue queue Name: q3",
                          "2 queue Name: q3 to id: 16 map deleted"));
  trace.clear();
  queueName("q3", 16);
  EXPECT_THAT(trace.linesWithoutAddresses(),
              ElementsAre("2 SchedulerPolicyKivToOCSm: handleQueueNameToTxQueue queue Name: q3",
                          "2 queue Name: q3 to id: 16 map deleted"));
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
}

TEST_F(SchedulerRoot, AQueueNameOfNoQueueTracesItsEntryAlone) {
  TraceCapture trace({2});
  queueName("q3", 3);
  EXPECT_THAT(trace.lines(),
              ElementsAre("2 SchedulerPolicyKivToOCSm: handleQueueNameToTxQueue queue Name: q3"));
}

TEST(SchedulerPolicyStart, NoQueueNameIsHandledForWhatTheMapHolds) {
  SchedulerDevice device;
  device.queueName("q3", 3);
  TraceCapture trace({2});
  device.start();
  EXPECT_THAT(trace.linesWith("handleQueueNameToTxQueue"), IsEmpty());
  EXPECT_EQ(device.root->rok_QosCliConfig_QueueNameToTxQueueIdMapIn(), device.queueNames);
}

TEST(SchedulerPolicyStart, TheNamesAreFollowedWhenTheTreeStands) {
  SchedulerDevice device;
  device.queue("Ethernet1", unicast3);
  device.profile("sp-gold");
  {
    const AtEachLine trace(2, [&](std::string_view) {
      EXPECT_EQ(device.queueNames->notifieeList()->notifiees(), 0u);
    });
    device.start();
    EXPECT_GT(trace.lines(), 5u);
  }
  EXPECT_EQ(device.queueNames->notifieeList()->notifiees(), 1u);
}

TEST_F(SchedulerRoot, AnotherMapOfNamesIsFollowedAndHandledOnlyWhenItChanges) {
  queue("Ethernet1", unicast3);
  name("Ethernet1", unicast3, "sp-gold");
  earlierAttachment("Ethernet1", "tampered");
  const auto next = Rok::make<Qos::QueueNameToTxQueueIdMap>();
  next->queueNameToTxQueueIdIs("q3", 3);
  TraceCapture trace({2});
  config->queueNameToTxQueueIdMapIs(next);
  EXPECT_EQ(root->rok_QosCliConfig_QueueNameToTxQueueIdMapIn(), next);
  EXPECT_EQ(queueNames->notifieeList()->notifiees(), 0u);
  queueName("q3", 3);
  EXPECT_THAT(trace.lines(), IsEmpty());
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "tampered"}}));
  next->queueNameToTxQueueIdIs("other", 3);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "sp-gold"}}));
}

TEST(SchedulerPolicyStart, AStartWithoutAMapOfNamesFollowsTheFirstOne) {
  SchedulerDevice device;
  device.config->queueNameToTxQueueIdMapIs(nullptr);
  device.start();
  EXPECT_EQ(device.root->rok_QosCliConfig_QueueNameToTxQueueIdMapIn(), nullptr);
  device.config->queueNameToTxQueueIdMapIs(device.queueNames);
  EXPECT_EQ(device.root->rok_QosCliConfig_QueueNameToTxQueueIdMapIn(), device.queueNames);
}

TEST(SchedulerPolicyStart, WithoutAConfigurationThereAreProfilesButNoInterfacesAndNoNames) {
  SchedulerDevice device;
  device.profile("sp-gold");
  device.earlierAttachment("Ethernet1", "sp-gold");
  device.config = nullptr;
  device.start();
  EXPECT_EQ(device.root->qosCliConfig(), nullptr);
  EXPECT_EQ(device.root->rok_QosCliConfig_QueueNameToTxQueueIdMapIn(), nullptr);
  EXPECT_EQ(device.model(), (PolicyModel{{"sp-gold", "-"}}));
  EXPECT_EQ(device.attachments(), (AttachmentModel{{"Ethernet1", "none"}}));
  device.profile("sp-late");
  EXPECT_EQ(device.model(), (PolicyModel{{"sp-gold", "-"}, {"sp-late", "-"}}));
}

TEST_F(SchedulerRoot, TheMapIsReadFromTheConfigurationAndNotFromTheChainedInput) {
  queue("Ethernet1", unicast3);
  name("Ethernet1", unicast3, "sp-gold");
  earlierAttachment("Ethernet1", "tampered");
  const auto other = Rok::make<Qos::QueueNameToTxQueueIdMap>();
  root->rok_QosCliConfig_QueueNameToTxQueueIdMapInIs(other);
  other->queueNameToTxQueueIdIs("q3", 3);
  EXPECT_EQ(attachments(), (AttachmentModel{{"Ethernet1", "tampered"}}));
}

// ===== Oracles

// What the output should be, by plain maps.
struct ExpectedScheduling {
  struct Interface {
    bool configured = false;
    std::set<int> queues;
    std::optional<std::string> attached;  // of an output that is there; "" for none
  };
  struct Policy {
    bool profile = false;
    std::string comment;  // the sequence that it has, if any
    std::set<std::string> sequences;
  };
  std::map<std::string, Interface> interfaces;
  std::map<std::string, Policy> policies;
  std::map<std::pair<std::string, int>, std::string> comments;

  void evaluate(const std::string& name, int number) {
    const std::string policy = comments[{name, number}];
    auto& attached = interfaces[name].attached;
    if (!policy.empty() || attached) attached = policy;
  }
  static void read(Policy& policy) {
    if (!policy.profile) policy.sequences.clear();
    if (policy.profile && !policy.comment.empty()) policy.sequences.insert(policy.comment);
  }
  AttachmentModel attachmentModel() const {
    AttachmentModel model;
    for (const auto& [name, intf] : interfaces) {
      if (intf.attached) model[name] = intf.attached->empty() ? "none" : *intf.attached;
    }
    return model;
  }
  PolicyModel policyModel() const {
    PolicyModel model;
    for (const auto& [name, policy] : policies) {
      if (!policy.profile) continue;
      std::string text;
      for (const auto& sequence : policy.sequences) text += (text.empty() ? "" : "; ") + sequence;
      model[name] = text.empty() ? "-" : text;
    }
    return model;
  }
  // What the queues of an interface may leave there at a start: "" for none.
  std::set<std::string> candidates(const std::string& name) const {
    std::set<std::string> result;
    for (const int queue : interfaces.at(name).queues) {
      const auto comment = comments.find({name, queue});
      result.insert(comment != comments.end() ? comment->second : "");
    }
    if (result.empty()) result.insert("");
    return result;
  }
  // A start reads all comments again. Takes over which queue of each interface was the last.
  void restart(const AttachmentModel& actual) {
    for (auto& [name, intf] : interfaces) {
      const auto possible = candidates(name);
      const auto found = actual.find(name);
      if (found == actual.end()) {
        EXPECT_TRUE(!intf.attached && possible.contains("")) << name;
        continue;
      }
      const std::string text = found->second == "none" ? "" : found->second;
      EXPECT_TRUE(possible.contains(text)) << name << " has " << text;
      intf.attached = text;
    }
    for (auto& [name, policy] : policies) read(policy);
  }
};

struct Day : SchedulerDevice {
  explicit Day(std::uint32_t seed) : random(seed) { start(); }

  std::mt19937 random;
  ExpectedScheduling expected;

  int roll(unsigned sides) { return static_cast<int>(random() % sides); }
  std::string anIntf() { return "Ethernet" + std::to_string(roll(4)); }
  int aNumber() { return roll(4); }
  std::string aPolicy() { return "sp-" + std::to_string(roll(3)); }
  static Qos::TxQueue txQueue(int number) { return unicast(static_cast<unsigned char>(number)); }

  void addQueue() {
    const std::string intfName = anIntf();
    const int number = aNumber();
    auto& intf = expected.interfaces[intfName];
    if (!intf.queues.insert(number).second) return;
    intf.configured = true;
    queue(intfName, txQueue(number));
    expected.evaluate(intfName, number);
  }
  void dropQueue() {
    const std::string intfName = anIntf();
    const int number = aNumber();
    auto& intf = expected.interfaces[intfName];
    if (!intf.configured) return;
    removeQueue(intfName, txQueue(number));
    intf.queues.erase(number);
  }
  void dropInterface() {
    const std::string intfName = anIntf();
    remove(intfName);
    expected.interfaces[intfName].configured = false;
    expected.interfaces[intfName].queues.clear();
  }
  void changeComment() {
    const std::string intfName = anIntf();
    const int number = aNumber();
    const std::string policy = aPolicy();
    std::string& comment = expected.comments[{intfName, number}];
    if (comment == policy) return;
    comment = policy;
    name(intfName, txQueue(number), policy);
    if (expected.interfaces[intfName].queues.contains(number)) {
      expected.evaluate(intfName, number);
    }
  }
  void dropComment() {
    const std::string intfName = anIntf();
    const int number = aNumber();
    expected.comments[{intfName, number}] = "";
    cli->commentDel(key(intfName, txQueue(number)));
  }
  void changeSettings() {
    const std::string intfName = anIntf();
    const int number = aNumber();
    if (!expected.interfaces[intfName].queues.contains(number)) return;
    const auto& queue = *intf(intfName)->txQueueConfig().find(txQueue(number));
    queue->shapeIs(queue->shape() + 1);
    expected.evaluate(intfName, number);
  }
  void changeProfile() {
    const std::string policy = aPolicy();
    auto& one = expected.policies[policy];
    one.profile = roll(3) != 0;
    one.profile ? profile(policy) : profileDel(policy);
    expected.read(one);
  }
  void changeProfileComment() {
    const std::string policy = aPolicy();
    auto& one = expected.policies[policy];
    one.comment = std::to_string(roll(5));
    profileComment(policy, document("\"" + one.comment + "\":{}"));
    expected.read(one);
  }
  void restartAll() {
    restart();
    expected.restart(attachments());
  }

  void step() {
    const int what = roll(28);
    if (what < 6) return addQueue();
    if (what < 9) return dropQueue();
    if (what < 10) return dropInterface();
    if (what < 14) return changeComment();
    if (what < 17) return dropComment();
    if (what < 20) return changeSettings();
    if (what < 23) return changeProfile();
    if (what < 27) return changeProfileComment();
    restartAll();
  }
};

// A restart gives what the native side says, but for two things, both on purpose: where the queues
// of an interface disagree, any of them may be the last of the walk; and a policy that is there
// keeps what it once read.
TEST(SchedulerPolicyOracle, RandomDaysAgreeWithPlainMapsInAnyWalkOrder) {
  std::size_t attached = 0;
  for (std::uint32_t seed = 1; seed <= 30; ++seed) {
    const WalkOrder walk(seed % 2 == 0 ? seed : 0);
    Day day(seed);
    for (int step = 0; step < 300; ++step) {
      day.step();
      const auto actual = day.attachments();
      ASSERT_EQ(actual, day.expected.attachmentModel()) << "seed " << seed << ", step " << step;
      ASSERT_EQ(day.model(), day.expected.policyModel()) << "seed " << seed << ", step " << step;
      attached += actual.size();
    }
  }
  EXPECT_GT(attached, 10000u) << "the days must be busy ones";
}

}  // namespace
}  // namespace QosOc::schedulerPolicyRootTest
