// The clock of all times.
#pragma once

namespace Bench {

// The processor time of this thread, in seconds: unlike the time on the wall it doesn't grow when
// the machine has something else to do.
double threadSeconds();

}  // namespace Bench
