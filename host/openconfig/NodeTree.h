// The nodes of the tree that the tables of leaves know: containers, lists and leaves, whatever the
// view. For what reads paths and documents from outside.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/openconfig/View.h"

namespace host {

struct Node {
  std::string name;                  // as paths have it, and below the roots documents, too
  std::string_view member;           // of a root: its name in documents
  std::size_t number = 0;            // among those below the same node: at most 63
  const RecordKind* list = nullptr;  // whose entries stand here
  const RecordKind* kind = nullptr;  // of a leaf: the record that has it
  const View::Row* leaf = nullptr;   // of a leaf
  std::vector<std::unique_ptr<Node>> children = {};

  // Null when there is none of that name.
  const Node* child(std::string_view name) const;
  std::vector<std::string_view> childNames() const;
};

// The node above the roots.
const Node& nodeTree();
// The root of that name in documents; null when there is none.
const Node* rootNode(std::string_view member);
std::vector<std::string_view> rootMembers();

}  // namespace host
