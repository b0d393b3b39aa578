#include "host/check/RaiseSet.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

bool isAtOrBelow(const Tokens& place, const Tokens& other) {
  return place.size() >= other.size() && std::equal(other.begin(), other.end(), place.begin());
}

}  // namespace

void RaiseSet::insert(Raise raise) {
  const auto entry = std::make_shared<const Raise>(std::move(raise));
  byPlace_.emplace(entry->place, entry);
  if (!entry->decider.empty()) byPlace_.emplace(entry->decider, entry);
}

std::vector<Raise> RaiseSet::take(const Tokens& place) {
  std::vector<std::shared_ptr<const Raise>> found;
  for (auto i = byPlace_.lower_bound(place); i != byPlace_.end(); ++i) {
    if (!isAtOrBelow(i->first, place)) break;
    found.push_back(i->second);
  }
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  std::vector<Raise> taken;
  for (const auto& raise : found) {
    erase(raise->place, raise);
    erase(raise->decider, raise);
    taken.push_back(*raise);
  }
  return taken;
}

void RaiseSet::erase(const Tokens& place, const std::shared_ptr<const Raise>& raise) {
  const auto [first, last] = byPlace_.equal_range(place);
  const auto found =
      std::find_if(first, last, [&](const auto& entry) { return entry.second == raise; });
  if (found != last) byPlace_.erase(found);
}

}  // namespace host
