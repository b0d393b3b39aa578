// Reads the native document into native objects.
#pragma once

#include <string>
#include <string_view>

#include "host/Fault.h"
#include "host/Native.h"

namespace host {

// Mounts a native document. Requires: nothing but the mounted entries is there.
// Throws: Refusal; then part of the document may be mounted.
void readNative(const std::string& path, const Native& native);
void readNativeText(std::string_view text, const Native& native);

}  // namespace host
