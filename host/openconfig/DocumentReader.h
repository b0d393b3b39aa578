// Reads an OpenConfig document by the tables of leaves: RFC 7951 JSON, as this program and others
// write it. What the tables don't know is a fault, also where the published modules know it.
#pragma once

#include <string_view>
#include <vector>

#include "host/Fault.h"
#include "host/openconfig/LeafText.h"
#include "host/openconfig/Subtree.h"
#include "host/openconfig/View.h"

namespace host {

struct DocumentLeaves {
  std::vector<LeafText> leaves;  // by the bytes of their paths; values are canonical
  std::vector<Fault> faults;     // by path, with line and column; of many, the first
};

// The leaves of a document as a view has them. A leaf that the view doesn't show is none if it
// repeats what others say: a leaf below `state` the one below `config`, an `interface-ref` or an
// entry of /interfaces the interface. One that says something else is there in every view, except
// that of the augmenting module without `augments`.
//
// With faults, the leaves mean nothing.
DocumentLeaves readDocument(std::string_view text, const ViewOptions& shown);

// Whether a text is an object with a member `openconfig-qos:qos`, as far as it can be read.
bool isOpenConfig(std::string_view text);

}  // namespace host
