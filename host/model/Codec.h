// How values stand in the `model` format: their schema, how they are written and how they are read.
// Records and objects of the output model name their own fields (models/openconfig/Fields.h), so
// all that stands here stands once for a kind of value:
//
//   Codec<QueueConfig>::write(out, config);
//   // {"bandwidth":null,"name":"q","strict-priority":true}
//
// A member has the name of its field with hyphens; members are printed in the order of their names.
#pragma once

#include <algorithm>
#include <concepts>
#include <limits>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "host/JsonWriter.h"
#include "host/Schema.h"
#include "host/Sorted.h"
#include "host/Text.h"
#include "models/openconfig/Fields.h"
#include "models/openconfig/Numbers.h"

namespace host {

// `schema()`, `write(out, v)` and `read(v, value)`. A value is read into a new one: what it leaves
// out stays as it is. Requires, for reading: the value fits the schema.
template <class T>
struct Codec;

// ===== Scalars

template <>
struct Codec<Rok::String> {
  static Schema schema() { return Schema::text(); }
  static void write(JsonWriter& out, const Rok::String& v) { out.text(v); }
  static void read(Rok::String& v, const Value& value) { v = value.text(); }
};

template <>
struct Codec<bool> {
  static Schema schema() { return Schema::boolean(); }
  static void write(JsonWriter& out, bool v) { out.boolean(v); }
  static void read(bool& v, const Value& value) { v = *value.as<bool>(); }
};

template <>
struct Codec<double> {
  static Schema schema() { return Schema::real(); }
  static void write(JsonWriter& out, double v) { out.real(v); }
  static void read(double& v, const Value& value) { v = value.real(); }
};

// An enumeration is written as its number.
template <class T>
requires std::unsigned_integral<T> || std::is_enum_v<T>
struct Codec<T> {
  static constexpr auto max = std::numeric_limits<std::make_unsigned_t<T>>::max();
  static Schema schema() { return Schema::number(max); }
  static void write(JsonWriter& out, T v) { out.number(static_cast<std::uint64_t>(v)); }
  static void read(T& v, const Value& value) { v = static_cast<T>(value.number()); }
};

// A number that its type checks: one that the type would refuse is no value here.
template <class Range>
struct Codec<QosOc::RangeChecked<Range>> {
  using Number = QosOc::RangeChecked<Range>;
  static Schema schema() { return Schema::number(Range::max); }
  static void write(JsonWriter& out, const Number& v) { out.number(v.value()); }
  static void read(Number& v, const Value& value) {
    v = Number(static_cast<typename Range::Value>(value.number()));
  }
};

// ===== Values that may be absent, and lists

template <class T>
struct Codec<Rok::Optional<T>> {
  static Schema schema() { return Codec<T>::schema().orNull(); }
  static void write(JsonWriter& out, const Rok::Optional<T>& v) {
    v ? Codec<T>::write(out, *v) : out.null();
  }
  static void read(Rok::Optional<T>& v, const Value& value) {
    if (!value.isNull()) Codec<T>::read(v.emplace(), value);
  }
};

// An object that hangs below another one, which makes it: it is not read into.
template <class T>
struct Codec<Rok::Ptr<T>> {
  static Schema schema() { return Codec<T>::schema().orNull(); }
  static void write(JsonWriter& out, const Rok::Ptr<T>& v) {
    v ? Codec<T>::write(out, *v) : out.null();
  }
};

// An array in the order of the vector.
template <>
struct Codec<Velmo::ByteVector> {
  static Schema schema() { return Schema::list(Codec<unsigned char>::schema()); }
  static void write(JsonWriter& out, const Velmo::ByteVector& v) {
    out.beginArray();
    for (const unsigned char byte : v) out.number(byte);
    out.endArray();
  }
  static void read(Velmo::ByteVector& v, const Value& value) {
    for (const Value& byte : value.list()) Codec<unsigned char>::read(v.emplace_back(), byte);
  }
};

// ===== Records and objects, by their fields and attributes

namespace fields {

using QosOc::Config::Attribute;
using QosOc::Config::Child;
using QosOc::Config::Field;
using QosOc::Config::HasFields;

template <class Owner, class Record, class T>
void read(Owner& owner, const Field<Record, T>& field, const Value& value) {
  Codec<T>::read(owner.*field.place, value);
}
template <class Owner, class Object, class T>
void read(Owner& owner, const Attribute<Object, T>& attribute, const Value& value) {
  T v{};
  Codec<T>::read(v, value);
  (owner.*attribute.set)(v);
}
template <class Owner, class Object, class T, class... Arguments>
void read(Owner& owner, const Child<Object, T, Arguments...>& child, const Value& value) {
  if (value.isNull()) return;
  Codec<T>::read(*(owner.*child.is)(std::remove_cvref_t<Arguments>()...), value);
}

template <class Owner>
constexpr auto of() {
  if constexpr (HasFields<Owner>) {
    return Owner::fields();
  } else {
    return Owner::attributes();
  }
}

// A field of any type, read and written through its owner.
template <class Owner>
struct Member {
  Rok::String name;
  Schema schema;
  void (*write)(JsonWriter&, const Owner&);
  void (*read)(Owner&, const Value&);
};

// The name of a field as documents spell it: "target-group" for "targetGroup".
std::string memberName(std::string_view field);

template <class Owner, std::size_t place>
void addTo(std::vector<Member<Owner>>& members) {
  static constexpr auto field = std::get<place>(of<Owner>());
  // The key of a record is that of its entry, and is not repeated in it.
  if constexpr (!requires { field.isKey; }) {
    using T = std::remove_cvref_t<decltype(field.get(std::declval<const Owner&>()))>;
    members.push_back(
        {memberName(field.name), Codec<T>::schema(),
         [](JsonWriter& out, const Owner& owner) { Codec<T>::write(out, field.get(owner)); },
         [](Owner& owner, const Value& value) { fields::read(owner, field, value); }});
  }
}

// In the order of their names.
template <class Owner>
const std::vector<Member<Owner>>& members() {
  static const std::vector<Member<Owner>> sorted = [] {
    std::vector<Member<Owner>> members;
    [&]<std::size_t... place>(std::index_sequence<place...>) {
      (addTo<Owner, place>(members), ...);
    }
    (std::make_index_sequence<std::tuple_size_v<decltype(of<Owner>())>>());
    std::sort(members.begin(), members.end(),
              [](const auto& a, const auto& b) { return a.name < b.name; });
    return members;
  }();
  return sorted;
}

}  // namespace fields

template <class Owner>
concept HasMembers = QosOc::Config::HasFields<Owner> || QosOc::Config::HasAttributes<Owner>;
template <class Owner>
concept IsWrapped = HasMembers<Owner> && requires {
  fields::of<Owner>().isWrapped;
};

template <class Owner>
requires HasMembers<Owner> &&(!IsWrapped<Owner>)struct Codec<Owner> {
  static Schema schema() {
    std::vector<Schema::Member> members;
    for (const auto& member : fields::members<Owner>()) {
      members.push_back({member.name, member.schema});
    }
    return Schema::record(std::move(members));
  }
  static void write(JsonWriter& out, const Owner& owner) {
    out.beginObject();
    for (const auto& member : fields::members<Owner>()) {
      out.key(member.name);
      member.write(out, owner);
    }
    out.endObject();
  }
  static void read(Owner& owner, const Value& value) {
    for (const auto& member : fields::members<Owner>()) {
      if (const Value* v = value.find(member.name)) member.read(owner, *v);
    }
  }
};

// What is written as the one value that it holds.
template <IsWrapped Owner>
struct Codec<Owner> {
  static constexpr auto only = fields::of<Owner>().field;
  using T = std::remove_cvref_t<decltype(only.get(std::declval<const Owner&>()))>;
  static Schema schema() { return Codec<T>::schema(); }
  static void write(JsonWriter& out, const Owner& owner) { Codec<T>::write(out, only.get(owner)); }
  static void read(Owner& owner, const Value& value) { fields::read(owner, only, value); }
};

// ===== Directories, in the order of their keys: names, or the numbers of their type

template <QosOc::Config::HasEntries Dir>
struct Codec<Dir> {
  static constexpr auto entries = Dir::entries();
  using Map = std::remove_cvref_t<decltype((std::declval<Dir>().*entries.map)())>;
  using Entry = std::remove_cvref_t<decltype(*QosOc::Config::reached(
      std::declval<const typename Map::Value&>()))>;
  static constexpr bool isNamed = std::is_same_v<typename Map::Key, Rok::String>;

  static Schema schema() { return Schema::keyed(keys(), Codec<Entry>::schema()); }
  static void write(JsonWriter& out, const Dir& dir) {
    out.beginObject();
    for (const auto& [key, entry] : sorted((dir.*entries.map)())) {
      out.key(key);
      Codec<Entry>::write(out, *QosOc::Config::reached(*entry));
    }
    out.endObject();
  }
  static void read(Dir& dir, const Value& value) {
    for (const Member& entry : value.object()) entryIs(dir, entry.key, entry.value);
  }
  // Reads one entry. A record is put in whole, an object is filled where it stands.
  static void entryIs(Dir& dir, const Rok::String& key, const Value& value) {
    if constexpr (requires { *(dir.*entries.is)(keyOf(key)); }) {
      Codec<Entry>::read(*(dir.*entries.is)(keyOf(key)), value);
    } else {
      Entry record(keyOf(key));
      Codec<Entry>::read(record, value);
      (dir.*entries.is)(record);
    }
  }
  static bool has(const Dir& dir, const Rok::String& key) {
    return (dir.*entries.map)().find(keyOf(key)) != nullptr;
  }

 private:
  static Key keys() {
    if constexpr (isNamed) {
      return Key::name();
    } else {
      const auto max = Codec<typename Map::Key>::max;
      return {"a whole number from 0 to " + std::to_string(max),
              Key::number("", max).canonicalText};
    }
  }
  static typename Map::Key keyOf(const Rok::String& key) {
    if constexpr (isNamed) {
      return key;
    } else {
      return static_cast<typename Map::Key>(*decimal(key, Codec<typename Map::Key>::max));
    }
  }
};

}  // namespace host
