// The parts of the table of exclusions.
#pragma once

#include <span>

#include "tests/days/Exclusions.h"

namespace days {

std::span<const Exclusion> startExclusions();
std::span<const Exclusion> classifierExclusions();
std::span<const Exclusion> forwardingGroupExclusions();
std::span<const Exclusion> queueExclusions();
std::span<const Exclusion> bindingExclusions();
std::span<const Exclusion> attachmentExclusions();
std::span<const Exclusion> profileExclusions();

}  // namespace days
