#include "host/openconfig/LeftOut.h"

#include "host/Text.h"

namespace host {
namespace {

// The path of a container, or of the entry under the first `depth` keys.
std::string pathOf(const RecordKind& kind, const Keys& keys, std::size_t depth) {
  const std::size_t above = kind.isList() ? depth - 1 : depth;
  std::string path = kind.parent != nullptr ? pathOf(*kind.parent, keys, above)
                                            : '/' + std::string(kind.root->member);
  path += '/' + std::string(kind.path);
  if (!kind.isList()) return path;
  const std::string_view key = keys[above];
  const char* quote = key.find('\'') == std::string_view::npos ? "'" : "\"";
  return path + '[' + std::string(kind.key) + '=' + quote + shown(key) + quote + ']';
}

std::string line(const std::string& path, std::string_view reason, const std::string& native) {
  return path + ": " + std::string(reason) + ": left out (from " + native + ')';
}

}  // namespace

std::string leafLeftOut(const RecordLeaf& place, const Keys& keys, std::string_view reason) {
  const auto& [kind, record, leaf] = place;
  const std::string path =
      pathOf(*kind, keys, keys.size()) + '/' + std::string(kind->leaves[leaf].path);
  return line(path, reason, kind->nativeOfLeaf(record, leaf, keys));
}

std::string entryLeftOut(const RecordKind& kind, const Keys& keys, std::string_view misfit) {
  return line(pathOf(kind, keys, keys.size()), misfit, kind.native(keys));
}

}  // namespace host
