// Answers of Get.
#pragma once

#include <gnmi.pb.h>

#include <string>

#include "host/openconfig/View.h"
#include "host/publish/Store.h"

namespace server {

// The answer, as bytes: a notification for each path, all of one commit. By JSON and JSON_IETF each
// node that a path names is one value; by PROTO each of its leaves is.
// Throws: Refused, also for a path that names one node, which isn't there.
std::string getAnswer(const gnmi::GetRequest& request, const host::Store& store,
                      const host::View& view);

}  // namespace server
