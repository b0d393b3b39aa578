// A part of the tree, by the path of the node at its top: what `--only` shows.
#pragma once

#include <string>
#include <string_view>

#include "Dorpel/Export.h"

namespace QOS_EXPORT host {

class View;

class Subtree {
 public:
  // How a node lies to the subtree.
  enum class Relation { within, above, apart };

  // The whole tree.
  Subtree() = default;
  // A path as gNMI writes it. "/" is the whole tree; the path may end at a container, at a list
  // without its key, which is all of its entries, at an entry or at a leaf.
  // Throws: Fault for a path that names no node.
  explicit Subtree(std::string_view path);

  bool isAll() const { return path_.empty(); }
  // The path, "" for the whole tree.
  const std::string& path() const { return path_; }

  // Whether a view has leaves there, in some model.
  bool isShown(const View& view) const;

  // Of a node's path, with all keys. A path that another one merely begins with is no ancestor.
  Relation relation(std::string_view path) const;
  // Whether it is the top or below it.
  bool within(std::string_view path) const { return relation(path) == Relation::within; }
  // The subtree's top above a node within: its path; where that is a list, the path of the entry.
  std::string_view topAbove(std::string_view path) const;

 private:
  std::string path_;
};

}  // namespace host
