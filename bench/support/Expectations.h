// What a reader may expect, in plain figures: the first tables of a report.
#pragma once

#include <iosfwd>

#include "support/Figures.h"

namespace Bench {

// Rows and columns without a figure in this run are left out.
void writeExpectations(std::ostream& out, const Figures& figures);

}  // namespace Bench
