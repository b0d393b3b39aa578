// OVERVIEW
//   Assertions with a streamed message. They are there in every build, and one that fails ends the
//   process.
//
// RULES
//   - An assertion is for a broken invariant. A value that an operator may configure wrongly throws
//     an exception instead (Exceptions.h).
//   - The caller tests the condition; SassertHelper gets the text of what should have held. Its
//     destructor writes "assertion failed: <expr>: <message>" to standard error and aborts.
//
// EXAMPLE
//   if (type > 1) Rok::SassertHelper("type <= 1") << "Unexpected ACL type " << type;
#pragma once

#include <sstream>

#include "Dorpel/Export.h"

namespace Rok {

// An assertion that has failed, to which its message is streamed.
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
