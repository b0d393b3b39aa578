// Objects that several threads hold: the last one that lets go of an object deletes it, whatever its
// thread is.
#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

namespace host {

// What can be held. `Derived` is deleted by its own `destroy()`.
template <class Derived>
class Counted {
 public:
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  void hold() const { holders_.fetch_add(1, std::memory_order_relaxed); }
  void letGo() const {
    if (holders_.fetch_sub(1, std::memory_order_acq_rel) == 1) {
      static_cast<const Derived*>(this)->destroy();
    }
  }
  // Whether the caller is the only one that holds it. No other thread can begin to then, but one that
  // gets it from the caller.
  bool isHeldOnce() const { return holders_.load(std::memory_order_acquire) == 1; }

 protected:
  Counted() = default;
  ~Counted() = default;

 private:
  mutable std::atomic<std::uint32_t> holders_{0};
};

template <class T>
class Ref {
 public:
  Ref() = default;
  explicit Ref(T* object) : object_(object) {
    if (object_ != nullptr) object_->hold();
  }
  Ref(const Ref& other) : Ref(other.object_) {}
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Ref& operator=(Ref other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Ref() {
    if (object_ != nullptr) object_->letGo();
  }

  T* get() const { return object_; }
  T& operator*() const { return *object_; }
  T* operator->() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  T* object_ = nullptr;
};

}  // namespace host
