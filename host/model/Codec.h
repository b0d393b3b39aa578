// How output records stand in the `model` format. A codec tells it once, for the schema, for
// reading and for writing:
//
//   const Codec<QueueConfig> queueConfig = record<QueueConfig>({
//       member("bandwidth", &QueueConfig::bandwidth, orNull(rangeChecked<PercentRange>())),
//       member("name", &QueueConfig::name, text()),
//       member("strict-priority", &QueueConfig::strictPriority, boolean())});
//
// Members are declared in the order in which they are printed: that of their names.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "Rok/Rok.h"
#include "host/JsonWriter.h"
#include "host/Schema.h"
#include "host/Sorted.h"
#include "host/Text.h"
#include "host/Value.h"
#include "models/openconfig/Numbers.h"

namespace host {

// Copies share what they do, since codecs are made of copies of others.
template <class T>
class Codec {
 public:
  using Write = std::function<void(JsonWriter&, const T&)>;
  using Read = std::function<void(T&, const Value&)>;

  Codec(Schema schema, Write write, Read read)
      : schema(std::move(schema)),
        write_(std::make_shared<const Write>(std::move(write))),
        read_(std::make_shared<const Read>(std::move(read))) {}

  void write(JsonWriter& out, const T& v) const { (*write_)(out, v); }
  // Reads into a new object: what the value leaves out stays as it is. Requires: the value fits.
  void read(T& v, const Value& value) const { (*read_)(v, value); }

  Schema schema;

 private:
  std::shared_ptr<const Write> write_;
  std::shared_ptr<const Read> read_;
};

// ===== Scalars

inline Codec<Rok::String> text() {
  return {Schema::text(), [](JsonWriter& out, const Rok::String& v) { out.text(v); },
          [](Rok::String& v, const Value& value) { v = value.text(); }};
}

inline Codec<bool> boolean() {
  return {Schema::boolean(), [](JsonWriter& out, bool v) { out.boolean(v); },
          [](bool& v, const Value& value) { v = *value.as<bool>(); }};
}

inline Codec<double> real() {
  return {Schema::real(), [](JsonWriter& out, double v) { out.real(v); },
          [](double& v, const Value& value) { v = value.real(); }};
}

// An unsigned number, or an enumeration as its number.
template <class T>
Codec<T> number() {
  using Bits = std::make_unsigned_t<T>;
  return {Schema::number(std::numeric_limits<Bits>::max()),
          [](JsonWriter& out, const T& v) { out.number(static_cast<Bits>(v)); },
          [](T& v, const Value& value) { v = static_cast<T>(value.number()); }};
}

// A number that its type checks: one that the type would refuse is no value here.
template <class Range>
Codec<QosOc::RangeChecked<Range>> rangeChecked() {
  using Number = QosOc::RangeChecked<Range>;
  return {Schema::number(Range::max),
          [](JsonWriter& out, const Number& v) { out.number(v.value()); },
          [](Number& v, const Value& value) {
            v = Number(static_cast<typename Range::Value>(value.number()));
          }};
}

// ===== Values that may be absent, and lists

template <class T>
Codec<Rok::Optional<T>> orNull(const Codec<T>& codec) {
  return {codec.schema.orNull(),
          [codec](JsonWriter& out, const Rok::Optional<T>& v) {
            v ? codec.write(out, *v) : out.null();
          },
          [codec](Rok::Optional<T>& v, const Value& value) {
            if (!value.isNull()) codec.read(v.emplace(), value);
          }};
}

// An array in the order of the vector.
template <class Vector>
Codec<Vector> list(const Codec<typename Vector::value_type>& codec) {
  return {Schema::list(codec.schema),
          [codec](JsonWriter& out, const Vector& v) {
            out.beginArray();
            for (const auto& element : v) codec.write(out, element);
            out.endArray();
          },
          [codec](Vector& v, const Value& value) {
            for (const Value& element : value.list()) {
              v.emplace_back();
              codec.read(v.back(), element);
            }
          }};
}

// ===== Records and objects

// A member of a record or of an object: the codec of its owner, as far as this member goes.
template <class Owner>
struct Field {
  Rok::String name;
  Codec<Owner> codec;
};

template <class Owner>
Codec<Owner> record(std::vector<Field<Owner>> fields) {
  std::vector<Schema::Member> members;
  for (const Field<Owner>& field : fields) members.push_back({field.name, field.codec.schema});
  return {Schema::record(std::move(members)),
          [fields](JsonWriter& out, const Owner& owner) {
            out.beginObject();
            for (const Field<Owner>& field : fields) {
              out.key(field.name);
              field.codec.write(out, owner);
            }
            out.endObject();
          },
          [fields](Owner& owner, const Value& value) {
            for (const Field<Owner>& field : fields) {
              if (const Value* v = value.find(field.name)) field.codec.read(owner, *v);
            }
          }};
}

// A data member of a record.
template <class Owner, class T>
Field<Owner> member(const char* name, T Owner::*place, const Codec<T>& codec) {
  return {
      name,
      {codec.schema, [=](JsonWriter& out, const Owner& owner) { codec.write(out, owner.*place); },
       [=](Owner& owner, const Value& value) { codec.read(owner.*place, value); }}};
}

// An attribute of an object, a value that is read and set as a whole.
template <class Owner, class T>
Field<Owner> attribute(const char* name, const T& (Owner::*get)() const,
                       void (Owner::*set)(const T&), const Codec<T>& codec) {
  return {
      name,
      {codec.schema, [=](JsonWriter& out, const Owner& owner) { codec.write(out, (owner.*get)()); },
       [=](Owner& owner, const Value& value) {
         T v{};
         codec.read(v, value);
         (owner.*set)(v);
       }}};
}

// An object that hangs below another one and may be null. `make(owner)` creates it.
template <class Owner, class Child, class Make>
Field<Owner> child(const char* name, const Rok::Ptr<Child>& (Owner::*get)() const, const Make& make,
                   const Codec<Child>& codec) {
  return {name,
          {codec.schema.orNull(),
           [=](JsonWriter& out, const Owner& owner) {
             const Rok::Ptr<Child>& below = (owner.*get)();
             below ? codec.write(out, *below) : out.null();
           },
           [=](Owner& owner, const Value& value) {
             if (!value.isNull()) codec.read(*std::invoke(make, owner), value);
           }}};
}

// ===== Collections, in the order of their keys

// A collection can be read entry by entry, too.
template <class Owner>
struct Collection : Codec<Owner> {
  std::function<void(Owner&, const Rok::String& key, const Value&)> entryIs;
  std::function<bool(const Owner&, const Rok::String& key)> has;
};

// The keys of a collection: names, or the numbers of their type.
template <class T>
struct Keys {
  static constexpr std::uint64_t max = std::numeric_limits<std::make_unsigned_t<T>>::max();
  static Key schema() {
    return {"a whole number from 0 to " + std::to_string(max), Key::number("", max).canonical};
  }
  static T key(std::string_view text) { return static_cast<T>(*decimal(text, max)); }
};
template <>
struct Keys<Rok::String> {
  static Key schema() { return Key::name(); }
  static const Rok::String& key(const Rok::String& text) { return text; }
};

// Of any kind. `map(owner)` gives the entries, `write(out, entry)` writes one and
// `entryIs(owner, key, value)` reads one.
template <class Owner, class KeyType, class Map, class Write, class EntryIs>
Collection<Owner> collection(const Schema& element, const Map& map, const Write& write,
                             const EntryIs& entryIs) {
  return {{Schema::keyed(Keys<KeyType>::schema(), element),
           [=](JsonWriter& out, const Owner& owner) {
             out.beginObject();
             for (const auto& [key, entry] : sorted(map(owner))) {
               out.key(key);
               write(out, *entry);
             }
             out.endObject();
           },
           [=](Owner& owner, const Value& value) {
             for (const Member& entry : value.object()) entryIs(owner, entry.key, entry.value);
           }},
          entryIs,
          [=](const Owner& owner, const Rok::String& key) {
            return map(owner).find(Keys<KeyType>::key(key)) != nullptr;
          }};
}

// Value records that are made from their key and put in with `is`.
template <class KeyType, class Owner, class Record, class Map>
Collection<Owner> records(const Map& map, void (Owner::*is)(const Record&),
                          const Codec<Record>& codec) {
  return collection<Owner, KeyType>(
      codec.schema, map, [=](JsonWriter& out, const Record& entry) { codec.write(out, entry); },
      [=](Owner& owner, const Rok::String& key, const Value& value) {
        Record entry(Keys<KeyType>::key(key));
        codec.read(entry, value);
        (owner.*is)(entry);
      });
}

// Objects that `is` creates, or gets, by their key.
template <class Owner, class Object, class KeyType, class Map>
Collection<Owner> objects(const Map& map, Rok::Ptr<Object> (Owner::*is)(KeyType),
                          const Codec<Object>& codec) {
  using Key = std::remove_cvref_t<KeyType>;
  return collection<Owner, Key>(
      codec.schema, map,
      [=](JsonWriter& out, const Rok::Ptr<Object>& object) { codec.write(out, *object); },
      [=](Owner& owner, const Rok::String& key, const Value& value) {
        codec.read(*(owner.*is)(Keys<Key>::key(key)), value);
      });
}

}  // namespace host
