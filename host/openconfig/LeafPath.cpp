#include "host/openconfig/LeafPath.h"

namespace host {

void appendKey(std::string& path, std::string_view name, std::string_view value) {
  path += '[';
  path += name;
  path += '=';
  for (std::size_t at; (at = value.find_first_of("]\\")) != std::string_view::npos;) {
    path += value.substr(0, at);
    path += '\\';
    path += value[at];
    value.remove_prefix(at + 1);
  }
  path += value;
  path += ']';
}

void appendEntry(std::string& path, const RecordKind& kind, std::string_view key) {
  if (kind.parent == nullptr) appendBelow(path, kind.root->name);
  appendBelow(path, kind.path);
  if (kind.isList()) appendKey(path, kind.key, key);
}

void appendEntryPath(std::string& path, const RecordKind& kind,
                     std::span<const std::string_view> keys) {
  std::string_view key;
  if (kind.isList()) {
    key = keys.back();
    keys = keys.first(keys.size() - 1);
  }
  if (kind.parent != nullptr) appendEntryPath(path, *kind.parent, keys);
  appendEntry(path, kind, key);
}

}  // namespace host
