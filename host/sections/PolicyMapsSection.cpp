// "policy-maps": {"<map type>": {"<name>": {"classes": {"<class map>": {"actions": {
//     "<action type>": <operand>}}}}}}
#include "host/sections/Forms.h"

namespace host {
namespace {

using Qos::Action;
using Qos::ClassAction;
using Qos::PolicyMapConfig;
using Qos::Input::AclConfig;
using Qos::Input::PolicyMapTypeConfig;

using ActionCollection = Collected<all(&ClassAction::policyAction), &ClassAction::policyActionIs,
                                   &ClassAction::policyActionDel>;

// An action stands as its operand.
class Actions final : public ActionCollection {
  using Operand = ScalarForm<std::uint32_t>;

 public:
  using ActionCollection::ActionCollection;

  static Schema schema(const Rok::Ptr<ClassAction>& /*fresh*/) {
    return Schema::keyed(Keys::key(), Operand::schema());
  }
  std::unique_ptr<Place> at(const Rok::String& type) const override {
    const auto* action = find(Keys::native(type));
    return action != nullptr ? std::make_unique<LeafPlace>(Operand::value((*action)->value()))
                             : nullptr;
  }
  // An action that is there stays and gets another operand.
  void put(const Rok::String& key, const Value& value, Writes& writes) override {
    const Qos::ActionType type = Keys::native(key);
    if (const auto* found = find(type)) {
      const Rok::Ptr<Action> action = *found;
      return writes([&] { action->valueIs(Operand::native(value)); });
    }
    insert(type, Rok::make<Action>(type, Operand::native(value)), writes);
  }
};

constexpr Setting<ClassAction> classSettings[] = {part<Actions>("actions")};

using Classes = Objects<all(&PolicyMapConfig::classAction), &PolicyMapConfig::classActionIs,
                        &PolicyMapConfig::classActionDel, Record<classSettings>>;

constexpr Setting<PolicyMapConfig> policyMapSettings[] = {part<Classes>("classes")};

using PolicyMaps = Objects<all(&PolicyMapTypeConfig::pmap), &PolicyMapTypeConfig::pmapIs,
                           &PolicyMapTypeConfig::pmapDel, Record<policyMapSettings>>;

using PolicyMapTypes =
    Objects<all(&AclConfig::pmapType), &AclConfig::pmapTypeIs, &AclConfig::pmapTypeDel, PolicyMaps>;

}  // namespace

Section policyMapsSection() {
  return section(&Native::aclConfig, part<PolicyMapTypes>("policy-maps"));
}

}  // namespace host
