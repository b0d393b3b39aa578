#include "gnmi/Request.h"

#include <algorithm>
#include <string>

#include "gnmi/Refused.h"
#include "host/Text.h"

namespace server {
namespace {

using grpc::StatusCode;
using host::quoted;

constexpr std::string_view openconfig = "OpenConfig working group";

// The augmenting module has its revision for a version.
constexpr ServedModel qos{"openconfig-qos", openconfig, "2.2.0"};
constexpr ServedModel qosTypes{"openconfig-qos-types", openconfig, "1.0.1"};
constexpr ServedModel interfaces{"openconfig-interfaces", openconfig, "3.8.1"};
constexpr ServedModel augments{"qosoc-augments", "The qosoc project", "2026-11-22"};

[[noreturn]] void refuseExtension(const char* name) {
  throw Refused(StatusCode::UNIMPLEMENTED, std::string("extension.") + name + ": it is not served");
}

}  // namespace

std::vector<ServedModel> servedModels(const host::View& view) {
  std::vector<ServedModel> served{qos, qosTypes};
  if (view.options().interfaceRef) served.push_back(interfaces);
  if (view.options().augments) served.push_back(augments);
  return served;
}

Wire::Encoding encodingOf(gnmi::Encoding encoding) {
  switch (encoding) {
    case gnmi::JSON:
      return Wire::Encoding::json;
    case gnmi::JSON_IETF:
      return Wire::Encoding::jsonIetf;
    case gnmi::PROTO:
      return Wire::Encoding::proto;
    default:
      break;
  }
  const std::string name = gnmi::Encoding_Name(encoding);
  throw Refused(StatusCode::UNIMPLEMENTED,
                "encoding: " + (name.empty() ? std::to_string(encoding) : name) +
                    " is not served; JSON, JSON_IETF and PROTO are");
}

std::size_t depthOf(const Extensions& extensions) {
  std::size_t depth = 0;
  for (const gnmi_ext::Extension& extension : extensions) {
    if (extension.has_history()) refuseExtension("history");
    if (extension.has_master_arbitration()) refuseExtension("master_arbitration");
    if (extension.has_depth()) depth = extension.depth().level();
  }
  return depth;
}

void checkModels(const Models& asked, std::string_view field, const host::View& view) {
  const auto served = servedModels(view);
  for (int i = 0; i < asked.size(); ++i) {
    const gnmi::ModelData& model = asked[i];
    const auto isIt = [&](const ServedModel& known) {
      return known.name == model.name() &&
             (model.version().empty() || known.version == model.version());
    };
    if (std::any_of(served.begin(), served.end(), isIt)) continue;
    throw Refused(StatusCode::UNIMPLEMENTED,
                  std::string(field) + '[' + std::to_string(i) + "]: " + quoted(model.name()) +
                      (model.version().empty() ? "" : " of version " + quoted(model.version())) +
                      " is not served");
  }
}

}  // namespace server
