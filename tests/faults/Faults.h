// Native writes that a translator refuses with an exception, and those that put things right.
#pragma once

#include <initializer_list>
#include <iosfwd>
#include <span>
#include <string_view>

#include "host/Native.h"

namespace faults {

struct Fault {
  const char* name;
  std::initializer_list<std::string_view> roots;  // that refuse it
  const char* report;                             // as the host words it
  void (*strike)(const host::Native& native);
  void (*repair)(const host::Native& native);
  // Whose observers are told of both. Null for what is looked at only at start.
  const Rok::PtrInterface* (*place)(const host::Native& native);
};
std::ostream& operator<<(std::ostream& out, const Fault& fault);

std::span<const Fault> faultTable();

}  // namespace faults
