// Writes a tree of containers, lists and leaves as JSON by RFC 7951. What is entered is written
// with the first leaf below it, or not at all, so that whoever writes just goes where there may be
// one:
//
//   tree.enterList("queue");
//   tree.enterEntry("name", "voice");
//   tree.moveTo(tree.depth(), "config");
//   tree.leaf("name", LeafType::string, "voice");  // [{"config":{"name":"voice"
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/JsonWriter.h"
#include "host/openconfig/Leaf.h"

namespace host {

class Tree {
 public:
  // The root is a container, which is there even when it is empty. With a sink, that gets the text.
  Tree(std::string_view root, Layout layout, const TextSink& sink = nullptr);
  // The whole text; empty with a sink.
  std::string end();

  // How many containers, lists and entries lead to where the tree stands.
  std::size_t depth() const { return levels_.size(); }
  // Leaves what is below `depth`, but for as many of the `containers` ("output/queues") as it leads
  // through, and enters the others. Containers that come again later are written again.
  void moveTo(std::size_t depth, std::string_view containers);
  void enterList(std::string_view name);
  void enterEntry(std::string_view key, std::string_view value);
  void leaveTo(std::size_t depth);

  // Requires: a value.
  void leaf(std::string_view name, LeafType type, const LeafValue& value);

  // The path of what is `depth` deep: "/root/queues/queue[name='voice']".
  std::string path(std::size_t depth) const;
  // An entry of the list in which the tree stands, as a part of a path.
  static std::string predicate(std::string_view key, std::string_view value);

 private:
  // A container; a list; or an entry of a list, which has a key in place of a name.
  struct Level {
    std::string_view name = {};
    bool isList = false;
    std::string_view key = {};
    std::string_view value = {};
  };

  void write();

  JsonWriter out_;
  std::vector<Level> levels_;
  std::size_t written_ = 0;  // so many of them
};

// Takes the first of the names that a path joins by slashes.
std::string_view takeName(std::string_view& path);
// The last of them, and what leads to it.
struct PathEnd {
  std::string_view containers;
  std::string_view name;
};
PathEnd pathEnd(std::string_view path);

}  // namespace host
