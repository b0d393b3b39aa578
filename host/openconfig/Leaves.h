// The leaves of a model as a flat list: what flattening the document gives, key leaves included, and
// nothing else.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Dorpel/Export.h"
#include "host/Model.h"
#include "host/openconfig/LeafText.h"
#include "host/openconfig/Subtree.h"
#include "host/openconfig/View.h"

namespace QOS_EXPORT host {

// Gets a leaf. The value is good during the call alone.
using LeafVisit =
    std::function<void(const std::string& path, LeafType type, const LeafValue& value)>;
// Calls `visit` for each leaf within `only`, in the order of the document, and `warn` with a line
// for each value that a leaf can't hold.
void eachLeaf(const Model& model, const View& view, const LeafVisit& visit,
              const Warn& warn = nullptr, const Subtree& only = {});

// All of them in bytewise order of their paths, in which no two are the same.
std::vector<LeafText> leavesOf(const Model& model, const View& view, const Warn& warn = nullptr,
                               const Subtree& only = {});

}  // namespace host
