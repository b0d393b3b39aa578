// Which values a document may hold, as data: each section declares its schema, by which the host
// reads documents, checks changes and compares values.
//
//   Schema::keyed(
//       Key::named("a map type", mapTypes),
//       Schema::keyed(Key::name(),
//                     Schema::record({{"match", Schema::set(...), Value(Value::List())}})))
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/Value.h"

namespace host {

// A text that documents use for a native byte.
struct Name {
  std::string_view text;
  unsigned char number;
};

// The keys of a collection.
struct Key {
  std::string expected;  // "a map type: qos or a number from 0 to 255"
  // The canonical form of a text, a decimal for a named one; nothing for a text that is no such key. It
  // stands as long as that text.
  std::function<std::optional<std::string_view>(std::string_view text)> canonicalText;
  bool isNumber = false;             // canonical ones are decimals
  std::span<const Name> names = {};  // of numbers
  // A regular expression that finds something in the keys and in no other text, as ECMAScript and
  // Python read it. Empty where any text is a key.
  std::string pattern = {};

  // The same of a string. A key that is canonical shares its buffer.
  std::optional<Rok::String> canonical(const Rok::String& text) const;
  // What a message adds about a text that is no such key: the name that was probably meant.
  std::string hint(std::string_view text) const;
  // A canonical key as a document spells it: by its name, if it has one.
  Rok::String spelled(const Rok::String& canonical) const;
  // The order in which canonical keys are printed: that of numbers, or of bytes.
  bool isBefore(const Rok::String& a, const Rok::String& b) const;

  static Key name();
  // By name, or as the decimal of any byte.
  static Key named(std::string_view what, std::span<const Name> names);
  // The canonical decimal of a number from 0 to `max`.
  static Key number(std::string_view what, std::uint64_t max);
};

// What a scalar may be.
struct Scalar {
  enum class Type { number, real, boolean, text };
  Type type;
  std::uint64_t max = 0;                     // of a number
  std::span<const Name> names = {};          // texts that stand for numbers
  bool isDecimalTaken = false;               // as a text
  std::optional<Value> only = std::nullopt;  // no other value

  // The number that a text stands for, if one may stand here.
  std::optional<std::uint64_t> numberOf(std::string_view text) const;
};

class Schema {
 public:
  enum class Kind { scalar, set, list, keyed, record };
  struct Member;

  // A whole number from 0 to `max`.
  static Schema number(std::uint64_t max);
  static Schema real();
  static Schema boolean();
  static Schema text();
  // A byte by its name, as a number, or as a decimal.
  static Schema named(std::string_view what, std::span<const Name> names);
  // A byte by its name or as a number.
  static Schema nameOrNumber(std::string_view what, std::span<const Name> names);
  // One value of a scalar and no other.
  static Schema exactly(const Schema& schema, Value value, std::string expected);
  // An array without repeated values, whose order means nothing.
  static Schema set(Schema element);
  static Schema list(Schema element);
  // An object with any keys of a kind. The entries under `mounted` keys are always there.
  static Schema keyed(Key key, Schema element, const std::vector<Rok::String>& mounted = {});
  // An object with an entry under each of `keys`, which holds `initial` when it is left out.
  static Schema slots(Key key, Schema element, const std::vector<Rok::String>& keys,
                      const Value& initial);
  // Requires: at most 64 members.
  static Schema record(std::vector<Member> members);
  // The same or null.
  Schema orNull() const;
  // The same, as one native object: a write of it replaces the object in one step, and neither
  // changes nor removes the old one first.
  Schema whole() const;

  Kind kind() const { return kind_; }
  bool mayBeNull() const { return mayBeNull_; }
  bool isWhole() const { return isWhole_; }
  bool isObject() const { return kind_ == Kind::keyed || kind_ == Kind::record; }
  // What a message says that it expected here.
  const std::string& expected() const { return expected_; }
  // The names that can stand here: of a record its members, of a scalar those of numbers.
  std::vector<std::string_view> names() const;
  // What a message adds about a name that can't stand here: the one that was probably meant, and of a
  // record all.
  std::string hint(std::string_view name) const;

  const Scalar& scalar() const { return scalar_; }
  // Makes a scalar canonical. False for a value that can't stand here; it stays as it is.
  bool accept(Value& value) const;
  // The text that a document uses for a number here; null when it has none.
  const Name* nameOf(std::uint64_t number) const;
  // Of a set, a list or a collection.
  const Schema& element() const { return *element_; }
  const Key& key() const { return *key_; }
  const std::vector<Member>& members() const { return *members_; }
  // Null when there is no such member.
  const Member* member(std::string_view name) const;

  // Of an object: the schema of what stands under a key. Requires: such a key can be there.
  const Schema& below(std::string_view key) const;
  // Of an object: what stands under a key when it is left out. Null when nothing does; otherwise
  // something is always there.
  const Value* initial(std::string_view key) const;
  // Of an object: what it is when all is left out.
  Value empty() const;
  // Of a collection: the entries that are always there.
  const Value::Object& mounted() const { return mounted_; }

 private:
  Schema(Kind kind, std::string expected) : kind_(kind), expected_(std::move(expected)) {}
  static Schema scalar(std::string expected, Scalar scalar);

  Kind kind_;
  bool mayBeNull_ = false;
  bool isWhole_ = false;
  std::string expected_;
  Scalar scalar_{};
  std::shared_ptr<const Schema> element_;
  std::shared_ptr<const Key> key_;
  std::shared_ptr<const std::vector<Member>> members_;
  Value::Object mounted_;
};

struct Schema::Member {
  Rok::String name;
  Schema schema;
  // What it is when left out. Without it, a member that is left out is absent.
  std::optional<Value> initial = std::nullopt;
};

}  // namespace host
