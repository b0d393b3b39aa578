// What is wrong with an input, and where.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Dorpel/Export.h"
#include "host/Pointer.h"
#include "host/TextPosition.h"

namespace QOS_EXPORT host {

class Fault : public std::runtime_error {
 public:
  // `place` is a JSON Pointer as messages show it, or empty. Line 0: the position is not known.
  Fault(std::string place, const std::string& reason, TextPosition position = {})
      : std::runtime_error(reason), place_(std::move(place)), position_(position) {}
  // At a place of a document.
  Fault(const Tokens& place, const std::string& reason, TextPosition position = {})
      : Fault(shownPointer(place), reason, position) {
    pointer_ = pointerText(place);
  }

  const std::string& place() const { return place_; }
  // The place as a JSON Pointer; empty for that of the whole document, and for what is no place.
  const std::string& pointer() const { return pointer_; }
  TextPosition position() const { return position_; }
  // The same place with another reason.
  Fault saying(const std::string& reason) const {
    Fault other(place_, reason, position_);
    other.pointer_ = pointer_;
    return other;
  }

  // "FILE:line:column: place: reason", without what is empty.
  std::string inFile(const std::string& file) const;

 private:
  std::string place_;
  std::string pointer_;
  TextPosition position_;
};

inline constexpr std::size_t mostFaults = 20;

// A text that is refused, with all that is wrong with it, in its order; of more than `mostFaults`,
// the first.
class Refusal : public std::runtime_error {
 public:
  // Requires: there is a fault.
  explicit Refusal(std::vector<Fault> faults)
      : std::runtime_error(faults.front().what()), faults_(std::move(faults)) {}
  explicit Refusal(Fault only) : Refusal(std::vector{std::move(only)}) {}

  const std::vector<Fault>& faults() const { return faults_; }

 private:
  std::vector<Fault> faults_;
};

// A line for each fault, as `inFile` has it, and one that says so when there may be more.
std::vector<std::string> linesOf(const std::vector<Fault>& faults, const std::string& file);

}  // namespace host
