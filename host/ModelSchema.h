// What reads the output model: its schema, and what takes the entries.
#pragma once

#include <memory>

#include "host/Model.h"
#include "host/Schema.h"
#include "host/SchemaReader.h"

namespace host {

// The schema of a whole model.
const Schema& modelSchema();

// Puts what is read by that schema into an empty model, as it is read. `model` must outlive it.
std::unique_ptr<EntrySink> modelSink(const Model& model);

}  // namespace host
