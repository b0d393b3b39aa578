#include "host/Version.h"

namespace host {

std::string_view version() { return QOS_VERSION; }

}  // namespace host
