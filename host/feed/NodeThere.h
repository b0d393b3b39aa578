// Whether nodes of the tree are there: whether a leaf stands at them or below. For the images of a
// feed, which hold nothing but what the document holds, the answer takes no walk.
#pragma once

#include <string_view>

#include "host/openconfig/View.h"

namespace host {

// An entry of a list; or the model as the holder of the outermost kinds, without a kind.
struct TreeEntry {
  const RecordKind* kind;
  const void* entry;
  Keys keys;  // of the lists on the way, its own included
};

// `below` is a path below the entry that names no key: a container, a list or a leaf.
bool isThere(const View& view, const TreeEntry& at, std::string_view below);

}  // namespace host
