// What the rules of `check` have in common.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Rok/Rok.h"
#include "host/Nearest.h"
#include "host/Text.h"
#include "host/check/Device.h"
#include "host/check/Finding.h"

namespace host {

class Rule {
 public:
  Rule(const Device& device, const Findings& findings) : device_(device), findings_(findings) {}

 protected:
  const Device& device() const { return device_; }
  const Native& native() const { return device_.native; }
  // `text` is what is wrong and what will happen, a semicolon, and what to do.
  void find(std::string_view kind, Tokens place, std::string text) const {
    findings_({kind, std::move(place), std::move(text)});
  }
  void judgeThresholds(const Qos::EcnWredConfig& settings, const Tokens& place) const {
    if (settings.minThreshold() <= settings.maxThreshold()) return;
    find("thresholds", below(place, "min-threshold"),
         std::to_string(settings.minThreshold()) + " is above the max-threshold of " +
             std::to_string(settings.maxThreshold()) +
             ", and the model gets both as they stand; exchange them");
  }

 private:
  const Device& device_;
  const Findings& findings_;
};

// The end of a finding on a name that is not there: the one that was probably meant, if there is one,
// and the remedy for a name that was meant as it stands.
inline std::string advice(std::string_view meant, const std::string& remedy) {
  if (meant.empty()) return "; " + remedy;
  return ": did you mean " + quoted(meant) + "?; otherwise " + remedy;
}

// Names that may have been meant, gathered when the first is looked for: few documents need them.
class Suggestions {
 public:
  using Names = std::vector<std::string_view>;
  // As for NearNames.
  explicit Suggestions(std::function<Names()> gather, std::size_t same = 0)
      : gather_(std::move(gather)), same_(same) {}

  std::string_view nearest(std::string_view word) const {
    if (!names_) names_.emplace(gather_(), same_);
    return names_->nearest(word);
  }
  std::string advice(std::string_view word, const std::string& remedy) const {
    return host::advice(nearest(word), remedy);
  }

 private:
  const std::function<Names()> gather_;
  const std::size_t same_;
  mutable std::optional<NearNames> names_;
};

// Names in quotes, with commas between them; an empty one is "none".
template <class List>
std::string listed(const List& names) {
  std::string text;
  for (const auto& name : names) {
    const std::string_view view = name;
    text += (text.empty() ? "" : ", ") + (view.empty() ? std::string("none") : quoted(view));
  }
  return text;
}

// The keys of a map.
template <class Map>
std::vector<std::string_view> namesOf(const Map& map) {
  std::vector<std::string_view> names;
  names.reserve(map.size());
  for (const auto& [name, value] : map) names.push_back(name);
  return names;
}

}  // namespace host
