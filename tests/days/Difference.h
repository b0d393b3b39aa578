// Where two output models differ.
#pragma once

#include <string>
#include <vector>

#include "host/Model.h"
#include "host/Pointer.h"

namespace days {

// One place in the format `model`, as far down as both models have something there: a record that
// one of them lacks is one difference, whatever it holds.
struct Difference {
  host::Tokens place;
  std::string left;  // JSON; empty when nothing is there
  std::string right;

  // "/queues/q1/config: {...} and {...}"
  std::string told() const;
  friend bool operator==(const Difference&, const Difference&) = default;
};

// An output model that can be compared and copied.
class Snapshot {
 public:
  explicit Snapshot(const host::Model& model);

  // A model that holds the same.
  host::Model model() const;
  // In the order of the places.
  std::vector<Difference> differences(const Snapshot& right) const;
  const std::string& json() const { return json_; }
  friend bool operator==(const Snapshot&, const Snapshot&) = default;

 private:
  std::string json_;
};

}  // namespace days
