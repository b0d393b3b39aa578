// The range-checked numbers of the output model.
#pragma once

#include <compare>
#include <concepts>
#include <cstdint>
#include <ostream>

#include "Rok/Rok.h"

namespace QosOc {

// A number in a declared range. The value is tested before it enters a record.
template <class Range>
class RangeChecked {
 public:
  using Value = typename Range::Value;
  static constexpr Value max = Range::max;

  constexpr RangeChecked() = default;
  // Throws: RangeException with the type's text for a number outside the range, of whatever type.
  template <std::integral Number>
  constexpr RangeChecked(Number number) : value_(static_cast<Value>(number)) {
    if (!Rok::isUpTo(Range::max, number)) Rok::throwRangeException(Range::text);
  }

  constexpr Value value() const { return value_; }
  friend constexpr auto operator<=>(const RangeChecked&, const RangeChecked&) = default;
  friend std::ostream& operator<<(std::ostream& out, const RangeChecked& number) {
    return out << std::uint64_t{number.value_};
  }

 private:
  Value value_ = Range::initial;
};

// Range, initial value and the text of the exception, of a PercentType.
struct PercentRange {
  using Value = std::uint8_t;
  static constexpr Value max = 100;
  static constexpr Value initial = 0;
  static constexpr const char* text =
      "QosOc::PercentType::value < QosOc::PercentType::min or > QosOc::PercentType::max not "
      "allowed";
};
// The same of a PercentType100: 100 at first.
struct PercentRange100 {
  using Value = std::uint8_t;
  static constexpr Value max = 100;
  static constexpr Value initial = 100;
  static constexpr const char* text =
      "QosOc::PercentType100::value < QosOc::PercentType100::min or > QosOc::PercentType100::max "
      "not allowed";
};
// The same of a ThresholdType.
struct ThresholdRange {
  using Value = std::uint32_t;
  static constexpr Value max = 4294967294u;
  static constexpr Value initial = 0;
  static constexpr const char* text =
      "QosOc::ThresholdType::value < QosOc::ThresholdType::min or > QosOc::ThresholdType::max not "
      "allowed";
};

using PercentType = RangeChecked<PercentRange>;        // 0 to 100, at first 0
using PercentType100 = RangeChecked<PercentRange100>;  // 0 to 100, at first 100
using ThresholdType = RangeChecked<ThresholdRange>;    // 0 to 4294967294, at first 0

}  // namespace QosOc
