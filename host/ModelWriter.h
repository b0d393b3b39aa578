// The `model` format: the exact output records, every field, so that what is absent differs from
// what is present with default values. ModelReader.h reads it back.
#pragma once

#include <string>

#include "Dorpel/Export.h"
#include "host/JsonWriter.h"
#include "host/Model.h"

namespace QOS_EXPORT host {

// With a sink, that gets the text, and the result is empty.
std::string modelJson(const Model& model, Layout layout, const TextSink& sink = nullptr);

// The same as one value of a text.
void writeModel(JsonWriter& out, const Model& model);

}  // namespace host
