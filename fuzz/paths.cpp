// Paths of requests: what one takes in of a model must be what its text matches, and what is refused
// must match nothing.
#include "Fuzz.h"
#include "tests/support/GnmiPathCheck.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const support::GnmiPathCheck check;
  const std::string wrong = check.check(Fuzz::text(data, size));
  Fuzz::require(wrong.empty(), wrong.c_str());
  return 0;
}
