// OVERVIEW: a name for each record of the tree, as bytes: the kinds and the keys on the way to it. The
// order of the names is the order of a record walk, and the names of all that an entry holds begin
// with its own.
//
// RULES
// - Keys are those that the document holds: they have no byte 0.
// - A name says all about the place of a record: its kind and its keys are read from it.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "host/openconfig/RecordKind.h"

namespace host {

// A key that may be left open.
using KeyOrAny = std::optional<std::string>;

// Requires: the keys are those of a record of the kind.
std::string entryName(const RecordKind& kind, std::span<const std::string_view> keys);
// What the names of all records of a kind begin with that have these keys, as far as they are given
// without a gap.
std::string entryPrefix(const RecordKind& kind, std::span<const KeyOrAny> keys);
// The same for the entry of a kind `child` below an entry of that name, with any key.
std::string childPrefix(std::string_view entry, const RecordKind& child);

// What a name says. The keys are texts within it.
const RecordKind& kindOfName(std::string_view name);
void keysOfName(std::string_view name, Keys& keys);

}  // namespace host
