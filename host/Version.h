// The version of the library and of the program.
#pragma once

#include <string_view>

namespace host {

std::string_view version();

}  // namespace host
