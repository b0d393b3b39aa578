// What a run found, for people: the goals on the terminal, and a page: what to expect, all tables
// behind it, and at its end the goals that are not met. Beside the page, what the plots are drawn
// from.
#pragma once

#include <iosfwd>
#include <string>

#include "support/Comparisons.h"

namespace Bench {

// One line a claim.
void printVerdicts(std::ostream& out, const Figures& figures);

void writePage(std::ostream& out, const Origin& origin, const Comparisons& comparisons,
               const Figures& figures);

// Writes the page, results.md; figures.txt, of which it can be written again; times.dat and
// instructions.dat for plot.gp. Into a folder that is there.
void writeReport(const std::string& folder, const Origin& origin, const Comparisons& comparisons,
                 const Figures& figures);

}  // namespace Bench
