// "policy-maps": {"<map type>": {"<name>": {"classes": {"<class map>": {"actions": {
//     "<action type>": <operand>}}}}}}
#include "host/Sections.h"
#include "host/sections/Names.h"
#include "host/sections/Parts.h"

namespace host {
namespace {

using Qos::Action;
using Qos::ActionType;
using Qos::ClassAction;
using Qos::MapType;
using Qos::PolicyMapConfig;
using Qos::Input::AclConfig;
using Qos::Input::PolicyMapTypeConfig;

constexpr const char* classesMember = "classes";
constexpr const char* actionsMember = "actions";

class ActionsPlace final : public Place {
 public:
  explicit ActionsPlace(Rok::Ptr<ClassAction> owner) : owner_(std::move(owner)) {}

  std::vector<Rok::String> keys() const override {
    return sortedKeys(owner_->policyAction(), decimalOf<ActionType>);
  }
  std::unique_ptr<Place> at(const Rok::String& key) const override {
    const auto* action = owner_->policyAction().find(numberOf<ActionType>(key));
    return action != nullptr ? std::make_unique<LeafPlace>(numberValue((*action)->value()))
                             : nullptr;
  }
  // An action that is there stays and gets another operand.
  void put(const Rok::String& key, const Value& value, Writes& writes) override {
    const auto type = numberOf<ActionType>(key);
    if (const auto* found = owner_->policyAction().find(type)) {
      const Rok::Ptr<Action> action = *found;
      return writes([&] { action->valueIs(wordOf(value)); });
    }
    const auto action = Rok::make<Action>(type, wordOf(value));
    writes([&] { owner_->policyActionIs(type, action); });
  }
  void erase(const Rok::String& key, Writes& writes) override {
    writes([&] { owner_->policyActionDel(numberOf<ActionType>(key)); });
  }

 private:
  Rok::Ptr<ClassAction> owner_;
};

class ClassesPlace final : public Place {
 public:
  explicit ClassesPlace(Rok::Ptr<PolicyMapConfig> owner) : owner_(std::move(owner)) {}

  std::vector<Rok::String> keys() const override {
    return sortedKeys(owner_->classAction(), textOf);
  }
  std::unique_ptr<Place> at(const Rok::String& name) const override {
    using ClassPlace = HolderPlace<ActionsPlace, ClassAction>;
    const auto* found = owner_->classAction().find(name);
    return found != nullptr ? std::make_unique<ClassPlace>(actionsMember, *found) : nullptr;
  }
  void put(const Rok::String& name, const Value& value, Writes& writes) override {
    const auto classAction = Rok::make<ClassAction>(name);
    ActionsPlace actions(classAction);
    putEach(actions, value.at(actionsMember), writes);
    writes([&] { owner_->classActionIs(classAction->name(), classAction); });
  }
  void erase(const Rok::String& name, Writes& writes) override {
    writes([&] { owner_->classActionDel(name); });
  }

 private:
  Rok::Ptr<PolicyMapConfig> owner_;
};

class PolicyMapTypePlace final : public Place {
 public:
  explicit PolicyMapTypePlace(Rok::Ptr<PolicyMapTypeConfig> type) : type_(std::move(type)) {}

  std::vector<Rok::String> keys() const override { return sortedKeys(type_->pmap(), textOf); }
  std::unique_ptr<Place> at(const Rok::String& name) const override {
    using PolicyMapPlace = HolderPlace<ClassesPlace, PolicyMapConfig>;
    const auto* found = type_->pmap().find(name);
    return found != nullptr ? std::make_unique<PolicyMapPlace>(classesMember, *found) : nullptr;
  }
  void put(const Rok::String& name, const Value& value, Writes& writes) override {
    const auto policyMap = Rok::make<PolicyMapConfig>(name);
    ClassesPlace classes(policyMap);
    putEach(classes, value.at(classesMember), writes);
    writes([&] { type_->pmapIs(policyMap->name(), policyMap); });
  }
  void erase(const Rok::String& name, Writes& writes) override {
    writes([&] { type_->pmapDel(name); });
  }

 private:
  Rok::Ptr<PolicyMapTypeConfig> type_;
};

class PolicyMapsPlace final : public Place {
 public:
  explicit PolicyMapsPlace(Rok::Ptr<AclConfig> config) : config_(std::move(config)) {}

  std::vector<Rok::String> keys() const override {
    return sortedKeys(config_->pmapType(), decimalOf<MapType>);
  }
  std::unique_ptr<Place> at(const Rok::String& key) const override {
    const auto* type = config_->pmapType().find(numberOf<MapType>(key));
    return type != nullptr ? std::make_unique<PolicyMapTypePlace>(*type) : nullptr;
  }
  void put(const Rok::String& key, const Value& value, Writes& writes) override {
    const auto type = Rok::make<PolicyMapTypeConfig>(numberOf<MapType>(key));
    PolicyMapTypePlace policyMaps(type);
    putEach(policyMaps, value, writes);
    writes([&] { config_->pmapTypeIs(type->type(), type); });
  }
  void erase(const Rok::String& key, Writes& writes) override {
    writes([&] { config_->pmapTypeDel(numberOf<MapType>(key)); });
  }

 private:
  Rok::Ptr<AclConfig> config_;
};

std::unique_ptr<Place> policyMapsPlace(const Native& native) {
  return std::make_unique<PolicyMapsPlace>(native.aclConfig);
}

}  // namespace

Section policyMapsSection() {
  const Schema actions =
      Schema::keyed(Key::named("an action type", actionTypes), Schema::number(largestWord));
  const Schema classAction = Schema::record({{actionsMember, actions, actions.empty()}});
  const Schema classes = Schema::keyed(Key::name(), classAction);
  const Schema policyMap = Schema::record({{classesMember, classes, classes.empty()}});
  const Schema ofType = Schema::keyed(Key::name(), policyMap);
  return {"policy-maps", Schema::keyed(Key::named("a map type", mapTypes), ofType),
          policyMapsPlace};
}

}  // namespace host
