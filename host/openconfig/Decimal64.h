// Real numbers in leaves of the YANG type decimal64.
#pragma once

#include <optional>
#include <string>

namespace host {

// The decimal number that stands for `v` and no other; nothing when it has more digits than a leaf
// with nine behind the point has, before the point or behind it.
std::optional<std::string> decimal64(double v);

}  // namespace host
