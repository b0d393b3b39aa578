// A document's value as JSON.
#pragma once

#include <string>

#include "host/JsonWriter.h"
#include "host/Value.h"

namespace days {

inline void write(host::JsonWriter& writer, const host::Value& value) {
  if (value.isNull()) writer.null();
  if (const auto* v = value.as<bool>()) writer.boolean(*v);
  if (const auto* v = value.as<std::uint64_t>()) writer.number(*v);
  if (const auto* v = value.as<double>()) writer.real(*v);
  if (const auto* v = value.as<Rok::String>()) writer.text(*v);
  if (const auto* list = value.as<host::Value::List>()) {
    writer.beginArray();
    for (const host::Value& element : *list) write(writer, element);
    writer.endArray();
  }
  if (const auto* object = value.as<host::Value::Object>()) {
    writer.beginObject();
    for (const host::Member& member : *object) {
      writer.key(member.key);
      write(writer, member.value);
    }
    writer.endObject();
  }
}

inline std::string valueText(const host::Value& value) {
  host::JsonWriter writer(host::Layout::compact);
  write(writer, value);
  return writer.take();
}

}  // namespace days
