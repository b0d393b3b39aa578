#include "gnmi/Filter.h"

#include <algorithm>

#include "host/publish/EntryName.h"

namespace server {

Filter::Filter(std::vector<Path> paths, std::string id)
    : paths_(std::move(paths)), id_(std::move(id)) {
  for (const Path& path : paths_) {
    for (const Path::Part& part : path.parts()) {
      ranges_.push_back(host::entryPrefix(*part.kind, part.keys));
    }
  }
  std::sort(ranges_.begin(), ranges_.end());
  // What begins with a range stands right behind it.
  const auto isWithin = [](const std::string& range, const std::string& next) {
    return next.starts_with(range);
  };
  ranges_.erase(std::unique(ranges_.begin(), ranges_.end(), isWithin), ranges_.end());
}

RowSet Filter::rows(const host::RecordKind& kind, std::span<const std::string_view> keys) const {
  RowSet rows = 0;
  for (const Path& path : paths_) rows |= path.rows(kind, keys);
  return rows;
}

bool Filter::leadsTo(const host::RecordKind& kind, std::span<const std::string_view> keys) const {
  using Which = host::EntriesWanted::Which;
  return std::any_of(paths_.begin(), paths_.end(), [&](const Path& path) {
    const auto wanted = path.wanted(kind, keys.first(keys.size() - 1));
    return wanted.which == Which::all || (wanted.which == Which::one && wanted.key == keys.back());
  });
}

host::WindowWalk::Wanted Filter::wanted() const {
  return {[this](const auto& kind, const auto& keys) { return rows(kind, keys); },
          [this](const auto& kind, const auto& keys) { return leadsTo(kind, keys); }};
}

}  // namespace server
