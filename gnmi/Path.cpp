#include "gnmi/Path.h"

#include <algorithm>

#include "gnmi/Elements.h"
#include "gnmi/Refused.h"
#include "host/Nearest.h"
#include "host/Text.h"
#include "host/openconfig/LeafText.h"

namespace server {
namespace {

using host::Node;
using host::quoted;
using Top = Path::Top;
using grpc::StatusCode;

// ===== Names of elements, with modules and without

std::string_view moduleIn(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? std::string_view() : name.substr(0, colon);
}
std::string_view withoutModule(std::string_view name) { return name.substr(name.find(':') + 1); }

// The module of a node that stands below `way`.
std::string_view moduleOf(std::span<const Node* const> way, const Node& node) {
  if (const auto own = moduleIn(node.name); !own.empty()) return own;
  if (way.empty()) return moduleIn(node.member);
  return moduleOf(way.first(way.size() - 1), *way.back());
}

bool isCalled(std::span<const Node* const> way, const Node& node, std::string_view name) {
  if (withoutModule(node.name) != withoutModule(name)) return false;
  const std::string_view module = moduleIn(name);
  return module.empty() || module == moduleOf(way, node);
}

std::string shownWay(std::span<const Node* const> way) {
  std::string path;
  for (const Node* node : way) path += '/' + node->name;
  return path.empty() ? "/" : path;
}

// ===== Keys

bool canHold(const host::RecordKind::Row& leaf, const std::string& value) {
  if (leaf.type == host::LeafType::uint32) return host::decimal(value, 0xffffffffu).has_value();
  const auto names = leaf.limits.names;
  return names.empty() || std::find(names.begin(), names.end(), value) != names.end();
}

// Throws: Refused for what is no value of the key.
void checkValue(const host::RecordKind& list, const Element& element, const std::string& value) {
  const auto leaf = std::find_if(list.leaves.begin(), list.leaves.end(),
                                 [&](const auto& row) { return row.path == list.key; });
  if (canHold(*leaf, value)) return;
  throw Refused(StatusCode::INVALID_ARGUMENT, element.field + ".key[" + std::string(list.key) +
                                                  "]: " + quoted(value) + " is not " +
                                                  host::heldBy(leaf->type, leaf->limits));
}

bool hasKeysOf(const Element& element, const Node& node) {
  if (element.keys.empty()) return true;
  return node.list != nullptr && element.keys.size() == 1 &&
         element.keys.front().first == node.list->key;
}

// ===== From elements to nodes

// Takes element after element, from all nodes that those before lead to.
class Resolution {
 public:
  std::vector<Top> resolve(const std::vector<Element>& elements) {
    for (const Element& element : elements) {
      element.isAnyNumber() ? takeAnyNumber() : take(element);
    }
    dropCovered();
    return std::move(tops_);
  }

 private:
  static const Node& nodeOf(const Top& top) {
    return top.way.empty() ? host::nodeTree() : *top.way.back();
  }

  static Top below(const Top& top, const Node& node, KeyAsked key) {
    Top next = top;
    next.way.push_back(&node);
    if (node.list != nullptr) next.keys.push_back(std::move(key));
    return next;
  }

  void take(const Element& element) {
    std::vector<Top> next;
    for (const Top& top : tops_) {
      for (const auto& child : nodeOf(top).children) {
        if (!element.isAnyOne() && !isCalled(top.way, *child, element.name)) continue;
        if (hasKeysOf(element, *child)) next.push_back(below(top, *child, key(element, *child)));
      }
    }
    if (next.empty()) refuse(element);
    tops_ = std::move(next);
  }

  static KeyAsked key(const Element& element, const Node& node) {
    if (element.keys.empty() || element.keys.front().second == "*") return std::nullopt;
    const std::string& value = element.keys.front().second;
    checkValue(*node.list, element, value);
    return value;
  }

  // Also of what `...` before it reached: the same node again is dropped.
  void takeAnyNumber() {
    std::vector<Top> next;
    for (const Top& top : tops_) addAllBelow(top, next);
    tops_ = std::move(next);
    dropEqual();
  }
  static void addAllBelow(const Top& top, std::vector<Top>& all) {
    all.push_back(top);
    for (const auto& child : nodeOf(top).children) {
      addAllBelow(below(top, *child, std::nullopt), all);
    }
  }

  void dropEqual() {
    const auto order = [](const Top& a, const Top& b) {
      return std::tie(a.way, a.keys) < std::tie(b.way, b.keys);
    };
    std::sort(tops_.begin(), tops_.end(), order);
    tops_.erase(std::unique(tops_.begin(), tops_.end()), tops_.end());
  }

  static bool covers(const Top& a, const Top& b) {
    return a.way.size() <= b.way.size() && std::equal(a.way.begin(), a.way.end(), b.way.begin()) &&
           std::equal(a.keys.begin(), a.keys.end(), b.keys.begin(),
                      [](const KeyAsked& x, const KeyAsked& y) { return !x || x == y; });
  }

  // The shortest ways come first, so that what covers a node stands before it.
  void dropCovered() {
    std::stable_sort(tops_.begin(), tops_.end(),
                     [](const Top& a, const Top& b) { return a.way.size() < b.way.size(); });
    std::vector<Top> kept;
    for (Top& top : tops_) {
      const auto isCovered = [&](const Top& other) { return covers(other, top); };
      if (std::any_of(kept.begin(), kept.end(), isCovered)) continue;
      std::erase_if(kept, [&](const Top& other) { return covers(top, other); });
      kept.push_back(std::move(top));
    }
    tops_ = std::move(kept);
  }

  // Why an element leads nowhere: its key, if there are nodes of its name.
  [[noreturn]] void refuse(const Element& element) const {
    for (const Top& top : tops_) {
      for (const auto& child : nodeOf(top).children) {
        if (element.isAnyOne() || isCalled(top.way, *child, element.name)) {
          if (!element.keys.empty()) refuseKey(element, *child);
        }
      }
    }
    refuseName(element);
  }

  [[noreturn]] static void refuseKey(const Element& element, const Node& node) {
    std::string has = "no key";
    if (element.isAnyOne()) {
      has = "no element with such a key";
    } else if (node.list != nullptr) {
      has = "the key " + std::string(node.list->key);
    }
    std::string named;
    for (const auto& [name, value] : element.keys)
      named += (named.empty() ? "" : ", ") + quoted(name);
    throw Refused(StatusCode::INVALID_ARGUMENT,
                  element.field + ".key: " + named + " is asked for, and there is " + has);
  }

  [[noreturn]] void refuseName(const Element& element) const {
    std::string reason = "there is no element " + quoted(element.name) + " below ";
    if (tops_.size() == 1) {
      const Top& top = tops_.front();
      reason += shownWay(top.way) + host::didYouMean(element.name, nodeOf(top).childNames());
    } else {
      reason += "what the elements before it name";
    }
    throw Refused(StatusCode::UNIMPLEMENTED, element.field + ": " + reason);
  }

  std::vector<Top> tops_{Top{}};  // those that the elements so far name
};

// ===== From nodes to records

// Whether an entry of the one kind holds what an entry of the other one is.
bool isAtOrBelow(const host::RecordKind* kind, const host::RecordKind& top) {
  while (kind != nullptr && kind != &top) kind = kind->parent;
  return kind != nullptr;
}

bool areAsked(std::span<const KeyAsked> asked, std::span<const std::string_view> keys) {
  return std::equal(asked.begin(), asked.end(), keys.begin(), keys.end(),
                    [](const KeyAsked& a, std::string_view key) { return !a || *a == key; });
}

class Parts {
 public:
  explicit Parts(const host::View& view) : view_(view) {}

  // Returns whether the view shows a leaf there, at whatever depth.
  bool add(const Top& top, std::size_t depth) {
    const Node& node = top.way.empty() ? host::nodeTree() : *top.way.back();
    return addLeaves(
        node, top.keys,
        depth != 0 ? static_cast<int>(std::min<std::size_t>(depth, anyDepth)) : anyDepth);
  }
  std::vector<Path::Part> take() { return std::move(parts_); }

 private:
  static constexpr int anyDepth = 1000;

  // Below a depth of 0 nothing is taken in.
  bool addLeaves(const Node& node, const std::vector<KeyAsked>& keys, int depth) {
    bool added = node.leaf != nullptr && addLeaf(node, keys, depth >= 0);
    for (const auto& child : node.children) {
      auto with = keys;
      if (child->list != nullptr) with.emplace_back();
      added |= addLeaves(*child, with, depth - 1);
    }
    return added;
  }

  bool addLeaf(const Node& node, const std::vector<KeyAsked>& keys, bool isTaken) {
    const auto rows = view_.rows(*node.kind);
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [&](const auto& r) { return r.path == node.leaf->path; });
    if (row == rows.end()) return false;
    if (isTaken) part(*node.kind, keys).rows |= RowSet{1} << (row - rows.begin());
    return true;
  }

  Path::Part& part(const host::RecordKind& kind, const std::vector<KeyAsked>& keys) {
    for (Path::Part& part : parts_) {
      if (part.kind == &kind && part.keys == keys) return part;
    }
    return parts_.emplace_back(Path::Part{&kind, keys, 0});
  }

  const host::View& view_;
  std::vector<Path::Part> parts_;
};

}  // namespace

Path::Names Path::Top::names() const {
  if (way.empty()) return Names::container;
  const Node& node = *way.back();
  if (node.list != nullptr) return keys.back() ? Names::entry : Names::list;
  return node.leaf != nullptr ? Names::leaf : Names::container;
}

bool Path::Top::isOne() const {
  return std::all_of(keys.begin(), keys.end(), [](const KeyAsked& key) { return bool(key); });
}

bool Path::Part::takesIn(std::span<const std::string_view> of) const { return areAsked(keys, of); }

Path::Path(const Asked& asked, const host::View& view)
    : tops_(Resolution().resolve(elementsOf(asked))) {
  Parts parts(view);
  const std::string first = shownWay(tops_.front().way);
  std::erase_if(tops_, [&](const Top& top) { return !parts.add(top, asked.depth); });
  parts_ = parts.take();
  if (tops_.empty()) {
    throw Refused(StatusCode::UNIMPLEMENTED,
                  std::string(asked.field) + ": " + first + " is not shown by this server");
  }
}

Path::Path(const Top& top, std::size_t depth, const host::View& view) : tops_{top} {
  Parts parts(view);
  parts.add(top, depth);
  parts_ = parts.take();
}

RowSet Path::rows(const host::RecordKind& kind, std::span<const std::string_view> keys) const {
  RowSet rows = 0;
  for (const Part& part : parts_) {
    if (part.kind == &kind && part.takesIn(keys)) rows |= part.rows;
  }
  return rows;
}

host::EntriesWanted Path::wanted(const host::RecordKind& kind,
                                 std::span<const std::string_view> above) const {
  using Which = host::EntriesWanted::Which;
  host::EntriesWanted wanted;
  for (const Part& part : parts_) {
    if (!isAtOrBelow(part.kind, kind)) continue;
    if (!areAsked(std::span(part.keys).first(above.size()), above)) continue;
    const KeyAsked* key = kind.isList() ? &part.keys[above.size()] : nullptr;
    if (key == nullptr || !*key) return {Which::all};
    if (wanted.which == Which::one && wanted.key != **key) return {Which::all};
    wanted = {Which::one, **key};
  }
  return wanted;
}

}  // namespace server
