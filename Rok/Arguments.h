// The constructor arguments of a state machine: named once, in its rokArguments(), from which the
// framework takes their types, their names and the way to read them back.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "Rok/Ptr.h"

namespace Rok {

// A native object that a machine reads, and an object of the output that it writes, as arguments.
template <class T>
using In = const Ptr<T const>&;
template <class T>
using Out = const Ptr<T>&;

// One constructor argument of a state machine: its name and how to read it back.
template <class Getter>
struct Argument {
  std::string_view name;
  Getter get;
};
template <class Getter>
Argument(std::string_view, Getter) -> Argument<Getter>;

namespace Impl {

template <class T>
inline constexpr bool isPtr = std::is_pointer_v<T>;
template <class T>
inline constexpr bool isPtr<Ptr<T>> = true;

// A native object that a machine reads.
template <class T>
inline constexpr bool isInput = false;
template <class T>
inline constexpr bool isInput<Ptr<T const>> = true;

template <class T>
const void* address(const Ptr<T>& object) {
  return object.get();
}
template <class T>
const void* address(T* object) {
  return object;
}

template <class Machine>
inline constexpr std::size_t argumentCount = std::tuple_size_v<decltype(Machine::rokArguments())>;

// The type of the argument at a place, and how it is handed over.
template <class Machine, std::size_t place>
using ArgumentAt = std::decay_t<
    std::invoke_result_t<decltype(std::get<place>(Machine::rokArguments()).get), const Machine&>>;
template <class Machine, std::size_t place>
using ParameterAt =
    std::conditional_t<std::is_scalar_v<ArgumentAt<Machine, place>>, ArgumentAt<Machine, place>,
                       const ArgumentAt<Machine, place>&>;

template <class Machine, class Places = std::make_index_sequence<argumentCount<Machine>>>
struct FactoryOf;
template <class Machine, std::size_t... place>
struct FactoryOf<Machine, std::index_sequence<place...>> {
  using Type = Ptr<Machine>(ParameterAt<Machine, place>...);
};

}  // namespace Impl

// The type of a machine's factory, a function: `Rok::Factory<PortSm> portSmFactory;` declares it.
template <class Machine>
using Factory = typename Impl::FactoryOf<Machine>::Type;

}  // namespace Rok
