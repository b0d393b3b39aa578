// Tx queues with values that a queue can't hold.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigQueueKivToOcSm.h"
#include "tests/support/NotificationLog.h"
#include "tests/support/QueueDevice.h"
#include "tests/support/QueueFixture.h"
#include "tests/support/Refusals.h"

namespace QosOc::queueRangeTest {
namespace {

using support::NotificationLog;
using support::outOfRange;
using support::QueueDevice;
using support::QueueModel;
using support::QueueSettings;
using testing::ElementsAre;

using namespace support::queueCases;

const std::string thresholdText =
    "QosOc::ThresholdType::value < QosOc::ThresholdType::min or > QosOc::ThresholdType::max not "
    "allowed";

// ===== Values out of range

struct Refusal {
  QueueSettings settings;
  std::string text;
};
std::vector<Refusal> refusals() {
  const auto drop = [](unsigned char percent) {
    return QueueSettings{.ecn = QueueDevice::ecn(100, 200, percent)};
  };
  return {{bandwidth(102), percentText},
          {bandwidth(255), percentText},
          {drop(101), percentText},
          {drop(102), percentText},
          {drop(255), percentText},
          {{.ecn = QueueDevice::ecn(allOnes, 200)}, thresholdText},
          {{.ecn = QueueDevice::ecn(100, allOnes)}, thresholdText},
          {{.ecn = QueueDevice::ecn(allOnes, allOnes)}, thresholdText},
          // The percentage is looked at first.
          {{.ecn = QueueDevice::ecn(allOnes, allOnes, 101)}, percentText}};
}

TEST_F(Queues, AChangeOutOfRangeThrowsItsTextAndLeavesTheQueueAsItWas) {
  const auto queue = add(intf, uc3, all());
  for (const auto& [settings, text] : refusals()) {
    const bool isEcn = settings.ecn != nullptr;
    EXPECT_EQ(outOfRange([&, wanted = settings] {
                isEcn ? queue->ecnConfigIs(wanted.ecn) : queue->bandwidthIs(wanted.bandwidth);
              }),
              text);
    EXPECT_EQ(model(), (QueueModel{{queue3, allShown}}));
  }
  queue->ecnConfigIs(QueueDevice::ecn(1));
  EXPECT_EQ(model()[queue3], "named strict 40% ecn 1-200/3 50% 7") << "the bandwidth is not asked";
  EXPECT_EQ(outOfRange([&] { queue->priorityIs(Qos::priorityNotConfigured); }), percentText)
      << "the priority is written with the bandwidth or not at all";
  queue->bandwidthIs(41);
  EXPECT_EQ(model()[queue3], "named 41% ecn 1-200/3 50% 7");
}

TEST_F(Queues, EveryoneElseIsToldOfAChangeOutOfRange) {
  using Attr = Qos::TxQueueConfig::Attr;
  const auto queue = txQueueConfig(uc3);
  const auto before = Rok::make<NotificationLog<Attr::bandwidth, Attr::ecnConfig>>(*queue);
  interface(intf)->txQueueConfigIs(uc3, queue);
  const auto after = Rok::make<NotificationLog<Attr::bandwidth, Attr::ecnConfig>>(*queue);
  EXPECT_EQ(outOfRange([&] { queue->bandwidthIs(102); }), percentText);
  EXPECT_EQ(outOfRange([&] { queue->ecnConfigIs(QueueDevice::ecn(allOnes)); }), thresholdText);
  EXPECT_THAT(before->lines(), ElementsAre("132", "134"));
  EXPECT_THAT(after->lines(), ElementsAre("132", "134"));
}

TEST_F(Queues, ACommentKeepsOutWhatWouldThrow) {
  comment(intf, uc3, both);
  const auto queue = add(
      intf, uc3, {Qos::strictPriority, static_cast<unsigned char>(102), QueueDevice::ecn(allOnes)});
  queue->bandwidthIs(103);
  queue->ecnConfigIs(QueueDevice::ecn(100, allOnes));
  EXPECT_EQ(model(), QueueModel{});
  EXPECT_EQ(outOfRange([&] { comment(intf, uc3, profile); }), "");
  EXPECT_EQ(outOfRange([&] { queue->bandwidthIs(104); }), percentText);
  comment(intf, uc3, policy);
  EXPECT_EQ(outOfRange([&] { queue->bandwidthIs(105); }), "");
  EXPECT_EQ(outOfRange([&] { queue->ecnConfigIs(QueueDevice::ecn(allOnes)); }), thresholdText);
  EXPECT_EQ(model(), QueueModel{});
}

// The ECN settings come first: when they throw, the config is not looked at, and when the config
// throws, they have been written.
TEST_F(Queues, ACommentThatGoesThrowsWhatItKeptOut) {
  const auto queue = add(intf, uc3);
  for (const bool isForeign : {false, true}) {
    const auto go = [&] { isForeign ? comment(intf, uc3, foreign) : commentDel(intf, uc3); };
    comment(intf, uc3, both);
    queue->bandwidthIs(40);
    queue->ecnConfigIs(QueueDevice::ecn(allOnes));
    EXPECT_EQ(outOfRange(go), thresholdText);
    EXPECT_EQ(model(), (QueueModel{{queue3, "blank"}}));
    comment(intf, uc3, both);
    queue->bandwidthIs(102);
    queue->ecnConfigIs(QueueDevice::ecn());
    EXPECT_EQ(outOfRange(go), percentText);
    EXPECT_EQ(model(), (QueueModel{{queue3, ecnShown}}));
  }
}

TEST_F(Queues, ATxQueueThatArrivesOutOfRangeHasNoMachineAndLeavesNothingRegistered) {
  const auto config = interface(intf);
  for (const auto& [settings, text] : refusals()) {
    const auto queue = txQueueConfig(uc3, settings);
    const auto log = Rok::make<NotificationLog<Qos::IntfConfig::Attr::txQueueConfig>>(*config);
    EXPECT_EQ(outOfRange([&] { config->txQueueConfigIs(uc3, queue); }), text);
    EXPECT_THAT(log->lines(), ElementsAre("131 unicast-3")) << "the other notifiees are called";
    EXPECT_EQ(machine(intf, uc3), nullptr);
    EXPECT_EQ(queue->notifieeList()->notifiees(), 0u);
    EXPECT_EQ(comments->notifieeList()->notifiees(), 0u);
    const bool isEcn = settings.ecn != nullptr;
    EXPECT_EQ(model(), isEcn ? QueueModel{} : (QueueModel{{queue3, "blank"}}))
        << "the ECN settings come first, and what was written stays";
    remove(intf, uc3);
    EXPECT_EQ(model(), isEcn ? QueueModel{} : (QueueModel{{queue3, "blank"}}))
        << "no machine removes the entry";
    queues->qDel(queue3);
  }
}

TEST_F(Queues, ATxQueueThatWasRefusedIsBuiltWhenItIsSetRightAndReportedAgain) {
  const auto queue = txQueueConfig(uc3, bandwidth(102));
  EXPECT_EQ(outOfRange([&] { interface(intf)->txQueueConfigIs(uc3, queue); }), percentText);
  queue->bandwidthIs(40);
  machine(intf)->handleTxQueueConfig(uc3);
  EXPECT_EQ(model(), (QueueModel{{queue3, "named 40%"}}));
}

TEST_F(Queues, AnInterfaceThatArrivesOutOfRangeHasNoMachine) {
  const auto config = Rok::make<Qos::IntfConfig>(id(intf));
  config->txQueueConfigIs(uc3, txQueueConfig(uc3, bandwidth(102)));
  EXPECT_EQ(outOfRange([&] { this->config->intfConfigIs(id(intf), config); }), percentText);
  EXPECT_EQ(machine(intf), nullptr);
  EXPECT_EQ(root->intfSm().members(), 0u);
  EXPECT_EQ(config->notifieeList()->notifiees(), 0u);
  EXPECT_EQ(model(), (QueueModel{{queue3, "blank"}}));
}

TEST(QueueStart, AValueOutOfRangeThrowsOutOfTheFactoryAndNothingStaysBehind) {
  for (const auto& [settings, text] : refusals()) {
    QueueDevice device;
    const auto queue = device.add(intf, uc3, settings);
    EXPECT_EQ(outOfRange([&] { device.start(); }), text);
    EXPECT_EQ(device.root, nullptr);
    for (const auto* notifier :
         std::initializer_list<const Rok::Notifier*>{device.config.get(), device.comments.get(),
                                                     device.interface(intf).get(), queue.get()}) {
      EXPECT_EQ(notifier->notifieeList()->notifiees(), 0u);
    }
    EXPECT_EQ(Rok::AllocTrackTypeInfo::of<QueueKivToOcSm>().blocks(), 0u);
    EXPECT_EQ(Rok::AllocTrackTypeInfo::of<IntfSm>().blocks(), 0u);
    EXPECT_EQ(Rok::AllocTrackTypeInfo::of<TxQueueSm>().blocks(), 0u);
  }
}

}  // namespace
}  // namespace QosOc::queueRangeTest
