// The leaf `priorities` of priority flow control: eight bits as a hexadecimal number, as the
// translators write it.
#pragma once

#include "host/Text.h"
#include "host/openconfig/Leaf.h"

namespace host {

bool isPriorities(std::string_view text);
inline constexpr LeafLimits prioritiesLimits{.fits = isPriorities,
                                             .expected = "eight bits in hexadecimal"};

template <auto field, class Record>
LeafValue priorities(const Record& record, const Keys& /*keys*/, const Faults& faults) {
  const Rok::String& text = record.*field;
  if (text.empty() || isPriorities(text)) return std::string_view(text);
  faults.leftOut([&] { return quoted(text) + " is not eight bits in hexadecimal"; });
  return {};
}

}  // namespace host
