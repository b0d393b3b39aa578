// What a random day is made of: numbers, a few for each change line. The same numbers make the same
// line of the same device, so that a day can be drawn, shrunk, decoded from a fuzzer's bytes and
// run again. Small numbers make simple lines.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace days {

using Step = std::array<std::uint8_t, 16>;

// The sections of the native document that a day is about: what meets often goes wrong sooner.
enum class Focus : std::uint8_t { everything, classification, queues, profiles, ports, groups };
constexpr std::size_t focuses = 6;

// Whether values that roots raise over are rare or frequent.
enum class Values : std::uint8_t { mostlyGood, spoiled };

struct Plan {
  Focus focus = Focus::everything;
  std::vector<Step> before;  // these make the document that the day begins with
  std::vector<Step> changes;
  std::uint8_t order = 0;  // in which the other device walks its hash collections
  // In which order everything is removed at the end; nothing is without a step.
  std::vector<Step> closing;
};

// Takes choices off a step, one number each.
class Choices {
 public:
  explicit Choices(const Step& step) : step_(step) {}

  // A number from 0 to n - 1. Requires: n > 0.
  std::size_t below(std::size_t n) {
    const std::size_t taken = taken_++;
    // Behind the last number they begin anew, a little moved.
    return (step_[taken % step_.size()] + 7 * (taken / step_.size())) % n;
  }
  bool oneIn(std::size_t n) { return below(n) == n - 1; }
  template <class List>
  const auto& of(const List& list) {
    return list[below(std::size(list))];
  }

 private:
  const Step& step_;
  std::size_t taken_ = 0;
};

}  // namespace days
