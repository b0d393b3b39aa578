// A node of the tree as one JSON value: the object of what is at it and below, from its records. The
// document has the same members, from the root on.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/JsonWriter.h"
#include "host/openconfig/RecordWalk.h"

namespace host {

// By RFC 7951: numbers of 64 bits are texts, names carry the module where it changes, and at the
// top. Plain: they are numbers, and neither names nor identities carry modules.
enum class JsonStyle { ietf, plain };

// Appends a value as compact JSON. Requires: it is there.
void appendLeaf(std::string& out, JsonStyle style, LeafType type, const LeafValue& value);
// The identity's own name, without its module.
std::string_view identityName(std::string_view identity);

class NodeJson {
 public:
  // `depth` is how many elements the node's path has.
  NodeJson(const View& view, JsonStyle style, std::size_t depth);

  // Records come in the order of a walk.
  // Requires: the rows lie below the node.
  void add(const RecordAt& at, RowSet rows);
  bool isEmpty() const { return isEmpty_; }
  // The object.
  std::string take();

 private:
  // An element of a path: a container, or an entry of a list.
  struct Step {
    std::string_view name;
    std::string_view module;  // that the name carries in the document; empty for none
    bool isEntry = false;
    std::string_view key = {};
  };
  // One that is open in the text.
  struct Open {
    std::string_view name;
    bool isEntry;
    std::string key;
  };

  void addSteps(const RecordKind& kind, std::span<const std::string_view> keys);
  void addStep(std::string_view name);
  void openTo(std::size_t depth);
  void open(const Step& step, std::size_t level);
  void closeTo(std::size_t level);
  void key(const Step& step, std::size_t level);
  std::string_view moduleAt(std::size_t level) const;

  const View& view_;
  const JsonStyle style_;
  const std::size_t depth_;
  JsonWriter out_{Layout::compact};
  bool isEmpty_ = true;
  std::vector<Step> steps_;  // to the leaf that is being written
  std::vector<Open> open_;   // below the node
  std::string text_;
};

}  // namespace host
