// "tc-to-tx-queue": {"<traffic class>": <tx queue id>}
#include "host/Sections.h"
#include "host/sections/Parts.h"

namespace host {
namespace {

using Qos::TrafficClass;
using Qos::Input::Config;

std::vector<Rok::String> allTrafficClasses() {
  std::vector<Rok::String> keys;
  for (std::size_t tc = 0; tc < Config::trafficClasses; ++tc) keys.push_back(std::to_string(tc));
  return keys;
}

TrafficClass trafficClassOf(std::string_view key) { return numberOf<unsigned char>(key); }

// Each traffic class is always there; one without a queue holds 16.
class TcToTxQueuePlace final : public Place {
 public:
  explicit TcToTxQueuePlace(Rok::Ptr<Config> config) : config_(std::move(config)) {}

  std::vector<Rok::String> keys() const override {
    std::vector<Rok::String> keys = allTrafficClasses();
    std::sort(keys.begin(), keys.end());
    return keys;
  }
  std::unique_ptr<Place> at(const Rok::String& key) const override {
    const auto id = config_->tcToTxQueueMap(trafficClassOf(key));
    return std::make_unique<LeafPlace>(numberValue(id.value));
  }
  void put(const Rok::String& key, const Value& value, Writes& writes) override {
    writes([&] { config_->tcToTxQueueMapIs(trafficClassOf(key), byteOf(value)); });
  }

 private:
  Rok::Ptr<Config> config_;
};

std::unique_ptr<Place> tcToTxQueuePlace(const Native& native) {
  return std::make_unique<TcToTxQueuePlace>(native.qosConfig);
}

}  // namespace

Section tcToTxQueueSection() {
  const Key trafficClass = Key::number("a traffic class", Config::trafficClasses - 1);
  return {"tc-to-tx-queue",
          Schema::slots(trafficClass, Schema::number(largestByte), allTrafficClasses(),
                        numberValue(Qos::noTxQueue.value)),
          tcToTxQueuePlace};
}

}  // namespace host
