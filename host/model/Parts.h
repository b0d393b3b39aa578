// The parts of an output model in the `model` format, one for each top-level member. Each lives in
// a file of its own and is entered in the table of Parts.cpp.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/JsonWriter.h"
#include "host/Model.h"
#include "host/Schema.h"
#include "host/model/Codec.h"

namespace host {

struct ModelPart {
  std::string_view name;
  Schema schema;
  // Reads one entry of a collection, or a part that is none as a whole, with its name as the key.
  std::function<void(const Model& model, const Rok::String& key, const Value& value)> entryIs;
  std::function<void(JsonWriter& out, const Model& model)> write;
  // Whether a collection has an entry.
  std::function<bool(const Model& model, const Rok::String& key)> has = nullptr;
};

// A directory of the model.
template <class Dir>
ModelPart modelPart(std::string_view name, Rok::Ptr<Dir> Model::*dir,
                    const Collection<Dir>& entries) {
  return {
      name, entries.schema,
      [=](const Model& model, const Rok::String& key, const Value& value) {
        entries.entryIs(*(model.*dir), key, value);
      },
      [=](JsonWriter& out, const Model& model) { entries.write(out, *(model.*dir)); },
      [=](const Model& model, const Rok::String& key) { return entries.has(*(model.*dir), key); }};
}

// All of them, in the order of their names.
const std::vector<ModelPart>& modelParts();

ModelPart classifiersPart();
ModelPart forwardingGroupsPart();
ModelPart interfacesPart();
ModelPart pfcPart();
ModelPart queueManagementProfilesPart();
ModelPart queuesPart();
ModelPart schedulerPoliciesPart();

}  // namespace host
