// OVERVIEW
//   The watched inputs of a state machine: what it reacts to, written as a type.
//
// RULES
//   - A watch passes on only the attributes it names, only while it is no zombie and has an owner
//     and an input. It holds its owner during the call: a handler may release the last outside
//     reference.
//   - Several reactions to one attribute run in their order, and end when one of them releases the
//     input.
//   - Binding a watch calls no handler, unless the watch has an OnBound reaction.
//
// EXAMPLE
//   using MtuOfPort = Rok::Watch<PortSm, Port, Rok::On<Port::Attr::mtu, &PortSm::handleMtu>>;
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <type_traits>
#include <utility>

#include "Rok/Notifier.h"
#include "Rok/Ptr.h"

namespace Rok {

// A reaction: when `attribute` changes, call `handler`, with the key if it takes one.
template <auto attribute, auto handler>
struct On {
  using Key = typename decltype(attribute)::Key;
  static constexpr AttributeId id = attribute.id;
  static constexpr bool evenZombie = false;
  // Calls the handler.
  template <class Owner>
  static void react(Owner& owner, const void* key) {
    if constexpr (std::is_invocable_v<decltype(handler), Owner&>) {
      (owner.*handler)();
    } else {
      (owner.*handler)(*static_cast<const Key*>(key));
    }
  }
};

// The same, for a reaction that runs in a zombie too, as long as its watch has an owner and an
// input.
template <auto attribute, auto handler>
struct OnEvenZombie : On<attribute, handler> {
  static constexpr bool evenZombie = true;
};

// A reaction to the input itself: when the watch is bound to another object, call `handler`, after
// the object is set and before the watch registers with it. It is for inputs that are bound later,
// not for constructor arguments. Most state machines do without it: they read a new object only
// when something in it changes.
template <auto handler>
struct OnBound {
  static constexpr AttributeId id = 0;  // of no attribute
  // Calls the handler.
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
  // What a getter of the input returns; the default of its type without an input.
  template <class Getter>
  auto read(const Getter& getter) const {
    using Value = std::decay_t<std::invoke_result_t<const Getter&, const Input&>>;
    return notifier() != nullptr ? Value(std::invoke(getter, **this)) : Value();
  }

  // Binds the watch to another object: the same one changes nothing, null is inputDel().
  // Calls no handler, unless an OnBound reaction asks for it. Throws: what leaves that reaction, or
  // std::bad_alloc; then the watch has no input, so that the next inputIs binds it again.
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
  // Releases the input, and calls no handler until inputIs.
  void inputDel() {
    hasNotificationActiveIs(false);
    notifierIs(nullptr);
    rokMarkedForDeletionIs(false);  // the next input begins without the mark
  }

  void notifierIs(const PtrInterface* object) override {
    const bool other = object != nullptr && object != notifier();
    NotifieeConst::notifierIs(object);
    if (other && !rokMarkedForDeletion() && owner_ != nullptr) (callBound<Reactions>(), ...);
  }

  // Runs the reactions to the attribute, unless the watch has no owner.
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
  // Releases the input again, unless all of the binding is done.
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
      // An earlier reaction may have released the input, which takes the mark of a zombie away.
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

  // The same for the one key.
  void onAttribute(AttributeId id, const void* key) override {
    // Two keys may have one interest, so the keys are compared.
    if (*static_cast<const Key*>(key) == key_) Base::onAttribute(id, key);
  }

 private:
  using Key = typename Reaction::Key;
  Key key_;
};

namespace Impl {

template <class Owner, auto outer, auto read, class... Reactions>
struct ChainedInput {
  using Outer = std::remove_cvref_t<decltype(*(std::declval<Owner&>().*outer))>;
  using Held = std::decay_t<std::invoke_result_t<decltype(read), const Outer&>>;
  using Watch = Rok::Watch<Owner, std::remove_const_t<typename Held::element_type>, Reactions...>;
};

}  // namespace Impl

// A chained input: the object that an attribute of another input holds at the moment.
//
// outer: the watch of that input, a member of Owner that is declared before; read: the getter of
// the attribute. The owner calls follow() when the attribute changes, and at the end of its
// constructor: what the object holds at start has been read by then.
template <class Owner, auto outer, auto read, class... Reactions>
class ChainedWatch : public Impl::ChainedInput<Owner, outer, read, Reactions...>::Watch {
 public:
  explicit ChainedWatch(Owner& owner) : Base(owner) {}

  // Binds the watch to what the attribute holds. Where the outer input is null, so is this one.
  void follow(const Owner& owner) {
    if (const auto& from = owner.*outer) this->inputIs(std::invoke(read, *from));
  }

 private:
  using Base = typename Impl::ChainedInput<Owner, outer, read, Reactions...>::Watch;
};

}  // namespace Rok
