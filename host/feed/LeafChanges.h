// What a commit changed, leaf by leaf, as one consumer sees it.
#pragma once

#include <string>
#include <vector>

#include "Dorpel/Export.h"
#include "host/openconfig/Subtree.h"
#include "host/openconfig/View.h"

namespace QOS_EXPORT host {

// A leaf that came or changed.
struct LeafUpdate {
  std::string path;
  LeafType type;
  LeafValue value;  // it is there, and a text is its own
};

struct LeafChanges {
  // The updates are all leaves that there are; what was known before is void.
  bool isWhole = false;
  // The nodes that went, each the highest one: no leaf is left at it or below. No node is above the
  // outermost entry of a list, and outside lists none is above a child of the root. In bytewise
  // order; they go before the updates come.
  std::vector<std::string> deleted;
  // The leaves that came or changed, in bytewise order of their paths.
  std::vector<LeafUpdate> updated;
};

// Which leaves a consumer wants.
struct LeafRequest {
  ViewOptions view = {};
  Subtree only = {};
  // Gets a line for what the document can't hold, each once.
  Warn warn = nullptr;
};

}  // namespace host
