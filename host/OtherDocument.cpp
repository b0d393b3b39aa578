#include "host/OtherDocument.h"

#include <string>

namespace host {

Refusal ofOtherDocument(const Refusal& refusal, std::string_view openConfig) {
  for (const Fault& fault : refusal.faults()) {
    const auto is = [&](const std::string& reason) { return Refusal(fault.saying(reason)); };
    if (fault.place() == "/qosoc-save") return is("a saved state is given to --restore");
    if (fault.place() != "/openconfig-qos:qos") continue;
    return is("this is an OpenConfig document" + std::string(openConfig));
  }
  return refusal;
}

}  // namespace host
