#include "Shown.h"

#include "host/Fault.h"

namespace qosoc {
namespace {

host::Subtree subtree(const std::string& path) {
  try {
    return host::Subtree(path);
  } catch (const host::Fault& fault) {
    throw UsageError(fault.inFile("--only"));
  }
}

}  // namespace

Shown::Shown(const Arguments& arguments)
    : view{.augments = !arguments.has("--no-augments"),
           .state = arguments.has("--state"),
           .interfaceRef = arguments.has("--interface-ref")} {
  for (const char* name : {"--only", "--no-augments", "--state", "--interface-ref"}) {
    if (option.empty() && arguments.has(name)) option = name;
  }
  if (const auto path = arguments.value("--only")) only = subtree(*path);
}

}  // namespace qosoc
