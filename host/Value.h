// A value of a document once it has been checked against its schema. It is canonical: numbers stand
// for names, sets are sorted, what was left out and has a default is there. So two values that mean
// the same compare equal.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "Rok/String.h"
#include "Velmo/Vector.h"

namespace host {

class Value;

// A template, so that it is complete where the members of Value need it.
template <class V>
struct Keyed {
  Rok::String key;
  V value;
  friend bool operator==(const Keyed&, const Keyed&) = default;
};
using Member = Keyed<Value>;

class Value {
 public:
  using List = std::vector<Value, Velmo::Allocator<Value>>;
  using Object = std::vector<Member, Velmo::Allocator<Member>>;  // in the order of the
                                                                 // document

  Value() = default;  // null
  explicit Value(bool v) : data_(v) {}
  explicit Value(std::uint64_t v) : data_(v) {}
  explicit Value(std::int64_t v) : data_(v) {}  // negative ones only
  explicit Value(double v) : data_(v) {}
  explicit Value(Rok::String v) : data_(std::move(v)) {}
  explicit Value(const std::string& v) : data_(Rok::String(v)) {}
  explicit Value(const char* v) : data_(Rok::String(v)) {}
  explicit Value(List v) : data_(std::move(v)) {}
  explicit Value(Object v) : data_(std::move(v)) {}

  template <class T>
  const T* as() const {
    return std::get_if<T>(&data_);
  }
  bool isNull() const { return as<std::monostate>() != nullptr; }

  // Each requires that the value is of that kind. The list or object of a temporary can't be
  // taken.
  std::uint64_t number() const { return std::get<std::uint64_t>(data_); }
  double real() const { return std::get<double>(data_); }
  const Rok::String& text() const { return std::get<Rok::String>(data_); }
  const List& list() const& { return std::get<List>(data_); }
  List& list() & { return std::get<List>(data_); }
  const Object& object() const& { return std::get<Object>(data_); }
  Object& object() & { return std::get<Object>(data_); }
  const List& list() const&& = delete;
  const Object& object() const&& = delete;

  // The member of an object; null when there is none.
  const Value* find(std::string_view key) const;
  // The member of an object. Requires: it is there.
  const Value& at(std::string_view key) const { return *find(key); }
  // Puts a member into an object, or another value into one that is there.
  void put(const Rok::String& key, Value value);

  // The order of an object's members doesn't count.
  friend bool operator==(const Value& a, const Value& b);

 private:
  std::variant<std::monostate, bool, std::uint64_t, std::int64_t, double, Rok::String, List, Object>
      data_;
};

inline const Value* Value::find(std::string_view key) const {
  for (const Member& member : object()) {
    if (member.key == key) return &member.value;
  }
  return nullptr;
}

}  // namespace host
