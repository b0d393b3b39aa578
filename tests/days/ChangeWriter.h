// Writes the change lines of a day: what an engineer, a generator of configuration or a careless
// script would do next to the device as it stands.
//
// Names come from a small stock, so that they meet: derived names and near misses, interfaces with
// one short name, queues of one id. Values go to the bounds of their fields, and now and then past
// what an output record can hold. What ends a process by design, a comment with a value of the wrong
// type, is in spoiled days alone.
#pragma once

#include <string>
#include <vector>

#include "host/Native.h"
#include "tests/days/Step.h"

namespace days {

// One line: a patch of one to three operations. A few lines are refused, as in life.
std::string changeLine(const Step& step, Focus focus, const host::Native& native, Values values);

// The lines that remove everything, a section at a time, in an order that the step chooses.
std::vector<std::string> closingLines(const Step& step);

}  // namespace days
