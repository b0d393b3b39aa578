// The lines that warn of what is in a model and left out of its document.
#pragma once

#include <string>
#include <string_view>

#include "host/openconfig/RecordKind.h"

namespace host {

// A leaf of a record, by its number in the kind's table.
struct RecordLeaf {
  const RecordKind* kind;
  const void* record;
  std::size_t leaf;
};

// `keys` are those of the entries that lead to the record.
std::string leafLeftOut(const RecordLeaf& place, const Keys& keys, std::string_view reason);
// The last of the keys is the one that the document can't hold.
std::string entryLeftOut(const RecordKind& kind, const Keys& keys, std::string_view misfit);

}  // namespace host
