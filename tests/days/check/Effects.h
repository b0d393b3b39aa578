// Places of a document that have no effect: each has a finding, or a reason to have none.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/days/check/Case.h"

namespace days {

// A place whose removal changes no leaf, and of which no finding is wanted.
struct Exemption {
  std::string_view name;
  std::string_view reason;
  bool (*holds)(const Case& one, const host::Tokens& place);
  std::string_view example;  // a document with a place that this one alone exempts
};
const std::vector<Exemption>& exemptions();

struct ExemptionTally {
  std::vector<std::size_t> used = std::vector<std::size_t>(exemptions().size());
  std::size_t without = exemptions().size();  // an exemption that is left out of the table
};

// A line for each place that has neither an effect, nor a finding at, above or below it, nor an
// exemption. Requires: no root raises over the document.
std::vector<std::string> silentLosses(const Case& one, ExemptionTally& tally);

}  // namespace days
