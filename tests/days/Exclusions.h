// Where two lives over the same native objects may end in different models, and why.
//
// The behaviour of this system is not a function of its native objects alone: some of it depends on
// the order of events, by design. Each such case is a row of one table. A row says as narrowly as
// it can which difference it means; everything else that differs is a fault.
#pragma once

#include <string_view>
#include <vector>

#include "tests/days/Difference.h"
#include "tests/days/Facts.h"

namespace days {

// Which two models are compared; the first one is on the left.
enum class Check : unsigned {
  order = 1,    // the device, and the same with another walk order of its hash collections
  restart = 2,  // the device, and fresh roots over its native objects and its output
  again = 4,    // these, and fresh roots once more
  rebuild = 8,  // the device, and fresh roots over its native objects and an empty output
};
constexpr unsigned operator|(Check a, Check b) {
  return static_cast<unsigned>(a) | static_cast<unsigned>(b);
}
constexpr unsigned operator|(unsigned a, Check b) { return a | static_cast<unsigned>(b); }
constexpr unsigned operator+(Check a) { return static_cast<unsigned>(a); }
std::string_view nameOf(Check check);

struct Seen {
  // Whether the place has this form: "classifiers", "*", "config", "type". The last token may be
  // "**": this place and all below it.
  bool isAt(std::initializer_list<std::string_view> form) const;
  // The n-th token of the place.
  const std::string& key(std::size_t n) const { return difference.place[n]; }

  // Whether the factory of a root raised in one of the two lives.
  bool hasRaised(std::string_view root) const;

  Check check;
  const Difference& difference;
  const Facts& facts;
  const Reports& fresh;  // what the fresh roots of the right side raised
};

struct Exclusion {
  std::string_view name;  // what differs
  unsigned checks;        // of Check
  std::string_view reason;
  bool (*holds)(const Seen& seen);
};

// The table. Each part of it tells about one part of the model.
const std::vector<Exclusion>& exclusions();

}  // namespace days
