// What all requests have: encodings, models, extensions.
#pragma once

#include <gnmi.pb.h>

#include <string_view>
#include <vector>

#include "gnmi/Wire.h"

namespace server {

// A published module whose leaves are served.
struct ServedModel {
  std::string_view name;
  std::string_view organization;
  std::string_view version;
};
std::vector<ServedModel> servedModels(const host::View& view);

// Throws: Refused for one that isn't served.
Wire::Encoding encodingOf(gnmi::Encoding encoding);

using Extensions = google::protobuf::RepeatedPtrField<gnmi_ext::Extension>;
// How many elements below a path leaves may stand; 0 for any number. What isn't known is ignored.
// Throws: Refused for an extension that would change what the answer means.
std::size_t depthOf(const Extensions& extensions);

using Models = google::protobuf::RepeatedPtrField<gnmi::ModelData>;
// Throws: Refused when one isn't served. `field` is their name in messages.
void checkModels(const Models& models, std::string_view field, const host::View& view);

}  // namespace server
