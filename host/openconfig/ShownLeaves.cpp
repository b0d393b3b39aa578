#include "host/openconfig/ShownLeaves.h"

#include "host/openconfig/Leaves.h"

namespace host {
namespace {

bool shows(const View& view, const Node& node) {
  const auto rows = view.rows(*node.kind);
  return std::any_of(rows.begin(), rows.end(),
                     [&](const View::Row& row) { return row.path == node.leaf->path; });
}

// Whether the leaf says where an interface is.
bool isReference(const Node& node) {
  return node.kind->root == &interfacesRoot ||
         node.kind->leaves[node.leaf->leaf].shown == Shown::withInterfaceRef;
}

// ".../config/x" of ".../state/x".
std::string mirroredPath(const std::string& path) {
  const std::size_t leaf = path.rfind('/');
  return path.substr(0, path.rfind('/', leaf - 1)) + "/config" + path.substr(leaf);
}

bool has(const std::vector<LeafText>& leaves, const std::string& path, const std::string& value) {
  const LeafText* found = findLeaf(leaves, path);
  return found != nullptr && found->value == value;
}

class Filter {
 public:
  Filter(const ReadLeaves& read, const ViewOptions& options)
      : options_(options), view_(options), widest_({options.augments, true, true}) {
    all_.reserve(read.leaves.size());
    for (const ReadLeaf& leaf : read.leaves) all_.push_back(leaf.leaf);
    sortLeaves(all_);
    if (options.interfaceRef) return;
    const Model model;
    for (const std::string& name : read.interfaces) model.interfaces->interfaceIs(name);
    references_ = leavesOf(model, widest_);
  }

  bool keeps(const ReadLeaf& read) const {
    const auto& [path, value] = read.leaf;
    if (shows(view_, *read.node)) return true;
    if (!shows(widest_, *read.node)) return false;
    if (!options_.state && read.node->leaf->isMirror && has(all_, mirroredPath(path), value)) {
      return false;
    }
    return options_.interfaceRef || !isReference(*read.node) || !has(references_, path, value);
  }

 private:
  const ViewOptions& options_;
  const View view_;
  const View widest_;  // all but what can't be shown at all
  std::vector<LeafText> all_;
  std::vector<LeafText> references_;  // what a document with references has for these interfaces
};

}  // namespace

std::vector<LeafText> shownLeaves(ReadLeaves read, const ViewOptions& options) {
  const View view(options);
  std::vector<LeafText> leaves;
  if (std::any_of(read.leaves.begin(), read.leaves.end(),
                  [&](const ReadLeaf& leaf) { return !shows(view, *leaf.node); })) {
    const Filter filter(read, options);
    std::erase_if(read.leaves, [&](const ReadLeaf& leaf) { return !filter.keeps(leaf); });
  }
  leaves.reserve(read.leaves.size());
  for (ReadLeaf& leaf : read.leaves) leaves.push_back(std::move(leaf.leaf));
  sortLeaves(leaves);
  return leaves;
}

}  // namespace host
