#include "host/openconfig/NodeTree.h"

namespace host {
namespace {

// Makes what is missing on the way.
Node& nodeAt(Node& from, std::string_view path) {
  Node* node = &from;
  while (!path.empty()) {
    const std::string_view name = takeName(path);
    Node* next = const_cast<Node*>(node->child(name));
    if (next == nullptr) {
      const std::size_t number = node->children.size();
      next = node->children.emplace_back(std::make_unique<Node>()).get();
      next->name = name;
      next->number = number;
    }
    node = next;
  }
  return *node;
}

void add(Node& holder, const View& view, const RecordKind& kind) {
  Node& node = nodeAt(holder, kind.path);
  if (kind.isList()) node.list = &kind;
  for (const View::Row& row : view.rows(kind)) {
    Node& leaf = nodeAt(node, row.path);
    leaf.kind = &kind;
    leaf.leaf = &row;
  }
  for (const RecordKind* child : view.children(kind)) add(node, view, *child);
}

}  // namespace

const Node* Node::child(std::string_view wanted) const {
  for (const auto& child : children) {
    if (child->name == wanted) return child.get();
  }
  return nullptr;
}

const Node& nodeTree() {
  static const View view({.augments = true, .state = true, .interfaceRef = true});
  static const Node tree = [] {
    Node top;
    for (const RecordKind* kind : view.outermost()) {
      Node& root = nodeAt(top, kind->root->name);
      root.member = kind->root->member;
      add(root, view, *kind);
    }
    return top;
  }();
  return tree;
}

std::vector<std::string_view> Node::childNames() const {
  std::vector<std::string_view> names;
  for (const auto& child : children) names.push_back(child->name);
  return names;
}

const Node* rootNode(std::string_view member) {
  for (const auto& root : nodeTree().children) {
    if (root->member == member) return root.get();
  }
  return nullptr;
}

std::vector<std::string_view> rootMembers() {
  std::vector<std::string_view> members;
  for (const auto& root : nodeTree().children) members.push_back(root->member);
  return members;
}

}  // namespace host
