// The version of the library and of the program.
#pragma once

#include <string_view>

#include "Dorpel/Export.h"

namespace QOS_EXPORT host {

std::string_view version();

}  // namespace host
