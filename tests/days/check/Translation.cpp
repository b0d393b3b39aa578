#include "tests/days/check/Translation.h"

#include <algorithm>

#include "host/openconfig/Leaves.h"

namespace days {

Translation::Translation(const std::string& document, std::uint32_t order) {
  static const host::View view;
  const host::Native native = mounted(document, order);
  const host::Model model;
  reports = Life(native, model, order).reports;
  const auto warn = [this](const std::string& line) { warnings.push_back(line); };
  for (auto& [path, value] : host::leavesOf(model, view, warn)) {
    leaves.emplace(std::move(path), std::move(value));
  }
}

Outcomes::Outcomes(const std::string& document) {
  for (std::uint32_t order = 0; order < orders; ++order) all_.emplace_back(document, order);
  for (const Translation& one : all_) {
    for (const auto& [path, value] : one.leaves) values_[path].insert(value);
  }
  for (const Translation& one : all_) {
    for (auto& [path, values] : values_) {
      if (!one.leaves.contains(path)) values.insert("");
    }
  }
}

bool Outcomes::hasRaised() const {
  return std::any_of(all_.begin(), all_.end(),
                     [](const Translation& one) { return !one.reports.empty(); });
}

std::vector<std::string> Outcomes::differences(const Outcomes& other, const Select& select) const {
  static const std::set<std::string> nothing{""};
  const auto at = [](const Outcomes& outcomes, const std::string& path) -> const auto& {
    const auto found = outcomes.values_.find(path);
    return found != outcomes.values_.end() ? found->second : nothing;
  };
  std::set<std::string> paths;
  for (const Outcomes* one : {this, &other}) {
    for (const auto& [path, values] : one->values_) {
      if (!select || select(path)) paths.insert(path);
    }
  }
  std::vector<std::string> different;
  for (const std::string& path : paths) {
    const auto& mine = at(*this, path);
    const auto& others = at(other, path);
    if (mine.size() == 1 && others.size() == 1 && mine != others) different.push_back(path);
  }
  return different;
}

std::vector<std::string> Outcomes::unsettled() const {
  std::vector<std::string> paths;
  for (const auto& [path, values] : values_) {
    if (values.size() > 1) paths.push_back(path);
  }
  return paths;
}

}  // namespace days
