// What was probably meant by a name that is not known.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

// The name that is most like `word`; of several, the first. Empty when none is like it. Slips count:
// a letter too many, one too few, another one, two that changed places. Case doesn't. At most a
// third of the letters of the longer one are slips, and two names that differ in their numbers alone
// are not alike.
std::string_view nearest(std::string_view word, const std::vector<std::string_view>& names);

// ": did you mean NAME?", or nothing when no name is like it.
std::string didYouMean(std::string_view word, const std::vector<std::string_view>& names);
// The same, and all names: " (legal: NAME, ...)".
std::string didYouMeanOf(std::string_view word, const std::vector<std::string_view>& names);

}  // namespace host
