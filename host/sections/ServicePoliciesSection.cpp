// "service-policies": {"<key tag>:<policy map>": {"interfaces": {"<interface>": true}}}
#include "host/Sections.h"
#include "host/sections/Parts.h"

namespace host {
namespace {

using Nerit::IntfId;
using Qos::ServicePolicyConfig;
using Qos::ServicePolicyKey;
using Qos::Input::Config;

constexpr const char* interfacesMember = "interfaces";
constexpr std::uint64_t largestTag = 0xffff;

// The first colon ends the tag: a policy map's name may hold colons, and may be empty.
std::optional<Rok::String> canonicalKey(const Rok::String& key) {
  const std::string_view text = key;
  const std::size_t colon = text.find(':');
  if (colon == text.npos || !decimal(text.substr(0, colon), largestTag)) return std::nullopt;
  return key;
}
ServicePolicyKey keyOf(std::string_view text) {
  const std::size_t colon = text.find(':');
  return {numberOf<std::uint16_t>(text.substr(0, colon)), text.substr(colon + 1)};
}
Rok::String textOfKey(const ServicePolicyKey& key) {
  return key.pmapName.addLeft(decimalOf(key.keyTag) + ':');
}

class PolicyInterfacesPlace final : public Place {
 public:
  explicit PolicyInterfacesPlace(Rok::Ptr<ServicePolicyConfig> policy)
      : policy_(std::move(policy)) {}

  std::vector<Rok::String> keys() const override {
    return sortedKeys(policy_->intfIds(),
                      [](const IntfId& intfId) { return textOf(intfId.stringValue()); });
  }
  std::unique_ptr<Place> at(const Rok::String& name) const override {
    const bool* found = policy_->intfIds().find(IntfId(name));
    return found != nullptr ? std::make_unique<LeafPlace>(Value(*found)) : nullptr;
  }
  void put(const Rok::String& name, const Value& value, Writes& writes) override {
    writes([&] { policy_->intfIdsIs(IntfId(name), *value.as<bool>()); });
  }
  void erase(const Rok::String& name, Writes& writes) override {
    writes([&] { policy_->intfIdsDel(IntfId(name)); });
  }

 private:
  Rok::Ptr<ServicePolicyConfig> policy_;
};

class ServicePoliciesPlace final : public Place {
 public:
  explicit ServicePoliciesPlace(Rok::Ptr<Config> config) : config_(std::move(config)) {}

  std::vector<Rok::String> keys() const override {
    return sortedKeys(config_->servicePolicyConfig(), textOfKey);
  }
  std::unique_ptr<Place> at(const Rok::String& key) const override {
    using ServicePolicyPlace = HolderPlace<PolicyInterfacesPlace, ServicePolicyConfig>;
    const auto* found = config_->servicePolicyConfig().find(keyOf(key));
    return found != nullptr ? std::make_unique<ServicePolicyPlace>(interfacesMember, *found)
                            : nullptr;
  }
  void put(const Rok::String& key, const Value& value, Writes& writes) override {
    const auto policy = Rok::make<ServicePolicyConfig>(keyOf(key));
    PolicyInterfacesPlace interfaces(policy);
    putEach(interfaces, value.at(interfacesMember), writes);
    writes([&] { config_->servicePolicyConfigIs(policy->key(), policy); });
  }
  void erase(const Rok::String& key, Writes& writes) override {
    writes([&] { config_->servicePolicyConfigDel(keyOf(key)); });
  }

 private:
  Rok::Ptr<Config> config_;
};

std::unique_ptr<Place> servicePoliciesPlace(const Native& native) {
  return std::make_unique<ServicePoliciesPlace>(native.qosConfig);
}

}  // namespace

Section servicePoliciesSection() {
  const Key key{"a service policy: a tag from 0 to 65535, a colon and the name of a policy map",
                canonicalKey};
  const Schema interfaces = Schema::keyed(Key::name(), Schema::boolean());
  const Schema policy = Schema::record({{interfacesMember, interfaces, interfaces.empty()}});
  return {"service-policies", Schema::keyed(key, policy), servicePoliciesPlace};
}

}  // namespace host
