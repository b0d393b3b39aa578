// What was probably meant by a name that is not known.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// Names among which the one is found that was probably meant. Slips count: a letter too many, one too
// few, another one, two that changed places. Case doesn't. At most a third of the letters of the
// longer one are slips, and two names with different numbers are not alike.
class NearNames {
 public:
  // The names must outlive this. That many characters at their front are the same in all, and are
  // not compared.
  explicit NearNames(const std::vector<std::string_view>& names, std::size_t same = 0);

  // The name that is most like `word`; of several, the first. Empty when none is like it. Most names
  // are passed over by their letters and digits alone, and of the others the first 64 are compared,
  // so that a search costs microseconds. Among more than 4096 names, and for one of more than 64
  // characters, nothing is found.
  std::string_view nearest(std::string_view word) const;
  // ": did you mean NAME?", or nothing when no name is like it.
  std::string didYouMean(std::string_view word) const;

 private:
  // The digits are no letters: Ethernet1 and Ethernet2 have the same.
  struct Letters {
    explicit Letters(std::string_view text);

    std::string text;  // in lower case
    std::string digits;
    std::uint64_t bits = 0;  // one for each letter that is there, or for several
  };
  struct Name {
    std::string_view name;  // behind what is the same
    Letters letters;
  };

  std::vector<Name> names_;
  std::size_t same_;
};

// Of a few names.
std::string_view nearest(std::string_view word, const std::vector<std::string_view>& names);
std::string didYouMean(std::string_view word, const std::vector<std::string_view>& names);
// The same, and all names: " (legal: NAME, ...)".
std::string didYouMeanOf(std::string_view word, const std::vector<std::string_view>& names);

}  // namespace host
