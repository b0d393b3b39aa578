// OVERVIEW
//   Change notification. A Notifier calls its notifiees when one of its attributes changes, for a
//   collection attribute with the key. The call doesn't say what happened: a notifiee reads the
//   current state.
//
// RULES
//   - Delivery is at once, inside the write, in the order of registration; notifiees that watch
//     one key of an attribute come after those that watch all of it. Where there are many, those
//     that watch a single attribute may come after those that watch several.
//   - A notifiee holds a strong pointer to its notifier, so a notifier outlives its observers.
//   - What happens to a notification while it goes round:
//       a notifiee removes itself        no other one is missed or called twice
//       removes one before or behind it  the removed one is not called any more
//       adds one                         the new one is not called for this change
//       changes the notifier again       the inner notification goes round in full, then the outer
//       drops the last outside reference the notifier lives until the notification is through
//       is switched off                  not called
//       throws                           all others are called; then the first exception goes on
//   - Subscribing and unsubscribing cost the same whatever the number of notifiees. A change costs
//     nothing for those that watch another attribute or another key, but for the first few and
//     for those that watch several attributes: these are called and test the id.
//
// EXAMPLE
//   class Port final : public Rok::Notifier {
//    public:
//     struct Attr {
//       static constexpr Rok::Attribute<> mtu{130};
//     };
//     unsigned mtu() const { return mtu_; }
//     void mtuIs(unsigned v) { attributeIs(mtu_, v, Attr::mtu); }
//
//    private:
//     unsigned mtu_ = 1500;
//   };
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "Dorpel/Export.h"
#include "Rok/Hash.h"
#include "Rok/OrderedMap.h"
#include "Rok/Ptr.h"

namespace Rok {

// An attribute of a class: its id and, for a collection, the type of its key.
template <class KeyType = void>
struct Attribute {
  using Key = KeyType;
  AttributeId id;
};

// Base class of all observers.
class QOS_EXPORT PtrInterface::NotifieeConst : public PtrInterface {
 public:
  // `interest` is what the notifiee is called for: one attribute, or one key of one
  // (NotifieeList::interestIn); 0 is everything. A notifiee of one attribute may be called for
  // others as well, so its onAttribute tests the id.
  explicit NotifieeConst(std::uint64_t interest = 0) : interest_(interest) {}
  ~NotifieeConst() override;

  void hasNotificationActiveIs(bool v) override;
  void zeroReferencesIs(bool v) override;
  const FwkType& fwkType() const override;

  // Runs when the last reference to the notifiee is released: takes it off its notifier's list.
  virtual void onZeroReferences();
  // An attribute of the notifier changed. For a collection, `key` points to the key.
  virtual void onAttribute(AttributeId id, const void* key) = 0;
  // Makes a zombie of the notifiee, which refuses all calls, or (false) takes that back.
  virtual void rokDoZombieReactors(bool v);

  // Binds to a notifier, or to none. A registration with the old one ends.
  virtual void notifierIs(const PtrInterface* notifier);
  const PtrInterface* notifier() const { return notifier_.get(); }
  // Enters the notifier's list, or leaves it. Without a notifier nothing happens.
  void isRegisteredNotifieeIs(bool v) const;
  bool isRegisteredNotifiee() const { return slot_ != unregistered; }
  std::uint64_t interest() const { return interest_; }

 private:
  friend class Rok::NotifieeList;
  static constexpr std::uint32_t unregistered = 0xffffffffu;
  static constexpr std::uint32_t indexed = 0x80000000u;

  mutable std::uint32_t slot_ = unregistered;  // my place in the list; `indexed` by my interest
  Ptr<const PtrInterface> notifier_;
  std::uint64_t interest_;
};

// The notifiees of one notifier. One word while there is none or a single one.
class QOS_EXPORT NotifieeList {
 public:
  using Notifiee = PtrInterface::NotifieeConst;

  NotifieeList() = default;
  NotifieeList(NotifieeList&& other) noexcept : word_(std::exchange(other.word_, 0)) {}
  NotifieeList& operator=(NotifieeList&& other) noexcept {
    std::swap(word_, other.word_);
    return *this;
  }
  ~NotifieeList();

  bool empty() const { return word_ == 0; }
  std::size_t notifiees() const;

  // Enters a notifiee. Requires: it isn't on a list.
  void notifieeNew(const Notifiee& notifiee);
  // Requires: notifieeNew(notifiee) came before.
  void notifieeDel(const Notifiee& notifiee) noexcept;

  // Calls all notifiees that are switched on. Requires: a reference to the notifier is held
  // meanwhile. Throws: the first exception that left a notifiee, once all have been called.
  void notify(AttributeId id) const { notify(id, nullptr, 0); }
  template <class Key>
  void notify(AttributeId id, const Key& key) const {
    notify(id, &key, hasKeys() ? interestIn(id, key) : 0);
  }

  // The interest in one attribute, and that in one key of it.
  static constexpr std::uint64_t interestIn(AttributeId id) { return std::uint64_t{id} << 32; }
  template <class Key>
  static std::uint64_t interestIn(AttributeId id, const Key& key) {
    const std::uint32_t hash = hashSingleAttr(HashHelper::hashSeed32(), key);
    return interestIn(id) | (hash != 0 ? hash : 1);
  }

 private:
  struct Many;
  Many* many() const { return (word_ & 1) != 0 ? reinterpret_cast<Many*>(word_ - 1) : nullptr; }
  const Notifiee* single() const {
    return (word_ & 1) != 0 ? nullptr : reinterpret_cast<const Notifiee*>(word_);
  }
  bool hasKeys() const { return (word_ & 1) != 0 && manyHaveKeys(); }
  bool manyHaveKeys() const;
  // A notification of a single notifiee, which is the usual case, is one call.
  void notify(AttributeId id, const void* key, std::uint64_t interest) const {
    if ((word_ & 1) != 0) return notifySeveral(id, key, interest);
    const Notifiee* notifiee = single();
    if (notifiee == nullptr || !notifiee->hasNotificationActive()) return;
    const_cast<Notifiee*>(notifiee)->onAttribute(id, key);
  }
  void notifySeveral(AttributeId id, const void* key, std::uint64_t interest) const;

  std::uintptr_t word_ = 0;  // null, a notifiee, or a Many with the lowest bit set
};

// Base class of everything that can be watched.
class QOS_EXPORT Notifier : public PtrInterface {
 public:
  NotifieeList* notifieeList() const override { return &notifiees_; }

 protected:
  // A scalar attribute changed.
  void notify(Attribute<> attribute) const {
    if (notifiees_.empty()) return;
    const Ptr<const Notifier> alive(this);
    notifiees_.notify(attribute.id);
  }
  // Something changed at a key of a collection attribute.
  template <class Key>
  void notify(Attribute<Key> attribute, const Key& key) const {
    if (notifiees_.empty()) return;
    const Ptr<const Notifier> alive(this);
    notifiees_.notify(attribute.id, key);
  }

  // Assigns a scalar; an equal value notifies nothing.
  template <class T>
  void attributeIs(T& field, const T& value, Attribute<> attribute) {
    if (field == value) return;
    field = value;
    notify(attribute);
  }
  // Inserts or replaces an entry of a hash map; an equal value notifies nothing.
  template <class Map, class Key, class Value>
  void memberIs(Map& map, const Key& key, const Value& value, Attribute<Key> attribute) {
    // `key` may be a part of an object that a handler releases.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): so it is kept
    const Key kept(key);
    const auto [node, isNew] = map.newMember(kept, value);
    if (!isNew) {
      if (node->value() == value) return;
      node->value() = value;
    }
    notify(attribute, kept);
  }
  template <class Key, class Value>
  void memberIs(OrderedMap<Key, Value>& map, const Key& key, const Value& value,
                Attribute<Key> attribute) {
    const auto [place, isNew] = map.newMember(key, value);
    if (!isNew) {
      if (*place == value) return;
      *place = value;
    }
    notify(attribute, key);
  }
  // Removes an entry; what isn't there notifies nothing.
  template <class Map, class Key>
  void memberDel(Map& map, const Key& key, Attribute<Key> attribute) {
    // `key` may be a part of the entry.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): so it is kept
    const Key kept(key);
    if (map.deleteMember(kept)) notify(attribute, kept);
  }

 private:
  mutable NotifieeList notifiees_;
};

}  // namespace Rok
