// The gNMI paths of entries and leaves: "/qos/queues/queue[name=q]/config/name". A caller may build
// the path of an entry once and append each of its leaves in turn.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "host/openconfig/RecordKind.h"

namespace host {

// Appends "[name=value]". In the value, `]` and `\` get a `\` before them.
void appendKey(std::string& path, std::string_view name, std::string_view value);

// Appends an entry of `kind`, or the container that it is, to the path of the entry that holds it.
// An outermost kind begins with the root: there `path` is mostly empty. The key of a container is
// not read.
void appendEntry(std::string& path, const RecordKind& kind, std::string_view key);

// Appends the whole path of an entry: `keys` are those of the lists on the way and its own.
void appendEntryPath(std::string& path, const RecordKind& kind,
                     std::span<const std::string_view> keys);

// Appends what stands below an entry, by its path there.
inline void appendBelow(std::string& path, std::string_view below) {
  path += '/';
  path += below;
}

// Whether a path is that of a node, or leads below it.
inline bool isAtOrBelow(std::string_view path, std::string_view node) {
  return path.starts_with(node) && (path.size() == node.size() || path[node.size()] == '/');
}

}  // namespace host
