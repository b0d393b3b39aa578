// Reads the output model of an earlier run, in the format that ModelWriter.h writes.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "host/Model.h"
#include "host/Schema.h"
#include "host/SchemaReader.h"

namespace host {

// The schema of a whole model.
const Schema& modelSchema();

// Puts what is read by that schema into an empty model, as it is read. `model` must outlive it.
std::unique_ptr<EntrySink> modelSink(const Model& model);

// Reads a model into an empty one. Members may be left out; they are then absent or default.
// Throws: Refusal; then part of the model may be read.
void readModel(const std::string& path, const Model& model);
void readModel(std::FILE* file, const Model& model);  // that is open, and stays so
void readModelText(std::string_view text, const Model& model);

}  // namespace host
