// "interfaces": {"<name>": {"tx-queues": {...}, "pfc": {"priorities": n}}}
#include "host/Sections.h"
#include "host/sections/TxQueues.h"

namespace host {
namespace {

using Nerit::IntfId;
using Pfc::PortConfig;
using Qos::IntfConfig;
using Qos::Input::Config;

constexpr const char* pfcMember = "pfc";
constexpr const char* prioritiesMember = "priorities";

Value portPriorities(const PortConfig& port) { return numberValue(port.priorities()); }
void portPrioritiesIs(PortConfig& port, const Value& value) { port.prioritiesIs(byteOf(value)); }

constexpr Setting<PortConfig> portSettings[] = {
    {prioritiesMember, portPriorities, portPrioritiesIs}};

Rok::Ptr<PortConfig> newPort(const Value& value) {
  return Rok::make<PortConfig>(byteOf(value.at(prioritiesMember)));
}

class InterfacePlace final : public Place {
 public:
  explicit InterfacePlace(Rok::Ptr<IntfConfig> intf) : intf_(std::move(intf)) {}

  std::vector<Rok::String> keys() const override {
    if (!intf_->pfcPortConfig()) return {txQueuesMember};
    return {pfcMember, txQueuesMember};
  }
  std::unique_ptr<Place> at(const Rok::String& member) const override {
    if (member == txQueuesMember) return std::make_unique<TxQueuesPlace<IntfConfig>>(intf_);
    if (!intf_->pfcPortConfig()) return nullptr;
    return std::make_unique<SettingsPlace<PortConfig>>(intf_->pfcPortConfig(), portSettings);
  }
  void put(const Rok::String& /*pfc*/, const Value& value, Writes& writes) override {
    writes([&] { intf_->pfcPortConfigIs(newPort(value)); });
  }
  void erase(const Rok::String& /*pfc*/, Writes& writes) override {
    writes([&] { intf_->pfcPortConfigIs(nullptr); });
  }

 private:
  Rok::Ptr<IntfConfig> intf_;
};

class InterfacesPlace final : public Place {
 public:
  explicit InterfacesPlace(Rok::Ptr<Config> config) : config_(std::move(config)) {}

  std::vector<Rok::String> keys() const override {
    return sortedKeys(config_->intfConfig(),
                      [](const IntfId& intfId) { return textOf(intfId.stringValue()); });
  }
  std::unique_ptr<Place> at(const Rok::String& name) const override {
    const auto* found = config_->intfConfig().find(IntfId(name));
    return found != nullptr ? std::make_unique<InterfacePlace>(*found) : nullptr;
  }
  void put(const Rok::String& name, const Value& value, Writes& writes) override {
    const auto intf = Rok::make<IntfConfig>(IntfId(name));
    TxQueuesPlace<IntfConfig> txQueues(intf);
    putEach(txQueues, value.at(txQueuesMember), writes);
    if (const Value* pfc = value.find(pfcMember)) intf->pfcPortConfigIs(newPort(*pfc));
    writes([&] { config_->intfConfigIs(intf->intfId(), intf); });
  }
  void erase(const Rok::String& name, Writes& writes) override {
    writes([&] { config_->intfConfigDel(IntfId(name)); });
  }

 private:
  Rok::Ptr<Config> config_;
};

std::unique_ptr<Place> interfacesPlace(const Native& native) {
  return std::make_unique<InterfacesPlace>(native.qosConfig);
}

}  // namespace

Section interfacesSection() {
  const Schema txQueues = txQueuesSchema();
  const Schema pfc =
      Schema::record({{prioritiesMember, Schema::number(largestByte), numberValue(0)}});
  const Schema intf =
      Schema::record({{txQueuesMember, txQueues, txQueues.empty()}, {pfcMember, pfc}});
  return {"interfaces", Schema::keyed(Key::name(), intf), interfacesPlace};
}

}  // namespace host
