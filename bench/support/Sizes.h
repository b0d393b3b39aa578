// The numbers of objects that devices are measured at.
#pragma once

#include <cstddef>
#include <vector>

namespace Bench {

// 1,000 to 1,000,000 by tens; in a quick run 1,000 and 100,000.
const std::vector<std::size_t>& sizes();
bool isQuick();
// Of the native document that is read.
std::size_t documentMegabytes();

// Before anything asks for the sizes.
void quickIs();

}  // namespace Bench
