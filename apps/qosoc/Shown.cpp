#include "Shown.h"

namespace qosoc {

Shown::Shown(const Arguments& arguments)
    : view{.augments = !arguments.has("--no-augments"),
           .state = arguments.has("--state"),
           .interfaceRef = arguments.has("--interface-ref")} {
  for (const char* name : {"--no-augments", "--state", "--interface-ref"}) {
    if (option.empty() && arguments.has(name)) option = name;
  }
}

}  // namespace qosoc
