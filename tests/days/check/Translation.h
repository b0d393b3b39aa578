// What translations of one document from nothing come to, in several walk orders.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tests/days/Device.h"

namespace days {

using LeafMap = std::map<std::string, std::string>;  // values by paths

// In a walk order, of collections that were filled in an order of its own; 0 is that of the document.
struct Translation {
  Translation(const std::string& document, std::uint32_t order);

  Reports reports;  // of roots that raised
  LeafMap leaves;   // of the OpenConfig form
  std::vector<std::string> warnings;
};

// In the first few walk orders.
class Outcomes {
 public:
  using Select = std::function<bool(const std::string& path)>;
  static constexpr std::uint32_t orders = 4;

  explicit Outcomes(const std::string& document, std::uint32_t count = orders);

  const std::vector<Translation>& all() const { return all_; }
  bool hasRaised() const;
  // The values of a path in all orders; an empty one where it has no leaf.
  const std::map<std::string, std::set<std::string>>& values() const { return values_; }
  // The paths that have one value, or none, in all orders of both, and not the same one.
  std::vector<std::string> differences(const Outcomes& other, const Select& select) const;
  // Whether any path can have another value, also one that depends on the order.
  bool isSame(const Outcomes& other) const { return values_ == other.values_; }
  // Paths on which the orders differ.
  std::vector<std::string> unsettled() const;

 private:
  std::vector<Translation> all_;
  std::map<std::string, std::set<std::string>> values_;
};

}  // namespace days
