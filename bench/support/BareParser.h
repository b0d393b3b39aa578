// The parser of the host's readers by itself.
#pragma once

#include <cstdio>

namespace Bench {

// Parses a document by the flags and the stream of our readers, with a handler that does nothing.
void parseBarely(std::FILE* file);

}  // namespace Bench
