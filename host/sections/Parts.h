// What the places of several sections are made of.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Rok/Rok.h"
#include "host/Place.h"
#include "host/Text.h"

namespace host {

// ===== Numbers

inline constexpr std::uint64_t largestByte = 0xff;
inline constexpr std::uint64_t largestWord = 0xffffffff;

inline Value numberValue(std::uint64_t number) { return Value(number); }
inline unsigned char byteOf(const Value& value) {
  return static_cast<unsigned char>(value.number());
}
inline std::uint32_t wordOf(const Value& value) {
  return static_cast<std::uint32_t>(value.number());
}

// A key that is a decimal, and back.
template <class Number>
Number numberOf(std::string_view key) {
  return static_cast<Number>(*decimal(key, largestWord));
}
template <class Number>
std::string decimalOf(Number number) {
  return std::to_string(static_cast<std::uint64_t>(number));
}

inline const Rok::String& textOf(const Rok::String& text) { return text; }

// ===== Settings

// A setting of a native object: how it is read and assigned. What is null is not there.
template <class Object>
struct Setting {
  std::string_view name;
  Value (*value)(const Object& object);
  void (*valueIs)(Object& object, const Value& value);
};

template <class Object>
const Setting<Object>& settingNamed(std::span<const Setting<Object>> settings,
                                    std::string_view name) {
  return *std::find_if(settings.begin(), settings.end(),
                       [&](const Setting<Object>& setting) { return setting.name == name; });
}

// The place of an object that is nothing but its settings.
template <class Object>
class SettingsPlace final : public Place {
 public:
  // Requires: the settings are in bytewise order of their names, and outlive this.
  SettingsPlace(Rok::Ptr<Object> object, std::span<const Setting<Object>> settings)
      : object_(std::move(object)), settings_(settings) {}

  std::vector<Rok::String> keys() const override {
    std::vector<Rok::String> keys;
    for (const auto& setting : settings_) keys.emplace_back(setting.name);
    return keys;
  }
  std::unique_ptr<Place> at(const Rok::String& name) const override {
    return std::make_unique<LeafPlace>(settingNamed(settings_, name).value(*object_));
  }
  void put(const Rok::String& name, const Value& value, Writes& writes) override {
    writes([&] { settingNamed(settings_, name).valueIs(*object_, value); });
  }

 private:
  Rok::Ptr<Object> object_;
  std::span<const Setting<Object>> settings_;
};

// ===== Records of one collection, and objects

// The place of a native object of which the document shows one collection, as a member that is
// always there.
template <class Collection, class Object>
class HolderPlace final : public Place {
 public:
  // Requires: `member` outlives this.
  HolderPlace(std::string_view member, Rok::Ptr<Object> object)
      : member_(member), object_(std::move(object)) {}

  std::vector<Rok::String> keys() const override { return {member_}; }
  std::unique_ptr<Place> at(const Rok::String& /*member*/) const override {
    return std::make_unique<Collection>(object_);
  }

 private:
  std::string_view member_;
  Rok::Ptr<Object> object_;
};

inline std::vector<Rok::String> keysOf(const Value& object) {
  std::vector<Rok::String> keys;
  for (const Member& member : object.object()) keys.push_back(member.key);
  return keys;
}

// Puts each entry of an object into a collection that is being built.
inline void putEach(Place& place, const Value& entries, Writes& writes) {
  for (const Member& entry : entries.object()) place.put(entry.key, entry.value, writes);
}

}  // namespace host
