// What the sources of the comment helper share. For no other code.
#pragma once

#include "Rok/Rok.h"

namespace QosOc::HelperUnit {

[[gnu::visibility("hidden")]] extern Rok::TraceHandle traceHandle;

inline constexpr Rok::TraceLevel handler{traceHandle, 2};
inline constexpr Rok::TraceLevel detail{traceHandle, 9};

// The line with which an operation opens: its name and its arguments.
template <class... Args>
void traceOperation(const char* name, const Args&... args) {
  if (Rok::TraceHelper line{detail}) {
    line << name << " ( ";
    [[maybe_unused]] const char* comma = "";
    ((line << comma << args, comma = ", "), ...);
    line << " ) ";
  }
}

}  // namespace QosOc::HelperUnit
