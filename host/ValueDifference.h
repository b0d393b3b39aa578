// Where two values of one schema differ, for messages.
#pragma once

#include <optional>
#include <string>

#include "host/Schema.h"
#include "host/Value.h"

namespace host {

// The first place at which they differ, in bytewise order of the keys, with both values: "expected 40,
// and 30 is there", behind "at POINTER: " below the values themselves. Nothing when they are equal.
// Requires: both are canonical and fit the schema.
std::optional<std::string> firstDifference(const Value& expected, const Value& found,
                                           const Schema& schema);

}  // namespace host
