#include "support/Check.h"

#include <cstdlib>
#include <iostream>

namespace Bench {

void require(bool right, std::string_view message) {
  if (right) return;
  std::cerr << "bench: wrong result: " << message << std::endl;
  std::abort();
}

}  // namespace Bench
