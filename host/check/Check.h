// What `check` finds in a native document that can be read.
#pragma once

#include <vector>

#include "host/CommentFaults.h"
#include "host/Native.h"
#include "host/check/Finding.h"

namespace host {

// All that is lost or left hanging when the native objects are translated from nothing, in the order
// of the places, which is that of their tokens. No two are the same.
std::vector<Finding> findingsOf(const Native& native);

// What a comment that ends the process is found to be.
Finding findingOf(const BadComment& comment);

}  // namespace host
