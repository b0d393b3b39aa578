// The leaves of a document that was read, as a view has them.
#pragma once

#include <string>
#include <vector>

#include "host/openconfig/LeafText.h"
#include "host/openconfig/NodeTree.h"

namespace host {

struct ReadLeaf {
  LeafText leaf;
  const Node* node;
};

struct ReadLeaves {
  std::vector<ReadLeaf> leaves;
  std::vector<std::string> interfaces;  // the keys of those below /qos
};

// Sorted. DocumentReader.h says what becomes of a leaf that the view doesn't show.
std::vector<LeafText> shownLeaves(ReadLeaves read, const ViewOptions& options);

}  // namespace host
