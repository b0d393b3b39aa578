// Each machine of the library without its first native input, beside the ten roots of a device: it
// is made, and does nothing.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "Allocations.h"
#include "Events.h"
#include "House.h"
#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "QosOpenConfig/QosOpenConfigForwardingGroupKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigPfcKivToOCSm.h"
#include "QosOpenConfig/QosOpenConfigQueueKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "tests/support/TraceCapture.h"

namespace faults::deafMachineTest {
namespace {

using support::TraceCapture;
using testing::IsEmpty;
using namespace QosOc;

// ===== What a machine is built from: a device with all of its roots

template <class Root>
Root& rootOf(const House& house) {
  for (const auto& root : house.roots) {
    if (auto* found = dynamic_cast<Root*>(root.get())) return *found;
  }
  throw std::logic_error("the house has no such root");
}

// An argument of a machine, by its type.
template <class T>
struct Of;
template <class T>
T argument(House& house) {
  return Of<T>::in(house);
}

template <>
struct Of<Rok::Ptr<Qos::Input::Config const>> {
  static auto in(House& house) { return house.native.qosConfig; }
};
template <>
struct Of<Rok::Ptr<Cli::Config const>> {
  static auto in(House& house) { return house.native.cliConfig; }
};
template <>
struct Of<Rok::Ptr<Qos::QosProfileConfigDir const>> {
  static auto in(House& house) { return house.native.qosProfiles; }
};
template <>
struct Of<Rok::Ptr<AclNameAndType const>> {
  static auto in(House& /*house*/) {
    return Rok::make<AclNameAndType>("__yang_[c4]_[t]", Acl::aclTypeIpv4);
  }
};

template <>
struct Of<Rok::Ptr<Config::ClassifiersDir>> {
  static auto in(House& house) { return house.model.classifiers; }
};
template <>
struct Of<Rok::Ptr<Config::ForwardingGroupsDir>> {
  static auto in(House& house) { return house.model.forwardingGroups; }
};
template <>
struct Of<Rok::Ptr<Config::InterfacesDir>> {
  static auto in(House& house) { return house.model.interfaces; }
};
template <>
struct Of<Rok::Ptr<Config::Pfc>> {
  static auto in(House& house) { return house.model.pfc; }
};
template <>
struct Of<Rok::Ptr<Config::QueuesDir>> {
  static auto in(House& house) { return house.model.queues; }
};
template <>
struct Of<Rok::Ptr<Config::QueueManagementProfilesDir>> {
  static auto in(House& house) { return house.model.queueManagementProfiles; }
};
template <>
struct Of<Rok::Ptr<Config::SchedulerPoliciesDir>> {
  static auto in(House& house) { return house.model.schedulerPolicies; }
};

template <>
struct Of<Velmo::String> {
  static Velmo::String in(House& /*house*/) { return "c4"; }
};
template <>
struct Of<Nerit::IntfId> {
  static auto in(House& /*house*/) { return Nerit::IntfId("Ethernet3"); }
};
template <>
struct Of<Classifier::Type> {
  static auto in(House& /*house*/) { return Classifier::classifierTypeIpv4; }
};

// A parent, which outlives the machine because the house keeps it.
template <class Parent>
Parent* kept(House& house, const Rok::Ptr<Parent>& parent) {
  house.roots.push_back(parent);
  return parent.get();
}
template <class Parent>
struct Of<Parent*> {
  static Parent* in(House& house) { return &rootOf<Parent>(house); }
};
template <>
struct Of<PmapConfigSm*> {
  static PmapConfigSm* in(House& house) {
    const auto types = rootOf<ClassActionKivToOcSm>(house).pmapTypeSm().child(Qos::mapQos);
    return kept(house, types->pmapConfigSm().child("__yang_[IPV4__c4][IPV6__c6]"));
  }
};
template <>
struct Of<ClassActionSm*> {
  static ClassActionSm* in(House& house) {
    const auto* parent = Of<PmapConfigSm*>::in(house);
    return kept(house, parent->classActionSm().child("__yang_[c4]_[t]"));
  }
};
template <>
struct Of<QueueManagementProfileQosProfileSm*> {
  static QueueManagementProfileQosProfileSm* in(House& house) {
    const auto& root = rootOf<QueueManagementProfileKivToOcSm>(house);
    return kept(house, root.qosProfileSm().child("__YANG_QMP_[drop]"));
  }
};
template <>
struct Of<QueueManagementProfileIntfSm*> {
  static QueueManagementProfileIntfSm* in(House& house) {
    const auto& root = rootOf<QueueManagementProfileKivToOcSm>(house);
    return kept(house, root.intfSm().child(Nerit::IntfId("Ethernet3")));
  }
};
template <>
struct Of<SchedulerPolicyIntfSm*> {
  static SchedulerPolicyIntfSm* in(House& house) {
    const auto& root = rootOf<SchedulerPolicyKivToOCSm>(house);
    return kept(house, root.intfSm().child(Nerit::IntfId("Ethernet3")));
  }
};

// ===== The machines, by their factories

template <class T>
inline constexpr bool isNative = false;
template <class T>
inline constexpr bool isNative<Rok::Ptr<T const>> = true;

template <auto factory>
struct Machine;
template <class Sm, class... Args, Rok::Ptr<Sm> (*factory)(Args...)>
struct Machine<factory> {
  using Type = Sm;
  // The types by which the machine reads its arguments back.
  template <std::size_t place>
  using Argument = std::decay_t<
      std::invoke_result_t<decltype(std::get<place>(Sm::rokArguments()).get), const Sm&>>;
  using Places = std::make_index_sequence<std::tuple_size_v<decltype(Sm::rokArguments())>>;

  // The place of the first native input.
  template <std::size_t place = 0>
  static constexpr std::size_t first() {
    if constexpr (isNative<Argument<place>>) {
      return place;
    } else {
      return first<place + 1>();
    }
  }

  static Rok::Ptr<Sm> make(House& house) { return make(house, Places()); }

 private:
  template <std::size_t... place>
  static Rok::Ptr<Sm> make(House& house, std::index_sequence<place...> /*places*/) {
    return factory(value<place>(house)...);
  }
  template <std::size_t place>
  static Argument<place> value(House& house) {
    if constexpr (place == first()) {
      return nullptr;
    } else {
      return argument<Argument<place>>(house);
    }
  }
};

// Every factory of a machine that the library exports.
using Machines = testing::Types<
    Machine<&classMapKivToOcSmFactory>, Machine<&classMapTypeSmFactory>,
    Machine<&classMapSmFactory>, Machine<&aclKivToOcSmFactory>, Machine<&aclTypeSmFactory>,
    Machine<&aclConfigSmFactory>, Machine<&aclSubConfigSmFactory>,
    Machine<&classActionKivToOcSmFactory>, Machine<&pmapTypeSmFactory>,
    Machine<&pmapConfigSmFactory>, Machine<&classActionSmFactory>, Machine<&policyActionSmFactory>,
    Machine<&interfaceClassifierKivToOcSmFactory>, Machine<&servicePolicySmFactory>,
    Machine<&forwardingGroupKivToOcSmFactory>, Machine<&queueKivToOcSmFactory>,
    Machine<&intfSmFactory>, Machine<&txQueueSmFactory>, Machine<&pfcKivToOCSmFactory>,
    Machine<&intfPfcKivToOCSmFactory>, Machine<&interfaceConfigSmFactory>,
    Machine<&queueManagementProfileKivToOcSmFactory>,
    Machine<&queueManagementProfileQosProfileSmFactory>,
    Machine<&queueManagementProfileQosProfileTxQueueSmFactory>,
    Machine<&queueManagementProfileIntfSmFactory>, Machine<&queueManagementProfileTxQueueSmFactory>,
    Machine<&schedulerPolicyKivToOCSmFactory>, Machine<&schedulerPolicyIntfSmFactory>,
    Machine<&schedulerPolicyTxQueueSmFactory>>;

struct ByMachineName {
  template <class Machine>
  static std::string GetName(int /*number*/) {
    return std::string(Machine::Type::rokTypeName);
  }
};

template <class... Machine>
void makeAll(House& house, testing::Types<Machine...> /*machines*/) {
  (house.roots.push_back(Machine::make(house)), ...);
}

// ===== At start

template <class Machine>
class DeafMachine : public testing::Test {
 protected:
  DeafMachine() {
    house_.build();
    // What a start of the root would sweep.
    house_.model.classifiers->classifierIs("stale")->configIs("stale",
                                                              Classifier::classifierTypeIpv4);
    house_.model.schedulerPolicies->schedulerPolicyIs("stale");
    house_.model.queueManagementProfiles->queueManagementProfileIs(
        QosOc::Config::QueueManagementProfile("stale"));
  }

  House house_;
};
TYPED_TEST_SUITE(DeafMachine, Machines, ByMachineName);

TYPED_TEST(DeafMachine, IsMadeWithoutATraceAndWritesNothing) {
  const std::string before = text(this->house_.model);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  const auto sm = TypeParam::make(this->house_);
  EXPECT_TRUE(sm->hasNotificationActive());
  EXPECT_THAT(trace.lines(), IsEmpty());
  EXPECT_EQ(text(this->house_.model), before);
}

TYPED_TEST(DeafMachine, LeavesNobodyRegistered) {
  const Watched before = watched(this->house_.native);
  TypeParam::make(this->house_);
  EXPECT_EQ(watched(this->house_.native), before);
}

TYPED_TEST(DeafMachine, LosesNoMemory) {
  const auto live = [] {
    {
      House house;
      house.build();
      TypeParam::make(house);
    }
    return liveAllocations();
  };
  const std::int64_t before = live();
  EXPECT_EQ(live(), before);
}

// ===== Later

class DeafMachines : public testing::TestWithParam<Event> {};

// Against a device without them.
TEST_P(DeafMachines, HearNothing) {
  const auto lines = [](House& house) {
    TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
    const Change change = GetParam().prepare(house.native);
    change.write();
    if (change.undo) change.undo();
    return trace.lines().size();
  };
  House plain;
  plain.build();
  House house;
  house.build();
  makeAll(house, Machines());
  EXPECT_EQ(lines(house), lines(plain));
  EXPECT_EQ(text(house.model), text(plain.model));
}

struct ByEventName {
  std::string operator()(const testing::TestParamInfo<Event>& info) const {
    return info.param.name;
  }
};
INSTANTIATE_TEST_SUITE_P(At, DeafMachines, testing::ValuesIn(events().begin(), events().end()),
                         ByEventName());

}  // namespace
}  // namespace faults::deafMachineTest
