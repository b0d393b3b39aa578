#include "tests/days/check/Translation.h"

#include <algorithm>
#include <random>
#include <utility>

#include "host/Json.h"
#include "host/openconfig/Leaves.h"

namespace days {
namespace {

namespace json = host::rapidjson;

// Puts the members of all objects in an order that the seed chooses.
void shuffle(json::Value& value, std::mt19937& seed, json::Document::AllocatorType& allocator) {
  if (!value.IsObject()) return;
  std::vector<std::pair<json::Value, json::Value>> members;
  for (auto& [key, below] : value.GetObject()) {
    shuffle(below, seed, allocator);
    members.emplace_back(std::move(key), std::move(below));
  }
  std::shuffle(members.begin(), members.end(), seed);
  value.SetObject();
  for (auto& [key, below] : members) value.AddMember(key, below, allocator);
}

// The same document with its members in another order; 0 is its own. A collection of few entries
// is walked up or down from the order in which they came, so that seeds alone never show the one in
// the middle last.
std::string inOrder(const std::string& document, std::uint32_t order) {
  if (order == 0) return document;
  json::Document tree;
  tree.Parse(document.data(), document.size());
  std::mt19937 seed(order);
  shuffle(tree, seed, tree.GetAllocator());
  json::StringBuffer buffer;
  json::Writer<json::StringBuffer> writer(buffer);
  tree.Accept(writer);
  return {buffer.GetString(), buffer.GetSize()};
}

}  // namespace

Translation::Translation(const std::string& document, std::uint32_t order) {
  static const host::View view;
  const host::Native native = mounted(inOrder(document, order), order);
  const host::Model model;
  reports = Life(native, model, order).reports;
  const auto warn = [this](const std::string& line) { warnings.push_back(line); };
  for (auto& [path, value] : host::leavesOf(model, view, warn)) {
    leaves.emplace(std::move(path), std::move(value));
  }
}

Outcomes::Outcomes(const std::string& document, std::uint32_t count) {
  for (std::uint32_t order = 0; order < count; ++order) all_.emplace_back(document, order);
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
