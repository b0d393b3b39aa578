// What a root that was left out would raise over.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include "host/check/Raises.h"

namespace host {

// Found by the place of each, and by its decider.
class RaiseSet {
 public:
  void insert(Raise raise);
  // Takes out those whose place or decider is at or below a place.
  std::vector<Raise> take(const Tokens& place);
  void clear() { byPlace_.clear(); }

 private:
  using ByPlace = std::multimap<Tokens, std::shared_ptr<const Raise>>;

  void erase(const Tokens& place, const std::shared_ptr<const Raise>& raise);

  ByPlace byPlace_;
};

}  // namespace host
