// OVERVIEW
//   Values that may be absent: Optional keeps them in place, DynOptional, for the rare parts of a
//   record, in a heap block of their own.
//
// RULES
//   - Both print as their value, or as "(absent)".
//   - Two are equal when both are absent or both hold equal values. A copy is deep.
//
// EXAMPLE
//   Rok::Optional<int> rate;
//   Rok::DynOptional<int> burst(40);
//   out << rate << ", " << burst;
//   assert(out.str() == "(absent), 40");
#pragma once

#include <memory>
#include <optional>
#include <ostream>
#include <utility>

namespace Rok {

template <class T>
class Optional : public std::optional<T> {
 public:
  using std::optional<T>::optional;
  Optional() = default;

  friend bool operator==(const Optional& a, const Optional& b) {
    return a.has_value() == b.has_value() && (!a.has_value() || *a == *b);
  }
  friend bool operator==(const Optional& a, const T& b) { return a.has_value() && *a == b; }
  friend std::ostream& operator<<(std::ostream& out, const Optional& value) {
    return value ? out << *value : out << "(absent)";
  }
};

// The same on the heap: one word while there is no value.
template <class T>
class DynOptional {
 public:
  DynOptional() = default;
  DynOptional(T value) : value_(std::make_unique<T>(std::move(value))) {}
  DynOptional(const DynOptional& other)
      : value_(other.value_ ? std::make_unique<T>(*other.value_) : nullptr) {}
  DynOptional(DynOptional&&) noexcept = default;
  DynOptional& operator=(DynOptional other) noexcept {
    value_.swap(other.value_);
    return *this;
  }
  ~DynOptional() = default;

  bool has_value() const { return value_ != nullptr; }
  explicit operator bool() const { return has_value(); }
  // Requires: has_value().
  const T& operator*() const { return *value_; }
  T& operator*() { return *value_; }
  const T* operator->() const { return value_.get(); }
  T* operator->() { return value_.get(); }
  // There is no value from now on.
  void reset() { value_.reset(); }

  friend bool operator==(const DynOptional& a, const DynOptional& b) {
    return a.has_value() == b.has_value() && (!a || *a == *b);
  }
  friend std::ostream& operator<<(std::ostream& out, const DynOptional& value) {
    return value ? out << *value : out << "(absent)";
  }

 private:
  std::unique_ptr<T> value_;
};

}  // namespace Rok
