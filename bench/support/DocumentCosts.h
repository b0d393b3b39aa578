// What it costs to read a native document, in programs of their own.
#pragma once

#include <string>

#include "support/Series.h"

namespace Bench {

// By the way of reading, "dom", "events", "parser", "shape", "read", "qosoc check", "qosoc check
// --shape", "qosoc translate" and "qosoc translate --feed": seconds, and the counter "peak bytes", the
// most memory that was there at once. The first five by the program `documents`; qosoc from its start to
// its end, both translations only `translations` times.
Measured documentCosts(const std::string& documents, const std::string& qosoc,
                       const std::string& file, std::size_t translations);

}  // namespace Bench
