// What is wrong with an input, and where.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace host {

class Fault : public std::runtime_error {
 public:
  // `place` is a JSON Pointer as messages show it, or empty; `position` is "line:column", or empty.
  Fault(std::string place, const std::string& reason, std::string position = {})
      : std::runtime_error(reason), place_(std::move(place)), position_(std::move(position)) {}

  const std::string& place() const { return place_; }
  const std::string& position() const { return position_; }

  // "FILE:line:column: place: reason", without what is empty.
  std::string inFile(const std::string& file) const;

 private:
  std::string place_;
  std::string position_;
};

}  // namespace host
