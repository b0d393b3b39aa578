#include "host/ValueJson.h"

#include <algorithm>

namespace host {
namespace {

void writeScalar(JsonWriter& out, const Value& value, const Schema& schema) {
  if (value.isNull()) out.null();
  if (const auto* v = value.as<bool>()) out.boolean(*v);
  if (const auto* v = value.as<double>()) out.real(*v);
  if (const auto* v = value.as<Rok::String>()) out.text(*v);
  if (const auto* v = value.as<std::uint64_t>()) {
    const Name* name = schema.nameOf(*v);
    name != nullptr ? out.text(name->text) : out.number(*v);
  }
}

void writeMember(JsonWriter& out, const Rok::String& name, const Member& member,
                 const Schema& schema) {
  const Value* initial = schema.initial(member.key);
  if (initial != nullptr && member.value == *initial) return;
  out.key(name);
  writeValue(out, member.value, schema.below(member.key));
}

void writeRecord(JsonWriter& out, const Value& value, const Schema& schema) {
  for (const Schema::Member& member : schema.members()) {
    const Value* found = value.find(member.name);
    if (found != nullptr) writeMember(out, member.name, {member.name, *found}, schema);
  }
}

void writeCollection(JsonWriter& out, const Value& value, const Schema& schema) {
  const Key& key = schema.key();
  Value::Object entries = value.object();
  std::sort(entries.begin(), entries.end(),
            [&](const Member& a, const Member& b) { return key.isBefore(a.key, b.key); });
  for (const Member& entry : entries) writeMember(out, key.spelled(entry.key), entry, schema);
}

}  // namespace

void writeValue(JsonWriter& out, const Value& value, const Schema& schema) {
  if (const auto* list = value.as<Value::List>()) {
    out.beginArray();
    for (const Value& element : *list) writeScalar(out, element, schema.element());
    return out.endArray();
  }
  if (value.as<Value::Object>() == nullptr) return writeScalar(out, value, schema);
  out.beginObject();
  schema.kind() == Schema::Kind::record ? writeRecord(out, value, schema)
                                        : writeCollection(out, value, schema);
  out.endObject();
}

std::string valueJson(const Value& value, const Schema& schema) {
  JsonWriter out(Layout::compact);
  writeValue(out, value, schema);
  return out.take();
}

}  // namespace host
