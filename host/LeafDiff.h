// The difference between two lists of leaves, each in bytewise order of its paths.
#pragma once

#include <string>
#include <vector>

#include "Dorpel/Export.h"
#include "host/openconfig/LeafText.h"
#include "host/openconfig/Subtree.h"

namespace QOS_EXPORT host {

// A leaf that differs. Without `before` it is there in the second list alone, without `after` in the
// first. Both point into the lists.
struct LeafChange {
  const LeafText* before;
  const LeafText* after;
};

// In the order of the paths.
std::vector<LeafChange> leafChanges(const std::vector<LeafText>& before,
                                    const std::vector<LeafText>& after);

// "- PATH VALUE", "+ PATH VALUE" or "~ PATH OLD -> NEW", as one line.
std::string changeLine(const LeafChange& change);

// The nodes whose deletion takes away what went, sorted: of each leaf that went, the highest
// ancestor or itself that has leaves before and none after, but no node above an outermost entry of
// a list, outside lists none above the children of the root, and none above the subtree whose leaves
// the lists have.
std::vector<std::string> deletedNodes(const std::vector<LeafChange>& changes,
                                      const std::vector<LeafText>& after, const Subtree& only = {});

// {"delete":[PATH,...],"update":{PATH:VALUE,...}}, in one line without its end.
std::string changesJson(const std::vector<LeafChange>& changes, const std::vector<LeafText>& after,
                        const Subtree& only = {});

}  // namespace host
