#include "Rok/Sassert.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace Rok {

SassertHelper::~SassertHelper() {
  const std::string message = message_.str();
  std::fprintf(stderr, "assertion failed: %s%s%s\n", expr_, message.empty() ? "" : ": ",
               message.c_str());
  std::fflush(stderr);
  std::abort();
}

}  // namespace Rok
