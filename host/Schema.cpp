#include "host/Schema.h"

#include <algorithm>
#include <utility>

#include "host/Nearest.h"
#include "host/Text.h"

namespace host {
namespace {

constexpr std::uint64_t largestByte = 255;

std::optional<std::uint64_t> byteOf(std::string_view text, std::span<const Name> names) {
  for (const Name& name : names) {
    if (name.text == text) return name.number;
  }
  return decimal(text, largestByte);
}

// Null when the number has no name.
const Name* nameIn(std::span<const Name> names, std::uint64_t number) {
  const auto found = std::ranges::find(names, number, &Name::number);
  return found != names.end() ? &*found : nullptr;
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

bool isNumberUpTo(const Value& value, std::uint64_t max) {
  const auto* number = value.as<std::uint64_t>();
  return number != nullptr && *number <= max;
}

bool acceptReal(Value& value) {
  if (const auto* number = value.as<std::uint64_t>()) value = Value(static_cast<double>(*number));
  if (const auto* number = value.as<std::int64_t>()) value = Value(static_cast<double>(*number));
  return value.as<double>() != nullptr;
}

bool acceptNamed(Value& value, std::span<const Name> names) {
  const auto* text = value.as<Rok::String>();
  if (text == nullptr) return isNumberUpTo(value, largestByte);
  const std::optional<std::uint64_t> number = byteOf(*text, names);
  if (number) value = Value(*number);
  return number.has_value();
}

}  // namespace

Key Key::name() {
  return {"a name", [](const Rok::String& text) { return std::optional(text); }};
}

Key Key::named(std::string_view what, std::span<const Name> names) {
  return {choices(what, names),
          [names](const Rok::String& text) {
            const std::optional<std::uint64_t> number = byteOf(text, names);
            return number ? std::optional(Rok::String(std::to_string(*number))) : std::nullopt;
          },
          true, names};
}

Key Key::number(std::string_view what, std::uint64_t max) {
  return {std::string(what) + ": a number from 0 to " + std::to_string(max),
          [max](const Rok::String& text) {
            return decimal(text, max) ? std::optional(text) : std::nullopt;
          },
          true};
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

Schema Schema::scalar(std::string expected, std::function<bool(Value&)> accept,
                      std::span<const Name> names) {
  Schema schema(Kind::scalar, std::move(expected));
  schema.accept_ = std::move(accept);
  schema.names_ = names;
  return schema;
}

Schema Schema::number(std::uint64_t max) {
  return scalar("a whole number from 0 to " + std::to_string(max),
                [max](const Value& value) { return isNumberUpTo(value, max); });
}

Schema Schema::real() { return scalar("a number", acceptReal); }

Schema Schema::boolean() {
  return scalar("true or false", [](const Value& value) { return value.as<bool>() != nullptr; });
}

Schema Schema::text() {
  return scalar("a string", [](const Value& value) { return value.as<Rok::String>() != nullptr; });
}

Schema Schema::named(std::string_view what, std::span<const Name> names) {
  const auto accept = [names](Value& value) { return acceptNamed(value, names); };
  return scalar(choices(what, names), accept, names);
}

Schema Schema::nameOrNumber(std::string_view what, std::span<const Name> names) {
  const auto accept = [names](Value& value) {
    const auto* text = value.as<Rok::String>();
    const bool isDecimal = text != nullptr && decimal(*text, largestByte);
    return !isDecimal && acceptNamed(value, names);
  };
  return scalar(choices(what, names), accept, names);
}

Schema Schema::exactly(const Schema& schema, Value value, std::string expected) {
  const auto accept = [schema, only = std::move(value)](Value& given) {
    Value canonical = given;
    const bool isIt = schema.accept(canonical) && canonical == only;
    if (isIt) given = std::move(canonical);
    return isIt;
  };
  return scalar(std::move(expected), accept, schema.names_);
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

const Name* Schema::nameOf(std::uint64_t number) const { return nameIn(names_, number); }

const Schema::Member* Schema::member(std::string_view name) const {
  for (const Member& member : *members_) {
    if (member.name == name) return &member;
  }
  return nullptr;
}

std::vector<std::string_view> Schema::names() const {
  if (kind_ != Kind::record) return texts(names_);
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
