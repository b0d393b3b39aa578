// "class-maps": {"<map type>": {"<name>": {"match": ["<option>", ...]}}}
#include <algorithm>
#include <utility>

#include "host/Sections.h"
#include "host/Text.h"
#include "host/sections/Names.h"

namespace host {
namespace {

using Qos::ClassMapConfig;
using Qos::ClassMapMatchOption;
using Qos::MapType;
using Qos::Input::AclConfig;
using Qos::Input::ClassMapTypeConfig;

constexpr const char* matchMember = "match";

MapType mapTypeOf(std::string_view key) { return static_cast<MapType>(*decimal(key, 255)); }
std::string keyOf(MapType type) { return std::to_string(static_cast<unsigned>(type)); }
ClassMapMatchOption optionOf(const Value& value) {
  return static_cast<ClassMapMatchOption>(value.number());
}

Value matchOf(const ClassMapConfig& classMap) {
  std::vector<unsigned> options;
  for (auto i = classMap.match().unsafeIterator(); i; ++i) {
    options.push_back(static_cast<unsigned>(i->key()));
  }
  std::sort(options.begin(), options.end());
  Value::List list;
  for (const unsigned option : options) list.emplace_back(std::uint64_t{option});
  return Value(std::move(list));
}

bool contains(const Value::List& list, const Value& value) {
  return std::find(list.begin(), list.end(), value) != list.end();
}

// Each added option, then each removed one.
void matchIs(ClassMapConfig& classMap, const Value& match, Writes& writes) {
  const Value old = matchOf(classMap);
  for (const Value& option : match.list()) {
    if (contains(old.list(), option)) continue;
    writes([&] { classMap.matchIs(optionOf(option), Rok::make<Qos::ClassMapMatch>()); });
  }
  for (const Value& option : old.list()) {
    if (contains(match.list(), option)) continue;
    writes([&] { classMap.matchDel(optionOf(option)); });
  }
}

Rok::Ptr<ClassMapConfig> newClassMap(const Rok::String& name, MapType type, const Value& value,
                                     Writes& writes) {
  auto classMap = Rok::make<ClassMapConfig>(name, type);
  matchIs(*classMap, value.at(matchMember), writes);
  return classMap;
}

class ClassMapPlace final : public Place {
 public:
  explicit ClassMapPlace(Rok::Ptr<ClassMapConfig> classMap) : classMap_(std::move(classMap)) {}

  std::vector<Rok::String> keys() const override { return {matchMember}; }
  std::unique_ptr<Place> at(const Rok::String& /*member*/) const override {
    return std::make_unique<LeafPlace>(matchOf(*classMap_));
  }
  void put(const Rok::String& /*member*/, const Value& value, Writes& writes) override {
    matchIs(*classMap_, value, writes);
  }

 private:
  Rok::Ptr<ClassMapConfig> classMap_;
};

class ClassMapTypePlace final : public Place {
 public:
  explicit ClassMapTypePlace(Rok::Ptr<ClassMapTypeConfig> type) : type_(std::move(type)) {}

  std::vector<Rok::String> keys() const override {
    return sortedKeys(type_->cmap(), [](const Rok::String& name) { return name; });
  }
  std::unique_ptr<Place> at(const Rok::String& name) const override {
    const auto* classMap = type_->cmap().find(name);
    return classMap != nullptr ? std::make_unique<ClassMapPlace>(*classMap) : nullptr;
  }
  void put(const Rok::String& name, const Value& value, Writes& writes) override {
    const auto classMap = newClassMap(name, type_->type(), value, writes);
    writes([&] { type_->cmapIs(classMap->name(), classMap); });
  }
  void erase(const Rok::String& name, Writes& writes) override {
    writes([&] { type_->cmapDel(name); });
  }

 private:
  Rok::Ptr<ClassMapTypeConfig> type_;
};

class ClassMapsPlace final : public Place {
 public:
  explicit ClassMapsPlace(Rok::Ptr<AclConfig> config) : config_(std::move(config)) {}

  std::vector<Rok::String> keys() const override { return sortedKeys(config_->cmapType(), keyOf); }
  std::unique_ptr<Place> at(const Rok::String& key) const override {
    const auto* type = config_->cmapType().find(mapTypeOf(key));
    return type != nullptr ? std::make_unique<ClassMapTypePlace>(*type) : nullptr;
  }
  void put(const Rok::String& key, const Value& value, Writes& writes) override {
    const auto type = Rok::make<ClassMapTypeConfig>(mapTypeOf(key));
    ClassMapTypePlace place(type);
    for (const Member& classMap : value.object()) place.put(classMap.key, classMap.value, writes);
    writes([&] { config_->cmapTypeIs(type->type(), type); });
  }
  void erase(const Rok::String& key, Writes& writes) override {
    writes([&] { config_->cmapTypeDel(mapTypeOf(key)); });
  }

 private:
  Rok::Ptr<AclConfig> config_;
};

std::unique_ptr<Place> classMapsPlace(const Native& native) {
  return std::make_unique<ClassMapsPlace>(native.aclConfig);
}

}  // namespace

Section classMapsSection() {
  const Schema match = Schema::set(Schema::named("a match option", matchOptions));
  const Schema classMap = Schema::record({{matchMember, match, Value(Value::List())}});
  const Schema ofType = Schema::keyed(Key::name(), classMap);
  return {"class-maps",
          Schema::keyed(Key::named("a map type", mapTypes), ofType, {keyOf(Qos::mapQos)}),
          classMapsPlace};
}

}  // namespace host
