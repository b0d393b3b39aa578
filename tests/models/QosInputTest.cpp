// The native queue-side records: the QoS root with its maps, interfaces, tx queues and profiles,
// port flow control, and the comment store.
#include "models/native/QosInput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "models/native/Cli.h"
#include "models/native/Pfc.h"
#include "models/native/TxQueue.h"
#include "tests/support/NotificationLog.h"

namespace Qos::qosInputTest {
namespace {

using support::NotificationLog;
using testing::ElementsAre;
using testing::IsEmpty;

// ===== Traffic class to tx queue

TEST(TcToTxQueueMap, HasSeventeenSlotsWithoutAQueueAtFirst) {
  const auto config = Rok::make<Input::Config>();
  for (unsigned char tc = 0; tc <= 16; ++tc) {
    EXPECT_EQ(config->tcToTxQueueMap(tc), noTxQueue) << int{tc};
    config->tcToTxQueueMapIs(tc, static_cast<unsigned char>(tc + 1));
  }
  for (unsigned char tc = 0; tc <= 16; ++tc) {
    EXPECT_EQ(config->tcToTxQueueMap(tc).value, tc + 1) << int{tc};
  }
}

TEST(TcToTxQueueMap, AnIndexBeyondSixteenThrowsWithIndexAndSize) {
  const auto config = Rok::make<Input::Config>();
  const auto log = Rok::make<NotificationLog<Input::Config::Attr::tcToTxQueueMap>>(*config);
  for (const unsigned char tc : {17, 255}) {
    const std::string text =
        "cannot access index " + std::to_string(tc) + " of an array with size 17";
    try {
      config->tcToTxQueueMap(tc);
      FAIL() << "no exception";
    } catch (const Rok::RangeException& e) {
      EXPECT_EQ(e.what(), text);
    }
    try {
      config->tcToTxQueueMapIs(tc, 3);
      FAIL() << "no exception";
    } catch (const Rok::RangeException& e) {
      EXPECT_EQ(e.what(), text);
    }
  }
  EXPECT_THAT(log->lines(), IsEmpty());
}

TEST(TcToTxQueueMap, AChangeNamesTheTrafficClassAndAnEqualValueIsNoChange) {
  const auto config = Rok::make<Input::Config>();
  const auto log = Rok::make<NotificationLog<Input::Config::Attr::tcToTxQueueMap>>(*config);
  config->tcToTxQueueMapIs(5, 16);
  config->tcToTxQueueMapIs(5, 7);
  config->tcToTxQueueMapIs(5, 7);
  config->tcToTxQueueMapIs(16, 7);
  config->tcToTxQueueMapIs(5, 16);
  EXPECT_THAT(log->lines(), ElementsAre("132 5", "132 16", "132 5"));
}

// ===== Maps of names

TEST(QosInputConfig, TellsTheReplacementOfItsMapsOfNamesAndNothingOfTheirContents) {
  const auto config = Rok::make<Input::Config>();
  using Attr = Input::Config::Attr;
  const auto log =
      Rok::make<NotificationLog<Attr::forwardingGroupNameToTcMap, Attr::queueNameToTxQueueIdMap>>(
          *config);
  EXPECT_EQ(config->forwardingGroupNameToTcMap(), nullptr);
  EXPECT_EQ(config->queueNameToTxQueueIdMap(), nullptr);
  const auto groups = Rok::make<ForwardingGroupNameToTcMap>();
  const auto queues = Rok::make<QueueNameToTxQueueIdMap>();
  config->forwardingGroupNameToTcMapIs(groups);
  config->queueNameToTxQueueIdMapIs(queues);
  config->forwardingGroupNameToTcMapIs(groups);
  groups->forwardingGroupNameToTcIs("bulk", 1);
  queues->queueNameToTxQueueIdIs("low", 1);
  config->forwardingGroupNameToTcMapIs(nullptr);
  EXPECT_THAT(log->lines(), ElementsAre("133", "134", "133"));
  EXPECT_EQ(config->queueNameToTxQueueIdMap(), queues);
}

TEST(QueueNameToTxQueueIdMap, WalksInNameOrderAndTellsEachNameThatChanges) {
  const auto map = Rok::make<QueueNameToTxQueueIdMap>();
  const auto log =
      Rok::make<NotificationLog<QueueNameToTxQueueIdMap::Attr::queueNameToTxQueueId>>(*map);
  map->queueNameToTxQueueIdIs("mid", 3);
  map->queueNameToTxQueueIdIs("high", 7);
  map->queueNameToTxQueueIdIs("low", 7);  // several names may hold one id
  map->queueNameToTxQueueIdIs("mid", 3);
  map->queueNameToTxQueueIdIs("mid", 4);
  std::string order;
  for (auto i = map->queueNameToTxQueueId().iterator(); i; ++i) {
    order += std::string(std::string_view(i.key().name)) + valueToStrep(*i.value()) + " ";
  }
  EXPECT_EQ(order, "high7 low7 mid4 ");
  EXPECT_EQ(map->queueNameToTxQueueId().find("nobody"), nullptr);
  map->queueNameToTxQueueIdDel("mid");
  map->queueNameToTxQueueIdDel("mid");
  EXPECT_THAT(log->lines(), ElementsAre("130 mid", "130 high", "130 low", "130 mid", "130 mid"));
}

TEST(QueueNameToTxQueueIdMap, AWalkSurvivesTheChangesMadeMeanwhile) {
  const auto map = Rok::make<QueueNameToTxQueueIdMap>();
  for (const char* name : {"b", "d", "f"}) map->queueNameToTxQueueIdIs(name, 1);
  const std::uint64_t version = map->queueNameToTxQueueId().version();
  std::string order;
  for (auto i = map->queueNameToTxQueueId().iterator(); i; ++i) {
    order += std::string_view(i.key().name);
    if (i.key() == QueueName("b")) {
      map->queueNameToTxQueueIdDel("b");
      map->queueNameToTxQueueIdIs("a", 1);  // behind: not visited
      map->queueNameToTxQueueIdIs("c", 1);  // ahead: visited
    }
    if (i.key() == QueueName("d")) map->queueNameToTxQueueIdDel("f");
  }
  EXPECT_EQ(order, "bcd");
  EXPECT_NE(map->queueNameToTxQueueId().version(), version);
}

TEST(ForwardingGroupNameToTcMap, TellsEachNameThatChanges) {
  const auto map = Rok::make<ForwardingGroupNameToTcMap>();
  const auto log =
      Rok::make<NotificationLog<ForwardingGroupNameToTcMap::Attr::forwardingGroupNameToTc>>(*map);
  map->forwardingGroupNameToTcIs("bulk", 1);
  map->forwardingGroupNameToTcIs("bulk", 1);
  map->forwardingGroupNameToTcIs("bulk", 2);
  map->forwardingGroupNameToTcDel("bulk");
  map->forwardingGroupNameToTcDel("bulk");
  EXPECT_THAT(log->lines(), ElementsAre("130 bulk", "130 bulk", "130 bulk"));
}

// Reads the first name of a traffic class inside the notification, as a reaction would.
class FirstNameReader final : public Rok::PtrInterface::NotifieeConst {
 public:
  explicit FirstNameReader(const ForwardingGroupNameToTcMap& map) : map_(map) {
    notifierIs(&map);
    isRegisteredNotifieeIs(true);
    hasNotificationActiveIs(true);
  }
  void onAttribute(Rok::AttributeId /*id*/, const void* /*key*/) override {
    const ForwardingGroupName* name = map_.firstName(1);
    read_.emplace_back(name != nullptr ? std::string_view(name->name) : "(none)");
  }
  const std::vector<std::string>& read() const { return read_; }

 private:
  const ForwardingGroupNameToTcMap& map_;
  std::vector<std::string> read_;
};

TEST(ForwardingGroupNameToTcMap, TheFirstNameIsUpToDateWhenItsChangeIsTold) {
  const auto map = Rok::make<ForwardingGroupNameToTcMap>();
  const auto reader = Rok::make<FirstNameReader>(*map);
  map->forwardingGroupNameToTcIs("b", 1);
  map->forwardingGroupNameToTcIs("a", 1);
  map->forwardingGroupNameToTcIs("a", 2);
  map->forwardingGroupNameToTcDel("b");
  EXPECT_THAT(reader->read(), ElementsAre("b", "a", "b", "(none)"));
}

TEST(ForwardingGroupNameToTcMap, TheFirstNameIsTheOneThatAWalkWouldFindFirst) {
  const auto map = Rok::make<ForwardingGroupNameToTcMap>();
  std::mt19937 random(1);
  for (int step = 0; step < 2000; ++step) {
    const ForwardingGroupName name(random() % 12 == 0 ? "" : "g" + std::to_string(random() % 12));
    const auto tc = static_cast<unsigned char>(random() % 5 == 0 ? 255 : random() % 4);
    if (random() % 3 == 0) {
      map->forwardingGroupNameToTcDel(name);
    } else {
      map->forwardingGroupNameToTcIs(name, tc);
    }
    std::map<int, std::string> first;
    for (auto i = map->forwardingGroupNameToTc().iterator(); i; ++i) {
      first.emplace(i.value()->value, std::string_view(i.key().name));
    }
    for (unsigned each = 0; each < 256; ++each) {
      const auto* found = map->firstName(static_cast<unsigned char>(each));
      const auto wanted = first.find(static_cast<int>(each));
      ASSERT_EQ(found != nullptr, wanted != first.end()) << step << " " << each;
      if (found != nullptr) {
        ASSERT_EQ(found->name, std::string_view(wanted->second));
      }
    }
  }
}

TEST(ForwardingGroupNameToTcMap, AFirstNameMayBeMovedOrDeletedByTheVeryNameThatWasGiven) {
  const auto map = Rok::make<ForwardingGroupNameToTcMap>();
  map->forwardingGroupNameToTcIs("a rather long name of a group", 1);
  map->forwardingGroupNameToTcIs(*map->firstName(1), 2);
  EXPECT_EQ(map->firstName(1), nullptr);
  ASSERT_NE(map->firstName(2), nullptr);
  EXPECT_EQ(map->firstName(2)->name, "a rather long name of a group");
  map->forwardingGroupNameToTcDel(*map->firstName(2));
  EXPECT_EQ(map->firstName(2), nullptr);
  EXPECT_EQ(map->forwardingGroupNameToTc().members(), 0u);
}

// ===== The root's other attributes

TEST(QosInputConfig, TellsEachInterfaceThatComesAndGoes) {
  const auto config = Rok::make<Input::Config>();
  const auto log = Rok::make<NotificationLog<Input::Config::Attr::intfConfig>>(*config);
  const Nerit::IntfId id("Ethernet1");
  const auto intf = Rok::make<IntfConfig>(id);
  config->intfConfigIs(id, intf);
  config->intfConfigIs(id, intf);
  EXPECT_EQ(*config->intfConfig().find(id), intf);
  config->intfConfigDel(intf->intfId());
  config->intfConfigDel(id);
  EXPECT_EQ(config->intfConfig().find(id), nullptr);
  EXPECT_THAT(log->lines(), ElementsAre("130 Ethernet1", "130 Ethernet1"));
}

TEST(QosInputConfig, TellsEachAttributeOfTheWatchdogApart) {
  const auto config = Rok::make<Input::Config>();
  using Attr = Input::Config::Attr;
  const auto log = Rok::make<
      NotificationLog<Attr::pfcWatchdogTimeA, Attr::pfcWatchdogTimeB, Attr::pfcWatchdogAction,
                      Attr::pfcWatchdogTimeC, Attr::pfcWatchdogPriorities>>(*config);
  config->pfcWatchdogTimeAIs(1.5);
  config->pfcWatchdogTimeBIs(2.5);
  config->pfcWatchdogActionIs(2);
  config->pfcWatchdogTimeCIs(3.5);
  config->pfcWatchdogPrioritiesIs(0x81);
  config->pfcWatchdogTimeAIs(1.5);
  EXPECT_THAT(log->lines(), ElementsAre("135", "136", "137", "138", "139"));
  EXPECT_EQ(config->pfcWatchdogTimeA(), 1.5);
  EXPECT_EQ(config->pfcWatchdogTimeB(), 2.5);
  EXPECT_EQ(config->pfcWatchdogAction(), 2);
  EXPECT_EQ(config->pfcWatchdogTimeC(), 3.5);
  EXPECT_EQ(config->pfcWatchdogPriorities(), 0x81);
}

// ===== Interfaces and their tx queues

TEST(IntfConfig, TellsTxQueuesByKeyAndTheChangeOfItsFlowControl) {
  const auto intf = Rok::make<IntfConfig>(Nerit::IntfId("Ethernet1"));
  EXPECT_EQ(intf->intfId().stringValue(), "Ethernet1");
  EXPECT_EQ(intf->pfcPortConfig(), nullptr);
  using Attr = IntfConfig::Attr;
  const auto log = Rok::make<NotificationLog<Attr::txQueueConfig, Attr::pfcPortConfig>>(*intf);
  const TxQueue one{3, unicast};
  const TxQueue other{3, multicast};
  const auto config = Rok::make<TxQueueConfig>(one);
  intf->txQueueConfigIs(one, config);
  intf->txQueueConfigIs(one, config);
  intf->txQueueConfigIs(other, Rok::make<TxQueueConfig>(other));
  EXPECT_EQ(intf->txQueueConfig().members(), 2u);
  intf->txQueueConfigDel(one);
  intf->pfcPortConfigIs(Rok::make<Pfc::PortConfig>());
  EXPECT_THAT(log->lines(),
              ElementsAre("131 unicast-3", "131 multicast-3", "131 unicast-3", "132"));
}

TEST(TxQueueConfig, NothingIsConfiguredAtFirst) {
  const auto config = Rok::make<TxQueueConfig>(TxQueue{3, multicast});
  EXPECT_EQ(config->txQueue(), (TxQueue{3, multicast}));
  EXPECT_EQ(config->priority(), priorityNotConfigured);
  EXPECT_EQ(config->bandwidth(), percentNotConfigured);
  EXPECT_EQ(config->ecnConfig(), nullptr);
  EXPECT_EQ(config->wredConfig(), nullptr);
}

TEST(TxQueueConfig, TellsEachAttributeApartAndOnlyWhenItChanges) {
  const auto config = Rok::make<TxQueueConfig>(TxQueue{3, unicast});
  using Attr = TxQueueConfig::Attr;
  const auto log = Rok::make<NotificationLog<Attr::priority, Attr::bandwidth, Attr::shape,
                                             Attr::ecnConfig, Attr::wredConfig>>(*config);
  const auto thresholds = Rok::make<EcnWredConfig const>(EcnWredConfig::Settings{});
  for (int twice = 0; twice < 2; ++twice) {
    config->priorityIs(strictPriority);
    config->bandwidthIs(30);
    config->shapeIs(1000);
    config->ecnConfigIs(thresholds);
    config->wredConfigIs(thresholds);
  }
  EXPECT_THAT(log->lines(), ElementsAre("131", "132", "133", "134", "135"));
  EXPECT_EQ(config->priority(), strictPriority);
  EXPECT_EQ(config->bandwidth().value, 30);
  EXPECT_EQ(config->shape(), 1000u);
  config->ecnConfigIs(Rok::make<EcnWredConfig const>(EcnWredConfig::Settings{}));
  EXPECT_EQ(log->lines().size(), 6u) << "another object of equal thresholds is a change";
}

TEST(EcnWredConfig, HoldsTheSettingsInFullWidth) {
  const EcnWredConfig::Settings settings{.minThreshold = 0xffffffffu,
                                         .maxThreshold = 0xfffffffeu,
                                         .thresholdUnit = 255,
                                         .maxDropPercent = 100,
                                         .weight = 0xfffffffdu};
  const auto config = Rok::make<EcnWredConfig>(settings);
  EXPECT_EQ(config->settings(), settings);
  EXPECT_EQ(config->minThreshold(), 0xffffffffu);
  EXPECT_EQ(config->maxThreshold(), 0xfffffffeu);
  EXPECT_EQ(config->thresholdUnit(), 255);
  EXPECT_EQ(config->maxDropPercent().value, 100);
  EXPECT_EQ(config->weight(), 0xfffffffdu);
  EXPECT_EQ(EcnWredConfig::Settings().maxDropPercent, percentNotConfigured);
}

// ===== QoS profiles, comments, port flow control

TEST(QosProfile, TellsItsTxQueuesByKey) {
  const auto profile = Rok::make<QosProfile>();
  const auto log = Rok::make<NotificationLog<QosProfile::Attr::txQueueConfig>>(*profile);
  const TxQueue key{3, unicast};
  profile->txQueueConfigIs(key, Rok::make<TxQueueConfig>(key));
  EXPECT_EQ((*profile->txQueueConfig().find(key))->txQueue(), key);
  profile->txQueueConfigDel(key);
  profile->txQueueConfigDel(key);
  EXPECT_THAT(log->lines(), ElementsAre("130 unicast-3", "130 unicast-3"));
}

TEST(QosProfileConfig, HasNoBodyAtFirstAndTellsEachReplacement) {
  const auto config = Rok::make<QosProfileConfig>("gold");
  EXPECT_EQ(config->name(), "gold");
  EXPECT_EQ(config->qosProfile(), nullptr);
  const auto log = Rok::make<NotificationLog<QosProfileConfig::Attr::qosProfile>>(*config);
  const auto body = Rok::make<QosProfile>();
  config->qosProfileIs(body);
  config->qosProfileIs(body);
  config->qosProfileIs(nullptr);
  EXPECT_THAT(log->lines(), ElementsAre("131", "131"));
}

TEST(QosProfileConfigDir, TellsEachProfileThatComesAndGoes) {
  const auto dir = Rok::make<QosProfileConfigDir>();
  const auto log = Rok::make<NotificationLog<QosProfileConfigDir::Attr::config>>(*dir);
  const auto gold = Rok::make<QosProfileConfig>("gold");
  dir->configIs("gold", gold);
  EXPECT_EQ(*dir->config().find("gold"), gold);
  dir->configDel(gold->name());
  EXPECT_THAT(log->lines(), ElementsAre("130 gold", "130 gold"));
}

TEST(CliConfig, AMissingCommentReadsAsEmptyAndIsNoEntry) {
  const auto config = Rok::make<Cli::Config>();
  EXPECT_EQ(config->comment("if-p7-uc-txq-3"), "");
  EXPECT_EQ(config->comment().members(), 0u);
}

TEST(CliConfig, TellsTheKeyOfEachCommentThatChanges) {
  const auto config = Rok::make<Cli::Config>();
  const auto log = Rok::make<NotificationLog<Cli::Config::Attr::comment>>(*config);
  config->commentIs("key", "text");
  config->commentIs("key", "text");
  config->commentIs("key", "other");
  EXPECT_EQ(config->comment("key"), "other");
  config->commentIs("empty", "");
  config->commentDel("key");
  config->commentDel("key");
  EXPECT_EQ(config->comment("key"), "");
  EXPECT_THAT(log->lines(), ElementsAre("130 key", "130 key", "130 empty", "130 key"));
}

TEST(PfcPortConfig, TellsTheChangeOfItsPriorities) {
  const auto port = Rok::make<Pfc::PortConfig>();
  EXPECT_EQ(port->priorities(), 0);
  const auto log = Rok::make<NotificationLog<Pfc::PortConfig::Attr::priorities>>(*port);
  port->prioritiesIs(0);
  port->prioritiesIs(0xff);
  EXPECT_EQ(port->priorities(), 0xff);
  EXPECT_THAT(log->lines(), ElementsAre("130"));
}

}  // namespace
}  // namespace Qos::qosInputTest
