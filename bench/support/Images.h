// What a feed keeps of the model that it follows.
#pragma once

#include <cstddef>

namespace Bench {

// Bytes a leaf, of so many terms with a DSCP and a target group each: records, their index and what
// they hold, but no text that the model holds, too.
double imageBytes(std::size_t terms);

}  // namespace Bench
