#include "tests/days/Exclusions.h"

#include <algorithm>
#include <string>

#include "tests/days/exclusions/Table.h"

namespace days {

std::string_view nameOf(Check check) {
  switch (check) {
    case Check::order:
      return "another walk order";
    case Check::restart:
      return "a restart";
    case Check::again:
      return "a second restart";
    case Check::rebuild:
      return "a start from nothing";
  }
  return "";
}

bool Seen::isAt(std::initializer_list<std::string_view> form) const {
  const host::Tokens& place = difference.place;
  auto token = place.begin();
  for (const std::string_view wanted : form) {
    if (wanted == "**") return true;
    if (token == place.end() || (wanted != "*" && wanted != *token)) return false;
    ++token;
  }
  return token == place.end();
}

bool Seen::hasRaised(std::string_view root) const {
  const std::string start = "root " + std::string(root) + ':';
  const auto isOfRoot = [&](const std::string& report) { return report.starts_with(start); };
  const Reports& first = facts.leftOut();
  return std::any_of(fresh.begin(), fresh.end(), isOfRoot) ||
         (check != Check::again && std::any_of(first.begin(), first.end(), isOfRoot));
}

const std::vector<Exclusion>& exclusions() {
  static const std::vector<Exclusion> table = [] {
    std::vector<Exclusion> rows;
    for (const auto part :
         {startExclusions, classifierExclusions, forwardingGroupExclusions, queueExclusions,
          bindingExclusions, attachmentExclusions, profileExclusions}) {
      for (const Exclusion& row : part()) rows.push_back(row);
    }
    return rows;
  }();
  return table;
}

}  // namespace days
