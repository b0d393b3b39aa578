#include "host/JsonSchema.h"

#include <functional>

#include "host/JsonWriter.h"
#include "host/Sections.h"
#include "host/Text.h"
#include "host/ValueJson.h"

namespace host {
namespace {

// Requires: nothing in the schema may be null, and it has no list.
class JsonSchemaWriter {
 public:
  std::string document(const Schema& schema) {
    out_.beginObject();
    text("$schema", "https://json-schema.org/draft/2020-12/schema");
    text("title", "Native QoS configuration of a network device");
    members(schema);
    out_.endObject();
    return out_.take();
  }

 private:
  using Below = std::function<void()>;

  void members(const Schema& schema) {
    switch (schema.kind()) {
      case Schema::Kind::record:
        return record(schema);
      case Schema::Kind::keyed:
        return collection(schema);
      case Schema::Kind::set:
      case Schema::Kind::list:
        return set(schema);
      case Schema::Kind::scalar:
        return scalar(schema.scalar());
    }
  }

  void record(const Schema& schema) {
    text("type", "object");
    object("properties", [&] {
      for (const Schema::Member& member : schema.members()) {
        object(member.name, [&] {
          members(member.schema);
          initial(member);
        });
      }
    });
    boolean("additionalProperties", false);
  }

  // What a scalar is when it is left out.
  void initial(const Schema::Member& member) {
    if (!member.initial || member.schema.kind() != Schema::Kind::scalar) return;
    out_.key("default");
    writeValue(out_, *member.initial, member.schema);
  }

  void collection(const Schema& schema) {
    text("type", "object");
    if (!schema.key().pattern.empty()) {
      object("propertyNames", [&] {
        text("description", schema.key().expected);
        text("pattern", schema.key().pattern);
      });
    }
    object("additionalProperties", [&] { members(schema.element()); });
  }

  void set(const Schema& schema) {
    text("type", "array");
    boolean("uniqueItems", true);
    object("items", [&] { members(schema.element()); });
  }

  void scalar(const Scalar& scalar) {
    switch (scalar.type) {
      case Scalar::Type::number:
        return scalar.names.empty() ? number(scalar) : namedNumber(scalar);
      case Scalar::Type::real:
        return text("type", "number");
      case Scalar::Type::boolean:
        return text("type", "boolean");
      case Scalar::Type::text:
        return text("type", "string");
    }
  }

  void number(const Scalar& scalar) {
    text("type", "integer");
    out_.key("minimum");
    out_.number(0);
    out_.key("maximum");
    out_.number(scalar.max);
  }

  void namedNumber(const Scalar& scalar) {
    array("anyOf", [&] {
      element([&] { array("enum", [&] { texts(scalar.names); }); });
      element([&] { number(scalar); });
      if (!scalar.isDecimalTaken) return;
      element([&] {
        text("type", "string");
        text("pattern", "^(?:" + decimalPattern(scalar.max) + ")$(?!\\n)");
      });
    });
  }

  void texts(std::span<const Name> names) {
    for (const Name& name : names) out_.text(name.text);
  }
  void text(std::string_view name, std::string_view value) {
    out_.key(name);
    out_.text(value);
  }
  void boolean(std::string_view name, bool value) {
    out_.key(name);
    out_.boolean(value);
  }
  void object(std::string_view name, const Below& below) {
    out_.key(name);
    element(below);
  }
  void element(const Below& below) {
    out_.beginObject();
    below();
    out_.endObject();
  }
  void array(std::string_view name, const Below& below) {
    out_.key(name);
    out_.beginArray();
    below();
    out_.endArray();
  }

  JsonWriter out_{Layout::pretty};
};

}  // namespace

std::string nativeJsonSchema() { return JsonSchemaWriter().document(nativeSchema()); }

}  // namespace host
