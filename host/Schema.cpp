#include "host/Schema.h"

#include <algorithm>
#include <utility>

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

std::optional<Value> numberUpTo(const Value& value, std::uint64_t max) {
  const auto* number = value.as<std::uint64_t>();
  if (number == nullptr || *number > max) return std::nullopt;
  return value;
}

std::optional<Value> acceptReal(const Value& value) {
  if (const auto* number = value.as<std::uint64_t>()) return Value(static_cast<double>(*number));
  if (const auto* number = value.as<std::int64_t>()) return Value(static_cast<double>(*number));
  if (value.as<double>() != nullptr) return value;
  return std::nullopt;
}

std::optional<Value> acceptBoolean(const Value& value) {
  if (value.as<bool>() == nullptr) return std::nullopt;
  return value;
}

std::optional<Value> acceptText(const Value& value) {
  if (value.as<std::string>() == nullptr) return std::nullopt;
  return value;
}

std::optional<Value> acceptNamed(const Value& value, std::span<const Name> names) {
  const auto* text = value.as<std::string>();
  if (text == nullptr) return numberUpTo(value, largestByte);
  const std::optional<std::uint64_t> number = byteOf(*text, names);
  return number ? std::optional(Value(*number)) : std::nullopt;
}

}  // namespace

Key Key::name() {
  return {"a name", [](std::string_view text) { return std::optional(std::string(text)); }};
}

Key Key::named(std::string_view what, std::span<const Name> names) {
  return {choices(what, names), [names](std::string_view text) {
            const std::optional<std::uint64_t> number = byteOf(text, names);
            return number ? std::optional(std::to_string(*number)) : std::nullopt;
          }};
}

Key Key::number(std::string_view what, std::uint64_t max) {
  return {std::string(what) + ": a number from 0 to " + std::to_string(max),
          [max](std::string_view text) {
            return decimal(text, max) ? std::optional(std::string(text)) : std::nullopt;
          }};
}

Schema Schema::scalar(std::string expected,
                      std::function<std::optional<Value>(const Value&)> accept) {
  Schema schema(Kind::scalar, std::move(expected));
  schema.accept_ = std::move(accept);
  return schema;
}

Schema Schema::number(std::uint64_t max) {
  return scalar("a whole number from 0 to " + std::to_string(max),
                [max](const Value& value) { return numberUpTo(value, max); });
}

Schema Schema::real() { return scalar("a number", acceptReal); }

Schema Schema::boolean() { return scalar("true or false", acceptBoolean); }

Schema Schema::text() { return scalar("a string", acceptText); }

Schema Schema::named(std::string_view what, std::span<const Name> names) {
  return scalar(choices(what, names),
                [names](const Value& value) { return acceptNamed(value, names); });
}

Schema Schema::nameOrNumber(std::string_view what, std::span<const Name> names) {
  const auto accept = [names](const Value& value) {
    const auto* text = value.as<std::string>();
    const bool isDecimal = text != nullptr && decimal(*text, largestByte);
    return isDecimal ? std::nullopt : acceptNamed(value, names);
  };
  return scalar(choices(what, names), accept);
}

Schema Schema::exactly(const Schema& schema, Value value, std::string expected) {
  const auto accept = [schema, value = std::move(value)](const Value& given) {
    std::optional<Value> canonical = schema.accept(given);
    return canonical == value ? canonical : std::nullopt;
  };
  return scalar(std::move(expected), accept);
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

Schema Schema::keyed(Key key, Schema element, const std::vector<std::string>& mounted) {
  const Value empty = element.empty();
  return slots(std::move(key), std::move(element), mounted, empty);
}

Schema Schema::slots(Key key, Schema element, const std::vector<std::string>& keys,
                     const Value& initial) {
  Schema schema(Kind::keyed, "an object");
  schema.key_ = std::make_shared<const Key>(std::move(key));
  schema.element_ = std::make_shared<const Schema>(std::move(element));
  for (const std::string& always : keys) schema.mounted_.push_back({always, initial});
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

const Schema::Member* Schema::member(std::string_view name) const {
  for (const Member& member : *members_) {
    if (member.name == name) return &member;
  }
  return nullptr;
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
