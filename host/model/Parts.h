// The parts of an output model in the `model` format, one for each top-level member.
#pragma once

#include <span>
#include <string_view>

#include "host/JsonWriter.h"
#include "host/Model.h"
#include "host/Schema.h"

namespace host {

struct ModelPart {
  std::string_view name;
  Schema (*schema)();
  // Reads one entry of a collection, or a part that is none as a whole, with its name as the key.
  void (*entryIs)(const Model& model, const Rok::String& key, const Value& value);
  void (*write)(JsonWriter& out, const Model& model);
  // Whether a collection has an entry.
  bool (*has)(const Model& model, const Rok::String& key);
};

// All of them, in the order of their names.
std::span<const ModelPart> modelParts();

}  // namespace host
