// "<tx queue>": {"priority": ..., "bandwidth": n, "shape": n, "ecn": {...}, "wred": {...}}
#include "host/sections/TxQueues.h"

#include "host/sections/Names.h"

namespace host {
namespace {

using Qos::EcnWredConfig;
using Qos::TxQueue;
using Qos::TxQueueConfig;
using EcnWred = TxQueueConfig::EcnWred;

constexpr std::string_view unicastPrefix = "uc-";
constexpr std::string_view multicastPrefix = "mc-";

std::string_view prefixOf(Qos::QueueType type) {
  return type == Qos::unicast ? unicastPrefix : multicastPrefix;
}

std::optional<Rok::String> canonicalKey(const Rok::String& key) {
  const std::string_view text = key;
  const bool isKnown = text.starts_with(unicastPrefix) || text.starts_with(multicastPrefix);
  if (!isKnown || !decimal(text.substr(unicastPrefix.size()), largestByte)) return std::nullopt;
  return key;
}

// ===== ECN and WRED

constexpr const char* minThresholdMember = "min-threshold";
constexpr const char* maxThresholdMember = "max-threshold";
constexpr const char* thresholdUnitMember = "threshold-unit";
constexpr const char* maxDropPercentMember = "max-drop-percent";
constexpr const char* weightMember = "weight";

Value valueOf(const EcnWred& config) {
  if (!config) return Value();
  return Value(Value::Object{{maxDropPercentMember, numberValue(config->maxDropPercent().value)},
                             {maxThresholdMember, numberValue(config->maxThreshold())},
                             {minThresholdMember, numberValue(config->minThreshold())},
                             {thresholdUnitMember, numberValue(config->thresholdUnit())},
                             {weightMember, numberValue(config->weight())}});
}

// Another record each time, also for settings that are as before. Null for null.
EcnWred ecnWredOf(const Value& value) {
  if (value.isNull()) return nullptr;
  EcnWredConfig::Settings settings;
  settings.minThreshold = wordOf(value.at(minThresholdMember));
  settings.maxThreshold = wordOf(value.at(maxThresholdMember));
  settings.thresholdUnit = byteOf(value.at(thresholdUnitMember));
  settings.maxDropPercent = byteOf(value.at(maxDropPercentMember));
  settings.weight = wordOf(value.at(weightMember));
  return Rok::make<EcnWredConfig>(settings);
}

Schema ecnWredSchema() {
  const Schema byte = Schema::number(largestByte);
  const Schema word = Schema::number(largestWord);
  return Schema::record({
      {minThresholdMember, word, numberValue(0)},
      {maxThresholdMember, word, numberValue(0)},
      {thresholdUnitMember, byte, numberValue(0)},
      {maxDropPercentMember, byte, numberValue(Qos::percentNotConfigured.value)},
      {weightMember, word, numberValue(0)},
  });
}

// ===== Settings

constexpr const char* priorityMember = "priority";
constexpr const char* bandwidthMember = "bandwidth";
constexpr const char* shapeMember = "shape";
constexpr const char* ecnMember = "ecn";
constexpr const char* wredMember = "wred";

Value priority(const TxQueueConfig& queue) {
  return numberValue(static_cast<unsigned char>(queue.priority()));
}
void priorityIs(TxQueueConfig& queue, const Value& value) {
  queue.priorityIs(Qos::TxQueuePriority{byteOf(value)});
}
Value bandwidth(const TxQueueConfig& queue) { return numberValue(queue.bandwidth().value); }
void bandwidthIs(TxQueueConfig& queue, const Value& value) { queue.bandwidthIs(byteOf(value)); }
Value shape(const TxQueueConfig& queue) { return numberValue(queue.shape()); }
void shapeIs(TxQueueConfig& queue, const Value& value) { queue.shapeIs(wordOf(value)); }
Value ecn(const TxQueueConfig& queue) { return valueOf(queue.ecnConfig()); }
void ecnIs(TxQueueConfig& queue, const Value& value) { queue.ecnConfigIs(ecnWredOf(value)); }
Value wred(const TxQueueConfig& queue) { return valueOf(queue.wredConfig()); }
void wredIs(TxQueueConfig& queue, const Value& value) { queue.wredConfigIs(ecnWredOf(value)); }

using TxQueueSetting = Setting<TxQueueConfig>;
constexpr TxQueueSetting settings[] = {
    {bandwidthMember, bandwidth, bandwidthIs},
    {ecnMember, ecn, ecnIs},
    {priorityMember, priority, priorityIs},
    {shapeMember, shape, shapeIs},
    {wredMember, wred, wredIs},
};

const TxQueueSetting& settingOf(std::string_view member) {
  return settingNamed<TxQueueConfig>(settings, member);
}

// ECN or WRED of a queue. The record never changes: a change of a member installs another one.
class EcnWredPlace final : public Place {
 public:
  EcnWredPlace(Rok::Ptr<TxQueueConfig> queue, const TxQueueSetting& setting)
      : queue_(std::move(queue)), setting_(setting) {}

  Value value() const override { return setting_.value(*queue_); }
  std::vector<Rok::String> keys() const override { return keysOf(value()); }
  std::unique_ptr<Place> at(const Rok::String& member) const override {
    return std::make_unique<LeafPlace>(value().at(member));
  }
  void put(const Rok::String& member, const Value& value, Writes& writes) override {
    Value whole = this->value();
    whole.put(member, value);
    writes([&] { setting_.valueIs(*queue_, whole); });
  }

 private:
  Rok::Ptr<TxQueueConfig> queue_;
  const TxQueueSetting& setting_;
};

class TxQueuePlace final : public Place {
 public:
  explicit TxQueuePlace(Rok::Ptr<TxQueueConfig> queue) : queue_(std::move(queue)) {}

  std::vector<Rok::String> keys() const override {
    std::vector<Rok::String> keys;
    for (const TxQueueSetting& setting : settings) {
      if (!setting.value(*queue_).isNull()) keys.emplace_back(setting.name);
    }
    return keys;
  }
  std::unique_ptr<Place> at(const Rok::String& member) const override {
    const TxQueueSetting& setting = settingOf(member);
    Value value = setting.value(*queue_);
    if (value.isNull()) return nullptr;
    const bool isRecord = value.as<Value::Object>() != nullptr;
    if (isRecord) return std::make_unique<EcnWredPlace>(queue_, setting);
    return std::make_unique<LeafPlace>(std::move(value));
  }
  void put(const Rok::String& member, const Value& value, Writes& writes) override {
    writes([&] { settingOf(member).valueIs(*queue_, value); });
  }
  void erase(const Rok::String& member, Writes& writes) override {
    writes([&] { settingOf(member).valueIs(*queue_, Value()); });
  }

 private:
  Rok::Ptr<TxQueueConfig> queue_;
};

}  // namespace

TxQueue txQueueOf(std::string_view key) {
  const Qos::QueueType type = key.starts_with(unicastPrefix) ? Qos::unicast : Qos::multicast;
  return {numberOf<unsigned char>(key.substr(unicastPrefix.size())), type};
}

std::string keyOf(const TxQueue& txQueue) {
  return std::string(prefixOf(txQueue.type)) + decimalOf(txQueue.id.value);
}

Rok::Ptr<TxQueueConfig> newTxQueue(std::string_view key, const Value& value) {
  auto queue = Rok::make<TxQueueConfig>(txQueueOf(key));
  for (const auto& [member, setting] : value.object()) settingOf(member).valueIs(*queue, setting);
  return queue;
}

std::unique_ptr<Place> txQueuePlace(const Rok::Ptr<TxQueueConfig>& txQueue) {
  return std::make_unique<TxQueuePlace>(txQueue);
}

Schema txQueuesSchema() {
  const auto unset = static_cast<unsigned char>(Qos::priorityNotConfigured);
  const Schema txQueue = Schema::record({
      {priorityMember, Schema::nameOrNumber("a priority", priorities), numberValue(unset)},
      {bandwidthMember, Schema::number(largestByte), numberValue(Qos::percentNotConfigured.value)},
      {shapeMember, Schema::number(largestWord), numberValue(0)},
      {ecnMember, ecnWredSchema()},
      {wredMember, ecnWredSchema()},
  });
  return Schema::keyed({"a tx queue: uc-N or mc-N, N from 0 to 255", canonicalKey}, txQueue);
}

}  // namespace host
