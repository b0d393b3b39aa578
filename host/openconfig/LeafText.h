// Leaves as texts, and values of leaves as they are read from documents.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "Dorpel/Export.h"
#include "host/openconfig/Leaf.h"

namespace QOS_EXPORT host {

// A leaf by its path and its value, which is compact JSON.
struct LeafText {
  std::string path;
  std::string value;

  friend bool operator==(const LeafText&, const LeafText&) = default;
};

// By the bytes of their paths.
void sortLeaves(std::vector<LeafText>& leaves);
// In a sorted list. Null when there is none of that path.
const LeafText* findLeaf(const std::vector<LeafText>& leaves, std::string_view path);

// A value of a document that is no object and no array: null, true or false, a number, a text.
using JsonScalar =
    std::variant<std::monostate, bool, std::uint64_t, std::int64_t, double, std::string_view>;

// The leaf's value in its canonical form; nothing when the leaf can't hold it. A text in it is that
// of the scalar. Requires: the leaf is no leaf-list; for the elements of one, its type is uint8.
std::optional<LeafValue> leafFrom(const JsonScalar& scalar, LeafType type,
                                  const LeafLimits& limits);

// For messages: what a leaf holds, "a number from 0 to 63".
std::string heldBy(LeafType type, const LeafLimits& limits);
// For messages: what a scalar is.
std::string shownScalar(const JsonScalar& scalar);

}  // namespace host
