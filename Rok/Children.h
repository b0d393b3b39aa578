// OVERVIEW
//   The children of a state machine: the mirror rule, by which a child stands for each entry of a
//   native collection.
//
// RULES
//   - `is(arguments...)` returns the child under the key of its arguments, or makes one.
//   - Null pointer arguments throw MutatorArgNullPointerException. When the child that is there was
//     built from other arguments, the first that differs throws MutatorReinstantiatingException, and
//     nothing changes. That holds too for a child that came to be there while another was
//     constructed for its key. Attribute ids count from 130 by the argument's place.
//   - `withdraw(key)` has the child take back what it wrote, and releases it; `del(key)` releases it
//     alone. `mirror(collection, key, arguments...)` is the whole rule.
//
// EXAMPLE
//   // Mirrors the ports of a device.
//   class DeviceSm final : public Rok::StateMachine<DeviceSm> {
//    public:
//     static constexpr std::string_view rokTypeName = "DeviceSm";
//     static constexpr auto rokArguments() {
//       return std::tuple{Rok::Argument{"device", &Self::device}, Rok::Argument{"log", &Self::log}};
//     }
//     using PortSmKeyFunktor = Rok::KeyFunktor<&PortSm::port, &Port::name>;
//     using PortSms = Rok::Children<PortSm, 0x54u, PortSmKeyFunktor>;
//     Rok::Ptr<Device const> device() const { return device_.ptr(); }
//     const Rok::Ptr<Log>& log() const { return log_; }
//     void handlePort(const Rok::String& name) {
//       portSm_.mirror(device_->port(), name, Rok::entry, log_);
//     }
//     void handleInitialized() { eachKey<&Self::handlePort>(device_->port()); }
//
//    private:
//     friend Rok::StateMachine<Self>;
//     using RokDevice = Rok::Watch<Self, Device, Rok::On<Device::Attr::port, &Self::handlePort>>;
//     DeviceSm(Rok::In<Device> device, Rok::Out<Log> log)
//         : device_(*this, device), log_(log), portSm_(*this) {
//       rokInitialize<&Self::handleInitialized>();
//     }
//     auto parts() { return std::tie(device_, portSm_); }
//
//     RokDevice device_;
//     Rok::Ptr<Log> log_;
//     PortSms portSm_;
//   };
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <type_traits>
#include <utility>

#include "Rok/Arguments.h"
#include "Rok/Exceptions.h"
#include "Rok/HashMap2018.h"
#include "Rok/Ptr.h"
#include "Rok/Sassert.h"

namespace Rok {

// Reads a child's key from the input that it was built from: the key of a ClassMapSm is its
// cmapConfig()'s name.
template <auto input, auto key>
struct KeyFunktor {
  template <class Child>
  decltype(auto) operator()(const Ptr<Child>& child) const {
    return std::invoke(key, *((*child).*input)());
  }
  template <class Input>
  requires std::is_invocable_v<decltype(key), const Input&>
  decltype(auto) operator()(const Input& from) const { return std::invoke(key, from); }
};

// In the arguments of a child that mirrors an entry: that entry.
struct Entry {};
inline constexpr Entry entry;

// The children of one kind, by key.
template <class Child, std::uint32_t seed, class Functor>
class Children {
 public:
  using Key = std::decay_t<std::invoke_result_t<Functor, const Ptr<Child>&>>;
  using Map = HashMap2018<Hm2018NII<seed, Key, Ptr<Child>, Functor>>;

  template <class Owner>
  explicit Children(Owner& owner) {
    owner.rokPartNew();
  }

  // The mirror rule's xSmIs(arguments...): the child's arguments in their order.
  template <class... Args>
  Ptr<Child> is(const Args&... args) {
    static_assert(sizeof...(Args) == Impl::argumentCount<Child>);
    return isOf(std::index_sequence_for<Args...>(), args...);
  }
  // xSmDel(key): releases the child and leaves the output alone. Returns whether there was one.
  bool del(const Key& key) { return map_.deleteMember(key); }
  // The same for all children.
  void delAll() { map_._memberDelAll(); }

  // The child under a key, or null.
  Ptr<Child> child(const Key& key) const { return map_.get(key); }
  const Map& map() const { return map_; }
  std::uint32_t members() const { return map_.members(); }
  typename Map::Iterator iterator() const { return map_.iterator(); }

  // The mirror rule: where `native` has an entry under the key there is a child, built from the
  // arguments, among which `Rok::entry` stands for what was found. Where it has none, the child is
  // withdrawn.
  template <class Native, class NativeKey, class... Args>
  void mirror(const Native& native, const NativeKey& key, const Args&... args) {
    mirror(native.find(key), key, args...);
  }
  // The same for an entry that was looked for by another key than that of the child; null when
  // there is none.
  template <class Found, class... Args>
  void mirror(const Found* found, const Key& key, const Args&... args) {
    found != nullptr ? void(is(inPlace(args, *found)...)) : withdraw(key);
  }
  // The same as the first where a child must be there to be withdrawn.
  template <class Native, class... Args>
  void mirrorKnown(const Native& native, const Key& key, const Args&... args) {
    const auto* found = native.find(key);
    found != nullptr ? void(is(inPlace(args, *found)...)) : withdrawKnown(key);
  }
  // The deleting half of the mirror rule: the child takes back what it wrote, if it has anything to
  // take back, then is released. A key without a child has no effect.
  void withdraw(const Key& key) {
    if (const Ptr<Child> dying = child(key)) withdraw(key, *dying);
  }
  // The same where a child must be there: its absence means that a notifier reported the deletion
  // of a key whose addition it never reported, and ends the process.
  void withdrawKnown(const Key& key) {
    const Ptr<Child> dying = child(key);
    if (!dying) {
      SassertHelper(falseExpr) << Child::rokTypeName << ": no child to delete under key " << key;
    }
    withdraw(key, *dying);
  }
  // Has every child take back what it wrote; all stay in the collection.
  void prepareToDie() {
    for (const auto& [key, dying] : map_) dying->doPrepareToDie();
  }
  // The same, and releases every child.
  void withdrawAll() {
    for (const auto& [key, dying] : map_) withdraw(key, *dying);
  }

  // ---- for the state machine's own workings
  static constexpr bool isWatch = false;
  void rokActiveIs(bool v) {
    for (const auto& [key, each] : map_) each->hasNotificationActiveIs(v);
  }
  void rokTeardown() {
    map_._memberDelAll();
    map_.emptyAllBuckets(true);
  }

 private:
  void withdraw(const Key& key, Child& dying) {
    // `key` may live in the child or in what is being deleted.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): so it is kept
    const Key kept(key);
    if constexpr (requires { dying.doPrepareToDie(); }) dying.doPrepareToDie();
    map_.deleteMember(kept);
  }

  template <class Arg, class Found>
  static const auto& inPlace(const Arg& arg, const Found& found) {
    if constexpr (std::is_same_v<Arg, Entry>) {
      return found;
    } else {
      return arg;
    }
  }

  // Takes the arguments in the types that the child names.
  template <std::size_t... place>
  Ptr<Child> isOf(std::index_sequence<place...> places,
                  const Impl::ArgumentAt<Child, place>&... args) {
    nullCheck(places, args...);
    if (const Ptr<Child>* found = map_.find(keyFrom(args...))) {
      Ptr<Child> child = *found;
      sameCheck(*child, places, args...);
      return child;
    }
    Ptr<Child> made = Child::create(args...);
    const auto [node, isNew] = map_.newMember(Functor{}(made), made);
    if (isNew) return made;
    // The construction itself called this function for the same key. The child that it made stays;
    // the one made here is released, and touches no output.
    Ptr<Child> child = node->value();
    sameCheck(*child, places, args...);
    return child;
  }

  template <std::size_t... place, class... Args>
  static void nullCheck(std::index_sequence<place...> /*places*/, const Args&... args) {
    (nullCheckOne<place>(args), ...);
  }
  template <std::size_t place, class Arg>
  static void nullCheckOne(const Arg& arg) {
    if constexpr (Impl::isPtr<Arg>) {
      if (arg == nullptr) {
        throwMutatorArgNullPointerException(argument<place>().name, Child::rokType(),
                                            firstAttributeId + place);
      }
    }
  }

  template <std::size_t... place, class... Args>
  static void sameCheck(const Child& child, std::index_sequence<place...> /*places*/,
                        const Args&... args) {
    (sameCheckOne<place>(child, args), ...);
  }
  template <std::size_t place, class Arg>
  static void sameCheckOne(const Child& child, const Arg& arg) {
    const auto& old = (child.*argument<place>().get)();
    if (old == arg) return;
    if constexpr (Impl::isPtr<Arg>) {
      Impl::throwMutatorReinstantiating(Child::rokType(), firstAttributeId + place,
                                        Impl::address(old), Impl::address(arg));
    } else {
      Impl::throwMutatorReinstVal(Child::rokType(), firstAttributeId + place, old, arg);
    }
  }
  template <std::size_t place>
  static constexpr auto argument() {
    return std::get<place>(Child::rokArguments());
  }

  // The key comes from the first argument that the functor reads.
  template <class First, class... Rest>
  static decltype(auto) keyFrom(const First& first, const Rest&... rest) {
    if constexpr (requires { Functor{}(*first); }) {
      return Functor{}(*first);
    } else {
      return keyFrom(rest...);
    }
  }

  Map map_;
};

// A single child outside a collection. Unlike a keyed one it may be replaced at any time: other
// arguments make another child.
template <class OnlyChild>
class Child {
 public:
  template <class Owner>
  explicit Child(Owner& owner) {
    owner.rokPartNew();
  }

  // Null when there is none.
  const Ptr<OnlyChild>& child() const { return child_; }

  // The child that was built from these arguments, or a new one in its place.
  template <class... Args>
  Ptr<OnlyChild> is(const Args&... args) {
    static_assert(sizeof...(Args) == Impl::argumentCount<OnlyChild>);
    return isOf(std::index_sequence_for<Args...>(), args...);
  }
  // Takes the child out, switches it off and gives it back. Nothing is taken back from the output.
  Ptr<OnlyChild> del() {
    Ptr<OnlyChild> taken;
    child_.swap(taken);
    if (taken) taken->hasNotificationActiveIs(false);
    return taken;
  }

  // ---- for the state machine's own workings
  static constexpr bool isWatch = false;
  void rokActiveIs(bool v) {
    if (child_) child_->hasNotificationActiveIs(v);
  }
  void rokTeardown() { child_ = nullptr; }

 private:
  template <std::size_t... place>
  Ptr<OnlyChild> isOf(std::index_sequence<place...> /*places*/,
                      const Impl::ArgumentAt<OnlyChild, place>&... args) {
    const bool same =
        child_ && ((((*child_).*std::get<place>(OnlyChild::rokArguments()).get)() == args) && ...);
    if (same) return child_;
    Ptr<OnlyChild> made = OnlyChild::create(args...);
    child_.swap(made);
    return child_;
  }

  Ptr<OnlyChild> child_;
};

}  // namespace Rok
