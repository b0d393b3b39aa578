// The output of a device as the model that a feed follows.
#pragma once

#include "host/Model.h"

namespace Bench {

// Of any device of EventKinds.h. Requires: it was started.
template <class Device>
host::Model outputOf(const Device& device);

}  // namespace Bench
