// The leaves of the OpenConfig document: their types and values. LeafTable.h says which there are.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "Dorpel/Export.h"

namespace QOS_EXPORT host {

class JsonWriter;

// A leaf reference has the type of its target; a leaf-list of bytes has no order.
enum class LeafType : unsigned char {
  boolean,
  decimal64,
  enumeration,
  identityref,
  string,
  uint8,
  uint8List,
  uint32,
  uint64,
};

// Absent; true or false; a number; a text of the record; a text made for the document; a leaf-list.
using LeafValue = std::variant<std::monostate, bool, std::uint64_t, std::string_view, std::string,
                               std::vector<unsigned>>;
// Whether there is no value.
inline bool isAbsent(const LeafValue& value) { return value.index() == 0; }

// The keys of the list entries that lead to a record, the outermost first, as the document has
// them.
using Keys = std::vector<std::string_view>;

// Is called for what the leaf that is being read can't hold. Without `hear` no text is made.
struct Faults {
  std::function<void(const std::string& reason)> hear = nullptr;

  // reason() makes the text.
  template <class Reason>
  void leftOut(const Reason& reason) const {
    if (hear) hear(reason());
  }
};

// Gets a line for each value that is left out.
using Warn = std::function<void(const std::string&)>;

// What a leaf may hold, where its type allows more.
struct LeafLimits {
  std::uint64_t most = ~std::uint64_t{0};         // of a number, and of each in a leaf-list
  std::span<const std::string_view> names = {};   // of an enumeration, or identities
  bool (*fits)(std::string_view text) = nullptr;  // of a text
  std::string_view expected = {};                 // what fits, for messages
};

// Which consumers get a leaf.
enum class Shown : unsigned char { always, withInterfaceRef };

// The text that a value is, if it is one.
std::optional<std::string_view> textOf(const LeafValue& value);
// Writes a value as RFC 7951 has it. Requires: it is there.
void writeLeaf(JsonWriter& out, LeafType type, const LeafValue& value);
// The same as a text of its own, compact.
std::string leafText(LeafType type, const LeafValue& value);

}  // namespace host
