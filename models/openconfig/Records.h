// What the directories of the output model have in common: collections of value records, and of
// objects that are created or got by name. Each marks in the journal what it hands out for writing.
#pragma once

#include <utility>

#include "Rok/Rok.h"
#include "models/openconfig/Fields.h"
#include "models/openconfig/Journal.h"

namespace QosOc::Config {

// A collection of value records by key. A lookup of a missing entry yields the default record, the
// one of the default key, and a write replaces the whole record.
template <class Record, std::uint32_t seed, auto key>
class RecordMap {
 public:
  using Key = std::remove_cvref_t<decltype(std::declval<const Record&>().*key)>;
  struct KeyFunktor {
    const Key& operator()(const Record& record) const { return record.*key; }
  };
  using Map = Rok::HashMap2018<Rok::Hm2018NII<seed, Key, Record, KeyFunktor>>;

  const Map& map() const { return map_; }
  Record get(const Key& k) const {
    const Record* found = map_.find(k);
    return found != nullptr ? *found : Record(Key());
  }
  // Puts a record in, or replaces the one of its key.
  void is(const Record& record) {
    mark(record.*key);
    const auto [node, isNew] = map_.newMember(record.*key, record);
    if (!isNew) node->value() = record;
  }
  // The record of a key. A new one has the key alone, and `fill` gets what it holds beside that.
  template <class Fill>
  const Record& made(const Key& k, const Fill& fill) {
    mark(k);
    const auto [node, isNew] = map_.newMember(k, k);
    if (isNew) fill(static_cast<typename Record::Content&>(node->value()));
    return node->value();
  }
  // What a record that was found here holds beside its key, to be written in place. A writer that
  // could reach the key would file the record under a wrong one. Requires: it is still there.
  auto& content(const Record& found) {
    mark(found.*key);
    // The map isn't const, only the view of it that readers get.
    typename Record::Content& content = const_cast<Record&>(found);
    return content;
  }
  // The same for the record of a key: as it stands, or a new one.
  auto& contentIs(const Key& k) {
    mark(k);
    typename Record::Content& content = map_.newMember(k, k).first->value();
    return content;
  }
  // Removes the record of a key, into `removed` where that is given.
  void del(const Key& k, Record* removed = nullptr) {
    mark(k);
    map_.deleteMember(k, removed);
  }

  void markerIs(const Marker& marker) { marker_ = marker; }

 private:
  void mark(const Key& k) const { marker_.markEntry(Record::record, k); }

  Map map_;
  Marker marker_;
};

// A collection of objects by name.
template <class Object, std::uint32_t seed, auto key>
class ObjectMap {
 public:
  using Key = std::remove_cvref_t<std::invoke_result_t<decltype(key), const Object&>>;
  struct KeyFunktor {
    const Key& operator()(const Rok::Ptr<Object>& object) const { return ((*object).*key)(); }
  };
  using Map = Rok::HashMap2018<Rok::Hm2018NII<seed, Key, Rok::Ptr<Object>, KeyFunktor>>;

  const Map& map() const { return map_; }
  // Null when there is none.
  Rok::Ptr<Object> get(const Key& k) const {
    const Rok::Ptr<Object>* found = map_.find(k);
    return found != nullptr ? *found : nullptr;
  }
  // The object of that name: a new one, or the one that is there as it stands.
  Rok::Ptr<Object> is(const Key& k) {
    const Rok::Ptr<Object>* found = map_.find(k);
    return found != nullptr ? *found : made(k);
  }
  // The object, if others hold it on, marks nothing more.
  void del(const Key& k) {
    marker_.markEntry(Object::record, k, true);
    Rok::Ptr<Object> removed;
    map_.deleteMember(k, &removed);
    if (removed && marker_.isOn()) removed->markerIs({});
  }

  void markerIs(const Marker& marker) {
    marker_ = marker;
    for (auto i = map_.unsafeIterator(); i; ++i) i->value()->markerIs(marker.below(i->key()));
  }

 private:
  // Not inlined, so that getting what is there stays short.
  [[gnu::noinline]] const Rok::Ptr<Object>& made(const Key& k) {
    marker_.markEntry(Object::record, k);
    const Rok::Ptr<Object>& object = map_.newMember(k, Rok::make<Object>(k)).first->value();
    if (marker_.isOn()) object->markerIs(marker_.below(k));
    return object;
  }

  Map map_;
  Marker marker_;
};

}  // namespace QosOc::Config
