// "tc-to-tx-queue": {"<traffic class>": <tx queue id>}
#include "host/sections/Forms.h"

namespace host {

template <>
struct KeyForm<Qos::TrafficClass> : NumberKeyForm<unsigned char> {
  static Key key() {
    return Key::number("a traffic class", Qos::Input::Config::trafficClasses - 1);
  }
};

namespace {

using Qos::Input::Config;

std::vector<Rok::String> allTrafficClasses() {
  std::vector<Rok::String> keys;
  for (std::size_t tc = 0; tc < Config::trafficClasses; ++tc) keys.push_back(std::to_string(tc));
  return keys;
}

// Each traffic class is always there; one without a queue holds 16.
class TxQueueIds final : public Place {
  using Keys = KeyForm<Qos::TrafficClass>;
  using Scalar = ScalarForm<Qos::TxQueueId>;

 public:
  using Object = Config;
  explicit TxQueueIds(Rok::Ptr<Config> config) : config_(std::move(config)) {}

  static Schema schema(const Rok::Ptr<Config>& fresh) {
    return Schema::slots(Keys::key(), Scalar::schema(), allTrafficClasses(),
                         TxQueueIds(fresh).at("0")->value());
  }
  std::vector<Rok::String> keys() const override {
    std::vector<Rok::String> keys = allTrafficClasses();
    std::sort(keys.begin(), keys.end());
    return keys;
  }
  std::unique_ptr<Place> at(const Rok::String& tc) const override {
    return std::make_unique<LeafPlace>(Scalar::value(config_->tcToTxQueueMap(Keys::native(tc))));
  }
  void put(const Rok::String& tc, const Value& value, Writes& writes) override {
    writes([&] { config_->tcToTxQueueMapIs(Keys::native(tc), Scalar::native(value)); });
  }

 private:
  Rok::Ptr<Config> config_;
};

}  // namespace

Section tcToTxQueueSection() {
  return section(&Native::qosConfig, part<TxQueueIds>("tc-to-tx-queue"));
}

}  // namespace host
