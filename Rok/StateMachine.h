// OVERVIEW
//   The pattern of every state machine, written once. A state machine watches native objects, is
//   told when an attribute of one of them changes, and keeps the output in step. What a state
//   machine adds is its table of inputs (Watch), its handlers, and its children (Children).
//
// RULES
//   Life. `create` allocates, constructs, switches on. The constructor binds the watches in
//   declaration order (a null input leaves a watch deaf), stores the rest, makes the children empty
//   and ends in rokInitialize<handleInitialized>(). A constructor that throws leaves nothing
//   registered. Watches are live from their construction; the state machine's own flag comes on
//   after its constructor. Children made meanwhile are on already.
//
//   Deafness. The first argument whose getter gives a Ptr<... const>, watched or not, is what a
//   machine is about. Where it is null, the machine is legal and does nothing: rokInitialize runs
//   none of its steps, and no watch calls a handler, whatever its own input tells. It stays so for
//   good. Which other arguments may be null each factory says.
//
//   Teardown. When the last reference goes, before any member is destroyed: the machine and its
//   watches become zombies, the watches forget their owner, the children are released. Nothing of
//   it touches the output; whoever wants that calls doPrepareToDie() first.
//
//   Delivery. A watch passes on only the attributes it names, only while it is no zombie and has an
//   owner and an input. It holds its owner during the call: a handler may release the last outside
//   reference. Several reactions to one attribute run in their order, and end when one of them lets
//   go of the input.
//
//   Mirroring. `children.is(arguments...)` returns the child under the key of its arguments, or
//   makes one. Null pointer arguments throw MutatorArgNullPointerException. When the child that is
//   there was built from other arguments, the first that differs throws
//   MutatorReinstantiatingException, and nothing changes. That holds too for a child that came to
//   be there while another was constructed for its key. Attribute ids count from 130 by the
//   argument's place.
//
//   Every watch and collection is constructed with *this and named by parts(); `create` asserts
//   that none was forgotten.
//
// EXAMPLE
//   // Keeps one line for each port of a device.
//   class PortSm final : public Rok::StateMachine<PortSm> {
//    public:
//     static constexpr std::string_view rokTypeName = "PortSm";
//     static constexpr auto rokArguments() {
//       return std::tuple{Rok::Argument{"port", &PortSm::port},
//                         Rok::Argument{"log", &PortSm::log}};
//     }
//     Rok::Ptr<Port const> port() const { return port_.ptr(); }
//     const Rok::Ptr<Log>& log() const { return log_; }
//     void handleMtu() { log_->line(port_->name(), port_->mtu()); }
//     void doPrepareToDie() { log_->lineDel(port_->name()); }
//     void handleInitialized() { handleMtu(); }
//
//    private:
//     friend Rok::StateMachine<PortSm>;
//     using RokPort = Rok::Watch<PortSm, Port, Rok::On<Port::Attr::mtu, &PortSm::handleMtu>>;
//     PortSm(const Rok::Ptr<Port const>& port, const Rok::Ptr<Log>& log)
//         : port_(*this, port), log_(log) { rokInitialize<&PortSm::handleInitialized>(); }
//     auto parts() { return std::tie(port_); }
//
//     RokPort port_;
//     Rok::Ptr<Log> log_;
//   };
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "Dorpel/Export.h"
#include "Rok/AllocTrack.h"
#include "Rok/Exceptions.h"
#include "Rok/FwkType.h"
#include "Rok/HashMap2018.h"
#include "Rok/Notifier.h"
#include "Rok/Ptr.h"
#include "Rok/Sassert.h"

namespace Rok {

// ===== Watches

// A reaction: when `attribute` changes, call `handler`, with the key if it takes one.
template <auto attribute, auto handler>
struct On {
  using Key = typename decltype(attribute)::Key;
  static constexpr AttributeId id = attribute.id;
  static constexpr bool evenZombie = false;
  template <class Owner>
  static void react(Owner& owner, const void* key) {
    if constexpr (std::is_invocable_v<decltype(handler), Owner&>) {
      (owner.*handler)();
    } else {
      (owner.*handler)(*static_cast<const Key*>(key));
    }
  }
};

// The same for a reaction that a zombie's watch still has, as long as it has an owner and an input.
template <auto attribute, auto handler>
struct OnEvenZombie : On<attribute, handler> {
  static constexpr bool evenZombie = true;
};

// A reaction to the input itself: when the watch is bound to another object, call `handler`, after
// the object is set and before the watch registers with it. It is for inputs that are bound later,
// not for constructor arguments. Few want it; most state machines are to read a new object only
// when something in it changes.
template <auto handler>
struct OnBound {
  static constexpr AttributeId id = 0;  // of no attribute
  template <class Owner>
  static void bound(Owner& owner) {
    (owner.*handler)();
  }
};

// A watched input: the nested notifiee of a state machine, with a raw back pointer to it.
template <class Owner, class Input, class... Reactions>
class Watch : public PtrInterface::NotifieeConst {
 public:
  // For an input that its owner binds later, through inputIs.
  explicit Watch(Owner& owner) : Watch(owner, NotifieeList::interestIn(onlyAttribute())) {}
  // For a constructor argument. A null input leaves the watch deaf.
  Watch(Owner& owner, const Ptr<Input const>& input) : Watch(owner) { inputIs(input); }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  // The input. Requires for -> and *: there is one.
  const Input* get() const { return static_cast<const Input*>(notifier()); }
  const Input* operator->() const { return get(); }
  const Input& operator*() const { return *get(); }
  explicit operator bool() const { return notifier() != nullptr; }
  Ptr<Input const> ptr() const { return Ptr<Input const>(get()); }

  // Points the watch at another object: the same one changes nothing, null is inputDel().
  // Calls no handler, unless an OnBound reaction asks for it. Throws: what leaves that reaction, or
  // std::bad_alloc; then the watch has no input, so that the next inputIs binds it afresh.
  void inputIs(const Ptr<Input const>& input) {
    if (input.get() == get()) return;
    if (!input) return inputDel();
    const bool first = notifier() == nullptr;
    Binding binding(*this);
    notifierIs(input.get());
    isRegisteredNotifieeIs(true);
    binding.done();
    if (first) hasNotificationActiveIs(true);
    if (owner_ != nullptr) rokDoZombieReactors(owner_->rokMarkedForDeletion());
  }
  // Lets go of the input and is deaf until inputIs.
  void inputDel() {
    hasNotificationActiveIs(false);
    notifierIs(nullptr);
    rokMarkedForDeletionIs(false);  // the next input starts afresh
  }

  void notifierIs(const PtrInterface* object) override {
    const bool other = object != nullptr && object != notifier();
    NotifieeConst::notifierIs(object);
    if (other && !rokMarkedForDeletion() && owner_ != nullptr) (callBound<Reactions>(), ...);
  }

  void onAttribute(AttributeId id, const void* key) override {
    if (!((Reactions::id == id) || ...) || owner_ == nullptr) return;
    const Ptr<Owner> alive(owner_);
    (react<Reactions>(*alive, id, key), ...);
  }

  // ---- for the state machine's own workings
  static constexpr bool isWatch = true;
  void rokActiveIs(bool v) {
    if (notifier() != nullptr) hasNotificationActiveIs(v);
  }
  void rokZombieIs(bool v) {
    if (notifier() != nullptr) rokDoZombieReactors(v);
  }
  void ownerDel() { owner_ = nullptr; }
  void rokTeardown() {}

 protected:
  Watch(Owner& owner, std::uint64_t interest) : NotifieeConst(interest), owner_(&owner) {
    owner.rokPartNew();
  }

 private:
  // Lets go of the input again, unless all of the binding is done.
  class Binding {
   public:
    explicit Binding(Watch& watch) : watch_(&watch) {}
    Binding(const Binding&) = delete;
    Binding& operator=(const Binding&) = delete;
    ~Binding() {
      if (watch_ != nullptr) watch_->inputDel();
    }
    void done() { watch_ = nullptr; }

   private:
    Watch* watch_;
  };

  // The attribute, when it is the only one that is watched; otherwise 0.
  static constexpr AttributeId onlyAttribute() {
    AttributeId only = 0;
    bool several = false;
    for (const AttributeId id : std::initializer_list<AttributeId>{Reactions::id...}) {
      if (id == 0) continue;
      several = several || (only != 0 && only != id);
      only = id;
    }
    return several ? 0 : only;
  }
  template <class Reaction>
  void react(Owner& owner, AttributeId id, const void* key) {
    if constexpr (Reaction::id != 0) {
      if (id != Reaction::id || (rokMarkedForDeletion() && !Reaction::evenZombie)) return;
      // An earlier reaction may have let go of the input, and then no mark of a zombie stands here.
      if (notifier() == nullptr) return;
      Reaction::react(owner, key);
    }
  }
  template <class Reaction>
  void callBound() {
    if constexpr (requires { Reaction::bound(*owner_); }) Reaction::bound(*owner_);
  }

  Owner* owner_;
};

// A watched input of which one key of one attribute matters. The handler is called for that key
// only, at a cost that other watches don't add to.
template <class Owner, class Input, class Reaction>
class KeyedWatch : public Watch<Owner, Input, Reaction> {
 public:
  using Base = Watch<Owner, Input, Reaction>;

  template <class Key>
  KeyedWatch(Owner& owner, const Ptr<Input const>& input, const Key& key)
      : Base(owner, NotifieeList::interestIn(Reaction::id, key)), key_(key) {
    this->inputIs(input);
  }
  KeyedWatch(const KeyedWatch&) = delete;
  KeyedWatch& operator=(const KeyedWatch&) = delete;

  const auto& key() const { return key_; }

  void onAttribute(AttributeId id, const void* key) override {
    // Two keys may share an interest, so the key itself has the last word.
    if (*static_cast<const Key*>(key) == key_) Base::onAttribute(id, key);
  }

 private:
  using Key = typename Reaction::Key;
  Key key_;
};

// ===== Arguments

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

}  // namespace Impl

// ===== State machines

class QOS_EXPORT StateMachineBase : public PtrInterface {
 public:
  // Makes the machine and its watches deaf for good, or (false) brings them back. Children keep
  // their state: they go with the machine.
  virtual void rokDoZombieReactors(bool v) = 0;

  // Counts the watches and collections that were constructed, for the check in `create`.
  void rokPartNew() { ++rokParts_; }

 protected:
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
  // The last act of a constructor: runs these steps in their order. A machine without its first
  // native input runs none, and becomes deaf.
  template <auto... steps>
  void rokInitialize() {
    const bool hasInput =
        std::apply([this](const auto&... argument) { return firstInputIsThere(argument...); },
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
  // It takes none.
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

// ===== Children

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

  // The mirror rule's xSmIs(arguments...).
  template <class... Args>
  Ptr<Child> is(const Args&... args) {
    nullCheck(std::index_sequence_for<Args...>(), args...);
    if (const Ptr<Child>* found = map_.find(keyFrom(args...))) {
      Ptr<Child> child = *found;
      sameCheck(*child, std::index_sequence_for<Args...>(), args...);
      return child;
    }
    Ptr<Child> made = Child::create(args...);
    const auto [node, isNew] = map_.newMember(Functor{}(made), made);
    if (isNew) return made;
    // The construction itself led back here and filled the key. That child stays, as any other that
    // is there; the one made in vain goes, and touches no output.
    Ptr<Child> child = node->value();
    sameCheck(*child, std::index_sequence_for<Args...>(), args...);
    return child;
  }
  // xSmDel(key): releases the child and leaves the output alone. Returns whether there was one.
  bool del(const Key& key) { return map_.deleteMember(key); }
  void delAll() { map_._memberDelAll(); }

  // The child under a key, or null.
  Ptr<Child> child(const Key& key) const { return map_.get(key); }
  const Map& map() const { return map_; }
  std::uint32_t members() const { return map_.members(); }
  typename Map::Iterator iterator() const { return map_.iterator(); }

  // The deleting half of the mirror rule: the child takes back what it wrote, then goes. A key
  // without a child has no effect.
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
  // The same, and every child goes.
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
    const Key kept(key);  // `key` may live in the child or in what is being deleted
    dying.doPrepareToDie();
    map_.deleteMember(kept);
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

  // The child that was built from these very arguments, or a new one in its place.
  template <class... Args>
  Ptr<OnlyChild> is(const Args&... args) {
    if (child_ && builtFrom(std::index_sequence_for<Args...>(), args...)) return child_;
    Ptr<OnlyChild> made = OnlyChild::create(args...);
    child_.swap(made);
    return child_;
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
  template <std::size_t... place, class... Args>
  bool builtFrom(std::index_sequence<place...> /*places*/, const Args&... args) const {
    return ((((*child_).*std::get<place>(OnlyChild::rokArguments()).get)() == args) && ...);
  }

  Ptr<OnlyChild> child_;
};

}  // namespace Rok
