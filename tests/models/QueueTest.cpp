// The OpenConfig queues, queue-management profiles and forwarding groups, the range-checked
// numbers, and what all directories of the output have in common.
#include "models/openconfig/Queue.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>

#include "models/openconfig/ForwardingGroup.h"
#include "models/openconfig/Numbers.h"
#include "models/openconfig/Records.h"

namespace QosOc {
namespace {

template <class T>
std::string printed(const T& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

template <class Number, class Value>
std::string refusal(Value value) {
  try {
    const Number number(value);
    return "accepted " + printed(number);
  } catch (const Rok::RangeException& e) {
    return e.what();
  }
}

// ===== Numbers

constexpr const char* percentText =
    "QosOc::PercentType::value < QosOc::PercentType::min or > QosOc::PercentType::max not allowed";
constexpr const char* percent100Text =
    "QosOc::PercentType100::value < QosOc::PercentType100::min or > QosOc::PercentType100::max "
    "not allowed";
constexpr const char* thresholdText =
    "QosOc::ThresholdType::value < QosOc::ThresholdType::min or > QosOc::ThresholdType::max not "
    "allowed";

TEST(PercentType, TakesZeroToAHundredAndRefusesTheRestByItsText) {
  for (unsigned value = 0; value < 256; ++value) {
    const auto byte = static_cast<std::uint8_t>(value);
    EXPECT_EQ(refusal<PercentType>(byte),
              value <= 100 ? "accepted " + std::to_string(value) : percentText);
  }
}

TEST(PercentType100, TakesZeroToAHundredAndRefusesTheRestByItsText) {
  for (unsigned value = 0; value < 256; ++value) {
    const auto byte = static_cast<std::uint8_t>(value);
    EXPECT_EQ(refusal<PercentType100>(byte),
              value <= 100 ? "accepted " + std::to_string(value) : percent100Text);
  }
}

TEST(ThresholdType, TakesAllButAllOnes) {
  EXPECT_EQ(refusal<ThresholdType>(0u), "accepted 0");
  EXPECT_EQ(refusal<ThresholdType>(4294967294u), "accepted 4294967294");
  EXPECT_EQ(refusal<ThresholdType>(4294967295u), thresholdText);
}

// What a byte or a word would make of these numbers is in range.
TEST(RangeCheckedNumbers, RefuseWhatTheirWidthWouldCutIntoTheRange) {
  EXPECT_EQ(refusal<PercentType>(100ull), "accepted 100");
  for (const auto tooLarge : {101ull, 256ull, 300ull, 0x100000000ull, ~0ull}) {
    EXPECT_EQ(refusal<PercentType>(tooLarge), percentText);
    EXPECT_EQ(refusal<PercentType100>(tooLarge), percent100Text);
  }
  EXPECT_EQ(refusal<ThresholdType>(4294967294ull), "accepted 4294967294");
  for (const auto tooLarge : {0xffffffffull, 0x100000000ull, 0x100000001ull, ~0ull}) {
    EXPECT_EQ(refusal<ThresholdType>(tooLarge), thresholdText);
  }
}

TEST(RangeCheckedNumbers, RefuseWhatIsNegativeInItsOwnType) {
  EXPECT_EQ(refusal<PercentType>(100), "accepted 100");
  for (const auto negative : {-1ll, -156ll, -256ll, -0x100000000ll}) {  // -156 is 100 as a byte
    EXPECT_EQ(refusal<PercentType>(negative), percentText);
    EXPECT_EQ(refusal<PercentType100>(negative), percent100Text);
    EXPECT_EQ(refusal<ThresholdType>(negative), thresholdText);
  }
  EXPECT_EQ(refusal<PercentType>(static_cast<signed char>(-1)), percentText);
  EXPECT_EQ(refusal<ThresholdType>(-2), thresholdText);  // 4294967294 as a word
}

TEST(RangeCheckedNumbers, BeginWithTheirOwnDefault) {
  EXPECT_EQ(PercentType().value(), 0);
  EXPECT_EQ(PercentType100().value(), 100);
  EXPECT_EQ(ThresholdType().value(), 0u);
}

TEST(RangeCheckedNumbers, AreAsWideAsTheModelSays) {
  EXPECT_EQ(sizeof(PercentType), 1u);
  EXPECT_EQ(sizeof(PercentType100), 1u);
  EXPECT_EQ(sizeof(ThresholdType), 4u);
}

TEST(RangeCheckedNumbers, CompareByValue) {
  EXPECT_EQ(PercentType(7), PercentType(7));
  EXPECT_LT(ThresholdType(7), ThresholdType(8));
}

TEST(RangeCheckedNumbers, ARefusedValueNeverEntersARecord) {
  Config::QueueEcnConfig config;
  config.maxThreshold = 5u;
  EXPECT_THROW(config.maxThreshold = 4294967295u, Rok::RangeException);
  EXPECT_EQ(config.maxThreshold, ThresholdType(5));
}

}  // namespace

namespace Config {
namespace {

// ===== Queues

TEST(Queue, OfTheEmptyNameIsWhatAMissingOneReadsAs) {
  const auto dir = Rok::make<QueuesDir>();
  EXPECT_EQ(dir->q("nobody"), Queue(""));
  EXPECT_EQ(dir->q("nobody"), Queue());
  EXPECT_FALSE(dir->q("nobody"));
  EXPECT_EQ(dir->q().members(), 0u) << "a lookup never creates";
}

TEST(Queue, BuiltFromANameHasTheKeyAndNothingElse) {
  const Queue queue("high");
  EXPECT_EQ(queue.name, "high");
  EXPECT_EQ(queue.config, QueueConfig());
  EXPECT_EQ(queue.config.name, "");
  EXPECT_FALSE(queue.config.strictPriority);
  EXPECT_FALSE(queue.config.bandwidth.has_value());
  EXPECT_FALSE(queue.ecnConfig.has_value());
  EXPECT_TRUE(queue);
}

TEST(QueuesDir, AWriteReplacesEveryFieldOfTheRecordOfThatName) {
  const auto dir = Rok::make<QueuesDir>();
  Queue queue("high");
  queue.config.strictPriority = true;
  queue.ecnConfig = QueueEcnConfig();
  dir->qIs(queue);
  EXPECT_EQ(dir->q("high"), queue);
  dir->qIs(Queue("high"));
  EXPECT_EQ(dir->q("high"), Queue("high"));
  EXPECT_EQ(dir->q().members(), 1u);
}

TEST(QueuesDir, ADeletionRemovesThatQueueAloneAndAMissingOneHasNoEffect) {
  const auto dir = Rok::make<QueuesDir>();
  dir->qIs(Queue("high"));
  dir->qIs(Queue("low"));
  dir->qDel("high");
  dir->qDel("high");
  EXPECT_FALSE(dir->q("high"));
  EXPECT_TRUE(dir->q("low"));
}

TEST(QueuesDir, ARecordMayBeDeletedOrRewrittenByWhatTheDirectoryItselfHolds) {
  const auto dir = Rok::make<QueuesDir>();
  dir->qIs(Queue("high"));
  dir->qIs(*dir->q().find("high"));
  EXPECT_EQ(dir->q("high"), Queue("high"));
  dir->qDel(dir->q().find("high")->name);
  EXPECT_EQ(dir->q().members(), 0u);
}

// ===== Queue-management profiles

TEST(QueueManagementProfile, AFreshOneDropsAtAHundredPercentAndIsEmptyOtherwise) {
  const QueueManagementProfile profile("gold");
  EXPECT_EQ(profile.name, "gold");
  EXPECT_EQ(profile.config.name, "");
  EXPECT_EQ(profile.wredUniform.minThreshold, 0u);
  EXPECT_EQ(profile.wredUniform.maxThreshold, 0u);
  EXPECT_FALSE(profile.wredUniform.enableEcn);
  EXPECT_FALSE(profile.wredUniform.drop);
  EXPECT_EQ(profile.wredUniform.weight, 0u);
  EXPECT_EQ(profile.wredUniform.maxDropProbabilityPercent.value(), 100);
}

TEST(QueueManagementProfile, HoldsThresholdsOfSixtyFourBitsAndPrintsAll) {
  QueueManagementProfile profile("gold");
  profile.config.name = "gold";
  profile.wredUniform = {0xffffffffffffffffu, 5000000000u, true, false, 7, 42};
  EXPECT_EQ(printed(profile),
            "{name gold, config {name gold}, wredUniform {minThreshold 18446744073709551615, "
            "maxThreshold 5000000000, enableEcn true, drop false, weight 7, "
            "maxDropProbabilityPercent 42}}");
}

TEST(QueueManagementProfilesDir, ReplacesWholeRecordsAndAMissingOneReadsAsTheDefault) {
  const auto dir = Rok::make<QueueManagementProfilesDir>();
  EXPECT_EQ(dir->queueManagementProfile("gold"), QueueManagementProfile(""));
  QueueManagementProfile profile("gold");
  profile.wredUniform.drop = true;
  dir->queueManagementProfileIs(profile);
  dir->queueManagementProfileIs(QueueManagementProfile("gold"));
  EXPECT_EQ(dir->queueManagementProfile("gold"), QueueManagementProfile("gold"));
  dir->queueManagementProfileDel("gold");
  dir->queueManagementProfileDel("gold");
  EXPECT_EQ(dir->queueManagementProfile().members(), 0u);
}

// ===== Forwarding groups

TEST(ForwardingGroupsDir, CreatesOrGetsAndConfigIsReplacesTheWholeConfig) {
  const auto dir = Rok::make<ForwardingGroupsDir>();
  EXPECT_EQ(dir->forwardingGroup("bulk"), nullptr);
  const auto made = dir->forwardingGroupIs("bulk");
  EXPECT_EQ(made->name(), "bulk");
  EXPECT_EQ(made->config(), ForwardingGroupConfig()) << "the config is not filled by itself";
  made->configIs({"bulk", "low"});
  EXPECT_EQ(dir->forwardingGroupIs("bulk"), made);
  EXPECT_EQ(made->config(), (ForwardingGroupConfig{"bulk", "low"}));
  made->configIs({"bulk", {}});
  EXPECT_EQ(made->config().outputQueue, "");
  dir->forwardingGroupDel(made->name());
  dir->forwardingGroupDel("bulk");
  EXPECT_EQ(dir->forwardingGroup("bulk"), nullptr);
  EXPECT_NE(dir->forwardingGroupIs("bulk"), made);
}

// ===== What the directories have in common

struct Lamp {
  static constexpr RecordId record = RecordId::queue;
  Rok::String name;
  int watts = 0;

  Lamp() = default;
  explicit Lamp(const Rok::String& name) : name(name) {}
  bool operator==(const Lamp&) const = default;
};

struct Lamps final : Rok::PtrInterface {
  RecordMap<Lamp, 0x1a3bu, &Lamp::name> records;
};

Lamp lamp(const char* name, int watts) {
  Lamp result(name);
  result.watts = watts;
  return result;
}

TEST(RecordMap, AMissingKeyReadsAsTheRecordOfTheDefaultKeyAndNotOfTheOneAskedFor) {
  const Lamps lamps;
  EXPECT_EQ(lamps.records.get("hall"), Lamp(""));
  EXPECT_EQ(lamps.records.map().members(), 0u);
}

TEST(RecordMap, ReadsGiveCopies) {
  Lamps lamps;
  lamps.records.is(lamp("hall", 40));
  Lamp copy = lamps.records.get("hall");
  copy.watts = 60;
  EXPECT_EQ(lamps.records.get("hall").watts, 40);
  lamps.records.is(copy);
  EXPECT_EQ(lamps.records.get("hall").watts, 60);
}

TEST(RecordMap, ReplacingARecordIsNoStructuralChangeAndKeepsItsPlace) {
  Lamps lamps;
  lamps.records.is(lamp("hall", 40));
  lamps.records.is(lamp("yard", 40));
  const std::uint64_t version = lamps.records.map().version();
  const Lamp* place = lamps.records.map().find("hall");
  lamps.records.is(lamp("hall", 60));
  EXPECT_EQ(lamps.records.map().version(), version);
  EXPECT_EQ(lamps.records.map().find("hall"), place);
  EXPECT_EQ(place->watts, 60);
}

TEST(RecordMap, AWalkMayRewriteAndDeleteWhatItStandsOn) {
  Lamps lamps;
  for (int n = 0; n < 50; ++n) lamps.records.is(lamp(std::to_string(n).c_str(), n));
  int visited = 0;
  for (auto i = lamps.records.map().iterator(); i; ++i, ++visited) {
    Lamp record = i.currNodeNonStale()->value();
    if (record.watts % 2 == 0) {
      lamps.records.del(record.name);
    } else {
      record.watts += 100;
      lamps.records.is(record);
    }
  }
  EXPECT_EQ(visited, 50);
  EXPECT_EQ(lamps.records.map().members(), 25u);
  EXPECT_EQ(lamps.records.get("7").watts, 107);
}

class Room final : public Rok::PtrInterface {
 public:
  static constexpr RecordId record = RecordId::forwardingGroup;
  explicit Room(const Rok::String& name) : name_(name) {}
  void markerIs(const Marker& /*marker*/) {}
  const Rok::String& name() const { return name_; }
  int chairs = 0;

 private:
  Rok::String name_;
};
using Rooms = ObjectMap<Room, 0x5c7du, &Room::name>;

TEST(ObjectMap, CreatesOnceAndGivesBackWhatIsThereAsItStands) {
  Rooms rooms;
  EXPECT_EQ(rooms.get("hall"), nullptr);
  const auto made = rooms.is("hall");
  made->chairs = 4;
  EXPECT_EQ(rooms.is("hall"), made);
  EXPECT_EQ(rooms.get("hall"), made);
  EXPECT_EQ(made->chairs, 4);
  EXPECT_EQ(rooms.map().members(), 1u);
}

TEST(ObjectMap, ADeletedObjectLivesWithItsHolderAndTheNextOfThatNameIsAnother) {
  Rooms rooms;
  const auto made = rooms.is("hall");
  rooms.del("hall");
  rooms.del("hall");
  EXPECT_EQ(rooms.get("hall"), nullptr);
  EXPECT_EQ(made->references(), 1u) << "the map has let go";
  EXPECT_NE(rooms.is("hall"), made);
}

TEST(ObjectMap, AnObjectMayBeDeletedByItsOwnName) {
  Rooms rooms;
  rooms.is("a name that is long enough for a buffer");
  rooms.del(rooms.get("a name that is long enough for a buffer")->name());
  rooms.is("hall");
  rooms.del((*rooms.map().find("hall"))->name());
  EXPECT_EQ(rooms.map().members(), 0u);
}

}  // namespace
}  // namespace Config
}  // namespace QosOc
