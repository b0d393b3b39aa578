#include "host/Schema.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/Nearest.h"
#include "host/Text.h"

namespace host {
namespace {

constexpr std::uint64_t largestByte = 255;

// The number that a text stands for: one with that name, or a decimal.
std::optional<std::uint64_t> named(std::string_view text, std::span<const Name> names) {
  const auto found = std::ranges::find(names, text, &Name::text);
  return found != names.end() ? std::optional<std::uint64_t>(found->number) : std::nullopt;
}
std::optional<std::uint64_t> byteOf(std::string_view text, std::span<const Name> names) {
  const auto number = named(text, names);
  return number ? number : decimal(text, largestByte);
}

// Null when the number has no name.
const Name* nameIn(std::span<const Name> names, std::uint64_t number) {
  const auto found = std::ranges::find(names, number, &Name::number);
  return found != names.end() ? &*found : nullptr;
}

// The canonical decimal of a byte.
std::string_view decimalOf(std::uint64_t byte) {
  static const auto texts = [] {
    std::array<std::string, largestByte + 1> all;
    for (std::size_t i = 0; i < all.size(); ++i) all[i] = std::to_string(i);
    return all;
  }();
  return texts[byte];
}

std::string choices(std::string_view what, std::span<const Name> names) {
  std::string text(what);
  const char* separator = ": ";
  for (const Name& name : names) {
    text += separator;
    text += name.text;
    separator = ", ";
  }
  return text + " or a number from 0 to 255";
}

std::vector<std::string_view> texts(std::span<const Name> names) {
  std::vector<std::string_view> texts;
  for (const Name& name : names) texts.push_back(name.text);
  return texts;
}

bool acceptReal(Value& value) {
  if (const auto* v = value.as<std::uint64_t>()) value = Value(static_cast<double>(*v));
  if (const auto* v = value.as<std::int64_t>()) value = Value(static_cast<double>(*v));
  return value.as<double>() != nullptr;
}

bool acceptNumber(Value& value, const Scalar& scalar) {
  const auto* text = value.as<Rok::String>();
  if (text == nullptr) {
    const auto* number = value.as<std::uint64_t>();
    return number != nullptr && *number <= scalar.max;
  }
  const std::optional<std::uint64_t> number = scalar.numberOf(*text);
  if (number) value = Value(*number);
  return number.has_value();
}

// False leaves the value as it is.
bool makeCanonical(Value& value, const Scalar& scalar) {
  switch (scalar.type) {
    case Scalar::Type::number:
      return acceptNumber(value, scalar);
    case Scalar::Type::real:
      return acceptReal(value);
    case Scalar::Type::boolean:
      return value.as<bool>() != nullptr;
    case Scalar::Type::text:
      break;
  }
  return value.as<Rok::String>() != nullptr;
}

// A whole text of a pattern. Python's "$" also stands before a line end.
std::string wholly(const std::string& pattern) { return "^(?:" + pattern + ")$(?!\\n)"; }

std::string byNameOrDecimal(std::span<const Name> names) {
  std::string pattern;
  for (const Name& name : names) pattern += std::string(name.text) + '|';
  return wholly(pattern + decimalPattern(largestByte));
}

}  // namespace

Key Key::name() {
  return {"a name", [](std::string_view text) { return std::optional(text); }};
}

Key Key::named(std::string_view what, std::span<const Name> names) {
  const auto canonical = [names](std::string_view text) {
    const std::optional<std::uint64_t> number = byteOf(text, names);
    return number ? std::optional(decimalOf(*number)) : std::nullopt;
  };
  return {choices(what, names), canonical, true, names, byNameOrDecimal(names)};
}

Key Key::number(std::string_view what, std::uint64_t max) {
  const auto canonical = [max](std::string_view text) {
    return decimal(text, max) ? std::optional(text) : std::nullopt;
  };
  return {std::string(what) + ": a number from 0 to " + std::to_string(max),
          canonical,
          true,
          {},
          wholly(decimalPattern(max))};
}

std::optional<Rok::String> Key::canonical(const Rok::String& text) const {
  const std::optional<std::string_view> found = canonicalText(text);
  if (!found) return std::nullopt;
  return *found == std::string_view(text) ? text : Rok::String(*found);
}

std::string Key::hint(std::string_view text) const { return didYouMean(text, texts(names)); }

Rok::String Key::spelled(const Rok::String& canonical) const {
  if (names.empty()) return canonical;
  const Name* name = nameIn(names, *decimal(canonical, largestByte));
  return name != nullptr ? Rok::String(name->text) : canonical;
}

bool Key::isBefore(const Rok::String& a, const Rok::String& b) const {
  return isNumber && a.size() != b.size() ? a.size() < b.size() : a < b;
}

std::optional<std::uint64_t> Scalar::numberOf(std::string_view text) const {
  const auto number = named(text, names);
  return !number && isDecimalTaken ? decimal(text, max) : number;
}

Schema Schema::scalar(std::string expected, Scalar scalar) {
  Schema schema(Kind::scalar, std::move(expected));
  schema.scalar_ = std::move(scalar);
  return schema;
}

Schema Schema::number(std::uint64_t max) {
  return scalar("a whole number from 0 to " + std::to_string(max), {Scalar::Type::number, max});
}

Schema Schema::real() { return scalar("a number", {Scalar::Type::real}); }

Schema Schema::boolean() { return scalar("true or false", {Scalar::Type::boolean}); }

Schema Schema::text() { return scalar("a string", {Scalar::Type::text}); }

Schema Schema::named(std::string_view what, std::span<const Name> names) {
  return scalar(choices(what, names), {Scalar::Type::number, largestByte, names, true});
}

Schema Schema::nameOrNumber(std::string_view what, std::span<const Name> names) {
  return scalar(choices(what, names), {Scalar::Type::number, largestByte, names});
}

Schema Schema::exactly(const Schema& schema, Value value, std::string expected) {
  Schema one = scalar(std::move(expected), schema.scalar_);
  one.scalar_.only = std::move(value);
  return one;
}

bool Schema::accept(Value& value) const {
  if (!scalar_.only) return makeCanonical(value, scalar_);
  Value canonical = value;
  const bool isIt = makeCanonical(canonical, scalar_) && canonical == *scalar_.only;
  if (isIt) value = std::move(canonical);
  return isIt;
}

Schema Schema::set(Schema element) {
  Schema schema(Kind::set, "an array");
  schema.element_ = std::make_shared<const Schema>(std::move(element));
  return schema;
}

Schema Schema::list(Schema element) {
  Schema schema = set(std::move(element));
  schema.kind_ = Kind::list;
  return schema;
}

Schema Schema::keyed(Key key, Schema element, const std::vector<Rok::String>& mounted) {
  const Value empty = element.empty();
  return slots(std::move(key), std::move(element), mounted, empty);
}

Schema Schema::slots(Key key, Schema element, const std::vector<Rok::String>& keys,
                     const Value& initial) {
  Schema schema(Kind::keyed, "an object");
  schema.key_ = std::make_shared<const Key>(std::move(key));
  schema.element_ = std::make_shared<const Schema>(std::move(element));
  for (const Rok::String& always : keys) schema.mounted_.push_back({always, initial});
  return schema;
}

Schema Schema::record(std::vector<Member> members) {
  Schema schema(Kind::record, "an object");
  schema.members_ = std::make_shared<const std::vector<Member>>(std::move(members));
  return schema;
}

Schema Schema::orNull() const {
  Schema schema = *this;
  schema.mayBeNull_ = true;
  schema.expected_ += " or null";
  return schema;
}

Schema Schema::whole() const {
  Schema schema = *this;
  schema.isWhole_ = true;
  return schema;
}

const Name* Schema::nameOf(std::uint64_t number) const { return nameIn(scalar_.names, number); }

const Schema::Member* Schema::member(std::string_view name) const {
  for (const Member& member : *members_) {
    if (member.name == name) return &member;
  }
  return nullptr;
}

std::vector<std::string_view> Schema::names() const {
  if (kind_ != Kind::record) return texts(scalar_.names);
  std::vector<std::string_view> members;
  for (const Member& member : *members_) members.push_back(member.name);
  return members;
}

std::string Schema::hint(std::string_view name) const {
  return kind_ == Kind::record ? didYouMeanOf(name, names()) : didYouMean(name, names());
}

const Schema& Schema::below(std::string_view key) const {
  return kind_ == Kind::keyed ? *element_ : member(key)->schema;
}

const Value* Schema::initial(std::string_view key) const {
  if (kind_ == Kind::record) {
    const Member* found = member(key);
    return found != nullptr && found->initial ? &*found->initial : nullptr;
  }
  for (const auto& [always, value] : mounted_) {
    if (always == key) return &value;
  }
  return nullptr;
}

Value Schema::empty() const {
  if (kind_ != Kind::record) return Value(mounted_);
  Value::Object members;
  for (const Member& member : *members_) {
    if (member.initial) members.push_back({member.name, *member.initial});
  }
  return Value(std::move(members));
}

}  // namespace host
