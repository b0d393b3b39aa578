// A saved state: the native document and the output model as they stood together. A start from it
// goes on as a restart does that begins with the two of them.
//
//   {"qosoc-save": 1, "native": {...}, "model": {...}}
//
// The number is the version of this form.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include "Dorpel/Export.h"
#include "host/Fault.h"
#include "host/JsonWriter.h"
#include "host/Model.h"
#include "host/Native.h"

namespace QOS_EXPORT host {

// With a sink, that gets the text, and the result is empty.
std::string savedStateJson(const Native& native, const Model& model, Layout layout,
                           const TextSink& sink = nullptr);

// Mounts a saved state. Requires: nothing but the mounted entries is there, and an empty model.
// Throws: Refusal; then part of the state may be mounted.
void readSavedState(const std::string& path, const Native& native, const Model& model);
void readSavedState(std::FILE* file, const Native& native, const Model& model);  // that is open
void readSavedStateText(std::string_view text, const Native& native, const Model& model);

}  // namespace host
