// The leaves of a document, whichever it is: a native one is translated, an OpenConfig one is read.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Dorpel/Export.h"
#include "host/openconfig/LeafText.h"
#include "host/openconfig/Subtree.h"
#include "host/openconfig/View.h"

namespace QOS_EXPORT host {

struct LeavesOfText {
  std::vector<LeafText> leaves;     // by the bytes of their paths
  std::vector<std::string> faults;  // a line for each, with the file; then the leaves mean nothing
  std::vector<std::string> warnings;  // likewise, for each value that OpenConfig can't hold
};

// A document that has `openconfig-qos:qos` is an OpenConfig one. A native one with a comment that
// ends the process is a fault and is not translated; one that a root raises over is a fault, too,
// since its model is not whole. `file` is the name for the lines.
LeavesOfText leavesOfText(const std::string& file, std::string_view text, const ViewOptions& view,
                          const Subtree& only);

}  // namespace host
