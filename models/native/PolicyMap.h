// Native policy maps: what the policy-map translator watches.
#pragma once

#include <cstdint>

#include "Rok/Rok.h"
#include "models/native/ClassMap.h"

namespace Qos {

// The kind of a policy action. Other values are legal and are not translated.
enum class ActionType : unsigned char { actionSetTc = 4 };
using enum ActionType;
QOS_EXPORT const Rok::EnumType<unsigned char>& rokEnumType(ActionType);
inline std::ostream& operator<<(std::ostream& out, ActionType v) { return Rok::enumPrint(out, v); }

// What a class of a policy map does: an action and its operand.
class Action final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> actionType{130};
    static constexpr Rok::Attribute<> value{131};
  };

  explicit Action(ActionType type, std::uint32_t value = 0) : actionType_(type), value_(value) {}

  ActionType actionType() const { return actionType_; }

  // The operand; for actionSetTc, the traffic class. Notifies: value.
  std::uint32_t value() const { return value_; }
  void valueIs(std::uint32_t value) { attributeIs(value_, value, Attr::value); }

 private:
  ActionType actionType_;
  std::uint32_t value_;
};

// What a policy map does with one class map.
class ClassAction final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> name{130};
    static constexpr Rok::Attribute<ActionType> policyAction{131};
  };
  using Actions = Rok::HashMap2018<Rok::Hm2018NEI<0xe9b5dba5u, ActionType, Rok::Ptr<Action>>>;

  explicit ClassAction(const Rok::String& name) : name_(name) {}

  // The class map's name.
  const Rok::String& name() const { return name_; }

  // The actions of the class, by type. Notifies: policyAction, with the type.
  const Actions& policyAction() const { return policyAction_; }
  Rok::Ptr<Action> policyAction(ActionType type) const { return policyAction_.get(type); }
  void policyActionIs(ActionType type, const Rok::Ptr<Action>& action) {
    memberIs(policyAction_, type, action, Attr::policyAction);
  }
  void policyActionDel(ActionType type) { memberDel(policyAction_, type, Attr::policyAction); }

 private:
  Rok::String name_;
  Actions policyAction_;
};

// One policy map.
class PolicyMapConfig final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> name{130};
    static constexpr Rok::Attribute<Rok::String> classAction{131};
  };
  using ClassActions =
      Rok::HashMap2018<Rok::Hm2018NEI<0x3956c25bu, Rok::String, Rok::Ptr<ClassAction>>>;

  explicit PolicyMapConfig(const Rok::String& name) : name_(name) {}

  const Rok::String& name() const { return name_; }

  // One entry for each class map that the policy map uses. Notifies: classAction, with the class
  // map's name.
  const ClassActions& classAction() const { return classAction_; }
  Rok::Ptr<ClassAction> classAction(const Rok::String& name) const {
    return classAction_.get(name);
  }
  void classActionIs(const Rok::String& name, const Rok::Ptr<ClassAction>& action) {
    memberIs(classAction_, name, action, Attr::classAction);
  }
  void classActionDel(const Rok::String& name) { memberDel(classAction_, name, Attr::classAction); }

 private:
  Rok::String name_;
  ClassActions classAction_;
};

namespace Input {

// The policy maps of one map type.
class PolicyMapTypeConfig final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> type{130};
    static constexpr Rok::Attribute<Rok::String> pmap{131};
  };
  using PolicyMaps = Rok::OrderedMap<Rok::String, Rok::Ptr<PolicyMapConfig>>;

  explicit PolicyMapTypeConfig(MapType type) : type_(type) {}

  MapType type() const { return type_; }

  // Policy maps by name, ascending. Notifies: pmap, with the name.
  const PolicyMaps& pmap() const { return pmap_; }
  Rok::Ptr<PolicyMapConfig> pmap(const Rok::String& name) const { return pmap_.get(name); }
  void pmapIs(const Rok::String& name, const Rok::Ptr<PolicyMapConfig>& pmap) {
    memberIs(pmap_, name, pmap, Attr::pmap);
  }
  void pmapDel(const Rok::String& name) { memberDel(pmap_, name, Attr::pmap); }

 private:
  MapType type_;
  PolicyMaps pmap_;
};

}  // namespace Input
}  // namespace Qos
