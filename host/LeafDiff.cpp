#include "host/LeafDiff.h"

#include <algorithm>

#include "host/JsonWriter.h"
#include "host/Text.h"
#include "host/feed/FeedLine.h"
#include "host/openconfig/LeafPath.h"

namespace host {
namespace {

// Where the element that begins at `begin`, a slash, ends: behind its keys.
std::size_t elementEnd(std::string_view path, std::size_t begin) {
  bool inKey = false;
  for (std::size_t i = begin + 1; i < path.size(); ++i) {
    const char c = path[i];
    if (c == '\\' && inKey) {
      ++i;
    } else if (c == '[') {
      inKey = true;
    } else if (c == ']') {
      inKey = false;
    } else if (c == '/' && !inKey) {
      return i;
    }
  }
  return path.size();
}

// Where the highest node ends that a deletion may name.
std::size_t highestEnd(std::string_view path) {
  const std::size_t child = elementEnd(path, elementEnd(path, 0));
  std::size_t end = 0;
  do {
    end = elementEnd(path, end);
    if (path[end - 1] == ']') return end;
  } while (end < path.size());
  return child;
}

// Whether a leaf is at the node or below it.
bool isThere(const std::vector<LeafText>& leaves, std::string_view node) {
  if (findLeaf(leaves, node) != nullptr) return true;
  const std::string below = std::string(node) + '/';
  const auto found =
      std::lower_bound(leaves.begin(), leaves.end(), below,
                       [](const LeafText& leaf, const std::string& p) { return leaf.path < p; });
  return found != leaves.end() && found->path.starts_with(below);
}

// Of a leaf that is not there.
std::string highestMissing(const std::string& path, const std::vector<LeafText>& leaves) {
  std::size_t end = highestEnd(path);
  while (end < path.size() && isThere(leaves, std::string_view(path).substr(0, end))) {
    end = elementEnd(path, end);
  }
  return path.substr(0, end);
}

}  // namespace

std::vector<LeafChange> leafChanges(const std::vector<LeafText>& before,
                                    const std::vector<LeafText>& after) {
  std::vector<LeafChange> changes;
  auto a = before.begin();
  auto b = after.begin();
  while (a != before.end() || b != after.end()) {
    const int order = a == before.end() ? 1 : b == after.end() ? -1 : a->path.compare(b->path);
    if (order != 0 || a->value != b->value) {
      changes.push_back({order <= 0 ? &*a : nullptr, order >= 0 ? &*b : nullptr});
    }
    if (order <= 0) ++a;
    if (order >= 0) ++b;
  }
  return changes;
}

std::string changeLine(const LeafChange& change) {
  const auto& [before, after] = change;
  if (after == nullptr) return "- " + shownWhole(before->path) + ' ' + before->value;
  if (before == nullptr) return "+ " + shownWhole(after->path) + ' ' + after->value;
  return "~ " + shownWhole(after->path) + ' ' + before->value + " -> " + after->value;
}

std::vector<std::string> deletedNodes(const std::vector<LeafChange>& changes,
                                      const std::vector<LeafText>& after, const Subtree& only) {
  std::vector<std::string> nodes;
  for (const LeafChange& change : changes) {
    if (change.after != nullptr) continue;
    // The leaves of a node follow one another.
    if (!nodes.empty() && isAtOrBelow(change.before->path, nodes.back())) continue;
    const std::string node = highestMissing(change.before->path, after);
    // The lists don't say what is around the subtree: all that is known to be gone is its top.
    const bool isAround = only.relation(node) == Subtree::Relation::above;
    nodes.emplace_back(isAround ? only.topAbove(change.before->path) : node);
  }
  std::sort(nodes.begin(), nodes.end());
  nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
  return nodes;
}

std::string changesJson(const std::vector<LeafChange>& changes, const std::vector<LeafText>& after,
                        const Subtree& only) {
  JsonWriter out(Layout::compact);
  out.beginObject();
  writeChanges(out, deletedNodes(changes, after, only), [&] {
    for (const LeafChange& change : changes) {
      if (change.after == nullptr) continue;
      out.key(change.after->path);
      out.raw(change.after->value);
    }
  });
  out.endObject();
  return out.take();
}

}  // namespace host
