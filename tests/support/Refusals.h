// What a write that is refused says.
#pragma once

#include <functional>
#include <string>

#include "Rok/Rok.h"

namespace support {

// What a write throws, as "argument id"; "" when it throws nothing.
template <class Exception>
std::string refused(const std::function<void()>& write) {
  try {
    write();
  } catch (const Exception& e) {
    return e.attribute() + " " + std::to_string(e.attributeId());
  }
  return "";
}
inline std::string reinstantiating(const std::function<void()>& write) {
  return refused<Rok::MutatorReinstantiatingException>(write);
}
inline std::string nullArgument(const std::function<void()>& write) {
  return refused<Rok::MutatorArgNullPointerException>(write);
}

// The text of the range exception that a write throws; "" when it throws nothing.
inline std::string outOfRange(const std::function<void()>& write) {
  try {
    write();
  } catch (const Rok::RangeException& e) {
    return e.what();
  }
  return "";
}

}  // namespace support
