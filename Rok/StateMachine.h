// OVERVIEW
//   The pattern of every state machine, written once. A state machine watches native objects, has
//   a handler called when an attribute of one of them changes, and keeps the output in step. What a
//   state machine adds is its table of inputs (Watch.h), its handlers, and its children
//   (Children.h).
//
// RULES
//   Construction. `create` allocates, constructs, switches on. The constructor binds the watches in
//   declaration order (a null input leaves a watch deaf), stores the rest, makes the children empty
//   and ends in rokInitialize<handleInitialized>(). A constructor that throws leaves nothing
//   registered. Watches are live from their construction; the state machine's own flag comes on
//   after its constructor. Children made meanwhile are on already.
//
//   Deafness. The first argument whose getter gives a Ptr<... const>, watched or not, is what a
//   machine is about. Where it is null, the machine is legal and does nothing: rokInitialize runs
//   none of its steps, and no watch calls a handler, whatever its own input notifies. It stays so
//   for good. The comment of each factory says which other arguments may be null.
//
//   Teardown. When the last reference goes, before any member is destroyed: the machine and its
//   watches become zombies, the watches forget their owner, the children are released. None of
//   that touches the output; a parent that is to withdraw it calls doPrepareToDie() first.
//
//   Arguments. rokArguments() names them in the order of the constructor, each with its getter. The
//   types that `create`, the factory and `children.is` take are those of the getters.
//
//   Every watch and collection is constructed with *this and named by parts(); `create` asserts
//   that none was forgotten.
//
//   Factories. The function that a translator exports for a machine returns when the whole tree of
//   the machine is built and the output is in line. The argument that its comment names after
//   "Deaf without" may be null; what is required must be there.
//
// EXAMPLE
//   // Keeps one line for each port of a device.
//   class PortSm final : public Rok::StateMachine<PortSm> {
//    public:
//     static constexpr std::string_view rokTypeName = "PortSm";
//     static constexpr auto rokArguments() {
//       return std::tuple{Rok::Argument{"port", &Self::port}, Rok::Argument{"log", &Self::log}};
//     }
//     static auto PortSmIs(const auto&... arguments) { return create(arguments...); }
//     Rok::Ptr<Port const> port() const { return port_.ptr(); }
//     const Rok::Ptr<Log>& log() const { return log_; }
//     void handleMtu() { log_->line(port_->name(), port_->mtu()); }
//     void doPrepareToDie() { log_->lineDel(port_->name()); }
//     void handleInitialized() { handleMtu(); }
//
//    private:
//     friend Rok::StateMachine<Self>;
//     using RokPort = Rok::Watch<Self, Port, Rok::On<Port::Attr::mtu, &Self::handleMtu>>;
//     PortSm(Rok::In<Port> port, Rok::Out<Log> log) : port_(*this, port), log_(log) {
//       rokInitialize<&Self::handleInitialized>();
//     }
//     auto parts() { return std::tie(port_); }
//
//     RokPort port_;
//     Rok::Ptr<Log> log_;
//   };
//   Rok::Factory<PortSm> portSmFactory;
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "Dorpel/Export.h"
#include "Rok/AllocTrack.h"
#include "Rok/Arguments.h"
#include "Rok/Children.h"
#include "Rok/FwkType.h"
#include "Rok/Ptr.h"
#include "Rok/Watch.h"

namespace Rok {

// What state machines of all types have in common.
class QOS_EXPORT StateMachineBase : public PtrInterface {
 public:
  // Makes zombies of the machine and its watches, or (false) takes that back. Children keep their
  // state: they are released with the machine.
  virtual void rokDoZombieReactors(bool v) = 0;

  // Counts the watches and collections that were constructed, for the check in `create`.
  void rokPartNew() { ++rokParts_; }

 protected:
  // Ends the process when parts() leaves out a watch or a collection of the machine.
  void rokPartsAssert(std::size_t named, std::string_view type) const;

 private:
  std::uint8_t rokParts_ = 0;
};

template <class Derived>
class StateMachine : public StateMachineBase {
 public:
  // The static creator behind Derived::DerivedIs and the exported factory.
  template <class... Args>
  static Ptr<Derived> create(const Args&... args) {
    Ptr<Derived> made = Ptr<Derived>::adopt(new Derived(args...));
    made->rokPartsAssert(std::tuple_size_v<decltype(made->parts())>, Derived::rokTypeName);
    made->hasNotificationActiveIs(true);
    return made;
  }

  void hasNotificationActiveIs(bool v) override {
    if (hasNotificationActive() == v) return;
    PtrInterface::hasNotificationActiveIs(v);
    eachWatch([v](auto& watch) { watch.rokActiveIs(v); });
    eachCollection([v](auto& children) { children.rokActiveIs(v); });
  }

  // As the base class says, on the machine's own watches.
  void rokDoZombieReactors(bool v) override {
    if (rokMarkedForDeletion() == v) return;
    eachWatch([v](auto& watch) { watch.rokZombieIs(v); });
    rokMarkedForDeletionIs(v);
  }

  void zeroReferencesIs(bool v) override {
    if (!v) return;
    rokDoZombieReactors(true);
    eachWatch([](auto& watch) { watch.ownerDel(); });
    eachCollection([](auto& children) { children.rokTeardown(); });
  }

  const FwkType& fwkType() const override { return rokType(); }
  static const FwkType& rokType() {
    static constexpr auto names = std::apply(
        [](const auto&... argument) {
          return std::array<std::string_view, sizeof...(argument)>{argument.name...};
        },
        Derived::rokArguments());
    static constexpr FwkType type{Derived::rokTypeName, names};
    return type;
  }

  static void* operator new(std::size_t size) {
    void* block = PtrInterface::operator new(size);
    AllocTrackTypeInfo::of<Derived>().blockNew(size);
    return block;
  }
  static void operator delete(void* block, std::size_t size) noexcept {
    AllocTrackTypeInfo::of<Derived>().blockDel(size);
    PtrInterface::operator delete(block, size);
  }

 protected:
  using Self = Derived;

  // Calls a handler for each key of a native collection, as if each had just come.
  template <auto handler, class Native>
  void eachKey(const Native& native) {
    for (const auto& [key, value] : native) std::invoke(handler, self(), key);
  }

  // The last statement of a constructor: runs these steps in their order. A machine without its
  // first native input runs none, and becomes deaf.
  template <auto... steps>
  void rokInitialize() {
    const bool hasInput =
        std::apply([this](const auto&... argument) { return this->firstInputIsThere(argument...); },
                   Derived::rokArguments());
    if (hasInput) {
      (std::invoke(steps, self()), ...);
    } else {
      eachWatch([](auto& watch) { watch.ownerDel(); });
    }
  }

 private:
  template <class First, class... Rest>
  bool firstInputIsThere(const First& first, const Rest&... rest) {
    using Value = std::decay_t<std::invoke_result_t<decltype(first.get), const Derived&>>;
    if constexpr (Impl::isInput<Value>) {
      return std::invoke(first.get, self()) != nullptr;
    } else {
      return firstInputIsThere(rest...);
    }
  }
  // A machine without native inputs.
  bool firstInputIsThere() const { return true; }
  template <class Do>
  void eachWatch(const Do& act) {
    std::apply([&](auto&... part) { (actIf<true>(part, act), ...); }, self().parts());
  }
  template <class Do>
  void eachCollection(const Do& act) {
    std::apply([&](auto&... part) { (actIf<false>(part, act), ...); }, self().parts());
  }
  template <bool watch, class Part, class Do>
  static void actIf(Part& part, const Do& act) {
    if constexpr (Part::isWatch == watch) act(part);
  }
  Derived& self() { return static_cast<Derived&>(*this); }
};

}  // namespace Rok
