// What was probably meant by a name that is not known.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

// The name that is most like `word`; of several, the first. Empty when none is like it. Slips count:
// a letter too many, one too few, another one, two that changed places. Case doesn't. A third of the
// letters of `word` may be slips, and one always.
std::string_view nearest(std::string_view word, const std::vector<std::string_view>& names);

// ": did you mean NAME?", or nothing when no name is like it.
std::string didYouMean(std::string_view word, const std::vector<std::string_view>& names);

}  // namespace host
