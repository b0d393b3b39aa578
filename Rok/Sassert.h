// Streamed assertions: what must hold in every build, and ends the process when it doesn't.
#pragma once

#include <sstream>

#include "Dorpel/Export.h"

namespace Rok {

// Opens an assertion that has failed. The caller streams its message to it; the destructor writes
// "assertion failed: <expr>: <message>" to standard error and aborts. There is no way back.
//
//   if (type > 1) Rok::SassertHelper("type <= 1") << "Unexpected ACL type " << type;
class QOS_EXPORT SassertHelper {
 public:
  explicit SassertHelper(const char* expr) : expr_(expr) {}
  SassertHelper(const SassertHelper&) = delete;
  SassertHelper& operator=(const SassertHelper&) = delete;
  [[noreturn]] ~SassertHelper();

  template <class T>
  SassertHelper& operator<<(const T& value) {
    message_ << value;
    return *this;
  }

 private:
  const char* expr_;
  std::ostringstream message_;
};

// The expression text of an assertion that a translator opens without a condition of its own.
inline constexpr const char* falseExpr = "\"false\" == nullptr";

}  // namespace Rok
