// The elements of a path as a request has them, checked one by one.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "gnmi/Path.h"

namespace server {

struct Element {
  std::string field;  // "prefix.elem[2]", for messages
  std::string name;
  std::vector<std::pair<std::string, std::string>> keys = {};  // in the order of their names

  bool isAnyOne() const { return name == "*"; }
  bool isAnyNumber() const { return name == "..."; }
};

// Those of the prefix and of the path, without the origin.
// Throws: Refused for what is wrong with prefix, origin and target, or with an element by itself.
std::vector<Element> elementsOf(const Path::Asked& asked);

}  // namespace server
