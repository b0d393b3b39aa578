// OVERVIEW: a record says once what its fields are called. All that goes through the fields
// follows: `operator<<` here, and the formats that read or write records by name.
//
// RULES
// - `fields()` names the fields in the order in which they print, as the members are spelt. Another
//   spelling ("strict-priority") is derived from that one.
// - The field that is the record's key in its collection is a `KeyField`.
// - A class that only wraps another one gives `Wrapped` instead of a tuple, and looks like it.
//
// EXAMPLE
//   struct QueueConfig {
//     Rok::String name;
//     bool strictPriority = false;
//     static constexpr auto fields() {
//       return std::tuple{Field{"name", &QueueConfig::name},
//                         Field{"strictPriority", &QueueConfig::strictPriority}};
//     }
//   };
//   std::cout << QueueConfig{"voice", true};  // {name voice, strictPriority true}
#pragma once

#include <ostream>
#include <string_view>
#include <tuple>

#include "Rok/Rok.h"
#include "Velmo/Vector.h"

namespace QosOc::Config {

// A field of a record, by its name and its place.
template <class Record, class T>
struct Field {
  std::string_view name;
  T Record::*place;
  // The field's value in a record.
  constexpr const T& get(const Record& record) const { return record.*place; }
};
// Guides that not every compiler makes for aggregates.
template <class Record, class T>
Field(const char*, T Record::*) -> Field<Record, T>;
// The field by which a directory files the record.
template <class Record, class T>
struct KeyField : Field<Record, T> {
  static constexpr bool isKey = true;
};
template <class Record, class T>
KeyField(const char*, T Record::*) -> KeyField<Record, T>;
// The only field of a record, which prints as its value alone.
template <class Only>
struct Wrapped {
  static constexpr bool isWrapped = true;
  Only field;
};
template <class Only>
Wrapped(Only) -> Wrapped<Only>;

template <class Record>
concept HasFields = requires {
  Record::fields();
};

// ===== Objects: what they hold is read and set by operations

// A value that is read and set as a whole.
template <class Object, class T>
struct Attribute {
  std::string_view name;
  const T& (Object::*read)() const;
  void (Object::*set)(const T&);
  // The value in an object.
  const T& get(const Object& object) const { return (object.*read)(); }
};
// An object below, null until it is made.
template <class Object, class T, class... Arguments>
struct Child {
  std::string_view name;
  const Rok::Ptr<T>& (Object::*read)() const;
  const Rok::Ptr<T>& (Object::*is)(Arguments...);
  // The object below, or null.
  const Rok::Ptr<T>& get(const Object& object) const { return (object.*read)(); }
};
// The row of a value, in an object's attributes().
template <class Object, class T>
constexpr auto attribute(std::string_view name, const T& (Object::*read)() const,
                         void (Object::*set)(const T&)) {
  return Attribute<Object, T>{name, read, set};
}
// The row of an object below.
template <class Object, class T, class... Arguments>
constexpr auto child(std::string_view name, const Rok::Ptr<T>& (Object::*read)() const,
                     const Rok::Ptr<T>& (Object::*is)(Arguments...)) {
  return Child<Object, T, Arguments...>{name, read, is};
}

// A directory of value records; `is` puts one in under the key that it holds, `del` removes one.
template <class Dir, class Map, class Record, class Removed, class Key>
struct Records {
  const Map& (Dir::*map)() const;
  void (Dir::*is)(const Record&);
  Removed (Dir::*del)(Key);
};
template <class Dir, class Map, class Record, class Removed, class Key>
Records(const Map& (Dir::*)() const, void (Dir::*)(const Record&), Removed (Dir::*)(Key))
    -> Records<Dir, Map, Record, Removed, Key>;
// A directory of objects; `is` creates, or gets, the one of a key.
template <class Dir, class Map, class Object, class Key>
struct Objects {
  const Map& (Dir::*map)() const;
  Rok::Ptr<Object> (Dir::*is)(Key);
  void (Dir::*del)(Key);
};
template <class Dir, class Map, class Object, class Key>
Objects(const Map& (Dir::*)() const, Rok::Ptr<Object> (Dir::*)(Key), void (Dir::*)(Key))
    -> Objects<Dir, Map, Object, Key>;

// What stands behind a pointer or an optional, or the value itself. Null where there is none.
template <class T>
const T* reached(const T& value) {
  return &value;
}
template <class T>
const T* reached(const Rok::Ptr<T>& value) {
  return value.get();
}
template <class T>
const T* reached(const Rok::Optional<T>& value) {
  return value ? &*value : nullptr;
}

// Objects name their attributes and children, directories their entries.
template <class Object>
concept HasAttributes = requires {
  Object::attributes();
};
template <class Dir>
concept HasEntries = requires {
  Dir::entries();
};

// ===== Printing

template <HasFields Record>
std::ostream& operator<<(std::ostream& out, const Record& record);

namespace Impl {

template <class T>
void print(std::ostream& out, const T& value) {
  out << value;
}
inline void print(std::ostream& out, bool value) { out << (value ? "true" : "false"); }
inline void print(std::ostream& out, unsigned char value) { out << unsigned{value}; }
inline void print(std::ostream& out, const Velmo::ByteVector& bytes) {
  out << '[';
  const char* separator = "";
  for (const unsigned byte : bytes) {
    out << separator << byte;
    separator = ", ";
  }
  out << ']';
}
template <class T>
void print(std::ostream& out, const Rok::Optional<T>& value) {
  value ? print(out, *value) : print(out, "(absent)");
}

template <class Record, class Only>
void printFields(std::ostream& out, const Record& record, const Wrapped<Only>& wrapped) {
  out << wrapped.field.get(record);
}
template <class Record, class... Fields>
void printFields(std::ostream& out, const Record& record, const std::tuple<Fields...>& fields) {
  out << '{';
  const char* separator = "";
  const auto one = [&](const auto& field) {
    out << separator << field.name << ' ';
    print(out, field.get(record));
    separator = ", ";
  };
  std::apply([&](const auto&... field) { (one(field), ...); }, fields);
  out << '}';
}

}  // namespace Impl

// "{name voice, strictPriority true}". Absent optionals print as "(absent)".
template <HasFields Record>
std::ostream& operator<<(std::ostream& out, const Record& record) {
  Impl::printFields(out, record, Record::fields());
  return out;
}

}  // namespace QosOc::Config
