// A place of the native document, bound to the native object behind it: what stands there is read
// from that object, and a write is a native write. Each section of the document has a few of them.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Rok/Exceptions.h"
#include "Rok/OrderedMap.h"
#include "host/Value.h"

namespace host {

// What left a handler, for a report: "range: <text>", "reinstantiating: <attribute>" or
// "null argument: <attribute>".
std::string raised(const Rok::Exception& exception);

// Carries out native writes one at a time. An exception that leaves one is reported, and that is
// all: the write stands, and the next one follows.
class Writes {
 public:
  using Report = std::function<void(const std::string&)>;
  explicit Writes(Report report) : report_(std::move(report)) {}

  template <class Write>
  void operator()(const Write& write) {
    try {
      write();
    } catch (const Rok::Exception& exception) {
      report_(raised(exception));
    }
  }

 private:
  Report report_;
};

// Keys and values are canonical and fit the section's schema.
class Place {
 public:
  virtual ~Place() = default;

  // What stands here. By default, the object of keys() and what stands at each.
  virtual Value value() const;
  // The keys or members that are there, in bytewise order.
  virtual std::vector<Rok::String> keys() const { return {}; }
  // How many there are.
  virtual std::size_t size() const { return keys().size(); }
  // The place below; null when nothing is there.
  virtual std::unique_ptr<Place> at(const Rok::String& /*key*/) const { return nullptr; }
  virtual bool has(const Rok::String& key) const { return at(key) != nullptr; }

  // Makes `value` stand below, in as few native writes as it takes: an entry is built first and
  // inserted then. A keyed entry that is there already is removed by the caller before.
  virtual void put(const Rok::String& key, const Value& value, Writes& writes);
  // Requires: it is there.
  virtual void erase(const Rok::String& key, Writes& writes);
};

// A place that has nothing below it.
class LeafPlace final : public Place {
 public:
  explicit LeafPlace(Value value) : value_(std::move(value)) {}
  Value value() const override { return value_; }

 private:
  Value value_;
};

// The keys of a native hash map, each through `text`, in bytewise order.
template <class Map, class Text>
std::vector<Rok::String> sortedKeys(const Map& map, const Text& text) {
  std::vector<Rok::String> keys;
  keys.reserve(map.members());
  for (auto i = map.unsafeIterator(); i; ++i) keys.push_back(text(i->key()));
  std::sort(keys.begin(), keys.end());
  return keys;
}

// The same for an ordered map.
template <class Key, class V, class Text>
std::vector<Rok::String> sortedKeys(const Rok::OrderedMap<Key, V>& map, const Text& text) {
  std::vector<Rok::String> keys;
  keys.reserve(map.members());
  for (const auto& [key, value] : map) keys.push_back(text(key));
  std::sort(keys.begin(), keys.end());
  return keys;
}

}  // namespace host
