// A benchmark that measures something wrong says so and ends.
#pragma once

#include <string_view>

namespace Bench {

// Ends the process with the message unless `right`.
void require(bool right, std::string_view message);

}  // namespace Bench
