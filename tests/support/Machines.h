// The machines of the library, one row each in MachineTable.h: how a test of what all of them
// promise makes one, finds the one that stands in a House, and reads it.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "Rok/Rok.h"
#include "tests/support/House.h"

namespace support {

// A row of the table, by the machine's class: `name`, `factory`, `arguments`, and where it has
// them, `computed` and `events`. A child also says where it stands: see MachineTable.h.
template <class Sm>
struct Facts;

// A constructor argument: the name under which a wrong one is refused, and how it reads back.
template <class Getter>
struct Named {
  const char* name;
  Getter get;
};
template <class Getter>
Named(const char*, Getter) -> Named<Getter>;

// An attribute that a machine computes from its input, and its value in the House. Without an input
// it is the default of its type.
template <class Getter, class Value>
struct Computed {
  Getter get;
  Value value;
};
template <class Getter, class Value>
Computed(Getter, Value) -> Computed<Getter, Value>;

// The collection in which a parent keeps children. How it makes one is the function `is` of its
// Facts.
template <class Children, class Del, class DelAll>
struct Collection {
  Children children;
  Del del;
  DelAll delAll;
};
template <class Children, class Del, class DelAll>
Collection(Children, Del, DelAll) -> Collection<Children, Del, DelAll>;

// A chained input: what it holds, how it is pointed elsewhere, and how it is released.
template <class In, class InIs, class InDel>
struct Chain {
  In in;
  InIs is;
  InDel del;
};
template <class In, class InIs, class InDel>
Chain(In, InIs, InDel) -> Chain<In, InIs, InDel>;

// ===== Where a machine stands

template <class Sm>
inline constexpr bool isRoot = !requires {
  typename Facts<Sm>::Parent;
};

template <class Sm>
auto rootTypeOf() {
  if constexpr (isRoot<Sm>) {
    return std::type_identity<Sm>();
  } else {
    return rootTypeOf<typename Facts<Sm>::Parent>();
  }
}
// The root of the tree in which a machine stands.
template <class Sm>
using RootOf = typename decltype(rootTypeOf<Sm>())::type;

template <class Root>
Rok::Ptr<Root> rootOf(const House& house) {
  for (const auto& root : house.roots) {
    if (auto* found = dynamic_cast<Root*>(root.get())) return Rok::Ptr<Root>(found);
  }
  throw std::logic_error("the house has no such root");
}

// The machine that a House has under the key of the table.
template <class Sm>
Rok::Ptr<Sm> standing(const House& house) {
  if constexpr (isRoot<Sm>) {
    return rootOf<Sm>(house);
  } else {
    return Facts<Sm>::in(*standing<typename Facts<Sm>::Parent>(house));
  }
}

// ===== What it is made from

// What a House mounts, by its type: the arguments of roots.
inline auto mounts(const House& house) {
  const auto& native = house.native;
  const auto& model = house.model;
  return std::tuple<
      Rok::Ptr<Qos::Input::AclConfig const>, Rok::Ptr<Acl::Input::Config const>,
      Rok::Ptr<Qos::Input::Config const>, Rok::Ptr<Qos::QosProfileConfigDir const>,
      Rok::Ptr<Cli::Config const>, Rok::Ptr<QosOc::Config::ClassifiersDir>,
      Rok::Ptr<QosOc::Config::ForwardingGroupsDir>, Rok::Ptr<QosOc::Config::InterfacesDir>,
      Rok::Ptr<QosOc::Config::Pfc>, Rok::Ptr<QosOc::Config::QueueManagementProfilesDir>,
      Rok::Ptr<QosOc::Config::QueuesDir>, Rok::Ptr<QosOc::Config::SchedulerPoliciesDir>>{
      native.aclConfig,
      native.acls,
      native.qosConfig,
      native.qosProfiles,
      native.cliConfig,
      model.classifiers,
      model.forwardingGroups,
      model.interfaces,
      model.pfc,
      model.queueManagementProfiles,
      model.queues,
      model.schedulerPolicies};
}

// The arguments that a machine reads back.
template <class Sm>
auto argumentsOf(const Sm& sm) {
  return std::apply(
      [&](const auto&... argument) {
        return std::tuple<std::decay_t<decltype(std::invoke(argument.get, sm))>...>(
            std::invoke(argument.get, sm)...);
      },
      Facts<Sm>::arguments);
}
template <class Sm>
using ArgumentsOf = decltype(argumentsOf(std::declval<const Sm&>()));
template <class Sm>
using Places = std::make_index_sequence<std::tuple_size_v<ArgumentsOf<Sm>>>;

// The arguments for a machine in a House: a root's are mounted, a child's are those of the child
// that stands there.
template <class Sm>
ArgumentsOf<Sm> arguments(const House& house) {
  if constexpr (isRoot<Sm>) {
    return [&]<class... Argument>(std::type_identity<std::tuple<Argument...>>) {
      return ArgumentsOf<Sm>(std::get<Argument>(mounts(house))...);
    }(std::type_identity<ArgumentsOf<Sm>>());
  } else {
    return argumentsOf(*standing<Sm>(house));
  }
}

// Calls `act` with each place of the arguments, as a constant.
template <class Sm, class Act>
void eachPlace(const Act& act) {
  [&]<std::size_t... place>(std::index_sequence<place...>) {
    (act(std::integral_constant<std::size_t, place>()), ...);
  }
  (Places<Sm>());
}
template <class Sm>
std::string nameAt(std::size_t place) {
  return std::apply([&](const auto&... argument) { return std::array{argument.name...}[place]; },
                    Facts<Sm>::arguments);
}

template <class Argument>
inline constexpr bool isPointer = std::is_pointer_v<Argument>;
template <class Object>
inline constexpr bool isPointer<Rok::Ptr<Object>> = true;
template <class Argument>
inline constexpr bool isInput = false;
template <class Object>
inline constexpr bool isInput<Rok::Ptr<Object const>> = true;

// The place of the first native input: without it a machine is deaf.
template <class Sm, std::size_t place = 0>
constexpr std::size_t inputPlace() {
  if constexpr (isInput<std::tuple_element_t<place, ArgumentsOf<Sm>>>) {
    return place;
  } else {
    return inputPlace<Sm, place + 1>();
  }
}

// ===== Making one

template <class Sm>
Rok::Ptr<Sm> makeFrom(const ArgumentsOf<Sm>& arguments) {
  return std::apply(Facts<Sm>::factory, arguments);
}
// A machine without its input, beside the one that stands.
template <class Sm>
Rok::Ptr<Sm> makeDeaf(const House& house) {
  auto deaf = arguments<Sm>(house);
  std::get<inputPlace<Sm>()>(deaf) = nullptr;
  return makeFrom<Sm>(deaf);
}
// Builds the tree in which a machine stands, and no other.
template <class Sm>
void buildTreeOf(House& house) {
  house.roots.push_back(makeFrom<RootOf<Sm>>(arguments<RootOf<Sm>>(house)));
}

}  // namespace support
