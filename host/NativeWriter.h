// Writes native objects as the document that readNative() reads back to the same state. It is for
// people: bytes have their names, and what the document would hold anyway is left out.
#pragma once

#include <string>

#include "Dorpel/Export.h"
#include "host/JsonWriter.h"
#include "host/Native.h"

namespace QOS_EXPORT host {

// With a sink, that gets the text, and the result is empty. What is held meanwhile is one setting,
// and the keys of the collections around it.
std::string nativeJson(const Native& native, Layout layout, const TextSink& sink = nullptr);

// The same as one value of a text.
void writeNative(JsonWriter& out, const Native& native);

}  // namespace host
