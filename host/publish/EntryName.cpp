#include "host/publish/EntryName.h"

#include <algorithm>
#include <array>

namespace host {
namespace {

// What a name has for a kind: a byte that is its place among all kinds, in the order of the walk.
struct Level {
  const RecordKind* kind;
  bool isNumbered;  // the order of the keys is that of the numbers that they are
};

bool hasNumbers(const RecordKind& kind) {
  return std::any_of(kind.leaves.begin(), kind.leaves.end(), [&](const RecordKind::Row& row) {
    return row.path == kind.key && row.type == LeafType::uint32;
  });
}

void addLevels(const RecordKind& kind, std::vector<Level>& levels) {
  levels.push_back({&kind, hasNumbers(kind)});
  for (const RecordKind* child : kind.children) addLevels(*child, levels);
}

// In the order of a view that shows all.
const std::vector<Level>& levels() {
  static const std::vector<Level> all = [] {
    std::vector<Level> levels;
    addLevels(kinds::referencedInterface, levels);
    for (const RecordKind* kind : outermostKinds()) addLevels(*kind, levels);
    return levels;
  }();
  return all;
}

std::size_t placeOf(const RecordKind& kind) {
  const auto& all = levels();
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const Level& level) { return level.kind == &kind; });
  return static_cast<std::size_t>(found - all.begin());
}

// A text ends by a byte that sorts before all others. A number has no more digits than one that is
// greater, so their count goes first.
void appendKey(std::string& name, const Level& level, std::string_view key) {
  if (level.isNumbered) name += static_cast<char>(key.size());
  name += key;
  if (!level.isNumbered) name += '\0';
}

// The kinds on the way, the outermost first. No way is longer than three.
struct Way {
  std::array<std::size_t, 4> places;
  std::size_t size = 0;
};
void addWay(const RecordKind& kind, Way& way) {
  if (kind.parent != nullptr) addWay(*kind.parent, way);
  way.places[way.size++] = placeOf(kind);
}

// Takes the first kind and its key off a name.
const Level& take(std::string_view& name, std::string_view& key) {
  const Level& level = levels()[static_cast<unsigned char>(name.front()) - 1u];
  name.remove_prefix(1);
  key = {};
  if (!level.kind->isList()) return level;
  if (level.isNumbered) {
    key = name.substr(1, static_cast<unsigned char>(name.front()));
    name.remove_prefix(1 + key.size());
  } else {
    key = name.substr(0, name.find('\0'));
    name.remove_prefix(key.size() + 1);
  }
  return level;
}

}  // namespace

std::string entryName(const RecordKind& kind, std::span<const std::string_view> keys) {
  Way way;
  addWay(kind, way);
  std::string name;
  auto key = keys.begin();
  for (std::size_t i = 0; i < way.size; ++i) {
    const Level& level = levels()[way.places[i]];
    name += static_cast<char>(way.places[i] + 1);
    if (level.kind->isList()) appendKey(name, level, *key++);
  }
  return name;
}

std::string entryPrefix(const RecordKind& kind, std::span<const KeyOrAny> keys) {
  Way way;
  addWay(kind, way);
  std::string name;
  auto key = keys.begin();
  for (std::size_t i = 0; i < way.size; ++i) {
    const Level& level = levels()[way.places[i]];
    name += static_cast<char>(way.places[i] + 1);
    if (!level.kind->isList()) continue;
    if (!*key) break;
    appendKey(name, level, **key++);
  }
  return name;
}

std::string childPrefix(std::string_view entry, const RecordKind& child) {
  return std::string(entry) + static_cast<char>(placeOf(child) + 1);
}

const RecordKind& kindOfName(std::string_view name) {
  const RecordKind* kind = nullptr;
  std::string_view key;
  while (!name.empty()) kind = take(name, key).kind;
  return *kind;
}

void keysOfName(std::string_view name, Keys& keys) {
  keys.clear();
  std::string_view key;
  while (!name.empty()) {
    if (take(name, key).kind->isList()) keys.push_back(key);
  }
}

}  // namespace host
