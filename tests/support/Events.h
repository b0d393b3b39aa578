// Native writes that wake every handler of the ten roots, on the device of House.h.
#pragma once

#include <functional>
#include <iosfwd>
#include <span>
#include <string_view>

#include "host/Native.h"

namespace support {

struct Change {
  std::function<void()> write;
  std::function<void()> undo;  // null where it would delete what was never mirrored
};

struct Event {
  const char* name;
  // Makes what the writes need, and writes nothing.
  Change (*prepare)(const host::Native& native);
  // Whether the output depends only on how the changes end, and not on which of them were notified.
  bool endsAlike = true;
};
std::ostream& operator<<(std::ostream& out, const Event& event);

std::span<const Event> events();
// The changes of the event of that name. Requires: there is one.
Change prepared(const host::Native& native, std::string_view name);

}  // namespace support
