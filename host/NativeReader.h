// Reads the native document into native objects.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include "Dorpel/Export.h"
#include "host/Fault.h"
#include "host/Native.h"

namespace QOS_EXPORT host {

// Mounts a native document. Requires: nothing but the mounted entries is there.
// Throws: Refusal; then part of the document may be mounted.
void readNative(const std::string& path, const Native& native);
void readNative(std::FILE* file, const Native& native);  // that is open, and stays so
void readNativeText(std::string_view text, const Native& native);

}  // namespace host
