// "qos-profiles": {"<name>": {"tx-queues": {...}}}
#include "host/Sections.h"
#include "host/sections/TxQueues.h"

namespace host {
namespace {

using Qos::QosProfile;
using Qos::QosProfileConfig;
using Qos::QosProfileConfigDir;

Rok::Ptr<QosProfile> newBody(const Value& txQueues, Writes& writes) {
  auto body = Rok::make<QosProfile>();
  TxQueuesPlace<QosProfile> place(body);
  putEach(place, txQueues, writes);
  return body;
}

// The tx queues are the profile's body. Without them it has none.
class QosProfilePlace final : public Place {
 public:
  explicit QosProfilePlace(Rok::Ptr<QosProfileConfig> profile) : profile_(std::move(profile)) {}

  std::vector<Rok::String> keys() const override {
    if (!profile_->qosProfile()) return {};
    return {txQueuesMember};
  }
  std::unique_ptr<Place> at(const Rok::String& /*txQueues*/) const override {
    if (!profile_->qosProfile()) return nullptr;
    return std::make_unique<TxQueuesPlace<QosProfile>>(profile_->qosProfile());
  }
  void put(const Rok::String& /*txQueues*/, const Value& value, Writes& writes) override {
    const auto body = newBody(value, writes);
    writes([&] { profile_->qosProfileIs(body); });
  }
  void erase(const Rok::String& /*txQueues*/, Writes& writes) override {
    writes([&] { profile_->qosProfileIs(nullptr); });
  }

 private:
  Rok::Ptr<QosProfileConfig> profile_;
};

class QosProfilesPlace final : public Place {
 public:
  explicit QosProfilesPlace(Rok::Ptr<QosProfileConfigDir> dir) : dir_(std::move(dir)) {}

  std::vector<Rok::String> keys() const override { return sortedKeys(dir_->config(), textOf); }
  std::unique_ptr<Place> at(const Rok::String& name) const override {
    const auto* found = dir_->config().find(name);
    return found != nullptr ? std::make_unique<QosProfilePlace>(*found) : nullptr;
  }
  void put(const Rok::String& name, const Value& value, Writes& writes) override {
    const auto profile = Rok::make<QosProfileConfig>(name);
    if (const Value* txQueues = value.find(txQueuesMember)) {
      profile->qosProfileIs(newBody(*txQueues, writes));
    }
    writes([&] { dir_->configIs(profile->name(), profile); });
  }
  void erase(const Rok::String& name, Writes& writes) override {
    writes([&] { dir_->configDel(name); });
  }

 private:
  Rok::Ptr<QosProfileConfigDir> dir_;
};

std::unique_ptr<Place> qosProfilesPlace(const Native& native) {
  return std::make_unique<QosProfilesPlace>(native.qosProfiles);
}

}  // namespace

Section qosProfilesSection() {
  const Schema profile = Schema::record({{txQueuesMember, txQueuesSchema()}});
  return {"qos-profiles", Schema::keyed(Key::name(), profile), qosProfilesPlace};
}

}  // namespace host
