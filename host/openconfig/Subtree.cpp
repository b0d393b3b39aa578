#include "host/openconfig/Subtree.h"

#include "host/Fault.h"
#include "host/Nearest.h"
#include "host/Text.h"
#include "host/openconfig/LeafPath.h"
#include "host/openconfig/NodeTree.h"

namespace host {
namespace {

// Whether `path` is `top` or below it.
bool isBelow(std::string_view path, std::string_view top) {
  if (!path.starts_with(top)) return false;
  return path.size() == top.size() || top.empty() || path[top.size()] == '/' ||
         path[top.size()] == '[';
}

// The names of a path's elements.
std::string withoutKeys(std::string_view path) {
  std::string names;
  bool isInKey = false;
  for (std::size_t i = 0; i < path.size(); ++i) {
    if (isInKey && path[i] == '\\') {
      ++i;
    } else if (isInKey) {
      isInKey = path[i] != ']';
    } else if (path[i] == '[') {
      isInKey = true;
    } else {
      names += path[i];
    }
  }
  return names;
}

// `around` is the path of what holds the kinds; all are without keys.
bool hasRowWithin(const View& view, std::span<const RecordKind* const> kinds,
                  const std::string& around, const std::string& top) {
  return std::any_of(kinds.begin(), kinds.end(), [&](const RecordKind* kind) {
    std::string path = around;
    if (kind->parent == nullptr) appendBelow(path, kind->root->name);
    appendBelow(path, kind->path);
    const auto rows = view.rows(*kind);
    return std::any_of(rows.begin(), rows.end(),
                       [&](const View::Row& row) { return isBelow(path + '/' + row.path, top); }) ||
           hasRowWithin(view, view.children(*kind), path, top);
  });
}

// Reads a path from front to end and writes it as this program does.
class Parser {
 public:
  explicit Parser(std::string_view text) : rest_(text) {}

  std::string parse() {
    if (!rest_.starts_with('/')) refuse("a path begins with \"/\"");
    if (rest_ == "/") return {};
    while (!rest_.empty()) element();
    return std::move(path_);
  }

 private:
  void element() {
    if (node_->list != nullptr && !hasKey_) {
      refuse("the key [" + std::string(node_->list->key) + "=...] is missing");
    }
    rest_.remove_prefix(1);
    const std::string_view name = rest_.substr(0, rest_.find_first_of("/["));
    rest_.remove_prefix(name.size());
    const Node* child = node_->child(name);
    if (child == nullptr && node_ == &nodeTree()) child = rootNode(name);
    if (child == nullptr) {
      refuse("there is no element " + quoted(name) + " here" +
             didYouMean(name, node_->childNames()));
    }
    node_ = child;
    appendBelow(path_, child->name);
    hasKey_ = false;
    while (rest_.starts_with('[')) key();
  }

  void key() {
    const std::size_t equals = rest_.find_first_of("=]");
    if (equals == std::string_view::npos || rest_[equals] == ']') refuse("expected [KEY=VALUE]");
    const std::string_view name = rest_.substr(1, equals - 1);
    if (node_->list == nullptr || hasKey_ || name != node_->list->key) {
      refuse("there is no key " + quoted(name) + " here");
    }
    rest_.remove_prefix(equals + 1);
    const std::string text = value();
    appendKey(path_, name, text);
    hasKey_ = true;
  }

  // Up to the bracket that closes.
  std::string value() {
    std::string value;
    for (;;) {
      const std::size_t plain = rest_.find_first_of("]\\");
      if (plain == std::string_view::npos) refuse("a \"]\" is missing");
      value += rest_.substr(0, plain);
      rest_.remove_prefix(plain);
      if (rest_.front() == ']') break;
      if (rest_.size() < 2 || (rest_[1] != ']' && rest_[1] != '\\')) {
        refuse(R"(a "\" in a key stands before "]" or "\")");
      }
      value += rest_[1];
      rest_.remove_prefix(2);
    }
    rest_.remove_prefix(1);
    if (!rest_.empty() && rest_.front() != '/' && rest_.front() != '[') {
      refuse("expected \"/\" behind the key, not " + quoted(rest_));
    }
    return value;
  }

  [[noreturn]] void refuse(const std::string& reason) const {
    throw Fault(path_.empty() ? "/" : shown(path_), reason);
  }

  const Node* node_ = &nodeTree();
  std::string_view rest_;
  std::string path_;  // of the node
  bool hasKey_ = false;
};

}  // namespace

Subtree::Subtree(std::string_view path) : path_(Parser(path).parse()) {}

bool Subtree::isShown(const View& view) const {
  return hasRowWithin(view, view.outermost(), "", withoutKeys(path_));
}

Subtree::Relation Subtree::relation(std::string_view path) const {
  if (isBelow(path, path_)) return Relation::within;
  return isBelow(path_, path) ? Relation::above : Relation::apart;
}

std::string_view Subtree::topAbove(std::string_view path) const {
  std::size_t end = path_.size();
  if (end == path.size() || path[end] != '[') return path.substr(0, end);
  while (path[end] != ']') end += path[end] == '\\' ? 2 : 1;
  return path.substr(0, end + 1);
}

}  // namespace host
