// The forms of native objects: how each stands in the document. A form is a class of
// places over one type of native object that also has the schema of what stands there:
//
//   using Object = ...;                                     the native object
//   explicit Form(Rok::Ptr<Object> object);
//   static Schema schema(const Rok::Ptr<Object>& fresh);    what is left out is as in `fresh`
//
// An object with members is a Record over a table of settings. A collection is Objects when its
// entries are objects with forms of their own, and Values when they are scalars:
//
//   constexpr Setting<IntfConfig> intfSettings[] = {
//       part<TxQueues<IntfConfig>>("tx-queues"),
//       object<&IntfConfig::pfcPortConfig, &IntfConfig::pfcPortConfigIs, Port>("pfc")};
//   using Interfaces = Objects<all(&Config::intfConfig), &Config::intfConfigIs,
//                              &Config::intfConfigDel, Record<intfSettings>>;
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "Rok/Rok.h"
#include "host/Place.h"
#include "host/Sections.h"
#include "host/sections/Scalars.h"

namespace host {

// ===== Accessors

// What a mutator takes: a value, or the key of an entry and the entry.
template <class Mutator>
struct Takes;
template <class ObjectType, class V>
struct Takes<void (ObjectType::*)(V)> {
  using Object = ObjectType;
  using Argument = std::remove_cvref_t<V>;
};
template <class ObjectType, class K, class V>
struct Takes<void (ObjectType::*)(K, V)> : Takes<void (ObjectType::*)(V)> {
  using Key = std::remove_cvref_t<K>;
};

// The reader of a whole collection; that of one entry may have the same name.
template <class Object, class Map>
constexpr auto all(const Map& (Object::*map)() const) {
  return map;
}

// Puts each member or entry of `value` into an object.
template <class Form>
void fill(const Rok::Ptr<typename Form::Object>& object, const Value& value, Writes& writes) {
  Form place(object);
  for (const Member& member : value.object()) place.put(member.key, member.value, writes);
}

// ===== Settings of an object, the rows of its table

template <class ObjectType>
struct Setting {
  using Object = ObjectType;
  std::string_view name;
  Schema (*schema)(const Rok::Ptr<Object>& fresh);
  // The place of what stands here. Null when nothing does; what a fresh object has is never absent.
  std::unique_ptr<Place> (*at)(const Rok::Ptr<Object>& object);
  // Null removes what may be absent.
  void (*put)(const Rok::Ptr<Object>& object, const Value& value, Writes& writes);
};

// A scalar.
template <auto get, auto set>
constexpr auto attribute(std::string_view name) {
  using Object = typename Takes<decltype(set)>::Object;
  using Scalar = ScalarForm<typename Takes<decltype(set)>::Argument>;
  return Setting<Object>{
      name, [](const Rok::Ptr<Object>& /*fresh*/) { return Scalar::schema(); },
      [](const Rok::Ptr<Object>& object) -> std::unique_ptr<Place> {
        return std::make_unique<LeafPlace>(Scalar::value(std::invoke(get, *object)));
      },
      [](const Rok::Ptr<Object>& object, const Value& value, Writes& writes) {
        writes([&] { std::invoke(set, *object, Scalar::native(value)); });
      }};
}

// Something of the object itself that is always there.
template <class Form>
constexpr auto part(std::string_view name) {
  using Object = typename Form::Object;
  return Setting<Object>{name, Form::schema,
                         [](const Rok::Ptr<Object>& object) -> std::unique_ptr<Place> {
                           return std::make_unique<Form>(object);
                         },
                         fill<Form>};
}

// An object of its own, which may be null. A write of the whole puts another one in its place.
template <auto get, auto set, class Form>
constexpr auto object(std::string_view name) {
  using Owner = typename Takes<decltype(set)>::Object;
  using Object = typename Form::Object;
  return Setting<Owner>{
      name,
      [](const Rok::Ptr<Owner>& /*fresh*/) { return Form::schema(Rok::make<Object>()).whole(); },
      [](const Rok::Ptr<Owner>& owner) -> std::unique_ptr<Place> {
        const auto& object = std::invoke(get, *owner);
        return object ? std::make_unique<Form>(object) : nullptr;
      },
      [](const Rok::Ptr<Owner>& owner, const Value& value, Writes& writes) {
        Rok::Ptr<Object> object;
        if (!value.isNull()) fill<Form>(object = Rok::make<Object>(), value, writes);
        writes([&] { std::invoke(set, *owner, object); });
      }};
}

// The form of an object that has settings.
template <const auto& settings>
class Record : public Place {
  using Row = std::remove_cvref_t<decltype(settings[0])>;

 public:
  using Object = typename Row::Object;

  explicit Record(Rok::Ptr<Object> object) : object_(std::move(object)) {}

  static Schema schema(const Rok::Ptr<Object>& fresh) {
    std::vector<Schema::Member> members;
    for (const Row& row : settings) {
      const std::unique_ptr<Place> there = row.at(fresh);
      const auto initial = there ? std::optional(there->value()) : std::nullopt;
      members.push_back({row.name, row.schema(fresh), initial});
    }
    return Schema::record(std::move(members));
  }

  std::vector<Rok::String> keys() const final {
    std::vector<Rok::String> keys;
    for (const Row& row : settings) {
      if (row.at(object_)) keys.emplace_back(row.name);
    }
    std::sort(keys.begin(), keys.end());
    return keys;
  }
  std::unique_ptr<Place> at(const Rok::String& name) const final { return rowOf(name).at(object_); }
  void put(const Rok::String& name, const Value& value, Writes& writes) override {
    rowOf(name).put(object_, value, writes);
  }
  void erase(const Rok::String& name, Writes& writes) final { put(name, Value(), writes); }

 protected:
  const Object& object() const { return *object_; }

 private:
  static const Row& rowOf(std::string_view name) {
    return *std::ranges::find(settings, name, &Row::name);
  }

  Rok::Ptr<Object> object_;
};

// ===== Collections

// What all collections have in common.
template <auto map, auto is, auto del>
class Collected : public Place {
 public:
  using Object = typename Takes<decltype(is)>::Object;
  using Key = typename Takes<decltype(is)>::Key;
  using Entry = typename Takes<decltype(is)>::Argument;
  using Keys = KeyForm<Key>;

  explicit Collected(Rok::Ptr<Object> owner) : owner_(std::move(owner)) {}

  std::vector<Rok::String> keys() const final {
    return sortedKeys(std::invoke(map, *owner_), Keys::text);
  }
  std::size_t size() const final { return std::invoke(map, *owner_).members(); }
  bool has(const Rok::String& key) const final { return find(Keys::native(key)) != nullptr; }
  void erase(const Rok::String& key, Writes& writes) override {
    writes([&] { std::invoke(del, *owner_, Keys::native(key)); });
  }

 protected:
  Object& owner() const { return *owner_; }
  const Entry* find(const Key& key) const { return std::invoke(map, *owner_).find(key); }
  void insert(const Key& key, const Entry& entry, Writes& writes) const {
    writes([&] { std::invoke(is, *owner_, key, entry); });
  }

 private:
  Rok::Ptr<Object> owner_;
};

// The entries are objects, of the form `EntryForm`. One that comes is filled first and inserted
// then. Those of a fresh owner are mounted.
template <auto map, auto is, auto del, class EntryForm>
class Objects final : public Collected<map, is, del> {
  using Base = Collected<map, is, del>;

 public:
  using Base::Base;
  using typename Base::Object;

  static Schema schema(const Rok::Ptr<Object>& fresh) {
    return Schema::keyed(Base::Keys::key(), EntryForm::schema(newEntry(*fresh, {})),
                         Objects(fresh).keys());
  }
  std::unique_ptr<Place> at(const Rok::String& key) const override {
    const auto* entry = this->find(Base::Keys::native(key));
    return entry != nullptr ? std::make_unique<EntryForm>(*entry) : nullptr;
  }
  void put(const Rok::String& key, const Value& value, Writes& writes) override {
    const typename Base::Key native = Base::Keys::native(key);
    const auto entry = newEntry(this->owner(), native);
    fill<EntryForm>(entry, value, writes);
    this->insert(native, entry, writes);
  }

 private:
  // Some entries also know the type of the collection that they are in.
  static auto newEntry(const Object& owner, const typename Base::Key& key) {
    using Entry = typename EntryForm::Object;
    if constexpr (std::is_constructible_v<Entry, decltype(key)>) {
      return Rok::make<Entry>(key);
    } else {
      return Rok::make<Entry>(key, owner.type());
    }
  }
};

// The entries are scalars.
template <auto map, auto is, auto del>
class Values final : public Collected<map, is, del> {
  using Base = Collected<map, is, del>;
  using Scalar = ScalarForm<typename Base::Entry>;

 public:
  using Base::Base;

  static Schema schema(const Rok::Ptr<typename Base::Object>& /*fresh*/) {
    return Schema::keyed(Base::Keys::key(), Scalar::schema());
  }
  std::unique_ptr<Place> at(const Rok::String& key) const override {
    const auto* entry = this->find(Base::Keys::native(key));
    return entry != nullptr ? std::make_unique<LeafPlace>(Scalar::value(*entry)) : nullptr;
  }
  void put(const Rok::String& key, const Value& value, Writes& writes) override {
    this->insert(Base::Keys::native(key), Scalar::native(value), writes);
  }
};

// ===== Sections

// A section is a setting of one of the objects that are mounted.
template <class Object>
Section section(Rok::Ptr<Object> Native::*mounted, const Setting<Object>& setting) {
  return {setting.name, setting.schema(Native().*mounted),
          [=](const Native& native) { return setting.at(native.*mounted); },
          [=](const Native& native, const Value& value, Writes& writes) {
            setting.put(native.*mounted, value, writes);
          }};
}

}  // namespace host
