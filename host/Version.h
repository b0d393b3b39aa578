// The version of the library and of the program.
#pragma once

#include <string_view>

#include "Dorpel/Export.h"

namespace QOS_EXPORT host {

// That of the library, as "0.1.0".
std::string_view version();

}  // namespace host
