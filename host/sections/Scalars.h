// How native scalars and keys stand in a document, by their native types. A new type of either gets
// its row here, or in the only section that has it.
#pragma once

#include <concepts>
#include <cstdint>
#include <limits>
#include <string>

#include "host/Schema.h"
#include "host/Text.h"
#include "models/native/ClassMap.h"
#include "models/native/PolicyMap.h"
#include "models/native/Values.h"

namespace host {

// ===== The texts that documents use for native bytes, by enumeration

template <class Enum>
constexpr Name name(std::string_view text, Enum v) {
  return {text, static_cast<unsigned char>(v)};
}

template <class Enum>
struct Names;
template <>
struct Names<Qos::MapType> {
  static constexpr std::string_view what = "a map type";
  static constexpr Name names[] = {name("qos", Qos::mapQos)};
};
template <>
struct Names<Qos::ClassMapMatchOption> {
  static constexpr std::string_view what = "a match option";
  static constexpr Name names[] = {name("ip-access-group", Qos::matchIpAccessGroup),
                                   name("ipv6-access-group", Qos::matchIpv6AccessGroup)};
};
template <>
struct Names<Qos::ActionType> {
  static constexpr std::string_view what = "an action type";
  static constexpr Name names[] = {name("set-traffic-class", Qos::actionSetTc)};
};
template <>
struct Names<Qos::TxQueuePriority> {
  static constexpr std::string_view what = "a priority";
  static constexpr Name names[] = {name("strict", Qos::strictPriority),
                                   name("unset", Qos::priorityNotConfigured)};
};

template <class T>
concept Named = requires {
  Names<T>::names;
};

// The number that a canonical decimal stands for, if the type holds it.
template <class T>
std::optional<T> numberIn(std::string_view text) {
  const auto found = decimal(text, std::numeric_limits<T>::max());
  return found ? std::optional(static_cast<T>(*found)) : std::nullopt;
}

// ===== Scalars: what a document may hold, and the value there and back

template <class T>
struct ScalarForm;

// The range is that of the native type.
template <std::unsigned_integral T>
struct ScalarForm<T> {
  static Schema schema() { return Schema::number(std::numeric_limits<T>::max()); }
  static Value value(T v) { return Value(std::uint64_t{v}); }
  static T native(const Value& value) { return static_cast<T>(value.number()); }
};
// A byte that is a type of its own.
template <class T>
requires std::same_as<decltype(T::value), unsigned char>
struct ScalarForm<T> : ScalarForm<unsigned char> {
  static Value value(T v) { return Value(std::uint64_t{v.value}); }
};
template <Named T>
struct ScalarForm<T> {
  static Schema schema() { return Schema::nameOrNumber(Names<T>::what, Names<T>::names); }
  static Value value(T v) { return Value(static_cast<std::uint64_t>(v)); }
  static T native(const Value& value) { return static_cast<T>(value.number()); }
};
template <>
struct ScalarForm<bool> {
  static Schema schema() { return Schema::boolean(); }
  static Value value(bool v) { return Value(v); }
  static bool native(const Value& value) { return *value.as<bool>(); }
};
template <>
struct ScalarForm<double> {
  static Schema schema() { return Schema::real(); }
  static Value value(double v) { return Value(v); }
  static double native(const Value& value) { return value.real(); }
};
template <>
struct ScalarForm<Rok::String> {
  static Schema schema() { return Schema::text(); }
  static Value value(const Rok::String& v) { return Value(v); }
  static const Rok::String& native(const Value& value) { return value.text(); }
};

// ===== Keys: which there are, and the canonical text there and back

template <class T>
struct KeyForm;

template <class T>
struct NameKeyForm {
  static Key key() { return Key::name(); }
  static T native(const Rok::String& text) { return T(text); }
};
template <>
struct KeyForm<Rok::String> : NameKeyForm<Rok::String> {
  static const Rok::String& text(const Rok::String& name) { return name; }
};
template <>
struct KeyForm<Nerit::IntfId> : NameKeyForm<Nerit::IntfId> {
  static const Rok::String& text(const Nerit::IntfId& intfId) { return intfId.stringValue(); }
};
template <class Tag>
struct KeyForm<Qos::NameValue<Tag>> : NameKeyForm<Qos::NameValue<Tag>> {
  static const Rok::String& text(const Qos::NameValue<Tag>& name) { return name.name; }
};

// A key that is a decimal.
template <class T>
struct NumberKeyForm {
  static T native(std::string_view text) { return static_cast<T>(*numberIn<std::uint32_t>(text)); }
  static std::string text(T key) { return std::to_string(static_cast<std::uint64_t>(key)); }
};
template <Named T>
struct KeyForm<T> : NumberKeyForm<T> {
  static Key key() { return Key::named(Names<T>::what, Names<T>::names); }
};

// A key of a syntax of its own: `parse` takes a text apart, `expected` names it, and `pattern()` finds
// it.
template <class T>
struct ParsedKeyForm {
  static Key key() {
    const auto canonical = [](std::string_view text) {
      return KeyForm<T>::parse(text) ? std::optional(text) : std::nullopt;
    };
    return {KeyForm<T>::expected, canonical, false, {}, KeyForm<T>::pattern()};
  }
  static T native(std::string_view text) { return *KeyForm<T>::parse(text); }
};

}  // namespace host
