// OVERVIEW
//   Reference-counted objects and the pointers that count. Everything with identity is a
//   PtrInterface: native objects, output directories, state machines, notifiees.
//
// RULES
//   - An object begins with one reference, which Rok::make hands to the first Ptr. A reference
//     taken and given back inside a constructor therefore never destroys the object.
//   - When the last reference goes, zeroReferencesIs(true) runs while the object is still whole;
//     then it is destroyed. References taken meanwhile must be given back before zeroReferencesIs
//     returns.
//   - An object that is a member of another object keeps its first reference and is destroyed
//     with its owner.
//   - One thread, unless threadSafePointers_ is set before the first object is made: then counts
//     move atomically. Nothing else becomes safe by it.
//
// EXAMPLE
//   struct Lamp : Rok::PtrInterface { bool lit = false; };
//   Rok::Ptr<Lamp> lamp = Rok::make<Lamp>();
//   Rok::Ptr<Lamp const> seen = lamp;
//   lamp->lit = true;
//   assert(seen->lit && lamp->references() == 2);
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <type_traits>
#include <utility>

#include "Dorpel/Export.h"
#include "Dorpel/Slab.h"

namespace Rok {

class NotifieeList;
struct FwkType;

// Identifies an attribute of a class. Numbered from firstAttributeId in declaration order.
using AttributeId = std::uint32_t;
inline constexpr AttributeId firstAttributeId = 130;

// The non-virtual core of a counted object: one word of count and two flags.
class QOS_EXPORT VFPtrInterface {
 public:
  // Whether counts move by atomic adds. Read at every increment and decrement.
  static bool threadSafePointers_;

  VFPtrInterface() = default;
  VFPtrInterface(const VFPtrInterface&) = delete;
  VFPtrInterface& operator=(const VFPtrInterface&) = delete;

  bool hasNotificationActive() const { return (word() & activeFlag) != 0; }
  bool rokMarkedForDeletion() const { return (word() & deletionFlag) != 0; }
  std::uint32_t references() const { return word() / oneReference; }

 protected:
  ~VFPtrInterface() = default;

  void referenceNew() const {
    if (threadSafePointers_) {
      std::atomic_ref(word_).fetch_add(oneReference, std::memory_order_relaxed);
    } else {
      word_ += oneReference;
    }
  }
  // Returns true when that was the last one.
  bool referenceDel() const {
    if (threadSafePointers_) {
      return std::atomic_ref(word_).fetch_sub(oneReference, std::memory_order_acq_rel) <
             2 * oneReference;
    }
    word_ -= oneReference;
    return word_ < oneReference;
  }
  // The flags share the word with the count, so they move as it does.
  void flagIs(std::uint32_t flag, bool v) const {
    if (!threadSafePointers_) {
      word_ = v ? word_ | flag : word_ & ~flag;
    } else if (v) {
      std::atomic_ref(word_).fetch_or(flag, std::memory_order_relaxed);
    } else {
      std::atomic_ref(word_).fetch_and(~flag, std::memory_order_relaxed);
    }
  }

  static constexpr std::uint32_t activeFlag = 1;
  static constexpr std::uint32_t deletionFlag = 2;
  static constexpr std::uint32_t oneReference = 4;

 private:
  std::uint32_t word() const { return std::atomic_ref(word_).load(std::memory_order_relaxed); }

  mutable std::uint32_t word_ = oneReference;
};

// Base class of every counted object.
class QOS_EXPORT PtrInterface : public VFPtrInterface {
 public:
  class NotifieeConst;

  PtrInterface() = default;

  // The observers of this object; null for an object that can't be watched.
  virtual NotifieeList* notifieeList() const;
  // Whether this object reacts. State machines hand it down to their notifiees and children.
  virtual void hasNotificationActiveIs(bool v);
  // Runs with true when the last reference has gone, before the destructor.
  virtual void zeroReferencesIs(bool v);
  virtual const FwkType& fwkType() const;
  virtual ~PtrInterface();

  // Sets the flag by which a notifiee refuses further work.
  void rokMarkedForDeletionIs(bool v) const { flagIs(deletionFlag, v); }

  static void* operator new(std::size_t size) { return Dorpel::slabAllocOrStdMalloc(size); }
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void* block, std::size_t size) noexcept {
    Dorpel::slabFreeOrStdFree(block, size);
  }

 private:
  template <class T>
  friend class Ptr;

  // Runs when the count reaches zero: zeroReferencesIs(true), then the destructor.
  void handleZeroRef() const;
};

// A strong, nullable pointer.
template <class T>
class Ptr {
 public:
  using element_type = T;

  constexpr Ptr() noexcept = default;
  constexpr Ptr(std::nullptr_t) noexcept {}
  // Takes a reference of its own.
  explicit Ptr(T* object) noexcept : object_(object) { take(); }
  Ptr(const Ptr& other) noexcept : object_(other.object_) { take(); }
  Ptr(Ptr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  template <class U>
  requires std::is_convertible_v<U*, T*> Ptr(const Ptr<U>& other)
  noexcept : object_(other.get()) { take(); }
  template <class U>
  requires std::is_convertible_v<U*, T*> Ptr(Ptr<U>&& other)
  noexcept : object_(other.release()) {}
  // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): it swaps with a copy
  Ptr& operator=(const Ptr& other) noexcept {
    Ptr(other).swap(*this);
    return *this;
  }
  Ptr& operator=(Ptr&& other) noexcept {
    Ptr(std::move(other)).swap(*this);
    return *this;
  }
  ~Ptr() { drop(); }

  // Takes over a reference that the caller has taken.
  static Ptr adopt(T* object) noexcept {
    Ptr result;
    result.object_ = object;
    return result;
  }
  // Gives the reference away without giving it back.
  T* release() noexcept { return std::exchange(object_, nullptr); }

  T* get() const noexcept { return object_; }
  T* operator->() const noexcept { return object_; }
  T& operator*() const noexcept { return *object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }
  // Moves no count.
  void swap(Ptr& other) noexcept { std::swap(object_, other.object_); }

  template <class U>
  friend bool operator==(const Ptr& a, const Ptr<U>& b) noexcept {
    return a.get() == b.get();
  }
  friend bool operator==(const Ptr& a, std::nullptr_t) noexcept { return a.object_ == nullptr; }

 private:
  void take() const noexcept {
    if (object_ != nullptr) base()->referenceNew();
  }
  void drop() noexcept {
    if (object_ != nullptr && base()->referenceDel()) base()->handleZeroRef();
  }
  const PtrInterface* base() const noexcept { return object_; }

  T* object_ = nullptr;
};

// Makes an object and returns the first pointer to it.
template <class T, class... Args>
Ptr<T> make(Args&&... args) {
  return Ptr<T>::adopt(new T(std::forward<Args>(args)...));
}

}  // namespace Rok
