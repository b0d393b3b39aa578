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
    : view{.augments = !arguments.has(noAugmentsOption.name),
           .state = arguments.has(stateOption.name),
           .interfaceRef = arguments.has(interfaceRefOption.name)} {
  for (const Option& one : {onlyOption, noAugmentsOption, stateOption, interfaceRefOption}) {
    if (option.empty() && arguments.has(one.name)) option = one.name;
  }
  if (const auto path = arguments.value(onlyOption.name)) only = subtree(*path);
}

}  // namespace qosoc
