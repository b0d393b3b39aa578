// Reads the output model of an earlier run, in the format that ModelWriter.h writes.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include "Dorpel/Export.h"
#include "host/Fault.h"
#include "host/Model.h"

namespace QOS_EXPORT host {

// Reads a model into an empty one. Members may be left out; they are then absent or default.
// Throws: Refusal; then part of the model may be read.
void readModel(const std::string& path, const Model& model);
void readModel(std::FILE* file, const Model& model);  // that is open, and stays so
void readModelText(std::string_view text, const Model& model);

}  // namespace host
