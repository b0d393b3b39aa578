// Reads the output model of an earlier run, in the format that ModelWriter.h writes.
#pragma once

#include <string>
#include <string_view>

#include "host/Model.h"

namespace host {

// Reads a model into an empty one. Members may be left out; they are then absent or default.
// Throws: Fault; then part of the model may be read.
void readModel(const std::string& path, const Model& model);
void readModelText(std::string_view text, const Model& model);

}  // namespace host
