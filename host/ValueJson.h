// Values as a document spells them: bytes by their names, without what is as when it is left out.
#pragma once

#include <string>

#include "host/JsonWriter.h"
#include "host/Schema.h"
#include "host/Value.h"

namespace host {

// Requires: the value is canonical and fits the schema.
void writeValue(JsonWriter& out, const Value& value, const Schema& schema);
// The same as a text, in one line.
std::string valueJson(const Value& value, const Schema& schema);

}  // namespace host
