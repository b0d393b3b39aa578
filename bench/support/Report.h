// What a run found, for people: the goals on the terminal, all tables as a page, and what the
// plots are drawn from.
#pragma once

#include <iosfwd>
#include <string>

#include "support/Comparisons.h"

namespace Bench {

// One line a claim.
void printVerdicts(std::ostream& out, const Figures& figures);

// Writes results.md, and times.dat and instructions.dat for plot.gp, into a folder that is there.
void writeReport(const std::string& folder, const Comparisons& comparisons, const Figures& figures);

}  // namespace Bench
